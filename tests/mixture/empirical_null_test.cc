// Empirical null and alternative models on samples with a known null
// proportion: the group probabilities and predictive laws they recover,
// the printed search, and the rules of their construction.
#include "varimo/mixture/empirical_null.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "result_support.h"
#include "test_support.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;

// 80% null draws from N(0, 1), 20% from N(4, 1), seeded.
std::vector<double> NullAndSignal(std::size_t n) {
  Numarc::ZqRanNumEngine engine(2026);
  const Numarc::ZqUniformDoubleRNG pick(0.0, 1.0);
  const Numarc::ZqGaussianRNG null(0.0, 1.0), signal(4.0, 1.0);
  std::vector<double> data;
  for (std::size_t i = 0; i < n; ++i) data.push_back(pick(engine) < 0.8 ? null(engine) : signal(engine));
  return data;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(EmpiricalNull, GaussGammaModelRecoversTheNullShare) {
  const std::vector<double> data = NullAndSignal(3000);
  DirGaussGammaMixForEmpiricalNullAlt model(0.8, 1, 1, "z", {1.0, 1.0}, data);
  ASSERT_TRUE(model.Valid());
  double fitness = 0.0;
  VarimoTest::CaptureOutput capture;
  ASSERT_TRUE(model.FitModel(fitness, 0.0005, 0.0005, 50000).IsSuccessful());
  ZqStatModelResult result;
  const double pNull = model.GetExpectedProbNull(result);
  const double pAlt = model.GetExpectedProbAlt(result);
  // Three standard errors of a proportion of 3000 draws, about 0.022.
  EXPECT_NEAR(pNull, 0.8, 0.022);
  EXPECT_NEAR(pNull + pAlt, 1.0, 1e-12);
  const ZqUniVarPDF nullLaw = model.GetPosteriorPredictiveNullDist(result);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_NEAR(nullLaw.GetMean(result), 0.0, 0.1);
  const ZqUniVarPDF altLaw = model.GetPosteriorPredictiveAltDist(result);
  EXPECT_NEAR(altLaw.GetMean(result), 4.0, 0.15);
  const ZqUniVarPDF total = model.GetPosteriorPredictiveTotDist(result);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_NEAR(total.GetCDF(2.0, result, true), 0.8 * 0.97725 + 0.2 * 0.02275, 0.02);
  const std::vector<std::string> lines = Lines(capture.Text());
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].rfind("Num cycles, fitness difference, paramDiff, var lower bound = ", 0), 0u);
  EXPECT_EQ(lines[1].rfind("sumP - 1 = ", 0), 0u);
  std::vector<double> params;
  ASSERT_TRUE(model.GetModelParams(params).IsSuccessful());
  EXPECT_EQ(params.size(), 10u);
}

TEST(EmpiricalNull, FixedPointModelCyclesAndPredicts) {
  const std::vector<double> data = NullAndSignal(3000);
  DirGaussMixForEmpiricalNullAlt model(0.8, 1, 1, "z", {1.0, 1.0}, data);
  ASSERT_TRUE(model.FitModel(200).IsSuccessful());
  ZqStatModelResult result;
  EXPECT_NEAR(model.GetExpectedProbNull(result), 0.8, 0.022);
  const ZqUniVarPDF nullLaw = model.GetPosteriorPredictiveNullDist(result);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_NEAR(nullLaw.GetVariance(result), 1.0, 0.15);
  std::vector<double> params;
  ASSERT_TRUE(model.GetModelParams(params).IsSuccessful());
  EXPECT_EQ(params.size(), 6u);
}

