// Columns computed from columns on each read: arithmetic and comparisons of
// columns, and the transforms of data_transforms.h. Nothing is copied; a
// derived column holds a copy of its transform and shares its source
// columns, so it follows changes in them.
//
//   ZqDataTableCol residual = predicted - response;        // "Difference between Two Double Args(p,r)"
//   ZqDataTableCol large = ZqAbsoluteValue(residual) > 1.0;  // nominal "False" / "True"
//
// Sources of unequal shape (columns per row, elements, triangular or sparse
// storage) give a null column bearing the derived name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/tables/data_table_column.h"
#include "varimo/tables/data_transforms.h"

namespace Varimo {

class ZqSingleArgColTransform final : public ZqDataTableColBase {
 public:
  ZqSingleArgColTransform(const ZqSingleArgDataTransformBase& transform, const ZqDataTableCol& col);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override {}
  std::uint32_t GetStatVariableType() const override { return transform_->StatVarTypeOfTransformResult(); }
  std::uint32_t GetStatVarDataType() const override { return transform_->DataTypeOfTransformResult(); }
  std::uint64_t GetNumElementsInCol() const override { return col_.GetNumElementsInCol(); }
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  // "Not implemented yet".
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

 private:
  std::unique_ptr<ZqSingleArgDataTransformBase> transform_;
  ZqDataTableCol col_;
};

class ZqTransformTwoColsIntoOne final : public ZqDataTableColBase {
 public:
  // The sources must be of one shape (see ZqMakeTwoColTransform).
  ZqTransformTwoColsIntoOne(const ZqTwoArgsDataTransformBase& transform, const ZqDataTableCol& first,
                            const ZqDataTableCol& second);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override {}
  std::uint32_t GetStatVariableType() const override { return transform_->StatVarTypeOfTransformResult(); }
  std::uint32_t GetStatVarDataType() const override { return transform_->DataTypeOfTransformResult(); }
  std::uint64_t GetNumElementsInCol() const override { return first_.GetNumElementsInCol(); }
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  // True when either source says so.
  bool RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

 private:
  std::unique_ptr<ZqTwoArgsDataTransformBase> transform_;
  ZqDataTableCol first_;
  ZqDataTableCol second_;
};

class ZqTransformVecOfColsIntoOne final : public ZqDataTableColBase {
 public:
  // At least one source, all of one shape (see ZqMakeVecOfColsTransform).
  ZqTransformVecOfColsIntoOne(const ZqVecOfArgsDataTransformBase& transform, const std::vector<ZqDataTableCol>& cols);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override {}
  std::uint32_t GetStatVariableType() const override { return transform_->StatVarTypeOfTransformResult(); }
  std::uint32_t GetStatVarDataType() const override { return transform_->DataTypeOfTransformResult(); }
  std::uint64_t GetNumElementsInCol() const override { return cols_.front().GetNumElementsInCol(); }
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

 private:
  std::vector<double> Arguments(std::uint64_t row, std::uint64_t col) const;

  std::unique_ptr<ZqVecOfArgsDataTransformBase> transform_;
  std::vector<ZqDataTableCol> cols_;
};

// The derived columns as handles; a shape mismatch, or no column at all,
// gives a null column with the derived names.
ZqDataTableCol ZqMakeSingleColTransform(const ZqSingleArgDataTransformBase& transform, const ZqDataTableCol& col);
ZqDataTableCol ZqMakeTwoColTransform(const ZqTwoArgsDataTransformBase& transform, const ZqDataTableCol& first,
                                     const ZqDataTableCol& second);
ZqDataTableCol ZqMakeVecOfColsTransform(const ZqVecOfArgsDataTransformBase& transform,
                                        const std::vector<ZqDataTableCol>& cols);

ZqDataTableCol operator+(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator-(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator*(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator/(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator+(const ZqDataTableCol& col, double c);
ZqDataTableCol operator+(double c, const ZqDataTableCol& col);
ZqDataTableCol operator-(const ZqDataTableCol& col, double c);
ZqDataTableCol operator-(double c, const ZqDataTableCol& col);
ZqDataTableCol operator*(const ZqDataTableCol& col, double c);
ZqDataTableCol operator*(double c, const ZqDataTableCol& col);
ZqDataTableCol operator/(const ZqDataTableCol& col, double c);
ZqDataTableCol operator/(double c, const ZqDataTableCol& col);
ZqDataTableCol ZqSqrt(const ZqDataTableCol& col);
ZqDataTableCol ZqLog(const ZqDataTableCol& col);
ZqDataTableCol ZqAbsoluteValue(const ZqDataTableCol& col);
ZqDataTableCol ZqLogistic(const ZqDataTableCol& col, double lo, double hi, double eps);
// Nominal columns of 0 ("False") and 1 ("True").
ZqDataTableCol operator>(const ZqDataTableCol& col, double c);
ZqDataTableCol operator>=(const ZqDataTableCol& col, double c);
ZqDataTableCol operator==(const ZqDataTableCol& col, double c);
ZqDataTableCol operator<=(const ZqDataTableCol& col, double c);
ZqDataTableCol operator<(const ZqDataTableCol& col, double c);
ZqDataTableCol operator>(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator>=(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator==(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator<=(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol operator<(const ZqDataTableCol& a, const ZqDataTableCol& b);
ZqDataTableCol ZqAverage(const std::vector<ZqDataTableCol>& cols);
ZqDataTableCol ZqVariance(const std::vector<ZqDataTableCol>& cols);
ZqDataTableCol ZqRange(const std::vector<ZqDataTableCol>& cols);

// A copy of one column of an array column as a new read-only column of one
// element per row, of the same scale: "SliceCol_" + colNum + "_From:" +
// name. A scale without a value type gives a null column.
ZqDataTableCol ZqSliceColumn(const ZqDataTableCol& col, std::uint64_t colNum);

}  // namespace Varimo
