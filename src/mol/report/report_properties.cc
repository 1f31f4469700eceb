// The distribution panel with the molecule's property list under it: the
// list takes as little height as it can, and loses its last entries, with
// a warning, when even half the frame cannot hold it.
#include "report_panels.h"
#include "varimo/mol/krige_report.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;

bool RenderDistributionAlone(ZqImageBase& image, ZqMolKrigeResult& result, const ZqKrigeReportOptions& options) {
  ZqAutoBufferImage buffer(image, 0.05);
  return ZqKrigeRenderDistribution(buffer.Get(), result, options);
}

// The list in the bottom part of a split at `fraction`, under a header
// strip; true when it fitted. Then the header and the distribution above.
struct PropertiesLayout {
  PropertiesLayout(ZqImageBase& image, double fraction)
      : split(image, fraction),
        header(split.bottom, split.bottom.GetWidth(), 0.05 * image.GetHeight(), {0.0, 0.0}),
        rest(split.bottom, split.bottom.GetWidth(), split.bottom.GetHeight() - 0.05 * image.GetHeight(),
             {0.0, 0.05 * image.GetHeight()}) {}
  ZqImageVerticalSplit split;
  ZqImageFrame header;
  ZqImageFrame rest;
};

bool TryVariables(PropertiesLayout& layout, const ZqTextVariables& variables) {
  ZqAutoBufferImage buffer(layout.rest, 0.05);
  return ZqRenderTextVariables(buffer.Get(), variables);
}

bool FinishLayout(PropertiesLayout& layout, ZqMolKrigeResult& result, const ZqKrigeReportOptions& options) {
  {
    ZqAutoBufferImage buffer(layout.header, 0.05);
    if (!ZqRenderText(buffer.Get(), "Properties")) return false;
  }
  Lineart::ZqDrawBorder(layout.split.top, Lineart::ZqPen(Corvane::ZqBlack, Corvane::ZqBlack, 0, 1.0, 0xFFFF));
  return RenderDistributionAlone(layout.split.top, result, options);
}

}  // namespace

bool ZqRenderDistributionAndProperties(ZqImageBase& image, ZqMolKrigeResult& result, const ZqTextVariables& variables,
                                       const ZqKrigeReportOptions& options) {
  if (variables.size() == 0) return RenderDistributionAlone(image, result, options);
  // The distribution keeps 85% of the height, then 80%, ... down to half.
  for (int attempt = 0; attempt < 8; ++attempt) {
    PropertiesLayout layout(image, 0.85 - 0.05 * attempt);
    if (TryVariables(layout, variables)) return FinishLayout(layout, result, options);
  }
  // Half the height still too little: drop entries from the end until the
  // rest fits (an empty list always does).
  for (std::size_t m = variables.size(); m-- > 0;) {
    ZqTextVariables first;
    for (std::size_t i = 0; i < m; ++i) first.Push(variables.names[i], variables.values[i], variables.colors[i]);
    PropertiesLayout layout(image, 0.5);
    if (TryVariables(layout, first)) {
      Corvane::ZqThrow.Warning("ZqKrigeRenderReport, Not enough space to render all sd/data, skipping some");
      return FinishLayout(layout, result, options);
    }
  }
  Corvane::ZqThrow.Warning("ZqKrigeRenderReport, unable to render any data, skipping");
  return RenderDistributionAlone(image, result, options);
}

}  // namespace Varimo
