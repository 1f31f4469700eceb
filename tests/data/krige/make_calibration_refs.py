#!/usr/bin/python3
"""Reference calibration figures of held-out predictions, for
tests/krige/calibration_test.cc, computed independently with numpy and scipy.

The data: 40 seeded measured values y, predictions m and variances v whose
errors are 1.3 times wider than their sd claims, with errors growing with sd.
From them:
  coverage at level L: the fraction with |y - m| <= z sqrt(v), z = norm.ppf((1 + L) / 2)
  miscalibration area: mean |coverage(L) - L| over L = 0.05, 0.10, ..., 0.95
  spearman: scipy.stats.spearmanr(|y - m|, sqrt(v))
  nlpd: mean of -norm.logpdf(y, m, sqrt(v))
  conformal q(alpha): the ceil((n + 1)(1 - alpha))-th smallest |y - m| / sqrt(v)
  variance scale: mean of (y - m)^2 / v

Run with /usr/bin/python3; writes calibration_refs.txt beside this script.
Lines: "row y m v", then "figure name value".
"""
import math
import os

import numpy as np
from scipy import stats


def main():
    rng = np.random.default_rng(29)
    n = 40
    m = rng.normal(6.0, 1.0, n)
    sd = rng.uniform(0.2, 1.0, n)
    y = m + 1.3 * sd * rng.standard_normal(n)
    v = sd * sd
    err = np.abs(y - m)

    def coverage(level):
        return float(np.mean(err <= stats.norm.ppf(0.5 + level / 2) * sd))

    figures = {f"coverage{int(round(100 * L))}": coverage(L) for L in (0.5, 0.8, 0.9, 0.95)}
    levels = [0.05 * k for k in range(1, 20)]
    figures["area"] = float(np.mean([abs(coverage(L) - L) for L in levels]))
    figures["spearman"] = float(stats.spearmanr(err, sd).correlation)
    figures["nlpd"] = float(np.mean(-stats.norm.logpdf(y, m, sd)))
    scores = np.sort(err / sd)
    for alpha in (0.1, 0.2, 0.5):
        figures[f"q{int(round(100 * alpha))}"] = float(scores[math.ceil((n + 1) * (1 - alpha) - 1e-9) - 1])
    figures["scale"] = float(np.mean(err**2 / v))

    lines = [__doc__.strip().replace("\n", "\n# ").join(["# ", ""])]
    lines += [f"row {a!r} {b!r} {c!r}" for a, b, c in zip(y, m, v)]
    lines += [f"figure {k} {val!r}" for k, val in figures.items()]
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "calibration_refs.txt")
    with open(path, "w") as out:
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
