// Property functions and lists on molecules: numbers read from a
// molecule's SD data or generic data, for the drift of universal kriging.
// SC functions read a single-conformer molecule (Molkit::ZqMolBase), MC
// functions a multi-conformer one (Molkit::ZqMCMolBase), looking at the
// molecule itself, then at its active conformer, then at each conformer.
//
//   Varimo::ZqSCMolPropertyList drift("logP");   // SD data, else generic data
//   drift.PushTag("TPSA");
//   drift.PrepMol(mol);                          // caches both values on mol
//   double logP = drift.GetProperty(mol, 0);
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/krige/property_list.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule.h"

namespace Varimo {

using Molkit::ZqMCMolBase;
using Molkit::ZqMolBase;

// The number in the SD data field `tag`, when the text converts.
class ZqSCMolGetSDDataImpl final : public ZqPropertyFxn<ZqMolBase> {
 public:
  explicit ZqSCMolGetSDDataImpl(std::string tag) : tag_(std::move(tag)) {}
  bool Has(const ZqMolBase& mol) const override;
  // 0.0 when the text does not convert.
  double Get(const ZqMolBase& mol) const override;
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetSDDataImpl(*this); }

 private:
  std::string tag_;
};

// A double among the generic data under `tag` (the first one), or with
// `convertFloat` a float, widened.
class ZqSCMolGetGenericDataImpl final : public ZqPropertyFxn<ZqMolBase> {
 public:
  ZqSCMolGetGenericDataImpl(const std::string& tag, bool convertFloat);
  bool Has(const ZqMolBase& mol) const override;
  double Get(const ZqMolBase& mol) const override;
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetGenericDataImpl(*this); }

 private:
  unsigned int tag_;
  bool convertFloat_;
};

// SD data when they convert, else generic data (floats too).
class ZqSCMolGetTaggedImpl final : public ZqPropertyFxn<ZqMolBase> {
 public:
  explicit ZqSCMolGetTaggedImpl(const std::string& tag) : generic_(tag, true), sd_(tag) {}
  bool Has(const ZqMolBase& mol) const override { return sd_.Has(mol) || generic_.Has(mol); }
  double Get(const ZqMolBase& mol) const override { return sd_.Has(mol) ? sd_.Get(mol) : generic_.Get(mol); }
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetTaggedImpl(*this); }

 private:
  ZqSCMolGetGenericDataImpl generic_;
  ZqSCMolGetSDDataImpl sd_;
};

// A handle owning one implementation of a property function.
template <class T, class Impl>
class ZqPropertyFxnHandle : public ZqPropertyFxn<T> {
 public:
  bool Has(const T& mol) const override { return impl_->Has(mol); }
  double Get(const T& mol) const override { return impl_->Get(mol); }

 protected:
  explicit ZqPropertyFxnHandle(Impl* impl) : impl_(impl) {}
  ZqPropertyFxnHandle(const ZqPropertyFxnHandle& other)
      : ZqPropertyFxn<T>(other), impl_(static_cast<Impl*>(other.impl_->CreateCopy())) {}
  ZqPropertyFxnHandle& operator=(const ZqPropertyFxnHandle& other) {
    if (this != &other) impl_.reset(static_cast<Impl*>(other.impl_->CreateCopy()));
    return *this;
  }

 private:
  std::unique_ptr<Impl> impl_;
};

class ZqSCMolGetSDData final : public ZqPropertyFxnHandle<ZqMolBase, ZqSCMolGetSDDataImpl> {
 public:
  explicit ZqSCMolGetSDData(const std::string& tag) : ZqPropertyFxnHandle(new ZqSCMolGetSDDataImpl(tag)) {}
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetSDData(*this); }
};

class ZqSCMolGetGenericData final : public ZqPropertyFxnHandle<ZqMolBase, ZqSCMolGetGenericDataImpl> {
 public:
  ZqSCMolGetGenericData(const std::string& tag, bool convertFloat)
      : ZqPropertyFxnHandle(new ZqSCMolGetGenericDataImpl(tag, convertFloat)) {}
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetGenericData(*this); }
};

class ZqSCMolGetTagged final : public ZqPropertyFxnHandle<ZqMolBase, ZqSCMolGetTaggedImpl> {
 public:
  explicit ZqSCMolGetTagged(const std::string& tag) : ZqPropertyFxnHandle(new ZqSCMolGetTaggedImpl(tag)) {}
  ZqPropertyFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolGetTagged(*this); }
};

