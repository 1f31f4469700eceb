#include "varimo/tables/data_table_column.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
using VarimoTest::Context;

namespace Bad = VarimoBadData;
namespace Type = ZqStatVariableType;

ZqDataTableCol NominalOf(const std::vector<std::string>& values) {
  ZqDataTableCol col("nom", Type::Nominal, values.size());
  for (const std::string& v : values) EXPECT_TRUE(ZqAppendStringToCol(col, v).IsSuccessful());
  col.FinishAddingVars();
  return col;
}

TEST(ZqDataTableCol, DefaultIsTheNullColumnAndTheFactoryPicksKindByScale) {
  const ZqDataTableCol col;
  EXPECT_EQ(col.GetColumnName(), "NullColumn");
  EXPECT_EQ(col.GetStatVariableType(), Type::Unknown);
  EXPECT_EQ(col.GetStatVarDataType(), ZqStatVarDataType::Unknown);
  EXPECT_EQ(col.GetNumElementsInCol(), 0u);
  EXPECT_EQ(col.GetUnsigned(0, 0), Bad::BadIndexUnsigned);
  EXPECT_EQ(col.GetInt(0, 0), Bad::BadIndexInt);
  EXPECT_EQ(col.GetDouble(0, 0), Bad::BadIndexDouble);
  EXPECT_EQ(col.GetString(0, 0), "BadIndexToStringData");
  std::ostringstream out;
  col.PrintUniqueDiscreteValues(10, out);
  EXPECT_EQ(out.str(), "null column: no values\n");

  EXPECT_EQ(ZqDataTableCol("a", Type::Nominal, 3).GetStatVarDataType(), ZqStatVarDataType::String);
  EXPECT_EQ(ZqDataTableCol("a", Type::Interval, 3).GetStatVarDataType(), ZqStatVarDataType::Int);
  EXPECT_EQ(ZqDataTableCol("a", Type::Ratio, 3).GetStatVarDataType(), ZqStatVarDataType::Double);
  EXPECT_EQ(ZqDataTableCol("a", Type::Identifier, 3).GetStatVarDataType(), ZqStatVarDataType::String);
  for (std::uint32_t type : {Type::Unknown, Type::Ordinal, 6u, 1000u}) {
    EXPECT_EQ(ZqDataTableCol("a", type, 3).GetStatVariableType(), Type::Unknown) << type;
  }
  // An absurd reservation is only a hint and must not fail.
  EXPECT_EQ(ZqDataTableCol("huge", Type::Ratio, std::uint64_t{1} << 40, 1000).GetNumElementsInCol(), 0u);
  // An empty ratio column reads as a bad index, not as missing.
  const ZqDataTableCol empty("r", Type::Ratio, 10);
  EXPECT_EQ(empty.GetDouble(0, 0), 1.7976931348623156e306);
  EXPECT_FALSE(empty.RowColHasMissingData(0, 0));
  EXPECT_TRUE(empty.RowColIndexIsBad(0, 0));
  EXPECT_EQ(empty.GetString(0, 0), "BadIndexToDoubleData");
}

TEST(ZqDataTableCol, HandlesShareOneColumn) {
  ZqDataTableCol first("x", Type::Ratio, 2);
  ZqDataTableCol second = first;
  EXPECT_TRUE(second.SharesColumnWith(first));
  EXPECT_EQ(first.UseCount(), 2);
  ASSERT_TRUE(ZqAppendDoubleToCol(second, 4.5).IsSuccessful());
  EXPECT_EQ(first.GetDouble(0, 0), 4.5);
  second.SetColumnName("renamed");
  EXPECT_EQ(first.GetColumnName(), "renamed");
}

