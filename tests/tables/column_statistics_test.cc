// Column statistics: packing with missing and bad cells counted, the failure
// texts, table forms on views, and statistics of a real column checked
// against numpy and scipy (tests/data/tables/make_column_statistics_refs.py).
#include "varimo/tables/column_statistics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/tessik/file_stream.h"
#include "varimo/statistics/data_vector_functions.h"
#include "varimo/tables/column_append.h"
#include "varimo/tables/data_table_files.h"
#include "varimo/tables/data_table_row_predicates.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
using VarimoTest::Context;
namespace Type = ZqStatVariableType;
namespace Failure = ZqStatModelFailureType;
namespace One = ZqSampleStatisticType;
namespace Two = ZqTwoSampleStatisticType;
namespace Pair = ZqTwoSamplePairStatisticType;

constexpr double kMissing = VarimoBadData::MissingDouble;
constexpr double kBad = VarimoBadData::BadDouble;

ZqDataTableCol TextColumn(const std::string& name, std::uint32_t type, const std::vector<std::string>& texts) {
  ZqDataTableCol col(name, type, texts.size());
  // "?" stands for a missing cell.
  for (const std::string& t : texts) {
    EXPECT_TRUE((t == "?" ? ZqAppendMissingDataToCol(col) : ZqAppendStringToCol(col, t)).IsSuccessful());
  }
  col.FinishAddingVars();
  return col;
}

ZqDataTableCol IntervalColumn(const std::string& name, const std::vector<std::int32_t>& values) {
  ZqDataTableCol col(name, Type::Interval, values.size());
  for (std::int32_t v : values) EXPECT_TRUE(ZqAppendIntToCol(col, v).IsSuccessful());
  col.FinishAddingVars();
  return col;
}

// Six rows with missing and bad cells placed so that every combination of
// the two ratio columns occurs once.
class ColumnStatisticsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const ZqDataTableCol& col : {x, y, cls, count}) ASSERT_TRUE(table.AddColumn(col).IsSuccessful());
  }
  ZqDataTableCol x{"x", std::vector<double>{1.0, kMissing, 3.0, kBad, kMissing, 6.0}};
  ZqDataTableCol y{"y", std::vector<double>{2.0, 4.0, kBad, 8.0, kBad, 12.0}};
  ZqDataTableCol cls = TextColumn("cls", Type::Nominal, {"b", "a", "b", "?", "a", "b"});
  ZqDataTableCol count = IntervalColumn("count", {1, 2, VarimoBadData::MissingInt, 4, 5, 6});
  ZqDataTable table{"t"};
  std::uint64_t numMissing = 99, numBad = 99;
  ZqStatModelResult result;
};

TEST_F(ColumnStatisticsTest, OneColumnKeepsTheGoodCellsAndCountsTheRest) {
  std::vector<double> data{42.0};
  ASSERT_TRUE(ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, x, 0).IsSuccessful());
  EXPECT_EQ(data, (std::vector<double>{1.0, 3.0, 6.0}));
  EXPECT_EQ(numMissing, 2u);
  EXPECT_EQ(numBad, 1u);

  std::vector<std::int32_t> ints;
  ASSERT_TRUE(ZqGetVecOfDataFromColumnOfIntervalType(ints, numMissing, numBad, count, 0).IsSuccessful());
  EXPECT_EQ(ints, (std::vector<std::int32_t>{1, 2, 4, 5, 6}));
  EXPECT_EQ(numMissing, 1u);
  EXPECT_EQ(numBad, 0u);

  ZqDataTableCol packed;
  ASSERT_TRUE(ZqGetPackedColFromColumnOfRatioType(packed, numMissing, numBad, table, "y").IsSuccessful());
  EXPECT_EQ(packed.GetColumnName(), "y");
  EXPECT_EQ(packed.GetStatVariableType(), Type::Ratio);
  ASSERT_EQ(packed.GetTotalNumRowsInCol(), 4u);
  EXPECT_EQ(packed.GetDouble(3, 0), 12.0);
  EXPECT_EQ(numBad, 2u);
}

