// Abstract function objects that models copy and own. Unlike std::function
// they are polymorphic bases: a model keeps a CreateCopy() of the caller's
// functor, so the caller's object may die or change afterwards.
#pragma once

namespace Corvane {

template <class Arg, class Result>
class ZqUnaryFunction {
 public:
  using argument_type = Arg;
  using result_type = Result;
  virtual ~ZqUnaryFunction() = default;
  virtual Result operator()(const Arg& arg) const = 0;
  // A new copy of the concrete functor, owned by the caller.
  virtual ZqUnaryFunction* CreateCopy() const = 0;
};

template <class Arg1, class Arg2, class Result>
class ZqBinaryFunction {
 public:
  using first_argument_type = Arg1;
  using second_argument_type = Arg2;
  using result_type = Result;
  virtual ~ZqBinaryFunction() = default;
  virtual Result operator()(const Arg1& first, const Arg2& second) const = 0;
  virtual ZqBinaryFunction* CreateCopy() const = 0;
};

// Copies a polymorphic object through its CreateCopy(); the copy is owned by
// the caller.
template <class T>
struct ZqCreateCopyFxn {
  T* operator()(const T& object) const { return static_cast<T*>(object.CreateCopy()); }
};

template <class Arg>
using ZqUnaryPredicate = ZqUnaryFunction<Arg, bool>;

template <class Arg1, class Arg2>
using ZqBinaryPredicate = ZqBinaryFunction<Arg1, Arg2, bool>;

}  // namespace Corvane
