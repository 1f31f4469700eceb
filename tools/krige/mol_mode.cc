#include "mol_mode.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <thread>

#include "messages.h"
#include "mol_inputs.h"
#include "mol_model.h"
#include "progress.h"
#include "varimo/mol/krige_report.h"
#include "varimo/numerics/dense_algebra.h"

namespace VarimoKrige {
namespace {

void ReportLeftOut(const std::vector<std::string>& errors) {
  for (const std::string& error : errors) std::fprintf(stderr, "varimo-krige: left out %s\n", error.c_str());
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

void PrintKernel(const Varimo::ZqMolKrige& model) {
  const Varimo::ZqKrigeKernel kernel = model.GetKernel();
  std::printf("kernel: %s sill=%s nugget=%s range=%s\n", kernel.GetName().c_str(), Number(kernel.GetSill()).c_str(),
              Number(kernel.GetNugget()).c_str(), Number(kernel.GetRange()).c_str());
}

MolModelSettings SettingsFrom(const Arguments& args) {
  MolModelSettings settings;
  settings.numLocal = args.numLocal;
  settings.drift = args.drift;
  return settings;
}

// Adds the training set; the molecules the model refuses (no drift field)
// are reported. False when none is left.
bool AddTraining(Varimo::ZqMolKrige& model, const TrainingSet& set, const std::vector<std::string>& drift,
                 std::vector<std::size_t>& added) {
  for (std::size_t i = 0; i < set.mols.size(); ++i) {
    if (model.AddTraining(*set.mols[i], set.responses[i])) {
      added.push_back(i);
    } else {
      std::fprintf(stderr, "varimo-krige: left out %s: a drift field (%zu asked) is missing or not a number\n",
                   set.mols[i]->GetName().c_str(), drift.size());
    }
  }
  return !added.empty();
}

struct Prediction {
  Varimo::ZqMolKrigeResult result;
  std::vector<double> contributions;
};

// Every query through the const model, `threads` at a time; each result
// depends on its query alone, so the numbers do not depend on the threads.
// The BLAS runs single-threaded throughout, with one worker as with many
// (the rule of varimo/numerics/dense_algebra.h): its own threads would
// contend with ours, and would split its sums by a count that is not ours.
std::vector<Prediction> PredictAll(const Varimo::ZqMolKrige& model,
                                   const std::vector<std::unique_ptr<Molkit::ZqMolBase>>& queries,
                                   bool contributions, double baseline, unsigned int threads, bool quiet) {
  const Varimo::ZqSingleThreadedBlas singleThreadedBlas;
  std::vector<Prediction> predictions(queries.size());
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> done{0};
  // Only the calling thread reports progress (the others get null).
  auto work = [&](Progress* progress) {
    for (std::size_t i = next++; i < queries.size(); i = next++) {
      Prediction& p = predictions[i];
      p.result = model.GetResult(*queries[i]);
      if (contributions && p.result.Valid()) p.contributions = p.result.GetAtomContributions(*queries[i], baseline);
      ++done;
      if (progress != nullptr) progress->Update(done.load());
    }
  };
  Progress progress(queries.size(), !quiet);
  std::vector<std::thread> workers;
  for (unsigned int t = 1; t < threads; ++t) workers.emplace_back(work, nullptr);
  work(&progress);
  for (std::thread& worker : workers) worker.join();
  progress.Update(queries.size());
  progress.Finish();
  return predictions;
}

// The names of the three training molecules of largest weight.
std::string Neighbours(const Varimo::ZqMolKrigeResult& result) {
  std::vector<unsigned int> order(result.GetNumElements());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](unsigned int a, unsigned int b) {
    return result.GetElementWeight(a) > result.GetElementWeight(b);
  });
  std::string names;
  for (std::size_t k = 0; k < order.size() && k < 3; ++k) {
    if (k > 0) names += ';';
    names += result.GetElement(order[k]).GetName();
  }
  return names;
}

bool WritePredictions(const std::string& path, const MoleculeFile& queries, const std::vector<Prediction>& predictions) {
  std::ofstream out(path);
  out << "row,name,prediction,variance,neighbours\n";
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    const Varimo::ZqMolKrigeResult& result = predictions[i].result;
    out << queries.records[i] - 1 << ',' << CsvField(queries.mols[i]->GetName()) << ','
        << Number(result.GetResponse()) << ',' << Number(result.GetVariance()) << ','
        << CsvField(result.Valid() ? Neighbours(result) : std::string()) << '\n';
  }
  out.close();
  return static_cast<bool>(out);
}

