// Property functions: numbers read from an element, the drift of universal
// kriging. A property function gives one number, a property list a fixed
// number of them; the kriging engine sees only ZqPropertyListFxn.
//
//   Varimo::ZqPropertyListPushFxn<Compound> drift;
//   drift.Push(LogP());  // a ZqPropertyFxn<Compound>
//   if (drift.HasProperties(c)) x = drift.GetProperty(c, 0);
#pragma once

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

template <class T>
class ZqPropertyFxn {
 public:
  virtual ~ZqPropertyFxn() = default;
  // Whether the element carries the property; Get without Has returns 0.0.
  virtual bool Has(const T& element) const = 0;
  virtual double Get(const T& element) const = 0;
  // A new copy of the concrete function, owned by the caller.
  virtual ZqPropertyFxn* CreateCopy() const = 0;
};

template <class T>
class ZqPropertyListFxn {
 public:
  virtual ~ZqPropertyListFxn() = default;
  // Whether every property of the list can be read from the element.
  virtual bool HasProperties(const T& element) const = 0;
  virtual std::size_t GetSize() const = 0;
  virtual double GetProperty(const T& element, std::size_t index) const = 0;
  virtual ZqPropertyListFxn* CreateCopy() const = 0;
};

// A list of owned single properties, in the order pushed. An empty list has
// every property (there are none) and size 0.
template <class T>
class ZqPropertyListPushFxn : public ZqPropertyListFxn<T> {
 public:
  ZqPropertyListPushFxn() = default;
  ZqPropertyListPushFxn(const ZqPropertyListPushFxn& other) { CopyEntries(other); }
  ZqPropertyListPushFxn& operator=(const ZqPropertyListPushFxn& other) {
    if (this != &other) CopyEntries(other);
    return *this;
  }
  ZqPropertyListPushFxn(ZqPropertyListPushFxn&&) noexcept = default;
  ZqPropertyListPushFxn& operator=(ZqPropertyListPushFxn&&) noexcept = default;

  bool HasProperties(const T& element) const override {
    for (const auto& entry : entries_) {
      if (!entry->Has(element)) return false;
    }
    return true;
  }
  std::size_t GetSize() const override { return entries_.size(); }
  // Entry `index`'s Get; the index is the caller's to keep below GetSize().
  double GetProperty(const T& element, std::size_t index) const override { return entries_[index]->Get(element); }
  ZqPropertyListFxn<T>* CreateCopy() const override { return new ZqPropertyListPushFxn(*this); }

  // Appends a copy of `fxn`.
  void Push(const ZqPropertyFxn<T>& fxn) { entries_.emplace_back(fxn.CreateCopy()); }
  void Clear() { entries_.clear(); }
  const ZqPropertyFxn<T>& GetEntry(std::size_t index) const { return *entries_[index]; }

 private:
  void CopyEntries(const ZqPropertyListPushFxn& other) {
    std::vector<std::unique_ptr<ZqPropertyFxn<T>>> copies;
    copies.reserve(other.entries_.size());
    for (const auto& entry : other.entries_) copies.emplace_back(entry->CreateCopy());
    entries_ = std::move(copies);
  }

  std::vector<std::unique_ptr<ZqPropertyFxn<T>>> entries_;
};

// The drift properties of a training element, appended to `values`. False
// when one is not finite (an SD field reading "nan" or "inf", say), with a
// warning naming `caller`: such a value would turn the least-squares fit of
// the drift and every bordered solve into NaN, so the element is refused.
// The caller has checked HasProperties.
template <class T>
bool ZqReadFiniteProperties(const ZqPropertyListFxn<T>& properties, const T& element, std::vector<double>& values,
                            const char* caller) {
  const std::size_t first = values.size();
  for (std::size_t k = 0; k < properties.GetSize(); ++k) {
    const double value = properties.GetProperty(element, k);
    if (!std::isfinite(value)) {
      Corvane::ZqThrow.Warning("%s, drift property %zu is not finite (%g): the training element is refused", caller,
                               k, value);
      values.resize(first);
      return false;
    }
    values.push_back(value);
  }
  return true;
}

}  // namespace Varimo
