// The molecule model of a run of varimo-krige: trained on --train, or
// loaded from --load.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "varimo/mol/mol_model.h"

namespace VarimoKrige {

Varimo::ZqMolModelSettings SettingsFrom(const Arguments& args);

// The training records of --train with their responses; nothing, with the
// messages said and `status` set, when none can train.
struct TrainingFile {
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  Varimo::ZqMolTrainingRecords records;
};
std::optional<TrainingFile> ReadTrainingFile(const Arguments& args, int& status);

// The trained model; nothing, with the reason said and `status` set to
// kTrainingFailed or kBadInput, when there is none.
std::optional<Varimo::ZqMolModel> ObtainModel(const Arguments& args, int& status);

// "kernel: NAME sill=S nugget=N range=R" of a global model; for a local
// model "kernels: A, B, ... (tried in this order for each query)", the
// kernel that made each prediction being in its row.
void PrintKernels(const Varimo::ZqMolModel& model);

}  // namespace VarimoKrige
