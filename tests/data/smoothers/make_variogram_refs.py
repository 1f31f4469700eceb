#!/usr/bin/python3
"""Tanimoto similarities of 150 molecules of RDKit's first_5K.smi and the
binned variograms of their Crippen logP against them, computed with RDKit,
numpy and scipy for tests/smoothers/variogram_test.cc.

Run with /usr/bin/python3; writes beside this script:
  tanimoto150.pgs   the similarity matrix (Morgan radius 2, 2048 bits),
                    lower triangle with Index and Title columns, 6 decimals
  logp150.csv       columns "logP" (Crippen, 3 decimals), "rings" and
                    "aromatic" (ring counts), same order
  variogram_refs.txt, lines of
    count b...      pairs per bin, 10 bins, bin = floor(10 s) (10 folded to 9)
    mean v...       mean of 0.5 (y_i - y_j)^2 per bin (0 for an empty bin)
    trim v...       trimmed mean per bin, fraction t = 0.2: sorted, k =
                    round-half-up(n t / 2), mean of elements k .. n-k-1
    weights w...    bin weights: count / total for bins of at least
                    floor(0.001 total / 10) pairs, lower edge >= 0.1; normalised
    fit p err nugget sill   the Exponential kernel exp(-p (C - s)) fitted to
                    the mean variogram: scipy's bounded minimiser of the
                    weighted RMS residual over p in [0.01, 100], nugget and
                    sill from numpy's weighted lstsq at that p
    grid nb...      for the two ring counts as predictors (similarity
                    1 - |x_i - x_j| / range), 3 x 4 cells: the pairs per cell
                    with each similarity truncated to an integer before it is
                    scaled by the cell count, then the mean squared difference
                    per cell (empty cells nan)
    gridfit p1 p2 err nugget sill   the best of the 5 x 5 grid of Exponential
                    parameters from 1 to 9 for both columns, fitted to half
                    the cell means, cells weighted by their pairs
C is one plus ten ulps.
"""
import math
import os
import struct

import numpy as np
from rdkit import Chem, DataStructs, RDLogger
from rdkit.Chem import AllChem, Crippen, rdMolDescriptors
from scipy import optimize

C = struct.unpack(">d", bytes.fromhex("3FF000000000000A"))[0]
HERE = os.path.dirname(os.path.abspath(__file__))
N = 150
B = 10


def molecules():
    RDLogger.DisableLog("rdApp.*")
    mols = []
    with open("/usr/share/RDKit/Data/NCI/first_5K.smi") as f:
        for line in f:
            fields = line.split()
            mol = Chem.MolFromSmiles(fields[0]) if fields else None
            if mol is not None and mol.GetNumAtoms() >= 6:
                mols.append((fields[1] if len(fields) > 1 else str(len(mols)), mol))
            if len(mols) == N:
                return mols
    raise RuntimeError("too few molecules")


def weighted_fit(k, y, w):
    """nugget + (sill - nugget) k by weighted least squares; the weighted RMS."""
    A = np.column_stack([np.ones_like(k), k]) * np.sqrt(w)[:, None]
    coef, *_ = np.linalg.lstsq(A, y * np.sqrt(w), rcond=None)
    a, b = coef
    rms = math.sqrt(np.sum(w * (y - a - b * k) ** 2) / np.sum(w))
    return rms, a, a + b