TEST_F(ColumnStatisticsTest, ARowMissingInOneColumnAndBadInTheOtherCountsAsMissing) {
  ZqPairSample pairs;
  ASSERT_TRUE(ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, x, y, 0, 0).IsSuccessful());
  EXPECT_EQ(pairs, (ZqPairSample{{1.0, 2.0}, {6.0, 12.0}}));
  // Rows 1 (missing, good) and 4 (missing, bad) are missing; rows 2 (good,
  // bad) and 3 (bad, good) are bad.
  EXPECT_EQ(numMissing, 2u);
  EXPECT_EQ(numBad, 2u);

  ZqDataTableCol first, second;
  ASSERT_TRUE(
      ZqGetTwoPackedColsFromTwoColumnsOfRatioType(first, second, numMissing, numBad, table, "x", "y").IsSuccessful());
  EXPECT_EQ(first.GetColumnName(), "x");
  EXPECT_EQ(second.GetColumnName(), "y");
  EXPECT_EQ(second.GetDouble(1, 0), 12.0);

  ZqClassifiedPairSample classified;
  ASSERT_TRUE(ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(classified, numMissing, numBad, table, "x", "y",
                                                                  "cls")
                  .IsSuccessful());
  ASSERT_EQ(classified.size(), 2u);
  EXPECT_EQ(cls.GetUniqueDiscreteValues()[classified[0].second], "b");
  EXPECT_EQ(classified[1].first, std::make_pair(6.0, 12.0));
}

TEST_F(ColumnStatisticsTest, WrongScalesAreRefusedWithTheScaleTexts) {
  std::vector<double> data;
  result = ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, cls, 0);
  EXPECT_EQ(result.GetFailureType(), Failure::ColumnHasWrongDataType);
  EXPECT_EQ(Context(result), std::vector<std::string>{"ZqGetVecOfDataFromColumnOfRatioType"});
  EXPECT_EQ(Comments(result), std::vector<std::string>{"Column: cls: Stat Variable Type is Nominal"});

  ZqPairSample pairs;
  result = ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, x, count, 0, 0);
  EXPECT_EQ(result.GetFailureType(), Failure::ColumnHasWrongDataType);
  EXPECT_EQ(Comments(result), (std::vector<std::string>{"Col One: x: Stat Variable Type is Ratio",
                                                        "Col Two: count: Stat Variable Type is Interval"}));

  ZqClassifiedPairSample classified;
  result = ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(classified, numMissing, numBad, x, y, count, 0, 0, 0);
  EXPECT_EQ(Comments(result).back(), "Col Three: count: Stat Variable Type is Interval");

  const ZqDataTableCol shorter("short", std::vector<double>{1.0, 2.0});
  result = ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, x, shorter, 0, 0);
  EXPECT_EQ(result.GetFailureType(), Failure::MismatchBetweenInputVecSizes);
}

TEST_F(ColumnStatisticsTest, BadIndicesAndTheFirstMissingOrBadRow) {
  std::vector<double> data;
  result = ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, x, 1);
  EXPECT_EQ(result.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Comments(result), std::vector<std::string>{"row column index combination (0, 1) out of range for Column!"});

  ZqPairSample pairs;
  result = ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, x, y, 2, 0);
  EXPECT_EQ(Comments(result),
            std::vector<std::string>{"row column index combination (0, 2) out of range for ColumnOne!"});
  result = ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, x, y, 0, 3);
  EXPECT_EQ(Comments(result),
            std::vector<std::string>{"or row column index combination (0, 3) out of range for ColumnTwo!"});

  EXPECT_TRUE(ZqColumnHasBadRowColIndex(x, 1));
  EXPECT_FALSE(ZqColumnHasBadRowColIndex(x, 0));

  // The checks find the first missing or bad cell within the row count.
  EXPECT_TRUE(ZqColumnHasMissingData(x, 0));
  EXPECT_TRUE(ZqColumnHasBadData(x, 0));
  EXPECT_FALSE(ZqColumnHasBadData(count, 0));
  // The first missing cell of x is in row 1, its first bad one in row 3.
  EXPECT_FALSE(ZqColumnHasMissingData(table.GetRows(), 1, x, 0));
  EXPECT_TRUE(ZqColumnHasMissingData(table.GetRows(), 2, x, 0));
  EXPECT_FALSE(ZqColumnHasBadData(table.GetRows(), 3, x, 0));
  EXPECT_TRUE(ZqColumnHasBadData(table.GetRows(), 4, x, 0));
  // A bad index is neither missing nor bad.
  EXPECT_FALSE(ZqColumnHasMissingData(x, 5));
  EXPECT_FALSE(ZqColumnHasBadData(x, 5));
}

