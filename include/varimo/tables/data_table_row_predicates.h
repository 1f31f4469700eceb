// Row predicates: yes or no for a row, by comparing one cell with a value,
// and their combinations by and, or and not. A table view keeps one and
// skips the rows it refuses.
//
//   ZqDataTable active("active", table,
//       ZqRowColWithinInclDoubleRange(5.0, 9.0, table.GetColumnFromName("pIC50"), 0) &&
//       !ZqRowColEqualsString("MissingStringData", table.GetColumnFromName("Name"), 0));
//
// Reserved values are ordinary numbers to the comparisons: a missing double
// is a very large value, so a range with ordinary limits refuses it. No
// predicate tests for missing data itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "varimo/platform/corvane/functional.h"
#include "varimo/tables/data_table_column.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {

class ZqDataTableRowPredBase : public Corvane::ZqUnaryPredicate<ZqDataTableRow> {
 public:
  bool operator()(const ZqDataTableRow& row) const override = 0;
  ZqDataTableRowPredBase* CreateCopy() const override = 0;
};

// The cell of one column that every comparing predicate reads.
class ZqRowColPredicate : public ZqDataTableRowPredBase {
 public:
  ZqRowColPredicate() = default;
  ZqRowColPredicate(const ZqDataTableCol& col, std::uint64_t colNum) : col_(col), colNum_(colNum) {}
  const ZqDataTableCol& GetColumn() const { return col_; }
  std::uint64_t GetColNum() const { return colNum_; }

 private:
  ZqDataTableCol col_;
  std::uint64_t colNum_ = 0;
};

class ZqRowColEqualsUnsigned final : public ZqRowColPredicate {
 public:
  ZqRowColEqualsUnsigned() = default;
  ZqRowColEqualsUnsigned(std::uint32_t value, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), value_(value) {}
  bool operator()(const ZqDataTableRow& row) const override { return row.GetUnsigned(GetColumn(), GetColNum()) == value_; }
  ZqRowColEqualsUnsigned* CreateCopy() const override { return new ZqRowColEqualsUnsigned(*this); }

 private:
  std::uint32_t value_ = 0;
};

class ZqRowColEqualsInt final : public ZqRowColPredicate {
 public:
  ZqRowColEqualsInt() = default;
  ZqRowColEqualsInt(std::int32_t value, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), value_(value) {}
  bool operator()(const ZqDataTableRow& row) const override { return row.GetInt(GetColumn(), GetColNum()) == value_; }
  ZqRowColEqualsInt* CreateCopy() const override { return new ZqRowColEqualsInt(*this); }

 private:
  std::int32_t value_ = 0;
};

// True when |cell - value| < tolerance, strictly: a tolerance of 0 is never
// met. Written as !(|diff| >= tolerance), so a NaN cell passes.
class ZqRowColEqualsDouble final : public ZqRowColPredicate {
 public:
  ZqRowColEqualsDouble() = default;
  ZqRowColEqualsDouble(double value, const ZqDataTableCol& col, std::uint64_t colNum, double tolerance)
      : ZqRowColPredicate(col, colNum), value_(value), tolerance_(tolerance) {}
  bool operator()(const ZqDataTableRow& row) const override;
  ZqRowColEqualsDouble* CreateCopy() const override { return new ZqRowColEqualsDouble(*this); }

 private:
  double value_ = 0.0;
  double tolerance_ = 0.0;
};

class ZqRowColEqualsString final : public ZqRowColPredicate {
 public:
  ZqRowColEqualsString() = default;
  ZqRowColEqualsString(const std::string& value, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), value_(value) {}
  bool operator()(const ZqDataTableRow& row) const override { return row.GetString(GetColumn(), GetColNum()) == value_; }
  ZqRowColEqualsString* CreateCopy() const override { return new ZqRowColEqualsString(*this); }

 private:
  std::string value_;
};

// low <= cell <= high, in the type of the limits.
class ZqRowColWithinInclUnsignedRange final : public ZqRowColPredicate {
 public:
  ZqRowColWithinInclUnsignedRange() = default;
  ZqRowColWithinInclUnsignedRange(std::uint32_t low, std::uint32_t high, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), low_(low), high_(high) {}
  bool operator()(const ZqDataTableRow& row) const override;
  ZqRowColWithinInclUnsignedRange* CreateCopy() const override { return new ZqRowColWithinInclUnsignedRange(*this); }

 private:
  std::uint32_t low_ = 0, high_ = 0;
};

