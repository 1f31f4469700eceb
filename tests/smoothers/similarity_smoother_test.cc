// Kernel regression on a similarity matrix against a direct numpy
// evaluation, the grid search of its parameter
// (tests/data/smoothers/make_similarity_refs.py), and the failures.
#include "varimo/smoothers/similarity_smoother.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/predict_by_gen_sim.h"
#include "varimo/tables/derived_columns.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqLinearSmootherOnSimilarityType;

struct Refs {
  std::vector<double> packed, y;
  std::vector<std::vector<double>> train;
  double bestParam = 0.0, bestError = 0.0;
};

Refs ReadRefs() {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("smoothers/similarity_refs.txt")) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 1);
    if (line[0] == "sim") refs.packed = v;
    if (line[0] == "y") refs.y = v;
    if (line[0] == "train") refs.train.push_back(v);
    if (line[0] == "best") refs.bestParam = v[0], refs.bestError = v[1];
  }
  return refs;
}

ZqDataTable Table(const Refs& refs) {
  ZqDataTable table("items");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("sim", refs.packed, refs.y.size(), true)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", refs.y)).IsSuccessful());
  return table;
}

ZqDataTable Rows(const ZqDataTable& table, std::uint64_t first, std::uint64_t last) {
  std::vector<ZqDataTableRow> rows;
  for (std::uint64_t r = first; r <= last; ++r) rows.emplace_back(r);
  return ZqDataTable(table.GetTableName(), table, ZqDataTableRowSet(rows));
}

TEST(SimilaritySmoother, KernelRegressionAgreesWithNumpy) {
  const Refs refs = ReadRefs();
  ZqLinearSmootherOnSimilarity smoother(T::KernelRegression, ZqSimilarityKernelType::Gaussian, "sim", "y",
                                        Table(refs));
  EXPECT_EQ(smoother.GetModelParamNames(), std::vector<std::string>{"Kernel parameter for Gaussian"});
  double predicted, weight, error;
  const ZqDataTableCol column = ZqSliceColumn(Table(refs).GetColumnFromName("sim"), 0);
  EXPECT_EQ(VarimoTest::Comments(smoother.GetPredictedResponse(predicted, weight, error, column)),
            std::vector<std::string>{"Model Parameter vector is empty!"});
  for (const std::vector<double>& t : refs.train) {
    ASSERT_TRUE(smoother.SetModelParams({t[0]}).IsSuccessful());
    const auto row = static_cast<std::uint64_t>(t[1]);
    const ZqDataTableCol own = ZqSliceColumn(Table(refs).GetColumnFromName("sim"), row);
    ASSERT_TRUE(smoother.GetPredictedResponse(predicted, weight, error, own).IsSuccessful());
    EXPECT_NEAR(predicted, t[2], 1e-12);
    EXPECT_NEAR(weight, t[3], 1e-12);
    EXPECT_NEAR(error, t[4], 1e-10);
    const ZqSimilarityRegressionResult fit = smoother.GetTrainingSetResults();
    ZqStatModelResult status(true);
    EXPECT_NEAR(fit.GetColumnFromName(status, "PredictedResponses").GetDouble(row, 0), t[2], 1e-12);
    EXPECT_NEAR(fit.GetColumnFromName(status, "ResidualErrors").GetDouble(row, 0), t[2] - refs.y[row], 1e-12);
  }
  EXPECT_EQ(smoother.SetModelParams({}).GetFailureType(), F::WrongInputVectorSize);
}

