// A loop over indices shared among threads: the indices are handed out one
// at a time, each body writes only its own results, so what comes out does
// not depend on the number of threads. When a thread cannot be started,
// those that did do the work.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

#include "varimo/numerics/dense_algebra.h"

namespace Varimo::krige_detail {

template <class Body>
void ParallelFor(std::size_t count, unsigned int threads, const Body& body) {
  std::atomic<std::size_t> next{0};
  auto work = [&] {
    for (std::size_t i = next++; i < count; i = next++) body(i);
  };
  const std::size_t wanted = std::min<std::size_t>(std::max(1u, threads), std::max<std::size_t>(1, count));
  std::vector<std::thread> workers;
  for (std::size_t t = 1; t < wanted; ++t) {
    try {
      workers.emplace_back(work);
    } catch (const std::system_error&) {
      break;
    }
  }
  work();
  for (std::thread& worker : workers) worker.join();
}

// Below this many elementary steps (distances, kernel values) a loop runs
// on the caller's thread alone: starting a thread costs about as much as
// tens of thousands of such steps.
inline constexpr std::size_t kMinSharedWork = std::size_t{1} << 16;

// The threads for a model's own quadratic work of `steps` steps (the
// variogram's pairs and their sort, the covariance matrix), done for a
// caller on its thread: as many as the BLAS would use there (see
// ZqBlasThreadCount), so that a caller who keeps the BLAS on one thread
// keeps this work there too. The queries' covariances stay on the caller's
// thread: they call the caller's distance, which may report errors, and
// right after a factorisation the BLAS's threads still hold the cores.
inline unsigned int SharedWorkThreads(std::size_t steps) {
  if (steps < kMinSharedWork) return 1;
  return static_cast<unsigned int>(ZqBlasThreadCount());
}

}  // namespace Varimo::krige_detail
