// The regularised incomplete beta function I_x(a, b) by the classic
// continued fraction, with its log-gamma helper. Accurate to about 3e-7
// relative (the convergence test of the fraction) and to single precision in
// the divisors a and b, which are rounded to float before dividing; callers
// that need full double precision use Boost.Math's ibeta instead.
#pragma once

namespace Varimo {

// log Gamma(x) for x > 0 by the six-term Lanczos series (error below 2e-10);
// the bad double for x <= 0 or NaN.
double ZqGammln(double x);

// The continued fraction of I_x(a, b) by the modified Lentz method: at most
// 100 iterations, stopping when |delta - 1| < 3e-7, with any denominator
// smaller than 1e-30 in magnitude replaced by 1e-30. Unconverged, it warns
// "ZqBetacf:: inputs are too big or not enough iterations." through
// Corvane::ZqThrow and returns what it has. Converges fast for
// x < (a + 1) / (a + b + 2). The bad double for a or b <= 0 or NaN.
double ZqBetacf(double a, double b, double x);

// I_x(a, b) for a, b > 0 and x in [0, 1]. An x outside [0, 1] (or NaN)
// reports "ZqBetai:: x value out of range [0,1]" as an Error through
// Corvane::ZqThrow and returns 0; a or b not above 0 (or NaN) gives the bad
// double.
double ZqBetai(double a, double b, double x);

}  // namespace Varimo
