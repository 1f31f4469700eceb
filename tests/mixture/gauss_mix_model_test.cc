// Variational fits of one-dimensional Gaussian mixtures: the components
// found on seeded samples of known mixtures beside scikit-learn's fit of
// the same samples (tests/data/mixture/make_mixture_refs.py), the lower
// bound's climb, the printed progress, and the building blocks' failures.
// Empirical null and alternative models on samples with a known null
// proportion: the group probabilities and predictive laws they recover,
// the printed search, and the rules of their construction.
#include "varimo/mixture/gauss_mix_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/mixture/empirical_null.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
namespace F = ZqStatModelFailureType;
using Strings = std::vector<std::string>;

std::vector<double> Sample(const std::string& name) {
  std::vector<double> data;
  for (const auto& line : VarimoTest::ReadReferenceLines("mixture/" + name + "_data.txt")) {
    data.push_back(VarimoTest::ToDouble(line[0]));
  }
  return data;
}

struct Component {
  double weight, mean, sd;
};

std::vector<Component> SklearnComponents(const std::string& name) {
  std::vector<Component> out;
  for (const auto& line : VarimoTest::ReadReferenceLines("mixture/" + name + "_sklearn.txt")) {
    if (line[0] == "component") out.push_back({VarimoTest::ToDouble(line[1]), VarimoTest::ToDouble(line[2]),
                                               VarimoTest::ToDouble(line[3])});
  }
  return out;
}

// The Gauss-Gamma parameters (m, k, a, b) of a component's prior and
// posterior.
std::vector<double> Prior(const ZqOneDimGaussMixComponent& c) {
  std::vector<double> p(4);
  EXPECT_TRUE(c.GetBayesPriorGaussParams(p[0], p[1], p[2], p[3]).IsSuccessful());
  return p;
}

std::vector<double> Posterior(const ZqOneDimGaussMixComponent& c) {
  std::vector<double> p(4);
  EXPECT_TRUE(c.GetBayesPosteriorGaussParams(p[0], p[1], p[2], p[3]).IsSuccessful());
  return p;
}

// The components of a fitted model with an expected weight above 2%, by
// increasing mean; sd the square root of the expected variance b / (a - 1).
std::vector<Component> Found(const ZqOneDimGaussMixModel& model) {
  std::vector<Component> out;
  for (const ZqOneDimGaussMixComponent& c : model.Components()) {
    ZqStatModelResult result;
    const double w = GetExpectedComponentProbability(result, c.GetComponentProbParams());
    const std::vector<double> p = Posterior(c);
    if (w > 0.02) out.push_back({w, p[0], std::sqrt(p[3] / (p[2] - 1.0))});
  }
  std::sort(out.begin(), out.end(), [](const Component& x, const Component& y) { return x.mean < y.mean; });
  return out;
}

TEST(GaussMixFit, FindsTheComponentsScikitLearnFinds) {
  for (const std::string name : {"separated", "overlapping"}) {
    SCOPED_TRACE(name);
    const std::vector<double> data = Sample(name);
    ZqStatModelResult result;
    std::vector<double> probs;
    std::vector<ZqDirichletGaussGammaMixtureModel> models;
    VarimoTest::CaptureOutput quiet;
    const ZqDirichletGaussGammaMixtureModel best =
        FitDirichletGaussGammaMixtureModel(result, probs, models, 1, 5, "x", 1.0, data);
    ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
    ASSERT_EQ(models.size(), 5u);
    ASSERT_EQ(probs.size(), 5u);
    double total = 0.0;
    for (const double p : probs) total += p;
    EXPECT_NEAR(total, 1.0, 1e-12);

    const std::vector<Component> ours = Found(best.GetModel());
    const std::vector<Component> theirs = SklearnComponents(name);
    ASSERT_EQ(ours.size(), theirs.size());
    for (std::size_t k = 0; k < ours.size(); ++k) {
      EXPECT_NEAR(ours[k].weight, theirs[k].weight, 0.01) << k;
      EXPECT_NEAR(ours[k].mean, theirs[k].mean, 0.05) << k;
      // The spreads differ more: the priors on the precisions are not alike
      // (scikit-learn's one prior for all, ours from each component's slice).
      EXPECT_NEAR(ours[k].sd, theirs[k].sd, 0.08) << k;
    }
    // The predictive law is a proper law over the data.
    const ZqUniVarPDF predictive = best.GetPosteriorPredictiveDist(result);
    ASSERT_TRUE(result.IsSuccessful());
    EXPECT_EQ(predictive.GetPDFType(), 25u);
    double mean = 0.0;
    for (const double v : data) mean += v / static_cast<double>(data.size());
    EXPECT_NEAR(predictive.GetMean(result), mean, 0.02);
  }
}

