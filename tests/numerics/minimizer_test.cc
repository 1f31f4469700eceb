// The one-dimensional searches along a line (golden section and the
// brackets), and Newton's method in several variables.
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
#include "varimo/platform/minarc/newton_opt.h"

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
  for (const double first : {2.0, 3.0}) {
    EXPECT_EQ(Searched(WithLimit(2.0), rising, first, &calls), std::make_tuple(false, first, -123.0));
    EXPECT_EQ(calls, 0);
  }
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

namespace Minarc {
namespace {

using Status = ZqNewtonOpt::Status;

// Where the answer is known exactly, Newton's quadratic convergence puts the
// result far inside this.
constexpr double kArgTolerance = 1e-7;

// A ZqFunc2 from one callable that writes the gradient and the Hessian when
// it is given somewhere to write them, counting the calls with a Hessian.
class TestFunc2 : public ZqFunc2 {
 public:
  using Evaluate = std::function<double(const double* x, double* gradient, double* hessian)>;
  TestFunc2(unsigned int n, Evaluate evaluate) : n_(n), evaluate_(std::move(evaluate)) {}
  unsigned int NumVar() const override { return n_; }
  double operator()(const double* x) override { return evaluate_(x, nullptr, nullptr); }
  double operator()(const double* x, double* g) override { return evaluate_(x, g, nullptr); }
  double operator()(const double* x, double* g, double* h) override {
    ++hessianCalls;
    return evaluate_(x, g, h);
  }
  int hessianCalls = 0;

