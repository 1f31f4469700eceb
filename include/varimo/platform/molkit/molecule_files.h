// Reading molecules from SD files and SMILES files.
//
//   std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
//   std::vector<std::string> errors;
//   if (!Molkit::ZqReadSDFile("bzr.sdf", mols, errors)) ...   // the file could not be read
//   for (const std::string& e : errors) ...                    // records left out, and why
//
// A record that cannot be read is left out with a message naming its
// number (from 1) and, when known, its name; the others are read. Files
// may be gzip-compressed (bzr.sdf.gz): they are read through zlib.
//
// RDKit's logs are left as the host has set them: RDKit also writes its
// reasons for an unreadable record there, where a host has them on (with
// RDLog::InitLogs, as RDKit's Python module does), and nowhere otherwise.
// Readers may run side by side on different threads.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule.h"

namespace Molkit {

// Every record of an SD file: its mol block and all its data fields, kept
// as SD data in record order. False when the file cannot be opened, or a
// compressed one is corrupt. With `records`, the number (from 1) of each
// molecule's record, parallel to `mols`: where the left-out ones were.
bool ZqReadSDFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);
// The same from the text of an SD file.
void ZqReadSDText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                  std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);

// A SMILES file: per line a SMILES, then a name, then further columns,
// separated by blanks, tabs or commas. A first line whose first column is
// "smiles" (any case) is a header naming the columns; the further columns
// are kept as SD data under those names, or under "column 3", "column 4",
// ... without a header. Blank lines and lines starting with '#' are
// skipped. False when the file cannot be opened.
bool ZqReadSmilesFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);
void ZqReadSmilesText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                      std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);

// A CSV file with a header and a "smiles" column (any case): its "name" or
// "id" column names the molecules (the record number names those without),
// and every other column becomes an SD data field under its header name.
// Fields may be quoted; blank lines are skipped. A record without a SMILES
// or with one RDKit cannot read is left out with a message. False when the
// file cannot be read.
bool ZqReadSmilesCsvFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);
void ZqReadSmilesCsvText(const std::string& text, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                         std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);

// The readers by the file's extension, in any case: SD files (.sdf,
// .sdf.gz), CSV files (.csv, .csv.gz), and SMILES files (anything else).
enum class ZqMoleculeFileFormat { SD, SmilesCsv, Smiles };
ZqMoleculeFileFormat ZqGetMoleculeFileFormat(const std::string& path);
bool ZqReadMoleculeFile(const std::string& path, std::vector<std::unique_ptr<ZqMolBase>>& mols,
                        std::vector<std::string>& errors, std::vector<std::size_t>* records = nullptr);

// An SD record of the molecule: its mol block (RDKit's writer, the name on
// the first line) and its SD data fields, ending with "$$$$".
std::string ZqMolToSDRecord(const ZqMolBase& mol);

}  // namespace Molkit
