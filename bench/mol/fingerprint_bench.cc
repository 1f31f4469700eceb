// Vsepr fingerprints of RDKit's 5000 NCI molecules: how fast they are made
// and compared, and train + predict of the molecule model on a series.
// compare_tanimoto.py runs this beside RDKit's BulkTanimotoSimilarity.
//
//   VARIMO_FIRST5K=/path/first_5K.smi fingerprint_bench
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "varimo/mol/mol_krige.h"
#include "varimo/platform/molkit/molecule_files.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace {

using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

const Mols& First5K() {
  static const Mols mols = [] {
    const char* path = std::getenv("VARIMO_FIRST5K");
    Mols read;
    std::vector<std::string> errors;
    Molkit::ZqReadSmilesFile(path ? path : "/usr/share/RDKit/Data/NCI/first_5K.smi", read, errors);
    return read;
  }();
  return mols;
}

void BM_VseprFingerprint(benchmark::State& state) {
  const Mols& mols = First5K();
  const Printex::ZqVseprOptions options;
  for (auto _ : state) {
    for (const auto& mol : mols) benchmark::DoNotOptimize(Printex::ZqVseprFingerprint(*mol, options));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mols.size()));
}
BENCHMARK(BM_VseprFingerprint)->Unit(benchmark::kMillisecond);

// The first 200 molecules against all, as BulkTanimotoSimilarity is timed.
void BM_VseprTanimoto(benchmark::State& state) {
  const Printex::ZqVseprOptions options;
  std::vector<Printex::ZqVseprFingerprint> fps;
  for (const auto& mol : First5K()) fps.emplace_back(*mol, options);
  constexpr std::size_t kQueries = 200;
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t q = 0; q < kQueries; ++q) {
      for (const auto& fp : fps) sum += fps[q].GetTanimoto(fp);
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kQueries * fps.size()));
}
BENCHMARK(BM_VseprTanimoto)->Unit(benchmark::kMillisecond);

// Train on 800 molecules with a made-up smooth response, predict 200.
void BM_MolKrigeTrainPredict(benchmark::State& state) {
  const Mols& mols = First5K();
  for (auto _ : state) {
    Varimo::ZqMolKrige model{Varimo::ZqGlobalKrigeOptions()};
    for (std::size_t i = 0; i < 800; ++i) {
      model.AddTraining(*mols[i], static_cast<double>(mols[i]->GetNumHeavyAtoms() % 17));
    }
    model.Train();
    double sum = 0.0;
    for (std::size_t i = 800; i < 1000; ++i) sum += model.GetResult(*mols[i]).GetResponse();
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_MolKrigeTrainPredict)->Unit(benchmark::kMillisecond);

}  // namespace