TEST(ZqDataTableCol, RectangularAndLowerTriangularAddressingAndReservedReads) {
  const ZqDataTableCol col("m", {1.0, 2.0, Bad::MissingDouble, Bad::BadDouble, -2.5, 6.0}, 2);
  EXPECT_EQ(col.GetFullColumnName(), "m");
  EXPECT_EQ(col.GetNumColumnsInCol(), 2u);
  EXPECT_EQ(col.GetTotalNumRowsInCol(), 3u);
  EXPECT_EQ(col.GetDouble(2, 1), 6.0);
  EXPECT_EQ(col.GetDouble(0, 2), Bad::BadIndexDouble);  // column past the array
  EXPECT_EQ(col.GetDouble(3, 0), Bad::BadIndexDouble);  // row past the end
  EXPECT_TRUE(col.RowColHasMissingData(1, 0));
  EXPECT_TRUE(col.RowColHasBadData(1, 1));
  EXPECT_TRUE(col.ColHasMissingData());
  EXPECT_TRUE(col.ColHasBadData());
  // A stored missing stays missing in every type.
  EXPECT_EQ(col.GetInt(1, 0), Bad::MissingInt);
  EXPECT_EQ(col.GetUnsigned(1, 0), Bad::MissingUnsigned);
  EXPECT_EQ(col.GetString(1, 0), "MissingDoubleData");
  EXPECT_EQ(col.GetString(1, 1), "BadDoubleData");
  EXPECT_EQ(col.GetInt(2, 0), -2);  // -2.5 rounds to even
  // Huge rows must not wrap round onto a valid element.
  EXPECT_EQ(col.GetDouble(std::uint64_t{1} << 63, 0), Bad::BadIndexDouble);
  EXPECT_EQ(col.GetImpl().GetElementIndex(~std::uint64_t{0}, 1), Bad::BadIndex);

  // 3 x 3 symmetric: elements (0,0) (1,0) (1,1) (2,0) (2,1) (2,2).
  const ZqDataTableCol tri("tri", {0.0, 10.0, 11.0, 20.0, 21.0, 22.0}, 3, true);
  EXPECT_TRUE(tri.ColIsLowerTriangular());
  EXPECT_EQ(tri.GetTotalNumRowsInCol(), 3u);
  EXPECT_EQ(tri.GetDouble(2, 1), 21.0);
  EXPECT_EQ(tri.GetDouble(1, 2), 21.0);
  EXPECT_EQ(tri.GetDouble(2, 2), 22.0);
  EXPECT_EQ(tri.GetDouble(0, 3), Bad::BadIndexDouble);  // col not below numCols
  EXPECT_EQ(tri.GetDouble(3, 0), Bad::BadIndexDouble);  // past the elements
  EXPECT_EQ(tri.GetDouble(std::uint64_t{1} << 40, 1), Bad::BadIndexDouble);
}

TEST(ZqDataTableCol, SparseColumns) {
  const std::vector<ZqRowColValue> values = {{5.0, 2, 1}, {1.0, 0, 0}, {5.0, 2, 1}, {7.0, 9, 0}, {3.0, 1, 1}};
  const ZqDataTableCol col("s", "sparse", Type::Ratio, 2, values, 3, false);
  EXPECT_TRUE(col.ColIsSparse());
  EXPECT_TRUE(col.ColIsReadOnly());
  EXPECT_EQ(col.GetNumElementsInCol(), 6u);  // logical size, not stored pairs
  EXPECT_EQ(col.GetTotalNumRowsInCol(), 3u);
  EXPECT_EQ(col.GetDouble(2, 1), 5.0);
  EXPECT_EQ(col.GetDouble(1, 1), 3.0);
  EXPECT_EQ(col.GetDouble(1, 0), Bad::MissingDouble);  // not stored
  EXPECT_TRUE(col.RowColHasMissingData(1, 0));
  EXPECT_FALSE(col.ColHasMissingData());
  const auto& impl = dynamic_cast<const ZqDataTableColOfRatioVars&>(col.GetImpl());
  EXPECT_EQ(impl.GetNumStoredSparseElements(), 3u);  // duplicate collapsed, (9, 0) outside dropped
  EXPECT_EQ(col.GetNumUniqueDiscreteValues(), 3u);
  EXPECT_EQ(ZqAppendDoubleToCol(const_cast<ZqDataTableCol&>(col), 1.0).GetFailureType(),
            ZqStatModelFailureType::VariableIsReadOnly);

  const ZqDataTableCol tri("t", "t", Type::Ratio, 3, {{4.0, 1, 2}}, 3, true);
  EXPECT_EQ(tri.GetNumElementsInCol(), 6u);
  EXPECT_EQ(tri.GetDouble(2, 1), 4.0);
  const ZqDataTableCol notRatio("n", "n", Type::Interval, 1, values, 3, false);
  EXPECT_EQ(notRatio.GetStatVariableType(), Type::Unknown);
}

