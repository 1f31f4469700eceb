// The univariate laws: every law through one conformance fixture (density
// integrating to one, CDF monotone and inverted by the percentile, moments
// matched by seeded draws), values against scipy.stats, and the failures
// the frame promises.
#include <gtest/gtest.h>

#include <boost/math/quadrature/gauss_kronrod.hpp>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/platform/numarc/random_engine.h"
#include "varimo/ranvar/ran_var_setup.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
using VarimoTest::Context;
namespace F = ZqStatModelFailureType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kInf = std::numeric_limits<double>::infinity();

// A law by its name in the reference file and its parameters in the
// library's parametrisation.
ZqUniVarPDF MakeLaw(const std::string& name, const std::vector<double>& p, ZqStatModelResult& result) {
  if (name == "gauss") return ZqUnivariateGaussian("x", p[0], p[1], result);
  if (name == "studentst") return ZqUnivariateStudentsT("x", p[0], p[1], p[2], result);
  if (name == "gamma") return ZqGamma("x", p[0], p[1], result);
  if (name == "chisquare") return ZqChiSquare("x", p[0], result);
  if (name == "snedecorsf") return ZqSnedecorsF("x", p[0], p[1], result);
  if (name == "beta") return ZqBeta("x", p[0], p[1], result);
  if (name == "gumbel") return ZqGumbel("x", p[0], p[1], result);
  if (name == "gev") return ZqGeneralizedExtremeValue("x", p[0], p[1], p[2], result);
  ADD_FAILURE() << "unknown law " << name;
  return ZqUniVarNullPDF("x");
}

std::size_t NumParams(const std::string& name) {
  return name == "chisquare" ? 1 : name == "studentst" || name == "gev" ? 3 : 2;
}

// ------------------------------------------------------------ conformance

struct LawCase {
  std::string name;
  std::vector<double> params;
  double low;   // the support, for the integral
  double high;
  // How close the search brings CDF(percentile(q)) to q.
  double percentileTolerance;
};

std::ostream& operator<<(std::ostream& out, const LawCase& c) {
  out << c.name;
  for (const double p : c.params) out << " " << p;
  return out;
}

class UnivariateConformance : public ::testing::TestWithParam<LawCase> {};

TEST_P(UnivariateConformance, DensityCdfPercentileAndDraws) {
  const LawCase& c = GetParam();
  ZqStatModelResult result;
  ZqUniVarPDF law = MakeLaw(c.name, c.params, result);
  ASSERT_TRUE(result.IsSuccessful());
  ASSERT_TRUE(law.Valid());

  // The density integrates to one over the support.
  auto density = [&](double x) {
    ZqStatModelResult r;
    const double f = law.GetDensity(x, r, false);
    return std::isfinite(f) ? f : 0.0;
  };
  const double integral = boost::math::quadrature::gauss_kronrod<double, 61>::integrate(density, c.low, c.high, 15,
                                                                                      1e-11);
  EXPECT_NEAR(integral, 1.0, 1e-7);

  // The CDF climbs within [0, 1], and the percentile inverts it.
  double previous = 0.0;
  for (int k = 1; k < 100; ++k) {
    const double q = k / 100.0;
    const double x = law.GetPercentile(q, result);
    ASSERT_TRUE(result.IsSuccessful()) << q << "\n" << result.ReportStatResultDetails();
    const double cdf = law.GetCDF(x, result, true);
    ASSERT_TRUE(result.IsSuccessful()) << x;
    EXPECT_NEAR(cdf, q, c.percentileTolerance) << q;
    EXPECT_GE(cdf, previous) << q;
    EXPECT_LE(cdf, 1.0);
    previous = cdf;
  }

  // 10^5 seeded draws: their mean and variance within five standard errors
  // of the law's (the variance's error from the sample's fourth moment).
  constexpr int kDraws = 100000;
  Numarc::ZqRanNumEngine engine(20261124);
  std::vector<double> draws(kDraws);
  for (double& d : draws) {
    d = law.GetRandomOutcome(result, engine);
    ASSERT_TRUE(result.IsSuccessful());
  }
  double mean = 0.0;
  for (const double d : draws) mean += d;
  mean /= kDraws;
  double m2 = 0.0, m4 = 0.0;
  for (const double d : draws) {
    const double e = (d - mean) * (d - mean);
    m2 += e;
    m4 += e * e;
  }
  m2 /= kDraws;
  m4 /= kDraws;
  const double expectedMean = law.GetMean(result);
  ASSERT_TRUE(result.IsSuccessful());
  const double expectedVariance = law.GetVariance(result);
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_NEAR(mean, expectedMean, 5.0 * std::sqrt(expectedVariance / kDraws));
  EXPECT_NEAR(m2, expectedVariance, 5.0 * std::sqrt((m4 - m2 * m2) / kDraws));

  // The same seed gives the same draws, from a copy of the law too.
  Numarc::ZqRanNumEngine again(20261124);
  ZqUniVarPDF copy = law;
  for (int i = 0; i < 10; ++i) EXPECT_EQ(copy.GetRandomOutcome(result, again), draws[i]);
}

