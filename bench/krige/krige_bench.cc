// Global kriging on 16-dimensional numeric descriptors, ZqEuclideanDistance.
//
// BM_OrdinaryFitPredict/N, BM_SimpleFitPredict/N (N = 2000, 4000, 8000):
//   one iteration = construct the model, AddTraining of N points (which
//   tables the N(N-1)/2 distances), TrainFixed with a fixed Gaussian kernel
//   (range 1.5, sill 2, nugget 0: the covariance matrix of 4000 points has a
//   condition number near 2e4) and PredictMany of 500 queries with their
//   variances. From N = 128 on, the factorisation and the solves run on
//   LAPACK (OpenBLAS, its threads), see varimo/numerics/dense_algebra.h.
//   Peer: scikit-learn's GaussianProcessRegressor with the same fixed kernel
//   (ConstantKernel(2) * RBF(1.5 / sqrt(2 ln 10)), optimizer=None, alpha=0),
//   fit on the same N points and predict(return_std=True) on the same 500
//   queries. compare_sklearn.py runs both and prints ours / scikit-learn.
//
// BM_OrdinaryTrain/N (N = 2000, 4000): Train() alone, the automatic
//   training: the experimental variogram of the N(N-1)/2 pairs, the fit of
//   the 16 candidate kernels and the walk down the fitted list until a
//   covariance matrix factorises. Each iteration trains a fresh copy of an
//   untrained model holding the N points; the copy is made and the previous
//   one destroyed with the timer paused, so only Train() is timed. Counters:
//   the number of kernels tried and, in the label, the kernel kept.
// BM_Cholesky/N (N = 2000, 4000): one ZqCholeskyFactor of the N x N
//   Gaussian covariance matrix of the same points, the floor under any
//   training that factorises the matrix. The script prints Train() over
//   scipy's Cholesky of the same matrix on OpenBLAS, with this beside it.
//
// Data: N training points uniform in [0,1]^16 with the response
//   5 + sin(2 pi x0) + 2 x1^2 + cos(pi x2 x3) + mean(x4..x15) + 0.1 noise,
//   and 500 queries uniform in [0,1]^16; every N takes the first N points of
//   one pool. Flags, read before Google Benchmark's own:
//     --krige_train=FILE    raw little-endian doubles, rows of 16 coordinates
//                           and the response (the pool; its size from the file)
//     --krige_queries=FILE  raw doubles, rows of 16 coordinates
//     --krige_output=DIR    before benchmarking, write DIR/simple_N.f64 and
//                           DIR/ordinary_N.f64 for each N: the predictions of
//                           the queries, then their variances (raw doubles)
//     --krige_range=R --krige_sill=S   the fixed kernel (defaults 1.5 and 2)
//   Without files, a seeded pool of 8000 points and 500 queries is made here.
//
// Run from a Release build. The BLAS runs on its threads on both sides
// (OpenBLAS: one per core); the rest is single-threaded on both.
#include <benchmark/benchmark.h>

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench_data.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/numerics/dense_algebra.h"

namespace {

using namespace Varimo;

using VarimoBench::KrigeData;
constexpr std::size_t kDim = VarimoBench::kKrigeDim;
constexpr std::size_t kDefaultPool = 8000;
constexpr std::size_t kDefaultQueries = 500;
const std::vector<long> kFitSizes = {2000, 4000, 8000};
const std::vector<long> kTrainSizes = {2000, 4000};

struct Options {
  std::string trainFile, queryFile, outputDir;
  double range = 1.5;
  double sill = 2.0;
} gOptions;

std::vector<double> ReadDoubles(const std::string& path, std::size_t rowLength) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  if (!in) throw std::runtime_error("cannot open " + path);
  const auto bytes = static_cast<std::size_t>(in.tellg());
  if (bytes % (rowLength * sizeof(double)) != 0) throw std::runtime_error("bad size of " + path);
  std::vector<double> values(bytes / sizeof(double));
  in.seekg(0);
  in.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(bytes));
  return values;
}

