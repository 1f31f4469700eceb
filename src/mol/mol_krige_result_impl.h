// The state behind a ZqMolKrigeResult, made by the molecule models.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "mol_krige_training.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Varimo {

class ZqMolKrigeResultImpl {
 public:
  ZqMolKrigeResultImpl() = default;
  ZqMolKrigeResultImpl(ZqKrigeResult result, std::shared_ptr<const ZqMolKrigeTrainingView> training,
                       ZqVariogram variogram);

  const ZqKrigeResult& GetResult() const { return result_; }
  double GetResponse() const { return response_; }
  double GetVariance() const { return variance_; }
  double GetFullVariance() const { return fullVariance_; }
  const ZqVariogram& GetVariogram() const { return variogram_; }
  const ZqMolKrigeTrainingView& GetTraining() const { return *training_; }
  // The training molecule of an id from the engine; an empty molecule for
  // an id it does not know.
  const Molkit::ZqMolBase& GetMol(unsigned int id) const;

  // The neighbours' fingerprints above (first) and below (second) the
  // baseline, less what they share, with the two weight totals. Kept per
  // baseline when `keep`.
  struct Sides {
    Printex::ZqVseprFingerprint first;
    Printex::ZqVseprFingerprint second;
    double firstTotal = 0.0;
    double secondTotal = 0.0;
  };
  const Sides& GetFP(double baseline, bool keep, Sides& scratch) const;
  std::vector<double> GetAtomContributions(const Molkit::ZqMolBase& mol, double baseline, bool keep) const;

 private:
  ZqKrigeResult result_;
  std::shared_ptr<const ZqMolKrigeTrainingView> training_ = std::make_shared<ZqMolKrigeTrainingView>();
  // Filled by the non-const contribution calls of the handle only.
  mutable std::map<double, Sides> sides_;
  ZqVariogram variogram_;
  double response_ = 1.7976931348623157e308;
  double variance_ = 1.7976931348623157e308;
  double fullVariance_ = 1.7976931348623157e308;
};

}  // namespace Varimo
