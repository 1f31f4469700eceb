// Smoothers on predictor columns and their results. On one column: least
// squares against numpy's polyfit, kernel regression against a direct numpy
// evaluation, with and without leaving a row out
// (tests/data/smoothers/make_smoother_refs.py). The base of smoothers on
// several predictor columns, through a smoother defined here: the
// prediction of a row is its x plus the mean of its similarities, so every
// result column has a value worked out by hand. Regression results: their
// summaries, the statistics of their columns, and the result of a failed
// run.
#include "varimo/smoothers/pred_columns_smoother.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/linear_smoother.h"
#include "varimo/smoothers/regression_result.h"
#include "varimo/statistics/sample_statistic.h"
#include "varimo/statistics/two_sample_statistic.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using VarimoTest::Comments;
using VarimoTest::Context;

namespace T = ZqUnivarLinearSmootherType;

// The first element of each row of a result column, and a table's column
// names.
template <class Result>
std::vector<double> Column(const Result& fit, const std::string& name) {
  ZqStatModelResult result(true);
  const ZqDataTableCol& col = fit.GetColumnFromName(result, name);
  EXPECT_TRUE(result.IsSuccessful()) << name;
  std::vector<double> values;
  for (std::uint64_t r = 0; r < col.GetTotalNumRowsInCol(); ++r) values.push_back(col.GetDouble(r, 0));
  return values;
}

std::vector<std::string> ColumnNames(const ZqDataTable& table) {
  std::vector<std::string> names;
  for (const ZqDataTableCol& col : table.GetColumns()) names.push_back(col.GetColumnName());
  return names;
}

struct Refs {
  std::vector<double> x, y;
  double intercept = 0.0, slope = 0.0;
  std::vector<std::vector<double>> kernel, loo;
};

Refs ReadRefs() {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("smoothers/smoother_refs.txt")) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 1);
    if (line[0] == "x") refs.x = v;
    if (line[0] == "y") refs.y = v;
    if (line[0] == "ols") refs.intercept = v[0], refs.slope = v[1];
    if (line[0] == "kernel") refs.kernel.push_back(v);
    if (line[0] == "loo") refs.loo.push_back(v);
  }
  return refs;
}

ZqDataTable TrainingTable(const Refs& refs) {
  ZqDataTable table("train");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("x", refs.x)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", refs.y)).IsSuccessful());
  return table;
}

TEST(LinearSmoother, LeastSquaresAgreesWithNumpy) {
  const Refs refs = ReadRefs();
  const ZqUniVarLinearSmoother ols(T::SimpleLinear, 0, "x", "y", TrainingTable(refs), 0);
  ASSERT_TRUE(ols.ModelIsValid()) << ols.GetResultOfConstructor().ReportStatResultDetails();
  ASSERT_EQ(ols.GetModelParams().size(), 2u);
  EXPECT_NEAR(ols.GetModelParams()[0], refs.intercept, 1e-12);
  EXPECT_NEAR(ols.GetModelParams()[1], refs.slope, 1e-12);
  EXPECT_EQ(ols.GetModelParamNames()[1], "slope of linear regression line");
  EXPECT_EQ(ols.GetNameOfUniVarLinearSmoother(), "Simple Linear Regression");
  // Leaving a row out changes nothing for least squares.
  const ZqUnivariateRegressionResult with = ols.GetTrainingSetResults(true);
  const ZqUnivariateRegressionResult without = ols.GetTrainingSetResults(false);
  EXPECT_EQ(Column(without, "PredictedResponses"), Column(with, "PredictedResponses"));
  const std::vector<double> residuals = Column(with, "ResidualErrors");
  ASSERT_EQ(residuals.size(), refs.x.size());
  for (std::size_t r = 0; r < refs.x.size(); ++r) {
    EXPECT_NEAR(residuals[r], refs.intercept + refs.slope * refs.x[r] - refs.y[r], 1e-12);
  }
  // Predictor, response, predicted, residual, absolute residual.
  EXPECT_EQ(ColumnNames(with.GetRegResultDataTable()),
            (std::vector<std::string>{"x", "y", "PredictedResponses", "ResidualErrors", "AbsoluteResidualErrors"}));
}

