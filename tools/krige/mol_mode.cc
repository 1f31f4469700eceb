#include "mol_mode.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "messages.h"
#include "mol_inputs.h"
#include "progress.h"
#include "varimo/mol/krige_report.h"
#include "varimo/mol/mol_cross_validation.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/platform/molkit/mol_property.h"

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

void PrintKernel(const Varimo::ZqMolModel& model) {
  const Varimo::ZqKrigeKernel kernel = model.GetKernel();
  std::printf("kernel: %s sill=%s nugget=%s range=%s\n", kernel.GetName().c_str(), Number(kernel.GetSill()).c_str(),
              Number(kernel.GetNugget()).c_str(), Number(kernel.GetRange()).c_str());
}

Varimo::ZqMolModelSettings SettingsFrom(const Arguments& args) {
  Varimo::ZqMolModelSettings settings;
  settings.numLocal = args.numLocal;
  settings.drift = args.drift;
  settings.responseName = args.responseName;
  return settings;
}

void ReportRefusedDrift(const Molkit::ZqMolBase& mol, std::size_t numDrift) {
  std::fprintf(stderr, "varimo-krige: left out %s: a drift field (%zu asked) is missing or not a number\n",
               mol.GetName().c_str(), numDrift);
}

using Prediction = Varimo::ZqMolPrediction;

std::vector<const Molkit::ZqMolBase*> Pointers(const std::vector<std::unique_ptr<Molkit::ZqMolBase>>& mols) {
  std::vector<const Molkit::ZqMolBase*> pointers;
  for (const auto& mol : mols) pointers.push_back(mol.get());
  return pointers;
}

// Every query through the const model, `threads` at a time, with progress.
std::vector<Prediction> PredictAll(const Varimo::ZqMolKrige& model,
                                   const std::vector<std::unique_ptr<Molkit::ZqMolBase>>& queries,
                                   bool contributions, double baseline, unsigned int threads, bool quiet) {
  const std::vector<const Molkit::ZqMolBase*> pointers = Pointers(queries);
  Progress progress(queries.size(), !quiet);
  Varimo::ZqMolPredictOptions options;
  options.threads = threads;
  options.contributions = contributions;
  options.baseline = baseline;
  options.progress = [&](std::size_t done) { progress.Update(done); };
  std::vector<Prediction> predictions = Varimo::ZqPredictMolecules(model, pointers, options);
  progress.Finish();
  return predictions;
}

