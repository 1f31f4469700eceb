// Plot points of distributions: the curves against scipy
// (tests/data/pdf/make_pdf_plot_points_refs.py) with their reported mass,
// their degenerate point counts and failures; samples and their plots; and
// the contours of a bivariate normal density, checked geometrically: every
// point of the contour at fraction c of the peak lies on the ellipse
// (p - m)' S^-1 (p - m) = -2 ln c of the known covariance S.
#include "varimo/pdf/pdf_plot_points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::WithinRelative;
namespace Failure = ZqStatModelFailureType;
using Corvane::ZqThrowLevel;

struct Refs {
  std::map<std::string, std::vector<double>> numbers;
  std::map<std::string, std::string> sums;  // the expected info line
};

Refs References() {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("pdf/pdf_plot_points_refs.txt")) {
    if (line[0].ends_with("_sum")) {
      std::string text;
      for (std::size_t i = 1; i < line.size(); ++i) text += (i > 1 ? " " : "") + line[i];
      refs.sums[line[0]] = text;
    } else {
      refs.numbers[line[0]] = VarimoTest::ToDoubles(line, 1);
    }
  }
  return refs;
}

class PdfCurveTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(status.IsSuccessful());
    ASSERT_TRUE(gammaStatus.IsSuccessful());
  }
  void ExpectCurve(const std::string& tag, const std::string& values, double scale) {
    const std::vector<double>& xs = refs.numbers[tag + "_x"];
    const std::vector<double>& ys = refs.numbers[tag + values];
    ASSERT_EQ(series.GetNumPoints(), xs.size());
    double top = 0.0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
      // Absolute against the width, as an x near 0 has no relative scale.
      EXPECT_NEAR(series.GetPoints()[i].GetX(), xs[i], 1e-13 * (xs.back() - xs.front())) << i;
      EXPECT_TRUE(WithinRelative(series.GetPoints()[i].GetY(), ys[i] * scale, 1e-10)) << i;
      top = std::max(top, ys[i] * scale);
    }
    EXPECT_TRUE(WithinRelative(xlo, refs.numbers[tag + "_window"][0], 1e-13));
    EXPECT_TRUE(WithinRelative(xhi, refs.numbers[tag + "_window"][1], 1e-13));
    EXPECT_EQ(ylo, 0.0);
    EXPECT_TRUE(WithinRelative(yhi, top, 1e-10));
  }
  Refs refs = References();
  ZqStatModelResult status{true}, gammaStatus{true};
  const ZqUniVarPDF normal = ZqUnivariateGaussian("x", 1.0, 4.0, status);
  const ZqUniVarPDF gamma = ZqGamma("g", 3.0, 2.0, gammaStatus);
  Numarc::ZqDataSeries series;
  double xlo = 0, xhi = 0, ylo = -1, yhi = -1;
};

TEST_F(PdfCurveTest, CurvesMatchScipyAndReportTheMass) {
  Corvane::ZqScopedThrowCapture info;
  // lowestXlo 0 lies above the 1% point, so the percentile stays; 8 widens.
  ASSERT_TRUE(ZqGetPDFDensityPlotPoints(series, xlo, xhi, ylo, yhi, normal, 0.02, 11, 0.0, 8.0).IsSuccessful());
  ExpectCurve("normal", "_pdf", 1.0);
  EXPECT_EQ(info.Texts(ZqThrowLevel::Info), (std::vector<std::string>{refs.sums["normal_sum"]}));

  info.Clear();
  ASSERT_TRUE(ZqGetPDFCDFPlotPoints(series, xlo, xhi, ylo, yhi, normal, 0.02, 11, 0.0, 8.0).IsSuccessful());
  ExpectCurve("normal", "_cdf", 1.0);
  EXPECT_TRUE(info.Messages().empty());

  ASSERT_TRUE(ZqGetPDFDensityPlotPoints(series, xlo, xhi, ylo, yhi, gamma, 0.1, 7, 10.0, -10.0).IsSuccessful());
  ExpectCurve("gamma", "_pdf", 1.0);
  ASSERT_TRUE(ZqGetPDFCDFPlotPoints(series, xlo, xhi, ylo, yhi, gamma, 0.1, 7, 10.0, -10.0).IsSuccessful());
  ExpectCurve("gamma", "_cdf", 1.0);

  // A scaled density scales the points but not the reported mass.
  info.Clear();
  ASSERT_TRUE(
      ZqGetPDFScaledDensityPlotPoints(series, xlo, xhi, ylo, yhi, normal, 3.0, 0.02, 11, 0.0, 8.0).IsSuccessful());
  ExpectCurve("normal", "_pdf", 3.0);
  EXPECT_EQ(info.Texts(ZqThrowLevel::Info), (std::vector<std::string>{refs.sums["normal_sum"]}));
}

