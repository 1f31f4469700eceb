// The texts of a random variable.
#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var.h"
#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {
namespace {

template <std::size_t N>
const char* Row(const char* const (&table)[N], std::size_t code) {
  return code < N ? table[code] : "";
}

}  // namespace

std::string ZqRanVar::PrintPdfName() const { return "Pdf Name: " + GetPdfName() + "\n"; }

std::string ZqRanVar::PrintPackageName() const { return "Ran Var Package Name: " + GetPackageName() + "\n"; }

std::string ZqRanVar::PrintRanVarName() const {
  return Corvane::ZqMakeString("Ran Var Name: ", ranVarName_, "\nran var type = ", ranVarType_, "\n");
}

std::string ZqRanVar::PrintDataType() const {
  return std::string(Row(ZqRanVarDataType::Describe, dataType_)) + "\n";
}

std::string ZqRanVar::PrintDimensionalType() const {
  std::string text = Row(ZqRanVarDimType::Describe, dimensionalType_);
  if (IsVector()) text += Corvane::ZqMakeString(" of dimension ", modelDimension_);
  if (IsSymmetricMatrix()) {
    const std::size_t n = ranVarVals_.size();
    const char* kind = n == 1                 ? ", Scalar times Identity, of dimension "
                       : n == modelDimension_ ? ", diagonal, of dimension "
                                              : ", of dimension ";
    text += Corvane::ZqMakeString(kind, modelDimension_);
  }
  return text + "\n";
}

std::string ZqRanVar::PrintConstraintType() const {
  std::string text = Row(ZqRanVarConstraintTypes::Describe, constraintType_);
  if (HasLowerBound() || HasStrictLowerBound()) text += Corvane::ZqMakeString("; Lower Bound: ", lowerBound_, " ");
  if (HasUpperBound() || HasStrictUpperBound()) text += Corvane::ZqMakeString("; Upper Bound: ", upperBound_, " ");
  if (HasVarSumConstraint()) text += Corvane::ZqMakeString("; Var Sum Constraint: ", varSumConstraint_, " ");
  return text + "\n";
}

std::string ZqRanVar::PrintValues(std::size_t limit) const {
  std::string text = "Random Var Values: ";
  std::size_t written = 0;
  for (const double v : ranVarVals_) {
    if (written == limit) break;
    text += Corvane::ZqMakeString(v, " ");
    ++written;
  }
  // The notice comes whenever the limit was reached, even with none left.
  if (written == limit) text += Corvane::ZqMakeString("..... (", ranVarVals_.size() - written, " more)");
  return text + "\n";
}

std::string ZqRanVar::Print(std::size_t limit) const {
  return PrintPdfName() + PrintPackageName() + PrintRanVarName() + PrintDataType() + PrintDimensionalType() +
         PrintConstraintType() + PrintValues(limit);
}

}  // namespace Varimo
