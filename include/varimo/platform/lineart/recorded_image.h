// An image kept in memory as the sequence of its drawing calls, and written
// to a file by replaying them: PNG, SVG or PDF as the file's extension
// says. Tests read the calls back.
//
//   Lineart::ZqMultiPageImageFile file(2, 2);    // pages of 800 x 800
//   Lineart::ZqImage page(file.NewPage());
//   ... draw on page ...
//   if (!Lineart::ZqWriteImage("report.svg", page)) { ... }   // warned why
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/lineart/image.h"

namespace Lineart {

// One drawing call, in the coordinates of the whole image.
struct ZqDrawCall {
  enum class Kind { Line, Circle, Arc, Pie, Rectangle, Text, Molecule };
  Kind kind = Kind::Line;
  Zq2DPoint a;            // line start, centre, corner, text anchor, molecule origin
  Zq2DPoint b;            // line end, opposite corner
  double radius = 0.0;
  double startAngle = 0.0;
  double endAngle = 0.0;
  ZqPen pen;              // all but texts and molecules
  std::string text;
  ZqFont font;            // texts
  double width = 0.0;     // texts: the room measured for them
  std::shared_ptr<const Zq2DMolDisplay> molecule;
};

class ZqImage : public ZqImageBase {
 public:
  ZqImage(double width, double height);

  double GetWidth() const override { return width_; }
  double GetHeight() const override { return height_; }
  const std::vector<ZqDrawCall>& GetCalls() const { return calls_; }
  void Clear() { calls_.clear(); }

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
  double width_;
  double height_;
  std::vector<ZqDrawCall> calls_;
};

// Hands out pages of one size: `across` by `down` tiles of 400 pixels.
class ZqMultiPageImageFile {
 public:
  ZqMultiPageImageFile(unsigned int across, unsigned int down);
  // A new blank page.
  ZqImage NewPage();
  unsigned int GetNumPages() const { return pages_; }

 private:
  double width_;
  double height_;
  unsigned int pages_ = 0;
};

// Replays the image into a file whose extension (.png, .svg or .pdf, in
// any case) picks the format, on a white background. False, with a
// warning through Corvane::ZqThrow naming the file and the reason, for
// another extension, a file that cannot be written or an image of no area.
bool ZqWriteImage(const std::string& filename, const ZqImage& image);

}  // namespace Lineart
