"""Shared data of the package's tests: RDKit's sample files (rdkit-data),
and varimo-krige of the same build to compare with."""

import os
import subprocess

import numpy as np
import pytest

BZR = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf"
CHEMBL_SMI = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810.smi"
CHEMBL_ACT = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810_act.csv"


def krige_program():
    program = os.environ.get("VARIMO_KRIGE_PROGRAM")
    if not program:
        pytest.skip("VARIMO_KRIGE_PROGRAM is not set (ctest sets it)")
    return program


def run_krige(*args):
    """varimo-krige with the arguments; its standard output. Fails the test
    when the program fails."""
    done = subprocess.run([krige_program(), *map(str, args)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout


def read_predictions(path):
    """The prediction and variance columns of varimo-krige's output, as
    floats parsed from their 17 digits (exact)."""
    with open(path) as f:
        header = f.readline().strip().split(",")
        rows = [line.rstrip("\n").split(",") for line in f]
    p, v = header.index("prediction"), header.index("variance")
    return np.array([float(r[p]) for r in rows]), np.array([float(r[v]) for r in rows])


@pytest.fixture(scope="session")
def bzr_split(tmp_path_factory):
    """bzr.sdf split into training (3 of 4 records) and query (every 4th) SD
    files, with the query molecules as RDKit molecules and SMILES."""
    from rdkit import Chem

    folder = tmp_path_factory.mktemp("bzr")
    records = open(BZR).read().split("$$$$\n")
    records = [r + "$$$$\n" for r in records if r.strip()]
    train = folder / "train.sdf"
    query = folder / "query.sdf"
    train.write_text("".join(r for i, r in enumerate(records) if i % 4))
    query.write_text("".join(r for i, r in enumerate(records) if i % 4 == 0))
    train_mols = [m for m in Chem.SDMolSupplier(str(train))]
    query_mols = [m for m in Chem.SDMolSupplier(str(query))]
    return {
        "train": train, "query": query, "train_mols": train_mols, "query_mols": query_mols,
        "train_y": np.array([float(m.GetProp("ACTIVITY")) for m in train_mols]),
        "query_y": np.array([float(m.GetProp("ACTIVITY")) for m in query_mols]),
    }


@pytest.fixture(scope="session")
def chembl(tmp_path_factory):
    """CHEMBL2321810 (rdkit-data's Free-Wilson series of 1017 sulfonamides)
    as a CSV file of smiles,name,pIC50, the activities joined by name."""
    activity = {}
    with open(CHEMBL_ACT) as f:
        next(f)
        for line in f:
            name, value = line.strip().split(",")
            activity[name] = float(value)
    smiles, names = [], []
    with open(CHEMBL_SMI) as f:
        for line in f:
            s, name = line.split()
            smiles.append(s)
            names.append(name)
    y = np.array([activity[n] for n in names])
    path = tmp_path_factory.mktemp("chembl") / "chembl2321810.csv"
    with open(path, "w") as out:
        out.write("smiles,name,pIC50\n")
        for s, n, v in zip(smiles, names, y):
            out.write(f"{s},{n},{v!r}\n")
    return {"csv": path, "smiles": smiles, "names": names, "y": y}
