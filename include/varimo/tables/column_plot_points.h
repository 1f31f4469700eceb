// Plot points of columns: the empirical distribution function, the three
// density histograms and the normal probability plot of one ratio column,
// and the scatter plot of two.
//
//   Numarc::ZqDataSeries cdf;
//   double xlo = 0.0, xhi = 0.0;
//   ZqStatModelResult r = ZqGetEmpiricalCDFPlotPointsForColumnName(cdf, xlo, xhi, table, "TPSA", 0, 0.0, 200.0);
//
// Each function packs the column's good cells (missing and bad ones are
// left out, as in column_statistics.h), sorts them and hands them to the
// plot function of the same name in plot_points.h, whose rules for empty or
// degenerate data (an empty series) apply. The form with a table looks the
// column up by name and walks the rows the table shows, so views and
// predicates apply; the form with a column walks every row of the column.
// lo and hi (and the y pair of the normal plot) are the caller's suggested
// ranges, which the outputs only ever widen.
//
// Failures: an unknown name (ColumnNotFound), a column not of ratio scale
// (ColumnHasWrongDataType) or a cell with a bad index (ArgumentOutOfRange)
// come back with the function's name added to the chain; the series may be
// left partly filled. The constant-frequency histogram reports itself as
// "ZqGetUserDefConstBinWidthHistPlotPointsForColName" and the normal plot as
// "ZqGetNormalProbabilityPlotForColumnName", names that callers match on.
#pragma once

#include <cstdint>
#include <string>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/data_series.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

// The staircase of the empirical distribution function.
ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                           const ZqDataTable& table, const std::string& name,
                                                           std::uint64_t colNum, double lo, double hi);
ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                           const ZqDataTableCol& col, std::uint64_t colNum, double lo,
                                                           double hi);

// Equal-width histogram, the number of bins chosen from the data (numBins
// gives it back; 0 when the data make no histogram).
ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    std::uint64_t& numBins, const ZqDataTable& table,
                                                                    const std::string& name, std::uint64_t colNum,
                                                                    double lo, double hi);
ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    std::uint64_t& numBins, const ZqDataTableCol& col,
                                                                    std::uint64_t colNum, double lo, double hi);

// Equal-width histogram of numBins bins.
ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    const ZqDataTable& table, const std::string& name,
                                                                    std::uint64_t colNum, std::uint64_t numBins,
                                                                    double lo, double hi);
ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo,
                                                                    double& xhi, double& maxHeight,
                                                                    const ZqDataTableCol& col, std::uint64_t colNum,
                                                                    std::uint64_t numBins, double lo, double hi);

// Equal-frequency histogram of numBins bins.
ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& maxHeight, const ZqDataTable& table,
                                                                const std::string& name, std::uint64_t colNum,
                                                                std::uint64_t numBins, double lo, double hi);
ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForColName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& maxHeight, const ZqDataTableCol& col,
                                                                std::uint64_t colNum, std::uint64_t numBins, double lo,
                                                                double hi);

// Normal probability plot; its own failures (no robust scale) are handed
// on as well.
ZqStatModelResult ZqGetNormalProbabilityPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& ylo, double& yhi, const ZqDataTable& table,
                                                                const std::string& name, std::uint64_t colNum,
                                                                double lo, double hi, double ylo0, double yhi0);
ZqStatModelResult ZqGetNormalProbabilityPlotPointsForColumnName(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                                double& ylo, double& yhi, const ZqDataTableCol& col,
                                                                std::uint64_t colNum, double lo, double hi, double ylo0,
                                                                double yhi0);

// The points (x, y) of the rows where both cells are good, in row order.
// xMin = min(xlo, smallest x) and xMax = max(xhi, largest x), and the same
// for y with ylo and yhi; all four are 0 when no row is kept. Columns of
// different row counts fail with MismatchBetweenInputVecSizes.
ZqStatModelResult ZqGetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const ZqDataTable& table,
                                                       const std::string& xName, const std::string& yName,
                                                       std::uint64_t xIndex, std::uint64_t yIndex, double xlo,
                                                       double xhi, double ylo, double yhi);
ZqStatModelResult ZqGetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const ZqDataTableCol& xCol,
                                                       const ZqDataTableCol& yCol, std::uint64_t xIndex,
                                                       std::uint64_t yIndex, double xlo, double xhi, double ylo,
                                                       double yhi);

}  // namespace Varimo
