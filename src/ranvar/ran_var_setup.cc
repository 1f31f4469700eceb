// SetupRanVarVecs of each distribution: the arguments are tested first, so
// that a failure leaves the caller's lists untouched, then the lists are
// filled from the distribution's tables.
#include "varimo/ranvar/ran_var_setup.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "varimo/numerics/matrix.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

// Single precision's epsilon: how near an integer a count must be.
constexpr double kTolerance = 1.1920928955078125e-7;

constexpr std::size_t kParameters = 1;
constexpr std::size_t kOutcomes = 2;

// Bounds and sums of the variables asked for, by ranVarType; zero when a
// distribution has none.
struct Bounds {
  const double* lower = nullptr;
  const double* upper = nullptr;
  const double* sum = nullptr;
};

// Empties `target` and appends one scalar variable for each index, from the
// distribution's tables, with the value at that index of `values`.
template <class Tables>
void ZqFillRanVarVec(ZqRanVarVec& target, std::size_t pdfType, std::size_t packageType,
                     std::initializer_list<std::size_t> indices, const double* values, const Bounds& bounds = {}) {
  target.clear();
  target.reserve(indices.size());
  for (const std::size_t i : indices) {
    target.emplace_back(pdfType, packageType, i, Tables::NameOf[i], Tables::DataTypeOf[i], Tables::DimTypeOf[i],
                        Tables::ConstraintTypeOf[i], values[i], 1, bounds.lower ? bounds.lower[i] : 0.0,
                        bounds.upper ? bounds.upper[i] : 0.0, bounds.sum ? bounds.sum[i] : 0.0);
  }
}

// A vector- or matrix-valued variable of a multivariate distribution.
template <class Tables>
ZqRanVar MultiRanVar(std::size_t pdfType, std::size_t packageType, std::size_t i, const std::vector<double>& vals,
                     std::size_t n) {
  return ZqRanVar(pdfType, packageType, i, Tables::NameOf[i], Tables::DataTypeOf[i], Tables::DimTypeOf[i],
                  Tables::ConstraintTypeOf[i], vals, n, 0.0, 0.0, 0.0, false);
}

ZqStatModelResult Refused(std::uint32_t type, const char* routine, const std::string& sentence,
                          const std::string& values) {
  ZqStatModelResult result = ZqMakeFailedResult(type, routine, sentence);
  result.AddExtraComment(values);
  return result;
}

bool Positive(double x) { return x > 0.0; }

