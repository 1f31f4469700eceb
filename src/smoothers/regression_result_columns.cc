#include "regression_result_columns.h"

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/derived_columns.h"

namespace Varimo {
namespace {

ZqDataTableCol RatioColumn(const std::string& name, const std::string& fullName, const std::vector<double>& values) {
  ZqDataTableCol col(name, fullName, ZqStatVariableType::Ratio, values.size());
  for (const double v : values) col.GetImpl().PushBackDouble(v);
  col.FinishAddingVars();
  return col;
}

}  // namespace

void ZqMakePredictionColumns(ZqDataTableCol& predicted, ZqDataTableCol& averageWeights, ZqDataTableCol& errors,
                             const std::string& responseName, const std::vector<double>& predictions,
                             const std::vector<double>& weights, const std::vector<double>& estimatedErrors) {
  predicted = RatioColumn("Predicted Response", "Predicted Response for " + responseName, predictions);
  averageWeights = RatioColumn("Average Similarity Weights", "Average Similarity Weights for " + responseName, weights);
  errors = RatioColumn("Estimated Prediction Error", "Estimated Prediction Error for " + responseName, estimatedErrors);
}

ZqStatModelResult ZqFillRegressionResultTable(ZqDataTable& results, const ZqDataTable& rows,
                                              const std::vector<ZqDataTableCol>& leading,
                                              const ZqDataTableCol& response, ZqDataTableCol predicted,
                                              ZqDataTableCol averageWeights, ZqDataTableCol errors) {
  ZqDataTableCol residuals = predicted - response;
  ZqDataTableCol absolute = ZqAbsoluteValue(residuals);
  predicted.SetColumnName("PredictedResponses");
  averageWeights.SetColumnName("AverageSimilarityWeights");
  errors.SetColumnName("EstimatedPredictionError");
  residuals.SetColumnName("ResidualErrors");
  absolute.SetColumnName("AbsoluteResidualErrors");
  results = rows;
  results.ClearColumns();
  std::vector<ZqDataTableCol> columns = leading;
  columns.insert(columns.end(), {response, predicted, averageWeights, errors, residuals, absolute});
  for (const ZqDataTableCol& col : columns) {
    const ZqStatModelResult result = results.AddColumn(col);
    if (result.NotSuccessful()) return result;
  }
  return ZqStatModelResult(true);
}

}  // namespace Varimo
