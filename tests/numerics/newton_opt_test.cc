#include "varimo/platform/minarc/newton_opt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "test_support.h"

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
  EXPECT_TRUE(run.status == Status::IterLimitReached || run.status == Status::NoDescent);
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
  EXPECT_TRUE(run.status == Status::NoDescent || run.status == Status::IterLimitReached);
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
