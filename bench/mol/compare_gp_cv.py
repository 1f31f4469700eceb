#!/usr/bin/python3
"""Cross-validated accuracy of molecule kriging (varimo-krige) beside a
scikit-learn Gaussian process with a Tanimoto kernel, on the same folds.

    /usr/bin/python3 bench/mol/compare_gp_cv.py [--varimo PATH] [--datasets bzr,chembl]
                                                [--folds 5] [--seed 1] [--json OUT] [--skip-ours]

Data (from the Debian RDKit packages):
  bzr     RDKit's Projects/DbCLI/testData/bzr.sdf, 163 benzodiazepine receptor
          ligands, response the SD field ACTIVITY (pIC50)
  chembl  RDKit's Contrib/FreeWilson/data/CHEMBL2321810.smi ("SMILES name")
          joined by name with CHEMBL2321810_act.csv ("Name,Act"), ~1017 compounds
Folds: KFold(n_splits, shuffle=True, random_state=seed), the same for both.

  ours  varimo-krige --train TRAIN --response FIELD --predict TEST --out pred.csv,
        the folds written as SD files (bzr) or as a SMILES file with the header
        "smiles name Act" (chembl)
  peer  GaussianProcessRegressor(ConstantKernel() * Tanimoto() + WhiteKernel(),
        normalize_y=True) on Morgan fingerprints (radius 2, 2048 bits), the
        hyperparameters fitted by scikit-learn

Pooled over the held-out predictions of all folds, per model: RMSE, R2 (about
the mean of the held-out values) and coverage95, the fraction with
|y - prediction| <= 1.96 sqrt(variance). Rows our program fails to predict are
listed and left out for both models. Seconds are the wall time of fitting and
predicting all folds (ours: the program runs; peer: fingerprints, fit, predict).
"""
import argparse
import csv
import json
import math
import os
import subprocess
import sys
import tempfile
import time

import numpy as np
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
        if eval_gradient:
            if Y is not None:
                raise ValueError("Gradient can only be evaluated when Y is None.")
            return k, np.empty((a.shape[0], a.shape[0], 0))
        return k

    def diag(self, X):
        return np.ones(np.asarray(X).shape[0])

    def is_stationary(self):
        return False


def load_bzr():
    mols = [m for m in Chem.SDMolSupplier(BZR) if m is not None and m.HasProp("ACTIVITY")]
    return {"kind": "sdf", "response": "ACTIVITY", "mols": mols, "smiles": None,
            "names": [m.GetProp("_Name") for m in mols],
            "y": np.array([float(m.GetProp("ACTIVITY")) for m in mols])}


def load_chembl():
    with open(CHEMBL + "_act.csv", newline="") as f:
        activity = {row["Name"]: row["Act"] for row in csv.DictReader(f)}
    mols, smiles, names, values = [], [], [], []
    with open(CHEMBL + ".smi") as f:
        for line in f:
            fields = line.split()
            if len(fields) < 2 or fields[1] not in activity:
                continue
            mol = Chem.MolFromSmiles(fields[0])
            if mol is None:
                continue
            mols.append(mol)
            smiles.append(fields[0])
            names.append(fields[1])
            values.append(activity[fields[1]])
    return {"kind": "smiles", "response": "Act", "mols": mols, "smiles": smiles, "names": names,
            "values": values, "y": np.array([float(v) for v in values])}


def fingerprints(mols):
    out = np.zeros((len(mols), 2048))
    for i, mol in enumerate(mols):
        for bit in AllChem.GetMorganFingerprintAsBitVect(mol, 2, nBits=2048).GetOnBits():
            out[i, bit] = 1.0
    return out


def run_peer(data, folds, seed):
    n = len(data["y"])
    pred, var = np.empty(n), np.empty(n)
    kernels, seconds = [], 0.0
    for train, test in folds:
        start = time.perf_counter()
        gp = GaussianProcessRegressor(ConstantKernel() * Tanimoto() + WhiteKernel(), normalize_y=True,
                                      n_restarts_optimizer=3, random_state=seed)
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
        writer = Chem.SDWriter(path)  # keeps the title line (name) and the ACTIVITY field
        for i in rows:
            writer.write(data["mols"][i])
        writer.close()
    else:
        with open(path, "w") as f:
            f.write("smiles name Act\n")
            for i in rows:
                f.write(f"{data['smiles'][i]} {data['names'][i]} {data['values'][i]}\n")


def number(text):
    try:
        value = float(text)
    except (TypeError, ValueError):
        return None
    return value if math.isfinite(value) and abs(value) < ERROR_VALUE else None


