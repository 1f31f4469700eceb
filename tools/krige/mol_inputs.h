// The molecules of varimo-krige's molecule files.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule.h"

namespace VarimoKrige {

struct MoleculeFile {
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::size_t> records;  // each molecule's record number in the file, from 1
  std::vector<std::string> errors;   // records left out, and why
};

// Every readable record of an SD, SMILES or CSV-with-SMILES file; nothing,
// with `error` set, when the file cannot be read or holds no molecule.
std::optional<MoleculeFile> LoadMolecules(const std::string& path, std::string& error);

}  // namespace VarimoKrige
