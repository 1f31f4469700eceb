// Regression of a response column on one predictor column by a linear
// smoother: a null model, ordinary least squares, or kernel
// (Nadaraya-Watson) regression. A smoother keeps a private two-column table
// of its training data; it predicts one value, and gives result tables for
// its training set (optionally leaving each row out of its own prediction)
// or for a test set.
//
//   ZqUniVarLinearSmoother kernel(ZqUnivarLinearSmootherType::Kernel, ZqKernelFunctionType::Gaussian,
//                                 "logP", "activity", table, 0);
//   kernel.SetModelParams({4.0});                 // the inverse bandwidth
//   ZqUnivariateRegressionResult fit = kernel.GetTrainingSetResults(true);
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "varimo/smoothers/kernel_functions.h"
#include "varimo/smoothers/regression_result.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

namespace ZqUnivarLinearSmootherType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int SimpleLinear = 1;
inline constexpr unsigned int Polynomial = 2;
inline constexpr unsigned int Kernel = 3;
inline constexpr unsigned int LocalLinear = 4;
inline constexpr unsigned int CubicSpline = 5;
inline constexpr unsigned int NumTypes = 6;
extern const char* const TypeName[NumTypes];
}  // namespace ZqUnivarLinearSmootherType

// The type's text; for a type past the table a two-line refusal.
std::string ZqGetLinearSmootherNameFromType(unsigned int type);
// "Linear" or type 1's text, "Kernel" or type 3's; 0 otherwise.
unsigned int ZqGetLinearSmootherTypeFromName(const std::string& name);

class ZqUniVarLinearSmootherBase {
 public:
  // The training columns by name from the table, or given directly; the
  // response always uses its element 0, the predictor `predictorIndex`.
  ZqUniVarLinearSmootherBase(const std::string& predictorName, const std::string& responseName,
                             const ZqDataTable& table, unsigned long predictorIndex);
  ZqUniVarLinearSmootherBase(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                             unsigned long predictorIndex);
  virtual ~ZqUniVarLinearSmootherBase() = default;

  virtual ZqUniVarLinearSmootherBase* CreateCopy() const = 0;
  virtual std::string GetNameOfUniVarLinearSmoother() const = 0;
  virtual unsigned int GetTypeOfUniVarLinearSmoother() const = 0;
  // The number of parameter names, whether values are set or not.
  virtual std::size_t GetNumModelParams() const = 0;
  virtual ZqStatModelResult SetModelParams(const std::vector<double>& params) = 0;
  virtual std::vector<double> GetModelParams() const = 0;
  virtual std::vector<std::string> GetModelParamNames() const = 0;
  // The training table was built and the fit succeeded.
  virtual bool ModelIsValid() const;
  virtual ZqStatModelResult GetResultOfConstructor() const;
  virtual double GetPredictedResponse(double x) const = 0;
  // Without the training row `rowToLeaveOut` where the smoother uses rows.
  virtual double GetPredictedResponse(double x, unsigned long rowToLeaveOut) const = 0;

  ZqUnivariateRegressionResult GetTrainingSetResults(bool leaveOneOut) const;
  ZqUnivariateRegressionResult GetTestSetResults(const std::string& predictorName, const std::string& responseName,
                                                 const ZqDataTable& table, unsigned long predictorIndex) const;
  ZqUnivariateRegressionResult GetTestSetResults(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                                 unsigned long predictorIndex) const;

 protected:
  ZqUniVarLinearSmootherBase(const ZqUniVarLinearSmootherBase&) = default;
  const ZqDataTable& GetTrainingTable() const { return table_; }
  const std::string& GetPredictorName() const { return predictorName_; }
  const std::string& GetResponseName() const { return responseName_; }
  unsigned long GetPredictorIndex() const { return predictorIndex_; }
  void SetResultOfConstructor(const ZqStatModelResult& result) { constructorResult_ = result; }
  // The base's own results alone.
  bool SetupIsValid() const { return setupResult_.IsSuccessful() && constructorResult_.IsSuccessful(); }
  ZqStatModelResult GetPredictedResponseCol(ZqDataTableCol& predicted, const std::string& predictorName,
                                            const ZqDataTable& table, bool leaveOneOut,
                                            unsigned long predictorIndex) const;
  ZqUnivariateRegressionResult GetRegressionResults(const std::string& title, const std::string& predictorName,
                                                    const std::string& responseName, const ZqDataTable& table,
                                                    bool leaveOneOut, unsigned long predictorIndex) const;

 private:
  std::string predictorName_;
  std::string responseName_;
  unsigned long predictorIndex_;
  ZqDataTable table_{"Regression Data Table"};
  ZqStatModelResult setupResult_{true};
  ZqStatModelResult constructorResult_{true};
};

// Predicts nothing: the smoother of a type without a class.
class ZqNullRegression final : public ZqUniVarLinearSmootherBase {
 public:
  ZqNullRegression(const std::string& predictorName, const std::string& responseName, const ZqDataTable& table,
                   unsigned long predictorIndex);
  ZqNullRegression(const ZqDataTableCol& predictor, const ZqDataTableCol& response, unsigned long predictorIndex);
  ZqUniVarLinearSmootherBase* CreateCopy() const override { return new ZqNullRegression(*this); }
  std::string GetNameOfUniVarLinearSmoother() const override;
  unsigned int GetTypeOfUniVarLinearSmoother() const override { return ZqUnivarLinearSmootherType::Unknown; }
  std::size_t GetNumModelParams() const override { return 0; }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return {}; }
  std::vector<std::string> GetModelParamNames() const override { return {}; }
  double GetPredictedResponse(double x) const override;
  double GetPredictedResponse(double x, unsigned long rowToLeaveOut) const override;
};

