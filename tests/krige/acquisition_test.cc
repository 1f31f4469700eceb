// Acquisition functions: expected improvement and probability of
// improvement against 40-digit values (tests/data/krige/make_acquisition_refs.py)
// and a Monte Carlo estimate, their edge cases, and the option checks.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/acquisition.h"

namespace Varimo {
namespace {

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

}  // namespace
}  // namespace Varimo