TEST(SimilaritySmoother, GridSearchFindsNumpysBestParameter) {
  const Refs refs = ReadRefs();
  const ZqDataTable table = Table(refs);
  double bestError, bestParam;
  ASSERT_TRUE(OptimizePredResponseOverSimilarityKernelParams(
                  bestError, bestParam, ZqSimilarityKernelType::Gaussian,
                  ZqPredictiveFitMeasureType::RootMeanSquaredDeviation, 1.0, 10.0, 10, "sim", "y", Rows(table, 0, 6),
                  Rows(table, 7, 9))
                  .IsSuccessful());
  EXPECT_EQ(bestParam, refs.bestParam);
  EXPECT_NEAR(bestError, refs.bestError, 1e-12);
  const ZqStatModelResult empty = OptimizePredResponseOverSimilarityKernelParams(
      bestError, bestParam, 1, 2, 1.0, 2.0, 0, "sim", "y", Rows(table, 0, 6), Rows(table, 7, 9));
  EXPECT_EQ(empty.GetFailureType(), F::EmptyStatModel);
  EXPECT_EQ(bestParam, VarimoBadData::BadDouble);
  EXPECT_EQ(ZqGetPredictiveFitMeasureName(2), "RootMeanSquaredDeviation");
  EXPECT_EQ(ZqGetPredictiveFitMeasureType("AverageAbsoluteDeviation"), 1u);
  double fitError;
  ASSERT_TRUE(GetResponseFitError(fitError, {1.0, 2.0}, {2.0, 4.0}, 1).IsSuccessful());
  EXPECT_EQ(fitError, 1.5);
  EXPECT_FALSE(GetResponseFitError(fitError, {}, {}, 1).IsSuccessful());
}

TEST(SimilaritySmoother, FailuresOfTablesAndSimilarities) {
  const Refs refs = ReadRefs();
  // A predictor that is not a symmetric matrix.
  const ZqLinearSmootherOnSimilarity flat(T::KernelRegression, 1, "y", "y", Table(refs));
  EXPECT_FALSE(flat.ModelIsValid());
  EXPECT_EQ(VarimoTest::Comments(flat.GetResultOfConstructor()),
            std::vector<std::string>{"Predictor column y Is not a symmetric matrix"});
  EXPECT_EQ(flat.GetTestSetResults("y", Table(refs)).GetResultOfRegression().GetFailureType(), F::ObjectNotValid);
  // A similarity above one.
  ZqLinearSmootherOnSimilarity smoother(T::KernelRegression, 1, "sim", "y", Table(refs));
  ASSERT_TRUE(smoother.SetModelParams({2.0}).IsSuccessful());
  std::vector<double> high(refs.y.size(), 0.5);
  high[3] = 1.0000000001;
  double predicted, weight, error;
  const ZqStatModelResult refused = smoother.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", high));
  EXPECT_EQ(refused.GetFailureType(), F::ArgumentOutOfRange);
  EXPECT_EQ(VarimoTest::Comments(refused), std::vector<std::string>{"At row num (3); sim value = 1"});
  high[3] = 1.0;
  EXPECT_TRUE(smoother.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", high)).IsSuccessful());
  // Neither a NaN similarity nor a NaN training response reaches the sums.
  high[3] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(VarimoTest::Comments(smoother.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", high))),
            std::vector<std::string>{"At row num (3); sim value = nan"});
  high[3] = 1.0;
  Refs nanResponse = refs;
  nanResponse.y[6] = std::numeric_limits<double>::quiet_NaN();
  ZqLinearSmootherOnSimilarity nanSmoother(T::KernelRegression, 1, "sim", "y", Table(nanResponse));
  ASSERT_TRUE(nanSmoother.SetModelParams({2.0}).IsSuccessful());
  EXPECT_EQ(VarimoTest::Comments(nanSmoother.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", high))),
            std::vector<std::string>{"At row num 6, response column value = nan"});
  // With all kernel values 0 the plain mean, each weight the floor.
  ZqLinearSmootherOnSimilarity box(T::KernelRegression, ZqSimilarityKernelType::BoxCar, "sim", "y", Table(refs));
  ASSERT_TRUE(box.SetModelParams({100.0}).IsSuccessful());
  ASSERT_TRUE(box.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", std::vector<double>(10, 0.5)))
                  .IsSuccessful());
  double mean = 0.0;
  for (const double v : refs.y) mean += v / 10.0;
  EXPECT_NEAR(predicted, mean, 1e-12);
  EXPECT_EQ(weight, 1.1920928955078125e-7);
  EXPECT_EQ(ZqGetLinearSmootherOnSimilarityType("GaussianProcess"), 2u);
}

}  // namespace
}  // namespace Varimo
