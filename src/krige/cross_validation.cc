#include "varimo/krige/cross_validation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace Varimo {

std::vector<unsigned int> ZqCrossValidationFolds(std::size_t n, unsigned int folds, std::uint64_t seed) {
  std::vector<unsigned int> fold;
  if (folds == 0) return fold;
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::mt19937_64 engine(seed);
  std::shuffle(order.begin(), order.end(), engine);
  fold.resize(n);
  for (std::size_t p = 0; p < order.size(); ++p) fold[order[p]] = static_cast<unsigned int>(p % folds);
  return fold;
}

bool ZqIsCountedPrediction(double prediction, double variance) {
  return std::isfinite(prediction) && std::isfinite(variance) && variance < 1e300 && prediction < 1e300;
}

ZqCrossValidationSummary ZqSummarizeCrossValidation(const std::vector<double>& measured,
                                                    const std::vector<double>& predicted,
                                                    const std::vector<double>& variances) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  ZqCrossValidationSummary summary;
  std::vector<std::size_t> counted;
  for (std::size_t i = 0; i < measured.size(); ++i) {
    if (ZqIsCountedPrediction(predicted[i], variances[i])) {
      counted.push_back(i);
    } else {
      ++summary.failed;
    }
  }
  summary.counted = counted.size();
  summary.calibration = ZqSummarizeCalibration(measured, predicted, variances);
  if (counted.empty()) {
    summary.rmse = summary.r2 = summary.coverage95 = kNaN;
    return summary;
  }
  double sum = 0.0;
  for (std::size_t i : counted) sum += measured[i];
  const double mean = sum / static_cast<double>(counted.size());
  double squares = 0.0, total = 0.0;
  std::size_t covered = 0;
  for (std::size_t i : counted) {
    const double residual = measured[i] - predicted[i];
    squares += residual * residual;
    total += (measured[i] - mean) * (measured[i] - mean);
    if (std::fabs(residual) <= 1.96 * std::sqrt(variances[i])) ++covered;
  }
  const double count = static_cast<double>(counted.size());
  summary.rmse = std::sqrt(squares / count);
  summary.r2 = counted.size() >= 2 && total > 0.0 ? 1.0 - squares / total : kNaN;
  summary.coverage95 = static_cast<double>(covered) / count;
  return summary;
}

}  // namespace Varimo
