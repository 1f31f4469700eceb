// The dense factorisations of varimo/numerics/dense_algebra.h on each path,
// Eigen and LAPACK (OpenBLAS), forced through ZqSetDenseBackend, and by
// order (the library's default), at orders around the thresholds and at the
// sizes of kriging:
//
//   BM_Cholesky/P/n            factor (the copy into the factor's storage
//                              included), n from 64 to 4000
//   BM_CholeskySolve/P/n       whiten 256 right-hand sides with the factor
//   BM_Indefinite/P/n          LDL' of a bordered matrix of order n + 4
//   BM_SymmetricEigen/P/n      eigenvalues and eigenvectors (Eigen up to 2000)
//   BM_ThinSvd/P/n             thin SVD of a square matrix (Eigen up to 256)
//
// with P = 0 by order, 1 Eigen, 2 LAPACK. The matrix is a Gaussian
// covariance of points given by a formula, the same as in
// compare_scipy.py: x_i = (sin 1.1 i, cos 0.7 i, sin 0.3 i),
// C_ij = exp(-|x_i - x_j|^2) + 0.1 [i = j]. compare_scipy.py runs the
// Cholesky and the eigen decomposition by order at 2000 and 4000 beside
// scipy on OpenBLAS; the crossings of the two forced paths set the
// thresholds.
#include <benchmark/benchmark.h>

#include <Eigen/Core>

#include <cmath>
#include <map>

#include "varimo/numerics/dense_algebra.h"

namespace {

using Varimo::ZqDenseBackend;

const Eigen::MatrixXd& Covariance(Eigen::Index n) {
  static std::map<Eigen::Index, Eigen::MatrixXd> cache;
  auto [entry, added] = cache.try_emplace(n);
  if (added) {
    Eigen::MatrixXd x(n, 3);
    for (Eigen::Index i = 0; i < n; ++i) {
      const auto t = static_cast<double>(i);
      x.row(i) << std::sin(1.1 * t), std::cos(0.7 * t), std::sin(0.3 * t);
    }
    Eigen::MatrixXd& c = entry->second;
    c.resize(n, n);
    for (Eigen::Index j = 0; j < n; ++j) {
      for (Eigen::Index i = 0; i < n; ++i) c(i, j) = std::exp(-(x.row(i) - x.row(j)).squaredNorm());
    }
    c.diagonal().array() += 0.1;
  }
  return entry->second;
}

// Sets the path for one benchmark and restores the default after it.
class BackendScope {
 public:
  explicit BackendScope(const benchmark::State& state) {
    Varimo::ZqSetDenseBackend(static_cast<ZqDenseBackend>(state.range(0)));
  }
  ~BackendScope() { Varimo::ZqSetDenseBackend(ZqDenseBackend::BySize); }
};

void BM_Cholesky(benchmark::State& state) {
  const BackendScope scope(state);
  const Eigen::MatrixXd& c = Covariance(state.range(1));
  Varimo::ZqCholeskyFactor factor;
  for (auto _ : state) {
    if (!factor.Compute(c)) state.SkipWithError("not positive definite");
    benchmark::ClobberMemory();
  }
}

void BM_CholeskySolve(benchmark::State& state) {
  const BackendScope scope(state);
  const Eigen::MatrixXd& c = Covariance(state.range(1));
  Varimo::ZqCholeskyFactor factor;
  if (!factor.Compute(c)) state.SkipWithError("not positive definite");
  const Eigen::MatrixXd b = c.leftCols(256);
  Eigen::MatrixXd x;
  for (auto _ : state) {
    state.PauseTiming();
    x = b;
    state.ResumeTiming();
    factor.WhitenInPlace(x);
    benchmark::DoNotOptimize(x.data());
  }
}

void BM_Indefinite(benchmark::State& state) {
  const BackendScope scope(state);
  const Eigen::Index n = state.range(1);
  Eigen::MatrixXd a = Eigen::MatrixXd::Zero(n + 4, n + 4);
  a.topLeftCorner(n, n) = Covariance(n);
  a.topRightCorner(n, 4) = Covariance(n).leftCols(4);
  a.bottomLeftCorner(4, n) = a.topRightCorner(n, 4).transpose();
  Varimo::ZqSymmetricIndefiniteFactor factor;
  for (auto _ : state) {
    if (!factor.Compute(a)) state.SkipWithError("singular");
  }
}

void BM_SymmetricEigen(benchmark::State& state) {
  const BackendScope scope(state);
  const Eigen::MatrixXd& c = Covariance(state.range(1));
  Eigen::MatrixXd v;
  Eigen::VectorXd w;
  for (auto _ : state) {
    v = c;
    if (!Varimo::ZqSymmetricEigenInPlace(v, w)) state.SkipWithError("no convergence");
  }
}

void BM_ThinSvd(benchmark::State& state) {
  const BackendScope scope(state);
  const Eigen::MatrixXd& c = Covariance(state.range(1));
  Eigen::MatrixXd u, v;
  Eigen::VectorXd s;
  for (auto _ : state) {
    if (!Varimo::ZqThinSvd(c, u, s, v)) state.SkipWithError("no convergence");
  }
}

// Every path at every order, except the Eigen paths that take minutes.
void Orders(benchmark::internal::Benchmark* b, std::initializer_list<long> orders, long eigenUpTo) {
  for (const long path : {0L, 1L, 2L}) {
    for (const long n : orders) {
      if (path == 1 && n > eigenUpTo) continue;
      b->Args({path, n});
    }
  }
  b->ArgNames({"path", "n"})->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_Cholesky)->Apply([](auto* b) { Orders(b, {64, 128, 192, 256, 384, 512, 1024, 2000, 4000}, 4000); });
BENCHMARK(BM_CholeskySolve)->Apply([](auto* b) { Orders(b, {64, 128, 192, 256, 512, 1024}, 1024); });
BENCHMARK(BM_Indefinite)->Apply([](auto* b) { Orders(b, {64, 128, 256, 384, 512, 1024}, 1024); });
BENCHMARK(BM_SymmetricEigen)->Apply([](auto* b) { Orders(b, {64, 128, 256, 384, 512, 1024, 2000, 4000}, 2000); });
BENCHMARK(BM_ThinSvd)->Apply([](auto* b) { Orders(b, {16, 32, 64, 128, 256}, 256); });

}  // namespace
