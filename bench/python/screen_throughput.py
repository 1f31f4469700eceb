#!/usr/bin/python3
"""Screening throughput and memory: a model trained on CHEMBL2321810
(rdkit-data's Free-Wilson series of 1017 sulfonamides, pIC50 as given)
scores rdkit-data's NCI first_5K.smi repeated with fresh names up to the
query count, in one run:

- varimo-krige --load --predict, 1 and 2 threads (and --no-variance);
- varimo.screen on a local Dask cluster of 1 and of 2 worker processes of
  one thread each (the cluster's start-up is timed apart);
- the program's peak resident memory at 10^4 queries and at the full count,
  which streaming keeps flat (GNU time, Debian's package time).

    PYTHONPATH=build/release/python bench/python/screen_throughput.py build/release/tools/krige/varimo-krige [QUERIES]
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time

import package_overhead
import varimo

FIRST_5K = "/usr/share/RDKit/Data/NCI/first_5K.smi"


def train(model_path):
    smiles, y = package_overhead.load()
    varimo.MolKriging().fit(list(smiles), y).save(model_path)


def write_queries(path, count):
    molecules = [line.split()[0] for line in open(FIRST_5K) if line.strip()]
    with open(path, "w") as out:
        for k in range(count):
            out.write(f"{molecules[k % len(molecules)]} q{k}\n")


def run_program(program, args, scratch):
    """Wall seconds and peak resident memory (MiB) of one run. The memory is
    GNU time's: a child forked from this Python process would report this
    process's peak as its own, which Linux keeps across exec."""
    report = os.path.join(scratch, "time.txt")
    start = time.perf_counter()
    done = subprocess.run(["/usr/bin/time", "-f", "%M", "-o", report, program] + args,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    seconds = time.perf_counter() - start
    if done.returncode != 0:
        raise RuntimeError(f"{program} {' '.join(args)} failed with status {done.returncode}")
    return seconds, int(open(report).read().split()[-1]) / 1024.0


def run_cluster(model, queries, out_dir, workers, count):
    from dask.distributed import LocalCluster

    start = time.perf_counter()
    with LocalCluster(n_workers=workers, threads_per_worker=1, processes=True, dashboard_address=":0") as cluster:
        started = time.perf_counter() - start
        start = time.perf_counter()
        # Partitions small enough that both workers stay busy to the end.
        manifest = varimo.screen(model, [queries], out_dir, scheduler=cluster.scheduler_address,
                                 chunk_size=max(1000, count // 40), progress=False)
        seconds = time.perf_counter() - start
    if manifest["rows"] != count:
        raise RuntimeError(f"the cluster scored {manifest['rows']} rows of {count}")
    return seconds, started


def main():
    program = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100000
    scratch = tempfile.mkdtemp(prefix="varimo-screen-bench-")
    try:
        model = os.path.join(scratch, "chembl.vkm")
        train(model)
        small, large = os.path.join(scratch, "small.smi"), os.path.join(scratch, "large.smi")
        write_queries(small, min(10000, count))
        write_queries(large, count)
        out = os.path.join(scratch, "out.csv")
        print(f"queries: {count} (first_5K.smi repeated); model: CHEMBL2321810, global, {model}")
        print(f"BLAS: the program's own (single-threaded inside each worker); cores: {os.cpu_count()}")

        results = {}
        for name, args in [("program, 1 thread", ["--threads", "1"]), ("program, 2 threads", ["--threads", "2"]),
                           ("program, 1 thread, --no-variance", ["--threads", "1", "--no-variance"])]:
            seconds, rss = run_program(program, ["--load", model, "--predict", large, "--out", out] + args, scratch)
            results[name] = seconds
            print(f"{name:40s} {seconds:8.2f} s  {count / seconds:9.0f} mol/s  peak RSS {rss:7.1f} MiB")
        _, rss_small = run_program(program, ["--load", model, "--predict", small, "--out", out], scratch)
        _, rss_large = run_program(program, ["--load", model, "--predict", large, "--out", out], scratch)
        print(f"peak RSS at {min(10000, count)} queries {rss_small:.1f} MiB, at {count} {rss_large:.1f} MiB "
              f"(ratio {rss_large / rss_small:.3f})")
        print(f"--no-variance speed-up: {results['program, 1 thread'] / results['program, 1 thread, --no-variance']:.2f}x")

        for workers in (1, 2):
            seconds, started = run_cluster(model, large, os.path.join(scratch, f"dask{workers}"), workers, count)
            results[f"dask {workers}"] = seconds
            print(f"{'dask, ' + str(workers) + ' worker(s) x 1 thread':40s} {seconds:8.2f} s  "
                  f"{count / seconds:9.0f} mol/s  (cluster start {started:.1f} s)")
        print(f"2 workers / 1 worker: {results['dask 1'] / results['dask 2']:.2f}x; "
              f"2 workers / program 1 thread: {results['program, 1 thread'] / results['dask 2']:.2f}x; "
              f"program 2 threads / 1 thread: {results['program, 1 thread'] / results['program, 2 threads']:.2f}x")
    finally:
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    main()
