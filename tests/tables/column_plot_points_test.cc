// Plot points of columns: packing (missing and bad cells left out), sorting
// and the hand-over to the sample plots, checked against numpy and scipy
// (tests/data/tables/make_column_plot_refs.py); the routine names of failed
// look-ups, including the two that report under another name; views; and
// the scatter plot with its ranges.
#include "varimo/tables/column_plot_points.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::WithinRelative;
namespace Failure = ZqStatModelFailureType;
using Points = std::vector<Numarc::ZqDataPoint>;

constexpr double kMissing = VarimoBadData::MissingDouble;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kTol = 1e-12;

std::map<std::string, std::vector<std::string>> References() {
  std::map<std::string, std::vector<std::string>> refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("tables/column_plot_refs.txt")) {
    refs[line[0]] = std::vector<std::string>(line.begin() + 1, line.end());
  }
  return refs;
}

std::vector<double> Doubles(const std::vector<std::string>& tokens, std::size_t first = 0) {
  std::vector<double> values;
  for (std::size_t i = first; i < tokens.size(); ++i) {
    values.push_back(tokens[i] == "NA" ? kMissing : VarimoTest::ToDouble(tokens[i]));
  }
  return values;
}

// The heights of a staircase: every third point from the second on.
std::vector<double> StairHeights(const Numarc::ZqDataSeries& series) {
  std::vector<double> heights;
  const Points& p = series.GetPoints();
  for (std::size_t k = 1; k < p.size(); k += 3) heights.push_back(p[k].GetY());
  return heights;
}

void ExpectNear(const std::vector<double>& actual, const std::vector<double>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_TRUE(WithinRelative(actual[i], expected[i], kTol)) << i;
}

ZqDataTableCol NominalColumn(const std::string& name, const std::vector<std::string>& texts) {
  ZqDataTableCol col(name, ZqStatVariableType::Nominal, texts.size());
  for (const std::string& t : texts) EXPECT_TRUE(ZqAppendStringToCol(col, t).IsSuccessful());
  col.FinishAddingVars();
  return col;
}

class ColumnPlotPointsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const ZqDataTableCol& col : {x, y, cls}) ASSERT_TRUE(table.AddColumn(col).IsSuccessful());
    ASSERT_TRUE(refTable.AddColumn(tpsa).IsSuccessful());
  }
  // Unsorted, with a missing and a bad cell, and y missing where x is good.
  ZqDataTableCol x{"x", std::vector<double>{3.0, kMissing, 1.0, kBad, 2.0}};
  ZqDataTableCol y{"y", std::vector<double>{30.0, 5.0, kMissing, 7.0, 20.0}};
  ZqDataTableCol cls = NominalColumn("cls", {"a", "b", "a", "b", "a"});
  std::map<std::string, std::vector<std::string>> refs = References();
  // The reference column is longer than the others, so it has a table of
  // its own.
  ZqDataTableCol tpsa{"tpsa", Doubles(refs["values"])};
  ZqDataTable table{"t"};
  ZqDataTable refTable{"r"};
  Numarc::ZqDataSeries series;
  double xlo = -1.0, xhi = -1.0, ylo = -1.0, yhi = -1.0, maxHeight = -1.0;
};

TEST_F(ColumnPlotPointsTest, EmpiricalCDFOfTheGoodCellsSortedInBothFormsAndOnAView) {
  // 1, 2, 3 with the window [0, 4]: the staircase of the definition.
  const Points expected{{0, 0}, {1, 0}, {1, 1.0 / 3}, {2, 1.0 / 3}, {2, 2.0 / 3}, {3, 2.0 / 3}, {3, 1}, {4, 1}};
  ASSERT_TRUE(ZqGetEmpiricalCDFPlotPointsForColumnName(series, xlo, xhi, table, "x", 0, 0.0, 4.0).IsSuccessful());
  EXPECT_EQ(series.GetPoints(), expected);
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 4.0);

  Numarc::ZqDataSeries byColumn;
  ASSERT_TRUE(ZqGetEmpiricalCDFPlotPointsForColumnName(byColumn, xlo, xhi, x, 0, 0.0, 4.0).IsSuccessful());
  EXPECT_EQ(byColumn.GetPoints(), expected);

  // The table form sees only the rows of a view: rows 2 and 4 hold 1 and 2.
  const ZqDataTable view("v", table,
                         ZqDataTableRowSet(std::vector<ZqDataTableRow>{ZqDataTableRow(4), ZqDataTableRow(2)}));
  ASSERT_TRUE(ZqGetEmpiricalCDFPlotPointsForColumnName(series, xlo, xhi, view, "x", 0, 1.0, 2.0).IsSuccessful());
  EXPECT_EQ(series.GetPoints(), (Points{{1, 0}, {1, 0.5}, {2, 0.5}, {2, 1}}));
}

