"""The scikit-learn contract, persistence and the per-molecule outputs."""

import logging
import pickle

import numpy as np
import pytest
from sklearn.base import clone
from sklearn.model_selection import GridSearchCV, KFold, cross_val_score

import varimo
from conftest import run_krige


@pytest.fixture(scope="module")
def small(chembl):
    """200 training and 40 query molecules of CHEMBL2321810, as SMILES."""
    return chembl["smiles"][:200], chembl["y"][:200], chembl["smiles"][200:240], chembl["y"][200:240]


def test_parameters_are_stored_untouched_and_clone(small):
    model = varimo.MolKriging(local=20, drift=None, max_path=5, threads=2)
    assert model.get_params()["local"] == 20 and model.get_params()["max_path"] == 5
    copy = clone(model)
    assert copy.get_params() == model.get_params()
    assert model.set_params(local=None) is model and model.local is None
    assert varimo.Kriging(model="universal", drift_columns=[1]).get_params()["drift_columns"] == [1]
    smiles, y, _, _ = small
    assert model.fit(smiles, y) is model
    assert not hasattr(clone(model), "model_")
    fitted = {name for name in vars(model) if name.endswith("_") and not name.startswith("_")}
    assert {"model_", "kernel_", "training_rows_"} <= fitted
    assert model.kernel_.name and model.kernel_.sill > 0
    distances, semivariances = model.variogram_
    assert len(distances) == len(semivariances) > 2 and np.all(np.diff(distances) > 0)


def test_grid_search_and_cross_val_score_run_on_the_estimator(small):
    smiles, y, _, _ = small
    search = GridSearchCV(varimo.MolKriging(), {"local": [None, 30]}, cv=KFold(3), scoring="neg_root_mean_squared_error")
    search.fit(smiles, y)
    assert search.best_params_["local"] in (None, 30)
    scores = cross_val_score(varimo.MolKriging(local=30), smiles, y, cv=KFold(3))
    assert scores.shape == (3,) and np.all(np.isfinite(scores))
    # score is R2.
    from sklearn.metrics import r2_score

    model = varimo.MolKriging().fit(smiles, y)
    assert model.score(small[2], small[3]) == pytest.approx(r2_score(small[3], model.predict(small[2])))


def test_save_load_and_pickle_give_the_same_predictions_bit_for_bit(small, tmp_path):
    smiles, y, queries, _ = small
    for params in ({}, {"local": 25}, {"kernel_fit": "likelihood"}):
        model = varimo.MolKriging(**params).fit(smiles, y)
        expected, expected_std = model.predict(queries, return_std=True)
        model.save(tmp_path / "m.vkm")
        loaded = varimo.MolKriging.load(tmp_path / "m.vkm")
        assert loaded.get_params() == model.get_params()
        unpickled = pickle.loads(pickle.dumps(model))
        for other in (loaded, unpickled):
            prediction, std = other.predict(queries, return_std=True)
            np.testing.assert_array_equal(prediction, expected)
            np.testing.assert_array_equal(std, expected_std)
        np.testing.assert_array_equal(unpickled.neighbours(queries).indices, model.neighbours(queries).indices)


def test_a_model_saved_by_the_program_loads(bzr_split, tmp_path):
    saved = tmp_path / "bzr.vkm"
    run_krige("--train", bzr_split["train"], "--response", "ACTIVITY", "--save", saved)
    model = varimo.MolKriging.load(saved)
    ours = varimo.MolKriging().fit(str(bzr_split["train"]), "ACTIVITY")
    np.testing.assert_array_equal(model.predict(bzr_split["query_mols"]), ours.predict(bzr_split["query_mols"]))
    # And the other way round: the program predicts with the package's file.
    ours.save(tmp_path / "ours.vkm")
    run_krige("--load", tmp_path / "ours.vkm", "--predict", bzr_split["query"], "--out", tmp_path / "p.csv")


