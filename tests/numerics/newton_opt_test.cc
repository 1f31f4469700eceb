#include "varimo/platform/minarc/newton_opt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "test_support.h"

namespace Minarc {
namespace {

using Status = ZqNewtonOpt::Status;

// Where the answer is known exactly, Newton's quadratic convergence puts the
// result far inside this.
constexpr double kArgTolerance = 1e-7;

// A ZqFunc2 from three lambdas over std::vector, counting Hessian calls.
class TestFunc2 : public ZqFunc2 {
 public:
  using Value = std::function<double(const double*)>;
  using Gradient = std::function<void(const double*, double*)>;
  using Hessian = std::function<void(const double*, double*)>;
  TestFunc2(unsigned int n, Value value, Gradient gradient, Hessian hessian)
      : n_(n), value_(std::move(value)), gradient_(std::move(gradient)), hessian_(std::move(hessian)) {}
  unsigned int NumVar() const override { return n_; }
  double operator()(const double* x) override {
    ++valueCalls;
    return value_(x);
  }
  double operator()(const double* x, double* g) override {
    gradient_(x, g);
    return value_(x);
  }
  double operator()(const double* x, double* g, double* h) override {
    ++hessianCalls;
    gradient_(x, g);
    hessian_(x, h);
    return value_(x);
  }
  int valueCalls = 0, hessianCalls = 0;

