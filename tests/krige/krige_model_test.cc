// Simple and ordinary kriging: predictions and variances against numpy
// direct solves of the kriging systems (tests/data/krige/make_kriging_refs.py),
// the kernel walk of Train(), every warning, and degenerate training sets.
#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "drift_local_refs.h"
#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/condition_estimate.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Element = std::vector<double>;
using Simple = ZqSimpleKrige<Element>;
using Ordinary = ZqOrdinaryKrige<Element>;
using Standard = ZqStandardKrigeImpl<Element, ZqVectorStorage>;
using Corvane::ZqThrowLevel;
using VarimoTest::NamedKernel;
constexpr double kError = -99.0;
constexpr unsigned int kMissing = 0xFFFFFFFF;

template <class Model>
std::unique_ptr<Model> MakeModel(const ZqKrigeDistanceFxn<Element>& distance = ZqEuclideanDistance()) {
  return std::make_unique<Model>(distance, kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
}

struct ReferenceData {
  std::vector<Element> points, queries;
  std::vector<double> responses;
  std::vector<std::vector<std::string>> expectations;
};

const ReferenceData& References() {
  static const ReferenceData data = [] {
    ReferenceData d;
    for (const auto& line : VarimoTest::ReadReferenceLines("krige/kriging_refs.txt")) {
      if (line[0] == "train") {
        d.points.push_back(VarimoTest::ToDoubles({line.begin() + 1, line.begin() + 4}, 0));
        d.responses.push_back(VarimoTest::ToDouble(line[4]));
      } else if (line[0] == "query") {
        d.queries.push_back(VarimoTest::ToDoubles(line, 1));
      } else {
        d.expectations.push_back(line);
      }
    }
    return d;
  }();
  return data;
}

template <class Model>
std::unique_ptr<Model> TrainedOnReferences() {
  auto model = MakeModel<Model>();
  const ReferenceData& data = References();
  for (std::size_t i = 0; i < data.points.size(); ++i)
    EXPECT_TRUE(model->AddTraining(data.points[i], data.responses[i]));
  return model;
}

TEST(KrigeModels, PredictionsAndVariancesMatchDirectSolves) {
  const ReferenceData& data = References();
  ASSERT_EQ(data.expectations.size(), 48u);
  auto simple = TrainedOnReferences<Simple>();
  auto ordinary = TrainedOnReferences<Ordinary>();
  ASSERT_EQ(simple->GetContainer().GetNumUnique(), 30u);  // three records were copies
  for (const auto& line : data.expectations) {
    const ZqKrigeKernel kernel = NamedKernel(line[1], VarimoTest::ToDouble(line[2]), VarimoTest::ToDouble(line[3]),
                                             VarimoTest::ToDouble(line[4]));
    Standard& model = line[5] == "simple" ? static_cast<Standard&>(*simple) : *ordinary;
    ASSERT_TRUE(model.TrainFixed(kernel));
    const Element& query = data.queries[std::stoul(line[6])];
    const double prediction = VarimoTest::ToDouble(line[7]), variance = VarimoTest::ToDouble(line[8]);
    SCOPED_TRACE(line[1] + " " + line[5] + " query " + line[6]);
    EXPECT_TRUE(VarimoTest::WithinRelative(model.Predict(query), prediction, 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(model.GetVariance(query), variance, 1e-10));
    // The batch path agrees with the reference as closely.
    std::vector<double> predictions, variances;
    model.PredictMany(data.queries, predictions, variances);
    EXPECT_TRUE(VarimoTest::WithinRelative(predictions[std::stoul(line[6])], prediction, 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(variances[std::stoul(line[6])], variance, 1e-10));
    // So does the prediction without its variance, from weights solved once.
    EXPECT_TRUE(VarimoTest::WithinRelative(model.PredictMean(query), prediction, 1e-10));
  }
}

// The model's own quadratic work (pairs, their sort, the covariance fill and
// its norm) is shared among the BLAS's threads
// outside a single-threaded scope and done on one thread inside it; the
// results must be the same bits. Points on a small integer grid tie many
// distances, so the tie order of the sorted pairs is tested too.
TEST(KrigeModels, SharedWorkGivesTheBitsOfOneThread) {
  if (ZqBlasThreadCount() < 2) GTEST_SKIP() << "the BLAS runs on one thread here: nothing to compare";
  auto model = MakeModel<Ordinary>();
  for (int i = 0; i < 700; ++i) {
    const Element point = {static_cast<double>(i % 9), static_cast<double>((i / 9) % 8), static_cast<double>(i / 72)};
    model->AddTraining(point, std::sin(0.7 * i) + 0.1 * point[0]);
  }
  const ZqKrigeKernel kernel = NamedKernel("Exponential", 6.0, 1.5, 0.1);

  struct Work {
    std::vector<std::pair<double, double>> pairs;
    std::vector<double> bins;
    double normOne = 0.0;
  };
  auto work = [&] {
    Work w;
    const auto& container = model->GetContainer();
    EXPECT_TRUE(ZqGetDistAndDiff(w.pairs, container, false));
    ZqVariogramImpl variogram;
    EXPECT_TRUE(ZqSetupVariogram(variogram, w.pairs, true));
    for (unsigned int bin = 0; bin < variogram.GetNumBins(); ++bin) {
      w.bins.push_back(variogram.GetDistance(bin));
      w.bins.push_back(variogram.GetSemivariance(bin));
    }
    ZqCholeskyFactor factor;
    krige_detail::FactorCovariance(container, kernel, factor, w.normOne);
    return w;
  };
  const Work shared = work();
  Work alone;
  {
    const ZqSingleThreadedBlas oneThread;
    alone = work();
  }
  ASSERT_EQ(shared.pairs.size(), 700u * 699u / 2u);
  EXPECT_EQ(shared.pairs, alone.pairs);
  EXPECT_EQ(shared.bins, alone.bins);
  EXPECT_EQ(shared.normOne, alone.normOne);
}

TEST(KrigeModels, ResultListsEveryUniqueElementWithItsCopies) {
  auto model = TrainedOnReferences<Ordinary>();
  model->TrainFixed(NamedKernel("Spherical", 5.0, 2.0, 0.0));
  const ReferenceData& data = References();
  // The last query stands on training point 9: with no nugget it takes all
  // the weight, and the prediction is its response.
  const ZqKrigeResult onPoint = model->GetKrigeResult(data.queries.back());
  ASSERT_TRUE(onPoint.Valid());
  EXPECT_EQ(onPoint.GetNumElements(), 30u);
  EXPECT_TRUE(VarimoTest::WithinRelative(onPoint.GetWeight(9), 1.0, 1e-9));
  EXPECT_TRUE(VarimoTest::WithinRelative(ZqCalculateResponse(onPoint, kError), data.responses[9], 1e-9));
  EXPECT_EQ(onPoint.GetDistance(9), 0.0);
  EXPECT_TRUE(VarimoTest::WithinRelative(ZqSumWeights(onPoint, kError), 1.0, 1e-12));
  // Point 4 has three records; the copy lists report the first records of
  // the whole training list, whatever element they stand under.
  EXPECT_EQ(onPoint.GetNumCopies(4), 3u);
  EXPECT_EQ(onPoint.GetResponse(4), (data.responses[4] + data.responses[30] + data.responses[32]) / 3.0);
  EXPECT_EQ(onPoint.GetResponse(4, 2), data.responses[2]);
  EXPECT_EQ(onPoint.GetNumCopies(17), 2u);
  EXPECT_EQ(onPoint.GetResponse(17, 1), data.responses[1]);
  EXPECT_FALSE(onPoint.GetHasID(4));
  EXPECT_EQ(onPoint.GetID(4), kMissing);
  EXPECT_EQ(onPoint.GetKernel().GetName(), "Spherical");
}

// A query on a training element is that element: its weight is exactly 1,
// its prediction the element's response and, without a nugget, its variance
// exactly 0, which rounding in the solves must not push below 0.
TEST(KrigeModels, QueriesOnTrainingElementsReturnTheirResponses) {
  auto simple = TrainedOnReferences<Simple>();
  auto ordinary = TrainedOnReferences<Ordinary>();
  std::vector<Element> unique;
  for (std::size_t u = 0; u < ordinary->GetContainer().GetNumUnique(); ++u) {
    unique.push_back(ordinary->GetContainer().GetRepresentative(u));
  }
  // Nuggets of 0, below the rounding unit of the sill, and just above it:
  // every one valid, with the variance sill - (sill - nugget) as doubles
  // give it (0 for the first three), never on the wrong side by rounding.
  for (const double nugget : {0.0, 1e-20, 3e-17, 1e-15, 1e-10}) {
    for (const char* name : {"Gaussian", "Spherical"}) {
      const ZqKrigeKernel kernel = NamedKernel(name, 2.0, 1.5, nugget);
      const double variance = 1.5 - (1.5 - nugget);
      for (Standard* model : {static_cast<Standard*>(simple.get()), static_cast<Standard*>(ordinary.get())}) {
        ASSERT_TRUE(model->TrainFixed(kernel));
        std::vector<double> predictions, variances;
        model->PredictMany(unique, predictions, variances);
        for (std::size_t u = 0; u < unique.size(); ++u) {
          const double response = model->GetContainer().GetUniqueResponse(u);
          EXPECT_NEAR(model->Predict(unique[u]), response, 1e-14 * (1.0 + std::fabs(response))) << name << u;
          EXPECT_EQ(model->GetVariance(unique[u]), variance) << name << nugget;
          EXPECT_NEAR(predictions[u], response, 1e-14 * (1.0 + std::fabs(response)));
          EXPECT_EQ(model->PredictMean(unique[u]), response);
          EXPECT_EQ(variances[u], variance) << name << nugget;
        }
      }
    }
  }
}

// A semivariance that rises past the sill far away: a query there gets
// negative covariances and an ordinary kriging variance of 3, outside
// [nugget, sill]: the mark of a broken model, refused as invalid.
class OvershootingKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Overshooting"; }
  double GetValue(double distance) const override { return distance < 1.5 ? 0.5 * distance : 3.0; }
  ZqKrigeKernelBase* CreateCopy() const override { return new OvershootingKernel(*this); }
};

TEST(KrigeModels, VariancesOutsideTheKernelsWindowAreInvalid) {
  auto model = MakeModel<Ordinary>();
  model->AddTraining({0.0}, 1.0);
  model->AddTraining({1.0}, 2.0);
  ASSERT_TRUE(model->TrainFixed(OvershootingKernel()));
  EXPECT_TRUE(model->GetKrigeResult({0.5}).Valid());
  EXPECT_FALSE(model->GetKrigeResult({10.0}).Valid());
  EXPECT_EQ(model->GetVariance({10.0}), kError);
}

TEST(KrigeModels, NearlySingularCovariancesWarnAndStillTrain) {
  // [[1, 1 - e], [1 - e, 1]]: |A|_1 = 2 - e and |A^-1|_1 = 1 / e, so the
  // reciprocal condition is e / (2 - e); the identity's is 1.
  for (const double e : {0.5, 1e-3, 1e-9}) {
    Eigen::Matrix2d a;
    a << 1.0, 1.0 - e, 1.0 - e, 1.0;
    const double estimate =
        ZqEstimateReciprocalCondition(2.0 - e, 2, [&a](Eigen::VectorXd& b) { b = a.ldlt().solve(b); });
    EXPECT_TRUE(VarimoTest::WithinRelative(estimate, e / (2.0 - e), 1e-6)) << e;
  }
  EXPECT_EQ(ZqEstimateReciprocalCondition(1.0, 3, [](Eigen::VectorXd&) {}), 1.0);

  // Two training elements 1e-13 apart: the matrix factorises, with a
  // reciprocal condition near 1e-13.
  Corvane::ZqScopedThrowCapture capture;
  auto model = MakeModel<Ordinary>();
  for (const double x : {0.0, 1e-13, 1.0}) model->AddTraining({x}, 1.0 + x);
  ASSERT_TRUE(model->TrainFixed(NamedKernel("Exponential", 1.0, 1.0, 0.0)));
  const std::vector<std::string> warnings = capture.Texts(ZqThrowLevel::Warning);
  ASSERT_EQ(warnings.size(), 1u);
  const std::string nearlySingular =
      "ZqOrdinaryKrige::TrainFixed, the covariance matrix is nearly singular (reciprocal condition ";
  EXPECT_EQ(warnings[0].rfind(nearlySingular, 0), 0u) << warnings[0];
  EXPECT_TRUE(model->GetKrigeResult({0.5}).Valid());
  // Elements well apart train quietly.
  capture.Clear();
  ASSERT_TRUE(TrainedOnReferences<Ordinary>()->TrainFixed(NamedKernel("Exponential", 1.0, 1.0, 0.0)));
  EXPECT_TRUE(capture.Messages().empty());
}

TEST(KrigeModels, TrainWalksTheCandidatesFromTheBestFit) {
  auto model = TrainedOnReferences<Ordinary>();
  ASSERT_TRUE(model->Train());
  // Independently of the walk: rank the fitted candidates and take the first
  // whose covariance factorises on a fresh copy of the data.
  const ZqVariogram variogram = model->GetVariogram();
  std::vector<std::pair<double, ZqKrigeKernel>> fitted;
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    ZqKrigeKernel kernel(candidate);
    const double fitness = ZqFitKernel(kernel, variogram);
    fitted.emplace_back(fitness, kernel);
  }
  std::stable_sort(fitted.begin(), fitted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  auto probe = TrainedOnReferences<Ordinary>();
  std::string expected;
  for (const auto& [fitness, kernel] : fitted) {
    if (probe->TrainFixed(kernel)) {
      expected = kernel.GetName();
      EXPECT_EQ(model->GetKernel().GetRange(), kernel.GetRange());
      break;
    }
  }
  EXPECT_EQ(model->GetKernel().GetName(), expected);

  // Train(kernel) fits the caller's kernel in place.
  ZqKrigeKernel gaussian(ZqKrigeKernelType::Gaussian);
  ASSERT_TRUE(model->Train(gaussian));
  EXPECT_NE(gaussian.GetRange(), 0.5);
  EXPECT_EQ(model->GetKernel().GetRange(), gaussian.GetRange());
}

TEST(KrigeModels, QueriesTrainAndConstQueriesLeaveTheModelAlone) {
  auto model = TrainedOnReferences<Simple>();
  const Element& query = References().queries[0];
  const Simple& constModel = *model;
  const double first = constModel.Predict(query);
  EXPECT_FALSE(model->IsTrained());
  EXPECT_EQ(constModel.GetKernel().GetName(), model->GetKernel().GetName());  // the second trains
  EXPECT_TRUE(model->IsTrained());
  EXPECT_EQ(model->Predict(query), first);

  // Copies are trained as their source and predict alike; additions and
  // Clear() untrain.
  std::unique_ptr<ZqKrigeBase<Element>> copy(model->CreateKrigeCopy());
  EXPECT_EQ(copy->Predict(query), first);
  EXPECT_EQ(static_cast<Simple&>(*copy).IsTrained(), true);
  EXPECT_FALSE(model->AddTraining(query, std::nan("")));
  EXPECT_FALSE(model->AddUnmeasuredTraining(query, std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(model->IsTrained());
  EXPECT_EQ(model->GetContainer().GetNumData(), 33u);
  EXPECT_TRUE(model->AddTrainingWithID(query, 1.0, 42));
  EXPECT_EQ(model->GetKrigeResult(query).GetID(30), 42u);
  model->Clear();
  EXPECT_EQ(model->GetContainer().GetNumData(), 0u);
  EXPECT_FALSE(model->IsTrained());
}

TEST(KrigeModels, WarningsOfEmptyAndSmallTrainingSets) {
  Corvane::ZqScopedThrowCapture capture;
  auto empty = MakeModel<Ordinary>();
  EXPECT_EQ(empty->Predict({1.0}), kError);
  EXPECT_EQ(empty->GetKernel().GetName(), "Linear");
  ZqKrigeKernel kernel(ZqKrigeKernelType::Gaussian);
  EXPECT_FALSE(empty->Train(kernel));
  EXPECT_FALSE(empty->TrainFixed(kernel));
  EXPECT_FALSE(MakeModel<Simple>()->TrainFixed(kernel));
  const std::string noData = "ZqStandardKrigeImpl::Train(), unable to train.  No training data";
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{
                noData, noData, "ZqStandardKrigeImpl::GetKernel failed to get kernel because Train failed",
                "ZqStandardKrigeImpl::Train(ZqKrigeKernelBase), unable to train.  No training data",
                "ZqOrdinaryKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data",
                "ZqSimpleKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data"}));

  // One point: no pairs, no variogram.
  capture.Clear();
  auto one = MakeModel<Simple>();
  one->AddTraining({0.0}, 1.0);
  EXPECT_FALSE(one->Train());
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{"Unable to construct variogram",
                                      "ZqStandardKrigeImpl::Train(), unable to train.  Not enough training data to "
                                      "constuct variogram. (0 bins)"}));

  // Two points: one bin is enough for Train(), not for Train(kernel).
  capture.Clear();
  auto two = MakeModel<Ordinary>();
  two->AddTraining({0.0}, 1.0);
  two->AddTraining({1.0}, 2.0);
  EXPECT_TRUE(two->Train());
  EXPECT_TRUE(VarimoTest::WithinRelative(two->Predict({0.0}), 1.0, 1e-12));
  EXPECT_FALSE(two->Train(kernel));
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            std::vector<std::string>{"ZqStandardKrigeImpl::Train(ZqKrigeKernelBase), unable to train. Not enough "
                                     "training data to constuct variogram"});
  EXPECT_EQ(two->GetFullVariogram().GetNumBins(), 1u);
}

