// Regression results: their summaries, the statistics of their columns, and
// the result of a failed run.
#include "varimo/smoothers/regression_result.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/statistics/sample_statistic.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;

ZqDataTable Table() {
  ZqDataTable table("results");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("PredictedResponses", std::vector<double>{1.0, 2.0, 3.0, 6.0}))
                  .IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("ResidualErrors", std::vector<double>{0.5, -0.5, 1.5, -1.0}))
                  .IsSuccessful());
  // Two elements per row: a statistic on a similarity result reads element 0.
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("Pairs", std::vector<double>{1, 10, 2, 20, 3, 30, 4, 40}, 2))
                  .IsSuccessful());
  return table;
}

TEST(RegressionResult, SummaryAndColumnStatistics) {
  const ZqUnivariateRegressionResult result(ZqStatModelResult(true), "Kernel Regression", "Training Set Results",
                                            Table(), {0.25}, {"Bandwidth", "Kernel"}, 1);
  const std::string text = result.PrintSummary();
  EXPECT_EQ(text.rfind("Regression Model: Kernel Regression\nResult type: Training Set Results\n"
                       "Model Parameters: \nBandwidth: 0.25\nKernel: Parameter is Not Defined\n",
                       0),
            0u);
  EXPECT_NE(text.find("PredictedResponses"), std::string::npos);

  ZqStatModelResult status;
  unsigned long used = 0, unused = 0;
  // The univariate result reads the predictor's element: 1 of "Pairs".
  EXPECT_EQ(result.GetSampleStatisticOnColumn(status, used, unused, ZqSampleStatisticType::Mean, "Pairs"), 25.0);
  EXPECT_EQ(used, 4u);
  EXPECT_EQ(unused, 0u);
  const ZqSimilarityRegressionResult similarity(ZqStatModelResult(true), "Krige on Similarity", "Test Set Results",
                                                Table(), {}, {});
  EXPECT_EQ(similarity.GetSampleStatisticOnColumn(status, used, unused, ZqSampleStatisticType::Mean, "Pairs"), 2.5);
  // Covariance over n of (1, 2, 3, 6) with (0.5, -0.5, 1.5, -1), by hand:
  // deviations (-2, -1, 0, 3) and (0.375, -0.625, 1.375, -1.125) give -3.5 / 4.
  EXPECT_NEAR(similarity.GetSampleStatisticOnColumnPair(status, used, unused, ZqTwoSampleStatisticType::Covariance,
                                                        "PredictedResponses", "ResidualErrors"),
              -0.875, 1e-15);
  similarity.GetSampleStatisticOnColumn(status, used, unused, ZqSampleStatisticType::Mean, "Nothing");
  EXPECT_FALSE(status.IsSuccessful());
  EXPECT_EQ(VarimoTest::Context(status).back(), "ZqSimilarityRegressionResult::GetSampleStatisticOnColumn");
}

TEST(RegressionResult, FailedRunHasNoTableAndStopsTheSummary) {
  const ZqStatModelResult failure = ZqMakeFailedResult(F::SingularMatrix, "Smoother::Fit", "no inverse");
  const ZqSimilarityRegressionResult result(failure);
  EXPECT_EQ(result.GetModelName(), "Null Results");
  EXPECT_EQ(result.GetResultOfRegression().GetFailureType(), F::SingularMatrix);
  ZqStatModelResult status;
  result.GetColumnFromName(status, "PredictedResponses");
  EXPECT_EQ(status.GetFailureType(), F::ColumnNotFound);
  EXPECT_EQ(result.PrintSummary(), "Regression Model: Null Results\nResult type: \nResult of Regression:\n" +
                                       failure.ReportStatResultDetails());
  EXPECT_EQ(std::string(ZqSimilarityRegressionResultColTypes::TypeName[5]), "EstimatedPredictionError");
  EXPECT_EQ(std::string(ZqUniVarRegressResultColTypes::TypeName[1]), "Predictors");
}

// Both results plot their table's columns against each other, reading the
// elements asked for, and add their own method to a failure.
TEST(RegressionResult, ScatterPlotOfTwoResultColumns) {
  const ZqUnivariateRegressionResult univariate(ZqStatModelResult(true), "Kernel Regression", "Training Set Results",
                                                Table(), {}, {}, 0);
  Numarc::ZqDataSeries series;
  double xMin = 0, xMax = 0, yMin = 0, yMax = 0;
  ASSERT_TRUE(univariate
                  .GetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, "PredictedResponses", "Pairs",
                                                      0, 1, 0.0, 5.0, 0.0, 0.0)
                  .IsSuccessful());
  EXPECT_EQ(series.GetPoints(), (std::vector<Numarc::ZqDataPoint>{{1, 10}, {2, 20}, {3, 30}, {6, 40}}));
  EXPECT_EQ(xMin, 0.0);  // the window's low end is below the data
  EXPECT_EQ(xMax, 6.0);  // the data's high end is above the window
  EXPECT_EQ(yMin, 0.0);
  EXPECT_EQ(yMax, 40.0);

  const ZqSimilarityRegressionResult similarity(ZqStatModelResult(true), "Krige on Similarity", "Test Set Results",
                                                Table(), {}, {});
  const ZqStatModelResult unknown = similarity.GetScatterPlotPtsForColumnNamePair(
      series, xMin, xMax, yMin, yMax, "PredictedResponses", "Nothing", 0, 0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_EQ(unknown.GetFailureType(), F::ColumnNotFound);
  EXPECT_EQ(VarimoTest::Context(unknown).front(), "ZqDataTableColSetImpl::GetColumnFromName");

  // A failed run has an empty table: nothing to plot.
  const ZqUnivariateRegressionResult failed(ZqMakeFailedResult(F::NoData, "Smoother"));
  EXPECT_EQ(failed
                .GetScatterPlotPtsForColumnNamePair(series, xMin, xMax, yMin, yMax, "PredictedResponses",
                                                    "ResidualErrors", 0, 0, 0.0, 1.0, 0.0, 1.0)
                .GetFailureType(),
            F::ColumnNotFound);
}

}  // namespace
}  // namespace Varimo
