// Reading a molecule file one record at a time, so that a file of any size
// takes the memory of one record: SD files, SMILES files and CSV files with
// a SMILES column, gzip-compressed or not.
//
//   std::string error;
//   auto reader = Molkit::ZqMoleculeReader::Open("library.smi.gz", error);
//   Molkit::ZqMoleculeRecord record;
//   while (reader && reader->Next(record)) {
//     if (record.mol) ... else report(record.number, record.name, record.error);
//   }
//   if (reader && !reader->GetError().empty()) ...   // the file itself is damaged
//
// Every record counts, readable or not, so that record numbers match the
// file as a person reads it: an SD record is what ends with "$$$$", a
// SMILES or CSV record is a line that is neither blank, nor a comment
// ('#', SMILES files), nor the header. A record that cannot be used comes
// with its reason, never silently dropped nor merged with another:
// - a NUL or another control byte in a SMILES line or a CSV line;
// - a SMILES line with more fields than its header names;
// - an SD record that runs into the next molecule (its "$$$$" line is
//   missing): the two records it holds both come out unreadable, each named;
// - a molecule of more than ZqMaxMoleculeAtoms atoms (see molecule.h).
// A UTF-8 byte order mark at the start of a file is skipped.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Molkit {

struct ZqMoleculeRecord {
  std::size_t number = 0;          // from 1, every record of the file counted
  std::string name;                // as far as the record could be read
  std::unique_ptr<ZqMolBase> mol;  // null when the record cannot be used
  std::string error;               // why, when there is no molecule
};

class ZqMoleculeReader {
 public:
  // The reader of the file, its format by its extension
  // (ZqGetMoleculeFileFormat); null, with `error` set, when it cannot be
  // opened.
  static std::unique_ptr<ZqMoleculeReader> Open(const std::string& path, std::string& error);
  // The same in the given format, whatever the extension.
  static std::unique_ptr<ZqMoleculeReader> Open(const std::string& path, ZqMoleculeFileFormat format,
                                                std::string& error);
  // A reader of text in one of the formats, for the text of a file held in
  // memory (a partition of a larger file, say). `firstNumber` numbers the
  // first record; `header` is the header line of a SMILES or CSV file when
  // the text does not start with it (a later partition).
  static std::unique_ptr<ZqMoleculeReader> FromText(std::string text, ZqMoleculeFileFormat format,
                                                    std::size_t firstNumber = 1, const std::string& header = "");
  virtual ~ZqMoleculeReader() = default;

  // The next record; false at the end of the records, or when the file
  // cannot be read further (then GetError says why).
  virtual bool Next(ZqMoleculeRecord& record) = 0;
  // Why reading stopped before the end: a compressed file cut short or
  // corrupt, an error while reading. Empty otherwise.
  const std::string& GetError() const { return error_; }

 protected:
  std::string error_;
};

}  // namespace Molkit
