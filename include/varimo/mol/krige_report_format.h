// The number formats of a krige report.
#pragma once

#include <string>

namespace Varimo {

class ZqMolKrigeResult;

// A printf format ("%.Nf") for `value` with about `figures` significant
// figures: figures minus the number of digits before the point, at least
// 0; "%f" for figures 0, `figures` decimals for 0, and "%.0f" for NaN and
// the infinities (an SD field reading "inf", an unlogged response above
// 1e308), which print as words. Large and tiny
// values keep a fixed format too, so that columns of them line up.
std::string ZqGetFormatString(double value, unsigned int figures);
// The format of the result's spread of training responses (largest minus
// smallest), so that all training values of a report share their decimals.
std::string ZqGetFormatString(const ZqMolKrigeResult& result, unsigned int figures);

}  // namespace Varimo