// A single-conformer function on a multi-conformer molecule: tried on the
// molecule itself, then (with checkActive) on the active conformer, then
// (with checkAll) on each conformer in order; the first place where it
// has the property gives it.
class ZqGetMCMolWrapperFxnImpl final : public ZqPropertyFxn<ZqMCMolBase> {
 public:
  ZqGetMCMolWrapperFxnImpl(const ZqPropertyFxn<ZqMolBase>& wrapped, bool checkActive, bool checkAll)
      : wrapped_(wrapped.CreateCopy()), checkActive_(checkActive), checkAll_(checkAll) {}
  ZqGetMCMolWrapperFxnImpl(const ZqGetMCMolWrapperFxnImpl& other)
      : ZqPropertyFxn<ZqMCMolBase>(other),
        wrapped_(other.wrapped_->CreateCopy()),
        checkActive_(other.checkActive_),
        checkAll_(other.checkAll_) {}
  ZqGetMCMolWrapperFxnImpl& operator=(const ZqGetMCMolWrapperFxnImpl&) = delete;

  bool Has(const ZqMCMolBase& mol) const override { return Place(mol) != nullptr; }
  double Get(const ZqMCMolBase& mol) const override {
    const ZqMolBase* place = Place(mol);
    return place ? wrapped_->Get(*place) : 0.0;
  }
  ZqPropertyFxn<ZqMCMolBase>* CreateCopy() const override { return new ZqGetMCMolWrapperFxnImpl(*this); }

 private:
  const ZqMolBase* Place(const ZqMCMolBase& mol) const;

  std::unique_ptr<ZqPropertyFxn<ZqMolBase>> wrapped_;
  bool checkActive_;
  bool checkAll_;
};

class ZqMCMolGetSDData final : public ZqPropertyFxnHandle<ZqMCMolBase, ZqGetMCMolWrapperFxnImpl> {
 public:
  ZqMCMolGetSDData(const std::string& tag, bool checkActive, bool checkAll)
      : ZqPropertyFxnHandle(new ZqGetMCMolWrapperFxnImpl(ZqSCMolGetSDDataImpl(tag), checkActive, checkAll)) {}
  ZqPropertyFxn<ZqMCMolBase>* CreateCopy() const override { return new ZqMCMolGetSDData(*this); }
};

class ZqMCMolGetGenericData final : public ZqPropertyFxnHandle<ZqMCMolBase, ZqGetMCMolWrapperFxnImpl> {
 public:
  ZqMCMolGetGenericData(const std::string& tag, bool convertFloat, bool checkActive, bool checkAll)
      : ZqPropertyFxnHandle(
            new ZqGetMCMolWrapperFxnImpl(ZqSCMolGetGenericDataImpl(tag, convertFloat), checkActive, checkAll)) {}
  ZqPropertyFxn<ZqMCMolBase>* CreateCopy() const override { return new ZqMCMolGetGenericData(*this); }
};

class ZqMCMolGetTagged final : public ZqPropertyFxnHandle<ZqMCMolBase, ZqGetMCMolWrapperFxnImpl> {
 public:
  ZqMCMolGetTagged(const std::string& tag, bool checkActive, bool checkAll)
      : ZqPropertyFxnHandle(new ZqGetMCMolWrapperFxnImpl(ZqSCMolGetTaggedImpl(tag), checkActive, checkAll)) {}
  ZqPropertyFxn<ZqMCMolBase>* CreateCopy() const override { return new ZqMCMolGetTagged(*this); }
};

// A property list whose values a molecule can carry ready-made: PrepMol
// computes them all once and stores them on the molecule, and GetProperty
// reads them back. The stored values are trusted as they stand: after the
// molecule's data change, or with another list of the same length, they
// are stale.
template <class T>
class ZqMolPropertyListImpl : public ZqPropertyListPushFxn<T> {
 public:
  // The generic data tag of the stored values.
  static constexpr const char* kCacheTag = "ZqMolPropertyListFxn_PrepMol_Cache";

  // The stored value when the molecule carries values for a list of this
  // length, else the entry's Get.
  double GetProperty(const T& mol, std::size_t index) const override;
  ZqPropertyListFxn<T>* CreateCopy() const override { return new ZqMolPropertyListImpl(*this); }
  // True with nothing stored for an empty list; false, storing nothing,
  // when the molecule lacks a property.
  bool PrepMol(T& mol) const;
};

