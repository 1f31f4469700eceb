// Universal kriging and its least-squares drift: residual variogram pairs
// against numpy lstsq, predictions and variances against numpy direct
// solves of the bordered system (tests/data/krige/make_drift_local_refs.py),
// the model selection of ZqCreateKrige, and the failures of queries and
// training elements without properties or with a drift that is not finite.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "drift_local_refs.h"
#include "test_support.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Element = std::vector<double>;
using Universal = ZqUniversalKrige<Element>;
using VarimoTest::DriftLocalReferences;
constexpr double kError = -99.0;

std::unique_ptr<Universal> UniversalOnReferences(const ZqPropertyListFxn<Element>& drift = ZqVecPropertyListFxn(3)) {
  auto model = std::make_unique<Universal>(ZqEuclideanDistance(), drift, kError, 0xFFFFFFFFu, false,
                                           ZqKrigeUniqueResponseMethod::Mean);
  const auto& data = DriftLocalReferences();
  for (std::size_t i = 0; i < data.points.size(); ++i)
    EXPECT_TRUE(model->AddTraining(data.points[i], data.responses[i]));
  return model;
}

TEST(LeastSquaresDrift, FitsWithAnInterceptAndTheMinimumNormWhenRankDeficient) {
  // y = 1 + 2 a - 3 b exactly.
  ZqSVD<Element> fit{ZqVecPropertyListFxn(2)};
  EXPECT_FALSE(fit.Train());  // no rows
  EXPECT_EQ(fit.Predict({1.0, 1.0}), std::numeric_limits<double>::max());
  EXPECT_FALSE(fit.AddTraining({1.0}, 0.0));  // wrong size: refused
  for (double a : {0.0, 1.0, 2.5}) {
    for (double b : {-1.0, 0.5}) EXPECT_TRUE(fit.AddTraining({a, b}, 1.0 + 2.0 * a - 3.0 * b));
  }
  const ZqSVD<Element>& constFit = fit;
  EXPECT_NEAR(constFit.Predict({4.0, 2.0}), 3.0, 1e-12);  // trains a temporary copy
  EXPECT_FALSE(fit.IsTrained());
  EXPECT_NEAR(fit.Predict({4.0, 2.0}), 3.0, 1e-12);
  ASSERT_TRUE(fit.IsTrained());
  EXPECT_NEAR(fit.GetCoefficients()(2), 1.0, 1e-12);  // the intercept comes last
  EXPECT_EQ(fit.Predict({4.0}), std::numeric_limits<double>::max());

  // Two equal columns: lstsq's minimum-norm answer splits the coefficient
  // evenly (numpy.linalg.lstsq gives [1, 1, 0] for y = 2 a).
  ZqSVD<Element> twin{ZqVecPropertyListFxn(2)};
  for (double a : {1.0, 2.0, 3.0}) twin.AddTraining({a, a}, 2.0 * a);
  ASSERT_TRUE(twin.Train());
  EXPECT_NEAR(twin.GetCoefficients()(0), 1.0, 1e-12);
  EXPECT_NEAR(twin.GetCoefficients()(1), 1.0, 1e-12);
  EXPECT_NEAR(twin.GetCoefficients()(2), 0.0, 1e-12);
  fit.Clear();
  EXPECT_FALSE(fit.IsTrained());
  EXPECT_FALSE(fit.Train());
}

TEST(UniversalKrige, VariogramPairsAreThoseOfTheDriftResiduals) {
  const auto& data = DriftLocalReferences();
  auto model = UniversalOnReferences();
  std::vector<std::pair<double, double>> pairs;
  ASSERT_TRUE(ZqGetDistAndDiff(pairs, model->GetContainer(), false));
  ASSERT_EQ(pairs.size(), data.residualPairs.size());
  for (std::size_t k = 0; k < pairs.size(); ++k) {
    EXPECT_NEAR(pairs[k].first, data.residualPairs[k].first, 1e-13) << k;
    EXPECT_NEAR(pairs[k].second, data.residualPairs[k].second, 1e-10) << k;
  }
  // The model's variogram is made of them.
  ZqVariogramImpl expected;
  auto sorted = data.residualPairs;
  ASSERT_TRUE(ZqSetupVariogram(expected, sorted, true));
  const ZqVariogram variogram = model->GetVariogram();
  ASSERT_EQ(variogram.GetNumBins(), expected.GetNumBins());
  for (unsigned int b = 0; b < expected.GetNumBins(); ++b) {
    EXPECT_NEAR(variogram.GetSemivariance(b), expected.GetSemivariance(b), 1e-10);
  }
}

