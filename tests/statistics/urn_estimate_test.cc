#include "varimo/statistics/urn_estimate.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "reference_file.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

constexpr double kBad = 1.7976931348623157e308;
// The bisection stops when its bracket is 0.001 wide.
constexpr double kBisectionWidth = 0.001;

TEST(UrnEstimate, RootOfTheLikelihoodEquationAgainstScipy) {
  const auto lines = VarimoTest::ReadReferenceLines("statistics/urn_reference.txt");
  ASSERT_GE(lines.size(), 9u);
  for (const auto& tokens : lines) {
    ASSERT_EQ(tokens.size(), 3u);
    std::uint64_t u = 0, d = 0;
    ASSERT_TRUE(Corvane::ZqStringToNumber(tokens[0], u));
    ASSERT_TRUE(Corvane::ZqStringToNumber(tokens[1], d));
    EXPECT_NEAR(ZqMaxLikelihoodEstimateOfNumBallsInUrn(u, d), VarimoTest::ToDouble(tokens[2]), kBisectionWidth)
        << u << " of " << d;
  }
}

TEST(UrnEstimate, DegenerateCounts) {
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(5, 5), kBad);
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(5, 0), 0.0);
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(0, 7), 0.0);
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(0, 0), 0.0);
  // More distinct balls than draws cannot happen; the bracket runs out.
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(6, 5), kBad);
  // One ball seen over and over: the urn holds one.
  EXPECT_NEAR(ZqMaxLikelihoodEstimateOfNumBallsInUrn(1, 50), 1.0, kBisectionWidth);
}

TEST(UrnSimulation, CountsDistinctDraws) {
  Numarc::ZqRanNumEngine engine(4);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(engine, 1, 20), 1u);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(engine, 50, 0), 0u);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(engine, 0, 10), 0u);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(engine, 0x80000000u, 10), 0u);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(engine, 0x7FFFFFFFu, 10), 10u);
  // 200 draws from 100 balls: expected 100 (1 - 0.99^200) = 86.6 distinct.
  double sum = 0.0;
  for (int k = 0; k < 200; ++k) {
    const std::uint64_t unique = ZqSimulateNumUniqueDrawsFromUrn(engine, 100, 200);
    ASSERT_LE(unique, 100u);
    sum += static_cast<double>(unique);
  }
  EXPECT_NEAR(sum / 200.0, 86.6, 0.6);
  Numarc::ZqRanNumEngine e1(8), e2(8);
  EXPECT_EQ(ZqSimulateNumUniqueDrawsFromUrn(e1, 1000, 300), ZqSimulateNumUniqueDrawsFromUrn(e2, 1000, 300));
}

TEST(UrnInterval, BracketsTheEstimateAndTheTrueSizeOrIsBad) {
  // 500 distinct balls seen in 700 draws from an urn of 1000.
  Numarc::ZqRanNumEngine engine(31);
  const std::uint64_t unique = ZqSimulateNumUniqueDrawsFromUrn(engine, 1000, 700);
  double min = 0, max = 0, lower = 0, upper = 0;
  const double estimate =
      ZqMaxLikelihoodEstimateOfNumBallsInUrn(engine, min, max, lower, upper, 0.95, 400, unique, 700);
  EXPECT_EQ(estimate, ZqMaxLikelihoodEstimateOfNumBallsInUrn(unique, 700));
  EXPECT_LE(min, lower);
  EXPECT_LT(lower, estimate);
  EXPECT_LT(estimate, upper);
  EXPECT_LE(upper, max);
  EXPECT_LT(lower, 1000.0);
  EXPECT_GT(upper, 1000.0);

  Numarc::ZqRanNumEngine e1(6), e2(6);
  double a[4], b[4];
  ZqMaxLikelihoodEstimateOfNumBallsInUrn(e1, a[0], a[1], a[2], a[3], 0.9, 50, 40, 60);
  ZqMaxLikelihoodEstimateOfNumBallsInUrn(e2, b[0], b[1], b[2], b[3], 0.9, 50, 40, 60);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(a[k], b[k]);

  // No finite estimate or no simulation gives bad bounds.
  EXPECT_EQ(ZqMaxLikelihoodEstimateOfNumBallsInUrn(engine, min, max, lower, upper, 0.95, 10, 5, 5), kBad);
  EXPECT_EQ((std::vector<double>{min, max, lower, upper}), std::vector<double>(4, kBad));
  min = max = lower = upper = 0;
  EXPECT_NEAR(ZqMaxLikelihoodEstimateOfNumBallsInUrn(engine, min, max, lower, upper, 0.95, 0, 5, 6), 13.0942,
              kBisectionWidth);
  EXPECT_EQ((std::vector<double>{min, max, lower, upper}), std::vector<double>(4, kBad));
}

}  // namespace
}  // namespace Varimo
