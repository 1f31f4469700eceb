#!/usr/bin/python3
"""Partial least squares and logistic regression beside scikit-learn, on the
same data in one run.

    /usr/bin/python3 bench/latent/compare_sklearn.py BUILD/bench/latent/varimo_latent_bench [--reference-blas]

Data (seeded, written to a temporary folder for both sides):
  PLS    X 1000 x 200 = 20 hidden factors times random loadings + 0.5 noise,
         y = the sum of the first 5 factors + noise.
  logit  X 100000 x 20, a column of ones and 19 standard normals; labels +1
         with probability 1 / (1 + exp(-x.b)), b_j = (0.1 j - 1) / 2.
Timed (median of 3 runs each):
  ours   ZqPartialLeastSquareRegression: NIPALS to all 200 latent vectors,
         then Predict(10); ZqBinaryLinearRegression::MaximizeLogLikelihood
         (Newton, tolerance 1e-10, at most 50 iterations), its per-iteration
         report sent to /dev/null.
  peer   PLSRegression(n_components=200, scale=True).fit;
         LogisticRegression(penalty=None, fit_intercept=False) with the
         newton-cg and lbfgs solvers, tol 1e-10; in a process on OpenBLAS
         (and with --reference-blas on Debian's reference BLAS too, as a
         second column).
Prints the BLAS of each side, the times and ours / peer.
"""
import os
import sys
import tempfile
import warnings

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas, run_benchmark, timed_call  # noqa: E402

import numpy as np
from sklearn.cross_decomposition import PLSRegression
from sklearn.linear_model import LogisticRegression

warnings.simplefilter("ignore")


def make_data():
    rng = np.random.default_rng(14)
    factors = rng.normal(size=(1000, 20))
    x = factors @ rng.normal(size=(20, 200)) + 0.5 * rng.normal(size=(1000, 200))
    y = factors[:, :5].sum(axis=1) + rng.normal(size=1000)
    lx = np.hstack([np.ones((100000, 1)), rng.normal(size=(100000, 19))])
    b = (0.1 * np.arange(20) - 1.0) / 2.0
    ly = np.where(rng.random(100000) < 1.0 / (1.0 + np.exp(-lx @ b)), 1.0, -1.0)
    return x, y, lx, ly


def pls(x, y):
    PLSRegression(n_components=200).fit(x, y)


def logistic(solver, x, labels):
    LogisticRegression(penalty=None, fit_intercept=False, solver=solver, tol=1e-10, max_iter=1000).fit(x, labels)


def main(program, reference_blas):
    x, y, lx, ly = make_data()
    with tempfile.TemporaryDirectory() as tmp:
        for name, a in (("pls_x", x), ("pls_y", y), ("logit_x", lx), ("logit_y", ly)):
            np.ascontiguousarray(a, dtype=np.float64).tofile(os.path.join(tmp, name + ".f64"))
        runs = run_benchmark(program, "latent_data", tmp)
    ours = {name: b["real_time"] / 1e3 for name, b in runs.items()}
    latent = runs["BM_PLSBuildAndPredict"]["latent"]
    labels = (ly + 1) / 2
    peers = {
        "BM_PLSBuildAndPredict": [("PLSRegression(200)", pls, (x, y))],
        "BM_LogisticRegression": [(f"LogisticRegression({s})", logistic, (s, lx, labels))
                                  for s in ("newton-cg", "lbfgs")],
    }
    processes = {"scikit-learn": PeerProcess("openblas")}
    if reference_blas:
        processes["reference"] = PeerProcess("reference")
    print_blas(run_benchmark.last_context.get("dense_backend", "not reported"), processes)
    print("%-24s %10s  %-30s %10s %8s" % ("ours", "s", "peer", "s", "ratio") +
          (" %14s" % "peer, ref BLAS" if reference_blas else ""))
    for name, candidates in peers.items():
        for label, function, arguments in candidates:
            theirs = processes["scikit-learn"].call(timed_call, function, arguments)
            line = "%-24s %10.3f  %-30s %10.3f %8.2f" % (name[3:], ours[name], label, theirs, ours[name] / theirs)
            if reference_blas:
                line += " %14.3f" % processes["reference"].call(timed_call, function, arguments)
            print(line)
    for process in processes.values():
        process.close()
    print("latent vectors found by NIPALS: %d" % latent)


if __name__ == "__main__":
    main(sys.argv[1], "--reference-blas" in sys.argv[2:])
