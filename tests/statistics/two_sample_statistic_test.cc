#include "varimo/statistics/two_sample_statistic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/statistics/pair_statistic.h"

namespace Varimo {
namespace {

namespace T2 = ZqTwoSampleStatisticType;
namespace TP = ZqTwoSamplePairStatisticType;
constexpr double kBad = 1.7976931348623157e308;
const std::pair<double, double> kBadPair = {kBad, kBad};
// Moments of 40 values against numpy and scipy.
constexpr double kPairTolerance = 1e-12;

struct Reference {
  ZqPairSample pairs;
  std::map<std::string, double> values;
};

const Reference& TwoSampleReference() {
  static const Reference reference = [] {
    Reference r;
    std::vector<double> x, y;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("statistics/two_sample_reference.txt")) {
      if (tokens[0] == "x") {
        x = VarimoTest::ToDoubles(tokens, 1);
      } else if (tokens[0] == "y") {
        y = VarimoTest::ToDoubles(tokens, 1);
      } else {
        r.values[tokens[0]] = VarimoTest::ToDouble(tokens[1]);
      }
    }
    EXPECT_EQ(x.size(), y.size());
    for (std::size_t i = 0; i < x.size() && i < y.size(); ++i) r.pairs.emplace_back(x[i], y[i]);
    return r;
  }();
  return reference;
}

double Ref(const std::string& name) { return TwoSampleReference().values.at(name); }

// Per type: its name, which reports print, and its entry in the reference
// file (none for the null statistic, which always gives the bad double).
const std::pair<const char*, const char*> kTypes[] = {
    {"Null Statistic: Always returns a bad double", nullptr},
    {"Two Sample Covariance", "covariance"},
    {"Two Sample Pearson Correlation", "pearson"},
    {"Slope of Regression of 2nd var on First", "slope"},
    {"Szekely, Rizzo Distance Correlation For 2 dims", "distance_correlation"},
    {"Szekely, Rizzo Distance Covar TestStat For 2 dims", "distance_covar_test_stat"},
    {"Spearman Rank-order correlation", "spearman"},
    {"Kendall Tau Rank-order correlation", "kendall"},
    {"Two Sample R-Squared measure of Correlation", "r_squared"}};

class EveryTwoSampleStatistic : public ::testing::TestWithParam<unsigned int> {};

TEST_P(EveryTwoSampleStatistic, AgreesWithScipyAndRefusesNonFiniteData) {
  ASSERT_EQ(std::size(kTypes), T2::NumTypes);
  const auto [name, reference] = kTypes[GetParam()];
  const ZqPairSample& pairs = TwoSampleReference().pairs;
  ASSERT_EQ(pairs.size(), 40u);
  const ZqTwoSampleStatistic statistic(GetParam());
  EXPECT_EQ(statistic.GetTwoSampleStatisticsType(), GetParam());
  EXPECT_EQ(statistic.GetTwoSampleStatisticsName(), name);
  EXPECT_TRUE(VarimoTest::WithinRelative(statistic(pairs), reference ? Ref(reference) : kBad, kPairTolerance));
  const std::unique_ptr<ZqTwoSampleStatisticBase> copy(statistic.CreateCopy());
  EXPECT_TRUE(VarimoTest::WithinUlps((*copy)(pairs), statistic(pairs), 0));
  ZqPairSample poisoned = {{1.0, 2.0}, {2.0, 1.0}, {3.0, std::nan("")}, {4.0, 3.0}};
  EXPECT_EQ(statistic(poisoned), kBad);
  poisoned[2].second = 5.0;
  poisoned[0].first = std::numeric_limits<double>::infinity();
  EXPECT_EQ(statistic(poisoned), kBad);
}

INSTANTIATE_TEST_SUITE_P(Types, EveryTwoSampleStatistic, ::testing::Range(0u, T2::NumTypes));

TEST(ZqTwoSampleStatistic, UnknownNumberAndDegenerateSamples) {
  EXPECT_EQ(ZqTwoSampleStatistic(9).GetTwoSampleStatisticsType(), 0u);
  EXPECT_EQ(ZqTwoSampleStatistic(9)(TwoSampleReference().pairs), kBad);

  const ZqPairSample constantX = {{1.0, 2.0}, {1.0, 3.0}, {1.0, 5.0}};
  EXPECT_EQ(ZqTwoSamplePearsonCorrelation()(constantX), kBad);
  EXPECT_EQ(ZqTwoSampleRSquared()(constantX), kBad);
  EXPECT_EQ(ZqTwoSampleRegressionSlope()(constantX), kBad);
  EXPECT_EQ(ZqTwoSampleCovariance()(constantX), 0.0);
  EXPECT_EQ(ZqDistanceCorrelation()(constantX), 0.0);
  EXPECT_EQ(ZqDistanceCovarTestStat()(constantX), kBad);
  EXPECT_EQ(ZqTwoSampleCovariance()({}), kBad);
  EXPECT_EQ(ZqKendallTau()({}), 1.0);
  EXPECT_TRUE(std::isnan(ZqKendallTau()({{1.0, 2.0}})));  // 0 / 0
  EXPECT_EQ(ZqSpearmanRho()({{1.0, 2.0}}), kBad);
  // Perfectly monotone: both rank correlations are 1 and -1.
  const ZqPairSample rising = {{1.0, 1.0}, {2.0, 4.0}, {3.0, 9.0}, {4.0, 16.0}};
  EXPECT_DOUBLE_EQ(ZqSpearmanRho()(rising), 1.0);
  EXPECT_DOUBLE_EQ(ZqKendallTau()(rising), 1.0);
  const ZqPairSample falling = {{1.0, 16.0}, {2.0, 9.0}, {3.0, 4.0}, {4.0, 1.0}};
  EXPECT_DOUBLE_EQ(ZqSpearmanRho()(falling), -1.0);
  EXPECT_DOUBLE_EQ(ZqKendallTau()(falling), -1.0);
}

TEST(GetMeansAndCentered2ndMoments, DividesByN) {
  double mx, my, vx, vy, c;
  GetMeansAndCentered2ndMoments({{1.0, 2.0}, {3.0, 6.0}}, mx, my, vx, vy, c);
  EXPECT_EQ((std::vector<double>{mx, my, vx, vy, c}), (std::vector<double>{2.0, 4.0, 1.0, 4.0, 2.0}));
  GetMeansAndCentered2ndMoments({}, mx, my, vx, vy, c);
  EXPECT_EQ((std::vector<double>{mx, my, vx, vy, c}), std::vector<double>(5, kBad));
}

// --- Pair statistics.

TEST(ZqTwoSamplePairStatistic, AgainstNumpyAndScipy) {
  const ZqPairSample& pairs = TwoSampleReference().pairs;
  auto near = [](std::pair<double, double> actual, double first, double second) {
    return VarimoTest::WithinRelative(actual.first, first, kPairTolerance) &&
           VarimoTest::WithinRelative(actual.second, second, kPairTolerance);
  };
  EXPECT_TRUE(near(ZqTwoSamplePairStatistic(TP::PairOfMeans).GetPairStatistic(pairs), Ref("mean_x"), Ref("mean_y")));
  EXPECT_TRUE(near(ZqTwoSamplePairStatistic(TP::PairOfVariances).GetPairStatistic(pairs), Ref("variance_x"),
                   Ref("variance_y")));
  EXPECT_TRUE(near(ZqTwoSamplePairStatistic(TP::InterceptSlopeOfOLSRegression).GetPairStatistic(pairs),
                   Ref("ols_intercept"), Ref("slope")));
  const auto [t, p] = ZqTwoSamplePairStatistic(TP::PairedTTestStatAndPValue).GetPairStatistic(pairs);
  EXPECT_TRUE(VarimoTest::WithinRelative(t, Ref("paired_t"), kPairTolerance));
  EXPECT_TRUE(VarimoTest::WithinRelative(p, Ref("paired_t_upper_p"), 1e-10));
}

TEST(ZqInterceptSlopeOfLMSRegression, ReachesTheBruteForceMinimum) {
  // The objective is piecewise linear with flat stretches: the score must
  // match the exhaustive scan, the slope only where the minimum is.
  const auto [intercept, slope] =
      ZqTwoSamplePairStatistic(TP::InterceptSlopeOfLMSRegression).GetPairStatistic(TwoSampleReference().pairs);
  ZqLMSSlopeFunctor objective(TwoSampleReference().pairs);
  EXPECT_LE(objective(&slope), Ref("lms_score") + 1e-9);
  EXPECT_NEAR(slope, Ref("lms_slope"), 0.05);
  EXPECT_NEAR(intercept, objective.GetIntercept(slope), 0.0);
}

TEST(ZqInterceptSlopeOfLMSRegression, ExactLineWithOutliersOrTheBadPair) {
  // y = 2x + 1 on 7 points, two wild ones: the least median line is exact.
  const ZqPairSample pairs = {{0.0, 1.0}, {1.0, 3.0},  {2.0, 5.0},   {3.0, 7.0},
                              {4.0, 9.0}, {5.0, 40.0}, {6.0, -30.0}, {7.0, 15.0}};
  const auto [intercept, slope] = ZqInterceptSlopeOfLMSRegression().GetPairStatistic(pairs);
  EXPECT_NEAR(slope, 2.0, 1e-6);
  EXPECT_NEAR(intercept, 1.0, 1e-5);

  EXPECT_EQ(ZqInterceptSlopeOfLMSRegression().GetPairStatistic({{0.0, 1.0}, {1.0, 3.0}, {2.0, 5.0}}), kBadPair);
  // A cloud on which slope 0 scores no better than the probe slopes -1 and
  // 1: the method then gives up instead of searching.
  const ZqPairSample valley = {{-2.0, -2.0}, {-1.0, 1.0}, {1.0, -1.0}, {2.0, 2.0}, {-3.0, 3.0}, {3.0, -3.0}};
  ZqLMSSlopeFunctor probe(valley);
  const double zero = 0.0, one = 1.0, minusOne = -1.0;
  const double f0 = probe(&zero), f1 = probe(&one), fm = probe(&minusOne);
  ASSERT_TRUE(f0 >= f1 && f0 >= fm) << f0 << " " << f1 << " " << fm;
  EXPECT_EQ(ZqInterceptSlopeOfLMSRegression().GetPairStatistic(valley), kBadPair);
}

TEST(ZqLMSSlopeFunctor, NarrowestWindowOfHalfTheResiduals) {
  // Slope 0: residuals are the y sorted, 1 2 4 8 20; h = 2: windows 3, 6, 16.
  ZqLMSSlopeFunctor f({{0.0, 8.0}, {0.0, 1.0}, {0.0, 20.0}, {0.0, 2.0}, {0.0, 4.0}});
  const double zero = 0.0;
  EXPECT_EQ(f.NumVar(), 1u);
  EXPECT_EQ(f(&zero), 1.5);
  EXPECT_EQ(f.GetIntercept(0.0), 2.5);
  EXPECT_FALSE(f.GetFComponents(&zero).IsValid());
  ZqLMSSlopeFunctor empty({});
  EXPECT_EQ(empty(&zero), kBad);
}

TEST(ZqTwoSamplePairStatistic, NamesAndSmallSamples) {
  const std::vector<std::string> names = {"Null PairStatistic: Always returns a bad double pair",
                                          "Pair of Sample Means for paired sample",
                                          "Pair of Sample Variances for paired sample",
                                          "Slope and Intercept of Ordinary Least-SquaresRegression",
                                          "Slope and Intercept of Least-Median of Squares Regression",
                                          "Paired Two-Sample t-test and its p-value"};
  for (unsigned int type = 0; type < TP::NumTypes; ++type) {
    const ZqTwoSamplePairStatistic statistic(type);
    EXPECT_EQ(statistic.GetTwoSamplePairStatisticsName(), names[type]);
    EXPECT_EQ(statistic.GetTwoSamplePairStatisticsType(), type);
    const std::unique_ptr<ZqTwoSamplePairStatisticBase> copy(statistic.CreateCopy());
    EXPECT_EQ(copy->GetTwoSamplePairStatisticsType(), type);
    EXPECT_EQ(statistic.GetPairStatistic({{1.0, std::nan("")}, {2.0, 3.0}, {3.0, 1.0}, {4.0, 4.0}}), kBadPair) << type;
  }
  EXPECT_EQ(ZqTwoSamplePairStatistic(6).GetTwoSamplePairStatisticsType(), 0u);
  const ZqPairSample one = {{1.0, 2.0}};
  EXPECT_EQ(ZqTwoSamplePairOfMeans().GetPairStatistic(one), std::make_pair(1.0, 2.0));
  EXPECT_EQ(ZqTwoSamplePairOfMeans().GetPairStatistic({}), kBadPair);
  EXPECT_EQ(ZqTwoSamplePairOfVariances().GetPairStatistic(one), kBadPair);
  EXPECT_EQ(ZqInterceptSlopeOfOLSRegression().GetPairStatistic(one), kBadPair);
  EXPECT_EQ(ZqInterceptSlopeOfOLSRegression().GetPairStatistic({{1.0, 2.0}, {1.0, 3.0}}), kBadPair);
  EXPECT_EQ(ZqPairedTTestStatAndPValue().GetPairStatistic(one), kBadPair);

  // The paired t-test on equal differences divides by zero.
  const auto [t, p] = ZqPairedTTestStatAndPValue().GetPairStatistic({{1.0, 3.0}, {2.0, 4.0}, {5.0, 7.0}});
  EXPECT_TRUE(std::isinf(t));
  EXPECT_GT(t, 0.0);
  EXPECT_EQ(p, 0.0);
  const auto [t0, p0] = ZqPairedTTestStatAndPValue().GetPairStatistic({{1.0, 1.0}, {2.0, 2.0}});
  EXPECT_TRUE(std::isnan(t0));
  EXPECT_EQ(p0, kBad);
}

}  // namespace
}  // namespace Varimo
