#include "varimo/mol/mol_predict.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <system_error>
#include <thread>

namespace Varimo {

std::vector<ZqMolPrediction> ZqPredictMolecules(const ZqMolKrige& model,
                                                const std::vector<const Molkit::ZqMolBase*>& queries,
                                                const ZqMolPredictOptions& options) {
  std::vector<ZqMolPrediction> predictions(queries.size());
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> done{0};
  // Queries are handed out one at a time: their costs differ (a local
  // model's fall-backs, the size of the molecule), and each writes its own
  // slot, so the order of the output never depends on who did what.
  auto work = [&](bool reports) {
    for (std::size_t i = next++; i < queries.size(); i = next++) {
      ZqMolPrediction& p = predictions[i];
      if (queries[i] != nullptr && options.meanOnly) {
        p.mean = model.PredictMean(*queries[i]);
      } else if (queries[i] != nullptr) {
        p.result = model.GetResult(*queries[i]);
        if (options.contributions && p.result.Valid()) {
          p.contributions = p.result.GetAtomContributions(*queries[i], options.baseline);
        }
      }
      const std::size_t finished = ++done;
      if (reports && options.progress) options.progress(finished);
    }
  };
  const std::size_t wanted = std::min<std::size_t>(std::max(1u, options.threads), std::max<std::size_t>(1, queries.size()));
  std::vector<std::thread> workers;
  for (std::size_t t = 1; t < wanted; ++t) {
    try {
      workers.emplace_back(work, false);
    } catch (const std::system_error&) {
      break;  // the system has no more threads for us; those started suffice
    }
  }
  work(true);
  for (std::thread& worker : workers) worker.join();
  if (options.progress) options.progress(queries.size());
  return predictions;
}

std::vector<unsigned int> ZqLargestWeights(const ZqMolKrigeResult& result, std::size_t count) {
  std::vector<unsigned int> order(result.GetNumElements());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](unsigned int a, unsigned int b) {
    return result.GetElementWeight(a) > result.GetElementWeight(b);
  });
  if (order.size() > count) order.resize(count);
  return order;
}

}  // namespace Varimo
