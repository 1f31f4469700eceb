// A component of a mixture in several dimensions under a Gauss-Wishart law.
#include <cmath>
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/mixture/gauss_mix_component.h"
#include "varimo/numerics/matrix.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kLogTwoPi = 1.8378770664093453;
constexpr double kEpsilon = 2.220446049250313e-16;

}  // namespace

ZqMultiDimGaussMixComponent::ZqMultiDimGaussMixComponent(const std::vector<std::string>& names,
                                                         const ZqGaussMixParam& probParams,
                                                         const ZqGaussMixParam& gaussParams)
    : componentNames_(names), componentProbParams_(probParams), componentGaussParams_(gaussParams) {}

ZqStatModelResult ZqMultiDimGaussMixComponent::GaussWishartParams(bool prior, std::vector<double>& mean,
                                                                  double& multiplier, double& nu,
                                                                  std::vector<double>& scale,
                                                                  std::vector<double>& scaleRoot) const {
  const std::size_t d = Dimension();
  const ZqGaussMixParam& p = componentGaussParams_;
  ZqStatModelResult result = prior ? p.GetInitialOrPriorParamVector(mean, d, 0) : p.GetCurrentOrPosteriorParamVector(mean, d, 0);
  if (result.IsSuccessful()) {
    multiplier = prior ? p.GetInitialOrPriorParamVal(result, 1) : p.GetCurrentOrPosteriorParamVal(result, 1);
  }
  if (result.IsSuccessful()) nu = prior ? p.GetInitialOrPriorParamVal(result, 2) : p.GetCurrentOrPosteriorParamVal(result, 2);
  if (result.IsSuccessful()) {
    result = prior ? p.GetInitialOrPriorParamVector(scale, d * d, 3) : p.GetCurrentOrPosteriorParamVector(scale, d * d, 3);
  }
  if (result.IsSuccessful()) {
    result = prior ? p.GetInitialOrPriorParamVector(scaleRoot, d * d, 4)
                   : p.GetCurrentOrPosteriorParamVector(scaleRoot, d * d, 4);
  }
  return result;
}

