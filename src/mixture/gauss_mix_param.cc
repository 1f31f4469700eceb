#include "varimo/mixture/gauss_mix_param.h"

#include <algorithm>
#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;

double Failed(ZqStatModelResult& result, std::uint32_t type, const char* routine) {
  result = ZqMakeFailedResult(type, routine);
  return kBad;
}

}  // namespace

ZqGaussMixParam::ZqGaussMixParam(std::uint32_t type, const std::string& name,
                                 const std::vector<std::string>& paramNames, const std::vector<double>& vals)
    : parameterType_(type), paramTypeName_(name) {
  if (paramNames.size() != vals.size()) return;
  paramNames_ = paramNames;
  for (std::size_t i = 0; i < vals.size(); ++i) {
    paramOffsets_.push_back(i);
    paramSizes_.push_back(1);
  }
  initialOrPriorVals_ = vals;
  currentOrPosteriorVals_ = vals;
  valid_ = true;
}

ZqGaussMixParam::ZqGaussMixParam(std::uint32_t type, const std::string& name,
                                 const std::vector<std::string>& paramNames,
                                 const std::vector<std::vector<double>>& vals)
    : parameterType_(type), paramTypeName_(name) {
  if (paramNames.size() != vals.size()) return;
  paramNames_ = paramNames;
  for (const std::vector<double>& group : vals) {
    paramOffsets_.push_back(initialOrPriorVals_.size());
    paramSizes_.push_back(group.size());
    initialOrPriorVals_.insert(initialOrPriorVals_.end(), group.begin(), group.end());
  }
  currentOrPosteriorVals_ = initialOrPriorVals_;
  valid_ = true;
}

ZqStatModelResult ZqGaussMixParam::CheckScalar(std::size_t i, const char* routine) const {
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  if (i >= paramSizes_.size()) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                              Corvane::ZqMakeString("Parameter ", i, " of ", paramSizes_.size()));
  }
  if (paramSizes_[i] != 1) {
    return ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes, routine,
                              Corvane::ZqMakeString("Parameter ", i, " holds ", paramSizes_[i], " values"));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqGaussMixParam::CheckVector(std::size_t i, std::size_t count, const char* routine) const {
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  if (i >= paramSizes_.size()) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                              Corvane::ZqMakeString("Parameter ", i, " of ", paramSizes_.size()));
  }
  if (paramSizes_[i] != count) {
    return ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes, routine,
                              Corvane::ZqMakeString("Parameter ", i, " holds ", paramSizes_[i], " values, not ",
                                                    count));
  }
  return ZqStatModelResult(true);
}

double ZqGaussMixParam::GetInitialOrPriorParamVal(ZqStatModelResult& result, std::size_t i) const {
  result = CheckScalar(i, "ZqGaussMixParam::GetInitialOrPriorParamVal");
  return result.IsSuccessful() ? initialOrPriorVals_[paramOffsets_[i]] : kBad;
}

double ZqGaussMixParam::GetCurrentOrPosteriorParamVal(ZqStatModelResult& result, std::size_t i) const {
  result = CheckScalar(i, "ZqGaussMixParam::GetCurrentOrPosteriorParamVal");
  return result.IsSuccessful() ? currentOrPosteriorVals_[paramOffsets_[i]] : kBad;
}

ZqStatModelResult ZqGaussMixParam::SetCurrentOrPosteriorParamVal(double value, std::size_t i) {
  ZqStatModelResult result = CheckScalar(i, "ZqGaussMixParam::SetCurrentOrPosteriorParamVal");
  if (result.IsSuccessful()) currentOrPosteriorVals_[paramOffsets_[i]] = value;
  return result;
}

ZqStatModelResult ZqGaussMixParam::SetCurrentOrPosteriorParamVector(const std::vector<double>& values,
                                                                    std::size_t i) {
  ZqStatModelResult result = CheckVector(i, values.size(), "ZqGaussMixParam::SetCurrentOrPosteriorParamVector");
  if (result.IsSuccessful()) {
    std::copy(values.begin(), values.end(), currentOrPosteriorVals_.begin() + static_cast<long>(paramOffsets_[i]));
  }
  return result;
}

ZqStatModelResult ZqGaussMixParam::GetInitialOrPriorParamVector(std::vector<double>& values, std::size_t count,
                                                                std::size_t i) const {
  ZqStatModelResult result = CheckVector(i, count, "ZqGaussMixParam::GetInitialOrPriorParamVector");
  if (result.IsSuccessful()) {
    const auto first = initialOrPriorVals_.begin() + static_cast<long>(paramOffsets_[i]);
    values.assign(first, first + static_cast<long>(count));
  }
  return result;
}

ZqStatModelResult ZqGaussMixParam::GetCurrentOrPosteriorParamVector(std::vector<double>& values, std::size_t count,
                                                                    std::size_t i) const {
  ZqStatModelResult result = CheckVector(i, count, "ZqGaussMixParam::GetCurrentOrPosteriorParamVector");
  if (result.IsSuccessful()) {
    const auto first = currentOrPosteriorVals_.begin() + static_cast<long>(paramOffsets_[i]);
    values.assign(first, first + static_cast<long>(count));
  }
  return result;
}

