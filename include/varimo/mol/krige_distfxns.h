// Distances between molecules for the custom route of ZqMolKrige and for
// ZqSCMolKrige. Each keeps what it needs on the molecule itself: call
// PrepMol on every molecule, training and query, before the model sees it.
//
//   Varimo::ZqMolKrigePrintexDistFxn distance(Printex::kZqMorganFP);
//   distance.PrepMol(*mol);
//   Varimo::ZqMolKrige model(distance, Varimo::ZqGlobalKrigeOptions());
#pragma once

#include "varimo/mol/krige_distance_options.h"
#include "varimo/platform/corvane/functional.h"
#include "varimo/platform/molkit/molecule.h"

namespace Varimo {

class ZqMolKrigeDistFxn : public Corvane::ZqBinaryFunction<Molkit::ZqMolBase, Molkit::ZqMolBase, double> {
 public:
  // Computes and stores on the molecule what the distance reads.
  virtual bool PrepMol(Molkit::ZqMolBase& mol) const = 0;
};

// One minus the Tanimoto coefficient of Vsepr fingerprints.
class ZqMolKrigeDefaultDistFxn final : public ZqMolKrigeDistFxn {
 public:
  explicit ZqMolKrigeDefaultDistFxn(const ZqDefaultKrigeDistanceOptions& options) : options_(options) {}
  bool PrepMol(Molkit::ZqMolBase& mol) const override;
  // 1.0, with an error report, when either molecule was not prepared.
  double operator()(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b) const override;
  ZqMolKrigeDefaultDistFxn* CreateCopy() const override { return new ZqMolKrigeDefaultDistFxn(*this); }

 private:
  ZqDefaultKrigeDistanceOptions options_;
};

// One minus the Tanimoto coefficient of fingerprints of a Printex type
// (Printex::ZqFingerPrintType).
class ZqMolKrigePrintexDistFxn final : public ZqMolKrigeDistFxn {
 public:
  explicit ZqMolKrigePrintexDistFxn(unsigned int fpType);
  bool PrepMol(Molkit::ZqMolBase& mol) const override;
  // 1.0, with an error report, when either molecule lacks the fingerprint.
  double operator()(const Molkit::ZqMolBase& a, const Molkit::ZqMolBase& b) const override;
  ZqMolKrigePrintexDistFxn* CreateCopy() const override { return new ZqMolKrigePrintexDistFxn(*this); }

 private:
  unsigned int fpType_;
  unsigned int tag_;
};

}  // namespace Varimo
