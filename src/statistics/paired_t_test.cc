// The paired t test, its p-value from the library's Student's t law.
#include <cmath>

#include "statistic_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/statistics/pair_statistic.h"

namespace Varimo {

using namespace StatisticDetail;

std::pair<double, double> ZqPairedTTestStatAndPValue::GetPairStatistic(const ZqPairSample& pairs) const {
  if (pairs.size() < 2 || !AllFinite(pairs)) return {kBad, kBad};
  const double n = static_cast<double>(pairs.size());
  const double df = n - 1.0;
  double sum = 0.0;
  for (const auto& [first, second] : pairs) sum += second - first;
  const double mean = sum / n;
  double sumSquares = 0.0;
  for (const auto& [first, second] : pairs) {
    const double d = second - first - mean;
    sumSquares += d * d;
  }
  const double t = mean / std::sqrt(sumSquares / df / n);
  if (std::isnan(t)) return {t, kBad};
  ZqStatModelResult result;
  const ZqUniVarPDF student = ZqUnivariateStudentsT("tTestStat", df, 0.0, 1.0, result);
  if (result.NotSuccessful()) return {t, kBad};
  const double cdf = student.GetCDF(t, result, true);
  if (result.NotSuccessful() || !std::isfinite(cdf)) return {t, kBad};
  return {t, 1.0 - cdf};
}

}  // namespace Varimo
