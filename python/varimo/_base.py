"""What the estimators share: the fitted check, the variogram, and pickling
through the core's own saved form."""

import collections
import inspect

from sklearn.base import BaseEstimator, RegressorMixin
from sklearn.exceptions import NotFittedError

from . import _messages

Kernel = collections.namedtuple("Kernel", "name sill nugget range")
Variogram = collections.namedtuple("Variogram", "distance semivariance")


class CoreEstimator(RegressorMixin, BaseEstimator):
    """An estimator whose fitted state is a core model in `model_`.
    Subclasses say how that model is saved (`_save_core`) and made again
    (`_restore_core`); everything else pickles as it is."""

    def _check_fitted(self):
        if not hasattr(self, "model_"):
            raise NotFittedError(f"this {type(self).__name__} is not fitted yet: call fit")

    @property
    def variogram_(self):
        """The binned experimental variogram the kernel was fitted to:
        distances and semivariances of the bins."""
        self._check_fitted()
        if "_variogram" not in self.__dict__:
            variogram, _ = _messages.call(self.model_.variogram)
            self.__dict__["_variogram"] = Variogram(*variogram)
        return self.__dict__["_variogram"]

    def __getstate__(self):
        unpicklable = ("model_", "_variogram", "_conformal_intervals")
        state = {k: v for k, v in self.__dict__.items() if k not in unpicklable}
        if hasattr(self, "model_"):
            state["_core_state"] = self._save_core()
        return state

    def __setstate__(self, state):
        state = dict(state)
        # An estimator pickled before a parameter existed behaves as its
        # default did then.
        for name, parameter in inspect.signature(type(self).__init__).parameters.items():
            if name != "self" and name not in state:
                state[name] = parameter.default
        saved = state.pop("_core_state", None)
        self.__dict__.update(state)
        if saved is not None:
            self.model_ = self._restore_core(saved)
