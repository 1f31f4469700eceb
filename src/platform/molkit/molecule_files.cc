#include "varimo/platform/molkit/molecule_files.h"

#include <GraphMol/FileParsers/FileParsers.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <exception>
#include <sstream>

#include "mol_graph.h"
#include "varimo/platform/corvane/strings.h"

namespace Molkit {

namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

// The text of the file, decompressed when it is gzip-compressed (zlib reads
// plain files as they are). False when it cannot be opened or read.
bool ReadWholeFile(const std::string& path, std::string& text) {
  gzFile file = gzopen(path.c_str(), "rb");
  if (!file) return false;
  text.clear();
  char buffer[1 << 16];
  int read = 0;
  while ((read = gzread(file, buffer, sizeof buffer)) > 0) text.append(buffer, static_cast<std::size_t>(read));
  // A compressed stream cut short ends like a whole one, with the error
  // kept aside.
  int error = Z_OK;
  gzerror(file, &error);
  const bool complete = read == 0 && error == Z_OK;
  gzclose(file);
  return complete;
}

std::string Describe(std::size_t record, const std::string& name) {
  std::string text = "record " + std::to_string(record);
  if (!name.empty()) text += " (" + name + ")";
  return text;
}

// One SD record from its lines: the mol block up to "M  END", then the data
// fields "> <TAG>" with their value lines up to a blank line.
std::unique_ptr<ZqMolBase> RecordToMol(const std::vector<std::string>& lines, std::string& error) {
  const auto end =
      std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("M  END", 0) == 0; });
  if (end == lines.end()) {
    error = "no \"M  END\" line";
    return nullptr;
  }
  std::string block;
  for (auto it = lines.begin(); it != end + 1; ++it) block += *it + "\n";
  std::unique_ptr<RDKit::RWMol> parsed;
  try {
    parsed.reset(RDKit::MolBlockToMol(block, true, true));
  } catch (const std::exception& e) {
    error = std::string("cannot read the mol block: ") + e.what();
    return nullptr;
  }
  if (!parsed) {
    error = "cannot read the mol block";
    return nullptr;
  }
  auto graph = std::make_unique<ZqMolGraph>();
  graph->mol = *parsed;
  std::unique_ptr<ZqMolBase> mol = ZqMakeMol(std::move(graph));
  mol->SetName(lines.front());
  for (auto it = end + 1; it != lines.end(); ++it) {
    if (it->empty() || it->front() != '>') continue;
    // "> <TAG>" may go on after the tag ("> <TAG> (1)"): the tag ends at the
    // first '>' after its '<'.
    const std::size_t open = it->find('<');
    const std::size_t close = open == std::string::npos ? std::string::npos : it->find('>', open);
    if (close == std::string::npos) continue;
    const std::string tag = it->substr(open + 1, close - open - 1);
    std::string value;
    for (++it; it != lines.end() && !it->empty(); ++it) value += (value.empty() ? "" : "\n") + *it;
    mol->SetSDData(tag, value);
    if (it == lines.end()) break;
  }
  return mol;
}

std::vector<std::string> SplitColumns(const std::string& line) {
  std::vector<std::string> columns;
  std::string current;
  for (char c : line) {
    if (c == ' ' || c == '\t' || c == ',') {
      if (!current.empty()) columns.push_back(current);
      current.clear();
    } else {
      current += c;
    }
  }
  if (!current.empty()) columns.push_back(current);
  return columns;
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

}  // namespace

std::unique_ptr<ZqMolBase> ZqMolFromMolBlock(const std::string& block, std::string* error) {
  std::vector<std::string> lines = Lines(block);
  while (!lines.empty() && lines.back().rfind("$$$$", 0) == 0) lines.pop_back();
  std::string message;
  std::unique_ptr<ZqMolBase> mol = lines.empty() ? nullptr : RecordToMol(lines, message);
  if (!mol && error) *error = lines.empty() ? "empty mol block" : message;
  return mol;
}

void ZqReadSDText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::vector<std::string> record;
  std::size_t number = 0;
  auto finish = [&] {
    const bool blank = std::all_of(record.begin(), record.end(), [](const std::string& l) {
      return l.find_first_not_of(" \t") == std::string::npos;
    });
    if (!blank) {
      ++number;
      std::string error;
      if (std::unique_ptr<ZqMolBase> mol = RecordToMol(record, error)) {
        mols.push_back(std::move(mol));
        if (records) records->push_back(number);
      } else {
        errors.push_back(Describe(number, record.front()) + ": " + error);
      }
    }
    record.clear();
  };
  for (std::string& line : Lines(text)) {
    if (line.rfind("$$$$", 0) == 0) {
      finish();
    } else {
      record.push_back(std::move(line));
    }
  }
  finish();  // a last record without its "$$$$"
}

