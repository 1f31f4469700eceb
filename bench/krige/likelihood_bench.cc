// Kernels by likelihood on 16-dimensional numeric descriptors,
// ZqEuclideanDistance, simple kriging (the responses' mean taken as known).
//
// BM_LikelihoodOneShape/N (N = 500, 1000, 2000): ZqTrainByLikelihood with
//   the exponential kernel alone: the distances read from the model, the
//   range of largest profile likelihood (a grid and golden-section steps,
//   43 factorisations of order N) and the training with the kernel found.
//   Each iteration trains a fresh copy of an untrained model holding the N
//   points; the copy is made with the timer paused. Counters: the range and
//   sill found. Peer: scikit-learn's GaussianProcessRegressor with
//   ConstantKernel() * Matern(nu=0.5) fitted by its own L-BFGS-B search of
//   the log marginal likelihood over the constant and the length scale,
//   on the same points and centred responses: the same likelihood (our
//   exponential kernel's correlation exp(-h ln 10 / r) is the Matern's
//   exp(-h / l) with r = l ln 10). compare_likelihood.py runs both, prints
//   ours / scikit-learn and compares the maxima in scikit-learn's own log
//   marginal likelihood.
// BM_LikelihoodEuclideanCandidates/N (N = 500, 1000): ZqTrainByLikelihood over the 5
//   candidate kernels of the Euclidean distance, as varimo-krige --fit
//   likelihood trains on CSV files; the label names the kernel kept.
//
// Data: N points of a pool of 2000 uniform in [0,1]^16 with the response of
// bench_data.h. Flag, read before Google Benchmark's own:
//   --likelihood_data=DIR   DIR/train.f64: raw doubles, 2000 rows of 16
//                           coordinates and the response
// Without it, a seeded pool is made here.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench_data.h"
#include "bench_main.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/krige/vector_krige.h"

namespace {

using namespace Varimo;

constexpr std::size_t kPool = 2000;
constexpr std::size_t kDim = VarimoBench::kKrigeDim;

VarimoBench::KrigeData gData;

ZqSimpleKrige<ZqVectorElement> MakeModel(std::size_t n) {
  ZqSimpleKrige<ZqVectorElement> model(ZqEuclideanDistance(), -1.0, 0xFFFFFFFFu, false,
                                       ZqKrigeUniqueResponseMethod::Mean);
  for (std::size_t i = 0; i < n; ++i) model.AddTraining(gData.points[i], gData.responses[i]);
  return model;
}

// Trains fresh copies of the model of the first N points by likelihood
// over `candidates`.
void TrainCopies(benchmark::State& state, const std::vector<const ZqKrigeKernelBase*>& candidates) {
  const ZqSimpleKrige<ZqVectorElement> untrained = MakeModel(static_cast<std::size_t>(state.range(0)));
  std::unique_ptr<ZqKrigeBase<ZqVectorElement>> model;
  for (auto _ : state) {
    state.PauseTiming();
    model.reset(untrained.CreateKrigeCopy());
    state.ResumeTiming();
    if (!ZqTrainByLikelihood(*model, candidates)) {
      state.SkipWithError("no kernel trained");
      return;
    }
  }
  const ZqKrigeKernel kept = model->GetKernel();
  state.counters["range"] = kept.GetRange();
  state.counters["sill"] = kept.GetSill();
  state.SetLabel(kept.GetName());
}

void BM_LikelihoodOneShape(benchmark::State& state) {
  const ZqKrigeKernel exponential(ZqKrigeKernelType::Exponential);
  TrainCopies(state, {&exponential});
}

void BM_LikelihoodEuclideanCandidates(benchmark::State& state) {
  const std::vector<ZqKrigeKernel> kernels = ZqLikelihoodCandidates(ZqDistanceClass::Euclidean);
  std::vector<const ZqKrigeKernelBase*> candidates;
  for (const ZqKrigeKernel& kernel : kernels) candidates.push_back(&kernel);
  TrainCopies(state, candidates);
}

BENCHMARK(BM_LikelihoodOneShape)->Arg(500)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LikelihoodEuclideanCandidates)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

void Load(const std::string& dir) {
  if (dir.empty()) {
    gData = VarimoBench::GenerateKrigeData(kPool, 0);
    return;
  }
  const std::vector<double> values = VarimoBench::ReadDoubles(dir + "/train.f64", kPool * (kDim + 1));
  for (std::size_t row = 0; row < kPool; ++row) {
    const double* begin = values.data() + row * (kDim + 1);
    gData.points.emplace_back(begin, begin + kDim);
    gData.responses.push_back(begin[kDim]);
  }
}

}  // namespace

int main(int argc, char** argv) { return VarimoBench::MainWithDataFlag(argc, argv, "likelihood_data", Load); }
