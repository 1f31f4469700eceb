// The paired t test, with Student's t from Boost.Math.
#include <boost/math/distributions/students_t.hpp>
#include <cmath>

#include "../platform/numarc/boost_math_policy.h"
#include "statistic_support.h"
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
  const double pValue = Numarc::detail::ZqCallBoostMath([&] {
    const boost::math::students_t_distribution<double, Numarc::detail::ZqBoostMathPolicy> student(df);
    return 1.0 - boost::math::cdf(student, t);
  });
  return {t, std::isfinite(pValue) ? pValue : kBad};
}

}  // namespace Varimo
