#include "varimo/latent/logistic_regression.h"

#include <sstream>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/minarc/newton_opt.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

double ZqBinaryLinearRegression::MaximizeLogLikelihood() {
  // The start and result live in fixed arrays of kMaxPredictors, so larger
  // models, and data that do not fill n rows, are turned away here.
  if (p_ == 0 || p_ > kMaxPredictors || x_.size() != static_cast<std::size_t>(n_) * p_ || y_.size() != n_) {
    Corvane::ZqThrow.Warning(
        "ZqBinaryLinearRegression::MaximizeLogLikelihood, need 1 to 100 predictors and n rows of them "
        "(p %u, n %u, %zu values, %zu labels)",
        p_, n_, x_.size(), y_.size());
    return VarimoBadData::BadDouble;
  }
  Minarc::ZqNewtonOpt newton;
  newton.SetIterLimit(newtonIterLimit_);
  newton.SetTolerance(newtonTolerance_);

  double start[kMaxPredictors] = {};
  double result[kMaxPredictors] = {};
  ZqRegressionLogLikelihoodOpt objective(p_, n_, regressionType_, x_, y_);
  const double value = newton(objective, nullptr, start, result);
  const double bestLogLikelihood = -value;

  objective.CalculateScoreVariance(result, sigma_);
  std::ostringstream out;
  out << "bestLogLikelihood = " << bestLogLikelihood << "\n";
  out << "{w opt, sigma opt} = ";
  for (unsigned int j = 0; j < p_; ++j) out << "{" << result[j] << ", " << sigma_[j] << "}, ";
  out << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
  beta_.insert(beta_.end(), result, result + p_);
  return bestLogLikelihood;
}

void ZqBinaryLinearRegression::Predict(unsigned int numRows, const std::vector<double>& xNew,
                                       std::vector<double>& probabilities) const {
  if (beta_.size() < p_ || xNew.size() < static_cast<std::size_t>(numRows) * p_) {
    Corvane::ZqThrow.Warning(
        "ZqBinaryLinearRegression::Predict, need a fit and %u rows of %u values (%zu weights, %zu values)",
        numRows, p_, beta_.size(), xNew.size());
    return;
  }
  std::ostringstream out;
  out << "_p = " << p_ << "\n";
  out << "beta= ";
  for (std::size_t j = 0; j < beta_.size(); ++j) out << (j == 0 ? "" : " ") << beta_[j];
  out << "\n";
  for (unsigned int i = 0; i < numRows; ++i) {
    double z = 0.0;
    for (unsigned int j = 0; j < p_; ++j) z += xNew[static_cast<std::size_t>(i) * p_ + j] * beta_[j];
    const double f = reg_func(regressionType_, z);
    probabilities.push_back(f);
    out << "i, f_i = " << i << ", " << f << "\n";
  }
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
}

}  // namespace Varimo
