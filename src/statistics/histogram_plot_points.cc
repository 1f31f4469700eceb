// Histogram staircases and their confidence bands.
#include <algorithm>
#include <cmath>

#include "statistic_support.h"
#include "varimo/statistics/histogram.h"
#include "varimo/statistics/plot_points.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

// The staircase of a histogram on its edges, which it returns; an empty
// series for an empty histogram.
std::vector<double> SetStaircase(Numarc::ZqDataSeries& series, const std::vector<double>& heights,
                                 std::uint64_t numBins, bool constFreq, const std::vector<double>& sortedData,
                                 double lo, double hi) {
  series.Clear();
  std::vector<double> bounds;
  if (heights.empty()) return bounds;
  ZqGetBinBoundariesForSortedData(bounds, numBins, constFreq, sortedData, lo, hi);
  ZqGetHistogramPlotPointsFromBinStats(series, heights, bounds);
  return bounds;
}

// A sorted copy; data with a NaN, which sorting would scramble and no
// histogram accepts, are passed on as they are.
std::vector<double> SortedUnlessNaN(const std::vector<double>& data) {
  return AllFinite(data) ? SortedCopy(data) : data;
}

void SetBand(Numarc::ZqDataSeries& lower, Numarc::ZqDataSeries& upper, const std::vector<double>& heights,
             const std::vector<double>& bounds, std::uint64_t numData, std::uint64_t numBins, double xlo, double xhi,
             double alpha) {
  lower.Clear();
  upper.Clear();
  if (heights.empty()) return;
  const double c = ZqGetConstForConstBinWidthHistConfidenceInt(numData, numBins, xlo, xhi, alpha);
  if (c == kBad) return;
  std::vector<double> low, high;
  for (double h : heights) {
    const double root = std::sqrt(h);
    low.push_back(std::pow(std::max(root - c, 0.0), 2));
    high.push_back(std::pow(root + c, 2));
  }
  ZqGetHistogramPlotPointsFromBinStats(lower, low, bounds);
  ZqGetHistogramPlotPointsFromBinStats(upper, high, bounds);
}

}  // namespace

void ZqGetHistogramPlotPointsFromBinStats(Numarc::ZqDataSeries& series, const std::vector<double>& heights,
                                          const std::vector<double>& bounds) {
  if (bounds.size() != heights.size() + 1) return;
  std::vector<Numarc::ZqDataPoint> points;
  points.reserve(3 * heights.size() + 1);
  points.emplace_back(bounds[0], 0.0);
  for (std::size_t k = 0; k < heights.size(); ++k) {
    points.emplace_back(bounds[k], heights[k]);
    points.emplace_back(bounds[k + 1], heights[k]);
    points.emplace_back(bounds[k + 1], 0.0);
  }
  series.Clear();
  series.SetPoints(std::move(points));
}

void ZqGetUserDefinedConstBinWidthHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                 double& maxHeight, const std::vector<double>& sortedData,
                                                 std::uint64_t numBins, double lo, double hi) {
  double binWidth = 0.0;
  std::vector<double> heights;
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, sortedData, numBins, lo, hi);
  SetStaircase(series, heights, numBins, false, sortedData, lo, hi);
}

void ZqGetAutoDefinedConstBinWidthHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                 double& maxHeight, std::uint64_t& numBins,
                                                 const std::vector<double>& sortedData, double lo, double hi) {
  double binWidth = 0.0;
  std::vector<double> heights;
  ZqGetAutoDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, numBins, sortedData, lo, hi);
  SetStaircase(series, heights, numBins, false, sortedData, lo, hi);
}

void ZqGetUserDefinedConstFreqHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                             double& maxHeight, const std::vector<double>& sortedData,
                                             std::uint64_t numBins, double lo, double hi) {
  double minWidth = 0.0;
  std::vector<double> heights;
  ZqGetUserDefinedConstFreqHistogram(xlo, xhi, minWidth, maxHeight, heights, sortedData, numBins, lo, hi);
  SetStaircase(series, heights, numBins, true, sortedData, lo, hi);
}

void ZqGetAutoDefConstBinWidthHistPlotPtsConfidenceInt(Numarc::ZqDataSeries& series, Numarc::ZqDataSeries& lower,
                                                        Numarc::ZqDataSeries& upper, double& xlo, double& xhi,
                                                        double& maxHeight, std::uint64_t& numBins,
                                                        const std::vector<double>& data, double alpha, double lo,
                                                        double hi) {
  const std::vector<double> sorted = SortedUnlessNaN(data);
  double binWidth = 0.0;
  std::vector<double> heights;
  ZqGetAutoDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, numBins, sorted, lo, hi);
  SetBand(lower, upper, heights, SetStaircase(series, heights, numBins, false, sorted, lo, hi), sorted.size(),
          numBins, xlo, xhi, alpha);
}

void ZqGetUserDefConstBinWidthHistPlotPtsConfidenceInt(Numarc::ZqDataSeries& series, Numarc::ZqDataSeries& lower,
                                                        Numarc::ZqDataSeries& upper, double& xlo, double& xhi,
                                                        double& maxHeight, const std::vector<double>& data,
                                                        std::uint64_t numBins, double alpha, double lo, double hi) {
  const std::vector<double> sorted = SortedUnlessNaN(data);
  double binWidth = 0.0;
  std::vector<double> heights;
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, sorted, numBins, lo, hi);
  SetBand(lower, upper, heights, SetStaircase(series, heights, numBins, false, sorted, lo, hi), sorted.size(),
          numBins, xlo, xhi, alpha);
}

}  // namespace Varimo
