#include "varimo/krige/krige_options.h"

#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

ZqKrigeOptions::ZqKrigeOptions(const ZqGlobalKrigeOptions& global) : numLocal_(0) {
  includeUnmeasured_ = global.GetIncludeUnmeasured();
  SetUniqueResponseMethod(global.GetUniqueResponseMethod());
}

ZqKrigeOptions::ZqKrigeOptions(const ZqLocalKrigeOptions& local) {
  numLocal_ = local.GetNumLocal();
  includeUnmeasured_ = local.GetIncludeUnmeasured();
  maxVariogramSize_ = local.GetMaxVariogramSize();
  predictTraining_ = local.GetPredictTraining();
  SetUniqueResponseMethod(local.GetUniqueResponseMethod());
}

ZqKrigeOptions& ZqKrigeOptions::SetUniqueResponseMethod(unsigned int value) {
  if (value > ZqKrigeUniqueResponseMethod::Max) {
    Corvane::ZqThrow.Warning("ZqKrigeOptions::SetUniqueResponseMethod.  %d is not a valid setting, ignorning.", value);
    return *this;
  }
  uniqueResponseMethod_ = value;
  return *this;
}

}  // namespace Varimo
