#include "varimo/mol/krige_report_format.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "varimo/mol/mol_krige.h"

namespace Varimo {

std::string ZqGetFormatString(double value, unsigned int figures) {
  if (figures == 0) return "%f";
  const double v = std::fabs(value);
  if (v == 0.0) return "%." + std::to_string(figures) + "f";
  // NaN and infinity print as words whatever the precision, and their
  // logarithm has no whole part to count.
  if (!std::isfinite(v)) return "%.0f";
  // The digits before the point; the small offset makes exact powers of
  // ten (1000: L = 3) count as the longer number they print as.
  const double l = std::log10(v) + 1e-6;
  const long k = static_cast<long>(std::trunc(l)) + (l > 0.0 ? 1 : 0);
  if (k < static_cast<long>(figures)) return "%." + std::to_string(static_cast<long>(figures) - k) + "f";
  return "%.0f";
}

std::string ZqGetFormatString(const ZqMolKrigeResult& result, unsigned int figures) {
  double lo = std::numeric_limits<double>::infinity(), hi = -lo;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) {
    lo = std::min(lo, result.GetElementResponse(i));
    hi = std::max(hi, result.GetElementResponse(i));
  }
  return ZqGetFormatString(result.GetNumElements() == 0 ? 0.0 : hi - lo, figures);
}

}  // namespace Varimo
