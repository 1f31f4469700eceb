#!/usr/bin/python3
"""Reference fits of the smoothers on a predictor column, computed with
numpy for tests/smoothers/pred_columns_smoother_test.cc.

Run with /usr/bin/python3; writes smoother_refs.txt beside this script:
  x ...            the predictor (20 seeded values)
  y ...            the response, y = 1.5 + 0.8 x + noise
  ols A B          numpy.linalg.lstsq on the design [1, x]: intercept A,
                   slope B
  kernel h q f     Nadaraya-Watson with the Gaussian kernel
                   0.3989422804014327 exp(-u^2 / 2), u = (q - x_i) h, each
                   weight plus 2^-23, at the query q
  loo h i f        the same at x_i without row i
"""
import os

import numpy as np

FLOOR = 1.1920928955078125e-7


def kernel_fit(x, y, q, h, leave=None):
    keep = np.ones(len(x), bool)
    if leave is not None:
        keep[leave] = False
    u = (q - x[keep]) * h
    w = 0.3989422804014327 * np.exp(-0.5 * u * u) + FLOOR
    return float(np.sum(w * y[keep]) / np.sum(w))


def main():
    rng = np.random.default_rng(8)
    x = np.round(rng.uniform(0.0, 10.0, 20), 3)
    y = np.round(1.5 + 0.8 * x + rng.normal(0.0, 0.5, 20), 3)
    (intercept, slope), *_ = np.linalg.lstsq(np.column_stack([np.ones_like(x), x]), y, rcond=None)
    lines = ["# written by make_smoother_refs.py with numpy %s" % np.__version__,
             "x " + " ".join(repr(float(v)) for v in x),
             "y " + " ".join(repr(float(v)) for v in y),
             "ols %r %r" % (float(intercept), float(slope))]
    for h in (0.5, 2.0):
        for q in (0.0, 2.5, 5.0, 7.75, 10.0):
            lines.append("kernel %r %r %r" % (h, q, kernel_fit(x, y, q, h)))
        for i in range(0, 20, 4):
            lines.append("loo %r %d %r" % (h, i, kernel_fit(x, y, x[i], h, leave=i)))
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "smoother_refs.txt"), "w") as f:
        f.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
