#include <ostream>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {

ZqNullDataTableCol::ZqNullDataTableCol(const std::string& name, const std::string& fullName)
    : ZqDataTableColBase(name, fullName, 1, false) {}

std::uint32_t ZqNullDataTableCol::IndexOfStringInListOfPossibleValues(const std::string&) const {
  return VarimoBadData::BadUnsigned;
}

void ZqNullDataTableCol::FinishAddingVars() { SetColReadOnly(true); }

std::uint32_t ZqNullDataTableCol::GetStatVariableType() const { return ZqStatVariableType::Unknown; }
std::uint32_t ZqNullDataTableCol::GetStatVarDataType() const { return ZqStatVarDataType::Unknown; }

void ZqNullDataTableCol::PrintUniqueDiscreteValues(unsigned long, std::ostream& out) const {
  out << "null column: no values\n";
}

std::uint32_t ZqNullDataTableCol::GetUnsigned(std::uint64_t, std::uint64_t) const {
  return VarimoBadData::BadIndexUnsigned;
}
std::int32_t ZqNullDataTableCol::GetInt(std::uint64_t, std::uint64_t) const { return VarimoBadData::BadIndexInt; }
double ZqNullDataTableCol::GetDouble(std::uint64_t, std::uint64_t) const { return VarimoBadData::BadIndexDouble; }
std::string ZqNullDataTableCol::GetString(std::uint64_t, std::uint64_t) const { return VarimoBadData::BadIndexString; }

}  // namespace Varimo
