#include "varimo/numerics/minimizer.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
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

// A function of the step along a line, counting its evaluations.
class CountingFunc : public Minarc::ZqFunc0 {
 public:
  CountingFunc(unsigned int numVar, std::function<double(const double*)> f) : numVar_(numVar), f_(std::move(f)) {}
  unsigned int NumVar() const override { return numVar_; }
  double operator()(const double* x) override {
    ++calls;
    return f_(x);
  }
  int calls = 0;

 private:
  unsigned int numVar_;
  std::function<double(const double*)> f_;
};

CountingFunc OfStep(std::function<double(double)> g) {
  return CountingFunc(1, [g](const double* x) { return g(x[0]); });
}

struct Search {
  double step, value;
  bool ok;
};

Search RunSearch(const ZqGoldenSectionSearch& search, Minarc::ZqFunc0& f, double firstStep, double origin = 0.0) {
  double direction = 1.0, value = -123.0, step = firstStep;
  const bool ok = search(1, &origin, &direction, &value, &step, f);
  return {step, value, ok};
}

// The one-dimensional functions of tests/data/numerics/line_minima.txt.
const std::map<std::string, std::function<double(double)>>& ReferenceFunctions() {
  static const std::map<std::string, std::function<double(double)>> functions = {
      {"shifted_quartic", [](double t) { return std::pow(t - 2.5, 4) + 0.5 * std::pow(t - 2.5, 2) - 1.0; }},
      {"exp_plus_reciprocal", [](double t) { return std::exp(t / 3.0) + 4.0 / (t + 0.5); }},
      {"cosine_well", [](double t) { return -std::cos(t) * std::exp(-0.1 * (t - 3.0) * (t - 3.0)); }},
  };
  return functions;
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
  std::map<std::string, std::pair<double, double>> expected;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("numerics/line_minima.txt")) {
    expected[tokens[0]] = {VarimoTest::ToDouble(tokens[1]), VarimoTest::ToDouble(tokens[2])};
  }
  ASSERT_EQ(expected.size(), ReferenceFunctions().size());
  const std::map<std::string, double> limits = {
      {"shifted_quartic", 100.0}, {"exp_plus_reciprocal", 100.0}, {"cosine_well", 6.0}};
  for (const auto& [name, g] : ReferenceFunctions()) {
    SCOPED_TRACE(name);
    ZqGoldenSectionSearch search;
    search.SetUpperLimOnOneDimSteps(limits.at(name));
    CountingFunc f = OfStep(g);
    const Search r = RunSearch(search, f, 0.1);
    ASSERT_TRUE(r.ok);
    EXPECT_NEAR(r.step, expected.at(name).first, kStepTolerance);
    EXPECT_TRUE(VarimoTest::WithinRelative(r.value, expected.at(name).second, kValueTolerance));
    EXPECT_EQ(r.value, g(r.step));
    EXPECT_LT(f.calls, 200);
  }
}

TEST(ZqGoldenSectionSearch, MinimisesAlongADirectionInSeveralVariables) {
  // f(x, y) = (x - 1)^2 + (y - 2)^2 from the origin along (1, 2): t = 1.
  CountingFunc f(2, [](const double* x) { return (x[0] - 1.0) * (x[0] - 1.0) + (x[1] - 2.0) * (x[1] - 2.0); });
  const double origin[2] = {0.0, 0.0};
  double direction[2] = {1.0, 2.0};
  double value = 0.0, step = 0.5;
  ASSERT_TRUE(ZqGoldenSectionSearch()(2, origin, direction, &value, &step, f));
  EXPECT_NEAR(step, 1.0, kStepTolerance);
  EXPECT_NEAR(value, 0.0, 1e-12);
  EXPECT_EQ(direction[0], 1.0);
  EXPECT_EQ(direction[1], 2.0);
}

TEST(ZqGoldenSectionSearch, FallingToTheLimitReturnsItAfterFiveEvaluations) {
  ZqGoldenSectionSearch search;
  search.SetUpperLimOnOneDimSteps(50.0);
  CountingFunc f = OfStep([](double t) { return -t; });
  const Search r = RunSearch(search, f, 1.0);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.step, 50.0);
  EXPECT_EQ(r.value, -50.0);
  EXPECT_EQ(f.calls, 5);
}

