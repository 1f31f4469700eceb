// What every smoother on predictor columns shares: its training table, the
// line-up check of the columns to predict, and the result tables.
#include "varimo/smoothers/pred_columns_smoother.h"

#include "regression_result_columns.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

// The named columns of `table`, in order; the first missing one fails.
ZqStatModelResult FetchColumns(std::vector<ZqDataTableCol>& cols, const std::vector<std::string>& names,
                               const ZqDataTable& table) {
  cols.clear();
  for (const std::string& name : names) {
    ZqStatModelResult result(true);
    const ZqDataTableCol& col = table.GetColumnFromName(result, name);
    if (result.NotSuccessful()) return result;
    cols.push_back(col);
  }
  return ZqStatModelResult(true);
}

}  // namespace

const char* const ZqLinearSmootherOnPredColsType::TypeName[NumTypes] = {"Unknown", "Kriging on Vec of Pred Columns"};

ZqLinearSmootherOnPredColumnsBase::ZqLinearSmootherOnPredColumnsBase(const std::string& responseName,
                                                                     const std::vector<std::string>& predictorNames,
                                                                     const ZqDataTable& table)
    : responseName_(responseName), predictorNames_(predictorNames), table_(table) {
  table_.ClearColumns();
  std::vector<std::string> names = predictorNames;
  names.push_back(responseName);
  std::vector<ZqDataTableCol> cols;
  ZqStatModelResult result = FetchColumns(cols, names, table);
  for (std::size_t i = 0; i < cols.size() && result.IsSuccessful(); ++i) result = table_.AddColumn(cols[i]);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqLinearSmootherOnPredColumnsBase::SetupDataTableFromTrainingSetNamesAndTable");
  }
  setupResult_ = result;
}

bool ZqLinearSmootherOnPredColumnsBase::ModelIsValid() const {
  return setupResult_.IsSuccessful() && constructorResult_.IsSuccessful();
}

ZqStatModelResult ZqLinearSmootherOnPredColumnsBase::GetResultOfConstructor() const {
  return setupResult_.NotSuccessful() ? setupResult_ : constructorResult_;
}

ZqStatModelResult ZqLinearSmootherOnPredColumnsBase::CheckThatPredColumnsLineUp(
    unsigned long& numRows, const std::vector<ZqDataTableCol>& predictorCols) const {
  const char* routine = "ZqLinearSmootherOnPredColumnsBase::CheckThatPredColumnsLineUp";
  std::vector<ZqDataTableCol> internal;
  ZqStatModelResult result = FetchColumns(internal, predictorNames_, table_);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (predictorCols.size() != internal.size()) {
    return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                              ZqMakeString("num input predCols = ", predictorCols.size(),
                                           "; whereas num internal columns = ", internal.size()));
  }
  numRows = 0;
  for (std::size_t i = 0; i < internal.size(); ++i) {
    const ZqDataTableCol& in = predictorCols[i];
    const ZqDataTableCol& own = internal[i];
    if (in.GetNumColumnsInCol() != own.GetNumColumnsInCol()) {
      return ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes, routine,
                                ZqMakeString("input predCol: ", in.GetColumnName(), " has ", in.GetNumColumnsInCol(),
                                             " columns; whereas internal column ", own.GetColumnName(), " has ",
                                             own.GetNumColumnsInCol(), " columns"));
    }
    if (in.GetTotalNumRowsInCol() != own.GetTotalNumRowsInCol()) {
      return ZqMakeFailedResult(
          F::MismatchBetweenPrivateVecSizes, routine,
          ZqMakeString("input predCol: ", in.GetColumnName(), " has ", in.GetTotalNumRowsInCol(),
                       " total num rows; whereas internal column ", own.GetColumnName(), " has ",
                       own.GetTotalNumRowsInCol(), " total num rows"));
    }
    numRows = in.GetTotalNumRowsInCol();
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqLinearSmootherOnPredColumnsBase::GetPredictedResponseCols(
    ZqDataTableCol& predicted, ZqDataTableCol& averageWeights, ZqDataTableCol& errors,
    const std::vector<std::string>& predictorNames, const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnPredColumnsBase::GetPredictedResponseCols";
  std::vector<ZqDataTableCol> cols;
  unsigned long rows = 0;
  ZqStatModelResult result = FetchColumns(cols, predictorNames, table);
  if (result.IsSuccessful()) result = CheckThatPredColumnsLineUp(rows, cols);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  std::vector<double> p(rows, VarimoBadData::MissingDouble), w = p, e = p;
  for (const ZqDataTableRow& row : table.GetRows()) {
    const std::uint64_t r = row.GetRowNumber();
    if (r >= rows) continue;
    result = GetPredictedResponse(p[r], w[r], e[r], cols, r);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
  }
  ZqMakePredictionColumns(predicted, averageWeights, errors, responseName_, p, w, e);
  return ZqStatModelResult(true);
}

ZqSimilarityRegressionResult ZqLinearSmootherOnPredColumnsBase::GetRegressionResults(
    const std::string& title, const std::string& responseName, const std::vector<std::string>& predictorNames,
    const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnPredColumnsBase::GetRegressionResults";
  if (!ModelIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return ZqSimilarityRegressionResult(failure);
  }
  ZqDataTableCol predicted, weights, errors, response;
  std::vector<ZqDataTableCol> predictors;
  ZqStatModelResult result = GetPredictedResponseCols(predicted, weights, errors, predictorNames, table);
  if (result.IsSuccessful()) result = FetchColumns(predictors, predictorNames, table);
  if (result.IsSuccessful()) response = table.GetColumnFromName(result, responseName);
  ZqDataTable results;
  if (result.IsSuccessful()) {
    result = ZqFillRegressionResultTable(results, table, predictors, response, predicted, weights, errors);
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqSimilarityRegressionResult(result);
  }
  return ZqSimilarityRegressionResult(ZqStatModelResult(true), GetNameOfLinearSmootherOnPredColumns(), title, results,
                                      GetModelParams(), GetModelParamNames());
}

ZqSimilarityRegressionResult ZqLinearSmootherOnPredColumnsBase::GetTrainingSetResults() const {
  return GetRegressionResults("Training Set Results", responseName_, predictorNames_, table_);
}

ZqSimilarityRegressionResult ZqLinearSmootherOnPredColumnsBase::GetTestSetResults(
    const std::string& responseName, const std::vector<std::string>& predictorNames, const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnPredColumnsBase::GetTestSetResults";
  if (!ModelIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return ZqSimilarityRegressionResult(failure);
  }
  std::vector<std::string> names = predictorNames;
  names.push_back(responseName);
  std::vector<ZqDataTableCol> cols;
  ZqStatModelResult result = FetchColumns(cols, names, table);
  ZqDataTable test = table;
  test.ClearColumns();
  for (std::size_t i = 0; i < cols.size() && result.IsSuccessful(); ++i) result = test.AddColumn(cols[i]);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqSimilarityRegressionResult(result);
  }
  return GetRegressionResults("Test Set Results", responseName, predictorNames, test);
}

}  // namespace Varimo
