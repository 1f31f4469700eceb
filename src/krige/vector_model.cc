#include "varimo/krige/vector_model.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

#include "varimo/numerics/dense_algebra.h"

#include "varimo/krige/kd_tree_search.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/krige/minmax_distance.h"

namespace Varimo {

std::unique_ptr<ZqKrigeBase<ZqVectorElement>> ZqMakeVectorKrige(const ZqVectorKrigeSettings& settings) {
  ZqKrigeOptions options{ZqGlobalKrigeOptions()};
  if (settings.numLocal > 0) {
    options.SetNumLocal(settings.numLocal).SetPredictTraining(settings.predictTraining);
    if (settings.maxVariogramSize) options.SetMaxVariogramSize(*settings.maxVariogramSize);
  }
  using Model = ZqVectorKrigeSettings::Model;
  const bool euclidean = settings.metric == ZqVectorKrigeSettings::Metric::Euclidean;
  std::unique_ptr<ZqKrigeBase<ZqVectorElement>> model;
  if (settings.model == Model::Universal) {
    const ZqTrailingDrift drift(settings.numFeatures, settings.numDrift);
    model = euclidean ? ZqCreateKrige<ZqVectorElement>(ZqEuclideanDistance(settings.numFeatures), drift, options)
                      : ZqCreateKrige<ZqVectorElement>(ZqMinMaxDistance(settings.numFeatures), drift, options);
  } else {
    const bool simple = settings.model == Model::Simple;
    model = euclidean ? ZqCreateKrige<ZqVectorElement>(ZqEuclideanDistance(), options, simple)
                      : ZqCreateKrige<ZqVectorElement>(ZqMinMaxDistance(), options, simple);
  }
  // A k-d tree finds the same neighbourhoods as a scan of every row, but
  // only under the Euclidean distance it is built on.
  auto* local = dynamic_cast<ZqLocalKrigeImpl<ZqVectorElement>*>(model.get());
  if (local && euclidean) local->SetNeighbourSearch(ZqKdTreeNeighbourSearch(settings.numFeatures));
  return model;
}

bool ZqIsFiniteRow(const ZqVectorElement& row) {
  return std::all_of(row.begin(), row.end(), [](double v) { return std::isfinite(v); });
}

std::vector<ZqKrigeKernel> ZqVectorLikelihoodCandidates(const ZqVectorKrigeSettings& settings) {
  return ZqLikelihoodCandidates(settings.metric == ZqVectorKrigeSettings::Metric::Euclidean
                                    ? ZqDistanceClass::Euclidean
                                    : ZqDistanceClass::NegativeType);
}

bool ZqTrainVectorByLikelihood(ZqKrigeBase<ZqVectorElement>& model, const ZqVectorKrigeSettings& settings,
                               const ZqKrigeKernelBase* kernel) {
  const std::vector<ZqKrigeKernel> defaults = ZqVectorLikelihoodCandidates(settings);
  std::vector<const ZqKrigeKernelBase*> candidates;
  if (kernel != nullptr) {
    candidates.push_back(kernel);
  } else {
    for (const ZqKrigeKernel& candidate : defaults) candidates.push_back(&candidate);
  }
  return ZqTrainByLikelihood(model, candidates);
}

bool ZqIsUsableRow(const ZqVectorKrigeSettings& settings, const ZqVectorElement& row) {
  if (!ZqIsFiniteRow(row)) return false;
  if (settings.metric == ZqVectorKrigeSettings::Metric::Euclidean) return true;
  // Only universal kriging's distance stops at numFeatures: the others
  // compare whole rows.
  const std::size_t coordinates = settings.model == ZqVectorKrigeSettings::Model::Universal
                                      ? std::min(row.size(), settings.numFeatures)
                                      : row.size();
  return std::all_of(row.begin(), row.begin() + coordinates, [](double v) { return v >= 0.0; });
}

void ZqPredictVectorRows(const ZqKrigeBase<ZqVectorElement>& model, const std::vector<ZqVectorElement>& rows,
                         unsigned int threads, std::vector<double>& predictions, std::vector<double>& variances,
                         const std::function<void(std::size_t done)>& progress) {
  // The BLAS single-threaded for all the workers, one as many (the rule of
  // varimo/numerics/dense_algebra.h): the same bits whatever the count.
  const ZqSingleThreadedBlas singleThreadedBlas;
  const double failed = model.GetErrorValue();
  predictions.assign(rows.size(), failed);
  variances.assign(rows.size(), failed);
  const auto* standard = dynamic_cast<const ZqStandardKrigeImpl<ZqVectorElement, ZqVectorStorage>*>(&model);
  const auto* local = dynamic_cast<const ZqLocalKrigeImpl<ZqVectorElement>*>(&model);
  // A row the model's distance cannot compare with itself (a negative
  // count under the min-max distance) is left out here rather than left to
  // fail on NaN covariances deep in the solve.
  const ZqKrigeDistanceFxn<ZqVectorElement>* distance =
      standard ? &standard->GetContainer().GetDistanceFxn() : local ? &local->GetDistanceFxn() : nullptr;
  auto predictable = [&](const ZqVectorElement& row) {
    return ZqIsFiniteRow(row) && (distance == nullptr || (*distance)(row, row) == 0.0);
  };
  // Global models solve blocks of rows at once; blocks of this many keep
  // that gain and let the progress move. A local model solves a system of
  // its own for each row.
  const std::size_t blockRows = standard ? 256 : 1;
  const std::size_t numBlocks = (rows.size() + blockRows - 1) / blockRows;
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> done{0};
  auto work = [&](bool reports) {
    std::vector<ZqVectorElement> block;
    std::vector<std::size_t> blockIndex;
    std::vector<double> blockPredictions, blockVariances;
    for (std::size_t b = next++; b < numBlocks; b = next++) {
      const std::size_t start = b * blockRows;
      const std::size_t end = std::min(rows.size(), start + blockRows);
      if (standard) {
        block.clear();
        blockIndex.clear();
        for (std::size_t row = start; row < end; ++row) {
          if (!predictable(rows[row])) continue;
          block.push_back(rows[row]);
          blockIndex.push_back(row);
        }
        standard->PredictManyTrained(block, blockPredictions, blockVariances);
        for (std::size_t i = 0; i < blockIndex.size(); ++i) {
          predictions[blockIndex[i]] = blockPredictions[i];
          variances[blockIndex[i]] = blockVariances[i];
        }
      } else if (predictable(rows[start])) {
        const ZqKrigeResult result = model.GetKrigeResult(rows[start]);
        predictions[start] = ZqCalculateResponse(result, failed);
        variances[start] = ZqCalculateVariance(result, failed);
      }
      const std::size_t finished = done += end - start;
      if (reports && progress) progress(finished);
    }
  };
  const std::size_t wanted = std::min<std::size_t>(std::max(1u, threads), std::max<std::size_t>(1, numBlocks));
  std::vector<std::thread> workers;
  for (std::size_t t = 1; t < wanted; ++t) {
    try {
      workers.emplace_back(work, false);
    } catch (const std::system_error&) {
      break;  // the threads that started do the work
    }
  }
  work(true);
  for (std::thread& worker : workers) worker.join();
  if (progress) progress(rows.size());
}

}  // namespace Varimo
