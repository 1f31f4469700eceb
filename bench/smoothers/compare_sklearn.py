#!/usr/bin/python3
"""Fit and 100 predictions of a Gaussian process on a 2000 x 2000 similarity
matrix: ours (varimo_smoothers_bench) beside three peers on the same data,
all in one run:

  fixed      scikit-learn's GaussianProcessRegressor given our fitted signal
             and noise variances, no optimiser: one Cholesky factorisation,
             less work than our fit, which estimates both variances;
  estimated  the same regressor estimating both variances by maximising the
             marginal likelihood (ConstantKernel * precomputed + WhiteKernel,
             L-BFGS-B, no restarts): the same model and task as ours;
  numpy      our own algorithm written with numpy and scipy on the peer's
             LAPACK (scipy.linalg.eigh, then the bracketed search of the noise
             ratio on the profile likelihood).

The kernel matrix is handed to scikit-learn precomputed (a kernel class that
looks the rows up by index); the response is centred, as our fit centres it.
The peers run in a process of their own on OpenBLAS (and with
--reference-blas once more on Debian's reference BLAS, for a second column);
the script prints the BLAS of each side.
The script prints the fitted variances of each and the times with ours /
peer. It exits with status 1 when the numpy peer's variances differ from ours
by more than 1e-8 relative, or scikit-learn's estimates by more than 2% (our
search brackets the noise ratio to 0.001 absolute, about 0.6% here).

    /usr/bin/python3 bench/smoothers/compare_sklearn.py build/bench-release/bench/smoothers/varimo_smoothers_bench
                     [--reference-blas]
"""
import argparse
import json
import os
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas  # noqa: E402

import numpy as np
import scipy.linalg
from sklearn.gaussian_process import GaussianProcessRegressor
from sklearn.gaussian_process.kernels import ConstantKernel, Kernel, WhiteKernel

N = 2000
QUERIES = 100
C = 1.0000000000000022


class Precomputed(Kernel):
    """Rows and columns of a fixed matrix, chosen by the index in X[:, 0]."""

    def __init__(self, matrix):
        self.matrix = matrix

    def __call__(self, X, Y=None, eval_gradient=False):
        i = X[:, 0].astype(int)
        j = i if Y is None else Y[:, 0].astype(int)
        k = self.matrix[np.ix_(i, j)]
        return (k, np.empty((len(i), len(i), 0))) if eval_gradient else k

    def diag(self, X):
        i = X[:, 0].astype(int)
        return self.matrix[i, i]

    def is_stationary(self):
        return False


def make_data():
    rng = np.random.default_rng(7)
    x = rng.uniform(0.0, 20.0, N)
    y = np.sin(x) + rng.normal(0.0, 0.1, N)
    allx = np.concatenate([x, 0.2 * np.arange(QUERIES)])
    s = np.exp(-np.abs(allx[:, None] - allx[None, :]) / 2.0)
    return x, y, np.exp(-5.0 * (C - s))  # the exponential similarity kernel at 5


def timed(fit, predict):
    start = time.perf_counter()
    fit()
    middle = time.perf_counter()
    predict()
    return middle - start, time.perf_counter() - middle


def sklearn_peer(k, y, signal=None, noise=None):
    """scikit-learn given the variances ("fixed") or estimating them;
    returns (signal, noise, fit seconds, predict seconds)."""
    if signal is None:
        kernel = ConstantKernel(1.0, (1e-6, 1e6)) * Precomputed(k) + WhiteKernel(0.05, (1e-10, 1e3))
    else:
        kernel = ConstantKernel(signal, "fixed") * Precomputed(k) + WhiteKernel(noise, "fixed")
    model = GaussianProcessRegressor(kernel=kernel, alpha=1e-10 if kernel.n_dims else 0.0,
                                     optimizer="fmin_l_bfgs_b" if kernel.n_dims else None)
    train = np.arange(N, dtype=float).reshape(-1, 1)
    queries = np.arange(N, N + QUERIES, dtype=float).reshape(-1, 1)
    fit, predict = timed(lambda: model.fit(train, y), lambda: model.predict(queries, return_std=True))
    if signal is None:
        params = model.kernel_.get_params()
        signal, noise = params["k1__k1__constant_value"], params["k2__noise_level"]
    return signal, noise, fit, predict


