"""K-fold cross-validation with the folds and figures of varimo-krige cv."""

import collections
import warnings

import numpy as np

from . import _core, _inputs, _messages
from .kriging import Kriging
from .mol_kriging import MolKriging, check_threads

CrossValidation = collections.namedtuple(
    "CrossValidation", "rmse r2 coverage95 prediction std fold counted failed")

# varimo-krige cv's default seed, so that both give the same folds unasked.
DEFAULT_SEED = 1


def cross_validate(model, X, y, folds=5, seed=None, threads=None):
    """Cross-validates an unfitted-or-fitted MolKriging or Kriging's settings:
    each fold is held out in turn, a model of the same parameters is trained
    on the others in their order, and the held-out rows are predicted.

    Fold k holds the rows at positions k, k + folds, ... of a shuffle seeded
    with `seed` (None: varimo-krige cv's default, 1), so a MolKriging on a
    file gives the numbers of ``varimo-krige cv --train FILE --seed S``.

    Returns RMSE, R2 (NaN when undefined: fewer than two predictions or
    equal measured values), the fraction of measured values within 1.96
    standard deviations (coverage95), and per row its held-out prediction
    and standard deviation (NaN where it failed) and its fold, with the
    numbers of predictions counted and failed.
    """
    if not isinstance(folds, (int, np.integer)) or folds < 2:
        raise ValueError(f"folds is a whole number of at least 2, not {folds!r}")
    seed = DEFAULT_SEED if seed is None else seed
    if not isinstance(seed, (int, np.integer)) or seed < 0:
        raise ValueError(f"seed is None or a whole number, not {seed!r}")
    threads = check_threads(model.threads if threads is None else threads)
    if isinstance(model, MolKriging):
        return _cross_validate_molecules(model, X, y, int(folds), int(seed), threads)
    if isinstance(model, Kriging):
        return _cross_validate_rows(model, X, y, int(folds), int(seed), threads)
    raise TypeError(f"cross_validate takes a MolKriging or a Kriging, not {type(model).__name__}")


def _cross_validate_molecules(model, X, y, folds, seed, threads):
    core = model._new_model()
    data = _inputs.molecules(X, model.drift)
    rows, values, _ = model._training_rows(data, y)
    if len(rows) < folds:
        raise ValueError(f"{len(rows)} molecules cannot make {folds} folds")
    cv, _ = _messages.call(core.cross_validate, data.batch, rows, values, folds, seed, threads)
    return CrossValidation(cv["rmse"], cv["r2"], cv["coverage95"], cv["prediction"], np.sqrt(cv["variance"]),
                           cv["fold"], cv["counted"], cv["failed"])


def _cross_validate_rows(model, X, y, folds, seed, threads):
    n = len(y)
    if n < folds:
        raise ValueError(f"{n} rows cannot make {folds} folds")
    fold = np.asarray(_core.cross_validation_folds(n, folds, seed))
    prediction = np.full(n, np.nan)
    variance = np.full(n, np.nan)
    y = np.asarray(y, dtype=float)
    for k in range(folds):
        held = np.flatnonzero(fold == k)
        train = np.flatnonzero(fold != k)
        fitted = Kriging(**{**model.get_params(), "threads": threads, "errors": "warn"})
        fitted.fit(_rows(X, train), y[train])
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            p, s = fitted.predict(_rows(X, held), return_std=True)
        prediction[held] = p
        variance[held] = s * s
    # The summary in the order of the folds, as varimo-krige sums it.
    order = np.concatenate([np.flatnonzero(fold == k) for k in range(folds)])
    summary = _core.summarize_cross_validation(y[order], np.nan_to_num(prediction[order], nan=np.inf),
                                               np.nan_to_num(variance[order], nan=np.inf))
    return CrossValidation(summary["rmse"], summary["r2"], summary["coverage95"], prediction, np.sqrt(variance),
                           fold, summary["counted"], summary["failed"])


def _rows(X, index):
    if hasattr(X, "iloc"):
        return X.iloc[index]
    return np.asarray(X)[index]
