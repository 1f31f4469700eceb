#include "varimo/statistics/independence_statistic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/statistics/distance_matrix.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {
namespace {

namespace I = ZqTwoSampleIndependenceStatisticType;
namespace F = ZqStatModelFailureType;
using VarimoTest::Report;
using VarimoTest::ResultReport;
constexpr double kBad = 1.7976931348623157e308;
// Sums of a few hundred products in another order than numpy's.
constexpr double kTolerance = 1e-12;

struct Sample {
  std::vector<double> data;
  std::uint64_t numCols = 0;
  bool isSimilarity = false;
};
struct Case {
  Sample first, second;
  double dCor = 0.0, testStat = 0.0;
};

const std::map<std::string, Case>& Cases() {
  static const std::map<std::string, Case> cases = [] {
    std::map<std::string, Case> c;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("statistics/independence_reference.txt")) {
      if (tokens[0] == "sample") {
        Sample& s = tokens[2] == "1" ? c[tokens[1]].first : c[tokens[1]].second;
        s.numCols = static_cast<std::uint64_t>(VarimoTest::ToDouble(tokens[3]));
        s.isSimilarity = tokens[4] == "1";
        s.data = VarimoTest::ToDoubles(tokens, 5);
      } else {
        c[tokens[1]].dCor = VarimoTest::ToDouble(tokens[2]);
        c[tokens[1]].testStat = VarimoTest::ToDouble(tokens[3]);
      }
    }
    return c;
  }();
  return cases;
}

double Apply(ZqStatModelResult& result, unsigned int type, const Case& c) {
  return ZqGetTwoSampleIndepStatForVectors(result, type, c.first.data, c.first.numCols, c.first.isSimilarity,
                                           c.second.data, c.second.numCols, c.second.isSimilarity);
}

double PValue(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine, std::uint64_t numSimulations,
              unsigned int type, const std::vector<double>& x, const std::vector<double>& y) {
  return ZqGetPValueForTwoSampleIndepStatistic(result, engine, numSimulations, type, x, 1, false, y, 1, false);
}

std::vector<double> Gaussian(Numarc::ZqRanNumEngine& engine, std::size_t n) {
  const Numarc::ZqGaussianRNG normal(0.0, 1.0);
  std::vector<double> v(n);
  for (double& x : v) x = normal(engine);
  return v;
}

TEST(IndependenceStatistic, NamesTypesAndTheNullClass) {
  EXPECT_EQ(ZqTwoSampleIndependenceStatistic(1).GetTwoSampleIndepStatisticsName(), "DistanceMatrixCorrelationMeasure");
  EXPECT_EQ(ZqTwoSampleIndependenceStatistic(2).GetTwoSampleIndepStatisticsName(),
            "DistanceMatrixCorrelationTestStatistic");
  EXPECT_EQ(ZqTwoSampleIndependenceStatistic(2).GetTwoSampleIndepStatisticsType(), 2u);
  for (unsigned int type : {0u, 3u, 1000u}) {
    const ZqTwoSampleIndependenceStatistic null(type);
    EXPECT_EQ(null.GetTwoSampleIndepStatisticsType(), 0u);
    ZqStatModelResult result(true);
    EXPECT_EQ(null(result, {1.0}, 1, false, {2.0}, 1, false), kBad);
    EXPECT_EQ(Report(result), (ResultReport{false, F::EmptyStatModel, {"ZqNullIndependenceStatistic::operator"}, {}}));
    std::vector<double> simulated = {1.0};
    Numarc::ZqRanNumEngine engine(1);
    EXPECT_EQ(Report(null.SimulateStatisticUnderIndependence(simulated, engine, 5, {1.0}, 1, false, {2.0}, 1, false)),
              (ResultReport{false,
                            F::EmptyStatModel,
                            {"ZqNullIndependenceStatistic::SimulateStatisticUnderIndependence"},
                            {}}));
    EXPECT_TRUE(simulated.empty());
  }
  // Copies are deep and keep the type.
  const ZqTwoSampleIndependenceStatistic original(1);
  const ZqTwoSampleIndependenceStatistic copy(original);
  std::unique_ptr<ZqTwoSampleIndependenceStatisticBase> clone(original.CreateCopy());
  EXPECT_EQ(copy.GetTwoSampleIndepStatisticsType(), 1u);
  EXPECT_EQ(clone->GetTwoSampleIndepStatisticsType(), 1u);
}

