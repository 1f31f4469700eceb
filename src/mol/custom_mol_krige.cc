// The custom molecule model, and the engine over its elements instantiated
// here.
#include "custom_mol_krige.h"

#include <type_traits>
#include <utility>

#include "mol_krige_result_impl.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/krige/create_krige.h"
#include "varimo/krige/krige_impl.h"

namespace Varimo {
namespace {

// The caller's distance applied to the molecules of two elements.
class ZqMolContainerDistFxn final : public ZqKrigeDistanceFxn<ZqMolContainer> {
 public:
  explicit ZqMolContainerDistFxn(const ZqMolDistanceFxn& distance) : distance_(distance.CreateCopy()) {}
  ZqMolContainerDistFxn(const ZqMolContainerDistFxn& other) : distance_(other.distance_->CreateCopy()) {}
  ZqMolContainerDistFxn& operator=(const ZqMolContainerDistFxn&) = delete;
  double operator()(const ZqMolContainer& a, const ZqMolContainer& b) const override {
    return (*distance_)(a.GetMol(), b.GetMol());
  }
  ZqMolContainerDistFxn* CreateCopy() const override { return new ZqMolContainerDistFxn(*this); }

 private:
  std::unique_ptr<ZqMolDistanceFxn> distance_;
};

// The drift read back from the element, where it was put when the element
// was made.
class ZqMolContainerPropFxn final : public ZqPropertyListFxn<ZqMolContainer> {
 public:
  explicit ZqMolContainerPropFxn(std::size_t size) : size_(size) {}
  bool HasProperties(const ZqMolContainer& c) const override { return c.properties.size() == size_; }
  std::size_t GetSize() const override { return size_; }
  double GetProperty(const ZqMolContainer& c, std::size_t index) const override { return c.properties[index]; }
  ZqMolContainerPropFxn* CreateCopy() const override { return new ZqMolContainerPropFxn(*this); }

 private:
  std::size_t size_;
};

std::unique_ptr<ZqKrigeBase<ZqMolContainer>> MakeModel(const ZqMolDistanceFxn& distance,
                                                       const Molkit::ZqMolPropertyList* drift,
                                                       const ZqKrigeOptions& options) {
  const ZqMolContainerDistFxn containerDistance(distance);
  if (!drift) return ZqCreateKrige<ZqMolContainer>(containerDistance, options, false);
  return ZqCreateKrige<ZqMolContainer>(containerDistance, ZqMolContainerPropFxn(drift->GetSize()), options);
}

}  // namespace

ZqCustomMolKrigeImpl::ZqCustomMolKrigeImpl(const ZqMolDistanceFxn& distance, const Molkit::ZqMolPropertyList* drift,
                                           const ZqKrigeOptions& options)
    : krige_(MakeModel(distance, drift, options)), propertyList_(drift ? drift->CreateCopy() : nullptr) {}

ZqCustomMolKrigeImpl::ZqCustomMolKrigeImpl(const ZqCustomMolKrigeImpl& other)
    : ZqMolKrigeImpl(other),
      krige_(other.krige_->CreateKrigeCopy()),
      training_(other.training_),
      propertyList_(other.propertyList_ ? other.propertyList_->CreateCopy() : nullptr) {}

template <class M>
bool ZqCustomMolKrigeImpl::Query(const M& mol, ZqMolContainer& element) const {
  if (propertyList_) {
    if (!propertyList_->HasProperties(mol)) return false;
    for (unsigned long k = 0; k < propertyList_->GetSize(); ++k) {
      element.properties.push_back(propertyList_->GetProperty(mol, k));
    }
  }
  return true;
}

template <class M>
bool ZqCustomMolKrigeImpl::Add(const M& mol, double response, bool unmeasured) {
  ZqMolContainer element;
  if (!Query(mol, element)) return false;
  std::shared_ptr<const Molkit::ZqMolBase> copy(ZqKeptConformer(mol).CreateCopy());
  element.mol = copy;
  const unsigned int id = training_.GetNextID();
  const bool added = unmeasured ? krige_->AddUnmeasuredTrainingWithID(element, response, id)
                                : krige_->AddTrainingWithID(element, response, id);
  if (!added) return false;
  training_.Append(std::move(copy), response, unmeasured);
  return true;
}

template <class Self, class M>
ZqMolKrigeResult ZqCustomMolKrigeImpl::Result(Self& self, const M& mol) {
  ZqMolContainer query;
  query.raw = &mol;
  if (!self.Query(mol, query)) return ZqMolKrigeResult();
  // A const model trains on a copy when it must, a non-const one in place.
  using Model = std::conditional_t<std::is_const_v<Self>, const ZqKrigeBase<ZqMolContainer>,
                                   ZqKrigeBase<ZqMolContainer>>;
  Model& model = *self.krige_;
  ZqKrigeResult result = model.GetKrigeResult(query);
  return ZqMolKrigeResult(
      std::make_unique<ZqMolKrigeResultImpl>(std::move(result), self.training_.GetView(), model.GetVariogram()));
}

void ZqCustomMolKrigeImpl::Clear() {
  krige_->Clear();
  training_.Clear();
}

bool ZqCustomMolKrigeImpl::TrainByLikelihood(const std::vector<const ZqKrigeKernelBase*>& candidates,
                                             std::vector<ZqKrigeKernel>* ranking) {
  // As TrainFixed: the view and the variogram made before concurrent
  // queries.
  training_.GetView();
  krige_->GetVariogram();
  return ZqTrainByLikelihood(*krige_, candidates, ranking);
}

}  // namespace Varimo
