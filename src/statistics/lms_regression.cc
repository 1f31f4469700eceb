// Least-median-of-squares regression: the objective of the slope and the
// line search over it.
#include <algorithm>
#include <vector>

#include "statistic_support.h"
#include "varimo/numerics/minimizer.h"
#include "varimo/statistics/pair_statistic.h"

namespace Varimo {

using namespace StatisticDetail;

void ZqLMSSlopeFunctor::CalcInterceptAndMedianAbsResidual(double slope) {
  slope_ = slope;
  intercept_ = kBad;
  score_ = kBad;
  const std::size_t n = pairs_.size();
  if (n == 0) return;
  std::vector<double> residuals;
  residuals.reserve(n);
  for (const auto& [x, y] : pairs_) residuals.push_back(y - slope * x);
  std::sort(residuals.begin(), residuals.end());
  // The narrowest window holding h + 1 sorted residuals: its half-width is
  // the least median of absolute residuals, its midpoint the intercept.
  const std::size_t h = n / 2;
  double bestWidth = kBad;
  for (std::size_t k = 0; k + h < n; ++k) {
    const double width = residuals[k + h] - residuals[k];
    if (width < bestWidth) {
      bestWidth = width;
      intercept_ = (residuals[k + h] + residuals[k]) * 0.5;
    }
  }
  score_ = bestWidth * 0.5;
}

double ZqLMSSlopeFunctor::operator()(const double* x) {
  if (x[0] != slope_) CalcInterceptAndMedianAbsResidual(x[0]);
  return score_;
}

double ZqLMSSlopeFunctor::GetIntercept(double slope) {
  if (slope != slope_) CalcInterceptAndMedianAbsResidual(slope);
  return intercept_;
}

bool ZqInterceptSlopeOfLMSRegression::GetSlopeInterceptForPairSample(double& slope, double& intercept,
                                                                     const ZqPairSample& pairs) {
  slope = kBad;
  intercept = kBad;
  if (pairs.empty() || !AllFinite(pairs)) return false;
  ZqLMSSlopeFunctor objective(pairs);
  const double zero = 0.0, one = 1.0, minusOne = -1.0;
  const double f0 = objective(&zero), f1 = objective(&one), fm = objective(&minusOne);
  if (f0 >= fm && f0 >= f1) return false;

  // The line slope = start + t direction, t >= 0, that leaves slope 0
  // downhill, or that starts at -1 when 0 lies in a valley between the probes.
  double start, direction;
  if (fm > f0 && f1 > f0) {
    start = -1.0, direction = 1.0;
  } else if (fm > f0 && f0 >= f1) {
    start = 0.0, direction = 1.0;
  } else if (f1 > f0 && f0 >= fm) {
    start = 0.0, direction = -1.0;
  } else {
    return false;
  }
  double value = kBad, step = 1.0;
  if (!ZqGoldenSectionSearch()(1, &start, &direction, &value, &step, objective)) return false;
  slope = direction * step + start;
  intercept = objective.GetIntercept(slope);
  return true;
}

std::pair<double, double> ZqInterceptSlopeOfLMSRegression::GetPairStatistic(const ZqPairSample& pairs) const {
  double slope, intercept;
  if (pairs.size() < 4 || !GetSlopeInterceptForPairSample(slope, intercept, pairs)) return {kBad, kBad};
  return {intercept, slope};
}

}  // namespace Varimo
