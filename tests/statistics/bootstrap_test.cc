#include "varimo/statistics/bootstrap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "tpsa_data.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/statistics/pair_statistic.h"
#include "varimo/statistics/quantile.h"
#include "varimo/statistics/sample_statistic.h"

namespace Varimo {
namespace {

namespace S = ZqSampleStatisticType;
namespace F = ZqStatModelFailureType;
using VarimoTest::Report;
using VarimoTest::ResultReport;
constexpr double kBad = 1.7976931348623157e308;
constexpr const char* kFatalText = "Bad implementation--need to fix!";

// Mean and standard deviation (over n - 1) of the column by numpy.
double TpsaRef(const std::string& name) {
  for (const auto& tokens : VarimoTest::ReadReferenceLines("statistics/tpsa_reference.txt")) {
    if (tokens[0] == name) return VarimoTest::ToDouble(tokens[1]);
  }
  ADD_FAILURE() << name;
  return 0.0;
}

const std::vector<double> kData = {3.5, -1.0, 7.25, 0.0, 12.0, 4.5, -6.0};

TEST(OneBootstrapSample, DrawsOneIndexPerElementInOutputOrderAndNoDataFails) {
  Numarc::ZqRanNumEngine engine(41), replay(41);
  std::vector<double> out = {99.0};
  ZqGetOneBootstrapSampleFromDataVec(engine, out, kData);
  ASSERT_EQ(out.size(), kData.size());
  const Numarc::ZqUniformIntRNG index(0, static_cast<long>(kData.size()) - 1);
  for (double value : out) EXPECT_EQ(value, kData[static_cast<std::size_t>(index(replay))]);
  // Empty data give nothing and draw nothing: both engines have made exactly
  // n draws.
  ZqGetOneBootstrapSampleFromDataVec(engine, out, {});
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(engine(), replay());

  // The checked form: one value is repeated, no data fail.
  EXPECT_EQ(Report(ZqGetBootstrapSampleForDataVec(engine, out, {2.5})), VarimoTest::Success());
  EXPECT_EQ(out, std::vector<double>{2.5});
  EXPECT_EQ(Report(ZqGetBootstrapSampleForDataVec(engine, out, {})),
            (ResultReport{false, F::NoData, {"ZqGetBootstrapSampleForDataVec"}, {}}));
  EXPECT_TRUE(out.empty());
}

TEST(PairBootstrapSample, RaisesFatalFirstAndSamplesWholePairs) {
  Corvane::ZqScopedThrowCapture capture;
  const ZqPairSample pairs = {{1.0, 10.0}, {2.0, 20.0}, {3.0, 30.0}, {4.0, 40.0}};
  Numarc::ZqRanNumEngine engine(8), replay(8);
  ZqPairSample out, expected;
  EXPECT_EQ(Report(ZqGetBootstrapSampleForDataPairVec(engine, out, pairs)), VarimoTest::Success());
  ASSERT_EQ(out.size(), pairs.size());
  for (const auto& p : out) EXPECT_EQ(p.second, 10.0 * p.first);
  // The one-sample draw itself raises nothing.
  ZqGetOneBootstrapSampleFromDataPairVec(replay, expected, pairs);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Fatal), std::vector<std::string>{kFatalText});
  EXPECT_EQ(out, expected);

  capture.Clear();
  EXPECT_EQ(Report(ZqGetBootstrapSampleForDataPairVec(engine, out, {})),
            (ResultReport{false, F::NoData, {"ZqGetBootstrapSampleForDataPairVec"}, {}}));
  // Unconditional: even the empty input is told.
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Fatal), std::vector<std::string>{kFatalText});
}

TEST(BootstrapStatistic, ConfidenceIntervalOfTheMeanOfARealColumnCoversItsMean) {
  const std::vector<double>& tpsa = VarimoTest::TpsaValues();
  ASSERT_EQ(tpsa.size(), 4999u);
  Numarc::ZqRanNumEngine engine(2026);
  std::vector<double> means;
  ASSERT_EQ(Report(ZqBootstrapSampleStatisticForDataVec(means, engine, S::Mean, tpsa, 2000)), VarimoTest::Success());
  ASSERT_EQ(means.size(), 2000u);
  std::sort(means.begin(), means.end());
  const double mean = TpsaRef("mean");
  const double standardError = TpsaRef("plain_scale") / std::sqrt(static_cast<double>(tpsa.size()));
  const double lower = ZqQuantile(0.025, means, 8), upper = ZqQuantile(0.975, means, 8);
  EXPECT_LT(lower, mean);
  EXPECT_GT(upper, mean);
  // The percentile interval of a mean of 4999 values is close to the
  // normal one, mean +- 1.96 standard errors.
  EXPECT_TRUE(VarimoTest::WithinRelative(upper - lower, 2.0 * 1.959963984540054 * standardError, 0.1));
  EXPECT_TRUE(VarimoTest::WithinRelative(ZqSampleMean()(means), mean, 0.002));
}

