// Kriging on Vsepr fingerprints, the default molecular model: each
// molecule becomes a fingerprint with its drift properties once, and the
// distance of two elements is one minus their Tanimoto coefficient.
//
//   Printex::ZqVseprOptions options;
//   Varimo::ZqVseprKrige model(Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()), false);
//   model.AddTraining(Varimo::ZqVseprPropFP(mol, options), pIC50);
//   double y = model.Predict(Varimo::ZqVseprPropFP(query, options));
//
// Elements are small and stored by value. Two molecules with the same
// fingerprint are one element (their Tanimoto is exactly 1), whatever else
// differs between them.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "varimo/krige/krige_options.h"
#include "varimo/mol/krige_forwarding.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Varimo {

class ZqVseprPropFP : public Printex::ZqVseprFingerprint {
 public:
  ZqVseprPropFP() = default;
  ZqVseprPropFP(const Molkit::ZqAtomBase& atom, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(atom, options) {}
  ZqVseprPropFP(const Molkit::ZqBondBase& bond, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(bond, options) {}
  ZqVseprPropFP(const Molkit::ZqMolBase& mol, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(mol, options) {}
  ZqVseprPropFP(const Molkit::ZqAtomBase& atom, std::vector<double> properties, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(atom, options), properties_(std::move(properties)) {}
  ZqVseprPropFP(const Molkit::ZqBondBase& bond, std::vector<double> properties, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(bond, options), properties_(std::move(properties)) {}
  ZqVseprPropFP(const Molkit::ZqMolBase& mol, std::vector<double> properties, const Printex::ZqVseprOptions& options)
      : ZqVseprFingerprint(mol, options), properties_(std::move(properties)) {}
  // A fingerprint made already, with the properties.
  ZqVseprPropFP(const Printex::ZqVseprFingerprint& fp, std::vector<double> properties)
      : ZqVseprFingerprint(fp), properties_(std::move(properties)) {}

  // The fingerprint's Setup; the properties are emptied.
  bool Setup(const Molkit::ZqAtomBase& atom, const Printex::ZqVseprOptions& options) {
    properties_.clear();
    return ZqVseprFingerprint::Setup(atom, options);
  }
  bool Setup(const Molkit::ZqBondBase& bond, const Printex::ZqVseprOptions& options) {
    properties_.clear();
    return ZqVseprFingerprint::Setup(bond, options);
  }
  bool Setup(const Molkit::ZqMolBase& mol, const Printex::ZqVseprOptions& options) {
    properties_.clear();
    return ZqVseprFingerprint::Setup(mol, options);
  }

  std::size_t GetNumProperties() const { return properties_.size(); }
  // The index is the caller's to keep below GetNumProperties().
  double GetProperty(std::size_t index) const { return properties_[index]; }
  const std::vector<double>& GetProperties() const { return properties_; }

 private:
  std::vector<double> properties_;
};

class ZqVseprKrige : public ZqKrigeImpl<ZqVseprPropFP> {
 public:
  // Ordinary kriging, or simple kriging when `simple`; global or local by
  // the options' GetNumLocal().
  ZqVseprKrige(const ZqKrigeOptions& options, bool simple);
  // Universal kriging on the first `numProperties` properties of each
  // fingerprint; ordinary kriging for 0.
  ZqVseprKrige(const ZqKrigeOptions& options, std::size_t numProperties);
};

}  // namespace Varimo
