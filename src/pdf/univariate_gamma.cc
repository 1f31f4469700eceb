// The laws on the positive half-line built on the incomplete gamma and
// beta functions: Gamma, chi-squared, Snedecor's F, and the Beta law on
// [0, 1].
#include <cmath>

#include "inverse_cdf.h"
#include "univariate_support.h"
#include "varimo/pdf/univariate_pdfs.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Numarc::Zqlgamma;

// The percentile of a law on [0, inf): the bracket grows upward from 1.
double PositivePercentile(const ZqUniVarPDFImpl& pdf, double p, ZqStatModelResult& result, const char* routine) {
  const double upper = GetUpperBoundOnInverseCDF(pdf, p, 1.0, result);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  const double x = InverseContinuousCDF(result, pdf, p, 0.0, upper, kInverseCDFTolerance, kInverseCDFTolerance);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  return x;
}

}  // namespace

// ------------------------------------------------------------ Gamma

ZqGammaImpl::ZqGammaImpl(const std::string& variableName, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(6, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(shape_, 1.0 / inverseScale_);
  }
}

bool ZqGammaImpl::GetParams() {
  ZqStatModelResult result;
  shape_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) inverseScale_ = GetCheckedParameterRanVarVal(1, result);
  if (result.NotSuccessful()) return false;
  logNorm_ = shape_ * std::log(inverseScale_) - Zqlgamma(shape_);
  return true;
}

double ZqGammaImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqGammaImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqGammaImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqGammaImpl::GetDensity", refusal)) return refusal;
  return std::exp((shape_ - 1.0) * std::log(x) - x * inverseScale_ + logNorm_);
}

double ZqGammaImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqGammaImpl::GetCDF", refusal)) return refusal;
  return Numarc::ZqIncompleteGamma(shape_, x * inverseScale_);
}

// The moments of the Gamma and chi-squared laws write the result only when
// they fail.
double ZqGammaImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGammaImpl::GetMean")) return kPdfBad;
  return shape_ / inverseScale_;
}

double ZqGammaImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGammaImpl::GetMode")) return kPdfBad;
  return (shape_ > 1.0 ? shape_ - 1.0 : 0.0) / inverseScale_;
}

double ZqGammaImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGammaImpl::GetVariance")) return kPdfBad;
  return shape_ / (inverseScale_ * inverseScale_);
}

double ZqGammaImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqGammaImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  return PositivePercentile(*this, p, result, routine);
}

// ------------------------------------------------------------ chi-squared

ZqChiSquareImpl::ZqChiSquareImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                 const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(7, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(degreesOfFreedom_);
  }
}

bool ZqChiSquareImpl::GetParams() {
  ZqStatModelResult result;
  degreesOfFreedom_ = GetCheckedParameterRanVarVal(0, result);
  if (result.NotSuccessful()) return false;
  const double d = degreesOfFreedom_;
  logNorm_ = -0.5 * d * 0.6931471805599453 - Zqlgamma(0.5 * d);
  return true;
}

double ZqChiSquareImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  // Reported under the Gamma law's name, as it always has been.
  if (!Ready(result, "ZqGammaImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqChiSquareImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 1, checkOutcome, result, "ZqChiSquareImpl::GetDensity", refusal)) return refusal;
  return std::exp((0.5 * degreesOfFreedom_ - 1.0) * std::log(x) - 0.5 * x + logNorm_);
}

double ZqChiSquareImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 1, checkOutcome, result, "ZqChiSquareImpl::GetCDF", refusal)) return refusal;
  return Numarc::ZqIncompleteGamma(0.5 * degreesOfFreedom_, 0.5 * x);
}

double ZqChiSquareImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqChiSquareImpl::GetMean")) return kPdfBad;
  return degreesOfFreedom_;
}

double ZqChiSquareImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqChiSquareImpl::GetMode")) return kPdfBad;
  return degreesOfFreedom_ > 2.0 ? degreesOfFreedom_ - 2.0 : 0.0;
}

double ZqChiSquareImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqChiSquareImpl::GetVariance")) return kPdfBad;
  return 2.0 * degreesOfFreedom_;
}

double ZqChiSquareImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqChiSquareImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  return PositivePercentile(*this, p, result, routine);
}

// ------------------------------------------------------------ Snedecor's F

ZqSnedecorsFImpl::ZqSnedecorsFImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                   const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(8, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(numeratorDF_, denominatorDF_);
  }
}