TEST(BootstrapStatistic, EachValueIsTheStatisticOfTheNextSampleWithItsParameter) {
  std::vector<double> a, medians, maxima;
  Numarc::ZqRanNumEngine e1(77), e2(77), e3(77);
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(a, e1, S::Quantile, 0.5, kData, 50).IsSuccessful());
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(medians, e2, S::Median, kData, 50).IsSuccessful());
  EXPECT_EQ(a, medians);
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(maxima, e3, S::Quantile, 1.0, kData, 50).IsSuccessful());
  EXPECT_NE(a, maxima);

  // Each value is the statistic of the next sample.
  Numarc::ZqRanNumEngine engine(9), replay(9);
  std::vector<double> values;
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Variance, kData, 5).IsSuccessful());
  ASSERT_EQ(values.size(), 5u);
  std::vector<double> sample;
  for (double v : values) {
    ZqGetOneBootstrapSampleFromDataVec(replay, sample, kData);
    EXPECT_EQ(v, ZqSampleVariance()(sample));
  }
}

TEST(BootstrapStatistic, EmptyAndDegenerateData) {
  Numarc::ZqRanNumEngine engine(3), untouched(3);
  std::vector<double> values = {1.0};
  EXPECT_EQ(Report(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Mean, {}, 10)),
            (ResultReport{false,
                          F::NoData,
                          {"ZqGetBootstrapSampleForDataVec", "ZqBootstrapSampleStatisticForDataVec"},
                          {}}));
  EXPECT_TRUE(values.empty());
  values = {1.0};
  EXPECT_EQ(Report(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Mean, {}, 0)), VarimoTest::Success());
  EXPECT_TRUE(values.empty());
  ASSERT_EQ(Report(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Mean, kData, 0)), VarimoTest::Success());
  EXPECT_EQ(engine(), untouched());

  // Degenerate samples give the bad value, not a failure.
  // One value has no variance; a NaN spoils every sample that draws it.
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Variance, {4.0}, 3).IsSuccessful());
  EXPECT_EQ(values, std::vector<double>(3, kBad));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Mean, {nan, nan}, 3).IsSuccessful());
  EXPECT_EQ(values, std::vector<double>(3, kBad));
  // All equal values: a bootstrap of the range is 0 throughout.
  ASSERT_TRUE(ZqBootstrapSampleStatisticForDataVec(values, engine, S::Range, {2.0, 2.0, 2.0}, 3).IsSuccessful());
  EXPECT_EQ(values, std::vector<double>(3, 0.0));
}

TEST(BootstrapPairStatistics, OneFatalPerSampleValuesOfEachSampleAndNoData) {
  Corvane::ZqScopedThrowCapture capture;
  const ZqPairSample pairs = {{1.0, 2.0}, {2.0, 4.5}, {3.0, 5.5}, {4.0, 8.0}, {5.0, 9.0}};
  Numarc::ZqRanNumEngine engine(12), replay(12);
  ZqPairSample means;
  ASSERT_EQ(Report(ZqBootstrapTwoSamplePairStatisticForDataPairVec(means, engine, 1, pairs, 4)),
            VarimoTest::Success());
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Fatal), std::vector<std::string>(4, kFatalText));
  ASSERT_EQ(means.size(), 4u);
  ZqPairSample sample;
  for (const auto& m : means) {
    ZqGetOneBootstrapSampleFromDataPairVec(replay, sample, pairs);
    EXPECT_EQ(m, ZqTwoSamplePairOfMeans().GetPairStatistic(sample));
  }

  capture.Clear();
  std::vector<double> covariances;
  Numarc::ZqRanNumEngine again(12), replay2(12);
  ASSERT_TRUE(ZqBootstrapTwoSampleStatisticForDataPairVec(covariances, again, 1, pairs, 3).IsSuccessful());
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Fatal).size(), 3u);
  ASSERT_EQ(covariances.size(), 3u);
  for (double c : covariances) {
    ZqGetOneBootstrapSampleFromDataPairVec(replay2, sample, pairs);
    EXPECT_EQ(c, ZqTwoSampleCovariance()(sample));
  }

  // Empty pairs fail with no data.
  std::vector<double> values;
  ZqPairSample pairValues;
  EXPECT_EQ(Report(ZqBootstrapTwoSampleStatisticForDataPairVec(values, engine, 2, {}, 5)),
            (ResultReport{false,
                          F::NoData,
                          {"ZqGetBootstrapSampleForDataPairVec", "ZqBootstrapTwoSampleStatisticForDataPairVec"},
                          {}}));
  EXPECT_EQ(Report(ZqBootstrapTwoSamplePairStatisticForDataPairVec(pairValues, engine, 2, {}, 5)),
            (ResultReport{false,
                          F::NoData,
                          {"ZqGetBootstrapSampleForDataPairVec", "ZqBootstrapTwoSamplePairStatisticForDataPairVec"},
                          {}}));
  // Zero samples never reach the sampler.
  capture.Clear();
  EXPECT_TRUE(ZqBootstrapTwoSampleStatisticForDataPairVec(values, engine, 2, {}, 0).IsSuccessful());
  EXPECT_TRUE(capture.Messages().empty());
}

}  // namespace
}  // namespace Varimo
