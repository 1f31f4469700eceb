// The empirical law of a drawn sample.
#include <algorithm>
#include <cmath>

#include "univariate_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/ranvar/ran_var_setup.h"
#include "varimo/ranvar/ran_var_types.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {
namespace {
namespace F = ZqStatModelFailureType;
}

ZqUniVarContValRandomSampleImpl::ZqUniVarContValRandomSampleImpl(const std::string& variableName,
                                                                 const ZqRanVarVec& parameters,
                                                                 const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(ZqPDFType::UniVariateContValRandomSample, variableName, parameters, outcomes) {
  if (GetData()) SetValid();
}

bool ZqUniVarContValRandomSampleImpl::GetData() {
  ZqStatModelResult result;
  const double number = GetSingleParameterRanVarVal(0, result);
  if (result.NotSuccessful() || !(number >= 0.0 && number < 1e12)) return false;
  const std::size_t n = static_cast<std::size_t>(std::llround(number));
  data_.clear();
  for (const double v : GetOutcomeRanVarVals(4, n, result)) data_.push_back(v);
  if (result.NotSuccessful()) return false;
  // Sum and sum of squares in one pass.
  double sum = 0.0, squares = 0.0;
  for (const double v : data_) {
    sum += v;
    squares += v * v;
  }
  mean_ = n > 0 ? sum / static_cast<double>(n) : kPdfBad;
  variance_ = n >= 2 ? (squares - mean_ * sum) / static_cast<double>(n - 1) : kPdfBad;
  std::sort(data_.begin(), data_.end());
  // Indices 0 to n - 1 (the generator includes both ends).
  if (n > 0) uniformIntRNG_.SetParams(0, static_cast<long>(n) - 1);
  return true;
}

std::string ZqUniVarContValRandomSampleImpl::Print(std::size_t limit) const {
  ZqStatModelResult result;
  const double drawnFrom = GetSingleParameterRanVarVal(3, result);
  const auto type = static_cast<std::size_t>(result.IsSuccessful() && drawnFrom >= 0.0 ? drawnFrom : 0.0);
  const std::string drawnName = type < ZqPDFType::NumTypes ? ZqPDFType::NameOf[type] : "";
  return "PDF: " + GetPDFName() + "; Drawn from " + drawnName + "\n Variable name: " + GetVariableName() +
         PrintRanVars(limit);
}

double ZqUniVarContValRandomSampleImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
  const char* routine = "ZqUniVarContValRandomSampleImpl::GetRandomOutcome";
  if (!Ready(result, routine)) return kPdfBad;
  if (data_.empty()) {
    result = ZqMakeFailedResult(F::NoData, routine);
    return kPdfBad;
  }
  result = true;
  return data_[static_cast<std::size_t>(uniformIntRNG_(engine))];
}

double ZqUniVarContValRandomSampleImpl::GetDensity(double, ZqStatModelResult& result, bool) const {
  const char* routine = "ZqUniVarContValRandomSampleImpl::GetDensity";
  if (!Ready(result, routine)) return kPdfBad;
  return ZqUndefinedMoment(result, F::DensityIsUndefined, routine);
}

double ZqUniVarContValRandomSampleImpl::GetMode(ZqStatModelResult& result) const {
  const char* routine = "ZqUniVarContValRandomSampleImpl::GetMode";
  if (!Ready(result, routine)) return kPdfBad;
  return ZqUndefinedMoment(result, F::ModeIsUndefined, routine);
}

double ZqUniVarContValRandomSampleImpl::GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
  double refusal;
  if (!ReadyFor(x, 4, checkOutcome, result, "ZqUniVarContValRandomSampleImpl::GetCDF", refusal)) return refusal;
  return ZqEmpiricalCDF(x, data_);
}

double ZqUniVarContValRandomSampleImpl::GetPercentile(double p, ZqStatModelResult& result) const {
  if (!ReadyForPercentile(p, result, "ZqUniVarContValRandomSampleImpl::GetPercentile")) return kPdfBad;
  result = true;
  return ZqQuantile(p, data_, 8);
}

double ZqUniVarContValRandomSampleImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarContValRandomSampleImpl::GetMean")) return kPdfBad;
  result = true;
  return mean_;
}

double ZqUniVarContValRandomSampleImpl::GetVariance(ZqStatModelResult& result) const {
  if (!Ready(result, "ZqUniVarContValRandomSampleImpl::GetVariance")) return kPdfBad;
  result = true;
  return variance_;
}

ZqUniVarPDF ZqUniVarContValRandomSample(ZqStatModelResult& result, ZqUniVarPDF& pdf, Numarc::ZqRanNumEngine& engine,
                                        std::size_t n) {
  const char* routine = "ZqUniVarContValRandomSample";
  std::vector<double> draws;
  draws.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    draws.push_back(pdf.GetRandomOutcome(result, engine));
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      ZqRanVarVec parameters, outcomes;
      ZqNullPDFRanVars::SetupRanVarVecs(parameters, outcomes);
      return ZqUniVarPDF(ZqPDFType::NullPDF, pdf.GetVariableName(), parameters, outcomes);
    }
  }
  ZqRanVarVec parameters, outcomes;
  result = ZqUniVarContValRandomSampleRanVars::SetupRanVarVecs(pdf.GetImpl()->GetPDFType(), draws, parameters,
                                                               outcomes);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(pdf.GetVariableName());
  }
  return ZqUniVarPDF(ZqPDFType::UniVariateContValRandomSample, pdf.GetVariableName(), parameters, outcomes);
}

}  // namespace Varimo
