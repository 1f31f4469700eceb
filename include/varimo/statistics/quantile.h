// Sample quantiles in the classification of Hyndman and Fan (1996), and the
// small order-statistic helpers built on them. The library computes every
// order statistic with type 8, the median-unbiased definition, on data sorted
// ascending.
#pragma once

#include <vector>

namespace Varimo {

// The sample quantile of type 1 to 9 at probability p of sortedData (sorted
// ascending by the caller; not checked). With n the size:
//   - p > 1, p NaN, n = 0, or a type of 0 or above 9: the bad double
//     1.7976931348623157e308;
//   - p < 1/n: its negative, for every type. No interpolation is attempted
//     below the first point, so the median of one value and the quartiles of
//     fewer than four are this negative bad value;
//   - otherwise h = n p + m(type), j = floor(h), g = h - j, and the result
//     is built from the elements numbered j and j + 1 counting from 1. Where
//     j + 1 passes the end (p near 1) the last element stands in, and where
//     j is below 1 (type 3) the first.
// Types 4 to 9 interpolate g x(j+1) + (1 - g) x(j) with m = 0, 0.5, p, 1 - p,
// (1 + p) / 3 and (2 p + 3) / 8. Type 1 takes x(j+1) when g > 0, else x(j);
// type 2 the same but the average of both when g = 0; type 3 (m = -0.5)
// takes x(j+1) when g > 0 or n is odd, else x(j).
double ZqQuantile(double p, const std::vector<double>& sortedData, unsigned int type);

// The interpolation of types 4 to 9 alone, for offset m: h = n p + m,
// g x(j+1) + (1 - g) x(j), with the same clamping at both ends. The bad
// double for empty data or a NaN h.
double ZqQHatPiecewiseLinear(double p, double m, const std::vector<double>& sortedData);

// The fractional part g = h - floor(h) of h = n p + m.
double ZqGetG(double h);
// The elements numbered j and j + 1 counting from 1, clamped to the first
// and last element; the bad double for empty data.
double ZqXBelow(long long j, const std::vector<double>& sortedData);
double ZqXAbove(long long j, const std::vector<double>& sortedData);

// A centre and a scale of sortedData. Not robust: the mean and the square
// root of the sample variance over n - 1. Robust: the median (the middle
// element, or the mean of the two middle ones) and the interquartile range
// of type 8 over 1.34898, which estimates the standard deviation of a normal
// sample. Outputs that the data cannot give (no data; one value for the
// plain scale; fewer than four for the robust one) are the bad double.
void ZqGetCenterAndScale(double& center, double& scale, bool robust, const std::vector<double>& sortedData);

// The fraction of sortedData not greater than x, by binary search; the bad
// double for empty data or a NaN x.
double ZqEmpiricalCDF(double x, const std::vector<double>& sortedData);

}  // namespace Varimo
