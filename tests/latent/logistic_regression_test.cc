// Binary regression with logistic and probit links. The fits are checked
// against tests/data/latent/make_binary_regression_refs.py: scikit-learn's
// unpenalised LogisticRegression for the logit, a scipy.optimize fit of the
// probit likelihood, and scipy.stats.norm for the link functions, all on the
// breast-cancer table bundled with scikit-learn.
#include "varimo/latent/logistic_regression.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Corvane::ZqThrowLevel;
using VarimoTest::WithinRelative;

struct Reference {
  std::vector<double> x;
  std::vector<int> y;
  std::map<std::string, std::vector<double>> values;
  std::vector<std::vector<double>> links;
};

const Reference& Ref() {
  static const Reference ref = [] {
    Reference r;
    for (const auto& line : VarimoTest::ReadReferenceLines("latent/binary_regression_refs.txt")) {
      if (line[0] == "x") {
        const std::vector<double> row = VarimoTest::ToDoubles(line, 2);
        r.x.insert(r.x.end(), row.begin(), row.end());
      } else if (line[0] == "y") {
        r.y.push_back(std::stoi(line[2]));
      } else if (line[0] == "link") {
        r.links.push_back(VarimoTest::ToDoubles(line, 1));
      } else {
        r.values[line[0]] = VarimoTest::ToDoubles(line, 1);
      }
    }
    return r;
  }();
  return ref;
}

// Fits quietly: the Hessian evaluations write to standard output.
double Fit(ZqBinaryLinearRegression& fit, std::string* out = nullptr) {
  VarimoTest::CaptureOutput capture;
  const double loglik = fit.MaximizeLogLikelihood();
  const std::string text = capture.Text();
  if (out != nullptr) *out = text;
  return loglik;
}

TEST(LinkFunctions, NormalDensityAndDistributionMatchScipy) {
  ASSERT_EQ(Ref().links.size(), 9u);
  for (const std::vector<double>& link : Ref().links) {
    // The density uses sqrt(2 pi) to 12 digits only.
    EXPECT_TRUE(WithinRelative(Norm(link[0]), link[1], 1e-11)) << link[0];
    // The distribution function comes from erf + 1: absolute accuracy.
    EXPECT_NEAR(Phi(link[0]), link[2], 1e-15) << link[0];
    EXPECT_EQ(probit_func(link[0]), Phi(link[0]));
    EXPECT_EQ(reg_func(1, link[0]), Phi(link[0]));
  }
  EXPECT_EQ(Norm(1.0, 2.0, 5.0), Norm(2.0) / 2.0);
  EXPECT_EQ(reg_func(2, 0.0), 0.5);
  EXPECT_EQ(logistic_func(std::log(3.0)), 0.75);
}

