// The Gaussian process on a similarity matrix with N = 2000 rows: the fit
// (kernel matrix, eigen decomposition, search of the noise ratio) and 100
// predictions. compare_sklearn.py times scikit-learn's Gaussian process on
// the same similarities, given as a precomputed kernel.
//
//   varimo_smoothers_bench [--gp_data=DIR] [Google Benchmark flags]
//
// Points x on a line, similarity exp(-|x_i - x_j| / 2), response y, the
// exponential similarity kernel at 5; queries at x = 0.2 q, q = 0..99. DIR
// holds x.f64 and y.f64 (2000 raw doubles each); without it the program
// makes its own seeded data of the same kind. The fit reports the fitted
// signal and noise variances as counters, so that the script can check that
// the peer reached the same maximum of the marginal likelihood.
#include <benchmark/benchmark.h>

#include "bench_main.h"

#include <cmath>
#include <string>
#include <vector>

#include "varimo/platform/numarc/generators.h"
#include "varimo/smoothers/gaussian_process.h"

namespace {

constexpr std::size_t kRows = 2000;

struct Data {
  std::vector<double> x, y;
  Varimo::ZqDataTable table{"bench"};
};

Data gData;

void Load(const std::string& dir) {
  if (dir.empty()) {
    Numarc::ZqRanNumEngine engine(7);
    const Numarc::ZqUniformDoubleRNG u(0.0, 20.0);
    const Numarc::ZqGaussianRNG noise(0.0, 0.1);
    for (std::size_t i = 0; i < kRows; ++i) {
      gData.x.push_back(u(engine));
      gData.y.push_back(std::sin(gData.x.back()) + noise(engine));
    }
  } else {
    gData.x = VarimoBench::ReadDoubles(dir + "/x.f64", kRows);
    gData.y = VarimoBench::ReadDoubles(dir + "/y.f64", kRows);
  }
  std::vector<double> packed;
  packed.reserve(kRows * (kRows + 1) / 2);
  for (std::size_t i = 0; i < kRows; ++i) {
    for (std::size_t j = 0; j <= i; ++j) packed.push_back(std::exp(-std::fabs(gData.x[i] - gData.x[j]) / 2.0));
  }
  gData.table.AddColumn(Varimo::ZqDataTableCol("sim", packed, kRows, true));
  gData.table.AddColumn(Varimo::ZqDataTableCol("y", gData.y));
}

void BM_GaussianProcessFit2000(benchmark::State& state) {
  double signal = 0.0, noise = 0.0;
  for (auto _ : state) {
    Varimo::ZqGaussianProcessOnSimilarity gp(Varimo::ZqSimilarityKernelType::Exponential, "sim", "y", gData.table);
    if (!gp.SetModelParams({5.0}).IsSuccessful()) {
      state.SkipWithError("the fit failed");
      return;
    }
    signal = gp.GetSignalVariance();
    noise = gp.GetNoiseVariance();
  }
  state.counters["signal_variance"] = signal;
  state.counters["noise_variance"] = noise;
}

std::vector<Varimo::ZqDataTableCol> Queries100() {
  std::vector<Varimo::ZqDataTableCol> queries;
  for (int q = 0; q < 100; ++q) {
    std::vector<double> s(kRows);
    for (std::size_t i = 0; i < kRows; ++i) s[i] = std::exp(-std::fabs(0.2 * q - gData.x[i]) / 2.0);
    queries.emplace_back("s", s);
  }
  return queries;
}

// One query at a time: a matrix-vector product with the eigenvectors each.
void BM_GaussianProcessPredict100(benchmark::State& state) {
  Varimo::ZqGaussianProcessOnSimilarity gp(Varimo::ZqSimilarityKernelType::Exponential, "sim", "y", gData.table);
  gp.SetModelParams({5.0});
  const std::vector<Varimo::ZqDataTableCol> queries = Queries100();
  for (auto _ : state) {
    double predicted, weight, error;
    for (const auto& column : queries) benchmark::DoNotOptimize(gp.GetPredictedResponse(predicted, weight, error, column));
  }
}

// The 100 queries in one call: one matrix product.
void BM_GaussianProcessPredictBatch100(benchmark::State& state) {
  Varimo::ZqGaussianProcessOnSimilarity gp(Varimo::ZqSimilarityKernelType::Exponential, "sim", "y", gData.table);
  gp.SetModelParams({5.0});
  const std::vector<Varimo::ZqDataTableCol> queries = Queries100();
  std::vector<double> predicted, weights, errors;
  for (auto _ : state) benchmark::DoNotOptimize(gp.GetPredictedResponses(predicted, weights, errors, queries));
}

BENCHMARK(BM_GaussianProcessFit2000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_GaussianProcessPredict100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GaussianProcessPredictBatch100)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return VarimoBench::MainWithDataFlag(argc, argv, "gp_data", Load); }
