#!/usr/bin/python3
"""Reference values for the resampling tests (bootstrap, independence
statistics on distance matrices, urn-size estimate), computed independently
of Varimo with numpy and scipy. Run from anywhere:

    /usr/bin/python3 tests/data/statistics/make_resampling_references.py

Writes beside this script:
  independence_reference.txt
      "sample <case> <which> <numCols> <isSimilarity> v_1 ... v_m": the flat
          samples, row after row;
      "expect <case> <dCor> <n dCov^2>": the distance correlation of
          Szekely, Rizzo and Bakirov and its test statistic, from the doubly
          centred distance matrices (Euclidean for points, sqrt(1 - s) for a
          similarity matrix), built here with scipy.spatial.distance.
  urn_reference.txt
      "<numUnique> <numDraws> <N>": the root in N of
          digamma(N + 1) - digamma(N - u + 1) - d / N by scipy.optimize.brentq;
          when the left side is already negative at N = u the root lies below
          the smallest possible urn and the estimate is u itself.
"""
import os

import numpy as np
import scipy
from scipy import optimize, special
from scipy.spatial import distance

HERE = os.path.dirname(os.path.abspath(__file__))
HEADER = "# computed by numpy %s and scipy %s (tests/data/statistics/make_resampling_references.py)\n" % (
    np.__version__, scipy.__version__)
EPS = 2.220446049250313e-16


def fmt(v):
    return repr(float(v))


def centred(d):
    return d - d.mean(axis=0)[None, :] - d.mean(axis=1)[:, None] + d.mean()


def dcor_and_stat(d1, d2):
    a, b = centred(d1), centred(d2)
    n = d1.shape[0]
    dcov2 = (a * b).sum() / n ** 2
    dvarx = (a * a).sum() / n ** 2
    dvary = (b * b).sum() / n ** 2
    dcor = np.sqrt(dcov2 / np.sqrt(dvarx * dvary)) if min(dcov2, dvarx, dvary) >= EPS else 0.0
    return dcor, n * dcov2


def independence_reference():
    rng = np.random.default_rng(20261124)
    cases = []
    # Two-column points against a noisy function of their first column.
    x = rng.normal(0.0, 1.0, (12, 2))
    y = (x[:, 0] ** 2 + 0.3 * rng.normal(0.0, 1.0, 12)).reshape(12, 1)
    cases.append(("points", (x, False), (y, False)))
    # Three-column points against independent two-column points.
    u = rng.uniform(-1.0, 1.0, (9, 3))
    v = rng.uniform(-1.0, 1.0, (9, 2))
    cases.append(("independent", (u, False), (v, False)))
    # A similarity matrix exp(-distance) of the points above against the
    # points themselves: distances sqrt(1 - s) on one side only.
    s = np.exp(-distance.cdist(x, x))
    cases.append(("similarity", (s, True), (y, False)))
    # Equal samples: dCor 1.
    cases.append(("equal", (y, False), (y, False)))
    lines = []
    for name, (d1, sim1), (d2, sim2) in cases:
        dist = []
        for data, sim in ((d1, sim1), (d2, sim2)):
            dist.append(np.sqrt(1.0 - data) if sim else distance.cdist(data, data))
        for which, (data, sim) in (("1", (d1, sim1)), ("2", (d2, sim2))):
            lines.append("sample %s %s %d %d %s\n" % (name, which, data.shape[1], int(sim),
                                                       " ".join(fmt(t) for t in data.ravel())))
        dcor, stat = dcor_and_stat(dist[0], dist[1])
        lines.append("expect %s %s %s\n" % (name, fmt(dcor), fmt(stat)))
    with open(os.path.join(HERE, "independence_reference.txt"), "w") as out:
        out.write(HEADER)
        out.writelines(lines)


def urn_reference():
    def slope(n, u, d):
        return special.digamma(n + 1.0) - special.digamma(n - u + 1.0) - d / n

    lines = []
    for u, d in [(5, 6), (10, 12), (50, 60), (90, 100), (300, 1000), (999, 1000), (4000, 5000), (3, 50), (2, 3)]:
        if slope(u, u, d) <= 0.0:
            n = float(u)
        else:
            n = optimize.brentq(slope, u, 1e12, args=(u, d), xtol=1e-10, rtol=1e-15)
        lines.append("%d %d %s\n" % (u, d, fmt(n)))
    with open(os.path.join(HERE, "urn_reference.txt"), "w") as out:
        out.write(HEADER)
        out.writelines(lines)


if __name__ == "__main__":
    independence_reference()
    urn_reference()
