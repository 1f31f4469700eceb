#!/usr/bin/python3
"""Seeded samples of known Gaussian mixtures, and scikit-learn's variational
fit of each, for tests/mixture/gauss_mix_model_test.cc.

Run with /usr/bin/python3; writes beside this script, for each sample NAME:
  NAME_data.txt   the sample, one value per line (numpy default_rng(20261124))
  NAME_sklearn.txt  lines "component weight mean sd" of the components that
                  BayesianGaussianMixture (5 components, a Dirichlet prior on
                  the weights of total 1, as the library's fits) gives a
                  weight above 2%, by increasing mean, and a line "truth
                  weight mean sd" per component the sample was drawn from.

The two variational fits are alike in kind (Dirichlet weights, conjugate
priors on each component's mean and precision) but not in their priors:
scikit-learn puts one prior on every component, the library centres each
component's prior on a slice of the sorted data. So the tests compare the
components both find, not their posteriors' details.
"""
import os

import numpy as np
from sklearn.mixture import BayesianGaussianMixture

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLES = {
    "separated": (2000, [(0.3, -5.0, 1.0), (0.5, 0.0, 0.5), (0.2, 6.0, 1.0)]),
    "overlapping": (3000, [(0.6, 0.0, 1.0), (0.4, 3.0, 0.7)]),
}


def main():
    rng = np.random.default_rng(20261124)
    for name, (n, components) in SAMPLES.items():
        weights = np.array([c[0] for c in components])
        which = rng.choice(len(components), size=n, p=weights)
        x = np.array([rng.normal(components[k][1], components[k][2]) for k in which])
        with open(os.path.join(HERE, name + "_data.txt"), "w") as f:
            f.write("# %s: %d draws of %s\n" % (name, n, components))
            for v in x:
                f.write("%r\n" % float(v))
        fit = BayesianGaussianMixture(n_components=5, covariance_type="full",
                                      weight_concentration_prior_type="dirichlet_distribution",
                                      weight_concentration_prior=0.2, max_iter=10000, tol=1e-8,
                                      random_state=0).fit(x.reshape(-1, 1))
        rows = sorted((float(fit.means_[k, 0]), float(fit.weights_[k]), float(np.sqrt(fit.covariances_[k, 0, 0])))
                      for k in range(5) if fit.weights_[k] > 0.02)
        with open(os.path.join(HERE, name + "_sklearn.txt"), "w") as f:
            f.write("# scikit-learn BayesianGaussianMixture, converged=%s\n" % fit.converged_)
            for mean, weight, sd in rows:
                f.write("component %r %r %r\n" % (weight, mean, sd))
            for weight, mean, sd in components:
                f.write("truth %r %r %r\n" % (weight, mean, sd))


if __name__ == "__main__":
    main()
