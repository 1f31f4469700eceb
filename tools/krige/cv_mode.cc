// varimo-krige cv: K-fold cross-validation of a molecule model.
#include <cmath>
#include <cstdio>
#include <optional>

#include "messages.h"
#include "mol_model_source.h"
#include "mol_modes.h"
#include "varimo/mol/mol_cross_validation.h"

namespace VarimoKrige {
namespace {

// How well the held-out variances describe the errors, after the lines
// every run prints, so that those stay as they are.
void PrintCalibration(const Varimo::ZqCalibration& c) {
  std::printf("coverage50 %.6g\ncoverage80 %.6g\ncoverage90 %.6g\n", c.coverage50, c.coverage80, c.coverage90);
  std::printf("miscalibration area %.6g\n", c.miscalibrationArea);
  std::printf("Spearman |error| sd %.6g\n", c.spearmanErrorSd);
  std::printf("NLPD %.6g\n", c.meanNegativeLogDensity);
}

}  // namespace

int RunCrossValidation(const Arguments& args) {
  int status = kBadInput;
  const std::optional<TrainingFile> file = ReadTrainingFile(args, status);
  if (!file) return status;
  const Varimo::ZqMolTrainingRecords& set = file->records;
  if (set.mols.size() < args.folds) {
    return Fail(args.trainPath + " has " + std::to_string(set.mols.size()) + " molecules with a numeric " +
                args.responseName + ", fewer than " + std::to_string(args.folds) + " folds");
  }
  const Varimo::ZqMolCrossValidation cv =
      Varimo::ZqCrossValidateMolModel(SettingsFrom(args), set.mols, set.responses, args.folds, args.seed, args.threads);
  for (std::size_t i : cv.refused) {
    Say("left out " + set.mols[i]->GetName() + ": a drift field (" + std::to_string(args.drift.size()) +
        " asked) is missing or not a number");
  }
  for (unsigned int k = 0; k < cv.folds.size(); ++k) {
    const Varimo::ZqMolCrossValidationFold& fold = cv.folds[k];
    if (!fold.trained) {
      Say("fold " + std::to_string(k + 1) + ": no kernel could be trained");
      continue;
    }
    std::printf("fold %u/%u: %zu held out, kernel %s\n", k + 1, args.folds, fold.numHeldOut, fold.kernel.c_str());
  }
  const Varimo::ZqCrossValidationSummary& summary = cv.summary;
  if (summary.failed > 0) Say(std::to_string(summary.failed) + " held-out predictions failed and are not counted");
  if (summary.counted == 0) return Fail("no held-out molecule could be predicted");
  std::printf("RMSE %.6g\n", summary.rmse);
  if (std::isnan(summary.r2)) {
    Say("R2 is undefined: fewer than two held-out predictions count, or all their measured values are equal");
  }
  std::printf("R2 %.6g\n", summary.r2);
  std::printf("coverage95 %.6g\n", summary.coverage95);
  if (args.choice.calibration) PrintCalibration(summary.calibration);
  return 0;
}

}  // namespace VarimoKrige
