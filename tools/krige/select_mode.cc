// varimo-krige select: the next molecules to make from a pool, by an
// acquisition function alone or as a batch whose picks account for each
// other. The pool is read as often as the selection needs, never held whole.
#include <optional>

#include "messages.h"
#include "mol_model_source.h"
#include "mol_modes.h"
#include "varimo/mol/mol_selection.h"
#include "varimo/platform/molkit/molecule_files.h"
#include "varimo/platform/molkit/molecule_reader.h"
#include "varimo/platform/molkit/output_file.h"

namespace VarimoKrige {
namespace {

Varimo::ZqSelectionOptions SelectionOptionsFrom(const Arguments& args) {
  const ChoiceArguments& c = args.choice;
  Varimo::ZqSelectionOptions options;
  options.batch = c.batch.empty() ? Varimo::ZqBatchKind::Top : *Varimo::ZqBatchKindNamed(c.batch);
  const std::string acquisition = !c.acquisition.empty() ? c.acquisition : c.batch == "thompson" ? "thompson" : "ei";
  options.acquisition.kind = *Varimo::ZqAcquisitionKindNamed(acquisition);
  if (c.kappa) options.acquisition.kappa = *c.kappa;
  if (c.xi) options.acquisition.xi = *c.xi;
  options.acquisition.minimize = c.minimize;
  options.picks = c.picks;
  if (c.candidates) options.candidates = *c.candidates;
  options.seed = args.seed;
  options.threads = args.threads;
  options.excludeTraining = c.excludeTraining;
  options.allowDuplicates = c.allowDuplicates;
  return options;
}

// The picks' records of an SD pool, read once more, with their fields.
bool WriteSDPicks(const Arguments& args, const Varimo::ZqSelection& chosen, Molkit::ZqOutputFile& out,
                  std::string& error) {
  std::vector<std::size_t> rankOf(chosen.poolSize, 0);
  for (std::size_t r = 0; r < chosen.picks.size(); ++r) rankOf[chosen.picks[r].index] = r + 1;
  std::vector<std::string> records(chosen.picks.size());
  std::unique_ptr<Molkit::ZqMoleculeReader> reader = Molkit::ZqMoleculeReader::Open(args.choice.poolPath, error);
  if (!reader) return false;
  Molkit::ZqMoleculeRecord record;
  for (std::size_t row = 0; reader->Next(record); ++row) {
    if (row < rankOf.size() && rankOf[row] > 0 && record.mol) {
      const std::size_t rank = rankOf[row];
      records[rank - 1] = Varimo::ZqFormatSelectionSD(*record.mol, rank, chosen.picks[rank - 1]);
    }
  }
  for (const std::string& text : records) out.Write(text);
  return true;
}

}  // namespace

int RunSelection(const Arguments& args) {
  std::string error;
  if (!CheckPathsDiffer(args, error)) return Fail(error);
  const bool sd = IsSDOutput(args.outPath);
  if (sd && Molkit::ZqGetMoleculeFileFormat(args.choice.poolPath) != Molkit::ZqMoleculeFileFormat::SD) {
    return Fail("--out " + args.outPath + " is an SD file, which needs an SD pool, not " + args.choice.poolPath);
  }
  Molkit::ZqOutputFile out;
  if (!out.Open(args.outPath, error)) return Fail(error);
  int status = kBadInput;
  std::optional<Varimo::ZqMolModel> model = ObtainModel(args, status);
  if (!model) return status;
  PrintKernels(*model);

  Varimo::ZqMolFilePool pool(*model, args.choice.poolPath, args.threads);
  const Varimo::ZqSelection chosen = Varimo::ZqSelectMolecules(*model, pool, SelectionOptionsFrom(args));
  for (const auto& [row, reason] : pool.GetUnreadable()) {
    Say(DescribeRow(row, pool.GetName(row)) + ": " + reason + "; it cannot be picked");
  }
  if (!chosen.Ok()) return Fail(args.choice.poolPath + ": " + chosen.error + "; nothing written");
  if (sd) {
    if (!WriteSDPicks(args, chosen, out, error)) return Fail(error);
  } else {
    out.Write(Varimo::ZqSelectionCsvHeader());
    for (std::size_t r = 0; r < chosen.picks.size(); ++r) {
      out.Write(Varimo::ZqFormatSelectionCsv(r + 1, chosen.picks[r], pool.GetName(chosen.picks[r].index)));
    }
  }
  return out.Commit(error) ? 0 : Fail(error);
}

}  // namespace VarimoKrige
