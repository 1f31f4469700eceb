#include "varimo/statistics/sampling.h"

#include <algorithm>

#include "statistic_support.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {

void ZqSampleWithReplacement(Numarc::ZqRanNumEngine& engine, std::vector<std::uint64_t>& out, std::uint64_t count,
                             const std::vector<std::uint64_t>& population) {
  out.clear();
  if (population.empty()) return;
  out.reserve(StatisticDetail::ReserveFor(count));
  const Numarc::ZqUniformIntRNG index(0, static_cast<long>(population.size()) - 1);
  for (std::uint64_t k = 0; k < count; ++k) out.push_back(population[static_cast<std::size_t>(index(engine))]);
  std::sort(out.begin(), out.end());
}

void ZqSampleWithoutReplacement(Numarc::ZqRanNumEngine& engine, std::vector<std::uint64_t>& chosen,
                                std::vector<std::uint64_t>& rest, std::uint64_t count,
                                const std::vector<std::uint64_t>& population) {
  chosen.clear();
  rest.clear();
  if (count >= population.size()) {
    chosen = population;
    return;
  }
  // Entries of scratch from position m on are used up: each draw takes one
  // of the first m + 1 and moves entry m into the place it leaves.
  std::vector<std::uint64_t> scratch(population);
  std::size_t m = scratch.size();
  chosen.reserve(static_cast<std::size_t>(count));
  for (std::uint64_t k = 0; k < count; ++k) {
    --m;
    const auto i = static_cast<std::size_t>(Numarc::ZqUniformIntRNG(0, static_cast<long>(m))(engine));
    chosen.push_back(scratch[i]);
    scratch[i] = scratch[m];
  }
  rest.assign(scratch.begin(), scratch.begin() + static_cast<std::ptrdiff_t>(m));
  std::sort(chosen.begin(), chosen.end());
  std::sort(rest.begin(), rest.end());
}

}  // namespace Varimo
