#!/usr/bin/python3
"""Evaluations per second of the univariate laws' density, CDF and
percentile, ours (varimo_pdf_bench) beside scipy.stats' vectorised calls on
the same laws and the same 1000 points (the 1% to 99% quantiles), scipy in
a process on OpenBLAS. Prints the BLAS of each side.

    /usr/bin/python3 bench/pdf/compare_scipy.py build/bench-release/bench/pdf/varimo_pdf_bench
"""
import json
import os
import subprocess
import sys
import timeit

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas  # noqa: E402

import numpy as np
from scipy import stats

LAWS = [
    ("gauss", stats.norm(loc=1.5, scale=2.0)),
    ("studentst", stats.t(7.0, loc=-2.0, scale=np.sqrt(2.0))),
    ("gamma", stats.gamma(2.5, scale=2.0)),
    ("chisquare", stats.chi2(6.0)),
    ("snedecorsf", stats.f(5.0, 12.0)),
    ("beta", stats.beta(2.0, 3.5)),
    ("gumbel", stats.gumbel_r(loc=1.0, scale=2.0)),
    ("gev", stats.genextreme(-0.1, loc=0.5, scale=1.5)),
]
P = np.linspace(0.01, 0.99, 1000)


def scipy_rate(call):
    number = 20
    seconds = min(timeit.repeat(call, number=number, repeat=5)) / number
    return len(P) / seconds


def scipy_rates():
    """Evaluations per second of each law and operation, in the peer's process."""
    rates = {}
    for name, law in LAWS:
        x = law.ppf(P)
        for kind, call in (("Density", lambda: law.pdf(x)), ("CDF", lambda: law.cdf(x)),
                           ("Percentile", lambda: law.ppf(P))):
            rates[(kind, name)] = scipy_rate(call)
    return rates


def ours(program):
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_repetitions=3",
                          "--benchmark_report_aggregates_only=true"],
                         check=True, capture_output=True, text=True).stdout
    report = json.loads(out)
    rates = {}
    for b in report["benchmarks"]:
        if b.get("aggregate_name") == "median":
            kind, index = b["run_name"].split("/")
            rates[(kind[3:], LAWS[int(index)][0])] = b["items_per_second"]
    return rates, report["context"].get("dense_backend", "not reported")


def main(program):
    mine, blas = ours(program)
    with PeerProcess("openblas") as peer:
        print_blas(blas, {"scipy": peer})
        theirs_all = peer.call(scipy_rates)
    print("%-11s %-10s %14s %14s %8s" % ("law", "operation", "ours (M/s)", "scipy (M/s)", "ratio"))
    for name, _ in LAWS:
        for kind in ("Density", "CDF", "Percentile"):
            theirs = theirs_all[(kind, name)]
            a = mine[(kind, name)]
            print("%-11s %-10s %14.2f %14.2f %8.2f" % (name, kind, a / 1e6, theirs / 1e6, a / theirs))


if __name__ == "__main__":
    main(sys.argv[1])
