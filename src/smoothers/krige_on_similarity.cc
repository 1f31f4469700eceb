// Simple and ordinary kriging on a similarity matrix with a given nugget
// and sill: covariance (sill - nugget) K(s), the nugget on the diagonal.
#include <cmath>
#include <utility>

#include "similarity_field_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/gaussian_process.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

ZqStatModelResult NuggetAboveSill(double nugget, double sill, const char* routine) {
  return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                            ZqMakeString("nugget (", nugget, "); greater than sill (", sill, ")"));
}

std::vector<std::string> KrigeParamNames(const ZqSimilarityKernel& kernel) {
  return {"Kernel parameter for " + kernel.GetKernelName(), "nugget", "sill"};
}

ZqStatModelResult NullKernel() {
  return ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqKrigeOnSimilarity",
                            "Null similarity kernel Function constructed");
}

}  // namespace

// ------------------------------------------------------------ simple kriging

ZqKrigeOnSimilarity::ZqKrigeOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                                         const std::string& responseName, const ZqDataTable& table)
    : ZqLinearSmootherOnSimilarityBase(predictorName, responseName, table), kernel_(kernelType) {
  paramNames_ = KrigeParamNames(kernel_);
  if (kernel_.GetKernelType() == ZqSimilarityKernelType::Unknown) SetResultOfConstructor(NullKernel());
}

std::string ZqKrigeOnSimilarity::GetNameOfLinearSmootherOnSimilarity() const {
  return ZqLinearSmootherOnSimilarityType::TypeName[ZqLinearSmootherOnSimilarityType::Krige];
}

ZqStatModelResult ZqKrigeOnSimilarity::SetModelParams(const std::vector<double>& params) {
  const char* routine = "ZqKrigeOnSimilarity::SetModelParams";
  ZqStatModelResult result = ZqCheckParamCount(params.size(), paramNames_.size(), routine);
  if (result.NotSuccessful()) return result;
  if (params[1] > params[2]) return NuggetAboveSill(params[1], params[2], routine);
  params_ = params;
  const double nugget = params[1], sill = params[2];
  Eigen::MatrixXd covariance;
  result = ZqSimilarityKernelMatrix(covariance, GetTrainingTable(), GetPredictorName(), kernel_, params[0],
                                    sill - nugget, "ZqKrigeOnSimilarity::GetTrainingSetLLTDecomposition");
  if (result.IsSuccessful()) {
    covariance.diagonal().array() += nugget;
    if (!decomposition_.Compute(covariance)) {
      result = ZqMakeFailedResult(F::SingularScaleOrCovariance, "ZqKrigeOnSimilarity::GetTrainingSetLLTDecomposition",
                                  "eigen ldlt.info() reports a numerical issue");
    }
  }
  if (result.IsSuccessful()) {
    Eigen::VectorXd y;
    result = ZqTrainingResponses(y, GetTrainingTable(), GetResponseName(),
                                 "ZqKrigeOnSimilarity::GetTrainingSetTransformedResponse");
    if (result.IsSuccessful()) {
      responseMean_ = y.size() > 0 ? y.mean() : 0.0;
      transformedResponse_ = (y.array() - responseMean_).matrix();
      decomposition_.SolveInPlace(transformedResponse_);
    }
  }
  if (result.NotSuccessful()) {
    // Without a decomposition there is no model.
    params_.clear();
    result.AddCallContext(routine);
  }
  return result;
}

ZqStatModelResult ZqKrigeOnSimilarity::GetPredictedCenteredResponse(double& predicted, double& averageWeight,
                                                                    double& estimatedError,
                                                                    const ZqDataTableCol& similarities) const {
  const char* routine = "ZqKrigeOnSimilarity::GetPredictedCenteredResponse";
  const double nugget = params_[1], sill = params_[2];
  if (GetTrainingTable().GetNumRows() != static_cast<std::uint64_t>(decomposition_.Order())) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  Eigen::VectorXd c;
  double sumK = 0.0;
  ZqStatModelResult result = ZqSimilarityKernelVector(c, sumK, GetTrainingTable(), similarities, kernel_, params_[0],
                                                      sill - nugget, kZqSimilarityOrigin, routine);
  if (result.NotSuccessful()) return result;
  averageWeight = c.size() > 0 ? sumK / static_cast<double>(c.size()) : 1.0;
  predicted = c.dot(transformedResponse_);
  if (!decomposition_.Valid()) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, routine, "eigen ldlt.info() reports a numerical issue");
  }
  Eigen::VectorXd w = c;
  decomposition_.SolveInPlace(w);
  // No clamping: a difference below zero by rounding gives NaN.
  estimatedError = std::sqrt(sill - c.dot(w));
  return result;
}

ZqStatModelResult ZqKrigeOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                            double& estimatedError,
                                                            const ZqDataTableCol& similarities) const {
  ZqStatModelResult result =
      ZqPredictWithChecks(predicted, averageWeight, estimatedError, similarities, !params_.empty(),
                          "ZqKrigeOnSimilarity::GetPredictedResponse", [&] {
                            return GetPredictedCenteredResponse(predicted, averageWeight, estimatedError, similarities);
                          });
  if (result.IsSuccessful()) predicted += responseMean_;
  return result;
}