TEST_F(PdfCurveTest, DegeneratePointCountsAndFailuresNameTheCurve) {
  Corvane::ZqScopedThrowCapture info;
  series.AddPoint({5.0, 5.0});
  ASSERT_TRUE(ZqGetPDFDensityPlotPoints(series, xlo, xhi, ylo, yhi, normal, 0.02, 0, 0.0, 8.0).IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(yhi, 0.0);
  EXPECT_EQ(info.Texts(ZqThrowLevel::Info), (std::vector<std::string>{"sum density = 0.000000"}));

  // One point: the step is a division by zero, and 0 * inf + xlo is NaN,
  // which is refused rather than passed to the density.
  info.Clear();
  const ZqStatModelResult one = ZqGetPDFDensityPlotPoints(series, xlo, xhi, ylo, yhi, normal, 0.02, 1, 0.0, 8.0);
  EXPECT_EQ(one.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Context(one), (std::vector<std::string>{"ZqGetPDFDensityPlotPoints"}));
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_TRUE(info.Messages().empty());

  // A tail probability above 2 asks for a percentile outside [0, 1]; the
  // series is not touched.
  series.AddPoint({5.0, 5.0});
  const ZqStatModelResult tail = ZqGetPDFCDFPlotPoints(series, xlo, xhi, ylo, yhi, normal, 3.0, 11, 0.0, 0.0);
  EXPECT_EQ(tail.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Context(tail).back(), "ZqGetPDFCDFPlotPoints");
  EXPECT_EQ(series.GetNumPoints(), 1u);

  // Widening a gamma below 0 makes the first x fall outside the support.
  info.Clear();
  const ZqStatModelResult support =
      ZqGetPDFScaledDensityPlotPoints(series, xlo, xhi, ylo, yhi, gamma, 2.0, 0.1, 7, -1.0, 0.0);
  EXPECT_FALSE(support.IsSuccessful());
  EXPECT_EQ(Context(support).back(), "ZqGetPDFScaledDensityPlotPoints");
  EXPECT_EQ(xlo, -1.0);
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_TRUE(info.Messages().empty());

  const ZqStatModelResult null =
      ZqGetPDFDensityPlotPoints(series, xlo, xhi, ylo, yhi, ZqUniVarNullPDF("n"), 0.1, 7, 0.0, 0.0);
  EXPECT_FALSE(null.IsSuccessful());
  EXPECT_EQ(Context(null).back(), "ZqGetPDFDensityPlotPoints");
}

// ---------------------------------------------------------------- samples

TEST(PdfSample, DrawsRepeatWithTheSeedAndAFailureNamesTheSampler) {
  ZqStatModelResult status(true);
  ZqUniVarPDF normal = ZqUnivariateGaussian("x", 1.0, 4.0, status);
  std::vector<double> first{99.0}, second;
  Numarc::ZqRanNumEngine engine(5), again(5);
  ASSERT_TRUE(ZqGetPDFSample(first, normal, 200, engine).IsSuccessful());
  ASSERT_TRUE(ZqGetPDFSample(second, normal, 200, again).IsSuccessful());
  EXPECT_EQ(first.size(), 200u);
  EXPECT_EQ(first, second);
  EXPECT_EQ(std::find(first.begin(), first.end(), 99.0), first.end());  // emptied first

  ZqUniVarPDF null = ZqUniVarNullPDF("n");
  const ZqStatModelResult failed = ZqGetPDFSample(first, null, 3, engine);
  EXPECT_FALSE(failed.IsSuccessful());
  EXPECT_EQ(Context(failed).back(), "ZqGetPDFSample");
  EXPECT_TRUE(first.empty());

  Numarc::ZqDataSeries series;
  double xlo = 0, xhi = 0;
  const ZqStatModelResult plot = ZqGetEmpiricalCDFPlotPointsForPDFSample(series, xlo, xhi, null, 3, engine, 0, 1);
  std::vector<std::string> chain = Context(failed);
  chain.push_back("ZqGetEmpiricalCDFPlotPointsForPDFSample");
  EXPECT_EQ(Context(plot), chain);
}

TEST(PdfSample, PlotsOfALargeSampleFollowTheDistribution) {
  ZqStatModelResult status(true);
  ZqUniVarPDF normal = ZqUnivariateGaussian("x", 1.0, 4.0, status);
  Numarc::ZqRanNumEngine engine(11);
  Numarc::ZqDataSeries series;
  double xlo = 0, xhi = 0, ylo = -1, yhi = -1;
  const std::uint64_t n = 4000;

  // The empirical distribution is within the Kolmogorov distance that a
  // sample of 4000 exceeds with probability below 0.001 (1.95 / sqrt(n)).
  ASSERT_TRUE(ZqGetEmpiricalCDFPlotPointsForPDFSample(series, xlo, xhi, normal, n, engine, -20, 20).IsSuccessful());
  EXPECT_EQ(xlo, -20.0);
  EXPECT_EQ(xhi, 20.0);
  double worst = 0.0;
  for (const Numarc::ZqDataPoint& p : series.GetPoints()) {
    const double cdf = 0.5 * std::erfc(-(p.GetX() - 1.0) / (2.0 * std::sqrt(2.0)));
    worst = std::max(worst, std::fabs(p.GetY() - cdf));
  }
  EXPECT_LT(worst, 1.95 / std::sqrt(static_cast<double>(n)));

  // Histograms integrate to 1 and stand near the density at the centre
  // (0.1995 for sd 2), their y range from 0 to the tallest bin.
  auto area = [&] {
    const auto& p = series.GetPoints();
    double sum = 0.0, top = 0.0;
    for (std::size_t k = 1; k + 1 < p.size(); k += 3) {
      sum += p[k].GetY() * (p[k + 1].GetX() - p[k].GetX());
      top = std::max(top, p[k].GetY());
    }
    EXPECT_EQ(yhi, top);
    return sum;
  };
  ASSERT_TRUE(ZqGetAutoDefConstBinWidthHistPlotPointsForPDFSample(series, xlo, xhi, ylo, yhi, normal, n, engine, 0, 0)
                  .IsSuccessful());
  EXPECT_NEAR(area(), 1.0, 1e-12);
  EXPECT_EQ(ylo, 0.0);
  EXPECT_NEAR(yhi, 0.1995, 0.03);
  ASSERT_TRUE(
      ZqGetUserDefConstBinWidthHistPlotPointsForPDFSample(series, xlo, xhi, ylo, yhi, normal, n, 20, engine, 0, 0)
          .IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 3u * 20 + 1);
  EXPECT_NEAR(area(), 1.0, 1e-12);
  // 400 draws a bin: 10 bins.
  ASSERT_TRUE(ZqGetUserDefConstFreqHistPlotPointsForPDFSample(series, xlo, xhi, ylo, yhi, normal, n, 400, engine, 0, 0)
                  .IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 3u * 10 + 1);
  EXPECT_NEAR(area(), 1.0, 1e-12);
  // Zero draws a bin is refused; more than the sample gives no bin.
  const ZqStatModelResult zero =
      ZqGetUserDefConstFreqHistPlotPointsForPDFSample(series, xlo, xhi, ylo, yhi, normal, 50, 0, engine, 0, 0);
  EXPECT_EQ(zero.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Context(zero), (std::vector<std::string>{"ZqGetUserDefConstFreqHistPlotPointsForPDFSample"}));
  ASSERT_TRUE(ZqGetUserDefConstFreqHistPlotPointsForPDFSample(series, xlo, xhi, ylo, yhi, normal, 50, 51, engine, 0, 0)
                  .IsSuccessful());
  EXPECT_EQ(series.GetNumPoints(), 0u);
}

// ---------------------------------------------------------------- contours

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The numbers after a line's prefix, which must match.
std::vector<double> NumbersAfter(const std::string& line, const std::string& prefix) {
  EXPECT_EQ(line.rfind(prefix, 0), 0u) << line;
  std::istringstream in(line.substr(std::min(prefix.size(), line.size())));
  std::vector<double> values;
  for (double v; in >> v;) values.push_back(v);
  return values;
}

TEST(PdfContours, BivariateNormalContoursLieOnTheEllipsesOfTheirLevels) {
  const Refs refs = References();
  ZqStatModelResult status(true);
  const ZqMultiVarPDF pdf = ZqMultivariateGaussian({"x", "y"}, {1.0, -2.0}, {2.0, 0.6, 0.6, 1.0}, status);
  ASSERT_TRUE(status.IsSuccessful());
  std::vector<Numarc::ZqDataSeries> contours(1);
  double xlo = 0, xhi = 0, ylo = 0, yhi = 0;
  VarimoTest::CaptureOutput out;
  // Bounds inside the window leave the percentiles in force.
  const ZqStatModelResult result =
      ZqGet2DimPDFDensityPlotPoints(contours, xlo, xhi, ylo, yhi, pdf, 0.001, 61, 0.0, 0.0, -2.0, -2.0);
  const std::vector<std::string> lines = Lines(out.Text());
  ASSERT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();

  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines[0], "mean x, mean y = 1 -2");
  EXPECT_EQ(lines[1], "Var x, Var y = 2 1");
  const std::vector<double> window = refs.numbers.at("bivariate_window");
  const std::vector<double> printed = NumbersAfter(lines[2], "xlo,xhi,ylo,yhi = ");
  ASSERT_EQ(printed.size(), 4u);
  const double bounds[4] = {xlo, xhi, ylo, yhi};
  for (int k = 0; k < 4; ++k) {
    EXPECT_TRUE(WithinRelative(bounds[k], window[k], 1e-12)) << k;
    EXPECT_TRUE(WithinRelative(printed[k], window[k], 1e-5)) << k;  // six digits printed
  }
  // The window is symmetric about the mean and the grid odd, so the peak
  // is a grid point.
  const double peak = refs.numbers.at("bivariate_peak")[0];
  const std::vector<double> fMax = NumbersAfter(lines[3], "fMax = ");
  ASSERT_EQ(fMax.size(), 1u);
  EXPECT_TRUE(WithinRelative(fMax[0], peak, 1e-5));

  // One closed branch per level, in order of level.
  ASSERT_EQ(contours.size(), 10u);
  const double det = 2.0 * 1.0 - 0.6 * 0.6;
  for (std::size_t k = 0; k < contours.size(); ++k) {
    const auto& points = contours[k].GetPoints();
    ASSERT_GE(points.size(), 8u) << k;
    EXPECT_EQ(points.front(), points.back()) << k;
    const double radius2 = -2.0 * std::log(k * 0.1 + 0.05);
    double worst = 0.0;
    for (const Numarc::ZqDataPoint& p : points) {
      const double dx = p.GetX() - 1.0, dy = p.GetY() + 2.0;
      const double q = (1.0 * dx * dx - 2.0 * 0.6 * dx * dy + 2.0 * dy * dy) / det;
      // Compare as densities: the fraction of the peak at p against c.
      worst = std::max(worst, std::fabs(std::exp(-0.5 * q) - std::exp(-0.5 * radius2)));
    }
    // Linear interpolation along grid edges of about 0.15: well under the
    // 0.1 between levels.
    EXPECT_LT(worst, 2e-3) << "level " << k;
  }
}

