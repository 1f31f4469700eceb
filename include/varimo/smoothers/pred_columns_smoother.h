// The base of smoothers that predict a response from several predictor
// columns at once, each a plain one-value column or a similarity matrix
// column over the training rows. A derived class supplies the prediction of
// one row; the base keeps the training table, checks that the columns of a
// table to predict line up with it, and builds the result tables.
//
//   class MySmoother : public ZqLinearSmootherOnPredColumnsBase { ... };
//   MySmoother smoother("pIC50", {"tanimoto", "logP"}, table);
//   ZqSimilarityRegressionResult fit = smoother.GetTrainingSetResults();
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/smoothers/regression_result.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

namespace ZqLinearSmootherOnPredColsType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int KrigingOnVecOfPredColumns = 1;
inline constexpr unsigned int NumTypes = 2;
extern const char* const TypeName[NumTypes];
}  // namespace ZqLinearSmootherOnPredColsType

class ZqLinearSmootherOnPredColumnsBase {
 public:
  // The training table is a copy of `table` holding the predictors, in the
  // order named, then the response.
  ZqLinearSmootherOnPredColumnsBase(const std::string& responseName, const std::vector<std::string>& predictorNames,
                                    const ZqDataTable& table);
  virtual ~ZqLinearSmootherOnPredColumnsBase() = default;

  virtual ZqLinearSmootherOnPredColumnsBase* CreateCopy() const = 0;
  virtual std::string GetNameOfLinearSmootherOnPredColumns() const = 0;
  virtual unsigned int GetTypeOfLinearSmootherOnPredColumns() const = 0;
  virtual std::size_t GetNumModelParams() const = 0;
  virtual ZqStatModelResult SetModelParams(const std::vector<double>& params) = 0;
  virtual std::vector<double> GetModelParams() const = 0;
  virtual std::vector<std::string> GetModelParamNames() const = 0;
  virtual bool ModelIsValid() const;
  virtual ZqStatModelResult GetResultOfConstructor() const;
  // The prediction of row `rowNum` of the columns given, which line up with
  // the training predictors: a plain column's value there, or a matrix
  // column's row of similarities to the training rows.
  virtual ZqStatModelResult GetPredictedResponse(double& predicted, double& averageWeight, double& estimatedError,
                                                 const std::vector<ZqDataTableCol>& predictorCols,
                                                 std::uint64_t rowNum) const = 0;

  // Each column must have as many elements per row and as many rows in all
  // as the training predictor in its place; numRows is their row count.
  ZqStatModelResult CheckThatPredColumnsLineUp(unsigned long& numRows,
                                               const std::vector<ZqDataTableCol>& predictorCols) const;
  // The three prediction columns for the rows of `table`; rows it does not
  // show stay missing.
  ZqStatModelResult GetPredictedResponseCols(ZqDataTableCol& predicted, ZqDataTableCol& averageWeights,
                                             ZqDataTableCol& errors, const std::vector<std::string>& predictorNames,
                                             const ZqDataTable& table) const;
  ZqSimilarityRegressionResult GetRegressionResults(const std::string& title, const std::string& responseName,
                                                    const std::vector<std::string>& predictorNames,
                                                    const ZqDataTable& table) const;
  ZqSimilarityRegressionResult GetTrainingSetResults() const;
  ZqSimilarityRegressionResult GetTestSetResults(const std::string& responseName,
                                                 const std::vector<std::string>& predictorNames,
                                                 const ZqDataTable& table) const;

 protected:
  ZqLinearSmootherOnPredColumnsBase(const ZqLinearSmootherOnPredColumnsBase&) = default;
  const ZqDataTable& GetTrainingTable() const { return table_; }
  const std::string& GetResponseName() const { return responseName_; }
  const std::vector<std::string>& GetPredictorNames() const { return predictorNames_; }
  void SetResultOfConstructor(const ZqStatModelResult& result) { constructorResult_ = result; }

 private:
  std::string responseName_;
  std::vector<std::string> predictorNames_;
  ZqDataTable table_;
  ZqStatModelResult setupResult_{true};
  ZqStatModelResult constructorResult_{true};
};

}  // namespace Varimo
