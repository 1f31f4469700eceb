#!/usr/bin/python3
"""Fit and 100 predictions of a Gaussian process on a 2000 x 2000 similarity
matrix: ours (varimo_smoothers_bench) beside scikit-learn's
GaussianProcessRegressor on the same kind of data, the kernel matrix given
precomputed (a kernel class that looks the rows up by index) and the noise
as alpha, with no optimiser: scikit-learn then does one Cholesky
factorisation where ours does an eigen decomposition and a search of the
noise ratio.

    /usr/bin/python3 bench/smoothers/compare_sklearn.py build/bench-release/bench/smoothers/varimo_smoothers_bench
"""
import json
import subprocess
import sys
import time

import numpy as np
from sklearn.gaussian_process import GaussianProcessRegressor
from sklearn.gaussian_process.kernels import Kernel

N = 2000
C = 1.0000000000000022


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


def sklearn_seconds():
    rng = np.random.default_rng(7)
    x = rng.uniform(0.0, 20.0, N)
    q = 0.2 * np.arange(100)
    allx = np.concatenate([x, q])
    s = np.exp(-np.abs(allx[:, None] - allx[None, :]) / 2.0)
    k = np.exp(-5.0 * (C - s))  # the exponential similarity kernel at 5
    y = np.sin(x) + rng.normal(0.0, 0.1, N)
    model = GaussianProcessRegressor(kernel=Precomputed(k), alpha=0.05, optimizer=None)
    start = time.perf_counter()
    model.fit(np.arange(N, dtype=float).reshape(-1, 1), y)
    fit = time.perf_counter() - start
    start = time.perf_counter()
    model.predict(np.arange(N, N + 100, dtype=float).reshape(-1, 1), return_std=True)
    return fit, time.perf_counter() - start


def main(program):
    out = subprocess.run([program, "--benchmark_format=json"], check=True, capture_output=True, text=True).stdout
    ours = {b["run_name"]: b["real_time"] / 1e3 for b in json.loads(out)["benchmarks"]}
    fit, predict = sklearn_seconds()
    a = ours["BM_GaussianProcessFit2000/iterations:3"]
    b = ours["BM_GaussianProcessPredict100"]
    print("fit      ours %7.3f s  scikit-learn %7.3f s  ratio %.1f" % (a, fit, a / fit))
    print("predict  ours %7.3f s  scikit-learn %7.3f s  ratio %.1f" % (b, predict, b / predict))


if __name__ == "__main__":
    main(sys.argv[1])
