"""Kriging on rows of numbers as a scikit-learn estimator."""

import numpy as np
from sklearn.base import clone

from . import _core, _messages
from ._base import CoreEstimator, Kernel
from ._choosing import ChoosingMixin, call
from .mol_kriging import check_errors, check_kernel_fit, check_threads, no_kernel_error, report_failures

_MODELS = ("simple", "ordinary", "universal")
_METRICS = ("euclidean", "minmax")


class Kriging(ChoosingMixin, CoreEstimator):
    """Kriging on numeric features with a Euclidean or a min-max distance:
    the engine of ``varimo-krige`` on CSV files, giving the same numbers to
    the last bit.

    Parameters
    ----------
    model : {"ordinary", "simple", "universal"}
        Simple kriging kriges around the training mean, ordinary around a
        constant fitted with the weights, universal around a drift linear in
        the ``drift_columns``.
    kernel : str or None
        The one candidate kernel to fit; None fits every candidate and keeps
        the best that trains.
    kernel_fit : {"variogram", "likelihood"}
        How the kernels' parameters are found: by least squares on the
        experimental variogram, or by the likelihood of the training
        responses (global models only; as varimo-krige --fit). Without a
        ``kernel`` its candidates are the kernels that are covariances under
        the metric: the exponential and two Student t, and for the
        Euclidean distance also the Gaussian and the Cauchy.
    local : int or None
        Predict each row from its ``local`` nearest training rows; None for
        one global model.
    drift_columns : list or None
        With model="universal": the columns of X (indices, or names of a
        DataFrame's columns) that make the drift; they stay out of the
        distance.
    threads : int
        Threads of the prediction loop; results do not depend on it.
    errors : {"warn", "raise"}
        A row that cannot be predicted gives NaN with a warning, or raises.
    metric : {"euclidean", "minmax"}
        The distance between rows: Euclidean, or min-max for counts,
        ``1 - sum(min(a, b)) / sum(max(a, b))``, which is one minus the
        Tanimoto similarity on count fingerprints and on 0/1 bit vectors
        (for example RDKit's Morgan counts as rows of an array). Min-max
        needs features that are not negative; drift columns may be.
    """

    def __init__(self, model="ordinary", kernel=None, local=None, drift_columns=None, threads=1, errors="warn",
                 kernel_fit="variogram", metric="euclidean"):
        self.model = model
        self.kernel = kernel
        self.kernel_fit = kernel_fit
        self.local = local
        self.drift_columns = drift_columns
        self.threads = threads
        self.errors = errors
        self.metric = metric

    def _columns(self, X, training=False):
        """X as floats with the feature columns first and the drift columns
        last, as the engine reads an element. Under the min-max metric a row
        with a negative feature is refused in training; elsewhere it becomes
        a row of NaN, which the model cannot predict, as varimo-krige fails
        such a query row."""
        names = list(X.columns) if hasattr(X, "columns") else None
        values = np.asarray(X, dtype=float)
        if values.ndim != 2:
            raise ValueError(f"X must be two-dimensional, not of shape {values.shape}")
        drift = []
        for column in self.drift_columns or ():
            if names is not None and column in names:
                drift.append(names.index(column))
            elif isinstance(column, (int, np.integer)) and 0 <= column < values.shape[1]:
                drift.append(int(column))
            else:
                raise ValueError(f"no drift column {column!r} in X")
        features = [c for c in range(values.shape[1]) if c not in drift]
        if not features:
            raise ValueError("X has no feature column besides the drift columns")
        if self.metric not in _METRICS:
            raise ValueError(f"metric is 'euclidean' or 'minmax', not {self.metric!r}")
        if self.metric == "minmax":
            counts = values[:, features]
            with np.errstate(invalid="ignore"):
                negative = np.flatnonzero(((counts < 0) & np.isfinite(counts)).any(axis=1))
            if len(negative) and training:
                raise ValueError(f"metric='minmax' compares counts, and row {negative[0]} of X has a negative feature")
            if len(negative):
                values = values.copy()
                values[negative] = np.nan
        return np.ascontiguousarray(values[:, features + drift]), len(features), len(drift)

    def fit(self, X, y):
        """Trains on the rows of X with responses y; returns self."""
        if self.model not in _MODELS:
            raise ValueError(f"model is one of {_MODELS}, not {self.model!r}")
        if (self.model == "universal") != bool(self.drift_columns):
            raise ValueError("drift_columns go with model='universal', and it needs them")
        if self.local is not None and (not isinstance(self.local, (int, np.integer)) or self.local < 1):
            raise ValueError(f"local is None or a whole number of at least 1, not {self.local!r}")
        check_threads(self.threads)
        check_errors(self.errors)
        check_kernel_fit(self.kernel_fit, self.local)
        values, num_features, num_drift = self._columns(X, training=True)
        y = np.asarray(y, dtype=float)
        if y.ndim != 1 or len(y) != len(values):
            raise ValueError(f"X has {len(values)} rows but y has shape {y.shape}")
        bad = np.flatnonzero(~np.isfinite(values).all(axis=1) | ~np.isfinite(y))
        if len(bad):
            raise ValueError(f"X or y is not finite at row {bad[0]}" + (
                f" and {len(bad) - 1} more rows" if len(bad) > 1 else ""))
        model = _core.VectorModel(self.model, num_features, num_drift, int(self.local or 0), self.kernel or "",
                                  self.kernel_fit, self.metric)
        refused, _ = _messages.call(model.add, values, y)
        if refused:
            raise ValueError(f"the model refuses rows {list(refused[:5])}")
        trained, reported = _messages.call(model.train)
        if not trained:
            raise no_kernel_error(len(values), reported)
        self.model_ = model
        self.n_features_in_ = values.shape[1]
        self._training = (values, y)
        self.kernel_ = Kernel(*model.kernel())
        self.__dict__.pop("_variogram", None)
        self._forget_calibration()
        return self

    def _checked_columns(self, X):
        values, _, _ = self._columns(X)
        if values.shape[1] != self.n_features_in_:
            raise ValueError(f"X has {values.shape[1]} columns; the model was fitted on {self.n_features_in_}")
        return values

    # Choosing and trusting (ChoosingMixin) ------------------------------------

    def _select_core(self, pool, options):
        return call(self.model_.select, self._checked_columns(pool), options), None

    def _held_out(self):
        from .cross_validation import cross_validate

        values, y = self._training
        model = clone(self)
        if self.drift_columns:
            # The stored rows hold the drift columns last, by position.
            model.drift_columns = list(range(values.shape[1] - len(self.drift_columns), values.shape[1]))
        cv = cross_validate(model, values, y, folds=5)
        return y, cv.prediction, cv.std**2

    def _assess(self, X, quantile):
        self._check_fitted()
        nearest, within, ratio, inside = call(self.model_.applicability, self._checked_columns(X), quantile)
        return 1.0 - nearest, within, ratio, inside

    def predict(self, X, return_std=False):
        """Predictions of the rows of X; with return_std, also their standard
        deviations. NaN for a row that cannot be predicted."""
        self._check_fitted()
        values = self._checked_columns(X)
        (prediction, variance), _ = _messages.call(self.model_.predict, values, check_threads(self.threads))
        failed = (prediction >= 1e300) | (variance >= 1e300) | ~np.isfinite(prediction) | ~np.isfinite(variance)
        prediction[failed] = np.nan
        variance[failed] = np.nan
        report_failures([(int(r), "the prediction failed") for r in np.flatnonzero(failed)], self.errors, "rows")
        if return_std:
            return prediction, np.sqrt(variance)
        return prediction

    def _save_core(self):
        return self.model_.trained_kernels()

    def _restore_core(self, trained):
        """The model made again from the training rows and the kernels it was
        trained with: the same predictions, bit for bit, without fitting."""
        values, y = self._training
        num_drift = len(self.drift_columns or ())
        model = _core.VectorModel(self.model, values.shape[1] - num_drift, num_drift, int(self.local or 0),
                                  self.kernel or "", self.kernel_fit, self.metric)
        _messages.call(model.add, values, y)
        kernels, fixed = trained
        ok, _ = _messages.call(model.train_with_kernels, kernels, fixed)
        if not ok:
            raise ValueError("the pickled Kriging cannot be trained again with its kernels")
        return model
