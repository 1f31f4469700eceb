// The k-d tree neighbour search and the local models that use it: the
// tree's promise (every element closer than its bound is a candidate), and
// neighbourhoods and results identical to the full scan's, also with copies,
// ties, queries on training elements, and neighbourhood sizes 0, 1 and 2.
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
constexpr double kError = -99.0;

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

// A model of the given kind with K neighbours, with or without the tree.
std::unique_ptr<ZqLocalKrigeImpl<Element>> LocalModel(const std::string& kind, std::size_t numLocal,
                                                      bool predictTraining, bool tree) {
  const ZqEuclideanDistance distance(2);
  const unsigned int mean = ZqKrigeUniqueResponseMethod::Mean;
  std::unique_ptr<ZqLocalKrigeImpl<Element>> model;
  if (kind == "simple") {
    model = std::make_unique<ZqLocalSimpleKrige<Element>>(distance, numLocal, kError, 0u, false, predictTraining,
                                                          500000, mean);
  } else {
    model = std::make_unique<ZqLocalOrdinaryKrige<Element>>(distance, numLocal, kError, 0u, false, predictTraining,
                                                            500000, mean);
  }
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
