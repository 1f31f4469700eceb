// Smoothers on similarity that treat the response as a random field with a
// similarity kernel for covariance: a Gaussian process whose signal and
// noise variances maximise the marginal likelihood, simple kriging with a
// given nugget and sill around the response mean, and ordinary kriging
// with the same parameters and an unknown mean.
//
//   ZqGaussianProcessOnSimilarity gp(ZqSimilarityKernelType::Exponential, "tanimoto", "pIC50", table);
//   gp.SetModelParams({30.0});            // fits: eigen decomposition, variance search
//   gp.GetPredictedResponse(y, weight, sd, similaritiesToTraining);
//
// The fit happens in SetModelParams, cubic in the number of rows.
#pragma once

#include <Eigen/Core>

#include "varimo/numerics/dense_algebra.h"
#include "varimo/smoothers/similarity_smoother.h"

namespace Varimo {

class ZqGaussianProcessOnSimilarity final : public ZqLinearSmootherOnSimilarityBase {
 public:
  ZqGaussianProcessOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                                const std::string& responseName, const ZqDataTable& table);
  ZqLinearSmootherOnSimilarityBase* CreateCopy() const override { return new ZqGaussianProcessOnSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnSimilarity() const override;
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const override {
    return ZqLinearSmootherOnSimilarityType::GaussianProcess;
  }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  // The kernel parameter; fits the variances.
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  bool ModelIsValid() const override { return SetupIsValid() && !params_.empty(); }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const override;
  ZqStatModelResult GetPredictedResponses(std::vector<double>& predicted, std::vector<double>& averageWeights,
                                          std::vector<double>& estimatedErrors,
                                          const std::vector<ZqDataTableCol>& similarities) const override;
  double GetSignalVariance() const { return signalVariance_; }
  double GetNoiseVariance() const { return noiseVariance_; }
  // The gradient of the profile marginal likelihood in theta = noise /
  // signal variance; sets sigmaSq to the signal variance it implies.
  double CalculateGradMLWRTTheta(double& sigmaSq, double theta) const;

 private:
  ZqStatModelResult MaximizeMarginalLikelihoodWrtVariances();
  ZqStatModelResult GetTrainingSetEigenDecomposition();
  ZqStatModelResult GetTransformedTrainingSetResponse();
  void SearchForBestCovarParams();
  // The item's kernel vector k and average weight, with every check of a
  // single prediction.
  ZqStatModelResult GetKernelVector(Eigen::VectorXd& k, double& averageWeight,
                                    const ZqDataTableCol& similarities) const;
  // The prediction (response mean included) and its error from t = U' k.
  void PredictFromTransformed(double& predicted, double& estimatedError,
                              const Eigen::Ref<const Eigen::VectorXd>& t) const;

  ZqSimilarityKernel kernel_;
  std::vector<double> params_;
  std::vector<std::string> paramNames_;
  Eigen::MatrixXd eigenvectors_;  // rows: U transposed
  Eigen::VectorXd eigenvalues_;
  double responseMean_ = 0.0;
  double signalVariance_ = 0.0;
  double noiseVariance_ = 0.0;
  Eigen::VectorXd transformedResponse_;
};

class ZqKrigeOnSimilarity final : public ZqLinearSmootherOnSimilarityBase {
 public:
  ZqKrigeOnSimilarity(unsigned int kernelType, const std::string& predictorName, const std::string& responseName,
                      const ZqDataTable& table);
  ZqLinearSmootherOnSimilarityBase* CreateCopy() const override { return new ZqKrigeOnSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnSimilarity() const override;
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const override { return ZqLinearSmootherOnSimilarityType::Krige; }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  // (kernel parameter, nugget, sill), the nugget not above the sill.
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  bool ModelIsValid() const override { return SetupIsValid() && !params_.empty(); }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const override;

 private:
  ZqStatModelResult GetPredictedCenteredResponse(double& predicted, double& averageWeight, double& estimatedError,
                                                 const ZqDataTableCol& similarities) const;

  ZqSimilarityKernel kernel_;
  std::vector<double> params_;
  std::vector<std::string> paramNames_;
  ZqCholeskyFactor decomposition_;
  double responseMean_ = 0.0;
  Eigen::VectorXd transformedResponse_;
};

class ZqOrdinaryKrigeOnSimilarity final : public ZqLinearSmootherOnSimilarityBase {
 public:
  ZqOrdinaryKrigeOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                              const std::string& responseName, const ZqDataTable& table);
  ZqLinearSmootherOnSimilarityBase* CreateCopy() const override { return new ZqOrdinaryKrigeOnSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnSimilarity() const override;
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const override {
    return ZqLinearSmootherOnSimilarityType::OrdinaryKrige;
  }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  bool ModelIsValid() const override { return SetupIsValid() && !params_.empty(); }
  // No error estimate: it stays the bad double.
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const override;

 private:
  ZqStatModelResult GetPredictedResponseAndEstimatedErrors(double& predicted, double& averageWeight,
                                                           const ZqDataTableCol& similarities) const;

  ZqSimilarityKernel kernel_;
  std::vector<double> params_;
  std::vector<std::string> paramNames_;
  ZqSymmetricIndefiniteFactor decomposition_;
  Eigen::VectorXd transformedResponse_;
};

}  // namespace Varimo
