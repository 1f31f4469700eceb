// Training a global kriging model with the kernel of largest likelihood
// (likelihood_fit.h) instead of the best fit to its variogram.
//
//   Varimo::ZqOrdinaryKrige<T, TT> model(distance, ...);
//   for (...) model.AddTraining(element, response);
//   if (Varimo::ZqTrainByLikelihood(model)) model.GetKrigeResult(query);
//
// The model then predicts as after TrainFixed with that kernel: its saved
// state, copies and batch selection are those of any trained model.
#pragma once

#include <string>
#include <vector>

#include "varimo/krige/likelihood_fit.h"
#include "varimo/krige/ordinary_krige.h"
#include "varimo/krige/simple_krige.h"
#include "varimo/krige/universal_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

// The unique training elements of a global model, their merged responses
// and the mean's model of its kind: none for simple kriging, a column of
// ones for ordinary kriging, ones and the drift properties for universal
// kriging.
template <class T, class TT>
ZqLikelihoodData ZqLikelihoodDataOf(const ZqStandardKrigeImpl<T, TT>& model) {
  const auto& container = model.GetContainer();
  const Eigen::Index n = static_cast<Eigen::Index>(container.GetNumUnique());
  ZqLikelihoodData data;
  data.distances.resize(n, n);
  data.responses.resize(n);
  for (Eigen::Index j = 0; j < n; ++j) {
    data.distances(j, j) = 0.0;
    for (Eigen::Index i = j + 1; i < n; ++i) {
      data.distances(i, j) = data.distances(j, i) = container.GetUniqueDistance(i, j);
    }
    data.responses(j) = container.GetUniqueResponse(j);
  }
  if (dynamic_cast<const ZqSimpleKrige<T, TT>*>(&model) != nullptr) return data;
  const bool universal = dynamic_cast<const ZqUniversalKrige<T, TT>*>(&model) != nullptr;
  for (Eigen::Index j = 0; j < n; ++j) {
    const std::vector<double> properties =
        universal ? container.GetUniqueProperties(static_cast<std::size_t>(j)) : std::vector<double>();
    if (j == 0) data.drift.resize(n, 1 + static_cast<Eigen::Index>(properties.size()));
    data.drift(j, 0) = 1.0;
    for (std::size_t k = 0; k < properties.size(); ++k) data.drift(j, static_cast<Eigen::Index>(k) + 1) = properties[k];
  }
  return data;
}

// Trains `model` with the kernel of largest likelihood among the 16
// candidates of the automatic fit whose covariance matrix factorises in the
// model, trying them from the largest likelihood down as Train() tries
// kernels from the best fit down. False, with a warning that gives the
// reason, when the data cannot be fitted (fewer than 3 distinct elements,
// all responses equal, ...), with the model left as it was, or when no
// kernel trains (the model is then not trained).
template <class T, class TT>
bool ZqTrainByLikelihood(ZqStandardKrigeImpl<T, TT>& model) {
  const ZqLikelihoodData data = ZqLikelihoodDataOf(model);
  const std::string why = ZqCheckLikelihoodData(data);
  if (!why.empty()) {
    Corvane::ZqThrow.Warning("ZqTrainByLikelihood, unable to train.  %s", why.c_str());
    return false;
  }
  auto kernels = ZqGetKrigeKernels();
  std::vector<const ZqKrigeKernelBase*> candidates;
  for (const ZqKrigeKernelBase& kernel : kernels) candidates.push_back(&kernel);
  for (const ZqLikelihoodFit& fit : ZqRankKernelsByLikelihood(data, candidates)) {
    if (model.TrainFixed(fit.kernel)) return true;
  }
  Corvane::ZqThrow.Warning("ZqTrainByLikelihood, unable to train.  No kernel gives a covariance matrix that factorises");
  return false;
}

}  // namespace Varimo