TEST(LinearSmoother, KernelRegressionAgreesWithNumpy) {
  const Refs refs = ReadRefs();
  ZqUniVarLinearSmoother kernel(T::Kernel, ZqKernelFunctionType::Gaussian, "x", "y", TrainingTable(refs), 0);
  // No parameter yet: one named, none set, no prediction.
  EXPECT_EQ(kernel.GetNumModelParams(), 1u);
  EXPECT_TRUE(kernel.GetModelParams().empty());
  EXPECT_FALSE(kernel.ModelIsValid());
  EXPECT_EQ(kernel.GetPredictedResponse(1.0), VarimoBadData::BadDouble);
  EXPECT_EQ(kernel.GetModelParamNames()[0], "Parameter for Kernel of type Gaussian Kernel Function");
  EXPECT_EQ(kernel.SetModelParams({1.0, 2.0}).GetFailureType(), F::WrongInputVectorSize);
  for (const std::vector<double>& k : refs.kernel) {
    ASSERT_TRUE(kernel.SetModelParams({k[0]}).IsSuccessful());
    EXPECT_NEAR(kernel.GetPredictedResponse(k[1]), k[2], 1e-12) << k[0] << " " << k[1];
  }
  for (const std::vector<double>& k : refs.loo) {
    ASSERT_TRUE(kernel.SetModelParams({k[0]}).IsSuccessful());
    const auto row = static_cast<unsigned long>(k[1]);
    EXPECT_NEAR(kernel.GetPredictedResponse(refs.x[row], row), k[2], 1e-12);
    EXPECT_NEAR(Column(kernel.GetTrainingSetResults(true), "PredictedResponses")[row], k[2], 1e-12);
  }
  // Far outside a compact kernel every weight is the floor: the plain mean.
  ZqUniVarLinearSmoother box(T::Kernel, ZqKernelFunctionType::BoxCar, "x", "y", TrainingTable(refs), 0);
  ASSERT_TRUE(box.SetModelParams({1.0}).IsSuccessful());
  double mean = 0.0;
  for (const double v : refs.y) mean += v / static_cast<double>(refs.y.size());
  EXPECT_NEAR(box.GetPredictedResponse(100.0), mean, 1e-12);
}

TEST(LinearSmoother, TestSetsNullModelsAndFailures) {
  const Refs refs = ReadRefs();
  const ZqUniVarLinearSmoother ols(T::SimpleLinear, 0, "x", "y", TrainingTable(refs), 0);
  ZqDataTable test("test");
  ASSERT_TRUE(test.AddColumn(ZqDataTableCol("q", std::vector<double>{1.0, 2.0})).IsSuccessful());
  ASSERT_TRUE(test.AddColumn(ZqDataTableCol("r", std::vector<double>{3.0, 3.0})).IsSuccessful());
  const ZqUnivariateRegressionResult tested = ols.GetTestSetResults("q", "r", test, 0);
  ASSERT_TRUE(tested.GetResultOfRegression().IsSuccessful());
  EXPECT_NEAR(Column(tested, "PredictedResponses")[1], refs.intercept + 2.0 * refs.slope, 1e-12);
  EXPECT_EQ(tested.PrintSummary().rfind("Regression Model: Simple Linear Regression\nResult type: Test Set Results\n",
                                        0),
            0u);
  EXPECT_EQ(VarimoTest::Context(ols.GetTestSetResults("nothing", "r", test, 0).GetResultOfRegression()).back(),
            "ZqUniVarLinearSmootherBase::GetTestSetResults");

  // Types without a class, and unknown kernels, are not valid models.
  const ZqUniVarLinearSmoother spline(T::CubicSpline, 0, "x", "y", TrainingTable(refs), 0);
  EXPECT_EQ(spline.GetNameOfUniVarLinearSmoother(), "Unknown");
  EXPECT_FALSE(spline.ModelIsValid());
  EXPECT_EQ(spline.GetTrainingSetResults(false).GetResultOfRegression().GetFailureType(), F::ObjectNotValid);
  ZqUniVarLinearSmoother nullKernel(T::Kernel, 0, "x", "y", TrainingTable(refs), 0);
  EXPECT_EQ(VarimoTest::Comments(nullKernel.GetResultOfConstructor()),
            std::vector<std::string>{"Null kernelFunction constructed"});
  // A missing training column fails the set-up of the base.
  const ZqUniVarLinearSmoother missing(T::SimpleLinear, 0, "x", "absent", TrainingTable(refs), 0);
  EXPECT_FALSE(missing.ModelIsValid());
  EXPECT_EQ(VarimoTest::Context(missing.GetResultOfConstructor()).back(), "Constructor of ZqUniVarLinearSmootherBase");
  // One usable row: a successful fit of the bad pair.
  ZqDataTable tiny("tiny");
  ASSERT_TRUE(tiny.AddColumn(ZqDataTableCol("x", std::vector<double>{1.0})).IsSuccessful());
  ASSERT_TRUE(tiny.AddColumn(ZqDataTableCol("y", std::vector<double>{2.0})).IsSuccessful());
  const ZqUniVarLinearSmoother one(T::SimpleLinear, 0, "x", "y", tiny, 0);
  EXPECT_TRUE(one.ModelIsValid());
  EXPECT_EQ(one.GetModelParams(), (std::vector<double>{VarimoBadData::BadDouble, VarimoBadData::BadDouble}));

  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Kernel"), 3u);
  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Kernel or Nadaraya-Watson Regression"), 3u);
  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Spline"), 0u);
  EXPECT_EQ(ZqGetLinearSmootherNameFromType(7),
            "ZqGetLinearSmootherNameFromType: argument out of Range.\nType must be less than 6");
}

