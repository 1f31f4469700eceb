#include "varimo/tables/data_table_files.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::Comments;

namespace Bad = VarimoBadData;
namespace Type = ZqStatVariableType;
namespace Failure = ZqStatModelFailureType;

using Loader = ZqStatModelResult (*)(ZqDataTable&, Tessik::zqifstream&, const std::string&);

ZqStatModelResult LoadText(Loader loader, ZqDataTable& table, const std::string& text, const std::string& name = "f") {
  Tessik::zqifstream stream;
  stream.OpenText(text);
  return loader(table, stream, name);
}

ZqStatModelResult LoadPgs(ZqDataTable& table, const std::string& text, bool print) {
  Tessik::zqifstream stream;
  stream.OpenText(text);
  return ZqLoadDataTableFromPGSFile(table, stream, "s.pgs", print);
}

std::vector<std::string> ColumnNames(const ZqDataTable& table) {
  std::vector<std::string> names;
  for (const ZqDataTableCol& col : table.GetColumns()) names.push_back(col.GetColumnName());
  return names;
}

TEST(CsvLoader, ColumnsKindsAndLineNumbers) {
  ZqDataTable table("t");
  const ZqStatModelResult result = LoadText(ZqLoadDataTableFromCSVFileWithHeader, table,
                                            "name,x,class\n"
                                            "a,1.5,low\r\n"
                                            "% a comment between rows\n"
                                            "\n"
                                            "\"b,c\",,high\n"
                                            "d,?,low\n",
                                            "data.csv");
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  EXPECT_EQ(ColumnNames(table), (std::vector<std::string>{"data.csv::LineNumbers", "name", "x", "class"}));
  EXPECT_EQ(table.GetNumRows(), 3u);
  const ZqDataTableCol& lines = table.GetColumnFromName("data.csv::LineNumbers");
  EXPECT_EQ(lines.GetStatVariableType(), Type::Interval);
  EXPECT_EQ(lines.GetInt(0, 0), 2);
  EXPECT_EQ(lines.GetInt(1, 0), 5);  // true source lines, comments counted
  EXPECT_EQ(lines.GetInt(2, 0), 6);
  const ZqDataTableCol& x = table.GetColumnFromName("x");
  EXPECT_EQ(x.GetStatVariableType(), Type::Ratio);
  EXPECT_EQ(x.GetDouble(0, 0), 1.5);
  EXPECT_TRUE(x.RowColHasMissingData(1, 0));  // empty field
  EXPECT_TRUE(x.RowColHasMissingData(2, 0));  // "?"
  EXPECT_EQ(x.GetFullColumnName(), "data.csv::x");
  EXPECT_EQ(table.GetColumnFromName("name").GetString(1, 0), "b,c");
  const ZqDataTableCol& cls = table.GetColumnFromName("class");
  EXPECT_EQ(cls.GetStatVariableType(), Type::Nominal);
  EXPECT_EQ(cls.GetUniqueDiscreteValues(), (std::vector<std::string>{"high", "low"}));
  EXPECT_TRUE(cls.ColIsReadOnly());
}

