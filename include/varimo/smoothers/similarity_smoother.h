// Regression of a response on a similarity matrix: each row of the table
// holds, in one symmetric (lower-triangular) matrix column, its
// similarities to the other rows. A prediction for a new item takes a
// column of its similarities to the training rows, in their order, and
// gives the predicted response, the average weight and an error estimate.
//
//   ZqLinearSmootherOnSimilarity smoother(ZqLinearSmootherOnSimilarityType::KernelRegression,
//                                         ZqSimilarityKernelType::Gaussian, "tanimoto", "pIC50", table);
//   smoother.SetModelParams({10.0});
//   ZqSimilarityRegressionResult fit = smoother.GetTrainingSetResults();
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/smoothers/regression_result.h"
#include "varimo/smoothers/similarity_kernels.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

namespace ZqLinearSmootherOnSimilarityType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int KernelRegression = 1;
inline constexpr unsigned int GaussianProcess = 2;
inline constexpr unsigned int Krige = 3;
inline constexpr unsigned int OrdinaryKrige = 4;
inline constexpr unsigned int NumTypes = 5;
extern const char* const TypeName[NumTypes];
}  // namespace ZqLinearSmootherOnSimilarityType

// "KernelRegression" 1, "GaussianProcess" 2, anything else 0.
unsigned int ZqGetLinearSmootherOnSimilarityType(const std::string& name);

class ZqLinearSmootherOnSimilarityBase {
 public:
  // The training table is a copy of `table` holding the predictor, which
  // must be a symmetric matrix column, then the response.
  ZqLinearSmootherOnSimilarityBase(const std::string& predictorName, const std::string& responseName,
                                   const ZqDataTable& table);
  virtual ~ZqLinearSmootherOnSimilarityBase() = default;

  virtual ZqLinearSmootherOnSimilarityBase* CreateCopy() const = 0;
  virtual std::string GetNameOfLinearSmootherOnSimilarity() const = 0;
  virtual unsigned int GetTypeOfLinearSmootherOnSimilarity() const = 0;
  virtual std::size_t GetNumModelParams() const = 0;
  virtual ZqStatModelResult SetModelParams(const std::vector<double>& params) = 0;
  virtual std::vector<double> GetModelParams() const = 0;
  virtual std::vector<std::string> GetModelParamNames() const = 0;
  virtual bool ModelIsValid() const;
  virtual ZqStatModelResult GetResultOfConstructor() const;
  // `similarities`: one element per row, the new item's similarity to each
  // training row in the training table's order.
  virtual ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                                 const ZqDataTableCol& similarities) const = 0;
  // Many items at once, one similarity column each: the numbers of
  // GetPredictedResponse item by item (to rounding), the bad double where
  // no prediction was made. A failure is the first item's failure, as the
  // loop would give it, and the items after it are not predicted. The
  // Gaussian process does a block of items in one matrix product with its
  // eigenvectors, where one item alone is a matrix-vector product.
  virtual ZqStatModelResult GetPredictedResponses(std::vector<double>& predicted, std::vector<double>& averageWeights,
                                                  std::vector<double>& estimatedErrors,
                                                  const std::vector<ZqDataTableCol>& similarities) const;

  ZqSimilarityRegressionResult GetTrainingSetResults() const;
  // The rows of `table`, whose similarity column is the smoother's
  // predictor, predicted from the training rows.
  ZqSimilarityRegressionResult GetTestSetResults(const std::string& responseName, const ZqDataTable& table) const;

 protected:
  ZqLinearSmootherOnSimilarityBase(const ZqLinearSmootherOnSimilarityBase&) = default;
  const ZqDataTable& GetTrainingTable() const { return table_; }
  const std::string& GetPredictorName() const { return predictorName_; }
  const std::string& GetResponseName() const { return responseName_; }
  void SetResultOfConstructor(const ZqStatModelResult& result) { constructorResult_ = result; }
  bool SetupIsValid() const { return setupResult_.IsSuccessful() && constructorResult_.IsSuccessful(); }
  ZqStatModelResult GetPredictedResponseCols(ZqDataTableCol& predicted, ZqDataTableCol& averageWeights,
                                             ZqDataTableCol& errors, const ZqDataTable& table) const;
  ZqSimilarityRegressionResult GetRegressionResults(const std::string& title, const std::string& responseName,
                                                    const ZqDataTable& table) const;

 private:
  std::string predictorName_;
  std::string responseName_;
  ZqDataTable table_;
  ZqStatModelResult setupResult_{true};
  ZqStatModelResult constructorResult_{true};
};

class ZqNullRegressionOnSimilarity final : public ZqLinearSmootherOnSimilarityBase {
 public:
  ZqNullRegressionOnSimilarity(const std::string& predictorName, const std::string& responseName,
                               const ZqDataTable& table);
  ZqLinearSmootherOnSimilarityBase* CreateCopy() const override { return new ZqNullRegressionOnSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnSimilarity() const override;
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const override { return ZqLinearSmootherOnSimilarityType::Unknown; }
  std::size_t GetNumModelParams() const override { return 0; }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return {}; }
  std::vector<std::string> GetModelParamNames() const override { return {}; }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const override;
};

