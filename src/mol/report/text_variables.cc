// The property list beside the molecule: as many labelled values as there
// are, in the grid of cells that lets the text be largest.
#include <cmath>
#include <utility>
#include <vector>

#include "report_layout.h"
#include "varimo/platform/lineart/text.h"

namespace Varimo {
namespace {

using Lineart::ZqFont;
using Lineart::ZqImageBase;
using Lineart::ZqImageFrame;

struct Grid {
  unsigned int rows;
  unsigned int cols;
};

// Every near-square way to hold n cells: 1 x n, n x 1, 2 x ceil(n/2), ...
// down to the squarest.
std::vector<Grid> CandidateGrids(std::size_t n) {
  std::vector<Grid> grids;
  for (unsigned int a = 1;; ++a) {
    const auto b = static_cast<unsigned int>((n + a - 1) / a);
    if (b < a) break;
    grids.push_back({a, b});
    if (a != b) grids.push_back({b, a});
  }
  return grids;
}

}  // namespace

bool ZqRenderTextVariables(ZqImageBase& image, const ZqTextVariables& variables) {
  const std::size_t n = variables.size();
  if (n == 0) return true;
  const double W = image.GetWidth();
  const double H = image.GetHeight();
  const std::vector<Grid> grids = CandidateGrids(n);

  unsigned int best = 0;
  Grid chosen{0, 0};
  bool twoLines = false;
  // One line per cell: " name  value" in 90% of the cell's width, rows
  // taking 80% of the height.
  for (const Grid& grid : grids) {
    const double cellWidth = W / grid.cols;
    const double rowHeight = 0.8 * H / grid.rows;
    if (!(cellWidth > 0.0 && rowHeight > 0.0)) continue;
    ZqFont font(3, 0, ZqFontSize(rowHeight), 2, Corvane::ZqBlack);
    for (std::size_t i = 0; i < n; ++i) {
      const std::string text = " " + variables.names[i] + "  " + variables.values[i];
      font.SetSize(Lineart::ZqReduceFontSizeToFit(text, font, 0, 0.9 * cellWidth));
    }
    if (font.GetSize() > best) {
      best = font.GetSize();
      chosen = grid;
    }
  }
  // The name above the value: only the names are measured, in bold and in
  // regular, in a third of the height.
  for (const Grid& grid : grids) {
    const double cellWidth = W / grid.cols;
    const double rowHeight = (H / 3.0) / grid.rows;
    if (!(cellWidth > 0.0 && rowHeight > 0.0)) continue;
    ZqFont font(3, 1, ZqFontSize(rowHeight), 2, Corvane::ZqBlack);
    for (std::size_t i = 0; i < n; ++i) {
      font.SetStyle(1);
      font.SetSize(Lineart::ZqReduceFontSizeToFit(variables.names[i], font, 0, cellWidth));
      font.SetStyle(0);
      font.SetSize(Lineart::ZqReduceFontSizeToFit(variables.names[i], font, 0, cellWidth));
    }
    if (font.GetSize() > best) {
      best = font.GetSize();
      chosen = grid;
      twoLines = true;
    }
  }
  if (best < 8 || chosen.rows == 0) return false;

  const double textHeight = std::min(H, best * chosen.rows * (twoLines ? 3.0 : 1.5));
  ZqImageFrame area(image, W, textHeight, {0.0, 0.0});
  Lineart::ZqImageGrid cells(area, chosen.rows, chosen.cols);
  ZqFont font(3, 0, best, 2, Corvane::ZqBlack);
  const Lineart::ZqPen cellPen(Corvane::ZqLightGrey, Corvane::ZqLightGrey, 0, 1.0, 0xFFFF);
  std::size_t i = 0;
  for (ZqImageFrame* cell : cells.GetCells(0, 0)) {
    if (i == n) break;
    Lineart::ZqDrawBorder(*cell, cellPen);
    const std::string name = " " + variables.names[i];
    const std::string value = " " + variables.values[i];
    if (twoLines) {
      font.SetAlignment(ZqFont::kCentred);
      ZqImageFrame top(*cell, cell->GetWidth(), std::min(cell->GetHeight(), 3.0 * best), {0.0, 0.0});
      ZqImageVerticalSplit lines(top, 0.5);
      font.SetStyle(0);
      if (!ZqRenderText(lines.top, variables.names[i], font, false)) return false;
      font.SetStyle(2);
      if (!ZqRenderText(lines.bottom, variables.values[i], font, false)) return false;
    } else {
      font.SetStyle(0);
      const double nameWidth = Lineart::ZqEstimateTextWidth(name, font);
      ZqImageFrame nameFrame(*cell, nameWidth, cell->GetHeight(), {0.0, 0.0});
      if (!ZqRenderText(nameFrame, name, font, false)) return false;
      font.SetStyle(2);
      ZqImageFrame valueFrame(*cell, cell->GetWidth() - nameWidth, cell->GetHeight(), {nameWidth, 0.0});
      if (!ZqRenderText(valueFrame, value, font, false)) return false;
    }
    ++i;
  }
  return true;
}

}  // namespace Varimo
