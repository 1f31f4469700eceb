// Splits and resamples of tables: partitions of the rows into views that
// share the columns, the failure texts, seeded repeatability, and the
// farthest-first selection against numpy/scipy
// (tests/data/tables/make_coverage_refs.py).
#include "varimo/tables/table_split.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/tables/data_table_row_predicates.h"
#include "varimo/tables/maximal_coverage.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Rows = std::vector<std::uint64_t>;
using VarimoTest::Report;
using VarimoTest::ResultReport;

Rows RowsOf(const ZqDataTable& table) {
  Rows rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  return rows;
}

Rows Merged(const ZqDataTable& a, const ZqDataTable& b) {
  Rows rows = RowsOf(a);
  const Rows other = RowsOf(b);
  rows.insert(rows.end(), other.begin(), other.end());
  std::sort(rows.begin(), rows.end());
  return rows;
}

class TableSplitTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::vector<double> values(40);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = 0.5 * static_cast<double>(i);
    ASSERT_TRUE(source.AddColumn(ZqDataTableCol("x", values)).IsSuccessful());
  }
  ZqDataTable source{"source"};
  ZqDataTable selected{"train"};
  ZqDataTable rest{"test"};
};

TEST_F(TableSplitTest, RandomRowsPartitionTheTableIntoViewsSharingItsColumnsForAProbability) {
  Numarc::ZqRanNumEngine engine(10), replay(10);
  ASSERT_EQ(Report(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, 0.3, source)), VarimoTest::Success());
  EXPECT_EQ(selected.GetTableName(), "train");
  EXPECT_EQ(rest.GetTableName(), "test");
  EXPECT_EQ(Merged(selected, rest), RowsOf(source));
  EXPECT_TRUE(selected.GetColumnFromName("x").SharesColumnWith(source.GetColumnFromName("x")));
  EXPECT_TRUE(rest.GetColumnFromName("x").SharesColumnWith(source.GetColumnFromName("x")));
  // One uniform draw per row, in row order.
  const Numarc::ZqUniformDoubleRNG uniform(0.0, 1.0);
  Rows expected;
  for (std::uint64_t row = 0; row < 40; ++row) {
    if (uniform(replay) < 0.3) expected.push_back(row);
  }
  EXPECT_EQ(RowsOf(selected), expected);

  // Probability zero selects nothing, one everything, others fail.
  ASSERT_TRUE(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, 0.0, source).IsSuccessful());
  EXPECT_EQ(selected.GetNumRows(), 0u);
  EXPECT_EQ(rest.GetNumRows(), 40u);
  ASSERT_TRUE(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, 1.0, source).IsSuccessful());
  EXPECT_EQ(selected.GetNumRows(), 40u);
  EXPECT_EQ(rest.GetNumRows(), 0u);

  // A probability outside [0, 1] fails and leaves the tables alone.
  ZqDataTable before("train", source, ZqDataTableRowSet(3));
  selected = before;
  EXPECT_EQ(Report(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, 1.5, source)),
            (ResultReport{false, F::ArgumentOutOfRange, {"SplitDataTableByRandomRowSelection"},
                          {"Bad selectionProbability: 1.5"}}));
  EXPECT_EQ(Report(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, -0.25, source)),
            (ResultReport{false, F::ArgumentOutOfRange, {"SplitDataTableByRandomRowSelection"},
                          {"Bad selectionProbability: -0.25"}}));
  EXPECT_FALSE(ZqSplitDataTableByRandomRowSelection(selected, rest, engine, std::nan(""), source).IsSuccessful());
  EXPECT_EQ(RowsOf(selected), (Rows{0, 1, 2}));
}

