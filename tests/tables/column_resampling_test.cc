// Resampling on columns: the bootstrap of a two-sample statistic over
// packed rows, and the independence statistic and its p-value, checked
// against numpy (tests/data/tables/make_column_plot_refs.py) for points and,
// through distance sqrt(1 - s), for a similarity column.
#include "varimo/tables/column_resampling.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/statistics/independence_statistic.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::WithinRelative;
namespace Failure = ZqStatModelFailureType;
namespace Indep = ZqTwoSampleIndependenceStatisticType;

constexpr double kMissing = VarimoBadData::MissingDouble;
constexpr double kBad = VarimoBadData::BadDouble;

std::map<std::string, std::vector<double>> References() {
  std::map<std::string, std::vector<double>> refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("tables/column_plot_refs.txt")) {
    if (line[0] == "values") continue;  // has "NA" tokens; not needed here
    refs[line[0]] = VarimoTest::ToDoubles(line, 1);
  }
  return refs;
}

// A similarity matrix whose distances sqrt(1 - s) are |u_i - u_j| / 10, as
// a lower-triangular column: the distance correlation does not see the
// scale, so it must equal that of u itself.
ZqDataTableCol SimilarityOf(const std::string& name, const std::vector<double>& u) {
  std::vector<double> lower;
  for (std::size_t i = 0; i < u.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) lower.push_back(1.0 - (u[i] - u[j]) * (u[i] - u[j]) / 100.0);
  }
  return ZqDataTableCol(name, lower, u.size(), true);
}

class ColumnResamplingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const ZqDataTableCol& col :
         {ZqDataTableCol("u", refs["u"]), ZqDataTableCol("v", refs["v"]), SimilarityOf("su", refs["u"])}) {
      ASSERT_TRUE(table.AddColumn(col).IsSuccessful());
    }
    for (const ZqDataTableCol& col : {a, b}) ASSERT_TRUE(pairs.AddColumn(col).IsSuccessful());
  }
  std::map<std::string, std::vector<double>> refs = References();
  ZqDataTable table{"t"};
  // b = 2 a + 1 on the good rows; row 1 missing in a, row 3 bad in b.
  ZqDataTableCol a{"a", std::vector<double>{1.0, kMissing, 2.0, 5.0, 4.0, 7.0}};
  ZqDataTableCol b{"b", std::vector<double>{3.0, 0.0, 5.0, kBad, 9.0, 15.0}};
  ZqDataTable pairs{"p"};
  std::vector<double> values{42.0};
  std::uint64_t numMissing = 9, numBad = 9;
  ZqStatModelResult result;
};

TEST_F(ColumnResamplingTest, BootstrapDrawsWholeGoodRows) {
  Numarc::ZqRanNumEngine engine(3);
  Corvane::ZqScopedThrowCapture messages;
  // Rows drawn together keep b = 2a + 1, so every slope is 2 unless a
  // sample repeats one row only, when the slope cannot be had.
  ASSERT_TRUE(ZqBootstrapTwoSampleStatForTwoColsOfRatioType(
                  values, numMissing, numBad, engine, ZqTwoSampleStatisticType::RegressionSlope, 50, pairs, "a", "b")
                  .IsSuccessful());
  EXPECT_EQ(numMissing, 1u);
  EXPECT_EQ(numBad, 1u);
  ASSERT_EQ(values.size(), 50u);
  for (double slope : values) {
    if (slope != kBad) {
      EXPECT_NEAR(slope, 2.0, 1e-12);
    }
  }
  // Each sample goes through the pair sampler, which flags itself.
  EXPECT_EQ(messages.Texts(Corvane::ZqThrowLevel::Fatal).size(), 50u);

  // The same seed repeats the values; the column form walks the same rows.
  Numarc::ZqRanNumEngine again(3);
  std::vector<double> byColumn;
  ASSERT_TRUE(ZqBootstrapTwoSampleStatForTwoColsOfRatioType(byColumn, numMissing, numBad, again,
                                                            ZqTwoSampleStatisticType::RegressionSlope, 50, a, b, 0, 0)
                  .IsSuccessful());
  EXPECT_EQ(byColumn, values);
}