TEST(ZqDataTableCol, NominalListBuiltAtFinishWithItsReservedEntries) {
  const ZqDataTableCol col = NominalOf({"b", "a", "b"});
  EXPECT_EQ(col.GetUniqueDiscreteValues(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(col.GetUnsigned(0, 0), 1u);
  EXPECT_EQ(col.GetUnsigned(1, 0), 0u);
  EXPECT_EQ(col.GetInt(2, 0), 1);
  EXPECT_EQ(col.GetDouble(2, 0), 1.0);
  EXPECT_EQ(col.GetString(0, 0), "b");
  EXPECT_EQ(col.GetString(5, 0), "BadIndexToLookupTable");
  EXPECT_TRUE(col.ColIsReadOnly());

  ZqDataTableCol staged("nom", Type::Nominal, 4);
  ASSERT_TRUE(ZqAppendStringToCol(staged, "x").IsSuccessful());
  ASSERT_TRUE(ZqAppendMissingDataToCol(staged).IsSuccessful());
  ASSERT_TRUE(ZqAppendStringToCol(staged, "BadStringData").IsSuccessful());
  // Before the list exists the staged elements are counted but cannot be read.
  EXPECT_EQ(staged.GetNumElementsInCol(), 3u);
  EXPECT_EQ(staged.GetString(0, 0), "BadIndexToLookupTable");
  staged.FinishAddingVars();
  EXPECT_EQ(staged.GetUniqueDiscreteValues(), (std::vector<std::string>{"BadStringData", "MissingStringData", "x"}));
  EXPECT_TRUE(staged.RowColHasMissingData(1, 0));
  EXPECT_TRUE(staged.RowColHasBadData(2, 0));
  EXPECT_EQ(staged.GetUnsigned(1, 0), Bad::MissingUnsigned);
  EXPECT_EQ(staged.GetInt(2, 0), Bad::BadInt);
  EXPECT_EQ(staged.GetDouble(1, 0), Bad::MissingDouble);
  EXPECT_EQ(staged.GetUnsigned(0, 0), 2u);
}

TEST(ZqDataTableCol, NominalFixedList) {
  ZqDataTableCol col("fixed", Type::Nominal, std::vector<std::string>{"x"}, 4);
  EXPECT_EQ(col.GetNumUniqueDiscreteValues(), 3u);
  EXPECT_EQ(col.GetUniqueDiscreteValues(), (std::vector<std::string>{"BadStringData", "MissingStringData", "x"}));
  ASSERT_TRUE(ZqAppendStringToCol(col, "x").IsSuccessful());
  ASSERT_TRUE(ZqAppendMissingDataToCol(col).IsSuccessful());
  EXPECT_EQ(col.GetString(0, 0), "x");  // readable at once
  EXPECT_TRUE(col.RowColHasMissingData(1, 0));
  const auto& impl = dynamic_cast<const ZqDataTableColOfNominals&>(col.GetImpl());
  std::uint32_t index = 0;
  EXPECT_TRUE(impl.FindStringInUniqueNominalVals(index, "x").IsSuccessful());
  EXPECT_EQ(index, 2u);
  const ZqStatModelResult miss = impl.FindStringInUniqueNominalVals(index, "y");
  EXPECT_EQ(index, 0xFFFFFFFFu);
  EXPECT_EQ(miss.GetFailureType(), ZqStatModelFailureType::ArgumentOutOfRange);
  EXPECT_EQ(Context(miss), std::vector<std::string>{"ZqDataTableColOfNominals::FindStringInUniqueNominalVals"});
  EXPECT_EQ(Comments(miss), std::vector<std::string>{"String y not found in list of unique nominal values"});
  // A raw index past the list reads as bad / bad lookup.
  col.GetImpl().PushBackUnsigned(17);
  EXPECT_EQ(col.GetUnsigned(2, 0), Bad::BadUnsigned);
  EXPECT_EQ(col.GetDouble(2, 0), Bad::BadDouble);
  EXPECT_EQ(col.GetString(2, 0), "BadIndexInTheLookupTable");
  EXPECT_EQ(col.IndexOfStringInListOfPossibleValues("nope"), 0xFFFFFFFFu);
  // An empty list, or a list with a non-nominal type, gives the plain kind.
  EXPECT_EQ(ZqDataTableCol("e", Type::Nominal, std::vector<std::string>{}, 2).GetNumUniqueDiscreteValues(), 0u);
  EXPECT_EQ(ZqDataTableCol("r", Type::Ratio, std::vector<std::string>{"a"}, 2).GetStatVariableType(), Type::Ratio);
}

TEST(ZqDataTableCol, UniqueValuesOfNumericAndIdentifierColumns) {
  ZqDataTableCol ints("i", Type::Interval, 5);
  for (int v : {3, -1, 3, Bad::MissingInt, 10}) ASSERT_TRUE(ZqAppendIntToCol(ints, v).IsSuccessful());
  EXPECT_EQ(ints.GetNumUniqueDiscreteValues(), 4u);
  EXPECT_EQ(ints.GetUniqueDiscreteValues(), (std::vector<std::string>{"-1", "3", "10", "MissingIntData"}));

  const ZqDataTableCol doubles("d", std::vector<double>{2.0, std::nan(""), 0.5, std::nan(""), 2.0});
  EXPECT_EQ(doubles.GetNumUniqueDiscreteValues(), 3u);  // NaNs count once and sort last
  EXPECT_EQ(doubles.GetUniqueDiscreteValues(), (std::vector<std::string>{"0.5", "2", "nan"}));

  ZqDataTableCol ids("id", Type::Identifier, 3);
  for (const char* v : {"CCO", "c1ccccc1", "CCO"}) ASSERT_TRUE(ZqAppendStringToCol(ids, v).IsSuccessful());
  EXPECT_EQ(ids.GetNumUniqueDiscreteValues(), 2u);
  EXPECT_EQ(ids.GetDouble(0, 0), Bad::BadDouble);  // not a number

  // Reserved strings of an identifier column stay reserved in every type.
  ZqDataTableCol reserved("id", Type::Identifier, 3);
  ASSERT_TRUE(ZqAppendMissingDataToCol(reserved).IsSuccessful());
  ASSERT_TRUE(ZqAppendStringToCol(reserved, "BadStringData").IsSuccessful());
  ASSERT_TRUE(ZqAppendStringToCol(reserved, "12").IsSuccessful());
  EXPECT_TRUE(reserved.ColHasMissingData());
  EXPECT_TRUE(reserved.ColHasBadData());
  EXPECT_EQ(reserved.GetDouble(0, 0), Bad::MissingDouble);
  EXPECT_EQ(reserved.GetInt(1, 0), Bad::BadInt);
  EXPECT_EQ(reserved.GetUnsigned(0, 0), Bad::MissingUnsigned);
  EXPECT_EQ(reserved.GetInt(2, 0), 12);
  EXPECT_EQ(reserved.GetString(3, 0), "BadIndexToStringData");
  EXPECT_EQ(reserved.GetInt(3, 0), Bad::BadIndexInt);
}

TEST(ZqDataTableCol, PrintUniqueValuesAndSummaryLines) {
  ZqDataTableCol ints("i", Type::Interval, 12);
  for (int v = 1; v <= 12; ++v) ASSERT_TRUE(ZqAppendIntToCol(ints, v).IsSuccessful());
  std::ostringstream all;
  ints.PrintUniqueDiscreteValues(100, all);
  EXPECT_EQ(all.str(), "Discrete Unique Values: \n   1 2 3 4 5 6 7 8 9 10 \n   11 12 \n");
  std::ostringstream some;
  ints.PrintUniqueDiscreteValues(3, some);
  EXPECT_EQ(some.str(), "Discrete Unique Values: \n   1 2 3 \n");

  ZqDataTableCol col("tri", "Full Name", Type::Ratio, 2, 2, true);
  for (double v : {1.0, 2.0, 3.0}) ASSERT_TRUE(ZqAppendDoubleToCol(col, v).IsSuccessful());
  col.FinishAddingVars();
  std::ostringstream out;
  col.PrintSummaryPlusStartOfData(10, 10, out);
  EXPECT_EQ(out.str(), std::string(52, '$') +
                           "\nColumn Name: tri\n"
                           "Full Column Name: Full Name\n"
                           "Column Native Stat Var Type: Stat Variable Type is Ratio\n"
                           "Column Native Data Type: Stat Variable Data Type is Double\n"
                           "Column is an array with 2 columns\n"
                           "Num rows in Column: 2\n"
                           "Column is a lower Triangular symmetric array\n"
                           "Column data is read only\n"
                           "Start of Data in Col:\n"
                           "   1 2 \n"
                           "   2 3 \n");
  std::ostringstream none;
  col.PrintSummaryPlusStartOfData(0, 10, none);
  EXPECT_EQ(none.str().find("Start of Data"), std::string::npos);
}

}  // namespace
}  // namespace Varimo
