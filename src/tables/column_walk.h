// Private helpers of the column statistics: the two ways of walking rows,
// and the checks and failure texts the packing functions share.
#pragma once

#include <cstdint>
#include <string>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/data_table.h"

namespace Varimo::ColumnWalk {

// Every row of a column, 0 to count - 1.
struct AllRows {
  std::uint64_t count;
  // Calls visit(row) in order until it returns false; false if it did.
  template <class Visit>
  bool ForEach(Visit&& visit) const {
    for (std::uint64_t row = 0; row < count; ++row) {
      if (!visit(row)) return false;
    }
    return true;
  }
};

// The rows a table shows, views and predicates applied.
struct TableRows {
  const ZqDataTable& table;
  template <class Visit>
  bool ForEach(Visit&& visit) const {
    for (const ZqDataTableRow& row : table.GetRows()) {
      if (!visit(row.GetRowNumber())) return false;
    }
    return true;
  }
};

// The state of one cell, checked in the order every packing function uses.
enum class Cell { BadIndex, Missing, Bad, Good };
inline Cell CheckCell(const ZqDataTableCol& col, std::uint64_t row, std::uint64_t colNum) {
  if (col.RowColIndexIsBad(row, colNum)) return Cell::BadIndex;
  if (col.RowColHasMissingData(row, colNum)) return Cell::Missing;
  if (col.RowColHasBadData(row, colNum)) return Cell::Bad;
  return Cell::Good;
}

inline std::string ScaleText(const ZqDataTableCol& col) {
  const std::uint32_t type = col.GetStatVariableType();
  return type < ZqStatVariableType::NumTypes ? ZqStatVariableType::TypeName[type] : "";
}

// "row column index combination (<row>, <col>)"
inline std::string RowColText(std::uint64_t row, std::uint64_t colNum) {
  return Corvane::ZqMakeString("row column index combination (", row, ", ", colNum, ")");
}

// Puts `routine` on the chain of a failed result; true if it failed.
inline bool Failed(ZqStatModelResult& result, const char* routine) {
  if (result.IsSuccessful()) return false;
  result.AddCallContext(routine);
  return true;
}

// Looks a column up for the table forms: on failure `result` carries the
// look-up's report with `routine` added, and the returned column is the
// table's null column.
inline const ZqDataTableCol& FindColumn(ZqStatModelResult& result, const ZqDataTable& table,
                                        const std::string& name, const char* routine) {
  result = true;
  const ZqDataTableCol& col = table.GetColumnFromName(result, name);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return col;
}

}  // namespace Varimo::ColumnWalk
