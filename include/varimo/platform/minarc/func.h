// The functions the optimisers minimise. A caller derives from the interface
// that matches what it can compute: ZqFunc0 gives the value only, ZqFunc1 adds
// the gradient and ZqFunc2 the Hessian. The line minimisers need a ZqFunc0,
// the Newton optimiser a ZqFunc2.
//
// Every evaluation takes a pointer to NumVar() doubles. The evaluations are
// not const: a function may cache what it computed for its last argument.
#pragma once

#include <functional>
#include <utility>

#include "varimo/platform/corvane/iter.h"

namespace Minarc {

// One term of an objective that is a sum of terms (a residual of a least
// squares fit, say): its position in the sum and its value.
class ZqFComponent {
 public:
  ZqFComponent(unsigned int index, double value) : index_(index), value_(value) {}
  unsigned int GetIndex() const { return index_; }
  double GetValue() const { return value_; }

 private:
  unsigned int index_;
  double value_;
};

class ZqFunc0 {
 public:
  virtual ~ZqFunc0() = default;

  virtual unsigned int NumVar() const = 0;
  // The value at x. A function that cannot be evaluated at x returns NaN or
  // an infinity; the optimisers of this library treat that as "not here".
  virtual double operator()(const double* x) = 0;

  // The terms of the value at x. The default, for functions that are not a
  // sum of terms, is an empty iterator.
  virtual Corvane::ZqIter<ZqFComponent> GetFComponents(const double* x);

  // Whether x lies in the function's domain. The default accepts any x whose
  // NumVar() elements are all finite. No optimiser of this library calls it;
  // it is offered to callers that sample starting points.
  virtual bool CheckVariablesValidity(const double* x);

  // Whether x and y are the same point for this function's purposes. The
  // default: every element differs by at most `tolerance`.
  virtual bool IsRedundant(const double* x, const double* y, double tolerance) const;
};

class ZqFunc1 : public virtual ZqFunc0 {
 public:
  using ZqFunc0::operator();
  // The value at x, and the NumVar() partial derivatives written to gradient.
  virtual double operator()(const double* x, double* gradient) = 0;
};

class ZqFunc2 : public virtual ZqFunc1 {
 public:
  using ZqFunc1::operator();
  // The value and gradient at x, and the NumVar() by NumVar() matrix of
  // second derivatives written row-major to hessian. Only its lower triangle
  // is read by ZqNewtonOpt.
  virtual double operator()(const double* x, double* gradient, double* hessian) = 0;
};

// Stands in for a ZqFunc0 when the function is a plain callable: it only
// forwards each evaluation.
class NumericFunc1 : public ZqFunc0 {
 public:
  NumericFunc1(unsigned int numVar, std::function<double(const double*)> function)
      : numVar_(numVar), function_(std::move(function)) {}
  unsigned int NumVar() const override { return numVar_; }
  double operator()(const double* x) override { return function_(x); }

 private:
  unsigned int numVar_;
  std::function<double(const double*)> function_;
};

}  // namespace Minarc
