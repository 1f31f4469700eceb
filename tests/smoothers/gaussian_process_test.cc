// Smoothers on a similarity matrix against numpy, scipy and scikit-learn.
// The Gaussian process and the krige (tests/data/smoothers/make_gp_refs.py):
// the variances the search finds, the maximum of the profile likelihood,
// predictions and errors. Kernel regression, against a direct numpy
// evaluation, and the grid search of its parameter
// (tests/data/smoothers/make_similarity_refs.py). And their failures.
#include "varimo/smoothers/gaussian_process.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/predict_by_gen_sim.h"
#include "varimo/smoothers/similarity_smoother.h"
#include "varimo/tables/derived_columns.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqLinearSmootherOnSimilarityType;
constexpr unsigned int kGaussian = ZqSimilarityKernelType::Gaussian;

// A reference file: the packed similarity matrix, the responses, the
// similarity columns of new items, and the other lines by their key.
struct Refs {
  std::vector<double> packed, y;
  std::vector<std::vector<double>> news;
  std::map<std::string, std::vector<std::vector<double>>> rows;
};

Refs ReadRefs(const std::string& file = "smoothers/gp_refs.txt") {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines(file)) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 1);
    if (line[0] == "sim") refs.packed = v;
    else if (line[0] == "y") refs.y = v;
    else if (line[0] == "new") refs.news.push_back(std::vector<double>(v.begin() + 1, v.end()));
    else refs.rows[line[0]].push_back(v);
  }
  return refs;
}

ZqDataTable Table(const Refs& refs) {
  ZqDataTable table("items");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("sim", refs.packed, refs.y.size(), true)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", refs.y)).IsSuccessful());
  return table;
}

// The three models on the table of `refs`, and their fits with the
// parameters that the references use.
struct ThreeModels {
  explicit ThreeModels(const Refs& refs)
      : gp(kGaussian, "sim", "y", Table(refs)),
        simple(kGaussian, "sim", "y", Table(refs)),
        ordinary(kGaussian, "sim", "y", Table(refs)) {}
  std::vector<ZqStatModelResult> Fit() {
    return {gp.SetModelParams({2.0}), simple.SetModelParams({2.0, 0.1, 1.5}), ordinary.SetModelParams({2.0, 0.1, 1.5})};
  }
  ZqGaussianProcessOnSimilarity gp;
  ZqKrigeOnSimilarity simple;
  ZqOrdinaryKrigeOnSimilarity ordinary;
};

TEST(GaussianProcessOnSimilarity, VariancesAndPredictionsAgreeWithScipyAndScikitLearn) {
  const Refs refs = ReadRefs();
  ZqGaussianProcessOnSimilarity gp(kGaussian, "sim", "y", Table(refs));
  ASSERT_TRUE(gp.SetModelParams({2.0}).IsSuccessful());
  const std::vector<double>& variances = refs.rows.at("gp")[0];
  EXPECT_NEAR(gp.GetSignalVariance(), variances[0], 1e-12 * variances[0]);
  EXPECT_NEAR(gp.GetNoiseVariance(), variances[1], 1e-12 * variances[1]);
  // The search's noise ratio lies within its resolution of the likelihood's
  // maximum, as scipy's minimiser finds it on the same objective.
  EXPECT_NEAR(gp.GetNoiseVariance() / gp.GetSignalVariance(), variances[2], 0.001);
  for (const std::vector<double>& p : refs.rows.at("gppred")) {
    const auto k = static_cast<std::size_t>(p[0]);
    double predicted, weight, error;
    ASSERT_TRUE(gp.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[k])).IsSuccessful());
    EXPECT_NEAR(predicted, p[1], 1e-8 * std::fabs(p[1]));
    EXPECT_NEAR(error, p[2], 1e-8 * p[2]);
  }
  // A training similarity of a hair above 1 fits; in a prediction it fails.
  std::vector<double> high = refs.news[0];
  high[2] = 1.0000000000000011;
  double predicted, weight, error;
  const ZqStatModelResult refused = gp.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", high));
  EXPECT_EQ(refused.GetFailureType(), F::MissingOrBadPredictorValue);
  EXPECT_EQ(predicted, VarimoBadData::BadDouble);

  // Many items at once, more than one block of them with the refused item
  // last but one: item by item's numbers up to it, its refusal, then
  // nothing. The batch takes the items through one matrix product, so the
  // sums run in another order.
  std::vector<ZqDataTableCol> items;
  for (std::size_t q = 0; q < 300; ++q) items.emplace_back("s", refs.news[q % refs.news.size()]);
  items.emplace_back("s", high);
  items.emplace_back("s", refs.news[0]);
  std::vector<double> predictions, weights, errors;
  EXPECT_EQ(VarimoTest::Report(gp.GetPredictedResponses(predictions, weights, errors, items)),
            VarimoTest::Report(refused));
  ASSERT_EQ(predictions.size(), items.size());
  for (std::size_t q = 0; q < 300; ++q) {
    ASSERT_TRUE(gp.GetPredictedResponse(predicted, weight, error, items[q]).IsSuccessful());
    EXPECT_NEAR(predictions[q], predicted, 1e-12 * std::fabs(predicted)) << q;
    EXPECT_EQ(weights[q], weight) << q;
    EXPECT_NEAR(errors[q], error, 1e-12 * error) << q;
  }
  for (std::size_t q = 300; q < items.size(); ++q) {
    EXPECT_EQ(predictions[q], VarimoBadData::BadDouble);
    EXPECT_EQ(weights[q], VarimoBadData::BadDouble);
    EXPECT_EQ(errors[q], VarimoBadData::BadDouble);
  }
}

