#!/usr/bin/python3
"""Runs the numerics benchmark once and prints, for each case, our time over
Eigen's on the same matrix.

    /usr/bin/python3 bench/numerics/ratios.py build/release/bench/numerics/varimo_numerics_bench
"""
import json
import subprocess
import sys

PAIRS = {"BM_VarimoCholesky": "BM_EigenLLT", "BM_VarimoSolve": "BM_EigenLLTSolve"}


def main(program):
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_repetitions=5",
                          "--benchmark_report_aggregates_only=true"],
                         check=True, capture_output=True, text=True).stdout
    times = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") == "median":
            times[b["run_name"]] = b["real_time"]
    for ours, peer in PAIRS.items():
        for n in (200, 1000):
            a, e = times["%s/%d" % (ours, n)], times["%s/%d" % (peer, n)]
            print("%-18s n=%-5d ours %10.1f us  Eigen %10.1f us  ratio %.2f" % (ours[3:], n, a, e, a / e))


if __name__ == "__main__":
    main(sys.argv[1])