TEST(ZqGoldenSectionSearch, UnboundedFunctionStopsAtTheLimit) {
  CountingFunc f = OfStep([](double t) { return -t * t * t; });
  const Search r = RunSearch(ZqGoldenSectionSearch(), f, 1.0);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.step, 10000.0);
}

TEST(ZqGoldenSectionSearch, ConstantFunctionDoesNotDescend) {
  CountingFunc f = OfStep([](double) { return 3.0; });
  const Search r = RunSearch(ZqGoldenSectionSearch(), f, 1.0);
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.step, 1.0);  // untouched
  EXPECT_EQ(r.value, -123.0);
  EXPECT_EQ(f.calls, 2);
}

TEST(ZqGoldenSectionSearch, FirstStepAtTheLimitEvaluatesNothing) {
  ZqGoldenSectionSearch search;
  search.SetUpperLimOnOneDimSteps(2.0);
  CountingFunc f = OfStep([](double t) { return t; });
  for (double first : {2.0, 3.0, std::nan("")}) {
    const Search r = RunSearch(search, f, first);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.value, -123.0);
  }
  EXPECT_EQ(f.calls, 0);
}

TEST(ZqGoldenSectionSearch, IterationLimitFailsWithTheBadValue) {
  auto quadratic = [](double t) { return (t - 3.0) * (t - 3.0); };
  ZqGoldenSectionSearch search;
  search.SetUpperLimOnOneDimSteps(10.0);
  for (unsigned long limit : {0ul, 1ul, 5ul}) {
    search.SetMaxIterations(limit);
    CountingFunc f = OfStep(quadratic);
    const Search r = RunSearch(search, f, 0.5);
    EXPECT_FALSE(r.ok) << limit;
    EXPECT_EQ(r.step, DBL_MAX);
    EXPECT_EQ(r.value, DBL_MAX);
  }
  // With a limit of 0 a bracket that already meets the stopping test passes.
  search.SetMaxIterations(0);
  search.SetRelTolOnSolutionStepAccuracy(10.0);
  CountingFunc f = OfStep(quadratic);
  const Search r = RunSearch(search, f, 0.5);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, quadratic(r.step));
}

TEST(ZqGoldenSectionSearch, FlatBottomKeepsTheLowerPart) {
  // Falls to 0 at t = 1, flat up to 9, rises after: equal values keep the
  // lower part of the interval, so the search ends at the left edge.
  CountingFunc f = OfStep([](double t) { return std::max(0.0, 1.0 - t) + std::max(0.0, t - 9.0); });
  ZqGoldenSectionSearch search;
  search.SetUpperLimOnOneDimSteps(20.0);
  const Search r = RunSearch(search, f, 0.5);
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.value, 0.0);
  EXPECT_NEAR(r.step, 1.0, kStepTolerance);
}

TEST(ZqGoldenSectionSearch, NaNFunctionsFailOrLoseComparisons) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  CountingFunc everywhere = OfStep([nan](double) { return nan; });
  EXPECT_FALSE(RunSearch(ZqGoldenSectionSearch(), everywhere, 1.0).ok);
  // NaN beyond t = 4: the minimum at 3 is still found.
  CountingFunc beyond = OfStep([nan](double t) { return t > 4.0 ? nan : (t - 3.0) * (t - 3.0); });
  const Search r = RunSearch(ZqGoldenSectionSearch(), beyond, 0.5);
  if (r.ok) {
    EXPECT_FALSE(std::isnan(r.value));
    EXPECT_LE(r.step, 4.0);
  }
}

TEST(ZqGetFunc0ValFromLineStep, BuildsThePointAndPassesNullForNoVariables) {
  CountingFunc f(3, [](const double* x) { return 100.0 * x[0] + 10.0 * x[1] + x[2]; });
  const double origin[3] = {1.0, 2.0, 3.0}, direction[3] = {1.0, 0.0, -1.0};
  EXPECT_EQ(ZqGetFunc0ValFromLineStep(2.0, 3, origin, direction, f), 300.0 + 20.0 + 1.0);
  const double* seen = origin;
  CountingFunc none(0, [&seen](const double* x) {
    seen = x;
    return 4.0;
  });
  EXPECT_EQ(ZqGetFunc0ValFromLineStep(2.0, 0, origin, direction, none), 4.0);
  EXPECT_EQ(seen, nullptr);
}

