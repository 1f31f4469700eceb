#include "varimo/foundations/stat_model_result.h"

#include <algorithm>

namespace Varimo {

namespace ZqStatModelFailureType {
// Texts are reproduced exactly, blanks before "!" and "\n" included: reports
// are compared by callers and tests.
const char* const FailureText[NumFailureTypes] = {
    "Failure Type is undefined!\n",
    "Column Not Found! \n",
    "Column Has Wrong Data Type!\n",
    "Column Is Nominal but With Wrong Num Vals!\n",
    "Column has missing or bad Predictor Value!\n",
    "Column has missing or bad Response Value!\n",
    "Internal Logic Failure!\n",
    "Empty Statistical Model!\n",
    "Cached column Nums are invalid!\n",
    "Wrong Num Predictor Variables!\n",
    "Wrong Num Response Variables!\n",
    "Wrong Num parameters for model or subtype!\n",
    "Wrong Model Type for request!\n",
    "Method not yet implemented!\n",
    "An argument is out of range!\n",
    "An input matrix has the wrong size!\n",
    "An input vector has the wrong size!\n",
    "Class Instance not initialized yet!\n",
    "No data to work with!\n",
    "Some mismatch between private vector/array sizes!\n",
    "Some mismatch between input vector/array sizes!\n",
    "Matrix is singular!\n",
    "Variance,Covariance or Scale is singular!\n",
    "Probability distribution is a null type: no information!\n",
    "Probability distribution is invalid!\n",
    "Probability distribution has wrong num variables!\n",
    "Probability distribution type is wrong!\n",
    "The density is undefined here for this pdf!\n",
    "The mean is undefined for this pdf!\n",
    "The variance or covariance is undefined for this pdf!\n",
    "The Mode is undefined for this pdf!\n",
    "Argument has unknown data type!\n",
    "Argument is missing!\n",
    "An integer valued argument is required!\n",
    "A scalar argument is required!\n",
    "Argument violates lower bound!\n",
    "Argument violates upper bound!\n",
    "Vector elements of argument sum to wrong value!\n",
    "Constraint type is inappropriate for argument!\n",
    "Random variable not found!\n",
    "Random variable already exists!\n",
    "Wrong Random variable name requested!\n",
    "Wrong Random variable type requested!\n",
    "Wrong Random variable value requested!\n",
    "Name not found in list !\n",
    "Names not in same order as in list !\n",
    "More than one copy of name in list !\n",
    "Attempting Write Acess to a readonly Variable !\n",
    "The argument is required to be of Vector Type !\n",
    "The argument is required to be of Matrix Type !\n",
    "The File type does not match any known type !\n",
    "The File type is wrong for desired operation !\n",
    "The File State is wrong for desired operation !\n",
    "An Invalid Failure type is given!\n",
};
}  // namespace ZqStatModelFailureType

ZqStatModelResult& ZqStatModelResult::operator=(const bool& success) {
  // A second "false" must not wipe the report of the failure that came first.
  if (!success && !success_) return *this;
  failureContext_.clear();
  extraComments_.clear();
  failureType_ = ZqStatModelFailureType::FailureTypeUndefined;
  success_ = success;
  return *this;
}

void ZqStatModelResult::Clear() {
  success_ = true;
  failureContext_.clear();
  extraComments_.clear();
  failureType_ = ZqStatModelFailureType::FailureTypeUndefined;
}

Corvane::ZqIter<const std::string> ZqStatModelResult::GetContext() const {
  return Corvane::ZqMakeOwnedIter<const std::string>(failureContext_);
}

Corvane::ZqIter<const std::string> ZqStatModelResult::GetComments() const {
  return Corvane::ZqMakeOwnedIter<const std::string>(extraComments_);
}

void ZqStatModelResult::SetFailContext(const std::string& routine) {
  if (success_) {
    success_ = false;
    failureType_ = ZqStatModelFailureType::FailureTypeUndefined;
  }
  failureContext_.clear();
  failureContext_.push_back(routine);
}

void ZqStatModelResult::SetFailureTypeAndWhereFailed(const std::uint32_t& failureType,
                                                     const std::string& routine) {
  SetFailContext(routine);
  failureType_ = std::min(failureType, ZqStatModelFailureType::InvalidFailureType);
}

void ZqStatModelResult::SetFailTypeUndefined(const std::string& routine) {
  SetFailContext(routine);
  failureType_ = ZqStatModelFailureType::FailureTypeUndefined;
}

void ZqStatModelResult::AddCallContext(const std::string& routine) {
  if (failureContext_.empty()) failureContext_.emplace_back("Unknown Failure Routine");
  failureContext_.push_back(routine);
}

void ZqStatModelResult::AddExtraComment(const std::string& comment) { extraComments_.push_back(comment); }

std::string ZqStatModelResult::ReportStatResultDetails() const {
  if (success_) return "Result is successful!";

  std::string report = "\nResult was not successful: \n";
  if (failureContext_.empty()) {
    report += "Failed in Undetermined Routine: \n";
  } else {
    report += "Failed in Routine: " + failureContext_.front() + " \n";
    for (std::size_t i = 1; i < failureContext_.size(); ++i) {
      report += "Called by Routine: " + failureContext_[i] + " \n";
    }
  }
  report += "Failure Reason(s):\n";
  // A stored value above the table cannot come from the setters, but the
  // report must not read past the table if it ever does.
  report += failureType_ < ZqStatModelFailureType::NumFailureTypes
                ? ZqStatModelFailureType::FailureText[failureType_]
                : "Failure Report: Shouldn't be here!\n";
  if (!extraComments_.empty()) {
    report += "Extra Comments:\n";
    for (const std::string& comment : extraComments_) report += comment + " \n";
  }
  return report;
}

ZqStatModelResult ZqMakeFailedResult(std::uint32_t failureType, const std::string& routine,
                                     const std::string& comment) {
  ZqStatModelResult result(false);
  result.SetFailureTypeAndWhereFailed(failureType, routine);
  if (!comment.empty()) result.AddExtraComment(comment);
  return result;
}

}  // namespace Varimo
