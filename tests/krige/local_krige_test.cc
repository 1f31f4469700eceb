// Local kriging: predictions of the simple, ordinary and universal local
// models against numpy solves on the nearest neighbours
// (tests/data/krige/make_drift_local_refs.py), the neighbourhood rules, the
// thinned variogram, the kernel walk and its fall-backs, and copies. The k-d
// tree neighbour search: its promise (every element closer than its bound is
// a candidate), and neighbourhoods and results identical to the full scan's,
// also with copies, ties, queries on training elements, and neighbourhood
// sizes 0, 1 and 2.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "drift_local_refs.h"
#include "test_support.h"
#include "varimo/krige/kd_tree_search.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Element = std::vector<double>;
using LocalOrdinary = ZqLocalOrdinaryKrige<Element>;
using Corvane::ZqThrowLevel;
using VarimoTest::DriftLocalReferences;
constexpr double kError = -99.0;
constexpr unsigned int kMissing = 0xFFFFFFFF;

std::unique_ptr<ZqLocalKrigeImpl<Element>> MakeLocal(const std::string& kind, std::size_t numLocal,
                                                     bool predictTraining, std::size_t maxPairs = 500000,
                                                     const ZqEuclideanDistance& distance = ZqEuclideanDistance()) {
  const unsigned int mean = ZqKrigeUniqueResponseMethod::Mean;
  if (kind == "simple") {
    return std::make_unique<ZqLocalSimpleKrige<Element>>(distance, numLocal, kError, kMissing, false,
                                                         predictTraining, maxPairs, mean);
  }
  if (kind == "universal") {
    return std::make_unique<ZqLocalUniversalKrige<Element>>(distance, ZqVecPropertyListFxn(3), numLocal, kError,
                                                            kMissing, false, predictTraining, maxPairs, mean);
  }
  return std::make_unique<LocalOrdinary>(distance, numLocal, kError, kMissing, false, predictTraining, maxPairs,
                                         mean);
}

void AddReferences(ZqKrigeBase<Element>& model) {
  const auto& data = DriftLocalReferences();
  for (std::size_t i = 0; i < data.points.size(); ++i) {
    EXPECT_TRUE(model.AddTrainingWithID(data.points[i], data.responses[i], static_cast<unsigned int>(i)));
  }
}

TEST(LocalKrige, PredictionsMatchSolvesOnTheNearestNeighbours) {
  const auto& data = DriftLocalReferences();
  ASSERT_EQ(data.local.size(), 192u);
  for (const auto& line : data.local) {
    SCOPED_TRACE(line[1] + " K=" + line[2] + " predictTraining=" + line[3] + " " + line[4] + " query " + line[8]);
    auto model = MakeLocal(line[1], std::stoul(line[2]), line[3] == "1");
    AddReferences(*model);
    ASSERT_TRUE(model->TrainFixed(VarimoTest::ReferenceKernel(line[4], line[5], line[6], line[7])));
    const Element& query = data.queries[std::stoul(line[8])];
    EXPECT_TRUE(VarimoTest::WithinRelative(model->Predict(query), VarimoTest::ToDouble(line[9]), 1e-9));
    EXPECT_TRUE(VarimoTest::WithinRelative(model->GetVariance(query), VarimoTest::ToDouble(line[10]), 1e-9));
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqCalculateFullVariance(model->GetKrigeResult(query), -1.0),
                                           VarimoTest::ToDouble(line[11]), 1e-9));
  }
}

