"""Choosing the next experiments and trusting predictions: the acquisition
functions against scipy, suggest against the estimators' own predictions,
intervals and the applicability domain, on bzr.sdf and on synthetic rows."""

import pickle

import numpy as np
import pytest
from scipy import stats

import varimo
from varimo import acquisition as acq


def test_acquisitions_match_scipy_and_refuse_bad_options():
    rng = np.random.default_rng(3)
    mean, sd = rng.normal(size=50), rng.uniform(0.1, 2.0, 50)
    best, xi = 0.4, 0.05
    z = (mean - best - xi) / sd
    np.testing.assert_allclose(acq.expected_improvement(mean, sd, best, xi),
                               sd * (z * stats.norm.cdf(z) + stats.norm.pdf(z)), rtol=1e-10)
    zmin = (best - xi - mean) / sd
    np.testing.assert_allclose(acq.probability_of_improvement(mean, sd, best, xi, minimize=True),
                               stats.norm.cdf(zmin), rtol=1e-10)
    np.testing.assert_allclose(acq.upper_confidence_bound(mean.reshape(5, 10), sd.reshape(5, 10), kappa=1.5),
                               (mean + 1.5 * sd).reshape(5, 10))
    assert acq.expected_improvement([3.0], [0.0], 1.0)[0] == 0.0
    assert acq.best_response([1.0, np.nan, 4.0], minimize=True) == 1.0
    with pytest.raises(ValueError, match="kappa must be a finite number of at least 0, not -1"):
        acq.upper_confidence_bound(mean, sd, kappa=-1)
    with pytest.raises(ValueError, match="joint posterior draw"):
        acq.acquisition("thompson", mean, sd)


@pytest.fixture(scope="module")
def bzr_model(bzr_split):
    return varimo.MolKriging().fit(bzr_split["train_mols"], bzr_split["train_y"])


def test_suggest_ranks_as_the_predictions_say(bzr_model, bzr_split):
    pool = bzr_split["query_mols"]
    mean, sd = bzr_model.predict(pool, return_std=True)
    ei = acq.expected_improvement(mean, sd, bzr_split["train_y"].max())
    top = bzr_model.suggest(pool, 5, batch=None)
    assert list(top.columns) == ["rank", "row", "name", "prediction", "sd", "acquisition"]
    assert list(top["row"]) == list(np.argsort(-ei, kind="stable")[:5])
    np.testing.assert_allclose(top["acquisition"], np.sort(ei)[::-1][:5], rtol=1e-9)
    assert top["name"][0] == pool[top["row"][0]].GetProp("_Name")

    batch = bzr_model.suggest(pool, 8, batch="believer", exclude=[int(top["row"][0])])
    assert batch["row"].is_unique and top["row"][0] not in set(batch["row"])
    thompson = bzr_model.suggest(pool, 8, batch="thompson", seed=4)
    assert thompson["row"].is_unique
    assert thompson.equals(bzr_model.suggest(pool, 8, batch="thompson", seed=4))
    with pytest.raises(ValueError, match="only 41 members of the pool can be picked, not 42"):
        bzr_model.suggest(pool, 42)
    with pytest.raises(ValueError, match="batch is one of"):
        bzr_model.suggest(pool, 2, batch="fantasy")


def test_intervals_and_domain_of_molecules(bzr_model, bzr_split):
    pool = bzr_split["query_mols"]
    prediction = bzr_model.predict(pool)
    lower, upper = bzr_model.predict_interval(pool, alpha=0.1)
    assert np.all(lower < prediction) and np.allclose(upper - prediction, prediction - lower)
    wider, _ = bzr_model.predict_interval(pool, alpha=0.02)
    assert np.all(wider <= lower)
    covered = np.mean((bzr_split["query_y"] >= lower) & (bzr_split["query_y"] <= upper))
    assert covered >= 0.75  # 41 held-out molecules; the guarantee is 0.9 on average
    domain = bzr_model.applicability(bzr_split["train_mols"][:3] + pool[:3])
    assert list(domain.columns) == ["nearest_similarity", "within_radius", "sd_ratio", "in_domain"]
    assert np.allclose(domain["nearest_similarity"][:3], 1.0) and domain["in_domain"][:3].all()
    assert pickle.loads(pickle.dumps(bzr_model)).predict_interval(pool, 0.1)[0].tolist() == lower.tolist()
    with pytest.raises(ValueError, match="alpha lies strictly between 0 and 1"):
        bzr_model.predict_interval(pool, alpha=1.0)


def test_kriging_on_rows_covers_and_chooses():
    rng = np.random.default_rng(11)
    X = rng.uniform(size=(260, 2))
    y = np.sin(4 * X[:, 0]) + np.cos(3 * X[:, 1]) + rng.normal(0, 0.1, 260)
    # One kernel: the automatic fit may pick a nearly singular one, whose
    # honest intervals are wide.
    model = varimo.Kriging(kernel="Exponential").fit(X[:120], y[:120])
    lower, upper = model.predict_interval(X[120:], alpha=0.1)
    covered = np.mean((y[120:] >= lower) & (y[120:] <= upper))
    assert 0.8 <= covered <= 0.97
    picks = model.suggest(X[120:], 10, acquisition="ucb", batch="liar-mean")
    assert picks["row"].is_unique and len(picks) == 10 and "name" not in picks
    domain = model.applicability(np.vstack([X[:2], [[5.0, 5.0]]]))
    assert list(domain["in_domain"]) == [True, True, False]
    with pytest.raises(ValueError, match="X has 3 columns"):
        model.suggest(np.ones((4, 3)), 1)
