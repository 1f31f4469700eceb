// Point series for plotting a sample: histogram staircases with an optional
// confidence band, the empirical distribution function and the normal
// probability plot. Each function clears its series and sets the points
// with Numarc::ZqDataSeries::SetPoints. Data are sorted ascending by the
// caller unless a function says otherwise; lo and hi are the suggested x
// range, as in histogram.h, whose rules for empty and degenerate data give
// empty series here.
#pragma once

#include <cstdint>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/data_series.h"

namespace Varimo {

// The outline of a histogram: (bounds[0], 0), then for each bin (left
// edge, height), (right edge, height), (right edge, 0), so 3 bins + 1 points.
// Writes nothing, leaving the series as it was, unless bounds has one more
// element than heights.
void ZqGetHistogramPlotPointsFromBinStats(Numarc::ZqDataSeries& series, const std::vector<double>& heights,
                                          const std::vector<double>& bounds);

// A histogram of histogram.h, its boundaries and its staircase in one call;
// xlo, xhi and maxHeight are the plot's ranges.
void ZqGetUserDefinedConstBinWidthHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                 double& maxHeight, const std::vector<double>& sortedData,
                                                 std::uint64_t numBins, double lo, double hi);
void ZqGetAutoDefinedConstBinWidthHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                 double& maxHeight, std::uint64_t& numBins,
                                                 const std::vector<double>& sortedData, double lo, double hi);
void ZqGetUserDefinedConstFreqHistPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                             double& maxHeight, const std::vector<double>& sortedData,
                                             std::uint64_t numBins, double lo, double hi);

// The equal-width histogram with a band of level 1 - alpha around it: with c
// from ZqGetConstForConstBinWidthHistConfidenceInt, the lower series has
// heights max(sqrt(h) - c, 0)^2 and the upper (sqrt(h) + c)^2, both as
// staircases on the histogram's edges. The data need not be sorted: a
// sorted copy is used. maxHeight is the histogram's; when c is the bad
// double the two band series are empty.
void ZqGetAutoDefConstBinWidthHistPlotPtsConfidenceInt(Numarc::ZqDataSeries& series, Numarc::ZqDataSeries& lower,
                                                        Numarc::ZqDataSeries& upper, double& xlo, double& xhi,
                                                        double& maxHeight, std::uint64_t& numBins,
                                                        const std::vector<double>& data, double alpha, double lo,
                                                        double hi);
void ZqGetUserDefConstBinWidthHistPlotPtsConfidenceInt(Numarc::ZqDataSeries& series, Numarc::ZqDataSeries& lower,
                                                        Numarc::ZqDataSeries& upper, double& xlo, double& xhi,
                                                        double& maxHeight, const std::vector<double>& data,
                                                        std::uint64_t numBins, double alpha, double lo, double hi);

// The staircase of the empirical distribution function: (xlo, 0) when xlo
// is below the first value, (x_1, 0), then (x_i, i / n) and, but for the
// last value, (x_{i+1}, i / n); (xhi, 1) when xhi is above the last value.
// Empty data give an empty series and xlo = xhi = 0.
void ZqGetEmpiricalCDFPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                 const std::vector<double>& sortedData, double lo, double hi);

// The normal probability plot, routine
// "ZqGetNormalProbabilityPlotPointsForSortedData": for the i-th of n values
// the point (z, (x_i - c) / s), z the standard normal percentile at
// (i - 1/3) / (n + 1/3), c and s the robust centre and scale of
// ZqGetCenterAndScale. The ranges start at [lo, hi] and [ylo0, yhi0] and grow
// to take in the points. Data without a robust scale (fewer than four
// values, a zero interquartile range, or NaN values) fail with
// SingularScaleOrCovariance and an empty series; empty data give an empty
// series and the suggested ranges.
ZqStatModelResult ZqGetNormalProbabilityPlotPointsForSortedData(Numarc::ZqDataSeries& series, double& xlo,
                                                                double& xhi, double& ylo, double& yhi,
                                                                const std::vector<double>& sortedData, double lo,
                                                                double hi, double ylo0, double yhi0);

}  // namespace Varimo