TEST(LocalKrige, NeighbourhoodsLeaveOutTheQueryOnlyWhenPredictingTrainingAndFillUpPastCopies) {
  const auto& data = DriftLocalReferences();
  const ZqKrigeKernel kernel = VarimoTest::ReferenceKernel("Exponential", "3.0", "5.5", "0.1");
  // Query 6 is training point 5, which has a copy (record 40).
  const Element& onTraining = data.queries[6];
  for (bool predictTraining : {false, true}) {
    auto model = MakeLocal("ordinary", 10, predictTraining);
    AddReferences(*model);
    model->TrainFixed(kernel);
    const ZqKrigeResult result = model->GetKrigeResult(onTraining);
    ASSERT_TRUE(result.Valid());
    EXPECT_EQ(result.GetNumElements(), 10u);
    bool seesItself = false;
    for (unsigned int e = 0; e < result.GetNumElements(); ++e) {
      seesItself = seesItself || result.GetDistance(e) < 1e-30;
      // Ids map the neighbours back to the training records.
      const unsigned int id = result.GetID(e);
      ASSERT_LT(id, data.points.size());
      EXPECT_NEAR(result.GetDistance(e), ZqEuclideanDistance()(onTraining, data.points[id]), 1e-14);
    }
    EXPECT_EQ(seesItself, !predictTraining);
  }

  // Fewer records than neighbours: all of them take part.
  auto small = MakeLocal("ordinary", 100, false);
  for (int i = 0; i < 10; ++i) small->AddTraining({std::cos(i), std::sin(i)}, 0.1 * i);
  small->TrainFixed(kernel);
  EXPECT_EQ(small->GetKrigeResult({0.2, 0.1}).GetNumElements(), 10u);

  // Points at 0..29 on a line; the two nearest to the query at -1 are
  // repeated ten times each, so that the 5 nearest records are copies.
  auto model = MakeLocal("ordinary", 5, false);
  for (int copy = 0; copy < 10; ++copy) {
    model->AddTraining({0.0}, 1.0 + 0.01 * copy);
    model->AddTraining({1.0}, 2.0);
  }
  for (int x = 2; x < 30; ++x) model->AddTraining({static_cast<double>(x)}, std::sin(x));
  model->TrainFixed(VarimoTest::ReferenceKernel("Exponential", "10.0", "2.0", "0.1"));
  const ZqKrigeResult result = model->GetKrigeResult({-1.0});
  ASSERT_TRUE(result.Valid());
  ASSERT_EQ(result.GetNumElements(), 5u);
  std::vector<double> distances;
  for (unsigned int e = 0; e < 5; ++e) distances.push_back(result.GetDistance(e));
  std::sort(distances.begin(), distances.end());
  EXPECT_EQ(distances, (std::vector<double>{1.0, 2.0, 3.0, 4.0, 5.0}));
}

TEST(LocalKrige, LargeSetsThinTheirVariogramWithAFixedSeed) {
  // Random points: no tied distances, so that the unstable sort of the
  // pairs bins them alike whatever order they come in.
  std::vector<Element> points;
  std::mt19937_64 engine(5);
  std::uniform_real_distribution<double> uniform(0.0, 5.0);
  for (int i = 0; i < 300; ++i) points.push_back({uniform(engine), uniform(engine)});
  auto fill = [&points](ZqKrigeBase<Element>& model) {
    for (std::size_t i = 0; i < points.size(); ++i) model.AddTraining(points[i], std::sin(points[i][0]) + 0.01 * i);
  };
  auto build = [&fill](std::size_t maxPairs) {
    auto model = MakeLocal("ordinary", 20, false, maxPairs);
    fill(*model);
    return model;
  };
  auto full = build(100000);
  EXPECT_FALSE(full->IsSampled());
  auto thinned = build(5000);  // 44850 pairs
  ASSERT_TRUE(thinned->IsSampled());
  std::vector<std::pair<double, double>> first, second, all;
  ASSERT_TRUE(thinned->FillDistAndDiffImpl(first));
  ASSERT_TRUE(thinned->FillDistAndDiffImpl(second));
  EXPECT_EQ(first, second);
  EXPECT_NEAR(static_cast<double>(first.size()), 5000.0, 300.0);  // binomial: sd about 67
  // The pairs of the full list are those of a global model.
  ASSERT_TRUE(full->FillDistAndDiffImpl(all));
  EXPECT_EQ(all.size(), 44850u);
  auto global = std::make_unique<ZqOrdinaryKrige<Element>>(ZqEuclideanDistance(), kError, kMissing, false,
                                                           ZqKrigeUniqueResponseMethod::Mean);
  fill(*global);
  const ZqVariogram a = full->GetVariogram(), b = global->GetVariogram();
  ASSERT_EQ(a.GetNumBins(), b.GetNumBins());
  for (unsigned int bin = 0; bin < a.GetNumBins(); ++bin) {
    EXPECT_NEAR(a.GetSemivariance(bin), b.GetSemivariance(bin), 1e-12);
  }
  // Both train and predict alike in kind.
  ASSERT_TRUE(thinned->Train());
  EXPECT_EQ(thinned->GetKernels().size(), 16u);
  EXPECT_TRUE(std::isfinite(thinned->Predict({3.0, 2.0})));
}

