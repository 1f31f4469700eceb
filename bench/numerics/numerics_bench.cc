// Measures the Cholesky factor (ZqCholeskyDecomposition, the square root of a
// full matrix) and the solve through it
// (ZqSolveSymmetricEquationsViaLowerTriSquareRoot) on a random symmetric
// positive-definite matrix M M' + n I of dimension n = 200 and n = 1000.
//
// Peer: Eigen's own Eigen::LLT<Eigen::MatrixXd> on the same matrix, its
// compute() against our factorisation and its solve() against our solve. Both
// sides keep their output storage from one iteration to the next, as a caller
// looping over matrices of one size would.
//
// Run from a Release build; bench/numerics/ratios.py runs this program and
// prints ours / Eigen for each case.
#include <benchmark/benchmark.h>

#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <vector>

#include "varimo/numerics/matrix.h"

namespace {

struct Problem {
  Eigen::MatrixXd a;
  Eigen::VectorXd b;
  std::vector<double> aRowMajor, bPlain;
};

// The same matrix for every benchmark of a size: a fixed seed.
const Problem& ProblemOfSize(Eigen::Index n) {
  static std::vector<std::pair<Eigen::Index, Problem>> cache;
  for (const auto& [size, problem] : cache) {
    if (size == n) return problem;
  }
  std::srand(20240611);
  const Eigen::MatrixXd m = Eigen::MatrixXd::Random(n, n);
  Problem p;
  p.a = m * m.transpose() + static_cast<double>(n) * Eigen::MatrixXd::Identity(n, n);
  p.b = Eigen::VectorXd::Random(n);
  p.aRowMajor.resize(static_cast<std::size_t>(n * n));
  Eigen::Map<Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>(p.aRowMajor.data(), n, n) = p.a;
  p.bPlain.assign(p.b.data(), p.b.data() + n);
  cache.emplace_back(n, std::move(p));
  return cache.back().second;
}

void BM_VarimoCholesky(benchmark::State& state) {
  const Eigen::Index n = state.range(0);
  const Problem& p = ProblemOfSize(n);
  std::vector<double> l;
  for (auto _ : state) {
    const Varimo::ZqStatModelResult result = Varimo::ZqCholeskyDecomposition(static_cast<unsigned long>(n), p.aRowMajor, l);
    benchmark::DoNotOptimize(l.data());
    if (result.NotSuccessful()) state.SkipWithError("factorisation failed");
  }
}

void BM_EigenLLT(benchmark::State& state) {
  const Eigen::Index n = state.range(0);
  const Problem& p = ProblemOfSize(n);
  Eigen::LLT<Eigen::MatrixXd> llt(n);
  for (auto _ : state) {
    llt.compute(p.a);
    benchmark::DoNotOptimize(llt.matrixLLT().data());
    if (llt.info() != Eigen::Success) state.SkipWithError("factorisation failed");
  }
}

void BM_VarimoSolve(benchmark::State& state) {
  const Eigen::Index n = state.range(0);
  const Problem& p = ProblemOfSize(n);
  const auto dim = static_cast<unsigned long>(n);
  std::vector<double> l, x;
  Varimo::ZqCholeskyDecomposition(dim, p.aRowMajor, l);
  for (auto _ : state) {
    Varimo::ZqSolveSymmetricEquationsViaLowerTriSquareRoot(dim, l, p.bPlain, x);
    benchmark::DoNotOptimize(x.data());
  }
}

void BM_EigenLLTSolve(benchmark::State& state) {
  const Eigen::Index n = state.range(0);
  const Problem& p = ProblemOfSize(n);
  const Eigen::LLT<Eigen::MatrixXd> llt(p.a);
  Eigen::VectorXd x(n);
  for (auto _ : state) {
    x = llt.solve(p.b);
    benchmark::DoNotOptimize(x.data());
  }
}

BENCHMARK(BM_VarimoCholesky)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EigenLLT)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_VarimoSolve)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EigenLLTSolve)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace
