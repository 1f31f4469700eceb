// Finite mixtures of univariate laws.
#include <algorithm>
#include <cmath>

#include "inverse_cdf.h"
#include "univariate_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var_setup.h"
#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;
constexpr double kEpsilon = 2.220446049250313e-16;

std::vector<std::size_t> Rounded(Corvane::ZqIter<const double> values) {
  std::vector<std::size_t> out;
  for (const double v : values) out.push_back(v > 0.0 ? static_cast<std::size_t>(std::llround(v)) : 0);
  return out;
}

}  // namespace

ZqUniVarMixtureImpl::ZqUniVarMixtureImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                         const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(ZqPDFType::UniVariateMixture, variableName, parameters, outcomes) {
  const ZqStatModelResult result = GetParams(variableName, parameters, outcomes);
  if (result.IsSuccessful()) {
    SetValid();
  } else {
    Corvane::ZqThrow.Warning(result.ReportStatResultDetails());
  }
}

ZqStatModelResult ZqUniVarMixtureImpl::GetParams(const std::string& variableName, const ZqRanVarVec& parameters,
                                                 const ZqRanVarVec& outcomes) {
  const char* routine = "ZqUniVarMixtureImpl::GetParams";
  ZqStatModelResult result;
  const double number = GetSingleParameterRanVarVal(0, result);
  if (result.NotSuccessful() || !(number >= 0.0 && number < 1e9)) {
    if (result.IsSuccessful()) result = ZqMakeFailedResult(F::ArgumentOutOfRange, routine);
    result.AddCallContext(routine);
    return result;
  }
  const std::size_t count = static_cast<std::size_t>(std::llround(number));
  const std::vector<std::size_t> types = Rounded(GetParameterRanVarVals(1, count, result));
  std::vector<std::size_t> numParams;
  if (result.IsSuccessful()) numParams = Rounded(GetParameterRanVarVals(2, count, result));
  std::vector<double> probabilities;
  if (result.IsSuccessful()) {
    for (const double p : GetParameterRanVarVals(3, count, result)) probabilities.push_back(p);
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  double sum = 0.0;
  for (const double p : probabilities) {
    if (!(p >= 0.0 && p <= 1.0)) {
      return ZqMakeFailedResult(F::InternalLogicFailure, routine, "Component probability out of range");
    }
    sum += p;
  }
  const double error = sum - 1.0;
  if (std::fabs(error) > static_cast<double>(count) * kEpsilon) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine,
                              ZqMakeString("Sum of probabilities(error = ", error, ")", " is out of range"));
  }
  if (outcomes.size() != count + 1) {
    return ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, routine, "Wrong number of outcome parameters");
  }
  // The components' parameter variables follow the mixture's four.
  std::size_t next = 4;
  for (std::size_t k = 0; k < count; ++k) {
    if (next + numParams[k] > parameters.size()) break;
    const ZqRanVarVec own(parameters.begin() + static_cast<long>(next),
                          parameters.begin() + static_cast<long>(next + numParams[k]));
    next += numParams[k];
    components_.emplace_back(types[k], variableName, own, ZqRanVarVec{outcomes[k + 1]});
  }
  if (components_.size() < count) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine, "Wrong number of components");
  }
  mixProbs_ = probabilities;
  return ZqStatModelResult(true);
}

std::string ZqUniVarMixtureImpl::Print(std::size_t limit) const {
  std::string text = DefaultPrint(limit);
  for (const ZqUniVarPDF& component : components_) text += component.Print(limit);
  return text;
}

double ZqUniVarMixtureImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  const char* routine = "ZqUniVarMixtureImpl::GetRandomOutcome";
  if (!Ready(result, routine)) return kPdfBad;
  const double u = uniformRNG_(engine);
  double sum = 0.0;
  const std::size_t count = std::min(mixProbs_.size(), components_.size());
  for (std::size_t k = 0; k < count; ++k) {
    sum += mixProbs_[k];
    if (sum > u) return components_[k].GetRandomOutcome(result, engine);
  }
  result = ZqMakeFailedResult(F::InternalLogicFailure, routine,
                              ZqMakeString("random prob ", u, "never exceeded by sum of mixture probs.",
                                           " The latter is ", sum));
  return kPdfBad;
}

double ZqUniVarMixtureImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  const char* routine = "ZqUniVarMixtureImpl::GetDensity";
  if (!Ready(result, routine)) return kPdfBad;
  double value = 0.0;
  const std::size_t count = std::min(mixProbs_.size(), components_.size());
  for (std::size_t k = 0; k < count; ++k) {
    const double f = components_[k].GetDensity(x, result, checkOutcome);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    value += mixProbs_[k] * f;
  }
  result = true;
  return value;
}

double ZqUniVarMixtureImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  const char* routine = "ZqUniVarMixtureImpl::GetCDF";
  if (!Ready(result, routine)) return kPdfBad;
  double value = 0.0;
  const std::size_t count = std::min(mixProbs_.size(), components_.size());
  for (std::size_t k = 0; k < count; ++k) {
    const double c = components_[k].GetCDF(x, result, checkOutcome);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    value += mixProbs_[k] * c;
  }
  result = true;
  return value;
}

double ZqUniVarMixtureImpl::GetMean(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarMixtureImpl::GetMean";
  if (!Ready(result, routine)) return kPdfBad;
  double mean = 0.0;
  for (std::size_t k = 0; k < std::min(mixProbs_.size(), components_.size()); ++k) {
    const double m = components_[k].GetMean(result);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    mean += mixProbs_[k] * m;
  }
  result = true;
  return mean;
}

double ZqUniVarMixtureImpl::GetVariance(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarMixtureImpl::GetVariance";
  if (!Ready(result, routine)) return kPdfBad;
  // The second moment about 0, less the square of the mean.
  double second = 0.0, mean = 0.0;
  for (std::size_t k = 0; k < std::min(mixProbs_.size(), components_.size()); ++k) {
    const double m = components_[k].GetMean(result);
    double v = 0.0;
    if (result.IsSuccessful()) v = components_[k].GetVariance(result);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    second += mixProbs_[k] * (v + m * m);
    mean += mixProbs_[k] * m;
  }
  result = true;
  return second - mean * mean;
}

double ZqUniVarMixtureImpl::GetMode(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarMixtureImpl::GetMode";
  if (!Ready(result, routine)) return kPdfBad;
  const double lo = GetPercentile(0.01, result);
  double hi = 0.0;
  if (result.IsSuccessful()) hi = GetPercentile(0.99, result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kPdfBad;
  }
  const double step = (hi - lo) / 100.0;
  double best = 0.0;
  double bestX = kPdfBad;
  for (int i = 0; i <= 100; ++i) {
    const double x = lo + i * step;
    const double f = GetDensity(x, result, true);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    if (f > best) {
      best = f;
      bestX = x;
    }
  }
  result = true;
  return bestX;
}

double ZqUniVarMixtureImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarMixtureImpl::GetPercentile";
  if (!Ready(result, routine)) return kPdfBad;
  // A bracket from the components' own percentiles: the mixture's lies
  // between their extremes.
  double lower = 0.0, upper = 0.0;
  for (std::size_t k = 0; k < components_.size(); ++k) {
    const double low = components_[k].GetPercentile(0.5 * p, result);
    double high = 0.0;
    if (result.IsSuccessful()) high = components_[k].GetPercentile((1.0 - p) * 0.5 + p, result);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kPdfBad;
    }
    lower = k == 0 ? low : std::min(lower, low);
    upper = k == 0 ? high : std::max(upper, high);
  }
  const double x = InverseContinuousCDF(result, *this, p, lower, upper, 1e-8, kInverseCDFTolerance);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kPdfBad;
  }
  return x;
}

// ------------------------------------------------------------ building mixtures

