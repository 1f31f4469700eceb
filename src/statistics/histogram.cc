#include "varimo/statistics/histogram.h"

#include <algorithm>
#include <cmath>

#include "statistic_support.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

// The outputs shared by every histogram, reset to 0 and empty.
struct HistogramOutputs {
  double& xlo;
  double& xhi;
  double& width;
  double& maxHeight;
  std::vector<double>& heights;

  void Reset() {
    xlo = xhi = width = maxHeight = 0.0;
    heights.clear();
  }
};

// Resets the outputs and sets the range; false, with everything at 0, when
// no bins are asked for or the data cannot make a histogram.
bool StartHistogram(HistogramOutputs& out, const std::vector<double>& sortedData, std::uint64_t numBins, double lo,
                    double hi) {
  out.Reset();
  if (numBins == 0 || sortedData.empty() || !AllFinite(sortedData)) return false;
  ZqGetXloXhiForSortedData(out.xlo, out.xhi, sortedData, lo, hi);
  // Infinite suggestions leave no width to divide.
  if (std::isfinite(out.xlo) && std::isfinite(out.xhi) && out.xhi > out.xlo) return true;
  out.Reset();
  return false;
}

// Stands for the number of bins when the data will choose it.
constexpr std::uint64_t kBinsFromData = 1;

// The bin of x among numBins bins of width h from xlo. The top edge belongs
// to the last bin; values outside the range, which sorted data within
// [xlo, xhi] never have, go to the nearer end bin.
std::uint64_t BinOf(double x, double xlo, double h, std::uint64_t numBins) {
  const double bin = std::floor((x - xlo) / h);
  if (!(bin > 0.0)) return 0;
  if (bin >= static_cast<double>(numBins)) return numBins - 1;
  return static_cast<std::uint64_t>(bin);
}

// Fills numBins equal-width bins on [xlo, xhi] of the outputs.
void FillConstWidthBins(HistogramOutputs& out, const std::vector<double>& sortedData, std::uint64_t numBins) {
  out.width = (out.xhi - out.xlo) / static_cast<double>(numBins);
  out.heights.assign(static_cast<std::size_t>(numBins), 0.0);
  const double step = 1.0 / (static_cast<double>(sortedData.size()) * out.width);
  for (double x : sortedData) {
    out.heights[static_cast<std::size_t>(BinOf(x, out.xlo, out.width, numBins))] += step;
  }
  out.maxHeight = *std::max_element(out.heights.begin(), out.heights.end());
}

// The inner edges of equal-frequency bins, the quantiles at k / numBins.
std::vector<double> ConstFreqEdges(double xlo, double xhi, const std::vector<double>& sortedData,
                                   std::uint64_t numBins) {
  std::vector<double> edges{xlo};
  for (std::uint64_t k = 1; k < numBins; ++k) {
    edges.push_back(ZqQuantile(static_cast<double>(k) / static_cast<double>(numBins), sortedData, 8));
  }
  edges.push_back(xhi);
  return edges;
}

}  // namespace

void ZqGetXloXhiForSortedData(double& xlo, double& xhi, const std::vector<double>& sortedData, double suggestedLo,
                              double suggestedHi) {
  if (sortedData.empty()) {
    xlo = xhi = 0.0;
    return;
  }
  xlo = std::min(suggestedLo, sortedData.front());
  xhi = std::max(suggestedHi, sortedData.back());
}

void ZqGetUserDefinedConstBinWidthHistogram(double& xlo, double& xhi, double& binWidth, double& maxHeight,
                                            std::vector<double>& heights, const std::vector<double>& sortedData,
                                            std::uint64_t numBins, double lo, double hi) {
  HistogramOutputs out{xlo, xhi, binWidth, maxHeight, heights};
  if (!StartHistogram(out, sortedData, numBins, lo, hi)) return;
  FillConstWidthBins(out, sortedData, numBins);
}

