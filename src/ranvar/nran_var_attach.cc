// The checks of nZqRanVar: a value against the handle's constraints, and the
// attachment of one handle to the value of another.
#include <string>

#include "varimo/ranvar/nran_var.h"

namespace Varimo {

namespace {

namespace F = ZqStatModelFailureType;

constexpr const char* kAttachContext = "nZqRanVar::AttachData";

std::string DataTypeText(std::uint32_t dataType) {
  return nZqRanVarDataType::RanVarDataTypeName[dataType < nZqRanVarDataType::NumTypes ? dataType
                                                                                     : nZqRanVarDataType::Unknown];
}

}  // namespace

template <class Value>
ZqStatModelResult nZqRanVar::CheckConstraintsOfType(std::uint32_t dataType, const char* kindText,
                                                    const Value& value) const {
  if (requiredDataType_ == dataType) return constraints_->CheckConstraints(value);
  return ZqMakeFailedResult(F::ArgumentTypeWrong, "nZqRanVar::CheckConstraints",
                            std::string("Trying to load a ") + kindText + ", while " +
                                "Random variable has required data type " + DataTypeText(requiredDataType_) + "\n");
}

ZqStatModelResult nZqRanVar::CheckConstraints(double value) const {
  return CheckConstraintsOfType(nZqRanVarDataType::ScalarDouble, "scalar", value);
}

ZqStatModelResult nZqRanVar::CheckConstraints(const Eigen::VectorXd& value) const {
  return CheckConstraintsOfType(nZqRanVarDataType::VectorXd, "vector", value);
}

ZqStatModelResult nZqRanVar::CheckConstraints(const Eigen::MatrixXd& value) const {
  return CheckConstraintsOfType(nZqRanVarDataType::MatrixXd, "matrix", value);
}

ZqStatModelResult nZqRanVar::AttachData(const nZqRanVar& source, bool checkConstraints) {
  if (checkConstraints) {
    const std::uint32_t dataType = source.GetRanVarRequiredDataType();
    if (dataType != requiredDataType_) {
      return ZqMakeFailedResult(F::ArgumentTypeWrong, kAttachContext,
                                "Source random variable has required data type " + DataTypeText(dataType) + "\n" +
                                    "Random variable to be attached to has required data type " +
                                    DataTypeText(requiredDataType_) + "\n");
    }

    // The source's storage may hold another kind than its data type says
    // (it may itself have been attached without checks), so its value is
    // read through the checked forms.
    ZqStatModelResult result(true);
    ZqStatModelResult check(true);
    switch (dataType) {
      case nZqRanVarDataType::ScalarDouble: {
        const double value = source.GetRanVarVal(result);
        if (result.IsSuccessful()) check = CheckConstraints(value);
        break;
      }
      case nZqRanVarDataType::VectorXd: {
        const Eigen::VectorXd* value = source.GetConstRanVarVecPtr(result);
        if (result.IsSuccessful()) check = CheckConstraints(*value);
        break;
      }
      case nZqRanVarDataType::MatrixXd: {
        const Eigen::MatrixXd* value = source.GetConstRanVarMatPtr(result);
        if (result.IsSuccessful()) check = CheckConstraints(*value);
        break;
      }
      default:
        return ZqMakeFailedResult(F::InternalLogicFailure, kAttachContext, "Source Ran Var has unknown Data Type!");
    }
    if (result.IsSuccessful()) result = check;
    if (result.NotSuccessful()) {
      result.AddCallContext(kAttachContext);
      return result;
    }
  }

  ShareDataOf(source);
  readOnly_ = true;
  return ZqStatModelResult(true);
}

}  // namespace Varimo
