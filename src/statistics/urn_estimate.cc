#include "varimo/statistics/urn_estimate.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "statistic_support.h"
#include "varimo/platform/numarc/generators.h"
#include "varimo/platform/numarc/special_functions.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

// The derivative of the log-likelihood of an urn of n balls, up to a
// positive factor: positive while a larger urn explains the draws better.
double LikelihoodSlope(double n, double u, double d) {
  return Numarc::ZqDiGamma(n + 1.0) - Numarc::ZqDiGamma(n - u + 1.0) - d / n;
}

}  // namespace

double ZqMaxLikelihoodEstimateOfNumBallsInUrn(std::uint64_t numUnique, std::uint64_t numDraws) {
  if (numUnique == 0 || numDraws == 0) return 0.0;
  if (numUnique == numDraws) return kBad;
  const double u = static_cast<double>(numUnique), d = static_cast<double>(numDraws);
  const double limit = 1024.0 * u * u;
  double lo = u, hi = 8.0 * u;
  while (LikelihoodSlope(hi, u, d) >= 0.0 && hi < limit) {
    lo = hi;
    hi *= 8.0;
  }
  if (hi >= limit) return kBad;
  double mid = 0.5 * (lo + hi);
  while (hi - lo > 0.001) {
    if (LikelihoodSlope(mid, u, d) > 0.0) {
      lo = mid;
    } else {
      hi = mid;
    }
    const double next = 0.5 * (lo + hi);
    // At sizes where 0.001 is below the spacing of doubles the bracket stops
    // shrinking; the midpoint is then as good as it gets.
    if (next == mid) break;
    mid = next;
  }
  return mid;
}

std::uint64_t ZqSimulateNumUniqueDrawsFromUrn(Numarc::ZqRanNumEngine& engine, std::uint64_t numBalls,
                                              std::uint64_t numDraws) {
  if (numBalls > 0x7FFFFFFFu || numBalls == 0) return 0;
  const Numarc::ZqUniformIntRNG ball(0, static_cast<long>(numBalls) - 1);
  std::vector<long> draws;
  draws.reserve(ReserveFor(numDraws));
  for (std::uint64_t k = 0; k < numDraws; ++k) draws.push_back(ball(engine));
  std::sort(draws.begin(), draws.end());
  return static_cast<std::uint64_t>(std::unique(draws.begin(), draws.end()) - draws.begin());
}

double ZqMaxLikelihoodEstimateOfNumBallsInUrn(Numarc::ZqRanNumEngine& engine, double& min, double& max,
                                              double& lower, double& upper, double confidence,
                                              std::uint64_t numSimulations, std::uint64_t numUnique,
                                              std::uint64_t numDraws) {
  min = max = lower = upper = kBad;
  const double estimate = ZqMaxLikelihoodEstimateOfNumBallsInUrn(numUnique, numDraws);
  if (estimate == kBad || estimate > 4294967295.0 || estimate > 1.7976931348623156e300) return estimate;
  const auto numBalls = static_cast<std::uint64_t>(std::floor(estimate));
  std::vector<double> estimates;
  estimates.reserve(ReserveFor(numSimulations));
  for (std::uint64_t s = 0; s < numSimulations; ++s) {
    estimates.push_back(
        ZqMaxLikelihoodEstimateOfNumBallsInUrn(ZqSimulateNumUniqueDrawsFromUrn(engine, numBalls, numDraws), numDraws));
  }
  std::sort(estimates.begin(), estimates.end());
  if (!estimates.empty()) {
    min = estimates.front();
    max = estimates.back();
  }
  const double a = (1.0 - confidence) * 0.5;
  lower = ZqQuantile(a, estimates, 8);
  upper = ZqQuantile(1.0 - a, estimates, 8);
  return estimate;
}

}  // namespace Varimo
