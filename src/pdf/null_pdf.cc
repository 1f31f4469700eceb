#include "varimo/pdf/null_pdf.h"

#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

constexpr double kBad = VarimoBadData::BadDouble;

double Refuse(ZqStatModelResult& result, const char* routine) {
  result = ZqMakeFailedResult(ZqStatModelFailureType::NullProbDistFunc, routine);
  return kBad;
}

}  // namespace

ZqUniVarNullPDFImpl::ZqUniVarNullPDFImpl(const std::string& variableName)
    : ZqUniVarNullPDFImpl(variableName, {}, {}) {}
ZqUniVarNullPDFImpl::ZqUniVarNullPDFImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                         const ZqRanVarVec& outcomes)
    : ZqUniVarPDFImpl(1, variableName, parameters, outcomes) {}

double ZqUniVarNullPDFImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine&) {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetRandomOutcome");
}
double ZqUniVarNullPDFImpl::GetDensity(double, ZqStatModelResult& result, bool) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetDensity");
}
double ZqUniVarNullPDFImpl::GetMean(ZqStatModelResult& result) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetMean");
}
double ZqUniVarNullPDFImpl::GetMode(ZqStatModelResult& result) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetMode");
}
double ZqUniVarNullPDFImpl::GetVariance(ZqStatModelResult& result) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetVariance");
}
double ZqUniVarNullPDFImpl::GetPercentile(double, ZqStatModelResult& result) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetPercentile");
}
double ZqUniVarNullPDFImpl::GetCDF(double, ZqStatModelResult& result, bool) const {
  return Refuse(result, "ZqUniVarNullPDFImpl::GetCDF");
}

ZqMultiVarNullPDFImpl::ZqMultiVarNullPDFImpl(const std::vector<std::string>& variableNames)
    : ZqMultiVarNullPDFImpl(variableNames, {}, {}) {}
ZqMultiVarNullPDFImpl::ZqMultiVarNullPDFImpl(const std::vector<std::string>& variableNames,
                                             const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqMultiVarPDFImpl(1, variableNames, parameters, outcomes) {}

Corvane::ZqIter<const double> ZqMultiVarNullPDFImpl::GetRandomOutcome(ZqStatModelResult& result,
                                                                      Numarc::ZqRanNumEngine&) {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetRandomOutcome");
  return {};
}
double ZqMultiVarNullPDFImpl::GetDensity(const std::vector<double>&, ZqStatModelResult& result, bool) const {
  return Refuse(result, "ZqMultiVarNullPDFImpl::GetDensity");
}
Corvane::ZqIter<const double> ZqMultiVarNullPDFImpl::GetMean(ZqStatModelResult& result) const {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetMean");
  return {};
}
Corvane::ZqIter<const double> ZqMultiVarNullPDFImpl::GetCovariance(ZqStatModelResult& result) const {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetCovariance");
  return {};
}
Corvane::ZqIter<const double> ZqMultiVarNullPDFImpl::GetMode(ZqStatModelResult& result) const {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetMode");
  return {};
}
ZqMultiVarPDF ZqMultiVarNullPDFImpl::GetMultivariateMarginal(const std::vector<std::string>& names,
                                                             ZqStatModelResult& result) const {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetMultivariateMarginal");
  return ZqMultiVarPDF(std::make_unique<ZqMultiVarNullPDFImpl>(names));
}
ZqUniVarPDF ZqMultiVarNullPDFImpl::GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const {
  Refuse(result, "ZqMultiVarNullPDFImpl::GetUnivariateMarginal");
  return ZqUniVarPDF(std::make_unique<ZqUniVarNullPDFImpl>(name));
}

}  // namespace Varimo