TEST(GaussMixFit, LowerBoundNeverDecreases) {
  const std::vector<double> data = Sample("separated");
  for (const std::size_t k : {2u, 3u, 5u}) {
    ZqDirichletGaussGammaMixtureModel start(k, "x", 1.0, data);
    ZqOneDimGaussMixModel model = start.GetModel();
    double previous = -std::numeric_limits<double>::infinity();
    for (int cycle = 0; cycle < 200; ++cycle) {
      ASSERT_TRUE(model.DoOneEMCycle().IsSuccessful());
      ZqStatModelResult result;
      const double bound = model.GetModelFitness(result);
      ASSERT_TRUE(result.IsSuccessful());
      // Rounding only: the values are near -4e3.
      EXPECT_GE(bound, previous - 1e-9) << "K " << k << " cycle " << cycle;
      previous = bound;
    }
  }
}

TEST(GaussMixFit, ProgressLinesWarningsAndTies) {
  const std::vector<double> data{-1.2, -0.4, 0.1, 0.3, 0.9, 1.4, 2.0, 2.2};
  ZqStatModelResult result;
  std::vector<double> probs;
  std::vector<ZqDirichletGaussGammaMixtureModel> models;
  VarimoTest::CaptureOutput capture;
  const ZqDirichletGaussGammaMixtureModel best =
      FitDirichletGaussGammaMixtureModel(result, probs, models, 1, 1, "x", 1.0, data);
  const std::vector<std::string> lines = capture.Lines();
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_EQ(probs, std::vector<double>{1.0});
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].rfind("Num cycles, fitness difference, paramDiff, var lower bound = ", 0), 0u) << lines[0];
  EXPECT_EQ(lines[1].rfind("NumComp, OptimalFitness = 1 ", 0), 0u) << lines[1];
  EXPECT_NE(lines[1].find(" Fitting time = "), std::string::npos);
  // The fitness printed is the one returned: the bound plus ln 1!.
  double fitness = 0.0;
  ZqDirichletGaussGammaMixtureModel again(1, "x", 1.0, data);
  VarimoTest::CaptureOutput quiet;
  ASSERT_TRUE(again.FitModel(fitness, 0.0005, 0.0005, 50000).IsSuccessful());
  std::ostringstream shown;
  shown << "NumComp, OptimalFitness = 1 " << fitness << " ";
  EXPECT_EQ(lines[1].rfind(shown.str(), 0), 0u);

  // Running out of cycles warns and still succeeds.
  ZqDirichletGaussGammaMixtureModel slow(3, "x", 1.0, Sample("overlapping"));
  Corvane::ZqScopedThrowCapture warnings;
  VarimoTest::CaptureOutput out;
  EXPECT_TRUE(slow.FitModel(fitness, 0.0, 0.0, 3).IsSuccessful());
  EXPECT_EQ(out.Text().rfind("Num cycles, fitness difference, paramDiff, var lower bound = 3 ", 0), 0u);
  EXPECT_EQ(warnings.Texts(Corvane::ZqThrowLevel::Warning), Strings{"NumCycles exceeded"});

  // No K to try: nothing fitted, a default model back.
  const ZqDirichletGaussGammaMixtureModel none =
      FitDirichletGaussGammaMixtureModel(result, probs, models, 3, 2, "x", 1.0, data);
  EXPECT_TRUE(models.empty() && probs.empty());
  EXPECT_FALSE(none.Valid());
}

