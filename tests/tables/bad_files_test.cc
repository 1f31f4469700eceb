// Malformed files: each gets a failure report or the handling documented
// for it, never a crash or a table passed off as loaded.
#include <gtest/gtest.h>

#include <string>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_file_info.h"
#include "varimo/tables/data_table_files.h"

namespace Varimo {
namespace {

namespace Failure = ZqStatModelFailureType;
namespace Type = ZqStatVariableType;

ZqStatModelResult LoadCsv(ZqDataTable& table, const std::string& text) {
  Tessik::zqifstream stream;
  stream.OpenText(text);
  return ZqLoadDataTableFromCSVFileWithHeader(table, stream, "bad");
}

TEST(BadFiles, UnterminatedQuotesAndLineEnds) {
  // A quote never closed takes the rest of the line, commas included.
  ZqDataTable swallowed("s");
  EXPECT_EQ(LoadCsv(swallowed, "a,b\n\"x,1\n").GetFailureType(), Failure::MismatchBetweenPrivateVecSizes);
  ZqDataTable last("l");
  ASSERT_TRUE(LoadCsv(last, "a,b\n1,\"open to the end\n").IsSuccessful());
  EXPECT_EQ(last.GetColumnFromName("b").GetString(0, 0), "open to the end");

  // CRLF line ends, no final newline, and blank lines at the end.
  ZqDataTable crlf("c");
  ASSERT_TRUE(LoadCsv(crlf, "a,b\r\n1,2\r\n3,4").IsSuccessful());
  EXPECT_EQ(crlf.GetNumRows(), 2u);
  EXPECT_EQ(crlf.GetColumnFromName("b").GetDouble(1, 0), 4.0);
  EXPECT_EQ(crlf.GetColumnFromName("b").GetStatVariableType(), Type::Ratio);
  ZqDataTable blankEnd("b");
  ASSERT_TRUE(LoadCsv(blankEnd, "a\n1\n\n  \n").IsSuccessful());
  EXPECT_EQ(blankEnd.GetNumRows(), 1u);
}

TEST(BadFiles, OddBytesAndOverflowingNumbers) {
  ZqDataTable table("n");
  const std::string text = std::string("name,x\n\xff\xfe,1\nab") + '\0' + "c,2\n";
  ASSERT_TRUE(LoadCsv(table, text).IsSuccessful());
  EXPECT_EQ(table.GetColumnFromName("name").GetString(0, 0), "\xff\xfe");
  EXPECT_EQ(table.GetColumnFromName("name").GetString(1, 0), std::string("ab") + '\0' + "c");

  // Numbers that overflow are text.
  ZqDataTable overflow("o");
  ASSERT_TRUE(LoadCsv(overflow, "x,y\n1e400,1\n2,1e-400\n").IsSuccessful());
  EXPECT_EQ(overflow.GetColumnFromName("x").GetStatVariableType(), Type::Nominal);
  EXPECT_EQ(overflow.GetColumnFromName("x").GetString(0, 0), "1e400");
  // Too small to represent is no failure: it reads as zero.
  EXPECT_EQ(overflow.GetColumnFromName("y").GetStatVariableType(), Type::Ratio);
  EXPECT_EQ(overflow.GetColumnFromName("y").GetDouble(1, 0), 0.0);
}

TEST(BadFiles, HeaderOnlyEmptyAndBlankFiles) {
  ZqDataTable blank("b"), header("h");
  // A blank first line is a header without names: no columns to read into.
  const ZqStatModelResult noColumns = LoadCsv(blank, "\n1,2\n");
  EXPECT_EQ(noColumns.GetFailureType(), Failure::ColumnNotFound);
  EXPECT_NE(noColumns.ReportStatResultDetails().find("No columns defined to parse data rows! \n"), std::string::npos);
  ASSERT_TRUE(LoadCsv(header, "a,b").IsSuccessful());
  EXPECT_EQ(header.GetNumColumns(), 3u);  // the line numbers, a and b
  EXPECT_EQ(header.GetNumRows(), 0u);
  Tessik::zqifstream stream;
  stream.OpenText("");
  ZqDataTable noHeader("n");
  EXPECT_EQ(ZqLoadDataTableFromPlainFileWithoutHeader(noHeader, stream, "n").GetFailureType(), Failure::NoData);
}

TEST(BadFiles, ConfigurationErrorsOfTheReader) {
  Tessik::zqifstream stream;
  stream.OpenText("a,b\n1,2\n");
  ZqDataTableFileInfo unknown(stream, "f", 9, 7, ",\n", "\"", "%", "?");
  EXPECT_EQ(unknown.GetHeaderType(), ZqDataTableFileHeaderType::Unknown);
  EXPECT_EQ(unknown.GetLayoutType(), ZqDataTableFileDataLayoutType::Unknown);
  EXPECT_EQ(unknown.SetFileColumns().GetFailureType(), Failure::BadDataViewFileType);
  EXPECT_EQ(unknown.ProcessDataLines().GetFailureType(), Failure::ColumnNotFound);

  ZqDataTableFileInfo csv(stream, "f", ZqDataTableFileHeaderType::NamesLine,
                          ZqDataTableFileDataLayoutType::Rectangular, ",\n", "\"", "%", "?");
  std::vector<std::string> fields;
  const ZqStatModelResult wrongState = csv.GetNextDataFieldVector(fields);
  EXPECT_EQ(wrongState.GetFailureType(), Failure::WrongDataViewFileState);
  EXPECT_NE(wrongState.ReportStatResultDetails().find("Desired File State is: In Data Part of File"),
            std::string::npos);
  EXPECT_EQ(csv.SetFileColumns({"a"}, {Type::Ratio, Type::Ratio}).GetFailureType(),
            Failure::MismatchBetweenInputVecSizes);
  EXPECT_EQ(csv.SetFileColumnsForArffFile().GetFailureType(), Failure::WrongDataViewFileType);

  // A triangular layout needs a triangular last column, and the reverse.
  ZqDataTableFileInfo tri(stream, "f", ZqDataTableFileHeaderType::NamesLine,
                          ZqDataTableFileDataLayoutType::LeadingColumnsPlusLowerTriangular, ",\n", "\"", "%", "?");
  ASSERT_TRUE(tri.SetFileColumns().IsSuccessful());
  const ZqStatModelResult notTriangular = tri.ProcessDataLines();
  EXPECT_EQ(notTriangular.GetFailureType(), Failure::WrongDataViewFileType);
  EXPECT_NE(notTriangular.ReportStatResultDetails().find("File data type has Lower tri form! \n"
                                                         "But Last Column not that type of array! \n"),
            std::string::npos);
}

TEST(BadFiles, FileStatusReportAndStateTexts) {
  Tessik::zqifstream stream;
  stream.OpenText("x\n1\n");
  ZqDataTableFileInfo file(stream, "s.csv", ZqDataTableFileHeaderType::NamesLine,
                           ZqDataTableFileDataLayoutType::Rectangular, ",\n", "\"", "%", "?");
  EXPECT_EQ(file.GetFileStatus().ReportFileStatus(),
            "Current File State: At Start of File Before Header Info\n"
            "Current File Line Number: 0\n"
            "Last Line Read In: \n"
            "Num Header Lines Processed: 0\n"
            "Num Data Lines Processed: 0");
  EXPECT_STREQ(ZqDataTableFileHeaderType::TypeName[5],
               "File has two comment lines followed by a header line of column names");
  EXPECT_STREQ(ZqDataTableFileDataLayoutType::TypeName[2], "Leading Columns plus Lower Triangular Layout");
  EXPECT_STREQ(ZqDataTableFileState::StateName[4], "At End of File");
}

}  // namespace
}  // namespace Varimo
