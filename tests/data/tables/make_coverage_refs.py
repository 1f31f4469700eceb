#!/usr/bin/python3
"""Reference selections for the farthest-first (maximal coverage) split,
computed independently of Varimo with numpy and scipy. Run from anywhere:

    /usr/bin/python3 tests/data/tables/make_coverage_refs.py

Writes coverage_refs.txt beside this script:
  points <numCols> v_1 ... v_m    12 points in the plane, row after row
  similarity s_1 ... s_78         the lower triangle, row by row with the
                                  diagonal, of exp(-distance) of those points
  select <kind> <count> <start> i_1 ... i_count
      the items picked by a farthest-first traversal from item <start>:
      each next item maximises its smallest distance to those picked (lowest
      index on ties), distances Euclidean (kind "points", from
      scipy.spatial.distance.cdist) or sqrt(1 - s) (kind "similarity")
"""
import os

import numpy as np
import scipy
from scipy.spatial import distance

HERE = os.path.dirname(os.path.abspath(__file__))


def farthest_first(d, start, count):
    picked = [start]
    min_dist = d[:, start].copy()
    while len(picked) < count:
        nxt = int(np.argmax(min_dist))   # first index of the maximum
        picked.append(nxt)
        min_dist = np.minimum(min_dist, d[:, nxt])
    return sorted(picked)


def main():
    rng = np.random.default_rng(808)
    points = rng.uniform(0.0, 10.0, (12, 2))
    d_points = distance.cdist(points, points)
    sim = np.exp(-d_points)
    d_sim = np.sqrt(1.0 - sim)
    lines = ["# computed by numpy %s and scipy %s (tests/data/tables/make_coverage_refs.py)\n" %
             (np.__version__, scipy.__version__),
             "points 2 " + " ".join(repr(float(v)) for v in points.ravel()) + "\n",
             "similarity " + " ".join(repr(float(sim[i, j])) for i in range(12) for j in range(i + 1)) + "\n"]
    for kind, d in (("points", d_points), ("similarity", d_sim)):
        for count in (1, 4, 7):
            for start in range(12):
                lines.append("select %s %d %d %s\n" % (kind, count, start,
                                                         " ".join(str(i) for i in farthest_first(d, start, count))))
    with open(os.path.join(HERE, "coverage_refs.txt"), "w") as out:
        out.writelines(lines)


if __name__ == "__main__":
    main()