TEST(GaussMixFit, SlicesStartTheComponentsAndBadSamplesFail) {
  // Four components over two points: slices of one point and empty ones.
  const ZqDirichletGaussGammaMixtureModel sparse(4, "x", 1.0, {2.0, 1.0});
  const double expectedMeans[4] = {1.0, 0.0, 2.0, 0.0};
  for (std::size_t k = 0; k < 4; ++k) {
    const std::vector<double> prior = Prior(sparse.GetModel().Components()[k]);
    EXPECT_EQ(prior[0], expectedMeans[k]) << k;
    EXPECT_EQ(prior[3], 1.0) << k;  // scale 1: beta = 1 / precision = 1
  }
  // All points equal: scale 0, an infinite precision and beta 0; the bound
  // is then not a number and the fit ends at once with a failure.
  ZqDirichletGaussGammaMixtureModel flat(1, "x", 1.0, std::vector<double>(20, 3.0));
  EXPECT_EQ(Prior(flat.GetModel().Components()[0])[3], 0.0);
  double fitness = 0.0;
  VarimoTest::CaptureOutput quiet;
  const ZqStatModelResult result = flat.FitModel(fitness, 0.0005, 0.0005, 50000);
  EXPECT_EQ(result.GetFailureType(), F::InternalLogicFailure);
  ZqDirichletGaussGammaMixtureModel withNaN(2, "x", 1.0, {1.0, std::nan(""), 2.0, 3.0});
  EXPECT_FALSE(withNaN.FitModel(fitness, 0.0005, 0.0005, 50000).IsSuccessful());
  // No components at all is no model.
  ZqStatModelResult count;
  EXPECT_EQ(ZqDirichletGaussGammaMixtureModel(0, "x", 1.0, {1.0}).GetNumComponents(count),
            std::numeric_limits<std::size_t>::max());
  EXPECT_EQ(count.GetFailureType(), F::ObjectNotValid);
}

// ------------------------------------------------------------ building blocks

TEST(GaussMixParts, ParametersAndComponents) {
  const ZqGaussMixParam mismatched(4, "p", Strings{"a", "b"}, std::vector<double>{1.0});
  EXPECT_FALSE(mismatched.Valid());
  ZqStatModelResult result;
  EXPECT_EQ(mismatched.GetInitialOrPriorParamVal(result, 0), VarimoBadData::BadDouble);
  EXPECT_EQ(result.GetFailureType(), F::ObjectNotValid);
  EXPECT_EQ(mismatched.Print(), "Not a Valid Object!!\n");
  const ZqGaussMixParam grouped(4, "g", Strings{"v", "s"}, std::vector<std::vector<double>>{{1.0, 2.0}, {3.0}});
  grouped.GetCurrentOrPosteriorParamVal(result, 0);
  EXPECT_EQ(result.GetFailureType(), F::MismatchBetweenPrivateVecSizes);
  EXPECT_EQ(grouped.GetCurrentOrPosteriorParamVal(result, 1), 3.0);
  grouped.GetCurrentOrPosteriorParamVal(result, 2);
  EXPECT_EQ(result.GetFailureType(), F::ArgumentOutOfRange);

  // A fixed probability refuses a responsibility of all n points.
  ZqGaussMixParam fixed(1, "f", Strings{"p"}, std::vector<double>{0.5});
  EXPECT_EQ(UpdateComponentProbParams(4, fixed, 4.0).GetFailureType(), F::ArgumentOutOfRange);
  ASSERT_TRUE(UpdateComponentProbParams(4, fixed, 1.0).IsSuccessful());
  EXPECT_EQ(GetExpectedComponentProbability(result, fixed), 0.25);
  // A Dirichlet coefficient adds the responsibility; the sum adds n.
  ZqGaussMixParam dirichlet(2, "d", Strings{"Dirichlet Coeff", "Sum Of Dirichlet Coeffs"},
                            std::vector<double>{0.5, 1.0});
  ASSERT_TRUE(UpdateComponentProbParams(10, dirichlet, 3.0).IsSuccessful());
  EXPECT_EQ(GetExpectedComponentProbability(result, dirichlet), 3.5 / 11.0);
  // digamma(3.5) - digamma(11), from their series: -1.103... + ...
  EXPECT_NEAR(GetExpectedLogComponentProb(result, dirichlet), 1.1031566406452432 - 2.3517525890667211, 1e-14);

  // A component that holds no point keeps its prior after the update.
  const ZqGaussMixParam gauss(4, "Bayes One Dim Gauss-Gamma Params", Strings{"m", "k", "a", "b"},
                              std::vector<double>{1.0, 2.0, 3.0, 4.0});
  ZqOneDimGaussMixComponent empty("c", dirichlet, gauss);
  const std::vector<double> data{0.0, 1.0, 2.0};
  ASSERT_TRUE(empty.EStepUpdateLogRelativeResponsibility(data).IsSuccessful());
  for (std::size_t i = 0; i < 3; ++i) empty.EStepFillResponsibilityAndLogResp(i, 0.0, -1e300);
  ASSERT_TRUE(empty.MStepUpdateParams(data).IsSuccessful());
  EXPECT_EQ(Posterior(empty), (std::vector<double>{1.0, 2.0, 3.0, 4.0}));
  EXPECT_EQ(empty.GetMeanWithResponsibilities(), 0.0);
  EXPECT_EQ(empty.EStepGetLogRelativeResponsibility(3), std::numeric_limits<double>::lowest());
  EXPECT_EQ(Comments(empty.CheckSizeResponsibilityVec(5)), Strings{"Size logResponsibility = 3. Desired size = 5"});
  // Fixed mixing probabilities add nothing to the fitness.
  const ZqOneDimGaussMixComponent fixedComponent("c", fixed, gauss);
  EXPECT_EQ(fixedComponent.GetComponentOfModelFitness(result), 0.0);
  EXPECT_TRUE(result.IsSuccessful());
}

