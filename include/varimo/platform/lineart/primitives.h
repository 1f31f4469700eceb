// Points, pens and fonts: the values every Lineart drawing call takes.
//
// Coordinates are those of the image: the origin is the top left corner,
// x grows to the right, y downward; sizes are pixels.
#pragma once

#include <cstdint>

#include "varimo/platform/corvane/color.h"

namespace Lineart {

struct Zq2DPoint {
  double x = 0.0;
  double y = 0.0;
  constexpr Zq2DPoint() = default;
  constexpr Zq2DPoint(double xIn, double yIn) : x(xIn), y(yIn) {}
  constexpr Zq2DPoint operator+(const Zq2DPoint& other) const { return {x + other.x, y + other.y}; }
  constexpr Zq2DPoint operator-(const Zq2DPoint& other) const { return {x - other.x, y - other.y}; }
  constexpr bool operator==(const Zq2DPoint&) const = default;
};

// How lines and shapes are drawn. Lines and outlines take the background
// colour (the ink on a white page); a shape drawn with `fill` 1 is filled
// with the foreground colour first. The stipple is a 16-bit pattern read
// from its lowest bit, each bit one line width long: 0xFFFF is solid,
// 0xF0F0 dashes, 0x101 sparse dots.
class ZqPen {
 public:
  ZqPen() = default;
  ZqPen(Corvane::ZqColor foreground, Corvane::ZqColor background, int fill, double lineWidth,
        std::uint16_t stipple)
      : foreground_(foreground), background_(background), fill_(fill), lineWidth_(lineWidth), stipple_(stipple) {}

  Corvane::ZqColor GetForeground() const { return foreground_; }
  Corvane::ZqColor GetBackground() const { return background_; }
  bool GetFill() const { return fill_ != 0; }
  double GetLineWidth() const { return lineWidth_; }
  void SetLineWidth(double width) { lineWidth_ = width; }
  std::uint16_t GetLineStipple() const { return stipple_; }
  void SetLineStipple(std::uint16_t stipple) { stipple_ = stipple; }
  bool operator==(const ZqPen&) const = default;

 private:
  Corvane::ZqColor foreground_ = Corvane::ZqWhite;
  Corvane::ZqColor background_ = Corvane::ZqBlack;
  int fill_ = 0;
  double lineWidth_ = 1.0;
  std::uint16_t stipple_ = 0xFFFF;
};

// A font: family 2 is a serif face (DejaVu Serif), any other a sans face
// (DejaVu Sans); style 0 is regular, 1 bold, 2 italic; the size is the em
// in pixels. Alignment says where the anchor point of a text is: 1 at the
// centre of the text, 2 at its left end, 3 at its right end (and the
// baseline in all three). The rotation is in degrees, counter-clockwise on
// the screen, about the anchor.
class ZqFont {
 public:
  static constexpr unsigned int kCentred = 1;
  static constexpr unsigned int kLeft = 2;
  static constexpr unsigned int kRight = 3;

  ZqFont() = default;
  ZqFont(unsigned int family, unsigned int style, unsigned int size, unsigned int alignment,
         Corvane::ZqColor color, double rotation = 0.0)
      : family_(family), style_(style), size_(size), alignment_(alignment), color_(color), rotation_(rotation) {}

  unsigned int GetFamily() const { return family_; }
  unsigned int GetStyle() const { return style_; }
  void SetStyle(unsigned int style) { style_ = style; }
  unsigned int GetSize() const { return size_; }
  void SetSize(unsigned int size) { size_ = size; }
  unsigned int GetAlignment() const { return alignment_; }
  void SetAlignment(unsigned int alignment) { alignment_ = alignment; }
  Corvane::ZqColor GetColor() const { return color_; }
  void SetColor(Corvane::ZqColor color) { color_ = color; }
  double GetRotationAngle() const { return rotation_; }
  void SetRotationAngle(double degrees) { rotation_ = degrees; }
  bool operator==(const ZqFont&) const = default;

 private:
  unsigned int family_ = 3;
  unsigned int style_ = 0;
  unsigned int size_ = 12;
  unsigned int alignment_ = kCentred;
  Corvane::ZqColor color_ = Corvane::ZqBlack;
  double rotation_ = 0.0;
};

}  // namespace Lineart