TEST(PdfContours, WrongNumberOfVariablesAndBadGrids) {
  ZqStatModelResult status(true);
  const ZqMultiVarPDF three = ZqMultivariateGaussian({"a", "b", "c"}, {0.0, 0.0, 0.0}, {1.0, 1.0, 1.0}, status);
  ASSERT_TRUE(status.IsSuccessful());
  std::vector<Numarc::ZqDataSeries> contours(2);
  double xlo = 7, xhi = 7, ylo = 7, yhi = 7;
  VarimoTest::CaptureOutput out;
  const ZqStatModelResult wrong =
      ZqGet2DimPDFDensityPlotPoints(contours, xlo, xhi, ylo, yhi, three, 0.01, 21, 0, 0, 0, 0);
  EXPECT_EQ(wrong.GetFailureType(), Failure::WrongPDFType);
  EXPECT_EQ(Context(wrong), (std::vector<std::string>{"ZqGet2DimPDFDensityPlotPoints"}));
  EXPECT_TRUE(contours.empty());
  EXPECT_EQ(xlo, 7.0);

  const ZqMultiVarPDF two = ZqMultivariateGaussian({"a", "b"}, {0.0, 0.0}, {1.0}, status);
  for (unsigned numGrid : {0u, 1u, 46341u}) {
    const ZqStatModelResult grid =
        ZqGet2DimPDFDensityPlotPoints(contours, xlo, xhi, ylo, yhi, two, 0.01, numGrid, 0, 0, 0, 0);
    EXPECT_EQ(grid.GetFailureType(), Failure::ArgumentOutOfRange) << numGrid;
    EXPECT_TRUE(contours.empty());
    EXPECT_LT(xlo, 0.0);  // the window was written before the check
  }
  const std::string text = out.Text();
  EXPECT_EQ(text.find("mean x, mean y = 0 0\nVar x, Var y = 1 1\nxlo,xhi,ylo,yhi = "), 0u) << text;
}

}  // namespace
}  // namespace Varimo