def run_ours(program, data, folds, name):
    n = len(data["y"])
    pred, var = np.full(n, np.nan), np.full(n, np.nan)
    failures, kernels, mismatched, seconds = [], [], 0, 0.0
    suffix = ".sdf" if data["kind"] == "sdf" else ".smi"
    with tempfile.TemporaryDirectory() as scratch:
        for k, (train, test) in enumerate(folds, 1):
            train_path, test_path = f"{scratch}/train{suffix}", f"{scratch}/test{suffix}"
            out_path = f"{scratch}/pred.csv"
            write_fold(data, train, train_path)
            write_fold(data, test, test_path)
            start = time.perf_counter()
            r = subprocess.run([program, "--train", train_path, "--response", data["response"], "--predict",
                                test_path, "--out", out_path, "--quiet"], capture_output=True, text=True)
            seconds += time.perf_counter() - start
            if r.returncode != 0:
                print(f"{name}: varimo-krige failed on fold {k} (status {r.returncode}): {r.stderr.strip()}",
                      file=sys.stderr)
                return None
            kernels.append(r.stdout.strip())
            seen = set()
            with open(out_path, newline="") as f:
                for row in csv.DictReader(f):
                    # row counts the records of the predict file from 1.
                    record = int(row["row"])
                    if not 1 <= record <= len(test):
                        continue
                    i = test[record - 1]
                    seen.add(record)
                    if row.get("name") and row["name"] != data["names"][i]:
                        mismatched += 1
                    p, v = number(row.get("prediction")), number(row.get("variance"))
                    if p is None or v is None or v < 0:
                        failures.append({"fold": k, "row": record, "name": data["names"][i],
                                         "prediction": row.get("prediction"), "variance": row.get("variance")})
                    else:
                        pred[i], var[i] = p, v
            for record in range(1, len(test) + 1):
                if record not in seen:
                    failures.append({"fold": k, "row": record, "name": data["names"][test[record - 1]],
                                     "prediction": None, "variance": None})
    if mismatched:
        print(f"{name}: WARNING {mismatched} rows of pred.csv name another molecule than the row numbered",
              file=sys.stderr)
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
    parser.add_argument("--datasets", default="bzr,chembl")
    parser.add_argument("--folds", type=int, default=5)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--json", help="also write the figures to this file")
    parser.add_argument("--skip-ours", action="store_true", help="run scikit-learn alone")
    args = parser.parse_args()
    loaders = {"bzr": load_bzr, "chembl": load_chembl}
    names = [d.strip() for d in args.datasets.split(",") if d.strip()]
    unknown = [d for d in names if d not in loaders]
    if unknown:
        parser.error(f"unknown dataset(s) {', '.join(unknown)}; known: bzr, chembl")
    if not args.skip_ours and not (os.path.isfile(args.varimo) and os.access(args.varimo, os.X_OK)):
        print(f"varimo-krige not found (or not executable) at {args.varimo}.\n"
              f"Build it, pass its path with --varimo, or run scikit-learn alone with --skip-ours.",
              file=sys.stderr)
        return 2

    report = {"folds": args.folds, "seed": args.seed, "datasets": {}}
    rows = []
    for name in names:
        data = loaders[name]()
        y = data["y"]
        folds = list(KFold(n_splits=args.folds, shuffle=True, random_state=args.seed).split(y))
        peer_pred, peer_var, peer_seconds, peer_kernels = run_peer(data, folds, args.seed)
        entry = {"molecules": len(y), "peer_kernels": peer_kernels, "failed_rows": [], "ours": None}
        keep = np.ones(len(y), dtype=bool)
        ours = None if args.skip_ours else run_ours(args.varimo, data, folds, name)
        if ours is not None:
            ours_pred, ours_var, ours_seconds, entry["ours_kernels"], entry["failed_rows"] = ours
            keep = np.isfinite(ours_pred)
            entry["ours"] = metrics(y[keep], ours_pred[keep], ours_var[keep], ours_seconds)
        entry["peer"] = metrics(y[keep], peer_pred[keep], peer_var[keep], peer_seconds)
        for model in ("peer", "ours"):
            if entry[model] is not None:
                rows.append((name, "sklearn" if model == "peer" else "varimo", int(keep.sum()),
                             len(entry["failed_rows"]), entry[model]))
        report["datasets"][name] = entry
        for failure in entry["failed_rows"][:10]:
            print(f"{name}: no prediction for fold {failure['fold']} row {failure['row']} ({failure['name']}): "
                  f"prediction={failure['prediction']!r} variance={failure['variance']!r}")
        if len(entry["failed_rows"]) > 10:
            print(f"{name}: ... {len(entry['failed_rows']) - 10} more rows without a prediction")

    print(f"{args.folds}-fold cross-validation, seed {args.seed}; failed rows left out for both models")
    print(f"{'dataset':<8} {'model':<8} {'n':>5} {'failed':>6} {'RMSE':>7} {'R2':>7} {'cover95':>8} {'seconds':>8}")
    for dataset, model, n, failed, m in rows:
        print(f"{dataset:<8} {model:<8} {n:>5} {failed:>6} {m['rmse']:>7.3f} {m['r2']:>7.3f} "
              f"{m['coverage95']:>8.3f} {m['seconds']:>8.2f}")
    if args.json:
        with open(args.json, "w") as f:
            json.dump(report, f, indent=2)
    return 0


if __name__ == "__main__":
    sys.exit(main())