KrigeData Load() {
  KrigeData data;
  const std::vector<double> train = ReadDoubles(gOptions.trainFile, kDim + 1);
  for (std::size_t row = 0; row < train.size() / (kDim + 1); ++row) {
    const double* begin = train.data() + row * (kDim + 1);
    data.points.emplace_back(begin, begin + kDim);
    data.responses.push_back(begin[kDim]);
  }
  const std::vector<double> queries = ReadDoubles(gOptions.queryFile, kDim);
  for (std::size_t row = 0; row < queries.size() / kDim; ++row) {
    data.queries.emplace_back(queries.data() + row * kDim, queries.data() + (row + 1) * kDim);
  }
  return data;
}

const KrigeData& Data() {
  static const KrigeData data =
      gOptions.trainFile.empty() ? VarimoBench::GenerateKrigeData(kDefaultPool, kDefaultQueries) : Load();
  return data;
}

ZqKrigeKernel BenchKernel() {
  ZqKrigeKernel kernel(ZqKrigeKernelType::Gaussian);
  kernel.SetRange(gOptions.range);
  kernel.SetSill(gOptions.sill);
  kernel.SetNugget(0.0);
  return kernel;
}

// NaN marks a failed prediction in the written files.
constexpr double kErrorValue = std::numeric_limits<double>::quiet_NaN();

template <class Model>
Model MakeModel(std::size_t n) {
  const KrigeData& data = Data();
  Model model(ZqEuclideanDistance(), kErrorValue, 0xFFFFFFFFu, false, ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < n; ++i) model.AddTraining(data.points[i], data.responses[i]);
  return model;
}

// What the peer's fit + predict does: all the work from the raw points to
// the predictions and variances of the queries.
template <class Model>
void BM_FitPredict(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const KrigeData& data = Data();
  if (n > data.points.size()) {
    state.SkipWithError("fewer training points than N");
    return;
  }
  const ZqKrigeKernel kernel = BenchKernel();
  std::vector<double> predictions, variances;
  for (auto _ : state) {
    Model model = MakeModel<Model>(n);
    if (!model.TrainFixed(kernel)) {
      state.SkipWithError("TrainFixed failed");
      break;
    }
    model.PredictMany(data.queries, predictions, variances);
    benchmark::DoNotOptimize(predictions.data());
    benchmark::DoNotOptimize(variances.data());
    benchmark::ClobberMemory();
  }
  state.counters["queries"] = static_cast<double>(data.queries.size());
}

void BM_OrdinaryFitPredict(benchmark::State& state) { BM_FitPredict<ZqOrdinaryKrige<ZqVectorElement>>(state); }
void BM_SimpleFitPredict(benchmark::State& state) { BM_FitPredict<ZqSimpleKrige<ZqVectorElement>>(state); }

// Where the kept kernel stands in the fitted order that Train() walks: the
// number of kernels Train() tried. Uses the variogram the model cached.
int KernelsTried(ZqOrdinaryKrige<ZqVectorElement>& model) {
  const std::string kept = model.GetKernel().GetName();
  const ZqVariogram variogram = model.GetVariogram();
  std::vector<std::pair<double, std::string>> fitted;
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    ZqKrigeKernel kernel(candidate);
    double fitness = ZqFitKernel(kernel, variogram);
    if (std::isnan(fitness)) fitness = std::numeric_limits<double>::max();
    fitted.emplace_back(fitness, kernel.GetName());
  }
  std::stable_sort(fitted.begin(), fitted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t k = 0; k < fitted.size(); ++k) {
    if (fitted[k].second == kept) return static_cast<int>(k + 1);
  }
  return -1;
}

void BM_OrdinaryTrain(benchmark::State& state) {
  using Model = ZqOrdinaryKrige<ZqVectorElement>;
  const auto n = static_cast<std::size_t>(state.range(0));
  if (n > Data().points.size()) {
    state.SkipWithError("fewer training points than N");
    return;
  }
  const Model prototype = MakeModel<Model>(n);
  std::optional<Model> model;
  for (auto _ : state) {
    state.PauseTiming();
    model.reset();
    model.emplace(prototype);
    state.ResumeTiming();
    if (!model->Train()) {
      state.SkipWithError("Train failed");
      break;
    }
  }
  if (model && model->IsTrained()) {
    state.counters["kernels_tried"] = KernelsTried(*model);
    state.SetLabel(model->GetKernel().GetName());
  }
}

