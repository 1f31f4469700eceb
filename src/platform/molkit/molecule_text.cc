#include "molecule_text.h"

#include <GraphMol/FileParsers/FileParsers.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "mol_graph.h"
#include "varimo/platform/corvane/strings.h"

namespace Molkit {
namespace {

// The number of atoms the counts line of a mol block declares; 0 when it
// does not say.
std::size_t DeclaredAtoms(const std::string& counts) {
  if (counts.find("V3000") != std::string::npos) return 0;  // counted in its own block, see below
  return static_cast<std::size_t>(std::strtoul(counts.substr(0, 3).c_str(), nullptr, 10));
}

// Whether a V2000 atom block (the lines after the counts line, up to
// `end`) or a V3000 one has a hydrogen atom.
bool HasHydrogenAtom(const std::vector<std::string>& lines, std::ptrdiff_t end) {
  const std::size_t last = static_cast<std::size_t>(end);
  if (lines.size() < 4) return false;
  if (lines[3].find("V3000") != std::string::npos) {
    for (std::size_t i = 4; i < last; ++i) {
      // "M  V30 index symbol x y z ..."
      if (lines[i].rfind("M  V30 ", 0) != 0) continue;
      char symbol[8] = {};
      int index = 0;
      if (std::sscanf(lines[i].c_str() + 7, "%d %7s", &index, symbol) == 2 && std::string(symbol) == "H") return true;
    }
    return false;
  }
  const std::size_t atoms = DeclaredAtoms(lines[3]);
  for (std::size_t i = 4; i < 4 + atoms && i < last; ++i) {
    // The symbol is in columns 32 to 34.
    if (lines[i].size() > 32 && Corvane::ZqStringStripWhiteSpace(lines[i].substr(31, 3)) == "H") return true;
  }
  return false;
}

}  // namespace

bool ZqIsCountsLine(const std::string& line) {
  const std::size_t end = line.find_last_not_of(" \t");
  if (end == std::string::npos || end < 4) return false;
  const std::string tail = line.substr(end - 4, 5);
  return tail == "V2000" || tail == "V3000";
}

// One SD record from its lines: the mol block up to "M  END", then the data
// fields "> <TAG>" with their value lines up to a blank line.
std::unique_ptr<ZqMolBase> ZqMolFromRecordLines(const std::vector<std::string>& lines, std::string& error) {
  const auto end =
      std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("M  END", 0) == 0; });
  if (end == lines.end()) {
    error = "no \"M  END\" line";
    return nullptr;
  }
  // RDKit's reading of a large molecule grows faster than its size: the
  // atoms are counted first (V2000 counts line, V3000 COUNTS line).
  std::size_t atoms = lines.size() > 3 ? DeclaredAtoms(lines[3]) : 0;
  for (auto it = lines.begin(); it != end && atoms == 0; ++it) {
    if (it->rfind("M  V30 COUNTS ", 0) == 0) atoms = std::strtoul(it->c_str() + 14, nullptr, 10);
  }
  if (atoms > ZqMaxMoleculeAtoms) {
    error = "too large: " + std::to_string(atoms) + " atoms, at most " + std::to_string(ZqMaxMoleculeAtoms);
    return nullptr;
  }
  std::string block;
  for (auto it = lines.begin(); it != end + 1; ++it) block += *it + "\n";
  std::unique_ptr<RDKit::RWMol> parsed;
  try {
    if (HasHydrogenAtom(lines, end - lines.begin())) {
      // Read with the hydrogens, which are then taken out with the heavy
      // atoms' places in the record kept.
      parsed.reset(RDKit::MolBlockToMol(block, true, false));
      if (parsed) ZqRemoveHydrogensKeepingRecordIndices(*parsed);
    } else {
      parsed.reset(RDKit::MolBlockToMol(block, true, true));
    }
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

std::vector<std::string> ZqSplitSmilesColumns(const std::string& line) {
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

std::string ZqLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

}  // namespace Molkit
