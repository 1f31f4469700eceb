#!/usr/bin/python3
"""Cross-validated accuracy of molecule kriging (varimo-krige) beside a
scikit-learn Gaussian process with a Tanimoto kernel, on the same folds.

    /usr/bin/python3 bench/mol/compare_gp_cv.py [--varimo PATH] [--datasets bzr,chembl] [--folds 5]
                                                [--seed 1] [--restarts 3] [--json OUT] [--skip-ours]

Data: RDKit's bzr.sdf (163 molecules, SD field ACTIVITY, a pIC50) and
CHEMBL2321810.smi ("SMILES name") joined by name with CHEMBL2321810_act.csv
("Name,Act"; 1017 compounds). Folds: KFold(shuffle=True, random_state=seed).
Ours: varimo-krige on each fold's training and held-out molecules, written as
SD files (bzr) or SMILES files with the header "smiles name Act" (chembl).
Peer: GaussianProcessRegressor(ConstantKernel() * Tanimoto() + WhiteKernel(),
normalize_y=True) on Morgan fingerprints (radius 2, 2048 bits), hyperparameters
fitted by scikit-learn. Pooled over the held-out predictions: RMSE, R2 (about
the mean of the held-out values), coverage95 (fraction with |y - prediction|
<= 1.96 sqrt(variance)); rows our program fails to predict are listed and left
out for both. Seconds: wall time over the folds (ours: the program runs,
reading the files included; peer: fingerprints + fit + predict, in a process
on OpenBLAS). Prints the BLAS of each side.
"""
import argparse
import csv
import json
import os
import subprocess
import sys
import tempfile
import time

import numpy as np

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, linked_blas, print_blas  # noqa: E402
from scipy import sparse
from rdkit import Chem
from rdkit.Chem import AllChem
from sklearn.gaussian_process import GaussianProcessRegressor
from sklearn.gaussian_process.kernels import ConstantKernel, Kernel, WhiteKernel
from sklearn.model_selection import KFold

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DEFAULT_VARIMO = os.path.join(ROOT, "build/dev/tools/krige/varimo-krige")
BZR = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf"
CHEMBL = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810"
# Our program writes this for a prediction it could not make (the model's
# error value, DBL_MAX); anything this large is a failure, not a number.
ERROR_VALUE = 1e300


class Tanimoto(Kernel):
    """k(a, b) = |a and b| / |a or b| on 0/1 fingerprint rows. No
    hyperparameters: the amplitude is the ConstantKernel in front of it."""

    def __init__(self):  # scikit-learn's clone() reads the parameters off __init__
        pass

    def __call__(self, X, Y=None, eval_gradient=False):
        # A few dozen of the 2048 bits are set: the sparse product is many
        # times faster than the dense one, and the optimizer calls this often.
        a = sparse.csr_matrix(X)
        b = a if Y is None else sparse.csr_matrix(Y)
        both = (a @ b.T).toarray()
        either = np.asarray(a.sum(axis=1)) + np.asarray(b.sum(axis=1)).T - both
        # Two empty fingerprints are the same fingerprint.
        k = np.divide(both, either, out=np.ones_like(both), where=either > 0)
        # No hyperparameters, so no gradient columns (scikit-learn asks for them with Y None only).
        return (k, np.empty(k.shape + (0,))) if eval_gradient else k

    def diag(self, X):
        return np.ones(np.asarray(X).shape[0])

    def is_stationary(self):
        return False


def load_bzr():
    mols = [m for m in Chem.SDMolSupplier(BZR) if m is not None and m.HasProp("ACTIVITY")]
    return {"kind": "sdf", "response": "ACTIVITY", "mols": mols, "names": [m.GetProp("_Name") for m in mols],
            "y": np.array([float(m.GetProp("ACTIVITY")) for m in mols])}


def load_chembl():
    with open(CHEMBL + "_act.csv", newline="") as f:
        activity = {row["Name"]: row["Act"] for row in csv.DictReader(f)}
    with open(CHEMBL + ".smi") as f:
        pairs = [line.split()[:2] for line in f if len(line.split()) >= 2]
    # Keep the compounds with an activity whose SMILES RDKit reads; both models see the same set.
    kept = [(Chem.MolFromSmiles(s), s, n) for s, n in pairs if n in activity]
    kept = [k for k in kept if k[0] is not None]
    return {"kind": "smiles", "response": "Act", "mols": [k[0] for k in kept], "smiles": [k[1] for k in kept],
            "names": [k[2] for k in kept], "y": np.array([float(activity[k[2]]) for k in kept])}


