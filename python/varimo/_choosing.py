"""What both estimators offer for choosing the next experiments and
trusting their predictions: suggest, predict_interval and applicability.
The work is the library's; here are the checks and the tables."""

import numpy as np
import pandas as pd

from . import _core, _messages

_ACQUISITIONS = ("greedy", "ucb", "ei", "pi", "thompson")
_BATCHES = (None, "believer", "liar-min", "liar-mean", "liar-max", "thompson")


def _whole(name, value, least):
    if isinstance(value, bool) or not isinstance(value, (int, np.integer)) or value < least:
        raise ValueError(f"{name} is a whole number of at least {least}, not {value!r}")
    return int(value)


class ChoosingMixin:
    """Needs of the estimator: `_select_core(pool, options)` giving the picks
    and the pool's names, `_held_out()` giving measured values with their
    cross-validated predictions and variances, `_assess(X, quantile)`."""

    def suggest(self, pool, n, acquisition="ei", batch="believer", kappa=2.0, xi=0.0, minimize=False,
                candidates=2000, seed=1, exclude=(), exclude_training=False, allow_duplicates=False):
        """The n members of `pool` to measure next, as a DataFrame in pick
        order: rank (from 1), row (in the pool, from 0), name, prediction,
        sd and acquisition at the moment of the pick.

        acquisition: 'greedy', 'ucb' (mean + kappa sd), 'ei' or 'pi' (over
        the best training response by at least xi), or 'thompson'.
        batch: None for the top n by the acquisition; 'believer' or a
        'liar-*' to take each pick in as measured (at its prediction, or the
        min, mean or max training response) before the next; 'thompson'
        for one joint posterior draw per pick over the `candidates` members
        of largest ucb. The picks never repeat, skip the rows in `exclude`
        and, with exclude_training, members equal to a training element;
        two identical members are not both picked unless allow_duplicates.
        """
        self._check_fitted()
        if acquisition not in _ACQUISITIONS:
            raise ValueError(f"acquisition is one of {_ACQUISITIONS}, not {acquisition!r}")
        if batch not in _BATCHES:
            raise ValueError(f"batch is one of {_BATCHES}, not {batch!r}")
        if batch == "thompson" and acquisition == "ei":
            acquisition = "thompson"  # the default acquisition means nothing to a joint draw
        for name, value in (("kappa", kappa), ("xi", xi)):
            if not np.isfinite(value) or value < 0:
                raise ValueError(f"{name} is a finite number of at least 0, not {value!r}")
        options = dict(n=_whole("n", n, 1), acquisition=acquisition, batch=batch or "top", kappa=float(kappa),
                       xi=float(xi), minimize=bool(minimize), candidates=_whole("candidates", candidates, 1),
                       seed=_whole("seed", seed, 0), threads=int(self.threads),
                       exclude=[_whole("an excluded row", r, 0) for r in exclude],
                       exclude_training=bool(exclude_training), allow_duplicates=bool(allow_duplicates))
        (index, prediction, sd, value), names = self._select_core(pool, options)
        table = pd.DataFrame({"rank": np.arange(1, len(index) + 1), "row": index})
        if names is not None:
            table["name"] = [names[i] for i in index]
        table["prediction"] = prediction
        table["sd"] = sd
        table["acquisition"] = value
        return table

    def _conformal(self):
        if "_conformal_intervals" not in self.__dict__:
            measured, predicted, variance = self._held_out()
            ok = np.isfinite(predicted) & np.isfinite(variance)
            self.__dict__["_conformal_intervals"] = _core.ConformalIntervals(
                measured[ok].tolist(), predicted[ok].tolist(), variance[ok].tolist())
        return self.__dict__["_conformal_intervals"]

    def predict_interval(self, X, alpha=0.1, method="conformal"):
        """(lower, upper) of each prediction of X: an interval that misses
        the true value with probability at most alpha. 'conformal' scales the
        sd by a quantile of the |residual| / sd of a 5-fold cross-validation
        of the training set (computed once per fit); 'scaled' is the normal
        interval with the variance rescaled by the mean of residual^2 /
        variance there. NaN where a prediction fails."""
        if method not in ("conformal", "scaled"):
            raise ValueError(f"method is 'conformal' or 'scaled', not {method!r}")
        if not 0 < alpha < 1:
            raise ValueError(f"alpha lies strictly between 0 and 1, not {alpha!r}")
        prediction, sd = self.predict(X, return_std=True)
        intervals = self._conformal()
        if intervals.num_scores == 0:
            raise ValueError("no held-out prediction of the training set could be made to calibrate on")
        lower, upper = intervals.interval(np.nan_to_num(prediction, nan=np.inf), np.nan_to_num(sd * sd, nan=-1.0),
                                          float(alpha), method == "scaled")
        return lower, upper

    def applicability(self, X, quantile=0.95):
        """Where each element of X lies against the training set, as a
        DataFrame: nearest_similarity (1 - distance of the nearest training
        element), within_radius (training elements within the threshold),
        sd_ratio (prediction sd over the prior sd) and in_domain (the nearest
        training element no farther than the `quantile` of the training
        elements' own leave-one-out nearest distances)."""
        self._check_fitted()
        if not 0 <= quantile <= 1:
            raise ValueError(f"quantile lies between 0 and 1, not {quantile!r}")
        nearest, within, ratio, inside = self._assess(X, float(quantile))
        return pd.DataFrame({"nearest_similarity": nearest, "within_radius": within, "sd_ratio": ratio,
                             "in_domain": inside})

    def _forget_calibration(self):
        self.__dict__.pop("_conformal_intervals", None)


def call(function, *args):
    """The core's answer, its printed lines logged."""
    result, _ = _messages.call(function, *args)
    return result
