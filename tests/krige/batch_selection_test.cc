// Acquisition functions: expected improvement and probability of
// improvement against 40-digit values (tests/data/krige/make_acquisition_refs.py)
// and a Monte Carlo estimate, their edge cases, and the option checks.
// Batch selection from a pool: a believer or liar batch equals what models
// refitted with the fantasised measurements predict, picks never repeat and
// respect exclusions and duplicates, the picks do not depend on the number
// of threads, and the failures say why.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <random>
#include <set>

#include "drift_local_refs.h"
#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/acquisition.h"
#include "varimo/krige/batch_selection.h"
#include "varimo/krige/vector_krige.h"

namespace Varimo {
namespace {

using Element = ZqVectorElement;

TEST(Acquisition, ExpectedAndProbableImprovementMatchReferenceValues) {
  const auto lines = VarimoTest::ReadReferenceLines("krige/acquisition_refs.txt");
  ASSERT_EQ(lines.size(), 8u);
  for (const auto& line : lines) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 0);
    const bool minimize = v[4] != 0.0;
    SCOPED_TRACE(line[0] + " " + line[1] + " " + line[2]);
    // The far tail (z = -30, -37) keeps nearly full relative accuracy.
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqExpectedImprovement(v[0], v[1], v[2], v[3], minimize), v[5], 1e-12));
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqProbabilityOfImprovement(v[0], v[1], v[2], v[3], minimize), v[6], 1e-12));
  }
}

TEST(Acquisition, ExpectedImprovementAgreesWithMonteCarlo) {
  std::mt19937_64 engine(7);
  std::normal_distribution<double> normal;
  const double mean = 1.2, sd = 0.7, best = 1.5, xi = 0.1;
  const int draws = 200000;
  double sum = 0.0, sumSquares = 0.0, hits = 0.0;
  for (int i = 0; i < draws; ++i) {
    const double gain = std::max(0.0, mean + sd * normal(engine) - best - xi);
    sum += gain;
    sumSquares += gain * gain;
    hits += gain > 0.0 ? 1.0 : 0.0;
  }
  const double estimate = sum / draws;
  const double standardError = std::sqrt((sumSquares / draws - estimate * estimate) / draws);
  EXPECT_NEAR(ZqExpectedImprovement(mean, sd, best, xi, false), estimate, 4.0 * standardError);
  const double p = hits / draws;
  EXPECT_NEAR(ZqProbabilityOfImprovement(mean, sd, best, xi, false), p, 4.0 * std::sqrt(p * (1 - p) / draws));
}

TEST(Acquisition, KnownPointsAndBadInput) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  // A point with sd 0 is known: no improvement is expected, even above best.
  EXPECT_EQ(ZqExpectedImprovement(9.0, 0.0, 1.0, 0.0, false), 0.0);
  EXPECT_EQ(ZqProbabilityOfImprovement(9.0, 0.0, 1.0, 0.0, false), 0.0);
  // Far below the best: exactly 0 or a tiny positive number, never negative.
  EXPECT_GE(ZqExpectedImprovement(0.0, 1.0, 1e6, 0.0, false), 0.0);
  EXPECT_TRUE(std::isnan(ZqExpectedImprovement(0.0, -1.0, 0.0, 0.0, false)));

  ZqAcquisitionOptions options;
  options.kind = ZqAcquisitionKind::UpperConfidenceBound;
  EXPECT_DOUBLE_EQ(ZqAcquisition(options, 3.0, 0.5, 0.0), 4.0);
  options.minimize = true;
  EXPECT_DOUBLE_EQ(ZqAcquisition(options, 3.0, 0.5, 0.0), -2.0);
  options.kind = ZqAcquisitionKind::Greedy;
  EXPECT_DOUBLE_EQ(ZqAcquisition(options, 3.0, 0.5, 0.0), -3.0);
  EXPECT_TRUE(std::isnan(ZqAcquisition(options, kInf, 0.5, 0.0)));

  EXPECT_EQ(ZqBestResponse({2.0, std::nan(""), 5.0, -1.0}, false), 5.0);
  EXPECT_EQ(ZqBestResponse({2.0, std::nan(""), 5.0, -1.0}, true), -1.0);

  options.kappa = -1.0;
  EXPECT_EQ(ZqCheckAcquisitionOptions(options), "kappa must be a finite number of at least 0, not -1");
  options.kappa = 2.0;
  options.xi = kInf;
  EXPECT_EQ(ZqCheckAcquisitionOptions(options), "xi must be a finite number of at least 0, not inf");
  EXPECT_EQ(ZqAcquisitionKindNamed("pi"), ZqAcquisitionKind::ProbabilityOfImprovement);
  EXPECT_FALSE(ZqAcquisitionKindNamed("EI").has_value());
}