std::string ZqGaussMixParam::Print() const {
  if (!valid_) return "Not a Valid Object!!\n";
  if (paramNames_.size() != paramSizes_.size() || paramSizes_.size() != paramOffsets_.size()) {
    return "PROBLEM WITH PARAMETERS!!\n";
  }
  auto side = [&](const char* title, const std::vector<double>& values) {
    std::string text = title;
    for (std::size_t i = 0; i < paramNames_.size(); ++i) {
      text += paramNames_[i] + ": ";
      for (std::size_t k = 0; k < paramSizes_[i]; ++k) {
        text += Corvane::ZqMakeString(k == 0 ? "" : " ", values[paramOffsets_[i] + k]);
      }
      text += "\n";
    }
    return text;
  };
  return paramTypeName_ + "\n" + side("Prior Params: \n", initialOrPriorVals_) +
         side("Posterior Params: \n", currentOrPosteriorVals_);
}

// ------------------------------------------------------------ probability parameters

double GetExpectedComponentProbability(ZqStatModelResult& result, const ZqGaussMixParam& param) {
  const char* routine = "GetExpectedComponentProbability";
  if (param.GetParameterType() == T::FixedComponentProbability) {
    return param.GetCurrentOrPosteriorParamVal(result, 0);
  }
  if (param.GetParameterType() != T::DirichletMixingProbability) {
    return Failed(result, F::InternalLogicFailure, routine);
  }
  const double a = param.GetCurrentOrPosteriorParamVal(result, 0);
  const double s = result.IsSuccessful() ? param.GetCurrentOrPosteriorParamVal(result, 1) : kBad;
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  return a / s;
}

double GetExpectedLogComponentProb(ZqStatModelResult& result, const ZqGaussMixParam& param) {
  const char* routine = "GetExpectedLogComponentProb";
  if (param.GetParameterType() == T::FixedComponentProbability) {
    const double p = param.GetCurrentOrPosteriorParamVal(result, 0);
    return result.IsSuccessful() ? std::log(p) : kBad;
  }
  if (param.GetParameterType() != T::DirichletMixingProbability) {
    return Failed(result, F::InternalLogicFailure, routine);
  }
  const double a = param.GetCurrentOrPosteriorParamVal(result, 0);
  const double s = result.IsSuccessful() ? param.GetCurrentOrPosteriorParamVal(result, 1) : kBad;
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  return Numarc::ZqDiGamma(a) - Numarc::ZqDiGamma(s);
}

namespace {

// (a / s) lgamma(s) - lgamma(a) + (a - 1) E[ln pi], with (a, s) the prior
// or the posterior coefficients.
double ExpectedLogDirichlet(ZqStatModelResult& result, const ZqGaussMixParam& param, bool prior,
                            const char* routine) {
  if (param.GetParameterType() != T::DirichletMixingProbability) {
    return Failed(result, F::InternalLogicFailure, routine);
  }
  const double a = prior ? param.GetInitialOrPriorParamVal(result, 0) : param.GetCurrentOrPosteriorParamVal(result, 0);
  double s = kBad, logPi = kBad;
  if (result.IsSuccessful()) {
    s = prior ? param.GetInitialOrPriorParamVal(result, 1) : param.GetCurrentOrPosteriorParamVal(result, 1);
  }
  if (result.IsSuccessful()) logPi = GetExpectedLogComponentProb(result, param);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  return (a / s) * Numarc::Zqlgamma(s) - Numarc::Zqlgamma(a) + (a - 1.0) * logPi;
}

}  // namespace

double GetExpectedLogDirichletPrior(ZqStatModelResult& result, const ZqGaussMixParam& param) {
  return ExpectedLogDirichlet(result, param, true, "GetExpectedLogDirichletPrior");
}

double GetExpectedLogDirichletPosterior(ZqStatModelResult& result, const ZqGaussMixParam& param) {
  return ExpectedLogDirichlet(result, param, false, "GetExpectedLogDirichletPosterior");
}

ZqStatModelResult UpdateComponentProbParams(std::size_t n, ZqGaussMixParam& param, double sumResp) {
  const char* routine = "UpdateComponentProbParams";
  ZqStatModelResult result(true);
  if (param.GetParameterType() == T::FixedComponentProbability) {
    if (sumResp >= static_cast<double>(n)) {
      return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                Corvane::ZqMakeString("Sum of responsibilities ", sumResp, " of ", n, " points"));
    }
    result = param.SetCurrentOrPosteriorParamVal(sumResp / static_cast<double>(n), 0);
  } else if (param.GetParameterType() == T::DirichletMixingProbability) {
    const double a0 = param.GetInitialOrPriorParamVal(result, 0);
    double s0 = kBad;
    if (result.IsSuccessful()) s0 = param.GetInitialOrPriorParamVal(result, 1);
    if (result.IsSuccessful()) result = param.SetCurrentOrPosteriorParamVal(sumResp + a0, 0);
    if (result.IsSuccessful()) result = param.SetCurrentOrPosteriorParamVal(s0 + static_cast<double>(n), 1);
  } else {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace Varimo
