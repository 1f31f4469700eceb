#include "varimo/pdf/npdf_impl.h"

#include "varimo/foundations/stats_data_types.h"

namespace Varimo {

namespace {

namespace F = ZqStatModelFailureType;

// Every request of the null distribution: a failure at `routine` and the
// bad double.
double NullAnswer(ZqStatModelResult& result, const char* routine) {
  result = ZqMakeFailedResult(F::NullProbDistFunc, routine);
  return VarimoBadData::BadDouble;
}

}  // namespace

// --- nZqProbDistFuncImpl

nZqProbDistFuncImpl::nZqProbDistFuncImpl() : pdfType_(nZqPDFType::UnknownPDF) {}

nZqProbDistFuncImpl::nZqProbDistFuncImpl(std::size_t pdfType, const std::vector<nZqRanVar>& ranVars)
    : pdfType_(pdfType), ranVars_(ranVars) {}

nZqProbDistFuncImpl::~nZqProbDistFuncImpl() = default;

std::string nZqProbDistFuncImpl::GetPDFName() const {
  return nZqPDFType::NameOf[pdfType_ < nZqPDFType::NumTypes ? pdfType_ : nZqPDFType::UnknownPDF];
}

const nZqRanVar& nZqProbDistFuncImpl::GetRanVar(ZqStatModelResult& result, std::uint32_t majorType,
                                                std::uint32_t minorType) const {
  for (const nZqRanVar& ranVar : ranVars_) {
    if (ranVar.IsDesiredType(majorType, minorType)) {
      result = true;
      return ranVar;
    }
  }
  result = ZqMakeFailedResult(F::RanVarNotFound, "nZqProbDistFuncImpl::GetRanVar");
  return BadRanVar();
}

std::string nZqProbDistFuncImpl::PrintRanVars(std::size_t printLimit) const {
  std::string text = "\n%%%%%%%%%%%%%%%%%%%%%%%%%%%%%\n";
  for (const nZqRanVar& ranVar : ranVars_) text += ranVar.Print(printLimit) + "\n---------------------\n";
  return text;
}

// --- nZqUniVarPDFImpl

nZqUniVarPDFImpl::nZqUniVarPDFImpl(std::size_t pdfType, const std::string& variableName,
                                   const std::vector<nZqRanVar>& ranVars)
    : nZqProbDistFuncImpl(pdfType, ranVars), variableName_(variableName) {}

std::string nZqUniVarPDFImpl::GetVariableName() const { return variableName_; }

// --- nZqUniVarNullPDFImpl. The routine names carry no leading "n": reports
// of the two distribution frames read alike.

nZqUniVarNullPDFImpl::nZqUniVarNullPDFImpl(const std::string& variableName, const std::vector<nZqRanVar>& ranVars)
    : nZqUniVarPDFImpl(nZqPDFType::NullPDF, variableName, ranVars) {}

double nZqUniVarNullPDFImpl::GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine&) {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetRandomOutcome");
}

double nZqUniVarNullPDFImpl::GetDensity(ZqStatModelResult& result, double, bool) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetDensity");
}

double nZqUniVarNullPDFImpl::GetMean(ZqStatModelResult& result) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetMean");
}

double nZqUniVarNullPDFImpl::GetMode(ZqStatModelResult& result) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetMode");
}

double nZqUniVarNullPDFImpl::GetVariance(ZqStatModelResult& result) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetVariance");
}

double nZqUniVarNullPDFImpl::GetPercentile(ZqStatModelResult& result, double) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetPercentile");
}

double nZqUniVarNullPDFImpl::GetCDF(ZqStatModelResult& result, double, bool) const {
  return NullAnswer(result, "ZqUniVarNullPDFImpl::GetCDF");
}

}  // namespace Varimo
