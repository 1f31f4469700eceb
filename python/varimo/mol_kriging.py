"""Kriging on molecules as a scikit-learn estimator."""

import collections
import os
import warnings

import numpy as np

from . import _core, _inputs, _messages
from ._base import CoreEstimator, Kernel, Variogram
from ._choosing import ChoosingMixin, call

Neighbours = collections.namedtuple("Neighbours", "indices weights distances")


class PredictionWarning(UserWarning):
    """Some molecules could not be predicted; their values are NaN."""


def check_errors(errors):
    if errors not in ("warn", "raise"):
        raise ValueError(f"errors is 'warn' or 'raise', not {errors!r}")


def check_threads(threads):
    if not isinstance(threads, (int, np.integer)) or threads < 1:
        raise ValueError(f"threads is a whole number of at least 1, not {threads!r}")
    return int(threads)


def report_failures(failures, errors, noun="molecules"):
    """Warns about (row, reason) pairs, or raises with errors='raise'."""
    if not failures:
        return
    message = f"{len(failures)} {noun} could not be predicted: {_inputs.describe_failures(failures)}"
    if errors == "raise":
        raise ValueError(message)
    warnings.warn(message, PredictionWarning, stacklevel=3)


def check_kernel_fit(kernel_fit, local):
    if kernel_fit not in ("variogram", "likelihood"):
        raise ValueError(f"kernel_fit is 'variogram' or 'likelihood', not {kernel_fit!r}")
    if kernel_fit == "likelihood" and local:
        raise ValueError("kernel_fit='likelihood' is for global models, not local")


def no_kernel_error(n, reported, items="rows"):
    reason = "; ".join(reported[-3:]) if reported else "no reason given"
    return RuntimeError(f"no kernel could be trained on {n} {items}: {reason}")