def fingerprints(mols):
    out = np.zeros((len(mols), 2048))
    for i, mol in enumerate(mols):
        out[i, list(AllChem.GetMorganFingerprintAsBitVect(mol, 2, nBits=2048).GetOnBits())] = 1.0
    return out


def run_peer(name, folds, seed, restarts):
    """scikit-learn over the folds, in the peer's process, which loads the
    data set itself."""
    data = {"bzr": load_bzr, "chembl": load_chembl}[name]()
    pred, var, kernels, seconds = np.empty(len(data["y"])), np.empty(len(data["y"])), [], 0.0
    for train, test in folds:
        start = time.perf_counter()
        gp = GaussianProcessRegressor(ConstantKernel() * Tanimoto() + WhiteKernel(), normalize_y=True,
                                      n_restarts_optimizer=restarts, random_state=seed)
        gp.fit(fingerprints([data["mols"][i] for i in train]), data["y"][train])
        mean, std = gp.predict(fingerprints([data["mols"][i] for i in test]), return_std=True)
        seconds += time.perf_counter() - start
        # The std of predict() comes from kernel_.diag, which includes the
        # WhiteKernel noise: the spread of a new measurement, which is what a
        # held-out value is, not of the noise-free latent function.
        pred[test], var[test] = mean, std ** 2
        kernels.append(str(gp.kernel_))
    return pred, var, seconds, kernels


def write_fold(data, rows, path):
    if data["kind"] == "sdf":
        with Chem.SDWriter(path) as writer:  # the title line keeps the name, the data the ACTIVITY field
            for i in rows:
                writer.write(data["mols"][i])
    else:  # repr() of a float is the shortest text that reads back as it: 5.48 stays 5.48
        lines = [f"{data['smiles'][i]} {data['names'][i]} {float(data['y'][i])!r}\n" for i in rows]
        with open(path, "w") as f:
            f.write("smiles name Act\n" + "".join(lines))


def number(text):
    try:
        value = float(text)
    except (TypeError, ValueError):
        return None
    return value if np.isfinite(value) and abs(value) < ERROR_VALUE else None


def by_position(lines, names):
    """pred.csv's rows keyed by position in the predict file from 1. The row
    column counts the records from 1; a file counting from 0 is read as such.
    Rows of unreadable records may be absent, so the names tell which."""
    def keyed(base):
        return {int(r["row"]) - base + 1: r for r in lines}
    def agree(base):
        return sum(r.get("name") == names[k - 1] for k, r in keyed(base).items() if 1 <= k <= len(names))
    return keyed(max((1, 0), key=agree))  # 1 on a tie, e.g. without names


def run_ours(program, data, folds, name):
    pred, var = np.full(len(data["y"]), np.nan), np.full(len(data["y"]), np.nan)
    failures, kernels, seconds, names = [], [], 0.0, data["names"]
    suffix = ".sdf" if data["kind"] == "sdf" else ".smi"
    with tempfile.TemporaryDirectory() as scratch:
        for k, (train, test) in enumerate(folds, 1):
            write_fold(data, train, f"{scratch}/train{suffix}")
            write_fold(data, test, f"{scratch}/test{suffix}")
            start = time.perf_counter()
            r = subprocess.run([program, "--train", f"{scratch}/train{suffix}", "--response", data["response"],
                                "--predict", f"{scratch}/test{suffix}", "--out", f"{scratch}/pred.csv", "--quiet"],
                               capture_output=True, text=True)
            seconds += time.perf_counter() - start
            if r.returncode != 0:
                print(f"{name}: varimo-krige failed on fold {k} (status {r.returncode}): {r.stderr.strip()}",
                      file=sys.stderr)
                return None
            kernels.append(r.stdout.strip())
            with open(f"{scratch}/pred.csv", newline="") as f:
                lines = list(csv.DictReader(f))
            by_record = by_position(lines, [names[i] for i in test])
            for record, i in enumerate(test, 1):
                # A missing row, or one naming another molecule than we wrote there, is a failed one too.
                row = by_record.get(record, {})
                p, v = number(row.get("prediction")), number(row.get("variance"))
                if p is None or v is None or v < 0 or (row.get("name") or names[i]) != names[i]:
                    failures.append(f"fold {k} row {record} ({names[i]}): " + (", ".join(
                        f"{c}={row.get(c)!r}" for c in ("name", "prediction", "variance")) if row else "no row"))
                else:
                    pred[i], var[i] = p, v
    return pred, var, seconds, kernels, failures