TEST(CsvLoader, KindInferenceThresholds) {
  std::string few = "v\n", many = "v\n", late = "v\n";
  for (int i = 0; i < 19; ++i) few += "s" + std::to_string(i) + "\n";
  for (int i = 0; i < 20; ++i) many += "s" + std::to_string(i) + "\n";
  for (int i = 0; i < 30; ++i) late += std::to_string(i) + "\n";
  late += "x\n?\n";  // a text after many numbers
  ZqDataTable a("a"), b("b"), c("c"), d("d");
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, a, few).IsSuccessful());
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, b, many).IsSuccessful());
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, c, late).IsSuccessful());
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, d, "v\n?\n?\n").IsSuccessful());
  EXPECT_EQ(a.GetColumnFromName("v").GetStatVariableType(), Type::Nominal);
  EXPECT_EQ(b.GetColumnFromName("v").GetStatVariableType(), Type::Identifier);
  // 30 numbers, "x" and "?": 32 distinct texts, the numbers read back as texts.
  const ZqDataTableCol& v = c.GetColumnFromName("v");
  EXPECT_EQ(v.GetStatVariableType(), Type::Identifier);
  EXPECT_EQ(v.GetString(0, 0), "0");
  EXPECT_EQ(v.GetString(29, 0), "29");
  EXPECT_EQ(v.GetString(30, 0), "x");
  EXPECT_TRUE(v.RowColHasMissingData(31, 0));
  // "1", "2", "x": few distinct texts, nominal, numbers kept as categories.
  ZqDataTable e("e");
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, e, "v\n1\n2\nx\n2\n").IsSuccessful());
  EXPECT_EQ(e.GetColumnFromName("v").GetUniqueDiscreteValues(), (std::vector<std::string>{"1", "2", "x"}));
  // Only missing markers: a ratio column of missing values.
  const ZqDataTableCol& onlyMissing = d.GetColumnFromName("v");
  EXPECT_EQ(onlyMissing.GetStatVariableType(), Type::Ratio);
  EXPECT_TRUE(onlyMissing.ColHasMissingData());
  EXPECT_EQ(onlyMissing.GetDouble(1, 0), Bad::MissingDouble);
}

TEST(CsvLoader, FailuresCarryTheirChain) {
  ZqDataTable empty("e");
  const ZqStatModelResult noData = LoadText(ZqLoadDataTableFromCSVFileWithHeader, empty, "");
  EXPECT_EQ(noData.GetFailureType(), Failure::NoData);
  EXPECT_EQ(Context(noData),
            (std::vector<std::string>{"ZqDataTableFileInfo::GetNextHeaderFieldVector",
                                      "ZqDataTableFileInfo::SetFileColumns", "LoadDataTableFromCSVFileWithHeader"}));
  EXPECT_EQ(empty.GetNumColumns(), 0u);

  ZqDataTable ragged("r");
  const ZqStatModelResult mismatch = LoadText(ZqLoadDataTableFromCSVFileWithHeader, ragged, "a,b\n1,2\n3\n", "r.csv");
  EXPECT_EQ(mismatch.GetFailureType(), Failure::MismatchBetweenPrivateVecSizes);
  EXPECT_EQ(Context(mismatch).front(), "ZqDataTableFileInfo::GetNextDataFieldVector");
  const std::vector<std::string> comments = Comments(mismatch);
  ASSERT_EQ(comments.size(), 3u);
  EXPECT_EQ(comments[0], "Num Field elements tokenized: 1; Expected 2");
  EXPECT_EQ(comments[1], "Fields: 3");
  EXPECT_EQ(comments[2],
            "File Name: r.csv\n"
            "Assigned File Header Type: File has a header line of column names\n"
            "Assigned File Data Layout Type: Rectangular Layout\n"
            "Number Of Fixed Columns in Data Region : 2\n"
            "Current File State: In Data Part of File\n"
            "Current File Line Number: 3\n"
            "Last Line Read In: 3\n"
            "Num Header Lines Processed: 1\n"
            "Num Data Lines Processed: 1");
  EXPECT_EQ(ragged.GetNumColumns(), 0u);  // nothing half-filled is added

  ZqDataTable dup("d");
  const ZqStatModelResult duplicate = LoadText(ZqLoadDataTableFromCSVFileWithHeader, dup, "a,a\n1,2\n");
  EXPECT_EQ(duplicate.GetFailureType(), Failure::DuplicateNames);
  EXPECT_EQ(Context(duplicate).back(), "LoadDataTableFromCSVFileWithHeader");
}

