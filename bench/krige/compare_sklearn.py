#!/usr/bin/python3
"""Global kriging against scikit-learn's Gaussian process regression, on the
same data in one run.

    /usr/bin/python3 bench/krige/compare_sklearn.py BUILD/bench/krige/varimo_krige_bench [--repeats R]
                     [--reference-blas]

Data (seeded): a pool of 8000 training points uniform in [0,1]^16 with the
response 5 + sin(2 pi x0) + 2 x1^2 + cos(pi x2 x3) + mean(x4..x15) + 0.1 noise,
and 500 queries uniform in [0,1]^16; size N uses the first N points. The
kernel is fixed: Gaussian, range 1.5, sill 2, nugget 0, which is
ConstantKernel(2) * RBF(1.5 / sqrt(2 ln 10)) in scikit-learn.

Timed, at N = 2000, 4000, 8000, the median of R runs (default 3) each, ours
and the peer's alternating:
  ours   construct + AddTraining + TrainFixed + PredictMany of the queries,
         simple and ordinary kriging (varimo_krige_bench)
  peer   GaussianProcessRegressor(optimizer=None, alpha=0).fit on the
         centred responses + predict(return_std=True) of the queries, in a
         process on OpenBLAS (and, with --reference-blas, at N <= 4000 once
         more on Debian's reference BLAS, as a second column)
and the automatic Train() at N = 2000, 4000 against one Cholesky
factorisation of the N x N covariance matrix by scipy on OpenBLAS
(scipy.linalg.cholesky, the floor under any training that factorises the
matrix); ours, ZqCholeskyFactor, beside it.

Checked: our simple-kriging predictions and variances against scikit-learn's
(mean + GP mean, std^2), our ordinary-kriging predictions (and variances
sill - w'b) against a direct numpy solve of the bordered system
[C 1; 1' 0][w; mu] = [b; 1]; all to 1e-8, elementwise |ours - ref| / |ref|.
Exits with status 1 when a check fails. Prints the BLAS of each side.
"""
import argparse
import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas, timed  # noqa: E402

import numpy as np
from scipy.spatial.distance import cdist
from sklearn.gaussian_process import GaussianProcessRegressor
from sklearn.gaussian_process.kernels import RBF, ConstantKernel

DIM = 16
POOL = 8000
QUERIES = 500
FIT_SIZES = (2000, 4000, 8000)
REFERENCE_BLAS_SIZES = (2000, 4000)  # the reference BLAS takes minutes above
TRAIN_SIZES = (2000, 4000)
RANGE = 1.5
SILL = 2.0
TOLERANCE = 1e-8
TARGET_FIT_RATIO = 0.5  # ours / scikit-learn at every N
TARGET_TRAIN_RATIO = 4.0  # Train / scipy's Cholesky at N = 4000


def make_data():
    rng = np.random.default_rng(20240611)
    x = rng.random((POOL, DIM))
    noise = rng.standard_normal(POOL)
    y = (5.0 + np.sin(2 * np.pi * x[:, 0]) + 2 * x[:, 1] ** 2 + np.cos(np.pi * x[:, 2] * x[:, 3])
         + x[:, 4:].mean(axis=1) + 0.1 * noise)
    q = rng.random((QUERIES, DIM))
    return x, y, q


def peer_kernel():
    # Our Gaussian covariance s exp(-h^2 ln10 / r^2) is the RBF's
    # exp(-h^2 / (2 l^2)) with l = r / sqrt(2 ln 10).
    return ConstantKernel(SILL, constant_value_bounds="fixed") * RBF(
        length_scale=RANGE / np.sqrt(2 * np.log(10)), length_scale_bounds="fixed")


def sklearn_fit_predict(x, y, q):
    """Returns (seconds, fit seconds, predictions, variances); runs in the
    peer's process."""
    start = time.perf_counter()
    mean = y.mean()
    gpr = GaussianProcessRegressor(peer_kernel(), alpha=0.0, optimizer=None, normalize_y=False)
    gpr.fit(x, y - mean)
    fitted = time.perf_counter()
    prediction, std = gpr.predict(q, return_std=True)
    seconds = time.perf_counter() - start
    return seconds, fitted - start, prediction + mean, std ** 2


def covariance(a, b):
    return SILL * np.exp(-cdist(a, b, "sqeuclidean") * np.log(10) / RANGE ** 2)


