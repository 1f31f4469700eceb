// ZqRanVar: one parameter or outcome of a distribution, described by its
// codes (ran_var_types.h), its name, bounds and model dimension, with its
// values as a vector of doubles.
//
//   ZqRanVar mean(2, 1, 0, "Univariate Gaussian Mean", 1, 1, 1, 0.5, 1, 0.0, 0.0, 0.0);
//   ZqStatModelResult r = mean.SetRanVarVal(1.5, true);   // checked against the codes
//
// A variable whose `multiValued` flag is set holds many observations of
// itself (a sample) rather than one value.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/iter.h"

namespace Varimo {

class ZqRanVar {
 public:
  ZqRanVar(std::size_t pdfType, std::size_t packageType, std::size_t ranVarType, const std::string& name,
           std::size_t dataType, std::size_t dimType, std::size_t constraintType, const std::vector<double>& vals,
           std::size_t modelDimension, double lowerBound, double upperBound, double varSumConstraint,
           bool multiValued);
  ZqRanVar(std::size_t pdfType, std::size_t packageType, std::size_t ranVarType, const std::string& name,
           std::size_t dataType, std::size_t dimType, std::size_t constraintType, double val,
           std::size_t modelDimension, double lowerBound, double upperBound, double varSumConstraint);

  std::size_t GetPdfType() const { return pdfType_; }
  std::size_t GetPackageType() const { return packageType_; }
  std::size_t GetRanVarType() const { return ranVarType_; }
  std::size_t GetDataType() const { return dataType_; }
  std::size_t GetDimensionalType() const { return dimensionalType_; }
  std::size_t GetConstraintType() const { return constraintType_; }
  std::size_t GetModelDimension() const { return modelDimension_; }
  double GetLowerBound() const { return lowerBound_; }
  double GetUpperBound() const { return upperBound_; }
  double GetVarSumConstraint() const { return varSumConstraint_; }
  bool IsMultiValued() const { return multiValued_; }
  const std::string& GetRanVarName() const { return ranVarName_; }
  // The texts of the pdf and package codes; "" for a code past the tables.
  std::string GetPdfName() const;
  std::string GetPackageName() const;

  std::size_t GetNumRanVarVals() const { return ranVarVals_.size(); }
  // An iterator over a copy of the values.
  Corvane::ZqIter<const double> GetRanVarVals() const;
  const std::vector<double>& GetValues() const { return ranVarVals_; }
  void ClearRanVarVals() { ranVarVals_.clear(); }

  // The codes read as properties. A strict bound counts only for its own
  // predicate, not for HasLowerBound or HasUpperBound.
  bool IsUnConstrained() const { return constraintType_ == 1; }
  bool HasLowerBound() const { return constraintType_ == 2 || constraintType_ == 6 || constraintType_ == 7; }
  bool HasStrictLowerBound() const { return constraintType_ == 3; }
  bool HasUpperBound() const { return constraintType_ == 4 || constraintType_ == 6 || constraintType_ == 7; }
  bool HasStrictUpperBound() const { return constraintType_ == 5; }
  bool HasVarSumConstraint() const { return constraintType_ == 7; }
  bool IsScalar() const { return dimensionalType_ == 1; }
  bool IsVector() const { return dimensionalType_ == 2; }
  bool IsSymmetricMatrix() const { return dimensionalType_ == 3; }
  bool IsIntegerValued() const { return dataType_ == 2; }

  // Each compares an argument with this variable's own field.
  ZqStatModelResult CheckDataType(std::size_t dataType) const;
  ZqStatModelResult CheckDimensionalType(std::size_t dimType) const;
  ZqStatModelResult CheckConstraintType(std::size_t constraintType) const;
  ZqStatModelResult CheckLowerBound(double lowerBound) const;
  ZqStatModelResult CheckUpperBound(double upperBound) const;
  ZqStatModelResult CheckVarSumConstraint(double varSumConstraint) const;
  ZqStatModelResult CheckModelDimension(std::size_t modelDimension) const;
  ZqStatModelResult CheckRanVarTypeName(std::size_t ranVarType, const std::string& name) const;
  ZqStatModelResult CheckPdfType(std::size_t pdfType) const;
  ZqStatModelResult CheckPackageType(std::size_t packageType) const;

  // Whether values could be this variable's: their data type, their count
  // for its shape, and its bounds (or, for a matrix, its definiteness).
  ZqStatModelResult CheckRanVarValDataType(const std::vector<double>& vals) const;
  ZqStatModelResult CheckRanVarValDimType(const std::vector<double>& vals) const;
  ZqStatModelResult CheckRanVarValConstraints(const std::vector<double>& vals) const;
  ZqStatModelResult CheckMatrixConstraints(const std::vector<double>& vals) const;
  ZqStatModelResult CheckIfRanVarValsAreOk(const std::vector<double>& vals) const;
  ZqStatModelResult CheckIfRanVarValIsOk(double val) const;
  // Whether the other variable describes the same thing, with values
  // that this one accepts.
  ZqStatModelResult CheckIfRanVarIsOk(const ZqRanVar& other) const;

  // With `check`, values that fail the checks are refused and the old
  // ones stay.
  ZqStatModelResult SetRanVarVal(double val, bool check);
  ZqStatModelResult SetRanVarVals(const std::vector<double>& vals, bool check);
  ZqStatModelResult SetRanVarVals(const ZqRanVar& other, bool check);

  // Texts of the variable, each line ending in a newline; at most `limit`
  // values are written.
  std::string Print(std::size_t limit) const;
  std::string PrintPdfName() const;
  std::string PrintPackageName() const;
  std::string PrintRanVarName() const;
  std::string PrintDataType() const;
  std::string PrintDimensionalType() const;
  std::string PrintConstraintType() const;
  std::string PrintValues(std::size_t limit) const;

 private:
  std::size_t pdfType_;
  std::size_t packageType_;
  std::size_t ranVarType_;
  std::string ranVarName_;
  std::size_t dataType_;
  std::size_t dimensionalType_;
  std::size_t constraintType_;
  std::vector<double> ranVarVals_;
  std::size_t modelDimension_;
  double lowerBound_;
  double upperBound_;
  double varSumConstraint_;
  bool multiValued_;
};

}  // namespace Varimo
