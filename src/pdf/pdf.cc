// The frame shared by all distributions: reading parameters from the
// random variables, checking outcomes against their support, printing,
// and the value handles.
#include "varimo/pdf/pdf.h"

#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/pdf/null_pdf.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
constexpr double kBad = VarimoBadData::BadDouble;

const ZqRanVar* FindRanVar(const ZqRanVarVec& vars, std::size_t ranVarType) {
  for (const ZqRanVar& var : vars) {
    if (var.GetRanVarType() == ranVarType) return &var;
  }
  return nullptr;
}

// The values of the variable of that type, when there are `expected` of them.
Corvane::ZqIter<const double> RanVarVals(const ZqRanVarVec& vars, std::size_t ranVarType, std::size_t expected,
                                         ZqStatModelResult& result, const char* routine) {
  const ZqRanVar* var = FindRanVar(vars, ranVarType);
  if (var == nullptr) {
    result = ZqMakeFailedResult(F::RanVarNotFound, routine, Corvane::ZqMakeString("Random Var Type: ", ranVarType));
    return {};
  }
  if (var->GetNumRanVarVals() != expected) {
    result = ZqMakeFailedResult(F::WrongNumParameters, routine,
                                Corvane::ZqMakeString("NumRanVarVals = ", var->GetNumRanVarVals(), "; Expected ",
                                                      expected));
    return {};
  }
  result = true;
  return var->GetRanVarVals();
}

}  // namespace

double GetReturnValForFalseResultOfOutcomeRanVarCheck(const ZqStatModelResult& result) {
  switch (result.GetFailureType()) {
    case F::IntegerArgumentRequired:
    case F::LowerBoundViolated:
    case F::UpperBoundViolated:
    case F::SumOfArgumentsWrong:
      return 0.0;
    default:
      return kBad;
  }
}

// ------------------------------------------------------------ ZqProbDistFuncImpl

ZqProbDistFuncImpl::ZqProbDistFuncImpl(std::size_t pdfType, const ZqRanVarVec& parameters,
                                       const ZqRanVarVec& outcomes)
    : pdfType_(pdfType), parameterRanVars_(parameters), outcomeRanVars_(outcomes) {}

Corvane::ZqIter<const ZqRanVar> ZqProbDistFuncImpl::GetParameterRanVars() const {
  return Corvane::ZqMakeOwnedIter<const ZqRanVar>(parameterRanVars_);
}

Corvane::ZqIter<const ZqRanVar> ZqProbDistFuncImpl::GetOutcomeRanVars() const {
  return Corvane::ZqMakeOwnedIter<const ZqRanVar>(outcomeRanVars_);
}

std::string ZqProbDistFuncImpl::GetPDFName() const {
  return pdfType_ < ZqPDFType::NumTypes ? ZqPDFType::NameOf[pdfType_] : "";
}

Corvane::ZqIter<const double> ZqProbDistFuncImpl::GetParameterRanVarVals(std::size_t ranVarType,
                                                                         std::size_t expectedCount,
                                                                         ZqStatModelResult& result) const {
  return RanVarVals(parameterRanVars_, ranVarType, expectedCount, result,
                    "ZqProbDistFuncImpl::GetParameterRanVarVals");
}

Corvane::ZqIter<const double> ZqProbDistFuncImpl::GetOutcomeRanVarVals(std::size_t ranVarType,
                                                                       std::size_t expectedCount,
                                                                       ZqStatModelResult& result) const {
  return RanVarVals(outcomeRanVars_, ranVarType, expectedCount, result, "ZqProbDistFuncImpl::GetOutcomeRanVarVals");
}

double ZqProbDistFuncImpl::GetSingleParameterRanVarVal(std::size_t ranVarType, ZqStatModelResult& result) const {
  const Corvane::ZqIter<const double> values =
      RanVarVals(parameterRanVars_, ranVarType, 1, result, "ZqProbDistFuncImpl::GetSingleParameterRanVarVal");
  return result.IsSuccessful() ? *values : kBad;
}

