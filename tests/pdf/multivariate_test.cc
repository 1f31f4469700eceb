// The multivariate laws with their marginals, the univariate mixtures and
// the empirical law of a sample: values against scipy.stats
// (tests/data/pdf/make_multivariate_refs.py), draws against moments, and
// the failures their headers promise.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/pdf/multivariate_pdfs.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/platform/numarc/random_engine.h"
#include "varimo/ranvar/ran_var_setup.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
using VarimoTest::Context;
namespace F = ZqStatModelFailureType;
using Strings = std::vector<std::string>;
constexpr double kBad = VarimoBadData::BadDouble;

// The laws of the generator script.
const std::vector<double> kMean{1.0, -2.0, 0.5};
const std::vector<double> kCov{2.0, 0.6, -0.3, 0.6, 1.5, 0.2, -0.3, 0.2, 0.8};
const Strings kNames{"a", "b", "c"};

std::multimap<std::string, std::vector<double>> References() {
  std::multimap<std::string, std::vector<double>> refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("pdf/multivariate_refs.txt")) {
    refs.emplace(line[0], VarimoTest::ToDoubles(line, 1));
  }
  return refs;
}

std::vector<double> Values(Corvane::ZqIter<const double> it) {
  std::vector<double> out;
  for (const double v : it) out.push_back(v);
  return out;
}

ZqMultiVarStudentsTImpl StudentsT(double dof) {
  ZqRanVarVec parameters, outcomes;
  EXPECT_TRUE(ZqMultiVarStudentsTRanVars::SetupRanVarVecs(dof, kMean, kCov, parameters, outcomes).IsSuccessful());
  return ZqMultiVarStudentsTImpl(kNames, parameters, outcomes);
}

TEST(Multivariate, DensitiesAndMarginalsAgreeWithScipy) {
  const auto refs = References();
  ZqStatModelResult result;
  const ZqMultiVarPDF gauss = ZqMultivariateGaussian(kNames, kMean, kCov, result);
  ASSERT_TRUE(result.IsSuccessful());
  ASSERT_TRUE(gauss.Valid());
  EXPECT_EQ(gauss.GetPDFType(), 3u);
  const ZqMultiVarStudentsTImpl t = StudentsT(5.0);
  ASSERT_TRUE(t.Valid());
  for (const auto& [key, v] : refs) {
    SCOPED_TRACE(key);
    if (key == "mvn_pdf") {
      EXPECT_NEAR(gauss.GetDensity({v[0], v[1], v[2]}, result, true), v[3], 1e-13 * v[3]);
      EXPECT_TRUE(result.IsSuccessful());
    }
    if (key == "mvt_pdf") EXPECT_NEAR(t.GetDensity({v[0], v[1], v[2]}, result, false), v[3], 1e-13 * v[3]);
  }
  const ZqUniVarPDF b = gauss.GetUnivariateMarginal("b", result);
  ASSERT_TRUE(result.IsSuccessful());
  const ZqMultiVarPDF ac = gauss.GetMultivariateMarginal({"a", "c"}, result);
  ASSERT_TRUE(result.IsSuccessful());
  for (const auto& [key, v] : refs) {
    if (key == "mvn_marginal_b") EXPECT_NEAR(b.GetDensity(v[0], result, true), v[1], 1e-13 * v[1]);
    if (key == "mvn_marginal_ac") EXPECT_NEAR(ac.GetDensity({v[0], v[1]}, result, true), v[2], 1e-13 * v[2]);
  }
  // At the mean the density is the normalising constant alone.
  EXPECT_NEAR(gauss.GetDensity(kMean, result, true), 0.047000097954721244, 1e-15);
  const std::vector<double> covariance = Values(gauss.GetCovariance(result));
  ASSERT_EQ(covariance.size(), 9u);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_NEAR(covariance[i], kCov[i], 1e-14);
}

