"""Helpers of the comparison scripts: time a Python call, and run one of our
benchmark programs on a data folder and read its median times back."""
import json
import os
import statistics
import subprocess
import time


def timed(call, repeats=3):
    """The median wall time of `repeats` calls, in seconds."""
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        call()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def run_benchmark(program, flag, folder, repeats=3):
    """Runs `program --flag=folder` with Google Benchmark's JSON written into
    the folder (the program's own standard output and error are discarded:
    our fits report there) and returns the median entries by run name."""
    out = os.path.join(folder, "benchmark.json")
    subprocess.run([program, "--%s=%s" % (flag, folder), "--benchmark_repetitions=%d" % repeats,
                    "--benchmark_report_aggregates_only=true", "--benchmark_out=" + out,
                    "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
    with open(out) as f:
        return {b["run_name"]: b for b in json.load(f)["benchmarks"] if b.get("aggregate_name") == "median"}
