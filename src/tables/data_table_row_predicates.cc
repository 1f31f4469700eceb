#include "varimo/tables/data_table_row_predicates.h"

#include <cmath>

namespace Varimo {

namespace {

std::unique_ptr<ZqDataTableRowPredBase> CopyOf(const std::unique_ptr<ZqDataTableRowPredBase>& predicate) {
  return predicate ? std::unique_ptr<ZqDataTableRowPredBase>(predicate->CreateCopy()) : nullptr;
}

}  // namespace

bool ZqRowColEqualsDouble::operator()(const ZqDataTableRow& row) const {
  // Negated form on purpose: a NaN difference compares false and so passes.
  return !(std::fabs(row.GetDouble(GetColumn(), GetColNum()) - value_) >= tolerance_);
}

bool ZqRowColWithinInclUnsignedRange::operator()(const ZqDataTableRow& row) const {
  const std::uint32_t value = row.GetUnsigned(GetColumn(), GetColNum());
  return low_ <= value && value <= high_;
}

bool ZqRowColWithinInclIntRange::operator()(const ZqDataTableRow& row) const {
  const std::int32_t value = row.GetInt(GetColumn(), GetColNum());
  return low_ <= value && value <= high_;
}

bool ZqRowColWithinInclDoubleRange::operator()(const ZqDataTableRow& row) const {
  const double value = row.GetDouble(GetColumn(), GetColNum());
  return low_ <= value && value <= high_;
}

bool ZqRowColWithinInclStringRange::operator()(const ZqDataTableRow& row) const {
  // std::string compares through char_traits<char>, which orders bytes as
  // unsigned values and puts a prefix before its extensions.
  const std::string value = row.GetString(GetColumn(), GetColNum());
  return low_ <= value && value <= high_;
}

ZqAndOfDataTableRowPreds::ZqAndOfDataTableRowPreds(const ZqAndOfDataTableRowPreds& other)
    : ZqDataTableRowPredBase(other), first_(CopyOf(other.first_)), second_(CopyOf(other.second_)) {}

ZqAndOfDataTableRowPreds& ZqAndOfDataTableRowPreds::operator=(const ZqAndOfDataTableRowPreds& other) {
  if (this != &other) {
    first_ = CopyOf(other.first_);
    second_ = CopyOf(other.second_);
  }
  return *this;
}

bool ZqAndOfDataTableRowPreds::operator()(const ZqDataTableRow& row) const {
  return first_ && second_ && (*first_)(row) && (*second_)(row);
}

ZqOrOfDataTableRowPreds::ZqOrOfDataTableRowPreds(const ZqOrOfDataTableRowPreds& other)
    : ZqDataTableRowPredBase(other), first_(CopyOf(other.first_)), second_(CopyOf(other.second_)) {}

ZqOrOfDataTableRowPreds& ZqOrOfDataTableRowPreds::operator=(const ZqOrOfDataTableRowPreds& other) {
  if (this != &other) {
    first_ = CopyOf(other.first_);
    second_ = CopyOf(other.second_);
  }
  return *this;
}

bool ZqOrOfDataTableRowPreds::operator()(const ZqDataTableRow& row) const {
  if (!first_ || !second_) return false;
  return (*first_)(row) || (*second_)(row);
}

ZqNotOfDataTableRowPred::ZqNotOfDataTableRowPred(const ZqNotOfDataTableRowPred& other)
    : ZqDataTableRowPredBase(other), predicate_(CopyOf(other.predicate_)) {}

ZqNotOfDataTableRowPred& ZqNotOfDataTableRowPred::operator=(const ZqNotOfDataTableRowPred& other) {
  if (this != &other) predicate_ = CopyOf(other.predicate_);
  return *this;
}

bool ZqNotOfDataTableRowPred::operator()(const ZqDataTableRow& row) const {
  return predicate_ && !(*predicate_)(row);
}

ZqAndOfDataTableRowPreds operator&&(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second) {
  return ZqAndOfDataTableRowPreds(first, second);
}

ZqOrOfDataTableRowPreds operator||(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second) {
  return ZqOrOfDataTableRowPreds(first, second);
}

ZqNotOfDataTableRowPred operator!(const ZqDataTableRowPredBase& predicate) {
  return ZqNotOfDataTableRowPred(predicate);
}

}  // namespace Varimo
