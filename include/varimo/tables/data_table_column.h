// Columns: the unit of data of the statistics layer. A column holds the
// values of one variable, or, as an array column, a block of variables that
// form one item (a row of a similarity matrix, say). Every access goes by a
// (row, column) pair, so scalar, array and lower-triangular columns share one
// interface; scalar columns use column 0.
//
// ZqDataTableCol is the handle every caller sees. Handles share their column:
// copies of a handle are the same column. ZqDataTableColBase is the
// implementation, with one concrete class per statistical scale
// (data_table_column_kinds.h).
//
// Reads never fail: an address outside the column gives the bad-index value
// of the requested type, and stored missing or bad values come back as the
// missing or bad value of the requested type.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

class ZqDataTable;
class ZqSingleArgDataTransformBase;
class ZqTwoArgsDataTransformBase;
class ZqVecOfArgsDataTransformBase;

// One element of a sparse array column.
class ZqRowColValue {
 public:
  ZqRowColValue(double value, std::uint64_t rowNum, std::uint64_t colNum)
      : value_(value), rowNum_(rowNum), colNum_(colNum) {}
  double GetValue() const { return value_; }
  std::uint64_t GetRowNum() const { return rowNum_; }
  std::uint64_t GetColNum() const { return colNum_; }

 private:
  double value_;
  std::uint64_t rowNum_;
  std::uint64_t colNum_;
};

class ZqDataTableColBase {
 public:
  ZqDataTableColBase(const std::string& name, const std::string& fullName, std::uint64_t numColumns,
                     bool lowerTriangular, bool sparse = false);
  virtual ~ZqDataTableColBase() = default;

  // Position of `value` in a nominal column's list of values, 0xFFFFFFFF
  // when absent or when the column has no list.
  virtual std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const = 0;

  // Raw appends. They do not check the read-only flag (the append functions
  // of column_append.h do), and a push that does not fit the column's
  // storage does nothing.
  virtual void PushBackUnsigned(std::uint32_t value) = 0;
  virtual void PushBackInt(std::int32_t value) = 0;
  virtual void PushBackDouble(double value) = 0;
  virtual void PushBackString(const std::string& value) = 0;
  // Ends appending: the column becomes read only (a nominal column without
  // a fixed list builds its list of values here). Later calls do nothing.
  virtual void FinishAddingVars() = 0;

  virtual std::uint32_t GetStatVariableType() const = 0;
  virtual std::uint32_t GetStatVarDataType() const = 0;
  // Elements stored, or for a sparse column its full logical size.
  virtual std::uint64_t GetNumElementsInCol() const = 0;
  // Distinct values. Only a nominal column keeps them; other kinds sort a
  // copy of their values on each call (O(n log n)). Reserved values count
  // as values.
  virtual std::uint64_t GetNumUniqueDiscreteValues() const = 0;
  // The distinct values in ascending order (numeric order for numbers), one
  // entry per distinct value, written as GetString writes them.
  virtual std::vector<std::string> GetUniqueDiscreteValues() const = 0;
  // "Discrete Unique Values: " and up to `maxNum` values, ten to a line.
  virtual void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const = 0;
  void PrintUniqueDiscreteValues(unsigned long maxNum) const;

  // Whether (row, col) names no element.
  virtual bool RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const;
  // False for a bad address.
  virtual bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const = 0;
  virtual bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const = 0;

  virtual std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const = 0;
  virtual std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const = 0;
  virtual double GetDouble(std::uint64_t row, std::uint64_t col) const = 0;
  virtual std::string GetString(std::uint64_t row, std::uint64_t col) const = 0;

  const std::string& GetColumnName() const { return name_; }
  void SetColumnName(const std::string& name) { name_ = name; }
  const std::string& GetFullColumnName() const { return fullName_; }
  std::uint64_t GetNumColumnsInCol() const { return numColumns_; }
  bool ColIsLowerTriangular() const { return lowerTriangular_; }
  bool ColIsSparse() const { return sparse_; }
  bool ColIsReadOnly() const { return readOnly_; }
  void SetColReadOnly(bool readOnly = true) { readOnly_ = readOnly; }
  // Sticky flags: set when a reserved value is appended, never cleared by
  // the column itself.
  void SetColHasMissingData(bool hasMissing = true) { hasMissingData_ = hasMissing; }
  void SetColHasBadData(bool hasBad = true) { hasBadData_ = hasBad; }
  bool ColHasMissingData() const { return hasMissingData_; }
  bool ColHasBadData() const { return hasBadData_; }

