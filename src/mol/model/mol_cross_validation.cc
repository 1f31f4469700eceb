#include "varimo/mol/mol_cross_validation.h"

#include <algorithm>
#include <limits>

#include "varimo/mol/mol_predict.h"

namespace Varimo {

ZqMolCrossValidation ZqCrossValidateMolModel(const ZqMolModelSettings& settings,
                                             const std::vector<const Molkit::ZqMolBase*>& mols,
                                             const std::vector<double>& responses, unsigned int folds,
                                             std::uint64_t seed, unsigned int threads) {
  constexpr double kFailed = std::numeric_limits<double>::max();
  ZqMolCrossValidation cv;
  const std::size_t n = mols.size();
  cv.prediction.assign(n, kFailed);
  cv.variance.assign(n, kFailed);
  if (folds == 0 || n < folds) {
    cv.fold.assign(n, 0);
    cv.summary = ZqSummarizeCrossValidation(responses, cv.prediction, cv.variance);
    return cv;
  }
  cv.fold = ZqCrossValidationFolds(n, folds, seed);
  std::vector<bool> refused(n, false);
  for (unsigned int k = 0; k < folds; ++k) {
    ZqMolModel model(settings);
    std::vector<std::size_t> heldOut;
    for (std::size_t i = 0; i < n; ++i) {
      if (cv.fold[i] == k) {
        heldOut.push_back(i);
      } else if (!model.AddTraining(*mols[i], responses[i])) {
        refused[i] = true;
      }
    }
    ZqMolCrossValidationFold& fold = cv.folds.emplace_back();
    fold.numHeldOut = heldOut.size();
    if (model.GetNumRecords() == 0 || !model.Train()) continue;
    fold.trained = true;
    fold.kernel = model.GetKernel().GetName();
    std::vector<const Molkit::ZqMolBase*> queries;
    for (std::size_t i : heldOut) queries.push_back(mols[i]);
    ZqMolPredictOptions options;
    options.threads = threads;
    const std::vector<ZqMolPrediction> predictions = ZqPredictMolecules(model.GetKrige(), queries, options);
    for (std::size_t q = 0; q < heldOut.size(); ++q) {
      const ZqMolKrigeResult& result = predictions[q].result;
      if (!result.Valid()) continue;
      cv.prediction[heldOut[q]] = result.GetResponse();
      cv.variance[heldOut[q]] = result.GetVariance();
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    if (refused[i]) cv.refused.push_back(i);
  }
  // In the order of the folds, as the held-out rows were predicted: the
  // sums of the summary then run in that order too.
  std::vector<double> measured, predicted, variances;
  for (unsigned int k = 0; k < folds; ++k) {
    for (std::size_t i = 0; i < n; ++i) {
      if (cv.fold[i] != k) continue;
      measured.push_back(responses[i]);
      predicted.push_back(cv.prediction[i]);
      variances.push_back(cv.variance[i]);
    }
  }
  cv.summary = ZqSummarizeCrossValidation(measured, predicted, variances);
  return cv;
}

}  // namespace Varimo
