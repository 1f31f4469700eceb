#include <ostream>

#include "column_helpers.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

ZqDataTableColOfIntervalVars::ZqDataTableColOfIntervalVars(const std::string& name, const std::string& fullName,
                                                           std::uint64_t numRows, std::uint64_t numCols,
                                                           bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular) {
  values_.reserve(ColumnDetail::ElementsToReserve(numRows, numCols, lowerTriangular));
}

std::uint32_t ZqDataTableColOfIntervalVars::IndexOfStringInListOfPossibleValues(const std::string&) const {
  return VarimoBadData::BadUnsigned;
}

void ZqDataTableColOfIntervalVars::PushBackInt(std::int32_t value) {
  if (value == VarimoBadData::MissingInt) SetColHasMissingData();
  if (value == VarimoBadData::BadInt) SetColHasBadData();
  values_.push_back(value);
}

void ZqDataTableColOfIntervalVars::FinishAddingVars() { SetColReadOnly(true); }

std::uint32_t ZqDataTableColOfIntervalVars::GetStatVariableType() const { return ZqStatVariableType::Interval; }
std::uint32_t ZqDataTableColOfIntervalVars::GetStatVarDataType() const { return ZqStatVarDataType::Int; }

std::uint64_t ZqDataTableColOfIntervalVars::GetNumUniqueDiscreteValues() const {
  return ColumnDetail::DistinctSorted(values_).size();
}

std::vector<std::string> ZqDataTableColOfIntervalVars::GetUniqueDiscreteValues() const {
  return ZqStringFromInt(ColumnDetail::DistinctSorted(values_));
}

void ZqDataTableColOfIntervalVars::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(GetUniqueDiscreteValues(), maxNum, out);
}

bool ZqDataTableColOfIntervalVars::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() && values_[index] == VarimoBadData::MissingInt;
}

bool ZqDataTableColOfIntervalVars::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() && values_[index] == VarimoBadData::BadInt;
}

std::uint32_t ZqDataTableColOfIntervalVars::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() ? ZqUnsignedFromInt(values_[index]) : VarimoBadData::BadIndexUnsigned;
}

std::int32_t ZqDataTableColOfIntervalVars::GetInt(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() ? values_[index] : VarimoBadData::BadIndexInt;
}

double ZqDataTableColOfIntervalVars::GetDouble(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() ? ZqDoubleFromInt(values_[index]) : VarimoBadData::BadIndexDouble;
}

std::string ZqDataTableColOfIntervalVars::GetString(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() ? ZqStringFromInt(values_[index]) : VarimoBadData::BadIndexIntName;
}

}  // namespace Varimo
