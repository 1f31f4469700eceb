// Random selection of ids from a population, with and without replacement,
// for resampling and hold-out splits of tables.
#pragma once

#include <cstdint>
#include <vector>

#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {

// Clears out and fills it with `count` draws with replacement from
// population, sorted ascending. Nothing for an empty population.
void ZqSampleWithReplacement(Numarc::ZqRanNumEngine& engine, std::vector<std::uint64_t>& out, std::uint64_t count,
                             const std::vector<std::uint64_t>& population);

// Splits population into `count` ids chosen without replacement and the
// rest, both sorted ascending. A count not below the population size
// chooses everything: chosen is then the population in its given order
// (not sorted), rest is empty, and the engine is not used. Otherwise a
// partial Fisher-Yates selection of count draws, O(size + count).
void ZqSampleWithoutReplacement(Numarc::ZqRanNumEngine& engine, std::vector<std::uint64_t>& chosen,
                                std::vector<std::uint64_t>& rest, std::uint64_t count,
                                const std::vector<std::uint64_t>& population);

}  // namespace Varimo
