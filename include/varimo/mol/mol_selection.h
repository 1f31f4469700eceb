// Choosing the next molecules to make and test: batch selection
// (varimo/krige/batch_selection.h) over a pool of molecules with a trained
// molecule model, the pool read from a file as often as the selection
// needs (so a pool of any size takes little memory) or held in memory.
//
//   Varimo::ZqMolFilePool pool(model, "enumerated.smi.gz", 4);
//   Varimo::ZqSelectionOptions options;
//   options.picks = 20;
//   options.batch = Varimo::ZqBatchKind::Believer;
//   Varimo::ZqSelection chosen = Varimo::ZqSelectMolecules(model, pool, options);
//   for (std::size_t r = 0; r < chosen.picks.size(); ++r)
//     out << Varimo::ZqFormatSelectionCsv(r + 1, chosen.picks[r], pool.GetName(chosen.picks[r].index));
//
// The members of the pool are the molecules' fingerprints with their drift
// under the model's options; a record that cannot be read, a molecule
// without heavy atoms or without the drift fields cannot be picked.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "varimo/krige/batch_selection.h"
#include "varimo/mol/krige_vsepr.h"
#include "varimo/mol/mol_model.h"
#include "varimo/platform/molkit/molecule_reader.h"

namespace Varimo {

// A pool of the records of a molecule file, re-read from its start at
// each read. Fingerprints are made on `threads` threads.
class ZqMolFilePool final : public ZqPoolSource<ZqVseprPropFP> {
 public:
  ZqMolFilePool(const ZqMolModel& model, std::string path, unsigned int threads);
  bool Read(const Visit& visit, const std::vector<char>* wanted, std::string& error) override;

  // After a read: the number of records, each record's name, and the
  // records that could not be read, by row (from 0) with the reason.
  std::size_t GetNumRecords() const { return names_.size(); }
  const std::string& GetName(std::size_t row) const { return names_[row]; }
  const std::vector<std::pair<std::size_t, std::string>>& GetUnreadable() const { return unreadable_; }

 private:
  const ZqMolModel& model_;
  std::string path_;
  unsigned int threads_;
  std::vector<std::string> names_;
  std::vector<std::pair<std::size_t, std::string>> unreadable_;
};

// A pool of molecules in memory, in order; null entries cannot be picked.
class ZqMolListPool final : public ZqPoolSource<ZqVseprPropFP> {
 public:
  ZqMolListPool(const ZqMolModel& model, std::vector<const Molkit::ZqMolBase*> mols, unsigned int threads);
  bool Read(const Visit& visit, const std::vector<char>* wanted, std::string& error) override;

 private:
  const ZqMolModel& model_;
  std::vector<const Molkit::ZqMolBase*> mols_;
  unsigned int threads_;
};

// The picks of the trained model from the pool; an error for a model on a
// caller's distance, which has no fingerprints to select on.
ZqSelection ZqSelectMolecules(const ZqMolModel& model, ZqPoolSource<ZqVseprPropFP>& pool,
                              const ZqSelectionOptions& options);

// The CSV header "rank,row,name,prediction,sd,acquisition" and one line per
// pick, rank from 1, numbers with 17 significant digits, the name quoted as
// CSV needs.
std::string ZqSelectionCsvHeader();
std::string ZqFormatSelectionCsv(std::size_t rank, const ZqSelectionPick& pick, const std::string& name);
// The pick's record of the pool as an SD record with its own data fields
// and "rank", "row", "prediction", "sd" and "acquisition".
std::string ZqFormatSelectionSD(const Molkit::ZqMolBase& mol, std::size_t rank, const ZqSelectionPick& pick);

}  // namespace Varimo