TEST_F(ColumnStatisticsTest, TableFormsWalkTheRowsOfAView) {
  const ZqDataTable view("v", table, ZqDataTableRowSet(std::vector<ZqDataTableRow>{ZqDataTableRow(4), ZqDataTableRow(5)}));
  std::vector<double> data;
  ASSERT_TRUE(ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, view, "x").IsSuccessful());
  EXPECT_EQ(data, std::vector<double>{6.0});
  EXPECT_EQ(numMissing, 1u);
  EXPECT_EQ(numBad, 0u);

  const double mean = ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, One::Mean, view, "y");
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(mean, 12.0);
  EXPECT_EQ(numBad, 1u);

  using Outcomes = std::vector<std::pair<std::string, std::uint64_t>>;
  Outcomes outcomes;
  ASSERT_TRUE(ZqGetFreqOfOutcomesFromColumnOfNominalType(outcomes, view, "cls").IsSuccessful());
  EXPECT_EQ(outcomes, (Outcomes{{"MissingStringData", 0}, {"a", 1}, {"b", 1}}));
  // The whole table: the missing cell is counted in no slot, not even its own.
  ASSERT_TRUE(ZqGetFreqOfOutcomesFromColumnOfNominalType(outcomes, table, "cls").IsSuccessful());
  EXPECT_EQ(outcomes, (Outcomes{{"MissingStringData", 0}, {"a", 2}, {"b", 3}}));

  result = ZqGetFreqOfOutcomesFromColumnOfNominalType(outcomes, table, "x");
  EXPECT_EQ(Comments(result), std::vector<std::string>{"Column: x: Stat Variable Type is Ratio"});
}

TEST_F(ColumnStatisticsTest, FailuresCarryEachFunctionsName) {
  double value = ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, One::Mean, table, "nope");
  EXPECT_EQ(value, kBad);
  EXPECT_EQ(result.GetFailureType(), Failure::ColumnNotFound);
  EXPECT_EQ(Context(result).front(), "ZqDataTableColSetImpl::GetColumnFromName");

  value = ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, One::Mean, cls, 0);
  EXPECT_EQ(value, kBad);
  EXPECT_EQ(Context(result).front(), "ZqGetVecOfDataFromColumnOfRatioType");

  // No good pair: the statistic on the vector refuses, and the column form
  // passes that on.
  const ZqDataTableCol allMissing("m", std::vector<double>(6, kMissing));
  value = ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(result, numMissing, numBad, Two::PearsonCorrelation, x,
                                                          allMissing, 0, 0);
  EXPECT_EQ(value, kBad);
  EXPECT_EQ(result.GetFailureType(), Failure::NoData);
  EXPECT_EQ(Context(result).front(), "ZqGetTwoSampleStatisticForDataPairVec");
  EXPECT_EQ(numMissing, 6u);
  const std::pair<double, double> bothBad = ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
      result, numMissing, numBad, Pair::PairOfMeans, x, allMissing, 0, 0);
  EXPECT_EQ(bothBad, std::make_pair(kBad, kBad));
  EXPECT_EQ(Context(result).back(), "ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType");

  // An empty sample is not a failure for one-sample statistics.
  value = ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, One::Mean, allMissing, 0);
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(value, kBad);
}

TEST(ColumnRows, ReadWholeRowsAndRefuseMissingCells) {
  const ZqDataTableCol rect("r", std::vector<double>{1, 2, 3, 4, kMissing, 6}, 3);
  std::vector<double> row;
  ASSERT_TRUE(ZqGetOneRowOfColumn(row, 0, rect).IsSuccessful());
  EXPECT_EQ(row, (std::vector<double>{1, 2, 3}));
  ZqStatModelResult result = ZqGetOneRowOfColumn(row, 1, rect);
  EXPECT_EQ(result.GetFailureType(), Failure::MissingOrBadPredictorValue);
  EXPECT_EQ(Comments(result), std::vector<std::string>{"row column index combination (1, 1) has bad or missing data!"});
  result = ZqGetOneRowOfColumn(row, 2, rect);
  EXPECT_EQ(Comments(result), std::vector<std::string>{"row column index combination (2, 0) out of range for Column!"});

  // A 3 x 3 lower triangle, row by row: [[1], [.5, 1], [.2, .3, 1]].
  const ZqDataTableCol lower("s", std::vector<double>{1, .5, 1, .2, .3, 1}, 3, true);
  ZqDataTable table("t");
  ASSERT_TRUE(table.AddColumn(lower).IsSuccessful());
  ASSERT_TRUE(ZqGetOneRowOfLowerTriangularColumn(row, 1, table, lower).IsSuccessful());
  EXPECT_EQ(row, (std::vector<double>{.5, 1, .3}));

  ZqPairedRowVecs pairs;
  std::uint64_t numMissing = 0, numBad = 0;
  ASSERT_TRUE(ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(pairs, numMissing, numBad, lower, lower).IsSuccessful());
  ASSERT_EQ(pairs.size(), 3u);
  EXPECT_EQ(pairs[2].second, (std::vector<double>{.2, .3, 1}));
  const ZqDataTableCol twoCols("two", std::vector<double>{1, 2, kBad, 4, 5, 6}, 2);
  const ZqDataTableCol withMissing("m", std::vector<double>{kMissing, 1, 2, 3, 4, 5}, 2);
  ASSERT_TRUE(
      ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(pairs, numMissing, numBad, twoCols, withMissing).IsSuccessful());
  EXPECT_EQ(numMissing, 1u);
  EXPECT_EQ(numBad, 1u);
  ASSERT_EQ(pairs.size(), 1u);
  EXPECT_EQ(pairs[0], std::make_pair(std::vector<double>{5, 6}, std::vector<double>{4, 5}));
}

