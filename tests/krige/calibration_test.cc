// How far a prediction can be trusted. Calibration of held-out predictions
// and conformal intervals: the figures against numpy and scipy
// (tests/data/krige/make_calibration_refs.py), and the coverage guarantee
// over repeated exchangeable draws. The applicability domain: its threshold
// from the training set's leave-one-out nearest distances, copies included,
// and its assessments.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/calibration.h"
#include "varimo/krige/vector_krige.h"

namespace Varimo {
namespace {

TEST(Calibration, FiguresMatchReference) {
  std::vector<double> y, m, v;
  std::map<std::string, double> expected;
  for (const auto& line : VarimoTest::ReadReferenceLines("krige/calibration_refs.txt")) {
    if (line[0] == "row") {
      y.push_back(VarimoTest::ToDouble(line[1]));
      m.push_back(VarimoTest::ToDouble(line[2]));
      v.push_back(VarimoTest::ToDouble(line[3]));
    } else {
      expected[line[1]] = VarimoTest::ToDouble(line[2]);
    }
  }
  ASSERT_EQ(y.size(), 40u);
  const ZqCalibration c = ZqSummarizeCalibration(y, m, v);
  EXPECT_EQ(c.counted, 40u);
  EXPECT_DOUBLE_EQ(c.coverage50, expected["coverage50"]);
  EXPECT_DOUBLE_EQ(c.coverage80, expected["coverage80"]);
  EXPECT_DOUBLE_EQ(c.coverage90, expected["coverage90"]);
  EXPECT_DOUBLE_EQ(c.coverage95, expected["coverage95"]);
  EXPECT_TRUE(VarimoTest::WithinRelative(c.miscalibrationArea, expected["area"], 1e-12));
  EXPECT_TRUE(VarimoTest::WithinRelative(c.spearmanErrorSd, expected["spearman"], 1e-12));
  EXPECT_TRUE(VarimoTest::WithinRelative(c.meanNegativeLogDensity, expected["nlpd"], 1e-12));

  const ZqConformalIntervals conformal(y, m, v);
  EXPECT_EQ(conformal.GetNumScores(), 40u);
  EXPECT_DOUBLE_EQ(conformal.GetScoreQuantile(0.1), expected["q10"]);
  EXPECT_DOUBLE_EQ(conformal.GetScoreQuantile(0.2), expected["q20"]);
  EXPECT_DOUBLE_EQ(conformal.GetScoreQuantile(0.5), expected["q50"]);
  EXPECT_TRUE(VarimoTest::WithinRelative(conformal.GetVarianceScale(), expected["scale"], 1e-12));
  const auto [lower, upper] = conformal.GetInterval(5.0, 0.25, 0.1);
  EXPECT_DOUBLE_EQ(lower, 5.0 - 0.5 * expected["q10"]);
  EXPECT_DOUBLE_EQ(upper, 5.0 + 0.5 * expected["q10"]);
  // The simpler option, the normal interval with the fitted variance scale;
  // 1.6448536269514722 is scipy's norm.ppf(0.95).
  const auto [normalLower, normalUpper] = conformal.GetScaledNormalInterval(5.0, 0.25, 0.1);
  const double normalHalf = 1.6448536269514722 * std::sqrt(expected["scale"] * 0.25);
  EXPECT_NEAR(normalLower, 5.0 - normalHalf, 1e-12);
  EXPECT_NEAR(normalUpper, 5.0 + normalHalf, 1e-12);
}

TEST(Calibration, EdgeCases) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  // Too few scores for the level: the interval is the whole line.
  const ZqConformalIntervals few({1.0, 2.0, 3.0}, {1.5, 2.5, 2.0}, {1.0, 1.0, 1.0});
  EXPECT_EQ(few.GetScoreQuantile(0.1), kInf);
  EXPECT_EQ(few.GetInterval(0.0, 1.0, 0.1), std::make_pair(-kInf, kInf));
  // (n + 1)(1 - alpha) whole: the 3rd of 3 scores at alpha 0.25.
  EXPECT_DOUBLE_EQ(few.GetScoreQuantile(0.25), 1.0);
  EXPECT_TRUE(std::isnan(few.GetScoreQuantile(1.0)));
  EXPECT_EQ(ZqCheckIntervalAlpha(0.0), "alpha must lie strictly between 0 and 1, not 0");
  EXPECT_EQ(ZqCheckIntervalAlpha(0.1), "");
  EXPECT_FALSE(ZqConformalIntervals().IsFitted());
  EXPECT_TRUE(std::isnan(ZqSummarizeCalibration({}, {}, {}).miscalibrationArea));
}

// On exchangeable data the conformal interval covers a new value with
// probability at least 1 - alpha, whatever the errors' law: here they are
// Student t with 3 degrees of freedom and twice as wide as the sd says.
TEST(Calibration, ConformalCoverageHoldsOnExchangeableDraws) {
  std::mt19937_64 engine(29);
  std::student_t_distribution<double> noise(3.0);
  std::uniform_real_distribution<double> spread(0.2, 1.5);
  auto draw = [&](std::vector<double>& y, std::vector<double>& m, std::vector<double>& v, int n) {
    y.clear(), m.clear(), v.clear();
    for (int i = 0; i < n; ++i) {
      const double sd = spread(engine);
      m.push_back(0.0);
      v.push_back(sd * sd);
      y.push_back(2.0 * sd * noise(engine));
    }
  };
  for (const double alpha : {0.1, 0.2}) {
    double covered = 0.0, total = 0.0;
    std::vector<double> y, m, v, ty, tm, tv;
    for (int repeat = 0; repeat < 200; ++repeat) {
      draw(y, m, v, 49);
      const ZqConformalIntervals conformal(y, m, v);
      draw(ty, tm, tv, 100);
      for (std::size_t i = 0; i < ty.size(); ++i) {
        const auto [lower, upper] = conformal.GetInterval(tm[i], tv[i], alpha);
        covered += ty[i] >= lower && ty[i] <= upper ? 1.0 : 0.0;
        total += 1.0;
      }
    }
    // Expected ceil(50 (1 - alpha)) / 50; 20000 draws put the mean within
    // about 0.005 of it.
    EXPECT_GE(covered / total, 1.0 - alpha - 0.005) << alpha;
    EXPECT_LE(covered / total, 1.0 - alpha + 0.03) << alpha;
  }
}

using Element = ZqVectorElement;

// Points 0, 1, 1 (a copy), 3 and 10 on a line: the unique elements' nearest
// other distances are 1, 1, 2 and 7 (the copy of 1 is the same element, not
// a neighbour at 0), and their type-8 quantile at 0.5 is 1.5
// (numpy.quantile(..., method="median_unbiased")).
std::unique_ptr<ZqKrigeBase<Element>> LineModel(unsigned int local) {
  ZqKrigeOptions options = local > 0 ? ZqKrigeOptions(ZqLocalKrigeOptions().SetNumLocal(local))
                                     : ZqKrigeOptions(ZqGlobalKrigeOptions());
  auto model = ZqCreateKrige<Element>(ZqEuclideanDistance(), options, false);
  const double xs[] = {0.0, 1.0, 1.0, 3.0, 10.0}, ys[] = {0.0, 1.0, 1.2, 2.0, 1.0};
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(model->AddTraining({xs[i]}, ys[i]));
  EXPECT_TRUE(model->Train());
  return model;
}

TEST(ApplicabilityDomain, ThresholdLeavesEachElementOutAndNeedsTwoElements) {
  ZqDomainOptions half;
  half.quantile = 0.5;
  for (unsigned int local : {0u, 4u}) {
    auto model = LineModel(local);
    const ZqApplicabilityDomain domain = ZqApplicabilityDomain::FromModel(*model, half);
    EXPECT_EQ(domain.GetNumElements(), 4u) << local;
    EXPECT_DOUBLE_EQ(domain.GetThreshold(), 1.5) << local;
    const ZqDomainAssessment near = domain.Assess(model->GetKrigeResult({2.4}));
    EXPECT_NEAR(near.nearestDistance, 0.6, 1e-12);
    EXPECT_NEAR(near.nearestSimilarity, 0.4, 1e-12);
    EXPECT_TRUE(near.inDomain);
    EXPECT_EQ(near.withinRadius, 2u);  // 1 and 3 within 1.5 of 2.4
    EXPECT_GT(near.sdRatio, 0.0);
    EXPECT_LT(near.sdRatio, 1.0);
    const ZqDomainAssessment far = domain.Assess(model->GetKrigeResult({5.0}));
    EXPECT_DOUBLE_EQ(far.nearestDistance, 2.0);
    EXPECT_FALSE(far.inDomain);
    // On a training element the prediction is (nearly) certain.
    EXPECT_LT(domain.Assess(model->GetKrigeResult({3.0})).sdRatio, far.sdRatio);
  }
  // The default 95 % of four distances is the largest, 7.
  EXPECT_DOUBLE_EQ(ZqApplicabilityDomain::FromModel(*LineModel(0)).GetThreshold(), 7.0);

  // Too few elements give no threshold.
  const Element a{0.0}, b{0.0};
  EXPECT_TRUE(ZqNearestOtherDistances<Element>({&a, &b}, ZqEuclideanDistance()).empty());
  const ZqApplicabilityDomain none({}, ZqDomainOptions());
  EXPECT_TRUE(std::isnan(none.GetThreshold()));
  EXPECT_FALSE(none.Assess({0.0}, 0.0, 1.0).inDomain);
  // So does a quantile that is not a probability.
  for (double quantile : {-0.1, 1.5, std::nan("")}) {
    ZqDomainOptions options;
    options.quantile = quantile;
    EXPECT_TRUE(std::isnan(ZqApplicabilityDomain({1.0, 1.0, 2.0, 7.0}, options).GetThreshold())) << quantile;
  }
}

}  // namespace
}  // namespace Varimo
