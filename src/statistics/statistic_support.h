// Private helpers of the statistic objects: the reserved values and the
// checks every statistic makes on its input. Not installed.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo::StatisticDetail {

inline constexpr double kBad = VarimoBadData::BadDouble;
// Second moments below this count as no spread at all.
inline constexpr double kEps = 2.220446049250313e-16;

// A sample with a NaN or an infinity has no statistic. Checking first also
// keeps NaNs away from std::sort, whose ordering they would break.
inline bool AllFinite(const std::vector<double>& data) {
  return std::all_of(data.begin(), data.end(), [](double x) { return std::isfinite(x); });
}
inline bool AllFinite(const ZqPairSample& pairs) {
  return std::all_of(pairs.begin(), pairs.end(),
                     [](const std::pair<double, double>& p) { return std::isfinite(p.first) && std::isfinite(p.second); });
}

inline std::vector<double> SortedCopy(const std::vector<double>& data) {
  std::vector<double> sorted(data);
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

// The sum in input order over n, so that results do not depend on how a
// vectorising compiler would reorder the sum.
inline double MeanInOrder(const std::vector<double>& data) {
  return std::accumulate(data.begin(), data.end(), 0.0) / static_cast<double>(data.size());
}

// What to reserve for a loop of `count` results: all of them, up to a cap,
// so that an absurd count runs out of time rather than throwing on the
// allocation.
inline std::size_t ReserveFor(std::uint64_t count) {
  constexpr std::uint64_t kCap = std::uint64_t{1} << 24;
  return static_cast<std::size_t>(count < kCap ? count : kCap);
}

}  // namespace Varimo::StatisticDetail