TEST(ColumnDataVector, RowByRowAndSimilaritiesWithinZeroAndOne) {
  ZqDataTable table("t");
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("r", std::vector<double>{1, 2, 3, 4, 5, 6}, 2)).IsSuccessful());
  ASSERT_TRUE(table.AddColumn(ZqDataTableCol("m", std::vector<double>{1, 2, kMissing})).IsSuccessful());
  std::vector<double> data;
  std::uint64_t numCols = 0;
  ASSERT_TRUE(ZqGetDataVectorFromColumnByName(data, numCols, table, "r").IsSuccessful());
  EXPECT_EQ(numCols, 2u);
  EXPECT_EQ(data, (std::vector<double>{1, 2, 3, 4, 5, 6}));

  ZqStatModelResult result = ZqGetDataVectorFromColumnByName(data, numCols, table, "m");
  EXPECT_EQ(result.GetFailureType(), Failure::MissingOrBadPredictorValue);
  EXPECT_EQ(Comments(result), std::vector<std::string>{"row num = 2"});

  const ZqDataTable firstRows("v", table, ZqDataTableRowSet(2));
  ASSERT_TRUE(ZqGetDataVectorFromColumnByName(data, numCols, firstRows, "m").IsSuccessful());
  EXPECT_EQ(data, (std::vector<double>{1, 2}));

  // Similarities must lie within [0, 1].
  auto loadSimilarity = [](double element) {
    ZqDataTable similarity("t");
    EXPECT_TRUE(
        similarity.AddColumn(ZqDataTableCol("sim", std::vector<double>{1, element, 1}, 2, true)).IsSuccessful());
    return similarity;
  };
  ASSERT_TRUE(ZqGetDataVectorFromColumnByName(data, numCols, loadSimilarity(0.25), "sim").IsSuccessful());
  EXPECT_EQ(numCols, 2u);
  EXPECT_EQ(data, (std::vector<double>{1, 0.25, 0.25, 1}));

  result = ZqGetDataVectorFromColumnByName(data, numCols, loadSimilarity(1.0000001), "sim");
  EXPECT_EQ(result.GetFailureType(), Failure::UpperBoundViolated);
  EXPECT_EQ(Comments(result),
            std::vector<std::string>{"Column name: sim; Bad Similarity: row col num = 0 1; element = 1.0000001"});
  result = ZqGetDataVectorFromColumnByName(data, numCols, loadSimilarity(-0.5), "sim");
  EXPECT_EQ(result.GetFailureType(), Failure::LowerBoundViolated);
  result = ZqGetDataVectorFromColumnByName(data, numCols, loadSimilarity(kMissing), "sim");
  EXPECT_EQ(result.GetFailureType(), Failure::UpperBoundViolated);

  ZqDataTable nominal("n");
  ASSERT_TRUE(nominal.AddColumn(TextColumn("c", Type::Nominal, {"a"})).IsSuccessful());
  result = ZqGetDataVectorFromColumnByName(data, numCols, nominal, "c");
  EXPECT_EQ(Comments(result), std::vector<std::string>{"Column name: c"});
}