TEST_F(TableSplitTest, UniformSamplingWithoutReplacementTakesExactlyCountSortedRows) {
  Numarc::ZqRanNumEngine e1(77), e2(77);
  ZqDataTable otherSelected, otherRest;
  ASSERT_TRUE(ZqSplitDataTableByUnifSamplingWithoutReplacement(selected, rest, e1, 9, source).IsSuccessful());
  ASSERT_TRUE(ZqSplitDataTableByUnifSamplingWithoutReplacement(otherSelected, otherRest, e2, 9, source).IsSuccessful());
  EXPECT_EQ(RowsOf(selected), RowsOf(otherSelected));
  EXPECT_EQ(RowsOf(rest), RowsOf(otherRest));

  // On a view: the rows with x below 15, rows 0 to 29.
  const ZqDataTable view("low", source, ZqDataTableRowSet(30));
  Numarc::ZqRanNumEngine engine(4);
  ASSERT_EQ(Report(ZqSplitDataTableByUnifSamplingWithoutReplacement(selected, rest, engine, 12, view)),
            VarimoTest::Success());
  const Rows chosen = RowsOf(selected), others = RowsOf(rest);
  EXPECT_EQ(chosen.size(), 12u);
  EXPECT_EQ(others.size(), 18u);
  EXPECT_TRUE(std::is_sorted(chosen.begin(), chosen.end()));
  EXPECT_TRUE(std::is_sorted(others.begin(), others.end()));
  EXPECT_EQ(Merged(selected, rest), RowsOf(view));
  EXPECT_TRUE(selected.GetColumnFromName("x").SharesColumnWith(source.GetColumnFromName("x")));

  // Asking for every row fails.
  EXPECT_EQ(Report(ZqSplitDataTableByUnifSamplingWithoutReplacement(selected, rest, engine, 40, source)),
            (ResultReport{false, F::ArgumentOutOfRange, {"ZqSplitDataTableByUnifSamplingWithoutReplacement"},
                          {"Asking to choose 40 rows out of 40 rows available"}}));
  EXPECT_TRUE(ZqSplitDataTableByUnifSamplingWithoutReplacement(selected, rest, engine, 39, source).IsSuccessful());
  EXPECT_EQ(rest.GetNumRows(), 1u);
  const ZqDataTable empty("empty");
  EXPECT_FALSE(ZqSplitDataTableByUnifSamplingWithoutReplacement(selected, rest, engine, 0, empty).IsSuccessful());
}

TEST_F(TableSplitTest, SamplingWithReplacementKeepsDrawOrderAndRepeats) {
  Numarc::ZqRanNumEngine engine(21), replay(21);
  const ZqDataTable boot = ZqGetNewDataTableByUnifSamplingWithReplacement(engine, 60, source);
  EXPECT_EQ(boot.GetTableName(), "source");
  const Numarc::ZqUniformIntRNG index(0, 39);
  Rows expected;
  for (int k = 0; k < 60; ++k) expected.push_back(static_cast<std::uint64_t>(index(replay)));
  EXPECT_EQ(RowsOf(boot), expected);
  EXPECT_TRUE(boot.GetColumnFromName("x").SharesColumnWith(source.GetColumnFromName("x")));
  EXPECT_EQ(ZqGetNewDataTableByUnifSamplingWithReplacement(engine, 5, ZqDataTable("none")).GetNumRows(), 0u);
}

struct CoverageRefs {
  std::vector<double> points, lowerTriangle;
  std::vector<std::vector<std::string>> selections;
};

const CoverageRefs& Refs() {
  static const CoverageRefs refs = [] {
    CoverageRefs r;
    for (auto& tokens : VarimoTest::ReadReferenceLines("tables/coverage_refs.txt")) {
      if (tokens[0] == "points") r.points = VarimoTest::ToDoubles(tokens, 2);
      if (tokens[0] == "similarity") r.lowerTriangle = VarimoTest::ToDoubles(tokens, 1);
      if (tokens[0] == "select") r.selections.push_back(tokens);
    }
    return r;
  }();
  return refs;
}

// The expected rows for a first pick replayed from the engine.
Rows ExpectedCoverage(const std::string& kind, std::uint64_t count, Numarc::ZqRanNumEngine replay) {
  const auto start = std::to_string(Numarc::ZqUniformIntRNG(0, 11)(replay));
  for (const auto& tokens : Refs().selections) {
    if (tokens[1] == kind && tokens[2] == std::to_string(count) && tokens[3] == start) {
      Rows rows;
      for (std::size_t k = 4; k < tokens.size(); ++k) rows.push_back(std::stoull(tokens[k]));
      return rows;
    }
  }
  ADD_FAILURE() << kind << " " << count << " " << start;
  return {};
}

