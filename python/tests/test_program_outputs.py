"""varimo-krige's SD output, read back by RDKit's own readers: one record per
query record, the query's fields kept, the prediction's fields added."""

import gzip
import math

import numpy as np
from rdkit import Chem

from conftest import read_predictions, run_krige


def test_sd_output_reads_back_in_rdkit(bzr_split, tmp_path):
    query = tmp_path / "query.sdf"
    records = bzr_split["query"].read_text()
    # A damaged record in the middle keeps its place in the output.
    first_end = records.index("$$$$\n") + 5
    query.write_text(records[:first_end] + "broken\n\n\nnot a counts line\nM  END\n$$$$\n" + records[first_end:])
    csv, sdf, sdfgz = tmp_path / "p.csv", tmp_path / "p.sdf", tmp_path / "p.sdf.gz"
    common = ["--train", bzr_split["train"], "--response", "ACTIVITY", "--predict", query, "--threshold", "7.5"]
    run_krige(*common, "--out", csv)
    run_krige(*common, "--out", sdf)
    run_krige(*common, "--out", sdfgz)
    prediction, variance = read_predictions(csv)
    mols = list(Chem.SDMolSupplier(str(sdf), sanitize=False))
    assert len(mols) == len(prediction) == len(bzr_split["query_mols"]) + 1
    assert mols[1].GetProp("_Name") == "broken" and mols[1].GetNumAtoms() == 0
    assert mols[1].GetProp("prediction") == "1.7976931348623157e+308"
    assert "cannot read the mol block" in mols[1].GetProp("failure")
    for mol, p, v in zip(mols, prediction, variance):
        if mol.GetProp("_Name") == "broken":
            continue
        assert float(mol.GetProp("prediction")) == p
        assert float(mol.GetProp("std")) == math.sqrt(v)
        assert mol.HasProp("ACTIVITY") and mol.HasProp("neighbours")
        assert 0 <= float(mol.GetProp("P(above 7.5)")) <= 1
    with gzip.open(sdfgz) as f:
        compressed = list(Chem.ForwardSDMolSupplier(f, sanitize=False))
    assert [m.GetProp("prediction") for m in compressed] == [m.GetProp("prediction") for m in mols]
    np.testing.assert_array_less(0, variance[np.isfinite(variance) & (variance < 1e300)])
