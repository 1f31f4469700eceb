#include "varimo/mol/mol_properties.h"

#include <cmath>

#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

bool ZqSCMolGetSDDataImpl::Has(const ZqMolBase& mol) const {
  double value = 0.0;
  return Molkit::ZqHasSDData(mol, tag_) && Corvane::ZqStringToNumber(Molkit::ZqGetSDData(mol, tag_), value);
}

double ZqSCMolGetSDDataImpl::Get(const ZqMolBase& mol) const {
  double value = 0.0;
  if (!Molkit::ZqHasSDData(mol, tag_) || !Corvane::ZqStringToNumber(Molkit::ZqGetSDData(mol, tag_), value)) {
    return 0.0;
  }
  return value;
}

ZqSCMolGetGenericDataImpl::ZqSCMolGetGenericDataImpl(const std::string& tag, bool convertFloat)
    : tag_(Corvane::ZqGetTag(tag)), convertFloat_(convertFloat) {}

bool ZqSCMolGetGenericDataImpl::Has(const ZqMolBase& mol) const {
  return mol.HasData<double>(tag_) || (convertFloat_ && mol.HasData<float>(tag_));
}

double ZqSCMolGetGenericDataImpl::Get(const ZqMolBase& mol) const {
  if (const double* value = mol.GetData<double>(tag_)) return *value;
  if (convertFloat_) {
    if (const float* value = mol.GetData<float>(tag_)) return static_cast<double>(*value);
  }
  return 0.0;
}

const ZqMolBase* ZqGetMCMolWrapperFxnImpl::Place(const ZqMCMolBase& mol) const {
  if (wrapped_->Has(mol)) return &mol;
  if (checkActive_ && wrapped_->Has(mol.GetActiveConf())) return &mol.GetActiveConf();
  if (checkAll_) {
    for (std::size_t c = 0; c < mol.GetNumConfs(); ++c) {
      if (wrapped_->Has(mol.GetConf(c))) return &mol.GetConf(c);
    }
  }
  return nullptr;
}

template <class T>
double ZqMolPropertyListImpl<T>::GetProperty(const T& mol, std::size_t index) const {
  const std::size_t size = this->GetSize();
  const auto* cached = mol.template GetData<std::vector<double>>(Corvane::ZqGetTag(kCacheTag));
  if (cached && cached->size() == size && index < size) return (*cached)[index];
  return this->GetEntry(index).Get(mol);
}

template <class T>
bool ZqMolPropertyListImpl<T>::PrepMol(T& mol) const {
  const std::size_t size = this->GetSize();
  if (size == 0) return true;
  if (!this->HasProperties(mol)) return false;
  std::vector<double> values;
  values.reserve(size);
  for (std::size_t k = 0; k < size; ++k) values.push_back(this->GetEntry(k).Get(mol));
  mol.SetData(Corvane::ZqGetTag(kCacheTag), std::move(values));
  return true;
}

template class ZqMolPropertyListImpl<ZqMolBase>;
template class ZqMolPropertyListImpl<ZqMCMolBase>;

double ZqMolLog10PropertyFxn::Get(const ZqMolBase& mol) const { return std::log10(fxn_->Get(mol)); }
double ZqMolLog10PropertyFxn::Get(const ZqMCMolBase& mol) const { return std::log10(fxn_->Get(mol)); }

}  // namespace Varimo
