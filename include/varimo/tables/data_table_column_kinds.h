// The concrete column kinds, one per statistical scale:
//
//   kind                          scale        storage
//   ZqNullDataTableCol            Unknown      none
//   ZqDataTableColOfNominals      Nominal      list of values + one index per element
//   ZqDataTableColOfIntervalVars  Interval     int
//   ZqDataTableColOfRatioVars     Ratio        double, dense or sparse
//   ZqDataTableColOfIdentifiers   Identifier   string
//
// Ordinal data have no kind of their own and get a null column.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "varimo/tables/data_table_column.h"

namespace Varimo {

// The kind `statVarType` selects, empty, with room for numRows rows of
// numCols columns (numRows * (numRows + 1) / 2 elements when lower
// triangular). Unknown, Ordinal and values above Identifier give a null
// column. The caller owns the result.
ZqDataTableColBase* ZqGetDataTableCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                                      std::uint64_t numRows, std::uint64_t numCols, bool lowerTriangular);

// Holds nothing; reads give bad-index values, GetString the bad-index string.
class ZqNullDataTableCol final : public ZqDataTableColBase {
 public:
  explicit ZqNullDataTableCol(const std::string& name = "NullColumn", const std::string& fullName = "NullColumn");

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override;
  std::uint32_t GetStatVariableType() const override;
  std::uint32_t GetStatVarDataType() const override;
  std::uint64_t GetNumElementsInCol() const override { return 0; }
  std::uint64_t GetNumUniqueDiscreteValues() const override { return 0; }
  std::vector<std::string> GetUniqueDiscreteValues() const override { return {}; }
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t, std::uint64_t) const override { return false; }
  bool RowColHasBadData(std::uint64_t, std::uint64_t) const override { return false; }
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;
};

// Categories stored as indices into an ascending list of their names.
//
// Without a fixed list, appended strings are staged and the list is built
// by FinishAddingVars from the strings seen; reads before that are not
// meaningful. With a fixed list (given at construction, always holding the
// missing and bad strings) indices are stored from the first append, and a
// string outside the list is refused by the append functions.
class ZqDataTableColOfNominals final : public ZqDataTableColBase {
 public:
  ZqDataTableColOfNominals(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                           std::uint64_t numCols, bool lowerTriangular);
  ZqDataTableColOfNominals(const std::string& name, const std::string& fullName,
                           const std::vector<std::string>& discreteValues, std::uint64_t numRows,
                           std::uint64_t numCols, bool lowerTriangular);
  // A one-column column holding `texts`, as if each had been pushed with
  // PushBackString; FinishAddingVars builds the list.
  ZqDataTableColOfNominals(const std::string& name, const std::string& fullName, std::vector<std::string> texts);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  // Sets `index` to the position of `value` in the list, or to 0xFFFFFFFF
  // with an ArgumentOutOfRange failure.
  ZqStatModelResult FindStringInUniqueNominalVals(std::uint32_t& index, const std::string& value) const;
  // Stores a list index, unchecked.
  void PushBackUnsigned(std::uint32_t listIndex) override { indices_.push_back(listIndex); }
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  // Stages a string for the list that FinishAddingVars builds.
  void PushBackString(const std::string& value) override { staged_.push_back(value); }
  void FinishAddingVars() override;
  std::uint32_t GetStatVariableType() const override;
  std::uint32_t GetStatVarDataType() const override;
  std::uint64_t GetNumElementsInCol() const override;
  std::uint64_t GetNumUniqueDiscreteValues() const override { return uniqueValues_.size(); }
  std::vector<std::string> GetUniqueDiscreteValues() const override { return uniqueValues_; }
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  // The list index of the element as a number; missing or bad for an element
  // whose entry is the missing or bad string; the bad value for an index
  // past the list.
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  // The element's entry in the list.
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

  // The list index stored for element `index`, if any.
  bool GetListIndexOfElement(std::uint64_t elementIndex, std::uint32_t& listIndex) const;

