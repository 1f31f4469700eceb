#include "varimo/mol/mol_selection.h"

#include <algorithm>

#include "record_text.h"
#include "varimo/krige/parallel_for.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Varimo {
namespace {

// Records are read, fingerprinted and handed on this many at a time, the
// same for any number of threads, so that the selection's blocks are too.
constexpr std::size_t kChunk = 1024;

// The fingerprints of a chunk of molecules on threads; null where there is
// no molecule, it is not wanted, or the model cannot place it.
void Fingerprint(const ZqMolKrige& krige, const std::vector<const Molkit::ZqMolBase*>& mols, std::size_t first,
                 const std::vector<char>* wanted, unsigned int threads, std::vector<ZqVseprPropFP>& fps,
                 std::vector<const ZqVseprPropFP*>& chunk) {
  fps.assign(mols.size(), ZqVseprPropFP());
  chunk.assign(mols.size(), nullptr);
  std::vector<char> made(mols.size(), 0);
  krige_detail::ParallelFor(mols.size(), threads, [&](std::size_t i) {
    const std::size_t index = first + i;
    if (mols[i] == nullptr || (wanted && (index >= wanted->size() || !(*wanted)[index]))) return;
    made[i] = krige.MakeFingerprint(*mols[i], fps[i]);
  });
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (made[i]) chunk[i] = &fps[i];
  }
}

}  // namespace

ZqMolFilePool::ZqMolFilePool(const ZqMolModel& model, std::string path, unsigned int threads)
    : model_(model), path_(std::move(path)), threads_(threads) {}

bool ZqMolFilePool::Read(const Visit& visit, const std::vector<char>* wanted, std::string& error) {
  std::unique_ptr<Molkit::ZqMoleculeReader> reader = Molkit::ZqMoleculeReader::Open(path_, error);
  if (!reader) return false;
  names_.clear();
  unreadable_.clear();
  std::vector<Molkit::ZqMoleculeRecord> records;
  std::vector<const Molkit::ZqMolBase*> mols;
  std::vector<ZqVseprPropFP> fps;
  std::vector<const ZqVseprPropFP*> chunk;
  bool more = true;
  while (more) {
    records.clear();
    while (records.size() < kChunk) {
      Molkit::ZqMoleculeRecord record;
      if (!reader->Next(record)) {
        more = false;
        break;
      }
      records.push_back(std::move(record));
    }
    if (records.empty()) break;
    const std::size_t first = names_.size();
    mols.clear();
    for (const Molkit::ZqMoleculeRecord& record : records) {
      names_.push_back(record.name);
      if (!record.mol) unreadable_.emplace_back(record.number - 1, record.error);
      mols.push_back(record.mol.get());
    }
    Fingerprint(model_.GetKrige(), mols, first, wanted, threads_, fps, chunk);
    visit(first, chunk);
  }
  if (!reader->GetError().empty()) {
    error = path_ + ": " + reader->GetError();
    return false;
  }
  return true;
}

ZqMolListPool::ZqMolListPool(const ZqMolModel& model, std::vector<const Molkit::ZqMolBase*> mols,
                             unsigned int threads)
    : model_(model), mols_(std::move(mols)), threads_(threads) {}

bool ZqMolListPool::Read(const Visit& visit, const std::vector<char>* wanted, std::string& /*error*/) {
  std::vector<ZqVseprPropFP> fps;
  std::vector<const ZqVseprPropFP*> chunk;
  for (std::size_t first = 0; first < mols_.size(); first += kChunk) {
    const std::vector<const Molkit::ZqMolBase*> part(mols_.begin() + static_cast<std::ptrdiff_t>(first),
                                                     mols_.begin() + static_cast<std::ptrdiff_t>(
                                                                         std::min(mols_.size(), first + kChunk)));
    Fingerprint(model_.GetKrige(), part, first, wanted, threads_, fps, chunk);
    visit(first, chunk);
  }
  return true;
}

ZqSelection ZqSelectMolecules(const ZqMolModel& model, ZqPoolSource<ZqVseprPropFP>& pool,
                              const ZqSelectionOptions& options) {
  const ZqKrigeBase<ZqVseprPropFP>* engine = model.GetKrige().GetFingerprintModel();
  if (engine == nullptr) {
    ZqSelection selection;
    selection.error = "the model's distance is not on fingerprints, which batch selection needs";
    return selection;
  }
  if (!model.IsTrained()) {
    ZqSelection selection;
    selection.error = "the model is not trained";
    return selection;
  }
  return ZqSelectBatch(*engine, pool, options);
}

std::string ZqSelectionCsvHeader() { return "rank,row,name,prediction,sd,acquisition\n"; }

std::string ZqFormatSelectionCsv(std::size_t rank, const ZqSelectionPick& pick, const std::string& name) {
  using record_text::Number;
  return std::to_string(rank) + ',' + std::to_string(pick.index) + ',' + record_text::CsvField(name) + ',' +
         Number(pick.prediction) + ',' + Number(pick.sd) + ',' + Number(pick.acquisition) + '\n';
}

std::string ZqFormatSelectionSD(const Molkit::ZqMolBase& mol, std::size_t rank, const ZqSelectionPick& pick) {
  using record_text::Number;
  using record_text::SDField;
  std::string record = Molkit::ZqMolToSDRecord(mol);
  record.erase(record.rfind("$$$$"));
  record += SDField("rank", std::to_string(rank)) + SDField("row", std::to_string(pick.index)) +
            SDField("prediction", Number(pick.prediction)) + SDField("sd", Number(pick.sd)) +
            SDField("acquisition", Number(pick.acquisition));
  return record + "$$$$\n";
}

}  // namespace Varimo
