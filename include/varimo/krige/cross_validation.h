// K-fold cross-validation of a kriging model: which fold each record falls
// in, and the summary of the held-out predictions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "varimo/krige/calibration.h"

namespace Varimo {

// The fold (0 to folds - 1) of each of n records: fold k holds the records
// at positions k, k + folds, k + 2 folds, ... of a shuffle of 0..n-1 by a
// std::mt19937_64 seeded with `seed`. The same n, folds and seed give the
// same folds in every run. Empty when folds is 0.
std::vector<unsigned int> ZqCrossValidationFolds(std::size_t n, unsigned int folds, std::uint64_t seed);

// Whether a held-out prediction counts: a finite prediction and a finite
// variance below 1e300 (the error value of a failed prediction is the
// largest double).
bool ZqIsCountedPrediction(double prediction, double variance);

struct ZqCrossValidationSummary {
  std::size_t counted = 0;  // predictions that count
  std::size_t failed = 0;   // predictions that do not
  // Over the counted ones: the root mean squared error; the coefficient of
  // determination 1 - SSE / SST around their mean (NaN when fewer than two
  // count or all measured values are equal: it is undefined then); the
  // fraction of measured values within 1.96 standard deviations of the
  // prediction. NaN when none counts.
  double rmse = 0.0;
  double r2 = 0.0;
  double coverage95 = 0.0;
  // How well the variances describe the errors: coverages at the other
  // levels, the miscalibration area, the rank correlation of |error| with
  // sd and the mean negative log predictive density (calibration.h).
  ZqCalibration calibration;
};

// The summary of measured values and their held-out predictions and
// variances, parallel vectors.
ZqCrossValidationSummary ZqSummarizeCrossValidation(const std::vector<double>& measured,
                                                    const std::vector<double>& predicted,
                                                    const std::vector<double>& variances);

}  // namespace Varimo
