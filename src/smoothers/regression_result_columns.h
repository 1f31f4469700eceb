// The columns and result tables that every smoother's predictions end in,
// whatever it predicts from.
#pragma once

#include <string>
#include <vector>

#include "varimo/tables/data_table.h"

namespace Varimo {

// The predictions, average weights and error estimates as ratio columns
// named "Predicted Response", "Average Similarity Weights" and "Estimated
// Prediction Error", each titled with "for " and the response's name.
void ZqMakePredictionColumns(ZqDataTableCol& predicted, ZqDataTableCol& averageWeights, ZqDataTableCol& errors,
                             const std::string& responseName, const std::vector<double>& predictions,
                             const std::vector<double>& weights, const std::vector<double>& estimatedErrors);

// A cleared copy of `rows` holding the `leading` columns, the response, and
// the predictions, weights, errors, residuals (predicted - response) and
// absolute residuals under the result names.
ZqStatModelResult ZqFillRegressionResultTable(ZqDataTable& results, const ZqDataTable& rows,
                                              const std::vector<ZqDataTableCol>& leading,
                                              const ZqDataTableCol& response, ZqDataTableCol predicted,
                                              ZqDataTableCol averageWeights, ZqDataTableCol errors);

}  // namespace Varimo
