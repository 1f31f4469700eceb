#include "varimo/mol/mol_uncertainty.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "varimo/mol/krige_report_format.h"
#include "varimo/mol/krige_vsepr.h"
#include "varimo/mol/mol_cross_validation.h"

namespace Varimo {
namespace {

// The SD fields the report reads the two entries from, on the copy of the
// query it draws.
constexpr const char* kIntervalTag = "varimo report interval";
constexpr const char* kDomainTag = "varimo report domain";

std::string Formatted(double value, const std::string& format) {
  char text[64];
  std::snprintf(text, sizeof text, format.c_str(), value);
  return text;
}

std::string LevelName(double alpha) {
  char text[32];
  std::snprintf(text, sizeof text, "%g%% interval", 100.0 * (1.0 - alpha));
  return text;
}

}  // namespace

ZqConformalIntervals ZqCalibrateMolModel(const ZqMolModel& model, unsigned int folds, std::uint64_t seed,
                                         unsigned int threads) {
  std::vector<const Molkit::ZqMolBase*> mols;
  for (std::size_t i = 0; i < model.GetNumRecords(); ++i) mols.push_back(&model.GetRecord(i));
  if (folds < 2 || mols.size() < folds) return ZqConformalIntervals();
  const ZqMolCrossValidation cv =
      ZqCrossValidateMolModel(model.GetSettings(), mols, model.GetResponses(), folds, seed, threads);
  return ZqConformalIntervals(model.GetResponses(), cv.prediction, cv.variance);
}

ZqApplicabilityDomain ZqMolModelDomain(const ZqMolModel& model, const ZqDomainOptions& options) {
  const ZqKrigeBase<ZqVseprPropFP>* engine = model.GetKrige().GetFingerprintModel();
  if (engine == nullptr) return ZqApplicabilityDomain();
  return ZqApplicabilityDomain::FromModel(*engine, options);
}

void ZqPushReportUncertainty(ZqKrigeReportOptions& options, double alpha, bool interval, bool domain) {
  if (interval) options.PushSDProperty(kIntervalTag, LevelName(alpha));
  if (domain) options.PushSDProperty(kDomainTag, "In domain");
}

void ZqSetReportUncertainty(Molkit::ZqMolBase& mol, const ZqMolKrigeResult& result,
                            const ZqKrigeReportOptions& options, const ZqConformalIntervals* intervals, double alpha,
                            const ZqApplicabilityDomain* domain) {
  if (!result.Valid()) return;
  if (intervals) {
    const auto [lower, upper] = intervals->GetInterval(result.GetResponse(), result.GetVariance(), alpha);
    const std::string format = ZqGetFormatString(result, options.GetResponseSignificantFigures());
    mol.SetSDData(kIntervalTag, "[" + Formatted(lower, format) + ", " + Formatted(upper, format) + "]");
  }
  if (domain) {
    const ZqDomainAssessment a = domain->Assess(result.GetKrigeResult());
    mol.SetSDData(kDomainTag, std::string(a.inDomain ? "yes" : "no") + " (nearest " +
                                  Formatted(a.nearestSimilarity, "%.2f") + ")");
  }
}

}  // namespace Varimo