TEST(IndependenceStatistic, ValuesAgainstNumpyAndZeroForAConstantSample) {
  ASSERT_EQ(Cases().size(), 4u);
  for (const auto& [name, c] : Cases()) {
    ZqStatModelResult result;
    EXPECT_TRUE(VarimoTest::WithinRelative(Apply(result, I::DistanceCorrelationMeasure, c), c.dCor, kTolerance))
        << name;
    EXPECT_EQ(Report(result), VarimoTest::Success()) << name;
    EXPECT_TRUE(VarimoTest::WithinRelative(Apply(result, I::DistanceCorrelationTestStat, c), c.testStat, kTolerance))
        << name;
    EXPECT_EQ(Report(result), VarimoTest::Success()) << name;
  }

  // A constant sample has no correlation.
  ZqStatModelResult result;
  const std::vector<double> x = {1.0, 2.0, 4.0, 8.0}, flat = {3.0, 3.0, 3.0, 3.0};
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 1, x, 1, false, flat, 1, false), 0.0);
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 2, x, 1, false, flat, 1, false), 0.0);
}

TEST(IndependenceStatistic, BadInputFailsWithTheRoutineChain) {
  ZqStatModelResult result;
  // Three rows against two.
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 2, {1, 2, 3}, 1, false, {1, 2, 3, 4}, 2, false), kBad);
  EXPECT_EQ(Report(result), (ResultReport{false,
                                          F::MismatchBetweenInputVecSizes,
                                          {"ZqDistanceCorrelationTestStat::operator",
                                           "ZqGetTwoSampleIndepStatForVectors"},
                                          {}}));
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 1, {}, 1, false, {}, 1, false), kBad);
  EXPECT_EQ(result.GetFailureType(), F::NoData);
  EXPECT_EQ(VarimoTest::Context(result).front(), "ZqDistanceCorrelationMeasure::operator");
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 1, {1, 2}, 0, false, {1, 2}, 1, false), kBad);
  EXPECT_EQ(result.GetFailureType(), F::ArgumentOutOfRange);
  EXPECT_EQ(VarimoTest::Context(result).front(), "GetDistanceMatrix");
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ZqGetTwoSampleIndepStatForVectors(result, 2, {1, nan, 3}, 1, false, {1, 2, 3}, 1, false), kBad);
  EXPECT_EQ(result.GetFailureType(), F::ArgumentValueWrong);
}

TEST(DistanceMatrix, FromSimilaritiesAndFromRowsWithDoubleCentring) {
  ZqStatModelResult result;
  Eigen::MatrixXd matrix;
  GetDistanceMatrix(result, matrix, {1, 0.5, 0.5, 1, 0.2, 0.3}, 2, true);
  EXPECT_EQ(Report(result),
            (ResultReport{false, F::WrongInputMatrixSize, {"GetDistanceMatrix"},
                          {"smilarity matrix assumed square, but numRows, numCols = 3; 2"}}));
  GetDistanceMatrix(result, matrix, {1, 1.5, 0.5, 1}, 2, true);
  EXPECT_EQ(Report(result), (ResultReport{false, F::UpperBoundViolated, {"GetDistanceMatrix"},
                                          {"For input vector: Bad similarity: 1.5 at i,j = (0,1)\n"}}));
  // Below the lower bound it is still the upper-bound failure.
  GetDistanceMatrix(result, matrix, {1, 0.5, -0.25, 1}, 2, true);
  EXPECT_EQ(Report(result), (ResultReport{false, F::UpperBoundViolated, {"GetDistanceMatrix"},
                                          {"For input vector: Bad similarity: -0.25 at i,j = (1,0)\n"}}));
  EXPECT_EQ(matrix.size(), 0);
  GetDistanceMatrix(result, matrix, {1, 0.75, 0.75, 0}, 2, true);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_EQ(matrix(0, 0), 0.0);
  EXPECT_EQ(matrix(0, 1), 0.5);
  EXPECT_EQ(matrix(1, 1), 1.0);

  // Euclidean distances of rows, and their double centring.
  GetDistanceMatrix(result, matrix, {0, 0, 3, 4, 6, 8}, 2, false);
  ASSERT_TRUE(result.IsSuccessful());
  ASSERT_EQ(matrix.rows(), 3);
  EXPECT_EQ(matrix(0, 1), 5.0);
  EXPECT_EQ(matrix(2, 0), 10.0);
  EXPECT_EQ(matrix(1, 2), 5.0);
  CenterDistanceMatrix(matrix);
  EXPECT_NEAR(matrix.rowwise().sum().cwiseAbs().maxCoeff(), 0.0, 1e-14);
  EXPECT_NEAR(matrix.colwise().sum().cwiseAbs().maxCoeff(), 0.0, 1e-14);
  // 0 - 5 - 5 + 40/9 for the first element.
  EXPECT_NEAR(matrix(0, 0), -10.0 + 40.0 / 9.0, 1e-14);
}

