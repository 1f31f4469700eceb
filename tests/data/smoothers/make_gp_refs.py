#!/usr/bin/python3
"""Reference fits of the Gaussian process and the krige on a similarity
matrix, computed with numpy and scipy for tests/smoothers/gaussian_process_test.cc.

Run with /usr/bin/python3; writes gp_refs.txt beside this script:
  sim ...        packed lower triangle of S_ij = exp(-|x_i - x_j| / 2) of 12
                 seeded points
  y ...          responses
  new k s...     similarities of new item k to the 12 points
  gp sigma2 tau2 theta_ml   the variances found by the library's search
                 (bracket from 0.05 by halving or doubling, then bisection
                 to 0.001), written again here in numpy, and the
                 maximum of the profile likelihood by scipy's bounded scalar
                 minimiser on the same objective
  gppred k f e   prediction and error of new item k with those variances, by
                 scikit-learn's GaussianProcessRegressor (kernel
                 sigma2 * precomputed K + tau2 white noise, no optimiser, on
                 the centred response), checked here against the direct
                 mean + k* (sigma2 K + tau2 I)^-1 (y - mean) and
                 sqrt(sigma2 + tau2 - k*' (sigma2 K + tau2 I)^-1 k*)
  sk k f e       simple kriging, nugget 0.1, sill 1.5
  ok k f         ordinary kriging, same parameters (bordered system)
The kernel is the Gaussian similarity kernel exp(-(2 (C - s))^2), C one plus
ten ulps.
"""
import os
import struct

import numpy as np
from scipy import optimize
from sklearn.gaussian_process import GaussianProcessRegressor
from sklearn.gaussian_process.kernels import ConstantKernel, Kernel, WhiteKernel

C = struct.unpack(">d", bytes.fromhex("3FF000000000000A"))[0]
P = 2.0


def K(s):
    return np.exp(-(P * (C - s)) ** 2)


class Precomputed(Kernel):
    """Rows and columns of a fixed matrix, chosen by the index in X[:, 0]."""

    def __init__(self, matrix):
        self.matrix = matrix

    def __call__(self, X, Y=None, eval_gradient=False):
        i = X[:, 0].astype(int)
        j = i if Y is None else Y[:, 0].astype(int)
        return self.matrix[np.ix_(i, j)]

    def diag(self, X):
        i = X[:, 0].astype(int)
        return self.matrix[i, i]

    def is_stationary(self):
        return False


def sklearn_predictions(x, new_x, y, sigma2, tau2):
    """Means and standard deviations of the new items, the response centred."""
    allx = np.concatenate([x, new_x])
    kernel = ConstantKernel(sigma2, "fixed") * Precomputed(K(np.exp(-np.abs(allx[:, None] - allx[None, :]) / 2.0)))
    model = GaussianProcessRegressor(kernel=kernel + WhiteKernel(tau2, "fixed"), alpha=0.0, optimizer=None)
    n = len(x)
    model.fit(np.arange(n, dtype=float).reshape(-1, 1), y - y.mean())
    f, sd = model.predict(np.arange(n, n + len(new_x), dtype=float).reshape(-1, 1), return_std=True)
    return f + y.mean(), sd


def main():
    rng = np.random.default_rng(12)
    x = np.round(rng.uniform(0.0, 6.0, 12), 3)
    y = np.round(np.cos(x) + rng.normal(0.0, 0.2, 12), 3)
    S = np.exp(-np.abs(x[:, None] - x[None, :]) / 2.0)
    new_x = [0.5, 2.9, 5.5]
    news = [np.exp(-np.abs(q - x) / 2.0) for q in new_x]
    n = len(x)
    M = K(S)
    e, U = np.linalg.eigh(M)
    e = np.maximum(e, 0.0)
    mean = y.mean()
    z = U.T @ (y - mean)

    def grad(theta):
        d = e + theta
        a = np.sum(z * z / d) / n
        b = np.sum(z * z / d ** 2) / n
        c = np.sum(1.0 / d) / n
        return (n / 2.0) * (b / a - c), a

    t = 0.05
    g0, sig = grad(t)
    if g0 < 0:
        for _ in range(100):
            g, sig = grad(t)
            if g >= 0:
                break
            t *= 0.5
        lo, hi = t, 2 * t
    else:
        for _ in range(100):
            g, sig = grad(t)
            if g <= 0:
                break
            t *= 2
        lo, hi = t / 2, t
    for _ in range(100):
        if hi - lo <= 0.001:
            break
        mid = 0.5 * (lo + hi)
        g, sig = grad(mid)
        if g > 0:
            lo = mid
        else:
            hi = mid
    theta = 0.5 * (lo + hi)
    sigma2, tau2 = sig, theta * sig
    neg_profile = lambda th: 0.5 * n * np.log(np.sum(z * z / (e + th)) / n) + 0.5 * np.sum(np.log(e + th))
    theta_ml = optimize.minimize_scalar(neg_profile, bounds=(1e-6, 100.0), method="bounded",
                                        options={"xatol": 1e-10}).x
    lines = ["# written by make_gp_refs.py with numpy %s" % np.__version__,
             "sim " + " ".join(repr(float(S[i, j])) for i in range(n) for j in range(i + 1)),
             "y " + " ".join(repr(float(v)) for v in y)]
    for k, s in enumerate(news):
        lines.append("new %d %s" % (k, " ".join(repr(float(v)) for v in s)))
    lines.append("gp %r %r %r" % (float(sigma2), float(tau2), float(theta_ml)))
    G = sigma2 * M + tau2 * np.eye(n)
    sk_f, sk_sd = sklearn_predictions(x, np.array(new_x), y, sigma2, tau2)
    for k, s in enumerate(news):
        ks = sigma2 * K(s)
        f = mean + ks @ np.linalg.solve(G, y - mean)
        err = np.sqrt(sigma2 + tau2 - ks @ np.linalg.solve(G, ks))
        assert np.isclose(sk_f[k], f, rtol=1e-10) and np.isclose(sk_sd[k], err, rtol=1e-10)
        lines.append("gppred %d %r %r" % (k, float(sk_f[k]), float(sk_sd[k])))
    nugget, sill = 0.1, 1.5
    Cm = (sill - nugget) * M + nugget * np.eye(n)
    B = np.ones((n + 1, n + 1))
    B[:n, :n] = Cm
    B[n, n] = 0.0
    sol = np.linalg.solve(B, np.append(y, 0.0))
    for k, s in enumerate(news):
        c = (sill - nugget) * K(s)
        f = mean + c @ np.linalg.solve(Cm, y - mean)
        err = np.sqrt(sill - c @ np.linalg.solve(Cm, c))
        lines.append("sk %d %r %r" % (k, float(f), float(err)))
        lines.append("ok %d %r" % (k, float(np.append(c, 1.0) @ sol)))
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "gp_refs.txt"), "w") as f:
        f.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