TEST(LocalKrige, SampledPairsFollowTheUnmeasuredRule) {
  // Measured records in [0, 3) with response 0, unmeasured ones 1000 apart
  // with response 1: a pair of two unmeasured records is the only kind at
  // a distance above 500 with no difference.
  for (bool includeUnmeasured : {false, true}) {
    LocalOrdinary model(ZqEuclideanDistance(), 10, kError, kMissing, includeUnmeasured, false, 2000,
                        ZqKrigeUniqueResponseMethod::Mean);
    for (int i = 0; i < 400; ++i) {
      if (i % 4 == 3) {
        model.AddUnmeasuredTraining({1000.0 * (i + 1)}, 1.0);
      } else {
        model.AddTraining({0.01 * i}, 0.0);
      }
    }
    ASSERT_TRUE(model.IsSampled());
    std::vector<std::pair<double, double>> pairs;
    ASSERT_TRUE(model.FillDistAndDiffImpl(pairs));
    std::size_t mixed = 0, bothUnmeasured = 0;
    for (const auto& [d, diff] : pairs) {
      mixed += d > 500.0 && diff != 0.0 ? 1 : 0;
      bothUnmeasured += d > 500.0 && diff == 0.0 ? 1 : 0;
    }
    EXPECT_EQ(bothUnmeasured, 0u);
    // Of the 74850 admissible pairs with unmeasured ones, 30000 are mixed.
    const double expectedMixed = includeUnmeasured ? 2000.0 * 30000.0 / 74850.0 : 0.0;
    EXPECT_NEAR(static_cast<double>(mixed), expectedMixed, 150.0);
    EXPECT_NEAR(static_cast<double>(pairs.size()), 2000.0, 150.0);
  }
}

TEST(LocalKrige, TrainingNeedsThreeBinsAndFixedKernelsHaveNoFallBack) {
  Corvane::ZqScopedThrowCapture capture;
  // TrainFixed on an empty model trains; the query then fails on an empty
  // neighbourhood, without the fall-backs.
  auto empty = MakeLocal("ordinary", 5, false);
  ZqKrigeKernel kernel = VarimoTest::ReferenceKernel("Gaussian", "1.0", "1.0", "0.0");
  EXPECT_TRUE(empty->TrainFixed(kernel));
  EXPECT_FALSE(empty->GetKrigeResult({0.0}).Valid());
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            std::vector<std::string>{
                "ZqOrdinaryKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data"});

  // Two pairs (the third joins two unmeasured records) make two bins:
  // enough for a global model, not here.
  capture.Clear();
  auto few = std::make_unique<LocalOrdinary>(ZqEuclideanDistance(), 5, kError, kMissing, true, false, 500000,
                                             ZqKrigeUniqueResponseMethod::Mean);
  few->AddTraining({0.0}, 0.0);
  few->AddUnmeasuredTraining({1.0}, 1.0);
  few->AddUnmeasuredTraining({3.0}, 9.0);
  ASSERT_EQ(few->GetVariogram().GetNumBins(), 2u);
  EXPECT_FALSE(few->Train());
  EXPECT_FALSE(few->Train(kernel));
  EXPECT_EQ(few->Predict({2.0}), kError);
  EXPECT_EQ(few->GetKernel().GetName(), "Linear");
  const std::string train = "ZqLocalKrigeImpl::Train() failed, not enough data to construct variogram";
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{
                train, "ZqLocalKrigeImpl::Train(ZqKrigeKernelBase ) failed, not enough data to construct variogram",
                train, train, "ZqLocalKrige::GetKernel, failed to get kernel because training failed"}));
}

// Not a variogram: every pair of distinct elements gets a negative
// covariance, so no covariance matrix of three or more elements factorises.
// Its parameters cannot be changed, so fitting does not repair it.
class NegativeCovarianceKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Negative"; }
  double GetValue(double distance) const override { return distance > 0.0 ? 2.0 : 0.0; }
  void SetRange(double) override {}
  void SetNugget(double) override {}
  void SetSill(double) override {}
  ZqKrigeKernelBase* CreateCopy() const override { return new NegativeCovarianceKernel(*this); }
};