TEST(PValue, IsTheShareOfSimulatedValuesAboveTheObservedOneAndPrintsTheirRange) {
  Numarc::ZqRanNumEngine data(7);
  const std::vector<double> x = Gaussian(data, 12), y = Gaussian(data, 12);
  Numarc::ZqRanNumEngine engine(21), replay(21);
  ZqStatModelResult result;
  VarimoTest::CaptureOutput capture;
  const double p = PValue(result, engine, 200, I::DistanceCorrelationTestStat, x, y);
  const std::string printed = capture.Text();
  ASSERT_EQ(Report(result), VarimoTest::Success());
  std::vector<double> simulated;
  ASSERT_TRUE(ZqDistanceCorrelationTestStat()
                  .SimulateStatisticUnderIndependence(simulated, replay, 200, x, 1, false, y, 1, false)
                  .IsSuccessful());
  const double observed = ZqGetTwoSampleIndepStatForVectors(result, 2, x, 1, false, y, 1, false);
  const auto above = std::count_if(simulated.begin(), simulated.end(), [&](double s) { return s > observed; });
  EXPECT_DOUBLE_EQ(p, static_cast<double>(above) / 200.0);
  // The lines carry the ends and the 90th percentile of the simulated values.
  std::sort(simulated.begin(), simulated.end());
  std::ostringstream expected;
  expected << "min, max = " << simulated.front() << "; " << simulated.back() << "\n"
           << "90th percentile = " << ZqQuantile(0.9, simulated, 8) << "\n";
  EXPECT_EQ(printed, expected.str());

  // Equal columns are as dependent as can be.
  EXPECT_LT(PValue(result, engine, 999, I::DistanceCorrelationTestStat, x, x), 0.002);
  capture.Text();
}

TEST(PValue, RoughlyUniformUnderIndependenceAndSmallUnderDependence) {
  // 300 independent pairs of samples of 15: the p-values should spread over
  // [0, 1]. Bounds are some four standard errors wide.
  Numarc::ZqRanNumEngine engine(2718);
  ZqStatModelResult result;
  VarimoTest::CaptureOutput capture;
  std::vector<double> pValues;
  for (int k = 0; k < 300; ++k) {
    const std::vector<double> x = Gaussian(engine, 15), y = Gaussian(engine, 15);
    pValues.push_back(PValue(result, engine, 99, 2, x, y));
    ASSERT_TRUE(result.IsSuccessful());
  }
  const double mean = std::accumulate(pValues.begin(), pValues.end(), 0.0) / 300.0;
  const auto belowTenth = std::count_if(pValues.begin(), pValues.end(), [](double p) { return p < 0.1; });
  const auto aboveHalf = std::count_if(pValues.begin(), pValues.end(), [](double p) { return p > 0.5; });
  EXPECT_NEAR(mean, 0.5, 0.07);
  EXPECT_GT(belowTenth, 12);
  EXPECT_LT(belowTenth, 50);
  EXPECT_GT(aboveHalf, 115);
  EXPECT_LT(aboveHalf, 185);

  // A quadratic dependence, invisible to a correlation coefficient.
  const std::vector<double> x = Gaussian(engine, 40);
  std::vector<double> y(x.size());
  const std::vector<double> noise = Gaussian(engine, 40);
  for (std::size_t i = 0; i < x.size(); ++i) y[i] = x[i] * x[i] + 0.1 * noise[i];
  EXPECT_LT(PValue(result, engine, 499, 2, x, y), 0.01);
  capture.Text();
}

TEST(PValue, MeasureHasNoSimulationAndFailuresPrintNothing) {
  const std::vector<double> x = {1, 2, 3, 4, 5}, y = {2, 1, 4, 3, 6};
  Numarc::ZqRanNumEngine engine(1);
  ZqStatModelResult result;
  VarimoTest::CaptureOutput capture;
  EXPECT_EQ(PValue(result, engine, 50, I::DistanceCorrelationMeasure, x, y), kBad);
  EXPECT_EQ(Report(result), (ResultReport{false,
                                          F::NotYetImplemented,
                                          {"ZqDistanceCorrelationMeasure::SimulateStatisticUnderIndependence",
                                           "ZqGetPValueForTwoSampleIndepStatistic"},
                                          {}}));
  // The observed value comes first: its failure is the one reported.
  EXPECT_EQ(ZqGetPValueForTwoSampleIndepStatistic(result, engine, 50, 1, x, 1, false, {1, 2}, 1, false), kBad);
  EXPECT_EQ(result.GetFailureType(), F::MismatchBetweenInputVecSizes);
  EXPECT_EQ(VarimoTest::Context(result).front(), "ZqDistanceCorrelationMeasure::operator");
  EXPECT_EQ(PValue(result, engine, 50, 0, x, y), kBad);
  EXPECT_EQ(VarimoTest::Context(result).front(), "ZqNullIndependenceStatistic::operator");
  EXPECT_EQ(PValue(result, engine, 0, 2, x, y), kBad);
  EXPECT_EQ(Report(result), (ResultReport{false, F::NoData, {"ZqGetPValueForTwoSampleIndepStatistic"}, {}}));
  EXPECT_EQ(capture.Text(), "");
}

}  // namespace
}  // namespace Varimo
