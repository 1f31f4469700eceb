#include "varimo/tables/data_table.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;

namespace Type = ZqStatVariableType;
namespace Failure = ZqStatModelFailureType;

std::vector<std::uint64_t> RowNumbers(const ZqDataTable& table) {
  std::vector<std::uint64_t> rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  return rows;
}

ZqDataTableCol NamesColumn(const std::vector<std::string>& names) {
  ZqDataTableCol col("name", Type::Identifier, names.size());
  for (const std::string& n : names) EXPECT_TRUE(ZqAppendStringToCol(col, n).IsSuccessful());
  col.FinishAddingVars();
  return col;
}

class DataTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // A braced list of integers makes a ratio column, not a string.
    ASSERT_TRUE(table.AddColumn(ZqDataTableCol("x", {1, 2, 3, 4})).IsSuccessful());
    ASSERT_TRUE(table.AddColumn(NamesColumn({"a", "b", "c", "d"})).IsSuccessful());
  }
  ZqDataTable table{"t"};
};

TEST_F(DataTableTest, FirstColumnFixesRows) {
  EXPECT_EQ(table.GetNumColumns(), 2u);
  EXPECT_EQ(table.GetNumRows(), 4u);
  EXPECT_EQ(RowNumbers(table), (std::vector<std::uint64_t>{0, 1, 2, 3}));
  EXPECT_EQ(table.GetColumnFromName("name").GetString(2, 0), "c");
  std::vector<std::string> names;
  for (const ZqDataTableCol& col : table.GetColumns()) names.push_back(col.GetColumnName());
  EXPECT_EQ(names, (std::vector<std::string>{"x", "name"}));
  // An array column counts rows, not elements.
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("pairs", std::vector<double>(8, 0.5), 2)).IsSuccessful());
  EXPECT_EQ(table.GetTotalNumElementsPerRow(), 4u);
}

TEST_F(DataTableTest, WrongLengthOrDuplicateNameIsRefused) {
  const ZqStatModelResult result = table.AddColumn(ZqDataTableCol("y", std::vector<double>{1, 2, 3, 4, 5}));
  EXPECT_EQ(result.GetFailureType(), Failure::WrongInputVectorSize);
  EXPECT_EQ(result.ReportStatResultDetails(),
            "\nResult was not successful: \n"
            "Failed in Routine: ZqDataTableColSetImpl::AddColumn \n"
            "Called by Routine: ZqDataTableImpl::AddColumn \n"
            "Failure Reason(s):\nAn input vector has the wrong size!\n"
            "Extra Comments:\nNew column (name: y) has wrong number rows!. Has 5 Data table expects 4 \n");
  EXPECT_EQ(table.GetNumColumns(), 2u);

  // A duplicate name is refused too.
  const ZqStatModelResult duplicate = table.AddColumn(ZqDataTableCol("x", std::vector<double>{1, 2, 3, 4}));
  EXPECT_EQ(duplicate.GetFailureType(), Failure::DuplicateNames);
  EXPECT_EQ(Comments(duplicate), std::vector<std::string>{"Column name: xcolumn with same name already present! Use "
                                                       "SetColumnName to change current Column Name"});
}

TEST_F(DataTableTest, LookupsAndDeletes) {
  ZqStatModelResult result(true);
  EXPECT_EQ(table.GetColumnFromName(result, "nope").GetStatVariableType(), Type::Unknown);
  EXPECT_EQ(result.ReportStatResultDetails(),
            "\nResult was not successful: \nFailed in Routine: ZqDataTableColSetImpl::GetColumnFromName \n"
            "Failure Reason(s):\nColumn Not Found! \n");
  // A hit reports on itself, whatever the result held.
  EXPECT_EQ(table.GetColumnFromName(result, "x").GetColumnName(), "x");
  EXPECT_TRUE(result.IsSuccessful());
  ZqStatModelResult byFull(true);
  EXPECT_EQ(table.GetColumnFromFullName(byFull, "x").GetColumnName(), "x");
  EXPECT_TRUE(byFull.IsSuccessful());
  table.GetColumnFromFullName(byFull, "missing");
  EXPECT_EQ(byFull.GetFailureType(), Failure::ColumnNotFound);
  table.GetColumnFromFullName(byFull, "name");
  EXPECT_TRUE(byFull.IsSuccessful());

  ZqStatModelResult deleted = table.DeleteColumn("nope");
  EXPECT_EQ(Comments(deleted), std::vector<std::string>{"Can't find column nope in column set"});
  EXPECT_TRUE(table.DeleteColumn("x").IsSuccessful());
  EXPECT_TRUE(table.DeleteColumn("name").IsSuccessful());
  EXPECT_EQ(table.GetNumRows(), 4u);  // the row set stays
  EXPECT_EQ(Comments(table.DeleteColumn("x")),
            std::vector<std::string>{"Can't find column x in column set because the set is empty!"});
  // A column of the old length is welcome; a shorter one no longer fits the rows.
  const ZqStatModelResult shorter = table.AddColumn(ZqDataTableCol("z", std::vector<double>{1, 2}));
  EXPECT_EQ(Comments(shorter),
            (std::vector<std::string>{"Existing row set addresses rownumbers beyond the column size",
                                      "Highest row number in row set is: 3 While num rows in input col is: 2"}));
  EXPECT_EQ(table.GetNumColumns(), 1u);  // the column stays after that failure

  // A lookup in an empty table gives the null column.
  const ZqDataTable empty("e");
  EXPECT_EQ(empty.GetColumnFromName("x").GetStatVariableType(), 0u);
  EXPECT_EQ(empty.GetNumRows(), 0u);
  EXPECT_FALSE(empty.GetRows());
}

TEST_F(DataTableTest, ViewsByRowSetAndPredicate) {
  const ZqDataTable odd("odd", table, ZqDataTableRowSet({ZqDataTableRow(3), ZqDataTableRow(1)}));
  EXPECT_EQ(RowNumbers(odd), (std::vector<std::uint64_t>{3, 1}));
  EXPECT_TRUE(odd.GetColumnFromName("x").SharesColumnWith(table.GetColumnFromName("x")));
  const ZqDataTable beyond("beyond", table, ZqDataTableRowSet({ZqDataTableRow(4)}));
  EXPECT_EQ(beyond.GetNumRows(), 0u);

  const ZqDataTableCol& x = table.GetColumnFromName("x");
  const ZqDataTable big("big", table, ZqRowColWithinInclDoubleRange(2.0, 10.0, x, 0));
  EXPECT_EQ(RowNumbers(big), (std::vector<std::uint64_t>{1, 2, 3}));
  const ZqDataTable bigNotC("bigNotC", big, !ZqRowColEqualsString("c", table.GetColumnFromName("name"), 0));
  EXPECT_EQ(RowNumbers(bigNotC), (std::vector<std::uint64_t>{1, 3}));
  EXPECT_EQ(bigNotC.GetNumRows(), 2u);
  ASSERT_NE(bigNotC.GetImpl().GetRowPredPtr(), nullptr);
  // The iterator outlives the view it came from.
  Corvane::ZqIter<const ZqDataTableRow> rows;
  {
    const ZqDataTable temporary("tmp", table, ZqRowColEqualsDouble(4.0, x, 0, 0.5));
    rows = temporary.GetRows();
  }
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->GetRowNumber(), 3u);
  // Printing walks the selected rows only.
  std::ostringstream out;
  x.PrintSummaryPlusStartOfData(bigNotC, 10, 1, out);
  EXPECT_NE(out.str().find("Start of Data in Col:\n   2 \n   4 \n"), std::string::npos);
}

}  // namespace
}  // namespace Varimo