 private:
  unsigned int n_;
  Evaluate evaluate_;
};

TestFunc2 Rosenbrock() {
  return TestFunc2(2, [](const double* x, double* g, double* h) {
    const double inner = x[1] - x[0] * x[0];
    if (g) g[0] = -400.0 * x[0] * inner - 2.0 * (1.0 - x[0]), g[1] = 200.0 * inner;
    if (h) h[0] = 1200.0 * x[0] * x[0] - 400.0 * x[1] + 2.0, h[1] = h[2] = -400.0 * x[0], h[3] = 200.0;
    return 100.0 * inner * inner + (1.0 - x[0]) * (1.0 - x[0]);
  });
}

// One variable: value, first and second derivative.
TestFunc2 OneDim(std::function<double(double)> f, std::function<double(double)> d1, std::function<double(double)> d2) {
  return TestFunc2(1, [f, d1, d2](const double* x, double* g, double* h) {
    if (g) g[0] = d1(x[0]);
    if (h) h[0] = d2(x[0]);
    return f(x[0]);
  });
}

struct Outcome {
  double value;
  std::vector<double> x;
  Status status;
  unsigned int iterations;
};

// One run of a fresh optimiser. The result array starts out as 9s, so that a
// result that is never written shows.
Outcome Minimise(TestFunc2& f, std::vector<double> start, double tolerance = ZqNewtonOpt::kDefaultTolerance,
                 unsigned int iterLimit = ZqNewtonOpt::kDefaultIterLimit, ZqCheckpoint1* checkpoint = nullptr) {
  ZqNewtonOpt newton;
  newton.SetTolerance(tolerance);
  newton.SetIterLimit(iterLimit);
  std::vector<double> x(start.size(), 9.0);
  const double value = newton(f, checkpoint, start.data(), x.data());
  return {value, x, newton.GetStatus(), newton.GetNumIterations()};
}

TEST(ZqNewtonOpt, Defaults) {
  ZqNewtonOpt newton;
  EXPECT_EQ(newton.GetTolerance(), 1e-8);
  EXPECT_EQ(newton.GetIterLimit(), 100u);
  EXPECT_EQ(newton.GetStatus(), Status::NotRun);
  newton.SetTolerance(-1.0);
  EXPECT_EQ(newton.GetTolerance(), 0.0);
  newton.SetTolerance(std::nan(""));
  EXPECT_EQ(newton.GetTolerance(), 0.0);
  EXPECT_STREQ(ZqNewtonOpt::StatusText(Status::Converged), "converged");
}

TEST(ZqNewtonOpt, MinimisesRosenbrockThroughItsIndefiniteRegion) {
  TestFunc2 f = Rosenbrock();
  Outcome run = Minimise(f, {-1.2, 1.0}, 1e-12);
  EXPECT_EQ(run.status, Status::Converged);
  EXPECT_NEAR(run.x[0], 1.0, kArgTolerance);
  EXPECT_NEAR(run.x[1], 1.0, kArgTolerance);
  EXPECT_LT(run.value, 1e-14);
  EXPECT_LT(run.iterations, 50u);
  // From a start where the Hessian is indefinite (x1 > x0^2 + 1/200).
  run = Minimise(f, {0.0, 2.0}, 1e-12);
  EXPECT_EQ(run.status, Status::Converged);
  EXPECT_NEAR(run.x[0], 1.0, kArgTolerance);
}

TEST(ZqNewtonOpt, QuadraticInOneStepReadingOnlyTheLowerTriangle) {
  // f = (x0 - 1)^2 + 2 (x1 + 3)^2 + x0 x1: minimum by hand at
  // 2(x0 - 1) + x1 = 0, 4(x1 + 3) + x0 = 0 -> x0 = 20/7, x1 = -26/7. The
  // upper off-diagonal of the Hessian holds junk.
  TestFunc2 f(2, [](const double* x, double* g, double* h) {
    if (g) g[0] = 2.0 * (x[0] - 1.0) + x[1], g[1] = 4.0 * (x[1] + 3.0) + x[0];
    if (h) h[0] = 2.0, h[1] = -50.0, h[2] = 1.0, h[3] = 4.0;
    return std::pow(x[0] - 1.0, 2) + 2.0 * std::pow(x[1] + 3.0, 2) + x[0] * x[1];
  });
  double x[2] = {10.0, 10.0};
  ZqNewtonOpt newton;
  newton(f, nullptr, x, x);  // result over the start
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_EQ(newton.GetNumIterations(), 1u);
  EXPECT_NEAR(x[0], 20.0 / 7.0, 1e-12);
  EXPECT_NEAR(x[1], -26.0 / 7.0, 1e-12);
  // A second run, from the minimum, counts its iterations afresh.
  newton(f, nullptr, x, x);
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_EQ(newton.GetNumIterations(), 0u);
}

TEST(ZqNewtonOpt, IterationLimitZeroOrAFlatFunctionStopsAtTheStart) {
  TestFunc2 f = Rosenbrock();
  Outcome run = Minimise(f, {-1.2, 1.0}, ZqNewtonOpt::kDefaultTolerance, 0);
  EXPECT_EQ(run.x, (std::vector<double>{-1.2, 1.0}));
  EXPECT_DOUBLE_EQ(run.value, 100.0 * std::pow(1.0 - 1.44, 2) + std::pow(2.2, 2));
  EXPECT_EQ(run.status, Status::IterLimitReached);
  EXPECT_EQ(f.hessianCalls, 0);
  TestFunc2 flat = OneDim([](double) { return 2.0; }, [](double) { return 0.0; }, [](double) { return 0.0; });
  run = Minimise(flat, {5.0});
  EXPECT_EQ(run.value, 2.0);
  EXPECT_EQ(run.status, Status::Converged);
  EXPECT_EQ(run.x[0], 5.0);
  EXPECT_EQ(run.iterations, 0u);
}

TEST(ZqNewtonOpt, UnboundedFunctionsStopAtTheIterationLimit) {
  // Linear: a zero Hessian is damped.
  TestFunc2 linear = OneDim([](double x) { return -x; }, [](double) { return -1.0; }, [](double) { return 0.0; });
  Outcome run = Minimise(linear, {0.0}, ZqNewtonOpt::kDefaultTolerance, 30);
  EXPECT_EQ(run.status, Status::IterLimitReached);
  EXPECT_EQ(run.iterations, 30u);
  EXPECT_TRUE(std::isfinite(run.value));
  EXPECT_GT(run.x[0], 1.0);
  EXPECT_EQ(run.value, -run.x[0]);
  // Concave: a negative Hessian is damped until positive.
  TestFunc2 concave =
      OneDim([](double x) { return -x * x; }, [](double x) { return -2.0 * x; }, [](double) { return -2.0; });
  run = Minimise(concave, {0.5}, ZqNewtonOpt::kDefaultTolerance, 30);
  EXPECT_TRUE(std::isfinite(run.value));
  EXPECT_LT(run.value, -0.25);
}

TEST(ZqNewtonOpt, NonFiniteValuesAndGradients) {
  // NaN at the start is reported as such.
  TestFunc2 logarithm = OneDim([](double x) { return std::log(x); }, [](double x) { return 1.0 / x; },
                               [](double x) { return -1.0 / (x * x); });
  Outcome run = Minimise(logarithm, {-1.0});
  EXPECT_TRUE(std::isnan(run.value));
  EXPECT_EQ(run.status, Status::NonFiniteStart);
  EXPECT_EQ(run.x[0], -1.0);
  // x - 2 log x has its minimum at 2 and is NaN below 0; from 5 the first
  // Newton step, 5 - 0.6 / 0.08, would land at -2.5: the step goes around.
  TestFunc2 f = OneDim([](double x) { return x - 2.0 * std::log(x); }, [](double x) { return 1.0 - 2.0 / x; },
                       [](double x) { return 2.0 / (x * x); });
  run = Minimise(f, {5.0}, 1e-14);
  EXPECT_EQ(run.status, Status::Converged);
  EXPECT_NEAR(run.x[0], 2.0, kArgTolerance);
  EXPECT_TRUE(VarimoTest::WithinRelative(run.value, 2.0 - 2.0 * std::log(2.0), 1e-14));
  // A function that is NaN beyond every descent step: sqrt falls towards 0
  // and is NaN below; the run ends without an endless loop.
  TestFunc2 edge = OneDim([](double x) { return std::sqrt(x); }, [](double x) { return 0.5 / std::sqrt(x); },
                          [](double x) { return -0.25 / (x * std::sqrt(x)); });
  run = Minimise(edge, {1.0}, 1e-14, 1000);
  EXPECT_TRUE(std::isfinite(run.value));
  EXPECT_GE(run.x[0], 0.0);
  // Value finite everywhere, gradient NaN beyond 1: the first step lands
  // there and the run stops with a finite result.
  TestFunc2 square = OneDim([](double x) { return (x - 3.0) * (x - 3.0); },
                            [](double x) { return x > 1.0 ? std::nan("") : 2.0 * (x - 3.0); },
                            [](double) { return 2.0; });
  run = Minimise(square, {0.0});
  EXPECT_EQ(run.status, Status::NonFiniteDerivatives);
  EXPECT_EQ(run.x[0], 3.0);
  EXPECT_EQ(run.value, 0.0);
}

TEST(ZqNewtonOpt, CheckpointSeesEveryIterateAndMayStop) {
  class Recorder : public ZqCheckpoint1 {
   public:
    bool operator()(unsigned int iteration, unsigned int numVar, const double* x, double value,
                    const double* gradient) override {
      iterations.push_back(iteration);
      EXPECT_EQ(numVar, 2u);
      EXPECT_TRUE(std::isfinite(x[0]) && std::isfinite(value) && std::isfinite(gradient[1]));
      return iteration < 3;
    }
    std::vector<unsigned int> iterations;
  } recorder;
  TestFunc2 f = Rosenbrock();
  const Outcome run = Minimise(f, {-1.2, 1.0}, ZqNewtonOpt::kDefaultTolerance, 100, &recorder);
  EXPECT_EQ(run.status, Status::StoppedByCheckpoint);
  EXPECT_EQ(recorder.iterations, (std::vector<unsigned int>{1, 2, 3}));
  EXPECT_EQ(run.iterations, 3u);
}

TEST(ZqNewtonOpt, ZeroToleranceStillTerminates) {
  TestFunc2 f = OneDim([](double x) { return std::cosh(x - 1.0); }, [](double x) { return std::sinh(x - 1.0); },
                       [](double x) { return std::cosh(x - 1.0); });
  const Outcome run = Minimise(f, {3.0}, 0.0, 1000000);
  EXPECT_EQ(run.value, 1.0);
  EXPECT_NEAR(run.x[0], 1.0, 1e-8);
  EXPECT_LT(run.iterations, 100u);
}

TEST(ZqFunc0, DefaultsOfTheOptionalOperations) {
  NumericFunc1 f(2, [](const double* x) { return x[0] + x[1]; });
  const double x[2] = {1.0, 2.0}, y[2] = {1.0 + 1e-9, 2.0}, bad[2] = {1.0, std::nan("")};
  EXPECT_EQ(f.NumVar(), 2u);
  EXPECT_EQ(f(x), 3.0);
  EXPECT_FALSE(f.GetFComponents(x).IsValid());
  EXPECT_TRUE(f.CheckVariablesValidity(x));
  EXPECT_FALSE(f.CheckVariablesValidity(bad));
  EXPECT_TRUE(f.IsRedundant(x, y, 1e-8));
  EXPECT_FALSE(f.IsRedundant(x, y, 1e-10));
  EXPECT_FALSE(f.IsRedundant(x, bad, 1.0));
}

}  // namespace
}  // namespace Minarc
