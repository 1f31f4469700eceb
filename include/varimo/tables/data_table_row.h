// Rows and row sets. A row is a row number; it does not know its table and
// reads a cell from whatever column it is given. A row set is the ordered
// list of rows a table shows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/corvane/iter.h"
#include "varimo/tables/data_table_column.h"

namespace Varimo {

class ZqDataTableRowImpl {
 public:
  explicit ZqDataTableRowImpl(std::uint64_t rowNumber = 0) : rowNumber_(rowNumber) {}
  std::uint64_t GetRowNumber() const { return rowNumber_; }

 private:
  std::uint64_t rowNumber_;
};

class ZqDataTableRow {
 public:
  explicit ZqDataTableRow(std::uint64_t rowNumber = 0) : impl_(rowNumber) {}

  std::uint64_t GetRowNumber() const { return impl_.GetRowNumber(); }
  // The cell (this row, colNum) of `col`, as the column reads it.
  bool IsMissingValue(const ZqDataTableCol& col, std::uint64_t colNum) const {
    return col.RowColHasMissingData(GetRowNumber(), colNum);
  }
  std::uint32_t GetUnsigned(const ZqDataTableCol& col, std::uint64_t colNum) const {
    return col.GetUnsigned(GetRowNumber(), colNum);
  }
  std::int32_t GetInt(const ZqDataTableCol& col, std::uint64_t colNum) const {
    return col.GetInt(GetRowNumber(), colNum);
  }
  double GetDouble(const ZqDataTableCol& col, std::uint64_t colNum) const {
    return col.GetDouble(GetRowNumber(), colNum);
  }
  std::string GetString(const ZqDataTableCol& col, std::uint64_t colNum) const {
    return col.GetString(GetRowNumber(), colNum);
  }

  const ZqDataTableRowImpl& GetImpl() const { return impl_; }
  bool operator==(const ZqDataTableRow& other) const { return GetRowNumber() == other.GetRowNumber(); }

 private:
  ZqDataTableRowImpl impl_;
};

// The rows are immutable once made, and copies of a row set share them, so
// iterators over a table's rows stay valid and cheap whatever happens to the
// table afterwards.
class ZqDataTableRowSetImpl {
 public:
  ZqDataTableRowSetImpl();
  explicit ZqDataTableRowSetImpl(std::uint64_t numRows);
  explicit ZqDataTableRowSetImpl(std::vector<ZqDataTableRow> rows);

  std::uint64_t GetNumRows() const { return rows_->size(); }
  Corvane::ZqIter<const ZqDataTableRow> GetRows() const;
  // Largest row number; 0 for an empty set.
  std::uint64_t GetHighestRowNum() const { return highestRowNum_; }
  const std::vector<ZqDataTableRow>& GetRowVector() const { return *rows_; }

 private:
  std::shared_ptr<const std::vector<ZqDataTableRow>> rows_;
  std::uint64_t highestRowNum_ = 0;
};

class ZqDataTableRowSet {
 public:
  // No rows.
  ZqDataTableRowSet() = default;
  // Rows 0 to numRows - 1 in order.
  explicit ZqDataTableRowSet(std::uint64_t numRows) : impl_(numRows) {}
  explicit ZqDataTableRowSet(std::vector<ZqDataTableRow> rows) : impl_(std::move(rows)) {}

  std::uint64_t GetNumRows() const { return impl_.GetNumRows(); }
  Corvane::ZqIter<const ZqDataTableRow> GetRows() const { return impl_.GetRows(); }
  std::uint64_t GetHighestRowNum() const { return impl_.GetHighestRowNum(); }
  const ZqDataTableRowSetImpl& GetImpl() const { return impl_; }

 private:
  ZqDataTableRowSetImpl impl_;
};

}  // namespace Varimo