def numpy_peer(k, y):
    """Our fit and prediction, step for step, in numpy."""
    kernel = k[:N, :N]
    state = {}

    def fit():
        e, u = scipy.linalg.eigh(kernel)
        e = np.maximum(e, 0.0)
        z = u.T @ y
        z2 = z * z

        def gradient(theta):
            a = np.mean(z2 / (e + theta))
            b = np.mean(z2 / (e + theta) ** 2)
            c = np.mean(1.0 / (e + theta))
            return 0.5 * N * (b / a - c), a

        t = 0.05
        g, sigma = gradient(t)
        if g < 0:
            lo, hi = t, 2 * t
            for _ in range(100):
                if g >= 0:
                    break
                t /= 2
                g, sigma = gradient(t)
                lo, hi = t, 2 * t
        else:
            lo, hi = t / 2, t
            for _ in range(100):
                if g <= 0:
                    break
                t *= 2
                g, sigma = gradient(t)
                lo, hi = t / 2, t
        for _ in range(100):
            if hi - lo <= 0.001:
                break
            middle = 0.5 * (lo + hi)
            g, sigma = gradient(middle)
            if g > 0:
                lo = middle
            else:
                hi = middle
        state.update(u=u, e=e, z=z, signal=sigma, noise=0.5 * (lo + hi) * sigma)

    def predict():
        kq = state["signal"] * k[:N, N:]
        t = state["u"].T @ kq
        d = (state["signal"] * state["e"] + state["noise"])[:, None]
        mean = (t * state["z"][:, None] / d).sum(axis=0)
        sd = np.sqrt(state["signal"] + state["noise"] - (t * t / d).sum(axis=0))
        return mean, sd

    fit_s, predict_s = timed(fit, predict)
    return state["signal"], state["noise"], fit_s, predict_s


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program", help="path to the built varimo_smoothers_bench")
    parser.add_argument("--reference-blas", action="store_true")
    args = parser.parse_args()
    program = args.program
    x, y, k = make_data()
    with tempfile.TemporaryDirectory() as tmp:
        x.tofile(os.path.join(tmp, "x.f64"))
        y.tofile(os.path.join(tmp, "y.f64"))
        out = subprocess.run([program, "--gp_data=" + tmp, "--benchmark_format=json"],
                             check=True, capture_output=True, text=True).stdout
    report = json.loads(out)
    runs = {b["run_name"]: b for b in report["benchmarks"]}
    fit_run = runs["BM_GaussianProcessFit2000/iterations:3"]
    ours_fit = fit_run["real_time"] / 1e3
    ours_single = runs["BM_GaussianProcessPredict100"]["real_time"] / 1e3
    ours_predict = runs["BM_GaussianProcessPredictBatch100"]["real_time"] / 1e3
    signal, noise = fit_run["signal_variance"], fit_run["noise_variance"]
    yc = y - y.mean()

    rows = [("ours", signal, noise, ours_fit, ours_predict)]
    peers = {"peers": PeerProcess("openblas")}
    if args.reference_blas:
        peers["peers, reference"] = PeerProcess("reference")
    print_blas(report["context"].get("dense_backend", "not reported"), peers)
    for label, process in peers.items():
        suffix = "" if label == "peers" else " (ref)"
        rows.append(("fixed" + suffix, *process.call(sklearn_peer, k, yc, signal, noise)))
        rows.append(("estimated" + suffix, *process.call(sklearn_peer, k, yc)))
        rows.append(("numpy" + suffix, *process.call(numpy_peer, k, yc)))
        process.close()

    print("%-16s %12s %12s %9s %9s %10s %10s" % ("", "signal var", "noise var", "fit s", "predict s",
                                                 "ours/fit", "ours/pred"))
    for name, s, t, f, p in rows:
        print("%-16s %12.6g %12.6g %9.3f %9.3f %10.2f %10.2f" % (name, s, t, f, p, ours_fit / f, ours_predict / p))
    print("ours, the 100 predictions one call each: %.3f s (%.1f x the one call of all)" %
          (ours_single, ours_single / ours_predict))
    tolerance = {"numpy": 1e-8, "estimated": 2e-2, "numpy (ref)": 1e-8, "estimated (ref)": 2e-2}
    bad = [name for name, s, t, _, _ in rows if name in tolerance and
           not (np.isclose(s, signal, rtol=tolerance[name], atol=0) and np.isclose(t, noise, rtol=tolerance[name], atol=0))]
    if bad:
        print("fitted variances differ from ours: " + ", ".join(bad))
        sys.exit(1)


if __name__ == "__main__":
    main()
