#include "varimo/platform/lineart/recorded_image.h"

#include <utility>

namespace Lineart {
namespace {

// Pages are laid out in tiles of this many pixels a side.
constexpr double kPageTile = 400.0;

ZqDrawCall Shape(ZqDrawCall::Kind kind, const Zq2DPoint& a, const ZqPen& pen) {
  ZqDrawCall call;
  call.kind = kind;
  call.a = a;
  call.pen = pen;
  return call;
}

ZqDrawCall Round(ZqDrawCall::Kind kind, const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
                 const ZqPen& pen) {
  ZqDrawCall call = Shape(kind, centre, pen);
  call.startAngle = startAngle;
  call.endAngle = endAngle;
  call.radius = radius;
  return call;
}

}  // namespace

ZqImage::ZqImage(double width, double height) : width_(width), height_(height) {}

bool ZqImage::DrawLine(const Zq2DPoint& from, const Zq2DPoint& to, const ZqPen& pen) {
  ZqDrawCall call = Shape(ZqDrawCall::Kind::Line, from, pen);
  call.b = to;
  calls_.push_back(std::move(call));
  return true;
}

bool ZqImage::DrawCircle(const Zq2DPoint& centre, double radius, const ZqPen& pen) {
  ZqDrawCall call = Shape(ZqDrawCall::Kind::Circle, centre, pen);
  call.radius = radius;
  calls_.push_back(std::move(call));
  return true;
}

bool ZqImage::DrawArc(const Zq2DPoint& centre, double startAngle, double endAngle, double radius, const ZqPen& pen) {
  calls_.push_back(Round(ZqDrawCall::Kind::Arc, centre, startAngle, endAngle, radius, pen));
  return true;
}

bool ZqImage::DrawPie(const Zq2DPoint& centre, double startAngle, double endAngle, double radius, const ZqPen& pen) {
  calls_.push_back(Round(ZqDrawCall::Kind::Pie, centre, startAngle, endAngle, radius, pen));
  return true;
}

bool ZqImage::DrawRectangle(const Zq2DPoint& corner, const Zq2DPoint& opposite, const ZqPen& pen) {
  ZqDrawCall call = Shape(ZqDrawCall::Kind::Rectangle, corner, pen);
  call.b = opposite;
  calls_.push_back(std::move(call));
  return true;
}

bool ZqImage::DrawText(const Zq2DPoint& point, const std::string& text, const ZqFont& font, double width) {
  ZqDrawCall call;
  call.kind = ZqDrawCall::Kind::Text;
  call.a = point;
  call.text = text;
  call.font = font;
  call.width = width;
  calls_.push_back(std::move(call));
  return true;
}

bool ZqImage::DrawMolecule(const Zq2DPoint& origin, const std::shared_ptr<const Zq2DMolDisplay>& display) {
  ZqDrawCall call;
  call.kind = ZqDrawCall::Kind::Molecule;
  call.a = origin;
  call.molecule = display;
  calls_.push_back(std::move(call));
  return true;
}

ZqMultiPageImageFile::ZqMultiPageImageFile(unsigned int across, unsigned int down)
    : width_(across * kPageTile), height_(down * kPageTile) {}

ZqImage ZqMultiPageImageFile::NewPage() {
  ++pages_;
  return ZqImage(width_, height_);
}

}  // namespace Lineart