// Ordinary least squares: intercept + slope x, fitted on construction.
class ZqSimpleLinearRegression final : public ZqUniVarLinearSmootherBase {
 public:
  ZqSimpleLinearRegression(const std::string& predictorName, const std::string& responseName,
                           const ZqDataTable& table, unsigned long predictorIndex);
  ZqSimpleLinearRegression(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                           unsigned long predictorIndex);
  ZqUniVarLinearSmootherBase* CreateCopy() const override { return new ZqSimpleLinearRegression(*this); }
  std::string GetNameOfUniVarLinearSmoother() const override;
  unsigned int GetTypeOfUniVarLinearSmoother() const override { return ZqUnivarLinearSmootherType::SimpleLinear; }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  double GetPredictedResponse(double x) const override;
  double GetPredictedResponse(double x, unsigned long rowToLeaveOut) const override;

 private:
  ZqStatModelResult SolveLeastSquaresForSlopeAndIntercept();

  std::vector<double> params_;
  std::vector<std::string> paramNames_{"intercept of linear regression line", "slope of linear regression line"};
};

// The kernel-weighted mean of the training responses around x; its one
// parameter h is an inverse bandwidth (weights K((x - x_i) h)), unset until
// SetModelParams.
class ZqUniVarKernelRegression final : public ZqUniVarLinearSmootherBase {
 public:
  ZqUniVarKernelRegression(unsigned int kernelType, const std::string& predictorName, const std::string& responseName,
                           const ZqDataTable& table, unsigned long predictorIndex);
  ZqUniVarKernelRegression(unsigned int kernelType, const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                           unsigned long predictorIndex);
  ZqUniVarLinearSmootherBase* CreateCopy() const override { return new ZqUniVarKernelRegression(*this); }
  std::string GetNameOfUniVarLinearSmoother() const override;
  unsigned int GetTypeOfUniVarLinearSmoother() const override { return ZqUnivarLinearSmootherType::Kernel; }
  std::size_t GetNumModelParams() const override { return paramNames_.size(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) override;
  std::vector<double> GetModelParams() const override { return params_; }
  std::vector<std::string> GetModelParamNames() const override { return paramNames_; }
  bool ModelIsValid() const override;
  double GetPredictedResponse(double x) const override;
  double GetPredictedResponse(double x, unsigned long rowToLeaveOut) const override;

 private:
  void CheckKernel();

  ZqKernelFunction kernel_;
  std::vector<double> params_;
  std::vector<std::string> paramNames_;
};

// A new smoother of that type, owned by the caller: 1 least squares, 3
// kernel regression with a kernel of `kernelType`, any other the null one.
ZqUniVarLinearSmootherBase* ZqGetUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType,
                                                      const std::string& predictorName,
                                                      const std::string& responseName, const ZqDataTable& table,
                                                      unsigned long predictorIndex);
ZqUniVarLinearSmootherBase* ZqGetUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType,
                                                      const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                                      unsigned long predictorIndex);

// A smoother by value: copies are deep.
class ZqUniVarLinearSmoother {
 public:
  ZqUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType, const std::string& predictorName,
                         const std::string& responseName, const ZqDataTable& table, unsigned long predictorIndex)
      : impl_(ZqGetUniVarLinearSmoother(smootherType, kernelType, predictorName, responseName, table, predictorIndex)) {}
  ZqUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType, const ZqDataTableCol& predictor,
                         const ZqDataTableCol& response, unsigned long predictorIndex)
      : impl_(ZqGetUniVarLinearSmoother(smootherType, kernelType, predictor, response, predictorIndex)) {}
  ZqUniVarLinearSmoother(const ZqUniVarLinearSmoother& other) : impl_(other.impl_->CreateCopy()) {}
  ZqUniVarLinearSmoother& operator=(const ZqUniVarLinearSmoother& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  std::string GetNameOfUniVarLinearSmoother() const { return impl_->GetNameOfUniVarLinearSmoother(); }
  unsigned int GetTypeOfUniVarLinearSmoother() const { return impl_->GetTypeOfUniVarLinearSmoother(); }
  std::size_t GetNumModelParams() const { return impl_->GetNumModelParams(); }
  ZqStatModelResult SetModelParams(const std::vector<double>& params) { return impl_->SetModelParams(params); }
  std::vector<double> GetModelParams() const { return impl_->GetModelParams(); }
  std::vector<std::string> GetModelParamNames() const { return impl_->GetModelParamNames(); }
  bool ModelIsValid() const { return impl_->ModelIsValid(); }
  ZqStatModelResult GetResultOfConstructor() const { return impl_->GetResultOfConstructor(); }
  ZqUnivariateRegressionResult GetTrainingSetResults(bool leaveOneOut) const {
    return impl_->GetTrainingSetResults(leaveOneOut);
  }
  ZqUnivariateRegressionResult GetTestSetResults(const std::string& predictorName, const std::string& responseName,
                                                 const ZqDataTable& table, unsigned long predictorIndex) const {
    return impl_->GetTestSetResults(predictorName, responseName, table, predictorIndex);
  }
  ZqUnivariateRegressionResult GetTestSetResults(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                                 unsigned long predictorIndex) const {
    return impl_->GetTestSetResults(predictor, response, predictorIndex);
  }
  double GetPredictedResponse(double x) const { return impl_->GetPredictedResponse(x); }
  double GetPredictedResponse(double x, unsigned long rowToLeaveOut) const {
    return impl_->GetPredictedResponse(x, rowToLeaveOut);
  }

 private:
  std::unique_ptr<ZqUniVarLinearSmootherBase> impl_;
};

}  // namespace Varimo
