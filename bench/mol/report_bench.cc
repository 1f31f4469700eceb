// Krige reports per second at 800 x 600: what `varimo-krige --report` pays
// per query on top of its prediction. The model is trained on RDKit's bzr
// sample (pIC50 in ACTIVITY) without its first five molecules; the report
// is of the first of them. BM_KrigeReportPng draws the report into a
// recorded image and writes it as a PNG (Cairo rasterising and compressing,
// then the file); BM_KrigeReportRecorded only draws, so the difference is
// the cost of rasterising. No peer: the figures size the report beside the
// prediction itself.
//
//   VARIMO_BZR=/path/bzr.sdf report_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "varimo/mol/krige_report.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/lineart/recorded_image.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

constexpr std::size_t kHeldOut = 5;

struct Query {
  Mols mols;
  Varimo::ZqMolKrigeResult result;  // never drawn, so contributions are not yet computed
  bool valid = false;
};

const Query& BzrQuery() {
  static const Query query = [] {
    Query made;
    const char* path = std::getenv("VARIMO_BZR");
    std::vector<std::string> errors;
    Molkit::ZqReadSDFile(path ? path : "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf", made.mols, errors);
    if (made.mols.size() <= kHeldOut) return made;
    Varimo::ZqMolKrige model{Varimo::ZqGlobalKrigeOptions()};
    for (std::size_t i = kHeldOut; i < made.mols.size(); ++i) {
      model.AddTraining(*made.mols[i], std::stod(made.mols[i]->GetSDData("ACTIVITY")));
    }
    if (!model.Train()) return made;
    made.result = model.GetResult(*made.mols[0]);
    made.valid = made.result.Valid();
    return made;
  }();
  return query;
}

Varimo::ZqKrigeReportOptions Options(const Molkit::ZqMolBase& mol) {
  Varimo::ZqKrigeReportOptions options;
  options.SetResponseName("ACTIVITY");
  options.SetTitle(mol.GetName());
  return options;
}

// `write` decides whether each report also becomes a PNG file. Every
// iteration draws from a fresh copy of the result, as every query of
// varimo-krige does: a result keeps the contributions it computed, and a
// report of a result drawn before would skip that work.
void RunReports(benchmark::State& state, bool write) {
  const Query& query = BzrQuery();
  if (!query.valid) {
    state.SkipWithError("bzr.sdf could not be read or predicted");
    return;
  }
  const Molkit::ZqMolBase& mol = *query.mols[0];
  const Varimo::ZqKrigeReportOptions options = Options(mol);
  const std::string png =
      (std::filesystem::temp_directory_path() / ("varimo_report_bench_" + std::to_string(getpid()) + ".png"))
          .string();
  for (auto _ : state) {
    state.PauseTiming();
    Varimo::ZqMolKrigeResult result = query.result;
    state.ResumeTiming();
    Lineart::ZqImage image(800, 600);
    if (!Varimo::ZqKrigeRenderReport(image, result, mol, options, 0, 0)) {
      state.SkipWithError("the report was not drawn");
      break;
    }
    if (write && !Lineart::ZqWriteImage(png, image)) {
      state.SkipWithError(("cannot write " + png).c_str());
      break;
    }
    benchmark::DoNotOptimize(image.GetCalls().data());
  }
  state.SetItemsProcessed(state.iterations());
  std::error_code ignored;
  std::filesystem::remove(png, ignored);
}

void BM_KrigeReportPng(benchmark::State& state) { RunReports(state, true); }
BENCHMARK(BM_KrigeReportPng)->Unit(benchmark::kMillisecond);

void BM_KrigeReportRecorded(benchmark::State& state) { RunReports(state, false); }
BENCHMARK(BM_KrigeReportRecorded)->Unit(benchmark::kMillisecond);

}  // namespace
