#!/usr/bin/python3
"""What choosing from a large pool costs next to predicting it once.

Trains varimo-krige on CHEMBL2321810 (rdkit-data's Free-Wilson set, pIC50
as given) and, on a pool of about 100,000 molecules (NCI first_5K repeated
20 times under fresh names), times in one run:
  predict   one plain prediction-with-variance pass over the pool
  believer  select --picks 100 --batch believer (EI)
  thompson  select --picks 100 --batch thompson --candidates 5000
each a separate process, with its peak resident memory; the training
(about a second) is inside each. Prints the times, the ratio of each
selection to the predict pass (target: believer at most 2x) and the peaks
(target: Thompson at most 1 GB).

    /usr/bin/python3 bench/mol/select_speed.py build/release/tools/krige/varimo-krige [--threads N]
"""
import argparse
import os
import subprocess
import tempfile
import time

FREE_WILSON = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810"
NCI = "/usr/share/RDKit/Data/NCI/first_5K.smi"


def write_inputs(folder):
    act = dict(line.strip().split(",") for line in open(FREE_WILSON + "_act.csv").readlines()[1:])
    train = os.path.join(folder, "train.csv")
    with open(train, "w") as out:
        out.write("smiles,name,pIC50\n")
        for line in open(FREE_WILSON + ".smi"):
            smiles, name = line.split()
            if name in act:
                out.write(f"{smiles},{name},{act[name]}\n")
    pool = os.path.join(folder, "pool.smi")
    records = [line.split() for line in open(NCI) if line.strip()]
    with open(pool, "w") as out:
        for copy in range(20):
            out.writelines(f"{smiles} nci{name}_{copy}\n" for smiles, name in records)
    return train, pool, 20 * len(records)


def run(args):
    """Wall time and peak resident memory (MB) of one process."""
    start = time.perf_counter()
    process = subprocess.Popen(args, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - start
    if status != 0:
        raise SystemExit(f"{' '.join(args)} failed: {process.stderr.read().decode()}")
    return elapsed, usage.ru_maxrss / 1024.0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--threads", type=int, default=1)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        train, pool, size = write_inputs(folder)
        flags = ["--train", train, "--response", "pIC50", "--threads", str(options.threads), "--quiet"]
        out = os.path.join(folder, "out.csv")
        select = [options.program, "select"] + flags + ["--pool", pool, "--picks", "100", "--out", out]
        cases = {
            "predict": [options.program] + flags + ["--predict", pool, "--out", out],
            "believer": select + ["--batch", "believer"],
            "thompson": select + ["--batch", "thompson", "--candidates", "5000"],
        }
        results = {name: run(args) for name, args in cases.items()}
    base = results["predict"][0]
    print(f"pool of {size} molecules, {options.threads} threads")
    for name, (seconds, peak) in results.items():
        print(f"{name:9s} {seconds:8.2f} s  {seconds / base:5.2f} x predict  peak {peak:7.1f} MB")


if __name__ == "__main__":
    main()
