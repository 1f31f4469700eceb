#!/usr/bin/python3
"""Time of 100 variational iterations of a three-component Gaussian mixture
on 10^4 and 10^5 points: ours (varimo_mixture_bench) beside scikit-learn's
BayesianGaussianMixture (Dirichlet weights, full covariances of one
dimension, max_iter=100 with a tolerance that never stops it early, one
initialisation from random data points) on draws of the same law, in a
process on OpenBLAS. Prints the BLAS of each side.

    /usr/bin/python3 bench/mixture/compare_sklearn.py build/bench-release/bench/mixture/varimo_mixture_bench
"""
import json
import os
import subprocess
import sys
import time
import warnings

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas  # noqa: E402

import numpy as np
from sklearn.exceptions import ConvergenceWarning
from sklearn.mixture import BayesianGaussianMixture


def draws(n):
    rng = np.random.default_rng(42)
    which = rng.choice(3, size=n, p=[0.3, 0.5, 0.2])
    return rng.normal(np.array([-5.0, 0.0, 6.0])[which], np.array([1.0, 0.5, 1.0])[which]).reshape(-1, 1)


def sklearn_ms(n):
    x = draws(n)
    best = float("inf")
    for _ in range(3):
        model = BayesianGaussianMixture(n_components=3, covariance_type="full", max_iter=100, tol=1e-300,
                                        weight_concentration_prior_type="dirichlet_distribution",
                                        weight_concentration_prior=1.0 / 3, init_params="random_from_data",
                                        random_state=0)
        start = time.perf_counter()
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", ConvergenceWarning)
            model.fit(x)
        best = min(best, time.perf_counter() - start)
    return best * 1e3


def main(program):
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_repetitions=3",
                          "--benchmark_report_aggregates_only=true"],
                         check=True, capture_output=True, text=True).stdout
    report = json.loads(out)
    ours = {}
    for b in report["benchmarks"]:
        if b.get("aggregate_name") == "median":
            ours[int(b["run_name"].split("/")[1])] = b["real_time"]
    with PeerProcess("openblas") as peer:
        print_blas(report["context"].get("dense_backend", "not reported"), {"scikit-learn": peer})
        for n in (10000, 100000):
            theirs = peer.call(sklearn_ms, n)
            print("n=%-7d ours %9.1f ms  scikit-learn %9.1f ms  ratio %.2f" % (n, ours[n], theirs, ours[n] / theirs))


if __name__ == "__main__":
    main(sys.argv[1])
