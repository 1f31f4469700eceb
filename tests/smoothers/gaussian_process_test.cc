// The Gaussian process and the krige on a similarity matrix against numpy,
// scipy and scikit-learn (tests/data/smoothers/make_gp_refs.py): the
// variances the search finds, the maximum of the profile likelihood,
// predictions and errors; and their failures.
#include "varimo/smoothers/gaussian_process.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
constexpr unsigned int kGaussian = ZqSimilarityKernelType::Gaussian;

struct Refs {
  std::vector<double> packed, y, gp;
  std::vector<std::vector<double>> news;
  std::map<std::string, std::vector<std::vector<double>>> predictions;
};

Refs ReadRefs() {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("smoothers/gp_refs.txt")) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 1);
    if (line[0] == "sim") refs.packed = v;
    else if (line[0] == "y") refs.y = v;
    else if (line[0] == "gp") refs.gp = v;
    else if (line[0] == "new") refs.news.push_back(std::vector<double>(v.begin() + 1, v.end()));
    else refs.predictions[line[0]].push_back(v);
  }
  return refs;
}

ZqDataTable Table(const Refs& refs) {
  ZqDataTable table("items");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("sim", refs.packed, refs.y.size(), true)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", refs.y)).IsSuccessful());
  return table;
}

TEST(GaussianProcessOnSimilarity, VariancesAndPredictionsAgreeWithScipyAndScikitLearn) {
  const Refs refs = ReadRefs();
  ZqGaussianProcessOnSimilarity gp(kGaussian, "sim", "y", Table(refs));
  ASSERT_TRUE(gp.SetModelParams({2.0}).IsSuccessful());
  EXPECT_NEAR(gp.GetSignalVariance(), refs.gp[0], 1e-12 * refs.gp[0]);
  EXPECT_NEAR(gp.GetNoiseVariance(), refs.gp[1], 1e-12 * refs.gp[1]);
  // The search's noise ratio lies within its resolution of the likelihood's
  // maximum, as scipy's minimiser finds it on the same objective.
  EXPECT_NEAR(gp.GetNoiseVariance() / gp.GetSignalVariance(), refs.gp[2], 0.001);
  for (const std::vector<double>& p : refs.predictions.at("gppred")) {
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
  ZqKrigeOnSimilarity simple(kGaussian, "sim", "y", Table(refs));
  ZqOrdinaryKrigeOnSimilarity ordinary(kGaussian, "sim", "y", Table(refs));
  EXPECT_EQ(simple.GetModelParamNames(), (std::vector<std::string>{"Kernel parameter for Gaussian", "nugget", "sill"}));
  ASSERT_TRUE(simple.SetModelParams({2.0, 0.1, 1.5}).IsSuccessful());
  ASSERT_TRUE(ordinary.SetModelParams({2.0, 0.1, 1.5}).IsSuccessful());
  for (std::size_t k = 0; k < refs.news.size(); ++k) {
    double predicted, weight, error;
    ASSERT_TRUE(simple.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[k])).IsSuccessful());
    EXPECT_NEAR(predicted, refs.predictions.at("sk")[k][1], 1e-10);
    EXPECT_NEAR(error, refs.predictions.at("sk")[k][2], 1e-10);
    ASSERT_TRUE(
        ordinary.GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", refs.news[k])).IsSuccessful());
    EXPECT_NEAR(predicted, refs.predictions.at("ok")[k][1], 1e-10);
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
  ZqGaussianProcessOnSimilarity gp(kGaussian, "sim", "y", Table(refs));
  ZqKrigeOnSimilarity simple(kGaussian, "sim", "y", Table(refs));
  ZqOrdinaryKrigeOnSimilarity ordinary(kGaussian, "sim", "y", Table(refs));
  ASSERT_TRUE(gp.SetModelParams({2.0}).IsSuccessful());
  ASSERT_TRUE(simple.SetModelParams({2.0, 0.1, 1.5}).IsSuccessful());
  ASSERT_TRUE(ordinary.SetModelParams({2.0, 0.1, 1.5}).IsSuccessful());
  double predicted, weight, error;
  for (const ZqLinearSmootherOnSimilarityBase* model :
       std::vector<const ZqLinearSmootherOnSimilarityBase*>{&gp, &simple, &ordinary}) {
    const ZqStatModelResult refused = model->GetPredictedResponse(predicted, weight, error, ZqDataTableCol("s", query));
    ASSERT_EQ(refused.GetFailureType(), F::MissingOrBadPredictorValue);
    EXPECT_EQ(VarimoTest::Comments(refused).back(), "at row (4) similarity value = nan");
  }

  refs.packed[7] = nan;  // row 3, element 1
  ZqGaussianProcessOnSimilarity badGp(kGaussian, "sim", "y", Table(refs));
  ZqKrigeOnSimilarity badSimple(kGaussian, "sim", "y", Table(refs));
  ZqOrdinaryKrigeOnSimilarity badOrdinary(kGaussian, "sim", "y", Table(refs));
  for (const ZqStatModelResult& fit : {badGp.SetModelParams({2.0}), badSimple.SetModelParams({2.0, 0.1, 1.5}),
                                       badOrdinary.SetModelParams({2.0, 0.1, 1.5})}) {
    ASSERT_EQ(fit.GetFailureType(), F::MissingOrBadPredictorValue);
    EXPECT_EQ(VarimoTest::Comments(fit).back(), "at row, column (1,3), similarity value = nan");
  }

  // A response that is not a number fails the fit as a bad one does.
  Refs nanResponse = ReadRefs();
  nanResponse.y[5] = nan;
  ZqGaussianProcessOnSimilarity nanGp(kGaussian, "sim", "y", Table(nanResponse));
  ZqKrigeOnSimilarity nanSimple(kGaussian, "sim", "y", Table(nanResponse));
  for (const ZqStatModelResult& fit : {nanGp.SetModelParams({2.0}), nanSimple.SetModelParams({2.0, 0.1, 1.5})}) {
    ASSERT_EQ(fit.GetFailureType(), F::MissingOrBadResponseValue);
    EXPECT_EQ(VarimoTest::Comments(fit).back(), "at row number(5), response value = nan");
  }
}

}  // namespace
}  // namespace Varimo
