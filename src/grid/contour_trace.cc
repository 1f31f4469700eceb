// Walking a contour from cell to cell over the marked edges.
//
// A cell is named by its lower left grid point (i, j); its edges are 0
// bottom, 1 left, 2 top, 3 right. Each step consumes one marked edge, so a
// walk ends; NoData is the walk's own signal that a branch has run out.
#include <cstdio>
#include <limits>

#include "varimo/grid/two_dim_function_grid.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
// The exit edge before one is found.
constexpr std::uint32_t kNoEdge = 4;

ZqStatModelResult Fail(std::uint32_t type, const char* method) {
  return ZqMakeFailedResult(type, std::string("ZqTwoDimFuncGrid::") + method);
}

ZqStatModelResult Fail(std::uint32_t type, const char* method, const std::string& comment) {
  return ZqMakeFailedResult(type, std::string("ZqTwoDimFuncGrid::") + method, comment);
}

}  // namespace

std::uint32_t ZqTwoDimFuncGrid::GetGridCellIndex(std::uint32_t i, std::uint32_t j, std::uint32_t edge) const {
  switch (edge) {
    case 0: return j * numX_ + i;
    case 1: return j * numX_ + i;
    case 2: return (j + 1) * numX_ + i;
    case 3: return j * numX_ + i + 1;
    default: return std::numeric_limits<std::uint32_t>::max();
  }
}

ZqStatModelResult ZqTwoDimFuncGrid::CheckIntersectionBitIsOnForHorizontalEdge(std::uint32_t i,
                                                                              std::uint32_t j) const {
  if (HorizontalBit(i, j)) return ZqStatModelResult(true);
  return Fail(F::InternalLogicFailure, "CheckIntersectionBitIsOnForHorizontalEdge",
              "Intersection bit is off upon procedure entry!");
}

ZqStatModelResult ZqTwoDimFuncGrid::CheckIntersectionBitIsOnForVerticalEdge(std::uint32_t i, std::uint32_t j) const {
  if (verticalEdgeBits_.IsBitOn(static_cast<std::size_t>(j) * numX_ + i)) return ZqStatModelResult(true);
  return Fail(F::InternalLogicFailure, "CheckIntersectionBitIsOnForVerticalEdge",
              "Intersection bit is off upon procedure entry!");
}

