#include "varimo/platform/inkmap/prop_map.h"

#include <algorithm>
#include <cmath>

#include "varimo/platform/corvane/generic_data.h"

namespace Inkmap {
namespace {

std::uint8_t Blend(std::uint8_t from, std::uint8_t to, double t) {
  return static_cast<std::uint8_t>(std::lround(from + (to - from) * t));
}

Corvane::ZqColor Blend(Corvane::ZqColor from, Corvane::ZqColor to, double t) {
  return {Blend(from.GetR(), to.GetR(), t), Blend(from.GetG(), to.GetG(), t), Blend(from.GetB(), to.GetB(), t),
          Blend(from.GetA(), to.GetA(), t)};
}

// Disc radii in angstrom: a small value still shows as a tint the size of
// an atom label, the largest reaches halfway along the bonds.
constexpr double kSmallestRadius = 0.3;
constexpr double kLargestRadius = 0.7;

}  // namespace

bool Zq2DPropMap::Render(Lineart::Zq2DMolDisplay& display, const std::string& tagName) const {
  if (!(min_ < 0.0 || max_ > 0.0)) return false;
  const unsigned int tag = Corvane::ZqGetTag(tagName);
  bool any = false;
  for (const Molkit::ZqAtomBase& atom : display.GetMol().GetAtomIter()) {
    const double* value = atom.GetData<double>(tag);
    if (value == nullptr || std::isnan(*value)) continue;
    const double v = std::clamp(*value, std::min(min_, 0.0), std::max(max_, 0.0));
    // How far toward its end of the scale, in [0, 1].
    const double t = v > 0.0 ? v / max_ : v < 0.0 ? v / min_ : 0.0;
    const Corvane::ZqColor color = Blend(background_, v >= 0.0 ? positive_ : negative_, t);
    display.SetAtomMark(atom.GetIdx(), {color, kSmallestRadius + (kLargestRadius - kSmallestRadius) * t});
    any = true;
  }
  if (any && legendLocation_ != 0) display.SetColorKey({negative_, background_, positive_, legendFontScale_});
  return any;
}

}  // namespace Inkmap