// ------------------------------------------------------------ ordinary kriging

ZqOrdinaryKrigeOnSimilarity::ZqOrdinaryKrigeOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                                                         const std::string& responseName, const ZqDataTable& table)
    : ZqLinearSmootherOnSimilarityBase(predictorName, responseName, table), kernel_(kernelType) {
  paramNames_ = KrigeParamNames(kernel_);
  if (kernel_.GetKernelType() == ZqSimilarityKernelType::Unknown) SetResultOfConstructor(NullKernel());
}

std::string ZqOrdinaryKrigeOnSimilarity::GetNameOfLinearSmootherOnSimilarity() const {
  return ZqLinearSmootherOnSimilarityType::TypeName[ZqLinearSmootherOnSimilarityType::OrdinaryKrige];
}

ZqStatModelResult ZqOrdinaryKrigeOnSimilarity::SetModelParams(const std::vector<double>& params) {
  const char* routine = "ZqOrdinaryKrigeOnSimilarity::SetModelParams";
  ZqStatModelResult result = ZqCheckParamCount(params.size(), paramNames_.size(), routine);
  if (result.NotSuccessful()) return result;
  if (params[1] > params[2]) return NuggetAboveSill(params[1], params[2], routine);
  params_ = params;
  const double nugget = params[1], sill = params[2];
  Eigen::MatrixXd covariance;
  result = ZqSimilarityKernelMatrix(covariance, GetTrainingTable(), GetPredictorName(), kernel_, params[0],
                                    sill - nugget, "ZqOrdinaryKrigeOnSimilarity::GetTrainingSetLDLTDecomposition");
  if (result.IsSuccessful()) {
    // Bordered by ones for the unknown mean.
    const Eigen::Index n = covariance.rows();
    Eigen::MatrixXd bordered = Eigen::MatrixXd::Ones(n + 1, n + 1);
    bordered.topLeftCorner(n, n) = covariance;
    bordered.topLeftCorner(n, n).diagonal().array() += nugget;
    bordered(n, n) = 0.0;
    if (!decomposition_.Compute(std::move(bordered))) {
      result = ZqMakeFailedResult(F::SingularScaleOrCovariance,
                                  "ZqOrdinaryKrigeOnSimilarity::GetTrainingSetLDLTDecomposition",
                                  "eigen ldlt.info() reports a numerical issue");
    }
  }
  if (result.IsSuccessful()) {
    const char* responseRoutine = "ZqOrdinaryKrigeOnSimilarity::GetTrainingSetTransformedResponse";
    Eigen::VectorXd y;
    result = ZqTrainingResponses(y, GetTrainingTable(), GetResponseName(), responseRoutine);
    if (result.IsSuccessful()) {
      Eigen::VectorXd rhs = Eigen::VectorXd::Zero(y.size() + 1);
      rhs.head(y.size()) = y;
      transformedResponse_ = decomposition_.Solve(rhs);
      if (!transformedResponse_.allFinite()) {
        result = ZqMakeFailedResult(F::SingularScaleOrCovariance, responseRoutine,
                                    "eigen llt.info() reports a numerical issue");
      }
    }
  }
  if (result.NotSuccessful()) {
    params_.clear();
    result.AddCallContext(routine);
  }
  return result;
}

ZqStatModelResult ZqOrdinaryKrigeOnSimilarity::GetPredictedResponseAndEstimatedErrors(
    double& predicted, double& averageWeight, const ZqDataTableCol& similarities) const {
  // Reported under the simple kriging's name, as it always has been.
  const char* routine = "ZqKrigeOnSimilarity::GetPredictedCenteredResponse";
  if (GetTrainingTable().GetNumRows() + 1 != static_cast<std::uint64_t>(decomposition_.Order())) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  Eigen::VectorXd c;
  double sumK = 0.0;
  ZqStatModelResult result = ZqSimilarityKernelVector(c, sumK, GetTrainingTable(), similarities, kernel_, params_[0],
                                                      params_[2] - params_[1], kZqSimilarityOrigin, routine);
  if (result.NotSuccessful()) return result;
  Eigen::VectorXd bordered(c.size() + 1);
  bordered.head(c.size()) = c;
  bordered(c.size()) = 1.0;
  averageWeight = c.size() > 0 ? sumK / static_cast<double>(c.size()) : 1.0;
  predicted = bordered.dot(transformedResponse_);
  return result;
}

ZqStatModelResult ZqOrdinaryKrigeOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                                    double& estimatedError,
                                                                    const ZqDataTableCol& similarities) const {
  return ZqPredictWithChecks(predicted, averageWeight, estimatedError, similarities, !params_.empty(),
                             "ZqOrdinaryKrigeOnSimilarity::GetPredictedResponse",
                             [&] { return GetPredictedResponseAndEstimatedErrors(predicted, averageWeight, similarities); });
}

}  // namespace Varimo
