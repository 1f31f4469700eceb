// Plot points of columns: pack the good cells, sort them, and hand them to
// the plot functions of the sample statistics.
#include "varimo/tables/column_plot_points.h"

#include <algorithm>
#include <vector>

#include "column_helpers.h"
#include "column_walk.h"
#include "varimo/statistics/histogram.h"
#include "varimo/statistics/plot_points.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

namespace {

using ColumnWalk::Failed;
using ColumnWalk::FindColumn;

constexpr const char* kEmpiricalCDF = "ZqGetEmpiricalCDFPlotPointsForColumnName";
constexpr const char* kAutoHist = "ZqGetAutoDefConstBinWidthHistPlotPointsForColName";
constexpr const char* kUserHist = "ZqGetUserDefConstBinWidthHistPlotPointsForColName";
// The constant-frequency histogram reports under the name of its
// equal-width sibling, whose plot points it fills; callers match on it.
constexpr const char* kFreqHist = kUserHist;
constexpr const char* kNormalPlot = "ZqGetNormalProbabilityPlotForColumnName";
constexpr const char* kScatter = "ZqGetScatterPlotPtsForColumnNamePair";

// The good cells, sorted ascending (NaN last: a ratio column may hold one
// read from a file, and plain < is no ordering then).
ZqStatModelResult SortedValues(std::vector<double>& data, const ZqDataTableCol& col, std::uint64_t colNum,
                               const char* routine) {
  std::uint64_t numMissing = 0, numBad = 0;
  ZqStatModelResult result = ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, col, colNum);
  if (Failed(result, routine)) return result;
  std::sort(data.begin(), data.end(), ColumnDetail::DoubleLess);
  return result;
}

// The table form: the name is looked up first, so that an unknown name
// fails at the look-up with this routine next on the chain.
ZqStatModelResult SortedValues(std::vector<double>& data, const ZqDataTable& table, const std::string& name,
                               std::uint64_t colNum, const char* routine) {
  ZqStatModelResult result;
  FindColumn(result, table, name, routine);
  if (result.NotSuccessful()) return result;
  std::uint64_t numMissing = 0, numBad = 0;
  result = ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, table, name, colNum);
  if (Failed(result, routine)) return result;
  std::sort(data.begin(), data.end(), ColumnDetail::DoubleLess);
  return result;
}

// Packs and sorts the column named by `source` (a column and its number, or
// a table, a name and a number) and calls plot(sortedData), which returns
// the plot's own result.
template <class Plot, class... Source>
ZqStatModelResult PlotOfColumn(const char* routine, Plot&& plot, const Source&... source) {
  std::vector<double> data;
  ZqStatModelResult result = SortedValues(data, source..., routine);
  if (result.NotSuccessful()) return result;
  result = plot(data);
  Failed(result, routine);
  return result;
}

template <class... Source>
ZqStatModelResult EmpiricalCDF(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double lo, double hi,
                               const Source&... source) {
  return PlotOfColumn(
      kEmpiricalCDF,
      [&](const std::vector<double>& data) {
        ZqGetEmpiricalCDFPlotPoints(series, xlo, xhi, data, lo, hi);
        return ZqStatModelResult(true);
      },
      source...);
}

template <class... Source>
ZqStatModelResult AutoHistogram(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& maxHeight,
                                std::uint64_t& numBins, double lo, double hi, const Source&... source) {
  return PlotOfColumn(
      kAutoHist,
      [&](const std::vector<double>& data) {
        numBins = 0;
        ZqGetAutoDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, numBins, data, lo, hi);
        return ZqStatModelResult(true);
      },
      source...);
}

template <class... Source>
ZqStatModelResult UserHistogram(bool constFreq, Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                double& maxHeight, std::uint64_t numBins, double lo, double hi,
                                const Source&... source) {
  return PlotOfColumn(
      constFreq ? kFreqHist : kUserHist,
      [&](const std::vector<double>& data) {
        if (constFreq) {
          ZqGetUserDefinedConstFreqHistPlotPoints(series, xlo, xhi, maxHeight, data, numBins, lo, hi);
        } else {
          ZqGetUserDefinedConstBinWidthHistPlotPoints(series, xlo, xhi, maxHeight, data, numBins, lo, hi);
        }
        return ZqStatModelResult(true);
      },
      source...);
}

template <class... Source>
ZqStatModelResult NormalPlot(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo, double& yhi,
                             double lo, double hi, double ylo0, double yhi0, const Source&... source) {
  return PlotOfColumn(
      kNormalPlot,
      [&](const std::vector<double>& data) {
        return ZqGetNormalProbabilityPlotPointsForSortedData(series, xlo, xhi, ylo, yhi, data, lo, hi, ylo0, yhi0);
      },
      source...);
}

