// Partial least squares on 1000 x 200 (all 200 latent vectors by NIPALS,
// then the model of the first 10) and logistic regression on 100000 x 20 by
// the Newton optimiser, as compare_sklearn.py times scikit-learn's
// PLSRegression(n_components=200) and LogisticRegression(penalty=None) on
// the same data.
//
//   varimo_latent_bench [--latent_data=DIR] [Google Benchmark flags]
//
// DIR holds pls_x.f64 (1000 x 200 row-major), pls_y.f64 (1000), logit_x.f64
// (100000 x 20) and logit_y.f64 (+1 / -1), raw doubles; without it the
// program makes its own seeded data of the same kind. The fits write their
// progress to standard output: send it to /dev/null and use --benchmark_out.
#include <benchmark/benchmark.h>

#include "bench_main.h"

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "varimo/latent/logistic_regression.h"
#include "varimo/latent/pls_krige.h"

namespace {

constexpr int kPlsRows = 1000, kPlsCols = 200, kLogitRows = 100000, kLogitCols = 20;

struct Data {
  Eigen::MatrixXd plsX, plsY;
  std::vector<double> logitX;
  std::vector<int> logitY;
};

Data gData;

void Load(const std::string& dir) {
  gData.plsX.resize(kPlsRows, kPlsCols);
  gData.plsY.resize(kPlsRows, 1);
  gData.logitX.resize(static_cast<std::size_t>(kLogitRows) * kLogitCols);
  gData.logitY.resize(kLogitRows);
  if (dir.empty()) {
    // Correlated predictors from 20 hidden factors, a response on 5 of them,
    // and logistic labels on a linear predictor.
    std::mt19937_64 rng(14);
    std::normal_distribution<double> normal;
    Eigen::MatrixXd factors(kPlsRows, 20), loadings(20, kPlsCols);
    for (auto* m : {&factors, &loadings}) {
      for (Eigen::Index i = 0; i < m->size(); ++i) m->data()[i] = normal(rng);
    }
    gData.plsX = factors * loadings;
    for (Eigen::Index i = 0; i < gData.plsX.size(); ++i) gData.plsX.data()[i] += 0.5 * normal(rng);
    for (int i = 0; i < kPlsRows; ++i) gData.plsY(i, 0) = factors.row(i).head(5).sum() + normal(rng);
    std::uniform_real_distribution<double> uniform;
    for (int i = 0; i < kLogitRows; ++i) {
      double z = 0.0;
      for (int j = 0; j < kLogitCols; ++j) {
        const double x = j == 0 ? 1.0 : normal(rng);
        gData.logitX[static_cast<std::size_t>(i) * kLogitCols + j] = x;
        z += x * (0.1 * j - 1.0) / 2.0;
      }
      gData.logitY[i] = uniform(rng) < 1.0 / (1.0 + std::exp(-z)) ? 1 : -1;
    }
    return;
  }
  const std::vector<double> x = VarimoBench::ReadDoubles(dir + "/pls_x.f64", static_cast<std::size_t>(kPlsRows) * kPlsCols);
  for (int i = 0; i < kPlsRows; ++i) {
    for (int j = 0; j < kPlsCols; ++j) gData.plsX(i, j) = x[static_cast<std::size_t>(i) * kPlsCols + j];
  }
  const std::vector<double> y = VarimoBench::ReadDoubles(dir + "/pls_y.f64", kPlsRows);
  for (int i = 0; i < kPlsRows; ++i) gData.plsY(i, 0) = y[i];
  gData.logitX = VarimoBench::ReadDoubles(dir + "/logit_x.f64", gData.logitX.size());
  const std::vector<double> labels = VarimoBench::ReadDoubles(dir + "/logit_y.f64", kLogitRows);
  for (int i = 0; i < kLogitRows; ++i) gData.logitY[i] = labels[i] > 0 ? 1 : -1;
}

void BM_PLSBuildAndPredict(benchmark::State& state) {
  for (auto _ : state) {
    Varimo::ZqPartialLeastSquareRegression pls(1e-6, 1e-6, gData.plsX, gData.plsY);
    const unsigned long found = pls.BuildLatentVectorsViaNIPALS();
    pls.Predict(10);
    benchmark::DoNotOptimize(found);
    state.counters["latent"] = static_cast<double>(found);
  }
}
BENCHMARK(BM_PLSBuildAndPredict)->Unit(benchmark::kMillisecond);

void BM_LogisticRegression(benchmark::State& state) {
  for (auto _ : state) {
    Varimo::ZqBinaryLinearRegression fit(kLogitCols, kLogitRows, 2);
    fit.SetInputData(gData.logitX, gData.logitY);
    fit.SetNewtonParams(1e-10, 50);
    benchmark::DoNotOptimize(fit.MaximizeLogLikelihood());
  }
}
BENCHMARK(BM_LogisticRegression)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return VarimoBench::MainWithDataFlag(argc, argv, "latent_data", Load); }
