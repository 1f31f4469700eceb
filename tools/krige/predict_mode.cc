// varimo-krige on molecules: train or load a model, save it, and predict a
// query file of any size, a chunk of records at a time, the rows written as
// they come. Every output goes to a scratch file that replaces the target
// only when the whole run succeeded.
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <optional>

#include "messages.h"
#include "mol_model_source.h"
#include "mol_modes.h"
#include "progress.h"
#include "varimo/mol/krige_report.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_screen.h"
#include "varimo/mol/mol_uncertainty.h"
#include "varimo/platform/molkit/output_file.h"

namespace VarimoKrige {
namespace {

// Records read, predicted and written at a time: enough to keep the
// threads busy, few enough that memory stays small.
std::size_t ChunkSize(unsigned int threads) { return std::max<std::size_t>(256, 32 * std::size_t{threads}); }

// The outputs of the run, all opened before anything is read so that a
// path that cannot be written stops the run before it costs anything, and
// committed together at the end.
class Outputs {
 public:
  bool Open(const Arguments& args, std::string& error) {
    if (!args.outPath.empty() && !out_.Open(args.outPath, error)) return false;
    if (!args.contributionsPath.empty() && !contributions_.Open(args.contributionsPath, error)) return false;
    if (!args.savePath.empty() && !model_.Open(args.savePath, error)) return false;
    return true;
  }
  Molkit::ZqOutputFile& Out() { return out_; }
  Molkit::ZqOutputFile& Contributions() { return contributions_; }
  Molkit::ZqOutputFile& Model() { return model_; }
  bool Commit(std::string& error) {
    for (Molkit::ZqOutputFile* file : {&model_, &out_, &contributions_}) {
      if (file->IsOpen() && !file->Commit(error)) return false;
    }
    return true;
  }

 private:
  Molkit::ZqOutputFile out_, contributions_, model_;
};

// The report images: DIR/ROW.EXT for every valid prediction, ROW as in
// PRED.csv. A row that fails removes the image an earlier run left under
// its name, so that the folder never shows a prediction this run did not
// make.
class Reports {
 public:
  Reports(const Arguments& args, const Varimo::ZqMolModel& model)
      : dir_(args.reportDir), extension_(args.reportFormat.empty() ? "png" : args.reportFormat) {
    const std::string name = args.responseName.empty() ? model.GetSettings().responseName : args.responseName;
    // Without a name (a model saved without one), the options' default
    // stands for it.
    if (!name.empty()) options_.SetResponseName(name);
    // Coloured against the training mean, the atoms agree with --contributions.
    options_.SetContributionBaseline(model.GetMeanResponse());
  }
  bool Enabled() const { return !dir_.empty(); }
  // The interval and the domain as two more entries of every report.
  void ShowUncertainty(const Varimo::ZqConformalIntervals* intervals, double alpha,
                       const Varimo::ZqApplicabilityDomain* domain) {
    intervals_ = intervals;
    domain_ = domain;
    alpha_ = alpha;
    Varimo::ZqPushReportUncertainty(options_, alpha, intervals != nullptr, domain != nullptr);
  }
  std::string PathOf(std::size_t row) const {
    return (std::filesystem::path(dir_) / (std::to_string(row) + '.' + extension_)).string();
  }
  // Drawn on the calling thread: Cairo and RDKit's depiction are not relied
  // on to be thread-safe. False when the image cannot be written. The row's
  // output must be written before, as the interval and domain entries
  // travel to the report as data fields of the row's molecule.
  bool Draw(Varimo::ZqMolScreenRow& row) {
    Molkit::ZqMolBase& mol = *row.record.mol;
    if (intervals_ || domain_) {
      Varimo::ZqSetReportUncertainty(mol, row.prediction.result, options_, intervals_, alpha_, domain_);
    }
    if (mol.GetName().empty()) {
      options_.ClearTitle();
    } else {
      options_.SetTitle(mol.GetName());
    }
    return Varimo::ZqKrigeRenderReport(PathOf(row.row), row.prediction.result, mol, options_);
  }
  void RemoveStale(std::size_t row) const {
    std::error_code ignored;
    std::filesystem::remove(PathOf(row), ignored);
  }

