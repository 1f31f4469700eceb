// How well the variances of held-out predictions describe their errors,
// and intervals calibrated on them.
//
//   Varimo::ZqCalibration c = Varimo::ZqSummarizeCalibration(measured, predicted, variances);
//   Varimo::ZqConformalIntervals conformal(measured, predicted, variances);
//   auto [lower, upper] = conformal.GetInterval(prediction, variance, 0.1);   // 90 %
//
// The inputs are parallel vectors of measured values and their held-out
// predictions and variances, as cross-validation gives them; a prediction
// that does not count (ZqIsCountedPrediction) is left out.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Varimo {

struct ZqCalibration {
  std::size_t counted = 0;
  // The fraction of measured values within the central interval of that
  // level of the normal law of the prediction: |y - m| <= z sd, z the
  // (1 + level) / 2 quantile of the standard normal law.
  double coverage50 = 0.0, coverage80 = 0.0, coverage90 = 0.0, coverage95 = 0.0;
  // The mean absolute gap between the level and the coverage over the
  // levels 0.05, 0.10, ..., 0.95: 0 for variances that describe the errors
  // exactly, up to about 0.5 for variances far too small or too large.
  double miscalibrationArea = 0.0;
  // Spearman's rank correlation of |y - m| with sd (ties take their mean
  // rank): how well the sd orders the errors. NaN for fewer than 3
  // predictions or a constant column.
  double spearmanErrorSd = 0.0;
  // The mean negative log density of the measured values under the normal
  // laws of their predictions, over those with a variance above 0.
  double meanNegativeLogDensity = 0.0;
};

// All NaN when no prediction counts.
ZqCalibration ZqSummarizeCalibration(const std::vector<double>& measured, const std::vector<double>& predicted,
                                     const std::vector<double>& variances);

// The coverage of the central interval of one level, as above; NaN when no
// prediction counts.
double ZqNormalCoverage(const std::vector<double>& measured, const std::vector<double>& predicted,
                        const std::vector<double>& variances, double level);

// Why alpha cannot be the miss rate of an interval; empty when it lies
// strictly between 0 and 1.
std::string ZqCheckIntervalAlpha(double alpha);

// Conformal intervals on held-out residuals scaled by their sd: the
// scores s_i = |y_i - m_i| / sd_i of n held-out predictions give
// q(alpha), the ceil((n + 1)(1 - alpha))-th smallest score, and a new
// prediction the interval m +- q(alpha) sd. For a new element exchangeable
// with the held-out ones the interval covers its value with probability at
// least 1 - alpha. With residuals from cross-validation (each fold's model
// predicting the rows it did not see) this is the CV+ construction with the
// final model's prediction in the middle.
//
// The simpler option rescales the variance: c = mean(r^2 / v) over the
// held-out predictions, and the normal interval m +- z sqrt(c v).
class ZqConformalIntervals {
 public:
  // Not fitted: every interval is (-inf, inf).
  ZqConformalIntervals() = default;
  ZqConformalIntervals(const std::vector<double>& measured, const std::vector<double>& predicted,
                       const std::vector<double>& variances);

  // Whether some held-out prediction counts.
  bool IsFitted() const { return !scores_.empty(); }
  std::size_t GetNumScores() const { return scores_.size(); }
  // q(alpha); +inf when (n + 1)(1 - alpha) exceeds n (too few scores for
  // that level), NaN for an alpha outside (0, 1).
  double GetScoreQuantile(double alpha) const;
  // [m - q sd, m + q sd]; a variance of 0 gives [m, m] for a finite q.
  std::pair<double, double> GetInterval(double prediction, double variance, double alpha) const;
  // c, NaN when not fitted.
  double GetVarianceScale() const { return varianceScale_; }
  std::pair<double, double> GetScaledNormalInterval(double prediction, double variance, double alpha) const;

 private:
  std::vector<double> scores_;  // ascending
  double varianceScale_ = 0.0;
};

}  // namespace Varimo
