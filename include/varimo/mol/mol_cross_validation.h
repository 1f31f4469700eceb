// K-fold cross-validation of a molecule model: each fold is held out in
// turn, a model of the same settings is trained on the others in their
// order, and the held-out molecules are predicted.
//
//   Varimo::ZqMolCrossValidation cv = Varimo::ZqCrossValidateMolModel(settings, mols, pIC50, 5, 1, 2);
//   double rmse = cv.summary.rmse;
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "varimo/krige/cross_validation.h"
#include "varimo/mol/mol_model.h"

namespace Varimo {

struct ZqMolCrossValidationFold {
  std::size_t numHeldOut = 0;
  bool trained = false;
  std::string kernel;  // the name of the kernel trained; empty when none trained
};

struct ZqMolCrossValidation {
  // Per record, in input order: its fold, and its held-out prediction and
  // variance (the error value, the largest double, when it failed).
  std::vector<unsigned int> fold;
  std::vector<double> prediction;
  std::vector<double> variance;
  std::vector<ZqMolCrossValidationFold> folds;
  // Records that a model refuses (a drift field missing or not a number):
  // they train no fold, and their own predictions fail.
  std::vector<std::size_t> refused;
  ZqCrossValidationSummary summary;
};

// Folds as ZqCrossValidationFolds(mols.size(), folds, seed); predictions on
// `threads` threads, the same numbers for any count. `mols` and `responses`
// are parallel; no molecule may be null. With fewer records than folds the
// result has no folds and every prediction fails.
ZqMolCrossValidation ZqCrossValidateMolModel(const ZqMolModelSettings& settings,
                                             const std::vector<const Molkit::ZqMolBase*>& mols,
                                             const std::vector<double>& responses, unsigned int folds,
                                             std::uint64_t seed, unsigned int threads);

}  // namespace Varimo
