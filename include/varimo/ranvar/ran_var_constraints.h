// Constraints on the values of an nZqRanVar (nran_var.h).
//
// Element-wise constraints look at one double at a time; global constraints
// look at a vector or a matrix as a whole. ZqCheckRanVarConstraints carries a
// list of each and runs them, stopping at the first refusal.
//
//   ZqCheckRanVarConstraints weights({ZqRanVarGlobalConstraint(ZqRanVarConstraintKind::VectorHasSumVal, 1.0)},
//                                    {ZqRanVarElemWiseConstraint(ZqRanVarConstraintKind::ElementIsNonNegative)});
//   ZqStatModelResult ok = weights.CheckConstraints(probabilities);
//
// The null constraints refuse every value. A checker that was never given its
// lists (the default constructor) holds one null constraint of each kind and
// so refuses everything: it marks a variable whose constraints were never
// set. A checker built from two empty lists accepts everything.
//
// No check throws; a refusal is a failed ZqStatModelResult whose chain starts
// at the constraint's own CheckConstraint. Pass an Eigen::VectorXd or
// Eigen::MatrixXd, not an expression such as MatrixXd::Identity(n, n), which
// would fit both overloads.
#pragma once

#include <Eigen/Core>

#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

// The kind codes understood by the constraint factories below.
namespace ZqRanVarConstraintKind {
inline constexpr unsigned int Null = 0;
inline constexpr unsigned int ElementIsPositive = 1;     // element-wise only
inline constexpr unsigned int ElementIsNonNegative = 2;  // element-wise only
inline constexpr unsigned int VectorHasSumVal = 3;       // global only, with a sum
}  // namespace ZqRanVarConstraintKind

// --- Element-wise constraints.

class ZqRanVarElemWiseConstraintBase {
 public:
  // A new copy owned by the caller.
  virtual ZqRanVarElemWiseConstraintBase* CreateCopy() const = 0;
  virtual ~ZqRanVarElemWiseConstraintBase() = default;
  virtual ZqStatModelResult CheckConstraint(double value) const = 0;
  // One line describing the constraint, ending in a newline.
  virtual std::string Print() const = 0;
};

// Refuses every value with ObjectNotValid.
class ZqElemWiseNullConstraint final : public ZqRanVarElemWiseConstraintBase {
 public:
  ZqElemWiseNullConstraint* CreateCopy() const override { return new ZqElemWiseNullConstraint(*this); }
  ZqStatModelResult CheckConstraint(double value) const override;
  std::string Print() const override;
};

// Refuses 0 and below with LowerBoundViolated. A NaN is accepted: the test is
// written as "0 >= value", which a NaN never satisfies.
class ZqElementIsPositive final : public ZqRanVarElemWiseConstraintBase {
 public:
  ZqElementIsPositive* CreateCopy() const override { return new ZqElementIsPositive(*this); }
  ZqStatModelResult CheckConstraint(double value) const override;
  std::string Print() const override;
};

// Refuses values below 0 with LowerBoundViolated; accepts 0 and NaN.
class ZqElementIsNonNegative final : public ZqRanVarElemWiseConstraintBase {
 public:
  ZqElementIsNonNegative* CreateCopy() const override { return new ZqElementIsNonNegative(*this); }
  ZqStatModelResult CheckConstraint(double value) const override;
  std::string Print() const override;
};

// Kind 1 gives ZqElementIsPositive, kind 2 ZqElementIsNonNegative, every
// other kind the null constraint. No element-wise constraint takes a
// parameter, so the forms with parameters always give the null constraint.
std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int kind);
std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int kind, double parameter);
std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int kind, double parameter1,
                                                                            double parameter2);

// A value handle on one element-wise constraint, made by the factory;
// copies are deep. The default is the null constraint.
class ZqRanVarElemWiseConstraint {
 public:
  ZqRanVarElemWiseConstraint() : ZqRanVarElemWiseConstraint(ZqRanVarConstraintKind::Null) {}
  explicit ZqRanVarElemWiseConstraint(unsigned int kind) : impl_(ZqGetElemWiseConstraintBase(kind)) {}
  ZqRanVarElemWiseConstraint(unsigned int kind, double parameter)
      : impl_(ZqGetElemWiseConstraintBase(kind, parameter)) {}
  ZqRanVarElemWiseConstraint(unsigned int kind, double parameter1, double parameter2)
      : impl_(ZqGetElemWiseConstraintBase(kind, parameter1, parameter2)) {}
  ZqRanVarElemWiseConstraint(const ZqRanVarElemWiseConstraint& other) : impl_(other.impl_->CreateCopy()) {}
  ZqRanVarElemWiseConstraint& operator=(const ZqRanVarElemWiseConstraint& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqStatModelResult CheckConstraint(double value) const { return impl_->CheckConstraint(value); }
  std::string Print() const { return impl_->Print(); }

 private:
  std::unique_ptr<ZqRanVarElemWiseConstraintBase> impl_;
};

// --- Global constraints.

class ZqRanVarGlobalConstraintBase {
 public:
  // A new copy owned by the caller.
  virtual ZqRanVarGlobalConstraintBase* CreateCopy() const = 0;
  virtual ~ZqRanVarGlobalConstraintBase() = default;
  virtual ZqStatModelResult CheckConstraint(const Eigen::VectorXd& value) const = 0;
  virtual ZqStatModelResult CheckConstraint(const Eigen::MatrixXd& value) const = 0;
  // One line describing the constraint, ending in a newline.
  virtual std::string Print() const = 0;
};

// Refuses every vector and matrix with ObjectNotValid.
class ZqGlobalNullConstraint final : public ZqRanVarGlobalConstraintBase {
 public:
  ZqGlobalNullConstraint* CreateCopy() const override { return new ZqGlobalNullConstraint(*this); }
  ZqStatModelResult CheckConstraint(const Eigen::VectorXd& value) const override;
  ZqStatModelResult CheckConstraint(const Eigen::MatrixXd& value) const override;
  std::string Print() const override;
};

// The elements of a vector must sum to `sum` within `tolerance` (the sum of
// an empty vector is 0); a refusal is SumOfArgumentsWrong and names the sum
// found. A NaN sum is accepted, as the comparison is "|s - sum| > tolerance".
// A matrix is always refused with VectorArgumentRequired.
class ZqRanVarVectorHasSumVal final : public ZqRanVarGlobalConstraintBase {
 public:
  ZqRanVarVectorHasSumVal(double sum, double tolerance) : sum_(sum), tolerance_(tolerance) {}
  ZqRanVarVectorHasSumVal* CreateCopy() const override { return new ZqRanVarVectorHasSumVal(*this); }
  ZqStatModelResult CheckConstraint(const Eigen::VectorXd& value) const override;
  ZqStatModelResult CheckConstraint(const Eigen::MatrixXd& value) const override;
  std::string Print() const override;

