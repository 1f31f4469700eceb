// What the Cairo-based sources of Lineart share: owning handles, the faces
// a ZqFont names, and text in the form Cairo takes. Measuring (text.cc)
// and writing (image_writer.cc) go through the same two functions, so that
// layouts fit what the files show.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "varimo/platform/lineart/primitives.h"

namespace Lineart {

struct ZqCairoDeleter {
  void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using ZqCairoContext = std::unique_ptr<cairo_t, ZqCairoDeleter>;
using ZqCairoSurface = std::unique_ptr<cairo_surface_t, ZqCairoDeleter>;

// Sets the colour (with its alpha) as the context's source.
inline void ZqSetCairoColor(cairo_t* cairo, Corvane::ZqColor color) {
  cairo_set_source_rgba(cairo, color.GetRFraction(), color.GetGFraction(), color.GetBFraction(), color.GetAFraction());
}

// Sets the font's face, style and size on the context.
void ZqSelectCairoFont(cairo_t* cairo, const ZqFont& font);

// The text as Cairo's text functions accept it. Cairo refuses a string that
// is not UTF-8, or holds a noncharacter, by putting the context (and with
// it the whole image) into an error state; each byte that does not start an
// acceptable character is therefore read as Latin-1, the usual encoding of
// older data files.
std::string ZqCairoText(const std::string& text);

}  // namespace Lineart