TEST(ColumnEigenvalues, MatchNumpyOnASimilarityMatrix) {
  std::vector<double> lower, expected;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("tables/column_statistics_refs.txt")) {
    if (tokens[0] == "similarity_lower") lower = VarimoTest::ToDoubles(tokens, 1);
    if (tokens[0] == "similarity_eigenvalues") expected = VarimoTest::ToDoubles(tokens, 1);
  }
  ASSERT_EQ(lower.size(), 21u);
  std::vector<double> values;
  ASSERT_TRUE(ZqGetSortedEigenValsOfLowerTriangularColumn(values, ZqDataTableCol("s", lower, 6, true)).IsSuccessful());
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], 1e-13) << i;

  const ZqStatModelResult result =
      ZqGetSortedEigenValsOfLowerTriangularColumn(values, ZqDataTableCol("r", std::vector<double>{1, 2}));
  EXPECT_EQ(result.GetFailureType(), Failure::WrongInputMatrixSize);
}

// The Act and Name columns of a ChEMBL activity file shipped with rdkit-data.
class RealColumnStatistics : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    const std::string path = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810_act.csv";
    Tessik::zqifstream stream(path);
    ASSERT_TRUE(stream.is_open());
    table_ = std::make_unique<ZqDataTable>("chembl");
    ASSERT_TRUE(ZqLoadDataTableFromCSVFileWithHeader(*table_, stream, path).IsSuccessful());
    for (const auto& tokens : VarimoTest::ReadReferenceLines("tables/column_statistics_refs.txt")) {
      refs_[tokens[0]] = VarimoTest::ToDoubles(tokens, 1);
    }
  }
  static void TearDownTestSuite() { table_.reset(); }
  static double Ref(const std::string& name, std::size_t i = 0) { return refs_.at(name).at(i); }

  static void ExpectStatistics(const ZqDataTable& table, const std::string& prefix) {
    ZqStatModelResult result;
    std::uint64_t numMissing = 0, numBad = 0;
    auto one = [&](unsigned int type, double parameter = 0.5) {
      const double value =
          ZqGetSampleStatisticForColumnOfRatioType(result, numMissing, numBad, type, parameter, table, "Act");
      EXPECT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
      return value;
    };
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Mean), Ref(prefix + "act_mean"), 1e-14));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Variance), Ref(prefix + "act_variance"), 1e-12));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Median), Ref(prefix + "act_median"), 1e-14));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Quantile, 0.9), Ref(prefix + "act_quantile90"), 1e-14));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::InterQuartileRange), Ref(prefix + "act_iqr"), 1e-12));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Skewness), Ref(prefix + "act_skewness"), 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(one(One::Kurtosis), Ref(prefix + "act_kurtosis"), 1e-10));
    EXPECT_EQ(numMissing + numBad, 0u);

    auto two = [&](unsigned int type) {
      const double value =
          ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(result, numMissing, numBad, type, table, "Name", "Act");
      EXPECT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
      return value;
    };
    EXPECT_TRUE(VarimoTest::WithinRelative(two(Two::PearsonCorrelation), Ref(prefix + "name_act_pearson"), 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(two(Two::SpearmanRho), Ref(prefix + "name_act_spearman"), 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(two(Two::KendallTau), Ref(prefix + "name_act_kendall"), 1e-10));
    const std::pair<double, double> ols = ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
        result, numMissing, numBad, Pair::InterceptSlopeOfOLSRegression, table, "Name", "Act");
    EXPECT_TRUE(VarimoTest::WithinRelative(ols.first, Ref(prefix + "name_act_ols", 0), 1e-8));
    EXPECT_TRUE(VarimoTest::WithinRelative(ols.second, Ref(prefix + "name_act_ols", 1), 1e-8));
  }

  static inline std::unique_ptr<ZqDataTable> table_;
  static inline std::map<std::string, std::vector<double>> refs_;
};

TEST_F(RealColumnStatistics, WholeColumnsAndAViewMatchNumpyAndScipy) {
  std::vector<double> act;
  std::uint64_t numMissing = 0, numBad = 0;
  ASSERT_TRUE(ZqGetVecOfDataFromColumnOfRatioType(act, numMissing, numBad, *table_, "Act").IsSuccessful());
  EXPECT_EQ(static_cast<double>(act.size()), Ref("act_count"));
  ExpectStatistics(*table_, "");

  // A view counts only its rows.
  const ZqDataTable view("active", *table_, ZqRowColWithinInclDoubleRange(5.0, 7.0, table_->GetColumnFromName("Act"), 0));
  ASSERT_TRUE(ZqGetVecOfDataFromColumnOfRatioType(act, numMissing, numBad, view, "Act").IsSuccessful());
  EXPECT_EQ(static_cast<double>(act.size()), Ref("view_act_count"));
  ExpectStatistics(view, "view_");
}

}  // namespace
}  // namespace Varimo
