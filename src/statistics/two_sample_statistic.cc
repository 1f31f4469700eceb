#include "varimo/statistics/two_sample_statistic.h"

#include <cmath>

#include "statistic_support.h"

namespace Varimo {

using namespace StatisticDetail;

namespace ZqTwoSampleStatisticType {
const char* const TypeName[NumTypes] = {
    "Null Statistic: Always returns a bad double",
    "Two Sample Covariance",
    "Two Sample Pearson Correlation",
    "Slope of Regression of 2nd var on First",
    "Szekely, Rizzo Distance Correlation For 2 dims",
    "Szekely, Rizzo Distance Covar TestStat For 2 dims",
    "Spearman Rank-order correlation",
    "Kendall Tau Rank-order correlation",
    "Two Sample R-Squared measure of Correlation",
};
}  // namespace ZqTwoSampleStatisticType

void GetMeansAndCentered2ndMoments(const ZqPairSample& pairs, double& meanX, double& meanY, double& varX,
                                   double& varY, double& cov) {
  meanX = meanY = varX = varY = cov = kBad;
  if (pairs.empty()) return;
  const double n = static_cast<double>(pairs.size());
  double sumX = 0.0, sumY = 0.0;
  for (const auto& [x, y] : pairs) {
    sumX += x;
    sumY += y;
  }
  meanX = sumX / n;
  meanY = sumY / n;
  // Two passes: centring before squaring keeps the moments accurate when the
  // means are large against the spread.
  double sxx = 0.0, syy = 0.0, sxy = 0.0;
  for (const auto& [x, y] : pairs) {
    const double dx = x - meanX, dy = y - meanY;
    sxx += dx * dx;
    syy += dy * dy;
    sxy += dx * dy;
  }
  varX = sxx / n;
  varY = syy / n;
  cov = sxy / n;
}

namespace {

struct Moments {
  double meanX, meanY, varX, varY, cov;
};

// The moments of a usable sample; false for no pairs or a non-finite value.
bool GetMoments(const ZqPairSample& pairs, Moments& m) {
  if (pairs.empty() || !AllFinite(pairs)) return false;
  GetMeansAndCentered2ndMoments(pairs, m.meanX, m.meanY, m.varX, m.varY, m.cov);
  return true;
}

}  // namespace

double ZqNullTwoSampleStatistic::operator()(const ZqPairSample& /*pairs*/) const { return kBad; }

double ZqTwoSampleCovariance::operator()(const ZqPairSample& pairs) const {
  Moments m;
  return GetMoments(pairs, m) ? m.cov : kBad;
}

double ZqTwoSamplePearsonCorrelation::operator()(const ZqPairSample& pairs) const {
  Moments m;
  if (!GetMoments(pairs, m) || m.varX < kEps || m.varY < kEps) return kBad;
  return m.cov / std::sqrt(m.varX * m.varY);
}

double ZqTwoSampleRegressionSlope::operator()(const ZqPairSample& pairs) const {
  Moments m;
  if (!GetMoments(pairs, m) || m.varX < kEps) return kBad;
  return m.cov / m.varX;
}

double ZqTwoSampleRSquared::operator()(const ZqPairSample& pairs) const {
  Moments m;
  if (!GetMoments(pairs, m) || m.varX < kEps || m.varY < kEps) return kBad;
  return m.cov * m.cov / (m.varX * m.varY);
}

std::unique_ptr<ZqTwoSampleStatisticBase> ZqGetTwoSampleStatistic(unsigned int type) {
  namespace T = ZqTwoSampleStatisticType;
  switch (type) {
    case T::Covariance: return std::make_unique<ZqTwoSampleCovariance>();
    case T::PearsonCorrelation: return std::make_unique<ZqTwoSamplePearsonCorrelation>();
    case T::RegressionSlope: return std::make_unique<ZqTwoSampleRegressionSlope>();
    case T::DistanceCorrelation: return std::make_unique<ZqDistanceCorrelation>();
    case T::DistanceCovarTestStat: return std::make_unique<ZqDistanceCovarTestStat>();
    case T::SpearmanRho: return std::make_unique<ZqSpearmanRho>();
    case T::KendallTau: return std::make_unique<ZqKendallTau>();
    case T::RSquared: return std::make_unique<ZqTwoSampleRSquared>();
    default: return std::make_unique<ZqNullTwoSampleStatistic>();
  }
}

}  // namespace Varimo