struct Data {
  std::vector<Element> training, pool;
  std::vector<double> responses;
};

// 30 training points and a pool of 80 in the unit square, with a smooth
// response and a little noise.
const Data& TestData() {
  static const Data data = [] {
    Data d;
    std::mt19937_64 engine(29);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::normal_distribution<double> noise(0.0, 0.05);
    for (int i = 0; i < 110; ++i) {
      Element x{unit(engine), unit(engine)};
      if (i < 30) {
        d.responses.push_back(std::sin(4.0 * x[0]) + std::cos(3.0 * x[1]) + noise(engine));
        d.training.push_back(x);
      } else {
        d.pool.push_back(x);
      }
    }
    return d;
  }();
  return data;
}

std::unique_ptr<ZqKrigeBase<Element>> MakeModel(unsigned int local, bool simple) {
  ZqKrigeOptions options = local > 0 ? ZqKrigeOptions(ZqLocalKrigeOptions().SetNumLocal(local))
                                     : ZqKrigeOptions(ZqGlobalKrigeOptions());
  return ZqCreateKrige<Element>(ZqEuclideanDistance(), options, simple);
}

// A fixed kernel, so that a model refitted with fantasies keeps it.
ZqKrigeKernel Kernel(double nugget = 0.01) { return VarimoTest::NamedKernel("Exponential", 0.5, 1.0, nugget); }

std::unique_ptr<ZqKrigeBase<Element>> Trained(unsigned int local, bool simple, double nugget = 0.01) {
  auto model = MakeModel(local, simple);
  const Data& d = TestData();
  for (std::size_t i = 0; i < d.training.size(); ++i) EXPECT_TRUE(model->AddTraining(d.training[i], d.responses[i]));
  EXPECT_TRUE(model->TrainFixed(Kernel(nugget)));
  return model;
}

ZqSelection Select(const ZqKrigeBase<Element>& model, const std::vector<Element>& pool, ZqSelectionOptions options) {
  ZqPoolInMemory<Element> source(pool);
  return ZqSelectBatch(model, source, options);
}

struct BatchCase {
  const char* name;
  unsigned int local;
  bool simple;
  ZqBatchKind batch;
  ZqAcquisitionKind acquisition;
  // Fewer than the pool: the bounds and replays must find the same picks.
  std::size_t candidates = 20;
};

class SequentialBatch : public ::testing::TestWithParam<BatchCase> {};