TEST_F(ColumnPlotPointsTest, HistogramsMatchNumpyOnAnUnsortedColumnWithGaps) {
  const std::vector<double> user = Doubles(refs["userhist"]);  // numBins lo hi max heights...
  ASSERT_TRUE(ZqGetUserDefConstBinWidthHistPlotPointsForColName(series, xlo, xhi, maxHeight, refTable, "tpsa", 0,
                                                                static_cast<std::uint64_t>(user[0]), user[1], user[2])
                  .IsSuccessful());
  EXPECT_EQ(xlo, user[1]);
  EXPECT_EQ(xhi, user[2]);
  EXPECT_TRUE(WithinRelative(maxHeight, user[3], kTol));
  ExpectNear(StairHeights(series), std::vector<double>(user.begin() + 4, user.end()));

  // The data's own range (suggested limits inside it) for the automatic bins.
  const std::vector<double> autoRef = Doubles(refs["autohist"]);  // numBins max heights...
  std::uint64_t numBins = 0;
  ASSERT_TRUE(
      ZqGetAutoDefConstBinWidthHistPlotPointsForColName(series, xlo, xhi, maxHeight, numBins, tpsa, 0, 50.0, 50.0)
          .IsSuccessful());
  EXPECT_EQ(numBins, static_cast<std::uint64_t>(autoRef[0]));
  EXPECT_TRUE(WithinRelative(maxHeight, autoRef[1], kTol));
  ExpectNear(StairHeights(series), std::vector<double>(autoRef.begin() + 2, autoRef.end()));

  const std::vector<double> freq = Doubles(refs["freqhist"]);  // numBins max heights...
  ASSERT_TRUE(ZqGetUserDefConstFreqHistPlotPointsForColName(series, xlo, xhi, maxHeight, refTable, "tpsa", 0,
                                                            static_cast<std::uint64_t>(freq[0]), user[1], user[2])
                  .IsSuccessful());
  EXPECT_TRUE(WithinRelative(maxHeight, freq[1], kTol));
  ExpectNear(StairHeights(series), std::vector<double>(freq.begin() + 2, freq.end()));
}

TEST_F(ColumnPlotPointsTest, NormalProbabilityPlotMatchesScipy) {
  const std::vector<double> expected = Doubles(refs["normal"]);  // z y pairs
  ASSERT_TRUE(
      ZqGetNormalProbabilityPlotPointsForColumnName(series, xlo, xhi, ylo, yhi, refTable, "tpsa", 0, 0.0, 0.0, 0.0, 0.0)
          .IsSuccessful());
  ASSERT_EQ(series.GetNumPoints() * 2, expected.size());
  for (std::size_t i = 0; i < series.GetNumPoints(); ++i) {
    EXPECT_TRUE(WithinRelative(series.GetPoints()[i].GetX(), expected[2 * i], 1e-9)) << i;
    EXPECT_TRUE(WithinRelative(series.GetPoints()[i].GetY(), expected[2 * i + 1], 1e-9)) << i;
  }
  EXPECT_EQ(xlo, series.GetPoints().front().GetX());
  EXPECT_EQ(yhi, series.GetPoints().back().GetY());

  // Three values have no robust scale: the plot's failure, then this name.
  const ZqStatModelResult few =
      ZqGetNormalProbabilityPlotPointsForColumnName(series, xlo, xhi, ylo, yhi, x, 0, 0.0, 0.0, 0.0, 0.0);
  ASSERT_FALSE(few.IsSuccessful());
  EXPECT_EQ(Context(few).back(), "ZqGetNormalProbabilityPlotForColumnName");
}

// Every single-column function, called on one name, returning its result.
using OneColumnCall = std::function<ZqStatModelResult(const ZqDataTable&, const std::string&)>;