TEST(Multivariate, DrawsFollowTheMeanAndCovariance) {
  ZqStatModelResult result;
  ZqMultiVarPDF gauss = ZqMultivariateGaussian(kNames, kMean, kCov, result);
  Numarc::ZqRanNumEngine engine(11);
  constexpr int kDraws = 50000;
  std::vector<double> sum(3, 0.0), cross(9, 0.0);
  std::vector<std::vector<double>> draws;
  for (int i = 0; i < kDraws; ++i) {
    draws.push_back(Values(gauss.GetRandomOutcome(result, engine)));
    ASSERT_EQ(draws.back().size(), 3u);
    for (int j = 0; j < 3; ++j) sum[j] += draws.back()[j];
  }
  for (int j = 0; j < 3; ++j) sum[j] /= kDraws;
  for (const auto& d : draws) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 3; ++k) cross[3 * j + k] += (d[j] - sum[j]) * (d[k] - sum[k]) / (kDraws - 1);
    }
  }
  for (int j = 0; j < 3; ++j) EXPECT_NEAR(sum[j], kMean[j], 5.0 * std::sqrt(kCov[4 * j] / kDraws));
  // The sample covariance's standard error is about sqrt((s_jj s_kk + s_jk^2) / n).
  for (int j = 0; j < 3; ++j) {
    for (int k = 0; k < 3; ++k) {
      const double se = std::sqrt((kCov[4 * j] * kCov[4 * k] + kCov[3 * j + k] * kCov[3 * j + k]) / kDraws);
      EXPECT_NEAR(cross[3 * j + k], kCov[3 * j + k], 5.0 * se) << j << k;
    }
  }
}

TEST(Multivariate, FailuresOfNamesMatricesAndOutcomes) {
  ZqStatModelResult result;
  const ZqMultiVarPDF gauss = ZqMultivariateGaussian({"a", "b"}, {0.0, 0.0}, {1.0, 0.5, 0.5, 1.0}, result);
  const ZqMultiVarPDF reversed = gauss.GetMultivariateMarginal({"b", "a"}, result);
  EXPECT_EQ(result.GetFailureType(), F::NamesOutOfOrder);
  EXPECT_EQ(Comments(result), Strings{"Query list is not increasing with respect to pdf variable names"});
  EXPECT_EQ(reversed.GetPDFType(), 1u);
  // A repeated name passes the order test; its block is singular.
  gauss.GetMultivariateMarginal({"a", "a"}, result);
  EXPECT_EQ(result.GetFailureType(), F::SingularMatrix);
  EXPECT_EQ(Context(result).back(), "ZqMultivariateGaussian");
  gauss.GetUnivariateMarginal("z", result);
  EXPECT_EQ(result.GetFailureType(), F::NameNotFound);
  EXPECT_EQ(Comments(result), Strings{"Variable Name z not found in list"});
  // A wrong length is refused by the outcome check.
  EXPECT_EQ(gauss.GetDensity({1.0, 2.0, 3.0}, result, true), kBad);
  EXPECT_EQ(result.GetFailureType(), F::WrongInputVectorSize);

  const ZqMultiVarPDF indefinite = ZqMultivariateGaussian({"a", "b"}, {0.0, 0.0}, {1.0, 2.0, 2.0, 1.0}, result);
  EXPECT_EQ(result.GetFailureType(), F::SingularMatrix);
  EXPECT_EQ(indefinite.GetPDFType(), 1u);
  EXPECT_EQ(indefinite.GetVariableNames(), (Strings{"a", "b"}));

  // The Student's t law by pdf type is the null law; built directly it
  // works, but its checked density looks for outcome 3 and fails.
  const ZqMultiVarPDF byType = ZqMultivariateStudentsT(kNames, 5.0, kMean, kCov, result);
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_TRUE(Values(byType.GetMean(result)).empty());
  EXPECT_EQ(result.GetFailureType(), F::NullProbDistFunc);
  const ZqMultiVarStudentsTImpl t = StudentsT(2.0);
  EXPECT_EQ(t.GetDensity(kMean, result, true), kBad);
  EXPECT_EQ(result.GetFailureType(), F::RanVarNotFound);
  EXPECT_TRUE(Values(t.GetCovariance(result)).empty());
  EXPECT_EQ(result.GetFailureType(), F::VarianceIsUndefined);
  EXPECT_EQ(Values(t.GetMean(result)), kMean);
  // Its univariate marginal passes the scale's diagonal as the precision.
  const ZqUniVarPDF ta = t.GetUnivariateMarginal("a", result);
  EXPECT_EQ(ta.GetVariance(result), kBad);  // 2 degrees of freedom
  // Scale 2 read as a precision: variance nu / ((nu - 2) 2).
  EXPECT_NEAR(StudentsT(5.0).GetUnivariateMarginal("a", result).GetVariance(result), 5.0 / (3.0 * 2.0), 1e-14);
}

