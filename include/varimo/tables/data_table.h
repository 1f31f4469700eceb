// The data table: a named set of equally long columns seen through a set of
// row numbers and, optionally, a row predicate. A view on a table shares its
// columns (column handles share their data) and differs only in the rows it
// selects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/iter.h"
#include "varimo/tables/data_table_column.h"
#include "varimo/tables/data_table_row.h"
#include "varimo/tables/data_table_row_predicates.h"

namespace Varimo {

class ZqDataTableColSetImpl {
 public:
  ZqDataTableColSetImpl();

  std::uint64_t GetNumColumns() const { return columns_.size(); }
  // Sum of the columns' elements per row.
  std::uint64_t GetTotalNumElementsPerRow() const;
  // Rows of the first column; 0 without columns.
  std::uint64_t GetNumRowsInColumns() const;
  // The columns in the order added; the iterator shares them.
  Corvane::ZqIter<const ZqDataTableCol> GetColumns() const;
  // The first column so named, else the set's null column.
  const ZqDataTableCol& GetColumnFromName(const std::string& name) const;
  // The same, with `result` telling how this lookup went: a success on a
  // hit (whatever it held before, so that a caller may reuse one result for
  // several lookups, checking it after each) and a ColumnNotFound failure on
  // a miss. The lookup by full name does likewise.
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const;
  const ZqDataTableCol& GetColumnFromFullName(ZqStatModelResult& result, const std::string& fullName) const;
  bool ColWithThisNameIsInSet(const std::string& name) const;
  // Appends the handle (the data is shared, not copied). A non-empty set
  // refuses a taken name (DuplicateNames) and a column with another number
  // of rows (WrongInputVectorSize).
  ZqStatModelResult AddColumn(const ZqDataTableCol& col);
  // Removes the first column so named; ColumnNotFound when there is none.
  ZqStatModelResult DeleteColumn(const std::string& name);
  void ClearColumns() { columns_.clear(); }

 private:
  std::vector<ZqDataTableCol> columns_;
  ZqDataTableCol nullColumn_;
};

class ZqDataTableColSet {
 public:
  std::uint64_t GetNumColumns() const { return impl_.GetNumColumns(); }
  std::uint64_t GetTotalNumElementsPerRow() const { return impl_.GetTotalNumElementsPerRow(); }
  std::uint64_t GetNumRowsInColumns() const { return impl_.GetNumRowsInColumns(); }
  Corvane::ZqIter<const ZqDataTableCol> GetColumns() const { return impl_.GetColumns(); }
  const ZqDataTableCol& GetColumnFromName(const std::string& name) const { return impl_.GetColumnFromName(name); }
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const {
    return impl_.GetColumnFromName(result, name);
  }
  const ZqDataTableCol& GetColumnFromFullName(ZqStatModelResult& result, const std::string& fullName) const {
    return impl_.GetColumnFromFullName(result, fullName);
  }
  bool ColWithThisNameIsInSet(const std::string& name) const { return impl_.ColWithThisNameIsInSet(name); }
  ZqStatModelResult AddColumn(const ZqDataTableCol& col) { return impl_.AddColumn(col); }
  ZqStatModelResult DeleteColumn(const std::string& name) { return impl_.DeleteColumn(name); }
  const ZqDataTableColSetImpl& GetImpl() const { return impl_; }
  ZqDataTableColSetImpl& GetImpl() { return impl_; }

 private:
  ZqDataTableColSetImpl impl_;
};

class ZqDataTableImpl {
 public:
  explicit ZqDataTableImpl(const std::string& name);
  ZqDataTableImpl(const std::string& name, const ZqDataTableImpl& table, const ZqDataTableRowSet& rowSet);
  ZqDataTableImpl(const std::string& name, const ZqDataTableImpl& table, const ZqDataTableRowPredBase& predicate);