// Laws with a finite fourth moment, so that the sample variance settles.
INSTANTIATE_TEST_SUITE_P(
    Laws, UnivariateConformance,
    ::testing::Values(LawCase{"gauss", {1.5, 4.0}, -kInf, kInf, 1e-13},
                      LawCase{"studentst", {7.0, -2.0, 0.5}, -kInf, kInf, 5e-8},
                      LawCase{"gamma", {2.5, 0.5}, 0.0, kInf, 1e-13},
                      LawCase{"chisquare", {6.0}, 0.0, kInf, 1e-13},
                      LawCase{"snedecorsf", {5.0, 12.0}, 0.0, kInf, 1e-13},
                      LawCase{"beta", {2.0, 3.5}, 0.0, 1.0, 1e-13},
                      LawCase{"gumbel", {1.0, 2.0}, -kInf, kInf, 1e-13},
                      LawCase{"gev", {0.5, 1.5, 0.1}, 0.5 - 1.5 / 0.1, kInf, 1e-13},
                      LawCase{"gev", {0.0, 1.0, -0.2}, -kInf, 5.0, 1e-13}),
    [](const ::testing::TestParamInfo<LawCase>& info) { return info.param.name + std::to_string(info.index); });

// ------------------------------------------------------------ against scipy

TEST(UnivariateReference, DensityCdfAndPercentileAgreeWithScipy) {
  const auto lines = VarimoTest::ReadReferenceLines("pdf/univariate_refs.txt");
  ASSERT_GT(lines.size(), 400u);
  for (const std::vector<std::string>& line : lines) {
    const std::string& name = line[0];
    const std::size_t n = NumParams(name);
    const std::vector<double> params = VarimoTest::ToDoubles({line.begin(), line.begin() + 1 + n}, 1);
    const std::string& kind = line[1 + n];
    const double x = VarimoTest::ToDouble(line[2 + n]);
    const double expected = VarimoTest::ToDouble(line[3 + n]);
    SCOPED_TRACE(line[0] + " " + line[1] + " " + kind + " " + line[2 + n]);
    ZqStatModelResult result;
    const ZqUniVarPDF law = MakeLaw(name, params, result);
    ASSERT_TRUE(result.IsSuccessful());
    if (kind == "pdf" || kind == "cdf") {
      const double value = kind == "pdf" ? law.GetDensity(x, result, true) : law.GetCDF(x, result, true);
      ASSERT_TRUE(result.IsSuccessful());
      EXPECT_NEAR(value, expected, 1e-12 * std::fabs(expected));
    } else {
      const double value = law.GetPercentile(x, result);
      ASSERT_TRUE(result.IsSuccessful());
      // The search stops once the step is below (|x| + 1) tolX or the CDF
      // within tolY; the latter is a step of tolY / density in x.
      const double f = law.GetDensity(expected, result, true);
      const bool studentsT = name == "studentst";
      const double tolX = studentsT ? 5e-10 : 2.220446049250313e-14;
      const double tolY = studentsT ? 5e-8 : 2.220446049250313e-14;
      EXPECT_NEAR(value, expected, 4.0 * std::max((std::fabs(expected) + 1.0) * tolX, tolY / f));
    }
  }
}

// ------------------------------------------------------------ the frame's failures

