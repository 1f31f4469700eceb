#!/usr/bin/python3
"""Reference expected improvement and probability of improvement, for
tests/krige/batch_selection_test.cc, computed independently with mpmath at 40
digits from their definitions for Y ~ N(mean, sd^2):
  maximizing  z = (mean - best - xi) / sd,  minimizing  z = (best - xi - mean) / sd
  EI = sd (z Phi(z) + phi(z)),  PI = Phi(z)
The cases run from z = 30 to z = -37, where the two terms of EI cancel in
double precision and only the tail formula keeps its digits.

Run with /usr/bin/python3; writes acquisition_refs.txt beside this script.
Lines: "mean sd best xi minimize ei pi".
"""
import os

import mpmath as mp

mp.mp.dps = 40

CASES = [  # mean, sd, best, xi, minimize
    (1.0, 0.5, 0.8, 0.0, 0),
    (1.0, 0.5, 0.8, 0.1, 1),
    (0.0, 1.0, 0.0, 0.0, 0),
    (5.0, 2.0, 1.0, 0.5, 1),
    (3.0, 0.1, 0.0, 0.0, 0),
    (-10.0, 0.5, 5.0, 0.0, 0),
    (0.0, 1.0, 37.0, 0.0, 0),
    (7.25, 0.3, 6.5, 0.05, 0),
]


def main():
    lines = [__doc__.strip().replace("\n", "\n# ").join(["# ", ""])]
    for mean, sd, best, xi, minimize in CASES:
        gain = (mp.mpf(best) - xi - mean) if minimize else (mp.mpf(mean) - best - xi)
        z = gain / sd
        cdf = mp.ncdf(z)
        ei = sd * (z * cdf + mp.npdf(z))
        lines.append(f"{mean!r} {sd!r} {best!r} {xi!r} {minimize} {mp.nstr(ei, 17)} {mp.nstr(cdf, 17)}")
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "acquisition_refs.txt")
    with open(path, "w") as out:
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