def scipy_cholesky_seconds(x):
    """The seconds of one scipy Cholesky of the covariance matrix."""
    import scipy.linalg
    c = covariance(x, x)
    return timed(lambda: scipy.linalg.cholesky(c, lower=True, check_finite=False), 1)


def ordinary_reference(x, y, q):
    """Predictions w'y and variances sill - w'b of the bordered system."""
    n = len(x)
    bordered = np.ones((n + 1, n + 1))
    bordered[:n, :n] = covariance(x, x)
    bordered[n, n] = 0.0
    rhs = np.ones((n + 1, len(q)))
    b = covariance(x, q)
    rhs[:n] = b
    w = np.linalg.solve(bordered, rhs)[:n]
    return w.T @ y, SILL - np.einsum("ij,ij->j", w, b)


def max_relative(ours, ref):
    if not np.all(np.isfinite(ours)):
        return float("inf")
    return float(np.max(np.abs(ours - ref) / np.abs(ref)))


def data_flags(folder):
    return [f"--krige_train={os.path.join(folder, 'train.f64')}", f"--krige_queries={os.path.join(folder, 'queries.f64')}",
            f"--krige_range={RANGE!r}", f"--krige_sill={SILL!r}"]


def write_our_predictions(program, folder):
    """Has the benchmark write its predictions and variances into the folder
    (it does so before benchmarking; listing the benchmarks runs none)."""
    subprocess.run([program, *data_flags(folder), f"--krige_output={folder}", "--benchmark_list_tests=true"],
                   check=True, capture_output=True)


def run_ours(program, folder, selection):
    """One run of the benchmarks that `selection` (a regular expression)
    picks. Returns seconds and labels by run name, and our BLAS."""
    out = subprocess.run([program, *data_flags(folder), "--benchmark_format=json", f"--benchmark_filter={selection}"],
                         check=True, capture_output=True, text=True).stdout
    report = json.loads(out)
    times, labels = {}, {}
    for b in report["benchmarks"]:
        if b.get("error_occurred"):
            sys.exit(f"{b['name']}: {b.get('error_message')}")
        name = b["run_name"].replace("/real_time", "")
        times[name] = b["real_time"] / 1e3  # milliseconds to seconds
        labels[name] = (b.get("label", ""), b.get("kernels_tried"))
    return times, labels, report["context"].get("dense_backend", "not reported")


def median_and_range(values):
    return statistics.median(values), min(values), max(values)


def read_ours(folder, model, n):
    values = np.fromfile(os.path.join(folder, f"{model}_{n}.f64"), dtype="<f8")
    return values[:QUERIES], values[QUERIES:]