// V is the derivative of log_p in z and W minus the derivative of V, for
// both links and both labels: checked by central differences.
TEST(LinkFunctions, DerivativesMatchFiniteDifferencesAndTheProbitTailIsLogOfZero) {
  const double h = 1e-5;
  for (unsigned int r : {2u, 0u}) {
    for (int y : {1, -1}) {
      for (double z : {-2.0, -0.4, 0.0, 0.7, 1.9}) {
        const double dlogp = (log_p(r, y, z + h) - log_p(r, y, z - h)) / (2 * h);
        EXPECT_NEAR(V(r, y, z), dlogp, 1e-8) << r << " " << y << " " << z;
        EXPECT_EQ(deriv_log_p(r, y, z), V(r, y, z));
        const double dv = (V(r, y, z + h) - V(r, y, z - h)) / (2 * h);
        EXPECT_NEAR(W(r, y, z), -dv, 1e-8) << r << " " << y << " " << z;
        EXPECT_EQ(second_deriv_log_p(r, y, z), -W(r, y, z));
        // The derivatives of the log link are those of log_p for y = +1.
        const double dlogf = (std::log(reg_func(r, z + h)) - std::log(reg_func(r, z - h))) / (2 * h);
        EXPECT_NEAR(deriv_log_reg_func(r, z), dlogf, 1e-8);
        const double d2 = (deriv_log_reg_func(r, z + h) - deriv_log_reg_func(r, z - h)) / (2 * h);
        EXPECT_NEAR(second_deriv_log_reg_func(r, z), d2, 1e-8);
      }
    }
  }
  EXPECT_EQ(log_p(1, 1, -40.0), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(log_p(1, -1, 40.0), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isfinite(log_p(2, 1, -40.0)));
}

// Fits the breast-cancer table with link `type` and checks it against the
// references named by `prefix`; given the link as a function, checks the
// predicted probabilities of the first two rows too.
void ExpectFit(unsigned int type, const std::string& prefix, double betaTol, double sigmaTol,
               double (*link)(double) = nullptr) {
  const Reference& ref = Ref();
  ASSERT_EQ(ref.y.size(), 569u);
  ZqBinaryLinearRegression fit(4, 569, type);
  fit.SetInputData(ref.x, ref.y);
  fit.SetNewtonParams(1e-12, 50);
  const double loglik = Fit(fit);
  std::vector<double> beta, sigma;
  fit.GetBetaSigma(beta, sigma);
  ASSERT_EQ(beta.size(), 4u);
  ASSERT_EQ(sigma.size(), 4u);
  const std::vector<double>& b = ref.values.at(prefix + "_beta");
  for (std::size_t j = 0; j < 4; ++j) {
    EXPECT_TRUE(WithinRelative(beta[j], b[j], betaTol)) << j;
    EXPECT_TRUE(WithinRelative(sigma[j], ref.values.at(prefix + "_sigma")[j], sigmaTol)) << j;
  }
  EXPECT_TRUE(WithinRelative(loglik, ref.values.at(prefix + "_loglik")[0], 1e-10));
  if (link == nullptr) return;
  std::vector<double> probabilities;
  VarimoTest::CaptureOutput quiet;  // Predict prints its weights
  fit.Predict(2, std::vector<double>(ref.x.begin(), ref.x.begin() + 8), probabilities);
  ASSERT_EQ(probabilities.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    double z = 0.0;
    for (std::size_t j = 0; j < 4; ++j) z += ref.x[i * 4 + j] * b[j];
    EXPECT_TRUE(WithinRelative(probabilities[i], link(z), betaTol));
  }
}

TEST(BinaryLinearRegression, LogitMatchesScikitLearn) {
  ExpectFit(2, "logit", 1e-7, 1e-7, [](double z) { return 1.0 / (1.0 + std::exp(-z)); });
}

// The probit standard errors come from a finite-difference Hessian.
TEST(BinaryLinearRegression, ProbitMatchesScipyFit) { ExpectFit(7, "probit", 1e-6, 1e-5); }

// The default fit (one predictor, ten records, the logit link, no Newton
// step): the start is the answer, beta 0, log likelihood 10 log(1/2), and
// sigma from the Hessian sum 0.25 x^2 = 2.5 at zero.
TEST(BinaryLinearRegression, ZeroIterationLimitKeepsStartAndPrints) {
  ZqBinaryLinearRegression fit;
  unsigned int p = 0, n = 0, type = 0, limit = 9;
  double tolerance = 1.0;
  fit.Get_p_n_reg_type(p, n, type);
  fit.GetNewtonParams(tolerance, limit);
  EXPECT_EQ((std::vector<double>{1.0 * p, 1.0 * n, 1.0 * type, tolerance, 1.0 * limit}),
            (std::vector<double>{1, 10, 2, 0, 0}));
  fit.SetInputData(std::vector<double>(10, 1.0), {1, 1, -1, 1, -1, -1, 1, 1, 1, -1});
  std::string out;
  const double loglik = Fit(fit, &out);
  EXPECT_TRUE(WithinRelative(loglik, 10.0 * std::log(0.5), 1e-15));
  EXPECT_EQ(out, "bestLogLikelihood = -6.93147\n{w opt, sigma opt} = {0, 0.632456}, \n");
  std::vector<double> beta, sigma;
  fit.GetBetaSigma(beta, sigma);
  EXPECT_EQ(beta, (std::vector<double>{0.0}));
  EXPECT_TRUE(WithinRelative(sigma.at(0), std::sqrt(0.4), 1e-15));

  // A second fit appends a second set of weights.
  Fit(fit);
  fit.GetBetaSigma(beta, sigma);
  EXPECT_EQ(beta.size(), 2u);

  std::vector<double> probabilities{0.25};
  VarimoTest::CaptureOutput capture;
  fit.Predict(2, {3.0, -1.0}, probabilities);
  EXPECT_EQ(capture.Text(), "_p = 1\nbeta= 0 0\ni, f_i = 0, 0.5\ni, f_i = 1, 0.5\n");
  EXPECT_EQ(probabilities, (std::vector<double>{0.25, 0.5, 0.5}));
}

// Labels split by the sign of t: no finite maximum. The weights run outward
// until the iteration limit and the log likelihood approaches 0.
TEST(BinaryLinearRegression, SeparableOrSingleClassLabelsStopAtTheLimit) {
  std::vector<double> x;
  std::vector<int> y;
  for (int i = -5; i <= 5; ++i) {
    if (i == 0) continue;
    x.push_back(1.0);
    x.push_back(i);
    y.push_back(i > 0 ? 1 : -1);
  }
  double previous = 0.0;
  for (unsigned int limit : {5u, 20u}) {
    ZqBinaryLinearRegression fit(2, 10, 2);
    fit.SetInputData(x, y);
    fit.SetNewtonParams(0.0, limit);
    const double loglik = Fit(fit);
    std::vector<double> beta, sigma;
    fit.GetBetaSigma(beta, sigma);
    EXPECT_GT(beta.at(1), previous);
    previous = beta.at(1);
    EXPECT_LT(loglik, 0.0);
    if (limit == 20u) {
      EXPECT_GT(loglik, -1e-3);
    }
  }
  // A single class has no finite maximum either.
  ZqBinaryLinearRegression single(1, 6, 1);
  single.SetInputData(std::vector<double>(6, 1.0), std::vector<int>(6, 1));
  single.SetNewtonParams(0.0, 30);
  const double loglik = Fit(single);
  EXPECT_LT(loglik, 0.0);
  EXPECT_GT(loglik, -1e-3);
}

// A duplicated column leaves the likelihood's maximum where it was but makes
// the Hessian singular: the standard errors of the pair are not usable.
TEST(BinaryLinearRegression, CollinearPredictorsKeepTheMaximum) {
  const Reference& ref = Ref();
  std::vector<double> x;
  for (std::size_t i = 0; i < ref.y.size(); ++i) {
    x.insert(x.end(), ref.x.begin() + static_cast<long>(i * 4), ref.x.begin() + static_cast<long>(i * 4 + 4));
    x.push_back(ref.x[i * 4 + 1]);
  }
  ZqBinaryLinearRegression fit(5, 569, 2);
  fit.SetInputData(x, ref.y);
  fit.SetNewtonParams(1e-12, 50);
  const double loglik = Fit(fit);
  EXPECT_TRUE(WithinRelative(loglik, ref.values.at("logit_loglik")[0], 1e-8));
  std::vector<double> beta, sigma;
  fit.GetBetaSigma(beta, sigma);
  EXPECT_TRUE(WithinRelative(beta.at(1) + beta.at(4), ref.values.at("logit_beta")[1], 1e-6));
  EXPECT_FALSE(std::isfinite(sigma.at(1)) && sigma.at(1) < 1e3) << sigma.at(1);
}

TEST(BinaryLinearRegression, InputThatDoesNotFitIsRefused) {
  Corvane::ZqScopedThrowCapture capture;
  ZqBinaryLinearRegression tooMany(101, 1, 2);
  tooMany.SetInputData(std::vector<double>(101, 1.0), {1});
  EXPECT_EQ(Fit(tooMany), VarimoBadData::BadDouble);
  ZqBinaryLinearRegression short_(2, 3, 2);
  short_.SetInputData({1.0, 2.0, 3.0}, {1, -1, 1});
  EXPECT_EQ(Fit(short_), VarimoBadData::BadDouble);
  std::vector<double> beta, sigma, probabilities;
  short_.GetBetaSigma(beta, sigma);
  EXPECT_TRUE(beta.empty());
  short_.Predict(1, {1.0, 2.0}, probabilities);  // no fit yet
  EXPECT_TRUE(probabilities.empty());
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning).size(), 3u);
}