TEST(LocalKrige, KernelsThatFailLocallyFallBackToTheNeighboursVariogram) {
  Corvane::ZqScopedThrowCapture capture;
  const auto& data = DriftLocalReferences();
  auto model = MakeLocal("ordinary", 15, false);
  AddReferences(*model);
  // The kernel fails as trained, and again refitted to the neighbours: the
  // candidates fitted to the neighbours' variogram take over.
  NegativeCovarianceKernel negative;
  ASSERT_TRUE(model->Train(negative));
  const ZqKrigeResult result = model->GetKrigeResult(data.queries[0]);
  ASSERT_TRUE(result.Valid());
  EXPECT_NE(result.GetKernel().GetName(), "Negative");
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            std::vector<std::string>{"ZqLocalKrige::GetKrigeResult, Falling back to local variogram kernels"});
  // With the kernel fixed there is no fall-back.
  capture.Clear();
  model->TrainFixed(negative);
  EXPECT_FALSE(model->GetKrigeResult(data.queries[0]).Valid());
  EXPECT_EQ(model->Predict(data.queries[0]), kError);
  EXPECT_TRUE(capture.Texts(ZqThrowLevel::Warning).empty());
}

TEST(LocalKrige, OneAndTwoNeighbours) {
  const std::vector<double> responses = {1.0, 4.0, 2.0, 7.0, 3.0};
  const ZqKrigeKernel kernel = VarimoTest::ReferenceKernel("Exponential", "2.0", "1.0", "0.0");
  for (const std::size_t k : {1u, 2u}) {
    auto model = MakeLocal("ordinary", k, false);
    for (std::size_t i = 0; i < responses.size(); ++i) model->AddTraining({static_cast<double>(i)}, responses[i]);
    ASSERT_TRUE(model->TrainFixed(kernel));
    // The query at 2.2 has 2, then 3, as its nearest elements.
    const ZqKrigeResult result = model->GetKrigeResult({2.2});
    ASSERT_TRUE(result.Valid());
    ASSERT_EQ(result.GetNumElements(), k);
    if (k == 1) {
      EXPECT_EQ(result.GetWeight(0), 1.0);
      EXPECT_EQ(ZqCalculateResponse(result, kError), 2.0);
      continue;
    }
    // The bordered 2 x 2 system solved by hand: with equal diagonals C0,
    // w = 1/2 + (c(0.2) - c(0.8)) / (2 (C0 - c(1))), c(d) = sill - kernel(d).
    auto c = [&kernel](double d) { return kernel.GetSill() - kernel.GetValue(d); };
    const double w = 0.5 + (c(0.2) - c(0.8)) / (2.0 * (c(0.0) - c(1.0)));
    EXPECT_NEAR(ZqCalculateResponse(result, kError), w * 2.0 + (1.0 - w) * 7.0, 1e-12);
  }
}

TEST(LocalKrige, StateCopiesAndConstQueries) {
  const auto& data = DriftLocalReferences();
  auto model = MakeLocal("universal", 12, false);
  AddReferences(*model);
  const ZqLocalKrigeImpl<Element>& constModel = *model;
  const double untrained = constModel.Predict(data.queries[1]);  // on a trained copy
  EXPECT_FALSE(model->IsTrained());
  ASSERT_TRUE(model->Train());
  EXPECT_EQ(model->Predict(data.queries[1]), untrained);
  std::unique_ptr<ZqKrigeBase<Element>> copy(model->CreateKrigeCopy());
  EXPECT_EQ(copy->Predict(data.queries[1]), untrained);
  EXPECT_EQ(copy->GetKernel().GetName(), model->GetKernel().GetName());

  // Refused records leave the model as it was; accepted ones untrain it.
  EXPECT_FALSE(model->AddTraining({1.0, 2.0, 3.0}, std::nan("")));
  EXPECT_FALSE(model->AddTraining({1.0, 2.0}, 1.0));  // no properties
  EXPECT_TRUE(model->IsTrained());
  EXPECT_TRUE(model->AddUnmeasuredTraining({1.0, 2.0, 3.0}, 1.0));
  EXPECT_FALSE(model->IsTrained());
  EXPECT_EQ(model->GetNumData(), 43u);

  // The full variogram marks the plain one valid without filling it: a
  // model asked for its full variogram first trains on no bins.
  auto fresh = MakeLocal("ordinary", 12, false);
  AddReferences(*fresh);
  EXPECT_GT(fresh->GetFullVariogram().GetNumBins(), 2u);
  EXPECT_EQ(fresh->GetVariogram().GetNumBins(), 0u);
  {
    Corvane::ZqScopedThrowCapture capture;
    EXPECT_FALSE(fresh->Train());
    EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
              std::vector<std::string>{"ZqLocalKrigeImpl::Train() failed, not enough data to construct variogram"});
  }
  fresh->Clear();
  EXPECT_EQ(fresh->GetNumData(), 0u);
  AddReferences(*fresh);
  EXPECT_TRUE(fresh->Train());
}

