#include "varimo/statistics/incomplete_beta.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

constexpr double kBad = 1.7976931348623157e308;
// The continued fraction stops at |delta - 1| < 3e-7 and divides by a and b
// rounded to float (relative 6e-8): agreement with scipy to about 1e-6.
constexpr double kBetaTolerance = 1e-6;
// The Lanczos series is good to 2e-10.
constexpr double kGammlnTolerance = 2e-10;

TEST(ZqBetai, AgreesWithScipy) {
  const auto lines = VarimoTest::ReadReferenceLines("statistics/incomplete_beta.txt");
  ASSERT_EQ(lines.size(), 49u);
  Corvane::ZqScopedThrowCapture capture;
  for (const auto& tokens : lines) {
    const std::vector<double> v = VarimoTest::ToDoubles(tokens, 0);
    const double a = v[0], b = v[1], x = v[2];
    EXPECT_NEAR(ZqBetai(a, b, x), v[3], kBetaTolerance) << a << " " << b << " " << x;
    EXPECT_TRUE(VarimoTest::WithinRelative(ZqGammln(a), v[4], kGammlnTolerance)) << a;
  }
  EXPECT_TRUE(capture.Messages().empty());
}

TEST(ZqBetai, OutOfRangeXEndsAndBadShapes) {
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_EQ(ZqBetai(2.0, 3.0, 1.5), 0.0);
  EXPECT_EQ(ZqBetai(2.0, 3.0, -0.1), 0.0);
  EXPECT_EQ(ZqBetai(2.0, 3.0, std::nan("")), 0.0);
  const std::vector<std::string> errors = capture.Texts(Corvane::ZqThrowLevel::Error);
  ASSERT_EQ(errors.size(), 3u);
  EXPECT_EQ(errors[0], "ZqBetai:: x value out of range [0,1]");

  // The ends are exact; bad shapes give the bad value.
  EXPECT_EQ(ZqBetai(2.0, 3.0, 0.0), 0.0);
  EXPECT_EQ(ZqBetai(2.0, 3.0, 1.0), 1.0);
  EXPECT_EQ(ZqBetai(0.0, 3.0, 0.5), kBad);
  EXPECT_EQ(ZqBetai(2.0, -1.0, 0.5), kBad);
  EXPECT_EQ(ZqGammln(0.0), kBad);
  EXPECT_EQ(ZqGammln(-2.5), kBad);
  EXPECT_EQ(ZqBetacf(std::nan(""), 1.0, 0.5), kBad);
}

TEST(ZqBetacf, WarnsWhenTheFractionDoesNotConverge) {
  Corvane::ZqScopedThrowCapture capture;
  const double value = ZqBetacf(1e6, 1e6, 0.5);
  EXPECT_TRUE(std::isfinite(value));
  const std::vector<std::string> warnings = capture.Texts(Corvane::ZqThrowLevel::Warning);
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0], "ZqBetacf:: inputs are too big or not enough iterations.");
}

}  // namespace
}  // namespace Varimo