double ZqProbDistFuncImpl::GetCheckedParameterRanVarVal(std::size_t ranVarType, ZqStatModelResult& result) const {
  const double value = GetSingleParameterRanVarVal(ranVarType, result);
  if (result.NotSuccessful()) return kBad;
  const char* routine = "ZqProbDistFuncImpl::GetCheckedParameterRanVarVal";
  if (!std::isfinite(value)) {
    result = ZqMakeFailedResult(F::ArgumentValueWrong, routine, Corvane::ZqMakeString("Parameter value is ", value));
    return kBad;
  }
  result = FindRanVar(parameterRanVars_, ranVarType)->CheckIfRanVarValsAreOk(std::vector<double>{value});
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return kBad;
  }
  return value;
}

ZqStatModelResult ZqProbDistFuncImpl::CheckIfValsAreOkForOutcomeRanVar(std::size_t ranVarType,
                                                                       const std::vector<double>& vals) const {
  const char* routine = "ZqProbDistFuncImpl::CheckIfValsAreOkForOutcomeRanVar";
  const ZqRanVar* var = FindRanVar(outcomeRanVars_, ranVarType);
  if (var == nullptr) {
    return ZqMakeFailedResult(F::RanVarNotFound, routine, Corvane::ZqMakeString("Random Var Type: ", ranVarType));
  }
  ZqStatModelResult result = var->CheckIfRanVarValsAreOk(vals);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqProbDistFuncImpl::CheckIfValIsOkForOutcomeRanVar(std::size_t ranVarType, double val) const {
  ZqStatModelResult result = CheckIfValsAreOkForOutcomeRanVar(ranVarType, std::vector<double>{val});
  if (result.NotSuccessful()) result.AddCallContext("ZqProbDistFuncImpl::CheckIfValIsOkForOutcomeRanVar");
  return result;
}

std::string ZqProbDistFuncImpl::PrintRanVars(std::size_t limit) const {
  const char* banner = "\n%%%%%%%%%%%%%%%%%%%%%%%%%%%%%\n";
  std::string text = banner;
  for (const ZqRanVar& var : parameterRanVars_) text += var.Print(limit) + "\n---------------------\n";
  text += banner;
  for (const ZqRanVar& var : outcomeRanVars_) text += var.Print(limit) + "\n---------------------\n";
  return text;
}

// ------------------------------------------------------------ univariate and multivariate frames

ZqUniVarPDFImpl::ZqUniVarPDFImpl(std::size_t pdfType, const std::string& variableName,
                                 const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqProbDistFuncImpl(pdfType, parameters, outcomes), variableName_(variableName) {}

std::string ZqUniVarPDFImpl::GetVariableName() const { return variableName_; }

bool ZqUniVarPDFImpl::Ready(ZqStatModelResult& result, const char* routine) const {
  if (Valid()) return true;
  result = ZqMakeFailedResult(F::InvalidProbDistFunc, routine);
  return false;
}

bool ZqUniVarPDFImpl::ReadyFor(double x, std::size_t outcomeType, bool checkOutcome, ZqStatModelResult& result,
                               const char* routine, double& refusal) const {
  refusal = kBad;
  if (!Ready(result, routine)) return false;
  if (checkOutcome) {
    result = CheckIfValIsOkForOutcomeRanVar(outcomeType, x);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      refusal = GetReturnValForFalseResultOfOutcomeRanVarCheck(result);
      return false;
    }
  }
  result = true;
  return true;
}

bool ZqUniVarPDFImpl::ReadyForPercentile(double p, ZqStatModelResult& result, const char* routine) const {
  if (!Ready(result, routine)) return false;
  // Written so that a NaN is refused too.
  if (!(p >= 0.0 && p <= 1.0)) {
    result = ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                Corvane::ZqMakeString("percentile must be between 0 and 1 ", "Argument entered: ", p));
    return false;
  }
  return true;
}

std::string ZqUniVarPDFImpl::DefaultPrint(std::size_t limit) const {
  return "PDF: " + GetPDFName() + "\n Variable name: " + variableName_ + PrintRanVars(limit);
}

