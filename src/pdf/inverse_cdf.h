// The inverse of a continuous distribution function: a bracket found by
// doubling steps, then Newton's method kept inside the bracket by bisection.
#pragma once

#include "varimo/pdf/pdf.h"

namespace Varimo {

// An x with CDF(x) < p, from 0 downward in doubling steps; the bad double
// after 100 steps or a failed CDF.
double GetLowerBoundOnInverseCDF(const ZqUniVarPDFImpl& pdf, double p, ZqStatModelResult& result);
// An x with CDF(x) > p, from `start` upward in doubling steps.
double GetUpperBoundOnInverseCDF(const ZqUniVarPDFImpl& pdf, double p, double start, ZqStatModelResult& result);
// The x in [lower, upper] with CDF(x) = p within tolY, or x within
// (|x| + 1) tolX. After 100 passes the result fails with the log of the
// passes as its comment.
double InverseContinuousCDF(ZqStatModelResult& result, const ZqUniVarPDFImpl& pdf, double p, double lower,
                            double upper, double tolY, double tolX);

// 100 times the double epsilon: the tolerance of the exact laws' searches.
inline constexpr double kInverseCDFTolerance = 2.220446049250313e-14;

}  // namespace Varimo
