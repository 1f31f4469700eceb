// Local kriging on 2-D points, and universal beside ordinary kriging.
//
// BM_LocalOrdinaryQueries/N/tree (N = 10000, 100000; tree = 1 k-d tree,
//   0 full scan): the 1000 queries of a local ordinary model with K = 100
//   neighbours and a fixed spherical kernel (range 10, sill 1, nugget 0),
//   each query a neighbour search, a 100 x 100 factorisation and a solve.
//   The model is built and trained once per N outside the timing.
//   Peer: R gstat's krige(z ~ 1, ..., nmax = 100) with vgm(1, "Sph", 10) on
//   the same points and queries; compare_gstat.R runs it and prints the
//   ratio. (gstat finds neighbours through a quadtree.)
// BM_LocalOrdinaryBuild/N: AddTraining of the N points, TrainFixed and the
//   tree: the set-up the queries above leave out. Beyond 500000 admissible
//   pairs the pair list is dropped, so memory stays linear in N.
// BM_DriftFitPredict/N/drift (N = 2000): global universal kriging with 3
//   drift terms (x, y, x y) against ordinary kriging (drift = 0) on the same
//   points, fixed spherical kernel, fit + 500 queries one by one.
//
// Data (seeded): N points uniform in [0,100]^2 with the response
//   sin(x / 7) + cos(y / 11) + 0.02 x + 0.1 noise, queries uniform in
//   [5,95]^2. Flag, read before Google Benchmark's own:
//     --local_output=DIR  before benchmarking, write DIR/train_N.csv
//                         (x,y,z), DIR/queries.csv (x,y) and
//                         DIR/ours_N.csv (prediction) for each N, with the
//                         k-d tree; failed predictions are NaN.
//
// Run from a Release build; single-threaded on both sides.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "varimo/krige/kd_tree_search.h"
#include "varimo/krige/vector_krige.h"

