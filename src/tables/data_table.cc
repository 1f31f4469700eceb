#include "varimo/tables/data_table.h"

#include <algorithm>

#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace Failure = ZqStatModelFailureType;

ZqDataTableColSetImpl::ZqDataTableColSetImpl() = default;

std::uint64_t ZqDataTableColSetImpl::GetTotalNumElementsPerRow() const {
  std::uint64_t total = 0;
  for (const ZqDataTableCol& col : columns_) total += col.GetNumColumnsInCol();
  return total;
}

std::uint64_t ZqDataTableColSetImpl::GetNumRowsInColumns() const {
  return columns_.empty() ? 0 : columns_.front().GetTotalNumRowsInCol();
}

Corvane::ZqIter<const ZqDataTableCol> ZqDataTableColSetImpl::GetColumns() const {
  return Corvane::ZqMakeOwnedIter<const ZqDataTableCol>(columns_);
}

const ZqDataTableCol& ZqDataTableColSetImpl::GetColumnFromName(const std::string& name) const {
  for (const ZqDataTableCol& col : columns_) {
    if (col.GetColumnName() == name) return col;
  }
  return nullColumn_;
}

const ZqDataTableCol& ZqDataTableColSetImpl::GetColumnFromName(ZqStatModelResult& result,
                                                               const std::string& name) const {
  for (const ZqDataTableCol& col : columns_) {
    if (col.GetColumnName() != name) continue;
    result = ZqStatModelResult(true);
    return col;
  }
  result = ZqMakeFailedResult(Failure::ColumnNotFound, "ZqDataTableColSetImpl::GetColumnFromName");
  return nullColumn_;
}

const ZqDataTableCol& ZqDataTableColSetImpl::GetColumnFromFullName(ZqStatModelResult& result,
                                                                   const std::string& fullName) const {
  for (const ZqDataTableCol& col : columns_) {
    if (col.GetFullColumnName() != fullName) continue;
    result = ZqStatModelResult(true);
    return col;
  }
  result = ZqMakeFailedResult(Failure::ColumnNotFound, "ZqDataTableColSetImpl::GetColumnFromFullName");
  return nullColumn_;
}

bool ZqDataTableColSetImpl::ColWithThisNameIsInSet(const std::string& name) const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [&](const ZqDataTableCol& col) { return col.GetColumnName() == name; });
}

ZqStatModelResult ZqDataTableColSetImpl::AddColumn(const ZqDataTableCol& col) {
  constexpr const char* kRoutine = "ZqDataTableColSetImpl::AddColumn";
  if (!columns_.empty()) {
    const std::string& name = col.GetColumnName();
    if (ColWithThisNameIsInSet(name)) {
      ZqStatModelResult result = ZqMakeFailedResult(Failure::DuplicateNames, kRoutine);
      result.AddExtraComment("Column name: " + name + "column with same name already present!" +
                             " Use SetColumnName to change current Column Name");
      return result;
    }
    const std::uint64_t rows = col.GetTotalNumRowsInCol();
    const std::uint64_t expected = GetNumRowsInColumns();
    if (rows != expected) {
      ZqStatModelResult result = ZqMakeFailedResult(Failure::WrongInputVectorSize, kRoutine);
      result.AddExtraComment(Corvane::ZqMakeString("New column (name: ", name, ") ", "has wrong number rows!. Has ",
                                                   rows, " Data table expects ", expected));
      return result;
    }
  }
  columns_.push_back(col);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqDataTableColSetImpl::DeleteColumn(const std::string& name) {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [&](const ZqDataTableCol& col) { return col.GetColumnName() == name; });
  if (found == columns_.end()) {
    ZqStatModelResult result = ZqMakeFailedResult(Failure::ColumnNotFound, "ZqDataTableColSetImpl::DeleteColumn");
    std::string comment = "Can't find column " + name + " in column set";
    if (columns_.empty()) comment += " because the set is empty!";
    result.AddExtraComment(comment);
    return result;
  }
  columns_.erase(found);
  return ZqStatModelResult(true);
}

ZqDataTableImpl::ZqDataTableImpl(const std::string& name) : name_(name) {}

ZqDataTableImpl::ZqDataTableImpl(const std::string& name, const ZqDataTableImpl& table,
                                 const ZqDataTableRowSet& rowSet)
    : name_(name), rows_(rowSet), columns_(table.columns_) {
  // A view must not address rows the columns do not have; such a view is
  // made empty rather than left to read bad-index values.
  if (rows_.GetHighestRowNum() >= columns_.GetNumRowsInColumns()) rows_ = ZqDataTableRowSet();
}

ZqDataTableImpl::ZqDataTableImpl(const std::string& name, const ZqDataTableImpl& table,
                                 const ZqDataTableRowPredBase& predicate)
    : name_(name), rows_(table.rows_), columns_(table.columns_) {
  if (table.predicate_) {
    predicate_ = std::make_shared<const ZqAndOfDataTableRowPreds>(*table.predicate_, predicate);
  } else {
    predicate_ = std::shared_ptr<const ZqDataTableRowPredBase>(predicate.CreateCopy());
  }
}

ZqStatModelResult ZqDataTableImpl::AddColumn(const ZqDataTableCol& col) {
  ZqStatModelResult result = columns_.AddColumn(col);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqDataTableImpl::AddColumn");
    return result;
  }
  if (columns_.GetNumColumns() == 1) {
    const std::uint64_t numRows = col.GetTotalNumRowsInCol();
    if (rows_.GetNumRows() == 0) {
      rows_ = ZqDataTableRowSet(numRows);
    } else if (rows_.GetHighestRowNum() >= numRows) {
      result.SetFailureTypeAndWhereFailed(Failure::WrongInputVectorSize, "ZqDataTableImpl::AddColumn");
      result.AddExtraComment("Existing row set addresses rownumbers beyond the column size");
      result.AddExtraComment(Corvane::ZqMakeString("Highest row number in row set is: ", rows_.GetHighestRowNum(),
                                                   " While num rows in input col is: ", numRows));
      return result;
    }
  }
  return result;
}

Corvane::ZqIter<const ZqDataTableRow> ZqDataTableImpl::GetRows() const {
  Corvane::ZqIter<const ZqDataTableRow> rows = rows_.GetRows();
  if (!predicate_) return rows;
  std::shared_ptr<const ZqDataTableRowPredBase> predicate = predicate_;
  return Corvane::ZqMakeFilterIter<const ZqDataTableRow>(
      std::move(rows), [predicate](const ZqDataTableRow& row) { return (*predicate)(row); });
}

std::uint64_t ZqDataTableImpl::GetNumRows() const {
  if (!predicate_) return rows_.GetNumRows();
  std::uint64_t count = 0;
  for (const ZqDataTableRow& row : rows_.GetImpl().GetRowVector()) count += (*predicate_)(row) ? 1 : 0;
  return count;
}

}  // namespace Varimo
