// A function of two variables sampled on a regular grid, and its contours:
// the iso-value lines of a level, as branches, each an ordered polyline of
// points on the grid's edges.
//
//   ZqTwoDimFuncGrid grid(numX, numY, dx, dy, x0, y0, values);   // values row by row
//   std::vector<Numarc::ZqDataSeries> branches;
//   ZqStatModelResult result = grid.PlotContour(0.5, branches);
//
// The trace marks every edge the level crosses, then walks from cell to
// cell, one marked edge per step, starting on the boundary (bottom, top,
// right) before the inside, so that an open branch is traced from an end; a
// closed branch ends with a repeat of its first point. A saddle cell, where
// the contour passes twice, is not resolved: the trace fails there with the
// branches found so far left in the list. Values lying on the level are
// nudged off it for good (by 100 epsilon of the value range), so a grid
// traced at one level carries the nudged values into the next.
#pragma once

#include <cstdint>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/bit_vector.h"
#include "varimo/platform/numarc/data_series.h"

namespace Varimo {

class ZqTwoDimFuncGrid {
 public:
  // Values row by row: column i of row j at j * numX + i. Their number is
  // not checked against numX * numY.
  ZqTwoDimFuncGrid(std::uint32_t numX, std::uint32_t numY, double deltaX, double deltaY, double originX,
                   double originY, const std::vector<double>& funcVals);

  double GetMaxFuncValue() const { return maxFuncValue_; }
  double GetMinFuncValue() const { return minFuncValue_; }
  // Appends one series per branch of the level's contour. Writes the number
  // of crossed edges and the first cell of each branch to the output sink.
  ZqStatModelResult PlotContour(double level, std::vector<Numarc::ZqDataSeries>& contours);

 private:
  using Points = std::vector<Numarc::ZqDataPoint>;

  double Value(std::uint32_t i, std::uint32_t j) const;
  bool HorizontalBit(std::uint32_t i, std::uint32_t j) const;
  void FixAnyDegeneracy();
  void MarkAllIntersectingEdges();
  void SetupContour(double level);
  bool FindStartEdgeOnBottomBoundary(std::uint32_t& i) const;
  bool FindStartEdgeOnTopBoundary(std::uint32_t& i) const;
  bool FindStartEdgeOnRightBoundary(std::uint32_t& j) const;
  bool FindStartEdgeOnALeftColumn(std::uint32_t& i, std::uint32_t& j) const;
  std::uint32_t GetGridCellIndex(std::uint32_t i, std::uint32_t j, std::uint32_t edge) const;
  ZqStatModelResult CheckIntersectionBitIsOnForHorizontalEdge(std::uint32_t i, std::uint32_t j) const;
  ZqStatModelResult CheckIntersectionBitIsOnForVerticalEdge(std::uint32_t i, std::uint32_t j) const;
  ZqStatModelResult ClearIntersectionBitOnHorizontalEdge(std::uint32_t i, std::uint32_t j);
  ZqStatModelResult ClearIntersectionBitOnVerticalEdge(std::uint32_t i, std::uint32_t j);
  ZqStatModelResult AddIntersectionPointOnHorizontalEdge(std::uint32_t i, std::uint32_t j, Points& points);
  ZqStatModelResult AddIntersectionPointOnVerticalEdge(std::uint32_t i, std::uint32_t j, Points& points);
  ZqStatModelResult HandleBottomEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI, std::uint32_t& nextJ,
                                     std::uint32_t& nextEntryEdge, Points& points);
  ZqStatModelResult HandleLeftEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI, std::uint32_t& nextJ,
                                   std::uint32_t& nextEntryEdge, Points& points);
  ZqStatModelResult HandleTopEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI, std::uint32_t& nextJ,
                                  std::uint32_t& nextEntryEdge, Points& points);
  ZqStatModelResult HandleRightEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI, std::uint32_t& nextJ,
                                    std::uint32_t& nextEntryEdge, Points& points);
  ZqStatModelResult GetInitialGridCell(std::uint32_t& i, std::uint32_t& j, std::uint32_t& entryEdge,
                                       Points& points);
  ZqStatModelResult CheckNumGridCellIntersections(std::uint32_t i, std::uint32_t j, std::uint32_t entryEdge,
                                                  std::uint32_t& exitEdge) const;
  ZqStatModelResult ProcessGridCell(std::uint32_t i, std::uint32_t j, std::uint32_t entryEdge, std::uint32_t& nextI,
                                    std::uint32_t& nextJ, std::uint32_t& nextEntryEdge, Points& points);
  ZqStatModelResult GetBranchOfContour(Points& points);

  std::uint32_t numX_;
  std::uint32_t numY_;
  double deltaX_;
  double deltaY_;
  double originX_;
  double originY_;
  std::vector<double> funcVals_;
  double contourLevel_;
  double maxFuncValue_;
  double minFuncValue_;
  Corvane::ZqBitVector horizontalEdgeBits_;
  Corvane::ZqBitVector verticalEdgeBits_;
  std::uint32_t totalNumIntersections_ = 0;
};

}  // namespace Varimo
