// Options of the default molecular distance: one minus the Tanimoto
// coefficient of Vsepr fingerprints (see
// varimo/platform/printex/vsepr_fingerprint.h for what each option does
// and the defaults).
//
//   Varimo::ZqDefaultKrigeDistanceOptions distance;
//   distance.SetMaxPathLength(5);
//   Varimo::ZqMolKrige model(distance, Varimo::ZqGlobalKrigeOptions());
#pragma once

#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Varimo {

class ZqDefaultKrigeDistanceOptions {
 public:
  unsigned int GetMaxPathLength() const { return impl_.GetMaxPathLength(); }
  ZqDefaultKrigeDistanceOptions& SetMaxPathLength(unsigned int length) {
    impl_.SetMaxPathLength(length);
    return *this;
  }
  unsigned int GetMinPathLength() const { return impl_.GetMinPathLength(); }
  ZqDefaultKrigeDistanceOptions& SetMinPathLength(unsigned int length) {
    impl_.SetMinPathLength(length);
    return *this;
  }
  bool GetForcePathsOut() const { return impl_.GetForcePathsOut(); }
  ZqDefaultKrigeDistanceOptions& SetForcePathsOut(bool force) {
    impl_.SetForcePathsOut(force);
    return *this;
  }
  bool GetWeightByLength() const { return impl_.GetWeightByLength(); }
  ZqDefaultKrigeDistanceOptions& SetWeightByLength(bool weight) {
    impl_.SetWeightByLength(weight);
    return *this;
  }
  bool GetStereoAware() const { return impl_.GetStereoAware(); }
  ZqDefaultKrigeDistanceOptions& SetStereoAware(bool aware) {
    impl_.SetStereoAware(aware);
    return *this;
  }

  // The fingerprint options themselves, for the fingerprint calls.
  const Printex::ZqVseprOptions& GetImpl() const { return impl_; }

 private:
  Printex::ZqVseprOptions impl_;
};

}  // namespace Varimo