  // Rows of the column: for a lower-triangular column with elements, its
  // dimension; otherwise elements / columns per row.
  std::uint64_t GetTotalNumRowsInCol() const;

  // Index of element (row, col), VarimoBadData::BadIndex when col is not
  // below the number of columns (or the address cannot be an element of
  // any column). In a lower-triangular column (row, col) and (col, row) are
  // the same element and row is not bounded by the number of columns.
  std::uint64_t GetElementIndex(std::uint64_t row, std::uint64_t col) const;

  // Names, kinds, shape and flags, one per line, after a rule of 52 '$'.
  // The forms without a stream print through Corvane's output sink.
  void PrintSummary(std::ostream& out) const;
  void PrintSummary() const;
  // The summary, then the first `numRows` rows and `numCols` columns as text.
  void PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols, std::ostream& out) const;
  void PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols) const;
  // The same over the first `numRows` rows that `table` selects.
  void PrintSummaryPlusStartOfData(const ZqDataTable& table, std::uint64_t numRows, std::uint64_t numCols,
                                   std::ostream& out) const;
  void PrintSummaryPlusStartOfData(const ZqDataTable& table, std::uint64_t numRows, std::uint64_t numCols) const;

 protected:
  ZqDataTableColBase(const ZqDataTableColBase&) = default;
  ZqDataTableColBase& operator=(const ZqDataTableColBase&) = default;
  // Writes the values ten to a line, as PrintUniqueDiscreteValues does.
  static void PrintValueList(const std::vector<std::string>& values, unsigned long maxNum, std::ostream& out);

 private:
  std::string name_;
  std::string fullName_;
  std::uint64_t numColumns_;
  bool lowerTriangular_;
  bool readOnly_ = false;
  bool sparse_;
  bool hasMissingData_ = false;
  bool hasBadData_ = false;
};

