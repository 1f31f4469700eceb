// Kernels by likelihood: the profile log-likelihood and its maximum against
// numpy direct solves and a scipy search (tests/data/krige/make_likelihood_refs.py),
// the refusals of data it cannot fit, and global models trained with the
// kernel found; the default candidates are covariances under their distances.
#include <Eigen/Eigenvalues>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "drift_local_refs.h"
#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/krige_impl.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/krige/minmax_distance.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Element = std::vector<double>;
using VarimoTest::NamedKernel;
using VarimoTest::ToDouble;
constexpr double kError = -99.0;
constexpr unsigned int kMissing = 0xFFFFFFFF;

struct References {
  std::vector<Element> points;
  std::vector<double> responses;
  std::vector<std::vector<std::string>> logliks, optima;
};

const References& Refs() {
  static const References refs = [] {
    References r;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("krige/likelihood_refs.txt")) {
      if (tokens[0] == "point") {
        r.points.push_back({ToDouble(tokens[1]), ToDouble(tokens[2])});
        r.responses.push_back(ToDouble(tokens[3]));
      } else {
        (tokens[0] == "loglik" ? r.logliks : r.optima).push_back(tokens);
      }
    }
    return r;
  }();
  return refs;
}

ZqLikelihoodData DataFor(const std::string& mean) {
  const References& refs = Refs();
  const Eigen::Index n = static_cast<Eigen::Index>(refs.points.size());
  ZqLikelihoodData data;
  data.distances.resize(n, n);
  data.responses.resize(n);
  if (mean != "simple") data.drift.resize(n, mean == "ordinary" ? 1 : 3);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = 0; j < n; ++j) data.distances(i, j) = ZqEuclideanDistance()(refs.points[i], refs.points[j]);
    data.responses(i) = refs.responses[i];
    if (mean == "simple") continue;
    data.drift(i, 0) = 1.0;
    if (mean == "universal") data.drift.row(i).tail(2) << refs.points[i][0], refs.points[i][1];
  }
  return data;
}

double Longest(const ZqLikelihoodData& data) { return data.distances.maxCoeff(); }

ZqKrigeKernel Shape(const std::string& name) {
  return name == "Linear" ? ZqKrigeKernel(ZqKrigeKernelType::Linear) : NamedKernel(name, 1.0, 1.0, 0.0);
}

TEST(ProfileLikelihood, MatchesDirectSolves) {
  ASSERT_EQ(Refs().logliks.size(), 36u);
  for (const auto& tokens : Refs().logliks) {
    SCOPED_TRACE(tokens[1] + " " + tokens[2] + " " + tokens[3]);
    // The kernel's own parameters play no part.
    ZqKrigeKernel kernel = Shape(tokens[1]);
    kernel.SetSill(7.0);
    kernel.SetNugget(3.0);
    const double value = ZqProfileLogLikelihood(DataFor(tokens[2]), kernel, ToDouble(tokens[3]));
    EXPECT_NEAR(value, ToDouble(tokens[4]), 1e-9 * std::fabs(ToDouble(tokens[4])));
  }
  const ZqLikelihoodData data = DataFor("ordinary");
  EXPECT_EQ(ZqProfileLogLikelihood(data, Shape("Linear"), 0.0), -INFINITY);
  EXPECT_EQ(ZqProfileLogLikelihood(data, Shape("Linear"), INFINITY), -INFINITY);
  // Numerically singular: the Gaussian kernel of a long range on distinct
  // points, and P = all ones from a linear kernel far longer than the data.
  EXPECT_EQ(ZqProfileLogLikelihood(data, Shape("Gaussian"), 2.5), -INFINITY);
  EXPECT_EQ(ZqProfileLogLikelihood(data, Shape("Linear"), 1e20), -INFINITY);
  // A mean's model with two columns equal but for rounding-level noise is
  // rank deficient in all but name.
  ZqLikelihoodData twin = DataFor("universal");
  twin.drift.col(2) = twin.drift.col(1) + 1e-7 * twin.drift.col(2);
  EXPECT_EQ(ZqProfileLogLikelihood(twin, Shape("Exponential"), 0.8), -INFINITY);
}

