// Minimisation of a function of several variables along a line
// x(t) = origin + t direction, over steps t >= 0, without derivatives: a
// golden-section search with an upper limit on the step, and two bracketing
// functions. The variogram fit and the least-median-of-squares slope use it.
//
// Every evaluation builds a fresh vector of numVars doubles and hands it to
// the function; no value is cached, so f may be evaluated twice at a point.
// Golden section and the bounded bracket need no derivative and at most
// 5 + the iteration limit evaluations.
//
// NaN values: a NaN never counts as a descent or as a bracket, so a
// function that is NaN at the origin or at the first step makes every
// search here fail, and a NaN met later can only lose a comparison.
#pragma once

#include "varimo/platform/minarc/func.h"

namespace Varimo {

// f at origin + step direction, for numVars variables (f gets a null pointer
// when numVars is 0).
double ZqGetFunc0ValFromLineStep(double step, unsigned int numVars, const double* origin, const double* direction,
                                 Minarc::ZqFunc0& f);

class ZqLineMinimize0 {
 public:
  virtual ~ZqLineMinimize0() = default;
  // Minimises f along the line. On entry *step holds the first trial step;
  // on success *step is the best step and *value f there. The direction is
  // not changed. False means "no better step": keep what you had.
  virtual bool operator()(unsigned int numVars, const double* origin, double* direction, double* value,
                          double* step, Minarc::ZqFunc0& f) const = 0;
  // A new copy owned by the caller.
  virtual ZqLineMinimize0* CreateCopy() const = 0;
};

// Golden-section search for the minimum over [0, L], L the upper limit on
// the step, given a first step s that descends.
//
//   1. s >= L: false, nothing evaluated, *step and *value untouched.
//   2. f(s) >= f(0): false (also when either is NaN).
//   3. f(L - s) >= f(L): f still falls at the limit; *step = L, *value =
//      f(L) evaluated once more, true (five evaluations in all).
//   4. Otherwise the bracket from f(L / 2) is narrowed by the golden
//      fraction 0.3819660112501051 until
//      (|x1| + |x2|) tolerance > |x3 - x0|; the better inner point wins, x2
//      on a tie. A run that reaches the iteration limit first fails and sets
//      *step and *value to DBL_MAX. With a limit of 0 the search succeeds only
//      if the first bracket already meets the stopping test.
class ZqGoldenSectionSearch : public ZqLineMinimize0 {
 public:
  static constexpr double kDefaultUpperLimOnOneDimSteps = 10000.0;
  static constexpr double kDefaultRelTolOnSolutionStepAccuracy = 3e-08;
  static constexpr unsigned long kDefaultMaxIterations = 1000;

  bool operator()(unsigned int numVars, const double* origin, double* direction, double* value, double* step,
                  Minarc::ZqFunc0& f) const override;
  ZqGoldenSectionSearch* CreateCopy() const override { return new ZqGoldenSectionSearch(*this); }

  // The setters take any value and return true.
  bool SetUpperLimOnOneDimSteps(double limit) {
    upperLimOnOneDimSteps_ = limit;
    return true;
  }
  bool SetRelTolOnSolutionStepAccuracy(double tolerance) {
    relTolOnSolutionStepAccuracy_ = tolerance;
    return true;
  }
  bool SetMaxIterations(unsigned long maxIterations) {
    maxIterations_ = maxIterations;
    return true;
  }
  double GetUpperLimOnOneDimSteps() const { return upperLimOnOneDimSteps_; }
  double GetRelTolOnSolutionStepAccuracy() const { return relTolOnSolutionStepAccuracy_; }
  unsigned long GetMaxIterations() const { return maxIterations_; }

 private:
  double upperLimOnOneDimSteps_ = kDefaultUpperLimOnOneDimSteps;
  double relTolOnSolutionStepAccuracy_ = kDefaultRelTolOnSolutionStepAccuracy;
  unsigned long maxIterations_ = kDefaultMaxIterations;
};

// Downhill search for a bracket lo < mid < hi of steps with f(mid) below
// f(lo) and f(hi), from 0 and `step`, by parabolic extrapolation (reach 100
// times the last interval) and golden-ratio growth, never past `limit`.
// Returns non-zero when a bracket was found, 0 when `step` does not descend
// or the search would pass the limit. Also 0, rather than a false bracket,
// when a NaN or an infinite step turns up, and after 10000 passes.
int ZqBracketLineMin(double& lo, double& mid, double& hi, unsigned int numVars, double step, const double* origin,
                     const double* direction, Minarc::ZqFunc0& f, double limit);

// Steps 1 to 3 of the golden-section search and its first bracket, as codes:
// 0 when step >= limit; 1 when f(step) >= f(0); 2 when f(limit - step) >=
// f(limit), the minimum being at the limit; 3 with the bracket written to
// lo, mid, hi. The outputs are written only for code 3.
int ZqBoundedArgBracketLineMin(double& lo, double& mid, double& hi, unsigned int numVars, double step,
                               const double* origin, const double* direction, Minarc::ZqFunc0& f, double limit);

}  // namespace Varimo
