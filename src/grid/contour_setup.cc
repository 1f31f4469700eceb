// The grid and the marking of the edges that a contour level crosses.
#include <algorithm>
#include <cstdio>
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/grid/two_dim_function_grid.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

ZqTwoDimFuncGrid::ZqTwoDimFuncGrid(std::uint32_t numX, std::uint32_t numY, double deltaX, double deltaY,
                                   double originX, double originY, const std::vector<double>& funcVals)
    : numX_(numX),
      numY_(numY),
      deltaX_(deltaX),
      deltaY_(deltaY),
      originX_(originX),
      originY_(originY),
      funcVals_(funcVals),
      contourLevel_(VarimoBadData::BadDouble),
      maxFuncValue_(-VarimoBadData::BadDouble),
      minFuncValue_(VarimoBadData::BadDouble),
      horizontalEdgeBits_(static_cast<std::size_t>(numX) * numY),
      verticalEdgeBits_(static_cast<std::size_t>(numX) * numY) {
  for (const double v : funcVals_) {
    if (v > maxFuncValue_) maxFuncValue_ = v;
    if (v < minFuncValue_) minFuncValue_ = v;
  }
}

double ZqTwoDimFuncGrid::Value(std::uint32_t i, std::uint32_t j) const {
  const std::size_t index = static_cast<std::size_t>(j) * numX_ + i;
  return index < funcVals_.size() ? funcVals_[index] : std::numeric_limits<double>::quiet_NaN();
}

bool ZqTwoDimFuncGrid::HorizontalBit(std::uint32_t i, std::uint32_t j) const {
  return horizontalEdgeBits_.IsBitOn(static_cast<std::size_t>(j) * numX_ + i);
}

void ZqTwoDimFuncGrid::FixAnyDegeneracy() {
  // No value closer to the level than d: no edge product is then exactly
  // zero, except on a flat function (d = 0).
  const double d = (maxFuncValue_ - minFuncValue_) * 100.0 * 2.220446049250313e-16;
  const double level = contourLevel_;
  for (double& v : funcVals_) {
    if (v >= level) {
      v = std::max(level + d, v);
    } else if (level > v) {
      v = std::min(level - d, v);
    }
  }
}

void ZqTwoDimFuncGrid::MarkAllIntersectingEdges() {
  totalNumIntersections_ = 0;
  horizontalEdgeBits_.ClearBits();
  verticalEdgeBits_.ClearBits();
  const double level = contourLevel_;
  for (std::uint32_t j = 0; j < numY_; ++j) {
    for (std::uint32_t i = 0; i + 1 < numX_; ++i) {
      if ((Value(i + 1, j) - level) * (Value(i, j) - level) <= 0.0) {
        horizontalEdgeBits_.SetBitOn(static_cast<std::size_t>(j) * numX_ + i);
        ++totalNumIntersections_;
      }
    }
  }
  if (numY_ == 1) return;
  for (std::uint32_t j = 0; j + 1 < numY_; ++j) {
    for (std::uint32_t i = 0; i < numX_; ++i) {
      if ((Value(i, j + 1) - level) * (Value(i, j) - level) <= 0.0) {
        verticalEdgeBits_.SetBitOn(static_cast<std::size_t>(j) * numX_ + i);
        ++totalNumIntersections_;
      }
    }
  }
}

void ZqTwoDimFuncGrid::SetupContour(double level) {
  contourLevel_ = level;
  FixAnyDegeneracy();
  MarkAllIntersectingEdges();
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "num intersecting edges = %u\n", totalNumIntersections_);
}

}  // namespace Varimo