TEST(PlainLoaders, DelimitersDifferFromCsv) {
  ZqDataTable csv("c"), plain("p");
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, csv, "a,b,c\n1,,3\n").IsSuccessful());
  EXPECT_TRUE(csv.GetColumnFromName("b").RowColHasMissingData(0, 0));
  const ZqStatModelResult twoFields = LoadText(ZqLoadDataTableFromPlainFileWithHeader, plain, "a b c\n1,,3\n");
  EXPECT_EQ(twoFields.GetFailureType(), Failure::MismatchBetweenPrivateVecSizes);

  ZqDataTable tabs("t");
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromPlainFileWithHeader, tabs, "a\tb\n1\t 2\n3 , 4\n").IsSuccessful());
  EXPECT_EQ(tabs.GetColumnFromName("b").GetDouble(1, 0), 4.0);

  ZqDataTable noHeader("n");
  VarimoTest::CaptureOutput out;
  const ZqStatModelResult result = LoadText(ZqLoadDataTableFromPlainFileWithoutHeader, noHeader,
                                            "% leading comment\n1 x\n2,y\n", "plain.txt");
  const std::string printed = out.Text();
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  EXPECT_EQ(ColumnNames(noHeader), (std::vector<std::string>{"plain.txt::LineNumbers", "Column_0", "Column_1"}));
  EXPECT_EQ(noHeader.GetColumnFromName("Column_0").GetDouble(1, 0), 2.0);
  EXPECT_NE(printed.find("Column Name: Column_1\n"), std::string::npos);
  EXPECT_NE(printed.find("num unique vals = 2\nDiscrete Unique Values: \n   x y \n"), std::string::npos);
}

TEST(ArffLoader, AttributesTypesAndData) {
  const std::string arff =
      "% comment\n"
      "@relation molecules\n"
      "\n"
      "@attribute 'mol name' string\n"
      "@ATTRIBUTE weight INTEGER\n"
      "@attribute active {yes, no,'maybe so'}\n"
      "@attribute undecided {}\n"
      "@data\n"
      "'benzene', 78.1, yes, A\n"
      "water 18 'maybe so' B\n"
      "% trailing comment\n"
      "? 2.5 ? A\n";
  ZqDataTable table("t");
  const ZqStatModelResult result = LoadText(ZqLoadDataTableFromArffFile, table, arff, "m.arff");
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  EXPECT_EQ(ColumnNames(table),
            (std::vector<std::string>{"m.arff::LineNumbers", "mol name", "weight", "active", "undecided"}));
  EXPECT_EQ(table.GetColumnFromName("mol name").GetStatVariableType(), Type::Identifier);
  EXPECT_TRUE(table.GetColumnFromName("mol name").RowColHasMissingData(2, 0));
  const ZqDataTableCol& weight = table.GetColumnFromName("weight");
  EXPECT_EQ(weight.GetStatVariableType(), Type::Ratio);  // integer attributes are ratio
  EXPECT_EQ(weight.GetDouble(2, 0), 2.5);
  const ZqDataTableCol& active = table.GetColumnFromName("active");
  EXPECT_EQ(active.GetUniqueDiscreteValues(),
            (std::vector<std::string>{"BadStringData", "MissingStringData", "maybe so", "no", "yes"}));
  EXPECT_EQ(active.GetString(1, 0), "maybe so");
  EXPECT_TRUE(active.RowColHasMissingData(2, 0));
  EXPECT_EQ(table.GetColumnFromName("undecided").GetStatVariableType(), Type::Nominal);  // deferred
}

TEST(ArffLoader, BadAttributesAndValues) {
  ZqDataTable t1("1"), t2("2"), t3("3"), t4("4"), t5("5");
  const ZqStatModelResult unknownType =
      LoadText(ZqLoadDataTableFromArffFile, t1, "@attribute x complex\n@data\n1\n");
  EXPECT_EQ(unknownType.GetFailureType(), Failure::ArgumentValueWrong);
  EXPECT_EQ(Comments(unknownType).front(), "Unable to parse DataType");
  EXPECT_EQ(Context(unknownType).front(), "ZqDataTableFileInfo::ProcessArffAttributeLine");
  EXPECT_EQ(Context(unknownType).back(), "LoadDataTableFromArffFile");
  const ZqStatModelResult unclosed = LoadText(ZqLoadDataTableFromArffFile, t2, "@attribute x {a,b\n@data\na\n");
  EXPECT_EQ(Comments(unclosed).front(), "No matching '}' for '{' ");
  const ZqStatModelResult tooShort = LoadText(ZqLoadDataTableFromArffFile, t3, "@attribute x\n@data\na\n");
  EXPECT_EQ(Comments(tooShort).front(), "Number of fields in input line (2) is less than minimum of 3");
  const ZqStatModelResult notInList = LoadText(ZqLoadDataTableFromArffFile, t4, "@attribute x {a,b}\n@data\nc\n");
  EXPECT_EQ(notInList.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Context(notInList).front(), "ZqConvertStringAndAppendToCol");
  const ZqStatModelResult noDataSection = LoadText(ZqLoadDataTableFromArffFile, t5, "@attribute x real\n1\n");
  EXPECT_EQ(noDataSection.GetFailureType(), Failure::NoData);
}

