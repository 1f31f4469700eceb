#!/usr/bin/python3
"""Local ordinary kriging against R gstat, on the same data in one run.

    /usr/bin/python3 bench/krige/compare_gstat.py BUILD/bench/krige/varimo_local_krige_bench [--repeats R]

Needs Rscript with gstat and sp (Debian r-cran-gstat; scripts/install-deps
--bench installs them). The data are the benchmark's own (seeded, written by
varimo_local_krige_bench --local_output=DIR): N = 10000 and 100000 points
uniform in [0,100]^2, 1000 queries. Both sides krige each query from its 100
nearest points with the same fixed spherical model, range 10, sill 1,
nugget 0 (gstat: vgm(1, "Sph", 10); ours: ZqKrigeKernel Spherical).

Timed, the median of R runs (default 3):
  ours  BM_LocalOrdinaryQueries/N/tree:1, the 1000 queries (k-d tree)
  peer  krige(z ~ 1, train, queries, model, nmax = 100) in gstat, timed
        inside R around the krige() call alone; R runs on OpenBLAS (its
        libblas.so.3 and liblapack.so.3 taken from OpenBLAS's folder through
        LD_LIBRARY_PATH, as the Python peers of the other scripts), and
        prints the BLAS and LAPACK it loaded
Checked: our predictions against gstat's, elementwise |ours - gstat| / |gstat|,
limit 1e-8 (the neighbourhoods agree: continuous random points have no tied
distances). Variances are not compared: gstat's include the Lagrange
multiplier, ours are sill - w'b. Exits with status 1 when a check fails.
"""
import argparse
import json
import os
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import BLAS_FOLDERS  # noqa: E402

import numpy as np

SIZES = (10000, 100000)
TOLERANCE = 1e-8
TARGET_RATIO = 1.0  # ours / gstat at N = 100000

R_SCRIPT = r"""
suppressPackageStartupMessages({library(sp); library(gstat)})
args <- commandArgs(trailingOnly = TRUE)
train <- read.csv(args[1]); queries <- read.csv(args[2])
coordinates(train) <- ~x + y; coordinates(queries) <- ~x + y
model <- vgm(1, "Sph", 10)
times <- c()
for (r in seq_len(as.integer(args[4]))) {
  t <- system.time(k <- krige(z ~ 1, train, queries, model = model, nmax = 100, debug.level = 0))
  times <- c(times, t[["elapsed"]])
}
write.csv(data.frame(prediction = k$var1.pred), args[3], row.names = FALSE)
cat("BLAS", extSoftVersion()[["BLAS"]], "LAPACK", La_library(), "\n")
cat(median(times), "\n")
"""


def ours_seconds(program, size, repeats):
    result = subprocess.run(
        [program, f"--benchmark_filter=BM_LocalOrdinaryQueries/N:{size}/tree:1/",
         f"--benchmark_repetitions={repeats}", "--benchmark_format=json"],
        check=True, capture_output=True, text=True)
    report = json.loads(result.stdout)
    runs = [b["real_time"] for b in report["benchmarks"] if b.get("run_type") == "iteration"]
    # milliseconds to seconds
    return statistics.median(runs) / 1000.0, report["context"].get("dense_backend", "not reported")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--repeats", type=int, default=3)
    args = parser.parse_args()
    failed = False
    with tempfile.TemporaryDirectory() as scratch:
        subprocess.run([args.program, f"--local_output={scratch}", "--benchmark_filter=NONE"], check=True,
                       capture_output=True)
        print("local ordinary kriging, K = 100, 1000 queries, spherical range 10 sill 1 nugget 0; seconds")
        for size in SIZES:
            r = subprocess.run(["Rscript", "-e", R_SCRIPT, f"{scratch}/train_{size}.csv", f"{scratch}/queries.csv",
                                f"{scratch}/gstat_{size}.csv", str(args.repeats)],
                               check=True, capture_output=True, text=True,
                               env=dict(os.environ, LD_LIBRARY_PATH=BLAS_FOLDERS["openblas"]))
            peer = float(r.stdout.split()[-1])
            ours, blas = ours_seconds(args.program, size, args.repeats)
            if size == SIZES[0]:
                print("BLAS, ours: " + blas)
                print("BLAS, gstat: " + r.stdout.strip().splitlines()[0])
                print(f"{'N':>8} {'ours':>9} {'gstat':>9} {'ours/gstat':>11} {'max rel diff':>13}")
            mine = np.loadtxt(f"{scratch}/ours_{size}.csv", skiprows=1)
            theirs = np.loadtxt(f"{scratch}/gstat_{size}.csv", skiprows=1, delimiter=",")
            diff = float(np.max(np.abs(mine - theirs) / np.abs(theirs)))
            ok = diff <= TOLERANCE and np.all(np.isfinite(mine))
            failed = failed or not ok
            print(f"{size:>8} {ours:>9.3f} {peer:>9.3f} {ours / peer:>11.2f} {diff:>13.2e}{'' if ok else '  FAILED'}")
            if size == SIZES[-1]:
                verdict = "met" if ours / peer <= TARGET_RATIO else "MISSED"
                print(f"target at N={size}: ours / gstat <= {TARGET_RATIO}: {verdict}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