TEST(GaussMixParts, MultiDimComponentResponsibilityAndMoments) {
  // Two dimensions: mean 0, k 1, nu 3, scale and its root the identity, a
  // fixed probability of one half.
  const ZqGaussMixParam prob(1, "f", Strings{"p"}, std::vector<double>{0.5});
  const ZqGaussMixParam gauss(4, "w", Strings{"mean", "k", "nu", "scale", "root"},
                              std::vector<std::vector<double>>{{0.0, 0.0}, {1.0}, {3.0}, {1, 0, 0, 1}, {1, 0, 0, 1}});
  ZqMultiDimGaussMixComponent component({"u", "v"}, prob, gauss);
  ZqStatModelResult result;
  // digamma(1.5) + digamma(1) = 2 - 2 gamma - 2 ln 2 (closed forms), and the
  // identity's log determinant is 0.
  const double eulerGamma = 0.5772156649015329;
  const double logDet = 2.0 - 2.0 * eulerGamma - 2.0 * std::log(2.0);
  EXPECT_NEAR(component.GetExpectedLogDetGaussPrecision(result), logDet, 1e-14);
  const std::vector<std::vector<double>> data{{1.0, 2.0}, {0.0, 0.0}};
  ASSERT_TRUE(component.EStepUpdateLogRelativeResponsibility(data).IsSuccessful());
  // (L - d ln 2pi - d / k - nu (x - m)' W (x - m)) / 2 + ln p.
  const double logTwoPi = std::log(2.0 * 3.141592653589793);
  EXPECT_NEAR(component.EStepGetLogRelativeResponsibility(0), (logDet - 2 * logTwoPi - 2.0 - 15.0) * 0.5 + std::log(0.5),
              1e-13);
  EXPECT_NEAR(component.EStepGetLogRelativeResponsibility(1), (logDet - 2 * logTwoPi - 2.0) * 0.5 + std::log(0.5),
              1e-13);
  component.EStepFillResponsibilityAndLogResp(0, 0.25, std::log(0.25));
  component.EStepFillResponsibilityAndLogResp(1, 0.75, std::log(0.75));
  ASSERT_TRUE(component.GetSampleMoments(data).IsSuccessful());
  EXPECT_EQ(component.GetSumResponsibilities(), 1.0);
  EXPECT_EQ(component.GetMeanWithResponsibilities(), (std::vector<double>{0.25, 0.5}));
  // Weighted covariance over Nk: 0.25 * 0.75 * (1, 2)(1, 2)'.
  const std::vector<double> expected{0.1875, 0.375, 0.375, 0.75};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(component.GetCovarianceWithResponsibilities()[i], expected[i], 1e-15);
  EXPECT_EQ(component.GetSampleMoments({{1.0, 2.0, 3.0}, {0.0, 0.0}}).GetFailureType(), F::WrongInputVectorSize);
}

// ------------------------------------------------------------ empirical null

// 80% null draws from N(0, 1), 20% from N(4, 1), seeded.
std::vector<double> NullAndSignal(std::size_t n) {
  Numarc::ZqRanNumEngine engine(2026);
  const Numarc::ZqUniformDoubleRNG pick(0.0, 1.0);
  const Numarc::ZqGaussianRNG null(0.0, 1.0), signal(4.0, 1.0);
  std::vector<double> data;
  for (std::size_t i = 0; i < n; ++i) data.push_back(pick(engine) < 0.8 ? null(engine) : signal(engine));
  return data;
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
  const std::vector<std::string> lines = capture.Lines();
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
  const std::vector<std::string> lines = capture.Lines();
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
  const std::vector<double> alternative = Prior(allNull.GetModel().Components()[1]);
  EXPECT_EQ(alternative[0], 0.0);
  EXPECT_EQ(alternative[3], 1.0);
  const DirGaussGammaMixForEmpiricalNullAlt beyond(1.5, 1, 1, "z", {1.0, 1.0}, data);
  // Both take every value.
  EXPECT_EQ(Prior(beyond.GetModel().Components()[0])[0], Prior(allNull.GetModel().Components()[0])[0]);

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
