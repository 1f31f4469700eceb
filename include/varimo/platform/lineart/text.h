// Measuring text with the faces that images are drawn with (Cairo's text
// extents of the DejaVu faces), so that layouts fit what the files show.
#pragma once

#include <string>

#include "varimo/platform/lineart/primitives.h"

namespace Lineart {

// The advance width of the text in pixels at the font's size, face and
// style; rotation does not change it. Safe from several threads.
double ZqEstimateTextWidth(const std::string& text, const ZqFont& font);

// The largest size, from the font's own size down to `minimumSize`, at
// which the text is at most `width` wide; `minimumSize` when even that is
// too wide, and the font's size when it is below `minimumSize` already.
unsigned int ZqReduceFontSizeToFit(const std::string& text, const ZqFont& font, unsigned int minimumSize,
                                   double width);

}  // namespace Lineart