// The search over one shape reaches the reference maximum. For the smooth
// kernels, at the reference's range and with its s2 as the sill; a bounded
// kernel's likelihood has peaks between the kinks where the range passes a
// pair's distance, and one narrower than the grid's step may be missed.
TEST(RankByLikelihood, OneShapeReachesTheMaximum) {
  ASSERT_EQ(Refs().optima.size(), 12u);
  for (const auto& tokens : Refs().optima) {
    SCOPED_TRACE(tokens[1] + " " + tokens[2]);
    const ZqLikelihoodData data = DataFor(tokens[2]);
    const ZqKrigeKernel shape = Shape(tokens[1]);
    const std::vector<ZqLikelihoodFit> ranked = ZqRankKernelsByLikelihood(data, {&shape});
    ASSERT_EQ(ranked.size(), 1u);
    const ZqLikelihoodFit& fit = ranked[0];
    EXPECT_EQ(fit.kernel.GetName(), tokens[1]);
    EXPECT_EQ(fit.kernel.GetNugget(), 0.0);
    EXPECT_EQ(ZqProfileLogLikelihood(data, shape, fit.kernel.GetRange()), fit.logLikelihood);
    const double best = ToDouble(tokens[4]);
    EXPECT_LE(fit.logLikelihood, best + 1e-9);
    const bool smooth = tokens[1] == "Exponential" || tokens[1] == "Gaussian";
    EXPECT_GE(fit.logLikelihood, best - (smooth ? 1e-4 : 0.15));
    if (smooth) {
      EXPECT_NEAR(std::log2(fit.kernel.GetRange() / Longest(data)), ToDouble(tokens[3]), 0.01);
      EXPECT_NEAR(fit.kernel.GetSill(), ToDouble(tokens[5]), 0.005 * ToDouble(tokens[5]));
    }
  }
}

// Smooth responses without noise: the Gaussian kernel's likelihood keeps
// rising as its range grows and the covariance matrix nears singularity.
// The fit stops where the model still trusts its weights: trained with the
// kernel found, it does not warn.
TEST(RankByLikelihood, StopsShortOfNearlySingularMatrices) {
  const References& refs = Refs();
  ZqLikelihoodData data = DataFor("ordinary");
  ZqOrdinaryKrige<Element> model(ZqEuclideanDistance(), kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < refs.points.size(); ++i) {
    const double x = refs.points[i][0], y = refs.points[i][1];
    data.responses(static_cast<Eigen::Index>(i)) = std::sin(3.0 * x) + std::cos(2.0 * y) + 0.5 * x;
    ASSERT_TRUE(model.AddTraining(refs.points[i], data.responses(static_cast<Eigen::Index>(i))));
  }
  const ZqKrigeKernel gaussian = Shape("Gaussian");
  const std::vector<ZqLikelihoodFit> ranked = ZqRankKernelsByLikelihood(data, {&gaussian});
  ASSERT_EQ(ranked.size(), 1u);
  Corvane::ZqScopedThrowCapture capture;
  ASSERT_TRUE(model.TrainFixed(ranked[0].kernel));
  EXPECT_TRUE(capture.Texts(Corvane::ZqThrowLevel::Warning).empty());
  // A fifth longer, the model warns, and the range is no candidate.
  ZqKrigeKernel longer = ranked[0].kernel;
  longer.SetRange(1.2 * longer.GetRange());
  ASSERT_TRUE(model.TrainFixed(longer));
  EXPECT_THAT(capture.Texts(Corvane::ZqThrowLevel::Warning),
              ::testing::ElementsAre(::testing::HasSubstr("the covariance matrix is nearly singular")));
  EXPECT_EQ(ZqProfileLogLikelihood(data, gaussian, longer.GetRange()), -INFINITY);
}

// Several shapes come ranked by their maxima, the reference's order.
TEST(RankByLikelihood, ShapesComeInTheOrderOfTheirMaxima) {
  std::map<std::string, std::vector<std::pair<double, std::string>>> maxima;
  for (const auto& tokens : Refs().optima) maxima[tokens[2]].emplace_back(-ToDouble(tokens[4]), tokens[1]);
  const ZqKrigeKernel shapes[] = {Shape("Linear"), Shape("Exponential"), Shape("Gaussian"), Shape("Spherical")};
  for (auto& [mean, expected] : maxima) {
    SCOPED_TRACE(mean);
    std::sort(expected.begin(), expected.end());
    const std::vector<ZqLikelihoodFit> ranked =
        ZqRankKernelsByLikelihood(DataFor(mean), {&shapes[0], &shapes[1], &shapes[2], &shapes[3]});
    ASSERT_EQ(ranked.size(), 4u);
    for (std::size_t k = 0; k < 4; ++k) EXPECT_EQ(ranked[k].kernel.GetName(), expected[k].second) << k;
  }
}

