// The weights of variogram bins in a fit, and the least-squares objective of
// a similarity kernel's parameter.
#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/similarity_variogram.h"
#include "variogram_fit.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

constexpr double kBad = VarimoBadData::BadDouble;
// The bound below which a weight sum or a determinant counts as zero.
constexpr double kTiny = 2.220446049250313e-15;

bool OutsideUnitInterval(double value) { return !(value >= 0.0 && value <= 1.0); }

}  // namespace

double ZqFitNuggetAndSill(double& nugget, double& sill, const std::vector<double>& k, const std::vector<double>& y,
                          const std::vector<double>& w) {
  double s0 = 0.0, sy = 0.0, sk = 0.0, syy = 0.0, sky = 0.0, skk = 0.0;
  for (std::size_t i = 0; i < y.size(); ++i) {
    s0 += w[i];
    sy += w[i] * y[i];
    sk += w[i] * k[i];
    syy += w[i] * y[i] * y[i];
    sky += w[i] * y[i] * k[i];
    skk += w[i] * k[i] * k[i];
  }
  // A NaN weight sum passes this test on purpose: NaN weights then give a
  // NaN error rather than the bad double, so that the caller sees them.
  if (y.empty() || s0 < kTiny) {
    nugget = sill = kBad;
    return kBad;
  }
  const double det = s0 * skk - sk * sk;
  if (std::abs(det) < kTiny) {
    const double mean = sy / s0;
    nugget = sill = mean;
    return std::sqrt(syy / s0 - mean * mean);
  }
  const double a = (skk * sy - sk * sky) / det;
  const double b = (s0 * sky - sk * sy) / det;
  nugget = a;
  sill = a + b;
  return std::sqrt((syy - 2.0 * a * sy - 2.0 * b * sky + s0 * a * a + 2.0 * a * b * sk + skk * b * b) / s0);
}

ZqVariogramBinWeights::ZqVariogramBinWeights(bool useEqualWeights, double fracAveBinCountThreshold,
                                             double similarityThreshold)
    : useEqualWeights_(useEqualWeights),
      fracAveBinCountThresholdForBinWeights_(fracAveBinCountThreshold),
      similarityThresholdForBinWeights_(similarityThreshold) {
  const char* routine = "ZqVariogramBinWeights::ZqVariogramBinWeights";
  if (OutsideUnitInterval(fracAveBinCountThreshold)) {
    result_ = ZqMakeFailedResult(
        F::ArgumentOutOfRange, routine,
        ZqMakeString("fracAveBinCountThresholdForBinWeights = ", fracAveBinCountThreshold, "; must be between 0 and 1"));
  } else if (OutsideUnitInterval(similarityThreshold)) {
    result_ = ZqMakeFailedResult(
        F::ArgumentOutOfRange, routine,
        ZqMakeString("similarityThresholdForBinWeights = ", similarityThreshold, "; must be between 0 and 1"));
  }
  valid_ = result_.IsSuccessful();
}

ZqStatModelResult ZqVariogramBinWeights::GetBinWeights(std::vector<double>& weights,
                                                       const std::vector<unsigned long>& numPairsPerBin) const {
  const char* routine = "ZqVariogramBinWeights::GetBinWeights";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  if (numPairsPerBin.empty()) return ZqMakeFailedResult(F::InternalLogicFailure, routine, "numPairsInBin is empty!");
  const double numBins = static_cast<double>(numPairsPerBin.size());
  double total = 0.0;
  for (const unsigned long count : numPairsPerBin) total += static_cast<double>(count);
  const double minCount = std::floor(fracAveBinCountThresholdForBinWeights_ * total / numBins);
  weights.assign(numPairsPerBin.size(), 0.0);
  double sum = 0.0;
  for (std::size_t i = 0; i < numPairsPerBin.size(); ++i) {
    const double count = static_cast<double>(numPairsPerBin[i]);
    const double lowerEdge = static_cast<double>(i) / numBins;
    if (lowerEdge >= similarityThresholdForBinWeights_ && count >= minCount) {
      weights[i] = useEqualWeights_ ? 1.0 : count / total;
    }
    sum += weights[i];
  }
  // With every bin excluded the sum is 0 and the weights become NaN; the
  // fit then reports a NaN error.
  for (double& w : weights) w /= sum;
  return ZqStatModelResult(true);
}

ZqSimilarityVariogramLSFit::ZqSimilarityVariogramLSFit(unsigned int kernelType, const ZqVariogramPoints& points,
                                                       const std::vector<double>& weights)
    : kernel_(kernelType), points_(points), weights_(weights), nugget_(kBad), sill_(kBad) {
  valid_ = kernel_.GetDefaultInitialParamVal() >= 0.0 && points_.size() == weights_.size();
}

double ZqSimilarityVariogramLSFit::operator()(const double* p) {
  if (!valid_) {
    nugget_ = sill_ = kBad;
    return kBad;
  }
  std::vector<double> k(points_.size()), y(points_.size());
  for (std::size_t i = 0; i < points_.size(); ++i) {
    k[i] = 1.0 - kernel_(points_[i].first, *p);
    y[i] = points_[i].second;
  }
  return ZqFitNuggetAndSill(nugget_, sill_, k, y, weights_);
}

}  // namespace Varimo
