#include "varimo/krige/calibration.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

#include "varimo/krige/cross_validation.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kSqrtTwo = 1.41421356237309504880;
constexpr double kLogTwoPi = 1.83787706640934548356;

// The (1 + level) / 2 quantile of the standard normal law.
double CentralQuantile(double level) { return kSqrtTwo * Numarc::ZqerfcInv(1.0 - level); }

// The counted rows: |residual| and sd of each.
struct Residuals {
  std::vector<double> error, sd, variance;
};

Residuals Counted(const std::vector<double>& measured, const std::vector<double>& predicted,
                  const std::vector<double>& variances) {
  Residuals r;
  for (std::size_t i = 0; i < measured.size(); ++i) {
    if (!ZqIsCountedPrediction(predicted[i], variances[i]) || !std::isfinite(measured[i]) || variances[i] < 0.0) {
      continue;
    }
    r.error.push_back(std::fabs(measured[i] - predicted[i]));
    r.variance.push_back(variances[i]);
    r.sd.push_back(std::sqrt(variances[i]));
  }
  return r;
}

double Coverage(const Residuals& r, double level) {
  if (r.error.empty()) return kNaN;
  const double z = CentralQuantile(level);
  std::size_t covered = 0;
  for (std::size_t i = 0; i < r.error.size(); ++i) covered += r.error[i] <= z * r.sd[i] ? 1 : 0;
  return static_cast<double>(covered) / static_cast<double>(r.error.size());
}

// Ranks from 1, ties taking the mean of their ranks.
std::vector<double> Ranks(const std::vector<double>& values) {
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
  std::vector<double> ranks(values.size());
  for (std::size_t start = 0; start < order.size();) {
    std::size_t end = start + 1;
    while (end < order.size() && values[order[end]] == values[order[start]]) ++end;
    const double rank = 0.5 * static_cast<double>(start + end - 1) + 1.0;
    for (std::size_t k = start; k < end; ++k) ranks[order[k]] = rank;
    start = end;
  }
  return ranks;
}

double Pearson(const std::vector<double>& x, const std::vector<double>& y) {
  const double n = static_cast<double>(x.size());
  const double mx = std::accumulate(x.begin(), x.end(), 0.0) / n, my = std::accumulate(y.begin(), y.end(), 0.0) / n;
  double sxy = 0.0, sxx = 0.0, syy = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sxy += (x[i] - mx) * (y[i] - my);
    sxx += (x[i] - mx) * (x[i] - mx);
    syy += (y[i] - my) * (y[i] - my);
  }
  if (sxx <= 0.0 || syy <= 0.0) return kNaN;
  return sxy / std::sqrt(sxx * syy);
}

std::string Number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

}  // namespace

ZqCalibration ZqSummarizeCalibration(const std::vector<double>& measured, const std::vector<double>& predicted,
                                     const std::vector<double>& variances) {
  const Residuals r = Counted(measured, predicted, variances);
  ZqCalibration c;
  c.counted = r.error.size();
  c.coverage50 = Coverage(r, 0.50);
  c.coverage80 = Coverage(r, 0.80);
  c.coverage90 = Coverage(r, 0.90);
  c.coverage95 = Coverage(r, 0.95);
  if (r.error.empty()) {
    c.miscalibrationArea = c.spearmanErrorSd = c.meanNegativeLogDensity = kNaN;
    return c;
  }
  double gap = 0.0;
  for (int k = 1; k <= 19; ++k) {
    const double level = 0.05 * k;
    gap += std::fabs(Coverage(r, level) - level);
  }
  c.miscalibrationArea = gap / 19.0;
  c.spearmanErrorSd = r.error.size() < 3 ? kNaN : Pearson(Ranks(r.error), Ranks(r.sd));
  double nlpd = 0.0;
  std::size_t positive = 0;
  for (std::size_t i = 0; i < r.error.size(); ++i) {
    if (!(r.variance[i] > 0.0)) continue;
    nlpd += 0.5 * (kLogTwoPi + std::log(r.variance[i]) + r.error[i] * r.error[i] / r.variance[i]);
    ++positive;
  }
  c.meanNegativeLogDensity = positive > 0 ? nlpd / static_cast<double>(positive) : kNaN;
  return c;
}

double ZqNormalCoverage(const std::vector<double>& measured, const std::vector<double>& predicted,
                        const std::vector<double>& variances, double level) {
  return Coverage(Counted(measured, predicted, variances), level);
}

std::string ZqCheckIntervalAlpha(double alpha) {
  if (alpha > 0.0 && alpha < 1.0) return {};
  return "alpha must lie strictly between 0 and 1, not " + Number(alpha);
}

ZqConformalIntervals::ZqConformalIntervals(const std::vector<double>& measured, const std::vector<double>& predicted,
                                           const std::vector<double>& variances) {
  const Residuals r = Counted(measured, predicted, variances);
  double scaled = 0.0;
  std::size_t positive = 0;
  for (std::size_t i = 0; i < r.error.size(); ++i) {
    // A held-out prediction without spread that missed cannot be covered
    // by any multiple of its sd.
    scores_.push_back(r.sd[i] > 0.0 ? r.error[i] / r.sd[i] : (r.error[i] == 0.0 ? 0.0 : kInf));
    if (r.variance[i] > 0.0) {
      scaled += r.error[i] * r.error[i] / r.variance[i];
      ++positive;
    }
  }
  std::sort(scores_.begin(), scores_.end());
  varianceScale_ = positive > 0 ? scaled / static_cast<double>(positive) : kNaN;
}

double ZqConformalIntervals::GetScoreQuantile(double alpha) const {
  if (!ZqCheckIntervalAlpha(alpha).empty()) return kNaN;
  const double n = static_cast<double>(scores_.size());
  // The smallest rank k with k / (n + 1) >= 1 - alpha; a tiny allowance
  // keeps (n + 1)(1 - alpha) that should be whole (0.9 x 20) from rounding
  // up past it.
  const double k = std::ceil((n + 1.0) * (1.0 - alpha) - 1e-9);
  if (k > n || scores_.empty()) return kInf;
  return scores_[static_cast<std::size_t>(std::max(k, 1.0)) - 1];
}

std::pair<double, double> ZqConformalIntervals::GetInterval(double prediction, double variance, double alpha) const {
  const double q = GetScoreQuantile(alpha);
  if (std::isnan(q) || !std::isfinite(prediction) || !(variance >= 0.0)) return {kNaN, kNaN};
  if (std::isinf(q)) return {-kInf, kInf};
  const double half = q * std::sqrt(variance);
  return {prediction - half, prediction + half};
}

std::pair<double, double> ZqConformalIntervals::GetScaledNormalInterval(double prediction, double variance,
                                                                        double alpha) const {
  if (!ZqCheckIntervalAlpha(alpha).empty() || !std::isfinite(prediction) || !(variance >= 0.0)) return {kNaN, kNaN};
  const double half = CentralQuantile(1.0 - alpha) * std::sqrt(varianceScale_ * variance);
  return {prediction - half, prediction + half};
}

}  // namespace Varimo
