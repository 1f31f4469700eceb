#include "varimo/statistics/quantile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "reference_file.h"
#include "test_support.h"

namespace Varimo {
namespace {

constexpr double kBad = 1.7976931348623157e308;
// numpy computes h and the interpolation in a different order; p itself
// comes from numpy.linspace. Relative agreement to a few units of 1e-15.
constexpr double kQuantileTolerance = 1e-14;

class QuantileAgainstNumpy : public ::testing::TestWithParam<unsigned int> {};

TEST_P(QuantileAgainstNumpy, EveryCaseOfTheType) {
  // Lines of type, p, expected value, n and the n data.
  int checked = 0;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("statistics/quantile_cases.txt")) {
    if (static_cast<unsigned int>(VarimoTest::ToDouble(tokens[0])) != GetParam()) continue;
    const double p = VarimoTest::ToDouble(tokens[1]);
    std::vector<double> data = VarimoTest::ToDoubles(tokens, 4);
    ASSERT_EQ(data.size(), static_cast<std::size_t>(VarimoTest::ToDouble(tokens[3])));
    std::sort(data.begin(), data.end());
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqQuantile(p, data, GetParam()), VarimoTest::ToDouble(tokens[2]),
                                           kQuantileTolerance))
        << "p = " << p << ", n = " << data.size();
    ++checked;
  }
  EXPECT_GT(checked, 40);
}

// Type 3 is checked by hand below: numpy's version rounds differently.
INSTANTIATE_TEST_SUITE_P(HyndmanFanTypes, QuantileAgainstNumpy, ::testing::Values(1u, 2u, 4u, 5u, 6u, 7u, 8u, 9u));

TEST(ZqQuantile, TheDocumentedValuesAndTypeThreeRounding) {
  // Type 8 at 0.25 of {1, 2, 3, 4}: h = 1 + 5/12.
  EXPECT_TRUE(VarimoTest::WithinUlps(ZqQuantile(0.25, {1.0, 2.0, 3.0, 4.0}, 8), 1.0 + 5.0 / 12.0, 2));
  EXPECT_EQ(ZqQuantile(0.5, {5.0, 7.0}, 8), 6.0);
  EXPECT_EQ(ZqQuantile(0.5, {5.0}, 8), -kBad);
  // Type 3, m = -0.5: h = n p - 0.5. n = 4, p = 0.625: h = 2, g = 0, n even -> x(2).
  EXPECT_EQ(ZqQuantile(0.625, {10.0, 20.0, 30.0, 40.0}, 3), 20.0);
  // n = 5, p = 0.5: h = 2, g = 0, n odd -> x(3).
  EXPECT_EQ(ZqQuantile(0.5, {10.0, 20.0, 30.0, 40.0, 50.0}, 3), 30.0);
  // g > 0 -> x(j + 1): n = 4, p = 0.5, h = 1.5 -> x(2).
  EXPECT_EQ(ZqQuantile(0.5, {10.0, 20.0, 30.0, 40.0}, 3), 20.0);
}

TEST(ZqQuantile, ReservedValuesAndNeverReadsPastTheEnd) {
  const std::vector<double> x = {1.0, 2.0, 3.0, 4.0};
  EXPECT_EQ(ZqQuantile(1.0000001, x, 8), kBad);
  EXPECT_EQ(ZqQuantile(std::nan(""), x, 8), kBad);
  EXPECT_EQ(ZqQuantile(0.5, {}, 8), kBad);
  EXPECT_EQ(ZqQuantile(0.5, x, 0), kBad);
  EXPECT_EQ(ZqQuantile(0.5, x, 10), kBad);
  for (unsigned int type = 1; type <= 9; ++type) {
    EXPECT_EQ(ZqQuantile(0.2499, x, type), -kBad) << type;  // below 1/n for every type
    EXPECT_EQ(ZqQuantile(-3.0, x, type), -kBad) << type;
    EXPECT_NE(ZqQuantile(0.25, x, type), -kBad) << type;
  }

  // p = 1 puts j at n for several types; the last element stands in for the
  // missing upper neighbour (the sanitizer build checks the read).
  const std::vector<double> odd = {1.0, 5.0, 9.0};
  for (unsigned int type = 1; type <= 9; ++type) {
    EXPECT_EQ(ZqQuantile(1.0, odd, type), 9.0) << type;
    const double nearEnd = ZqQuantile(1.0 - 1e-15, odd, type);
    EXPECT_LE(nearEnd, 9.0) << type;
    EXPECT_NEAR(nearEnd, 9.0, 1e-13) << type;
  }
}

TEST(QuantileHelpers, InterpolationAndClamping) {
  const std::vector<double> x = {1.0, 2.0, 4.0};
  EXPECT_EQ(ZqGetG(2.75), 0.75);
  EXPECT_EQ(ZqGetG(3.0), 0.0);
  EXPECT_EQ(ZqXBelow(0, x), 1.0);
  EXPECT_EQ(ZqXBelow(2, x), 2.0);
  EXPECT_EQ(ZqXAbove(2, x), 4.0);
  EXPECT_EQ(ZqXAbove(3, x), 4.0);
  EXPECT_EQ(ZqXAbove(std::numeric_limits<long long>::max(), x), 4.0);
  EXPECT_EQ(ZqXBelow(std::numeric_limits<long long>::min(), x), 1.0);
  EXPECT_EQ(ZqXBelow(1, {}), kBad);
  // h = 3 * 0.5 + 0.25 = 1.75: 0.75 * 2 + 0.25 * 1.
  EXPECT_EQ(ZqQHatPiecewiseLinear(0.5, 0.25, x), 1.75);
  EXPECT_EQ(ZqQHatPiecewiseLinear(1e300, 0.0, x), 4.0);
  EXPECT_EQ(ZqQHatPiecewiseLinear(std::nan(""), 0.0, x), kBad);
}

TEST(SmallSamples, EmpiricalCDFAndCenterAndScale) {
  const std::vector<double> x = {1.0, 2.0, 2.0, 3.0};
  EXPECT_EQ(ZqEmpiricalCDF(0.5, x), 0.0);
  EXPECT_EQ(ZqEmpiricalCDF(2.0, x), 0.75);
  EXPECT_EQ(ZqEmpiricalCDF(3.0, x), 1.0);
  EXPECT_EQ(ZqEmpiricalCDF(2.0, {}), kBad);
  EXPECT_EQ(ZqEmpiricalCDF(std::nan(""), x), kBad);

  double center = 0.0, scale = 0.0;
  ZqGetCenterAndScale(center, scale, true, {4.0});
  EXPECT_EQ(center, 4.0);  // the middle element, not through ZqQuantile
  EXPECT_EQ(scale, kBad);
  ZqGetCenterAndScale(center, scale, false, {4.0});
  EXPECT_EQ(center, 4.0);
  EXPECT_EQ(scale, kBad);
  ZqGetCenterAndScale(center, scale, true, {1.0, 2.0, 3.0, 10.0});
  EXPECT_EQ(center, 2.5);
  ZqGetCenterAndScale(center, scale, false, {});
  EXPECT_EQ(center, kBad);
  EXPECT_EQ(scale, kBad);
}

}  // namespace
}  // namespace Varimo
