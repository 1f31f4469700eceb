#include <ostream>

#include "column_helpers.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

// Numeric reads convert the text; the missing and bad strings read as the
// missing and bad value of the requested type, so that a stored missing
// stays missing whatever type it is read as (the plain string conversions
// know only the numeric reserved names).

ZqDataTableColOfIdentifiers::ZqDataTableColOfIdentifiers(const std::string& name, const std::string& fullName,
                                                         std::uint64_t numRows, std::uint64_t numCols,
                                                         bool lowerTriangular)
    : ZqDataTableColBase(name, fullName, numCols, lowerTriangular) {
  values_.reserve(ColumnDetail::ElementsToReserve(numRows, numCols, lowerTriangular));
}

ZqDataTableColOfIdentifiers::ZqDataTableColOfIdentifiers(const std::string& name, const std::string& fullName,
                                                         std::vector<std::string> values)
    : ZqDataTableColBase(name, fullName, 1, false), values_(std::move(values)) {
  for (const std::string& value : values_) {
    if (ZqIsMissing(value)) SetColHasMissingData();
    if (ZqIsBad(value)) SetColHasBadData();
  }
}

std::uint32_t ZqDataTableColOfIdentifiers::IndexOfStringInListOfPossibleValues(const std::string&) const {
  return VarimoBadData::BadUnsigned;
}

void ZqDataTableColOfIdentifiers::PushBackString(const std::string& value) {
  if (value == VarimoBadData::MissingString) SetColHasMissingData();
  if (value == VarimoBadData::BadString) SetColHasBadData();
  values_.push_back(value);
}

void ZqDataTableColOfIdentifiers::FinishAddingVars() { SetColReadOnly(true); }

std::uint32_t ZqDataTableColOfIdentifiers::GetStatVariableType() const { return ZqStatVariableType::Identifier; }
std::uint32_t ZqDataTableColOfIdentifiers::GetStatVarDataType() const { return ZqStatVarDataType::String; }

std::uint64_t ZqDataTableColOfIdentifiers::GetNumUniqueDiscreteValues() const {
  return ColumnDetail::DistinctSorted(values_).size();
}

std::vector<std::string> ZqDataTableColOfIdentifiers::GetUniqueDiscreteValues() const {
  return ColumnDetail::DistinctSorted(values_);
}

void ZqDataTableColOfIdentifiers::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(GetUniqueDiscreteValues(), maxNum, out);
}

bool ZqDataTableColOfIdentifiers::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() && values_[index] == VarimoBadData::MissingString;
}

bool ZqDataTableColOfIdentifiers::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() && values_[index] == VarimoBadData::BadString;
}

std::uint32_t ZqDataTableColOfIdentifiers::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  if (index >= values_.size()) return VarimoBadData::BadIndexUnsigned;
  if (ZqIsMissing(values_[index])) return VarimoBadData::MissingUnsigned;
  if (ZqIsBad(values_[index])) return VarimoBadData::BadUnsigned;
  return ZqUnsignedFromString(values_[index]);
}

std::int32_t ZqDataTableColOfIdentifiers::GetInt(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  if (index >= values_.size()) return VarimoBadData::BadIndexInt;
  if (ZqIsMissing(values_[index])) return VarimoBadData::MissingInt;
  if (ZqIsBad(values_[index])) return VarimoBadData::BadInt;
  return ZqIntFromString(values_[index]);
}

double ZqDataTableColOfIdentifiers::GetDouble(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  if (index >= values_.size()) return VarimoBadData::BadIndexDouble;
  if (ZqIsMissing(values_[index])) return VarimoBadData::MissingDouble;
  if (ZqIsBad(values_[index])) return VarimoBadData::BadDouble;
  return ZqDoubleFromString(values_[index]);
}

std::string ZqDataTableColOfIdentifiers::GetString(std::uint64_t row, std::uint64_t col) const {
  const std::uint64_t index = GetElementIndex(row, col);
  return index < values_.size() ? values_[index] : std::string(VarimoBadData::BadIndexString);
}

}  // namespace Varimo
