#include "varimo/krige/minmax_distance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace Varimo {

double ZqMinMaxDistance::operator()(const std::vector<double>& x, const std::vector<double>& y) const {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  std::size_t count = x.size();
  if (prefix_) {
    if (x.size() < dimensions_ || y.size() < dimensions_) return kNaN;
    count = dimensions_;
  } else if (x.size() != y.size()) {
    return kNaN;
  }
  // The one test per coordinate refuses negative values and NaN alike; an
  // infinite count makes the sum of maxima infinite and is refused below.
  double shared = 0.0;
  double either = 0.0;
  const double* a = x.data();
  const double* b = y.data();
  for (std::size_t k = 0; k < count; ++k) {
    if (!(a[k] >= 0.0 && b[k] >= 0.0)) return kNaN;
    shared += std::min(a[k], b[k]);
    either += std::max(a[k], b[k]);
  }
  if (!std::isfinite(either)) return kNaN;
  return either > 0.0 ? 1.0 - shared / either : 0.0;
}

}  // namespace Varimo