TEST(KrigeModels, DegenerateTrainingSetsFailCleanly) {
  Corvane::ZqScopedThrowCapture capture;
  // All points identical: every pair at distance zero, no variogram.
  auto same = MakeModel<Ordinary>();
  for (int i = 0; i < 12; ++i) same->AddTraining({1.0, 2.0}, static_cast<double>(i));
  EXPECT_EQ(same->GetContainer().GetNumUnique(), 1u);
  EXPECT_FALSE(same->Train());
  // ...yet a fixed kernel trains, and every query gets the group's mean.
  ASSERT_TRUE(same->TrainFixed(NamedKernel("Gaussian", 1.0, 1.0, 0.0)));
  EXPECT_TRUE(VarimoTest::WithinRelative(same->Predict({3.0, 3.0}), 5.5, 1e-12));

  // Constant responses: a flat variogram fits no kernel with a positive
  // sill, so every candidate fails to factorise.
  auto constant = MakeModel<Simple>();
  for (int i = 0; i < 20; ++i) constant->AddTraining({static_cast<double>(i)}, 3.0);
  EXPECT_FALSE(constant->Train());
  EXPECT_EQ(constant->Predict({0.5}), kError);

  // A kernel whose nugget is its sill leaves a zero diagonal: refused.
  auto model = TrainedOnReferences<Ordinary>();
  EXPECT_FALSE(model->TrainFixed(NamedKernel("Gaussian", 0.5, 1.0, 1.0)));
  EXPECT_FALSE(model->IsTrained());
}

