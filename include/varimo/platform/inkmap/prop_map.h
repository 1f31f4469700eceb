// Paints a property of the atoms over a molecule drawing: each atom with a
// value gets a disc behind it whose colour runs from the background (value
// 0) to the positive colour at the maximum or the negative colour at the
// minimum, and whose size grows with the value's magnitude.
//
//   Inkmap::Zq2DPropMap map(Corvane::ZqWhite);
//   map.SetPositiveColor(Corvane::ZqBlue);
//   map.SetNegativeColor(Corvane::ZqRed);
//   map.SetMinValue(-1.0);
//   map.SetMaxValue(1.0);
//   map.Render(display, "Contribution");   // the atoms' double data under that tag
#pragma once

#include <string>

#include "varimo/platform/corvane/color.h"
#include "varimo/platform/lineart/depiction.h"

namespace Inkmap {

class Zq2DPropMap {
 public:
  explicit Zq2DPropMap(Corvane::ZqColor background) : background_(background) {}

  void SetPositiveColor(Corvane::ZqColor color) { positive_ = color; }
  void SetNegativeColor(Corvane::ZqColor color) { negative_ = color; }
  // 0: no colour key; any other: a key bar in the drawing's bottom right
  // corner, from the negative colour through the background to the
  // positive one.
  void SetLegendLocation(unsigned int location) { legendLocation_ = location; }
  // Values are clipped to [min, max]; 0 is the background colour.
  void SetMinValue(double value) { min_ = value; }
  void SetMaxValue(double value) { max_ = value; }
  void SetLegendFontScale(double scale) { legendFontScale_ = scale; }

  // Marks every atom of the drawing's molecule that holds double data
  // under `tagName` (atoms without it are left alone). False when no atom
  // holds it, or min is not below 0 nor max above it.
  bool Render(Lineart::Zq2DMolDisplay& display, const std::string& tagName) const;

 private:
  Corvane::ZqColor background_;
  Corvane::ZqColor positive_ = Corvane::ZqBlue;
  Corvane::ZqColor negative_ = Corvane::ZqRed;
  unsigned int legendLocation_ = 0;
  double min_ = -1.0;
  double max_ = 1.0;
  double legendFontScale_ = 1.0;
};

}  // namespace Inkmap
