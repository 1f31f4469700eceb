#!/usr/bin/python3
"""Fingerprint speed beside RDKit, in the same run: Tanimoto comparisons per
second and fingerprints per second.

    /usr/bin/python3 bench/mol/compare_tanimoto.py [--bench PATH] [--smiles FILE] [--queries 200]
                                                   [--filter REGEX] [--repeats 3]

Molecules: RDKit's Data/NCI/first_5K.smi (4999 lines "SMILES<tab>id", no
header; a first line whose first column is "smiles" is taken as a header;
tabs or spaces separate the columns).
  RDKit  Morgan bit vectors, radius 2, 2048 bits (GetMorganFingerprintAsBitVect),
         and RDKit's own path fingerprint at our path length
         (Chem.RDKFingerprint(m, maxPath=6), 2048 bits), the closer peer of
         ours, which is made of paths of 1 to 6 bonds too:
         fingerprints/s = N / (time to make all N); comparisons/s = Q N / (time
         of BulkTanimotoSimilarity of each of the first Q against all N);
         the best of --repeats runs each, in a process of its own (on
         OpenBLAS, as every peer of the benchmarks; RDKit's fingerprints do
         not use it)
  ours   the Google Benchmark program fingerprint_bench, run with the same file
         in VARIMO_FIRST5K: the items_per_second of BM_VseprTanimoto
         (comparisons/s) and BM_VseprFingerprint (fingerprints/s)
Our fingerprints are neither: the figures compare the cost of the same
operations on the same molecules, not the same bits.
"""
import argparse
import json
import os
import subprocess
import sys
import time

from rdkit import Chem, DataStructs, RDLogger
from rdkit.Chem import AllChem

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DEFAULT_BENCH = os.path.join(ROOT, "build/bench-release/bench/mol/fingerprint_bench")
FIRST5K = "/usr/share/RDKit/Data/NCI/first_5K.smi"
OURS = {"comparisons": "BM_VseprTanimoto", "fingerprints": "BM_VseprFingerprint"}


def read_molecules(path):
    with open(path) as f:
        first = f.readline().split()
    header = bool(first) and first[0].lower() == "smiles"
    RDLogger.DisableLog("rdApp.*")  # the unreadable records are counted below, not printed one by one
    supplier = Chem.SmilesMolSupplier(path, delimiter=" \t", smilesColumn=0, nameColumn=1, titleLine=header)
    records = [m for m in supplier]  # not list(supplier): this RDKit then reads no record at all
    RDLogger.EnableLog("rdApp.*")
    mols = [m for m in records if m is not None]
    return mols, len(records) - len(mols)


def best_seconds(work, repeats):
    best = float("inf")
    for _ in range(repeats):
        start = time.perf_counter()
        result = work()
        best = min(best, time.perf_counter() - start)
    return best, result


def rdkit_figures(smiles, queries, repeats):
    """RDKit's figures, in the peer's process."""
    mols, unreadable = read_molecules(smiles)
    fp_seconds, fps = best_seconds(
        lambda: [AllChem.GetMorganFingerprintAsBitVect(m, 2, nBits=2048) for m in mols], repeats)
    path_seconds, _ = best_seconds(lambda: [Chem.RDKFingerprint(m, maxPath=6) for m in mols], repeats)
    q = min(queries, len(fps))
    cmp_seconds, _ = best_seconds(lambda: [DataStructs.BulkTanimotoSimilarity(f, fps) for f in fps[:q]], repeats)
    return {"molecules": len(fps), "unreadable": unreadable, "queries": q, "fingerprints": len(fps) / fp_seconds,
            "path fingerprints": len(fps) / path_seconds, "comparisons": q * len(fps) / cmp_seconds}


def our_figures(bench, smiles, regex):
    """items_per_second of our two benchmarks; None when the program is
    missing, without the figures it did not give when it fails (reasons printed)."""
    if not (os.path.isfile(bench) and os.access(bench, os.X_OK)):
        print(f"fingerprint_bench not found (or not executable) at {bench}; RDKit's figures only. "
              f"Build it in a Release build (see bench/README.md) or pass --bench.", file=sys.stderr)
        return None
    r = subprocess.run([bench, "--benchmark_format=json", f"--benchmark_filter={regex}"],
                       capture_output=True, text=True, env=dict(os.environ, VARIMO_FIRST5K=smiles))
    if r.returncode != 0:
        print(f"{bench} failed (status {r.returncode}): {r.stderr.strip()}", file=sys.stderr)
        return {}
    figures = {}
    report = json.loads(r.stdout)
    figures["blas"] = report["context"].get("dense_backend", "not reported")
    for b in report["benchmarks"]:
        # The name may carry arguments (BM_VseprTanimoto/200); with repetitions,
        # keep the best iteration run, as on RDKit's side.
        base = b.get("run_name", b["name"]).split("/")[0]
        for what, name in OURS.items():
            if base == name and b.get("run_type", "iteration") == "iteration" and "items_per_second" in b:
                figures[what] = max(figures.get(what, 0.0), b["items_per_second"])
    for what, name in OURS.items():
        if what not in figures:
            print(f"{name} is not among the benchmarks run (filter {regex!r})", file=sys.stderr)
    return figures


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--bench", default=DEFAULT_BENCH, help="path of fingerprint_bench")
    parser.add_argument("--smiles", default=FIRST5K, help="the molecules, for both sides")
    parser.add_argument("--queries", type=int, default=200, help="Q, the query fingerprints on RDKit's side")
    parser.add_argument("--filter", default="^BM_Vsepr(Tanimoto|Fingerprint)",
                        help="--benchmark_filter for our program")
    parser.add_argument("--repeats", type=int, default=3, help="RDKit runs, the best kept")
    args = parser.parse_args()

    with PeerProcess("openblas") as peer:
        theirs = peer.call(rdkit_figures, args.smiles, args.queries, args.repeats)
        ours = our_figures(args.bench, args.smiles, args.filter)
        print_blas("not used" if ours is None else ours.pop("blas"), {"RDKit": peer})
    print(f"{args.smiles}: {theirs['molecules']} molecules read by RDKit ({theirs['unreadable']} unreadable), "
          f"Q = {theirs['queries']} queries on RDKit's side")
    print(f"{'':<15} {'RDKit':<28} {'RDKit /s':>12}" + ("" if ours is None else f" {'ours /s':>12} {'ours/RDKit':>11}"))
    rows = (("comparisons", "comparisons", "BulkTanimoto, Morgan"), ("fingerprints", "fingerprints", "Morgan r=2"),
            ("fingerprints", "path fingerprints", "RDKFingerprint maxPath=6"))
    for what, peer_what, label in rows:
        line = f"{what + '/s':<15} {label:<28} {theirs[peer_what]:>12.4g}"
        if ours is not None:
            mine = ours.get(what)
            line += f" {'-':>12} {'-':>11}" if mine is None else f" {mine:>12.4g} {mine / theirs[peer_what]:>11.2f}"
        print(line)
    return 0 if ours is None or len(ours) == len(OURS) else 1


if __name__ == "__main__":
    sys.exit(main())