def check(n, folder, x, y, q, sk_pred, sk_var):
    """Our predictions and variances against scikit-learn's and numpy's, in
    the peer's process; returns (what, max relative difference) pairs."""
    simple_pred, simple_var = read_ours(folder, "simple", n)
    ord_pred, ord_var = read_ours(folder, "ordinary", n)
    ref_pred, ref_var = ordinary_reference(x[:n], y[:n], q)
    return [("simple prediction vs sklearn", max_relative(simple_pred, sk_pred)),
            ("simple variance vs sklearn", max_relative(simple_var, sk_var)),
            ("ordinary prediction vs numpy", max_relative(ord_pred, ref_pred)),
            ("ordinary variance vs numpy", max_relative(ord_var, ref_var))]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program", help="path to the built varimo_krige_bench")
    parser.add_argument("--repeats", type=int, default=3)
    parser.add_argument("--reference-blas", action="store_true")
    args = parser.parse_args()

    x, y, q = make_data()
    failed = False
    peer = PeerProcess("openblas")
    reference = PeerProcess("reference") if args.reference_blas else None
    # Ours and the peer's runs alternate, so that the load of a shared
    # machine, which drifts over minutes, weighs on both alike.
    ours, theirs, fits, on_reference, cholesky, labels = {}, {}, {}, {}, {}, {}
    with tempfile.TemporaryDirectory() as folder:
        np.hstack([x, y[:, None]]).astype("<f8").tofile(os.path.join(folder, "train.f64"))
        q.astype("<f8").tofile(os.path.join(folder, "queries.f64"))
        write_our_predictions(args.program, folder)
        our_blas = run_ours(args.program, folder, "Cholesky/2000/")[2]

        print(f"data: 16-D uniform points, {QUERIES} queries; Gaussian kernel range {RANGE}, sill {SILL}, "
              f"nugget 0; medians of {args.repeats} runs, ours and the peer's alternating")
        print_blas(our_blas, {"scikit-learn": peer, **({"reference": reference} if reference else {})})
        print("checks (max elementwise |ours - ref| / |ref|, limit %.0e):" % TOLERANCE)
        for n in FIT_SIZES:
            for r in range(args.repeats):
                times, _, _ = run_ours(args.program, folder, f"FitPredict/{n}/")
                for model in ("Ordinary", "Simple"):
                    ours.setdefault((model, n), []).append(times[f"BM_{model}FitPredict/{n}"])
                seconds, fit, sk_pred, sk_var = peer.call(sklearn_fit_predict, x[:n], y[:n], q)
                theirs.setdefault(n, []).append(seconds)
                fits.setdefault(n, []).append(fit)
                if r == 0:
                    for what, value in peer.call(check, n, folder, x, y, q, sk_pred, sk_var):
                        ok = value <= TOLERANCE
                        failed = failed or not ok
                        print(f"  N={n:<5d} {what:<30s} {value:.2e}  {'ok' if ok else 'FAILED'}")
            if reference and n in REFERENCE_BLAS_SIZES:
                on_reference[n] = reference.call(sklearn_fit_predict, x[:n], y[:n], q)[0]
        for n in TRAIN_SIZES:
            for _ in range(args.repeats):
                times, run_labels, _ = run_ours(args.program, folder, f"(Train|Cholesky)/{n}/")
                labels[n] = run_labels[f"BM_OrdinaryTrain/{n}"]
                ours.setdefault(("Train", n), []).append(times[f"BM_OrdinaryTrain/{n}"])
                ours.setdefault(("Cholesky", n), []).append(times[f"BM_Cholesky/{n}"])
                cholesky.setdefault(n, []).append(peer.call(scipy_cholesky_seconds, x[:n]))
    peer.close()
    if reference:
        reference.close()

    print()
    print("fit + predict of %d queries, seconds (medians); ours / sklearn, median (range of the runs):" % QUERIES)
    header = f"  {'N':>5s} {'ordinary':>9s} {'simple':>9s} {'sklearn':>9s} {'(fit)':>9s} {'ord/skl':>18s} {'simple/skl':>18s}"
    print(header + (f" {'sklearn, ref BLAS':>18s}" if reference else ""))
    worst = 0.0
    for n in FIT_SIZES:
        p, pf = statistics.median(theirs[n]), statistics.median(fits[n])
        line = f"  {n:5d} {statistics.median(ours[('Ordinary', n)]):9.3f} {statistics.median(ours[('Simple', n)]):9.3f}"
        line += f" {p:9.3f} {pf:9.3f}"
        for model in ("Ordinary", "Simple"):
            ratio, low, high = median_and_range([o / t for o, t in zip(ours[(model, n)], theirs[n])])
            worst = max(worst, ratio)
            line += f" {ratio:6.2f} ({low:.2f}-{high:.2f})"
        if reference:
            line += f" {on_reference[n]:18.3f}" if n in on_reference else f" {'-':>18s}"
        print(line)
    print(f"  target ours / sklearn <= {TARGET_FIT_RATIO} at every N: worst median {worst:.2f} "
          f"{'met' if worst <= TARGET_FIT_RATIO else 'MISSED'}")

    print()
    print("automatic Train() against one Cholesky of the N x N matrix (scipy on OpenBLAS), seconds (medians):")
    for n in TRAIN_SIZES:
        t, c = statistics.median(ours[("Train", n)]), statistics.median(cholesky[n])
        ratio, low, high = median_and_range([a / b for a, b in zip(ours[("Train", n)], cholesky[n])])
        kernel, tried = labels[n]
        verdict = f" (target <= {TARGET_TRAIN_RATIO:g}: {'met' if ratio <= TARGET_TRAIN_RATIO else 'MISSED'})"
        print(f"  N={n:<5d} Train {t:7.3f}  scipy Cholesky {c:7.3f} (ours {statistics.median(ours[('Cholesky', n)]):7.3f})"
              f"  ratio {ratio:5.2f} ({low:.2f}-{high:.2f}){verdict if n == 4000 else ''}; kept {kernel}, "
              f"kernels tried {tried:g}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
