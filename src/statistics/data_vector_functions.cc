#include "varimo/statistics/data_vector_functions.h"

#include "statistic_support.h"

namespace Varimo {

using namespace StatisticDetail;

double ZqGetSampleStatisticForDataVec(ZqStatModelResult& result, unsigned int type, const std::vector<double>& data) {
  result = true;
  return ZqSampleStatistic(type)(data);
}

double ZqGetSampleStatisticForDataVec(ZqStatModelResult& result, unsigned int type, double parameter,
                                      const std::vector<double>& data) {
  result = true;
  return ZqSampleStatistic(type, parameter)(data);
}

double ZqGetTwoSampleStatisticForDataPairVec(ZqStatModelResult& result, unsigned int type, const ZqPairSample& pairs) {
  if (pairs.empty()) {
    result = ZqStatModelResult(false);
    result.SetFailureTypeAndWhereFailed(ZqStatModelFailureType::NoData, "ZqGetTwoSampleStatisticForDataPairVec");
    return kBad;
  }
  result = true;
  return ZqTwoSampleStatistic(type)(pairs);
}

std::pair<double, double> ZqGetTwoSamplePairStatisticForDataPairVec(ZqStatModelResult& result, unsigned int type,
                                                                    const ZqPairSample& pairs) {
  if (pairs.empty()) {
    result = ZqStatModelResult(false);
    result.SetFailureTypeAndWhereFailed(ZqStatModelFailureType::NoData, "ZqGetTwoSamplePairStatisticForDataPairVec");
    return {kBad, kBad};
  }
  result = true;
  return ZqTwoSamplePairStatistic(type).GetPairStatistic(pairs);
}

}  // namespace Varimo
