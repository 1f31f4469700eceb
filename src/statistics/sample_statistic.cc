#include "varimo/statistics/sample_statistic.h"

#include <algorithm>
#include <cmath>

#include "statistic_support.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {

using namespace StatisticDetail;

namespace ZqSampleStatisticType {
const char* const TypeName[NumTypes] = {
    "Null Statistic: Always returns a bad double",
    "Sample Mean",
    "Trimmed Sample Mean",
    "Sample Median",
    "Sample Quantile",
    "Sample Min",
    "Sample Max",
    "Range of sample",
    "Sample Variance",
    "Sample Root Mean Squared of Values",
    "Sample Root Mean Squared Deviations from Mean",
    "Sample Mean of Absolute Deviations from Mean",
    "Sample Median of Absolute Deviations from Median",
    "InterQuartile range of sample",
    "Skewness of Sample",
    "Kurtosis of Sample",
};
}  // namespace ZqSampleStatisticType

namespace {

// Whether the sample has the size a statistic needs and no NaN or infinity.
bool Usable(const std::vector<double>& data, std::size_t minSize) {
  return data.size() >= minSize && AllFinite(data);
}

// The sum of (x - mean)^power over the sample.
double CentralSum(const std::vector<double>& data, double mean, int power) {
  double sum = 0.0;
  for (double x : data) {
    const double d = x - mean;
    sum += power == 1 ? std::fabs(d) : power == 2 ? d * d : power == 3 ? d * d * d : d * d * d * d;
  }
  return sum;
}

}  // namespace

double ZqNullSampleStatistic::operator()(const std::vector<double>& /*data*/) const { return kBad; }

double ZqSampleMean::operator()(const std::vector<double>& data) const {
  return Usable(data, 1) ? MeanInOrder(data) : kBad;
}

double ZqTrimmedSampleMean::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 1) || !(fractionToTrim_ >= 0.0)) return kBad;
  const std::size_t n = data.size();
  // A trim of more than the whole sample is "everything trimmed away" too;
  // bounding k first keeps the conversion defined.
  const double perSide = std::min(std::round(static_cast<double>(n) * (0.5 * fractionToTrim_)), static_cast<double>(n));
  const auto k = static_cast<std::size_t>(perSide);
  if (n - k <= k) return 1.0;
  const std::vector<double> sorted = SortedCopy(data);
  double sum = 0.0;
  for (std::size_t i = k; i < n - k; ++i) sum += sorted[i];
  return sum / static_cast<double>(n - 2 * k);
}

double ZqSampleMedian::operator()(const std::vector<double>& data) const {
  return Usable(data, 1) ? ZqQuantile(0.5, SortedCopy(data), 8) : kBad;
}

double ZqSampleQuantile::operator()(const std::vector<double>& data) const {
  return Usable(data, 1) ? ZqQuantile(p_, SortedCopy(data), 8) : kBad;
}

double ZqSampleMin::operator()(const std::vector<double>& data) const {
  return Usable(data, 1) ? *std::min_element(data.begin(), data.end()) : kBad;
}

double ZqSampleMax::operator()(const std::vector<double>& data) const {
  return Usable(data, 1) ? *std::max_element(data.begin(), data.end()) : kBad;
}

double ZqSampleRange::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 2)) return kBad;
  const auto [lowest, highest] = std::minmax_element(data.begin(), data.end());
  return *highest - *lowest;
}

double ZqSampleVariance::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 2)) return kBad;
  return CentralSum(data, MeanInOrder(data), 2) / static_cast<double>(data.size() - 1);
}

double ZqSampleRootMeanSquareVal::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 1)) return kBad;
  return std::sqrt(CentralSum(data, 0.0, 2) / static_cast<double>(data.size()));
}

double ZqSampleRootMeanSquareDev::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 1)) return kBad;
  return std::sqrt(CentralSum(data, MeanInOrder(data), 2) / static_cast<double>(data.size()));
}

double ZqSampleMeanAbsoluteDev::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 1)) return kBad;
  return CentralSum(data, MeanInOrder(data), 1) / static_cast<double>(data.size());
}

double ZqSampleMedianAbsoluteDev::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 1)) return kBad;
  const double median = ZqQuantile(0.5, SortedCopy(data), 8);
  // One value has no median, and so no deviations from it.
  if (std::fabs(median) == kBad) return median;
  std::vector<double> deviations;
  deviations.reserve(data.size());
  for (double x : data) deviations.push_back(std::fabs(x - median));
  std::sort(deviations.begin(), deviations.end());
  return ZqQuantile(0.5, deviations, 8);
}

double ZqSampleInterQuartileRange::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 2)) return kBad;
  const std::vector<double> sorted = SortedCopy(data);
  const double upper = ZqQuantile(0.75, sorted, 8), lower = ZqQuantile(0.25, sorted, 8);
  // Below four values the lower quartile is the negative bad value; the
  // difference would be bad value arithmetic, not a range.
  if (std::fabs(upper) == kBad || std::fabs(lower) == kBad) return kBad;
  return upper - lower;
}

double ZqSampleSkewness::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 3)) return kBad;
  const double n = static_cast<double>(data.size()), mean = MeanInOrder(data);
  const double m2 = CentralSum(data, mean, 2) / n, m3 = CentralSum(data, mean, 3) / n;
  return m3 / std::pow(m2, 1.5);
}

double ZqSampleKurtosis::operator()(const std::vector<double>& data) const {
  if (!Usable(data, 3)) return kBad;
  const double n = static_cast<double>(data.size()), mean = MeanInOrder(data);
  const double m2 = CentralSum(data, mean, 2) / n, m4 = CentralSum(data, mean, 4) / n;
  return m4 / (m2 * m2) - 3.0;
}

std::unique_ptr<ZqSampleStatisticBase> ZqGetSampleStatistic(unsigned int type, double parameter) {
  namespace T = ZqSampleStatisticType;
  switch (type) {
    case T::Mean: return std::make_unique<ZqSampleMean>();
    case T::TrimmedMean: return std::make_unique<ZqTrimmedSampleMean>(parameter);
    case T::Median: return std::make_unique<ZqSampleMedian>();
    case T::Quantile: return std::make_unique<ZqSampleQuantile>(parameter);
    case T::Min: return std::make_unique<ZqSampleMin>();
    case T::Max: return std::make_unique<ZqSampleMax>();
    case T::Range: return std::make_unique<ZqSampleRange>();
    case T::Variance: return std::make_unique<ZqSampleVariance>();
    case T::RootMeanSquareVal: return std::make_unique<ZqSampleRootMeanSquareVal>();
    case T::RootMeanSquareDev: return std::make_unique<ZqSampleRootMeanSquareDev>();
    case T::MeanAbsoluteDev: return std::make_unique<ZqSampleMeanAbsoluteDev>();
    case T::MedianAbsoluteDev: return std::make_unique<ZqSampleMedianAbsoluteDev>();
    case T::InterQuartileRange: return std::make_unique<ZqSampleInterQuartileRange>();
    case T::Skewness: return std::make_unique<ZqSampleSkewness>();
    case T::Kurtosis: return std::make_unique<ZqSampleKurtosis>();
    default: return std::make_unique<ZqNullSampleStatistic>();
  }
}

}  // namespace Varimo
