#include "mol_inputs.h"

#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoKrige {

std::optional<MoleculeFile> LoadMolecules(const std::string& path, std::string& error) {
  MoleculeFile file;
  if (!Molkit::ZqReadMoleculeFile(path, file.mols, file.errors, &file.records)) {
    error = "cannot read " + path;
    return std::nullopt;
  }
  if (file.mols.empty()) {
    error = path + " holds no molecule" + (file.errors.empty() ? "" : " that can be read (" + file.errors.front() + ")");
    return std::nullopt;
  }
  return file;
}

}  // namespace VarimoKrige