ZqUniVarPDF ZqUnivariateMixture(const std::string& name, const std::vector<std::size_t>& pdfTypes,
                                const std::vector<double>& probabilities,
                                const std::vector<std::vector<double>>& parameters, ZqStatModelResult& result) {
  const char* routine = "ZqUnivariateMixture";
  if (pdfTypes.empty()) {
    result = ZqMakeFailedResult(F::EmptyStatModel, routine, "Empty pdfTypes vector");
    return ZqUniVarNullPDF(name);
  }
  if (pdfTypes.size() != parameters.size() || pdfTypes.size() != probabilities.size()) {
    result = ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, routine,
                                ZqMakeString(" Num pdf types: ", pdfTypes.size()));
    result.AddExtraComment(ZqMakeString("Num param vecs: ", parameters.size()));
    result.AddExtraComment(ZqMakeString("Num mix probs: ", probabilities.size()));
    return ZqUniVarNullPDF(name);
  }
  ZqRanVarVec componentParameters, componentOutcomes;
  std::vector<std::size_t> numParams;
  for (std::size_t k = 0; k < pdfTypes.size(); ++k) {
    ZqRanVarVec p, o;
    result = ZqUniVarGenericRanVars::SetupRanVarVecs(pdfTypes[k], parameters[k], p, o);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return ZqUniVarNullPDF(name);
    }
    numParams.push_back(p.size());
    componentParameters.insert(componentParameters.end(), p.begin(), p.end());
    componentOutcomes.insert(componentOutcomes.end(), o.begin(), o.end());
  }
  ZqRanVarVec mixParameters, mixOutcomes;
  result = ZqUniVarMixtureRanVars::SetupRanVarVecs(pdfTypes.size(), pdfTypes, numParams, probabilities, mixParameters,
                                                   mixOutcomes);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(name);
  }
  mixParameters.insert(mixParameters.end(), componentParameters.begin(), componentParameters.end());
  mixOutcomes.insert(mixOutcomes.end(), componentOutcomes.begin(), componentOutcomes.end());
  ZqUniVarPDF mixture(ZqPDFType::UniVariateMixture, name, mixParameters, mixOutcomes);
  if (!mixture.Valid()) {
    result = ZqMakeFailedResult(F::InvalidProbDistFunc, routine);
    return mixture;
  }
  result = true;
  return mixture;
}

ZqUniVarPDF ZqUnivariateGaussMixture(const std::string& name, const std::vector<double>& probabilities,
                                     const std::vector<double>& means, const std::vector<double>& variances,
                                     ZqStatModelResult& result) {
  if (means.size() != probabilities.size() || variances.size() != probabilities.size()) {
    result = ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, "ZqUnivariateGaussMixture",
                                ZqMakeString("Num mix probs: ", probabilities.size(), "; means: ", means.size(),
                                             "; variances: ", variances.size()));
    return ZqUniVarNullPDF(name);
  }
  std::vector<std::vector<double>> parameters;
  for (std::size_t k = 0; k < means.size(); ++k) parameters.push_back({means[k], variances[k]});
  return ZqUnivariateMixture(name, std::vector<std::size_t>(means.size(), ZqPDFType::UniVariateGaussian),
                             probabilities, parameters, result);
}

ZqUniVarPDF ZqUnivariateStudentsTMixture(const std::string& name, const std::vector<double>& probabilities,
                                         const std::vector<double>& degreesOfFreedom,
                                         const std::vector<double>& locations, const std::vector<double>& precisions,
                                         ZqStatModelResult& result) {
  const std::size_t n = probabilities.size();
  if (degreesOfFreedom.size() != n || locations.size() != n || precisions.size() != n) {
    result = ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, "ZqUnivariateStudentsTMixture",
                                ZqMakeString("Num mix probs: ", n, "; degrees of freedom: ", degreesOfFreedom.size(),
                                             "; locations: ", locations.size(), "; precisions: ",
                                             precisions.size()));
    return ZqUniVarNullPDF(name);
  }
  std::vector<std::vector<double>> parameters;
  for (std::size_t k = 0; k < n; ++k) parameters.push_back({degreesOfFreedom[k], locations[k], precisions[k]});
  return ZqUnivariateMixture(name, std::vector<std::size_t>(n, ZqPDFType::UnivariateStudentsT), probabilities,
                             parameters, result);
}

}  // namespace Varimo