// The scatter plot of packed pairs; the ranges follow the rule of
// ZqGetXloXhiForSortedData applied to each coordinate's extremes.
void ScatterOfPairs(Numarc::ZqDataSeries& series, double& xMin, double& xMax, double& yMin, double& yMax,
                    const ZqPairSample& pairs, double xlo, double xhi, double ylo, double yhi) {
  std::vector<Numarc::ZqDataPoint> points;
  points.reserve(pairs.size());
  std::vector<double> xs, ys;
  xs.reserve(pairs.size());
  ys.reserve(pairs.size());
  for (const auto& [x, y] : pairs) {
    points.emplace_back(x, y);
    xs.push_back(x);
    ys.push_back(y);
  }
  std::sort(xs.begin(), xs.end(), ColumnDetail::DoubleLess);
  std::sort(ys.begin(), ys.end(), ColumnDetail::DoubleLess);
  ZqGetXloXhiForSortedData(xMin, xMax, xs, xlo, xhi);
  ZqGetXloXhiForSortedData(yMin, yMax, ys, ylo, yhi);
  series.SetPoints(std::move(points));
}

}  // namespace

ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                           const ZqDataTable& table, const std::string& name,
                                                           std::uint64_t colNum, double lo, double hi) {
  return EmpiricalCDF(series, xlo, xhi, lo, hi, table, name, colNum);
}

ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                           const ZqDataTableCol& col, std::uint64_t colNum, double lo,
                                                           double hi) {
  return EmpiricalCDF(series, xlo, xhi, lo, hi, col, colNum);
}

ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    std::uint64_t& numBins, const ZqDataTable& table,
                                                                    const std::string& name, std::uint64_t colNum,
                                                                    double lo, double hi) {
  return AutoHistogram(series, xlo, xhi, maxHeight, numBins, lo, hi, table, name, colNum);
}

ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    std::uint64_t& numBins, const ZqDataTableCol& col,
                                                                    std::uint64_t colNum, double lo, double hi) {
  return AutoHistogram(series, xlo, xhi, maxHeight, numBins, lo, hi, col, colNum);
}

ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    const ZqDataTable& table, const std::string& name,
                                                                    std::uint64_t colNum, std::uint64_t numBins,
                                                                    double lo, double hi) {
  return UserHistogram(false, series, xlo, xhi, maxHeight, numBins, lo, hi, table, name, colNum);
}

ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    const ZqDataTableCol& col, std::uint64_t colNum,
                                                                    std::uint64_t numBins, double lo, double hi) {
  return UserHistogram(false, series, xlo, xhi, maxHeight, numBins, lo, hi, col, colNum);
}

ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& maxHeight, const ZqDataTable& table,
                                                                const std::string& name, std::uint64_t colNum,
                                                                std::uint64_t numBins, double lo, double hi) {
  return UserHistogram(true, series, xlo, xhi, maxHeight, numBins, lo, hi, table, name, colNum);
}

ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& maxHeight, const ZqDataTableCol& col,
                                                                std::uint64_t colNum, std::uint64_t numBins, double lo,
                                                                double hi) {
  return UserHistogram(true, series, xlo, xhi, maxHeight, numBins, lo, hi, col, colNum);
}

ZqStatModelResult ZqGetNormalProbabilityPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& ylo, double& yhi, const ZqDataTable& table,
                                                                const std::string& name, std::uint64_t colNum,
                                                                double lo, double hi, double ylo0, double yhi0) {
  return NormalPlot(series, xlo, xhi, ylo, yhi, lo, hi, ylo0, yhi0, table, name, colNum);
}

ZqStatModelResult ZqGetNormalProbabilityPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& ylo, double& yhi, const ZqDataTableCol& col,
                                                                std::uint64_t colNum, double lo, double hi, double ylo0,
                                                                double yhi0) {
  return NormalPlot(series, xlo, xhi, ylo, yhi, lo, hi, ylo0, yhi0, col, colNum);
}

ZqStatModelResult ZqGetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const ZqDataTable& table,
                                                       const std::string& xName, const std::string& yName,
                                                       std::uint64_t xIndex, std::uint64_t yIndex, double xlo,
                                                       double xhi, double ylo, double yhi) {
  ZqStatModelResult result;
  FindColumn(result, table, xName, kScatter);
  if (result.IsSuccessful()) FindColumn(result, table, yName, kScatter);
  if (result.NotSuccessful()) return result;
  ZqPairSample pairs;
  std::uint64_t numMissing = 0, numBad = 0;
  result =
      ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, table, xName, yName, xIndex, yIndex);
  if (Failed(result, kScatter)) return result;
  ScatterOfPairs(series, xMin, xMax, yMin, yMax, pairs, xlo, xhi, ylo, yhi);
  return result;
}

ZqStatModelResult ZqGetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const ZqDataTableCol& xCol,
                                                       const ZqDataTableCol& yCol, std::uint64_t xIndex,
                                                       std::uint64_t yIndex, double xlo, double xhi, double ylo,
                                                       double yhi) {
  ZqPairSample pairs;
  std::uint64_t numMissing = 0, numBad = 0;
  ZqStatModelResult result =
      ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, xCol, yCol, xIndex, yIndex);
  if (Failed(result, kScatter)) return result;
  ScatterOfPairs(series, xMin, xMax, yMin, yMax, pairs, xlo, xhi, ylo, yhi);
  return result;
}

}  // namespace Varimo