// ------------------------------------------------------------ mixtures

TEST(Mixture, GaussianMixtureAgreesWithScipy) {
  ZqStatModelResult result;
  const ZqUniVarPDF mix = ZqUnivariateGaussMixture("x", {0.3, 0.7}, {-1.0, 2.0}, {0.25, 1.5}, result);
  ASSERT_TRUE(result.IsSuccessful());
  ASSERT_TRUE(mix.Valid());
  const ZqUniVarPDF tmix = ZqUnivariateStudentsTMixture("t", {0.4, 0.6}, {3.0, 8.0}, {0.0, 4.0}, {1.0, 0.5}, result);
  ASSERT_TRUE(result.IsSuccessful());
  for (const auto& [key, v] : References()) {
    SCOPED_TRACE(key);
    if (key == "mix_pdf") EXPECT_NEAR(mix.GetDensity(v[0], result, true), v[1], 1e-13 * v[1]);
    if (key == "mix_cdf") EXPECT_NEAR(mix.GetCDF(v[0], result, true), v[1], 1e-13);
    if (key == "mix_ppf") EXPECT_NEAR(mix.GetPercentile(v[0], result), v[1], 1e-8);
    if (key == "mix_mean") EXPECT_NEAR(mix.GetMean(result), v[0], 1e-14);
    if (key == "mix_variance") EXPECT_NEAR(mix.GetVariance(result), v[0], 1e-13);
    if (key == "tmix_pdf") EXPECT_NEAR(tmix.GetDensity(v[0], result, true), v[1], 1e-12 * v[1]);
    if (key == "tmix_cdf") EXPECT_NEAR(tmix.GetCDF(v[0], result, true), v[1], 1e-12);
  }
  // The 101-point scan lands within a step of the taller component's mode.
  const double mode = mix.GetMode(result);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_NEAR(mode, -1.0, (mix.GetPercentile(0.99, result) - mix.GetPercentile(0.01, result)) / 100.0);

  // Draws pick components by their probabilities.
  ZqUniVarPDF drawn = mix;
  Numarc::ZqRanNumEngine engine(3);
  int below = 0;
  constexpr int kDraws = 40000;
  for (int i = 0; i < kDraws; ++i) below += drawn.GetRandomOutcome(result, engine) < 0.5;
  const double expected = mix.GetCDF(0.5, result, true);
  EXPECT_NEAR(below / static_cast<double>(kDraws), expected, 5.0 * std::sqrt(expected * (1 - expected) / kDraws));
  EXPECT_NE(mix.Print(3).find("PDF: UniVariate Gaussian\n"), std::string::npos);
}