TEST_F(ColumnResamplingTest, IndependenceStatisticsMatchNumpyForPointsAndSimilarities) {
  const struct {
    unsigned int type;
    const char* column;
    const char* reference;
    double tolerance;
  } cases[] = {{Indep::DistanceCorrelationMeasure, "u", "dcor", 1e-12},
               {Indep::DistanceCorrelationMeasure, "su", "dcor", 1e-9},
               {Indep::DistanceCorrelationTestStat, "u", "dcovstat", 1e-12}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.column);
    const double value = ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType(result, c.type, table, c.column, "v");
    ASSERT_TRUE(result.IsSuccessful());
    EXPECT_TRUE(WithinRelative(value, refs[c.reference][0], c.tolerance));
  }
}

TEST_F(ColumnResamplingTest, PValueOfEqualColumnsIsNearZeroAndRepeatsWithTheSeed) {
  Numarc::ZqRanNumEngine engine(17);
  VarimoTest::CaptureOutput out;
  const double p = ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(
      result, engine, 400, Indep::DistanceCorrelationTestStat, table, "u", "u");
  ASSERT_TRUE(result.IsSuccessful());
  EXPECT_LT(p, 0.01);
  Numarc::ZqRanNumEngine again(17);
  EXPECT_EQ(ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(
                result, again, 400, Indep::DistanceCorrelationTestStat, table, "u", "u"),
            p);
  // The simulated range is printed, as the vector form prints it.
  EXPECT_EQ(out.Text().rfind("min, max = ", 0), 0u);
}

TEST_F(ColumnResamplingTest, FailuresNameTheFunction) {
  Numarc::ZqRanNumEngine engine(1);
  Corvane::ZqScopedThrowCapture quiet;
  const ZqStatModelResult unknown = ZqBootstrapTwoSampleStatForTwoColsOfRatioType(
      values, numMissing, numBad, engine, ZqTwoSampleStatisticType::PearsonCorrelation, 5, pairs, "a", "nope");
  EXPECT_EQ(unknown.GetFailureType(), Failure::ColumnNotFound);
  EXPECT_EQ(Context(unknown).front(), "ZqDataTableColSetImpl::GetColumnFromName");
  EXPECT_TRUE(values.empty());

  const ZqDataTableCol none("n", std::vector<double>{kMissing, kMissing, kMissing, kMissing, kMissing, kMissing});
  const ZqStatModelResult empty = ZqBootstrapTwoSampleStatForTwoColsOfRatioType(
      values, numMissing, numBad, engine, ZqTwoSampleStatisticType::PearsonCorrelation, 5, a, none, 0, 0);
  EXPECT_EQ(empty.GetFailureType(), Failure::NoData);
  EXPECT_EQ(Context(empty).back(), "ZqBootstrapTwoSampleStatForTwoColsOfRatioType");
  EXPECT_EQ(numMissing, 6u);

  // The independence statistic and its p-value.
  EXPECT_EQ(
      ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType(result, Indep::DistanceCorrelationMeasure, table, "nope", "v"),
      kBad);
  EXPECT_EQ(Context(result).front(), "ZqDataTableColSetImpl::GetColumnFromName");

  // The measure has no simulation, so its p-value cannot be had.
  EXPECT_EQ(ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(
                result, engine, 10, Indep::DistanceCorrelationMeasure, table, "u", "v"),
            kBad);
  EXPECT_EQ(result.GetFailureType(), Failure::NotYetImplemented);
  EXPECT_EQ(Context(result).back(), "ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType");

  // A missing cell stops the reading of a whole column.
  EXPECT_EQ(ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType(result, Indep::DistanceCorrelationMeasure, pairs, "a", "b"),
            kBad);
  EXPECT_EQ(result.GetFailureType(), Failure::MissingOrBadPredictorValue);
  EXPECT_EQ(Context(result).back(), "ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType");
}

}  // namespace
}  // namespace Varimo