@pytest.mark.filterwarnings("ignore::varimo.PredictionWarning")
def test_kriging_pickles_bit_for_bit():
    rng = np.random.default_rng(3)
    x = rng.uniform(size=(120, 2))
    y = x[:, 0] - 2 * x[:, 1] + rng.normal(0, 0.3, 120)
    for params in ({}, {"local": 20}, {"kernel_fit": "likelihood"}, {"metric": "minmax", "local": 20}):
        model = varimo.Kriging(**params).fit(x[:100], y[:100])
        np.testing.assert_array_equal(pickle.loads(pickle.dumps(model)).predict(x[100:]), model.predict(x[100:]))
    # A pickle from before a parameter existed takes its default.
    model = varimo.Kriging(local=20).fit(x[:100], y[:100])
    state = model.__getstate__()
    del state["metric"], state["kernel_fit"]
    old = varimo.Kriging.__new__(varimo.Kriging)
    old.__setstate__(state)
    assert old.get_params()["metric"] == "euclidean" and old.get_params()["kernel_fit"] == "variogram"
    np.testing.assert_array_equal(old.predict(x[100:]), model.predict(x[100:]))


def test_neighbours_contributions_and_probabilities(small):
    smiles, y, queries, _ = small
    model = varimo.MolKriging(threads=2).fit(smiles, y)
    prediction = model.predict(queries)
    neighbours = model.neighbours(queries, k=4)
    assert neighbours.indices.shape == (40, 4)
    assert np.all(neighbours.indices >= 0) and np.all(neighbours.indices < 200)
    assert np.all(np.diff(neighbours.weights, axis=1) <= 0)
    contributions = model.contributions(queries)
    from rdkit import Chem

    for c, s in zip(contributions, queries):
        assert len(c) == Chem.MolFromSmiles(s).GetNumHeavyAtoms()
    one = varimo.MolKriging(threads=1).fit(smiles, y)
    for a, b in zip(contributions, one.contributions(queries)):
        np.testing.assert_array_equal(a, b)
    p = model.predict_proba_above(queries, prediction[0])
    assert p[0] == pytest.approx(0.5) and np.all((p >= 0) & (p <= 1))


def test_reports_show_in_notebooks_and_write_files(small, tmp_path):
    smiles, y, queries, _ = small
    model = varimo.MolKriging().fit(smiles, y)
    png = varimo.report(model, queries[0])
    assert png._repr_png_().startswith(b"\x89PNG")
    svg = varimo.report(model, queries[0], format="svg")
    assert "<svg" in svg._repr_svg_()
    assert varimo.report(model, queries[0], path=tmp_path / "r.pdf") == str(tmp_path / "r.pdf")
    assert (tmp_path / "r.pdf").read_bytes().startswith(b"%PDF")
    with pytest.raises(ValueError, match="ends in .png, .svg or .pdf"):
        varimo.report(model, queries[0], path=tmp_path / "r.gif")


def test_library_messages_reach_logging(caplog):
    # One molecule makes no pair for a variogram: the engine warns, and the
    # error gives the reason in the program's words.
    with caplog.at_level(logging.WARNING, logger="varimo"):
        with pytest.raises(RuntimeError, match="no kernel could be trained on 1 molecules: one molecule is not enough$"):
            varimo.MolKriging().fit(["CCO"], [1.0])
    assert any("variogram" in r.getMessage() for r in caplog.records)
    with pytest.raises(RuntimeError, match=r"on 3 molecules: all 3 responses are equal \(2\)$"):
        varimo.MolKriging().fit(["CCO", "CCN", "CCCl"], [2.0, 2.0, 2.0])


def test_a_named_kernel_that_cannot_train_is_named(chembl):
    # The Gaussian kernel's covariance matrix of these molecules is not
    # positive definite, which no warning of the engine says.
    with pytest.raises(RuntimeError, match="the Gaussian kernel gives no covariance matrix that factorises$"):
        varimo.MolKriging(kernel="Gaussian").fit(chembl["smiles"][300:360], chembl["y"][300:360])


def test_neighbours_name_rows_of_the_training_file_around_left_out_records(chembl, tmp_path):
    path = tmp_path / "train.smi"
    lines = ["smiles name act"]
    for i in range(60):
        lines.append(f"{chembl['smiles'][i]} m{i} {'NA' if i == 2 else chembl['y'][i]}")
    path.write_text("\n".join(lines) + "\n")
    with pytest.warns(UserWarning, match=r"left out 1 records: record 3 \(m2\): act is not a number"):
        model = varimo.MolKriging().fit(str(path), "act")
    np.testing.assert_array_equal(model.training_rows_, [i for i in range(60) if i != 2])
    indices = model.neighbours(chembl["smiles"][60:70], k=60).indices
    assert 2 not in indices and set(indices[indices >= 0]) <= set(range(60))
