// Density histograms of a sample: bin heights that integrate to 1, with
// equal-width bins (their number given or chosen from the data) or
// equal-frequency bins, and the scores and band constants that go with them.
//
// Data are sorted ascending by the caller unless a function says otherwise.
// Every histogram function first sets its outputs to 0 and empty, and leaves
// them so for empty data, for no bins, and for data that cannot make a
// histogram: a NaN or infinite value, or a range of zero width (all values
// equal, and suggested limits no wider). lo and hi are the caller's
// suggestions for the range: the histogram spans at least [lo, hi] and at
// least the data.
#pragma once

#include <cstdint>
#include <vector>

namespace Varimo {

// xlo = min(suggestedLo, first), xhi = max(suggestedHi, last); both 0 for
// empty data.
void ZqGetXloXhiForSortedData(double& xlo, double& xhi, const std::vector<double>& sortedData, double suggestedLo,
                              double suggestedHi);

// numBins bins of width (xhi - xlo) / numBins. The top edge belongs to the
// last bin. Each value adds 1 / (n binWidth) to its bin; maxHeight is the
// tallest bin.
void ZqGetUserDefinedConstBinWidthHistogram(double& xlo, double& xhi, double& binWidth, double& maxHeight,
                                            std::vector<double>& heights, const std::vector<double>& sortedData,
                                            std::uint64_t numBins, double lo, double hi);

// As above with the number of bins chosen from the data: the range over
// 2.6 IQR / n^(1/3), rounded to nearest, a wider bin than the
// Freedman-Diaconis rule's 2 IQR. Data whose type-8 interquartile range is
// not positive, or cannot be had (fewer than four values), give no
// histogram, with xlo and xhi still set.
void ZqGetAutoDefinedConstBinWidthHistogram(double& xlo, double& xhi, double& binWidth, double& maxHeight,
                                            std::vector<double>& heights, std::uint64_t& numBins,
                                            const std::vector<double>& sortedData, double lo, double hi);

// numBins bins of probability 1 / numBins each, their inner edges the type-8
// quantiles at k / numBins; height (1 / numBins) / width, minWidth the
// narrowest bin. Edges that do not rise strictly (tied data, or quantiles
// below the first point when numBins exceeds the data) give no histogram,
// with xlo and xhi still set.
void ZqGetUserDefinedConstFreqHistogram(double& xlo, double& xhi, double& minWidth, double& maxHeight,
                                        std::vector<double>& heights, const std::vector<double>& sortedData,
                                        std::uint64_t numBins, double lo, double hi);

// The numBins + 1 edges of the histograms above: equal frequency, xlo, the
// quantile edges and xhi; equal width, xlo + k binWidth for k = 0 to
// numBins. Empty for empty data or no bins.
void ZqGetBinBoundariesForSortedData(std::vector<double>& bounds, std::uint64_t numBins, bool constFreq,
                                     const std::vector<double>& sortedData, double lo, double hi);

// Half-width, on the square-root scale of the heights, of the simultaneous
// band of level 1 - alpha over numBins equal-width bins of numData values on
// [xlo, xhi]: sqrt(numBins / ((xhi - xlo) numData)) z / 2, z the standard
// normal percentile at 1 - alpha / (2 numBins). The bad double when the
// percentile cannot be had (alpha outside (0, 1]) or the arguments give no
// bin (numData or numBins 0, xhi not above xlo).
double ZqGetConstForConstBinWidthHistConfidenceInt(std::uint64_t numData, std::uint64_t numBins, double xlo,
                                                   double xhi, double alpha);

// The least-squares cross-validation score of the equal-width histogram of
// numBins bins on [xlo, xhi]: (2 - (n + 1) sum p_i^2) / (h (n - 1)), p_i the
// fraction of the data in bin i and h the bin width. Lower is better. Values
// are first moved to within 2.220446049250313e-14 inside the range, so
// values outside it count in the end bins; data need not be sorted. The bad
// double for fewer than 2 values, no bins, xhi not above xlo, or a value
// that is NaN or infinite.
double ZqGetCrossValidationHistogramScore(double xlo, double xhi, std::uint64_t numBins,
                                          const std::vector<double>& data);

}  // namespace Varimo
