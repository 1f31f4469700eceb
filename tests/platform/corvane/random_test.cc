#include "varimo/platform/corvane/random.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvane {
namespace {

TEST(ZqRandom, FixedSeedGivesTheSameStreamOfEvenlySpreadValuesInTheUnitInterval) {
  ZqRandom a(false), b(false);
  a.Seed(0);
  b.Seed(0);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(a.NextFloat(), b.NextFloat());
  b.Seed(1);
  int differ = 0;
  for (int i = 0; i < 100; ++i) differ += a.NextFloat() != b.NextFloat();
  EXPECT_GT(differ, 90);

  // The values stay in [0, 1) and spread evenly.
  ZqRandom r(false);
  r.Seed(12345);
  std::vector<int> deciles(10, 0);
  const int n = 100000;
  for (int i = 0; i < n; ++i) {
    const float f = r.NextFloat();
    ASSERT_GE(f, 0.0f);
    ASSERT_LT(f, 1.0f);
    ++deciles[static_cast<int>(f * 10.0f)];
    const double d = r.NextDouble();
    ASSERT_GE(d, 0.0);
    ASSERT_LT(d, 1.0);
  }
  // Each decile expects 10000 with standard deviation ~95; allow 5 sigma.
  for (int count : deciles) EXPECT_NEAR(count, n / 10, 475);
}

}  // namespace
}  // namespace Corvane