TEST(RankByLikelihood, DataItCannotFitAreRefusedWithTheReason) {
  const ZqKrigeKernel shape = Shape("Exponential");
  const auto refused = [&](const ZqLikelihoodData& data, const std::string& reason) {
    EXPECT_EQ(ZqCheckLikelihoodData(data), reason);
    EXPECT_TRUE(ZqRankKernelsByLikelihood(data, {&shape}).empty());
    EXPECT_EQ(ZqProfileLogLikelihood(data, shape, 1.0), -INFINITY);
  };
  ZqLikelihoodData data = DataFor("universal");
  data.drift.conservativeResize(29, 3);
  refused(data, "the mean's model has not one row per element");
  data = DataFor("ordinary");
  data.distances.conservativeResize(30, 29);
  refused(data, "the distances are not an n x n matrix");
  data = DataFor("ordinary");
  data.responses(4) = NAN;
  refused(data, "the data are not all finite");
  data = DataFor("ordinary");
  data.distances(3, 5) += 1e-9;
  refused(data, "the distances are not symmetric");
  data.distances(3, 5) = data.distances(5, 3) = 0.0;
  refused(data, "two elements are at distance 0 or less");
  data = DataFor("ordinary");
  data.distances(2, 2) = 1e-3;
  refused(data, "a distance of an element to itself is not 0");
  data = DataFor("simple");
  data.responses.setConstant(2.5);
  refused(data, "all responses are equal");
  data = DataFor("universal");
  data.distances = data.distances.topLeftCorner(3, 3).eval();
  data.responses = data.responses.head(3).eval();
  data.drift = data.drift.topRows(3).eval();
  refused(data, "too few distinct elements (3)");
  EXPECT_EQ(ZqCheckLikelihoodData(DataFor("universal")), "");
  // Data it can fit, but no candidate to fit.
  EXPECT_TRUE(ZqRankKernelsByLikelihood(DataFor("ordinary"), {}).empty());
}

// The smallest eigenvalue of 1 - kernel(d) over the distances, with the
// kernel's sill 1 and nugget 0 at the range given.
double SmallestEigenvalue(const ZqKrigeKernelBase& shape, const Eigen::MatrixXd& distances, double range) {
  std::unique_ptr<ZqKrigeKernelBase> kernel(shape.CreateCopy());
  kernel->SetSill(1.0);
  kernel->SetNugget(0.0);
  kernel->SetRange(range);
  const Eigen::MatrixXd covariance = distances.unaryExpr([&](double d) { return 1.0 - kernel->GetValue(d); });
  return Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(covariance, Eigen::EigenvaluesOnly).eigenvalues().minCoeff();
}

