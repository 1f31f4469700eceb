#include "mol_model_source.h"

#include <cstdio>

#include "messages.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoKrige {
namespace {

std::vector<const Molkit::ZqMolBase*> Pointers(const std::vector<std::unique_ptr<Molkit::ZqMolBase>>& mols) {
  std::vector<const Molkit::ZqMolBase*> pointers;
  for (const auto& mol : mols) pointers.push_back(mol.get());
  return pointers;
}

}  // namespace

Varimo::ZqMolModelSettings SettingsFrom(const Arguments& args) {
  Varimo::ZqMolModelSettings settings;
  settings.numLocal = args.numLocal;
  settings.predictTraining = args.predictTraining;
  settings.maxVariogramSize = args.maxVariogramSize.value_or(0);
  settings.drift = args.drift;
  settings.fit = args.fit == "likelihood" ? Varimo::ZqKernelFit::Likelihood : Varimo::ZqKernelFit::Variogram;
  settings.responseName = args.responseName;
  return settings;
}

std::optional<TrainingFile> ReadTrainingFile(const Arguments& args, int& status) {
  status = kBadInput;
  TrainingFile file;
  std::vector<std::string> errors;
  std::vector<std::size_t> records;
  if (!Molkit::ZqReadMoleculeFile(args.trainPath, file.mols, errors, &records)) {
    Fail(file.mols.empty() ? "cannot read " + args.trainPath : args.trainPath + " is damaged: it ends too early");
    return std::nullopt;
  }
  if (file.mols.empty()) {
    Fail(args.trainPath + " holds no molecule" + (errors.empty() ? "" : " that can be read (" + errors.front() + ")"));
    return std::nullopt;
  }
  // A field that no record has is a wrong name, said once.
  const bool anyHasResponse = std::any_of(file.mols.begin(), file.mols.end(),
                                          [&](const auto& mol) { return mol->HasSDData(args.responseName); });
  if (!anyHasResponse) {
    Fail(args.trainPath + " has no field " + args.responseName);
    return std::nullopt;
  }
  std::vector<std::string> leftOut;
  file.records = Varimo::ZqSelectMolTraining(Pointers(file.mols), records, args.responseName, leftOut);
  for (const std::string& error : errors) Say("left out " + error);
  for (const std::string& error : leftOut) Say("left out " + error);
  if (file.records.mols.empty()) {
    Fail(args.trainPath + " has no molecule with a numeric " + args.responseName);
    return std::nullopt;
  }
  return file;
}

std::optional<Varimo::ZqMolModel> ObtainModel(const Arguments& args, int& status) {
  status = kBadInput;
  std::string error;
  if (!args.loadPath.empty()) {
    std::optional<Varimo::ZqMolModel> model = Varimo::ZqLoadMolModel(args.loadPath, error);
    if (!model) Fail(error);
    return model;
  }
  const std::optional<TrainingFile> file = ReadTrainingFile(args, status);
  if (!file) return std::nullopt;
  Varimo::ZqMolModel model(SettingsFrom(args));
  for (std::size_t i = 0; i < file->records.mols.size(); ++i) {
    const Molkit::ZqMolBase& mol = *file->records.mols[i];
    if (!model.AddTraining(mol, file->records.responses[i])) {
      Say("left out " + Varimo::ZqDescribeRecord(i + 1, mol.GetName()) + ": a drift field (" +
          std::to_string(args.drift.size()) + " asked) is missing or not a number");
    }
  }
  if (model.GetNumRecords() == 0) {
    Fail(args.trainPath + " has no molecule with the drift fields");
    return std::nullopt;
  }
  std::vector<std::string> warnings;
  {
    Corvane::ZqScopedThrowCapture capture;
    model.Train();
    for (const auto& [level, text] : capture.Messages()) warnings.push_back(text);
  }
  // Passed on as the library would have said them.
  for (const std::string& text : warnings) Corvane::ZqThrow.Warning(text);
  if (!model.IsTrained()) {
    status = kTrainingFailed;
    Say("no kernel could be trained on " + args.trainPath + ": " + Varimo::ZqExplainNoKernel(model, warnings));
    return std::nullopt;
  }
  return model;
}

void PrintKernels(const Varimo::ZqMolModel& model) {
  const Varimo::ZqKrigeTrainedKernels trained = model.GetTrainedKernels();
  if (model.GetSettings().numLocal == 0 || trained.kernels.size() <= 1) {
    const Varimo::ZqKrigeKernel kernel = model.GetKernel();
    std::printf("kernel: %s sill=%s nugget=%s range=%s\n", kernel.GetName().c_str(), Number(kernel.GetSill()).c_str(),
                Number(kernel.GetNugget()).c_str(), Number(kernel.GetRange()).c_str());
    return;
  }
  std::string names;
  for (const Varimo::ZqKrigeKernel& kernel : trained.kernels) names += (names.empty() ? "" : ", ") + kernel.GetName();
  std::printf("kernels: %s (tried in this order for each query; the kernel of each prediction is in its row)\n",
              names.c_str());
}

}  // namespace VarimoKrige
