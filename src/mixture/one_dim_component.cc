#include <cmath>
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/mixture/gauss_mix_component.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kLogTwoPi = 1.8378770664093453;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kEpsilon = 2.220446049250313e-16;

// Reads `count` scalar values of a parameter, current or prior.
ZqStatModelResult ReadScalars(const ZqGaussMixParam& param, bool prior, std::initializer_list<double*> out) {
  ZqStatModelResult result(true);
  std::size_t i = 0;
  for (double* value : out) {
    *value = prior ? param.GetInitialOrPriorParamVal(result, i) : param.GetCurrentOrPosteriorParamVal(result, i);
    if (result.NotSuccessful()) return result;
    ++i;
  }
  return result;
}

}  // namespace

ZqOneDimGaussMixComponent::ZqOneDimGaussMixComponent(const std::string& name, const ZqGaussMixParam& probParams,
                                                     const ZqGaussMixParam& gaussParams)
    : componentName_(name), componentProbParams_(probParams), componentGaussParams_(gaussParams) {}

ZqStatModelResult ZqOneDimGaussMixComponent::GetFrequentistGaussParams(double& mean, double& precision) const {
  const char* routine = "ZqOneDimGaussMixComponent::GetFrequentistGaussParams";
  if (componentGaussParams_.GetParameterType() != T::FixedGaussParams) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  ZqStatModelResult result = ReadScalars(componentGaussParams_, false, {&mean, &precision});
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqOneDimGaussMixComponent::GetBayesPriorGaussParams(double& mean, double& multiplier,
                                                                      double& alpha, double& beta) const {
  const char* routine = "ZqOneDimGaussMixComponent::GetBayesPriorGaussParams";
  if (componentGaussParams_.GetParameterType() != T::GaussGammaParams) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  ZqStatModelResult result = ReadScalars(componentGaussParams_, true, {&mean, &multiplier, &alpha, &beta});
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqOneDimGaussMixComponent::GetBayesPosteriorGaussParams(double& mean, double& multiplier,
                                                                          double& alpha, double& beta) const {
  const char* routine = "ZqOneDimGaussMixComponent::GetBayesPosteriorGaussParams";
  if (componentGaussParams_.GetParameterType() != T::GaussGammaParams) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  ZqStatModelResult result = ReadScalars(componentGaussParams_, false, {&mean, &multiplier, &alpha, &beta});
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqOneDimGaussMixComponent::GetSampleMoments(const std::vector<double>& data) {
  if (data.size() != responsibility_.size()) {
    return ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, "ZqOneDimGaussMixComponent::GetSampleMoments",
                              Corvane::ZqMakeString("Data size ", data.size(), "; responsibilities ",
                                                    responsibility_.size()));
  }
  double nk = 0.0;
  for (const double r : responsibility_) nk += r;
  sumResponsibilities_ = 0.0;
  meanWithResponsibilities_ = 0.0;
  varianceWithResponsibilities_ = 0.0;
  // A component that holds no point keeps zero moments, and so its prior.
  if (nk > kEpsilon) {
    double weighted = 0.0;
    for (std::size_t i = 0; i < data.size(); ++i) weighted += data[i] * responsibility_[i];
    const double xbar = weighted / nk;
    double spread = 0.0;
    for (std::size_t i = 0; i < data.size(); ++i) spread += responsibility_[i] * (data[i] - xbar) * (data[i] - xbar);
    sumResponsibilities_ = nk;
    meanWithResponsibilities_ = xbar;
    varianceWithResponsibilities_ = spread / nk;
  }
  return ZqStatModelResult(true);
}

std::size_t ZqOneDimGaussMixComponent::GetNumComponentParams(ZqStatModelResult& result) const {
  switch (componentGaussParams_.GetParameterType()) {
    case T::FixedGaussParams:
      result = true;
      return 3;
    case T::GaussGammaParams:
      result = true;
      return 5;
    default:
      result = ZqMakeFailedResult(F::InternalLogicFailure, "ZqOneDimGaussMixComponent::GetNumComponentParams");
      return 0;
  }
}

void ZqOneDimGaussMixComponent::GetComponentParams(std::vector<double>& vals) const {
  vals.clear();
  vals.reserve(5);
  ZqStatModelResult result;
  vals.push_back(GetExpectedComponentProbability(result, componentProbParams_));
  const std::size_t count = componentGaussParams_.GetParameterType() == T::FixedGaussParams   ? 2
                            : componentGaussParams_.GetParameterType() == T::GaussGammaParams ? 4
                                                                                              : 0;
  for (std::size_t i = 0; i < count; ++i) vals.push_back(componentGaussParams_.GetCurrentOrPosteriorParamVal(result, i));
}

ZqStatModelResult ZqOneDimGaussMixComponent::EStepUpdateLogRelativeResponsibility(const std::vector<double>& data) {
  const char* routine = "ZqOneDimGaussMixComponent::EStepUpdateLogRelativeResponsibility";
  ZqStatModelResult result;
  const double logPi = GetExpectedLogComponentProb(result, componentProbParams_);
  double logPrecision = kBad;
  if (result.IsSuccessful()) logPrecision = GetExpectedLogGaussPrecision(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  const std::uint32_t type = componentGaussParams_.GetParameterType();
  double m = 0.0, k = 0.0, a = 0.0, b = 0.0, precision = 0.0;
  if (type == T::FixedGaussParams) {
    result = ReadScalars(componentGaussParams_, false, {&m, &precision});
  } else if (type == T::GaussGammaParams) {
    result = ReadScalars(componentGaussParams_, false, {&m, &k, &a, &b});
  } else {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  logResponsibility_.clear();
  logResponsibility_.reserve(data.size());
  responsibility_.assign(data.size(), 0.0);
  for (const double x : data) {
    const double d2 = (x - m) * (x - m);
    // E[(x - mu)^2 lambda] is (a / b) (x - m)^2 + 1 / k under the
    // Gauss-Gamma posterior.
    const double spread = type == T::FixedGaussParams ? precision * d2 : (a / b) * d2 + 1.0 / k;
    logResponsibility_.push_back(logPi + 0.5 * (logPrecision - kLogTwoPi - spread));
  }
  return ZqStatModelResult(true);
}

double ZqOneDimGaussMixComponent::EStepGetLogRelativeResponsibility(std::size_t n) const {
  return n < logResponsibility_.size() ? logResponsibility_[n] : std::numeric_limits<double>::lowest();
}

void ZqOneDimGaussMixComponent::EStepFillResponsibilityAndLogResp(std::size_t n, double r, double logR) {
  if (n >= logResponsibility_.size() || n >= responsibility_.size()) return;
  responsibility_[n] = r;
  logResponsibility_[n] = logR;
}

ZqStatModelResult ZqOneDimGaussMixComponent::CheckSizeResponsibilityVec(std::size_t n) const {
  if (logResponsibility_.size() != n) {
    return ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes,
                              "ZqOneDimGaussMixComponent::CheckSizeResponsibilityVec",
                              Corvane::ZqMakeString("Size logResponsibility = ", logResponsibility_.size(),
                                                    ". Desired size = ", n));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqOneDimGaussMixComponent::MStepUpdateParams(const std::vector<double>& data) {
  const char* routine = "ZqOneDimGaussMixComponent::MStepUpdateParams";
  ZqStatModelResult result = GetSampleMoments(data);
  if (result.IsSuccessful()) result = UpdateComponentProbParams(data.size(), componentProbParams_, sumResponsibilities_);
  if (result.IsSuccessful()) result = UpdateGaussParams();
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqOneDimGaussMixComponent::UpdateGaussParams() {
  const char* routine = "ZqOneDimGaussMixComponent::UpdateGaussParams";
  const double nk = sumResponsibilities_;
  const double xbar = meanWithResponsibilities_;
  const double s = varianceWithResponsibilities_;
  ZqStatModelResult result(true);
  if (componentGaussParams_.GetParameterType() == T::FixedGaussParams) {
    result = componentGaussParams_.SetCurrentOrPosteriorParamVal(xbar, 0);
    if (result.IsSuccessful() && 0.0 >= s) {
      return ZqMakeFailedResult(F::SingularScaleOrCovariance, routine, Corvane::ZqMakeString("Sample variance = ", s));
    }
    if (result.IsSuccessful()) result = componentGaussParams_.SetCurrentOrPosteriorParamVal(1.0 / s, 1);
  } else if (componentGaussParams_.GetParameterType() == T::GaussGammaParams) {
    double m0 = 0.0, k0 = 0.0, a0 = 0.0, b0 = 0.0;
    result = ReadScalars(componentGaussParams_, true, {&m0, &k0, &a0, &b0});
    if (result.IsSuccessful()) {
      const double k = k0 + nk;
      const double m = (m0 * k0 + nk * xbar) / k;
      const double a = a0 + 0.5 * nk;
      const double b = b0 + 0.5 * nk * s + (nk * k0 / k * 0.5) * (xbar - m0) * (xbar - m0);
      const double values[4] = {m, k, a, b};
      for (std::size_t i = 0; i < 4 && result.IsSuccessful(); ++i) {
        result = componentGaussParams_.SetCurrentOrPosteriorParamVal(values[i], i);
      }
    }
  } else {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

double ZqOneDimGaussMixComponent::GetExpectedLogGaussPrecision(ZqStatModelResult& result) const {
  const char* routine = "ZqOneDimGaussMixComponent::GetExpectedLogGaussPrecision";
  const std::uint32_t type = componentGaussParams_.GetParameterType();
  if (type == T::FixedGaussParams) {
    const double precision = componentGaussParams_.GetCurrentOrPosteriorParamVal(result, 1);
    if (result.IsSuccessful()) return std::log(precision);
  } else if (type == T::GaussGammaParams) {
    const double a = componentGaussParams_.GetCurrentOrPosteriorParamVal(result, 2);
    double b = kBad;
    if (result.IsSuccessful()) b = componentGaussParams_.GetCurrentOrPosteriorParamVal(result, 3);
    if (result.IsSuccessful()) return Numarc::ZqDiGamma(a) - std::log(b);
  } else {
    result = ZqMakeFailedResult(F::InternalLogicFailure, routine);
    return kBad;
  }
  result.AddCallContext(routine);
  return kBad;
}

namespace {

// The posterior and prior Gauss-Gamma values, and L, of a component; false
// with the result failed when they cannot be read.
struct GaussGamma {
  double m, k, a, b, m0, k0, a0, b0, logPrecision;
};

bool ReadGaussGamma(const ZqOneDimGaussMixComponent& component, ZqStatModelResult& result, GaussGamma& g,
                    const char* routine) {
  result = component.GetBayesPosteriorGaussParams(g.m, g.k, g.a, g.b);
  if (result.IsSuccessful()) result = component.GetBayesPriorGaussParams(g.m0, g.k0, g.a0, g.b0);
  if (result.IsSuccessful()) g.logPrecision = component.GetExpectedLogGaussPrecision(result);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result.IsSuccessful();
}

}  // namespace

double ZqOneDimGaussMixComponent::GetExpectedLogProbDataGivenZAndParams(ZqStatModelResult& result) const {
  GaussGamma g{};
  if (!ReadGaussGamma(*this, result, g, "ZqOneDimGaussMixComponent::GetExpectedLogProbDataGivenZAndParams")) {
    return kBad;
  }
  const double e = g.a / g.b;
  const double xbar = meanWithResponsibilities_;
  return sumResponsibilities_ * 0.5 *
         (g.logPrecision - 1.0 / g.k - varianceWithResponsibilities_ * e - e * (xbar - g.m) * (xbar - g.m) -
          kLogTwoPi);
}

double ZqOneDimGaussMixComponent::GetExpectedLogProbZGivenComponentProb(ZqStatModelResult& result) const {
  const double logPi = GetExpectedLogComponentProb(result, componentProbParams_);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqOneDimGaussMixComponent::GetExpectedLogProbZGivenComponentProb");
    return kBad;
  }
  return sumResponsibilities_ * logPi;
}

double ZqOneDimGaussMixComponent::GetExpectedLogPriorGaussGamma(ZqStatModelResult& result) const {
  GaussGamma g{};
  if (!ReadGaussGamma(*this, result, g, "ZqOneDimGaussMixComponent::GetExpectedLogPriorGaussGamma")) return kBad;
  const double e = g.a / g.b;
  const double d = g.m - g.m0;
  return (std::log(g.k0 / kTwoPi) + g.logPrecision - g.k0 / g.k - g.k0 * e * d * d) * 0.5 +
         (g.a0 * std::log(g.b0) - Numarc::Zqlgamma(g.a0)) + (g.a0 - 1.0) * g.logPrecision - g.b0 * e;
}

double ZqOneDimGaussMixComponent::GetExpectedLogPosteriorGaussGamma(ZqStatModelResult& result) const {
  GaussGamma g{};
  if (!ReadGaussGamma(*this, result, g, "ZqOneDimGaussMixComponent::GetExpectedLogPosteriorGaussGamma")) {
    return kBad;
  }
  return (std::log(g.k / kTwoPi) + g.logPrecision - 1.0) * 0.5 + (g.a * std::log(g.b) - Numarc::Zqlgamma(g.a)) +
         (g.a - 1.0) * g.logPrecision - g.a;
}

double ZqOneDimGaussMixComponent::GetExpectedLogOfVarDistOfZ() const {
  double sum = 0.0;
  for (std::size_t i = 0; i < responsibility_.size() && i < logResponsibility_.size(); ++i) {
    sum += responsibility_[i] * logResponsibility_[i];
  }
  return sum;
}

double ZqOneDimGaussMixComponent::GetVariationalBayesLowerBound(ZqStatModelResult& result) const {
  const char* routine = "ZqOneDimGaussMixComponent::GetVariationalBayesLowerBound";
  double terms[7];
  terms[0] = GetExpectedLogProbDataGivenZAndParams(result);
  if (result.IsSuccessful()) terms[1] = GetExpectedLogProbZGivenComponentProb(result);
  if (result.IsSuccessful()) terms[2] = GetExpectedLogDirichletPrior(result, componentProbParams_);
  if (result.IsSuccessful()) terms[3] = GetExpectedLogPriorGaussGamma(result);
  if (result.IsSuccessful()) terms[4] = GetExpectedLogOfVarDistOfZ();
  if (result.IsSuccessful()) terms[5] = GetExpectedLogDirichletPosterior(result, componentProbParams_);
  if (result.IsSuccessful()) terms[6] = GetExpectedLogPosteriorGaussGamma(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  return terms[0] + terms[1] + terms[2] + terms[3] - (terms[4] + terms[5] + terms[6]);
}

double ZqOneDimGaussMixComponent::GetComponentOfModelFitness(ZqStatModelResult& result) const {
  switch (componentProbParams_.GetParameterType()) {
    case T::FixedComponentProbability:
      result = true;
      return 0.0;
    case T::DirichletMixingProbability: {
      const double bound = GetVariationalBayesLowerBound(result);
      if (result.NotSuccessful()) result.AddCallContext("ZqOneDimGaussMixComponent::GetComponentOfModelFitness");
      return bound;
    }
    default:
      result = ZqMakeFailedResult(F::InternalLogicFailure, "ZqOneDimGaussMixComponent::GetComponentOfModelFitness");
      return kBad;
  }
}

std::string ZqOneDimGaussMixComponent::Print() const {
  return Corvane::ZqMakeString("Component: ", componentName_, "\n", componentProbParams_.Print(),
                               componentGaussParams_.Print(), "Nk, xbar, S = ", sumResponsibilities_, " ",
                               meanWithResponsibilities_, " ", varianceWithResponsibilities_, "\n");
}

}  // namespace Varimo
