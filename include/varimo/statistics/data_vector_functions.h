// Statistics of vectors chosen by number, with the failure report of the
// statistics layer: the entry points that build a statistic object and apply
// it. Includes every statistic family.
#pragma once

#include <utility>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/statistics/pair_statistic.h"
#include "varimo/statistics/quantile.h"
#include "varimo/statistics/sample_statistic.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {

// Applies the one-sample statistic `type` (with its parameter in the second
// form) to data. Never fails: result is set to success, and data that cannot
// give the statistic, an empty vector included, gives the bad double.
double ZqGetSampleStatisticForDataVec(ZqStatModelResult& result, unsigned int type, const std::vector<double>& data);
double ZqGetSampleStatisticForDataVec(ZqStatModelResult& result, unsigned int type, double parameter,
                                      const std::vector<double>& data);

// Applies the two-sample statistic `type`. No pairs fail with NoData in
// routine "ZqGetTwoSampleStatisticForDataPairVec" and give the bad double.
double ZqGetTwoSampleStatisticForDataPairVec(ZqStatModelResult& result, unsigned int type, const ZqPairSample& pairs);

// Applies the pair statistic `type`. No pairs fail with NoData in routine
// "ZqGetTwoSamplePairStatisticForDataPairVec" and give the bad pair.
std::pair<double, double> ZqGetTwoSamplePairStatisticForDataPairVec(ZqStatModelResult& result, unsigned int type,
                                                                    const ZqPairSample& pairs);

}  // namespace Varimo