// ------------------------------------------------------------ predictor columns

class XPlusMeanSimilarity final : public ZqLinearSmootherOnPredColumnsBase {
 public:
  using ZqLinearSmootherOnPredColumnsBase::ZqLinearSmootherOnPredColumnsBase;
  ZqLinearSmootherOnPredColumnsBase* CreateCopy() const override { return new XPlusMeanSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnPredColumns() const override { return "x plus mean similarity"; }
  unsigned int GetTypeOfLinearSmootherOnPredColumns() const override { return ZqLinearSmootherOnPredColsType::Unknown; }
  std::size_t GetNumModelParams() const override { return 1; }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override {
    failAt_ = params.at(0);
    return ZqStatModelResult(true);
  }
  std::vector<double> GetModelParams() const override { return {failAt_}; }
  std::vector<std::string> GetModelParamNames() const override { return {"row that fails"}; }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const std::vector<ZqDataTableCol>& cols, std::uint64_t row) const override {
    if (static_cast<double>(row) == failAt_) return ZqMakeFailedResult(F::NoData, "XPlusMeanSimilarity");
    double sum = 0.0;
    for (std::uint64_t j = 0; j < 3; ++j) sum += cols[1].GetDouble(row, j);
    averageWeight = sum / 3.0;
    predicted = cols[0].GetDouble(row, 0) + averageWeight;
    estimatedError = 0.5;
    return ZqStatModelResult(true);
  }

 private:
  double failAt_ = -1.0;
};

ZqDataTable Table() {
  ZqDataTable table("t");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("x", std::vector<double>{1.0, 2.0, 4.0})).IsSuccessful());
  // Lower triangle, row by row: (0,0); (1,0) (1,1); (2,0) (2,1) (2,2).
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("S", {1.0, 0.5, 1.0, 0.2, 0.8, 1.0}, 3, true)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", std::vector<double>{2.0, 3.0, 5.0})).IsSuccessful());
  return table;
}

TEST(PredColumnsSmoother, TrainingAndTestTablesHoldThePredictionsAndResiduals) {
  const ZqDataTable table = Table();
  const XPlusMeanSimilarity smoother("y", {"x", "S"}, table);
  ASSERT_TRUE(smoother.ModelIsValid());
  const ZqSimilarityRegressionResult fit = smoother.GetTrainingSetResults();
  ASSERT_TRUE(fit.GetResultOfRegression().IsSuccessful()) << fit.GetResultOfRegression().ReportStatResultDetails();
  EXPECT_EQ(ColumnNames(fit.GetRegResultDataTable()),
            (std::vector<std::string>{"x", "S", "y", "PredictedResponses", "AverageSimilarityWeights",
                                      "EstimatedPredictionError", "ResidualErrors", "AbsoluteResidualErrors"}));
  // Mean similarities 1.7/3, 2.3/3 and 2/3: a matrix row reads both triangles.
  const std::vector<double> predicted = Column(fit, "PredictedResponses");
  const std::vector<double> expected = {1.0 + 1.7 / 3, 2.0 + 2.3 / 3, 4.0 + 2.0 / 3};
  for (std::size_t r = 0; r < 3; ++r) {
    EXPECT_DOUBLE_EQ(predicted[r], expected[r]);
    EXPECT_DOUBLE_EQ(Column(fit, "ResidualErrors")[r], expected[r] - (std::vector<double>{2, 3, 5})[r]);
  }
  EXPECT_EQ(Column(fit, "AbsoluteResidualErrors")[0], std::abs(expected[0] - 2.0));
  EXPECT_EQ(fit.GetModelName(), "x plus mean similarity");

  ZqDataTableCol p, w, e;
  ASSERT_TRUE(smoother.GetPredictedResponseCols(p, w, e, {"x", "S"}, table).IsSuccessful());
  EXPECT_EQ(p.GetColumnName(), "Predicted Response");
  EXPECT_EQ(p.GetFullColumnName(), "Predicted Response for y");
  EXPECT_EQ(w.GetFullColumnName(), "Average Similarity Weights for y");
  EXPECT_EQ(e.GetFullColumnName(), "Estimated Prediction Error for y");

  // A view of two rows: the others stay missing.
  const ZqDataTable view("v", table, ZqDataTableRowSet(std::vector<ZqDataTableRow>{ZqDataTableRow(0), ZqDataTableRow(2)}));
  const ZqSimilarityRegressionResult test = smoother.GetTestSetResults("y", {"x", "S"}, view);
  ASSERT_TRUE(test.GetResultOfRegression().IsSuccessful());
  const std::vector<double> viewed = Column(test, "PredictedResponses");
  EXPECT_DOUBLE_EQ(viewed[2], expected[2]);
  EXPECT_EQ(viewed[1], VarimoBadData::MissingDouble);
}

