// Molecule models with their files: training against loading a saved model
// (which adds the records and restores the trained kernels, fitting
// nothing), at N = 1000 (CHEMBL2321810, rdkit-data's Free-Wilson series, pIC50
// as given) and N = 5000 (first_5K.smi with a generated response: molecular
// weight / 100 plus a hashed offset, so that the model has something to
// fit). And 5-fold fit + predict of CHEMBL2321810 through the library calls
// the Python package makes (SMILES parsed for each fold), which
// bench/python/package_overhead.py sets beside the package.
//
//   mol_model_bench --benchmark_filter=Load
#include <benchmark/benchmark.h>

#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "varimo/krige/cross_validation.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

constexpr const char* kChemblSmiles = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810.smi";
constexpr const char* kChemblActivity = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810_act.csv";
constexpr const char* kFirst5K = "/usr/share/RDKit/Data/NCI/first_5K.smi";

struct Series {
  std::vector<std::string> smiles;
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<double> responses;
};

const Series& Chembl() {
  static const Series series = [] {
    Series s;
    std::map<std::string, double> activity;
    std::ifstream act(kChemblActivity);
    std::string line;
    std::getline(act, line);
    while (std::getline(act, line)) {
      const std::size_t comma = line.find(',');
      activity[line.substr(0, comma)] = std::stod(line.substr(comma + 1));
    }
    std::ifstream smi(kChemblSmiles);
    while (std::getline(smi, line)) {
      std::istringstream fields(line);
      std::string smiles, name;
      fields >> smiles >> name;
      s.smiles.push_back(smiles);
      s.mols.push_back(Molkit::ZqMolFromSmiles(smiles));
      s.responses.push_back(activity.at(name));
    }
    return s;
  }();
  return series;
}

const Series& First5K() {
  static const Series series = [] {
    Series s;
    std::vector<std::string> errors;
    Molkit::ZqReadSmilesFile(kFirst5K, s.mols, errors);
    for (const auto& mol : s.mols) {
      const std::size_t hash = std::hash<std::string>()(mol->GetCanonicalSmiles());
      s.responses.push_back(Molkit::ZqCalculateMolecularWeight(*mol) / 100.0 + static_cast<double>(hash % 1000) / 2000.0);
    }
    return s;
  }();
  return series;
}

const Series& SeriesOf(const benchmark::State& state) { return state.range(0) == 1000 ? Chembl() : First5K(); }

Varimo::ZqMolModel Train(const Series& series) {
  Varimo::ZqMolModel model({});
  for (std::size_t i = 0; i < series.mols.size(); ++i) {
    if (series.mols[i] && series.mols[i]->GetNumHeavyAtoms() > 0) model.AddTraining(*series.mols[i], series.responses[i]);
  }
  model.Train();
  return model;
}

void BM_TrainModel(benchmark::State& state) {
  const Series& series = SeriesOf(state);
  for (auto _ : state) benchmark::DoNotOptimize(Train(series).IsTrained());
  state.counters["records"] = static_cast<double>(Train(series).GetNumRecords());
}
BENCHMARK(BM_TrainModel)->Arg(1000)->Arg(5000)->Unit(benchmark::kSecond)->Iterations(1)->Repetitions(3);

void BM_LoadModel(benchmark::State& state) {
  const std::string text = Varimo::ZqWriteMolModel(Train(SeriesOf(state)));
  for (auto _ : state) {
    std::string error;
    benchmark::DoNotOptimize(Varimo::ZqReadMolModel(text, "bench", error).has_value());
  }
  state.counters["bytes"] = static_cast<double>(text.size());
}
BENCHMARK(BM_LoadModel)->Arg(1000)->Arg(5000)->Unit(benchmark::kSecond)->Iterations(1)->Repetitions(3);

// What MolKriging.fit + predict do for each fold, in C++.
void BM_FoldsFitPredict(benchmark::State& state) {
  const Series& series = Chembl();
  const std::vector<unsigned int> fold = Varimo::ZqCrossValidationFolds(series.smiles.size(), 5, 1);
  for (auto _ : state) {
    for (unsigned int k = 0; k < 5; ++k) {
      std::vector<std::unique_ptr<Molkit::ZqMolBase>> train, held;
      std::vector<double> y;
      for (std::size_t i = 0; i < series.smiles.size(); ++i) {
        if (fold[i] == k) {
          held.push_back(Molkit::ZqMolFromSmiles(series.smiles[i]));
        } else {
          train.push_back(Molkit::ZqMolFromSmiles(series.smiles[i]));
          y.push_back(series.responses[i]);
        }
      }
      Varimo::ZqMolModel model({});
      for (std::size_t i = 0; i < train.size(); ++i) model.AddTraining(*train[i], y[i]);
      model.Train();
      std::vector<const Molkit::ZqMolBase*> queries;
      for (const auto& mol : held) queries.push_back(mol.get());
      benchmark::DoNotOptimize(Varimo::ZqPredictMolecules(model.GetKrige(), queries, {}));
    }
  }
}
BENCHMARK(BM_FoldsFitPredict)->Unit(benchmark::kSecond)->Iterations(1)->Repetitions(3);

}  // namespace
