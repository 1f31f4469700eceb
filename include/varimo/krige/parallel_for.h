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

}  // namespace Varimo::krige_detail
