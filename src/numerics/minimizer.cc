#include "varimo/numerics/minimizer.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <vector>

namespace Varimo {

namespace {

// The golden fraction (3 - sqrt 5) / 2 and the golden ratio (1 + sqrt 5) / 2.
constexpr double kGolden = 0.3819660112501051;
constexpr double kPhi = 1.618033988749895;
// Parabolic extrapolation: the floor on the divisor that keeps a flat
// parabola from dividing by zero, and how far past c a parabolic step may go.
constexpr double kTinyDivisor = 1e-20;
constexpr double kParabolicReach = 100.0;
// A bracket search that has not settled after this many passes never will:
// the interval grows by at least the golden ratio per pass.
constexpr int kMaxBracketPasses = 10000;

// The function along the line.
class LineFunction {
 public:
  LineFunction(unsigned int numVars, const double* origin, const double* direction, Minarc::ZqFunc0& f)
      : numVars_(numVars), origin_(origin), direction_(direction), f_(f) {}
  double operator()(double step) const { return ZqGetFunc0ValFromLineStep(step, numVars_, origin_, direction_, f_); }

 private:
  unsigned int numVars_;
  const double* origin_;
  const double* direction_;
  Minarc::ZqFunc0& f_;
};

// a is worse than b: larger, or NaN against a number.
bool Worse(double a, double b) { return a > b || (std::isnan(a) && !std::isnan(b)); }

struct Bracket {
  int code = 0;  // as ZqBoundedArgBracketLineMin
  double lo = 0.0, mid = 0.0, hi = 0.0;
  double limitValue = 0.0;  // f(limit), known from code 2 on
};

// Steps 1 to 4 of the golden-section search, shared with the bounded bracket.
Bracket BoundedBracket(const LineFunction& f, double step, double limit) {
  Bracket bracket;
  if (!(step < limit)) return bracket;  // also refuses a NaN step
  const double f0 = f(0.0);
  if (!(f(step) < f0)) {
    bracket.code = 1;
    return bracket;
  }
  const double fBeforeLimit = f(limit - step);
  bracket.limitValue = f(limit);
  if (fBeforeLimit >= bracket.limitValue) {
    bracket.code = 2;
    return bracket;
  }
  const double middle = 0.5 * limit;
  const double fMiddle = f(middle);
  bracket.code = 3;
  if (fMiddle >= f0) {
    bracket.lo = 0.0, bracket.mid = step, bracket.hi = middle;
  } else if (fMiddle >= bracket.limitValue) {
    bracket.lo = middle, bracket.mid = limit - step, bracket.hi = limit;
  } else {
    bracket.lo = 0.0, bracket.mid = middle, bracket.hi = limit;
  }
  return bracket;
}

}  // namespace

double ZqGetFunc0ValFromLineStep(double step, unsigned int numVars, const double* origin, const double* direction,
                                 Minarc::ZqFunc0& f) {
  if (numVars == 0) return f(nullptr);
  std::vector<double> x(numVars);
  for (unsigned int i = 0; i < numVars; ++i) x[i] = step * direction[i] + origin[i];
  return f(x.data());
}

bool ZqGoldenSectionSearch::operator()(unsigned int numVars, const double* origin, double* direction, double* value,
                                       double* step, Minarc::ZqFunc0& f) const {
  const LineFunction line(numVars, origin, direction, f);
  const double limit = upperLimOnOneDimSteps_;
  const Bracket bracket = BoundedBracket(line, *step, limit);
  if (bracket.code < 2) return false;
  if (bracket.code == 2) {
    *step = limit;
    *value = line(limit);
    return true;
  }

  const double a = bracket.lo, b = bracket.mid, c = bracket.hi;
  double x0 = a, x1, x2, x3 = c;
  // The inner point goes into the larger of the two sub-intervals.
  if (std::fabs(b - a) > std::fabs(c - b)) {
    x1 = b - kGolden * (b - a);
    x2 = b;
  } else {
    x1 = b;
    x2 = b + kGolden * (c - b);
  }
  double f1 = line(x1), f2 = line(x2);

  const double tolerance = relTolOnSolutionStepAccuracy_;
  auto settled = [&] { return (std::fabs(x2) + std::fabs(x1)) * tolerance > std::fabs(x3 - x0); };
  for (unsigned long passes = 0; !settled();) {
    // A pass that reaches the limit fails even if it also settles, and a
    // limit of 0 lets only an already settled bracket through.
    if (passes >= maxIterations_) {
      *step = DBL_MAX;
      *value = DBL_MAX;
      return false;
    }
    if (Worse(f1, f2)) {
      const double next = x2 + kGolden * (x3 - x2);
      x0 = x1, x1 = x2, f1 = f2, x2 = next, f2 = line(next);
    } else {
      // On equal values the lower part of the interval is kept.
      const double next = x1 - kGolden * (x1 - x0);
      x3 = x2, x2 = x1, f2 = f1, x1 = next, f1 = line(next);
    }
    ++passes;
    if (passes >= maxIterations_) {
      *step = DBL_MAX;
      *value = DBL_MAX;
      return false;
    }
  }
  if (std::isnan(f1) && std::isnan(f2)) return false;
  if (Worse(f2, f1)) {
    *step = x1;
    *value = f1;
  } else {
    *step = x2;
    *value = f2;
  }
  return true;
}

int ZqBoundedArgBracketLineMin(double& lo, double& mid, double& hi, unsigned int numVars, double step,
                               const double* origin, const double* direction, Minarc::ZqFunc0& f, double limit) {
  const Bracket bracket = BoundedBracket(LineFunction(numVars, origin, direction, f), step, limit);
  if (bracket.code == 3) {
    lo = bracket.lo;
    mid = bracket.mid;
    hi = bracket.hi;
  }
  return bracket.code;
}

int ZqBracketLineMin(double& lo, double& mid, double& hi, unsigned int numVars, double step, const double* origin,
                     const double* direction, Minarc::ZqFunc0& f, double limit) {
  const LineFunction line(numVars, origin, direction, f);
  double a = 0.0, b = step;
  double fa = line(a), fb = line(b);
  if (!(fb < fa)) return 0;
  double c = std::min(limit, b + kPhi * b);
  double fc = line(c);

  auto found = [&](double l, double m, double h) {
    lo = l, mid = m, hi = h;
    return 1;
  };
  // Moves the triple one point on: (a, b, c) <- (b, c, next).
  auto advance = [&](double next, double fNext) {
    a = b, fa = fb, b = c, fb = fc, c = next, fc = fNext;
  };

  for (int pass = 0; pass < kMaxBracketPasses; ++pass) {
    if (std::isnan(fa) || std::isnan(fb) || std::isnan(fc) || !std::isfinite(c)) return 0;
    if (fc > fb) return found(a, b, c);

    const double r = (fc - fb) * (b - a);
    const double q = (fb - fa) * (c - b);
    double w = r - q;
    if (std::fabs(w) < kTinyDivisor) w = w > 0.0 ? kTinyDivisor : -kTinyDivisor;
    const double u = b - ((b - a) * r + q * (c - b)) * 0.5 / w;
    const double reach = std::min(limit, b + kParabolicReach * (c - b));

    if (b <= u && u <= c) {
      const double fu = line(u);
      if (fu < fc) return found(b, u, c);
      if (fu > fb) return found(a, b, u);
    } else if (c < u && u <= reach) {
      const double fu = line(u);
      if (fu > fc) return found(b, c, u);
      const double next = u + kPhi * (u - c);
      const double fNext = line(next);
      a = c, fa = fc, b = u, fb = fu, c = next, fc = fNext;
      if (next > limit) return 0;
      continue;
    } else if (u > reach) {
      advance(reach, line(reach));
      if (reach > limit) return 0;
      continue;
    }
    // The parabola gave nothing usable: magnify by the golden ratio.
    const double next = c + kPhi * (c - b);
    advance(next, line(next));
    if (next > limit) return 0;
  }
  return 0;
}

}  // namespace Varimo
