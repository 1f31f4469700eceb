#include "varimo/platform/corvane/strings.h"
#include "varimo/ranvar/ran_var_constraints.h"

namespace Varimo {

namespace {

constexpr const char* kElemWiseContext = "ZqCheckRanVarConstraints::CheckElemWiseConstraints";
constexpr const char* kGlobalContext = "ZqCheckRanVarConstraints::CheckGlobalConstraints";
constexpr const char* kCheckContext = "ZqCheckRanVarConstraints::CheckConstraints";

// The first refusal of `value` by any of `constraints`, with `context` added;
// success when all accept.
template <class Constraint, class Value>
ZqStatModelResult FirstRefusal(const std::vector<Constraint>& constraints, const Value& value, const char* context) {
  for (const Constraint& constraint : constraints) {
    ZqStatModelResult result = constraint.CheckConstraint(value);
    if (result.NotSuccessful()) {
      result.AddCallContext(context);
      return result;
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult PassOn(ZqStatModelResult result) {
  if (result.NotSuccessful()) result.AddCallContext(kCheckContext);
  return result;
}

// A vector or matrix meets the element-wise constraints only once it has
// passed the global ones.
template <class Value>
ZqStatModelResult GlobalThenElemWise(const ZqCheckRanVarConstraints& checker, const Value& value) {
  ZqStatModelResult result = checker.CheckGlobalConstraints(value);
  if (result.IsSuccessful()) result = checker.CheckElemWiseConstraints(value);
  return PassOn(result);
}

}  // namespace

ZqCheckRanVarConstraints::ZqCheckRanVarConstraints()
    : globalConstraints_(1, ZqRanVarGlobalConstraint()), elemWiseConstraints_(1, ZqRanVarElemWiseConstraint()) {}

ZqCheckRanVarConstraints::ZqCheckRanVarConstraints(
    const std::vector<ZqRanVarGlobalConstraint>& globalConstraints,
    const std::vector<ZqRanVarElemWiseConstraint>& elemWiseConstraints)
    : globalConstraints_(globalConstraints), elemWiseConstraints_(elemWiseConstraints) {}

ZqCheckRanVarConstraints& ZqCheckRanVarConstraints::operator=(const ZqCheckRanVarConstraints& other) {
  if (this != &other) {
    globalConstraints_ = other.globalConstraints_;
    elemWiseConstraints_ = other.elemWiseConstraints_;
  }
  return *this;
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckElemWiseConstraints(double value) const {
  return FirstRefusal(elemWiseConstraints_, value, kElemWiseContext);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckElemWiseConstraints(const Eigen::VectorXd& value) const {
  for (Eigen::Index i = 0; i < value.size(); ++i) {
    ZqStatModelResult result = FirstRefusal(elemWiseConstraints_, value(i), kElemWiseContext);
    if (result.NotSuccessful()) {
      result.AddExtraComment(Corvane::ZqMakeString("Problem with Vector element(", i, "); value = ", value(i), "\n"));
      return result;
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckElemWiseConstraints(const Eigen::MatrixXd& value) const {
  // Row by row, so that the element named is the first in reading order.
  for (Eigen::Index r = 0; r < value.rows(); ++r) {
    for (Eigen::Index c = 0; c < value.cols(); ++c) {
      ZqStatModelResult result = FirstRefusal(elemWiseConstraints_, value(r, c), kElemWiseContext);
      if (result.NotSuccessful()) {
        result.AddExtraComment(
            Corvane::ZqMakeString("Problem with Matrix element(", r, ",", c, "); value = ", value(r, c), "\n"));
        return result;
      }
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckGlobalConstraints(const Eigen::VectorXd& value) const {
  return FirstRefusal(globalConstraints_, value, kGlobalContext);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckGlobalConstraints(const Eigen::MatrixXd& value) const {
  return FirstRefusal(globalConstraints_, value, kGlobalContext);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckConstraints(double value) const {
  return PassOn(CheckElemWiseConstraints(value));
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckConstraints(const Eigen::VectorXd& value) const {
  return GlobalThenElemWise(*this, value);
}

ZqStatModelResult ZqCheckRanVarConstraints::CheckConstraints(const Eigen::MatrixXd& value) const {
  return GlobalThenElemWise(*this, value);
}

std::string ZqCheckRanVarConstraints::Print() const {
  std::string text;
  for (const ZqRanVarGlobalConstraint& constraint : globalConstraints_) text += constraint.Print();
  for (const ZqRanVarElemWiseConstraint& constraint : elemWiseConstraints_) text += constraint.Print();
  return text;
}

}  // namespace Varimo