TEST(PgsLoader, LowerTriangularSimilarities) {
  const std::string pgs =
      "# comment one\n"
      "# comment two\n"
      "Index,Title,Similarities\n"
      "0,first,1.0\n"
      "1,second,0.5,1.0\n"
      "2,third,0.25,0.75,1.0\n";
  ZqDataTable table("t");
  VarimoTest::CaptureOutput out;
  const ZqStatModelResult result = LoadPgs(table, pgs, true);
  const std::string printed = out.Text();
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  EXPECT_EQ(ColumnNames(table), (std::vector<std::string>{"s.pgs::LineNumbers", "Index", "Title", "SimilarityMatrix"}));
  EXPECT_EQ(table.GetColumnFromName("Index").GetStatVariableType(), Type::Interval);
  const ZqDataTableCol& sim = table.GetColumnFromName("SimilarityMatrix");
  EXPECT_TRUE(sim.ColIsLowerTriangular());
  EXPECT_EQ(sim.GetTotalNumRowsInCol(), 3u);
  EXPECT_EQ(sim.GetDouble(1, 2), 0.75);
  EXPECT_EQ(sim.GetDouble(2, 1), 0.75);
  EXPECT_EQ(table.GetColumnFromName("Title").GetString(2, 0), "third");
  EXPECT_NE(printed.find("Column Name: SimilarityMatrix\n"), std::string::npos);

  // Rows one similarity short or long.
  ZqDataTable shortTable("s"), longTable("l");
  EXPECT_EQ(LoadPgs(shortTable, "#\n#\nh\n0,a,1\n1,b,1\n", false).GetFailureType(),
            Failure::MismatchBetweenPrivateVecSizes);
  EXPECT_EQ(LoadPgs(longTable, "#\n#\nh\n0,a,1,0.3\n1,b,0.3,1\n", false).GetFailureType(),
            Failure::MismatchBetweenPrivateVecSizes);
}

TEST(CsvWriter, WritesTitleNamesAndQuotedTexts) {
  ZqDataTable table("t");
  ZqDataTableCol names("name", Type::Identifier, 3);
  for (const char* text : {"a,b", "'q", "say \"hi\""}) ASSERT_TRUE(ZqAppendStringToCol(names, text).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(names).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("x", std::vector<double>{1.5, Bad::MissingDouble, -2.0})).IsSuccessful());
  std::ostringstream out;
  ZqWriteDataTableToCSVFileWithHeader(out, table, "a title");
  EXPECT_EQ(out.str(),
            "a title\n"
            "name,x\n"
            "\"a,b\",1.5\n"
            "\"'q\",MissingDoubleData\n"
            "\"say \"\"hi\"\"\",-2\n");
  // Without a title the file reads back; the quoted texts come back whole.
  std::ostringstream plain;
  ZqWriteDataTableToCSVFileWithHeader(plain, table, "");
  ZqDataTable back("b");
  ASSERT_TRUE(LoadText(ZqLoadDataTableFromCSVFileWithHeader, back, plain.str()).IsSuccessful());
  const ZqDataTableCol& readNames = back.GetColumnFromName("name");
  EXPECT_EQ(readNames.GetString(0, 0), "a,b");
  EXPECT_EQ(readNames.GetString(1, 0), "'q");
  EXPECT_EQ(readNames.GetString(2, 0), "say \"hi\"");
}

}  // namespace
}  // namespace Varimo