TEST(EmpiricalNull, SearchOverPairsPrintsAndPicksTheBest) {
  const std::vector<double> data = NullAndSignal(1500);
  ZqStatModelResult result;
  std::vector<double> probs;
  std::vector<DirGaussGammaMixForEmpiricalNullAlt> models;
  VarimoTest::CaptureOutput capture;
  const DirGaussGammaMixForEmpiricalNullAlt best =
      FitGaussGammaMixModel(result, probs, models, 0.8, {{1, 1}, {2, 1}}, "z", 1.0, 1.0, data);
  const std::vector<std::string> lines = Lines(capture.Text());
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  ASSERT_EQ(models.size(), 2u);
  EXPECT_NEAR(probs[0] + probs[1], 1.0, 1e-12);
  std::vector<std::string> search;
  for (const std::string& line : lines) {
    if (line.rfind("NumNull, NumAlt, OptimalFitness = ", 0) == 0) search.push_back(line);
  }
  ASSERT_EQ(search.size(), 2u);
  EXPECT_EQ(search[0].rfind("NumNull, NumAlt, OptimalFitness = 1 1 ", 0), 0u);
  EXPECT_EQ(search[1].rfind("NumNull, NumAlt, OptimalFitness = 2 1 ", 0), 0u);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], std::string(42, '$'));
  const std::size_t bestNull = probs[0] >= probs[1] ? 1 : 2;
  EXPECT_EQ(lines.back().rfind("Best RESULT: numNull, NumAlt, fitness = " + std::to_string(bestNull) + " 1 ", 0), 0u);
  EXPECT_EQ(best.GetNumNullComponents(result), bestNull);

  // No pairs: nothing fitted, a default model back.
  VarimoTest::CaptureOutput quiet;
  const DirGaussGammaMixForEmpiricalNullAlt none =
      FitGaussGammaMixModel(result, probs, models, 0.8, {}, "z", 1.0, 1.0, data);
  EXPECT_TRUE(models.empty() && probs.empty());
  EXPECT_FALSE(none.Valid());
}

TEST(EmpiricalNull, ConstructionRulesAndFailures) {
  const std::vector<double> data = NullAndSignal(200);
  ZqStatModelResult result;
  const DirGaussGammaMixForEmpiricalNullAlt noNull(0.8, 0, 2, "z", {1.0, 1.0}, data);
  EXPECT_EQ(noNull.GetNumNullComponents(result), std::numeric_limits<std::size_t>::max());
  EXPECT_EQ(result.GetFailureType(), F::ObjectNotValid);
  EXPECT_FALSE(DirGaussMixForEmpiricalNullAlt(0.8, 1, 1, "z", {1.0, 1.0, 1.0}, data).Valid());

  // A null fraction of one leaves the alternative slice empty: centre 0,
  // scale 1 (beta 1); above one the null slice ends at the last value.
  const DirGaussGammaMixForEmpiricalNullAlt allNull(1.0, 1, 1, "z", {1.0, 1.0}, data);
  double m, k, a, b;
  ASSERT_TRUE(allNull.GetModel().Components()[1].GetBayesPriorGaussParams(m, k, a, b).IsSuccessful());
  EXPECT_EQ(m, 0.0);
  EXPECT_EQ(b, 1.0);
  const DirGaussGammaMixForEmpiricalNullAlt beyond(1.5, 1, 1, "z", {1.0, 1.0}, data);
  double m2, k2, a2, b2;
  ASSERT_TRUE(beyond.GetModel().Components()[0].GetBayesPriorGaussParams(m2, k2, a2, b2).IsSuccessful());
  double m1, k1, a1, b1;
  ASSERT_TRUE(allNull.GetModel().Components()[0].GetBayesPriorGaussParams(m1, k1, a1, b1).IsSuccessful());
  EXPECT_EQ(m2, m1);  // both take every value

  // Not settling within the cycles is a failure for this model.
  DirGaussGammaMixForEmpiricalNullAlt slow(0.8, 1, 1, "z", {1.0, 1.0}, data);
  double fitness = 123.0;
  const ZqStatModelResult failed = slow.FitModel(fitness, 0.0, 0.0, 2);
  EXPECT_EQ(failed.GetFailureType(), F::InternalLogicFailure);
  ASSERT_EQ(VarimoTest::Comments(failed).size(), 1u);
  EXPECT_EQ(VarimoTest::Comments(failed)[0].rfind(
                "Convergence Failure!! Num cycles, fitness difference, var lower bound = 2 ", 0),
            0u);
  EXPECT_EQ(fitness, 123.0);
}

}  // namespace
}  // namespace Varimo
