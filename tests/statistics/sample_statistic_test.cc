#include "varimo/statistics/sample_statistic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "tpsa_data.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {
namespace {

namespace T = ZqSampleStatisticType;
constexpr double kBad = 1.7976931348623157e308;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
// Sums over 5000 values in a different order than numpy's pairwise sum.
constexpr double kSampleTolerance = 1e-12;

const std::vector<double>& Tpsa() { return VarimoTest::TpsaValues(); }

double TpsaRef(const std::string& name) {
  static const std::map<std::string, double> reference = [] {
    std::map<std::string, double> r;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("statistics/tpsa_reference.txt")) {
      r[tokens[0]] = VarimoTest::ToDouble(tokens[1]);
    }
    return r;
  }();
  return reference.at(name);
}

struct TpsaCase {
  unsigned int type;
  double parameter;
  const char* reference;
};

class TpsaStatistic : public ::testing::TestWithParam<TpsaCase> {};

TEST_P(TpsaStatistic, MatchesNumpy) {
  ASSERT_EQ(Tpsa().size(), static_cast<std::size_t>(TpsaRef("count")));
  const TpsaCase& c = GetParam();
  EXPECT_TRUE(VarimoTest::WithinRelative(ZqSampleStatistic(c.type, c.parameter)(Tpsa()), TpsaRef(c.reference),
                                         kSampleTolerance));
}

INSTANTIATE_TEST_SUITE_P(
    EveryStatistic, TpsaStatistic,
    ::testing::Values(TpsaCase{T::Mean, 0.0, "mean"}, TpsaCase{T::TrimmedMean, 0.1, "trimmed_mean_0.1"},
                      TpsaCase{T::TrimmedMean, 0.25, "trimmed_mean_0.25"},
                      TpsaCase{T::TrimmedMean, 0.5, "trimmed_mean_0.5"}, TpsaCase{T::Median, 0.0, "median"},
                      TpsaCase{T::Quantile, 0.05, "quantile_0.05"}, TpsaCase{T::Quantile, 0.25, "quantile_0.25"},
                      TpsaCase{T::Quantile, 0.9, "quantile_0.9"}, TpsaCase{T::Quantile, 1.0, "quantile_1"},
                      TpsaCase{T::Min, 0.0, "min"}, TpsaCase{T::Max, 0.0, "max"}, TpsaCase{T::Range, 0.0, "range"},
                      TpsaCase{T::Variance, 0.0, "variance"}, TpsaCase{T::RootMeanSquareVal, 0.0, "rms_value"},
                      TpsaCase{T::RootMeanSquareDev, 0.0, "rms_deviation"},
                      TpsaCase{T::MeanAbsoluteDev, 0.0, "mean_abs_deviation"},
                      TpsaCase{T::MedianAbsoluteDev, 0.0, "median_abs_deviation"},
                      TpsaCase{T::InterQuartileRange, 0.0, "iqr"}, TpsaCase{T::Skewness, 0.0, "skewness"},
                      TpsaCase{T::Kurtosis, 0.0, "kurtosis"}),
    [](const ::testing::TestParamInfo<TpsaCase>& info) {
      std::string name = info.param.reference;
      std::replace(name.begin(), name.end(), '.', '_');
      return name;
    });

TEST(TpsaHelpers, CenterScaleAndEmpiricalCDF) {
  std::vector<double> sorted = Tpsa();
  std::sort(sorted.begin(), sorted.end());
  double center = 0.0, scale = 0.0;
  ZqGetCenterAndScale(center, scale, false, sorted);
  EXPECT_TRUE(VarimoTest::WithinRelative(center, TpsaRef("mean"), kSampleTolerance));
  EXPECT_TRUE(VarimoTest::WithinRelative(scale, TpsaRef("plain_scale"), kSampleTolerance));
  ZqGetCenterAndScale(center, scale, true, sorted);
  EXPECT_EQ(center, TpsaRef("robust_center"));
  EXPECT_TRUE(VarimoTest::WithinRelative(scale, TpsaRef("robust_scale"), kSampleTolerance));
  EXPECT_EQ(ZqEmpiricalCDF(50.0, sorted), TpsaRef("ecdf_50"));
}

// Properties that every one-sample statistic shares. The names are part of
// the interface: reports print them.
class EveryOneSampleStatistic : public ::testing::TestWithParam<unsigned int> {};

