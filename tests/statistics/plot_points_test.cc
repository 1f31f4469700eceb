#include "varimo/statistics/plot_points.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/statistics/histogram.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Numarc::ZqDataPoint;
using Points = std::vector<ZqDataPoint>;

std::vector<double> Ys(const Numarc::ZqDataSeries& series) {
  std::vector<double> ys;
  for (const ZqDataPoint& p : series.GetPoints()) ys.push_back(p.GetY());
  return ys;
}

TEST(HistogramPlotPoints, StaircasesOfThreePointsPerBinAndOne) {
  Numarc::ZqDataSeries series;
  ZqGetHistogramPlotPointsFromBinStats(series, {0.5, 0.25}, {0.0, 1.0, 3.0});
  EXPECT_EQ(series.GetPoints(), (Points{{0, 0}, {0, 0.5}, {1, 0.5}, {1, 0}, {1, 0.25}, {3, 0.25}, {3, 0}}));
  // Mismatched sizes write nothing.
  ZqGetHistogramPlotPointsFromBinStats(series, {0.5, 0.25}, {0.0, 1.0});
  EXPECT_EQ(series.GetNumPoints(), 7u);
  ZqGetHistogramPlotPointsFromBinStats(series, {0.5}, {0.0, 1.0, 2.0});
  EXPECT_EQ(series.GetNumPoints(), 7u);

  // One call gives the histogram on its edges, and keeps the series name.
  series.SetName("keep");
  double xlo, xhi, maxHeight;
  ZqGetUserDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, {0.0, 1.0, 1.5, 4.0}, 2, 0.0, 0.0);
  EXPECT_EQ(series.GetPoints(), (Points{{0, 0}, {0, 0.375}, {2, 0.375}, {2, 0}, {2, 0.125}, {4, 0.125}, {4, 0}}));
  EXPECT_EQ(series.GetName(), "keep");
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 4.0);
  EXPECT_EQ(maxHeight, 0.375);

  // Equal frequency on quartiles of eight evenly spread values.
  const std::vector<double> data = {1, 2, 3, 4, 5, 6, 7, 8};
  ZqGetUserDefinedConstFreqHistPlotPoints(series, xlo, xhi, maxHeight, data, 2, 0.0, 0.0);
  // Median 4.5 by type 8; bins [0, 4.5] and [4.5, 8] of probability 1/2.
  EXPECT_EQ(series.GetPoints(),
            (Points{{0, 0}, {0, 0.5 / 4.5}, {4.5, 0.5 / 4.5}, {4.5, 0}, {4.5, 0.5 / 3.5}, {8, 0.5 / 3.5}, {8, 0}}));

  std::uint64_t numBins = 0;
  ZqGetAutoDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, numBins, data, 1.0, 8.0);
  ASSERT_GT(numBins, 0u);
  EXPECT_EQ(series.GetNumPoints(), 3 * numBins + 1);
  // Empty data clear the series.
  ZqGetAutoDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, numBins, {}, 1.0, 8.0);
  EXPECT_EQ(series.GetNumPoints(), 0u);
}

TEST(HistogramPlotPoints, ConfidenceBandSurroundsTheHistogramOnTheSquareRootScale) {
  // Unsorted on purpose: the band functions sort a copy.
  const std::vector<double> data = {5.5, 0.2, 3.1, 2.2, 9.9, 4.4, 1.1, 6.6, 2.8, 7.7, 3.3, 0.9};
  Numarc::ZqDataSeries series, lower, upper;
  double xlo, xhi, maxHeight;
  ZqGetUserDefConstBinWidthHistPlotPtsConfidenceInt(series, lower, upper, xlo, xhi, maxHeight, data, 4, 0.05, 0.0,
                                                    10.0);
  ASSERT_EQ(series.GetNumPoints(), 13u);
  ASSERT_EQ(lower.GetNumPoints(), 13u);
  ASSERT_EQ(upper.GetNumPoints(), 13u);
  const double c = ZqGetConstForConstBinWidthHistConfidenceInt(12, 4, 0.0, 10.0, 0.05);
  const std::vector<double> h = Ys(series), l = Ys(lower), u = Ys(upper);
  for (std::size_t k = 0; k < h.size(); ++k) {
    EXPECT_EQ(series.GetPoints()[k].GetX(), lower.GetPoints()[k].GetX());
    // Every third point is a foot of the staircase, at 0 in all three.
    EXPECT_NEAR(u[k], k % 3 == 0 ? 0.0 : std::pow(std::sqrt(h[k]) + c, 2), 1e-15) << k;
    EXPECT_NEAR(l[k], std::pow(std::max(std::sqrt(h[k]) - c, 0.0), 2), 1e-15) << k;
  }
  // Bins of width 2.5 on [0, 10] hold 4, 4, 2 and 2 of the 12 values.
  EXPECT_EQ(h, (std::vector<double>{0, 4.0 / 30, 4.0 / 30, 0, 4.0 / 30, 4.0 / 30, 0, 2.0 / 30, 2.0 / 30, 0, 2.0 / 30,
                                    2.0 / 30, 0}));
  EXPECT_EQ(maxHeight, 4.0 / 30);

  std::uint64_t numBins = 0;
  ZqGetAutoDefConstBinWidthHistPlotPtsConfidenceInt(series, lower, upper, xlo, xhi, maxHeight, numBins, data, 0.05,
                                                    0.0, 0.0);
  ASSERT_GT(numBins, 0u);
  EXPECT_EQ(upper.GetNumPoints(), 3 * numBins + 1);
  // An impossible level leaves the band out.
  ZqGetAutoDefConstBinWidthHistPlotPtsConfidenceInt(series, lower, upper, xlo, xhi, maxHeight, numBins, data, -1.0,
                                                    0.0, 0.0);
  EXPECT_EQ(series.GetNumPoints(), 3 * numBins + 1);
  EXPECT_EQ(lower.GetNumPoints(), 0u);
  EXPECT_EQ(upper.GetNumPoints(), 0u);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ZqGetUserDefConstBinWidthHistPlotPtsConfidenceInt(series, lower, upper, xlo, xhi, maxHeight, {1.0, nan, 0.5}, 4,
                                                    0.05, 0.0, 0.0);
  EXPECT_EQ(series.GetNumPoints() + lower.GetNumPoints() + upper.GetNumPoints(), 0u);
}