ZqStatModelResult ZqTwoDimFuncGrid::ClearIntersectionBitOnHorizontalEdge(std::uint32_t i, std::uint32_t j) {
  horizontalEdgeBits_.SetBitOff(static_cast<std::size_t>(j) * numX_ + i);
  if (totalNumIntersections_ == 0) {
    return Fail(F::InternalLogicFailure, "ClearIntersectionBitOnHorizontalEdge",
                "_totalNumIntersections prematurely goes to zero");
  }
  --totalNumIntersections_;
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqTwoDimFuncGrid::ClearIntersectionBitOnVerticalEdge(std::uint32_t i, std::uint32_t j) {
  verticalEdgeBits_.SetBitOff(static_cast<std::size_t>(j) * numX_ + i);
  if (totalNumIntersections_ == 0) {
    return Fail(F::InternalLogicFailure, "ClearIntersectionBitOnVerticalEdge",
                "_totalNumIntersections prematurely goes to zero");
  }
  --totalNumIntersections_;
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqTwoDimFuncGrid::AddIntersectionPointOnHorizontalEdge(std::uint32_t i, std::uint32_t j,
                                                                         Points& points) {
  ZqStatModelResult result = CheckIntersectionBitIsOnForHorizontalEdge(i, j);
  if (result.NotSuccessful()) return result;
  const double left = Value(i, j), right = Value(i + 1, j);
  const double t = (contourLevel_ - left) / (right - left);
  if (t < 0.0 || t > 1.0) {
    result = Fail(F::InternalLogicFailure, "AddIntersectionPointOnHorizontalEdge",
                  "contour function val doesn't interpolate on horizontal edge");
    result.AddExtraComment(Corvane::ZqMakeString("left, contour,right vals = ", left, " ", contourLevel_, " ", right));
    return result;
  }
  points.emplace_back(i * deltaX_ + originX_ + t * deltaX_, j * deltaY_ + originY_);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqTwoDimFuncGrid::AddIntersectionPointOnVerticalEdge(std::uint32_t i, std::uint32_t j,
                                                                       Points& points) {
  ZqStatModelResult result = CheckIntersectionBitIsOnForVerticalEdge(i, j);
  if (result.NotSuccessful()) return result;
  const double below = Value(i, j), above = Value(i, j + 1);
  const double t = (contourLevel_ - below) / (above - below);
  if (t < 0.0 || t > 1.0) {
    result = Fail(F::InternalLogicFailure, "AddIntersectionPointOnVerticalEdge",
                  "contour function val doesn't interpolate on vertical edge");
    result.AddExtraComment(
        Corvane::ZqMakeString("below, contour,above vals = ", below, " ", contourLevel_, " ", above));
    return result;
  }
  points.emplace_back(i * deltaX_ + originX_, j * deltaY_ + originY_ + t * deltaY_);
  return ZqStatModelResult(true);
}

// ------------------------------------------------------------ where a branch begins

bool ZqTwoDimFuncGrid::FindStartEdgeOnBottomBoundary(std::uint32_t& i) const {
  if (numX_ == 1) return false;
  for (i = 0; i + 1 < numX_; ++i) {
    if (HorizontalBit(i, 0)) return true;
  }
  return false;
}

bool ZqTwoDimFuncGrid::FindStartEdgeOnTopBoundary(std::uint32_t& i) const {
  if (numX_ == 1) return false;
  for (i = 0; i + 1 < numX_; ++i) {
    if (HorizontalBit(i, numY_ - 1)) return true;
  }
  return false;
}

bool ZqTwoDimFuncGrid::FindStartEdgeOnRightBoundary(std::uint32_t& j) const {
  if (numY_ == 1) return false;
  for (j = 0; j + 1 < numY_; ++j) {
    if (verticalEdgeBits_.IsBitOn(static_cast<std::size_t>(j) * numX_ + numX_ - 1)) return true;
  }
  return false;
}

bool ZqTwoDimFuncGrid::FindStartEdgeOnALeftColumn(std::uint32_t& i, std::uint32_t& j) const {
  if (numY_ == 1) return false;
  // The positions within a row run to numY - 1, not numX - 1, as this scan
  // always has: on a grid that is not square it sees too few columns or
  // runs on into the next row's bits.
  for (j = 0; j + 1 < numY_; ++j) {
    for (i = 0; i + 1 < numY_; ++i) {
      if (verticalEdgeBits_.IsBitOn(static_cast<std::size_t>(j) * numX_ + i)) return true;
    }
  }
  return false;
}

ZqStatModelResult ZqTwoDimFuncGrid::GetInitialGridCell(std::uint32_t& i, std::uint32_t& j, std::uint32_t& entryEdge,
                                                       Points& points) {
  ZqStatModelResult result(true);
  if (FindStartEdgeOnBottomBoundary(i)) {
    j = 0;
    entryEdge = 0;
    result = AddIntersectionPointOnHorizontalEdge(i, 0, points);
    if (result.IsSuccessful()) result = ClearIntersectionBitOnHorizontalEdge(i, 0);
  } else if (FindStartEdgeOnTopBoundary(i)) {
    j = numY_ - 2;
    entryEdge = 2;
    result = AddIntersectionPointOnHorizontalEdge(i, j + 1, points);
    if (result.IsSuccessful()) result = ClearIntersectionBitOnHorizontalEdge(i, j + 1);
  } else if (FindStartEdgeOnRightBoundary(j)) {
    i = numX_ - 2;
    entryEdge = 3;
    result = AddIntersectionPointOnVerticalEdge(i + 1, j, points);
    if (result.IsSuccessful()) result = ClearIntersectionBitOnVerticalEdge(i + 1, j);
  } else if (FindStartEdgeOnALeftColumn(i, j)) {
    entryEdge = 1;
    result = AddIntersectionPointOnVerticalEdge(i, j, points);
    // The start bit stays on: the walk comes back to it and closes the
    // loop. Only a start in column 0 clears a bit, the horizontal one.
    if (result.IsSuccessful() && i == 0) result = ClearIntersectionBitOnHorizontalEdge(0, j);
  } else {
    return Fail(F::InternalLogicFailure, "GetInitialGridCell");
  }
  if (result.NotSuccessful()) result.AddCallContext("ZqTwoDimFuncGrid::GetInitialGridCell");
  return result;
}

// ------------------------------------------------------------ the walk

ZqStatModelResult ZqTwoDimFuncGrid::CheckNumGridCellIntersections(std::uint32_t i, std::uint32_t j,
                                                                  std::uint32_t entryEdge,
                                                                  std::uint32_t& exitEdge) const {
  const char* method = "CheckNumGridCellIntersections";
  if (entryEdge > 3) return Fail(F::InternalLogicFailure, method);
  std::uint32_t count = 0;
  for (std::uint32_t k = 1; k <= 3; ++k) {
    const std::uint32_t e = (entryEdge + k) % 4;
    const std::uint32_t index = GetGridCellIndex(i, j, e);
    const bool on = (e == 1 || e == 3) ? verticalEdgeBits_.IsBitOn(index) : horizontalEdgeBits_.IsBitOn(index);
    if (on) {
      ++count;
      exitEdge = e;
    }
  }
  if (count == 0) return Fail(F::NoData, method);
  if (count > 1) {
    return Fail(F::InternalLogicFailure, method,
                Corvane::ZqMakeString("Number of New Intersections in grid is ", count));
  }
  return ZqStatModelResult(true);
}

// Adds the point of the crossed edge, clears its bit and steps into the
// neighbour through it; NoData at the grid's edge, after the point.
ZqStatModelResult ZqTwoDimFuncGrid::HandleBottomEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI,
                                                     std::uint32_t& nextJ, std::uint32_t& nextEntryEdge,
                                                     Points& points) {
  ZqStatModelResult result = AddIntersectionPointOnHorizontalEdge(i, j, points);
  if (result.IsSuccessful()) result = ClearIntersectionBitOnHorizontalEdge(i, j);
  if (result.NotSuccessful()) return result;
  if (j == 0) return Fail(F::NoData, "HandleBottomEdge");
  nextI = i;
  nextJ = j - 1;
  nextEntryEdge = 2;
  return result;
}

ZqStatModelResult ZqTwoDimFuncGrid::HandleLeftEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI,
                                                   std::uint32_t& nextJ, std::uint32_t& nextEntryEdge,
                                                   Points& points) {
  ZqStatModelResult result = AddIntersectionPointOnVerticalEdge(i, j, points);
  if (result.IsSuccessful()) result = ClearIntersectionBitOnVerticalEdge(i, j);
  if (result.NotSuccessful()) return result;
  if (i == 0) return Fail(F::NoData, "HandleLeftEdge");
  nextI = i - 1;
  nextJ = j;
  nextEntryEdge = 3;
  return result;
}

ZqStatModelResult ZqTwoDimFuncGrid::HandleTopEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI,
                                                  std::uint32_t& nextJ, std::uint32_t& nextEntryEdge,
                                                  Points& points) {
  ZqStatModelResult result = AddIntersectionPointOnHorizontalEdge(i, j + 1, points);
  if (result.IsSuccessful()) result = ClearIntersectionBitOnHorizontalEdge(i, j + 1);
  if (result.NotSuccessful()) return result;
  if (j + 2 == numY_) return Fail(F::NoData, "HandleTopEdge");
  nextI = i;
  nextJ = j + 1;
  nextEntryEdge = 0;
  return result;
}