// The bench kernel's covariance matrix of the first n points, built
// directly: symmetric positive definite.
Eigen::MatrixXd CovarianceMatrix(std::size_t n) {
  const KrigeData& data = Data();
  const ZqKrigeKernel kernel = BenchKernel();
  const ZqEuclideanDistance distance;
  const auto size = static_cast<Eigen::Index>(n);
  Eigen::MatrixXd matrix(size, size);
  for (Eigen::Index i = 0; i < size; ++i) {
    for (Eigen::Index j = 0; j <= i; ++j) {
      const double d = distance(data.points[static_cast<std::size_t>(i)], data.points[static_cast<std::size_t>(j)]);
      matrix(i, j) = matrix(j, i) = kernel.GetSill() - kernel.GetValue(d);
    }
  }
  return matrix;
}

void BM_Cholesky(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  if (n > Data().points.size()) {
    state.SkipWithError("fewer training points than N");
    return;
  }
  const Eigen::MatrixXd matrix = CovarianceMatrix(n);
  ZqCholeskyFactor factor;
  for (auto _ : state) {
    if (!factor.Compute(matrix)) {
      state.SkipWithError("not positive definite");
      break;
    }
    benchmark::ClobberMemory();
  }
}

BENCHMARK(BM_OrdinaryFitPredict)->ArgsProduct({kFitSizes})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SimpleFitPredict)->ArgsProduct({kFitSizes})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_OrdinaryTrain)->ArgsProduct({kTrainSizes})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Cholesky)->ArgsProduct({kTrainSizes})->Unit(benchmark::kMillisecond)->UseRealTime();

template <class Model>
bool WritePredictions(const std::string& path, std::size_t n) {
  const KrigeData& data = Data();
  Model model = MakeModel<Model>(n);
  if (!model.TrainFixed(BenchKernel())) {
    std::fprintf(stderr, "TrainFixed failed for %s\n", path.c_str());
    return false;
  }
  std::vector<double> predictions, variances;
  model.PredictMany(data.queries, predictions, variances);
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(predictions.data()),
            static_cast<std::streamsize>(predictions.size() * sizeof(double)));
  out.write(reinterpret_cast<const char*>(variances.data()),
            static_cast<std::streamsize>(variances.size() * sizeof(double)));
  return static_cast<bool>(out);
}

bool WriteAllPredictions() {
  for (const long size : kFitSizes) {
    const auto n = static_cast<std::size_t>(size);
    if (n > Data().points.size()) continue;
    auto path = [n](const char* model) {
      std::string name = gOptions.outputDir;
      name.append("/").append(model).append("_").append(std::to_string(n)).append(".f64");
      return name;
    };
    if (!WritePredictions<ZqSimpleKrige<ZqVectorElement>>(path("simple"), n) ||
        !WritePredictions<ZqOrdinaryKrige<ZqVectorElement>>(path("ordinary"), n)) {
      return false;
    }
  }
  return true;
}

// Takes our flags out of argv, leaving Google Benchmark's.
void ParseFlags(int& argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    auto take = [&arg](const char* name, auto set) {
      const std::string prefix = std::string(name) + "=";
      if (arg.rfind(prefix, 0) != 0) return false;
      set(arg.substr(prefix.size()));
      return true;
    };
    const bool ours =
        take("--krige_train", [](const std::string& v) { gOptions.trainFile = v; }) ||
        take("--krige_queries", [](const std::string& v) { gOptions.queryFile = v; }) ||
        take("--krige_output", [](const std::string& v) { gOptions.outputDir = v; }) ||
        take("--krige_range", [](const std::string& v) { gOptions.range = std::stod(v); }) ||
        take("--krige_sill", [](const std::string& v) { gOptions.sill = std::stod(v); });
    if (!ours) argv[kept++] = argv[i];
  }
  argc = kept;
  argv[argc] = nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ParseFlags(argc, argv);
    if (gOptions.trainFile.empty() != gOptions.queryFile.empty()) {
      std::fprintf(stderr, "--krige_train and --krige_queries go together\n");
      return 2;
    }
    Data();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 2;
  }
  if (!gOptions.outputDir.empty() && !WriteAllPredictions()) return 1;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
