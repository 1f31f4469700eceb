// Curves of one distribution: density, scaled density and distribution
// function on equally spaced points between two tail percentiles.
#include <cmath>
#include <vector>

#include "varimo/pdf/pdf_plot_points.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

enum class Curve { Density, ScaledDensity, CDF };

// The three curves share every step but the value at a point and whether
// the mass is reported.
ZqStatModelResult CurvePoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo, double& yhi,
                              const ZqUniVarPDF& pdf, Curve curve, double scale, double tailProb,
                              std::uint64_t numPoints, double lowestXlo, double highestXhi, const char* routine) {
  const double tail = tailProb * 0.5;
  ZqStatModelResult result(true);
  xlo = pdf.GetPercentile(tail, result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (lowestXlo < xlo) xlo = lowestXlo;
  xhi = pdf.GetPercentile(1.0 - tail, result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (highestXhi > xhi) xhi = highestXhi;

  series.Clear();
  // Unguarded: one point divides by zero, caught at the point (see the
  // header).
  const double step = (xhi - xlo) / (static_cast<double>(numPoints) - 1.0);
  ylo = 0.0;
  yhi = 0.0;
  double sumDensity = 0.0;
  std::vector<Numarc::ZqDataPoint> points;
  for (std::uint64_t i = 0; i < numPoints; ++i) {
    const double x = static_cast<double>(i) * step + xlo;
    // The unguarded step of a single point (0 * inf) or an infinite
    // percentile gives no number here, and a density of it would pass a
    // NaN on silently.
    if (!std::isfinite(x)) {
      return ZqMakeFailedResult(
          ZqStatModelFailureType::ArgumentOutOfRange, routine,
          Corvane::ZqMakeString("x of point ", i, " of ", numPoints, " is ", x, "; xlo, xhi = ", xlo, ", ", xhi));
    }
    const double value = curve == Curve::CDF ? pdf.GetCDF(x, result, true) : pdf.GetDensity(x, result, true);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    const double y = curve == Curve::ScaledDensity ? value * scale : value;
    if (y > yhi) yhi = y;
    points.emplace_back(x, y);
    sumDensity += value * step;
  }
  if (curve != Curve::CDF) Corvane::ZqThrow.Info("sum density = %f", sumDensity);
  series.SetPoints(std::move(points));
  return result;
}

}  // namespace

ZqStatModelResult ZqGetPDFDensityPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                            double& yhi, const ZqUniVarPDF& pdf, double tailProb,
                                            std::uint64_t numPoints, double lowestXlo, double highestXhi) {
  return CurvePoints(series, xlo, xhi, ylo, yhi, pdf, Curve::Density, 1.0, tailProb, numPoints, lowestXlo, highestXhi,
                     "ZqGetPDFDensityPlotPoints");
}

ZqStatModelResult ZqGetPDFScaledDensityPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                                  double& yhi, const ZqUniVarPDF& pdf, double scale, double tailProb,
                                                  std::uint64_t numPoints, double lowestXlo, double highestXhi) {
  return CurvePoints(series, xlo, xhi, ylo, yhi, pdf, Curve::ScaledDensity, scale, tailProb, numPoints, lowestXlo,
                     highestXhi, "ZqGetPDFScaledDensityPlotPoints");
}

ZqStatModelResult ZqGetPDFCDFPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                        double& yhi, const ZqUniVarPDF& pdf, double tailProb, std::uint64_t numPoints,
                                        double lowestXlo, double highestXhi) {
  return CurvePoints(series, xlo, xhi, ylo, yhi, pdf, Curve::CDF, 1.0, tailProb, numPoints, lowestXlo, highestXhi,
                     "ZqGetPDFCDFPlotPoints");
}

}  // namespace Varimo
