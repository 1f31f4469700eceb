// The default molecule model: kriging on Vsepr fingerprints.
#pragma once

#include <memory>
#include <vector>

#include "mol_krige_training.h"
#include "varimo/mol/krige_vsepr.h"
#include "varimo/mol/mol_krige.h"

namespace Varimo {

class ZqVseprMolKrigeImpl final : public ZqMolKrigeImpl {
 public:
  // `drift` may be null: ordinary kriging.
  ZqVseprMolKrigeImpl(const ZqKrigeOptions& options, const Molkit::ZqMolPropertyList* drift,
                      const Printex::ZqVseprOptions& fpOptions);
  ZqVseprMolKrigeImpl(const ZqVseprMolKrigeImpl& other);
  ZqVseprMolKrigeImpl& operator=(const ZqVseprMolKrigeImpl&) = delete;

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
    return krige_.Train();
  }
  bool Train(ZqKrigeKernelBase& kernel) override {
    training_.GetView();
    return krige_.Train(kernel);
  }
  // Every result carries the variogram: made once here, and kept by the
  // engine, rather than for every query.
  bool TrainFixed(const ZqKrigeKernelBase& kernel) override {
    training_.GetView();
    krige_.GetVariogram();
    return krige_.TrainFixed(kernel);
  }
  bool TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates,
                         std::vector<ZqKrigeKernel>* ranking) override;
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMolBase& mol) const override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) override { return Result(*this, mol); }
  ZqMolKrigeResult GetResult(const Molkit::ZqMCMolBase& mol) const override { return Result(*this, mol); }
  std::optional<double> PredictMean(const Molkit::ZqMolBase& mol) const override;
  ZqVariogram GetVariogram() override { return krige_.GetVariogram(); }
  ZqVariogram GetVariogram() const override { return krige_.GetVariogram(); }
  ZqKrigeKernel GetKernel() override { return krige_.GetKernel(); }
  ZqKrigeKernel GetKernel() const override { return krige_.GetKernel(); }
  bool AddTrainingWithFingerprint(const Molkit::ZqMolBase& mol, const Printex::ZqVseprFingerprint& fp,
                                  double response) override;
  ZqKrigeTrainedKernels GetTrainedKernels() const override { return krige_.GetTrainedKernels(); }
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) override {
    training_.GetView();
    krige_.GetVariogram();
    return krige_.TrainWithKernels(trained);
  }
  void Clear() override;
  ZqMolKrigeImpl* CreateCopy() const override { return new ZqVseprMolKrigeImpl(*this); }
  const ZqKrigeBase<ZqVseprPropFP>* GetFingerprintModel() const override { return &krige_.GetModel(); }
  bool MakeFingerprint(const Molkit::ZqMolBase& mol, ZqVseprPropFP& fp) const override;

 private:
  template <class M>
  bool HasDrift(const M& mol) const {
    return !propertyList_ || propertyList_->HasProperties(mol);
  }
  template <class M>
  ZqVseprPropFP GetFP(const M& mol) const;
  template <class M>
  bool Add(const M& mol, double response, bool unmeasured);
  // Adds the element `fp` (the molecule's fingerprint and drift) for `mol`.
  template <class M>
  bool AddElement(const M& mol, const ZqVseprPropFP& fp, double response, bool unmeasured);
  template <class M>
  std::vector<double> GetProperties(const M& mol) const;
  // Self is the model, const or not: the engine trains a non-const model
  // in place and a const one on a copy.
  template <class Self, class M>
  static ZqMolKrigeResult Result(Self& self, const M& mol);

  ZqVseprKrige krige_;
  ZqMolKrigeTrainingLists training_;
  std::unique_ptr<Molkit::ZqMolPropertyList> propertyList_;
  Printex::ZqVseprOptions options_;
};

}  // namespace Varimo
