// Evaluations per second of each univariate law's density, distribution
// function and percentile, over 1000 points spread across the body of the
// law (its 1% to 99% quantiles), as compare_scipy.py times scipy.stats'
// vectorised calls on the same laws and points.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

#include "varimo/pdf/pdf_setup.h"

namespace {

using Varimo::ZqStatModelResult;
using Varimo::ZqUniVarPDF;

constexpr int kPoints = 1000;

// The laws of compare_scipy.py, in the same parametrisation.
ZqUniVarPDF Law(int index) {
  ZqStatModelResult r;
  switch (index) {
    case 0: return Varimo::ZqUnivariateGaussian("x", 1.5, 4.0, r);
    case 1: return Varimo::ZqUnivariateStudentsT("x", 7.0, -2.0, 0.5, r);
    case 2: return Varimo::ZqGamma("x", 2.5, 0.5, r);
    case 3: return Varimo::ZqChiSquare("x", 6.0, r);
    case 4: return Varimo::ZqSnedecorsF("x", 5.0, 12.0, r);
    case 5: return Varimo::ZqBeta("x", 2.0, 3.5, r);
    case 6: return Varimo::ZqGumbel("x", 1.0, 2.0, r);
    default: return Varimo::ZqGeneralizedExtremeValue("x", 0.5, 1.5, 0.1, r);
  }
}

const char* const kNames[] = {"gauss", "studentst", "gamma", "chisquare", "snedecorsf", "beta", "gumbel", "gev"};

std::vector<double> Probabilities() {
  std::vector<double> p(kPoints);
  for (int i = 0; i < kPoints; ++i) p[i] = 0.01 + 0.98 * i / (kPoints - 1);
  return p;
}

std::vector<double> Points(const ZqUniVarPDF& law) {
  std::vector<double> x;
  ZqStatModelResult r;
  for (const double p : Probabilities()) x.push_back(law.GetPercentile(p, r));
  return x;
}

void BM_Density(benchmark::State& state) {
  const ZqUniVarPDF law = Law(static_cast<int>(state.range(0)));
  const std::vector<double> x = Points(law);
  ZqStatModelResult r;
  for (auto _ : state) {
    for (const double v : x) benchmark::DoNotOptimize(law.GetDensity(v, r, true));
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
  state.SetLabel(kNames[state.range(0)]);
}

void BM_CDF(benchmark::State& state) {
  const ZqUniVarPDF law = Law(static_cast<int>(state.range(0)));
  const std::vector<double> x = Points(law);
  ZqStatModelResult r;
  for (auto _ : state) {
    for (const double v : x) benchmark::DoNotOptimize(law.GetCDF(v, r, true));
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
  state.SetLabel(kNames[state.range(0)]);
}

void BM_Percentile(benchmark::State& state) {
  const ZqUniVarPDF law = Law(static_cast<int>(state.range(0)));
  const std::vector<double> p = Probabilities();
  ZqStatModelResult r;
  for (auto _ : state) {
    for (const double v : p) benchmark::DoNotOptimize(law.GetPercentile(v, r));
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
  state.SetLabel(kNames[state.range(0)]);
}

BENCHMARK(BM_Density)->DenseRange(0, 7);
BENCHMARK(BM_CDF)->DenseRange(0, 7);
BENCHMARK(BM_Percentile)->DenseRange(0, 7);

}  // namespace
