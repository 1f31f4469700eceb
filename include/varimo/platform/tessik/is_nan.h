#pragma once

#include <cmath>

namespace Tessik {

// True for a NaN of either sign; the reserved values of the library are
// ordinary finite numbers and never NaN.
inline bool ZqIsNaN(double value) { return std::isnan(value); }

}  // namespace Tessik
