// The Gaussian process on a similarity matrix with N = 2000 rows: the fit
// (kernel matrix, eigen decomposition, search of the noise ratio) and 100
// predictions. compare_sklearn.py times scikit-learn's Gaussian process on
// the same similarities, given as a precomputed kernel.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "varimo/platform/numarc/generators.h"
#include "varimo/smoothers/gaussian_process.h"

namespace {

constexpr std::size_t kRows = 2000;

// Points on a line, similarity exp(-|x_i - x_j| / 2), a smooth response.
struct Data {
  std::vector<double> x, y;
  Varimo::ZqDataTable table{"bench"};
};

Data MakeData() {
  Data d;
  Numarc::ZqRanNumEngine engine(7);
  const Numarc::ZqUniformDoubleRNG u(0.0, 20.0);
  const Numarc::ZqGaussianRNG noise(0.0, 0.1);
  for (std::size_t i = 0; i < kRows; ++i) {
    d.x.push_back(u(engine));
    d.y.push_back(std::sin(d.x.back()) + noise(engine));
  }
  std::vector<double> packed;
  packed.reserve(kRows * (kRows + 1) / 2);
  for (std::size_t i = 0; i < kRows; ++i) {
    for (std::size_t j = 0; j <= i; ++j) packed.push_back(std::exp(-std::fabs(d.x[i] - d.x[j]) / 2.0));
  }
  d.table.AddColumn(Varimo::ZqDataTableCol("sim", packed, kRows, true));
  d.table.AddColumn(Varimo::ZqDataTableCol("y", d.y));
  return d;
}

void BM_GaussianProcessFit2000(benchmark::State& state) {
  const Data d = MakeData();
  for (auto _ : state) {
    Varimo::ZqGaussianProcessOnSimilarity gp(Varimo::ZqSimilarityKernelType::Exponential, "sim", "y", d.table);
    benchmark::DoNotOptimize(gp.SetModelParams({5.0}));
  }
}

void BM_GaussianProcessPredict100(benchmark::State& state) {
  const Data d = MakeData();
  Varimo::ZqGaussianProcessOnSimilarity gp(Varimo::ZqSimilarityKernelType::Exponential, "sim", "y", d.table);
  gp.SetModelParams({5.0});
  std::vector<Varimo::ZqDataTableCol> queries;
  for (int q = 0; q < 100; ++q) {
    std::vector<double> s(kRows);
    for (std::size_t i = 0; i < kRows; ++i) s[i] = std::exp(-std::fabs(0.2 * q - d.x[i]) / 2.0);
    queries.emplace_back("s", s);
  }
  for (auto _ : state) {
    double predicted, weight, error;
    for (const auto& column : queries) benchmark::DoNotOptimize(gp.GetPredictedResponse(predicted, weight, error, column));
  }
}

BENCHMARK(BM_GaussianProcessFit2000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_GaussianProcessPredict100)->Unit(benchmark::kMillisecond);

}  // namespace
