// The variational fit of a one-dimensional Gaussian mixture: 100 cycles of
// E and M steps with the lower bound after each, as the fit does, on 10^4
// and 10^5 draws of a three-component mixture, with three components.
// compare_sklearn.py times scikit-learn's BayesianGaussianMixture doing the
// same number of iterations on samples of the same law.
#include <benchmark/benchmark.h>

#include <vector>

#include "varimo/mixture/gauss_mix_model.h"
#include "varimo/platform/numarc/generators.h"

namespace {

std::vector<double> Draws(std::size_t n) {
  Numarc::ZqRanNumEngine engine(42);
  const Numarc::ZqUniformDoubleRNG pick(0.0, 1.0);
  const Numarc::ZqGaussianRNG a(-5.0, 1.0), b(0.0, 0.5), c(6.0, 1.0);
  std::vector<double> data(n);
  for (double& v : data) {
    const double u = pick(engine);
    v = u < 0.3 ? a(engine) : u < 0.8 ? b(engine) : c(engine);
  }
  return data;
}

void BM_VariationalFit100Cycles(benchmark::State& state) {
  const std::vector<double> data = Draws(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const Varimo::ZqDirichletGaussGammaMixtureModel start(3, "x", 1.0, data);
    Varimo::ZqOneDimGaussMixModel model = start.GetModel();
    double bound = 0.0;
    for (int cycle = 0; cycle < 100; ++cycle) {
      model.DoOneEMCycle();
      Varimo::ZqStatModelResult result;
      bound = model.GetModelFitness(result);
    }
    benchmark::DoNotOptimize(bound);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * 100);
}

BENCHMARK(BM_VariationalFit100Cycles)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
