// Paints a molecule drawing onto a Cairo context: how written images
// replay their molecule calls.
#pragma once

#include <cairo.h>

#include "varimo/platform/lineart/depiction.h"

namespace Lineart {

// The drawing with its top left corner at `origin` of the context's
// current user space; false when RDKit cannot draw it.
bool ZqPaintMolecule(cairo_t* cairo, const Zq2DMolDisplay& display, const Zq2DPoint& origin);

}  // namespace Lineart
