"""Helpers of the comparison scripts: time a Python call, run one of our
benchmark programs on a data folder and read its median times back, and run
the Python peer in a process of its own on the BLAS of our choice.

The peer runs on OpenBLAS, as the scientific Python that users install does:
numpy and scipy load libblas.so.3 and liblapack.so.3, and the loader takes
them from LD_LIBRARY_PATH, which it reads once at start-up. So the peer runs
in a fresh process (multiprocessing's spawn) started with the BLAS folder in
that variable, whatever the system's default BLAS is; Debian's reference
BLAS, for the second column some scripts print, the same way. Both sides say
which BLAS they used: ours from the benchmark program's context
"dense_backend", the peer's from threadpoolctl (Debian python3-threadpoolctl)
or, for a BLAS it does not know, the files the process mapped."""
import json
import multiprocessing
import os
import re
import statistics
import subprocess
import time
from concurrent.futures import ProcessPoolExecutor

BLAS_FOLDERS = {
    "openblas": "/usr/lib/x86_64-linux-gnu/openblas-pthread",
    "reference": "/usr/lib/x86_64-linux-gnu/blas:/usr/lib/x86_64-linux-gnu/lapack",
}


def timed(call, repeats=3):
    """The median wall time of `repeats` calls, in seconds."""
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        call()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def benchmark_json(program, *args):
    """Runs a benchmark program with Google Benchmark's JSON written to a
    temporary file (the program's own standard output and error are
    discarded: our fits report there) and returns the parsed JSON."""
    import tempfile
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "benchmark.json")
        subprocess.run([program, *args, "--benchmark_out=" + out, "--benchmark_out_format=json"], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        with open(out) as f:
            return json.load(f)


def medians(report):
    """The median entries of a benchmark report, by run name."""
    return {b["run_name"]: b for b in report["benchmarks"] if b.get("aggregate_name") == "median"}


def our_blas(report):
    """What our side used, from the benchmark context."""
    return report["context"].get("dense_backend", "not reported")


def run_benchmark(program, flag, folder, repeats=3):
    """Runs `program --flag=folder` with `repeats` repetitions and returns the
    median entries by run name; `last_context` keeps the report's context."""
    report = benchmark_json(program, "--%s=%s" % (flag, folder), "--benchmark_repetitions=%d" % repeats,
                            "--benchmark_report_aggregates_only=true")
    run_benchmark.last_context = report["context"]
    return medians(report)


def blas_in_use():
    """The BLAS and LAPACK this process has loaded, in words."""
    import numpy  # noqa: F401 (loads the BLAS)
    import scipy.linalg  # noqa: F401 (loads LAPACK)
    try:
        from threadpoolctl import threadpool_info
        for info in threadpool_info():
            if info.get("internal_api") == "openblas":
                return "OpenBLAS %s, %s, %d threads (%s)" % (info.get("version"), info.get("architecture"),
                                                             info["num_threads"], info["filepath"])
    except ImportError:
        pass
    with open("/proc/self/maps") as maps:
        files = sorted({line.split()[-1] for line in maps if re.search(r"/lib(open)?blas|/liblapack", line)})
    return "reference BLAS and LAPACK (" + ", ".join(files) + ")"


class PeerProcess:
    """A Python process whose numpy, scipy and scikit-learn run on the BLAS
    named ("openblas" or "reference"). `call` runs a module-level function
    of the calling script there (the script is imported by the spawned
    process, so its work must sit under `if __name__ == "__main__"`) and
    returns what it returns; `blas` says what the process loaded."""

    def __init__(self, blas="openblas"):
        saved = os.environ.get("LD_LIBRARY_PATH")
        os.environ["LD_LIBRARY_PATH"] = BLAS_FOLDERS[blas] + (":" + saved if saved else "")
        try:
            self._pool = ProcessPoolExecutor(1, mp_context=multiprocessing.get_context("spawn"))
            self.blas = self._pool.submit(blas_in_use).result()
        finally:
            if saved is None:
                del os.environ["LD_LIBRARY_PATH"]
            else:
                os.environ["LD_LIBRARY_PATH"] = saved

    def call(self, function, *args):
        return self._pool.submit(function, *args).result()

    def close(self):
        self._pool.shutdown()

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()


def print_blas(ours, peers):
    """One line per side: what BLAS it ran on."""
    print("BLAS, ours: " + ours)
    for name, process in peers.items():
        print("BLAS, %s: %s" % (name, process.blas))


def timed_call(function, args=(), repeats=3):
    """`timed` of function(*args), for PeerProcess.call: the function is
    module-level, so that it can be sent to the peer's process."""
    return timed(lambda: function(*args), repeats)


def linked_blas(program):
    """The BLAS and LAPACK libraries a program of ours loads, from ldd, for
    the programs that report no benchmark context."""
    out = subprocess.run(["ldd", program], capture_output=True, text=True).stdout
    found = sorted({line.split("=>")[-1].split("(")[0].strip() for line in out.splitlines()
                    if re.search(r"lib(open)?blas|liblapack", line)})
    return ", ".join(found) if found else "none"