ZqMultiVarPDFImpl::ZqMultiVarPDFImpl(std::size_t pdfType, const std::vector<std::string>& variableNames,
                                     const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqProbDistFuncImpl(pdfType, parameters, outcomes), variableNames_(variableNames) {}

ZqStatModelResult ZqMultiVarPDFImpl::GetIndexOfNameInVarNameList(const std::string& name, std::size_t& index) const {
  for (std::size_t i = 0; i < variableNames_.size(); ++i) {
    if (variableNames_[i] == name) {
      index = i;
      return ZqStatModelResult(true);
    }
  }
  return ZqMakeFailedResult(F::NameNotFound, "ZqMultiVarPDFImpl::GetIndexOfNameInVarNameList",
                            "Variable Name " + name + " not found in list");
}

ZqStatModelResult ZqMultiVarPDFImpl::GetIndicesOfNamesInVarNameList(const std::vector<std::string>& names,
                                                                    std::vector<std::size_t>& indices) const {
  const char* routine = "ZqMultiVarPDFImpl::GetIndicesOfNamesInVarNameList";
  std::vector<std::size_t> found;
  found.reserve(names.size());
  for (const std::string& name : names) {
    std::size_t index = 0;
    if (GetIndexOfNameInVarNameList(name, index).NotSuccessful()) {
      return ZqMakeFailedResult(F::NameNotFound, routine, "Variable Name " + name + " not found in list");
    }
    if (!found.empty() && index < found.back()) {
      return ZqMakeFailedResult(F::NamesOutOfOrder, routine,
                                "Query list is not increasing with respect to pdf variable names");
    }
    found.push_back(index);
  }
  indices = std::move(found);
  return ZqStatModelResult(true);
}

std::string ZqMultiVarPDFImpl::DefaultPrint(std::size_t limit) const {
  std::string names;
  for (std::size_t i = 0; i < variableNames_.size(); ++i) names += (i == 0 ? "" : " ") + variableNames_[i];
  return "PDF: " + GetPDFName() + "\n Variable names: " + names + PrintRanVars(limit);
}

// ------------------------------------------------------------ handles

ZqUniVarPDF::ZqUniVarPDF() : impl_(std::make_unique<ZqUniVarNullPDFImpl>("")) {}
ZqUniVarPDF::ZqUniVarPDF(std::size_t pdfType, const std::string& variableName, const ZqRanVarVec& parameters,
                         const ZqRanVarVec& outcomes)
    : impl_(ZqGetUniVarPDFImpl(pdfType, variableName, parameters, outcomes)) {}
ZqUniVarPDF::ZqUniVarPDF(std::unique_ptr<ZqUniVarPDFImpl> impl) : impl_(std::move(impl)) {
  if (!impl_) impl_ = std::make_unique<ZqUniVarNullPDFImpl>("");
}
ZqUniVarPDF::ZqUniVarPDF(const ZqUniVarPDF& other) : impl_(other.impl_->CreateCopy()) {}
ZqUniVarPDF& ZqUniVarPDF::operator=(const ZqUniVarPDF& other) {
  if (this != &other) impl_.reset(other.impl_->CreateCopy());
  return *this;
}
ZqUniVarPDF::~ZqUniVarPDF() = default;

ZqMultiVarPDF::ZqMultiVarPDF() : impl_(std::make_unique<ZqMultiVarNullPDFImpl>(std::vector<std::string>{})) {}
ZqMultiVarPDF::ZqMultiVarPDF(std::size_t pdfType, const std::vector<std::string>& variableNames,
                             const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : impl_(ZqGetMultiVarPDFImpl(pdfType, variableNames, parameters, outcomes)) {}
ZqMultiVarPDF::ZqMultiVarPDF(std::unique_ptr<ZqMultiVarPDFImpl> impl) : impl_(std::move(impl)) {
  if (!impl_) impl_ = std::make_unique<ZqMultiVarNullPDFImpl>(std::vector<std::string>{});
}
ZqMultiVarPDF::ZqMultiVarPDF(const ZqMultiVarPDF& other) : impl_(other.impl_->CreateCopy()) {}
ZqMultiVarPDF& ZqMultiVarPDF::operator=(const ZqMultiVarPDF& other) {
  if (this != &other) impl_.reset(other.impl_->CreateCopy());
  return *this;
}
ZqMultiVarPDF::~ZqMultiVarPDF() = default;

ZqMultiVarPDF ZqMultiVarPDF::GetMultivariateMarginal(const std::vector<std::string>& names,
                                                     ZqStatModelResult& result) const {
  return impl_->GetMultivariateMarginal(names, result);
}

ZqUniVarPDF ZqMultiVarPDF::GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const {
  return impl_->GetUnivariateMarginal(name, result);
}

}  // namespace Varimo