TEST(UniversalKrige, PredictionsAndVariancesMatchTheBorderedSolve) {
  const auto& data = DriftLocalReferences();
  auto model = UniversalOnReferences();
  ASSERT_EQ(data.universal.size(), 24u);
  for (const auto& line : data.universal) {
    SCOPED_TRACE(line[1] + " query " + line[5]);
    ASSERT_TRUE(model->TrainFixed(VarimoTest::ReferenceKernel(line[1], line[2], line[3], line[4])));
    const Element& query = data.queries[std::stoul(line[5])];
    EXPECT_TRUE(VarimoTest::WithinRelative(model->Predict(query), VarimoTest::ToDouble(line[6]), 1e-9));
    EXPECT_TRUE(VarimoTest::WithinRelative(model->GetVariance(query), VarimoTest::ToDouble(line[7]), 1e-9));
    EXPECT_TRUE(VarimoTest::WithinRelative(model->PredictMean(query), VarimoTest::ToDouble(line[6]), 1e-9));
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqCalculateFullVariance(model->GetKrigeResult(query), kError),
                                           VarimoTest::ToDouble(line[8]), 1e-9));
  }
  // The weights reproduce the drift: they sum to one.
  const ZqKrigeResult result = model->GetKrigeResult(data.queries[0]);
  ASSERT_TRUE(result.Valid());
  EXPECT_EQ(result.GetNumElements(), 40u);  // 42 records, two copies
  EXPECT_NEAR(ZqSumWeights(result, kError), 1.0, 1e-10);
  EXPECT_EQ(result.GetBaselineResponse(), 0.0);

  // Train() walks the kernels on the residual variogram and ends trained.
  ASSERT_TRUE(model->Train());
  EXPECT_TRUE(std::isfinite(model->Predict(data.queries[1])));
}

// The first coordinate as a drift property, unknown (NaN) or missing for
// some elements.
class FirstCoordinate final : public ZqPropertyListFxn<Element> {
 public:
  bool HasProperties(const Element& e) const override { return !e.empty() && e[0] > -100.0; }
  std::size_t GetSize() const override { return 1; }
  double GetProperty(const Element& e, std::size_t) const override {
    return e[0] > 50.0 ? std::numeric_limits<double>::quiet_NaN() : e[0];
  }
  ZqPropertyListFxn<Element>* CreateCopy() const override { return new FirstCoordinate(*this); }
};

TEST(UniversalKrige, ElementsWithoutFiniteDriftAreRefusedAndSuchQueriesInvalid) {
  using Corvane::ZqThrowLevel;
  Corvane::ZqScopedThrowCapture capture;
  auto model = UniversalOnReferences(FirstCoordinate());
  EXPECT_FALSE(model->AddTraining({-200.0, 0.0, 0.0}, 1.0));  // no properties: refused quietly
  EXPECT_TRUE(capture.Messages().empty());
  // A drift that reads NaN (an SD field "nan") is refused with a warning,
  // before it can make the drift fit and every solve NaN.
  EXPECT_FALSE(model->AddTraining({60.0, 0.0, 0.0}, 1.0));
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            std::vector<std::string>{
                "ZqKrigeTrainingContainer::AddElement, drift property 0 is not finite (nan): the training element is "
                "refused"});
  EXPECT_EQ(model->GetContainer().GetNumData(), 42u);
  ASSERT_TRUE(model->TrainFixed(VarimoTest::ReferenceKernel("Spherical", "4.0", "5.0", "0.02")));
  // Queries without the properties, or with a NaN drift, are invalid at
  // once and quietly; the training stays.
  capture.Clear();
  for (const Element& query : {Element{-200.0, 1.0, 1.0}, Element{60.0, 1.0, 1.0}}) {
    EXPECT_FALSE(model->GetKrigeResult(query).Valid());
    EXPECT_EQ(model->Predict(query), kError);
    EXPECT_EQ(model->PredictMean(query), kError);
  }
  EXPECT_TRUE(model->IsTrained());
  EXPECT_TRUE(capture.Messages().empty());

  // The local model refuses the same element and stays as it was.
  ZqLocalUniversalKrige<Element> local(ZqEuclideanDistance(), FirstCoordinate(), 10, kError, 0u, false, false, 1000,
                                       ZqKrigeUniqueResponseMethod::Mean);
  const auto& data = DriftLocalReferences();
  for (std::size_t i = 0; i < data.points.size(); ++i) {
    ASSERT_TRUE(local.AddTraining(data.points[i], data.responses[i]));
  }
  ASSERT_TRUE(local.Train());
  EXPECT_FALSE(local.AddTraining({70.0, 0.0, 0.0}, 1.0));
  EXPECT_TRUE(local.IsTrained());
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning).back(),
            "ZqLocalKrigeImpl::AddTraining, drift property 0 is not finite (nan): the training element is refused");

  // The least-squares drift itself refuses to fit what is not finite.
  ZqSVD<Element> fit{ZqVecPropertyListFxn(1)};
  for (const double a : {1.0, 2.0, std::numeric_limits<double>::infinity()}) ASSERT_TRUE(fit.AddTraining({a}, a));
  EXPECT_FALSE(fit.Train());
  EXPECT_EQ(fit.Predict({1.0}), std::numeric_limits<double>::max());

  capture.Clear();
  Universal empty(ZqEuclideanDistance(), FirstCoordinate(), kError, 0u, false, ZqKrigeUniqueResponseMethod::Mean);
  EXPECT_FALSE(empty.TrainFixed(VarimoTest::ReferenceKernel("Spherical", "4.0", "5.0", "0.02")));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{
                "ZqUniversalKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data"});
}