TEST(Mixture, OneComponentIsThatComponentAndBadListsFail) {
  ZqStatModelResult result;
  const ZqUniVarPDF one = ZqUnivariateGaussMixture("x", {1.0}, {3.0}, {2.0}, result);
  const ZqUniVarPDF plain = ZqUnivariateGaussian("x", 3.0, 2.0, result);
  EXPECT_EQ(one.GetMean(result), 3.0);
  EXPECT_EQ(one.GetVariance(result), 2.0);
  EXPECT_EQ(one.GetDensity(1.0, result, true), plain.GetDensity(1.0, result, true));

  ZqUnivariateMixture("x", {}, {}, {}, result);
  EXPECT_EQ(result.GetFailureType(), F::EmptyStatModel);
  EXPECT_EQ(Comments(result), Strings{"Empty pdfTypes vector"});
  ZqUnivariateMixture("x", {2, 2}, {0.5, 0.5}, {{0.0, 1.0}}, result);
  EXPECT_EQ(Comments(result), (Strings{" Num pdf types: 2", "Num param vecs: 1", "Num mix probs: 2"}));
  // A component that its set-up refuses fails the mixture.
  ZqUnivariateGaussMixture("x", {0.5, 0.5}, {0.0, 1.0}, {1.0, -1.0}, result);
  EXPECT_EQ(result.GetFailureType(), F::SingularScaleOrCovariance);
  // Probabilities must sum to one within count * epsilon.
  Corvane::ZqScopedThrowCapture capture;
  const ZqUniVarPDF off = ZqUnivariateGaussMixture("x", {0.5, 0.4}, {0.0, 1.0}, {1.0, 1.0}, result);
  EXPECT_FALSE(off.Valid());
  EXPECT_FALSE(result.IsSuccessful());
  ASSERT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning).size(), 1u);
  EXPECT_NE(capture.Texts(Corvane::ZqThrowLevel::Warning)[0].find("Sum of probabilities(error = -0.1) is out of range"),
            std::string::npos);
  EXPECT_EQ(off.GetMean(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::InvalidProbDistFunc);
}

// ------------------------------------------------------------ empirical law

TEST(RandomSample, EmpiricalLawOfDraws) {
  ZqStatModelResult result;
  ZqUniVarPDF normal = ZqUnivariateGaussian("height", 10.0, 4.0, result);
  Numarc::ZqRanNumEngine engine(5);
  const ZqUniVarPDF sample = ZqUniVarContValRandomSample(result, normal, engine, 5000);
  ASSERT_TRUE(result.IsSuccessful());
  ASSERT_TRUE(sample.Valid());
  EXPECT_EQ(sample.GetPDFType(), 21u);
  EXPECT_EQ(sample.GetVariableName(), "height");
  EXPECT_NEAR(sample.GetMean(result), 10.0, 5.0 * std::sqrt(4.0 / 5000));
  EXPECT_NEAR(sample.GetVariance(result), 4.0, 5.0 * 4.0 * std::sqrt(2.0 / 5000));
  // The CDF counts the sample, the percentile is its type 8 quantile.
  const double median = sample.GetPercentile(0.5, result);
  EXPECT_NEAR(sample.GetCDF(median, result, true), 0.5, 1.0 / 5000);
  EXPECT_NEAR(median, 10.0, 0.1);
  EXPECT_EQ(sample.GetDensity(10.0, result, true), kBad);
  EXPECT_EQ(result.GetFailureType(), F::DensityIsUndefined);
  EXPECT_EQ(sample.GetMode(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::ModeIsUndefined);
  EXPECT_EQ(sample.Print(0).rfind("PDF: UniVariate Continuous Valued Random Sample; Drawn from UniVariate Gaussian\n"
                                  " Variable name: height",
                                  0),
            0u);
  // Resampling gives values of the sample.
  ZqUniVarPDF resample = sample;
  for (int i = 0; i < 20; ++i) {
    const double v = resample.GetRandomOutcome(result, engine);
    EXPECT_EQ(sample.GetCDF(v, result, true) > 0.0, true);
  }

  // One value: a mean, and no variance.
  const ZqUniVarPDF single = ZqUniVarContValRandomSample(result, normal, engine, 1);
  EXPECT_TRUE(std::isfinite(single.GetMean(result)));
  EXPECT_EQ(single.GetVariance(result), kBad);
  // A law that cannot draw gives the null law, named after it.
  ZqUniVarPDF null = ZqUniVarNullPDF("nothing");
  const ZqUniVarPDF none = ZqUniVarContValRandomSample(result, null, engine, 10);
  EXPECT_EQ(result.GetFailureType(), F::NullProbDistFunc);
  EXPECT_EQ(Context(result).back(), "ZqUniVarContValRandomSample");
  EXPECT_EQ(none.GetPDFType(), 1u);
  EXPECT_EQ(none.GetVariableName(), "nothing");
}

}  // namespace
}  // namespace Varimo
