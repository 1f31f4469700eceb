#include "varimo/platform/minarc/func.h"

#include <cmath>

namespace Minarc {

Corvane::ZqIter<ZqFComponent> ZqFunc0::GetFComponents(const double* /*x*/) { return {}; }

bool ZqFunc0::CheckVariablesValidity(const double* x) {
  const unsigned int n = NumVar();
  for (unsigned int i = 0; i < n; ++i) {
    if (!std::isfinite(x[i])) return false;
  }
  return true;
}

bool ZqFunc0::IsRedundant(const double* x, const double* y, double tolerance) const {
  const unsigned int n = NumVar();
  for (unsigned int i = 0; i < n; ++i) {
    // Written so that a NaN anywhere makes the points distinct.
    if (!(std::fabs(x[i] - y[i]) <= tolerance)) return false;
  }
  return true;
}

}  // namespace Minarc
