// The Gaussian process on a similarity matrix. One eigen decomposition of
// the kernel matrix serves the whole search over the variances: in its
// basis the marginal likelihood's gradient costs O(n) per evaluation.
#include "varimo/smoothers/gaussian_process.h"

#include <cmath>
#include <utility>

#include "similarity_field_support.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
constexpr int kMaxSteps = 100;

}  // namespace

ZqGaussianProcessOnSimilarity::ZqGaussianProcessOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                                                             const std::string& responseName, const ZqDataTable& table)
    : ZqLinearSmootherOnSimilarityBase(predictorName, responseName, table), kernel_(kernelType) {
  paramNames_ = {"Kernel parameter for " + kernel_.GetKernelName()};
  if (kernel_.GetKernelType() == ZqSimilarityKernelType::Unknown) {
    SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqGaussianProcessOnSimilarity",
                                              "Null similarity kernel Function constructed"));
  }
}

std::string ZqGaussianProcessOnSimilarity::GetNameOfLinearSmootherOnSimilarity() const {
  return ZqLinearSmootherOnSimilarityType::TypeName[ZqLinearSmootherOnSimilarityType::GaussianProcess];
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::SetModelParams(const std::vector<double>& params) {
  const char* routine = "ZqGaussianProcessOnSimilarity::SetModelParams";
  ZqStatModelResult result = ZqCheckParamCount(params.size(), paramNames_.size(), routine);
  if (result.NotSuccessful()) return result;
  params_ = params;
  result = MaximizeMarginalLikelihoodWrtVariances();
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::MaximizeMarginalLikelihoodWrtVariances() {
  ZqStatModelResult result = GetTrainingSetEigenDecomposition();
  if (result.IsSuccessful()) result = GetTransformedTrainingSetResponse();
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqGaussianProcessOnSimilarity::MaximizeMarginalLikelihoodWrtVariances");
    return result;
  }
  SearchForBestCovarParams();
  return result;
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetTrainingSetEigenDecomposition() {
  const char* routine = "ZqGaussianProcessOnSimilarity::GetTrainingSetEigenDecomposition";
  Eigen::MatrixXd kernel;
  ZqStatModelResult result =
      ZqSimilarityKernelMatrix(kernel, GetTrainingTable(), GetPredictorName(), kernel_, params_[0], 1.0, routine);
  if (result.NotSuccessful()) return result;
  if (!ZqSymmetricEigenInPlace(kernel, eigenvalues_)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, routine,
                              "the eigen decomposition of the kernel matrix did not converge");
  }
  // In place: the eigenvectors replaced the kernel matrix.
  kernel.transposeInPlace();
  eigenvectors_ = std::move(kernel);
  // A compact kernel need not give a positive definite matrix.
  eigenvalues_ = eigenvalues_.cwiseMax(0.0);
  return result;
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetTransformedTrainingSetResponse() {
  Eigen::VectorXd y;
  ZqStatModelResult result = ZqTrainingResponses(y, GetTrainingTable(), GetResponseName(),
                                                 "ZqGaussianProcessOnSimilarity::GetTrainingSetTransformedResponse");
  if (result.NotSuccessful()) return result;
  responseMean_ = y.size() > 0 ? y.mean() : 0.0;
  transformedResponse_ = eigenvectors_ * (y.array() - responseMean_).matrix();
  return result;
}

double ZqGaussianProcessOnSimilarity::CalculateGradMLWRTTheta(double& sigmaSq, double theta) const {
  const double n = static_cast<double>(eigenvalues_.size());
  const Eigen::ArrayXd denominator = eigenvalues_.array() + theta;
  const Eigen::ArrayXd z2 = transformedResponse_.array().square();
  const double a = (z2 / denominator).sum() / n;
  const double b = (z2 / denominator.square()).sum() / n;
  const double c = denominator.inverse().sum() / n;
  sigmaSq = a;
  return (n / 2.0) * (b / a - c);
}

void ZqGaussianProcessOnSimilarity::SearchForBestCovarParams() {
  double sigmaSq = 0.0;
  double t = 0.05;
  const double g0 = CalculateGradMLWRTTheta(sigmaSq, t);
  double lo = 0.0, hi = 0.0;
  if (g0 < 0.0) {
    for (int k = 0; k < kMaxSteps && CalculateGradMLWRTTheta(sigmaSq, t) < 0.0; ++k) t *= 0.5;
    lo = t;
    hi = 2.0 * t;
  } else if (g0 > 0.0) {
    for (int k = 0; k < kMaxSteps && CalculateGradMLWRTTheta(sigmaSq, t) > 0.0; ++k) t *= 2.0;
    lo = 0.5 * t;
    hi = t;
  } else {
    // Exactly zero, or not a number: the start stands.
    noiseVariance_ = 0.05 * sigmaSq;
    signalVariance_ = sigmaSq;
    return;
  }
  for (int k = 0; k < kMaxSteps && hi - lo > 0.001; ++k) {
    const double middle = 0.5 * (lo + hi);
    if (CalculateGradMLWRTTheta(sigmaSq, middle) > 0.0) {
      lo = middle;
    } else {
      hi = middle;
    }
  }
  // The signal variance of the last evaluation, not a new one at theta.
  const double theta = 0.5 * (lo + hi);
  noiseVariance_ = theta * sigmaSq;
  signalVariance_ = sigmaSq;
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetPredictedCenteredResponse(double& predicted, double& averageWeight,
                                                                              double& estimatedError,
                                                                              const ZqDataTableCol& similarities) const {
  const char* routine = "ZqGaussianProcessOnSimilarity::GetPredictedCenteredResponse";
  const std::uint64_t n = GetTrainingTable().GetNumRows();
  if (n != static_cast<std::uint64_t>(transformedResponse_.size())) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  Eigen::VectorXd k;
  double sumK = 0.0;
  // The bound is 1 here, though training admits a hair above it.
  ZqStatModelResult result = ZqSimilarityKernelVector(k, sumK, GetTrainingTable(), similarities, kernel_, params_[0],
                                                      signalVariance_, 1.0, routine);
  if (result.NotSuccessful()) return result;
  averageWeight = sumK / static_cast<double>(n);
  const Eigen::VectorXd t = eigenvectors_ * k;
  const Eigen::ArrayXd d = signalVariance_ * eigenvalues_.array() + noiseVariance_;
  predicted = (t.array() * transformedResponse_.array() / d).sum();
  const double v = (t.array().square() / d).sum();
  estimatedError = std::sqrt(signalVariance_ + noiseVariance_ - v);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                                      double& estimatedError,
                                                                      const ZqDataTableCol& similarities) const {
  ZqStatModelResult result =
      ZqPredictWithChecks(predicted, averageWeight, estimatedError, similarities, !params_.empty(),
                          "ZqGaussianProcessOnSimilarity::GetPredictedResponse", [&] {
                            return GetPredictedCenteredResponse(predicted, averageWeight, estimatedError, similarities);
                          });
  if (result.IsSuccessful()) predicted += responseMean_;
  return result;
}

}  // namespace Varimo