// The kernel-weighted mean of the training responses, weights
// K(s, p) + 2^-23; the error estimate is the root of the weighted variance.
class ZqKernelRegressionOnSimilarity final : public ZqLinearSmootherOnSimilarityBase {
 public:
  ZqKernelRegressionOnSimilarity(unsigned int kernelType, const std::string& predictorName,
                                 const std::string& responseName, const ZqDataTable& table);
  ZqLinearSmootherOnSimilarityBase* CreateCopy() const override { return new ZqKernelRegressionOnSimilarity(*this); }
  std::string GetNameOfLinearSmootherOnSimilarity() const override;
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const override {
    return ZqLinearSmootherOnSimilarityType::KernelRegression;
  }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const override;

 private:
  ZqSimilarityKernel kernel_;
  std::vector<double> params_;
  std::vector<std::string> paramNames_;
};

// A new smoother of that type, owned by the caller; types without a class
// here give the null model.
ZqLinearSmootherOnSimilarityBase* ZqGetLinearSmootherOnSimilarity(unsigned int smootherType, unsigned int kernelType,
                                                                  const std::string& predictorName,
                                                                  const std::string& responseName,
                                                                  const ZqDataTable& table);

class ZqLinearSmootherOnSimilarity {
 public:
  ZqLinearSmootherOnSimilarity(unsigned int smootherType, unsigned int kernelType, const std::string& predictorName,
                               const std::string& responseName, const ZqDataTable& table)
      : impl_(ZqGetLinearSmootherOnSimilarity(smootherType, kernelType, predictorName, responseName, table)) {}
  ZqLinearSmootherOnSimilarity(const ZqLinearSmootherOnSimilarity& other) : impl_(other.impl_->CreateCopy()) {}
  ZqLinearSmootherOnSimilarity& operator=(const ZqLinearSmootherOnSimilarity& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  std::string GetNameOfLinearSmootherOnSimilarity() const { return impl_->GetNameOfLinearSmootherOnSimilarity(); }
  unsigned int GetTypeOfLinearSmootherOnSimilarity() const { return impl_->GetTypeOfLinearSmootherOnSimilarity(); }
  std::size_t GetNumModelParams() const { return impl_->GetNumModelParams(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) { return impl_->SetModelParams(params); }
  std::vector<double> GetModelParams() const { return impl_->GetModelParams(); }
  std::vector<std::string> GetModelParamNames() const { return impl_->GetModelParamNames(); }
  bool ModelIsValid() const { return impl_->ModelIsValid(); }
  ZqStatModelResult GetResultOfConstructor() const { return impl_->GetResultOfConstructor(); }
  ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                         const ZqDataTableCol& similarities) const {
    return impl_->GetPredictedResponse(predicted, averageWeight, estimatedError, similarities);
  }
  ZqStatModelResult GetPredictedResponses(std::vector<double>& predicted, std::vector<double>& averageWeights,
                                          std::vector<double>& estimatedErrors,
                                          const std::vector<ZqDataTableCol>& similarities) const {
    return impl_->GetPredictedResponses(predicted, averageWeights, estimatedErrors, similarities);
  }
  ZqSimilarityRegressionResult GetTrainingSetResults() const { return impl_->GetTrainingSetResults(); }
  ZqSimilarityRegressionResult GetTestSetResults(const std::string& responseName, const ZqDataTable& table) const {
    return impl_->GetTestSetResults(responseName, table);
  }

 private:
  std::unique_ptr<ZqLinearSmootherOnSimilarityBase> impl_;
};

// Fit measures of predictions against responses.
namespace ZqPredictiveFitMeasureType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int AverageAbsoluteDeviation = 1;
inline constexpr unsigned int RootMeanSquaredDeviation = 2;
}  // namespace ZqPredictiveFitMeasureType
std::string ZqGetPredictiveFitMeasureName(unsigned int type);
unsigned int ZqGetPredictiveFitMeasureType(const std::string& name);
ZqStatModelResult GetResponseFitError(double& error, const std::vector<double>& responses,
                                      const std::vector<double>& predicted, unsigned int measure);

// The kernel parameter of the grid firstParam .. lastParam (numSteps
// values) whose predictions of the test rows from the training rows fit
// best; the first of equal errors wins.
ZqStatModelResult OptimizePredResponseOverSimilarityKernelParams(double& bestError, double& bestParam,
                                                                 unsigned int kernelType, unsigned int fitMeasureType,
                                                                 double firstParam, double lastParam,
                                                                 unsigned long numSteps,
                                                                 const std::string& predictorName,
                                                                 const std::string& responseName,
                                                                 const ZqDataTable& training, const ZqDataTable& test);

}  // namespace Varimo