 private:
  std::string dir_;
  std::string extension_;
  Varimo::ZqKrigeReportOptions options_;
  const Varimo::ZqConformalIntervals* intervals_ = nullptr;
  const Varimo::ZqApplicabilityDomain* domain_ = nullptr;
  double alpha_ = 0.1;
};

// The report folder, made when missing; an error when it cannot be made or
// written, said once before anything else happens.
bool PrepareReportDir(const std::string& dir, std::string& error) {
  if (dir.empty()) return true;
  std::error_code failure;
  std::filesystem::create_directories(dir, failure);
  if (failure) {
    error = "cannot create the report directory " + dir + ": " + failure.message();
    return false;
  }
  if (access(dir.c_str(), W_OK) != 0) {
    error = "cannot write into the report directory " + dir;
    return false;
  }
  return true;
}

std::string ContributionLines(const Varimo::ZqMolScreenRow& row) {
  std::string lines;
  const Molkit::ZqMolBase& mol = *row.record.mol;
  const std::vector<double>& contributions = row.prediction.contributions;
  for (std::size_t a = 0; a < contributions.size(); ++a) {
    if (Molkit::ZqIsHydrogen(mol.GetAtom(a))) continue;
    lines += std::to_string(row.row) + ',' + std::to_string(mol.GetRecordAtomIndex(a)) + ',' +
             Number(contributions[a]) + '\n';
  }
  return lines;
}

}  // namespace

int RunMolecules(const Arguments& args) {
  std::string error;
  if (!CheckPathsDiffer(args, error)) return Fail(error);
  Outputs outputs;
  if (!outputs.Open(args, error)) return Fail(error);
  if (!PrepareReportDir(args.reportDir, error)) return Fail(error);
  int status = kBadInput;
  std::optional<Varimo::ZqMolModel> model = ObtainModel(args, status);
  if (!model) return status;
  PrintKernels(*model);
  if (!args.savePath.empty()) outputs.Model().Write(Varimo::ZqWriteMolModel(*model));
  if (args.predictPath.empty()) return outputs.Commit(error) ? 0 : Fail(error);

  std::unique_ptr<Molkit::ZqMoleculeReader> reader = Molkit::ZqMoleculeReader::Open(args.predictPath, error);
  if (!reader) return Fail(error);
  Varimo::ZqMolScreenOutput output;
  output.sd = IsSDOutput(args.outPath);
  output.threshold = args.threshold;
  output.thresholdText = args.thresholdText;
  // Intervals calibrated on the model's own cross-validation residuals,
  // and the domain of its training molecules, when asked.
  std::optional<Varimo::ZqConformalIntervals> intervals;
  std::optional<Varimo::ZqApplicabilityDomain> domain;
  if (args.choice.intervalAlpha) {
    intervals = Varimo::ZqCalibrateMolModel(*model, args.folds, args.seed, args.threads);
    if (!intervals->IsFitted()) {
      return Fail("--interval needs held-out predictions of the model's " + std::to_string(model->GetNumRecords()) +
                  " training molecules in " + std::to_string(args.folds) + " folds, and none could be made");
    }
    output.intervals = &*intervals;
    output.alpha = *args.choice.intervalAlpha;
  }
  if (args.choice.domain) {
    domain = Varimo::ZqMolModelDomain(*model);
    output.domain = &*domain;
  }
  if (!args.contributionsPath.empty()) outputs.Contributions().Write("row,atom,contribution\n");
  Reports reports(args, *model);
  if (output.intervals || output.domain) reports.ShowUncertainty(output.intervals, output.alpha, output.domain);
  Varimo::ZqMolScreenOptions options;
  options.threads = args.threads;
  options.chunkSize = ChunkSize(args.threads);
  options.contributions = !args.contributionsPath.empty();
  options.fallbackKernels = args.fallbackKernels;
  options.meanOnly = args.noVariance;
  if (args.fullVariance) options.variance = Varimo::ZqMolVariance::kFull;
  Progress progress(0, !args.quiet);
  const Varimo::ZqMolScreenSummary summary = Varimo::ZqScreenMoleculesInto(
      *model, *reader, options, output, outputs.Out(), [&](std::vector<Varimo::ZqMolScreenRow>& chunk) {
        std::string contributions;
        for (Varimo::ZqMolScreenRow& row : chunk) {
          if (!row.failure.empty()) {
            Say(DescribeRow(row.row, row.record.name) + ": " + row.failure);
            if (reports.Enabled()) reports.RemoveStale(row.row);
            continue;
          }
          if (!row.warning.empty()) Say(DescribeRow(row.row, row.record.name) + ": " + row.warning);
          if (options.contributions) contributions += ContributionLines(row);
          if (reports.Enabled() && !reports.Draw(row)) {
            Say(DescribeRow(row.row, row.record.name) + ": cannot write the report " + reports.PathOf(row.row));
          }
        }
        if (options.contributions) outputs.Contributions().Write(contributions);
        progress.Update(chunk.back().row + 1);
        return true;
      });
  progress.Finish();
  if (!summary.readError.empty()) return Fail(args.predictPath + ": " + summary.readError + "; nothing written");
  if (summary.rows == 0) return Fail(args.predictPath + " holds no molecule record; nothing written");
  if (!outputs.Commit(error)) return Fail(error);
  if (summary.warned > 0) {
    Say(std::to_string(summary.warned) + " of " + std::to_string(summary.rows) +
        " rows extrapolate the drift (named above)");
  }
  if (summary.failed > 0) {
    Say(std::to_string(summary.failed) + " of " + std::to_string(summary.rows) +
        " rows could not be predicted (named above); they hold the error value 1.7976931348623157e+308");
  }
  return 0;
}

}  // namespace VarimoKrige