  double GetSum() const { return sum_; }
  double GetTolerance() const { return tolerance_; }

 private:
  double sum_;
  double tolerance_;
};

// Kind 3 with a sum gives ZqRanVarVectorHasSumVal, with the tolerance given
// or else 1e-10; every other call gives the null constraint.
std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int kind);
std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int kind, double sum);
std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int kind, double sum,
                                                                        double tolerance);

// A value handle on one global constraint, made by the factory; copies are
// deep. The default is the null constraint.
class ZqRanVarGlobalConstraint {
 public:
  ZqRanVarGlobalConstraint() : ZqRanVarGlobalConstraint(ZqRanVarConstraintKind::Null) {}
  explicit ZqRanVarGlobalConstraint(unsigned int kind) : impl_(ZqGetGlobalConstraintBase(kind)) {}
  ZqRanVarGlobalConstraint(unsigned int kind, double sum) : impl_(ZqGetGlobalConstraintBase(kind, sum)) {}
  ZqRanVarGlobalConstraint(unsigned int kind, double sum, double tolerance)
      : impl_(ZqGetGlobalConstraintBase(kind, sum, tolerance)) {}
  ZqRanVarGlobalConstraint(const ZqRanVarGlobalConstraint& other) : impl_(other.impl_->CreateCopy()) {}
  ZqRanVarGlobalConstraint& operator=(const ZqRanVarGlobalConstraint& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqStatModelResult CheckConstraint(const Eigen::VectorXd& value) const { return impl_->CheckConstraint(value); }
  ZqStatModelResult CheckConstraint(const Eigen::MatrixXd& value) const { return impl_->CheckConstraint(value); }
  std::string Print() const { return impl_->Print(); }

 private:
  std::unique_ptr<ZqRanVarGlobalConstraintBase> impl_;
};

// --- The checker.

class ZqCheckRanVarConstraints {
 public:
  // One null global and one null element-wise constraint: refuses everything.
  ZqCheckRanVarConstraints();
  ZqCheckRanVarConstraints(const std::vector<ZqRanVarGlobalConstraint>& globalConstraints,
                           const std::vector<ZqRanVarElemWiseConstraint>& elemWiseConstraints);
  ZqCheckRanVarConstraints(const ZqCheckRanVarConstraints&) = default;
  ZqCheckRanVarConstraints& operator=(const ZqCheckRanVarConstraints& other);

  // A new copy owned by the caller.
  ZqCheckRanVarConstraints* CreateCopy() const { return new ZqCheckRanVarConstraints(*this); }

  // Each element against each element-wise constraint, in order. A vector or
  // matrix refusal adds a comment naming the first offending element, its
  // index counted from 0 ("Problem with Vector element(2); value = -1").
  ZqStatModelResult CheckElemWiseConstraints(double value) const;
  ZqStatModelResult CheckElemWiseConstraints(const Eigen::VectorXd& value) const;
  ZqStatModelResult CheckElemWiseConstraints(const Eigen::MatrixXd& value) const;
  // The value against each global constraint, in order.
  ZqStatModelResult CheckGlobalConstraints(const Eigen::VectorXd& value) const;
  ZqStatModelResult CheckGlobalConstraints(const Eigen::MatrixXd& value) const;

  // A scalar meets only the element-wise constraints. A vector or matrix
  // meets the global constraints first and, if it passes them, the
  // element-wise ones.
  ZqStatModelResult CheckConstraints(double value) const;
  ZqStatModelResult CheckConstraints(const Eigen::VectorXd& value) const;
  ZqStatModelResult CheckConstraints(const Eigen::MatrixXd& value) const;

  // The prints of the global constraints, then of the element-wise ones.
  std::string Print() const;

 private:
  std::vector<ZqRanVarGlobalConstraint> globalConstraints_;
  std::vector<ZqRanVarElemWiseConstraint> elemWiseConstraints_;
};

}  // namespace Varimo
