// Contours of functions with known iso-lines, checked geometrically: a
// circle, a straight line, a level through grid nodes, a saddle, and the
// degenerate grids.
#include "varimo/grid/two_dim_function_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "result_support.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Series = std::vector<Numarc::ZqDataSeries>;

// f on an n by n grid over [lo, hi]^2, row by row.
ZqTwoDimFuncGrid Grid(std::uint32_t n, double lo, double hi, const std::function<double(double, double)>& f) {
  const double step = (hi - lo) / (n - 1);
  std::vector<double> values;
  for (std::uint32_t j = 0; j < n; ++j) {
    for (std::uint32_t i = 0; i < n; ++i) values.push_back(f(lo + i * step, lo + j * step));
  }
  return ZqTwoDimFuncGrid(n, n, step, step, lo, lo, values);
}

TEST(Contour, CircleIsOneClosedBranch) {
  ZqTwoDimFuncGrid grid = Grid(41, -2.0, 2.0, [](double x, double y) { return x * x + y * y; });
  EXPECT_EQ(grid.GetMaxFuncValue(), 8.0);
  EXPECT_EQ(grid.GetMinFuncValue(), 0.0);
  Series branches;
  VarimoTest::CaptureOutput capture;
  ASSERT_TRUE(grid.PlotContour(1.0, branches).IsSuccessful());
  const std::string out = capture.Text();
  ASSERT_EQ(branches.size(), 1u);
  const auto& points = branches[0].GetPoints();
  ASSERT_GT(points.size(), 40u);
  // Closed: the last point repeats the first.
  EXPECT_EQ(points.front().GetX(), points.back().GetX());
  EXPECT_EQ(points.front().GetY(), points.back().GetY());
  // Linear interpolation of x^2 + y^2 along an edge of 0.1 misses the
  // circle by at most h^2 / 8 / (2 r) in radius.
  for (const Numarc::ZqDataPoint& p : points) EXPECT_NEAR(std::hypot(p.GetX(), p.GetY()), 1.0, 0.002);
  // Every marked edge is consumed, and the walk starts inside the grid.
  EXPECT_EQ(out.rfind("num intersecting edges = " + std::to_string(points.size() - 1) + "\ninit cell: ", 0), 0u)
      << out;
}

TEST(Contour, OpenLineRunsFromTheBottomBoundary) {
  // x + y interpolates exactly along the edges.
  ZqTwoDimFuncGrid grid = Grid(11, 0.0, 1.0, [](double x, double y) { return x + y; });
  Series branches;
  VarimoTest::CaptureOutput quiet;
  ASSERT_TRUE(grid.PlotContour(0.95, branches).IsSuccessful());
  ASSERT_EQ(branches.size(), 1u);
  const auto& points = branches[0].GetPoints();
  EXPECT_NEAR(points.front().GetX(), 0.95, 1e-12);
  EXPECT_EQ(points.front().GetY(), 0.0);
  EXPECT_EQ(points.back().GetX(), 0.0);
  EXPECT_NEAR(points.back().GetY(), 0.95, 1e-12);
  for (const Numarc::ZqDataPoint& p : points) EXPECT_NEAR(p.GetX() + p.GetY(), 0.95, 1e-12);
}

TEST(Contour, LevelOnNodesIsNudgedAndOutOfRangeLevelsMarkNothing) {
  // f = x on nodes 0, 0.25, ..., 1: the level 0.5 lies on a column of
  // nodes, which move by 100 epsilon of the range.
  ZqTwoDimFuncGrid grid = Grid(5, 0.0, 1.0, [](double x, double) { return x; });
  Series branches;
  VarimoTest::CaptureOutput capture;
  ASSERT_TRUE(grid.PlotContour(0.5, branches).IsSuccessful());
  ASSERT_EQ(branches.size(), 1u);
  for (const Numarc::ZqDataPoint& p : branches[0].GetPoints()) EXPECT_NEAR(p.GetX(), 0.5, 1e-12);
  EXPECT_EQ(branches[0].GetPoints().size(), 5u);

  Series none;
  ASSERT_TRUE(grid.PlotContour(3.0, none).IsSuccessful());
  EXPECT_TRUE(none.empty());
  const std::string out = capture.Text();
  EXPECT_NE(out.find("num intersecting edges = 0\n"), std::string::npos);
}

TEST(Contour, SaddleCellStopsTheTrace) {
  // x y on nodes -1.5, -0.5, 0.5, 1.5: the centre cell's four edges all
  // cross the level 0, and the walk entering it finds three more.
  ZqTwoDimFuncGrid grid = Grid(4, -1.5, 1.5, [](double x, double y) { return x * y; });
  Series branches;
  VarimoTest::CaptureOutput quiet;
  const ZqStatModelResult result = grid.PlotContour(0.0, branches);
  EXPECT_EQ(result.GetFailureType(), F::InternalLogicFailure);
  EXPECT_EQ(VarimoTest::Comments(result), std::vector<std::string>{"Number of New Intersections in grid is 3"});
  EXPECT_EQ(VarimoTest::Context(result).front(), "ZqTwoDimFuncGrid::CheckNumGridCellIntersections");
}

TEST(Contour, DegenerateGrids) {
  // One column: no horizontal edges and no cells; the trace still ends.
  ZqTwoDimFuncGrid column(1, 5, 1.0, 1.0, 0.0, 0.0, {0.0, 1.0, 2.0, 3.0, 4.0});
  Series branches;
  VarimoTest::CaptureOutput quiet;
  EXPECT_TRUE(column.PlotContour(2.5, branches).IsSuccessful());
  // One row likewise.
  ZqTwoDimFuncGrid row(5, 1, 1.0, 1.0, 0.0, 0.0, {0.0, 1.0, 2.0, 3.0, 4.0});
  Series rowBranches;
  EXPECT_TRUE(row.PlotContour(2.5, rowBranches).IsSuccessful());
  ASSERT_FALSE(rowBranches.empty());
  EXPECT_EQ(rowBranches[0].GetPoints()[0].GetX(), 2.5);
  // No values: the extremes keep their start values.
  const ZqTwoDimFuncGrid empty(0, 0, 1.0, 1.0, 0.0, 0.0, {});
  EXPECT_EQ(empty.GetMaxFuncValue(), -VarimoBadData::BadDouble);
  EXPECT_EQ(empty.GetMinFuncValue(), VarimoBadData::BadDouble);
}

}  // namespace
}  // namespace Varimo
