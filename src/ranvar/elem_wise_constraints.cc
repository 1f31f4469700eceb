#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var_constraints.h"

namespace Varimo {

namespace F = ZqStatModelFailureType;

ZqStatModelResult ZqElemWiseNullConstraint::CheckConstraint(double) const {
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqElemWiseNullConstraint::CheckConstraint");
}

std::string ZqElemWiseNullConstraint::Print() const { return "This is an Element-Wise Null Constraint\n"; }

ZqStatModelResult ZqElementIsPositive::CheckConstraint(double value) const {
  // Written so that a NaN passes: NaN is not this constraint's business.
  if (0.0 >= value) {
    return ZqMakeFailedResult(F::LowerBoundViolated, "ZqElementIsPositive::CheckConstraint",
                              Corvane::ZqMakeString("Argument value = ", value, "; should be positive!\n"));
  }
  return ZqStatModelResult(true);
}

std::string ZqElementIsPositive::Print() const { return "ZqElementIsPositive: asserts value is positive\n"; }

ZqStatModelResult ZqElementIsNonNegative::CheckConstraint(double value) const {
  if (0.0 > value) {
    return ZqMakeFailedResult(F::LowerBoundViolated, "ZqElementIsNonNegative::CheckConstraint",
                              Corvane::ZqMakeString("Argument value = ", value, "; should be non-negative!\n"));
  }
  return ZqStatModelResult(true);
}

std::string ZqElementIsNonNegative::Print() const {
  return "ZqElementIsNonNegative: asserts value is non-negative\n";
}

std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int kind) {
  switch (kind) {
    case ZqRanVarConstraintKind::ElementIsPositive:
      return std::make_unique<ZqElementIsPositive>();
    case ZqRanVarConstraintKind::ElementIsNonNegative:
      return std::make_unique<ZqElementIsNonNegative>();
    default:
      return std::make_unique<ZqElemWiseNullConstraint>();
  }
}

// No element-wise constraint has a parameter yet; the null constraint makes
// a request for one visible at the first check instead of silently dropping
// the parameter.
std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int, double) {
  return std::make_unique<ZqElemWiseNullConstraint>();
}

std::unique_ptr<ZqRanVarElemWiseConstraintBase> ZqGetElemWiseConstraintBase(unsigned int, double, double) {
  return std::make_unique<ZqElemWiseNullConstraint>();
}

}  // namespace Varimo
