// How far to trust the model: the variogram with its fitted kernel, and a
// dial of three scores of which the lowest is written in the middle.
#include <algorithm>
#include <cmath>

#include "report_panels.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/mol/krige_report.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/lineart/text.h"

namespace Varimo {

using Lineart::Zq2DPoint;
using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;
using Lineart::ZqPen;

bool ZqKrigeRenderVariogram(ZqImageBase& image, const ZqMolKrigeResult& result) {
  // An invalid result has no trained kernel to draw.
  if (!result.Valid()) return false;
  ZqImageVerticalSplit split(image, 0.1);
  ZqImageFrame& plot = split.bottom;
  const double pw = plot.GetWidth();
  const double ph = plot.GetHeight();

  const ZqVariogram variogram = result.GetVariogram();
  const ZqKrigeKernel kernel = result.GetKernel();
  double maxY = kernel.GetSill();
  double maxX = std::max(1.0, kernel.GetRange());
  for (unsigned int b = 0; b < variogram.GetNumBins(); ++b) {
    maxY = std::max(maxY, variogram.GetSemivariance(b));
    maxX = std::max(maxX, variogram.GetDistance(b));
  }
  const double yTop = 1.05 * maxY;

  // Room for the axis titles below and to the left, when there is enough
  // of it to be legible.
  double m = 0.2 * std::min(pw, ph);
  if (m < 6.0) m = 0.0;
  ZqImageFrame frame(plot, pw - m, ph - m, {m, 0.0});
  const double fw = frame.GetWidth();
  const double fh = frame.GetHeight();
  auto x = [&](double d) { return d * fw / maxX; };
  auto y = [&](double v) { return fh - fh * v / yTop; };

  ZqPen axes(Corvane::ZqBlack, Corvane::ZqBlack, 0, 1.0, 0xFFFF);
  frame.DrawLine({0.0, 0.0}, {0.0, fh}, axes);
  frame.DrawLine({0.0, fh}, {fw, fh}, axes);
  ZqPen variance = axes;
  variance.SetLineStipple(0x101);
  frame.DrawLine({0.0, y(result.GetVariance())}, {fw, y(result.GetVariance())}, variance);
  const ZqPen bins(Corvane::ZqRed, Corvane::ZqRed, 1, 1.0, 0xFFFF);
  for (unsigned int b = 0; b < variogram.GetNumBins(); ++b) {
    frame.DrawCircle({x(variogram.GetDistance(b)), y(variogram.GetSemivariance(b))}, 2.0, bins);
  }
  const ZqPen curve(Corvane::ZqBlue, Corvane::ZqBlue, 0, 1.0, 0xFFFF);
  const double step = maxX / 100.0;
  for (int k = 0; (k + 1) * step < maxX; ++k) {
    const double d0 = k * step;
    const double d1 = (k + 1) * step;
    frame.DrawLine({x(d0), y(kernel.GetValue(d0))}, {x(d1), y(kernel.GetValue(d1))}, curve);
  }

  if (m != 0.0) {
    ZqFont font(3, 0, ZqFontSize(m), 1, Corvane::ZqBlack);
    font.SetSize(Lineart::ZqReduceFontSizeToFit("Distance", font, 6, ph - m));
    font.SetSize(Lineart::ZqReduceFontSizeToFit("Semivariance", font, 6, ph - m));
    const double q = font.GetSize() / 3.0;
    plot.DrawText({(pw - m) * 0.5 + m, ph - q}, "Distance", font, ph - m);
    font.SetRotationAngle(90.0);
    plot.DrawText({2.0 * q, (ph - m) * 0.5}, "Semivariance", font, ph - m);
  }
  return ZqRenderText(split.top, "Variogram");
}

bool ZqKrigeRenderConfidenceRadial(ZqImageBase& image, ZqMolKrigeResult& result) {
  const double w = image.GetWidth();
  const double h = image.GetHeight();
  ZqImageFrame header(image, w, 0.1 * h, {0.0, 0.0});
  ZqFont font(3, 2, ZqFontSize(header.GetHeight()), 1, Corvane::ZqBlack);
  ZqBufferImage headerBuffer(header, 0.1 * header.GetHeight());
  if (!ZqRenderText(headerBuffer.Get(), "Model Quality", font, true) || !result.Valid()) return false;
  ZqImageFrame rest(image, w, 0.9 * h, {0.0, 0.1 * h});

  const ZqKrigeKernel kernel = result.GetKernel();
  // How much of the sill the prediction removed.
  const double conf = std::max(0.001, 1.0 - result.GetVariance() / kernel.GetSill());
  // The kernel's fit to the variogram, squashed from [0, inf) onto (0, 1].
  const double fitness = ZqGetFitness(kernel, result.GetVariogram());
  const double vari = std::max(0.001, 1.0 - (2.0 / (std::exp(-4.0 * fitness) + 1.0) - 1.0));
  // The share of the weight on measured molecules rather than bounds.
  double measured = 0.0;
  double total = 0.0;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) {
    const double weight = std::fabs(result.GetElementWeight(i));
    total += weight;
    if (!result.GetElementIsUnmeasured(i)) measured += weight;
  }
  const double meas = total > 0.0 ? std::max(0.001, measured / total) : 0.001;