def metrics(y, pred, var, seconds):
    residual = y - pred
    return {"rmse": float(np.sqrt(np.mean(residual ** 2))),
            "r2": float(1.0 - np.sum(residual ** 2) / np.sum((y - y.mean()) ** 2)),
            "coverage95": float(np.mean(np.abs(residual) <= 1.96 * np.sqrt(var))),
            "seconds": seconds}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--varimo", default=DEFAULT_VARIMO, help="path of varimo-krige")
    parser.add_argument("--datasets", default="bzr,chembl", help="comma-separated: bzr, chembl")
    parser.add_argument("--folds", type=int, default=5)
    parser.add_argument("--seed", type=int, default=1, help="KFold shuffle seed")
    parser.add_argument("--restarts", type=int, default=3, help="scikit-learn optimizer restarts per fold")
    parser.add_argument("--json", help="also write the figures to this file")
    parser.add_argument("--skip-ours", action="store_true", help="run scikit-learn alone")
    args = parser.parse_args()
    loaders = {"bzr": load_bzr, "chembl": load_chembl}
    datasets = [d.strip() for d in args.datasets.split(",") if d.strip()]
    if not datasets or any(d not in loaders for d in datasets):
        parser.error(f"--datasets takes bzr and/or chembl, not {args.datasets}")
    if not args.skip_ours and not (os.path.isfile(args.varimo) and os.access(args.varimo, os.X_OK)):
        print(f"varimo-krige not found (or not executable) at {args.varimo}: build it, pass its path "
              f"with --varimo, or run scikit-learn alone with --skip-ours.", file=sys.stderr)
        return 2

    report = {"folds": args.folds, "seed": args.seed, "datasets": {}}
    table, status = [], 0
    peer_process = PeerProcess("openblas")
    print_blas("not run" if args.skip_ours else linked_blas(args.varimo), {"scikit-learn": peer_process})
    for name in datasets:
        data = loaders[name]()
        y = data["y"]
        folds = list(KFold(n_splits=args.folds, shuffle=True, random_state=args.seed).split(y))
        peer = peer_process.call(run_peer, name, folds, args.seed, args.restarts)
        ours = None if args.skip_ours else run_ours(args.varimo, data, folds, name)
        status = 1 if ours is None and not args.skip_ours else status
        entry = report["datasets"][name] = {"molecules": len(y), "peer_kernels": peer[3]}
        keep = np.ones(len(y), dtype=bool) if ours is None else np.isfinite(ours[0])
        failed = entry["failed_rows"] = [] if ours is None else ours[4]
        entry["peer"] = metrics(y[keep], peer[0][keep], peer[1][keep], peer[2])
        entry["ours"] = None if ours is None else metrics(y[keep], ours[0][keep], ours[1][keep], ours[2])
        entry["ours_kernels"] = None if ours is None else ours[3]
        table += [(name, model, int(keep.sum()), len(failed), entry[key])
                  for model, key in (("sklearn", "peer"), ("varimo", "ours")) if entry[key]]
        for line in failed[:10]:
            print(f"{name}: no prediction for {line}")
        if len(failed) > 10:
            print(f"{name}: ... and {len(failed) - 10} more rows without a prediction")

    peer_process.close()
    print(f"{args.folds}-fold cross-validation, seed {args.seed}; failed rows left out for both models")
    print(f"{'dataset':<8} {'model':<8} {'n':>5} {'failed':>6} {'RMSE':>7} {'R2':>7} {'cover95':>8} {'seconds':>8}")
    for dataset, model, n, failed, m in table:
        print(f"{dataset:<8} {model:<8} {n:>5} {failed:>6} {m['rmse']:>7.3f} {m['r2']:>7.3f} "
              f"{m['coverage95']:>8.3f} {m['seconds']:>8.2f}")
    if args.json:
        with open(args.json, "w") as f:
            json.dump(report, f, indent=2)
    return status


if __name__ == "__main__":
    sys.exit(main())