// A distance that misbehaves on one training point: NaN, infinite or
// negative.
class BadDistance final : public ZqKrigeDistanceFxn<Element> {
 public:
  explicit BadDistance(double bad) : bad_(bad) {}
  double operator()(const Element& x, const Element& y) const override {
    if (x[0] == 7.0 || y[0] == 7.0) return bad_;
    return ZqEuclideanDistance()(x, y);
  }
  BadDistance* CreateCopy() const override { return new BadDistance(*this); }

 private:
  double bad_;
};

TEST(KrigeModels, MisbehavingDistancesGiveFailuresNotNumbers) {
  Corvane::ZqScopedThrowCapture capture;
  const ZqKrigeKernel gaussian = NamedKernel("Gaussian", 3.0, 1.0, 0.0);
  for (double bad : {std::nan(""), std::numeric_limits<double>::infinity(), -1.0}) {
    SCOPED_TRACE(bad);
    for (bool simple : {true, false}) {
      auto model = simple ? std::unique_ptr<ZqKrigeBase<Element>>(MakeModel<Simple>(BadDistance(bad)))
                          : std::unique_ptr<ZqKrigeBase<Element>>(MakeModel<Ordinary>(BadDistance(bad)));
      for (int i = 0; i < 40; ++i) model->AddTraining({static_cast<double>(i), 0.5 * i}, std::sin(0.3 * i));
      // The candidate walk ends, trained or not; a NaN in the covariance
      // matrix fails every kernel rather than passing into the factor.
      const bool walked = model->Train();
      const bool fixed = model->TrainFixed(gaussian);
      if (std::isnan(bad)) {
        EXPECT_FALSE(walked);
        EXPECT_FALSE(fixed);
      }
      // An infinitely distant element is merely independent of the rest.
      if (std::isinf(bad)) {
        EXPECT_TRUE(fixed);
      }
      // Queries answer with a finite value or the error value, never NaN.
      for (double x : {2.5, 7.0}) EXPECT_TRUE(std::isfinite(model->Predict({x, 1.0}))) << x;
    }
  }
}

}  // namespace
}  // namespace Varimo