void ZqGetAutoDefinedConstBinWidthHistogram(double& xlo, double& xhi, double& binWidth, double& maxHeight,
                                            std::vector<double>& heights, std::uint64_t& numBins,
                                            const std::vector<double>& sortedData, double lo, double hi) {
  HistogramOutputs out{xlo, xhi, binWidth, maxHeight, heights};
  numBins = 0;
  if (!StartHistogram(out, sortedData, kBinsFromData, lo, hi)) return;
  const double q1 = ZqQuantile(0.25, sortedData, 8), q3 = ZqQuantile(0.75, sortedData, 8);
  // Below four values the lower quartile is the negative bad value.
  if (q1 == -kBad || q3 == -kBad) return;
  const double iqr = q3 - q1;
  if (!(iqr > 0.0)) return;
  const double n = static_cast<double>(sortedData.size());
  const double bins = std::round((out.xhi - out.xlo) / (2.6 * iqr / std::cbrt(n)));
  if (!(bins >= 1.0)) return;
  numBins = static_cast<std::uint64_t>(bins);
  FillConstWidthBins(out, sortedData, numBins);
}

void ZqGetUserDefinedConstFreqHistogram(double& xlo, double& xhi, double& minWidth, double& maxHeight,
                                        std::vector<double>& heights, const std::vector<double>& sortedData,
                                        std::uint64_t numBins, double lo, double hi) {
  HistogramOutputs out{xlo, xhi, minWidth, maxHeight, heights};
  if (!StartHistogram(out, sortedData, numBins, lo, hi)) return;
  const std::vector<double> edges = ConstFreqEdges(out.xlo, out.xhi, sortedData, numBins);
  const double probability = 1.0 / static_cast<double>(numBins);
  std::vector<double> bins;
  bins.reserve(static_cast<std::size_t>(numBins));
  double narrowest = out.xhi - out.xlo;
  for (std::size_t k = 0; k + 1 < edges.size(); ++k) {
    const double width = edges[k + 1] - edges[k];
    if (!(width > 0.0)) return;
    bins.push_back(probability / width);
    narrowest = std::min(narrowest, width);
  }
  out.width = narrowest;
  out.heights = std::move(bins);
  out.maxHeight = *std::max_element(out.heights.begin(), out.heights.end());
}

void ZqGetBinBoundariesForSortedData(std::vector<double>& bounds, std::uint64_t numBins, bool constFreq,
                                     const std::vector<double>& sortedData, double lo, double hi) {
  bounds.clear();
  if (numBins == 0 || sortedData.empty()) return;
  double xlo = 0.0, xhi = 0.0;
  ZqGetXloXhiForSortedData(xlo, xhi, sortedData, lo, hi);
  if (constFreq) {
    bounds = ConstFreqEdges(xlo, xhi, sortedData, numBins);
    return;
  }
  const double binWidth = (xhi - xlo) / static_cast<double>(numBins);
  for (std::uint64_t k = 0; k <= numBins; ++k) bounds.push_back(xlo + static_cast<double>(k) * binWidth);
}

double ZqGetConstForConstBinWidthHistConfidenceInt(std::uint64_t numData, std::uint64_t numBins, double xlo,
                                                   double xhi, double alpha) {
  if (numData == 0 || numBins == 0 || !(xhi > xlo) || !std::isfinite(xhi - xlo)) return kBad;
  ZqStatModelResult result;
  const ZqUniVarPDF normal = ZqUnivariateGaussian("tmp", 0.0, 1.0, result);
  if (result.NotSuccessful()) return kBad;
  const double z = normal.GetPercentile(1.0 - alpha / (2.0 * static_cast<double>(numBins)), result);
  if (result.NotSuccessful() || !std::isfinite(z)) return kBad;
  const double binWidth = (xhi - xlo) / static_cast<double>(numBins);
  return std::sqrt(1.0 / (binWidth * static_cast<double>(numData))) * 0.5 * z;
}

double ZqGetCrossValidationHistogramScore(double xlo, double xhi, std::uint64_t numBins,
                                          const std::vector<double>& data) {
  if (data.size() < 2 || numBins == 0 || !(xhi > xlo) || !std::isfinite(xhi - xlo) || !AllFinite(data)) return kBad;
  constexpr double kInside = 2.220446049250313e-14;
  const double h = (xhi - xlo) / static_cast<double>(numBins);
  std::vector<double> counts(static_cast<std::size_t>(numBins), 0.0);
  for (double x : data) {
    const double clipped = std::min(std::max(x, xlo + kInside), xhi - kInside);
    counts[static_cast<std::size_t>(BinOf(clipped, xlo, h, numBins))] += 1.0;
  }
  const double n = static_cast<double>(data.size());
  double sumSquares = 0.0;
  for (double c : counts) sumSquares += (c / n) * (c / n);
  return (2.0 - (n + 1.0) * sumSquares) / (h * (n - 1.0));
}

}  // namespace Varimo
