#include "varimo/statistics/quantile.h"

#include <algorithm>
#include <cmath>

#include "statistic_support.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

// floor(h) as an element number, kept within [0, n + 1] before the cast so
// that a huge h cannot overflow.
long long ElementNumber(double h, std::size_t n) {
  return static_cast<long long>(std::clamp(std::floor(h), 0.0, static_cast<double>(n) + 1.0));
}

}  // namespace

double ZqGetG(double h) { return h - std::floor(h); }

double ZqXBelow(long long j, const std::vector<double>& sortedData) {
  if (sortedData.empty()) return kBad;
  const auto n = static_cast<long long>(sortedData.size());
  return sortedData[static_cast<std::size_t>(std::clamp(j, 1LL, n) - 1)];
}

double ZqXAbove(long long j, const std::vector<double>& sortedData) {
  if (sortedData.empty()) return kBad;
  const auto n = static_cast<long long>(sortedData.size());
  // Clamp before adding so that j + 1 cannot overflow.
  return ZqXBelow(std::clamp(j, 0LL, n) + 1, sortedData);
}

double ZqQHatPiecewiseLinear(double p, double m, const std::vector<double>& sortedData) {
  const std::size_t n = sortedData.size();
  const double h = static_cast<double>(n) * p + m;
  if (n == 0 || std::isnan(h)) return kBad;
  const long long j = ElementNumber(h, n);
  const double below = ZqXBelow(j, sortedData), above = ZqXAbove(j, sortedData);
  // Equal neighbours (ties, or both ends clamped to one element) give that
  // element exactly rather than a weighted sum that may round away from it.
  if (below == above) return below;
  const double g = ZqGetG(h);
  return g * above + (1.0 - g) * below;
}

double ZqQuantile(double p, const std::vector<double>& sortedData, unsigned int type) {
  const std::size_t n = sortedData.size();
  if (!(p <= 1.0) || n == 0 || type == 0 || type > 9) return kBad;
  if (p < 1.0 / static_cast<double>(n)) return -kBad;

  const double dn = static_cast<double>(n);
  switch (type) {
    case 1:
    case 2: {
      const double h = dn * p;
      const long long j = ElementNumber(h, n);
      if (ZqGetG(h) != 0.0) return ZqXAbove(j, sortedData);
      return type == 1 ? ZqXBelow(j, sortedData) : 0.5 * (ZqXBelow(j, sortedData) + ZqXAbove(j, sortedData));
    }
    case 3: {
      const double h = dn * p - 0.5;
      const long long j = ElementNumber(h, n);
      return ZqGetG(h) != 0.0 || n % 2 == 1 ? ZqXAbove(j, sortedData) : ZqXBelow(j, sortedData);
    }
    case 4: return ZqQHatPiecewiseLinear(p, 0.0, sortedData);
    case 5: return ZqQHatPiecewiseLinear(p, 0.5, sortedData);
    case 6: return ZqQHatPiecewiseLinear(p, p, sortedData);
    case 7: return ZqQHatPiecewiseLinear(p, 1.0 - p, sortedData);
    case 8: return ZqQHatPiecewiseLinear(p, (1.0 + p) / 3.0, sortedData);
    default: return ZqQHatPiecewiseLinear(p, (2.0 * p + 3.0) / 8.0, sortedData);
  }
}

void ZqGetCenterAndScale(double& center, double& scale, bool robust, const std::vector<double>& sortedData) {
  center = kBad;
  scale = kBad;
  const std::size_t n = sortedData.size();
  if (n == 0) return;
  if (!robust) {
    center = MeanInOrder(sortedData);
    if (n < 2) return;
    double sumSquares = 0.0;
    for (double x : sortedData) sumSquares += (x - center) * (x - center);
    scale = std::sqrt(sumSquares / static_cast<double>(n - 1));
    return;
  }
  // The median straight from the middle, not through ZqQuantile, so that it
  // exists for a single value too.
  center = n % 2 == 1 ? sortedData[n / 2] : 0.5 * (sortedData[n / 2 - 1] + sortedData[n / 2]);
  const double upper = ZqQuantile(0.75, sortedData, 8), lower = ZqQuantile(0.25, sortedData, 8);
  // 1.34898 is the interquartile range of the standard normal distribution.
  if (std::fabs(upper) != kBad && std::fabs(lower) != kBad) scale = (upper - lower) / 1.34898;
}

double ZqEmpiricalCDF(double x, const std::vector<double>& sortedData) {
  if (sortedData.empty() || std::isnan(x)) return kBad;
  const auto notGreater = std::upper_bound(sortedData.begin(), sortedData.end(), x) - sortedData.begin();
  return static_cast<double>(notGreater) / static_cast<double>(sortedData.size());
}

}  // namespace Varimo