 private:
  void LoadUniqueNominalValues();
  // Entry of the list for (row, col): null when the address is bad, or the
  // stored index lies past the list (then `pastList` is set).
  const std::string* ListEntry(std::uint64_t row, std::uint64_t col, bool& pastList) const;

  std::vector<std::string> uniqueValues_;
  std::vector<std::string> staged_;
  std::vector<std::uint32_t> indices_;
};

// Integers; reserved values are the int ones.
class ZqDataTableColOfIntervalVars final : public ZqDataTableColBase {
 public:
  ZqDataTableColOfIntervalVars(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                               std::uint64_t numCols, bool lowerTriangular);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t value) override;
  void PushBackDouble(double) override {}
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override;
  std::uint32_t GetStatVariableType() const override;
  std::uint32_t GetStatVarDataType() const override;
  std::uint64_t GetNumElementsInCol() const override { return values_.size(); }
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

 private:
  std::vector<std::int32_t> values_;
};

// Doubles, dense, or sparse: a sparse column stores (element index, value)
// pairs sorted by index, and an element not stored reads as missing.
class ZqDataTableColOfRatioVars final : public ZqDataTableColBase {
 public:
  ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                            std::uint64_t numCols, bool lowerTriangular);
  // Dense, holding `values`.
  ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName, std::vector<double> values,
                            std::uint64_t numCols, bool lowerTriangular);
  // Sparse, numRows rows; read only from the start.
  ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName, std::uint64_t numCols,
                            const std::vector<ZqRowColValue>& values, std::uint64_t numRows, bool lowerTriangular);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double value) override;
  void PushBackString(const std::string&) override {}
  void FinishAddingVars() override;
  std::uint32_t GetStatVariableType() const override;
  std::uint32_t GetStatVarDataType() const override;
  std::uint64_t GetNumElementsInCol() const override;
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

  // Value of element `index` of a sparse column: binary search; missing
  // when not stored.
  double GetDoubleFromSparseArray(std::uint64_t elementIndex) const;
  // Number of (index, value) pairs a sparse column stores.
  std::uint64_t GetNumStoredSparseElements() const { return sparseValues_.size(); }

 private:
  void SetupSparseArray(const std::vector<ZqRowColValue>& values);
  // The element at a valid index, dense or sparse.
  double ElementAt(std::uint64_t elementIndex) const;
  std::vector<double> StoredValues() const;

  std::vector<double> values_;
  std::uint64_t numRows_ = 0;
  std::vector<std::pair<std::uint64_t, double>> sparseValues_;
};

// Free text that identifies a record (a name, a SMILES string).
class ZqDataTableColOfIdentifiers final : public ZqDataTableColBase {
 public:
  ZqDataTableColOfIdentifiers(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                              std::uint64_t numCols, bool lowerTriangular);
  // A scalar column holding `values`.
  ZqDataTableColOfIdentifiers(const std::string& name, const std::string& fullName, std::vector<std::string> values);

  std::uint32_t IndexOfStringInListOfPossibleValues(const std::string& value) const override;
  void PushBackUnsigned(std::uint32_t) override {}
  void PushBackInt(std::int32_t) override {}
  void PushBackDouble(double) override {}
  void PushBackString(const std::string& value) override;
  void FinishAddingVars() override;
  std::uint32_t GetStatVariableType() const override;
  std::uint32_t GetStatVarDataType() const override;
  std::uint64_t GetNumElementsInCol() const override { return values_.size(); }
  std::uint64_t GetNumUniqueDiscreteValues() const override;
  std::vector<std::string> GetUniqueDiscreteValues() const override;
  void PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const override;
  bool RowColHasMissingData(std::uint64_t row, std::uint64_t col) const override;
  bool RowColHasBadData(std::uint64_t row, std::uint64_t col) const override;
  std::uint32_t GetUnsigned(std::uint64_t row, std::uint64_t col) const override;
  std::int32_t GetInt(std::uint64_t row, std::uint64_t col) const override;
  double GetDouble(std::uint64_t row, std::uint64_t col) const override;
  std::string GetString(std::uint64_t row, std::uint64_t col) const override;

 private:
  std::vector<std::string> values_;
};

}  // namespace Varimo
