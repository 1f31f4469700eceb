#include "varimo/statistics/pair_statistic.h"

#include "statistic_support.h"

namespace Varimo {

using namespace StatisticDetail;

namespace ZqTwoSamplePairStatisticType {
const char* const TypeName[NumTypes] = {
    "Null PairStatistic: Always returns a bad double pair",
    "Pair of Sample Means for paired sample",
    "Pair of Sample Variances for paired sample",
    "Slope and Intercept of Ordinary Least-SquaresRegression",
    "Slope and Intercept of Least-Median of Squares Regression",
    "Paired Two-Sample t-test and its p-value",
};
}  // namespace ZqTwoSamplePairStatisticType

namespace {

const std::pair<double, double> kBadPair{kBad, kBad};

}  // namespace

std::pair<double, double> ZqNullTwoSamplePairStatistic::GetPairStatistic(const ZqPairSample& /*pairs*/) const {
  return kBadPair;
}

std::pair<double, double> ZqTwoSamplePairOfMeans::GetPairStatistic(const ZqPairSample& pairs) const {
  if (pairs.empty() || !AllFinite(pairs)) return kBadPair;
  double meanX, meanY, varX, varY, cov;
  GetMeansAndCentered2ndMoments(pairs, meanX, meanY, varX, varY, cov);
  return {meanX, meanY};
}

std::pair<double, double> ZqTwoSamplePairOfVariances::GetPairStatistic(const ZqPairSample& pairs) const {
  if (pairs.size() < 2 || !AllFinite(pairs)) return kBadPair;
  double meanX, meanY, varX, varY, cov;
  GetMeansAndCentered2ndMoments(pairs, meanX, meanY, varX, varY, cov);
  const double n = static_cast<double>(pairs.size());
  return {varX * n / (n - 1.0), varY * n / (n - 1.0)};
}

std::pair<double, double> ZqInterceptSlopeOfOLSRegression::GetPairStatistic(const ZqPairSample& pairs) const {
  if (pairs.size() < 2 || !AllFinite(pairs)) return kBadPair;
  double meanX, meanY, varX, varY, cov;
  GetMeansAndCentered2ndMoments(pairs, meanX, meanY, varX, varY, cov);
  if (varX < kEps) return kBadPair;
  const double slope = cov / varX;
  return {meanY - meanX * slope, slope};
}

std::unique_ptr<ZqTwoSamplePairStatisticBase> ZqGetTwoSamplePairStatistic(unsigned int type) {
  namespace T = ZqTwoSamplePairStatisticType;
  switch (type) {
    case T::PairOfMeans: return std::make_unique<ZqTwoSamplePairOfMeans>();
    case T::PairOfVariances: return std::make_unique<ZqTwoSamplePairOfVariances>();
    case T::InterceptSlopeOfOLSRegression: return std::make_unique<ZqInterceptSlopeOfOLSRegression>();
    case T::InterceptSlopeOfLMSRegression: return std::make_unique<ZqInterceptSlopeOfLMSRegression>();
    case T::PairedTTestStatAndPValue: return std::make_unique<ZqPairedTTestStatAndPValue>();
    default: return std::make_unique<ZqNullTwoSamplePairStatistic>();
  }
}

}  // namespace Varimo
