#include "varimo/ranvar/ran_var.h"

#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {

ZqRanVar::ZqRanVar(std::size_t pdfType, std::size_t packageType, std::size_t ranVarType, const std::string& name,
                   std::size_t dataType, std::size_t dimType, std::size_t constraintType,
                   const std::vector<double>& vals, std::size_t modelDimension, double lowerBound,
                   double upperBound, double varSumConstraint, bool multiValued)
    : pdfType_(pdfType),
      packageType_(packageType),
      ranVarType_(ranVarType),
      ranVarName_(name),
      dataType_(dataType),
      dimensionalType_(dimType),
      constraintType_(constraintType),
      ranVarVals_(vals),
      modelDimension_(modelDimension),
      lowerBound_(lowerBound),
      upperBound_(upperBound),
      varSumConstraint_(varSumConstraint),
      multiValued_(multiValued) {}

ZqRanVar::ZqRanVar(std::size_t pdfType, std::size_t packageType, std::size_t ranVarType, const std::string& name,
                   std::size_t dataType, std::size_t dimType, std::size_t constraintType, double val,
                   std::size_t modelDimension, double lowerBound, double upperBound, double varSumConstraint)
    : ZqRanVar(pdfType, packageType, ranVarType, name, dataType, dimType, constraintType, std::vector<double>{val},
               modelDimension, lowerBound, upperBound, varSumConstraint, false) {}

std::string ZqRanVar::GetPdfName() const {
  return pdfType_ < ZqPDFType::NumTypes ? ZqPDFType::NameOf[pdfType_] : "";
}

std::string ZqRanVar::GetPackageName() const {
  return packageType_ < ZqPackageTypes::NumTypes ? ZqPackageTypes::NameOf[packageType_] : "";
}

Corvane::ZqIter<const double> ZqRanVar::GetRanVarVals() const {
  return Corvane::ZqMakeOwnedIter<const double>(ranVarVals_);
}

ZqStatModelResult ZqRanVar::SetRanVarVal(double val, bool check) {
  if (check) {
    ZqStatModelResult result = CheckIfRanVarValIsOk(val);
    if (result.NotSuccessful()) {
      result.AddCallContext("ZqRanVar::SetRanVarVal");
      return result;
    }
  }
  ranVarVals_.clear();
  ranVarVals_.push_back(val);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::SetRanVarVals(const std::vector<double>& vals, bool check) {
  if (check) {
    ZqStatModelResult result = CheckIfRanVarValsAreOk(vals);
    if (result.NotSuccessful()) {
      result.AddCallContext("ZqRanVar::SetRanVarVals");
      return result;
    }
  }
  ranVarVals_ = vals;
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::SetRanVarVals(const ZqRanVar& other, bool check) {
  if (check) {
    ZqStatModelResult result = CheckIfRanVarIsOk(other);
    if (result.NotSuccessful()) {
      result.AddCallContext("ZqRanVar::SetRanVarVals");
      return result;
    }
  }
  // A copy first: `other` may be this variable.
  std::vector<double> values;
  values.reserve(other.GetNumRanVarVals());
  for (const double v : other.GetRanVarVals()) values.push_back(v);
  ranVarVals_ = std::move(values);
  return ZqStatModelResult(true);
}

}  // namespace Varimo
