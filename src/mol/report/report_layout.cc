#include "report_layout.h"

#include <algorithm>

#include "varimo/platform/lineart/text.h"

namespace Varimo {

using Lineart::ZqFont;
using Lineart::ZqImageBase;

ZqAutoBufferImage::ZqAutoBufferImage(ZqImageBase& image, double fraction)
    : ZqBufferImage(image, fraction * std::min(image.GetWidth(), image.GetHeight())) {}

ZqImageHorizontalSplit::ZqImageHorizontalSplit(ZqImageBase& image, double fraction)
    : left(image, fraction * image.GetWidth(), image.GetHeight(), {0.0, 0.0}),
      right(image, (1.0 - fraction) * image.GetWidth(), image.GetHeight(), {fraction * image.GetWidth(), 0.0}) {}

ZqImageVerticalSplit::ZqImageVerticalSplit(ZqImageBase& image, double fraction)
    : top(image, image.GetWidth(), fraction * image.GetHeight(), {0.0, 0.0}),
      bottom(image, image.GetWidth(), (1.0 - fraction) * image.GetHeight(), {0.0, fraction * image.GetHeight()}) {}

bool ZqRenderText(ZqImageBase& image, const std::string& text, ZqFont font, bool fit) {
  const double width = image.GetWidth();
  const double height = image.GetHeight();
  if (fit) {
    font.SetSize(ZqFontSize(height));
    font.SetSize(Lineart::ZqReduceFontSizeToFit(text, font, 5, width));
  }
  double x = 0.0;
  switch (font.GetAlignment()) {
    case ZqFont::kLeft:
      x = 0.0;
      break;
    case ZqFont::kRight:
      x = width;
      break;
    case ZqFont::kCentred:
      x = 0.5 * width;
      break;
    default:
      return false;
  }
  const double y = font.GetSize() / 3.0 + height * 0.5;
  return image.DrawText({x, y}, text, font, width);
}

bool ZqRenderText(ZqImageBase& image, const std::string& text) {
  return ZqRenderText(image, text, ZqFont(3, 0, ZqFontSize(image.GetHeight()), 1, Corvane::ZqBlack),
                      true);
}

unsigned int ZqFontSize(double size) {
  if (!(size > 0.0)) return 0;
  return size < 1e6 ? static_cast<unsigned int>(size) : 1000000u;
}

Lineart::ZqPen ZqReportPen() { return Lineart::ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xFFFF); }

}  // namespace Varimo