class MolKriging(ChoosingMixin, CoreEstimator):
    """Kriging on molecules: predictions with a variance, the neighbours that
    carry them, and what each atom contributes.

    The distance of two molecules is one minus the Tanimoto coefficient of
    their Vsepr fingerprints (bond paths and atom environments of
    ``min_path`` to ``max_path`` bonds). The model learns a variogram of
    response differences against that distance, fits a kernel to it and
    kriges: ordinary kriging, or universal kriging with the ``drift`` fields
    as a drift linear in them.

    Parameters
    ----------
    local : int or None
        Predict each molecule from its ``local`` nearest training molecules
        only (for large training sets); None for one global model.
    kernel : str or None
        The one candidate kernel to fit ("Spherical", "Power(4.000)", ...);
        None fits every candidate and keeps the best that trains.
    kernel_fit : {"variogram", "likelihood"}
        How the kernels' parameters are found: by least squares on the
        experimental variogram, or by the likelihood of the training
        responses (each candidate's range of largest likelihood, the
        candidates ranked by it; global models only, as varimo-krige --fit).
        Without a ``kernel`` its candidates are the kernels that are
        covariances on molecules: the exponential and two Student t.
        With few training molecules the binned variogram is noisy, and the
        likelihood, which uses every pair at once, tends to give better
        ranked and better calibrated standard deviations.
    drift : list of str or None
        Names of numeric fields of the molecules (SD fields, RDKit
        properties or DataFrame columns) for universal kriging.
    max_path, min_path, force_paths_out, weight_by_length, stereo_aware :
        The fingerprint's options.
    threads : int
        Threads of the prediction loop; results do not depend on it.
    fallback_kernels : bool
        A molecule a global model cannot predict is tried again with the
        kernels its variogram ranks below the model's own, until one
        predicts it (as varimo-krige --fallback-kernels).
    errors : {"warn", "raise"}
        A molecule that cannot be read or predicted gives NaN with a
        PredictionWarning, or raises ValueError.
    variance : {"kriging", "full"}
        The variance behind ``return_std`` and ``predict_proba_above``: the
        kriging variance, or the full one, which adds the variance of
        estimating the mean and the drift; only the full one grows as a
        universal model's query leaves its drift's training range (as
        varimo-krige --variance full).

    X is a sequence of SMILES strings or RDKit molecules, a DataFrame with a
    column of them, or the path of an SD, SMILES or CSV file; with a path, y
    may name the field that holds the responses.
    """

    def __init__(self, local=None, kernel=None, drift=None, max_path=6, min_path=1, force_paths_out=True,
                 weight_by_length=False, stereo_aware=False, threads=1, fallback_kernels=False, errors="warn",
                 variance="kriging", kernel_fit="variogram"):
        self.local = local
        self.kernel = kernel
        self.kernel_fit = kernel_fit
        self.drift = drift
        self.max_path = max_path
        self.min_path = min_path
        self.force_paths_out = force_paths_out
        self.weight_by_length = weight_by_length
        self.stereo_aware = stereo_aware
        self.threads = threads
        self.fallback_kernels = fallback_kernels
        self.errors = errors
        self.variance = variance

    # Making the model ----------------------------------------------------

    def _new_model(self, response_name=""):
        if self.local is not None and (not isinstance(self.local, (int, np.integer)) or self.local < 1):
            raise ValueError(f"local is None or a whole number of at least 1, not {self.local!r}")
        if self.kernel is not None and not isinstance(self.kernel, str):
            raise ValueError(f"kernel is None or a kernel's name, not {self.kernel!r}")
        drift = list(self.drift) if self.drift is not None else []
        if any(not isinstance(d, str) for d in drift):
            raise ValueError(f"drift is a list of field names, not {self.drift!r}")
        for name in ("max_path", "min_path"):
            value = getattr(self, name)
            if not isinstance(value, (int, np.integer)) or value < 0:
                raise ValueError(f"{name} is a whole number, not {value!r}")
        check_threads(self.threads)
        check_errors(self.errors)
        check_kernel_fit(self.kernel_fit, self.local)
        return _core.MolModel(
            max_path=int(self.max_path), min_path=int(self.min_path), force_paths_out=bool(self.force_paths_out),
            weight_by_length=bool(self.weight_by_length), stereo_aware=bool(self.stereo_aware),
            local=int(self.local or 0), drift=drift, kernel=self.kernel or "", fit=self.kernel_fit,
            response_name=response_name)

    def _training_rows(self, data, y):
        """Rows of X to train on and their responses; bad input raises, except
        for a file whose field y names, whose unusable records are left out
        with a warning, as varimo-krige leaves them out."""
        if data.from_file and isinstance(y, str):
            rows, values, left_out = _core.select_training(data.batch, y)
            messages = [reason for _, reason in data.failures] + list(left_out)
            if messages:
                warnings.warn(f"left out {len(messages)} records: " + "; ".join(messages[:5])
                              + ("" if len(messages) <= 5 else f"; and {len(messages) - 5} more"),
                              UserWarning, stacklevel=3)
            if not rows:
                raise ValueError(f"no molecule has a numeric {y}")
            return list(rows), np.asarray(values, dtype=float), y
        if isinstance(y, str):
            raise ValueError("y names a field only when X is a file; give the responses otherwise")
        values = _inputs.responses(y, len(data))
        if data.failures:
            raise ValueError("cannot read every molecule: " + _inputs.describe_failures(data.failures))
        return list(range(len(data))), values, str(getattr(y, "name", "") or "")

    def fit(self, X, y):
        """Trains on the molecules X with responses y; returns self."""
        model = self._new_model()
        data = _inputs.molecules(X, self.drift)
        rows, values, response_name = self._training_rows(data, y)
        if response_name:
            model = self._new_model(response_name)
        refused, _ = _messages.call(model.add, data.batch, rows, values)
        if refused:
            detail = _inputs.describe_failures([(r, "a drift field is missing or not a number") for r in refused])
            if not data.from_file:
                raise ValueError(f"{len(refused)} molecules lack the drift fields {self.drift}: {detail}")
            warnings.warn(f"left out {len(refused)} records without the drift fields: {detail}", UserWarning,
                          stacklevel=2)
        if model.num_records == 0:
            raise ValueError("no molecule is left to train on")
        trained, reported = _messages.call(model.train)
        if not trained:
            reason = model.explain_no_kernel(reported)
            raise RuntimeError(f"no kernel could be trained on {model.num_records} molecules: {reason}")
        refused = set(refused)
        self._set_fitted(model, np.array([r for r in rows if r not in refused], dtype=np.int64))
        return self

    def _set_fitted(self, model, training_rows):
        self.model_ = model
        self.training_rows_ = training_rows
        self.kernel_ = Kernel(*model.kernel())
        self.__dict__.pop("_variogram", None)
        self._forget_calibration()

    # Choosing and trusting (ChoosingMixin) ------------------------------------

    def _select_core(self, pool, options):
        data = _inputs.molecules(pool, self.drift)
        return call(self.model_.select, data.batch, options), list(data.batch.names())

    def _conformal(self):
        # Folds of the training records themselves, as varimo-krige
        # predict --interval calibrates.
        if "_conformal_intervals" not in self.__dict__:
            self.__dict__["_conformal_intervals"] = call(_core.calibrate_mol_model, self.model_, 5, 1,
                                                         check_threads(self.threads))
        return self.__dict__["_conformal_intervals"]

    def _assess(self, X, quantile):
        _, predictions, _, _ = self._predictions(X)
        return call(_core.mol_domain, self.model_, quantile).assess(predictions)

    # Predicting ------------------------------------------------------------

    def _predictions(self, X, contributions=False):
        self._check_fitted()
        threads = check_threads(self.threads)
        check_errors(self.errors)
        data = _inputs.molecules(X, self.drift)
        predictions, _ = _messages.call(self.model_.predict, data.batch, threads, contributions,
                                        bool(self.fallback_kernels))
        prediction, variance, valid = predictions.values(self._full_variance())
        failed = dict(data.failures)
        unexplained = [int(row) for row in np.flatnonzero(~valid) if int(row) not in failed]
        if unexplained:
            failed.update(zip(unexplained, self.model_.explain_failures(data.batch, unexplained)))
        report_failures(sorted(failed.items()), self.errors)
        if self.drift:
            outside = [(row, text) for row, text in self.model_.drift_extrapolations(data.batch) if valid[row]]
            if outside:
                warnings.warn(f"{len(outside)} molecules extrapolate the drift, further than the kriging variance "
                              f"says (variance='full' says it): {_inputs.describe_failures(outside)}",
                              PredictionWarning, stacklevel=3)
        return data, predictions, prediction, variance

    def _full_variance(self):
        if self.variance not in ("kriging", "full"):
            raise ValueError(f"variance is 'kriging' or 'full', not {self.variance!r}")
        return self.variance == "full"

    def predict(self, X, return_std=False):
        """Predictions of the molecules X; with return_std, also their
        standard deviations. NaN for a molecule that cannot be predicted."""
        _, _, prediction, variance = self._predictions(X)
        if return_std:
            return prediction, np.sqrt(variance)
        return prediction

    def predict_proba_above(self, X, threshold):
        """The probability that each molecule's true value lies above the
        threshold, under the normal law of its prediction and variance."""
        _, predictions, _, _ = self._predictions(X)
        return predictions.probability_above(float(threshold), self._full_variance())

    def contributions(self, X):
        """What each heavy atom of each molecule contributes: how much it moves
        the prediction from the training mean, one array per molecule in the
        order of its heavy atoms (None where the prediction failed)."""
        data, predictions, _, _ = self._predictions(X, contributions=True)
        return predictions.contributions(data.batch)

    def neighbours(self, X, k=3):
        """The k training molecules of largest weight in each prediction: their
        rows in the training X, weights and distances, largest weight first
        (-1 and NaN where there are fewer)."""
        if not isinstance(k, (int, np.integer)) or k < 1:
            raise ValueError(f"k is a whole number of at least 1, not {k!r}")
        _, predictions, _, _ = self._predictions(X)
        ids, weights, distances = predictions.neighbours(int(k))
        indices = np.where(ids >= 0, self.training_rows_[np.clip(ids, 0, None)], -1)
        return Neighbours(indices, weights, distances)

    # Files and pickling -----------------------------------------------------

    def save(self, path):
        """Writes the model file (the format varimo-krige --save writes)."""
        self._check_fitted()
        with open(os.fspath(path), "wb") as out:
            out.write(self.model_.to_text())

    @classmethod
    def load(cls, path, threads=1, errors="warn"):
        """The model of a file written by save or by varimo-krige --save."""
        path = os.fspath(path)
        with open(path, "rb") as f:
            text = f.read()
        model, _ = _messages.call(_core.MolModel.from_text, text, path)
        return cls._from_core(model, np.arange(model.num_records, dtype=np.int64), threads, errors)

    @classmethod
    def _from_core(cls, model, training_rows, threads=1, errors="warn"):
        s = model.settings
        estimator = cls(local=s["local"] or None, kernel=s["kernel"] or None, kernel_fit=s["fit"],
                        drift=list(s["drift"]) or None,
                        max_path=s["max_path"], min_path=s["min_path"], force_paths_out=s["force_paths_out"],
                        weight_by_length=s["weight_by_length"], stereo_aware=s["stereo_aware"], threads=threads,
                        errors=errors)
        estimator._set_fitted(model, training_rows)
        return estimator

    def _save_core(self):
        return self.model_.to_text()

    def _restore_core(self, text):
        model, _ = _messages.call(_core.MolModel.from_text, text, "pickled MolKriging")
        return model
