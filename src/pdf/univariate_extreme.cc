// The laws of maxima: Gumbel and the generalized extreme value law, whose
// percentiles have closed forms.
#include <cmath>

#include "univariate_support.h"
#include "varimo/pdf/univariate_pdfs.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;

// Euler's constant to nine decimals, and pi squared: the Gumbel moments.
constexpr double kEuler = 0.577215665;
constexpr double kPiSquared = 9.869604401089358;

// "shape not 0" is tested as below or above 0, so that a NaN shape takes the
// Gumbel branch.
bool NonZero(double shape) { return shape < 0.0 || shape > 0.0; }

}  // namespace

// ------------------------------------------------------------ Gumbel

ZqGumbelImpl::ZqGumbelImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                           const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(15, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(location_, scale_);
  }
}

bool ZqGumbelImpl::GetParams() {
  ZqStatModelResult result;
  location_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) scale_ = GetCheckedParameterRanVarVal(1, result);
  return result.IsSuccessful();
}

double ZqGumbelImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqGumbelImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqGumbelImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqGumbelImpl::GetDensity", refusal)) return refusal;
  const double e = std::exp(-(x - location_) / scale_);
  return std::exp(-e) * e / scale_;
}

double ZqGumbelImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 2, checkOutcome, result, "ZqGumbelImpl::GetCDF", refusal)) return refusal;
  return std::exp(-std::exp(-(x - location_) / scale_));
}

double ZqGumbelImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGumbelImpl::GetMean")) return kPdfBad;
  result = true;
  return kEuler * scale_ + location_;
}

double ZqGumbelImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGumbelImpl::GetMode")) return kPdfBad;
  result = true;
  return location_;
}

double ZqGumbelImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGumbelImpl::GetVariance")) return kPdfBad;
  result = true;
  return scale_ * scale_ * kPiSquared / 6.0;
}

double ZqGumbelImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  if (!ReadyForPercentile(p, result, "ZqGumbelImpl::GetPercentile")) return kPdfBad;
  result = true;
  return location_ - scale_ * std::log(-std::log(p));
}

// ------------------------------------------------------------ generalized extreme value

ZqGeneralizedExtremeValueImpl::ZqGeneralizedExtremeValueImpl(const std::string& variableName,
                                                             const ZqRanVarVec& parameters,
                                                             const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(16, variableName, parameters, outcomes) {
  if (GetParams()) {
    SetValid();
    generator_.SetParams(location_, scale_, shape_);
  }
}

bool ZqGeneralizedExtremeValueImpl::GetParams() {
  ZqStatModelResult result;
  location_ = GetCheckedParameterRanVarVal(0, result);
  if (result.IsSuccessful()) scale_ = GetCheckedParameterRanVarVal(1, result);
  if (result.IsSuccessful()) shape_ = GetCheckedParameterRanVarVal(2, result);
  return result.IsSuccessful();
}

double ZqGeneralizedExtremeValueImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  if (!Ready(result, "ZqGeneralizedExtremeValueImpl::GetRandomOutcome")) return kPdfBad;
  result = true;
  return generator_(engine);
}

double ZqGeneralizedExtremeValueImpl::GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 3, checkOutcome, result, "ZqGeneralizedExtremeValueImpl::GetDensity", refusal)) return refusal;
  const double z = (x - location_) / scale_;
  if (NonZero(shape_)) {
    const double s = z * shape_ + 1.0;
    const double u = std::exp(-std::log(s) / shape_);
    return (1.0 / scale_) * (u / s) * std::exp(-u);
  }
  const double e = std::exp(-z);
  return std::exp(-e) * e / scale_;
}

double ZqGeneralizedExtremeValueImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 3, checkOutcome, result, "ZqGeneralizedExtremeValueImpl::GetCDF", refusal)) return refusal;
  const double z = (x - location_) / scale_;
  if (NonZero(shape_)) return std::exp(-std::exp(-std::log(z * shape_ + 1.0) / shape_));
  return std::exp(-std::exp(-z));
}

double ZqGeneralizedExtremeValueImpl::GetMean(ZqStatModelResult& result) const {
  const char* routine = "ZqGeneralizedExtremeValueImpl::GetMean";
  if (!Ready(result, routine)) return kPdfBad;
  if (shape_ >= 1.0) return ZqUndefinedMoment(result, F::MeanIsUndefined, routine);
  result = true;
  if (NonZero(shape_)) return (std::exp(Numarc::Zqlgamma(1.0 - shape_)) - 1.0) * scale_ / shape_ + location_;
  return kEuler * scale_ + location_;
}

double ZqGeneralizedExtremeValueImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqGeneralizedExtremeValueImpl::GetMode")) return kPdfBad;
  result = true;
  if (NonZero(shape_)) return location_ + (std::exp(std::log(1.0 + shape_) * -shape_) - 1.0) * scale_ / shape_;
  return location_;
}

double ZqGeneralizedExtremeValueImpl::GetVariance(ZqStatModelResult& result) const {
  const char* routine = "ZqGeneralizedExtremeValueImpl::GetVariance";
  if (!Ready(result, routine)) return kPdfBad;
  if (shape_ >= 0.5) return ZqUndefinedMoment(result, F::VarianceIsUndefined, routine);
  result = true;
  if (NonZero(shape_)) {
    const double g1 = std::exp(Numarc::Zqlgamma(1.0 - shape_));
    const double g2 = std::exp(Numarc::Zqlgamma(1.0 - 2.0 * shape_));
    return (g2 - g1 * g1) * scale_ * scale_ / (shape_ * shape_);
  }
  return scale_ * scale_ * kPiSquared / 6.0;
}

double ZqGeneralizedExtremeValueImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  if (!ReadyForPercentile(p, result, "ZqGeneralizedExtremeValueImpl::GetPercentile")) return kPdfBad;
  result = true;
  double y = -std::log(-std::log(p));
  if (NonZero(shape_)) y = (std::exp(y * shape_) - 1.0) / shape_;
  return y * scale_ + location_;
}

}  // namespace Varimo