bool WriteContributions(const std::string& path, const MoleculeFile& queries,
                        const std::vector<Prediction>& predictions) {
  std::ofstream out(path);
  out << "row,atom,contribution\n";
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    const Molkit::ZqMolBase& mol = *queries.mols[i];
    for (std::size_t a = 0; a < predictions[i].contributions.size(); ++a) {
      if (Molkit::ZqIsHydrogen(mol.GetAtom(a))) continue;
      out << queries.records[i] - 1 << ',' << a << ',' << Number(predictions[i].contributions[a]) << '\n';
    }
  }
  out.close();
  return static_cast<bool>(out);
}

// DIR/ROW.EXT for every valid prediction, ROW as in PRED.csv. Drawn here on
// the calling thread after the predictions: Cairo and RDKit's depiction are
// not relied on to be thread-safe, and a result computes its contributions
// on demand. Failed predictions are named and skipped; false when a report
// could not be written.
bool WriteReports(const Arguments& args, const MoleculeFile& queries, std::vector<Prediction>& predictions,
                  double baseline) {
  Varimo::ZqKrigeReportOptions options;
  // A loaded model does not know its response's name; the options' default
  // stands for it.
  if (!args.responseName.empty()) options.SetResponseName(args.responseName);
  // Coloured against the training mean, the atoms agree with --contributions.
  options.SetContributionBaseline(baseline);
  const std::string extension = args.reportFormat.empty() ? "png" : args.reportFormat;
  bool written = true;
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    const Molkit::ZqMolBase& mol = *queries.mols[i];
    const std::string path =
        (std::filesystem::path(args.reportDir) / (std::to_string(queries.records[i] - 1) + '.' + extension)).string();
    const std::string record = DescribeRecord(queries.records[i], mol.GetName());
    if (!predictions[i].result.Valid()) {
      std::fprintf(stderr, "varimo-krige: no report %s for %s: the prediction failed\n", path.c_str(), record.c_str());
      continue;
    }
    if (mol.GetName().empty()) {
      options.ClearTitle();
    } else {
      options.SetTitle(mol.GetName());
    }
    if (!Varimo::ZqKrigeRenderReport(path, predictions[i].result, mol, options)) {
      std::fprintf(stderr, "varimo-krige: cannot write the report %s for %s\n", path.c_str(), record.c_str());
      written = false;
    }
  }
  return written;
}

double Mean(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

}  // namespace

int RunMolecules(const Arguments& args) {
  std::string error;
  // Before training, so that a bad directory costs nothing.
  if (!args.reportDir.empty()) {
    std::error_code failure;
    std::filesystem::create_directories(args.reportDir, failure);
    if (failure) return Fail("cannot create the report directory " + args.reportDir + ": " + failure.message());
  }
  std::optional<TrainedMolModel> trained;
  if (!args.loadPath.empty()) {
    trained = LoadMolModel(args.loadPath, error);
    if (!trained) return Fail(error);
  } else {
    std::optional<MoleculeFile> file = LoadMolecules(args.trainPath, error);
    if (!file) return Fail(error);
    const TrainingSet set = SelectTraining(*file, args.responseName);
    ReportLeftOut(file->errors);
    if (set.mols.empty()) return Fail(args.trainPath + " has no molecule with a numeric " + args.responseName);
    trained.emplace();
    trained->settings = SettingsFrom(args);
    trained->model = MakeMolModel(trained->settings);
    std::vector<std::size_t> added;
    if (!AddTraining(*trained->model, set, args.drift, added)) {
      return Fail(args.trainPath + " has no molecule with the drift fields");
    }
    if (!trained->model->Train()) {
      std::fprintf(stderr, "varimo-krige: no kernel could be trained on %s\n", args.trainPath.c_str());
      return kTrainingFailed;
    }
    for (std::size_t i : added) {
      trained->mols.emplace_back(set.mols[i]->CreateCopy());
      trained->responses.push_back(set.responses[i]);
    }
  }
  PrintKernel(*trained->model);
  if (!args.savePath.empty() && !SaveMolModel(args.savePath, *trained, error)) return Fail(error);
  if (args.predictPath.empty()) return 0;

  std::optional<MoleculeFile> queries = LoadMolecules(args.predictPath, error);
  if (!queries) return Fail(error);
  ReportLeftOut(queries->errors);
  const double mean = Mean(trained->responses);
  std::vector<Prediction> predictions =
      PredictAll(*trained->model, queries->mols, !args.contributionsPath.empty(), mean, args.threads, args.quiet);
  if (!WritePredictions(args.outPath, *queries, predictions)) return Fail("cannot write " + args.outPath);
  if (!args.contributionsPath.empty() && !WriteContributions(args.contributionsPath, *queries, predictions)) {
    return Fail("cannot write " + args.contributionsPath);
  }
  if (!args.reportDir.empty() && !WriteReports(args, *queries, predictions, mean)) return kBadInput;
  return 0;
}

