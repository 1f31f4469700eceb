// Points for plotting a distribution: curves of the density and of the
// distribution function, a density scaled to lie over a histogram, plots of
// a sample drawn from the distribution, and the contours of a density of
// two variables.
//
//   ZqStatModelResult r;
//   ZqUniVarPDF normal = ZqUnivariateGaussian("x", 0.0, 1.0, r);
//   Numarc::ZqDataSeries curve;
//   double xlo, xhi, ylo, yhi;
//   r = ZqGetPDFDensityPlotPoints(curve, xlo, xhi, ylo, yhi, normal, 0.01, 101, 0.0, 0.0);
//
// Every function stops at the first failed call, adds its own name to the
// chain and returns that result; bounds written before the failure keep
// their values.
#pragma once

#include <cstdint>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/pdf/pdf.h"
#include "varimo/platform/numarc/data_series.h"
#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {

// The density curve over [xlo, xhi]: xlo is the percentile at tailProb / 2,
// lowered to lowestXlo if that is below it, and xhi the percentile at
// 1 - tailProb / 2, raised to highestXhi if that is above it; the caller's
// bounds only ever widen the range. numPoints equally spaced points, x_i =
// i (xhi - xlo) / (numPoints - 1) + xlo, with ylo = 0 and yhi the largest
// density. The sum of density times step goes to Corvane::ZqThrow.Info as
// "sum density = %f", a check that the curve covers the mass. The step is
// not guarded: numPoints 1 divides by zero, and the one x is what floating
// point makes of it, NaN, which fails with ArgumentOutOfRange (as does any
// x that is not finite, from an infinite bound given by the caller);
// numPoints 0 gives an empty series and a sum of 0. A failed percentile
// returns before the series is cleared; a failed density leaves the series
// empty.
ZqStatModelResult ZqGetPDFDensityPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                            double& yhi, const ZqUniVarPDF& pdf, double tailProb,
                                            std::uint64_t numPoints, double lowestXlo, double highestXhi);

// The same curve times scale, for laying over a histogram; yhi is the
// largest scaled value, while the reported sum is of the unscaled density.
ZqStatModelResult ZqGetPDFScaledDensityPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                                  double& yhi, const ZqUniVarPDF& pdf, double scale, double tailProb,
                                                  std::uint64_t numPoints, double lowestXlo, double highestXhi);

// The distribution function on the same points; no sum is reported.
ZqStatModelResult ZqGetPDFCDFPlotPoints(Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo,
                                        double& yhi, const ZqUniVarPDF& pdf, double tailProb, std::uint64_t numPoints,
                                        double lowestXlo, double highestXhi);

// n draws of the pdf from engine, in order. samples is emptied first and
// keeps the draws made before a failure, which comes back with
// "ZqGetPDFSample" on the chain.
ZqStatModelResult ZqGetPDFSample(std::vector<double>& samples, ZqUniVarPDF& pdf, std::uint64_t n,
                                 Numarc::ZqRanNumEngine& engine);

// Plots of n draws, sorted, by the functions of plot_points.h of the same
// kind; lo and hi are the suggested x range. The histograms give ylo = 0 and
// yhi the tallest bin.
ZqStatModelResult ZqGetEmpiricalCDFPlotPointsForPDFSample(Numarc::ZqDataSeries& series, double& xlo, double& xhi,
                                                          ZqUniVarPDF& pdf, std::uint64_t n,
                                                          Numarc::ZqRanNumEngine& engine, double lo, double hi);
ZqStatModelResult ZqGetAutoDefConstBinWidthHistPlotPointsForPDFSample(Numarc::ZqDataSeries& series, double& xlo,
                                                                      double& xhi, double& ylo, double& yhi,
                                                                      ZqUniVarPDF& pdf, std::uint64_t n,
                                                                      Numarc::ZqRanNumEngine& engine, double lo,
                                                                      double hi);
ZqStatModelResult ZqGetUserDefConstBinWidthHistPlotPointsForPDFSample(
    Numarc::ZqDataSeries& series, double& xlo, double& xhi, double& ylo, double& yhi, ZqUniVarPDF& pdf, std::uint64_t n,
    std::uint64_t numBins, Numarc::ZqRanNumEngine& engine, double lo, double hi);
// Equal-frequency bins of countPerBin draws each: n / countPerBin bins
// (rounded down; none, and an empty series, when countPerBin exceeds n). A
// countPerBin of 0 fails with ArgumentOutOfRange before any draw.
ZqStatModelResult ZqGetUserDefConstFreqHistPlotPointsForPDFSample(Numarc::ZqDataSeries& series, double& xlo,
                                                                  double& xhi, double& ylo, double& yhi,
                                                                  ZqUniVarPDF& pdf, std::uint64_t n,
                                                                  std::uint64_t countPerBin,
                                                                  Numarc::ZqRanNumEngine& engine, double lo, double hi);

// Ten contours of the density of a pdf of two variables, at 5%, 15%, ...,
// 95% of the largest density on a numGrid by numGrid grid over the window of
// the marginals' percentiles at tailProb / 2 and 1 - tailProb / 2, widened
// to the caller's bounds; a window that is not finite fails with
// ArgumentOutOfRange. Each contour's branches are appended in order of
// level; a closed branch ends with a repeat of its first point. Prints
// through the output sink the marginal means ("mean x, mean y = "), variances
// ("Var x, Var y = "), the window ("xlo,xhi,ylo,yhi = ") and the peak
// ("fMax = "), and the contour tracer's own lines. contours is emptied
// first. A pdf not of two variables fails with WrongPDFType; a numGrid
// below 2 or above 46340 (whose square would not fit the grid's edge
// marks) with ArgumentOutOfRange once the window is written; a saddle in
// the density stops the trace with the contours found so far. Cost:
// numGrid^2 densities.
ZqStatModelResult ZqGet2DimPDFDensityPlotPoints(std::vector<Numarc::ZqDataSeries>& contours, double& xlo, double& xhi,
                                                double& ylo, double& yhi, const ZqMultiVarPDF& pdf, double tailProb,
                                                unsigned numGrid, double lowestXlo, double highestXhi, double lowestYlo,
                                                double highestYhi);

}  // namespace Varimo
