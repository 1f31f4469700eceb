// The numbers of the report as text, and the range of the training
// responses that the distribution panel spans.
#include <algorithm>
#include <cmath>
#include <limits>

#include "report_panels.h"
#include "varimo/mol/krige_report_format.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

double ZqGetMinTrainingResponse(const ZqMolKrigeResult& result) {
  double lo = std::numeric_limits<double>::max();
  for (const double response : result.GetTrainingResponses(true)) lo = std::min(lo, response);
  return lo;
}

double ZqGetMaxTrainingResponse(const ZqMolKrigeResult& result) {
  double hi = std::numeric_limits<double>::lowest();
  for (const double response : result.GetTrainingResponses(true)) hi = std::max(hi, response);
  return hi;
}

std::string ZqFormatResponse(const ZqMolKrigeResult& result, double value, const ZqKrigeReportOptions& options) {
  const unsigned int figures = options.GetResponseSignificantFigures();
  if (options.GetUnlog()) {
    const double shown = std::pow(10.0, value);
    return Corvane::ZqFormatString(ZqGetFormatString(shown, figures).c_str(), shown);
  }
  return Corvane::ZqFormatString(ZqGetFormatString(result, figures).c_str(), value);
}

}  // namespace Varimo
