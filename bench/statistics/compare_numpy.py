#!/usr/bin/python3
"""Time of a bootstrap of the mean, 10^4 resamples of 10^4 values: ours
(varimo_statistics_bench) beside numpy's vectorised resampling of the same
size in the same run (indices by Generator.integers, gathered and averaged
along rows, 1000 resamples at a time to keep memory at some 80 MB), numpy
in a process on OpenBLAS. Prints the BLAS of each side.

    /usr/bin/python3 bench/statistics/compare_numpy.py build/bench/bench/statistics/varimo_statistics_bench
"""
import json
import os
import subprocess
import sys
import timeit

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas  # noqa: E402

import numpy as np

N_VALUES = 10_000
N_RESAMPLES = 10_000
CHUNK = 1_000


def numpy_bootstrap(x, rng):
    means = np.empty(N_RESAMPLES)
    for start in range(0, N_RESAMPLES, CHUNK):
        idx = rng.integers(0, N_VALUES, size=(CHUNK, N_VALUES))
        means[start:start + CHUNK] = x[idx].mean(axis=1)
    return means


def ours(program):
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_repetitions=3",
                          "--benchmark_report_aggregates_only=true"],
                         check=True, capture_output=True, text=True).stdout
    report = json.loads(out)
    for b in report["benchmarks"]:
        if b.get("aggregate_name") == "median":
            return b["real_time"] / 1e3, report["context"].get("dense_backend", "not reported")
    raise RuntimeError("no median in the benchmark output")


def numpy_seconds():
    """The best of three numpy bootstraps, in the peer's process."""
    x = np.random.default_rng(1).normal(size=N_VALUES)
    return min(timeit.repeat(lambda: numpy_bootstrap(x, np.random.default_rng(42)), number=1, repeat=3))


def main(program):
    mine, blas = ours(program)
    with PeerProcess("openblas") as peer:
        print_blas(blas, {"numpy": peer})
        theirs = peer.call(numpy_seconds)
    print("bootstrap of the mean, %d resamples of %d values" % (N_RESAMPLES, N_VALUES))
    print("%-8s %10s" % ("", "seconds"))
    print("%-8s %10.3f" % ("ours", mine))
    print("%-8s %10.3f" % ("numpy", theirs))
    print("ratio numpy/ours %.2f" % (theirs / mine))


if __name__ == "__main__":
    main(sys.argv[1])
