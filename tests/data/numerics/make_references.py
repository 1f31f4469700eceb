#!/usr/bin/python3
"""Reference values for the matrix and minimiser tests, computed
independently of Varimo with numpy and scipy. Run from anywhere:

    /usr/bin/python3 tests/data/numerics/make_references.py

Writes beside this script:
  spd_cases.txt     for random symmetric positive-definite matrices of several
                    sizes: "case n", then lines "a", "l" (numpy.linalg.cholesky),
                    "b", "x" (numpy.linalg.solve), "inv" (numpy.linalg.inv),
                    "logdet" (numpy.linalg.slogdet), "ab" (a @ b2), "trace"
                    (trace of a @ b2), "b2" (a second random matrix), each
                    followed by its values, row-major
  line_minima.txt   "name argmin minimum" of one-dimensional functions on a
                    bounded interval, by scipy.optimize.minimize_scalar
"""
import os

import numpy as np
import scipy
from scipy import optimize

HERE = os.path.dirname(os.path.abspath(__file__))


def fmt(values):
    return " ".join(repr(float(v)) for v in np.ravel(values))


def spd_cases():
    rng = np.random.default_rng(314159)
    with open(os.path.join(HERE, "spd_cases.txt"), "w") as out:
        out.write("# computed by numpy %s (tests/data/numerics/make_references.py)\n" % np.__version__)
        for n in (1, 2, 3, 5, 8, 17, 40):
            m = rng.normal(size=(n, n))
            a = m @ m.T + n * np.eye(n)          # well conditioned SPD
            b = rng.normal(size=n)
            b2 = rng.normal(size=(n, n))
            out.write("case %d\n" % n)
            out.write("a %s\n" % fmt(a))
            out.write("l %s\n" % fmt(np.linalg.cholesky(a)))
            out.write("b %s\n" % fmt(b))
            out.write("x %s\n" % fmt(np.linalg.solve(a, b)))
            out.write("inv %s\n" % fmt(np.linalg.inv(a)))
            out.write("logdet %s\n" % fmt([np.linalg.slogdet(a)[1]]))
            out.write("b2 %s\n" % fmt(b2))
            out.write("ab %s\n" % fmt(a @ b2))
            out.write("trace %s\n" % fmt([np.trace(a @ b2)]))


# One-dimensional functions of the step t; the C++ test defines the same ones.
FUNCTIONS = {
    "shifted_quartic": (lambda t: (t - 2.5) ** 4 + 0.5 * (t - 2.5) ** 2 - 1.0, (0.0, 100.0)),
    "exp_plus_reciprocal": (lambda t: np.exp(t / 3.0) + 4.0 / (t + 0.5), (0.0, 100.0)),
    "cosine_well": (lambda t: -np.cos(t) * np.exp(-0.1 * (t - 3.0) ** 2), (0.0, 6.0)),
}


def line_minima():
    with open(os.path.join(HERE, "line_minima.txt"), "w") as out:
        out.write("# computed by scipy %s minimize_scalar(method='bounded', xatol=1e-12)"
                  " (tests/data/numerics/make_references.py)\n" % scipy.__version__)
        for name, (f, bounds) in FUNCTIONS.items():
            r = optimize.minimize_scalar(f, bounds=bounds, method="bounded", options={"xatol": 1e-12})
            out.write("%s %r %r\n" % (name, float(r.x), float(r.fun)))


if __name__ == "__main__":
    spd_cases()
    line_minima()
