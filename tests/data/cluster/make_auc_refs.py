#!/usr/bin/python3
"""Reference values of the ROC area and the median score, for
tests/cluster/calc_auc_test.cc.

Run with /usr/bin/python3 (Debian's scikit-learn and numpy); writes
auc_refs.txt beside this script. Lines:
  scores <higherIsBetter 0|1> <auc> <nA> <nD> <actives...> <decoys...>
      auc = sklearn.metrics.roc_auc_score over both classes (ties count 1/2);
      for lower-is-better the scores are negated for sklearn.
  ranked <auc> <nact> <ndec> <flags...>
      flags run from best rank to worst, 1 for an active. When the list is
      shorter than nact + ndec, the unseen actives and decoys are given to
      roc_auc_score as one tie below every listed item, which is the straight
      line that closes the curve.
  median <value> <values...>   numpy.median
  se <auc> <nact> <ndec> <value>
      Hanley and McNeil (1982), equation for SE(A), written out here.
"""
import math
import os

import numpy as np
from sklearn.metrics import roc_auc_score

rng = np.random.default_rng(20261124)
lines = []


def fmt(x):
    return repr(float(x))


# Scores on a coarse grid, so that ties between classes are frequent.
for higher, na, nd in [(1, 7, 11), (0, 13, 5), (1, 40, 60), (0, 1, 1), (1, 25, 25)]:
    act = rng.integers(0, 12, size=na) / 4.0 + 0.5
    dec = rng.integers(0, 10, size=nd) / 4.0
    y = np.r_[np.ones(na), np.zeros(nd)]
    s = np.r_[act, dec]
    auc = roc_auc_score(y, s if higher else -s)
    lines.append(" ".join(["scores", str(higher), fmt(auc), str(na), str(nd)] + [fmt(v) for v in s]))

# Ranked lists, whole and partial.
for total_a, total_d, shown in [(10, 30, 40), (10, 30, 12), (5, 8, 13), (20, 20, 7), (3, 50, 0)]:
    flags = np.r_[np.ones(total_a, dtype=int), np.zeros(total_d, dtype=int)]
    # Actives drawn towards the top so the areas are not all near 1/2.
    keys = rng.random(total_a + total_d) - 0.35 * flags
    order = np.argsort(keys, kind="stable")
    ranked = flags[order]
    y = ranked
    score = np.empty(len(ranked))
    score[:shown] = -np.arange(shown)          # best first
    score[shown:] = -float(shown) - 1.0        # one tie for the unseen tail
    auc = roc_auc_score(y, score)
    lines.append(" ".join(["ranked", fmt(auc), str(total_a), str(total_d)] + [str(v) for v in ranked[:shown]]))

for n in [1, 2, 7, 10, 101]:
    v = rng.normal(size=n)
    lines.append(" ".join(["median", fmt(np.median(v))] + [fmt(x) for x in v]))


def hanley_mcneil(a, na, nd):
    q1 = a / (2.0 - a)
    q2 = 2.0 * a * a / (1.0 + a)
    return math.sqrt((a * (1 - a) + (na - 1) * (q1 - a * a) + (nd - 1) * (q2 - a * a)) / (na * nd))


for a, na, nd in [(0.5, 10, 10), (0.893, 51, 58), (0.75, 3, 200), (0.99, 100, 1000)]:
    lines.append(" ".join(["se", fmt(a), str(na), str(nd), fmt(hanley_mcneil(a, na, nd))]))

with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "auc_refs.txt"), "w") as out:
    out.write("# Written by make_auc_refs.py (scikit-learn roc_auc_score, numpy.median); do not edit.\n")
    out.write("\n".join(lines) + "\n")