// The precision of a multivariate distribution: its covariance or scale
// must be positive definite.
ZqStatModelResult PrecisionOf(std::size_t n, const std::vector<double>& covariance, std::vector<double>& precision,
                              const char* routine) {
  ZqStatModelResult result = ZqMatrixIsPosDef(n, covariance);
  if (result.IsSuccessful()) result = ZqInverseOfPosDefMatrix(n, covariance, precision);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace

ZqStatModelResult ZqNullPDFRanVars::SetupRanVarVecs(ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  const double values[2] = {0.0, 0.0};
  ZqFillRanVarVec<ZqNullPDFRanVars>(parameters, 1, kParameters, {0}, values);
  ZqFillRanVarVec<ZqNullPDFRanVars>(outcomes, 1, kOutcomes, {1}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqUniVarGaussRanVars::SetupRanVarVecs(double mean, double variance, ZqRanVarVec& parameters,
                                                        ZqRanVarVec& outcomes) {
  if (!Positive(variance)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, "ZqUniVarGaussRanVars::SetupRanVarVecs");
  }
  const double values[3] = {mean, 1.0 / variance, 0.0};
  ZqFillRanVarVec<ZqUniVarGaussRanVars>(parameters, 2, kParameters, {0, 1}, values);
  ZqFillRanVarVec<ZqUniVarGaussRanVars>(outcomes, 2, kOutcomes, {2}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqUniVarStudentsTRanVars::SetupRanVarVecs(double degreesOfFreedom, double location,
                                                            double precision, ZqRanVarVec& parameters,
                                                            ZqRanVarVec& outcomes) {
  if (!Positive(degreesOfFreedom) || !Positive(precision)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, "ZqUniVarStudentsTRanVars::SetupRanVarVecs");
  }
  const double values[4] = {degreesOfFreedom, location, precision, 0.0};
  ZqFillRanVarVec<ZqUniVarStudentsTRanVars>(parameters, 4, kParameters, {0, 1, 2}, values);
  ZqFillRanVarVec<ZqUniVarStudentsTRanVars>(outcomes, 4, kOutcomes, {3}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqGammaRanVars::SetupRanVarVecs(double shape, double inverseScale, ZqRanVarVec& parameters,
                                                  ZqRanVarVec& outcomes) {
  if (!Positive(shape) || !Positive(inverseScale)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, "ZqGammaRanVars::SetupRanVarVecs");
  }
  const double values[3] = {shape, inverseScale, 1.0};
  ZqFillRanVarVec<ZqGammaRanVars>(parameters, 6, kParameters, {0, 1}, values);
  ZqFillRanVarVec<ZqGammaRanVars>(outcomes, 6, kOutcomes, {2}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqChiSquareRanVars::SetupRanVarVecs(double degreesOfFreedom, ZqRanVarVec& parameters,
                                                      ZqRanVarVec& outcomes) {
  if (!Positive(degreesOfFreedom)) {
    return Refused(F::LowerBoundViolated, "ZqChiSquareRanVars::SetupRanVarVecs",
                   "Degrees of freedom required to be positive: ", ZqMakeString("argument value = ", degreesOfFreedom));
  }
  const double values[2] = {degreesOfFreedom, 1.0};
  ZqFillRanVarVec<ZqChiSquareRanVars>(parameters, 7, kParameters, {0}, values);
  ZqFillRanVarVec<ZqChiSquareRanVars>(outcomes, 7, kOutcomes, {1}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqSnedecorsFRanVars::SetupRanVarVecs(double numeratorDF, double denominatorDF,
                                                       ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  if (!Positive(numeratorDF) || !Positive(denominatorDF)) {
    return Refused(F::LowerBoundViolated, "ZqSnedecorsFRanVars::SetupRanVarVecs",
                   "Numerator & Denominator Degrees of freedom required to be positive: ",
                   ZqMakeString("argument values = ", numeratorDF, " ", denominatorDF));
  }
  const double values[3] = {numeratorDF, denominatorDF, 1.0};
  ZqFillRanVarVec<ZqSnedecorsFRanVars>(parameters, 8, kParameters, {0, 1}, values);
  ZqFillRanVarVec<ZqSnedecorsFRanVars>(outcomes, 8, kOutcomes, {2}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqBetaRanVars::SetupRanVarVecs(double alpha, double beta, ZqRanVarVec& parameters,
                                                 ZqRanVarVec& outcomes) {
  if (!Positive(alpha) || !Positive(beta)) {
    return Refused(F::LowerBoundViolated, "ZqBetaRanVars::SetupRanVarVecs", "alpha & beta required to be positive: ",
                   ZqMakeString("argument values = ", alpha, " ", beta));
  }
  const double values[3] = {alpha, beta, 1.0};
  const Bounds bounds{LowerBoundOf, UpperBoundOf, VarSumConstraintOf};
  ZqFillRanVarVec<ZqBetaRanVars>(parameters, 9, kParameters, {0, 1}, values, bounds);
  ZqFillRanVarVec<ZqBetaRanVars>(outcomes, 9, kOutcomes, {2}, values, bounds);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqLogNormalRanVars::SetupRanVarVecs(double location, double inverseScale, ZqRanVarVec& parameters,
                                                      ZqRanVarVec& outcomes) {
  if (!Positive(inverseScale)) {
    return Refused(F::LowerBoundViolated, "ZqLogNormalRanVars::SetupRanVarVecs",
                   "inverseScale required to be positive: ", ZqMakeString("argument value = ", inverseScale));
  }
  const double values[3] = {location, inverseScale, 1.0};
  ZqFillRanVarVec<ZqLogNormalRanVars>(parameters, 12, kParameters, {0, 1}, values);
  ZqFillRanVarVec<ZqLogNormalRanVars>(outcomes, 12, kOutcomes, {2}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqGumbelRanVars::SetupRanVarVecs(double location, double scale, ZqRanVarVec& parameters,
                                                   ZqRanVarVec& outcomes) {
  if (!Positive(scale)) {
    return Refused(F::LowerBoundViolated, "ZqGumbelRanVars::SetupRanVarVecs", "scale required to be positive: ",
                   ZqMakeString("argument value = ", scale));
  }
  const double values[3] = {location, scale, 1.0};
  ZqFillRanVarVec<ZqGumbelRanVars>(parameters, 15, kParameters, {0, 1}, values);
  ZqFillRanVarVec<ZqGumbelRanVars>(outcomes, 15, kOutcomes, {2}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs(double location, double scale, double shape,
                                                                    ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  if (!Positive(scale)) {
    return Refused(F::LowerBoundViolated, "ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs",
                   "scale required to be positive: ", ZqMakeString("argument value = ", scale));
  }
  const double values[4] = {location, scale, shape, 1.0};
  ZqFillRanVarVec<ZqGeneralizedExtremeValueRanVars>(parameters, 16, kParameters, {0, 1, 2}, values);
  // The support ends at location - scale / shape, on the side the shape says.
  std::size_t constraint = 1;
  double lower = 0.0, upper = 0.0;
  if (shape > 0.0) {
    constraint = 3;
    lower = location - scale / shape;
  } else if (shape < 0.0) {
    constraint = 5;
    upper = location - scale / shape;
  }
  outcomes.clear();
  outcomes.emplace_back(16, kOutcomes, 3, NameOf[3], DataTypeOf[3], DimTypeOf[3], constraint, values[3], 1, lower,
                        upper, VarSumConstraintOf[3]);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqBinomialRanVars::SetupRanVarVecs(double sampleSize, double successProbability,
                                                     ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  const char* routine = "ZqBinomialRanVars::SetupRanVarVecs";
  if (!Positive(sampleSize)) {
    return Refused(F::LowerBoundViolated, routine, "sampleSize required to be positive: ",
                   ZqMakeString("argument value = ", sampleSize));
  }
  if (!(std::fabs(sampleSize - std::nearbyint(sampleSize)) <= kTolerance)) {
    return Refused(F::IntegerArgumentRequired, routine, "sampleSize required to be an integer: ",
                   ZqMakeString("argument value = ", sampleSize));
  }
  if (!(successProbability >= 0.0 && successProbability <= 1.0)) {
    return Refused(successProbability > 1.0 ? F::UpperBoundViolated : F::LowerBoundViolated, routine,
                   "successProbability required to be between 0 and 1: ",
                   ZqMakeString("argument value = ", successProbability));
  }
  // The outcome starts at zero successes, inside its bounds.
  const double values[3] = {sampleSize, successProbability, 0.0};
  const double upper[3] = {UpperBoundOf[0], UpperBoundOf[1], sampleSize};
  ZqFillRanVarVec<ZqBinomialRanVars>(parameters, 17, kParameters, {0, 1}, values,
                                     {LowerBoundOf, UpperBoundOf, VarSumConstraintOf});
  ZqFillRanVarVec<ZqBinomialRanVars>(outcomes, 17, kOutcomes, {2}, values, {LowerBoundOf, upper, VarSumConstraintOf});
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqUniVarContValRandomSampleRanVars::SetupRanVarVecs(std::size_t pdfTypeDrawnFrom,
                                                                      const std::vector<double>& data,
                                                                      ZqRanVarVec& parameters,
                                                                      ZqRanVarVec& outcomes) {
  if (pdfTypeDrawnFrom > 26) {
    return Refused(F::ArgumentOutOfRange, "ZqUniVarContValRandomSampleRanVars::SetupRanVarVecs",
                   ZqMakeString("pdfTypeDrawnFrom must be less than: ", 27),
                   ZqMakeString("argument value = ", pdfTypeDrawnFrom));
  }
  std::vector<double> sorted = data;
  std::sort(sorted.begin(), sorted.end());
  const double first = sorted.empty() ? 0.0 : sorted.front();
  const double last = sorted.empty() ? 0.0 : sorted.back();
  const double values[5] = {static_cast<double>(sorted.size()), first, last, static_cast<double>(pdfTypeDrawnFrom),
                            0.0};
  ZqFillRanVarVec<ZqUniVarContValRandomSampleRanVars>(parameters, 21, kParameters, {0, 1, 2, 3}, values,
                                                      {LowerBoundOf, UpperBoundOf, VarSumConstraintOf});
  outcomes.clear();
  outcomes.emplace_back(21, kOutcomes, 4, NameOf[4], 1, 1, 1, sorted, 1, first, last, 0.0, true);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqUniVarMixtureRanVars::SetupRanVarVecs(std::size_t numComponents,
                                                          const std::vector<std::size_t>& pdfTypes,
                                                          const std::vector<std::size_t>& numParams,
                                                          const std::vector<double>& probabilities,
                                                          ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  if (pdfTypes.size() != numComponents || numParams.size() != numComponents ||
      probabilities.size() != numComponents) {
    return ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, "ZqUniVarMixtureRanVars:::SetupRanVarVecs",
                              ZqMakeString("Number of components: ", numComponents, "; pdf types: ",
                                           pdfTypes.size(), "; parameter counts: ", numParams.size(),
                                           "; probabilities: ", probabilities.size()));
  }
  const std::vector<double> types(pdfTypes.begin(), pdfTypes.end());
  const std::vector<double> counts(numParams.begin(), numParams.end());
  const std::vector<double>* lists[4] = {nullptr, &types, &counts, &probabilities};
  const std::vector<double> number{static_cast<double>(numComponents)};
  parameters.clear();
  for (std::size_t i = 0; i < 4; ++i) {
    parameters.emplace_back(25, kParameters, i, NameOf[i], DataTypeOf[i], DimTypeOf[i], ConstraintTypeOf[i],
                            i == 0 ? number : *lists[i], 1, 0.0, 0.0, 0.0, false);
  }
  const double values[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
  ZqFillRanVarVec<ZqUniVarMixtureRanVars>(outcomes, 25, kOutcomes, {4}, values);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqMultiVarGaussRanVars::SetupRanVarVecs(const std::vector<double>& mean,
                                                          const std::vector<double>& covariance,
                                                          ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  const std::size_t n = mean.size();
  std::vector<double> precision;
  ZqStatModelResult result = PrecisionOf(n, covariance, precision, "ZqMultiVarGaussRanVars::SetupRanVarVecs");
  if (result.NotSuccessful()) return result;
  parameters = {MultiRanVar<ZqMultiVarGaussRanVars>(3, kParameters, 0, mean, n),
                MultiRanVar<ZqMultiVarGaussRanVars>(3, kParameters, 1, {static_cast<double>(precision.size())}, n),
                MultiRanVar<ZqMultiVarGaussRanVars>(3, kParameters, 2, precision, n)};
  outcomes = {MultiRanVar<ZqMultiVarGaussRanVars>(3, kOutcomes, 3, std::vector<double>(n, 0.0), n)};
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqMultiVarStudentsTRanVars::SetupRanVarVecs(double degreesOfFreedom,
                                                              const std::vector<double>& location,
                                                              const std::vector<double>& scale,
                                                              ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  const std::size_t n = location.size();
  std::vector<double> precision;
  ZqStatModelResult result = PrecisionOf(n, scale, precision, "ZqMultiVarStudentsTRanVars::SetupRanVarVecs");
  if (result.NotSuccessful()) return result;
  parameters = {MultiRanVar<ZqMultiVarStudentsTRanVars>(5, kParameters, 0, {degreesOfFreedom}, n),
                MultiRanVar<ZqMultiVarStudentsTRanVars>(5, kParameters, 1, location, n),
                MultiRanVar<ZqMultiVarStudentsTRanVars>(5, kParameters, 2, {static_cast<double>(precision.size())}, n),
                MultiRanVar<ZqMultiVarStudentsTRanVars>(5, kParameters, 3, precision, n)};
  outcomes = {MultiRanVar<ZqMultiVarStudentsTRanVars>(5, kOutcomes, 4, std::vector<double>(n, 0.0), n)};
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqUniVarGenericRanVars::SetupRanVarVecs(std::size_t pdfType, const std::vector<double>& params,
                                                          ZqRanVarVec& parameters, ZqRanVarVec& outcomes) {
  const char* routine = "ZqUniVarGenericRanVars:::SetupRanVarVecs";
  const std::size_t expected = pdfType == 2 ? 2 : pdfType == 4 ? 3 : 0;
  if (expected == 0) {
    return ZqMakeFailedResult(F::NotYetImplemented, routine, ZqMakeString("pdf type: ", pdfType));
  }
  if (params.size() != expected) {
    return ZqMakeFailedResult(F::WrongNumParameters, routine,
                              ZqMakeString("Number of parameters: ", params.size(), "; Expected ", expected));
  }
  ZqStatModelResult result =
      pdfType == 2 ? ZqUniVarGaussRanVars::SetupRanVarVecs(params[0], params[1], parameters, outcomes)
                   : ZqUniVarStudentsTRanVars::SetupRanVarVecs(params[0], params[1], params[2], parameters, outcomes);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace Varimo