using ZqSCMolPropertyListImpl = ZqMolPropertyListImpl<ZqMolBase>;
using ZqMCMolPropertyListImpl = ZqMolPropertyListImpl<ZqMCMolBase>;

// The public property lists on the two kinds of molecule.
template <class T>
class ZqMolPropertyListHandle : public ZqPropertyListFxn<T> {
 public:
  ZqMolPropertyListHandle() = default;
  ZqMolPropertyListHandle(const ZqMolPropertyListHandle& other) = default;
  ZqMolPropertyListHandle& operator=(const ZqMolPropertyListHandle& other) = default;

  bool HasProperties(const T& mol) const override { return impl_.HasProperties(mol); }
  std::size_t GetSize() const override { return impl_.GetSize(); }
  double GetProperty(const T& mol, std::size_t index) const override { return impl_.GetProperty(mol, index); }

  void Clear() { impl_.Clear(); }
  void Push(const ZqPropertyFxn<T>& fxn) { impl_.Push(fxn); }
  bool PrepMol(T& mol) const { return impl_.PrepMol(mol); }

 private:
  ZqMolPropertyListImpl<T> impl_;
};

class ZqSCMolPropertyList final : public ZqMolPropertyListHandle<ZqMolBase> {
 public:
  ZqSCMolPropertyList() = default;
  // The list of the one tag.
  explicit ZqSCMolPropertyList(const std::string& tag) { PushTag(tag); }
  ZqPropertyListFxn<ZqMolBase>* CreateCopy() const override { return new ZqSCMolPropertyList(*this); }
  // Appends ZqSCMolGetTagged(tag).
  void PushTag(const std::string& tag) { Push(ZqSCMolGetTagged(tag)); }
};

class ZqMCMolPropertyList final : public ZqMolPropertyListHandle<ZqMCMolBase> {
 public:
  ZqMCMolPropertyList() = default;
  // The list of the one tag, looked for on the molecule itself only.
  explicit ZqMCMolPropertyList(const std::string& tag) { PushTag(tag, false, false); }
  ZqPropertyListFxn<ZqMCMolBase>* CreateCopy() const override { return new ZqMCMolPropertyList(*this); }
  // Appends ZqMCMolGetTagged(tag, checkActive, checkAll).
  void PushTag(const std::string& tag, bool checkActive, bool checkAll) {
    Push(ZqMCMolGetTagged(tag, checkActive, checkAll));
  }
};

// log10 of another function's value, defined where that value is positive.
class ZqMolLog10PropertyFxn final : public Molkit::ZqMolPropertyFxn {
 public:
  explicit ZqMolLog10PropertyFxn(const Molkit::ZqMolPropertyFxn& fxn) : fxn_(fxn.CreateCopy()) {}
  ZqMolLog10PropertyFxn(const ZqMolLog10PropertyFxn& other)
      : Molkit::ZqMolPropertyFxn(other), fxn_(other.fxn_->CreateCopy()) {}
  ZqMolLog10PropertyFxn& operator=(const ZqMolLog10PropertyFxn&) = delete;

  bool Has(const ZqMolBase& mol) const override { return fxn_->Has(mol) && fxn_->Get(mol) > 0.0; }
  bool Has(const ZqMCMolBase& mol) const override { return fxn_->Has(mol) && fxn_->Get(mol) > 0.0; }
  double Get(const ZqMolBase& mol) const override;
  double Get(const ZqMCMolBase& mol) const override;
  Molkit::ZqMolPropertyFxn* CreateCopy() const override { return new ZqMolLog10PropertyFxn(*this); }

 private:
  std::unique_ptr<Molkit::ZqMolPropertyFxn> fxn_;
};

// The average molecular weight; every molecule has one.
class ZqMolecularWeightPropertyFxn final : public Molkit::ZqMolPropertyFxn {
 public:
  bool Has(const ZqMolBase&) const override { return true; }
  bool Has(const ZqMCMolBase&) const override { return true; }
  double Get(const ZqMolBase& mol) const override { return Molkit::ZqCalculateMolecularWeight(mol); }
  double Get(const ZqMCMolBase& mol) const override { return Molkit::ZqCalculateMolecularWeight(mol); }
  Molkit::ZqMolPropertyFxn* CreateCopy() const override { return new ZqMolecularWeightPropertyFxn(*this); }
};

extern template class ZqMolPropertyListImpl<ZqMolBase>;
extern template class ZqMolPropertyListImpl<ZqMCMolBase>;

}  // namespace Varimo
