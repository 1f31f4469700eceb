#include <algorithm>
#include <ostream>

#include "column_helpers.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

namespace {

// Rectangular columns need at least one value per row; 0 would divide by
// zero in every address computation.
std::uint64_t AtLeastOneColumn(std::uint64_t numCols) { return numCols == 0 ? 1 : numCols; }

}  // namespace

ZqDataTableColOfRatioVars::ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName,
                                                     std::uint64_t numRows, std::uint64_t numCols,
                                                     bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular), numRows_(numRows) {
  values_.reserve(ColumnDetail::ElementsToReserve(numRows, numCols, lowerTriangular));
}

ZqDataTableColOfRatioVars::ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName,
                                                     std::vector<double> values, std::uint64_t numCols,
                                                     bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, lowerTriangular ? numCols : AtLeastOneColumn(numCols), lowerTriangular),
      values_(std::move(values)),
      numRows_(lowerTriangular ? numCols : values_.size() / AtLeastOneColumn(numCols)) {
  for (double value : values_) {
    if (value == VarimoBadData::MissingDouble) SetColHasMissingData();
    if (value == VarimoBadData::BadDouble) SetColHasBadData();
  }
}

ZqDataTableColOfRatioVars::ZqDataTableColOfRatioVars(const std::string& name, const std::string& fullName,
                                                     std::uint64_t numCols, const std::vector<ZqRowColValue>& values,
                                                     std::uint64_t numRows, bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular, true), numRows_(numRows) {
  SetupSparseArray(values);
  SetColReadOnly(true);  // a sparse column takes no appends
}

void ZqDataTableColOfRatioVars::SetupSparseArray(const std::vector<ZqRowColValue>& values) {
  const std::uint64_t numElements = GetNumElementsInCol();
  sparseValues_.clear();
  sparseValues_.reserve(values.size());
  for (const ZqRowColValue& value : values) {
    const std::uint64_t index = GetElementIndex(value.GetRowNum(), value.GetColNum());
    // An element outside the array could never be read back; keep it out.
    if (index >= numElements) continue;
    sparseValues_.emplace_back(index, value.GetValue());
  }
  std::sort(sparseValues_.begin(), sparseValues_.end(), [](const auto& a, const auto& b) {
    return a.first < b.first || (a.first == b.first && ColumnDetail::DoubleLess(a.second, b.second));
  });
  sparseValues_.erase(std::unique(sparseValues_.begin(), sparseValues_.end(),
                                  [](const auto& a, const auto& b) {
                                    return a.first == b.first && ColumnDetail::DoubleSame(a.second, b.second);
                                  }),
                      sparseValues_.end());
}

std::uint32_t ZqDataTableColOfRatioVars::IndexOfStringInListOfPossibleValues(const std::string&) const {
  return VarimoBadData::BadUnsigned;
}

void ZqDataTableColOfRatioVars::PushBackDouble(double value) {
  if (value == VarimoBadData::MissingDouble) SetColHasMissingData();
  if (value == VarimoBadData::BadDouble) SetColHasBadData();
  values_.push_back(value);
}

void ZqDataTableColOfRatioVars::FinishAddingVars() { SetColReadOnly(true); }

std::uint32_t ZqDataTableColOfRatioVars::GetStatVariableType() const { return ZqStatVariableType::Ratio; }
std::uint32_t ZqDataTableColOfRatioVars::GetStatVarDataType() const { return ZqStatVarDataType::Double; }

std::uint64_t ZqDataTableColOfRatioVars::GetNumElementsInCol() const {
  if (!ColIsSparse()) return values_.size();
  // The full logical size. Shapes too large to address give 0 rather than
  // a wrapped product.
  if (ColIsLowerTriangular()) return numRows_ < (std::uint64_t{1} << 32) ? numRows_ * (numRows_ + 1) / 2 : 0;
  const std::uint64_t numCols = GetNumColumnsInCol();
  if (numCols != 0 && numRows_ > VarimoBadData::BadIndex / numCols) return 0;
  return numRows_ * numCols;
}

double ZqDataTableColOfRatioVars::GetDoubleFromSparseArray(std::uint64_t elementIndex) const {
  const auto found = std::lower_bound(sparseValues_.begin(), sparseValues_.end(), elementIndex,
                                      [](const auto& pair, std::uint64_t index) { return pair.first < index; });
  if (found == sparseValues_.end() || found->first != elementIndex) return VarimoBadData::MissingDouble;
  return found->second;
}

double ZqDataTableColOfRatioVars::ElementAt(std::uint64_t elementIndex) const {
  return ColIsSparse() ? GetDoubleFromSparseArray(elementIndex) : values_[elementIndex];
}

std::vector<double> ZqDataTableColOfRatioVars::StoredValues() const {
  if (!ColIsSparse()) return values_;
  std::vector<double> stored;
  stored.reserve(sparseValues_.size());
  for (const auto& pair : sparseValues_) stored.push_back(pair.second);
  return stored;
}

std::uint64_t ZqDataTableColOfRatioVars::GetNumUniqueDiscreteValues() const {
  return ColumnDetail::DistinctSorted(StoredValues()).size();
}

std::vector<std::string> ZqDataTableColOfRatioVars::GetUniqueDiscreteValues() const {
  return ZqStringFromDouble(ColumnDetail::DistinctSorted(StoredValues()));
}

void ZqDataTableColOfRatioVars::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(GetUniqueDiscreteValues(), maxNum, out);
}

bool ZqDataTableColOfRatioVars::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() && ElementAt(index) == VarimoBadData::MissingDouble;
}

bool ZqDataTableColOfRatioVars::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() && ElementAt(index) == VarimoBadData::BadDouble;
}

std::uint32_t ZqDataTableColOfRatioVars::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() ? ZqUnsignedFromDouble(ElementAt(index)) : VarimoBadData::BadIndexUnsigned;
}

std::int32_t ZqDataTableColOfRatioVars::GetInt(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() ? ZqIntFromDouble(ElementAt(index)) : VarimoBadData::BadIndexInt;
}

double ZqDataTableColOfRatioVars::GetDouble(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() ? ElementAt(index) : VarimoBadData::BadIndexDouble;
}

std::string ZqDataTableColOfRatioVars::GetString(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < GetNumElementsInCol() ? ZqStringFromDouble(ElementAt(index))
                                       : std::string(VarimoBadData::BadIndexDoubleName);
}

}  // namespace Varimo
