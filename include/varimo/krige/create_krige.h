// Kriging models made from options.
//
//   auto model = Varimo::ZqCreateKrige<std::vector<double>>(
//       Varimo::ZqEuclideanDistance(), Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), false);
//
// The models over std::vector<double> are compiled into the library; for
// element types of your own, include "varimo/krige/krige_impl.h" in one
// source file.
#pragma once

#include <memory>

#include "varimo/krige/krige_options.h"
#include "varimo/krige/ordinary_krige.h"
#include "varimo/krige/simple_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

// A global model for GetNumLocal() == 0: simple kriging when `simple`, else
// ordinary kriging. Local models (GetNumLocal() above 0) are not built by
// this version: an error and null.
template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
std::unique_ptr<ZqKrigeBase<T>> ZqCreateKrige(const ZqKrigeDistanceFxn<T>& distFxn, const ZqKrigeOptions& options,
                                              bool simple) {
  if (options.GetNumLocal() > 0) {
    Corvane::ZqThrow.Error("ZqCreateKrige, local kriging (%u neighbours) is not available", options.GetNumLocal());
    return nullptr;
  }
  if (simple) {
    return std::make_unique<ZqSimpleKrige<T, TT>>(distFxn, options.GetErrorValue(), options.GetMissingIDValue(),
                                                  options.GetIncludeUnmeasured(), options.GetUniqueResponseMethod());
  }
  return std::make_unique<ZqOrdinaryKrige<T, TT>>(distFxn, options.GetErrorValue(), options.GetMissingIDValue(),
                                                  options.GetIncludeUnmeasured(), options.GetUniqueResponseMethod());
}

}  // namespace Varimo
