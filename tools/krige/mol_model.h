// varimo-krige's models on molecules: how they are made from the command
// line, trained, saved and loaded.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "varimo/mol/mol_krige.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace VarimoKrige {

// What makes a model, besides its training records.
struct MolModelSettings {
  Printex::ZqVseprOptions fingerprint;
  unsigned int numLocal = 0;        // 0: a global model
  std::vector<std::string> drift;   // SD fields of the drift; empty: ordinary kriging
};

std::unique_ptr<Varimo::ZqMolKrige> MakeMolModel(const MolModelSettings& settings);

// A trained model with the records it was trained on, in order.
struct TrainedMolModel {
  MolModelSettings settings;
  std::unique_ptr<Varimo::ZqMolKrige> model;
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<double> responses;
};

// Writes the model file; false, with `error` set, when it cannot.
bool SaveMolModel(const std::string& path, const TrainedMolModel& trained, std::string& error);
// Reads and retrains a saved model, checking that it is the model that was
// saved; nothing, with `error` set, for a file that is not one, corrupt,
// cut short or written by another version.
std::optional<TrainedMolModel> LoadMolModel(const std::string& path, std::string& error);
// The same from the file's text; `name` starts the error message.
std::optional<TrainedMolModel> ReadMolModel(const std::string& text, const std::string& name, std::string& error);
// The line that ends a model file whose text before it is `text`.
std::string MolModelChecksumLine(const std::string& text);

}  // namespace VarimoKrige
