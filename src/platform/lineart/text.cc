#include "varimo/platform/lineart/text.h"

#include <cmath>
#include <cstddef>

#include "cairo_support.h"

namespace Lineart {
namespace {

constexpr unsigned int kSerifFamily = 2;
constexpr unsigned int kBoldStyle = 1;
constexpr unsigned int kItalicStyle = 2;

// Cairo gets its advances from FreeType in whole 1/64 pixels (whole pixels
// with the metric hinting that image surfaces have by default). Its font
// matrix arithmetic adds noise in the last bits, enough to make a larger
// size measure a hair narrower than a smaller one; rounding to the unit
// removes the noise and keeps widths growing with the size.
constexpr double kAdvancesPerPixel = 64.0;

// The length of the character starting at `at` when it is one that Cairo
// accepts, 0 otherwise.
std::size_t AcceptedCharacterLength(const std::string& text, std::size_t at) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  char32_t code = 0;
  if ((lead & 0xE0) == 0xC0) {
    length = 2;
    code = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3;
    code = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4;
    code = lead & 0x07;
  } else {
    return 0;
  }
  if (text.size() - at < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte(at + i) & 0x3F);
  }
  static constexpr char32_t kShortestOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool overlong = code < kShortestOfLength[length];
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  const bool nonCharacter = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
  if (overlong || surrogate || nonCharacter || code > 0x10FFFF) return 0;
  return length;
}

// One context per thread: Cairo contexts must not be shared between
// threads, and making one per measurement would cost more than measuring.
// A context that went into an error state stays there, so it is replaced.
cairo_t* ScratchContext() {
  thread_local ZqCairoContext context;
  if (!context || cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
    const ZqCairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
    context.reset(cairo_create(surface.get()));
  }
  return context.get();
}

// The width of text already in the form Cairo takes.
double MeasureCairoText(const std::string& cairoText, const ZqFont& font) {
  if (cairoText.empty() || font.GetSize() == 0) return 0.0;
  cairo_t* cairo = ScratchContext();
  ZqSelectCairoFont(cairo, font);
  cairo_text_extents_t extents;
  cairo_text_extents(cairo, cairoText.c_str(), &extents);
  if (cairo_status(cairo) != CAIRO_STATUS_SUCCESS) return 0.0;
  return std::round(extents.x_advance * kAdvancesPerPixel) / kAdvancesPerPixel;
}

}  // namespace

void ZqSelectCairoFont(cairo_t* cairo, const ZqFont& font) {
  const char* face = font.GetFamily() == kSerifFamily ? "DejaVu Serif" : "DejaVu Sans";
  const cairo_font_slant_t slant = font.GetStyle() == kItalicStyle ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL;
  const cairo_font_weight_t weight = font.GetStyle() == kBoldStyle ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL;
  cairo_select_font_face(cairo, face, slant, weight);
  cairo_set_font_size(cairo, font.GetSize());
}

std::string ZqCairoText(const std::string& text) {
  std::string accepted;
  accepted.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = AcceptedCharacterLength(text, at);
    if (length > 0) {
      accepted.append(text, at, length);
      at += length;
      continue;
    }
    const auto latin1 = static_cast<unsigned char>(text[at++]);
    accepted += static_cast<char>(0xC0 | (latin1 >> 6));
    accepted += static_cast<char>(0x80 | (latin1 & 0x3F));
  }
  return accepted;
}

double ZqEstimateTextWidth(const std::string& text, const ZqFont& font) {
  return MeasureCairoText(ZqCairoText(text), font);
}

unsigned int ZqReduceFontSizeToFit(const std::string& text, const ZqFont& font, unsigned int minimumSize,
                                   double width) {
  const unsigned int largest = font.GetSize();
  if (largest <= minimumSize) return largest;
  const std::string cairoText = ZqCairoText(text);
  ZqFont sized = font;
  const auto fits = [&](unsigned int size) {
    sized.SetSize(size);
    return MeasureCairoText(cairoText, sized) <= width;
  };
  const double widest = MeasureCairoText(cairoText, font);
  if (widest <= width) return largest;

  // Widths grow with the size (each glyph's hinted advance does) and nearly
  // in proportion to it: the proportional size is a step or two from the
  // answer, and stepping from it finds the same size as trying every size
  // from the top. The comparisons are written so that a NaN width lands on
  // the minimum.
  const double proportional = std::floor(largest * (width / widest));
  unsigned int size = minimumSize;
  if (proportional >= largest) {
    size = largest - 1;
  } else if (proportional > minimumSize) {
    size = static_cast<unsigned int>(proportional);
  }
  if (fits(size)) {
    while (size + 1 < largest && fits(size + 1)) ++size;
    return size;
  }
  while (size > minimumSize) {
    if (fits(--size)) return size;
  }
  return minimumSize;
}

}  // namespace Lineart
