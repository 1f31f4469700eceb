// The pieces of the molecule file formats that the readers share, for the
// library's own sources.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule.h"

namespace Molkit {

// One SD record from its lines (without the "$$$$"): the mol block up to
// "M  END", then the data fields "> <TAG>" with their value lines up to a
// blank line. Null, with `error` set, when it cannot be read or holds more
// atoms than ZqMaxMoleculeAtoms.
std::unique_ptr<ZqMolBase> ZqMolFromRecordLines(const std::vector<std::string>& lines, std::string& error);

// Whether the line is the counts line of a mol block (V2000 or V3000).
bool ZqIsCountsLine(const std::string& line);

// The columns of a SMILES file's line, split at blanks, tabs and commas.
std::vector<std::string> ZqSplitSmilesColumns(const std::string& line);

std::string ZqLowerCase(std::string text);

}  // namespace Molkit
