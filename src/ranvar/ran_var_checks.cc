// The checks of a random variable: of codes and bounds against another
// description, and of values against the variable's data type, shape and
// constraint.
#include <cmath>

#include "varimo/numerics/matrix.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var.h"
#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

// Single precision's epsilon: how far a value may stray from an integer or
// a bound and still be taken as it.
constexpr double kTolerance = 1.1920928955078125e-7;

const char* PdfName(std::size_t type) { return type < ZqPDFType::NumTypes ? ZqPDFType::NameOf[type] : ""; }
const char* PackageName(std::size_t type) {
  return type < ZqPackageTypes::NumTypes ? ZqPackageTypes::NameOf[type] : "";
}

// A code compared with this variable's: out of the table's range, or in it
// and different.
ZqStatModelResult CheckCode(std::size_t argument, std::size_t own, const char* const* table, std::size_t count,
                            const char* countText, const char* routine) {
  if (argument >= count) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                              ZqMakeString(countText, count, "; Argument is ", argument));
  }
  if (argument != own) {
    return ZqMakeFailedResult(F::ArgumentTypeWrong, routine,
                              ZqMakeString("Argument: ", table[argument], " Object: ", own < count ? table[own] : ""));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult CheckBound(double argument, double own, const char* argumentText, const char* ownText,
                             const char* routine) {
  if (std::fabs(argument - own) > kTolerance) {
    return ZqMakeFailedResult(F::ArgumentValueWrong, routine, ZqMakeString(argumentText, argument, ownText, own));
  }
  return ZqStatModelResult(true);
}

}  // namespace

ZqStatModelResult ZqRanVar::CheckDataType(std::size_t dataType) const {
  return CheckCode(dataType, dataType_, ZqRanVarDataType::Describe, ZqRanVarDataType::NumTypes,
                   "Num Data Types = ", "ZqRanVar::CheckDataType");
}

ZqStatModelResult ZqRanVar::CheckDimensionalType(std::size_t dimType) const {
  return CheckCode(dimType, dimensionalType_, ZqRanVarDimType::Describe, ZqRanVarDimType::NumTypes,
                   "Num Dimensional Types = ", "ZqRanVar::CheckDimensionalType");
}

ZqStatModelResult ZqRanVar::CheckConstraintType(std::size_t constraintType) const {
  // Reports under the dimensional type's names, as it always has.
  return CheckCode(constraintType, constraintType_, ZqRanVarConstraintTypes::Describe,
                   ZqRanVarConstraintTypes::NumTypes, "Num Dimensional Types = ", "ZqRanVar::CheckDimensionalType");
}

ZqStatModelResult ZqRanVar::CheckLowerBound(double lowerBound) const {
  return CheckBound(lowerBound, lowerBound_, "Argument Lower Bound: ", " Object Lower Bound: ",
                    "ZqRanVar::CheckLowerBound");
}

ZqStatModelResult ZqRanVar::CheckUpperBound(double upperBound) const {
  return CheckBound(upperBound, upperBound_, "Argument Upper Bound: ", " Object Upper Bound: ",
                    "ZqRanVar::CheckUpperBound");
}

ZqStatModelResult ZqRanVar::CheckVarSumConstraint(double varSumConstraint) const {
  return CheckBound(varSumConstraint, varSumConstraint_, "Argument Var Sum Constraint: ",
                    " Object Var Sum Constraint: ", "ZqRanVar::CheckVarSumConstraint");
}

