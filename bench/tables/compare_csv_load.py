#!/usr/bin/python3
"""CSV loading: Varimo's ZqLoadDataTableFromCSVFileWithHeader against
pandas.read_csv on the same file, in one run.

    bench/tables/compare_csv_load.py BUILD_DIR [ROWS]

Writes a CSV of ROWS rows (default 1 000 000, about 100 MB): a unique name,
a category of five values and 8 numeric columns with about 0.1% empty cells.
Each loader runs in a fresh process, three times; the best time counts;
pandas's process runs on OpenBLAS, as every peer of the benchmarks (reading
a CSV file does not use it). Prints the BLAS of each side, MB/s of both,
their ratio, and Varimo's peak memory against the bytes its loaded table
holds.
"""
import os
import random
import resource
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import BLAS_FOLDERS, linked_blas  # noqa: E402


def write_file(path, rows):
    rng = random.Random(1)
    with open(path, "w") as out:
        out.write("name,class,x1,x2,x3,x4,x5,x6,x7,x8\n")
        for r in range(rows):
            cells = [f"CHEMBL{1000000 + r}", f"class_{rng.randint(0, 4)}"]
            for _ in range(8):
                cells.append("" if rng.randint(0, 999) == 0 else f"{rng.uniform(-1000, 1000):.6f}")
            out.write(",".join(cells) + "\n")


def run_varimo(binary, path):
    out = subprocess.run([binary, "--load-once", path], check=True, capture_output=True, text=True).stdout
    return {k: float(v) for k, v in (line.split() for line in out.splitlines())}


PANDAS_CHILD = """
import sys, time, pandas, resource
sys.path.insert(0, sys.argv[2])
from peer_timing import blas_in_use
start = time.perf_counter()
frame = pandas.read_csv(sys.argv[1])
seconds = time.perf_counter() - start
print(seconds, len(frame), resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1e3)
print(blas_in_use())
"""


def run_pandas(path):
    env = dict(os.environ, LD_LIBRARY_PATH=BLAS_FOLDERS["openblas"])
    bench = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    lines = subprocess.run(["/usr/bin/python3", "-c", PANDAS_CHILD, path, bench], check=True, capture_output=True,
                           text=True, env=env).stdout.splitlines()
    out = lines[0].split()
    return float(out[0]), int(out[1]), float(out[2]), lines[1]


def main():
    build = sys.argv[1]
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    binary = os.path.join(build, "bench", "tables", "varimo_csv_load_bench")
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "bench.csv")
        write_file(path, rows)
        megabytes = os.path.getsize(path) / 1e6
        varimo = min((run_varimo(binary, path) for _ in range(3)), key=lambda r: r["seconds"])
        pandas_runs = [run_pandas(path) for _ in range(3)]
        pandas_seconds = min(r[0] for r in pandas_runs)
        assert int(varimo["rows"]) == rows == pandas_runs[0][1]
    print(f"BLAS, ours: {linked_blas(binary)}")
    print(f"BLAS, pandas: {pandas_runs[0][3]}")
    print(f"file: {rows} rows, {megabytes:.1f} MB")
    print(f"varimo: {varimo['seconds']:.3f} s, {megabytes / varimo['seconds']:.1f} MB/s, "
          f"peak RSS {varimo['peak_rss_MB']:.1f} MB for a table of {varimo['table_MB']:.1f} MB "
          f"({varimo['peak_rss_MB'] / varimo['table_MB']:.2f}x)")
    print(f"pandas: {pandas_seconds:.3f} s, {megabytes / pandas_seconds:.1f} MB/s, "
          f"peak RSS {min(r[2] for r in pandas_runs):.1f} MB")
    print(f"ratio (varimo MB/s / pandas MB/s): {pandas_seconds / varimo['seconds']:.2f}")


if __name__ == "__main__":
    main()
