// The kriging engine on molecules directly, with the caller's distance and
// drift: for distances that need the whole molecule (shape, pharmacophore,
// a fingerprint of your own). Each training molecule is copied once
// (CreateCopy, so derived molecule classes keep their class); copies of
// the model share those copies.
//
//   Varimo::ZqMolKrigeDefaultDistFxn distance{Varimo::ZqDefaultKrigeDistanceOptions()};
//   Varimo::ZqSCMolKrige model(distance, Varimo::ZqKrigeOptions(Varimo::ZqGlobalKrigeOptions()));
//   distance.PrepMol(*mol);
//   model.AddTraining(*mol, pIC50);
#pragma once

#include "varimo/krige/krige_options.h"
#include "varimo/krige/property_list.h"
#include "varimo/krige/training_container.h"
#include "varimo/mol/krige_forwarding.h"
#include "varimo/platform/molkit/molecule.h"

namespace Varimo {

// Single-conformer molecules. Ordinary kriging, global or local by the
// options; universal kriging with a property list (ordinary for an empty
// one).
class ZqSCMolKrige : public ZqKrigeImpl<Molkit::ZqMolBase> {
 public:
  ZqSCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMolBase>& distFxn, const ZqKrigeOptions& options);
  ZqSCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMolBase>& distFxn,
               const ZqPropertyListFxn<Molkit::ZqMolBase>& propFxn, const ZqKrigeOptions& options);
};

// Multi-conformer molecules, the same.
class ZqMCMolKrige : public ZqKrigeImpl<Molkit::ZqMCMolBase> {
 public:
  ZqMCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMCMolBase>& distFxn, const ZqKrigeOptions& options);
  ZqMCMolKrige(const ZqKrigeDistanceFxn<Molkit::ZqMCMolBase>& distFxn,
               const ZqPropertyListFxn<Molkit::ZqMCMolBase>& propFxn, const ZqKrigeOptions& options);
};

}  // namespace Varimo
