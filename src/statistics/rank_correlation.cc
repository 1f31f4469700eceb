// Spearman's rho and Kendall's tau.
#include <algorithm>
#include <cmath>

#include "statistic_support.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

// Replaces the first values of pairs sorted by their first value with their
// ranks counted from 1; a run of equal values takes the mean of the first and
// last rank of the run.
void FillFirstRanks(ZqPairSample& sorted) {
  if (sorted.size() < 2) return;
  for (std::size_t start = 0; start < sorted.size();) {
    std::size_t end = start;
    while (end + 1 < sorted.size() && sorted[end + 1].first == sorted[start].first) ++end;
    const double rank = 0.5 * static_cast<double>(start + 1 + end + 1);
    for (std::size_t i = start; i <= end; ++i) sorted[i].first = rank;
    start = end + 1;
  }
}

}  // namespace

double ZqSpearmanRho::operator()(const ZqPairSample& pairs) const {
  if (pairs.size() < 2 || !AllFinite(pairs)) return kBad;
  ZqPairSample ranks(pairs);
  std::sort(ranks.begin(), ranks.end());
  FillFirstRanks(ranks);
  // Swap so that y leads, rank it, and end with (rank of y, rank of x).
  for (auto& [first, second] : ranks) std::swap(first, second);
  std::sort(ranks.begin(), ranks.end());
  FillFirstRanks(ranks);
  return ZqTwoSamplePearsonCorrelation()(ranks);
}

double ZqKendallTau::operator()(const ZqPairSample& pairs) const {
  if (pairs.empty()) return 1.0;
  if (!AllFinite(pairs)) return kBad;
  const std::size_t n = pairs.size();
  double concordant = 0.0, discordant = 0.0, tiesX = 0.0, tiesY = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      const double dx = pairs[j].first - pairs[i].first;
      const double dy = pairs[j].second - pairs[i].second;
      const double product = dx * dy;
      if (product < 0.0) {
        discordant += 1.0;
      } else if (product > 0.0) {
        concordant += 1.0;
      } else {
        // A pair tied in both counts in both.
        if (dx == 0.0) tiesX += 1.0;
        if (dy == 0.0) tiesY += 1.0;
      }
    }
  }
  const double pairCount = 0.5 * static_cast<double>(n) * static_cast<double>(n - 1);
  return (concordant - discordant) / std::sqrt((pairCount - tiesY) * (pairCount - tiesX));
}

}  // namespace Varimo