// Pick j must be the best member for a model trained on the training set
// plus the fantasies of picks 0..j-1 with the same kernels; its prediction,
// sd and acquisition are that model's.
TEST_P(SequentialBatch, EqualsRefittedModels) {
  const BatchCase& c = GetParam();
  const Data& d = TestData();
  auto model = Trained(c.local, c.simple);
  ZqSelectionOptions options;
  options.batch = c.batch;
  options.acquisition.kind = c.acquisition;
  options.picks = 6;
  options.candidates = c.candidates;
  const ZqSelection chosen = Select(*model, d.pool, options);
  ASSERT_TRUE(chosen.Ok()) << chosen.error;
  ASSERT_EQ(chosen.picks.size(), 6u);

  auto refit = Trained(c.local, c.simple);
  std::vector<double> responses = d.responses;
  const double liar = c.batch == ZqBatchKind::LiarMax   ? *std::max_element(responses.begin(), responses.end())
                     : c.batch == ZqBatchKind::LiarMin ? *std::min_element(responses.begin(), responses.end())
                                                       : std::accumulate(responses.begin(), responses.end(), 0.0) /
                                                             static_cast<double>(responses.size());
  std::set<std::size_t> picked;
  for (const ZqSelectionPick& pick : chosen.picks) {
    ASSERT_TRUE(refit->TrainFixed(Kernel()));
    const double best = ZqBestResponse(responses, false);
    std::size_t top = d.pool.size();
    double topValue = -INFINITY;
    for (std::size_t i = 0; i < d.pool.size(); ++i) {
      if (picked.count(i)) continue;
      const double mean = refit->Predict(d.pool[i]), sd = std::sqrt(std::max(0.0, refit->GetVariance(d.pool[i])));
      const double value = ZqAcquisition(options.acquisition, mean, sd, best);
      if (value > topValue + 1e-12) top = i, topValue = value;
      if (i == pick.index) {
        EXPECT_NEAR(pick.prediction, mean, 1e-8);
        EXPECT_NEAR(pick.sd, sd, 1e-8);
        EXPECT_NEAR(pick.acquisition, value, 1e-8);
      }
    }
    EXPECT_EQ(pick.index, top) << "pick " << picked.size();
    picked.insert(pick.index);
    const double fantasy = c.batch == ZqBatchKind::Believer ? pick.prediction : liar;
    refit->AddTraining(d.pool[pick.index], fantasy);
    responses.push_back(fantasy);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Models, SequentialBatch,
    ::testing::Values(
        BatchCase{"OrdinaryBelieverEI", 0, false, ZqBatchKind::Believer, ZqAcquisitionKind::ExpectedImprovement},
        // A simple model keeps the mean it was trained with through a batch;
        // the liar at the mean response leaves a refitted model's mean as it is.
        BatchCase{"SimpleLiarMeanUCB", 0, true, ZqBatchKind::LiarMean, ZqAcquisitionKind::UpperConfidenceBound},
        BatchCase{"OrdinaryLiarMaxPI", 0, false, ZqBatchKind::LiarMax, ZqAcquisitionKind::ProbabilityOfImprovement},
        BatchCase{"LocalBelieverEI", 8, false, ZqBatchKind::Believer, ZqAcquisitionKind::ExpectedImprovement},
        // The lie at the smallest response pulls down the neighbours of each
        // pick, so that members left out of the few candidates must be
        // replayed and join the batch.
        BatchCase{"OrdinaryLiarMinGreedyFewCandidates", 0, false, ZqBatchKind::LiarMin, ZqAcquisitionKind::Greedy, 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(BatchSelection, PicksRespectExclusionsDuplicatesAndThreads) {
  const Data& d = TestData();
  auto model = Trained(0, false);
  // Member 0 is a copy of a training point, member 2 a copy of member 1.
  std::vector<Element> pool = {d.training[3], d.pool[0], d.pool[0]};
  pool.insert(pool.end(), d.pool.begin() + 1, d.pool.end());
  ZqSelectionOptions options;
  options.acquisition.kind = ZqAcquisitionKind::UpperConfidenceBound;
  options.batch = ZqBatchKind::Believer;
  options.picks = pool.size() - 4;  // all but the copy of a training point, the exclusions and a duplicate
  options.excludeTraining = true;
  options.exclude = {5, 9};
  const ZqSelection all = Select(*model, pool, options);
  ASSERT_TRUE(all.Ok()) << all.error;
  std::set<std::size_t> seen;
  for (const ZqSelectionPick& pick : all.picks) {
    EXPECT_TRUE(seen.insert(pick.index).second) << pick.index;
    EXPECT_NE(pick.index, 0u);
    EXPECT_NE(pick.index, 5u);
    EXPECT_NE(pick.index, 9u);
  }
  EXPECT_FALSE(seen.count(1) && seen.count(2));
  // One more pick than is left.
  ++options.picks;
  EXPECT_EQ(Select(*model, pool, options).error,
            "only " + std::to_string(options.picks - 1) + " members of the pool can be picked, not " +
                std::to_string(options.picks) +
                " (the others are excluded, on a training element, or duplicates of picks)");

  // The top by greedy of a pool whose best member is doubled: the copy only
  // when asked.
  ZqSelectionOptions top;
  top.acquisition.kind = ZqAcquisitionKind::Greedy;
  top.picks = 2;
  const ZqSelection first = Select(*model, pool, top);
  ASSERT_TRUE(first.Ok()) << first.error;
  std::vector<Element> doubled = {pool[first.picks[0].index], pool[first.picks[0].index], pool[first.picks[1].index]};
  EXPECT_EQ(Select(*model, doubled, top).picks[1].index, 2u);
  top.allowDuplicates = true;
  EXPECT_EQ(Select(*model, doubled, top).picks[1].index, 1u);

  // Threads change nothing, for a sequential batch and for Thompson.
  for (ZqBatchKind batch : {ZqBatchKind::Believer, ZqBatchKind::Thompson}) {
    ZqSelectionOptions one;
    one.batch = batch;
    one.picks = 10;
    one.candidates = 40;
    one.seed = 5;
    ZqSelectionOptions three = one;
    three.threads = 3;
    const ZqSelection a = Select(*model, d.pool, one), b = Select(*model, d.pool, three);
    ASSERT_TRUE(a.Ok() && b.Ok()) << a.error << b.error;
    std::set<std::size_t> distinct;
    for (std::size_t j = 0; j < a.picks.size(); ++j) {
      EXPECT_EQ(a.picks[j].index, b.picks[j].index);
      EXPECT_EQ(a.picks[j].acquisition, b.picks[j].acquisition);
      distinct.insert(a.picks[j].index);
    }
    EXPECT_EQ(distinct.size(), 10u);
  }
}

// Without a nugget, copies of training points have posterior covariances
// of rounding noise; the joint draw must still factorise.
TEST(BatchSelection, ThompsonDrawsOnCopiesOfTrainingPoints) {
  const Data& d = TestData();
  auto model = Trained(0, false, 0.0);
  std::vector<Element> pool = d.pool;
  for (std::size_t i = 0; i < 30; ++i) {
    pool.push_back(d.training[i]);
    pool.push_back({d.training[i][0] + 1e-7, d.training[i][1]});
  }
  ZqSelectionOptions options;
  options.batch = ZqBatchKind::Thompson;
  options.picks = 30;
  options.candidates = pool.size();
  const ZqSelection chosen = Select(*model, pool, options);
  ASSERT_TRUE(chosen.Ok()) << chosen.error;
  EXPECT_EQ(chosen.picks.size(), 30u);
}

TEST(BatchSelection, FailuresSayWhy) {
  const Data& d = TestData();
  auto model = Trained(0, false);
  ZqSelectionOptions options;
  options.picks = 0;
  EXPECT_EQ(Select(*model, d.pool, options).error, "the number of picks must be at least 1");
  options.picks = 81;
  EXPECT_EQ(Select(*model, d.pool, options).error, "only 80 members of the pool can be picked, not 81");
  options.picks = 2;
  options.acquisition.kind = ZqAcquisitionKind::Thompson;
  options.batch = ZqBatchKind::Believer;
  EXPECT_EQ(Select(*model, d.pool, options).error,
            "the thompson acquisition is a joint draw: it goes with no batch or the thompson batch, not believer");
  options.batch = ZqBatchKind::Thompson;
  auto local = Trained(8, false);
  EXPECT_EQ(Select(*local, d.pool, options).error,
            "Thompson sampling needs a global model: a local model has no joint posterior over the pool");
  EXPECT_EQ(Select(*MakeModel(0, false), d.pool, options).error, "the model is not trained");
  EXPECT_EQ(Select(*model, {}, options).error, "no member of the pool could be predicted");
}

}  // namespace
}  // namespace Varimo