int RunCrossValidation(const Arguments& args) {
  std::string error;
  std::optional<MoleculeFile> file = LoadMolecules(args.trainPath, error);
  if (!file) return Fail(error);
  const TrainingSet set = SelectTraining(*file, args.responseName);
  ReportLeftOut(file->errors);
  if (set.mols.size() < args.folds) {
    return Fail(args.trainPath + " has fewer molecules with a numeric " + args.responseName + " than folds");
  }
  // Fold k holds the records at positions k, k + K, ... of a seeded shuffle.
  std::vector<std::size_t> order(set.mols.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::mt19937_64 engine(args.seed);
  std::shuffle(order.begin(), order.end(), engine);
  std::vector<unsigned int> fold(set.mols.size());
  for (std::size_t p = 0; p < order.size(); ++p) fold[order[p]] = static_cast<unsigned int>(p % args.folds);

  std::vector<double> measured, predicted, variances;
  std::size_t failed = 0;
  for (unsigned int k = 0; k < args.folds; ++k) {
    const std::unique_ptr<Varimo::ZqMolKrige> model = MakeMolModel(SettingsFrom(args));
    TrainingSet training;
    std::vector<std::unique_ptr<Molkit::ZqMolBase>> heldOut;
    std::vector<double> heldOutValues;
    for (std::size_t i = 0; i < set.mols.size(); ++i) {
      if (fold[i] == k) {
        heldOut.emplace_back(set.mols[i]->CreateCopy());
        heldOutValues.push_back(set.responses[i]);
      } else {
        training.mols.push_back(set.mols[i]);
        training.responses.push_back(set.responses[i]);
      }
    }
    std::vector<std::size_t> added;
    if (!AddTraining(*model, training, args.drift, added) || !model->Train()) {
      std::fprintf(stderr, "varimo-krige: fold %u: no kernel could be trained\n", k + 1);
      failed += heldOut.size();
      continue;
    }
    const std::vector<Prediction> predictions = PredictAll(*model, heldOut, false, 0.0, args.threads, true);
    std::size_t foldFailed = 0;
    for (std::size_t i = 0; i < predictions.size(); ++i) {
      const Varimo::ZqMolKrigeResult& result = predictions[i].result;
      if (!result.Valid() || !std::isfinite(result.GetVariance()) || result.GetVariance() >= 1e300) {
        ++foldFailed;
        continue;
      }
      measured.push_back(heldOutValues[i]);
      predicted.push_back(result.GetResponse());
      variances.push_back(result.GetVariance());
    }
    failed += foldFailed;
    std::printf("fold %u/%u: %zu held out, kernel %s\n", k + 1, args.folds, heldOut.size(),
                model->GetKernel().GetName().c_str());
  }
  if (failed > 0) std::fprintf(stderr, "varimo-krige: %zu held-out predictions failed and are not counted\n", failed);
  if (measured.empty()) return Fail("no held-out molecule could be predicted");
  const double mean = Mean(measured);
  double squares = 0.0, total = 0.0;
  std::size_t covered = 0;
  for (std::size_t i = 0; i < measured.size(); ++i) {
    const double residual = measured[i] - predicted[i];
    squares += residual * residual;
    total += (measured[i] - mean) * (measured[i] - mean);
    if (std::fabs(residual) <= 1.96 * std::sqrt(variances[i])) ++covered;
  }
  std::printf("RMSE %.6g\n", std::sqrt(squares / static_cast<double>(measured.size())));
  std::printf("R2 %.6g\n", 1.0 - squares / total);
  std::printf("coverage95 %.6g\n", static_cast<double>(covered) / static_cast<double>(measured.size()));
  return 0;
}

}  // namespace VarimoKrige