TEST(KrigeOnSimilarity, SimpleAndOrdinaryAgreeWithNumpy) {
  const Refs refs = ReadRefs();
  ThreeModels models(refs);
  ZqKrigeOnSimilarity& simple = models.simple;
  ZqOrdinaryKrigeOnSimilarity& ordinary = models.ordinary;
  EXPECT_EQ(simple.GetModelParamNames(), (std::vector<std::string>{"Kernel parameter for Gaussian", "nugget", "sill"}));
  for (const ZqStatModelResult& fit : models.Fit()) ASSERT_TRUE(fit.IsSuccessful());
  for (std::size_t k = 0; k < refs.news.size(); ++k) {
    double predicted, weight, error;
    ASSERT_TRUE(simple.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[k])).IsSuccessful());
    EXPECT_NEAR(predicted, refs.rows.at("sk")[k][1], 1e-10);
    EXPECT_NEAR(error, refs.rows.at("sk")[k][2], 1e-10);
    ASSERT_TRUE(
        ordinary.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[k])).IsSuccessful());
    EXPECT_NEAR(predicted, refs.rows.at("ok")[k][1], 1e-10);
    EXPECT_EQ(error, VarimoBadData::BadDouble);  // the ordinary krige gives no error
  }
  // Nugget equal to sill: a diagonal covariance, the mean and sqrt(sill).
  ASSERT_TRUE(simple.SetModelParams({2.0, 1.5, 1.5}).IsSuccessful());
  double predicted, weight, error;
  ASSERT_TRUE(simple.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[1])).IsSuccessful());
  double mean = 0.0;
  for (const double v : refs.y) mean += v / static_cast<double>(refs.y.size());
  EXPECT_NEAR(predicted, mean, 1e-12);
  EXPECT_NEAR(error, std::sqrt(1.5), 1e-12);
}

TEST(KrigeOnSimilarity, FailuresLeaveTheModelInvalid) {
  const Refs refs = ReadRefs();
  ZqKrigeOnSimilarity krige(kGaussian, "sim", "y", Table(refs));
  const ZqStatModelResult above = krige.SetModelParams({2.0, 2.0, 1.0});
  EXPECT_EQ(VarimoTest::Comments(above), std::vector<std::string>{"nugget (2); greater than sill (1)"});
  EXPECT_EQ(VarimoTest::Comments(krige.SetModelParams({2.0})),
            std::vector<std::string>{"size input params = 1\nsize required = 3"});
  // Two identical rows without a nugget: not positive definite.
  ZqDataTable twins("twins");
  ASSERT_TRUE(twins.AddColumn(ZqDataTableCol("sim", std::vector<double>{1, 1, 1, 0.5, 0.5, 1}, 3, true)).IsSuccessful());
  ASSERT_TRUE(twins.AddColumn(ZqDataTableCol("y", std::vector<double>{1.0, 1.0, 2.0})).IsSuccessful());
  ZqKrigeOnSimilarity singular(ZqSimilarityKernelType::Exponential, "sim", "y", twins);
  const ZqStatModelResult failed = singular.SetModelParams({1.0, 0.0, 1.0});
  EXPECT_EQ(failed.GetFailureType(), F::SingularScaleOrCovariance);
  EXPECT_EQ(VarimoTest::Comments(failed), std::vector<std::string>{"eigen ldlt.info() reports a numerical issue"});
  EXPECT_FALSE(singular.ModelIsValid());
  EXPECT_TRUE(singular.SetModelParams({1.0, 0.2, 1.0}).IsSuccessful());
  EXPECT_TRUE(singular.ModelIsValid());

  const ZqGaussianProcessOnSimilarity nullKernel(0, "sim", "y", Table(refs));
  EXPECT_EQ(VarimoTest::Comments(nullKernel.GetResultOfConstructor()),
            std::vector<std::string>{"Null similarity kernel Function constructed"});
  ZqGaussianProcessOnSimilarity gp(kGaussian, "sim", "y", Table(refs));
  double predicted, weight, error;
  EXPECT_EQ(VarimoTest::Comments(gp.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[0]))),
            std::vector<std::string>{"Model Parameter vector is empty!"});
  ASSERT_TRUE(gp.SetModelParams({2.0}).IsSuccessful());
  const ZqStatModelResult wide = gp.GetPredictedResponse(predicted, weight, error,
                                                         ZqDataTableCol("s", refs.packed, refs.y.size(), true));
  EXPECT_EQ(VarimoTest::Comments(wide),
            (std::vector<std::string>{"Procedure expects an array with only one column; ", "argument has 12 cols"}));
  EXPECT_EQ(ZqLinearSmootherOnSimilarity(ZqLinearSmootherOnSimilarityType::GaussianProcess, kGaussian, "sim", "y",
                                         Table(refs))
                .GetTypeOfLinearSmootherOnSimilarity(),
            ZqLinearSmootherOnSimilarityType::GaussianProcess);
}

