// The one Boost.Math error policy of the library, and the wrapper that turns
// what it reports into return values. Private to the library: Boost.Math is
// heavy, so only the .cc files that evaluate special functions include it.
#pragma once

#include <boost/math/policies/policy.hpp>

#include <cerrno>
#include <limits>

namespace Numarc {
namespace detail {

// Boost.Math's default policy throws. Here nothing throws:
//   - errors that leave no trustworthy number (domain, pole, a series that
//     did not converge, an indeterminate result) set errno to EDOM, which
//     ZqCallBoostMath turns into NaN. Without this, a non-converged series is
//     returned as if it were the answer: P(1e12, 1e12) came out 0.66. (libm
//     sets EDOM only on its own domain errors, which Boost does not commit
//     for arguments in the domain; the reference tests would show it);
//   - overflow and underflow return +-inf and 0, the right limits;
//   - a rounding error sets ERANGE, which libm also sets on harmless
//     underflow, so it cannot be told apart and passes through. None of the
//     functions we wrap reaches an integer conversion outside small, guarded
//     arguments.
using ZqBoostMathPolicy = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::errno_on_error>,
    boost::math::policies::pole_error<boost::math::policies::errno_on_error>,
    boost::math::policies::evaluation_error<boost::math::policies::errno_on_error>,
    boost::math::policies::indeterminate_result_error<boost::math::policies::errno_on_error>,
    boost::math::policies::rounding_error<boost::math::policies::errno_on_error>,
    boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::underflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::denorm_error<boost::math::policies::ignore_error>>;

// Evaluates `evaluate()` (a Boost.Math call under ZqBoostMathPolicy) and gives
// NaN if it reported EDOM. The caller's errno is restored, so the wrapped
// functions have no side effect.
template <class Evaluate>
double ZqCallBoostMath(Evaluate evaluate) noexcept {
  const int callerErrno = errno;
  errno = 0;
  double result = evaluate();
  if (errno == EDOM) result = std::numeric_limits<double>::quiet_NaN();
  errno = callerErrno;
  return result;
}

}  // namespace detail
}  // namespace Numarc
