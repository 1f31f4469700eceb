// The Gaussian process on a similarity matrix. One eigen decomposition of
// the kernel matrix serves the whole search over the variances: in its
// basis the marginal likelihood's gradient costs O(n) per evaluation.
#include "varimo/smoothers/gaussian_process.h"

#include <algorithm>
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

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetKernelVector(Eigen::VectorXd& k, double& averageWeight,
                                                                 const ZqDataTableCol& similarities) const {
  const char* routine = "ZqGaussianProcessOnSimilarity::GetPredictedCenteredResponse";
  const std::uint64_t n = GetTrainingTable().GetNumRows();
  if (n != static_cast<std::uint64_t>(transformedResponse_.size())) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine);
  }
  double sumK = 0.0;
  // The bound is 1 here, though training admits a hair above it.
  ZqStatModelResult result = ZqSimilarityKernelVector(k, sumK, GetTrainingTable(), similarities, kernel_, params_[0],
                                                      signalVariance_, 1.0, routine);
  if (result.IsSuccessful()) averageWeight = sumK / static_cast<double>(n);
  return result;
}

void ZqGaussianProcessOnSimilarity::PredictFromTransformed(double& predicted, double& estimatedError,
                                                           const Eigen::Ref<const Eigen::VectorXd>& t) const {
  const Eigen::ArrayXd d = signalVariance_ * eigenvalues_.array() + noiseVariance_;
  predicted = responseMean_ + (t.array() * transformedResponse_.array() / d).sum();
  const double v = (t.array().square() / d).sum();
  estimatedError = std::sqrt(signalVariance_ + noiseVariance_ - v);
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                                      double& estimatedError,
                                                                      const ZqDataTableCol& similarities) const {
  Eigen::VectorXd k;
  ZqStatModelResult result =
      ZqPredictWithChecks(predicted, averageWeight, estimatedError, similarities, !params_.empty(),
                          "ZqGaussianProcessOnSimilarity::GetPredictedResponse",
                          [&] { return GetKernelVector(k, averageWeight, similarities); });
  if (result.IsSuccessful()) PredictFromTransformed(predicted, estimatedError, eigenvectors_ * k);
  return result;
}

ZqStatModelResult ZqGaussianProcessOnSimilarity::GetPredictedResponses(
    std::vector<double>& predicted, std::vector<double>& averageWeights, std::vector<double>& estimatedErrors,
    const std::vector<ZqDataTableCol>& similarities) const {
  const std::size_t count = similarities.size();
  predicted.assign(count, VarimoBadData::BadDouble);
  averageWeights.assign(count, VarimoBadData::BadDouble);
  estimatedErrors.assign(count, VarimoBadData::BadDouble);
  // Blocks of items: U' K for a block of kernel columns is one matrix
  // product on the BLAS, where item by item each U' k reads the whole n x n
  // matrix of eigenvectors again. The block bounds K at 256 columns.
  constexpr std::size_t kBlock = 256;
  Eigen::MatrixXd kernels;
  Eigen::VectorXd k;
  for (std::size_t first = 0; first < count; first += kBlock) {
    const std::size_t size = std::min(kBlock, count - first);
    for (std::size_t q = 0; q < size; ++q) {
      double& weight = averageWeights[first + q];
      double unusedPredicted, unusedError;
      const ZqStatModelResult result =
          ZqPredictWithChecks(unusedPredicted, weight, unusedError, similarities[first + q], !params_.empty(),
                              "ZqGaussianProcessOnSimilarity::GetPredictedResponse",
                              [&] { return GetKernelVector(k, weight, similarities[first + q]); });
      if (result.NotSuccessful()) {
        // The items of the block before it are predicted, as in the loop.
        if (q > 0) {
          const Eigen::MatrixXd t = ZqMatrixProduct(eigenvectors_, kernels.leftCols(static_cast<Eigen::Index>(q)));
          for (std::size_t j = 0; j < q; ++j) {
            PredictFromTransformed(predicted[first + j], estimatedErrors[first + j], t.col(static_cast<Eigen::Index>(j)));
          }
        }
        return result;
      }
      if (q == 0) kernels.resize(k.size(), static_cast<Eigen::Index>(size));
      kernels.col(static_cast<Eigen::Index>(q)) = k;
    }
    const Eigen::MatrixXd t = ZqMatrixProduct(eigenvectors_, kernels);
    for (std::size_t j = 0; j < size; ++j) {
      PredictFromTransformed(predicted[first + j], estimatedErrors[first + j], t.col(static_cast<Eigen::Index>(j)));
    }
  }
  return ZqStatModelResult(true);
}

}  // namespace Varimo