// The second coordinate as the drift: 1 on every training element, so that
// it is collinear with the drift's constant term.
class SecondCoordinate final : public ZqPropertyListFxn<Element> {
 public:
  bool HasProperties(const Element& e) const override { return e.size() == 2; }
  std::size_t GetSize() const override { return 1; }
  double GetProperty(const Element& e, std::size_t) const override { return e[1]; }
  ZqPropertyListFxn<Element>* CreateCopy() const override { return new SecondCoordinate(*this); }
};

TEST(UniversalKrige, CollinearDriftsSolveWhereConsistentAndSquareOnesLeaveNoResiduals) {
  Universal model(ZqEuclideanDistance(), SecondCoordinate(), kError, 0u, false, ZqKrigeUniqueResponseMethod::Mean);
  for (const double x : {0.0, 1.0, 2.5, 4.0}) model.AddTraining({x, 1.0}, std::sin(x));
  ASSERT_TRUE(model.TrainFixed(VarimoTest::ReferenceKernel("Exponential", "3.0", "1.0", "0.0")));
  Corvane::ZqScopedThrowCapture capture;
  // A query with the training drift: the singular system is consistent.
  const ZqKrigeResult consistent = model.GetKrigeResult({1.7, 1.0});
  ASSERT_TRUE(consistent.Valid());
  EXPECT_NEAR(ZqSumWeights(consistent, kError), 1.0, 1e-12);
  EXPECT_TRUE(capture.Messages().empty());
  // A drift of 2 asks for weights that sum to 1 and to 2 at once.
  EXPECT_FALSE(model.GetKrigeResult({1.7, 2.0}).Valid());
  const std::vector<std::string> warnings = capture.Texts(Corvane::ZqThrowLevel::Warning);
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].rfind("Universal kriging failed, the weights miss the drift constraints (residual ", 0), 0u)
      << warnings[0];

  // As many records as drift columns leave no residuals.
  Universal square(ZqEuclideanDistance(), ZqVecPropertyListFxn(3), kError, 0u, false,
                   ZqKrigeUniqueResponseMethod::Mean);
  const std::vector<Element> corners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (std::size_t i = 0; i < corners.size(); ++i) square.AddTraining(corners[i], std::sin(1.0 + i));
  std::vector<std::pair<double, double>> pairs;
  ASSERT_TRUE(ZqGetDistAndDiff(pairs, square.GetContainer(), false));
  ASSERT_EQ(pairs.size(), 6u);
  for (const auto& pair : pairs) EXPECT_NEAR(pair.second, 0.0, 1e-12);
  const ZqVariogram variogram = square.GetVariogram();
  for (unsigned int b = 0; b < variogram.GetNumBins(); ++b) EXPECT_LT(variogram.GetSemivariance(b), 1e-24);
}

template <class Model, class Made>
bool Is(const Made& made) {
  return dynamic_cast<const Model*>(made.get()) != nullptr;
}

TEST(CreateKrige, PicksTheModelOfTheOptions) {
  const ZqEuclideanDistance distance;
  ZqKrigeOptions global{ZqGlobalKrigeOptions()};
  ZqKrigeOptions local{ZqLocalKrigeOptions().SetNumLocal(7).SetPredictTraining(true).SetMaxVariogramSize(99)};
  EXPECT_TRUE(Is<ZqOrdinaryKrige<Element>>(ZqCreateKrige<Element>(distance, global, false)));
  EXPECT_TRUE(Is<ZqSimpleKrige<Element>>(ZqCreateKrige<Element>(distance, global, true)));
  EXPECT_TRUE(Is<ZqLocalOrdinaryKrige<Element>>(ZqCreateKrige<Element>(distance, local, false)));
  EXPECT_TRUE(Is<ZqLocalSimpleKrige<Element>>(ZqCreateKrige<Element>(distance, local, true)));
  const ZqVecPropertyListFxn drift(2), none(0);
  EXPECT_TRUE(Is<Universal>(ZqCreateKrige<Element>(distance, drift, global)));
  EXPECT_TRUE(Is<ZqLocalUniversalKrige<Element>>(ZqCreateKrige<Element>(distance, drift, local)));
  // No properties: nothing to drift on, an ordinary model.
  EXPECT_TRUE(Is<ZqOrdinaryKrige<Element>>(ZqCreateKrige<Element>(distance, none, global)));
  EXPECT_TRUE(Is<ZqLocalOrdinaryKrige<Element>>(ZqCreateKrige<Element>(distance, none, local)));

  auto model = ZqCreateKrige<Element>(distance, local, false);
  const auto& localModel = dynamic_cast<const ZqLocalOrdinaryKrige<Element>&>(*model);
  EXPECT_EQ(localModel.GetNumLocal(), 7u);
  EXPECT_TRUE(localModel.GetPredictTraining());
  EXPECT_EQ(localModel.GetMaxVariogramSize(), 99u);
}

}  // namespace
}  // namespace Varimo
