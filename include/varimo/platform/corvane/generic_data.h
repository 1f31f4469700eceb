// Typed data attached to an object under integer tags. A tag is the
// process-wide number of a name (ZqGetTag("Contribution")); one tag may hold
// several data of different types, kept in the order they were added.
//
//   mol.SetData(ZqGetTag("logP"), 2.5);
//   if (const double* v = mol.GetData<double>(ZqGetTag("logP"))) ...
#pragma once

#include <any>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "varimo/platform/corvane/iter.h"

namespace Corvane {

// The tag of `name`: the same name always gives the same tag, different
// names different tags, and no tag is 0. Thread-safe.
unsigned int ZqGetTag(const std::string& name);
// The name behind a tag; an empty string for a tag never handed out.
std::string ZqGetTagName(unsigned int tag);

// One datum: its tag and a value of any copyable type.
class ZqGenericData {
 public:
  ZqGenericData(unsigned int tag, std::any value) : tag_(tag), value_(std::move(value)) {}
  unsigned int GetTag() const { return tag_; }
  template <class T>
  bool IsType() const {
    return value_.type() == typeid(T);
  }
  // The value when it is of type T, else null.
  template <class T>
  const T* Get() const {
    return std::any_cast<T>(&value_);
  }

 private:
  unsigned int tag_;
  std::any value_;
};

class ZqBase {
 public:
  virtual ~ZqBase() = default;

  // Replaces everything under `tag` by one datum.
  template <class T>
  void SetData(unsigned int tag, T value) {
    DeleteData(tag);
    data_.emplace_back(tag, std::any(std::move(value)));
  }
  // Adds a datum under `tag` after those already there.
  template <class T>
  void AddData(unsigned int tag, T value) {
    data_.emplace_back(tag, std::any(std::move(value)));
  }

  bool HasData(unsigned int tag) const;
  // Whether some datum under `tag` has type T.
  template <class T>
  bool HasData(unsigned int tag) const {
    return GetData<T>(tag) != nullptr;
  }
  // The first datum of type T under `tag`, or null.
  template <class T>
  const T* GetData(unsigned int tag) const {
    for (const ZqGenericData& datum : data_) {
      if (datum.GetTag() == tag) {
        if (const T* value = datum.Get<T>()) return value;
      }
    }
    return nullptr;
  }
  // All data under `tag`, in the order added, as an owned copy.
  ZqIter<const ZqGenericData> GetDataIter(unsigned int tag) const;
  // All data of the object.
  ZqIter<const ZqGenericData> GetDataIter() const;

  // Removes everything under `tag`; false when there was nothing.
  bool DeleteData(unsigned int tag);
  void ClearData() { data_.clear(); }

 private:
  std::vector<ZqGenericData> data_;
};

}  // namespace Corvane
