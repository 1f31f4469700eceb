"""Kriging pIC50 of benzodiazepine-site ligands (RDKit's bzr sample) from a
pandas DataFrame: train on three molecules of four, predict the fourth with
a standard deviation, and draw the report of one (in a notebook, the last
line shows it)."""

import sys

import varimo
from rdkit.Chem import PandasTools

frame = PandasTools.LoadSDF("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf")
frame["pIC50"] = frame["ACTIVITY"].astype(float)
train, test = frame[frame.index % 4 != 0], frame[frame.index % 4 == 0]
model = varimo.MolKriging().fit(train["ROMol"], train["pIC50"])
prediction, std = model.predict(test["ROMol"], return_std=True)
for name, p, s, y in zip(test["ID"], prediction, std, test["pIC50"]):
    print(f"{name:24s} predicted {p:5.2f} +- {s:4.2f}   measured {y:5.2f}")
report = varimo.report(model, test["ROMol"].iloc[0])
report.save(sys.argv[1] if len(sys.argv) > 1 else "bzr_report.png")
