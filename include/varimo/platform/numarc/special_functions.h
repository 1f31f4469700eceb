// Special functions on Boost.Math, evaluated in double under one error
// policy that never throws. Every failure comes back as a value:
//
//   - a NaN argument gives NaN;
//   - an argument outside the domain gives NaN;
//   - a result too large for a double gives +inf or -inf, one too small
//     gives 0 (or a denormal);
//   - a result Boost.Math reports as unreliable (a series or continued
//     fraction that did not converge) gives NaN, never the unconverged value.
//
// Within the domain the results agree with 50-digit references to a few
// units in the last place, except where stated below. None of these
// functions throws, and none changes errno.
#pragma once

namespace Numarc {

// The error function. Zqerf(+-inf) = +-1; |x| >= 6 gives +-1 exactly.
double Zqerf(double x) noexcept;

// The complementary error function 1 - erf(x), accurate in the far right
// tail where 1 - Zqerf(x) is 0: Zqerfc(10) = 2.1e-45. Zqerfc(+inf) = 0,
// Zqerfc(-inf) = 2; it underflows to 0 beyond about x = 26.5.
double Zqerfc(double x) noexcept;
// Its inverse on [0, 2]: Zqerfc(ZqerfcInv(p)) = p. 0 gives +inf, 2 gives
// -inf, and p outside [0, 2] NaN.
double ZqerfcInv(double p) noexcept;

// log|Gamma(x)|, defined for every real x.
//   x = 0, -0 and the negative integers (the poles): +inf, the limit from
//     either side. Every double below -2^52 is an integer, so all of them
//     give +inf, and so does -inf.
//   +inf: +inf. Above about 2.55e305 the result overflows to +inf.
//   Near its zeros at x = 1 and x = 2 the result keeps full relative
//   accuracy; near the zeros on the negative axis (x = -2.457..., ...) only
//   the absolute error is small.
double Zqlgamma(double x) noexcept;

// The digamma function psi(x) = Gamma'(x) / Gamma(x).
//   x = 0, -0 and the negative integers (the poles): NaN, since the two
//     one-sided limits are -inf and +inf. As above, every double below -2^52
//     is a pole, and -inf gives NaN.
//   +inf: +inf. Tiny positive x gives about -1/x (-1e300 at x = 1e-300).
double ZqDiGamma(double x) noexcept;

// The regularised lower incomplete gamma function
//   P(a, x) = (1 / Gamma(a)) * integral from 0 to x of t^(a-1) e^(-t) dt,
// the CDF at x of the gamma law of shape a and unit scale.
//   Domain: a finite and > 0, x >= 0. Otherwise NaN (a = 0 included, where
//     only the one-sided limit exists).
//   x = 0: 0. x = +inf: 1. Far tails round to 0 and 1.
//   a above about 1e10: for many x within some tens of sqrt(a) of a, the
//     centre and the near tails alike, Boost.Math 1.74's series stop
//     converging and the call gives NaN. (P(1e12, 1e12) would otherwise come
//     out 0.66.) The values that do come back were accurate in our checks.
double ZqIncompleteGamma(double a, double x) noexcept;

// The regularised incomplete beta function
//   I_x(a, b) = (1 / B(a, b)) * integral from 0 to x of t^(a-1) (1-t)^(b-1) dt,
// the CDF at x of the beta law with shapes a and b.
//   Domain: a and b finite, > 0 and at most kMaxIncompleteBetaShape;
//     0 <= x <= 1. Otherwise NaN.
//   x = 0: 0. x = 1: 1.
//   Shapes above about 1e4: Boost.Math's relative error grows past a few
//     ulps, to about 3e-12 near the centre of the law at a = 1e8, b = 3e8.
double ZqIncompleteBeta(double a, double b, double x) noexcept;

// Beyond this shape Boost.Math 1.74's incomplete beta loses accuracy without
// reporting it (I_0.5(1e12, 1e12) comes out 0.5 + 1.5e-8, where it is exactly
// 0.5) and near the centre can take tens of seconds, so larger shapes are
// refused with NaN.
inline constexpr double kMaxIncompleteBetaShape = 1e10;

}  // namespace Numarc
