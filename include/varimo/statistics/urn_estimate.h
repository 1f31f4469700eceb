// How many balls are in an urn, from the number of distinct balls seen in
// draws with replacement: the capture-recapture question behind "how many
// distinct compounds could this library hold".
#pragma once

#include <cstdint>

#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {

// The maximum-likelihood urn size N given numUnique distinct balls in
// numDraws draws: the root of digamma(N + 1) - digamma(N - u + 1) - d / N,
// bracketed from N = u by steps of 8 and bisected to a width of 0.001.
//   - 0 when numUnique or numDraws is 0;
//   - the bad double 1.7976931348623157e308 when every draw was distinct
//     (no finite estimate), and when the bracket passes 1024 u^2, as it does
//     for numUnique > numDraws.
double ZqMaxLikelihoodEstimateOfNumBallsInUrn(std::uint64_t numUnique, std::uint64_t numDraws);

// The number of distinct values in numDraws draws with replacement from an
// urn of numBalls balls. 0 for an urn above 0x7FFFFFFF balls, and for an
// empty urn.
std::uint64_t ZqSimulateNumUniqueDrawsFromUrn(Numarc::ZqRanNumEngine& engine, std::uint64_t numBalls,
                                              std::uint64_t numDraws);

// The estimate of the two-argument form, returned, with an interval by
// parametric bootstrap: numSimulations urns of floor(estimate) balls are
// drawn numDraws times and re-estimated. min and max are the smallest and
// largest re-estimate, lower and upper their type-8 quantiles at a and 1 - a
// with a = (1 - confidence) / 2; a re-estimate of the bad double counts as
// the largest. When the estimate is the bad double or above 4294967295 all
// four outputs are the bad double; so are min and max when numSimulations is
// 0. Cost: numSimulations times numDraws log numDraws.
double ZqMaxLikelihoodEstimateOfNumBallsInUrn(Numarc::ZqRanNumEngine& engine, double& min, double& max,
                                              double& lower, double& upper, double confidence,
                                              std::uint64_t numSimulations, std::uint64_t numUnique,
                                              std::uint64_t numDraws);

}  // namespace Varimo