ZqStatModelResult ZqTwoDimFuncGrid::HandleRightEdge(std::uint32_t i, std::uint32_t j, std::uint32_t& nextI,
                                                    std::uint32_t& nextJ, std::uint32_t& nextEntryEdge,
                                                    Points& points) {
  ZqStatModelResult result = AddIntersectionPointOnVerticalEdge(i + 1, j, points);
  if (result.IsSuccessful()) result = ClearIntersectionBitOnVerticalEdge(i + 1, j);
  if (result.NotSuccessful()) return result;
  if (i + 2 == numX_) return Fail(F::NoData, "HandleRightEdge");
  nextI = i + 1;
  nextJ = j;
  nextEntryEdge = 1;
  return result;
}

ZqStatModelResult ZqTwoDimFuncGrid::ProcessGridCell(std::uint32_t i, std::uint32_t j, std::uint32_t entryEdge,
                                                    std::uint32_t& nextI, std::uint32_t& nextJ,
                                                    std::uint32_t& nextEntryEdge, Points& points) {
  std::uint32_t exitEdge = kNoEdge;
  ZqStatModelResult result = CheckNumGridCellIntersections(i, j, entryEdge, exitEdge);
  if (result.NotSuccessful()) return result;
  switch (exitEdge) {
    case 0: return HandleBottomEdge(i, j, nextI, nextJ, nextEntryEdge, points);
    case 1: return HandleLeftEdge(i, j, nextI, nextJ, nextEntryEdge, points);
    case 2: return HandleTopEdge(i, j, nextI, nextJ, nextEntryEdge, points);
    default: return HandleRightEdge(i, j, nextI, nextJ, nextEntryEdge, points);
  }
}

ZqStatModelResult ZqTwoDimFuncGrid::GetBranchOfContour(Points& points) {
  if (totalNumIntersections_ == 0) return Fail(F::NoData, "GetBranchOfContour");
  std::uint32_t i = 0, j = 0, entryEdge = 0;
  ZqStatModelResult result = GetInitialGridCell(i, j, entryEdge, points);
  if (result.NotSuccessful()) return result;
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "init cell: %u %u %u\n", i, j, entryEdge);
  while (result.IsSuccessful()) {
    std::uint32_t nextI = i, nextJ = j, nextEntryEdge = entryEdge;
    result = ProcessGridCell(i, j, entryEdge, nextI, nextJ, nextEntryEdge, points);
    i = nextI;
    j = nextJ;
    entryEdge = nextEntryEdge;
  }
  if (result.GetFailureType() == F::NoData) return ZqStatModelResult(true);
  return result;
}

ZqStatModelResult ZqTwoDimFuncGrid::PlotContour(double level, std::vector<Numarc::ZqDataSeries>& contours) {
  SetupContour(level);
  for (;;) {
    Points points;
    points.reserve(totalNumIntersections_);
    const ZqStatModelResult result = GetBranchOfContour(points);
    if (result.NotSuccessful()) {
      return result.GetFailureType() == F::NoData ? ZqStatModelResult(true) : result;
    }
    Numarc::ZqDataSeries series;
    series.SetPoints(std::move(points));
    contours.push_back(std::move(series));
  }
}

}  // namespace Varimo
