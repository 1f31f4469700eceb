#!/usr/bin/python3
"""The Python package's overhead over the library calls it makes: 5-fold
fit + predict of CHEMBL2321810 (rdkit-data's Free-Wilson series of 1017
sulfonamides, pIC50 as given), SMILES in, predictions with standard
deviations out, in the package and in C++ (mol_model_bench's
BM_FoldsFitPredict, the same folds and calls), in one run.

    PYTHONPATH=build/release/python bench/python/package_overhead.py build/release/bench/mol/mol_model_bench
"""

import json
import statistics
import subprocess
import sys
import time

import numpy as np

import varimo
from varimo import _core

SMI = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810.smi"
ACT = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810_act.csv"


def load():
    activity = dict(line.strip().split(",") for line in list(open(ACT))[1:])
    smiles, y = [], []
    for line in open(SMI):
        s, name = line.split()
        smiles.append(s)
        y.append(float(activity[name]))
    return np.array(smiles, dtype=object), np.array(y)


def package_seconds(smiles, y, repetitions):
    fold = np.asarray(_core.cross_validation_folds(len(y), 5, 1))
    times = []
    for _ in range(repetitions):
        start = time.perf_counter()
        for k in range(5):
            model = varimo.MolKriging().fit(list(smiles[fold != k]), y[fold != k])
            model.predict(list(smiles[fold == k]), return_std=True)
        times.append(time.perf_counter() - start)
    return times


def cpp_seconds(program, repetitions):
    done = subprocess.run([program, "--benchmark_filter=FoldsFitPredict", "--benchmark_format=json",
                           f"--benchmark_repetitions={repetitions}"], capture_output=True, text=True, check=True)
    runs = json.loads(done.stdout)["benchmarks"]
    return [r["real_time"] for r in runs if r.get("run_type") == "iteration"]


def main():
    program = sys.argv[1]
    repetitions = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    smiles, y = load()
    cpp = cpp_seconds(program, repetitions)
    py = package_seconds(smiles, y, repetitions)
    c, p = statistics.median(cpp), statistics.median(py)
    print(f"5-fold fit + predict of CHEMBL2321810 ({len(y)} molecules), medians of {repetitions}:")
    print(f"  C++ library calls: {c:.3f} s  (runs {', '.join(f'{t:.3f}' for t in cpp)})")
    print(f"  Python package:    {p:.3f} s  (runs {', '.join(f'{t:.3f}' for t in py)})")
    print(f"  overhead: {100 * (p / c - 1):+.1f} %")


if __name__ == "__main__":
    main()