  // Three rings of width t outside a square of side `inner` for the
  // percentage; in a small frame the square keeps 30 pixels and the rings
  // 5, taking the room from each other in that order.
  const double r = 0.5 * std::min(rest.GetWidth(), rest.GetHeight());
  double t = r / 5.0;
  double inner = 4.0 * t / std::sqrt(2.0);
  if (inner < 30.0) {
    inner = 30.0;
    t = (r - 21.213203435596427) / 3.0;
  }
  if (t < 5.0) {
    t = 5.0;
    inner = 2.0 * (r - 15.0) / std::sqrt(2.0);
  }
  const double s = 0.7 * t;
  ZqFont labelFont = font;
  labelFont.SetSize(ZqFontSize(s));
  labelFont.SetColor(Corvane::ZqLightGrey);
  labelFont.SetAlignment(ZqFont::kLeft);

  const Zq2DPoint centre = Lineart::ZqGetCenter(rest);
  struct Ring {
    double value;
    Corvane::ZqColor color;
    const char* label;
  };
  const Ring rings[3] = {{conf, Corvane::ZqDarkBlue, "Conf"},
                         {vari, Corvane::ZqDarkRed, "Vari"},
                         {meas, Corvane::ZqDarkGreen, "Meas"}};
  double radius = r - 0.5 * t;
  for (const Ring& ring : rings) {
    rest.DrawArc(centre, 0.0, ring.value * 360.0, radius, ZqPen(ring.color, ring.color, 0, t, 0xFFFF));
    if (s >= 6.0) {
      rest.DrawText(centre + Zq2DPoint(-0.5 * s, 0.5 * s - radius), ring.label, labelFont,
                    Lineart::ZqEstimateTextWidth(ring.label, labelFont));
    }
    radius -= t;
  }
  const ZqPen grey(Corvane::ZqWhite, Corvane::ZqGrey, 0, 1.0, 0xFFFF);
  for (int k = 0; k < 4; ++k) rest.DrawCircle(centre, r - k * t, grey);

  Ring lowest = rings[0];
  for (const Ring& ring : {rings[1], rings[2]}) {
    if (ring.value < lowest.value) lowest = ring;
  }
  if (lowest.value > 0.0) {
    rest.DrawPie(centre, 0.0, lowest.value * 360.0, r - 3.0 * t,
                 ZqPen(Corvane::ZqLightGrey, Corvane::ZqLightGrey, 1, 1.0, 0xFFFF));
  }
  ZqImageFrame square(rest, inner, inner, centre - Zq2DPoint(0.5 * inner, 0.5 * inner));
  ZqFont percent = font;
  percent.SetSize(ZqFontSize(inner));
  percent.SetColor(lowest.color);
  percent.SetAlignment(ZqFont::kCentred);
  return ZqRenderText(square, Corvane::ZqFormatString("%2.0f%%", 100.0 * lowest.value), percent, true);
}

}  // namespace Varimo
