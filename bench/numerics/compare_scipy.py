#!/usr/bin/python3
"""One Cholesky factorisation and one symmetric eigen decomposition with
eigenvectors, ours (varimo_dense_bench, the path chosen by order: LAPACK on
OpenBLAS at these sizes) beside scipy on OpenBLAS, at n = 2000 and 4000, in
one run, ours and scipy's runs alternating.

    /usr/bin/python3 bench/numerics/compare_scipy.py BUILD/bench/numerics/varimo_dense_bench [--repeats R]
                     [--reference-blas]

The matrix, the same on both sides: x_i = (sin 1.1 i, cos 0.7 i, sin 0.3 i),
C_ij = exp(-|x_i - x_j|^2) + 0.1 [i = j]. Timed, the median of R runs
(default 5) each:
  ours   ZqCholeskyFactor::Compute (the copy into the packed storage
         included); ZqSymmetricEigenInPlace on a copy of C
  peer   scipy.linalg.cholesky(C, check_finite=False) (a copy of C, then
         dpotrf); scipy.linalg.eigh(C, driver="evd", check_finite=False)
The target is ours / scipy <= 1.3. With --reference-blas scipy runs a
third time on Debian's reference BLAS and LAPACK, as a second column.
"""
import argparse
import os
import statistics
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, benchmark_json, our_blas, print_blas, timed  # noqa: E402

import numpy as np

SIZES = (2000, 4000)
TARGET = 1.3


def covariance(n):
    t = np.arange(n, dtype=float)
    x = np.column_stack([np.sin(1.1 * t), np.cos(0.7 * t), np.sin(0.3 * t)])
    c = np.exp(-((x[:, None, :] - x[None, :, :]) ** 2).sum(axis=2))
    c[np.diag_indices(n)] += 0.1
    return np.asfortranarray(c)


def scipy_times(n, repeats):
    """Median seconds of scipy's Cholesky and eigh on the matrix of order n."""
    import scipy.linalg
    c = covariance(n)
    return {"cholesky": timed(lambda: scipy.linalg.cholesky(c, check_finite=False), repeats),
            "eigh": timed(lambda: scipy.linalg.eigh(c, driver="evd", check_finite=False), repeats)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program", help="path to the built varimo_dense_bench")
    parser.add_argument("--repeats", type=int, default=5)
    parser.add_argument("--reference-blas", action="store_true")
    args = parser.parse_args()

    peers = {"scipy": PeerProcess("openblas")}
    if args.reference_blas:
        peers["scipy, reference BLAS"] = PeerProcess("reference")
    # Ours and scipy's runs alternate, so that the load of a shared machine,
    # which drifts over minutes, weighs on both alike.
    ours, theirs, reference, blas = {}, {}, {}, None
    for n in SIZES:
        for _ in range(args.repeats):
            report = benchmark_json(args.program, "--benchmark_filter=BM_(Cholesky|SymmetricEigen)/path:0/n:%d/" % n)
            blas = our_blas(report)
            for b in report["benchmarks"]:
                ours.setdefault((b["run_name"].split("/")[0], n), []).append(b["real_time"] / 1e3)
            for name, seconds in peers["scipy"].call(scipy_times, n, 1).items():
                theirs.setdefault((name, n), []).append(seconds)
        if args.reference_blas:
            reference[n] = peers["scipy, reference BLAS"].call(scipy_times, n, 1)
    print_blas(blas, peers)
    for process in peers.values():
        process.close()

    print("seconds, medians of %d, and ours / scipy: median (range of the runs)" % args.repeats)
    header = "  %-22s %6s %9s %9s %20s" % ("", "n", "ours", "scipy", "ours/scipy")
    if args.reference_blas:
        header += " %12s" % "scipy (ref)"
    print(header)
    met = True
    for ours_name, peer_name, label in (("BM_Cholesky", "cholesky", "Cholesky"),
                                        ("BM_SymmetricEigen", "eigh", "eigen (evd)")):
        for n in SIZES:
            mine, peer = ours[(ours_name, n)], theirs[(peer_name, n)]
            ratios = [a / b for a, b in zip(mine, peer)]
            ratio = statistics.median(ratios)
            met = met and ratio <= TARGET
            line = "  %-22s %6d %9.3f %9.3f %8.2f (%.2f-%.2f)" % (label, n, statistics.median(mine),
                                                               statistics.median(peer), ratio, min(ratios),
                                                               max(ratios))
            if args.reference_blas:
                line += " %12.3f" % reference[n][peer_name]
            print(line)
    print("target ours / scipy <= %.1f: %s" % (TARGET, "met" if met else "MISSED"))


if __name__ == "__main__":
    main()