TEST(PredColumnsSmoother, ColumnsThatDoNotLineUpAndOtherFailures) {
  const XPlusMeanSimilarity smoother("y", {"x", "S"}, Table());
  unsigned long rows = 0;
  const ZqDataTableCol x4("x4", std::vector<double>{1, 2, 3, 4});
  const ZqDataTableCol wide("wide", std::vector<double>{1, 2, 3, 4, 5, 6}, 2);
  const ZqDataTableCol s("S", {1.0, 0.5, 1.0, 0.2, 0.8, 1.0}, 3, true);
  ASSERT_TRUE(smoother.CheckThatPredColumnsLineUp(rows, {ZqDataTableCol("x", std::vector<double>{0, 0, 0}), s})
                  .IsSuccessful());
  EXPECT_EQ(rows, 3u);
  const ZqStatModelResult moreRows = smoother.CheckThatPredColumnsLineUp(rows, {x4, s});
  EXPECT_EQ(moreRows.GetFailureType(), F::MismatchBetweenPrivateVecSizes);
  EXPECT_EQ(Comments(moreRows),
            (std::vector<std::string>{"input predCol: x4 has 4 total num rows; whereas internal column x has 3 total num rows"}));
  EXPECT_EQ(Comments(smoother.CheckThatPredColumnsLineUp(rows, {wide, s})),
            (std::vector<std::string>{"input predCol: wide has 2 columns; whereas internal column x has 1 columns"}));
  EXPECT_EQ(smoother.CheckThatPredColumnsLineUp(rows, {s}).GetFailureType(), F::WrongInputVectorSize);

  // Failures carry their routines.
  const XPlusMeanSimilarity missing("y", {"x", "nothing"}, Table());
  EXPECT_FALSE(missing.ModelIsValid());
  EXPECT_EQ(Context(missing.GetResultOfConstructor()).back(),
            "ZqLinearSmootherOnPredColumnsBase::SetupDataTableFromTrainingSetNamesAndTable");
  const ZqSimilarityRegressionResult refused = missing.GetTrainingSetResults();
  EXPECT_EQ(refused.GetResultOfRegression().GetFailureType(), F::ObjectNotValid);
  EXPECT_EQ(missing.GetTestSetResults("y", {"x", "S"}, Table()).GetResultOfRegression().GetFailureType(),
            F::ObjectNotValid);

  XPlusMeanSimilarity failing("y", {"x", "S"}, Table());
  failing.SetModelParams({1.0});
  const ZqStatModelResult atRow1 = failing.GetTrainingSetResults().GetResultOfRegression();
  EXPECT_EQ(Context(atRow1).front(), "XPlusMeanSimilarity");
  EXPECT_EQ(Context(failing.GetTestSetResults("nothing", {"x", "S"}, Table()).GetResultOfRegression()).back(),
            "ZqLinearSmootherOnPredColumnsBase::GetTestSetResults");
  EXPECT_STREQ(ZqLinearSmootherOnPredColsType::TypeName[1], "Kriging on Vec of Pred Columns");
}

// ------------------------------------------------------------ regression results

ZqDataTable ResultTable() {
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
                                            ResultTable(), {0.25}, {"Bandwidth", "Kernel"}, 1);
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
                                                ResultTable(), {}, {});
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
                                                ResultTable(), {}, {}, 0);
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
                                                ResultTable(), {}, {});
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
