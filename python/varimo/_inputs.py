"""What the estimators accept as X and y, turned into the core's types.

Molecules come as a sequence (list, tuple, numpy array, pandas Series) of
SMILES strings or RDKit molecules, as a pandas DataFrame with a column of
either, or as the path of an SD, SMILES or CSV file. RDKit molecules cross
in RDKit's binary form, properties included, and are rebuilt on the other
side by the same RDKit.
"""

import os

import numpy as np

from . import _core

# Column names a DataFrame's molecules are looked for under, in this order.
_MOLECULE_COLUMNS = ("mol", "romol", "molecule", "molecules", "smiles")


def _is_rdkit_mol(item):
    return hasattr(item, "ToBinary") and hasattr(item, "GetNumAtoms")


def _is_dataframe(x):
    return hasattr(x, "columns") and hasattr(x, "iloc")


def is_path(x):
    return isinstance(x, (str, os.PathLike))


def _item(item):
    if isinstance(item, (str, bytes)) or item is None:
        return item
    if isinstance(item, np.str_):
        return str(item)
    if _is_rdkit_mol(item):
        from rdkit import Chem

        return item.ToBinary(Chem.PropertyPickleOptions.AllProps)
    raise TypeError(f"a molecule is a SMILES string or an RDKit molecule, not {type(item).__name__}")


def _molecule_column(frame):
    by_lower = {str(c).lower(): c for c in frame.columns}
    for name in _MOLECULE_COLUMNS:
        if name in by_lower:
            return by_lower[name]
    candidates = [
        c for c in frame.columns
        if len(frame) > 0 and (isinstance(frame[c].iloc[0], str) or _is_rdkit_mol(frame[c].iloc[0]))
    ]
    if len(candidates) == 1:
        return candidates[0]
    raise ValueError(
        "cannot tell which column of the DataFrame holds the molecules: name it one of "
        + ", ".join(_MOLECULE_COLUMNS)
    )


class MoleculeInput:
    """Parsed molecules in the order given, and where they came from."""

    def __init__(self, batch, from_file):
        self.batch = batch
        self.from_file = from_file

    def __len__(self):
        return len(self.batch)

    @property
    def failures(self):
        return self.batch.failures


def molecules(x, drift=None):
    """The molecules of X; with `drift`, the drift fields are taken from a
    DataFrame's columns (other inputs carry them themselves: SD fields of a
    file, properties of RDKit molecules)."""
    if is_path(x):
        path = os.fspath(x)
        if not os.path.exists(path):
            raise FileNotFoundError(f"no such file: {path}")
        return MoleculeInput(_core.read_molecule_file(path), True)
    fields = {}
    if _is_dataframe(x):
        column = _molecule_column(x)
        for name in drift or ():
            if name not in x.columns:
                raise ValueError(f"the DataFrame has no drift column {name!r}")
            fields[name] = np.asarray(x[name], dtype=float)
        items = list(x[column])
    elif isinstance(x, (list, tuple)) or (hasattr(x, "__len__") and hasattr(x, "__iter__") and not isinstance(x, bytes)):
        if isinstance(x, np.ndarray) and x.ndim != 1:
            raise ValueError(f"X must be one-dimensional: a sequence of molecules, not an array of shape {x.shape}")
        items = list(x)
    else:
        raise TypeError(
            "X is a sequence of SMILES or RDKit molecules, a DataFrame with a column of them, or a file path, "
            f"not {type(x).__name__}"
        )
    return MoleculeInput(_core.molecules_from_inputs([_item(i) for i in items], fields), False)


def responses(y, n):
    """y as floats, one per molecule, all finite."""
    values = np.asarray(y, dtype=float)
    if values.ndim != 1:
        raise ValueError(f"y must be one-dimensional, not of shape {values.shape}")
    if len(values) != n:
        raise ValueError(f"X has {n} molecules but y has {len(values)} values")
    bad = np.flatnonzero(~np.isfinite(values))
    if len(bad):
        raise ValueError(f"y is not finite at row {bad[0]} ({values[bad[0]]})" + (
            f" and {len(bad) - 1} more rows" if len(bad) > 1 else ""))
    return values


def describe_failures(failures, limit=5):
    """'row 3: reason; row 7: reason; ...' for messages."""
    shown = "; ".join(f"row {row}: {reason}" for row, reason in failures[:limit])
    if len(failures) > limit:
        shown += f"; and {len(failures) - limit} more"
    return shown
