"""Acquisition functions on arrays of predictions and standard deviations:
how much each candidate is worth measuring next. Larger is always better,
for maximisation and (with minimize=True) for minimisation alike.

    import varimo.acquisition as acq
    ei = acq.expected_improvement(mean, sd, best=y.max())

The values are the library's own (those that suggest ranks by): expected
and probable improvement keep their accuracy far in the tail and are
exactly 0 where sd is 0; a mean or sd that is not finite gives NaN.
"""

import numpy as np

from . import _core


def _arrays(mean, sd):
    mean = np.ascontiguousarray(mean, dtype=float)
    sd = np.ascontiguousarray(np.broadcast_to(np.asarray(sd, dtype=float), mean.shape), dtype=float)
    return mean.reshape(-1), sd.reshape(-1), mean.shape


def acquisition(kind, mean, sd, best=np.nan, kappa=2.0, xi=0.0, minimize=False):
    """The acquisition `kind` ('greedy', 'ucb', 'ei' or 'pi') of each
    prediction, in the shape of `mean`."""
    m, s, shape = _arrays(mean, sd)
    return _core.acquisition(str(kind), m, s, float(best), float(kappa), float(xi), bool(minimize)).reshape(shape)


def greedy(mean, minimize=False):
    """The mean, negated when minimizing."""
    return acquisition("greedy", mean, 0.0, minimize=minimize)


def upper_confidence_bound(mean, sd, kappa=2.0, minimize=False):
    """mean + kappa sd; when minimizing -(mean - kappa sd)."""
    return acquisition("ucb", mean, sd, kappa=kappa, minimize=minimize)


def expected_improvement(mean, sd, best, xi=0.0, minimize=False):
    """E[max(0, Y - best - xi)] for Y ~ N(mean, sd^2); when minimizing
    E[max(0, best - xi - Y)]."""
    return acquisition("ei", mean, sd, best=best, xi=xi, minimize=minimize)


def probability_of_improvement(mean, sd, best, xi=0.0, minimize=False):
    """P(Y > best + xi) for Y ~ N(mean, sd^2); when minimizing P(Y < best - xi)."""
    return acquisition("pi", mean, sd, best=best, xi=xi, minimize=minimize)


def best_response(y, minimize=False):
    """The largest finite response (the smallest when minimizing)."""
    return _core.best_response(np.asarray(y, dtype=float).ravel().tolist(), bool(minimize))
