#!/usr/bin/python3
"""Evaluations per second of the univariate laws' density, CDF and
percentile, ours (varimo_pdf_bench) beside scipy.stats' vectorised calls on
the same laws and the same 1000 points (the 1% to 99% quantiles).

    /usr/bin/python3 bench/pdf/compare_scipy.py build/bench-release/bench/pdf/varimo_pdf_bench
"""
import json
import subprocess
import sys
import timeit

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


def ours(program):
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_repetitions=3",
                          "--benchmark_report_aggregates_only=true"],
                         check=True, capture_output=True, text=True).stdout
    rates = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") == "median":
            kind, index = b["run_name"].split("/")
            rates[(kind[3:], LAWS[int(index)][0])] = b["items_per_second"]
    return rates


def main(program):
    mine = ours(program)
    print("%-11s %-10s %14s %14s %8s" % ("law", "operation", "ours (M/s)", "scipy (M/s)", "ratio"))
    for name, law in LAWS:
        x = law.ppf(P)
        for kind, call in (("Density", lambda: law.pdf(x)), ("CDF", lambda: law.cdf(x)),
                           ("Percentile", lambda: law.ppf(P))):
            theirs = scipy_rate(call)
            a = mine[(kind, name)]
            print("%-11s %-10s %14.2f %14.2f %8.2f" % (name, kind, a / 1e6, theirs / 1e6, a / theirs))


if __name__ == "__main__":
    main(sys.argv[1])
