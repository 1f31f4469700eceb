// Contour tracing of a 1000 x 1000 grid: the circle x^2 + y^2 = 1 over
// [-2, 2]^2, marking and walking included (the grid is copied outside the
// timing, since a trace nudges its values). The two progress lines go to
// standard output each time.
#include <benchmark/benchmark.h>

#include <vector>

#include "varimo/grid/two_dim_function_grid.h"

namespace {

void BM_ContourOf1000x1000Grid(benchmark::State& state) {
  constexpr std::uint32_t n = 1000;
  const double step = 4.0 / (n - 1);
  std::vector<double> values;
  values.reserve(n * n);
  for (std::uint32_t j = 0; j < n; ++j) {
    for (std::uint32_t i = 0; i < n; ++i) {
      const double x = -2.0 + i * step, y = -2.0 + j * step;
      values.push_back(x * x + y * y);
    }
  }
  const Varimo::ZqTwoDimFuncGrid original(n, n, step, step, -2.0, -2.0, values);
  for (auto _ : state) {
    state.PauseTiming();
    Varimo::ZqTwoDimFuncGrid grid = original;
    std::vector<Numarc::ZqDataSeries> branches;
    state.ResumeTiming();
    benchmark::DoNotOptimize(grid.PlotContour(1.0, branches));
  }
}

BENCHMARK(BM_ContourOf1000x1000Grid)->Unit(benchmark::kMillisecond);

}  // namespace
