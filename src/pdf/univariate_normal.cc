// The Gaussian and Student's t laws.
#include <cmath>

#include "inverse_cdf.h"
#include "univariate_support.h"
#include "varimo/pdf/univariate_pdfs.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {
namespace F = ZqStatModelFailureType;
}

// ------------------------------------------------------------ Gaussian

ZqUniVarGaussImpl::ZqUniVarGaussImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                     const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(2, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(mean_, std::sqrt(1.0 / precision_));
  }
}

bool ZqUniVarGaussImpl::GetParams() {
  ZqStatModelResult result;
  mean_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) precision_ = GetCheckedParameterRanVarVal(1, result);
  if (result.NotSuccessful()) return false;
  logNorm_ = 0.5 * std::log(precision_ / 6.283185307179586);
  return true;
}

double ZqUniVarGaussImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqUniVarGaussImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqUniVarGaussImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqUniVarGaussImpl::GetDensity", refusal)) return refusal;
  const double d = x - mean_;
  return std::exp(logNorm_ - precision_ * (d * 0.5 * d));
}

double ZqUniVarGaussImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqUniVarGaussImpl::GetCDF", refusal)) return refusal;
  const double d = x - mean_;
  return (Numarc::Zqerf(d * std::sqrt(precision_) / 1.4142135623730951) + 1.0) * 0.5;
}

double ZqUniVarGaussImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarGaussImpl::GetMean")) return kPdfBad;
  result = true;
  return mean_;
}

double ZqUniVarGaussImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarGaussImpl::GetMode")) return kPdfBad;
  result = true;
  return mean_;
}

double ZqUniVarGaussImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarGaussImpl::GetVariance")) return kPdfBad;
  result = true;
  return 1.0 / precision_;
}

double ZqUniVarGaussImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarGaussImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  const double lower = GetLowerBoundOnInverseCDF(*this, p, result);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  const double upper = GetUpperBoundOnInverseCDF(*this, p, 0.0, result);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  const double x = InverseContinuousCDF(result, *this, p, lower, upper, kInverseCDFTolerance, kInverseCDFTolerance);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  return x;
}

// ------------------------------------------------------------ Student's t

ZqUniVarStudentsTImpl::ZqUniVarStudentsTImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                             const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(4, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(location_, std::sqrt(1.0 / precision_), degreesOfFreedom_);
  }
}

bool ZqUniVarStudentsTImpl::GetParams() {
  ZqStatModelResult result;
  degreesOfFreedom_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) location_ = GetCheckedParameterRanVarVal(1, result);
  if (result.IsSuccessful()) precision_ = GetCheckedParameterRanVarVal(2, result);
  if (result.NotSuccessful()) return false;
  const double nu = degreesOfFreedom_;
  logNorm_ = Numarc::Zqlgamma((1.0 + nu) / 2.0) - Numarc::Zqlgamma(nu / 2.0) +
             0.5 * std::log(precision_ / (3.141592653589793 * nu));
  return true;
}

double ZqUniVarStudentsTImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqUniVarStudentsTImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqUniVarStudentsTImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 3, checkOutcome, result, "ZqUniVarStudentsTImpl::GetDensity", refusal)) return refusal;
  const double nu = degreesOfFreedom_;
  const double d = x - location_;
  return std::exp(logNorm_ - (nu + 1.0) * 0.5 * std::log(precision_ * d * d / nu + 1.0));
}

double ZqUniVarStudentsTImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 3, checkOutcome, result, "ZqUniVarStudentsTImpl::GetCDF", refusal)) return refusal;
  const double nu = degreesOfFreedom_;
  const double d = x - location_;
  // The tail beyond |d|, by symmetry from one incomplete beta function.
  const double tail = 0.5 * Numarc::ZqIncompleteBeta(0.5 * nu, 0.5, nu / (precision_ * d * d + nu));
  return x >= location_ ? 1.0 - tail : tail;
}

double ZqUniVarStudentsTImpl::GetMean(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarStudentsTImpl::GetMean";
  if (!Ready(result, routine)) return kPdfBad;
  if (1.0 >= degreesOfFreedom_) return ZqUndefinedMoment(result, F::MeanIsUndefined, routine);
  result = true;
  return location_;
}

double ZqUniVarStudentsTImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarStudentsTImpl::GetMode")) return kPdfBad;
  result = true;
  return location_;
}

double ZqUniVarStudentsTImpl::GetVariance(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarStudentsTImpl::GetVariance";
  if (!Ready(result, routine)) return kPdfBad;
  if (2.0 >= degreesOfFreedom_) return ZqUndefinedMoment(result, F::VarianceIsUndefined, routine);
  result = true;
  return degreesOfFreedom_ / ((degreesOfFreedom_ - 2.0) * precision_);
}

double ZqUniVarStudentsTImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarStudentsTImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  const double lower = GetLowerBoundOnInverseCDF(*this, p, result);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  const double upper = GetUpperBoundOnInverseCDF(*this, p, 0.0, result);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  // The incomplete beta function is less exact than erf: looser tolerances.
  const double x = InverseContinuousCDF(result, *this, p, lower, upper, 5e-8, 5e-10);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  return x;
}

}  // namespace Varimo
