#!/usr/bin/python3
"""Reference predictions of kernel regression on a similarity matrix,
computed with numpy for tests/smoothers/gaussian_process_test.cc.

Run with /usr/bin/python3; writes similarity_refs.txt beside this script:
  sim ...          the packed lower triangle of S, row by row, where
                   S_ij = exp(-|x_i - x_j|) of 10 seeded points x
  y ...            the responses
  train p i f w e  the Gaussian similarity kernel exp(-(p (C - s))^2), C one
                   plus ten ulps, each weight plus 2^-23: prediction f,
                   average weight w and error sqrt|E_w[y^2] - f^2| of row i
                   from all ten rows
  best p e         the grid p = 1, 2, ..., 10 searched for the least root
                   mean square error of rows 7 to 9 predicted from rows 0
                   to 6; the first of equal errors wins
"""
import os
import struct

import numpy as np

C = struct.unpack(">d", bytes.fromhex("3FF000000000000A"))[0]
FLOOR = 1.1920928955078125e-7


def predict(S, y, rows, col, p):
    s = S[rows, col]
    w = np.exp(-(p * (C - s)) ** 2) + FLOOR
    f = np.sum(w * y[rows]) / np.sum(w)
    return f, np.sum(w) / len(rows), np.sqrt(abs(np.sum(w * y[rows] ** 2) / np.sum(w) - f * f))


def main():
    rng = np.random.default_rng(3)
    x = np.round(rng.uniform(0.0, 4.0, 10), 3)
    y = np.round(2.0 * np.sin(x) + rng.normal(0.0, 0.1, 10), 3)
    S = np.exp(-np.abs(x[:, None] - x[None, :]))
    packed = [S[i, j] for i in range(10) for j in range(i + 1)]
    lines = ["# written by make_similarity_refs.py with numpy %s" % np.__version__,
             "sim " + " ".join(repr(float(v)) for v in packed),
             "y " + " ".join(repr(float(v)) for v in y)]
    everything = list(range(10))
    for p in (2.0, 5.0):
        for i in range(10):
            f, w, e = predict(S, y, everything, i, p)
            lines.append("train %r %d %r %r %r" % (p, i, f, w, e))
    best, best_p = None, None
    for p in np.arange(1.0, 11.0):
        preds = np.array([predict(S, y, list(range(7)), t, p)[0] for t in (7, 8, 9)])
        err = np.sqrt(np.mean((y[7:] - preds) ** 2))
        if best is None or err < best:
            best, best_p = err, p
    lines.append("best %r %r" % (float(best_p), float(best)))
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "similarity_refs.txt"), "w") as f:
        f.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
