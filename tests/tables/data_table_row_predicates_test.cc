#include "varimo/tables/data_table_row_predicates.h"

#include <gtest/gtest.h>

#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

namespace Bad = VarimoBadData;
namespace Type = ZqStatVariableType;

const ZqDataTableRow kRow0(0), kRow1(1), kRow2(2), kRow9(9);

TEST(RowPredicates, EqualityAndRangesOnEachTypeWithReservedValues) {
  const ZqDataTableCol ints = [] {
    ZqDataTableCol col("i", Type::Interval, 3);
    for (int v : {5, -1, Bad::MissingInt}) ZqAppendIntToCol(col, v);
    return col;
  }();
  EXPECT_TRUE(ZqRowColEqualsInt(-1, ints, 0)(kRow1));
  EXPECT_FALSE(ZqRowColEqualsInt(5, ints, 0)(kRow1));
  EXPECT_TRUE(ZqRowColEqualsUnsigned(0xFFFFFFFFu, ints, 0)(kRow1));  // -1 read as unsigned
  EXPECT_TRUE(ZqRowColEqualsUnsigned(Bad::MissingUnsigned, ints, 0)(kRow2));
  EXPECT_TRUE(ZqRowColEqualsString("MissingIntData", ints, 0)(kRow2));
  EXPECT_TRUE(ZqRowColWithinInclIntRange(-1, 5, ints, 0)(kRow0));
  EXPECT_FALSE(ZqRowColWithinInclIntRange(-1, 5, ints, 0)(kRow2));
  EXPECT_TRUE(ZqRowColWithinInclUnsignedRange(5, 5, ints, 0)(kRow0));
  // Past the end of the column: the bad-index value, refused by ordinary limits.
  EXPECT_FALSE(ZqRowColWithinInclIntRange(-100, 100, ints, 0)(kRow9));

  const ZqDataTableCol col("d", std::vector<double>{1.0, Bad::MissingDouble, std::nan("")});
  EXPECT_FALSE(ZqRowColEqualsDouble(1.0, col, 0, 0.0)(kRow0));  // tolerance 0 never holds
  EXPECT_TRUE(ZqRowColEqualsDouble(1.05, col, 0, 0.1)(kRow0));
  EXPECT_TRUE(ZqRowColEqualsDouble(1.0, col, 0, 1e-9)(kRow2));  // NaN passes the tolerance test
  EXPECT_FALSE(ZqRowColWithinInclDoubleRange(-1e300, 1e300, col, 0)(kRow2));  // but no range
  EXPECT_FALSE(ZqRowColWithinInclDoubleRange(0.0, 10.0, col, 0)(kRow1));
  EXPECT_TRUE(ZqRowColWithinInclDoubleRange(0.0, 1.797e308, col, 0)(kRow1));
  EXPECT_FALSE(ZqRowColWithinInclDoubleRange(0.0, 10.0, col, 0)(kRow9));
}

TEST(RowPredicates, StringsByByteOrderAndNotMissing) {
  ZqDataTableCol col("s", Type::Identifier, 3);
  for (const char* v : {"ab", "abc", "\xC3\xA9"}) ZqAppendStringToCol(col, v);
  EXPECT_TRUE(ZqRowColWithinInclStringRange("ab", "ab", col, 0)(kRow0));
  EXPECT_FALSE(ZqRowColWithinInclStringRange("ab", "ab", col, 0)(kRow1));
  EXPECT_TRUE(ZqRowColWithinInclStringRange("ab", "b", col, 0)(kRow1));
  EXPECT_TRUE(ZqRowColWithinInclStringRange("z", "\xFF", col, 0)(kRow2));  // bytes above 0x7F sort last

  // Not missing selects the rows with data.
  ZqDataTableCol withMissing("m", Type::Identifier, 2);
  ZqAppendStringToCol(withMissing, "x");
  ZqAppendMissingDataToCol(withMissing);
  const ZqNotOfDataTableRowPred hasData = !ZqRowColEqualsString("MissingStringData", withMissing, 0);
  EXPECT_TRUE(hasData(kRow0));
  EXPECT_FALSE(hasData(kRow1));
}

// Counts its evaluations, to check that combinations short-circuit.
class CountingPredicate final : public ZqDataTableRowPredBase {
 public:
  CountingPredicate(bool answer, int* calls) : answer_(answer), calls_(calls) {}
  bool operator()(const ZqDataTableRow&) const override {
    ++*calls_;
    return answer_;
  }
  CountingPredicate* CreateCopy() const override { return new CountingPredicate(*this); }

 private:
  bool answer_;
  int* calls_;
};

TEST(RowPredicates, CombinationsShortCircuitAndCopy) {
  int calls = 0;
  const CountingPredicate yes(true, &calls), no(false, &calls);
  EXPECT_FALSE((no && yes)(kRow0));
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE((yes || no)(kRow0));
  EXPECT_EQ(calls, 2);
  EXPECT_TRUE((no || yes)(kRow0));
  EXPECT_EQ(calls, 4);
  EXPECT_TRUE((!no)(kRow0));
  const ZqAndOfDataTableRowPreds both = yes && !no;
  std::unique_ptr<ZqDataTableRowPredBase> copy(both.CreateCopy());
  EXPECT_TRUE((*copy)(kRow0));
  ZqOrOfDataTableRowPreds assigned;
  assigned = yes || no;
  EXPECT_TRUE(assigned(kRow0));
  // Empty combinations refuse rather than crash.
  EXPECT_FALSE(ZqAndOfDataTableRowPreds()(kRow0));
  EXPECT_FALSE(ZqOrOfDataTableRowPreds()(kRow0));
  EXPECT_FALSE(ZqNotOfDataTableRowPred()(kRow0));
}

}  // namespace
}  // namespace Varimo
