// Binary regression of +1/-1 labels on p predictors by maximum likelihood,
// with a logistic (type 2) or a probit (any other type) link, fitted by the
// Newton optimiser of Minarc.
//
//   Varimo::ZqBinaryLinearRegression fit(p, n, 2);
//   fit.SetInputData(x, y);            // n rows of p, row-major; labels +1/-1
//   fit.SetNewtonParams(1e-10, 50);    // required: both default to 0
//   fit.MaximizeLogLikelihood();
//   fit.GetBetaSigma(beta, sigma);
//
// Every evaluation of the Hessian prints timing and the current point through
// Corvane's output sink (standard output by default), and the fit and Predict
// print their results there too.
// Nothing fails by report: a singular Hessian (separable labels, collinear
// predictors) gives infinite or NaN standard errors, and separable labels run
// the weights outward until the iteration limit. Input that does not fit the
// sizes (x not n p long, y not n long, p of 0 or above 100) is refused with a
// warning through Corvane::ZqThrow and leaves the fit as it was.
//
// Cost per Hessian evaluation: O(n p^2), done twice (see
// CalculateGradientHessian_v2).
#pragma once

#include <vector>

#include "varimo/latent/link_functions.h"
#include "varimo/platform/minarc/func.h"

namespace Varimo {

// The negative log likelihood of the weights, for the optimiser to minimise.
class ZqRegressionLogLikelihoodOpt : public virtual Minarc::ZqFunc2 {
 public:
  ZqRegressionLogLikelihoodOpt() = default;
  // Copies the data. Rows beyond those x and y both hold are not used.
  ZqRegressionLogLikelihoodOpt(unsigned int p, unsigned int n, unsigned int regressionType,
                               const std::vector<double>& x, const std::vector<int>& y);

  unsigned int NumVar() const override { return p_; }
  // -sum_i log_p(r, y_i, x_i.w).
  double operator()(const double* w) override;
  double operator()(const double* w, double* gradient) override;
  // Also writes "time old = ", " time new =" and the lines "w = ", "g = ",
  // "h = " to the output sink, comparing against CalculateGradientHessian_v2.
  double operator()(const double* w, double* gradient, double* hessian) override;

  // Not implemented: they report "This method has not been implemented yet."
  // through Corvane::ZqThrow and answer false (no components).
  bool CheckVariablesValidity(const double* w) override;
  bool IsRedundant(const double* w1, const double* w2, double tolerance) const override;
  Corvane::ZqIter<Minarc::ZqFComponent> GetFComponents(const double* w) override;

  // The gradient and the row-major p by p Hessian again, by matrix products:
  // a second computation to check the first.
  void CalculateGradientHessian_v2(const double* w, std::vector<double>& gradient, std::vector<double>& hessian);
  // The standard errors of the weights: the square roots of the diagonal of
  // the inverse Hessian at w.
  void CalculateScoreVariance(const double* w, std::vector<double>& sigma);

 private:
  // z_i = x_i.w for every row.
  std::vector<double> LinearPredictors(const double* w) const;
  double Value(const std::vector<double>& z) const;
  // The plain loops: gradient and Hessian from the z_i.
  void GradientHessian(const std::vector<double>& z, double* gradient, double* hessian) const;

  unsigned int p_ = 1;
  unsigned int n_ = 10;
  unsigned int regressionType_ = kZqLogisticRegressionType;
  std::vector<double> x_;
  std::vector<int> y_;
  // The rows evaluated: n, or fewer when x and y hold fewer.
  unsigned int rows_ = 0;
};

class ZqBinaryLinearRegression {
 public:
  static constexpr unsigned int kMaxPredictors = 100;

  // Logistic, p = 1, n = 10.
  ZqBinaryLinearRegression() = default;
  ZqBinaryLinearRegression(unsigned int p, unsigned int n, unsigned int regressionType)
      : regressionType_(regressionType), p_(p), n_(n) {}

  void SetInputData(const std::vector<double>& x, const std::vector<int>& y) {
    x_ = x;
    y_ = y;
  }
  void GetInputData(std::vector<double>& x, std::vector<int>& y) const {
    x = x_;
    y = y_;
  }
  void Get_p_n_reg_type(unsigned int& p, unsigned int& n, unsigned int& regressionType) const {
    p = p_;
    n = n_;
    regressionType = regressionType_;
  }
  void SetNewtonParams(double tolerance, unsigned int iterLimit) {
    newtonTolerance_ = tolerance;
    newtonIterLimit_ = iterLimit;
  }
  void GetNewtonParams(double& tolerance, unsigned int& iterLimit) const {
    tolerance = newtonTolerance_;
    iterLimit = newtonIterLimit_;
  }

  // Fits from the zero vector, appends the weights to beta (which is not
  // cleared: a second fit appends a second set), sets sigma, prints
  // "bestLogLikelihood = " and the weights with their errors. Returns the
  // best log likelihood, or the bad double 1.7976931348623157e308 for input
  // that does not fit the sizes.
  double MaximizeLogLikelihood();
  void GetBetaSigma(std::vector<double>& beta, std::vector<double>& sigma) const {
    beta = beta_;
    sigma = sigma_;
  }
  // Appends the fitted probability of each of numRows rows of xNew (p values
  // a row) to `probabilities`, using the first p weights, and prints each.
  // Nothing is appended, with a warning, without a fit or with xNew too short.
  void Predict(unsigned int numRows, const std::vector<double>& xNew, std::vector<double>& probabilities) const;

 private:
  unsigned int regressionType_ = kZqLogisticRegressionType;
  unsigned int p_ = 1;
  unsigned int n_ = 10;
  std::vector<double> x_;
  std::vector<int> y_;
  std::vector<double> beta_;
  std::vector<double> sigma_;
  double newtonTolerance_ = 0.0;
  unsigned int newtonIterLimit_ = 0;
};

}  // namespace Varimo
