// Numbers read from molecules, of either kind: a property function gives
// one, a property list a fixed number of them. The molecular models take
// their drift properties and latent predictors from such lists.
//
//   Molkit::ZqMolPropertyPushList drift;
//   drift.Push(Molkit::ZqMolSDDataPropertyFxn("logP"));
//   if (drift.HasProperties(mol)) x = drift.GetProperty(mol, 0);
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/molkit/molecule.h"

namespace Molkit {

class ZqMolPropertyFxn {
 public:
  virtual ~ZqMolPropertyFxn() = default;
  virtual bool Has(const ZqMolBase& mol) const = 0;
  virtual bool Has(const ZqMCMolBase& mol) const = 0;
  // 0.0 when Has is false.
  virtual double Get(const ZqMolBase& mol) const = 0;
  virtual double Get(const ZqMCMolBase& mol) const = 0;
  virtual ZqMolPropertyFxn* CreateCopy() const = 0;
};

class ZqMolPropertyList {
 public:
  virtual ~ZqMolPropertyList() = default;
  virtual bool HasProperties(const ZqMolBase& mol) const = 0;
  virtual bool HasProperties(const ZqMCMolBase& mol) const = 0;
  virtual unsigned long GetSize() const = 0;
  virtual double GetProperty(const ZqMolBase& mol, unsigned long index) const = 0;
  virtual double GetProperty(const ZqMCMolBase& mol, unsigned long index) const = 0;
  virtual ZqMolPropertyList* CreateCopy() const = 0;
};

// The number in an SD data field; on a multi-conformer molecule the field
// of the molecule itself, else of its active conformer.
class ZqMolSDDataPropertyFxn final : public ZqMolPropertyFxn {
 public:
  explicit ZqMolSDDataPropertyFxn(std::string tag) : tag_(std::move(tag)) {}
  bool Has(const ZqMolBase& mol) const override;
  bool Has(const ZqMCMolBase& mol) const override;
  double Get(const ZqMolBase& mol) const override;
  double Get(const ZqMCMolBase& mol) const override;
  ZqMolPropertyFxn* CreateCopy() const override { return new ZqMolSDDataPropertyFxn(*this); }

 private:
  std::string tag_;
};

// A list of owned property functions, in the order pushed.
class ZqMolPropertyPushList final : public ZqMolPropertyList {
 public:
  ZqMolPropertyPushList() = default;
  ZqMolPropertyPushList(const ZqMolPropertyPushList& other);
  ZqMolPropertyPushList& operator=(const ZqMolPropertyPushList& other);

  void Push(const ZqMolPropertyFxn& fxn) { entries_.emplace_back(fxn.CreateCopy()); }
  bool HasProperties(const ZqMolBase& mol) const override;
  bool HasProperties(const ZqMCMolBase& mol) const override;
  unsigned long GetSize() const override { return entries_.size(); }
  double GetProperty(const ZqMolBase& mol, unsigned long index) const override { return entries_[index]->Get(mol); }
  double GetProperty(const ZqMCMolBase& mol, unsigned long index) const override {
    return entries_[index]->Get(mol);
  }
  ZqMolPropertyList* CreateCopy() const override { return new ZqMolPropertyPushList(*this); }

 private:
  std::vector<std::unique_ptr<ZqMolPropertyFxn>> entries_;
};

}  // namespace Molkit
