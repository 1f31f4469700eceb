// How far to trust a molecule model's predictions: conformal intervals
// calibrated by cross-validating its own records, its applicability
// domain, and both shown in a report.
//
//   Varimo::ZqConformalIntervals intervals = Varimo::ZqCalibrateMolModel(model, 5, 1, 4);
//   Varimo::ZqApplicabilityDomain domain = Varimo::ZqMolModelDomain(model);
//   Varimo::ZqMolKrigeResult r = model.GetKrige().GetResult(query);
//   auto [lower, upper] = intervals.GetInterval(r.GetResponse(), r.GetVariance(), 0.1);
//   bool inside = domain.Assess(r.GetKrigeResult()).inDomain;
#pragma once

#include <cstdint>
#include <string>

#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/calibration.h"
#include "varimo/mol/krige_report_options.h"
#include "varimo/mol/mol_model.h"

namespace Varimo {

// Conformal intervals from the held-out residuals of a cross-validation of
// the model's records with its settings (folds as ZqCrossValidationFolds
// with `seed`): each fold's model is trained anew, so this costs `folds`
// trainings. Not fitted when there are fewer records than folds or no
// held-out prediction counts.
ZqConformalIntervals ZqCalibrateMolModel(const ZqMolModel& model, unsigned int folds, std::uint64_t seed,
                                         unsigned int threads);

// The applicability domain of a trained model's training molecules (their
// fingerprints under its distance); no threshold for a model on a caller's
// distance.
ZqApplicabilityDomain ZqMolModelDomain(const ZqMolModel& model, const ZqDomainOptions& options = {});

// A report that also shows a prediction's interval and its domain. Once
// per report options: the two entries "90% interval" (the level from
// alpha) and "In domain" join the options' property list, read from SD
// fields of the molecule drawn; per prediction, ZqSetReportUncertainty
// writes those fields on (a copy of) the query: "[lower, upper]" in the
// report's number format, and "yes" or "no" with the similarity of the
// nearest training molecule.
void ZqPushReportUncertainty(ZqKrigeReportOptions& options, double alpha, bool interval, bool domain);
void ZqSetReportUncertainty(Molkit::ZqMolBase& mol, const ZqMolKrigeResult& result,
                            const ZqKrigeReportOptions& options, const ZqConformalIntervals* intervals, double alpha,
                            const ZqApplicabilityDomain* domain);

}  // namespace Varimo