ZqStatModelResult ZqRanVar::CheckModelDimension(std::size_t modelDimension) const {
  if (modelDimension != modelDimension_) {
    return ZqMakeFailedResult(F::ArgumentTypeWrong, "ZqRanVar::CheckModelDimension",
                              ZqMakeString("Argument model dimension ", modelDimension, "; Object model dimension ",
                                           modelDimension_));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckRanVarTypeName(std::size_t ranVarType, const std::string& name) const {
  // Only the code decides; the names are for the report.
  if (ranVarType != ranVarType_) {
    return ZqMakeFailedResult(F::ArgumentNameWrong, "ZqRanVar::CheckPackageName",
                              ZqMakeString("Argument Type,name ", ranVarType, " ", name,
                                           "; Object RanVar Type, Name ", ranVarType_, " ", ranVarName_));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckPdfType(std::size_t pdfType) const {
  if (pdfType != pdfType_) {
    return ZqMakeFailedResult(F::ArgumentNameWrong, "ZqRanVar::CheckPdfType",
                              ZqMakeString("Argument Type,name ", pdfType, " ", PdfName(pdfType),
                                           "; Object pdfType, Name ", pdfType_, " ", PdfName(pdfType_)));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckPackageType(std::size_t packageType) const {
  if (packageType != packageType_) {
    return ZqMakeFailedResult(F::ArgumentNameWrong, "ZqRanVar::CheckPackageName",
                              ZqMakeString("Argument Type,name ", packageType, " ", PackageName(packageType),
                                           "; Object packageType, Name ", packageType_, " ",
                                           PackageName(packageType_)));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckRanVarValDataType(const std::vector<double>& vals) const {
  if (!IsIntegerValued()) return ZqStatModelResult(true);
  for (const double x : vals) {
    // nearbyint rounds halves to even in the default rounding mode.
    if (!(std::fabs(x - std::nearbyint(x)) <= kTolerance)) {
      return ZqMakeFailedResult(F::IntegerArgumentRequired, "ZqRanVar::CheckRanVarValDataType",
                                ZqMakeString("Argument value is ", x));
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckRanVarValDimType(const std::vector<double>& vals) const {
  const std::size_t n = vals.size();
  const char* routine = "ZqRanVar::CheckRanVarValDimType";
  if (IsScalar() && !multiValued_ && n != 1) {
    return ZqMakeFailedResult(F::ScalarArgumentRequired, routine, ZqMakeString("Ran var has ", n, " components"));
  }
  if (IsVector()) {
    const bool fits = multiValued_ ? modelDimension_ != 0 && n % modelDimension_ == 0 : n == modelDimension_;
    if (!fits) {
      return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                                ZqMakeString("vector size: ", n, "; model dimension: ", modelDimension_));
    }
  }
  if (IsSymmetricMatrix()) {
    // A multiple of the identity, a diagonal, or the full matrix.
    if (n != 1 && n != modelDimension_ && n != modelDimension_ * modelDimension_) {
      return ZqMakeFailedResult(F::WrongInputMatrixSize, routine,
                                ZqMakeString("matrix size: ", n, "; model dimension: ", modelDimension_));
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckRanVarValConstraints(const std::vector<double>& vals) const {
  if (IsUnConstrained()) return ZqStatModelResult(true);
  const char* routine = "ZqRanVar::CheckRanVarValConstraints";
  const char* describe =
      constraintType_ < ZqRanVarConstraintTypes::NumTypes ? ZqRanVarConstraintTypes::Describe[constraintType_] : "";
  double sum = 0.0;
  for (const double v : vals) {
    if ((HasLowerBound() && lowerBound_ > v) || (HasStrictLowerBound() && lowerBound_ >= v)) {
      ZqStatModelResult result = ZqMakeFailedResult(F::LowerBoundViolated, routine, describe);
      result.AddExtraComment(ZqMakeString("Lower Bound: ", lowerBound_, "; ran var element: ", v));
      return result;
    }
    if ((HasUpperBound() && v > upperBound_) || (HasStrictUpperBound() && v >= upperBound_)) {
      ZqStatModelResult result = ZqMakeFailedResult(F::UpperBoundViolated, routine, describe);
      result.AddExtraComment(ZqMakeString("Upper Bound: ", upperBound_, "; ran var element: ", v));
      return result;
    }
    sum += v;
  }
  if (HasVarSumConstraint()) return CheckVarSumConstraint(sum);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVar::CheckMatrixConstraints(const std::vector<double>& vals) const {
  if (IsUnConstrained()) return ZqStatModelResult(true);
  ZqStatModelResult result(true);
  if (HasLowerBound()) {
    result = CheckLowerBound(0.0);
    if (result.IsSuccessful()) result = ZqMatrixIsNonNegDef(modelDimension_, vals);
  } else if (HasStrictLowerBound()) {
    result = CheckLowerBound(0.0);
    if (result.IsSuccessful()) result = ZqMatrixIsPosDef(modelDimension_, vals);
  } else {
    return ZqMakeFailedResult(F::InappropriateConstraint, "ZqRanVar::CheckMatrixConstraints");
  }
  if (result.NotSuccessful()) result.AddCallContext("ZqRanVar::CheckMatrixConstraints");
  return result;
}

ZqStatModelResult ZqRanVar::CheckIfRanVarValsAreOk(const std::vector<double>& vals) const {
  ZqStatModelResult result = CheckRanVarValDataType(vals);
  if (result.IsSuccessful()) result = CheckRanVarValDimType(vals);
  if (result.IsSuccessful()) result = IsSymmetricMatrix() ? CheckMatrixConstraints(vals) : CheckRanVarValConstraints(vals);
  if (result.NotSuccessful()) result.AddCallContext("ZqRanVar::CheckIfRanVarValsAreOk");
  return result;
}

ZqStatModelResult ZqRanVar::CheckIfRanVarValIsOk(double val) const {
  ZqStatModelResult result = CheckIfRanVarValsAreOk(std::vector<double>{val});
  if (result.NotSuccessful()) result.AddCallContext("ZqRanVar::CheckIfRanVarValIsOk");
  return result;
}

ZqStatModelResult ZqRanVar::CheckIfRanVarIsOk(const ZqRanVar& other) const {
  ZqStatModelResult result = CheckPdfType(other.pdfType_);
  if (result.IsSuccessful()) result = CheckPackageType(other.packageType_);
  if (result.IsSuccessful()) result = CheckRanVarTypeName(other.ranVarType_, other.ranVarName_);
  if (result.IsSuccessful()) result = CheckDataType(other.dataType_);
  if (result.IsSuccessful()) result = CheckDimensionalType(other.dimensionalType_);
  if (result.IsSuccessful()) result = CheckConstraintType(other.constraintType_);
  if (result.IsSuccessful()) result = CheckModelDimension(other.modelDimension_);
  if (result.IsSuccessful() && (HasLowerBound() || HasStrictLowerBound())) {
    result = CheckLowerBound(other.lowerBound_);
  }
  if (result.IsSuccessful() && (HasUpperBound() || HasStrictUpperBound())) {
    result = CheckUpperBound(other.upperBound_);
  }
  if (result.IsSuccessful() && HasVarSumConstraint()) result = CheckVarSumConstraint(other.varSumConstraint_);
  if (result.IsSuccessful()) result = CheckIfRanVarValsAreOk(other.ranVarVals_);
  if (result.NotSuccessful()) result.AddCallContext("ZqRanVar::CheckIfRanVarIsOk");
  return result;
}

}  // namespace Varimo
