// The training molecules that carried the prediction, largest |weight|
// first, each with its measured response and its weight.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "report_panels.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/mol/krige_report.h"
#include "varimo/mol/krige_report_format.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;
using Lineart::ZqPen;

// The response, and with the options' confidence its 95% interval from the
// noise variance e of the measurements.
bool RenderTrainingElementResponse(ZqImageBase& image, const ZqMolKrigeResult& result, unsigned int i, double e,
                                   const ZqKrigeReportOptions& options) {
  const double r = result.GetElementResponse(i);
  std::string text = options.GetResponseName() + " " + ZqFormatResponse(result, r, options);
  if (options.GetShowConfidence() && e > 0.0) {
    const double half = 1.96 * std::sqrt(e);
    text += " [" + ZqFormatResponse(result, r - half, options) + "," + ZqFormatResponse(result, r + half, options) +
            "]";
  }
  ZqAutoBufferImage buffer(image, 0.1);
  ZqRenderText(buffer.Get(), text,
               ZqFont(3, 2, ZqFontSize(image.GetHeight()), 1, Corvane::ZqBlack), true);
  return true;
}

// "Weight" over its value over a dial filled in proportion to |weight|,
// blue for a positive weight, red for a negative one.
bool RenderTrainingElementWeight(ZqImageBase& image, const ZqMolKrigeResult& result, unsigned int i) {
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  // A tall narrow frame keeps a 1:2 shape in its middle.
  ZqImageFrame area(image, w, 2.0 * w < h ? 2.0 * w : h, {0.0, 2.0 * w < h ? 0.5 * (h - 2.0 * w) : 0.0});
  ZqImageVerticalSplit halves(area, 0.5);
  ZqImageVerticalSplit quarters(halves.top, 0.5);
  const double weight = result.GetElementWeight(i);
  bool drawn = ZqRenderText(quarters.top, "Weight");
  drawn = ZqRenderText(quarters.bottom, Corvane::ZqFormatString("%6.3f", weight),
                       ZqFont(3, 0, ZqFontSize(quarters.bottom.GetHeight()), 1, Corvane::ZqBlack),
                       true) &&
          drawn;
  const Lineart::Zq2DPoint centre = Lineart::ZqGetCenter(halves.bottom);
  const double radius = 0.45 * std::min(halves.bottom.GetWidth(), halves.bottom.GetHeight());
  halves.bottom.DrawCircle(centre, radius, ZqPen(Corvane::ZqBlack, Corvane::ZqBlack, 0, 1.0, 0xFFFF));
  const Corvane::ZqColor fill = weight < 0.0 ? Corvane::ZqRed : Corvane::ZqBlue;
  halves.bottom.DrawCircle(centre, std::fabs(weight) < 1.0 ? radius * std::fabs(weight) : radius,
                           ZqPen(fill, fill, 1, 1.0, 0xFFFF));
  return drawn;
}

// Larger |weight| first; at equal magnitude the nearer molecule.
std::vector<unsigned int> ElementsByWeight(const ZqMolKrigeResult& result) {
  std::vector<unsigned int> order(result.GetNumElements());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](unsigned int a, unsigned int b) {
    const double wa = std::fabs(result.GetElementWeight(a));
    const double wb = std::fabs(result.GetElementWeight(b));
    if (wa != wb) return wa > wb;
    return result.GetElementDistance(a) < result.GetElementDistance(b);
  });
  return order;
}

}  // namespace

bool ZqKrigeRenderTraining(ZqImageBase& image, const ZqMolKrigeResult& result, const ZqKrigeReportOptions& options,
                           unsigned int rows, unsigned int cols) {
  if (rows == 0 || cols == 0) return true;
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  ZqImageFrame header(image, w, 0.05 * h, {0.0, 0.0});
  if (!ZqRenderText(header, "Similar Training Molecules",
                    ZqFont(3, 0, ZqFontSize(header.GetHeight()), 1, Corvane::ZqBlack), true)) {
    return false;
  }
  if (!result.Valid()) return false;
  ZqImageFrame body(image, w, 0.95 * h, {0.0, 0.05 * h});
  Lineart::ZqImageGrid grid(body, rows, cols);
  const std::vector<unsigned int> order = ElementsByWeight(result);
  const std::size_t shown = std::min<std::size_t>(static_cast<std::size_t>(rows) * cols, order.size());
  const double noise = ZqGetExperimentalVariance(result.GetVariogram());
  const std::vector<ZqImageFrame*> cells = grid.GetCells(0, 0);
  for (std::size_t j = 0; j < shown; ++j) {
    const unsigned int i = order[j];
    ZqImageFrame& cell = *cells[j];
    // The query itself, when it is a training molecule, carries all the
    // weight alone: it leads, framed in green.
    const bool isQuery = j == 0 && std::fabs(result.GetElementWeight(i) - 1.0) < 1e-6;
    Lineart::ZqDrawBorder(cell, isQuery ? ZqPen(Corvane::ZqLightGrey, Corvane::ZqGreen, 0, 2.0, 0xFFFF)
                                        : ZqPen(Corvane::ZqLightGrey, Corvane::ZqLightGrey, 0, 1.0, 0xFFFF));
    ZqBufferImage buffer(cell, 0.05 * cell.GetHeight());
    ZqImageFrame& inner = buffer.Get();
    const Molkit::ZqMolBase& mol = result.GetElement(i);
    if (inner.GetWidth() <= 2.0 * inner.GetHeight()) {
      ZqImageVerticalSplit parts(inner, 0.9);
      ZqImageHorizontalSplit upper(parts.top, 0.85);
      if (!ZqRenderTrainingElementMolecule(upper.left, mol)) return false;
      if (!RenderTrainingElementResponse(parts.bottom, result, i, noise, options)) return false;
      if (!RenderTrainingElementWeight(upper.right, result, i)) return false;
    } else {
      ZqImageHorizontalSplit parts(inner, 0.85);
      ZqImageHorizontalSplit right(parts.right, 0.75);
      if (!ZqRenderTrainingElementMolecule(parts.left, mol)) return false;
      if (!RenderTrainingElementResponse(right.left, result, i, noise, options)) return false;
      if (!RenderTrainingElementWeight(right.right, result, i)) return false;
    }
  }
  return true;
}

}  // namespace Varimo
