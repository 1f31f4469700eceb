#include "varimo/platform/numarc/special_functions.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/digamma.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/sin_pi.hpp>

#include <cmath>
#include <limits>

#include "boost_math_policy.h"

namespace Numarc {

namespace {

using detail::ZqBoostMathPolicy;
using detail::ZqCallBoostMath;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

bool IsPoleOfGamma(double x) { return x <= 0.0 && std::floor(x) == x; }

bool IsPositiveFinite(double v) { return std::isfinite(v) && v > 0.0; }

}  // namespace

double Zqerf(double x) noexcept {
  return ZqCallBoostMath([x] { return boost::math::erf(x, ZqBoostMathPolicy()); });
}

double Zqerfc(double x) noexcept {
  return ZqCallBoostMath([x] { return boost::math::erfc(x, ZqBoostMathPolicy()); });
}

double ZqerfcInv(double p) noexcept {
  if (std::isnan(p) || p < 0.0 || p > 2.0) return kNaN;
  // Boost reports the ends as overflow; their limits are the values.
  if (p == 0.0) return kInf;
  if (p == 2.0) return -kInf;
  return ZqCallBoostMath([p] { return boost::math::erfc_inv(p, ZqBoostMathPolicy()); });
}

double Zqlgamma(double x) noexcept {
  if (std::isnan(x)) return x;
  // Boost reports the poles as errors; log|Gamma| tends to +inf on both
  // sides of each, so that limit is the value. -inf joins them: every double
  // that far out is a pole.
  if (IsPoleOfGamma(x)) return kInf;
  // Boost reflects negative arguments through the parity of floor(x) taken
  // as an int, which is undefined beyond the int range. Reflect here:
  // |Gamma(x) Gamma(1 - x)| = pi / |sin(pi x)|, with sin(pi x) from x mod 2,
  // which fmod gives exactly.
  if (x < -0x1p30) {
    const double reduced = std::fmod(x, 2.0);
    return ZqCallBoostMath([x, reduced] {
      return std::log(boost::math::constants::pi<double>()) -
             std::log(std::fabs(boost::math::sin_pi(reduced, ZqBoostMathPolicy()))) -
             boost::math::lgamma(1.0 - x, ZqBoostMathPolicy());
    });
  }
  return ZqCallBoostMath([x] { return boost::math::lgamma(x, ZqBoostMathPolicy()); });
}

double ZqDiGamma(double x) noexcept {
  if (std::isnan(x) || IsPoleOfGamma(x)) return kNaN;
  if (x == kInf) return kInf;
  return ZqCallBoostMath([x] { return boost::math::digamma(x, ZqBoostMathPolicy()); });
}

double ZqIncompleteGamma(double a, double x) noexcept {
  // Checked here rather than left to Boost: it accepts a = +inf and returns
  // NaN without reporting, and x = +inf needs no evaluation.
  if (!IsPositiveFinite(a) || std::isnan(x) || x < 0.0) return kNaN;
  if (x == kInf) return 1.0;
  return ZqCallBoostMath([a, x] { return boost::math::gamma_p(a, x, ZqBoostMathPolicy()); });
}

double ZqIncompleteBeta(double a, double b, double x) noexcept {
  // Boost accepts a = 0 or b = 0 (returning a limit) and infinite shapes;
  // both are outside the domain promised here.
  if (!IsPositiveFinite(a) || !IsPositiveFinite(b) || a > kMaxIncompleteBetaShape ||
      b > kMaxIncompleteBetaShape) {
    return kNaN;
  }
  if (std::isnan(x) || x < 0.0 || x > 1.0) return kNaN;
  return ZqCallBoostMath([a, b, x] { return boost::math::ibeta(a, b, x, ZqBoostMathPolicy()); });
}

}  // namespace Numarc