ZqStatModelResult ZqMultiDimGaussMixComponent::GetBayesPriorGaussWishartParams(std::vector<double>& mean,
                                                                               double& multiplier, double& nu,
                                                                               std::vector<double>& scale,
                                                                               std::vector<double>& scaleRoot) const {
  const char* routine = "ZqMultiDimGaussMixComponent::GetBayesPriorGaussWishartParams";
  if (componentGaussParams_.GetParameterType() != T::GaussGammaParams) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  ZqStatModelResult result = GaussWishartParams(true, mean, multiplier, nu, scale, scaleRoot);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqMultiDimGaussMixComponent::GetBayesPosteriorGaussWishartParams(
    std::vector<double>& mean, double& multiplier, double& nu, std::vector<double>& scale,
    std::vector<double>& scaleRoot) const {
  const char* routine = "ZqMultiDimGaussMixComponent::GetBayesPosteriorGaussWishartParams";
  if (componentGaussParams_.GetParameterType() != T::GaussGammaParams) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  ZqStatModelResult result = GaussWishartParams(false, mean, multiplier, nu, scale, scaleRoot);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

double ZqMultiDimGaussMixComponent::GetExpectedLogDetGaussPrecision(ZqStatModelResult& result) const {
  const char* routine = "ZqMultiDimGaussMixComponent::GetExpectedLogDetGaussPrecision";
  std::vector<double> mean, scale, root;
  double k = 0.0, nu = 0.0;
  result = GetBayesPosteriorGaussWishartParams(mean, k, nu, scale, root);
  double logDet = 0.0;
  if (result.IsSuccessful()) result = ZqLogDeterminantOfLowerTriSqRoot(Dimension(), root, logDet);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  double sum = 0.0;
  for (std::size_t i = 0; i < Dimension(); ++i) sum += Numarc::ZqDiGamma(0.5 * (nu - static_cast<double>(i)));
  return sum + logDet;
}

ZqStatModelResult ZqMultiDimGaussMixComponent::EStepUpdateLogRelativeResponsibility(
    const std::vector<std::vector<double>>& data) {
  const char* routine = "ZqMultiDimGaussMixComponent::EStepUpdateLogRelativeResponsibility";
  const std::size_t d = Dimension();
  ZqStatModelResult result;
  const double logPi = GetExpectedLogComponentProb(result, componentProbParams_);
  double logDet = kBad;
  if (result.IsSuccessful()) logDet = GetExpectedLogDetGaussPrecision(result);
  std::vector<double> mean, scale, root;
  double k = 0.0, nu = 0.0;
  if (result.IsSuccessful()) result = GetBayesPosteriorGaussWishartParams(mean, k, nu, scale, root);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  std::vector<double> logResponsibility;
  logResponsibility.reserve(data.size());
  for (const std::vector<double>& x : data) {
    std::vector<double> diff, v;
    double form = 0.0;
    result = ZqDifferenceBetweenVectors(d, x, mean, diff);
    if (result.IsSuccessful()) result = ZqMatrixTimesVector(d, scale, diff, v);
    if (result.IsSuccessful()) result = ZqDotProductOfVectors(d, diff, v, form);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    const double dims = static_cast<double>(d);
    logResponsibility.push_back((logDet - dims * kLogTwoPi - dims / k - nu * form) * 0.5 + logPi);
  }
  logResponsibility_ = std::move(logResponsibility);
  responsibility_.assign(data.size(), 0.0);
  return ZqStatModelResult(true);
}

double ZqMultiDimGaussMixComponent::EStepGetLogRelativeResponsibility(std::size_t n) const {
  return n < logResponsibility_.size() ? logResponsibility_[n] : std::numeric_limits<double>::lowest();
}

void ZqMultiDimGaussMixComponent::EStepFillResponsibilityAndLogResp(std::size_t n, double r, double logR) {
  if (n >= logResponsibility_.size() || n >= responsibility_.size()) return;
  responsibility_[n] = r;
  logResponsibility_[n] = logR;
}

ZqStatModelResult ZqMultiDimGaussMixComponent::CheckSizeResponsibilityVec(std::size_t n) const {
  if (logResponsibility_.size() != n) {
    return ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes,
                              "ZqMultiDimGaussMixComponent::CheckSizeResponsibilityVec",
                              Corvane::ZqMakeString("Size logResponsibility = ", logResponsibility_.size(),
                                                    ". Desired size = ", n));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqMultiDimGaussMixComponent::GetSampleMoments(const std::vector<std::vector<double>>& data) {
  const char* routine = "ZqMultiDimGaussMixComponent::GetSampleMoments";
  const std::size_t d = Dimension();
  if (data.size() != responsibility_.size()) {
    return ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, routine,
                              Corvane::ZqMakeString("Data size ", data.size(), "; responsibilities ",
                                                    responsibility_.size()));
  }
  for (const std::vector<double>& x : data) {
    if (x.size() != d) {
      return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                                Corvane::ZqMakeString("Point of ", x.size(), " values; dimension ", d));
    }
  }
  sumResponsibilities_ = 0.0;
  meanWithResponsibilities_.assign(d, 0.0);
  covarianceWithResponsibilities_.assign(d * d, 0.0);
  double nk = 0.0;
  for (const double r : responsibility_) nk += r;
  if (!(nk > kEpsilon)) return ZqStatModelResult(true);
  for (std::size_t i = 0; i < data.size(); ++i) {
    for (std::size_t j = 0; j < d; ++j) meanWithResponsibilities_[j] += responsibility_[i] * data[i][j] / nk;
  }
  for (std::size_t i = 0; i < data.size(); ++i) {
    for (std::size_t j = 0; j < d; ++j) {
      for (std::size_t l = 0; l < d; ++l) {
        covarianceWithResponsibilities_[j * d + l] += responsibility_[i] * (data[i][j] - meanWithResponsibilities_[j]) *
                                                     (data[i][l] - meanWithResponsibilities_[l]) / nk;
      }
    }
  }
  sumResponsibilities_ = nk;
  return ZqStatModelResult(true);
}

std::string ZqMultiDimGaussMixComponent::Print() const {
  std::string names;
  for (std::size_t i = 0; i < componentNames_.size(); ++i) names += (i == 0 ? "" : " ") + componentNames_[i];
  return Corvane::ZqMakeString("Component: ", names, "\n", componentProbParams_.Print(), componentGaussParams_.Print(),
                               "Nk = ", sumResponsibilities_, "\n");
}

}  // namespace Varimo