def main():
    mols = molecules()
    fps = [AllChem.GetMorganFingerprintAsBitVect(m, 2, nBits=2048) for _, m in mols]
    S = np.array([DataStructs.BulkTanimotoSimilarity(fp, fps) for fp in fps])
    S = np.round(S, 6)
    y = np.array([round(Crippen.MolLogP(m), 3) for _, m in mols])
    with open(os.path.join(HERE, "tanimoto150.pgs"), "w") as f:
        f.write("# Tanimoto similarities, Morgan radius 2, 2048 bits, of the first 150\n")
        f.write("# molecules of at least 6 atoms in RDKit's first_5K.smi (make_variogram_refs.py)\n")
        f.write("Index,Title,Similarities\n")
        for i, (name, _) in enumerate(mols):
            f.write(f"{i},{name}," + ",".join(f"{S[i, j]:.6f}" for j in range(i + 1)) + "\n")
    rings = np.array([rdMolDescriptors.CalcNumRings(m) for _, m in mols], dtype=float)
    aromatic = np.array([rdMolDescriptors.CalcNumAromaticRings(m) for _, m in mols], dtype=float)
    with open(os.path.join(HERE, "logp150.csv"), "w") as f:
        f.write("logP,rings,aromatic\n")
        for v, r, a in zip(y, rings, aromatic):
            f.write(f"{v:.3f},{r:.0f},{a:.0f}\n")

    iu, ju = np.triu_indices(N, 1)
    s = S[iu, ju]
    half = 0.5 * (y[iu] - y[ju]) ** 2
    bins = np.minimum(np.floor(s * B).astype(int), B - 1)
    counts = np.bincount(bins, minlength=B)
    means = np.array([half[bins == b].mean() if counts[b] else 0.0 for b in range(B)])
    trims = []
    for b in range(B):
        v = np.sort(half[bins == b])
        n = len(v)
        k = math.floor(n * 0.2 / 2 + 0.5)
        trims.append(v[k:n - k].mean() if n and n - k > k else (1.0 if n else 0.0))
    total = counts.sum()
    minc = math.floor(0.001 * total / B)
    w = np.array([counts[b] / total if (b / B >= 0.1 and counts[b] >= minc) else 0.0 for b in range(B)])
    w = w / w.sum()
    centres = (np.arange(B) + 0.5) / B

    def objective(p):
        return weighted_fit(1.0 - np.exp(-p * (C - centres)), means, w)[0]

    best = optimize.minimize_scalar(objective, bounds=(0.01, 100.0), method="bounded",
                                    options={"xatol": 1e-10})
    err, nugget, sill = weighted_fit(1.0 - np.exp(-best.x * (C - centres)), means, w)

    # Two plain predictors, the ring counts.
    dims = [(1.0 - np.abs(x[iu] - x[ju]) / (x.max() - x.min()), nb) for x, nb in ((rings, 3), (aromatic, 4))]
    index = np.zeros(len(s), dtype=int)
    for sim, nb in dims:
        digit = np.minimum(np.trunc(sim) * nb, nb - 1).astype(int)
        index = index * nb + digit
    sq = (y[iu] - y[ju]) ** 2
    cells = 12
    ccount = np.bincount(index, minlength=cells)
    cmean = np.array([sq[index == c].mean() if ccount[c] else np.nan for c in range(cells)])
    csims = []
    for c in range(cells):
        d2 = c % 4
        d1 = c // 4
        csims.append(((d1 + 0.5) / 3, (d2 + 0.5) / 4))
    cw = ccount / ccount.sum()
    grid = np.linspace(1.0, 9.0, 5)
    bestg = None
    for p1 in grid:
        for p2 in grid:
            kv = np.array([math.exp(-p1 * (C - a)) * math.exp(-p2 * (C - b)) for a, b in csims])
            keep = ccount > 0
            e, a, sl = weighted_fit(1.0 - kv[keep], 0.5 * cmean[keep], cw[keep])
            if bestg is None or e < bestg[2]:
                bestg = (p1, p2, e, a, sl)

    with open(os.path.join(HERE, "variogram_refs.txt"), "w") as f:
        f.write("# written by make_variogram_refs.py (RDKit, numpy, scipy)\n")
        f.write("count " + " ".join(str(c) for c in counts) + "\n")
        f.write("mean " + " ".join(repr(float(v)) for v in means) + "\n")
        f.write("trim " + " ".join(repr(float(v)) for v in trims) + "\n")
        f.write("weights " + " ".join(repr(float(v)) for v in w) + "\n")
        f.write(f"fit {best.x!r} {err!r} {nugget!r} {sill!r}\n")
        f.write("grid " + " ".join(str(c) for c in ccount) + " " +
                " ".join(repr(float(v)) for v in cmean) + "\n")
        f.write("gridfit " + " ".join(repr(float(v)) for v in bestg) + "\n")


if __name__ == "__main__":
    main()
