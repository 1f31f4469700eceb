// Predicting many molecules with a trained model, on several threads.
//
//   Varimo::ZqMolPredictOptions options;
//   options.threads = 4;
//   options.contributions = true;
//   options.baseline = model.GetMeanResponse();
//   std::vector<Varimo::ZqMolPrediction> out = Varimo::ZqPredictMolecules(model.GetKrige(), queries, options);
//
// Each result depends on its query alone, through the model's const calls,
// so the numbers are the same whatever the number of threads.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "varimo/mol/mol_krige.h"

namespace Varimo {

struct ZqMolPredictOptions {
  // Worker threads; at most one per query, and 0 counts as 1.
  unsigned int threads = 1;
  // Whether to fill each valid prediction's atom contributions.
  bool contributions = false;
  // The prediction alone (ZqMolKrige::PredictMean) in `mean`: no result,
  // hence no variance, neighbours or contributions.
  bool meanOnly = false;
  // What the contributions are measured against.
  double baseline = 0.0;
  // Called on the calling thread with the number of queries done so far,
  // increasing; may be empty.
  std::function<void(std::size_t done)> progress;
};

struct ZqMolPrediction {
  ZqMolKrigeResult result;
  // The prediction of a mean-only run; nothing when there is none.
  std::optional<double> mean;
  // By atom index, 0 for hydrogens; empty unless asked for and valid.
  std::vector<double> contributions;
};

// The predictions of `queries`, in their order. A query that is null gets
// an invalid result. The model must be trained: an untrained one trains a
// copy for every query. When a thread cannot be started, the threads that
// did start do the work.
std::vector<ZqMolPrediction> ZqPredictMolecules(const ZqMolKrige& model,
                                                const std::vector<const Molkit::ZqMolBase*>& queries,
                                                const ZqMolPredictOptions& options);

// The indices of the `count` elements of largest weight, largest first
// (ties in element order): the neighbours that carry the prediction.
std::vector<unsigned int> ZqLargestWeights(const ZqMolKrigeResult& result, std::size_t count);

}  // namespace Varimo
