#include "varimo/numerics/minimizer.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "reference_file.h"
#include "test_support.h"

namespace Varimo {
namespace {

// Golden section narrows the bracket to a relative width of 3e-8; near a
// minimum the function is flat to second order, so the step is known to
// about that width and the value to rounding.
constexpr double kStepTolerance = 1e-6;
constexpr double kValueTolerance = 1e-12;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A search along the line from 0 in direction 1: whether it succeeded, the
// step and the value it gave (the value starts out as -123, so that an
// untouched one shows); and how often it evaluated g.
std::tuple<bool, double, double> Searched(const ZqGoldenSectionSearch& search, const std::function<double(double)>& g,
                                          double firstStep, int* calls = nullptr) {
  double origin = 0.0, direction = 1.0, value = -123.0, step = firstStep;
  int evaluations = 0;
  Minarc::NumericFunc1 f(1, [&](const double* x) { return ++evaluations, g(x[0]); });
  const bool ok = search(1, &origin, &direction, &value, &step, f);
  if (calls != nullptr) *calls = evaluations;
  return {ok, step, value};
}

ZqGoldenSectionSearch WithLimit(double limit) {
  ZqGoldenSectionSearch search;
  search.SetUpperLimOnOneDimSteps(limit);
  return search;
}

TEST(ZqGoldenSectionSearch, DefaultsAndCopies) {
  ZqGoldenSectionSearch search;
  EXPECT_EQ(search.GetUpperLimOnOneDimSteps(), 10000.0);
  EXPECT_EQ(search.GetRelTolOnSolutionStepAccuracy(), 3e-08);
  EXPECT_EQ(search.GetMaxIterations(), 1000u);
  EXPECT_TRUE(search.SetUpperLimOnOneDimSteps(-5.0));  // not tested
  EXPECT_TRUE(search.SetRelTolOnSolutionStepAccuracy(0.5));
  EXPECT_TRUE(search.SetMaxIterations(7));
  const std::unique_ptr<ZqLineMinimize0> copy(search.CreateCopy());
  const auto* golden = dynamic_cast<const ZqGoldenSectionSearch*>(copy.get());
  ASSERT_NE(golden, nullptr);
  EXPECT_EQ(golden->GetUpperLimOnOneDimSteps(), -5.0);
  EXPECT_EQ(golden->GetRelTolOnSolutionStepAccuracy(), 0.5);
  EXPECT_EQ(golden->GetMaxIterations(), 7u);
}

TEST(ZqGoldenSectionSearch, FindsTheScipyMinimaOfReferenceFunctions) {
  // The one-dimensional functions of tests/data/numerics/line_minima.txt, and
  // the step limit each is searched under.
  const std::map<std::string, std::pair<std::function<double(double)>, double>> functions = {
      {"shifted_quartic", {[](double t) { return std::pow(t - 2.5, 4) + 0.5 * std::pow(t - 2.5, 2) - 1.0; }, 100.0}},
      {"exp_plus_reciprocal", {[](double t) { return std::exp(t / 3.0) + 4.0 / (t + 0.5); }, 100.0}},
      {"cosine_well", {[](double t) { return -std::cos(t) * std::exp(-0.1 * (t - 3.0) * (t - 3.0)); }, 6.0}},
  };
  const auto lines = VarimoTest::ReadReferenceLines("numerics/line_minima.txt");
  ASSERT_EQ(lines.size(), functions.size());
  for (const auto& tokens : lines) {
    SCOPED_TRACE(tokens[0]);
    const auto& [g, limit] = functions.at(tokens[0]);
    int calls = 0;
    const auto [ok, step, value] = Searched(WithLimit(limit), g, 0.1, &calls);
    ASSERT_TRUE(ok);
    EXPECT_NEAR(step, VarimoTest::ToDouble(tokens[1]), kStepTolerance);
    EXPECT_TRUE(VarimoTest::WithinRelative(value, VarimoTest::ToDouble(tokens[2]), kValueTolerance));
    EXPECT_EQ(value, g(step));
    EXPECT_LT(calls, 200);
  }
}

TEST(ZqGoldenSectionSearch, MinimisesAlongADirectionInSeveralVariables) {
  // f(x, y) = (x - 1)^2 + (y - 2)^2 from the origin along (1, 2): t = 1.
  Minarc::NumericFunc1 f(2, [](const double* x) { return (x[0] - 1.0) * (x[0] - 1.0) + (x[1] - 2.0) * (x[1] - 2.0); });
  const double origin[2] = {0.0, 0.0};
  double direction[2] = {1.0, 2.0};
  double value = 0.0, step = 0.5;
  ASSERT_TRUE(ZqGoldenSectionSearch()(2, origin, direction, &value, &step, f));
  EXPECT_NEAR(step, 1.0, kStepTolerance);
  EXPECT_NEAR(value, 0.0, 1e-12);
  EXPECT_EQ(direction[0], 1.0);
  EXPECT_EQ(direction[1], 2.0);
}

TEST(ZqGoldenSectionSearch, FunctionsStillFallingAtTheLimitReturnIt) {
  auto linear = [](double t) { return -t; };
  auto cubic = [](double t) { return -t * t * t; };
  int calls = 0;
  EXPECT_EQ(Searched(WithLimit(50.0), linear, 1.0, &calls), std::make_tuple(true, 50.0, -50.0));
  EXPECT_EQ(calls, 5);
  // Unbounded, under the default limit.
  EXPECT_EQ(std::get<1>(Searched(ZqGoldenSectionSearch(), cubic, 1.0)), 10000.0);
}

TEST(ZqGoldenSectionSearch, NoDescentOrNaNLeavesTheOutputsAlone) {
  auto constant = [](double) { return 3.0; };
  auto rising = [](double t) { return t; };
  int calls = 0;
  EXPECT_EQ(Searched(ZqGoldenSectionSearch(), constant, 1.0, &calls), std::make_tuple(false, 1.0, -123.0));
  EXPECT_EQ(calls, 2);
  // A first step at or past the limit, or NaN, evaluates nothing.
  EXPECT_EQ(Searched(WithLimit(2.0), rising, 2.0, &calls), std::make_tuple(false, 2.0, -123.0));
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(Searched(WithLimit(2.0), rising, 3.0, &calls), std::make_tuple(false, 3.0, -123.0));
  EXPECT_EQ(calls, 0);
  const auto [ok, step, value] = Searched(WithLimit(2.0), rising, kNaN, &calls);
  EXPECT_TRUE(!ok && std::isnan(step) && value == -123.0 && calls == 0);
  // A function that is NaN everywhere never descends.
  EXPECT_FALSE(std::get<0>(Searched(ZqGoldenSectionSearch(), [](double) { return kNaN; }, 1.0)));
}

TEST(ZqGoldenSectionSearch, IterationLimitFailsWithTheBadValue) {
  auto quadratic = [](double t) { return (t - 3.0) * (t - 3.0); };
  ZqGoldenSectionSearch search = WithLimit(10.0);
  for (unsigned long limit : {0ul, 1ul, 5ul}) {
    search.SetMaxIterations(limit);
    EXPECT_EQ(Searched(search, quadratic, 0.5), std::make_tuple(false, DBL_MAX, DBL_MAX)) << limit;
  }
  // With a limit of 0 a bracket that already meets the stopping test passes.
  search.SetMaxIterations(0);
  search.SetRelTolOnSolutionStepAccuracy(10.0);
  const auto [ok, step, value] = Searched(search, quadratic, 0.5);
  EXPECT_TRUE(ok);
  EXPECT_EQ(value, quadratic(step));
}

TEST(ZqGoldenSectionSearch, FlatBottomKeepsTheLowerPart) {
  // Falls to 0 at t = 1, flat up to 9, rises after: equal values keep the
  // lower part of the interval, so the search ends at the left edge.
  auto g = [](double t) { return std::max(0.0, 1.0 - t) + std::max(0.0, t - 9.0); };
  const auto [ok, step, value] = Searched(WithLimit(20.0), g, 0.5);
  ASSERT_TRUE(ok);
  EXPECT_EQ(value, 0.0);
  EXPECT_NEAR(step, 1.0, kStepTolerance);
}

TEST(ZqGetFunc0ValFromLineStep, BuildsThePointAndPassesNullForNoVariables) {
  Minarc::NumericFunc1 f(3, [](const double* x) { return 100.0 * x[0] + 10.0 * x[1] + x[2]; });
  const double origin[3] = {1.0, 2.0, 3.0}, direction[3] = {1.0, 0.0, -1.0};
  EXPECT_EQ(ZqGetFunc0ValFromLineStep(2.0, 3, origin, direction, f), 300.0 + 20.0 + 1.0);
  const double* seen = origin;
  Minarc::NumericFunc1 none(0, [&seen](const double* x) {
    seen = x;
    return 4.0;
  });
  EXPECT_EQ(ZqGetFunc0ValFromLineStep(2.0, 0, origin, direction, none), 4.0);
  EXPECT_EQ(seen, nullptr);
}

// A bracket routine run along the line from 0 in direction 1: its code and
// the bracket, -1s where it wrote none; and how often it evaluated g.
using BracketRoutine = decltype(&ZqBracketLineMin);
std::tuple<int, double, double, double> Bracketed(BracketRoutine routine, const std::function<double(double)>& g,
                                                  double step, double limit, int* calls = nullptr) {
  const double origin = 0.0, direction = 1.0;
  double lo = -1.0, mid = -1.0, hi = -1.0;
  int evaluations = 0;
  Minarc::NumericFunc1 f(1, [&](const double* x) { return ++evaluations, g(x[0]); });
  const int code = routine(lo, mid, hi, 1, step, &origin, &direction, f, limit);
  if (calls != nullptr) *calls = evaluations;
  return {code, lo, mid, hi};
}

TEST(ZqBoundedArgBracketLineMin, ReturnsEachCode) {
  const BracketRoutine bounded = ZqBoundedArgBracketLineMin;
  auto quadratic = [](double t) { return (t - 3.0) * (t - 3.0); };
  auto falling = [](double t) { return -t; };
  int calls = -1;
  EXPECT_EQ(Bracketed(bounded, quadratic, 10.0, 10.0, &calls), std::make_tuple(0, -1.0, -1.0, -1.0));
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(Bracketed(bounded, quadratic, 7.0, 10.0), std::make_tuple(1, -1.0, -1.0, -1.0));
  EXPECT_EQ(Bracketed(bounded, falling, 1.0, 10.0), std::make_tuple(2, -1.0, -1.0, -1.0));
  // f(5) = 4 < f(0) = 9 and f(5) < f(10) = 49: (0, 5, 10).
  EXPECT_EQ(Bracketed(bounded, quadratic, 0.5, 10.0), std::make_tuple(3, 0.0, 5.0, 10.0));
  // Minimum near the start: f(50) >= f(0), so (0, step, limit / 2).
  EXPECT_EQ(Bracketed(bounded, quadratic, 0.5, 100.0), std::make_tuple(3, 0.0, 0.5, 50.0));
  // Minimum near the limit: (limit / 2, limit - step, limit).
  auto late = [](double t) { return (t - 95.0) * (t - 95.0); };
  EXPECT_EQ(Bracketed(bounded, late, 0.5, 100.0), std::make_tuple(3, 50.0, 99.5, 100.0));
}

TEST(ZqBracketLineMin, BracketsAMinimum) {
  for (double centre : {0.7, 5.0, 60.0, 900.0}) {
    SCOPED_TRACE(centre);
    auto g = [centre](double t) { return (t - centre) * (t - centre) + 0.1 * std::pow(t - centre, 4); };
    const auto [code, lo, mid, hi] = Bracketed(ZqBracketLineMin, g, 0.5, 1e6);
    ASSERT_NE(code, 0);
    EXPECT_LT(std::min(lo, hi), mid);
    EXPECT_LT(mid, std::max(lo, hi));
    EXPECT_LT(g(mid), g(lo));
    EXPECT_LT(g(mid), g(hi));
    EXPECT_LE(std::min(lo, hi), centre);
    EXPECT_GE(std::max(lo, hi), centre);
  }
}

TEST(ZqBracketLineMin, FailsWithoutDescentPastTheLimitAndOnNaN) {
  auto rising = [](double t) { return t; };
  auto falling = [](double t) { return -t; };
  EXPECT_EQ(std::get<0>(Bracketed(ZqBracketLineMin, rising, 1.0, 100.0)), 0);
  EXPECT_EQ(std::get<0>(Bracketed(ZqBracketLineMin, falling, 1.0, 100.0)), 0);
  EXPECT_EQ(std::get<0>(Bracketed(ZqBracketLineMin, falling, 1.0, std::numeric_limits<double>::infinity())), 0);
  auto nanBeyondTwo = [](double t) { return t > 2.0 ? kNaN : -t; };
  EXPECT_EQ(std::get<0>(Bracketed(ZqBracketLineMin, nanBeyondTwo, 1.0, 100.0)), 0);
}

}  // namespace
}  // namespace Varimo