namespace {

using namespace Varimo;
using Element = std::vector<double>;

constexpr std::size_t kNumLocal = 100;
constexpr std::size_t kQueries = 1000;
constexpr std::size_t kDriftQueries = 500;
const std::vector<long> kLocalSizes = {10000, 100000};
constexpr double kErrorValue = std::numeric_limits<double>::quiet_NaN();
std::string gOutputDir;

struct PointData {
  std::vector<Element> points, queries;
  std::vector<double> responses;
};

// The same seed for every size: the first n points of a larger set are the
// n points of a smaller one, and the queries are always the same.
const PointData& Data() {
  static const PointData data = [] {
    PointData d;
    std::mt19937_64 engine(20261123);
    std::uniform_real_distribution<double> field(0.0, 100.0), inner(5.0, 95.0);
    std::normal_distribution<double> noise(0.0, 0.1);
    for (long i = 0; i < kLocalSizes.back(); ++i) {
      const double x = field(engine), y = field(engine);
      d.points.push_back({x, y});
      d.responses.push_back(std::sin(x / 7.0) + std::cos(y / 11.0) + 0.02 * x + noise(engine));
    }
    for (std::size_t q = 0; q < kQueries; ++q) d.queries.push_back({inner(engine), inner(engine)});
    return d;
  }();
  return data;
}

ZqKrigeKernel Spherical() {
  ZqKrigeKernel kernel(ZqKrigeKernelType::Spherical);
  kernel.SetRange(10.0);
  kernel.SetSill(1.0);
  kernel.SetNugget(0.0);
  return kernel;
}

std::unique_ptr<ZqLocalOrdinaryKrige<Element>> TrainedLocal(std::size_t n, bool tree) {
  const PointData& data = Data();
  auto model = std::make_unique<ZqLocalOrdinaryKrige<Element>>(
      ZqEuclideanDistance(), kNumLocal, kErrorValue, 0xFFFFFFFFu, false, false, 500000,
      ZqKrigeUniqueResponseMethod::Mean);
  if (tree) model->SetNeighbourSearch(ZqKdTreeNeighbourSearch(2));
  for (std::size_t i = 0; i < n; ++i) model->AddTraining(data.points[i], data.responses[i]);
  model->TrainFixed(Spherical());
  return model;
}

void BM_LocalOrdinaryQueries(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const auto model = TrainedLocal(n, state.range(1) != 0);
  const PointData& data = Data();
  std::size_t failed = 0;
  for (auto _ : state) {
    failed = 0;
    for (const Element& query : data.queries) {
      const double prediction = model->Predict(query);
      failed += std::isnan(prediction) ? 1 : 0;
      benchmark::DoNotOptimize(prediction);
    }
  }
  state.counters["failed"] = static_cast<double>(failed);
}

void BM_LocalOrdinaryBuild(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(TrainedLocal(n, true));
}

// x, y and x y of a point: a drift that is not a plane.
class PlaneAndTwist final : public ZqPropertyListFxn<Element> {
 public:
  bool HasProperties(const Element& e) const override { return e.size() == 2; }
  std::size_t GetSize() const override { return 3; }
  double GetProperty(const Element& e, std::size_t k) const override { return k < 2 ? e[k] : e[0] * e[1]; }
  ZqPropertyListFxn<Element>* CreateCopy() const override { return new PlaneAndTwist(*this); }
};

void BM_DriftFitPredict(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const bool drift = state.range(1) != 0;
  const PointData& data = Data();
  const ZqKrigeOptions options{ZqGlobalKrigeOptions()};
  for (auto _ : state) {
    auto model = drift ? ZqCreateKrige<Element>(ZqEuclideanDistance(), PlaneAndTwist(), options)
                       : ZqCreateKrige<Element>(ZqEuclideanDistance(), options, false);
    for (std::size_t i = 0; i < n; ++i) model->AddTraining(data.points[i], data.responses[i]);
    model->TrainFixed(Spherical());
    for (std::size_t q = 0; q < kDriftQueries; ++q) benchmark::DoNotOptimize(model->Predict(data.queries[q]));
  }
}

BENCHMARK(BM_LocalOrdinaryQueries)
    ->ArgsProduct({kLocalSizes, {1, 0}})
    ->ArgNames({"N", "tree"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_LocalOrdinaryBuild)->ArgsProduct({kLocalSizes})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_DriftFitPredict)
    ->ArgsProduct({{2000}, {1, 0}})
    ->ArgNames({"N", "drift"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

bool WriteFiles() {
  const PointData& data = Data();
  std::ofstream queries(gOutputDir + "/queries.csv");
  queries.precision(17);
  queries << "x,y\n";
  for (const Element& q : data.queries) queries << q[0] << ',' << q[1] << '\n';
  for (const long size : kLocalSizes) {
    const auto n = static_cast<std::size_t>(size);
    std::ofstream train(gOutputDir + "/train_" + std::to_string(n) + ".csv");
    train.precision(17);
    train << "x,y,z\n";
    for (std::size_t i = 0; i < n; ++i) {
      train << data.points[i][0] << ',' << data.points[i][1] << ',' << data.responses[i] << '\n';
    }
    const auto model = TrainedLocal(n, true);
    std::ofstream ours(gOutputDir + "/ours_" + std::to_string(n) + ".csv");
    ours.precision(17);
    ours << "prediction\n";
    for (const Element& q : data.queries) ours << model->Predict(q) << '\n';
    if (!train || !ours) return false;
  }
  return static_cast<bool>(queries);
}

}  // namespace

int main(int argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i], flag = "--local_output=";
    if (arg.rfind(flag, 0) == 0) {
      gOutputDir = arg.substr(flag.size());
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  if (!gOutputDir.empty() && !WriteFiles()) {
    std::fprintf(stderr, "cannot write to %s\n", gOutputDir.c_str());
    return 1;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
