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

// Trains a simple, ordinary or universal kriging model with the kernel of
// largest likelihood among `candidates` (when empty, those that are
// covariances under every distance of negative type:
// ZqLikelihoodCandidates(ZqDistanceClass::NegativeType)) whose covariance
// matrix factorises in the model, trying them from
// the largest likelihood down as Train() tries kernels from the best fit
// down. `ranking`, when given, receives the fitted kernels in that order.
// False, with a warning that gives the reason and the model left as it was,
// for data that cannot be fitted (fewer than 3 distinct elements, all
// responses equal, ...) or when no candidate has a finite likelihood at any
// range; false, with the model not trained, when no kernel trains.
template <class T, class TT>
bool ZqTrainByLikelihood(ZqStandardKrigeImpl<T, TT>& model, const std::vector<const ZqKrigeKernelBase*>& candidates = {},
                         std::vector<ZqKrigeKernel>* ranking = nullptr) {
  auto refuse = [](const std::string& why) {
    Corvane::ZqThrow.Warning("ZqTrainByLikelihood, unable to train.  %s", why.c_str());
    return false;
  };
  const ZqLikelihoodData data = ZqLikelihoodDataOf(model);
  if (const std::string why = ZqCheckLikelihoodData(data); !why.empty()) return refuse(why);
  const std::vector<ZqKrigeKernel> kernels = ZqLikelihoodCandidates(ZqDistanceClass::NegativeType);
  std::vector<const ZqKrigeKernelBase*> valid;
  for (const ZqKrigeKernel& kernel : kernels) valid.push_back(&kernel);
  const std::vector<ZqLikelihoodFit> fits = ZqRankKernelsByLikelihood(data, candidates.empty() ? valid : candidates);
  if (ranking) {
    ranking->clear();
    for (const ZqLikelihoodFit& fit : fits) ranking->push_back(fit.kernel);
  }
  if (fits.empty()) return refuse("no candidate kernel has a finite likelihood at any range");
  for (const ZqLikelihoodFit& fit : fits) {
    if (model.TrainFixed(fit.kernel)) return true;
  }
  return refuse("no kernel gives a covariance matrix that factorises");
}

// The same for a model held through its base, of any element storage:
// false, with a warning and the model left as it was, for a local model or
// one that forwards to another (train the one it forwards to).
template <class T>
bool ZqTrainByLikelihood(ZqKrigeBase<T>& model, const std::vector<const ZqKrigeKernelBase*>& candidates = {},
                         std::vector<ZqKrigeKernel>* ranking = nullptr) {
  if (auto* global = dynamic_cast<ZqStandardKrigeImpl<T, ZqKrigeDefaultElementStorage<T>>*>(&model)) {
    return ZqTrainByLikelihood(*global, candidates, ranking);
  }
  if (auto* global = dynamic_cast<ZqStandardKrigeImpl<T, ZqKrigeCopyPtrElementStorage<T>>*>(&model)) {
    return ZqTrainByLikelihood(*global, candidates, ranking);
  }
  if (auto* global = dynamic_cast<ZqStandardKrigeImpl<T, ZqKrigeUnmanagedPtrElementStorage<T>>*>(&model)) {
    return ZqTrainByLikelihood(*global, candidates, ranking);
  }
  Corvane::ZqThrow.Warning(
      "ZqTrainByLikelihood, unable to train.  the likelihood fit is for simple, ordinary and universal kriging models");
  return false;
}

}  // namespace Varimo
