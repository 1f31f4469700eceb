// Plots of a sample drawn from a distribution: the draws, then the plot
// functions of the sample statistics on them.
#include <algorithm>
#include <vector>

#include "varimo/pdf/pdf_plot_points.h"
#include "varimo/statistics/plot_points.h"

namespace Varimo {

namespace {

// Draws n values and sorts them (the plot functions take sorted data); on
// failure `routine` joins the chain after "ZqGetPDFSample".
ZqStatModelResult SortedSample(std::vector<double>& sample, ZqUniVarPDF& pdf, std::uint64_t n,
                               Numarc::ZqRanNumEngine& engine, const char* routine) {
  ZqStatModelResult result = ZqGetPDFSample(sample, pdf, n, engine);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  // A distribution gives no NaN draw, so plain < orders the sample.
  std::sort(sample.begin(), sample.end());
  return result;
}

// A histogram of n draws by `histogram(sortedSample, maxHeight)`, with the
// y range from 0 to its tallest bin.
template <class Histogram>
ZqStatModelResult HistogramOfSample(double& ylo, double& yhi, ZqUniVarPDF& pdf, std::uint64_t n,
                                    Numarc::ZqRanNumEngine& engine, const char* routine, Histogram&& histogram) {
  std::vector<double> sample;
  ZqStatModelResult result = SortedSample(sample, pdf, n, engine, routine);
  if (result.NotSuccessful()) return result;
  double maxHeight = 0.0;
  histogram(sample, maxHeight);
  ylo = 0.0;
  yhi = maxHeight;
  return result;
}

}  // namespace

ZqStatModelResult ZqGetPDFSample(std::vector<double>& samples, ZqUniVarPDF& pdf, std::uint64_t n,
                                 Numarc::ZqRanNumEngine& engine) {
  samples.clear();
  ZqStatModelResult result(true);
  // Reserving is only an optimisation; a request beyond what a vector can
  // hold must not throw from here, so it is capped.
  samples.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(n, 1u << 24)));
  for (std::uint64_t i = 0; i < n; ++i) {
    const double draw = pdf.GetRandomOutcome(result, engine);
    if (result.NotSuccessful()) {
      result.AddCallContext("ZqGetPDFSample");
      return result;
    }
    samples.push_back(draw);
  }
  return result;
}

ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForPDFSample(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                          ZqUniVarPDF& pdf, std::uint64_t n,
                                                          Numarc::ZqRanNumEngine& engine, double lo, double hi) {
  std::vector<double> sample;
  ZqStatModelResult result = SortedSample(sample, pdf, n, engine, "ZqGetEmpiricalCDFPlotPointsForPDFSample");
  if (result.IsSuccessful()) ZqGetEmpiricalCDFPlotPoints(series, xlo, xhi, sample, lo, hi);
  return result;
}

ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForPDFSample(Numarc::ZqDataSeries& series, double& xlo,
                                                                      double& xhi, double& ylo, double& yhi,
                                                                      ZqUniVarPDF& pdf, std::uint64_t n,
                                                                      Numarc::ZqRanNumEngine& engine, double lo,
                                                                      double hi) {
  return HistogramOfSample(ylo, yhi, pdf, n, engine, "ZqGetAutoDefConstBinWidthHistPlotPointsForPDFSample",
                           [&](const std::vector<double>& sample, double& maxHeight) {
                             std::uint64_t numBins = 0;
                             ZqGetAutoDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, numBins, sample,
                                                                         lo, hi);
                           });
}

ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForPDFSample(
    Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo, double& yhi, ZqUniVarPDF& pdf, std::uint64_t n,
    std::uint64_t numBins, Numarc::ZqRanNumEngine& engine, double lo, double hi) {
  return HistogramOfSample(ylo, yhi, pdf, n, engine, "ZqGetUserDefConstBinWidthHistPlotPointsForPDFSample",
                           [&](const std::vector<double>& sample, double& maxHeight) {
                             ZqGetUserDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, sample, numBins,
                                                                         lo, hi);
                           });
}

ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForPDFSample(
    Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo, double& yhi, ZqUniVarPDF& pdf, std::uint64_t n,
    std::uint64_t countPerBin, Numarc::ZqRanNumEngine& engine, double lo, double hi) {
  constexpr const char* kRoutine = "ZqGetUserDefConstFreqHistPlotPointsForPDFSample";
  if (countPerBin == 0) {
    return ZqMakeFailedResult(ZqStatModelFailureType::ArgumentOutOfRange, kRoutine, "count per bin must be at least 1");
  }
  return HistogramOfSample(
      ylo, yhi, pdf, n, engine, kRoutine, [&](const std::vector<double>& sample, double& maxHeight) {
        ZqGetUserDefinedConstFreqHistPlotPoints(series, xlo, xhi, maxHeight, sample, n / countPerBin, lo, hi);
      });
}

}  // namespace Varimo
