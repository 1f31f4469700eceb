// Shared-nearest-neighbour clustering of 10000 items from lists of their 20
// nearest neighbours (the item included), and the ROC area of 2000 actives
// against 2000 decoys from their scores. compare_sklearn.py gives both the
// same data and times scikit-learn beside them: DBSCAN on the same points
// (the nearest density-based clustering it has; a different method, timed
// for scale) and roc_auc_score.
//
//   varimo_cluster_bench [--cluster_data=DIR] [Google Benchmark flags]
//
// DIR holds snn_lists.u32 (10000 x 20 item indices) and auc_scores.f64
// (2000 active then 2000 decoy scores); without it the program makes its own
// seeded data. The clustering writes a line per neighbour examined to
// standard error: send it to /dev/null.
#include <benchmark/benchmark.h>

#include "bench_main.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "varimo/cluster/calc_auc.h"
#include "varimo/cluster/snn.h"

namespace {

constexpr int kItems = 10000, kNeighbours = 20, kScores = 2000;

std::vector<std::vector<unsigned int>> gLists;
std::vector<double> gActives, gDecoys;

template <class T>
std::vector<T> ReadRaw(const std::string& path, std::size_t count) {
  std::vector<T> values(count);
  std::ifstream in(path, std::ios::binary);
  if (!in.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(count * sizeof(T)))) {
    throw std::runtime_error("cannot read " + path);
  }
  return values;
}

// Ten Gaussian blobs in the plane with a tenth of the items as background,
// and brute-force neighbour lists.
void MakeData() {
  std::mt19937_64 rng(12);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(0.0, 100.0);
  std::vector<double> x(kItems), y(kItems);
  for (int i = 0; i < kItems; ++i) {
    if (i % 10 == 9) {
      x[i] = uniform(rng);
      y[i] = uniform(rng);
    } else {
      x[i] = 10.0 * (i % 10) + 5.0 + normal(rng);
      y[i] = 50.0 + 10.0 * ((i % 10) % 3) + normal(rng);
    }
  }
  gLists.assign(kItems, {});
  std::vector<std::pair<double, unsigned int>> row(kItems);
  for (int i = 0; i < kItems; ++i) {
    for (int j = 0; j < kItems; ++j) row[j] = {std::hypot(x[i] - x[j], y[i] - y[j]), static_cast<unsigned int>(j)};
    std::partial_sort(row.begin(), row.begin() + kNeighbours, row.end());
    for (int k = 0; k < kNeighbours; ++k) gLists[i].push_back(row[k].second);
  }
  for (int i = 0; i < kScores; ++i) {
    gActives.push_back(std::round(10.0 * (normal(rng) + 1.0)) / 10.0);
    gDecoys.push_back(std::round(10.0 * normal(rng)) / 10.0);
  }
}

void Load(const std::string& dir) {
  if (dir.empty()) {
    MakeData();
    return;
  }
  const auto flat = ReadRaw<std::uint32_t>(dir + "/snn_lists.u32", static_cast<std::size_t>(kItems) * kNeighbours);
  gLists.assign(kItems, {});
  for (int i = 0; i < kItems; ++i) {
    gLists[i].assign(flat.begin() + i * kNeighbours, flat.begin() + (i + 1) * kNeighbours);
  }
  const auto scores = ReadRaw<double>(dir + "/auc_scores.f64", 2 * kScores);
  gActives.assign(scores.begin(), scores.begin() + kScores);
  gDecoys.assign(scores.begin() + kScores, scores.end());
}

void BM_SNNCluster(benchmark::State& state) {
  // The parameters the similarity overload picks for lists of 20.
  const Varimo::ZqSNNParameters params{20, 15, 10, 12, 10};
  for (auto _ : state) {
    std::vector<Varimo::ZqSNNCluster> clusters;
    std::vector<unsigned int> noise;
    benchmark::DoNotOptimize(Varimo::ZqGetSNNCluster(clusters, noise, kItems, gLists, params, true));
    state.counters["clusters"] = static_cast<double>(clusters.size());
    state.counters["noise"] = static_cast<double>(noise.size());
  }
}
BENCHMARK(BM_SNNCluster)->Unit(benchmark::kMillisecond);

void BM_AUCFromScores(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Varimo::ZqCalculateAUC(gActives, gDecoys, true));
}
BENCHMARK(BM_AUCFromScores)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return VarimoBench::MainWithDataFlag(argc, argv, "cluster_data", Load); }