bool ZqReadSDFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  ZqReadSDText(text, mols, errors, records);
  return true;
}

void ZqReadSmilesText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::vector<std::string> names;
  std::size_t number = 0;
  bool first = true;
  for (const std::string& line : Lines(text)) {
    const std::vector<std::string> columns = SplitColumns(line);
    if (columns.empty() || columns.front().front() == '#') continue;
    if (first && Lower(columns.front()) == "smiles") {
      names = columns;
      first = false;
      continue;
    }
    first = false;
    ++number;
    const std::string name = columns.size() > 1 ? columns[1] : std::string();
    std::string error;
    std::unique_ptr<ZqMolBase> mol = ZqMolFromSmiles(columns.front(), &error);
    if (!mol) {
      errors.push_back(Describe(number, name) + ": " + error);
      continue;
    }
    mol->SetName(name);
    for (std::size_t c = 2; c < columns.size(); ++c) {
      mol->SetSDData(c < names.size() ? names[c] : "column " + std::to_string(c + 1), columns[c]);
    }
    mols.push_back(std::move(mol));
    if (records) records->push_back(number);
  }
}

bool ZqReadSmilesFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  ZqReadSmilesText(text, mols, errors, records);
  return true;
}

void ZqReadSmilesCsvText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  auto fields = [](const std::string& line) {
    std::vector<std::string> values;
    Corvane::ZqStringTokenizeQuoted(values, line, ",", "\"", false);
    for (std::string& value : values) value = Corvane::ZqStringStripWhiteSpace(value);
    return values;
  };
  const std::vector<std::string> lines = Lines(text);
  if (lines.empty()) return;
  const std::vector<std::string> header = fields(lines.front());
  std::size_t smiles = header.size();
  std::size_t name = header.size();
  for (std::size_t c = 0; c < header.size(); ++c) {
    const std::string lower = Lower(header[c]);
    if (lower == "smiles" && smiles == header.size()) smiles = c;
    if ((lower == "name" || lower == "id") && name == header.size()) name = c;
  }
  std::size_t number = 0;
  for (std::size_t l = 1; l < lines.size(); ++l) {
    if (lines[l].find_first_not_of(" \t") == std::string::npos) continue;
    ++number;
    const std::vector<std::string> values = fields(lines[l]);
    const std::string molName = name < values.size() ? values[name] : std::to_string(number);
    std::string error = "no SMILES";
    std::unique_ptr<ZqMolBase> mol;
    if (smiles < values.size() && !values[smiles].empty()) mol = ZqMolFromSmiles(values[smiles], &error);
    if (!mol) {
      errors.push_back(Describe(number, molName) + ": " + error);
      continue;
    }
    mol->SetName(molName);
    for (std::size_t c = 0; c < header.size() && c < values.size(); ++c) {
      if (c != smiles && c != name) mol->SetSDData(header[c], values[c]);
    }
    mols.push_back(std::move(mol));
    if (records) records->push_back(number);
  }
}

bool ZqReadSmilesCsvFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  ZqReadSmilesCsvText(text, mols, errors, records);
  return true;
}

ZqMoleculeFileFormat ZqGetMoleculeFileFormat(const std::string& path) {
  const std::string lower = Lower(path);
  auto endsWith = [&](const std::string& suffix) {
    return lower.size() >= suffix.size() && lower.compare(lower.size() - suffix.size(), suffix.size(), suffix) == 0;
  };
  if (endsWith(".sdf") || endsWith(".sdf.gz")) return ZqMoleculeFileFormat::SD;
  if (endsWith(".csv") || endsWith(".csv.gz")) return ZqMoleculeFileFormat::SmilesCsv;
  return ZqMoleculeFileFormat::Smiles;
}

bool ZqReadMoleculeFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                        std::vector<std::string>& errors, std::vector<std::size_t>* records) {
  switch (ZqGetMoleculeFileFormat(path)) {
    case ZqMoleculeFileFormat::SD:
      return ZqReadSDFile(path, mols, errors, records);
    case ZqMoleculeFileFormat::SmilesCsv:
      return ZqReadSmilesCsvFile(path, mols, errors, records);
    case ZqMoleculeFileFormat::Smiles:
      break;
  }
  return ZqReadSmilesFile(path, mols, errors, records);
}

std::string ZqMolToSDRecord(const ZqMolBase& mol) {
  std::string block = RDKit::MolToMolBlock(mol.GetGraph().mol);
  // The first line of a mol block is the name: ours, whatever RDKit kept.
  block = mol.GetName() + block.substr(std::min(block.find('\n'), block.size()));
  for (const auto& [tag, text] : mol.GetSDDataFields()) block += ">  <" + tag + ">\n" + text + "\n\n";
  return block + "$$$$\n";
}

}  // namespace Molkit
