"""Bad input gets a Python exception with a clear message, or NaN with a
warning for a molecule that cannot be predicted, never a crash nor a row
out of place."""

import numpy as np
import pytest
from sklearn.exceptions import NotFittedError

import varimo


@pytest.fixture(scope="module")
def fitted(chembl):
    return varimo.MolKriging().fit(chembl["smiles"][:150], chembl["y"][:150])


def test_training_input_is_checked(chembl):
    smiles, y = chembl["smiles"][:20], chembl["y"][:20]
    with pytest.raises(ValueError, match="row 2: cannot parse SMILES 'not a smiles'"):
        varimo.MolKriging().fit(smiles[:2] + ["not a smiles"] + smiles[3:], y)
    with pytest.raises(ValueError, match="X has 20 molecules but y has 19 values"):
        varimo.MolKriging().fit(smiles, y[:19])
    with pytest.raises(ValueError, match="y is not finite at row 4"):
        varimo.MolKriging().fit(smiles, np.where(np.arange(20) == 4, np.inf, y))
    with pytest.raises(FileNotFoundError):
        varimo.MolKriging().fit("/nonexistent/train.sdf", "ACTIVITY")
    with pytest.raises(TypeError, match="not int"):
        varimo.MolKriging().fit([1, 2, 3], [1.0, 2.0, 3.0])
    with pytest.raises(ValueError, match="local is None or a whole number"):
        varimo.MolKriging(local=0).fit(smiles, y)
    with pytest.raises(ValueError, match="no kernel is named 'Wiggly'"):
        varimo.MolKriging(kernel="Wiggly").fit(smiles, y)
    with pytest.raises(ValueError, match="lack the drift fields"):
        varimo.MolKriging(drift=["logP"]).fit(smiles, y)
    with pytest.raises(ValueError, match="errors is 'warn' or 'raise'"):
        varimo.MolKriging(errors="ignore").fit(smiles, y)
    with pytest.raises(ValueError, match="kernel_fit is 'variogram' or 'likelihood', not 'ml'"):
        varimo.MolKriging(kernel_fit="ml").fit(smiles, y)
    for estimator in (varimo.MolKriging, varimo.Kriging):
        with pytest.raises(ValueError, match="kernel_fit='likelihood' is for global models, not local"):
            estimator(kernel_fit="likelihood", local=5).fit(smiles if estimator is varimo.MolKriging else
                                                            np.arange(20.0).reshape(-1, 1), y)
    with pytest.raises(RuntimeError, match="no kernel could be trained on 3 molecules: too few distinct elements"):
        varimo.MolKriging(kernel_fit="likelihood").fit(["CCO", "CCCO", "CCO"], [1.0, 2.0, 3.0])
    with pytest.raises(ValueError, match="not finite at row 1"):
        varimo.Kriging().fit(np.array([[0.0], [np.nan], [1.0]]), [1.0, 2.0, 3.0])
    with pytest.raises(NotFittedError):
        varimo.MolKriging().predict(smiles)


def test_a_molecule_that_cannot_be_read_is_nan_with_a_warning_in_its_own_row(fitted, chembl):
    queries = chembl["smiles"][150:155]
    expected = fitted.predict(queries)
    with pytest.warns(varimo.PredictionWarning, match="row 1: cannot parse SMILES 'C1CC'"):
        prediction = fitted.predict([queries[0], "C1CC", queries[1], None, queries[2]])
    np.testing.assert_array_equal(prediction[[0, 2, 4]], expected[:3])
    assert np.isnan(prediction[1]) and np.isnan(prediction[3])
    with pytest.raises(ValueError, match="2 molecules could not be predicted"):
        fitted.set_params(errors="raise").predict([queries[0], "C1CC", None])
    fitted.set_params(errors="warn")


def test_drift_from_a_dataframe_and_its_absence_in_queries(chembl):
    import pandas as pd
    from rdkit import Chem
    from rdkit.Chem import Crippen

    smiles = chembl["smiles"][:120]
    frame = pd.DataFrame({"smiles": smiles, "logP": [Crippen.MolLogP(Chem.MolFromSmiles(s)) for s in smiles]})
    model = varimo.MolKriging(drift=["logP"]).fit(frame, chembl["y"][:120])
    assert np.all(np.isfinite(model.predict(frame.iloc[:5])))
    with pytest.raises(ValueError, match="no drift column 'logP'"):
        model.predict(frame[["smiles"]])
    # SMILES alone carry no drift: every prediction fails, each named with
    # its reason, as the program names it.
    with pytest.warns(varimo.PredictionWarning, match="3 molecules could not be predicted: row 0: the drift field "
                                                      "logP is missing or not a number"):
        assert np.all(np.isnan(model.predict(smiles[:3])))


def test_lesser_kernels_predict_what_the_best_cannot():
    alcohols = ["CO", "CCO", "CCCO", "CCCCO", "CCCCCO", "CCCCCCO"]
    longer = ["CCCCCCCO", "CCCCCCCCO", "OCCCCCO"]
    model = varimo.MolKriging().fit(alcohols, [1, 2, 3, 4, 5, 6])
    with pytest.warns(varimo.PredictionWarning, match="3 molecules could not be predicted: row 0: the model gives "
                                                      "no valid prediction: its kriging variance falls outside"):
        assert np.all(np.isnan(model.predict(longer)))
    assert np.all(np.isfinite(model.set_params(fallback_kernels=True).predict(longer)))
    # The kernel of largest likelihood reaches them: its range is not cut
    # short by the few pairs of the variogram's bins.
    assert np.all(np.isfinite(varimo.MolKriging(kernel_fit="likelihood").fit(alcohols, [1, 2, 3, 4, 5, 6])
                              .predict(longer)))


def test_a_drift_outside_its_training_range_is_named_and_the_full_variance_grows():
    import pandas as pd

    train = pd.DataFrame({
        "smiles": ["CO", "CCO", "CCCO", "CCCCO", "CCCCCO", "CCCCCCO", "CCN", "CCCN", "CCCCN", "CCCCCN"],
        "d": [0, 0.2, 0.35, 0.5, 0.7, 0.85, 1, 0.4, 0.6, 0.3]})
    act = [1.1, 2.3, 2.9, 4.2, 4.8, 6.1, 2.2, 3.1, 3.9, 4.6]
    queries = pd.DataFrame({"smiles": ["CCCCCCN", "CCOC"], "d": [0.5, 3.0]})
    model = varimo.MolKriging(drift=["d"]).fit(train, act)
    with pytest.warns(varimo.PredictionWarning, match=r"1 molecules extrapolate the drift.*row 1: its drift field d = "
                                                      r"3 lies outside the training range \[0, 1\]"):
        _, kriging = model.predict(queries, return_std=True)
    with pytest.warns(varimo.PredictionWarning):
        _, full = model.set_params(variance="full").predict(queries, return_std=True)
    assert full[0] < 1.5 * kriging[0] and full[1] > 2.0 * kriging[1]
    with pytest.raises(ValueError, match="variance is 'kriging' or 'full'"):
        model.set_params(variance="wide").predict(queries)