// ------------------------------------------------------------ neighbour search

std::vector<Element> RandomPoints(std::size_t count, unsigned seed, std::size_t extra = 0) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(0.0, 10.0);
  std::vector<Element> points;
  for (std::size_t i = 0; i < count; ++i) {
    Element p(2 + extra);
    for (double& v : p) v = uniform(engine);
    points.push_back(p);
  }
  return points;
}

std::vector<const Element*> Pointers(const std::vector<Element>& points) {
  std::vector<const Element*> pointers;
  for (const Element& p : points) pointers.push_back(&p);
  return pointers;
}

TEST(KdTreeSearch, CandidatesHoldEveryElementCloserThanTheBound) {
  // Three coordinates, of which the tree sees two, as the distance does.
  const std::vector<Element> points = RandomPoints(2000, 11, 1);
  ZqKdTreeNeighbourSearch search(2);
  ASSERT_TRUE(search.Build(Pointers(points)));
  const ZqEuclideanDistance distance(2);
  for (const Element& query : RandomPoints(20, 12)) {
    for (std::size_t count : {1u, 7u, 100u}) {
      std::vector<std::size_t> indices;
      double bound = 0.0;
      ASSERT_TRUE(search.Candidates(query, count, indices, bound));
      EXPECT_EQ(indices.size(), count);
      std::vector<double> all;
      for (const Element& p : points) all.push_back(distance(query, p));
      std::vector<double> sorted = all;
      std::sort(sorted.begin(), sorted.end());
      EXPECT_LE(bound, sorted[count - 1]);
      EXPECT_GT(bound, sorted[count - 1] * (1.0 - 1e-9));
      for (std::size_t i = 0; i < points.size(); ++i) {
        if (all[i] < bound) {
          EXPECT_NE(std::find(indices.begin(), indices.end(), i), indices.end()) << i;
        }
      }
    }
  }
  // Asked for all, it lists all and leaves nothing out.
  std::vector<std::size_t> indices;
  double bound = 0.0;
  ASSERT_TRUE(search.Candidates(points[0], 5000, indices, bound));
  EXPECT_EQ(indices.size(), 2000u);
  EXPECT_EQ(bound, std::numeric_limits<double>::max());

  // What it cannot index or search, it refuses.
  EXPECT_FALSE(search.Candidates({1.0}, 3, indices, bound));
  EXPECT_FALSE(search.Candidates({1.0, std::nan("")}, 3, indices, bound));
  std::vector<Element> bad = {{0.0, 1.0}, {std::numeric_limits<double>::infinity(), 0.0}};
  EXPECT_FALSE(search.Build(Pointers(bad)));
  EXPECT_FALSE(search.Candidates({1.0, 1.0}, 1, indices, bound));
  bad = {{0.0, 1.0}, {2.0}};
  EXPECT_FALSE(search.Build(Pointers(bad)));
  EXPECT_FALSE(ZqKdTreeNeighbourSearch(0).Build(Pointers(points)));
}

// The tree, counting the questions put to it, so that a test can tell that
// a model asked it rather than scanned.
class CountingSearch final : public ZqKrigeNeighbourSearch<Element> {
 public:
  explicit CountingSearch(std::shared_ptr<int> calls) : calls_(std::move(calls)) {}
  bool Build(const std::vector<const Element*>& elements) override { return tree_.Build(elements); }
  bool Candidates(const Element& query, std::size_t count, std::vector<std::size_t>& indices,
                  double& bound) const override {
    ++*calls_;
    return tree_.Candidates(query, count, indices, bound);
  }
  CountingSearch* CreateCopy() const override { return new CountingSearch(calls_); }

 private:
  std::shared_ptr<int> calls_;
  ZqKdTreeNeighbourSearch tree_{2};
};

auto gSearchCalls = std::make_shared<int>(0);

// A model of the given kind with K neighbours on the first two coordinates,
// with or without the tree.
std::unique_ptr<ZqLocalKrigeImpl<Element>> LocalModel(const std::string& kind, std::size_t numLocal,
                                                      bool predictTraining, bool tree) {
  auto model = MakeLocal(kind, numLocal, predictTraining, 500000, ZqEuclideanDistance(2));
  if (tree) model->SetNeighbourSearch(CountingSearch(gSearchCalls));
  return model;
}

