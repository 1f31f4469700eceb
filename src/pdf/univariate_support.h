// What the univariate laws share beyond their frame.
#pragma once

#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

inline constexpr double kPdfBad = VarimoBadData::BadDouble;

// A moment the law does not have: failed at `routine`, with no comment.
inline double ZqUndefinedMoment(ZqStatModelResult& result, std::uint32_t failureType, const char* routine) {
  result = ZqMakeFailedResult(failureType, routine);
  return kPdfBad;
}

// The percentile search's failure, with the law's method as caller.
inline double ZqPercentileSearchFailed(ZqStatModelResult& result, const char* routine) {
  result.AddCallContext(routine);
  return kPdfBad;
}

}  // namespace Varimo
