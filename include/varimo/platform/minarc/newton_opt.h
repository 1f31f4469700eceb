// ZqNewtonOpt: unconstrained minimisation of a smooth function by Newton
// steps, from the value, gradient and Hessian that a ZqFunc2 supplies.
//
//   Minarc::ZqNewtonOpt newton;
//   newton.SetTolerance(1e-10);
//   newton.SetIterLimit(50);
//   const double value = newton(f, nullptr, start, result);
//   if (newton.GetStatus() != Minarc::ZqNewtonOpt::Status::Converged) ...
//
// One iteration:
//   1. Direction. The Hessian H is factored by a pivoted LDLT. If every pivot
//      is positive the direction is the Newton step d = -H^-1 g. Otherwise
//      (indefinite, singular or non-finite H) the step is damped in the
//      manner of Levenberg: d = -(H + mu I)^-1 g with mu = 1e-6 max(1,
//      max|H_ii|), raised tenfold until H + mu I has a Cholesky factor (at most
//      40 times); a Hessian that never gives one leaves the steepest descent
//      d = -g.
//   2. Step length, by backtracking from t = 1: halve t until f(x + t d) is
//      finite and satisfies the Armijo condition f(x + t d) <= f(x) + 1e-4 t
//      g.d, at most 60 times. Points where f is NaN or infinite are thus
//      stepped around, never accepted.
//
// Convergence, with tol the tolerance and scale = max(1, |f(x)|):
//   - the gradient: max_i |g_i| <= tol * scale, tested at every iterate
//     including the start; or
//   - the Newton decrement: when H is positive definite and
//     -g.d / 2 = g' H^-1 g / 2 <= tol * scale, the predicted decrease of a last
//     full Newton step is below the tolerance. That last step is still taken
//     when it does not raise f, so the result is the better point.
//
// Termination is guaranteed: at most IterLimit iterations, each with at most
// 41 factorisations and 60 evaluations of the value. Flat functions converge
// at once (zero gradient); unbounded ones run to the iteration limit; a
// function that turns NaN is stepped around, and when no step makes progress
// the run stops with NoDescent.
//
// Defaults: tolerance 1e-8, iteration limit 100. An iteration limit of 0
// evaluates the value at the start and returns it, with the start as result.
//
// Cost per iteration: one evaluation with Hessian, O(n^3) for the
// factorisation, and as many value evaluations as the line search needs.
#pragma once

#include "varimo/platform/minarc/checkpoint.h"
#include "varimo/platform/minarc/func.h"

namespace Minarc {

class ZqNewtonOpt {
 public:
  // Why the last run stopped.
  enum class Status {
    NotRun,                // no run yet
    Converged,             // one of the two convergence tests held
    IterLimitReached,      // IterLimit iterations without convergence
    NoDescent,             // the line search found no acceptable step
    NonFiniteStart,        // f, or its gradient, is NaN or infinite at the start
    NonFiniteDerivatives,  // the gradient turned NaN or infinite at an iterate
    StoppedByCheckpoint,   // the checkpoint returned false
  };

  static constexpr double kDefaultTolerance = 1e-8;
  static constexpr unsigned int kDefaultIterLimit = 100;

  ZqNewtonOpt() = default;

  // A negative or NaN tolerance counts as 0: then only an exactly zero
  // gradient converges, and a run otherwise ends by NoDescent or the limit.
  void SetTolerance(double tolerance);
  void SetIterLimit(unsigned int iterLimit) { iterLimit_ = iterLimit; }
  double GetTolerance() const { return tolerance_; }
  unsigned int GetIterLimit() const { return iterLimit_; }

  // Minimises f from start and writes the best point found to result (both
  // f.NumVar() long; they may be the same array). Returns f at result, which
  // is NaN or infinite only when f was so at the start (NonFiniteStart). The
  // checkpoint, when given, sees every accepted iterate.
  double operator()(ZqFunc2& f, ZqCheckpoint1* checkpoint, const double* start, double* result);

  // About the last run.
  Status GetStatus() const { return status_; }
  unsigned int GetNumIterations() const { return numIterations_; }
  // A short English text of the status ("converged", ...).
  static const char* StatusText(Status status);

 private:
  double tolerance_ = kDefaultTolerance;
  unsigned int iterLimit_ = kDefaultIterLimit;
  Status status_ = Status::NotRun;
  unsigned int numIterations_ = 0;
};

}  // namespace Minarc
