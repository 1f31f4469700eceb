#include "varimo/platform/lineart/image.h"

#include <algorithm>
#include <memory>

namespace Lineart {

ZqImageFrame::ZqImageFrame(ZqImageBase& parent, double width, double height, const Zq2DPoint& origin)
    : parent_(parent), width_(width), height_(height), origin_(origin) {}

bool ZqImageFrame::DrawLine(const Zq2DPoint& from, const Zq2DPoint& to, const ZqPen& pen) {
  return parent_.DrawLine(from + origin_, to + origin_, pen);
}

bool ZqImageFrame::DrawCircle(const Zq2DPoint& centre, double radius, const ZqPen& pen) {
  return parent_.DrawCircle(centre + origin_, radius, pen);
}

bool ZqImageFrame::DrawArc(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
                           const ZqPen& pen) {
  return parent_.DrawArc(centre + origin_, startAngle, endAngle, radius, pen);
}

bool ZqImageFrame::DrawPie(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
                           const ZqPen& pen) {
  return parent_.DrawPie(centre + origin_, startAngle, endAngle, radius, pen);
}

bool ZqImageFrame::DrawRectangle(const Zq2DPoint& corner, const Zq2DPoint& opposite, const ZqPen& pen) {
  return parent_.DrawRectangle(corner + origin_, opposite + origin_, pen);
}

bool ZqImageFrame::DrawText(const Zq2DPoint& point, const std::string& text, const ZqFont& font, double width) {
  return parent_.DrawText(point + origin_, text, font, width);
}

bool ZqImageFrame::DrawMolecule(const Zq2DPoint& origin, const std::shared_ptr<const Zq2DMolDisplay>& display) {
  return parent_.DrawMolecule(origin + origin_, display);
}

// A grid of no rows or columns would have no cell to hand out, and GetCell
// returns a reference: it gets one.
ZqImageGrid::ZqImageGrid(ZqImageBase& image, unsigned int rows, unsigned int cols)
    : image_(image), rows_(std::max(rows, 1u)), cols_(std::max(cols, 1u)) {
  Layout();
}

void ZqImageGrid::SetMargins(double margin) {
  margin_ = margin;
  Layout();
}

ZqImageFrame& ZqImageGrid::GetCell(unsigned int row, unsigned int col) {
  row = std::clamp(row, 1u, rows_);
  col = std::clamp(col, 1u, cols_);
  return *cells_[(row - 1) * cols_ + (col - 1)];
}

std::vector<ZqImageFrame*> ZqImageGrid::GetCells(unsigned int row, unsigned int col) {
  row = std::clamp(row, 1u, rows_);
  col = std::clamp(col, 1u, cols_);
  std::vector<ZqImageFrame*> cells;
  for (std::size_t i = (row - 1) * cols_ + (col - 1); i < cells_.size(); ++i) cells.push_back(cells_[i].get());
  return cells;
}

void ZqImageGrid::Layout() {
  // A margin wider than half the image leaves cells of no size rather than
  // of a negative one, which layouts would turn into nonsense.
  const double cellWidth = std::max(0.0, (image_.GetWidth() - 2.0 * margin_) / cols_);
  const double cellHeight = std::max(0.0, (image_.GetHeight() - 2.0 * margin_) / rows_);
  const bool firstLayout = cells_.empty();
  for (unsigned int row = 0; row < rows_; ++row) {
    for (unsigned int col = 0; col < cols_; ++col) {
      const Zq2DPoint origin(margin_ + col * cellWidth, margin_ + row * cellHeight);
      if (firstLayout) {
        cells_.push_back(std::make_unique<ZqImageFrame>(image_, cellWidth, cellHeight, origin));
        continue;
      }
      // Callers keep the cells they were handed while they set the margins:
      // each frame is replaced where it lives, so their references stay good.
      ZqImageFrame* cell = cells_[static_cast<std::size_t>(row) * cols_ + col].get();
      std::destroy_at(cell);
      std::construct_at(cell, image_, cellWidth, cellHeight, origin);
    }
  }
}

Zq2DPoint ZqGetCenter(const ZqImageBase& image) { return {image.GetWidth() / 2.0, image.GetHeight() / 2.0}; }

bool ZqDrawBorder(ZqImageBase& image, const ZqPen& pen) {
  return image.DrawRectangle({0.0, 0.0}, {image.GetWidth(), image.GetHeight()}, pen);
}

}  // namespace Lineart