TEST(KdTreeSearch, LocalModelsFindTheNeighbourhoodsOfTheScan) {
  // Points on a coarse grid (many tied distances), with copies of some.
  std::vector<Element> points;
  std::vector<double> responses;
  for (int i = 0; i < 400; ++i) {
    const double x = i % 20, y = i / 20;
    points.push_back({x, y, 0.0});
    responses.push_back(std::sin(0.3 * x) + 0.1 * y);
    if (i % 37 == 0) {
      points.push_back({x, y, 1.0});  // the third value is not a coordinate
      responses.push_back(responses.back() + 0.5);
    }
  }
  std::vector<Element> queries = RandomPoints(30, 3);
  queries.push_back(points[0]);
  queries.push_back(points[74]);  // a copied point
  queries.push_back({9.5, 9.5});  // equally far from four grid points
  const ZqKrigeKernel kernel = VarimoTest::NamedKernel("Exponential", 6.0, 1.0, 0.05);
  for (const std::string kind : {"simple", "ordinary"}) {
    for (std::size_t numLocal : {1u, 2u, 9u, 40u}) {
      for (bool predictTraining : {false, true}) {
        SCOPED_TRACE(kind + " K=" + std::to_string(numLocal) + (predictTraining ? " predictTraining" : ""));
        auto scan = LocalModel(kind, numLocal, predictTraining, false);
        auto tree = LocalModel(kind, numLocal, predictTraining, true);
        for (std::size_t i = 0; i < points.size(); ++i) {
          scan->AddTraining(points[i], responses[i]);
          tree->AddTraining(points[i], responses[i]);
        }
        scan->TrainFixed(kernel);
        tree->TrainFixed(kernel);
        *gSearchCalls = 0;
        for (const Element& query : queries) {
          const ZqKrigeResult a = scan->GetKrigeResult(query), b = tree->GetKrigeResult(query);
          ASSERT_EQ(a.Valid(), b.Valid());
          if (!a.Valid()) continue;
          ASSERT_EQ(a.GetNumElements(), b.GetNumElements());
          for (unsigned int e = 0; e < a.GetNumElements(); ++e) {
            EXPECT_EQ(a.GetDistance(e), b.GetDistance(e));
            EXPECT_EQ(a.GetWeight(e), b.GetWeight(e));
            EXPECT_EQ(a.GetResponse(e), b.GetResponse(e));
          }
        }
        EXPECT_GE(*gSearchCalls, static_cast<int>(queries.size()));
      }
    }
  }
}

// K = 1 is the nearest response, as the scan's tests show and the tree's
// agreement with the scan carries over.
TEST(KdTreeSearch, NeighbourhoodsOfNoneAndAll) {
  Corvane::ZqScopedThrowCapture capture;
  const std::vector<Element> points = RandomPoints(60, 21);
  auto response = [](const Element& p) { return std::sin(p[0]) + 0.2 * p[1]; };
  const ZqKrigeKernel spherical = VarimoTest::NamedKernel("Spherical", 8.0, 1.5, 0.1);
  const Element query = {4.2, 5.1};

  // K = 0: nothing to krige with, every query fails.
  auto none = LocalModel("ordinary", 0, false, true);
  for (const Element& p : points) none->AddTraining(p, response(p));
  none->TrainFixed(spherical);
  EXPECT_EQ(none->Predict(query), kError);

  // K at least the number of records: the local model is the global one.
  auto all = LocalModel("ordinary", 60, false, true);
  ZqOrdinaryKrige<Element> global(ZqEuclideanDistance(2), kError, 0u, false, ZqKrigeUniqueResponseMethod::Mean);
  for (const Element& p : points) {
    all->AddTraining(p, response(p));
    global.AddTraining(p, response(p));
  }
  all->TrainFixed(spherical);
  global.TrainFixed(spherical);
  for (const Element& q : RandomPoints(10, 22)) {
    EXPECT_TRUE(VarimoTest::WithinRelative(all->Predict(q), global.Predict(q), 1e-10));
    EXPECT_TRUE(VarimoTest::WithinRelative(all->GetVariance(q), global.GetVariance(q), 1e-10));
  }
  // A copy of the model indexes its own records.
  std::unique_ptr<ZqKrigeBase<Element>> copy(all->CreateKrigeCopy());
  all.reset();
  EXPECT_TRUE(VarimoTest::WithinRelative(copy->Predict(query), global.Predict(query), 1e-10));
}

}  // namespace
}  // namespace Varimo
