#include "varimo/tables/data_table_row.h"

#include <algorithm>

namespace Varimo {

namespace {

std::uint64_t HighestRowNumber(const std::vector<ZqDataTableRow>& rows) {
  std::uint64_t highest = 0;
  for (const ZqDataTableRow& row : rows) highest = std::max(highest, row.GetRowNumber());
  return highest;
}

// Walks a shared, immutable row vector; copies share it.
class RowSetIterImpl final : public Corvane::ZqIterBase<const ZqDataTableRow> {
 public:
  explicit RowSetIterImpl(std::shared_ptr<const std::vector<ZqDataTableRow>> rows) : rows_(std::move(rows)) {}
  bool IsValid() const override { return position_ < rows_->size(); }
  const ZqDataTableRow& Current() const override { return (*rows_)[position_]; }
  void Next() override { ++position_; }
  void ToFirst() override { position_ = 0; }
  std::unique_ptr<Corvane::ZqIterBase<const ZqDataTableRow>> Clone() const override {
    return std::make_unique<RowSetIterImpl>(*this);
  }

 private:
  std::shared_ptr<const std::vector<ZqDataTableRow>> rows_;
  std::size_t position_ = 0;
};

}  // namespace

ZqDataTableRowSetImpl::ZqDataTableRowSetImpl() : rows_(std::make_shared<const std::vector<ZqDataTableRow>>()) {}

ZqDataTableRowSetImpl::ZqDataTableRowSetImpl(std::uint64_t numRows) {
  std::vector<ZqDataTableRow> rows;
  rows.reserve(numRows);
  for (std::uint64_t row = 0; row < numRows; ++row) rows.emplace_back(row);
  highestRowNum_ = numRows == 0 ? 0 : numRows - 1;
  rows_ = std::make_shared<const std::vector<ZqDataTableRow>>(std::move(rows));
}

ZqDataTableRowSetImpl::ZqDataTableRowSetImpl(std::vector<ZqDataTableRow> rows)
    : highestRowNum_(HighestRowNumber(rows)) {
  rows_ = std::make_shared<const std::vector<ZqDataTableRow>>(std::move(rows));
}

Corvane::ZqIter<const ZqDataTableRow> ZqDataTableRowSetImpl::GetRows() const {
  return Corvane::ZqIter<const ZqDataTableRow>(std::make_unique<RowSetIterImpl>(rows_));
}

}  // namespace Varimo
