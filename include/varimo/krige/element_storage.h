// Element storage policies of the kriging engine: what a training record
// holds of its element. A policy is a small class without virtual
// operations: `Stored` is the record's type, `Store` makes it from the
// caller's element and `Get` reads the element back.
#pragma once

#include <memory>

#include "varimo/platform/corvane/functional.h"

namespace Varimo {

// A copy of the element by value: for elements with cheap copies.
template <class T>
struct ZqKrigeDefaultElementStorage {
  using Stored = T;
  static Stored Store(const T& element) { return element; }
  static const T& Get(const Stored& stored) { return stored; }
};

// A pointer to an element owned by someone else, who must keep it alive as
// long as the record: for containers that borrow the records of another
// model for one query.
template <class T>
struct ZqKrigeUnmanagedPtrElementStorage {
  using Stored = const T*;
  static Stored Store(const T& element) { return &element; }
  static const T& Get(const Stored& stored) { return *stored; }
};

// An owning pointer to a copy made by the copy functor F: for polymorphic
// elements. Training elements never change once added, so copies of a
// record (and of the model that holds it) share the one copy.
template <class T, class F = Corvane::ZqCreateCopyFxn<T>>
struct ZqKrigeCopyPtrElementStorage {
  using Stored = std::shared_ptr<const T>;
  static Stored Store(const T& element) { return Stored(F()(element)); }
  static const T& Get(const Stored& stored) { return *stored; }
};

}  // namespace Varimo