TEST(MaximalCoverageSplit, FarthestFirstRowsAgainstScipyForPointsAndSimilarities) {
  ASSERT_EQ(Refs().points.size(), 24u);
  ASSERT_EQ(Refs().lowerTriangle.size(), 78u);
  ZqDataTable table("molecules");
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("xy", Refs().points, 2)).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("sim", Refs().lowerTriangle, 12, true)).IsSuccessful());
  int checked = 0;
  for (const std::string kind : {"points", "similarity"}) {
    for (std::uint64_t count : {1u, 4u, 7u}) {
      for (std::uint64_t seed = 0; seed < 6; ++seed) {
        Numarc::ZqRanNumEngine engine(seed);
        const Rows expected = ExpectedCoverage(kind, count, engine);
        ZqDataTable selected("a"), rest("b");
        ASSERT_EQ(Report(ZqSplitDataTableByMaxUnifCoverageOfColVals(selected, rest, engine, count,
                                                                    kind == "points" ? "xy" : "sim", table)),
                  VarimoTest::Success());
        EXPECT_EQ(RowsOf(selected), expected) << kind << " " << count << " seed " << seed;
        EXPECT_EQ(Merged(selected, rest), RowsOf(table));
        ++checked;
      }
    }
  }
  EXPECT_EQ(checked, 36);
}

TEST(MaximalCoverageSplit, ColumnFailuresCarryTheRoutineName) {
  ZqDataTable table("t");
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("x", std::vector<double>{1.0, VarimoBadData::MissingDouble, 3.0}))
                  .IsSuccessful());
  ZqDataTable selected, rest;
  Numarc::ZqRanNumEngine engine(1);
  ZqStatModelResult result = ZqSplitDataTableByMaxUnifCoverageOfColVals(selected, rest, engine, 1, "x", table);
  EXPECT_EQ(result.GetFailureType(), F::MissingOrBadPredictorValue);
  EXPECT_EQ(VarimoTest::Context(result).front(), "ZqGetDataVectorFromColumnByName");
  result = ZqSplitDataTableByMaxUnifCoverageOfColVals(selected, rest, engine, 1, "nope", table);
  EXPECT_EQ(result.GetFailureType(), F::ColumnNotFound);
  EXPECT_EQ(VarimoTest::Context(result).back(), "ZqSplitDataTableByMaxUnifCoverageOfColVals");
  const ZqDataTable good("g", table, ZqDataTableRowSet(std::vector<ZqDataTableRow>{ZqDataTableRow(0),
                                                                                   ZqDataTableRow(2)}));
  result = ZqSplitDataTableByMaxUnifCoverageOfColVals(selected, rest, engine, 3, "x", good);
  EXPECT_EQ(Report(result), (ResultReport{false,
                                          F::ArgumentOutOfRange,
                                          {"ZqGetMaximalCoverageDistanceSubMatrix",
                                           "ZqSplitDataTableByMaxUnifCoverageOfColVals"},
                                          {"Asking to choose 3 rows out of 2 rows available"}}));
  ASSERT_TRUE(ZqSplitDataTableByMaxUnifCoverageOfColVals(selected, rest, engine, 2, "x", good).IsSuccessful());
  EXPECT_EQ(RowsOf(selected), (Rows{0, 2}));
}

TEST(MaximalCoverage, DegenerateMatrices) {
  Numarc::ZqRanNumEngine engine(3), replay(3);
  std::vector<std::uint32_t> marks;
  // A count of 0 still marks the first pick.
  ASSERT_TRUE(ZqGetMaximalCoverageDistanceSubMatrix(engine, marks, 0, Eigen::MatrixXd::Ones(4, 4)).IsSuccessful());
  std::vector<std::uint32_t> expected(4, 0u);
  expected[static_cast<std::size_t>(Numarc::ZqUniformIntRNG(0, 3)(replay))] = 1u;
  EXPECT_EQ(marks, expected);
  // All at distance 0: the walk never moves, one item marked.
  ASSERT_TRUE(ZqGetMaximalCoverageDistanceSubMatrix(engine, marks, 3, Eigen::MatrixXd::Zero(5, 5)).IsSuccessful());
  EXPECT_EQ(std::count(marks.begin(), marks.end(), 1u), 1);
  ASSERT_TRUE(ZqGetMaximalCoverageDistanceSubMatrix(engine, marks, 0, Eigen::MatrixXd(0, 0)).IsSuccessful());
  EXPECT_TRUE(marks.empty());
  EXPECT_EQ(ZqGetMaximalCoverageDistanceSubMatrix(engine, marks, 1, Eigen::MatrixXd::Zero(2, 3)).GetFailureType(),
            F::WrongInputMatrixSize);
  EXPECT_TRUE(marks.empty());
}

}  // namespace
}  // namespace Varimo
