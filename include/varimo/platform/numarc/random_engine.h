// The source of randomness for every Numarc generator. The caller owns an
// engine and passes it by reference to each draw, so one seed fixes a whole
// computation:
//
//   Numarc::ZqRanNumEngine engine(42);
//   Numarc::ZqGaussianRNG noise(0.0, 0.5);
//   double e = noise(engine);
//
// It is a UniformRandomBitGenerator, so std distributions and std::shuffle
// take it too. The raw stream is std::mt19937_64's, identical on every
// platform; laws drawn through the standard library are identical from run
// to run, but libstdc++ and libc++ turn the same stream into different draws.
//
// Copying an engine copies its state: the copy and the engine it came from
// go on to produce the same stream, independently. Not safe to share between
// threads.
#pragma once

#include <cstdint>
#include <random>

namespace Numarc {

class ZqRanNumEngine {
 public:
  using result_type = std::uint64_t;

  // std::mt19937_64's own default seed.
  static constexpr std::uint64_t kDefaultSeed = 5489u;

  ZqRanNumEngine() : engine_(kDefaultSeed) {}
  explicit ZqRanNumEngine(std::uint64_t seed) : engine_(seed) {}

  // Restarts the stream: after Seed(s) the draws are those of a new
  // ZqRanNumEngine(s).
  void Seed(std::uint64_t seed) { engine_.seed(seed); }

  static constexpr result_type min() { return std::mt19937_64::min(); }
  static constexpr result_type max() { return std::mt19937_64::max(); }
  // 64 uniformly random bits.
  result_type operator()() { return engine_(); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace Numarc
