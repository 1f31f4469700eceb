// Kriging models made from options.
//
//   auto model = Varimo::ZqCreateKrige<std::vector<double>>(
//       Varimo::ZqEuclideanDistance(), Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), false);
//
// GetNumLocal() of 0 gives a global model, above 0 a local one with that
// many neighbours per query. The models over std::vector<double> are
// compiled into the library; for element types of your own, include
// "varimo/krige/krige_impl.h" in one source file.
#pragma once

#include <memory>

#include "varimo/krige/krige_options.h"
#include "varimo/krige/local_krige.h"
#include "varimo/krige/ordinary_krige.h"
#include "varimo/krige/simple_krige.h"
#include "varimo/krige/universal_krige.h"

namespace Varimo {

// Simple kriging when `simple`, otherwise ordinary kriging.
template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
std::unique_ptr<ZqKrigeBase<T>> ZqCreateKrige(const ZqKrigeDistanceFxn<T>& distFxn, const ZqKrigeOptions& options,
                                              bool simple) {
  const unsigned int numLocal = options.GetNumLocal();
  const double error = options.GetErrorValue();
  const unsigned int missingID = options.GetMissingIDValue();
  const bool includeUnmeasured = options.GetIncludeUnmeasured();
  const unsigned int method = options.GetUniqueResponseMethod();
  if (numLocal > 0) {
    const bool predictTraining = options.GetPredictTraining();
    const std::size_t maxPairs = options.GetMaxVariogramSize();
    if (simple) {
      return std::make_unique<ZqLocalSimpleKrige<T, TT>>(distFxn, numLocal, error, missingID, includeUnmeasured,
                                                         predictTraining, maxPairs, method);
    }
    return std::make_unique<ZqLocalOrdinaryKrige<T, TT>>(distFxn, numLocal, error, missingID, includeUnmeasured,
                                                         predictTraining, maxPairs, method);
  }
  if (simple) return std::make_unique<ZqSimpleKrige<T, TT>>(distFxn, error, missingID, includeUnmeasured, method);
  return std::make_unique<ZqOrdinaryKrige<T, TT>>(distFxn, error, missingID, includeUnmeasured, method);
}

// Universal kriging with the drift of `propFxn`; a list of no properties
// has no drift to model and gives ordinary kriging.
template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
std::unique_ptr<ZqKrigeBase<T>> ZqCreateKrige(const ZqKrigeDistanceFxn<T>& distFxn,
                                              const ZqPropertyListFxn<T>& propFxn, const ZqKrigeOptions& options) {
  if (propFxn.GetSize() == 0) return ZqCreateKrige<T, TT>(distFxn, options, false);
  const unsigned int numLocal = options.GetNumLocal();
  const double error = options.GetErrorValue();
  const unsigned int missingID = options.GetMissingIDValue();
  const bool includeUnmeasured = options.GetIncludeUnmeasured();
  const unsigned int method = options.GetUniqueResponseMethod();
  if (numLocal > 0) {
    return std::make_unique<ZqLocalUniversalKrige<T, TT>>(distFxn, propFxn, numLocal, error, missingID,
                                                          includeUnmeasured, options.GetPredictTraining(),
                                                          options.GetMaxVariogramSize(), method);
  }
  return std::make_unique<ZqUniversalKrige<T, TT>>(distFxn, propFxn, error, missingID, includeUnmeasured, method);
}

}  // namespace Varimo
