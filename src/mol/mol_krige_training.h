// What the molecule models keep of their training records beside the
// engine, and the immutable view of it that results share.
#pragma once

#include <memory>
#include <type_traits>
#include <vector>

#include "varimo/mol/mol_krige.h"
#include "varimo/platform/corvane/bit_vector.h"
#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Varimo {

// The training records when a result was made. Results share one view
// until the next record is added, so that a query copies nothing of size N.
struct ZqMolKrigeTrainingView {
  std::vector<std::shared_ptr<const Molkit::ZqMolBase>> mols;
  std::vector<double> allResponses;
  std::vector<double> measuredResponses;
};

class ZqMolKrigeTrainingLists {
 public:
  // The id the engine carries for the next record: its position here.
  unsigned int GetNextID() const { return static_cast<unsigned int>(mols_.size()); }
  void Append(std::shared_ptr<const Molkit::ZqMolBase> mol, double response, bool unmeasured);
  void Clear();
  // The view of the records as they stand; the const call builds one
  // without keeping it when the kept one is stale.
  std::shared_ptr<const ZqMolKrigeTrainingView> GetView();
  std::shared_ptr<const ZqMolKrigeTrainingView> GetView() const;

 private:
  std::shared_ptr<const ZqMolKrigeTrainingView> MakeView() const;

  std::vector<std::shared_ptr<const Molkit::ZqMolBase>> mols_;
  std::vector<double> responses_;
  Corvane::ZqBitVector unmeasured_;
  std::shared_ptr<const ZqMolKrigeTrainingView> view_;
};

// What a model keeps of a training molecule: a multi-conformer molecule
// is kept as its active conformer.
template <class M>
const Molkit::ZqMolBase& ZqKeptConformer(const M& mol) {
  if constexpr (std::is_same_v<M, Molkit::ZqMCMolBase>) {
    return mol.GetActiveConf();
  } else {
    return mol;
  }
}

// The tag of the fingerprint kept on each training molecule of the Vsepr
// model, from which the contributions of a result are made.
unsigned int ZqTrainingFingerprintTag();

}  // namespace Varimo