TEST_F(ColumnPlotPointsTest, FailuresNameTheFunctionIncludingTheTwoThatBorrowANewName) {
  std::uint64_t numBins = 0;
  const std::vector<std::pair<std::string, OneColumnCall>> calls{
      {"ZqGetEmpiricalCDFPlotPointsForColumnName",
       [&](const ZqDataTable& t, const std::string& n) {
         return ZqGetEmpiricalCDFPlotPointsForColumnName(series, xlo, xhi, t, n, 0, 0.0, 1.0);
       }},
      {"ZqGetAutoDefConstBinWidthHistPlotPointsForColName",
       [&](const ZqDataTable& t, const std::string& n) {
         return ZqGetAutoDefConstBinWidthHistPlotPointsForColName(series, xlo, xhi, maxHeight, numBins, t, n, 0, 0.0,
                                                                  1.0);
       }},
      {"ZqGetUserDefConstBinWidthHistPlotPointsForColName",
       [&](const ZqDataTable& t, const std::string& n) {
         return ZqGetUserDefConstBinWidthHistPlotPointsForColName(series, xlo, xhi, maxHeight, t, n, 0, 3, 0.0, 1.0);
       }},
      {"ZqGetUserDefConstBinWidthHistPlotPointsForColName",  // the constant-frequency one
       [&](const ZqDataTable& t, const std::string& n) {
         return ZqGetUserDefConstFreqHistPlotPointsForColName(series, xlo, xhi, maxHeight, t, n, 0, 3, 0.0, 1.0);
       }},
      {"ZqGetNormalProbabilityPlotForColumnName",
       [&](const ZqDataTable& t, const std::string& n) {
         return ZqGetNormalProbabilityPlotPointsForColumnName(series, xlo, xhi, ylo, yhi, t, n, 0, 0.0, 1.0, 0.0, 1.0);
       }},
  };
  for (const auto& [routine, call] : calls) {
    const ZqStatModelResult unknown = call(table, "nope");
    EXPECT_EQ(unknown.GetFailureType(), Failure::ColumnNotFound) << routine;
    EXPECT_EQ(Context(unknown), (std::vector<std::string>{"ZqDataTableColSetImpl::GetColumnFromName", routine}));

    const ZqStatModelResult nominal = call(table, "cls");
    EXPECT_EQ(nominal.GetFailureType(), Failure::ColumnHasWrongDataType) << routine;
    ASSERT_FALSE(Context(nominal).empty());
    EXPECT_EQ(Context(nominal).back(), routine);
  }
}

TEST_F(ColumnPlotPointsTest, ScatterKeepsRowsGoodInBothInRowOrderAndWidensTheWindow) {
  double xMin = 0, xMax = 0, yMin = 0, yMax = 0;
  // Rows 0 and 4 are good in both: (3, 30) and (2, 20).
  ASSERT_TRUE(
      ZqGetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, table, "x", "y", 0, 0, 2.5, 10.0, 25.0, 26.0)
          .IsSuccessful());
  EXPECT_EQ(series.GetPoints(), (Points{{3, 30}, {2, 20}}));
  EXPECT_EQ(xMin, 2.0);
  EXPECT_EQ(xMax, 10.0);
  EXPECT_EQ(yMin, 20.0);
  EXPECT_EQ(yMax, 30.0);

  Numarc::ZqDataSeries byColumn;
  ASSERT_TRUE(ZqGetScatterPlotPtsForColumnNamePair(byColumn, xMin, xMax, yMin, yMax, y, x, 0, 0, 0.0, 0.0, 0.0, 0.0)
                  .IsSuccessful());
  EXPECT_EQ(byColumn.GetPoints(), (Points{{30, 3}, {20, 2}}));

  const ZqStatModelResult unknown =
      ZqGetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, table, "x", "nope", 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(Context(unknown).front(), "ZqDataTableColSetImpl::GetColumnFromName");
  const ZqStatModelResult nominal =
      ZqGetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, table, "cls", "y", 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(nominal.GetFailureType(), Failure::ColumnHasWrongDataType);
  EXPECT_EQ(Context(nominal).back(), "ZqGetScatterPlotPtsForColumnNamePair");

  // A column with no good cell gives empty plots and zero ranges.
  const ZqDataTableCol empty("e", std::vector<double>{kMissing, kBad});
  xMin = xMax = yMin = yMax = 9;
  ASSERT_TRUE(
      ZqGetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, empty, empty, 0, 0, -1.0, 1.0, -1.0, 1.0)
          .IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(xMin, 0.0);
  EXPECT_EQ(yMax, 0.0);
  ASSERT_TRUE(ZqGetUserDefConstBinWidthHistPlotPointsForColName(series, xlo, xhi, maxHeight, empty, 0, 4, 0.0, 1.0)
                  .IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 0u);
}

}  // namespace
}  // namespace Varimo