TEST_P(EveryOneSampleStatistic, NameCopyBadSamplesAndUntouchedInput) {
  const std::vector<std::string> names = {"Null Statistic: Always returns a bad double",
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
                                          "Kurtosis of Sample"};
  ASSERT_EQ(names.size(), T::NumTypes);
  const ZqSampleStatistic statistic(GetParam(), 0.3);
  EXPECT_EQ(statistic.GetSampleStatisticsType(), GetParam());
  EXPECT_EQ(statistic.GetSampleStatisticsName(), names[GetParam()]);
  const std::unique_ptr<ZqSampleStatisticBase> copy(statistic.CreateCopy());
  const std::vector<double> x = {3.0, -1.0, 4.0, 1.5, 9.0, 2.6};
  EXPECT_EQ(copy->GetSampleStatisticsType(), GetParam());
  EXPECT_TRUE(VarimoTest::WithinUlps((*copy)(x), statistic(x), 0));
  ZqSampleStatistic assigned(T::Null);
  assigned = statistic;
  EXPECT_EQ(assigned.GetSampleStatisticsType(), GetParam());

  EXPECT_EQ(statistic({}), kBad);
  for (double poison : {kNaN, kInf, -kInf}) EXPECT_EQ(statistic({1.0, 2.0, poison, 4.0, 5.0}), kBad) << poison;
  const std::vector<double> original = {5.0, 1.0, 4.0, 2.0, 3.0};
  std::vector<double> data = original;
  statistic(data);
  EXPECT_EQ(data, original);
}

INSTANTIATE_TEST_SUITE_P(Types, EveryOneSampleStatistic, ::testing::Range(0u, T::NumTypes));

TEST(ZqSampleStatistic, UnknownNumberAndSmallSampleEdgeCases) {
  for (unsigned int type : {16u, 1000u}) {
    const ZqSampleStatistic statistic(type);
    EXPECT_EQ(statistic.GetSampleStatisticsType(), 0u);
    EXPECT_EQ(statistic({1.0, 2.0, 3.0}), kBad);
  }
  EXPECT_NE(dynamic_cast<ZqNullSampleStatistic*>(ZqGetSampleStatistic(99, 0.0).get()), nullptr);

  EXPECT_EQ(ZqSampleMedian()({5.0}), -kBad);
  EXPECT_EQ(ZqSampleMedian()({5.0, 7.0}), 6.0);
  EXPECT_EQ(ZqSampleVariance()({5.0}), kBad);
  EXPECT_EQ(ZqSampleRootMeanSquareDev()({5.0}), 0.0);
  EXPECT_EQ(ZqSampleRange()({5.0}), kBad);
  EXPECT_EQ(ZqSampleRange()({5.0, 2.0}), 3.0);
  EXPECT_EQ(ZqSampleMean()({5.0}), 5.0);
  EXPECT_EQ(ZqSampleMin()({5.0}), 5.0);
  EXPECT_EQ(ZqSampleMedianAbsoluteDev()({5.0}), -kBad);
  EXPECT_EQ(ZqSampleInterQuartileRange()({1.0, 2.0, 3.0}), kBad);  // lower quartile below the first point
  EXPECT_EQ(ZqSampleSkewness()({1.0, 2.0}), kBad);
  EXPECT_EQ(ZqSampleKurtosis()({1.0, 2.0}), kBad);
  EXPECT_TRUE(std::isnan(ZqSampleSkewness()({2.0, 2.0, 2.0})));  // 0 / 0, as the arithmetic gives
  EXPECT_EQ(ZqSampleQuantile(0.25)({1.0, 2.0, 3.0}), -kBad);
}

TEST(ZqSampleStatistic, ParametersOfTheTrimmedMeanAndQuantile) {
  const std::vector<double> four = {4.0, 1.0, 3.0, 100.0};
  EXPECT_EQ(ZqTrimmedSampleMean(1.0)(four), 1.0);  // k = 2: nothing left
  EXPECT_EQ(ZqTrimmedSampleMean(0.5)(four), 3.5);  // k = 1: mean of 3 and 4
  EXPECT_EQ(ZqTrimmedSampleMean(0.0)(four), 27.0);
  EXPECT_EQ(ZqTrimmedSampleMean(0.25)(four), 3.5);  // n t / 2 = 0.5 rounds to 1
  EXPECT_EQ(ZqTrimmedSampleMean(1e300)(four), 1.0);
  EXPECT_EQ(ZqTrimmedSampleMean(-0.1)(four), kBad);
  EXPECT_EQ(ZqTrimmedSampleMean(kNaN)(four), kBad);
  EXPECT_EQ(ZqTrimmedSampleMean(0.5).GetParameter(), 0.5);

  // The default parameter is the middle.
  EXPECT_EQ(ZqSampleStatistic(T::Quantile)({1.0, 2.0, 10.0}), 2.0);
  EXPECT_EQ(ZqSampleStatistic(T::TrimmedMean)({1.0, 2.0, 3.0, 100.0}), 2.5);
}

}  // namespace
}  // namespace Varimo
