#include "mol_krige_training.h"

#include <utility>

#include "varimo/platform/corvane/generic_data.h"

namespace Varimo {

void ZqMolKrigeTrainingLists::Append(std::shared_ptr<const Molkit::ZqMolBase> mol, double response, bool unmeasured) {
  if (unmeasured) unmeasured_.SetBitOn(mols_.size());
  mols_.push_back(std::move(mol));
  responses_.push_back(response);
  view_.reset();
}

void ZqMolKrigeTrainingLists::Clear() {
  // Earlier results hold views of their own and keep their molecules.
  mols_.clear();
  responses_.clear();
  unmeasured_ = Corvane::ZqBitVector();
  view_.reset();
}

std::shared_ptr<const ZqMolKrigeTrainingView> ZqMolKrigeTrainingLists::MakeView() const {
  auto view = std::make_shared<ZqMolKrigeTrainingView>();
  view->mols = mols_;
  view->allResponses = responses_;
  for (std::size_t i = 0; i < responses_.size(); ++i) {
    if (!unmeasured_.IsBitOn(i)) view->measuredResponses.push_back(responses_[i]);
  }
  return view;
}

std::shared_ptr<const ZqMolKrigeTrainingView> ZqMolKrigeTrainingLists::GetView() {
  if (!view_) view_ = MakeView();
  return view_;
}

std::shared_ptr<const ZqMolKrigeTrainingView> ZqMolKrigeTrainingLists::GetView() const {
  return view_ ? view_ : MakeView();
}

unsigned int ZqTrainingFingerprintTag() {
  static const unsigned int tag = Corvane::ZqGetTag("ZqMolKrigeImpl_training_fingerprint_tag");
  return tag;
}

}  // namespace Varimo