class ZqRowColWithinInclIntRange final : public ZqRowColPredicate {
 public:
  ZqRowColWithinInclIntRange() = default;
  ZqRowColWithinInclIntRange(std::int32_t low, std::int32_t high, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), low_(low), high_(high) {}
  bool operator()(const ZqDataTableRow& row) const override;
  ZqRowColWithinInclIntRange* CreateCopy() const override { return new ZqRowColWithinInclIntRange(*this); }

 private:
  std::int32_t low_ = 0, high_ = 0;
};

// False for a NaN cell.
class ZqRowColWithinInclDoubleRange final : public ZqRowColPredicate {
 public:
  ZqRowColWithinInclDoubleRange() = default;
  ZqRowColWithinInclDoubleRange(double low, double high, const ZqDataTableCol& col, std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), low_(low), high_(high) {}
  bool operator()(const ZqDataTableRow& row) const override;
  ZqRowColWithinInclDoubleRange* CreateCopy() const override { return new ZqRowColWithinInclDoubleRange(*this); }

 private:
  double low_ = 0.0, high_ = 0.0;
};

// Byte-wise comparison; on a common prefix the shorter string is smaller.
class ZqRowColWithinInclStringRange final : public ZqRowColPredicate {
 public:
  ZqRowColWithinInclStringRange() = default;
  ZqRowColWithinInclStringRange(const std::string& low, const std::string& high, const ZqDataTableCol& col,
                                std::uint64_t colNum)
      : ZqRowColPredicate(col, colNum), low_(low), high_(high) {}
  bool operator()(const ZqDataTableRow& row) const override;
  ZqRowColWithinInclStringRange* CreateCopy() const override { return new ZqRowColWithinInclStringRange(*this); }

 private:
  std::string low_, high_;
};

// Combinations own copies of their parts. The second part is evaluated only
// when the first does not decide. A default-constructed combination has no
// parts and refuses every row.
class ZqAndOfDataTableRowPreds final : public ZqDataTableRowPredBase {
 public:
  ZqAndOfDataTableRowPreds() = default;
  ZqAndOfDataTableRowPreds(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second)
      : first_(first.CreateCopy()), second_(second.CreateCopy()) {}
  ZqAndOfDataTableRowPreds(const ZqAndOfDataTableRowPreds& other);
  ZqAndOfDataTableRowPreds& operator=(const ZqAndOfDataTableRowPreds& other);
  bool operator()(const ZqDataTableRow& row) const override;
  ZqAndOfDataTableRowPreds* CreateCopy() const override { return new ZqAndOfDataTableRowPreds(*this); }

 private:
  std::unique_ptr<ZqDataTableRowPredBase> first_, second_;
};

class ZqOrOfDataTableRowPreds final : public ZqDataTableRowPredBase {
 public:
  ZqOrOfDataTableRowPreds() = default;
  ZqOrOfDataTableRowPreds(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second)
      : first_(first.CreateCopy()), second_(second.CreateCopy()) {}
  ZqOrOfDataTableRowPreds(const ZqOrOfDataTableRowPreds& other);
  ZqOrOfDataTableRowPreds& operator=(const ZqOrOfDataTableRowPreds& other);
  bool operator()(const ZqDataTableRow& row) const override;
  ZqOrOfDataTableRowPreds* CreateCopy() const override { return new ZqOrOfDataTableRowPreds(*this); }

 private:
  std::unique_ptr<ZqDataTableRowPredBase> first_, second_;
};

class ZqNotOfDataTableRowPred final : public ZqDataTableRowPredBase {
 public:
  ZqNotOfDataTableRowPred() = default;
  explicit ZqNotOfDataTableRowPred(const ZqDataTableRowPredBase& predicate) : predicate_(predicate.CreateCopy()) {}
  ZqNotOfDataTableRowPred(const ZqNotOfDataTableRowPred& other);
  ZqNotOfDataTableRowPred& operator=(const ZqNotOfDataTableRowPred& other);
  bool operator()(const ZqDataTableRow& row) const override;
  ZqNotOfDataTableRowPred* CreateCopy() const override { return new ZqNotOfDataTableRowPred(*this); }

 private:
  std::unique_ptr<ZqDataTableRowPredBase> predicate_;
};

ZqAndOfDataTableRowPreds operator&&(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second);
ZqOrOfDataTableRowPreds operator||(const ZqDataTableRowPredBase& first, const ZqDataTableRowPredBase& second);
ZqNotOfDataTableRowPred operator!(const ZqDataTableRowPredBase& predicate);

}  // namespace Varimo