TEST(EmpiricalCDFPlotPoints, StaircaseWithTheSuggestedEnds) {
  Numarc::ZqDataSeries series;
  double xlo, xhi;
  ZqGetEmpiricalCDFPlotPoints(series, xlo, xhi, {1.0, 2.0, 2.0, 5.0}, 0.0, 6.0);
  EXPECT_EQ(series.GetPoints(), (Points{{0, 0},
                                        {1, 0},
                                        {1, 0.25},
                                        {2, 0.25},
                                        {2, 0.5},
                                        {2, 0.5},
                                        {2, 0.75},
                                        {5, 0.75},
                                        {5, 1},
                                        {6, 1}}));
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 6.0);
  ZqGetEmpiricalCDFPlotPoints(series, xlo, xhi, {3.0}, 3.0, 1.0);
  EXPECT_EQ(series.GetPoints(), (Points{{3, 0}, {3, 1}}));
  ZqGetEmpiricalCDFPlotPoints(series, xlo, xhi, {}, 3.0, 1.0);
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 0.0);
}

TEST(NormalProbabilityPlot, PointsAgainstScipyAndFailuresWithoutARobustScale) {
  const auto lines = VarimoTest::ReadReferenceLines("statistics/histogram_reference.txt");
  std::vector<double> data, expected;
  for (const auto& t : lines) {
    if (t[0] == "data" && t[1] == "skewed") data = VarimoTest::ToDoubles(t, 2);
    if (t[0] == "normal") expected = VarimoTest::ToDoubles(t, 2);
  }
  ASSERT_EQ(expected.size(), 2 * data.size());
  Numarc::ZqDataSeries series;
  double xlo, xhi, ylo, yhi;
  const ZqStatModelResult result =
      ZqGetNormalProbabilityPlotPointsForSortedData(series, xlo, xhi, ylo, yhi, data, -1.0, 1.0, -100.0, 0.5);
  ASSERT_EQ(VarimoTest::Report(result), VarimoTest::Success());
  ASSERT_EQ(series.GetNumPoints(), data.size());
  for (std::size_t i = 0; i < data.size(); ++i) {
    EXPECT_TRUE(VarimoTest::WithinRelative(series.GetPoints()[i].GetX(), expected[2 * i], 1e-9)) << i;
    EXPECT_TRUE(VarimoTest::WithinRelative(series.GetPoints()[i].GetY(), expected[2 * i + 1], 1e-12)) << i;
  }
  EXPECT_EQ(xlo, series.GetPoints().front().GetX());
  EXPECT_EQ(xhi, series.GetPoints().back().GetX());
  EXPECT_EQ(ylo, -100.0);
  EXPECT_EQ(yhi, series.GetPoints().back().GetY());

  // Empty data give no points; data without a robust scale fail.
  const ZqStatModelResult empty =
      ZqGetNormalProbabilityPlotPointsForSortedData(series, xlo, xhi, ylo, yhi, {}, -1.0, 1.0, -2.0, 2.0);
  EXPECT_TRUE(empty.IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(xlo, -1.0);
  EXPECT_EQ(yhi, 2.0);
  const VarimoTest::ResultReport failure{
      false, F::SingularScaleOrCovariance, {"ZqGetNormalProbabilityPlotPointsForSortedData"}, {}};
  for (const std::vector<double>& data : {std::vector<double>{1.0, 2.0, 3.0}, std::vector<double>(6, 2.5),
                                          std::vector<double>{1.0, 2.0, std::nan(""), 4.0, 5.0}}) {
    EXPECT_EQ(VarimoTest::Report(
                  ZqGetNormalProbabilityPlotPointsForSortedData(series, xlo, xhi, ylo, yhi, data, 0, 0, 0, 0)),
              failure);
    EXPECT_EQ(series.GetNumPoints(), 0u);
  }
}

}  // namespace
}  // namespace Varimo
