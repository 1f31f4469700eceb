// The base of smoothers on several predictor columns, through a smoother
// defined here: the prediction of a row is its x plus the mean of its
// similarities, so every result column has a value worked out by hand.
#include "varimo/smoothers/pred_columns_smoother.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using VarimoTest::Comments;
using VarimoTest::Context;

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

std::vector<double> Column(const ZqSimilarityRegressionResult& fit, const std::string& name) {
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

}  // namespace
}  // namespace Varimo