TEST(UnivariateFailures, SetUpsRefuseBadParametersWithANullLaw) {
  ZqStatModelResult result;
  const ZqUniVarPDF flat = ZqUnivariateGaussian("height", 1.0, 0.0, result);
  EXPECT_EQ(result.GetFailureType(), F::SingularScaleOrCovariance);
  EXPECT_EQ(Context(result).front(), "ZqUniVarGaussRanVars::SetupRanVarVecs");
  EXPECT_EQ(flat.GetPDFType(), 1u);
  EXPECT_EQ(flat.GetVariableName(), "height");
  EXPECT_EQ(flat.GetMean(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::NullProbDistFunc);
  EXPECT_EQ(Context(result), std::vector<std::string>{"ZqUniVarNullPDFImpl::GetMean"});

  ZqChiSquare("c", -1.0, result);
  EXPECT_EQ(result.GetFailureType(), F::LowerBoundViolated);
  ZqUnivariateStudentsT("t", 0.0, 0.0, 1.0, result);
  EXPECT_EQ(result.GetFailureType(), F::SingularScaleOrCovariance);
  ZqGumbel("u", 0.0, -1.0, result);
  EXPECT_EQ(Comments(result), (std::vector<std::string>{"scale required to be positive: ", "argument value = -1"}));

  // A type without a class of its own (LogNormal) is a null law.
  ZqRanVarVec parameters, outcomes;
  ASSERT_TRUE(ZqLogNormalRanVars::SetupRanVarVecs(0.0, 1.0, parameters, outcomes).IsSuccessful());
  const ZqUniVarPDF logNormal(12, "l", parameters, outcomes);
  EXPECT_EQ(logNormal.GetImpl()->GetPDFType(), 1u);
  EXPECT_EQ(logNormal.GetDensity(1.0, result, false), kBad);
  EXPECT_EQ(result.GetFailureType(), F::NullProbDistFunc);

  // Parameters a caller built by hand are checked too: a negative or NaN
  // precision makes a law that is not valid.
  ASSERT_TRUE(ZqUniVarGaussRanVars::SetupRanVarVecs(0.0, 1.0, parameters, outcomes).IsSuccessful());
  for (const double precision : {-1.0, std::nan("")}) {
    ZqRanVarVec bad = parameters;
    bad[1].SetRanVarVal(precision, false);
    const ZqUniVarPDF invalid(2, "x", bad, outcomes);
    EXPECT_FALSE(invalid.Valid());
    EXPECT_EQ(invalid.GetCDF(0.0, result, false), kBad);
    EXPECT_EQ(result.GetFailureType(), F::InvalidProbDistFunc);
    EXPECT_EQ(Context(result), std::vector<std::string>{"ZqUniVarGaussImpl::GetCDF"});
    EXPECT_EQ(invalid.GetPercentile(0.5, result), kBad);
    EXPECT_EQ(result.GetFailureType(), F::InvalidProbDistFunc);
  }
  ZqRanVarVec missing(parameters.begin(), parameters.begin() + 1);
  EXPECT_FALSE(ZqUniVarPDF(2, "x", missing, outcomes).Valid());
}

TEST(UnivariateFailures, OutcomesOutsideTheSupportAndPercentileRange) {
  ZqStatModelResult result;
  const ZqUniVarPDF beta = ZqBeta("b", 2.0, 3.0, result);
  // Outside the support a checked CDF is 0 on either side.
  EXPECT_EQ(beta.GetCDF(2.0, result, true), 0.0);
  EXPECT_EQ(result.GetFailureType(), F::UpperBoundViolated);
  EXPECT_EQ(Context(result).back(), "ZqBetaImpl::GetCDF");
  EXPECT_EQ(beta.GetDensity(-0.5, result, true), 0.0);
  EXPECT_EQ(result.GetFailureType(), F::LowerBoundViolated);
  // Unchecked, the incomplete beta function takes 2 as it stands.
  beta.GetCDF(2.0, result, false);
  EXPECT_TRUE(result.IsSuccessful());

  const ZqUniVarPDF gamma = ZqGamma("g", 2.0, 1.0, result);
  EXPECT_EQ(gamma.GetDensity(0.0, result, true), 0.0);
  EXPECT_EQ(result.GetFailureType(), F::LowerBoundViolated);
  EXPECT_EQ(gamma.GetDensity(0.0, result, false), 0.0);  // exp(ln 0)
  const ZqUniVarPDF steep = ZqGamma("g", 0.5, 1.0, result);
  EXPECT_EQ(steep.GetDensity(0.0, result, false), kInf);

  for (const double p : {-0.1, std::nan(""), 1.5}) {
    EXPECT_EQ(gamma.GetPercentile(p, result), kBad);
    EXPECT_EQ(result.GetFailureType(), F::ArgumentOutOfRange);
  }
  EXPECT_EQ(Comments(result), std::vector<std::string>{"percentile must be between 0 and 1 Argument entered: 1.5"});
  // 0 and 1 pass the range test; the Gaussian's bracket never closes on
  // them, and the search gives up after its 100 steps.
  const ZqUniVarPDF normal = ZqUnivariateGaussian("n", 0.0, 1.0, result);
  EXPECT_EQ(normal.GetPercentile(0.0, result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::InternalLogicFailure);
  EXPECT_EQ(Context(result).front(), "GetLowerBoundOnInverseCDF");
  EXPECT_EQ(Comments(result), std::vector<std::string>{"Max Iters (100) exceeded "});
  // The closed forms answer the ends.
  const ZqUniVarPDF gumbel = ZqGumbel("u", 0.0, 1.0, result);
  EXPECT_EQ(gumbel.GetPercentile(0.0, result), -kInf);
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(gumbel.GetPercentile(1.0, result), kInf);
}

TEST(UnivariateFailures, UndefinedMoments) {
  ZqStatModelResult result;
  const ZqUniVarPDF cauchy = ZqUnivariateStudentsT("t", 1.0, 3.0, 1.0, result);
  EXPECT_EQ(cauchy.GetMean(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::MeanIsUndefined);
  EXPECT_TRUE(Comments(result).empty());
  EXPECT_EQ(cauchy.GetMode(result), 3.0);
  const ZqUniVarPDF t15 = ZqUnivariateStudentsT("t", 1.5, 3.0, 1.0, result);
  EXPECT_EQ(t15.GetMean(result), 3.0);
  const ZqUniVarPDF t2 = ZqUnivariateStudentsT("t", 2.0, 3.0, 1.0, result);
  EXPECT_EQ(t2.GetVariance(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::VarianceIsUndefined);

  // The Gamma's moments leave the result alone on success.
  const ZqUniVarPDF gamma = ZqGamma("g", 0.5, 2.0, result);
  ZqStatModelResult untouched = ZqMakeFailedResult(F::NoData, "caller");
  EXPECT_EQ(gamma.GetMode(untouched), 0.0);
  EXPECT_EQ(gamma.GetMean(untouched), 0.25);
  EXPECT_EQ(untouched.GetFailureType(), F::NoData);

  const ZqUniVarPDF beta = ZqBeta("b", 1.0, 3.0, result);
  EXPECT_EQ(beta.GetMode(result), kBad);
  EXPECT_EQ(result.GetFailureType(), F::ModeIsUndefined);
  const ZqUniVarPDF f = ZqSnedecorsF("f", 3.0, 4.0, result);
  EXPECT_EQ(f.GetMean(result), 2.0);
  EXPECT_EQ(f.GetVariance(result), kBad);
  const ZqUniVarPDF heavy = ZqGeneralizedExtremeValue("v", 0.0, 1.0, 0.6, result);
  EXPECT_EQ(heavy.GetVariance(result), kBad);
  // (Gamma(1 - shape) - 1) scale / shape + location.
  EXPECT_NEAR(heavy.GetMean(result), (std::tgamma(0.4) - 1.0) / 0.6, 1e-14);
}

// Its density, CDF and percentile at shape 0 are among the scipy references.
TEST(UnivariateFailures, GevMomentsAtShapeZeroAreGumbels) {
  ZqStatModelResult result;
  const ZqUniVarPDF gev = ZqGeneralizedExtremeValue("v", 1.0, 2.0, 0.0, result);
  const ZqUniVarPDF gumbel = ZqGumbel("u", 1.0, 2.0, result);
  EXPECT_EQ(gev.GetMean(result), gumbel.GetMean(result));
  EXPECT_EQ(gev.GetVariance(result), gumbel.GetVariance(result));
}

TEST(UnivariateFailures, PrintNamesTheLawTheVariableAndItsRandomVariables) {
  ZqStatModelResult result;
  const std::string text = ZqChiSquare("chi", 3.0, result).Print(5);
  EXPECT_EQ(text.rfind("PDF: Chi-Squared\n Variable name: chi\n%%%%%%%%%%%%%%%%%%%%%%%%%%%%%\nPdf Name: Chi-Squared\n",
                       0),
            0u);
  EXPECT_NE(text.find("Ran Var Name: Chi-Squared Degrees Of Freedom\n"), std::string::npos);
  EXPECT_NE(text.find("Random Var Values: 3 \n\n---------------------\n"), std::string::npos);
}

}  // namespace
}  // namespace Varimo