// The names of the three training molecules of largest weight.
std::string Neighbours(const Varimo::ZqMolKrigeResult& result) {
  std::string names;
  for (unsigned int i : Varimo::ZqLargestWeights(result, 3)) {
    if (!names.empty()) names += ';';
    names += result.GetElement(i).GetName();
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
bool WriteReports(const Arguments& args, const std::string& responseName, const MoleculeFile& queries,
                  std::vector<Prediction>& predictions, double baseline) {
  Varimo::ZqKrigeReportOptions options;
  // Without a name (a model saved without one), the options' default
  // stands for it.
  if (!responseName.empty()) options.SetResponseName(responseName);
  // Coloured against the training mean, the atoms agree with --contributions.
  options.SetContributionBaseline(baseline);
  const std::string extension = args.reportFormat.empty() ? "png" : args.reportFormat;
  bool written = true;
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    const Molkit::ZqMolBase& mol = *queries.mols[i];
    const std::string path =
        (std::filesystem::path(args.reportDir) / (std::to_string(queries.records[i] - 1) + '.' + extension)).string();
    const std::string record = Varimo::ZqDescribeRecord(queries.records[i], mol.GetName());
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

}  // namespace

int RunMolecules(const Arguments& args) {
  std::string error;
  // Before training, so that a bad directory costs nothing.
  if (!args.reportDir.empty()) {
    std::error_code failure;
    std::filesystem::create_directories(args.reportDir, failure);
    if (failure) return Fail("cannot create the report directory " + args.reportDir + ": " + failure.message());
  }
  std::optional<Varimo::ZqMolModel> model;
  if (!args.loadPath.empty()) {
    model = Varimo::ZqLoadMolModel(args.loadPath, error);
    if (!model) return Fail(error);
  } else {
    std::optional<MoleculeFile> file = LoadMolecules(args.trainPath, error);
    if (!file) return Fail(error);
    const Varimo::ZqMolTrainingRecords set =
        Varimo::ZqSelectMolTraining(Pointers(file->mols), file->records, args.responseName, file->errors);
    ReportLeftOut(file->errors);
    if (set.mols.empty()) return Fail(args.trainPath + " has no molecule with a numeric " + args.responseName);
    model.emplace(SettingsFrom(args));
    for (std::size_t i = 0; i < set.mols.size(); ++i) {
      if (!model->AddTraining(*set.mols[i], set.responses[i])) ReportRefusedDrift(*set.mols[i], args.drift.size());
    }
    if (model->GetNumRecords() == 0) return Fail(args.trainPath + " has no molecule with the drift fields");
    if (!model->Train()) {
      std::fprintf(stderr, "varimo-krige: no kernel could be trained on %s\n", args.trainPath.c_str());
      return kTrainingFailed;
    }
  }
  PrintKernel(*model);
  if (!args.savePath.empty() && !Varimo::ZqSaveMolModel(args.savePath, *model, error)) return Fail(error);
  if (args.predictPath.empty()) return 0;

  std::optional<MoleculeFile> queries = LoadMolecules(args.predictPath, error);
  if (!queries) return Fail(error);
  ReportLeftOut(queries->errors);
  const double mean = model->GetMeanResponse();
  std::vector<Prediction> predictions =
      PredictAll(model->GetKrige(), queries->mols, !args.contributionsPath.empty(), mean, args.threads, args.quiet);
  if (!WritePredictions(args.outPath, *queries, predictions)) return Fail("cannot write " + args.outPath);
  if (!args.contributionsPath.empty() && !WriteContributions(args.contributionsPath, *queries, predictions)) {
    return Fail("cannot write " + args.contributionsPath);
  }
  const std::string responseName =
      args.responseName.empty() ? model->GetSettings().responseName : args.responseName;
  if (!args.reportDir.empty() && !WriteReports(args, responseName, *queries, predictions, mean)) return kBadInput;
  return 0;
}

int RunCrossValidation(const Arguments& args) {
  std::string error;
  std::optional<MoleculeFile> file = LoadMolecules(args.trainPath, error);
  if (!file) return Fail(error);
  const Varimo::ZqMolTrainingRecords set =
      Varimo::ZqSelectMolTraining(Pointers(file->mols), file->records, args.responseName, file->errors);
  ReportLeftOut(file->errors);
  if (set.mols.size() < args.folds) {
    return Fail(args.trainPath + " has fewer molecules with a numeric " + args.responseName + " than folds");
  }
  const Varimo::ZqMolCrossValidation cv =
      Varimo::ZqCrossValidateMolModel(SettingsFrom(args), set.mols, set.responses, args.folds, args.seed, args.threads);
  for (std::size_t i : cv.refused) ReportRefusedDrift(*set.mols[i], args.drift.size());
  for (unsigned int k = 0; k < cv.folds.size(); ++k) {
    const Varimo::ZqMolCrossValidationFold& fold = cv.folds[k];
    if (!fold.trained) {
      std::fprintf(stderr, "varimo-krige: fold %u: no kernel could be trained\n", k + 1);
      continue;
    }
    std::printf("fold %u/%u: %zu held out, kernel %s\n", k + 1, args.folds, fold.numHeldOut, fold.kernel.c_str());
  }
  const Varimo::ZqCrossValidationSummary& summary = cv.summary;
  if (summary.failed > 0) {
    std::fprintf(stderr, "varimo-krige: %zu held-out predictions failed and are not counted\n", summary.failed);
  }
  if (summary.counted == 0) return Fail("no held-out molecule could be predicted");
  std::printf("RMSE %.6g\n", summary.rmse);
  if (std::isnan(summary.r2)) {
    std::fprintf(stderr, "varimo-krige: R2 is undefined: fewer than two held-out predictions count, or all their "
                         "measured values are equal\n");
  }
  std::printf("R2 %.6g\n", summary.r2);
  std::printf("coverage95 %.6g\n", summary.coverage95);
  return 0;
}

}  // namespace VarimoKrige
