// The molecule model on a caller's distance between molecules.
#pragma once

#include <memory>
#include <vector>

#include "mol_krige_training.h"
#include "varimo/krige/krige_base.h"
#include "varimo/krige/krige_options.h"
#include "varimo/mol/mol_krige.h"

namespace Varimo {

// The element of the model: a training molecule (shared with the results)
// or a query (borrowed for one call, never copied), with its drift.
struct ZqMolContainer {
  std::shared_ptr<const Molkit::ZqMolBase> mol;
  const Molkit::ZqMolBase* raw = nullptr;
  std::vector<double> properties;

  const Molkit::ZqMolBase& GetMol() const { return raw ? *raw : *mol; }
};

class ZqCustomMolKrigeImpl final : public ZqMolKrigeImpl {
 public:
  // `drift` may be null: ordinary kriging.
  ZqCustomMolKrigeImpl(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList* drift,
                       const ZqKrigeOptions& options);
  ZqCustomMolKrigeImpl(const ZqCustomMolKrigeImpl& other);
  ZqCustomMolKrigeImpl& operator=(const ZqCustomMolKrigeImpl&) = delete;

  bool AddTraining(const Molkit::ZqMolBase& mol, double response) override { return Add(mol, response, false); }
  bool AddTraining(const Molkit::ZqMCMolBase& mol, double response) override { return Add(mol, response, false); }
  bool AddUnmeasuredTraining(const Molkit::ZqMolBase& mol, double response) override {
    return Add(mol, response, true);
  }
  bool AddUnmeasuredTraining(const Molkit::ZqMCMolBase& mol, double response) override {
    return Add(mol, response, true);
  }
  // The view of the training records is made here, before queries that
  // may run concurrently.
  bool Train() override {
    training_.GetView();
    return krige_->Train();
  }
  bool Train(ZqKrigeKernelBase& kernel) override {
    training_.GetView();
    return krige_->Train(kernel);
  }
  // Every result carries the variogram: made once here, and kept by the
  // engine, rather than for every query.
  bool TrainFixed(const ZqKrigeKernelBase& kernel) override {
    training_.GetView();
    krige_->GetVariogram();
    return krige_->TrainFixed(kernel);
  }
  bool TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates,
                         std::vector<ZqKrigeKernel>* ranking) override;
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) const override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) const override { return Result(*this, mol); }
  ZqVariogram GetVariogram() override { return krige_->GetVariogram(); }
  ZqVariogram GetVariogram() const override { return std::as_const(*krige_).GetVariogram(); }
  ZqKrigeKernel GetKernel() override { return krige_->GetKernel(); }
  ZqKrigeKernel GetKernel() const override { return std::as_const(*krige_).GetKernel(); }
  // The caller's distance does not read fingerprints.
  bool AddTrainingWithFingerprint(const Molkit::ZqMolBase&, const Printex::ZqVseprFingerprint&, double) override {
    return false;
  }
  ZqKrigeTrainedKernels GetTrainedKernels() const override { return krige_->GetTrainedKernels(); }
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) override {
    training_.GetView();
    krige_->GetVariogram();
    return krige_->TrainWithKernels(trained);
  }
  void Clear() override;
  ZqMolKrigeImpl* CreateCopy() const override { return new ZqCustomMolKrigeImpl(*this); }

 private:
  template <class M>
  bool Add(const M& mol, double response, bool unmeasured);
  template <class M>
  bool Query(const M& mol, ZqMolContainer& query) const;
  template <class Self, class M>
  static ZqMolKrigeResult Result(Self& self, const M& mol);

  std::unique_ptr<ZqKrigeBase<ZqMolContainer>> krige_;
  ZqMolKrigeTrainingLists training_;
  std::unique_ptr<Molkit::ZqMolPropertyList> propertyList_;
};

}  // namespace Varimo
