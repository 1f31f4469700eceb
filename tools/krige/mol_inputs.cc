#include "mol_inputs.h"

#include <cmath>
#include <fstream>
#include <sstream>

#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace VarimoKrige {
namespace {

bool EndsWith(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::vector<std::string> CsvFields(const std::string& line) {
  std::vector<std::string> fields;
  Corvane::ZqStringTokenizeQuoted(fields, line, ",", "\"", false);
  for (std::string& field : fields) field = Corvane::ZqStringStripWhiteSpace(field);
  return fields;
}

// A CSV file with a "smiles" column; its "name" or "id" column names the
// molecules, and every other column becomes an SD data field.
bool ReadSmilesCsv(const std::string& path, MoleculeFile& file) {
  std::ifstream in(path);
  if (!in) return false;
  std::string line;
  std::getline(in, line);
  const std::vector<std::string> header = CsvFields(line);
  std::size_t smiles = header.size();
  std::size_t name = header.size();
  for (std::size_t c = 0; c < header.size(); ++c) {
    const std::string upper = Corvane::ZqStringUpper(header[c]);
    if (upper == "SMILES" && smiles == header.size()) smiles = c;
    if ((upper == "NAME" || upper == "ID") && name == header.size()) name = c;
  }
  std::size_t record = 0;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    ++record;
    const std::vector<std::string> fields = CsvFields(line);
    const std::string molName = name < fields.size() ? fields[name] : std::to_string(record);
    std::string error = "no SMILES";
    std::unique_ptr<Molkit::ZqMolBase> mol;
    if (smiles < fields.size() && !fields[smiles].empty()) mol = Molkit::ZqMolFromSmiles(fields[smiles], &error);
    if (!mol) {
      file.errors.push_back(DescribeRecord(record, molName) + ": " + error);
      continue;
    }
    mol->SetName(molName);
    for (std::size_t c = 0; c < header.size() && c < fields.size(); ++c) {
      if (c != smiles && c != name) mol->SetSDData(header[c], fields[c]);
    }
    file.mols.push_back(std::move(mol));
    file.records.push_back(record);
  }
  return true;
}

}  // namespace

std::string DescribeRecord(std::size_t record, const std::string& name) {
  return "record " + std::to_string(record) + (name.empty() ? std::string() : " (" + name + ")");
}

std::optional<MoleculeFile> LoadMolecules(const std::string& path, std::string& error) {
  MoleculeFile file;
  bool read = false;
  if (EndsWith(path, ".sdf") || EndsWith(path, ".sdf.gz")) {
    read = Molkit::ZqReadSDFile(path, file.mols, file.errors, &file.records);
  } else if (EndsWith(path, ".csv")) {
    read = ReadSmilesCsv(path, file);
  } else {
    read = Molkit::ZqReadSmilesFile(path, file.mols, file.errors, &file.records);
  }
  if (!read) {
    error = "cannot read " + path;
    return std::nullopt;
  }
  if (file.mols.empty()) {
    error = path + " holds no molecule" + (file.errors.empty() ? "" : " that can be read (" + file.errors.front() + ")");
    return std::nullopt;
  }
  return file;
}

TrainingSet SelectTraining(MoleculeFile& file, const std::string& response) {
  TrainingSet set;
  for (std::size_t i = 0; i < file.mols.size(); ++i) {
    const Molkit::ZqMolBase& mol = *file.mols[i];
    const std::string where = DescribeRecord(file.records[i], mol.GetName());
    double value = 0.0;
    if (!mol.HasSDData(response)) {
      file.errors.push_back(where + ": no " + response);
    } else if (!Corvane::ZqStringToNumber(Corvane::ZqStringStripWhiteSpace(mol.GetSDData(response)), value) ||
               !std::isfinite(value)) {
      file.errors.push_back(where + ": " + response + " is not a number: '" + mol.GetSDData(response) + "'");
    } else if (mol.GetNumHeavyAtoms() == 0) {
      file.errors.push_back(where + ": no heavy atoms");
    } else {
      set.mols.push_back(&mol);
      set.responses.push_back(value);
    }
  }
  return set;
}

}  // namespace VarimoKrige
