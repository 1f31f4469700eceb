// Contours of the density of a distribution of two variables, traced on a
// grid over the window of its marginals.
#include <cmath>
#include <sstream>
#include <vector>

#include "varimo/grid/two_dim_function_grid.h"
#include "varimo/pdf/pdf_plot_points.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

namespace Failure = ZqStatModelFailureType;

constexpr const char* kRoutine = "ZqGet2DimPDFDensityPlotPoints";
// The grid marks one bit per point in stores that cannot grow past the
// largest signed 32-bit integer: 46340^2 is the largest square below it.
constexpr unsigned kMaxGrid = 46340;
constexpr int kNumContours = 10;

bool Failed(ZqStatModelResult& result) {
  if (result.IsSuccessful()) return false;
  result.AddCallContext(kRoutine);
  return true;
}

// Mean and variance of a marginal.
ZqStatModelResult Moments(const ZqUniVarPDF& marginal, double& mean, double& variance) {
  ZqStatModelResult result(true);
  mean = marginal.GetMean(result);
  if (result.IsSuccessful()) variance = marginal.GetVariance(result);
  return result;
}

// The window of one marginal: its tail percentiles, widened to the caller's
// bounds.
ZqStatModelResult Window(const ZqUniVarPDF& marginal, double tail, double lowest, double highest, double& lo,
                         double& hi) {
  ZqStatModelResult result(true);
  lo = marginal.GetPercentile(tail, result);
  if (result.NotSuccessful()) return result;
  if (lowest < lo) lo = lowest;
  hi = marginal.GetPercentile(1.0 - tail, result);
  if (result.NotSuccessful()) return result;
  if (highest > hi) hi = highest;
  return result;
}

}  // namespace

ZqStatModelResult ZqGet2DimPDFDensityPlotPoints(std::vector<Numarc::ZqDataSeries>& contours, double& xlo, double& xhi,
                                                double& ylo, double& yhi, const ZqMultiVarPDF& pdf, double tailProb,
                                                unsigned numGrid, double lowestXlo, double highestXhi, double lowestYlo,
                                                double highestYhi) {
  contours.clear();
  if (pdf.GetNumVariables() != 2) {
    return ZqMakeFailedResult(Failure::WrongPDFType, kRoutine,
                              Corvane::ZqMakeString("number of variables = ", pdf.GetNumVariables()));
  }
  const std::vector<std::string> names = pdf.GetVariableNames();
  ZqStatModelResult result(true);
  const ZqUniVarPDF marginalX = pdf.GetUnivariateMarginal(names[0], result);
  if (Failed(result)) return result;
  const ZqUniVarPDF marginalY = pdf.GetUnivariateMarginal(names[1], result);
  if (Failed(result)) return result;

  double meanX = 0.0, varX = 0.0, meanY = 0.0, varY = 0.0;
  result = Moments(marginalX, meanX, varX);
  if (Failed(result)) return result;
  result = Moments(marginalY, meanY, varY);
  if (Failed(result)) return result;
  std::ostringstream lines;
  lines << "mean x, mean y = " << meanX << " " << meanY << "\n";
  lines << "Var x, Var y = " << varX << " " << varY << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, lines.str());
  lines.str("");

  const double tail = tailProb * 0.5;
  result = Window(marginalX, tail, lowestXlo, highestXhi, xlo, xhi);
  if (Failed(result)) return result;
  result = Window(marginalY, tail, lowestYlo, highestYhi, ylo, yhi);
  if (Failed(result)) return result;
  lines << "xlo,xhi,ylo,yhi = " << xlo << " " << xhi << " " << ylo << " " << yhi << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, lines.str());
  lines.str("");

  if (!std::isfinite(xlo) || !std::isfinite(xhi) || !std::isfinite(ylo) || !std::isfinite(yhi)) {
    return ZqMakeFailedResult(Failure::ArgumentOutOfRange, kRoutine, "the window is not finite");
  }
  if (numGrid < 2 || numGrid > kMaxGrid) {
    return ZqMakeFailedResult(Failure::ArgumentOutOfRange, kRoutine,
                              Corvane::ZqMakeString("numGrid must lie from 2 to ", kMaxGrid, "; numGrid = ", numGrid));
  }
  const double deltaX = (xhi - xlo) / (numGrid - 1);
  const double deltaY = (yhi - ylo) / (numGrid - 1);
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(numGrid) * numGrid);
  std::vector<double> point(2);
  for (unsigned j = 0; j < numGrid; ++j) {
    point[1] = j * deltaY + ylo;
    for (unsigned i = 0; i < numGrid; ++i) {
      point[0] = i * deltaX + xlo;
      values.push_back(pdf.GetDensity(point, result, false));
      if (Failed(result)) return result;
    }
  }

  ZqTwoDimFuncGrid grid(numGrid, numGrid, deltaX, deltaY, xlo, ylo, values);
  const double fMax = grid.GetMaxFuncValue();
  lines << "fMax = " << fMax << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, lines.str());

  contours.reserve(kNumContours);
  for (int k = 0; k < kNumContours; ++k) {
    result = grid.PlotContour((k * 0.1 + 0.05) * fMax, contours);
    if (Failed(result)) return result;
  }
  return result;
}

}  // namespace Varimo