// The shared handle. A default handle holds a null column named "NullColumn"
// whose reads all give bad-index values and which holds no element.
class ZqDataTableCol {
 public:
  ZqDataTableCol();
  // A null column with these names.
  ZqDataTableCol(const std::string& name, const std::string& fullName);
  // An empty column of the kind `statVarType` selects (see ZqGetDataTableCol),
  // with room reserved for numRows rows of numCols columns.
  ZqDataTableCol(const std::string& name, std::uint32_t statVarType, std::uint64_t numRows,
                 std::uint64_t numCols = 1, bool lowerTriangular = false);
  ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                 std::uint64_t numRows, std::uint64_t numCols = 1, bool lowerTriangular = false);
  // A ratio column holding a copy of `values`; both names are `name`. Its
  // rows are values.size() / numCols, or numCols for a lower-triangular
  // column. A numCols of 0 is taken as 1.
  ZqDataTableCol(const std::string& name, const std::vector<double>& values, std::uint64_t numCols = 1,
                 bool lowerTriangular = false);
  // The same from a braced list, ZqDataTableCol("x", {1, 2, 3}): without
  // this form the list could make a std::string (of chars) as well as a
  // vector, and the call would be ambiguous.
  ZqDataTableCol(const std::string& name, std::initializer_list<double> values, std::uint64_t numCols = 1,
                 bool lowerTriangular = false)
      : ZqDataTableCol(name, std::vector<double>(values), numCols, lowerTriangular) {}
  // A sparse ratio column of numRows rows; unstored elements read as
  // missing. Any type but Ratio gives a null column. The column is read
  // only from the start.
  ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                 std::uint64_t numCols, const std::vector<ZqRowColValue>& values, std::uint64_t numRows,
                 bool lowerTriangular = false);
  // A nominal column whose list of values is fixed: `discreteValues` plus
  // the missing and bad strings, sorted. An empty list, or a type other than
  // Nominal, gives the same column as the form without the list.
  ZqDataTableCol(const std::string& name, std::uint32_t statVarType, const std::vector<std::string>& discreteValues,
                 std::uint64_t numRows, std::uint64_t numCols = 1, bool lowerTriangular = false);
  ZqDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                 const std::vector<std::string>& discreteValues, std::uint64_t numRows, std::uint64_t numCols = 1,
                 bool lowerTriangular = false);
  // Takes ownership of `impl`; a null pointer gives a null column.
  explicit ZqDataTableCol(std::unique_ptr<ZqDataTableColBase> impl);
  // Columns computed on each read from shared source columns
  // (derived_columns.h).
  ZqDataTableCol(const ZqSingleArgDataTransformBase& transform, const ZqDataTableCol& col);
  ZqDataTableCol(const ZqTwoArgsDataTransformBase& transform, const ZqDataTableCol& first,
                 const ZqDataTableCol& second);
  ZqDataTableCol(const ZqVecOfArgsDataTransformBase& transform, const std::vector<ZqDataTableCol>& cols);

  ZqDataTableColBase& GetImpl() const { return *impl_; }
  // Whether two handles share one column.
  bool SharesColumnWith(const ZqDataTableCol& other) const { return impl_ == other.impl_; }
  long UseCount() const { return impl_.use_count(); }

  // Forwarders to the column.
  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const {
    return impl_->IndexOfStringInListOfPossibleValues(value);
  }
  void FinishAddingVars() { impl_->FinishAddingVars(); }
  std::uint32_t GetStatVariableType() const { return impl_->GetStatVariableType(); }
  std::uint32_t GetStatVarDataType() const { return impl_->GetStatVarDataType(); }
  std::uint64_t GetNumElementsInCol() const { return impl_->GetNumElementsInCol(); }
  std::uint64_t GetNumUniqueDiscreteValues() const { return impl_->GetNumUniqueDiscreteValues(); }
  std::vector<std::string> GetUniqueDiscreteValues() const { return impl_->GetUniqueDiscreteValues(); }
  void PrintUniqueDiscreteValues(unsigned long maxNum) const { impl_->PrintUniqueDiscreteValues(maxNum); }
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
    impl_->PrintUniqueDiscreteValues(maxNum, out);
  }
  bool RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const { return impl_->RowColIndexIsBad(row, col); }
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
    return impl_->RowColHasMissingData(row, col);
  }
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const { return impl_->RowColHasBadData(row, col); }
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const { return impl_->GetUnsigned(row, col); }
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const { return impl_->GetInt(row, col); }
  double GetDouble(std::uint64_t row, std::uint64_t col) const { return impl_->GetDouble(row, col); }
  std::string GetString(std::uint64_t row, std::uint64_t col) const { return impl_->GetString(row, col); }

  const std::string& GetColumnName() const { return impl_->GetColumnName(); }
  void SetColumnName(const std::string& name) { impl_->SetColumnName(name); }
  const std::string& GetFullColumnName() const { return impl_->GetFullColumnName(); }
  std::uint64_t GetNumColumnsInCol() const { return impl_->GetNumColumnsInCol(); }
  bool ColIsLowerTriangular() const { return impl_->ColIsLowerTriangular(); }
  bool ColIsSparse() const { return impl_->ColIsSparse(); }
  bool ColIsReadOnly() const { return impl_->ColIsReadOnly(); }
  bool ColHasMissingData() const { return impl_->ColHasMissingData(); }
  bool ColHasBadData() const { return impl_->ColHasBadData(); }
  std::uint64_t GetTotalNumRowsInCol() const { return impl_->GetTotalNumRowsInCol(); }
  void PrintSummary() const { impl_->PrintSummary(); }
  void PrintSummary(std::ostream& out) const { impl_->PrintSummary(out); }
  void PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols) const {
    impl_->PrintSummaryPlusStartOfData(numRows, numCols);
  }
  void PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols, std::ostream& out) const {
    impl_->PrintSummaryPlusStartOfData(numRows, numCols, out);
  }
  void PrintSummaryPlusStartOfData(const ZqDataTable& table, std::uint64_t numRows, std::uint64_t numCols,
                                   std::ostream& out) const {
    impl_->PrintSummaryPlusStartOfData(table, numRows, numCols, out);
  }

 private:
  std::shared_ptr<ZqDataTableColBase> impl_;
};

}  // namespace Varimo
