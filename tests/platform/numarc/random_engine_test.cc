#include "varimo/platform/numarc/random_engine.h"

#include <gtest/gtest.h>

#include <concepts>
#include <random>
#include <vector>

namespace Numarc {
namespace {

static_assert(std::uniform_random_bit_generator<ZqRanNumEngine>);

std::vector<std::uint64_t> Stream(ZqRanNumEngine& engine, int n) {
  std::vector<std::uint64_t> values(n);
  for (auto& v : values) v = engine();
  return values;
}

// Reseeding and copies are checked through every generator's draws.
TEST(NumarcRanNumEngine, DefaultSeedIsStandardMt19937_64) {
  // The C++ standard fixes the 10000th output of a default-seeded
  // mt19937_64 at 9981545732273789042.
  ZqRanNumEngine engine;
  for (int i = 0; i < 9999; ++i) engine();
  EXPECT_EQ(engine(), 9981545732273789042ull);
  ZqRanNumEngine defaulted, explicitDefault(ZqRanNumEngine::kDefaultSeed);
  EXPECT_EQ(Stream(defaulted, 20), Stream(explicitDefault, 20));
}

}  // namespace
}  // namespace Numarc