bool ZqSnedecorsFImpl::GetParams() {
  ZqStatModelResult result;
  numeratorDF_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) denominatorDF_ = GetCheckedParameterRanVarVal(1, result);
  if (result.NotSuccessful()) return false;
  const double d1 = numeratorDF_, d2 = denominatorDF_;
  logNorm_ = Zqlgamma((d1 + d2) / 2.0) - Zqlgamma(d1 / 2.0) - Zqlgamma(d2 / 2.0) + (d1 / 2.0) * std::log(d1 / d2);
  return true;
}

double ZqSnedecorsFImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqSnedecorsFImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqSnedecorsFImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqSnedecorsFImpl::GetDensity", refusal)) return refusal;
  const double d1 = numeratorDF_, d2 = denominatorDF_;
  return std::exp(logNorm_ + (0.5 * d1 - 1.0) * std::log(x) - (d2 + d1) * 0.5 * std::log(x * d1 / d2 + 1.0));
}

double ZqSnedecorsFImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqSnedecorsFImpl::GetCDF", refusal)) return refusal;
  const double d1 = numeratorDF_, d2 = denominatorDF_;
  return 1.0 - Numarc::ZqIncompleteBeta(0.5 * d2, 0.5 * d1, d2 / (x * d1 + d2));
}

double ZqSnedecorsFImpl::GetMean(ZqStatModelResult& result) const {
  const char* routine = "ZqSnedecorsFImpl::GetMean";
  if (!Ready(result, routine)) return kPdfBad;
  const double d2 = denominatorDF_;
  if (2.0 >= d2) return ZqUndefinedMoment(result, F::MeanIsUndefined, routine);
  result = true;
  return d2 / (d2 - 2.0);
}

double ZqSnedecorsFImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqSnedecorsFImpl::GetMode")) return kPdfBad;
  const double d1 = numeratorDF_, d2 = denominatorDF_;
  result = true;
  return ((d1 > 2.0 ? d1 - 2.0 : 0.0) / d1) * d2 / (d2 + 2.0);
}

double ZqSnedecorsFImpl::GetVariance(ZqStatModelResult& result) const {
  const char* routine = "ZqSnedecorsFImpl::GetVariance";
  if (!Ready(result, routine)) return kPdfBad;
  const double d1 = numeratorDF_, d2 = denominatorDF_;
  if (4.0 >= d2) return ZqUndefinedMoment(result, F::VarianceIsUndefined, routine);
  result = true;
  return 2.0 * d2 * d2 * (d2 + d1 - 2.0) / (d1 * (d2 - 2.0) * (d2 - 2.0) * (d2 - 4.0));
}

double ZqSnedecorsFImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqSnedecorsFImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  return PositivePercentile(*this, p, result, routine);
}

// ------------------------------------------------------------ Beta

ZqBetaImpl::ZqBetaImpl(const std::string& variableName, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(9, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(alpha_, beta_);
  }
}

bool ZqBetaImpl::GetParams() {
  ZqStatModelResult result;
  alpha_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) beta_ = GetCheckedParameterRanVarVal(1, result);
  if (result.NotSuccessful()) return false;
  logNorm_ = Zqlgamma(alpha_ + beta_) - Zqlgamma(alpha_) - Zqlgamma(beta_);
  return true;
}

double ZqBetaImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqBetaImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqBetaImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqBetaImpl::GetDensity", refusal)) return refusal;
  return std::exp((alpha_ - 1.0) * std::log(x) + (beta_ - 1.0) * std::log(1.0 - x) + logNorm_);
}

double ZqBetaImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqBetaImpl::GetCDF", refusal)) return refusal;
  return Numarc::ZqIncompleteBeta(alpha_, beta_, x);
}

double ZqBetaImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqBetaImpl::GetMean")) return kPdfBad;
  result = true;
  return alpha_ / (beta_ + alpha_);
}

double ZqBetaImpl::GetMode(ZqStatModelResult& result) const {
  const char* routine = "ZqBetaImpl::GetMode";
  if (!Ready(result, routine)) return kPdfBad;
  if (!(alpha_ > 1.0 && beta_ > 1.0)) return ZqUndefinedMoment(result, F::ModeIsUndefined, routine);
  result = true;
  return (alpha_ - 1.0) / (alpha_ + beta_ - 2.0);
}

double ZqBetaImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqBetaImpl::GetVariance")) return kPdfBad;
  result = true;
  const double sum = alpha_ + beta_;
  return alpha_ * beta_ / ((sum + 1.0) * sum * sum);
}

double ZqBetaImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  const char* routine = "ZqBetaImpl::GetPercentile";
  if (!ReadyForPercentile(p, result, routine)) return kPdfBad;
  const double x = InverseContinuousCDF(result, *this, p, 0.0, 1.0, kInverseCDFTolerance, kInverseCDFTolerance);
  if (result.NotSuccessful()) return ZqPercentileSearchFailed(result, routine);
  return x;
}

}  // namespace Varimo