 private:
  unsigned int n_;
  Value value_;
  Gradient gradient_;
  Hessian hessian_;
};

TestFunc2 Rosenbrock() {
  return TestFunc2(
      2, [](const double* x) { return 100.0 * std::pow(x[1] - x[0] * x[0], 2) + std::pow(1.0 - x[0], 2); },
      [](const double* x, double* g) {
        g[0] = -400.0 * x[0] * (x[1] - x[0] * x[0]) - 2.0 * (1.0 - x[0]);
        g[1] = 200.0 * (x[1] - x[0] * x[0]);
      },
      [](const double* x, double* h) {
        h[0] = 1200.0 * x[0] * x[0] - 400.0 * x[1] + 2.0;
        h[1] = h[2] = -400.0 * x[0];
        h[3] = 200.0;
      });
}

// One variable: value, first and second derivative.
TestFunc2 OneDim(std::function<double(double)> f, std::function<double(double)> d1,
                 std::function<double(double)> d2) {
  return TestFunc2(
      1, [f](const double* x) { return f(x[0]); }, [d1](const double* x, double* g) { g[0] = d1(x[0]); },
      [d2](const double* x, double* h) { h[0] = d2(x[0]); });
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
  const double start[2] = {-1.2, 1.0};
  double result[2] = {0.0, 0.0};
  ZqNewtonOpt newton;
  newton.SetTolerance(1e-12);
  const double value = newton(f, nullptr, start, result);
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_NEAR(result[0], 1.0, kArgTolerance);
  EXPECT_NEAR(result[1], 1.0, kArgTolerance);
  EXPECT_LT(value, 1e-14);
  EXPECT_LT(newton.GetNumIterations(), 50u);
  // From a start where the Hessian is indefinite (x1 > x0^2 + 1/200).
  const double indefinite[2] = {0.0, 2.0};
  newton(f, nullptr, indefinite, result);
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_NEAR(result[0], 1.0, kArgTolerance);
}

TEST(ZqNewtonOpt, QuadraticInOneStep) {
  // f = (x0 - 1)^2 + 2 (x1 + 3)^2 + x0 x1: minimum by hand at
  // 2(x0 - 1) + x1 = 0, 4(x1 + 3) + x0 = 0 -> x0 = 20/7, x1 = -26/7.
  TestFunc2 f(
      2, [](const double* x) { return std::pow(x[0] - 1.0, 2) + 2.0 * std::pow(x[1] + 3.0, 2) + x[0] * x[1]; },
      [](const double* x, double* g) {
        g[0] = 2.0 * (x[0] - 1.0) + x[1];
        g[1] = 4.0 * (x[1] + 3.0) + x[0];
      },
      [](const double*, double* h) {
        h[0] = 2.0;
        h[1] = h[2] = 1.0;
        h[3] = 4.0;
      });
  double x[2] = {10.0, 10.0};
  ZqNewtonOpt newton;
  newton(f, nullptr, x, x);  // result over the start
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_EQ(newton.GetNumIterations(), 1u);
  EXPECT_NEAR(x[0], 20.0 / 7.0, 1e-12);
  EXPECT_NEAR(x[1], -26.0 / 7.0, 1e-12);
}

TEST(ZqNewtonOpt, ReadsOnlyTheLowerTriangleOfTheHessian) {
  // Same quadratic as above with junk in the upper off-diagonal.
  TestFunc2 f(
      2, [](const double* x) { return std::pow(x[0] - 1.0, 2) + 2.0 * std::pow(x[1] + 3.0, 2) + x[0] * x[1]; },
      [](const double* x, double* g) {
        g[0] = 2.0 * (x[0] - 1.0) + x[1];
        g[1] = 4.0 * (x[1] + 3.0) + x[0];
      },
      [](const double*, double* h) {
        h[0] = 2.0;
        h[1] = -50.0;
        h[2] = 1.0;
        h[3] = 4.0;
      });
  const double start[2] = {0.0, 0.0};
  double x[2];
  ZqNewtonOpt newton;
  newton(f, nullptr, start, x);
  EXPECT_EQ(newton.GetNumIterations(), 1u);
  EXPECT_NEAR(x[0], 20.0 / 7.0, 1e-12);
}

TEST(ZqNewtonOpt, IterationLimitZeroReturnsTheStartAndItsValue) {
  TestFunc2 f = Rosenbrock();
  const double start[2] = {-1.2, 1.0};
  double result[2] = {9.0, 9.0};
  ZqNewtonOpt newton;
  newton.SetIterLimit(0);
  const double value = newton(f, nullptr, start, result);
  EXPECT_EQ(result[0], -1.2);
  EXPECT_EQ(result[1], 1.0);
  EXPECT_DOUBLE_EQ(value, 100.0 * std::pow(1.0 - 1.44, 2) + std::pow(2.2, 2));
  EXPECT_EQ(newton.GetStatus(), Status::IterLimitReached);
  EXPECT_EQ(f.hessianCalls, 0);
}

TEST(ZqNewtonOpt, FlatFunctionConvergesAtOnce) {
  TestFunc2 f = OneDim([](double) { return 2.0; }, [](double) { return 0.0; }, [](double) { return 0.0; });
  const double start = 5.0;
  double result = 0.0;
  ZqNewtonOpt newton;
  EXPECT_EQ(newton(f, nullptr, &start, &result), 2.0);
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_EQ(result, 5.0);
  EXPECT_EQ(newton.GetNumIterations(), 0u);
}

TEST(ZqNewtonOpt, UnboundedFunctionsStopAtTheIterationLimit) {
  ZqNewtonOpt newton;
  newton.SetIterLimit(30);
  // Linear: a zero Hessian is damped.
  TestFunc2 linear = OneDim([](double x) { return -x; }, [](double) { return -1.0; }, [](double) { return 0.0; });
  const double start = 0.0;
  double result = 0.0;
  double value = newton(linear, nullptr, &start, &result);
  EXPECT_EQ(newton.GetStatus(), Status::IterLimitReached);
  EXPECT_EQ(newton.GetNumIterations(), 30u);
  EXPECT_TRUE(std::isfinite(value));
  EXPECT_GT(result, 1.0);
  EXPECT_EQ(value, -result);
  // Concave: a negative Hessian is damped until positive.
  TestFunc2 concave = OneDim([](double x) { return -x * x; }, [](double x) { return -2.0 * x; },
                             [](double) { return -2.0; });
  const double off = 0.5;
  value = newton(concave, nullptr, &off, &result);
  EXPECT_TRUE(newton.GetStatus() == Status::IterLimitReached || newton.GetStatus() == Status::NoDescent);
  EXPECT_TRUE(std::isfinite(value));
  EXPECT_LT(value, -0.25);
}

TEST(ZqNewtonOpt, NaNAtTheStartIsReported) {
  TestFunc2 f = OneDim([](double x) { return std::log(x); }, [](double x) { return 1.0 / x; },
                       [](double x) { return -1.0 / (x * x); });
  const double start = -1.0;
  double result = 0.0;
  ZqNewtonOpt newton;
  EXPECT_TRUE(std::isnan(newton(f, nullptr, &start, &result)));
  EXPECT_EQ(newton.GetStatus(), Status::NonFiniteStart);
  EXPECT_EQ(result, -1.0);
}

TEST(ZqNewtonOpt, StepsAroundWhereTheFunctionIsNaN) {
  // x - 2 log x has its minimum at 2 and is NaN below 0; from 5 the first
  // Newton step, 5 - 0.6 / 0.08, would land at -2.5.
  TestFunc2 f = OneDim([](double x) { return x - 2.0 * std::log(x); }, [](double x) { return 1.0 - 2.0 / x; },
                       [](double x) { return 2.0 / (x * x); });
  const double start = 5.0;
  double result = 0.0;
  ZqNewtonOpt newton;
  newton.SetTolerance(1e-14);
  const double value = newton(f, nullptr, &start, &result);
  EXPECT_EQ(newton.GetStatus(), Status::Converged);
  EXPECT_NEAR(result, 2.0, kArgTolerance);
  EXPECT_TRUE(VarimoTest::WithinRelative(value, 2.0 - 2.0 * std::log(2.0), 1e-14));
  // A function that is NaN beyond every descent step: sqrt falls towards 0
  // and is NaN below; the run ends without an endless loop.
  TestFunc2 edge = OneDim([](double x) { return std::sqrt(x); }, [](double x) { return 0.5 / std::sqrt(x); },
                          [](double x) { return -0.25 / (x * std::sqrt(x)); });
  const double one = 1.0;
  newton.SetIterLimit(1000);
  const double edgeValue = newton(edge, nullptr, &one, &result);
  EXPECT_TRUE(std::isfinite(edgeValue));
  EXPECT_GE(result, 0.0);
  EXPECT_NE(newton.GetStatus(), Status::Converged);
}

TEST(ZqNewtonOpt, NonFiniteGradientStopsWithAFiniteResult) {
  // Value finite everywhere, gradient NaN beyond 1: the first step lands there.
  TestFunc2 f = OneDim([](double x) { return (x - 3.0) * (x - 3.0); },
                       [](double x) { return x > 1.0 ? std::nan("") : 2.0 * (x - 3.0); },
                       [](double) { return 2.0; });
  const double start = 0.0;
  double result = 0.0;
  ZqNewtonOpt newton;
  const double value = newton(f, nullptr, &start, &result);
  EXPECT_EQ(newton.GetStatus(), Status::NonFiniteDerivatives);
  EXPECT_EQ(result, 3.0);
  EXPECT_EQ(value, 0.0);
}

TEST(ZqNewtonOpt, CheckpointSeesEveryIterateAndMayStop) {
  class Recorder : public ZqCheckpoint1 {
   public:
    bool operator()(unsigned int iteration, unsigned int numVar, const double* x, double value,
                    const double* gradient) override {
      iterations.push_back(iteration);
      EXPECT_EQ(numVar, 2u);
      EXPECT_TRUE(std::isfinite(x[0]) && std::isfinite(value) && std::isfinite(gradient[1]));
      return iteration < stopAfter;
    }
    std::vector<unsigned int> iterations;
    unsigned int stopAfter = 3;
  } recorder;
  TestFunc2 f = Rosenbrock();
  const double start[2] = {-1.2, 1.0};
  double result[2];
  ZqNewtonOpt newton;
  newton(f, &recorder, start, result);
  EXPECT_EQ(newton.GetStatus(), Status::StoppedByCheckpoint);
  EXPECT_EQ(recorder.iterations, (std::vector<unsigned int>{1, 2, 3}));
  EXPECT_EQ(newton.GetNumIterations(), 3u);
}

TEST(ZqNewtonOpt, ZeroToleranceStillTerminates) {
  TestFunc2 f = OneDim([](double x) { return std::cosh(x - 1.0); }, [](double x) { return std::sinh(x - 1.0); },
                       [](double x) { return std::cosh(x - 1.0); });
  const double start = 3.0;
  double result = 0.0;
  ZqNewtonOpt newton;
  newton.SetTolerance(0.0);
  newton.SetIterLimit(1000000);
  EXPECT_EQ(newton(f, nullptr, &start, &result), 1.0);
  EXPECT_NEAR(result, 1.0, 1e-8);
  EXPECT_LT(newton.GetNumIterations(), 100u);
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