TEST(ZqBoundedArgBracketLineMin, ReturnsEachCode) {
  const double origin = 0.0, direction = 1.0;
  double lo = -1.0, mid = -1.0, hi = -1.0;
  CountingFunc quadratic = OfStep([](double t) { return (t - 3.0) * (t - 3.0); });
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 10.0, &origin, &direction, quadratic, 10.0), 0);
  EXPECT_EQ(quadratic.calls, 0);
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 7.0, &origin, &direction, quadratic, 10.0), 1);
  CountingFunc falling = OfStep([](double t) { return -t; });
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 1.0, &origin, &direction, falling, 10.0), 2);
  EXPECT_EQ(lo, -1.0);  // written only with code 3
  // f(5) = 4 >= f(0) = 9? No: 4 < 9, and f(5) = 4 < f(10) = 49: (0, 5, 10).
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 0.5, &origin, &direction, quadratic, 10.0), 3);
  EXPECT_EQ(lo, 0.0);
  EXPECT_EQ(mid, 5.0);
  EXPECT_EQ(hi, 10.0);
  // Minimum near the start: f(50) >= f(0), so (0, step, limit / 2).
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 0.5, &origin, &direction, quadratic, 100.0), 3);
  EXPECT_EQ(lo, 0.0);
  EXPECT_EQ(mid, 0.5);
  EXPECT_EQ(hi, 50.0);
  // Minimum near the limit: (limit / 2, limit - step, limit).
  CountingFunc late = OfStep([](double t) { return (t - 95.0) * (t - 95.0); });
  EXPECT_EQ(ZqBoundedArgBracketLineMin(lo, mid, hi, 1, 0.5, &origin, &direction, late, 100.0), 3);
  EXPECT_EQ(lo, 50.0);
  EXPECT_EQ(mid, 99.5);
  EXPECT_EQ(hi, 100.0);
}

TEST(ZqBracketLineMin, BracketsAMinimum) {
  const double origin = 0.0, direction = 1.0;
  for (double centre : {0.7, 5.0, 60.0, 900.0}) {
    SCOPED_TRACE(centre);
    auto g = [centre](double t) { return (t - centre) * (t - centre) + 0.1 * std::pow(t - centre, 4); };
    CountingFunc f = OfStep(g);
    double lo = 0.0, mid = 0.0, hi = 0.0;
    ASSERT_NE(ZqBracketLineMin(lo, mid, hi, 1, 0.5, &origin, &direction, f, 1e6), 0);
    EXPECT_LT(std::min(lo, hi), mid);
    EXPECT_LT(mid, std::max(lo, hi));
    EXPECT_LT(g(mid), g(lo));
    EXPECT_LT(g(mid), g(hi));
    EXPECT_LE(std::min(lo, hi), centre);
    EXPECT_GE(std::max(lo, hi), centre);
  }
}

TEST(ZqBracketLineMin, FailsWithoutDescentPastTheLimitAndOnNaN) {
  const double origin = 0.0, direction = 1.0;
  double lo = 0.0, mid = 0.0, hi = 0.0;
  CountingFunc rising = OfStep([](double t) { return t; });
  EXPECT_EQ(ZqBracketLineMin(lo, mid, hi, 1, 1.0, &origin, &direction, rising, 100.0), 0);
  CountingFunc falling = OfStep([](double t) { return -t; });
  EXPECT_EQ(ZqBracketLineMin(lo, mid, hi, 1, 1.0, &origin, &direction, falling, 100.0), 0);
  CountingFunc forever = OfStep([](double t) { return -t; });
  EXPECT_EQ(ZqBracketLineMin(lo, mid, hi, 1, 1.0, &origin, &direction, forever,
                             std::numeric_limits<double>::infinity()),
            0);
  CountingFunc nan = OfStep([](double t) { return t > 2.0 ? std::nan("") : -t; });
  EXPECT_EQ(ZqBracketLineMin(lo, mid, hi, 1, 1.0, &origin, &direction, nan, 100.0), 0);
}

}  // namespace
}  // namespace Varimo
