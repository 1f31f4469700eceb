// Forward iterators over sequences whose storage the caller need not know:
// an owned copy, a view into a container, or a filtered walk of another
// iterator. ZqIter<T> is the value handle the library returns; ZqIterBase<T>
// is what a new kind of walk implements.
//
//   for (Corvane::ZqIter<const std::string> it = result.GetContext(); it; ++it)
//     std::cout << *it;
//   for (const std::string& name : result.GetContext()) ...   // the same walk
//
// A default ZqIter is empty: it is exhausted at once. Copying a ZqIter copies
// its position; an owned sequence is shared between copies, not duplicated.
// Views (ZqMakeIterView) are valid only while their container lives and is
// not resized.
#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace Corvane {

template <class T>
class ZqIterBase {
 public:
  virtual ~ZqIterBase() = default;
  // True while the iterator stands on an element.
  virtual bool IsValid() const = 0;
  // The element it stands on; only while IsValid().
  virtual T& Current() const = 0;
  virtual void Next() = 0;
  // Back to the first element.
  virtual void ToFirst() = 0;
  virtual std::unique_ptr<ZqIterBase<T>> Clone() const = 0;
};

template <class T>
class ZqIter {
 public:
  ZqIter() = default;
  explicit ZqIter(std::unique_ptr<ZqIterBase<T>> impl) : impl_(std::move(impl)) {}
  ZqIter(const ZqIter& other) : impl_(other.impl_ ? other.impl_->Clone() : nullptr) {}
  ZqIter(ZqIter&&) noexcept = default;
  ZqIter& operator=(const ZqIter& other) {
    if (this != &other) impl_ = other.impl_ ? other.impl_->Clone() : nullptr;
    return *this;
  }
  ZqIter& operator=(ZqIter&&) noexcept = default;

  bool IsValid() const { return impl_ && impl_->IsValid(); }
  explicit operator bool() const { return IsValid(); }
  T& operator*() const { return impl_->Current(); }
  T* operator->() const { return &impl_->Current(); }
  ZqIter& operator++() {
    if (impl_) impl_->Next();
    return *this;
  }
  void ToFirst() {
    if (impl_) impl_->ToFirst();
  }

  // Number of elements from the first, counted on a copy: costs one walk.
  std::size_t Count() const {
    if (!impl_) return 0;
    std::unique_ptr<ZqIterBase<T>> walk = impl_->Clone();
    std::size_t n = 0;
    for (walk->ToFirst(); walk->IsValid(); walk->Next()) ++n;
    return n;
  }

  // Range-for support; the walk advances this iterator itself.
  struct Sentinel {};
  class Cursor {
   public:
    explicit Cursor(ZqIter* iter) : iter_(iter) {}
    T& operator*() const { return **iter_; }
    Cursor& operator++() {
      ++*iter_;
      return *this;
    }
    bool operator!=(Sentinel) const { return iter_->IsValid(); }

   private:
    ZqIter* iter_;
  };
  Cursor begin() { return Cursor(this); }
  Sentinel end() { return {}; }

 private:
  std::unique_ptr<ZqIterBase<T>> impl_;
};

namespace detail {

// Walks a sequence kept alive by a shared pointer; copies share it. The
// elements may be of a type derived from T.
template <class T, class Element = std::remove_const_t<T>>
class ZqOwnedIterImpl final : public ZqIterBase<T> {
 public:
  using Stored = std::vector<Element>;
  explicit ZqOwnedIterImpl(std::shared_ptr<Stored> values) : values_(std::move(values)) {}
  bool IsValid() const override { return position_ < values_->size(); }
  T& Current() const override { return (*values_)[position_]; }
  void Next() override { ++position_; }
  void ToFirst() override { position_ = 0; }
  std::unique_ptr<ZqIterBase<T>> Clone() const override {
    return std::make_unique<ZqOwnedIterImpl>(*this);
  }

 private:
  std::shared_ptr<Stored> values_;
  std::size_t position_ = 0;
};

template <class T, class ForwardIt>
class ZqRangeIterImpl final : public ZqIterBase<T> {
 public:
  ZqRangeIterImpl(ForwardIt first, ForwardIt last) : first_(first), current_(first), last_(last) {}
  bool IsValid() const override { return current_ != last_; }
  T& Current() const override { return *current_; }
  void Next() override { ++current_; }
  void ToFirst() override { current_ = first_; }
  std::unique_ptr<ZqIterBase<T>> Clone() const override {
    return std::make_unique<ZqRangeIterImpl>(*this);
  }

 private:
  ForwardIt first_, current_, last_;
};

template <class T>
class ZqFilterIterImpl final : public ZqIterBase<T> {
 public:
  ZqFilterIterImpl(ZqIter<T> source, std::function<bool(const T&)> keep)
      : source_(std::move(source)), keep_(std::move(keep)) {
    SkipRejected();
  }
  bool IsValid() const override { return source_.IsValid(); }
  T& Current() const override { return *source_; }
  void Next() override {
    ++source_;
    SkipRejected();
  }
  void ToFirst() override {
    source_.ToFirst();
    SkipRejected();
  }
  std::unique_ptr<ZqIterBase<T>> Clone() const override {
    return std::make_unique<ZqFilterIterImpl>(*this);
  }

 private:
  void SkipRejected() {
    while (source_.IsValid() && !keep_(*source_)) ++source_;
  }
  ZqIter<T> source_;
  std::function<bool(const T&)> keep_;
};

}  // namespace detail

// An iterator that owns `values`: it stays valid whatever happens to the
// object that made it.
template <class T>
ZqIter<T> ZqMakeOwnedIter(std::vector<std::remove_const_t<T>> values) {
  auto shared = std::make_shared<std::vector<std::remove_const_t<T>>>(std::move(values));
  return ZqIter<T>(std::make_unique<detail::ZqOwnedIterImpl<T>>(std::move(shared)));
}

// The same for elements of a class derived from T, walked as T: a list of
// concrete objects handed out through their interface.
template <class T, class Element>
ZqIter<T> ZqMakeOwnedIterAs(std::vector<Element> values) {
  static_assert(std::is_base_of_v<std::remove_const_t<T>, Element>, "elements must be T or derived from it");
  auto shared = std::make_shared<std::vector<Element>>(std::move(values));
  return ZqIter<T>(std::make_unique<detail::ZqOwnedIterImpl<T, Element>>(std::move(shared)));
}

// A view of [first, last); the caller keeps the range alive.
template <class T, class ForwardIt>
ZqIter<T> ZqMakeIterView(ForwardIt first, ForwardIt last) {
  return ZqIter<T>(std::make_unique<detail::ZqRangeIterImpl<T, ForwardIt>>(first, last));
}

// The elements of `source` for which `keep` holds, evaluated as the walk
// reaches them (once per element per walk; nothing is cached).
template <class T>
ZqIter<T> ZqMakeFilterIter(ZqIter<T> source, std::function<bool(const T&)> keep) {
  return ZqIter<T>(std::make_unique<detail::ZqFilterIterImpl<T>>(std::move(source), std::move(keep)));
}

}  // namespace Corvane