  const std::string& GetTableName() const { return name_; }
  std::uint64_t GetNumColumns() const { return columns_.GetNumColumns(); }
  std::uint64_t GetTotalNumElementsPerRow() const { return columns_.GetTotalNumElementsPerRow(); }
  Corvane::ZqIter<const ZqDataTableCol> GetColumns() const { return columns_.GetColumns(); }
  const ZqDataTableCol& GetColumnFromName(const std::string& name) const { return columns_.GetColumnFromName(name); }
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const {
    return columns_.GetColumnFromName(result, name);
  }
  const ZqDataTableCol& GetColumnFromFullName(ZqStatModelResult& result, const std::string& fullName) const {
    return columns_.GetColumnFromFullName(result, fullName);
  }
  ZqStatModelResult AddColumn(const ZqDataTableCol& col);
  ZqStatModelResult DeleteColumn(const std::string& name) { return columns_.DeleteColumn(name); }
  // Empties the column set; the row set stays.
  void ClearColumns() { columns_.GetImpl().ClearColumns(); }
  // The selected rows: the row set, filtered by the predicate if there is
  // one (evaluated as the walk reaches each row).
  Corvane::ZqIter<const ZqDataTableRow> GetRows() const;
  // Walks GetRows and counts: one predicate evaluation per row per call.
  std::uint64_t GetNumRows() const;

  const ZqDataTableRowSet& GetDataTableRowSet() const { return rows_; }
  const ZqDataTableColSet& GetDataTableColSet() const { return columns_; }
  // Null when the table has no predicate.
  const ZqDataTableRowPredBase* GetRowPredPtr() const { return predicate_.get(); }

 private:
  std::string name_;
  ZqDataTableRowSet rows_;
  ZqDataTableColSet columns_;
  // Predicates are immutable, so copies of a table and the iterators it
  // hands out (which may outlive it) share one.
  std::shared_ptr<const ZqDataTableRowPredBase> predicate_;
};

class ZqDataTable {
 public:
  // An empty table.
  explicit ZqDataTable(const std::string& name = std::string()) : impl_(name) {}
  // A view of `table` showing `rowSet`; rows beyond the columns make the
  // view empty.
  ZqDataTable(const std::string& name, const ZqDataTable& table, const ZqDataTableRowSet& rowSet)
      : impl_(name, table.impl_, rowSet) {}
  // A view of `table` showing the rows that also satisfy `predicate`.
  ZqDataTable(const std::string& name, const ZqDataTable& table, const ZqDataTableRowPredBase& predicate)
      : impl_(name, table.impl_, predicate) {}

  const std::string& GetTableName() const { return impl_.GetTableName(); }
  std::uint64_t GetNumColumns() const { return impl_.GetNumColumns(); }
  std::uint64_t GetTotalNumElementsPerRow() const { return impl_.GetTotalNumElementsPerRow(); }
  Corvane::ZqIter<const ZqDataTableCol> GetColumns() const { return impl_.GetColumns(); }
  const ZqDataTableCol& GetColumnFromName(const std::string& name) const { return impl_.GetColumnFromName(name); }
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const {
    return impl_.GetColumnFromName(result, name);
  }
  const ZqDataTableCol& GetColumnFromFullName(ZqStatModelResult& result, const std::string& fullName) const {
    return impl_.GetColumnFromFullName(result, fullName);
  }
  // The first column fixes the table's rows; later ones need the same
  // number of rows.
  ZqStatModelResult AddColumn(const ZqDataTableCol& col) { return impl_.AddColumn(col); }
  ZqStatModelResult DeleteColumn(const std::string& name) { return impl_.DeleteColumn(name); }
  void ClearColumns() { impl_.ClearColumns(); }
  Corvane::ZqIter<const ZqDataTableRow> GetRows() const { return impl_.GetRows(); }
  std::uint64_t GetNumRows() const { return impl_.GetNumRows(); }

  const ZqDataTableImpl& GetImpl() const { return impl_; }
  ZqDataTableImpl& GetImpl() { return impl_; }

 private:
  ZqDataTableImpl impl_;
};

}  // namespace Varimo
