"""varimo: kriging on molecules and on numeric features, with predictions,
variances, the neighbours behind each prediction, atom contributions and
report images, as scikit-learn estimators.

    import varimo
    model = varimo.MolKriging().fit(smiles, pic50)
    prediction, std = model.predict(new_smiles, return_std=True)
"""

from . import _core, acquisition
from .cross_validation import CrossValidation, cross_validate
from ._base import Kernel, Variogram
from .kriging import Kriging
from .mol_kriging import MolKriging, Neighbours, PredictionWarning
from .report import Report, report
from ._screening import screen

__version__ = _core.__version__

__all__ = [
    "CrossValidation",
    "Kernel",
    "Kriging",
    "MolKriging",
    "Neighbours",
    "PredictionWarning",
    "Report",
    "Variogram",
    "acquisition",
    "cross_validate",
    "report",
    "screen",
]
