// A small seedable uniform generator for code that needs a repeatable stream
// of numbers but no statistical law (thinning a sample, picking a start).
// Draws depend only on the seed: ZqRandom r(false); r.Seed(0); gives the same
// sequence in every run on every machine.
#pragma once

#include <cstdint>
#include <random>

namespace Corvane {

class ZqRandom {
 public:
  // With `seedFromTime` the seed is taken from the clock, otherwise it is 0.
  explicit ZqRandom(bool seedFromTime = true);

  void Seed(unsigned int seed) { engine_.seed(seed); }
  // Uniform in [0, 1): 24 random bits, so 1.0f is never returned.
  float NextFloat();
  // Uniform in [0, 1): 53 random bits.
  double NextDouble();
  // Uniform over all 32-bit values.
  std::uint32_t NextUnsigned() { return static_cast<std::uint32_t>(engine_()); }

 private:
  std::mt19937 engine_;
};

}  // namespace Corvane
