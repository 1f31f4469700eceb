// Bootstrap of the mean: 10^4 resamples of 10^4 values, each drawn with
// replacement and averaged (ZqBootstrapSampleStatisticForDataVec), against
// numpy's vectorised resampling in compare_numpy.py. The data are 10^4
// standard normal values; the engine is reseeded for every iteration.
#include <benchmark/benchmark.h>

#include <vector>

#include "varimo/platform/numarc/generators.h"
#include "varimo/statistics/bootstrap.h"
#include "varimo/statistics/sample_statistic.h"

namespace {

constexpr int kNumValues = 10000;
constexpr int kNumResamples = 10000;

void BM_BootstrapMeanOf10kValues(benchmark::State& state) {
  Numarc::ZqRanNumEngine dataEngine(1);
  const Numarc::ZqGaussianRNG normal(0.0, 1.0);
  std::vector<double> data(kNumValues);
  for (double& x : data) x = normal(dataEngine);
  std::vector<double> means;
  for (auto _ : state) {
    Numarc::ZqRanNumEngine engine(42);
    benchmark::DoNotOptimize(Varimo::ZqBootstrapSampleStatisticForDataVec(
        means, engine, Varimo::ZqSampleStatisticType::Mean, data, kNumResamples));
  }
  state.SetItemsProcessed(state.iterations() * kNumResamples);
}

BENCHMARK(BM_BootstrapMeanOf10kValues)->Unit(benchmark::kMillisecond);

}  // namespace
