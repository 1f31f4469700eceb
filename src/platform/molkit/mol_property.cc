#include "varimo/platform/molkit/mol_property.h"

#include "varimo/platform/corvane/strings.h"

namespace Molkit {

namespace {

bool SDNumber(const ZqMolBase& mol, const std::string& tag, double& value) {
  return mol.HasSDData(tag) && Corvane::ZqStringToNumber(mol.GetSDData(tag), value);
}

}  // namespace

bool ZqMolSDDataPropertyFxn::Has(const ZqMolBase& mol) const {
  double value = 0.0;
  return SDNumber(mol, tag_, value);
}

bool ZqMolSDDataPropertyFxn::Has(const ZqMCMolBase& mol) const {
  return Has(static_cast<const ZqMolBase&>(mol)) || Has(mol.GetActiveConf());
}

double ZqMolSDDataPropertyFxn::Get(const ZqMolBase& mol) const {
  double value = 0.0;
  return SDNumber(mol, tag_, value) ? value : 0.0;
}

double ZqMolSDDataPropertyFxn::Get(const ZqMCMolBase& mol) const {
  double value = 0.0;
  if (SDNumber(mol, tag_, value)) return value;
  return SDNumber(mol.GetActiveConf(), tag_, value) ? value : 0.0;
}

ZqMolPropertyPushList::ZqMolPropertyPushList(const ZqMolPropertyPushList& other) : ZqMolPropertyList(other) {
  for (const auto& entry : other.entries_) entries_.emplace_back(entry->CreateCopy());
}

ZqMolPropertyPushList& ZqMolPropertyPushList::operator=(const ZqMolPropertyPushList& other) {
  if (this != &other) {
    ZqMolPropertyPushList copy(other);
    entries_ = std::move(copy.entries_);
  }
  return *this;
}

bool ZqMolPropertyPushList::HasProperties(const ZqMolBase& mol) const {
  for (const auto& entry : entries_) {
    if (!entry->Has(mol)) return false;
  }
  return true;
}

bool ZqMolPropertyPushList::HasProperties(const ZqMCMolBase& mol) const {
  for (const auto& entry : entries_) {
    if (!entry->Has(mol)) return false;
  }
  return true;
}

}  // namespace Molkit
