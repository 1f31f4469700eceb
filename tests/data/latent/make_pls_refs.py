#!/usr/bin/python3
"""Descriptor table of RDKit's benzodiazepine set and partial least squares
references for tests/latent/pls_krige_test.cc.

Run with /usr/bin/python3 (Debian's python3-rdkit, scikit-learn, numpy);
writes pls_refs.txt beside this script. The molecules are
/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf (163), in file order.
Lines:
  names <descriptor names...>
  row <index> <ACTIVITY> <logP response> <descriptors...>   (J = 12 columns)
  For L = 1, 2, 3, with sklearn PLSRegression(n_components=L, scale=True,
  tol=1e-14, max_iter=10000) fitted on X and the single response ACTIVITY:
    yhat <L> <values...>           pls.predict(X)
    bstar <L> <intercept> <coefs>  the raw-scale linear model that pls.predict
                                   applies: predict(0), then predict(e_j) - predict(0)
    w <L> <l> <values...>          x_weights_[:, l] (unit norm; sign free)
    t <L> <l> <values...>          x_scores_[:, l] / its norm (sign free)
    f <L> <l> <values...>          x_rotations_[:, l] / the norm of x_scores_[:, l]
    propx <L> <values...>          |x_loadings_[:, l]|^2 |x_scores_[:, l]|^2 / |Xs|^2
    ress <L> <value>               sum of squared residuals of predict
    press <L> <value>              leave-one-out: a PLSRegression fitted without
                                   each row predicts it
  allrow <index> <logP> <descriptors...>   the 200 compounds of
                                   /usr/share/RDKit/Projects/DbCLI/testData/pubchem.200.sdf
  all_yhat, all_bstar, ...         the same references as above for the 363
                                   molecules of both files (bzr first), with
                                   RDKit's MolLogP as the single response
  ols <values...>                  numpy.linalg.lstsq on [1, X] of the two
                                   responses ACTIVITY and MolLogP, predictions
                                   column after column: the model of all J
                                   latent vectors must equal least squares
"""
import os
import warnings

import numpy as np
from rdkit import Chem
from rdkit.Chem import Descriptors
from sklearn.cross_decomposition import PLSRegression

NAMES = ["MolWt", "TPSA", "NumHDonors", "NumHAcceptors", "NumRotatableBonds", "RingCount",
         "FractionCSP3", "HeavyAtomCount", "NumAromaticRings", "LabuteASA", "BertzCT", "NHOHCount"]
warnings.simplefilter("ignore", FutureWarning)
FUNCS = dict(Descriptors.descList)

mols = [m for m in Chem.SDMolSupplier("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf")]
assert all(m is not None for m in mols) and len(mols) == 163
X = np.array([[FUNCS[n](m) for n in NAMES] for m in mols])
act = np.array([float(m.GetProp("ACTIVITY")) for m in mols])
logp = np.array([Descriptors.MolLogP(m) for m in mols])
others = [m for m in Chem.SDMolSupplier("/usr/share/RDKit/Projects/DbCLI/testData/pubchem.200.sdf")]
assert all(m is not None for m in others) and len(others) == 200
Xo = np.array([[FUNCS[n](m) for n in NAMES] for m in others])


def fmt(v):
    return " ".join(repr(float(a)) for a in np.ravel(v))


def fit(Xf, yf, L):
    return PLSRegression(n_components=L, scale=True, tol=1e-14, max_iter=10000).fit(Xf, yf)


lines = ["names " + " ".join(NAMES)]
for i in range(len(mols)):
    lines.append(f"row {i} {act[i]!r} {logp[i]!r} {fmt(X[i])}")

def references(prefix, X, resp):
    """The lines of the PLS references of one table, keys led by prefix."""
    out = []
    y = resp.reshape(-1, 1)
    Xs = (X - X.mean(axis=0)) / X.std(axis=0, ddof=1)
    ssqx = np.sum(Xs ** 2)
    for L in (1, 2, 3):
        pls = fit(X, y, L)
        yhat = pls.predict(X).ravel()
        out.append(f"{prefix}yhat {L} {fmt(yhat)}")
        at0 = pls.predict(np.zeros((1, X.shape[1]))).ravel()[0]
        unit = pls.predict(np.eye(X.shape[1])).ravel() - at0
        out.append(f"{prefix}bstar {L} {at0!r} {fmt(unit)}")
        for l in range(L):
            tn = np.linalg.norm(pls.x_scores_[:, l])
            out.append(f"{prefix}w {L} {l} {fmt(pls.x_weights_[:, l])}")
            out.append(f"{prefix}t {L} {l} {fmt(pls.x_scores_[:, l] / tn)}")
            out.append(f"{prefix}f {L} {l} {fmt(pls.x_rotations_[:, l] / tn)}")
        props = [np.sum(pls.x_loadings_[:, l] ** 2) * np.sum(pls.x_scores_[:, l] ** 2) / ssqx for l in range(L)]
        out.append(f"{prefix}propx {L} {fmt(props)}")
        out.append(f"{prefix}ress {L} {np.sum((resp - yhat) ** 2)!r}")
        pred = np.empty(len(resp))
        for i in range(len(resp)):
            keep = np.arange(len(resp)) != i
            pred[i] = fit(X[keep], y[keep], L).predict(X[i:i + 1]).ravel()[0]
        out.append(f"{prefix}press {L} {np.sum((resp - pred) ** 2)!r}")
    return out


lines += references("", X, act)

# The wider table: bzr and PubChem's 200 compounds, logP from the rest.
for i, m in enumerate(others):
    lines.append(f"allrow {i} {Descriptors.MolLogP(m)!r} {fmt(Xo[i])}")
lines += references("all_", np.vstack([X, Xo]),
                    np.r_[logp, np.array([Descriptors.MolLogP(m) for m in others])])

A = np.hstack([np.ones((len(X), 1)), X])
Y2 = np.column_stack([act, logp])
coef, *_ = np.linalg.lstsq(A, Y2, rcond=None)
lines.append("ols " + fmt((A @ coef).T))

with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "pls_refs.txt"), "w") as out:
    out.write("# Written by make_pls_refs.py (RDKit descriptors, scikit-learn PLSRegression, numpy); do not edit.\n")
    out.write("\n".join(lines) + "\n")
