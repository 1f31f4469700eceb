// The small layout vocabulary of the krige report: margins, splits, a text
// placed in a frame, and the list of labelled values shown beside the
// molecule. Private to the report.
#pragma once

#include <string>
#include <vector>

#include "varimo/platform/corvane/color.h"
#include "varimo/platform/lineart/image.h"

namespace Varimo {

// Labelled values, in parallel vectors.
struct ZqTextVariables {
  std::vector<std::string> names;
  std::vector<std::string> values;
  std::vector<Corvane::ZqColor> colors;

  std::size_t size() const { return names.size(); }
  void Push(const std::string& name, const std::string& value, Corvane::ZqColor color) {
    names.push_back(name);
    values.push_back(value);
    colors.push_back(color);
  }
};

// The image less a margin (pixels) along every edge; a panel drawn into a
// buffer draws into Get().
class ZqBufferImage {
 public:
  ZqBufferImage(Lineart::ZqImageBase& image, double margin) : grid_(image, 1, 1) { grid_.SetMargins(margin); }
  Lineart::ZqImageFrame& Get() { return grid_.GetCell(1, 1); }

 private:
  Lineart::ZqImageGrid grid_;
};

// A buffer whose margin is a fraction of the image's smaller side.
class ZqAutoBufferImage : public ZqBufferImage {
 public:
  ZqAutoBufferImage(Lineart::ZqImageBase& image, double fraction);
};

// Left and right parts, the left one `fraction` of the width.
struct ZqImageHorizontalSplit {
  ZqImageHorizontalSplit(Lineart::ZqImageBase& image, double fraction);
  Lineart::ZqImageFrame left;
  Lineart::ZqImageFrame right;
};

// Top and bottom parts, the top one `fraction` of the height.
struct ZqImageVerticalSplit {
  ZqImageVerticalSplit(Lineart::ZqImageBase& image, double fraction);
  Lineart::ZqImageFrame top;
  Lineart::ZqImageFrame bottom;
};

// One line of text across the image, anchored as the font's alignment
// says and a third of the size below the middle (near the baseline of a
// text centred in height). `fit`: the size becomes the image's height,
// then shrinks (not below 5) until the text fits the width. False for an
// alignment other than centred, left or right.
bool ZqRenderText(Lineart::ZqImageBase& image, const std::string& text, Lineart::ZqFont font, bool fit);
// Black sans text, centred and fitted.
bool ZqRenderText(Lineart::ZqImageBase& image, const std::string& text);

// Draws the labelled values in the grid of cells that lets them be
// largest: one line per cell (" name  value") or, when larger, the name
// above the value. False when they cannot be written at 8 pixels; true at
// once for an empty list.
bool ZqRenderTextVariables(Lineart::ZqImageBase& image, const ZqTextVariables& variables);

// A font size from a length: truncated, and 0 for a negative or NaN one.
unsigned int ZqFontSize(double size);

// The pen of the report's frame borders.
Lineart::ZqPen ZqReportPen();

}  // namespace Varimo
