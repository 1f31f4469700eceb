#include <cmath>

#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var_constraints.h"

namespace Varimo {

namespace F = ZqStatModelFailureType;

namespace {
// Tolerance of a sum constraint made without one: well above the rounding
// error of summing probabilities in double, well below any real mistake.
constexpr double kDefaultSumTolerance = 1e-10;
}  // namespace

ZqStatModelResult ZqGlobalNullConstraint::CheckConstraint(const Eigen::VectorXd&) const {
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqGlobalNullConstraint::CheckConstraint");
}

ZqStatModelResult ZqGlobalNullConstraint::CheckConstraint(const Eigen::MatrixXd&) const {
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqGlobalNullConstraint::CheckConstraint");
}

std::string ZqGlobalNullConstraint::Print() const { return "This is a Null Global Constraint\n"; }

ZqStatModelResult ZqRanVarVectorHasSumVal::CheckConstraint(const Eigen::VectorXd& value) const {
  const double s = value.sum();  // 0 for an empty vector
  // Written so that a NaN sum passes.
  if (std::fabs(s - sum_) > tolerance_) {
    return ZqMakeFailedResult(F::SumOfArgumentsWrong, "ZqRanVarVectorHasSumVal::CheckConstraint",
                              Corvane::ZqMakeString("Vector sums to = ", s, "; Expected sum = ", sum_,
                                                    "; Tolerance = ", tolerance_, "\n"));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRanVarVectorHasSumVal::CheckConstraint(const Eigen::MatrixXd&) const {
  return ZqMakeFailedResult(F::VectorArgumentRequired, "ZqRanVarVectorHasSumVal::CheckConstraint",
                            "Argument is a Matrix");
}

std::string ZqRanVarVectorHasSumVal::Print() const {
  return Corvane::ZqMakeString("ZqRanVarVectorHasSumVal: asserts elements sum to ", sum_, "(tol: ", tolerance_,
                               ")\n");
}

std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int) {
  return std::make_unique<ZqGlobalNullConstraint>();
}

std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int kind, double sum) {
  return ZqGetGlobalConstraintBase(kind, sum, kDefaultSumTolerance);
}

std::unique_ptr<ZqRanVarGlobalConstraintBase> ZqGetGlobalConstraintBase(unsigned int kind, double sum,
                                                                        double tolerance) {
  if (kind == ZqRanVarConstraintKind::VectorHasSumVal) return std::make_unique<ZqRanVarVectorHasSumVal>(sum, tolerance);
  return std::make_unique<ZqGlobalNullConstraint>();
}

}  // namespace Varimo
