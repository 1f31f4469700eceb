// What a smoother hands back: the outcome of the run, the model's name and
// parameters, and a table of the run's columns (predictions, residuals, ...)
// row by row. One class for smoothers on a predictor column, one for
// smoothers on a similarity matrix.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/data_series.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

namespace ZqUniVarRegressResultColTypes {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int Predictors = 1;
inline constexpr unsigned int Responses = 2;
inline constexpr unsigned int PredictedResponses = 3;
inline constexpr unsigned int ResidualErrors = 4;
inline constexpr unsigned int AbsoluteResidualErrors = 5;
inline constexpr unsigned int NumTypes = 6;
extern const char* const TypeName[NumTypes];
}  // namespace ZqUniVarRegressResultColTypes

namespace ZqSimilarityRegressionResultColTypes {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int PredictedResponses = 1;
inline constexpr unsigned int AverageSimilarityWeights = 2;
inline constexpr unsigned int ResidualErrors = 3;
inline constexpr unsigned int AbsoluteResidualErrors = 4;
inline constexpr unsigned int EstimatedPredictionError = 5;
inline constexpr unsigned int NumTypes = 6;
extern const char* const TypeName[NumTypes];
}  // namespace ZqSimilarityRegressionResultColTypes

class ZqUnivariateRegressionResult {
 public:
  // A failed run: model "Null Results", no title, an empty table.
  explicit ZqUnivariateRegressionResult(const ZqStatModelResult& result);
  ZqUnivariateRegressionResult(const ZqStatModelResult& result, const std::string& modelName,
                               const std::string& resultTitle, const ZqDataTable& table,
                               const std::vector<double>& parameters, const std::vector<std::string>& parameterNames,
                               unsigned long predictorIndex);

  ZqStatModelResult GetResultOfRegression() const { return result_; }
  const ZqDataTable& GetRegResultDataTable() const { return table_; }
  const std::string& GetModelName() const { return modelName_; }
  const std::vector<double>& GetModelParameters() const { return parameters_; }
  unsigned long GetPredictorIndex() const { return predictorIndex_; }
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const;
  // A statistic of the column's element at the predictor index, over the
  // rows where it is good (usedRows); unusedRows counts the others.
  double GetSampleStatisticOnColumn(ZqStatModelResult& result, unsigned long& usedRows, unsigned long& unusedRows,
                                    unsigned int statType, std::string columnName) const;
  double GetSampleStatisticOnColumnPair(ZqStatModelResult& result, unsigned long& usedRows,
                                        unsigned long& unusedRows, unsigned int statType, const std::string& first,
                                        const std::string& second) const;
  // ZqGetScatterPlotPtsForColumnNamePair (column_plot_points.h) on the
  // result table: the points (x, y) of the rows where elements xIndex and
  // yIndex of the two columns are good; the last four numbers are the plot
  // window, which the ranges only widen. Failures add
  // "ZqUnivariateRegressionResult::GetScatterPlotPtsForColumnNamePair".
  ZqStatModelResult GetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const std::string& xName,
                                                       const std::string& yName, unsigned long xIndex,
                                                       unsigned long yIndex, double xlo, double xhi, double ylo,
                                                       double yhi) const;
  std::string PrintSummary() const;
  std::string PrintSummaryPlusFirstRowsOfData(unsigned long firstRows, unsigned long numColumns) const;

 private:
  ZqStatModelResult result_;
  std::string modelName_ = "Null Results";
  std::string resultTitle_;
  ZqDataTable table_;
  std::vector<double> parameters_;
  std::vector<std::string> parameterNames_;
  unsigned long predictorIndex_ = 0;
};

class ZqSimilarityRegressionResult {
 public:
  explicit ZqSimilarityRegressionResult(const ZqStatModelResult& result);
  ZqSimilarityRegressionResult(const ZqStatModelResult& result, const std::string& modelName,
                               const std::string& resultTitle, const ZqDataTable& table,
                               const std::vector<double>& parameters, const std::vector<std::string>& parameterNames);

  ZqStatModelResult GetResultOfRegression() const { return result_; }
  const ZqDataTable& GetRegResultDataTable() const { return table_; }
  const std::string& GetModelName() const { return modelName_; }
  const std::vector<double>& GetModelParameters() const { return parameters_; }
  const ZqDataTableCol& GetColumnFromName(ZqStatModelResult& result, const std::string& name) const;
  // Always of each column's element 0.
  double GetSampleStatisticOnColumn(ZqStatModelResult& result, unsigned long& usedRows, unsigned long& unusedRows,
                                    unsigned int statType, std::string columnName) const;
  double GetSampleStatisticOnColumnPair(ZqStatModelResult& result, unsigned long& usedRows,
                                        unsigned long& unusedRows, unsigned int statType, const std::string& first,
                                        const std::string& second) const;
  // ZqGetScatterPlotPtsForColumnNamePair (column_plot_points.h) on the
  // result table: the points (x, y) of the rows where elements xIndex and
  // yIndex of the two columns are good; the last four numbers are the plot
  // window, which the ranges only widen. Failures add
  // "ZqSimilarityRegressionResult::GetScatterPlotPtsForColumnNamePair".
  ZqStatModelResult GetScatterPlotPtsForColumnNamePair(Numarc::ZqDataSeries& series, double& xMin, double& xMax,
                                                       double& yMin, double& yMax, const std::string& xName,
                                                       const std::string& yName, unsigned long xIndex,
                                                       unsigned long yIndex, double xlo, double xhi, double ylo,
                                                       double yhi) const;
  std::string PrintSummary() const;
  std::string PrintSummaryPlusFirstRowsOfData(unsigned long firstRows, unsigned long numColumns) const;

 private:
  ZqStatModelResult result_;
  std::string modelName_ = "Null Results";
  std::string resultTitle_;
  ZqDataTable table_;
  std::vector<double> parameters_;
  std::vector<std::string> parameterNames_;
};

}  // namespace Varimo