TEST(RegressionLogLikelihoodOpt, HessianCallPrintsAndAgreesWithSecondComputation) {
  const std::vector<double> x{1.0, 0.5, 1.0, -2.0, 1.0, 1.5};
  const std::vector<int> y{1, -1, 1};
  for (unsigned int type : {2u, 1u}) {
    ZqRegressionLogLikelihoodOpt f(2, 3, type, x, y);
    EXPECT_EQ(f.NumVar(), 2u);
    const double w[2] = {0.25, -0.5};
    double g[2], h[4];
    VarimoTest::CaptureOutput capture;
    const double value = f(w, g, h);
    const std::string text = capture.Text();
    EXPECT_EQ(text.rfind("time old = ", 0), 0u);
    EXPECT_NE(text.find(" time new ="), std::string::npos);
    EXPECT_NE(text.find("\nw = 0.25 -0.5\ng = "), std::string::npos);
    EXPECT_NE(text.find("\nh = "), std::string::npos);
    double expected = 0.0;
    for (int i = 0; i < 3; ++i) expected -= log_p(type, y[i], x[2 * i] * w[0] + x[2 * i + 1] * w[1]);
    EXPECT_EQ(value, expected);
    EXPECT_EQ(f(w), expected);
    std::vector<double> g2, h2;
    f.CalculateGradientHessian_v2(w, g2, h2);
    for (int k = 0; k < 2; ++k) EXPECT_TRUE(WithinRelative(g[k], g2[k], 1e-14));
    for (int k = 0; k < 4; ++k) EXPECT_TRUE(WithinRelative(h[k], h2[k], 1e-14));
    double g1[2];
    EXPECT_EQ(f(w, g1), expected);
    EXPECT_EQ(g1[0], g[0]);
  }
}

TEST(RegressionLogLikelihoodOpt, UnimplementedMethodsOnlyReport) {
  ZqRegressionLogLikelihoodOpt f;
  EXPECT_EQ(f.NumVar(), 1u);
  const double w[1] = {0.0};
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_FALSE(f.CheckVariablesValidity(w));
  EXPECT_FALSE(f.IsRedundant(w, w, 0.1));
  EXPECT_FALSE(f.GetFComponents(w).IsValid());
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            std::vector<std::string>(3, "This method has not been implemented yet."));
  // No data: the value of an empty sum, never a read past the end.
  EXPECT_EQ(f(w), 0.0);
}

}  // namespace
}  // namespace Varimo
