// Images to draw on, frames on them and grids of frames.
//
//   Lineart::ZqImage page(800, 600);                       // recorded in memory
//   Lineart::ZqImageFrame left(page, 400, 600, {0, 0});    // a view on its left half
//   left.DrawLine({0, 0}, {400, 600}, Lineart::ZqPen());   // in the frame's coordinates
//   Lineart::ZqWriteImage("page.png", page);
//
// Every drawing call takes the image's own coordinates and returns true
// when it drew. Nothing is clipped: a frame is a change of origin and a
// size that layouts read, not a wall.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/lineart/primitives.h"

namespace Lineart {

class Zq2DMolDisplay;

class ZqImageBase {
 public:
  virtual ~ZqImageBase() = default;

  virtual double GetWidth() const = 0;
  virtual double GetHeight() const = 0;

  virtual bool DrawLine(const Zq2DPoint& from, const Zq2DPoint& to, const ZqPen& pen) = 0;
  virtual bool DrawCircle(const Zq2DPoint& centre, double radius, const ZqPen& pen) = 0;
  // Angles in degrees, counter-clockwise on the screen from the positive x
  // axis. An arc is its outline; a pie the slice from the centre.
  virtual bool DrawArc(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
                       const ZqPen& pen) = 0;
  virtual bool DrawPie(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
                       const ZqPen& pen) = 0;
  // The rectangle with these two opposite corners.
  virtual bool DrawRectangle(const Zq2DPoint& corner, const Zq2DPoint& opposite, const ZqPen& pen) = 0;
  // The text anchored at `point` as the font's alignment says; `width` is
  // the room the caller measured it for (the text is not cut to it).
  virtual bool DrawText(const Zq2DPoint& point, const std::string& text, const ZqFont& font, double width) = 0;
  // A prepared molecule drawing (depiction.h), its top left corner at
  // `origin`, its size its own.
  virtual bool DrawMolecule(const Zq2DPoint& origin, const std::shared_ptr<const Zq2DMolDisplay>& display) = 0;
};

// A view on a part of another image: a size of its own and an origin in
// the parent's coordinates. The parent must outlive the frame.
class ZqImageFrame : public ZqImageBase {
 public:
  ZqImageFrame(ZqImageBase& parent, double width, double height, const Zq2DPoint& origin);

  double GetWidth() const override { return width_; }
  double GetHeight() const override { return height_; }
  const Zq2DPoint& GetOrigin() const { return origin_; }

  bool DrawLine(const Zq2DPoint& from, const Zq2DPoint& to, const ZqPen& pen) override;
  bool DrawCircle(const Zq2DPoint& centre, double radius, const ZqPen& pen) override;
  bool DrawArc(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
               const ZqPen& pen) override;
  bool DrawPie(const Zq2DPoint& centre, double startAngle, double endAngle, double radius,
               const ZqPen& pen) override;
  bool DrawRectangle(const Zq2DPoint& corner, const Zq2DPoint& opposite, const ZqPen& pen) override;
  bool DrawText(const Zq2DPoint& point, const std::string& text, const ZqFont& font, double width) override;
  bool DrawMolecule(const Zq2DPoint& origin, const std::shared_ptr<const Zq2DMolDisplay>& display) override;

 private:
  ZqImageBase& parent_;
  double width_;
  double height_;
  Zq2DPoint origin_;
};

// Equal cells over an image, rows by cols, inside a margin (pixels) along
// each edge of the image; cells are frames, counted from 1. The image must
// outlive the grid.
class ZqImageGrid {
 public:
  ZqImageGrid(ZqImageBase& image, unsigned int rows, unsigned int cols);

  // Lays the cells out again inside the new margin.
  void SetMargins(double margin);
  unsigned int NumRows() const { return rows_; }
  unsigned int NumCols() const { return cols_; }
  // The cell at (row, col), both from 1; rows and cols past the grid are
  // the last ones.
  ZqImageFrame& GetCell(unsigned int row, unsigned int col);
  // Every cell, row by row, from (row, col) (from 1; 0 means 1).
  std::vector<ZqImageFrame*> GetCells(unsigned int row, unsigned int col);

 private:
  void Layout();

  ZqImageBase& image_;
  unsigned int rows_;
  unsigned int cols_;
  double margin_ = 0.0;
  std::vector<std::unique_ptr<ZqImageFrame>> cells_;
};

// The centre of the image, in its own coordinates.
Zq2DPoint ZqGetCenter(const ZqImageBase& image);
// A rectangle along the image's edges.
bool ZqDrawBorder(ZqImageBase& image, const ZqPen& pen);

}  // namespace Lineart
