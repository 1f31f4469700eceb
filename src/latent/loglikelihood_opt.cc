#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <ostream>
#include <sstream>

#include "varimo/latent/logistic_regression.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

namespace {

constexpr const char* kNotImplemented = "This method has not been implemented yet.";

using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

void PrintVector(std::ostream& out, const char* label, const double* values, std::size_t count) {
  out << label;
  for (std::size_t k = 0; k < count; ++k) out << (k == 0 ? "" : " ") << values[k];
  out << "\n";
}

double Seconds(std::clock_t ticks) { return static_cast<double>(ticks) / CLOCKS_PER_SEC; }

}  // namespace

ZqRegressionLogLikelihoodOpt::ZqRegressionLogLikelihoodOpt(unsigned int p, unsigned int n,
                                                           unsigned int regressionType,
                                                           const std::vector<double>& x, const std::vector<int>& y)
    : p_(p), n_(n), regressionType_(regressionType), x_(x), y_(y) {
  // Never read past the data, whatever n says.
  const std::size_t rows = p_ == 0 ? 0 : std::min(x_.size() / p_, y_.size());
  rows_ = static_cast<unsigned int>(std::min<std::size_t>(n_, rows));
}

std::vector<double> ZqRegressionLogLikelihoodOpt::LinearPredictors(const double* w) const {
  std::vector<double> z(rows_, 0.0);
  for (unsigned int i = 0; i < rows_; ++i) {
    const double* row = x_.data() + static_cast<std::size_t>(i) * p_;
    double sum = 0.0;
    for (unsigned int j = 0; j < p_; ++j) sum += row[j] * w[j];
    z[i] = sum;
  }
  return z;
}

double ZqRegressionLogLikelihoodOpt::Value(const std::vector<double>& z) const {
  double sum = 0.0;
  for (unsigned int i = 0; i < rows_; ++i) sum += log_p(regressionType_, y_[i], z[i]);
  return -sum;
}

void ZqRegressionLogLikelihoodOpt::GradientHessian(const std::vector<double>& z, double* gradient,
                                                   double* hessian) const {
  std::fill(gradient, gradient + p_, 0.0);
  if (hessian != nullptr) std::fill(hessian, hessian + static_cast<std::size_t>(p_) * p_, 0.0);
  for (unsigned int i = 0; i < rows_; ++i) {
    const double* row = x_.data() + static_cast<std::size_t>(i) * p_;
    const double v = V(regressionType_, y_[i], z[i]);
    for (unsigned int j = 0; j < p_; ++j) gradient[j] -= v * row[j];
    if (hessian == nullptr) continue;
    const double w = W(regressionType_, y_[i], z[i]);
    // The lower triangle only; the matrix is symmetric.
    for (unsigned int j = 0; j < p_; ++j) {
      const double wj = w * row[j];
      for (unsigned int k = 0; k <= j; ++k) hessian[j * p_ + k] += wj * row[k];
    }
  }
  if (hessian == nullptr) return;
  for (unsigned int j = 0; j < p_; ++j) {
    for (unsigned int k = j + 1; k < p_; ++k) hessian[j * p_ + k] = hessian[k * p_ + j];
  }
}

double ZqRegressionLogLikelihoodOpt::operator()(const double* w) { return Value(LinearPredictors(w)); }

double ZqRegressionLogLikelihoodOpt::operator()(const double* w, double* gradient) {
  const std::vector<double> z = LinearPredictors(w);
  GradientHessian(z, gradient, nullptr);
  return Value(z);
}

double ZqRegressionLogLikelihoodOpt::operator()(const double* w, double* gradient, double* hessian) {
  const std::clock_t start = std::clock();
  const std::vector<double> z = LinearPredictors(w);
  GradientHessian(z, gradient, hessian);
  const std::clock_t middle = std::clock();
  std::vector<double> gradient2, hessian2;
  CalculateGradientHessian_v2(w, gradient2, hessian2);
  const std::clock_t end = std::clock();
  std::ostringstream out;
  out << "time old = " << Seconds(middle - start) << " time new =" << Seconds(end - middle) << "\n";
  PrintVector(out, "w = ", w, p_);
  PrintVector(out, "g = ", gradient, p_);
  PrintVector(out, "h = ", hessian, static_cast<std::size_t>(p_) * p_);
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
  return Value(z);
}

void ZqRegressionLogLikelihoodOpt::CalculateGradientHessian_v2(const double* w, std::vector<double>& gradient,
                                                               std::vector<double>& hessian) {
  const Eigen::Map<const RowMajor> x(x_.data(), rows_, p_);
  const Eigen::Map<const Eigen::VectorXd> weights(w, p_);
  const Eigen::VectorXd z = x * weights;
  Eigen::VectorXd v(rows_), wt(rows_);
  for (unsigned int i = 0; i < rows_; ++i) {
    v[i] = V(regressionType_, y_[i], z[i]);
    wt[i] = W(regressionType_, y_[i], z[i]);
  }
  gradient.resize(p_);
  Eigen::Map<Eigen::VectorXd>(gradient.data(), p_) = -(x.transpose() * v);
  hessian.resize(static_cast<std::size_t>(p_) * p_);
  Eigen::Map<RowMajor>(hessian.data(), p_, p_) = x.transpose() * wt.asDiagonal() * x;
}

void ZqRegressionLogLikelihoodOpt::CalculateScoreVariance(const double* w, std::vector<double>& sigma) {
  std::vector<double> gradient(p_), hessian(static_cast<std::size_t>(p_) * p_);
  GradientHessian(LinearPredictors(w), gradient.data(), hessian.data());
  const Eigen::Map<const RowMajor> h(hessian.data(), p_, p_);
  const Eigen::MatrixXd inverse = Eigen::PartialPivLU<Eigen::MatrixXd>(h).solve(Eigen::MatrixXd::Identity(p_, p_));
  sigma.resize(p_);
  for (unsigned int j = 0; j < p_; ++j) sigma[j] = std::sqrt(inverse(j, j));
}

bool ZqRegressionLogLikelihoodOpt::CheckVariablesValidity(const double*) {
  Corvane::ZqThrow.Warning(kNotImplemented);
  return false;
}

bool ZqRegressionLogLikelihoodOpt::IsRedundant(const double*, const double*, double) const {
  Corvane::ZqThrow.Warning(kNotImplemented);
  return false;
}

Corvane::ZqIter<Minarc::ZqFComponent> ZqRegressionLogLikelihoodOpt::GetFComponents(const double*) {
  Corvane::ZqThrow.Warning(kNotImplemented);
  return {};
}

}  // namespace Varimo
