#include "varimo/platform/corvane/random.h"

#include <chrono>

namespace Corvane {

ZqRandom::ZqRandom(bool seedFromTime) : engine_(0u) {
  if (seedFromTime) {
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    engine_.seed(static_cast<unsigned int>(ticks ^ (ticks >> 32)));
  }
}

// Built from the top bits directly: uniform_real_distribution<float> can round
// up to 1.0f, which would break the half-open range promised above.
float ZqRandom::NextFloat() { return static_cast<float>(engine_() >> 8) * 0x1.0p-24f; }

double ZqRandom::NextDouble() {
  const std::uint64_t high = engine_() >> 5;  // 27 bits
  const std::uint64_t low = engine_() >> 6;   // 26 bits
  return static_cast<double>((high << 26) | low) * 0x1.0p-53;
}

}  // namespace Corvane
