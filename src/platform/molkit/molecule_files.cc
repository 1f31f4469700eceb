#include "varimo/platform/molkit/molecule_files.h"

#include <GraphMol/FileParsers/FileParsers.h>

#include <algorithm>

#include "mol_graph.h"
#include "molecule_text.h"
#include "varimo/platform/molkit/molecule_reader.h"

namespace Molkit {
namespace {

std::string Describe(const ZqMoleculeRecord& record) {
  std::string text = "record " + std::to_string(record.number);
  if (!record.name.empty()) text += " (" + record.name + ")";
  return text;
}

// Every record of the reader into the three lists.
void ReadAll(ZqMoleculeReader& reader, std::vector<std::unique_ptr<ZqMolBase>>& mols,
             std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  ZqMoleculeRecord record;
  while (reader.Next(record)) {
    if (!record.mol) {
      errors.push_back(Describe(record) + ": " + record.error);
      continue;
    }
    mols.push_back(std::move(record.mol));
    if (records) records->push_back(record.number);
  }
}

void ReadText(const std::string& text, ZqMoleculeFileFormat format, std::vector<std::unique_ptr<ZqMolBase>>& mols,
              std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  ReadAll(*ZqMoleculeReader::FromText(text, format), mols, errors, records);
}

// False when the file cannot be opened, or is damaged (a compressed file
// cut short); what was read before stays read.
bool ReadFile(const std::string& path, ZqMoleculeFileFormat format, std::vector<std::unique_ptr<ZqMolBase>>& mols,
              std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::string error;
  // The format is the caller's, whatever the extension says.
  std::unique_ptr<ZqMoleculeReader> reader = ZqMoleculeReader::Open(path, format, error);
  if (!reader) return false;
  ReadAll(*reader, mols, errors, records);
  return reader->GetError().empty();
}

}  // namespace

std::unique_ptr<ZqMolBase> ZqMolFromMolBlock(const std::string& block, std::string* error) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < block.size()) {
    std::size_t end = std::min(block.find('\n', at), block.size());
    std::string line = block.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    at = end + 1;
  }
  while (!lines.empty() && lines.back().rfind("$$$$", 0) == 0) lines.pop_back();
  std::string message;
  std::unique_ptr<ZqMolBase> mol = lines.empty() ? nullptr : ZqMolFromRecordLines(lines, message);
  if (!mol && error) *error = lines.empty() ? "empty mol block" : message;
  return mol;
}

void ZqReadSDText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  ReadText(text, ZqMoleculeFileFormat::SD, mols, errors, records);
}

bool ZqReadSDFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  return ReadFile(path, ZqMoleculeFileFormat::SD, mols, errors, records);
}

void ZqReadSmilesText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  ReadText(text, ZqMoleculeFileFormat::Smiles, mols, errors, records);
}

bool ZqReadSmilesFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  return ReadFile(path, ZqMoleculeFileFormat::Smiles, mols, errors, records);
}

void ZqReadSmilesCsvText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  ReadText(text, ZqMoleculeFileFormat::SmilesCsv, mols, errors, records);
}

bool ZqReadSmilesCsvFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  return ReadFile(path, ZqMoleculeFileFormat::SmilesCsv, mols, errors, records);
}

ZqMoleculeFileFormat ZqGetMoleculeFileFormat(const std::string& path) {
  const std::string lower = ZqLowerCase(path);
  auto endsWith = [&](const std::string& suffix) {
    return lower.size() >= suffix.size() && lower.compare(lower.size() - suffix.size(), suffix.size(), suffix) == 0;
  };
  if (endsWith(".sdf") || endsWith(".sdf.gz") || endsWith(".sd") || endsWith(".sd.gz")) return ZqMoleculeFileFormat::SD;
  if (endsWith(".csv") || endsWith(".csv.gz")) return ZqMoleculeFileFormat::SmilesCsv;
  return ZqMoleculeFileFormat::Smiles;
}

bool ZqReadMoleculeFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                        std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  return ReadFile(path, ZqGetMoleculeFileFormat(path), mols, errors, records);
}

std::string ZqMolToSDRecord(const ZqMolBase& mol) {
  std::string block = RDKit::MolToMolBlock(mol.GetGraph().mol);
  // The first line of a mol block is the name: ours, whatever RDKit kept.
  block = mol.GetName() + block.substr(std::min(block.find('\n'), block.size()));
  for (const auto& [tag, text] : mol.GetSDDataFields()) block += ">  <" + tag + ">\n" + text + "\n\n";
  return block + "$$$$\n";
}

}  // namespace Molkit
