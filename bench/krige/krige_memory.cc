// Peak resident memory of training a global ordinary kriging model, or a
// local one.
//
//     varimo_krige_memory N [train|fixed|local]
//
// Adds N seeded points uniform in [0,1]^16 (the data of krige_bench.cc),
// trains, predicts 500 queries, and prints the peak resident set
// (getrusage ru_maxrss) against the 8 N^2 bytes of one N x N matrix of
// doubles. "train" runs the automatic Train() (variogram, 16 kernel fits,
// the walk); "fixed" runs TrainFixed with the Gaussian kernel of the
// benchmark (range 1.5, sill 2), one factorisation. The default is train up
// to N = 8000 and fixed above, where the walk would take minutes at one
// factorisation of O(N^3) per kernel tried. The memory that matters is
// the same in both: the distance table of the container (4 N^2 bytes),
// the covariance matrix and its factor (8 N^2 bytes, factorised in place)
// and, for Train() only and only while the variogram is built, the
// (distance, difference) pairs (8 N^2 bytes).
//
// "local" trains a local ordinary model (100 neighbours, a k-d tree over
// the 16 coordinates) with Train() and predicts the queries one by one.
// Its memory must stay linear in N: the pair list of the variogram is
// dropped beyond 500000 pairs, and each variogram then draws about that
// many pairs afresh; the figure to compare is the data itself.
//
// A plain program, run by hand (not in CI); peer: the matrix size itself.
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "bench_data.h"
#include "varimo/krige/kd_tree_search.h"
#include "varimo/krige/vector_krige.h"

namespace {

using namespace Varimo;

constexpr std::size_t kQueries = 500;

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;  // ru_maxrss is in KiB on Linux
}

double Since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int RunLocal(const VarimoBench::KrigeData& data) {
  const std::size_t n = data.points.size();
  const double dataMegabytes = PeakMegabytes();
  ZqLocalOrdinaryKrige<std::vector<double>> model(ZqEuclideanDistance(), 100,
                                                  std::numeric_limits<double>::quiet_NaN(), 0xFFFFFFFFu, false,
                                                  false, 500000, ZqKrigeUniqueResponseMethod::Mean);
  model.SetNeighbourSearch(ZqKdTreeNeighbourSearch(VarimoBench::kKrigeDim));
  auto start = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < n; ++i) model.AddTraining(data.points[i], data.responses[i]);
  const double addSeconds = Since(start);
  start = std::chrono::steady_clock::now();
  if (!model.Train()) {
    std::fprintf(stderr, "training failed\n");
    return 1;
  }
  const double trainSeconds = Since(start);
  start = std::chrono::steady_clock::now();
  std::size_t failed = 0;
  for (const auto& query : data.queries) failed += std::isnan(model.Predict(query)) ? 1 : 0;
  const double predictSeconds = Since(start);
  const double peak = PeakMegabytes();
  const double pointMegabytes = static_cast<double>(n * VarimoBench::kKrigeDim * sizeof(double)) / (1024.0 * 1024.0);
  std::printf("N %zu, 16 dimensions, local ordinary kriging, 100 neighbours, k-d tree\n", n);
  std::printf("variogram pairs sampled: %s; first kernel %s\n", model.IsSampled() ? "yes" : "no",
              model.GetKernel().GetName().c_str());
  std::printf("seconds: AddTraining %.2f, Train %.2f, Predict(%zu) %.2f\n", addSeconds, trainSeconds, kQueries,
              predictSeconds);
  std::printf("failed predictions: %zu\n", failed);
  std::printf("peak RSS MiB: after data %.1f, at the end %.1f\n", dataMegabytes, peak);
  std::printf("point coordinates MiB: %.1f\n", pointMegabytes);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s N [train|fixed|local]\n", argv[0]);
    return 2;
  }
  const long requested = std::strtol(argv[1], nullptr, 10);
  if (requested < 10) {
    std::fprintf(stderr, "N must be at least 10\n");
    return 2;
  }
  const auto n = static_cast<std::size_t>(requested);
  const std::string mode = argc == 3 ? argv[2] : (n <= 8000 ? "train" : "fixed");
  if (mode != "train" && mode != "fixed" && mode != "local") {
    std::fprintf(stderr, "mode is train, fixed or local\n");
    return 2;
  }

  const VarimoBench::KrigeData data = VarimoBench::GenerateKrigeData(n, kQueries);
  if (mode == "local") return RunLocal(data);
  const std::vector<std::vector<double>>& points = data.points;
  const std::vector<std::vector<double>>& queries = data.queries;
  const std::vector<double>& responses = data.responses;
  const double dataMegabytes = PeakMegabytes();

  const double errorValue = std::numeric_limits<double>::quiet_NaN();
  ZqOrdinaryKrige<std::vector<double>> model(ZqEuclideanDistance(), errorValue, 0xFFFFFFFFu, false,
                                             ZqKrigeUniqueResponseMethod::Mean);
  auto start = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < n; ++i) model.AddTraining(points[i], responses[i]);
  const double addSeconds = Since(start);
  const double afterAddMegabytes = PeakMegabytes();

  start = std::chrono::steady_clock::now();
  bool trained = false;
  if (mode == "train") {
    trained = model.Train();
  } else {
    ZqKrigeKernel kernel(ZqKrigeKernelType::Gaussian);
    kernel.SetRange(1.5);
    kernel.SetSill(2.0);
    kernel.SetNugget(0.0);
    trained = model.TrainFixed(kernel);
  }
  const double trainSeconds = Since(start);
  if (!trained) {
    std::fprintf(stderr, "training failed\n");
    return 1;
  }
  std::vector<double> predictions, variances;
  start = std::chrono::steady_clock::now();
  model.PredictMany(queries, predictions, variances);
  const double predictSeconds = Since(start);
  std::size_t failed = 0;
  for (double p : predictions) failed += std::isnan(p) ? 1 : 0;

  const double peak = PeakMegabytes();
  const double matrixMegabytes = 8.0 * static_cast<double>(n) * static_cast<double>(n) / (1024.0 * 1024.0);
  std::printf("N %zu, 16 dimensions\n", n);
  std::printf("training: %s (%s kernel)\n", mode == "train" ? "Train(), automatic" : "TrainFixed, fixed kernel",
              model.GetKernel().GetName().c_str());
  std::printf("seconds: AddTraining %.2f, %s %.2f, PredictMany(%zu) %.2f\n", addSeconds,
              mode == "train" ? "Train" : "TrainFixed", trainSeconds, kQueries, predictSeconds);
  std::printf("failed predictions: %zu\n", failed);
  std::printf("peak RSS MiB: after data %.1f, after AddTraining %.1f, at the end %.1f\n", dataMegabytes,
              afterAddMegabytes, peak);
  std::printf("N x N doubles MiB: %.1f\n", matrixMegabytes);
  std::printf("peak / matrix: %.2f\n", peak / matrixMegabytes);
  return 0;
}