// A similarity that is not a number passes neither bound test as written;
// it must be refused like one out of range, not spread through the fit.
TEST(SimilarityModels, RefuseSimilaritiesThatAreNotNumbers) {
  Refs refs = ReadRefs();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<double> query = refs.news[0];
  query[4] = nan;
  ThreeModels models(refs);
  for (const ZqStatModelResult& fit : models.Fit()) ASSERT_TRUE(fit.IsSuccessful());
  double predicted, weight, error;
  for (const ZqLinearSmootherOnSimilarityBase* model :
       std::vector<const ZqLinearSmootherOnSimilarityBase*>{&models.gp, &models.simple, &models.ordinary}) {
    const ZqStatModelResult refused = model->GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", query));
    ASSERT_EQ(refused.GetFailureType(), F::MissingOrBadPredictorValue);
    EXPECT_EQ(VarimoTest::Comments(refused).back(), "at row (4) similarity value = nan");
  }

  refs.packed[7] = nan;  // row 3, element 1
  for (const ZqStatModelResult& fit : ThreeModels(refs).Fit()) {
    ASSERT_EQ(fit.GetFailureType(), F::MissingOrBadPredictorValue);
    EXPECT_EQ(VarimoTest::Comments(fit).back(), "at row, column (1,3), similarity value = nan");
  }

  // A response that is not a number fails the fit as a bad one does.
  Refs nanResponse = ReadRefs();
  nanResponse.y[5] = nan;
  for (const ZqStatModelResult& fit : ThreeModels(nanResponse).Fit()) {
    ASSERT_EQ(fit.GetFailureType(), F::MissingOrBadResponseValue);
    EXPECT_EQ(VarimoTest::Comments(fit).back(), "at row number(5), response value = nan");
  }
}

// ------------------------------------------------------------ kernel regression

ZqDataTable Rows(const ZqDataTable& table, std::uint64_t first, std::uint64_t last) {
  std::vector<ZqDataTableRow> rows;
  for (std::uint64_t r = first; r <= last; ++r) rows.emplace_back(r);
  return ZqDataTable(table.GetTableName(), table, ZqDataTableRowSet(rows));
}

TEST(SimilaritySmoother, KernelRegressionAgreesWithNumpy) {
  const Refs refs = ReadRefs("smoothers/similarity_refs.txt");
  ZqLinearSmootherOnSimilarity smoother(T::KernelRegression, ZqSimilarityKernelType::Gaussian, "sim", "y",
                                        Table(refs));
  EXPECT_EQ(smoother.GetModelParamNames(), std::vector<std::string>{"Kernel parameter for Gaussian"});
  double predicted, weight, error;
  const ZqDataTableCol column = ZqSliceColumn(Table(refs).GetColumnFromName("sim"), 0);
  EXPECT_EQ(VarimoTest::Comments(smoother.GetPredictedResponse(predicted, weight, error, column)),
            std::vector<std::string>{"Model Parameter vector is empty!"});
  for (const std::vector<double>& t : refs.rows.at("train")) {
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
  const Refs refs = ReadRefs("smoothers/similarity_refs.txt");
  const ZqDataTable table = Table(refs);
  double bestError, bestParam;
  ASSERT_TRUE(OptimizePredResponseOverSimilarityKernelParams(
                  bestError, bestParam, ZqSimilarityKernelType::Gaussian,
                  ZqPredictiveFitMeasureType::RootMeanSquaredDeviation, 1.0, 10.0, 10, "sim", "y", Rows(table, 0, 6),
                  Rows(table, 7, 9))
                  .IsSuccessful());
  EXPECT_EQ(bestParam, refs.rows.at("best")[0][0]);
  EXPECT_NEAR(bestError, refs.rows.at("best")[0][1], 1e-12);
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
  const Refs refs = ReadRefs("smoothers/similarity_refs.txt");
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