TEST(LikelihoodCandidates, AreCovariancesUnderEveryDistanceOfTheirClass) {
  std::vector<std::string> names;
  for (const ZqKrigeKernel& kernel : ZqLikelihoodCandidates(ZqDistanceClass::NegativeType)) {
    names.push_back(kernel.GetName());
  }
  EXPECT_THAT(names, ::testing::ElementsAre("Exponential", "StudentT(0.500000000000)", "StudentT(1.000000000000)"));
  names.clear();
  for (const ZqKrigeKernel& kernel : ZqLikelihoodCandidates(ZqDistanceClass::Euclidean)) {
    names.push_back(kernel.GetName());
  }
  EXPECT_THAT(names, ::testing::ElementsAre("Exponential", "StudentT(0.500000000000)", "StudentT(1.000000000000)",
                                            "Gaussian", "Cauchy"));

  // 40 fingerprints of 30 bits, each set with probability 0.3, and their
  // Tanimoto distances; and 40 points in ten dimensions.
  std::mt19937 generator(5);
  std::vector<Element> bits(40, Element(30)), points(40, Element(10));
  for (Element& row : bits) {
    for (double& bit : row) bit = generator() % 10 < 3 ? 1.0 : 0.0;
  }
  for (Element& row : points) {
    for (double& x : row) x = static_cast<double>(generator() % 1000) / 1000.0;
  }
  auto table = [](const std::vector<Element>& rows, const ZqKrigeDistanceFxn<Element>& distance) {
    Eigen::MatrixXd d(rows.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (std::size_t j = 0; j < rows.size(); ++j) d(i, j) = distance(rows[i], rows[j]);
    }
    return d;
  };
  const Eigen::MatrixXd tanimoto = table(bits, ZqMinMaxDistance()), euclidean = table(points, ZqEuclideanDistance());
  for (const double scale : {0.25, 0.5, 1.0, 2.0, 8.0, 16.0}) {
    SCOPED_TRACE(scale);
    for (const ZqKrigeKernel& kernel : ZqLikelihoodCandidates(ZqDistanceClass::NegativeType)) {
      EXPECT_GT(SmallestEigenvalue(kernel, tanimoto, scale * tanimoto.maxCoeff()), 1e-6) << kernel.GetName();
    }
    for (const ZqKrigeKernel& kernel : ZqLikelihoodCandidates(ZqDistanceClass::Euclidean)) {
      EXPECT_GT(SmallestEigenvalue(kernel, euclidean, scale * euclidean.maxCoeff()), -1e-10) << kernel.GetName();
    }
  }
  // What the classes leave out is not: the Gaussian kernel on the Tanimoto
  // distances, and the power kernel of power 4, at ranges the fit searches.
  EXPECT_LT(SmallestEigenvalue(Shape("Gaussian"), tanimoto, 2.0 * tanimoto.maxCoeff()), -1e-3);
  EXPECT_LT(SmallestEigenvalue(ZqKrigePowerKernel(4.0), tanimoto, tanimoto.maxCoeff()), -1e-3);
  // Nor are the linear and spherical kernels, on every non-empty
  // fingerprint of 6 bits at range 0.5 (numpy: smallest eigenvalues -0.95
  // and -0.27), where the candidates are.
  std::vector<Element> all6;
  for (unsigned int mask = 1; mask < 64; ++mask) {
    Element row(6);
    for (unsigned int b = 0; b < 6; ++b) row[b] = (mask >> b) & 1u;
    all6.push_back(row);
  }
  const Eigen::MatrixXd every = table(all6, ZqMinMaxDistance());
  EXPECT_LT(SmallestEigenvalue(Shape("Linear"), every, 0.5), -0.1);
  EXPECT_LT(SmallestEigenvalue(Shape("Spherical"), every, 0.5), -0.1);
  for (const ZqKrigeKernel& kernel : ZqLikelihoodCandidates(ZqDistanceClass::NegativeType)) {
    for (const double range : {0.25, 0.5, 1.0}) EXPECT_GT(SmallestEigenvalue(kernel, every, range), 1e-3);
  }
}

