"""The report image of one prediction."""

import os
import tempfile

from . import _core, _inputs, _messages
from .mol_kriging import MolKriging

_FORMATS = ("png", "svg", "pdf")


class Report:
    """A report image in memory; shows itself in Jupyter."""

    def __init__(self, data, format):
        self.data = data
        self.format = format

    def _repr_png_(self):
        return self.data if self.format == "png" else None

    def _repr_svg_(self):
        return self.data.decode("utf-8") if self.format == "svg" else None

    def save(self, path):
        with open(os.fspath(path), "wb") as out:
            out.write(self.data)


def report(model, mol, path=None, format="png", title=None):
    """Draws the report of a fitted MolKriging's prediction of one molecule
    (a SMILES string or an RDKit molecule): the molecule coloured by what its
    atoms contribute, the predicted distribution over the training responses
    and the training molecules that weigh most. Written to `path` when given
    (the format from its extension, .png, .svg or .pdf) and the path
    returned; otherwise a Report in `format` is returned."""
    if not isinstance(model, MolKriging):
        raise TypeError(f"a report is of a fitted MolKriging, not {type(model).__name__}")
    model._check_fitted()
    if path is not None:
        extension = os.path.splitext(os.fspath(path))[1].lower().lstrip(".")
        if extension not in _FORMATS:
            raise ValueError(f"a report's file ends in .png, .svg or .pdf, not {os.fspath(path)!r}")
        format = extension
    elif format not in _FORMATS:
        raise ValueError(f"format is one of {_FORMATS}, not {format!r}")
    if _inputs.is_path(mol) and path is None and os.path.exists(os.fspath(mol)):
        raise ValueError("a report is of one molecule: give its SMILES or RDKit molecule")
    data = _inputs.molecules([mol], model.drift)
    if data.failures:
        raise ValueError(f"cannot read the molecule: {data.failures[0][1]}")
    predictions, _ = _messages.call(model.model_.predict, data.batch, 1, False)
    name = data.batch.names()[0]
    title = name if title is None else title
    if path is not None:
        _messages.call(_core.render_report, model.model_, predictions, data.batch, 0, os.fspath(path), title)
        return os.fspath(path)
    with tempfile.TemporaryDirectory() as scratch:
        target = os.path.join(scratch, "report." + format)
        _messages.call(_core.render_report, model.model_, predictions, data.batch, 0, target, title)
        with open(target, "rb") as f:
            return Report(f.read(), format)
