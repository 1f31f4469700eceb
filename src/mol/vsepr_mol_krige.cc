#include "vsepr_mol_krige.h"

#include <cmath>
#include <utility>

#include "mol_krige_result_impl.h"
#include "varimo/krige/likelihood_training.h"

namespace Varimo {

ZqVseprMolKrigeImpl::ZqVseprMolKrigeImpl(const ZqKrigeOptions& options, const Molkit::ZqMolPropertyList* drift,
                                         const Printex::ZqVseprOptions& fpOptions)
    : krige_(options, static_cast<std::size_t>(drift ? drift->GetSize() : 0)),
      propertyList_(drift ? drift->CreateCopy() : nullptr),
      options_(fpOptions) {}

ZqVseprMolKrigeImpl::ZqVseprMolKrigeImpl(const ZqVseprMolKrigeImpl& other)
    : ZqMolKrigeImpl(other),
      krige_(other.krige_),
      training_(other.training_),
      propertyList_(other.propertyList_ ? other.propertyList_->CreateCopy() : nullptr),
      options_(other.options_) {}

template <class M>
std::vector<double> ZqVseprMolKrigeImpl::GetProperties(const M& mol) const {
  std::vector<double> properties;
  for (unsigned long k = 0; k < propertyList_->GetSize(); ++k) properties.push_back(propertyList_->GetProperty(mol, k));
  return properties;
}

template <class M>
ZqVseprPropFP ZqVseprMolKrigeImpl::GetFP(const M& mol) const {
  if (!propertyList_) return ZqVseprPropFP(mol, options_);
  return ZqVseprPropFP(mol, GetProperties(mol), options_);
}

template <class M>
bool ZqVseprMolKrigeImpl::Add(const M& mol, double response, bool unmeasured) {
  if (!HasDrift(mol)) return false;
  return AddElement(mol, GetFP(mol), response, unmeasured);
}

bool ZqVseprMolKrigeImpl::AddTrainingWithFingerprint(const Molkit::ZqMolBase& mol,
                                                     const Printex::ZqVseprFingerprint& fp, double response) {
  if (!HasDrift(mol) || fp.GetOptions() != options_) return false;
  return AddElement(mol, ZqVseprPropFP(fp, propertyList_ ? GetProperties(mol) : std::vector<double>()), response,
                    false);
}

template <class M>
bool ZqVseprMolKrigeImpl::AddElement(const M& mol, const ZqVseprPropFP& fp, double response, bool unmeasured) {
  const unsigned int id = training_.GetNextID();
  const bool added =
      unmeasured ? krige_.AddUnmeasuredTrainingWithID(fp, response, id) : krige_.AddTrainingWithID(fp, response, id);
  if (!added) return false;
  std::shared_ptr<Molkit::ZqMolBase> copy(ZqKeptConformer(mol).CreateCopy());
  copy->SetData(ZqTrainingFingerprintTag(), static_cast<const Printex::ZqVseprFingerprint&>(fp));
  training_.Append(std::move(copy), response, unmeasured);
  return true;
}

template <class Self, class M>
ZqMolKrigeResult ZqVseprMolKrigeImpl::Result(Self& self, const M& mol) {
  if (!self.HasDrift(mol)) return ZqMolKrigeResult();
  const ZqVseprPropFP fp = self.GetFP(mol);
  ZqKrigeResult result = self.krige_.GetKrigeResult(fp);
  return ZqMolKrigeResult(std::make_unique<ZqMolKrigeResultImpl>(std::move(result), self.training_.GetView(),
                                                                 self.krige_.GetVariogram()));
}

bool ZqVseprMolKrigeImpl::MakeFingerprint(const Molkit::ZqMolBase& mol, ZqVseprPropFP& fp) const {
  if (!HasDrift(mol)) return false;
  fp = GetFP(mol);
  return !fp.IsEmpty();
}

std::optional<double> ZqVseprMolKrigeImpl::PredictMean(const Molkit::ZqMolBase& mol) const {
  if (!HasDrift(mol)) return std::nullopt;
  const double prediction = krige_.PredictMean(GetFP(mol));
  if (prediction == krige_.GetErrorValue() || !std::isfinite(prediction)) return std::nullopt;
  return prediction;
}

void ZqVseprMolKrigeImpl::Clear() {
  krige_.Clear();
  training_.Clear();
}

bool ZqVseprMolKrigeImpl::TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates,
                                            std::vector<ZqKrigeKernel>* ranking) {
  // As TrainFixed: the view and the variogram made before concurrent
  // queries.
  training_.GetView();
  krige_.GetVariogram();
  return ZqTrainByLikelihood(krige_.GetModel(), candidates, ranking);
}

}  // namespace Varimo