// A global model trained by likelihood predicts with the kernel of the fit
// over the default candidates, with the mean's model of its kind.
TEST(TrainByLikelihood, GlobalModelsTrainWithTheKernelFound) {
  const References& refs = Refs();
  ZqOrdinaryKrige<Element> ordinary(ZqEuclideanDistance(), kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
  ZqSimpleKrige<Element> simple(ZqEuclideanDistance(), kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
  ZqUniversalKrige<Element> universal(ZqEuclideanDistance(), ZqVecPropertyListFxn(2), kError, kMissing, false,
                                      ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < refs.points.size(); ++i) {
    ASSERT_TRUE(ordinary.AddTraining(refs.points[i], refs.responses[i]));
    ASSERT_TRUE(simple.AddTraining(refs.points[i], refs.responses[i]));
    ASSERT_TRUE(universal.AddTraining(refs.points[i], refs.responses[i]));
  }
  for (const auto& [mean, model] : std::vector<std::pair<std::string, ZqStandardKrigeImpl<Element, ZqVectorStorage>*>>{
           {"simple", &simple}, {"ordinary", &ordinary}, {"universal", &universal}}) {
    SCOPED_TRACE(mean);
    const ZqLikelihoodData data = ZqLikelihoodDataOf(*model);
    const ZqLikelihoodData expected = DataFor(mean);
    EXPECT_LT((data.distances - expected.distances).cwiseAbs().maxCoeff(), 1e-15);
    EXPECT_EQ(data.responses, expected.responses);
    EXPECT_EQ(data.drift, expected.drift);

    ASSERT_TRUE(ZqTrainByLikelihood(*model));
    // The kernel is the first of the default candidates' ranking that the
    // model trains with.
    const std::vector<ZqKrigeKernel> kernels = ZqLikelihoodCandidates(ZqDistanceClass::NegativeType);
    std::vector<const ZqKrigeKernelBase*> candidates;
    for (const ZqKrigeKernel& kernel : kernels) candidates.push_back(&kernel);
    const ZqKrigeKernel used = model->GetKernel();
    bool found = false;
    for (const ZqLikelihoodFit& fit : ZqRankKernelsByLikelihood(expected, candidates)) {
      if (fit.kernel.GetName() != used.GetName()) {
        std::unique_ptr<ZqKrigeBase<Element>> probe(model->CreateKrigeCopy());
        EXPECT_FALSE(probe->TrainFixed(fit.kernel)) << fit.kernel.GetName() << " ranks above " << used.GetName();
        continue;
      }
      EXPECT_EQ(used.GetRange(), fit.kernel.GetRange());
      EXPECT_EQ(used.GetSill(), fit.kernel.GetSill());
      EXPECT_EQ(used.GetNugget(), 0.0);
      found = true;
      break;
    }
    EXPECT_TRUE(found);
    EXPECT_TRUE(model->GetKrigeResult({0.5, 0.5}).Valid());
  }

  // Through the base, with the elements borrowed, and the ranking: the
  // first trainable kernel of the ranking, the ranking that of the data.
  const ZqKrigeKernel shapes[] = {Shape("Spherical"), Shape("Exponential")};
  ZqOrdinaryKrige<Element, ZqKrigeUnmanagedPtrElementStorage<Element>> borrowed(
      ZqEuclideanDistance(), kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < refs.points.size(); ++i) borrowed.AddTraining(refs.points[i], refs.responses[i]);
  std::vector<ZqKrigeKernel> ranking;
  ZqKrigeBase<Element>& base = borrowed;
  ASSERT_TRUE(ZqTrainByLikelihood(base, {&shapes[0], &shapes[1]}, &ranking));
  const std::vector<ZqLikelihoodFit> expected = ZqRankKernelsByLikelihood(DataFor("ordinary"), {&shapes[0], &shapes[1]});
  ASSERT_EQ(ranking.size(), 2u);
  for (std::size_t k = 0; k < 2; ++k) {
    EXPECT_EQ(ranking[k].GetName(), expected[k].kernel.GetName());
    EXPECT_EQ(ranking[k].GetRange(), expected[k].kernel.GetRange());
  }
  EXPECT_EQ(borrowed.GetKernel().GetName(), ranking[0].GetName());

  // Too few elements, or a local model: a warning with the reason, and the
  // model untouched.
  Corvane::ZqScopedThrowCapture capture;
  const auto local = ZqCreateKrige<Element>(ZqEuclideanDistance(), ZqKrigeOptions(ZqLocalKrigeOptions().SetNumLocal(5)),
                                            false);
  for (std::size_t i = 0; i < refs.points.size(); ++i) local->AddTraining(refs.points[i], refs.responses[i]);
  EXPECT_FALSE(ZqTrainByLikelihood(*local));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{
                "ZqTrainByLikelihood, unable to train.  the likelihood fit is for simple, ordinary and universal "
                "kriging models"});
  capture.Clear();
  ZqOrdinaryKrige<Element> two(ZqEuclideanDistance(), kError, kMissing, false, ZqKrigeUniqueResponseMethod::Mean);
  two.AddTraining({0.0, 0.0}, 1.0);
  two.AddTraining({1.0, 0.0}, 2.0);
  EXPECT_FALSE(ZqTrainByLikelihood(two));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{"ZqTrainByLikelihood, unable to train.  too few distinct elements (2)"});
  EXPECT_FALSE(two.IsTrained());
  EXPECT_EQ(two.GetContainer().GetNumData(), 2u);
}

}  // namespace
}  // namespace Varimo
