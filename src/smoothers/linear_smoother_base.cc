// What every smoother on a predictor column shares: its private training
// table, and the result tables of a training or test set.
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/linear_smoother.h"
#include "varimo/tables/data_table_row.h"
#include "varimo/tables/derived_columns.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqUnivarLinearSmootherType;

}  // namespace

const char* const ZqUnivarLinearSmootherType::TypeName[NumTypes] = {
    "Unknown",
    "Simple Linear Regression",
    "Polynomial Regression",
    "Kernel or Nadaraya-Watson Regression",
    "Local Linear or Moving Least-Squares Regression",
    "Cubic Spline Regression"};

std::string ZqGetLinearSmootherNameFromType(unsigned int type) {
  if (type >= T::NumTypes) {
    return "ZqGetLinearSmootherNameFromType: argument out of Range.\nType must be less than " +
           std::to_string(T::NumTypes);
  }
  return T::TypeName[type];
}

unsigned int ZqGetLinearSmootherTypeFromName(const std::string& name) {
  if (name == "Linear" || name == T::TypeName[T::SimpleLinear]) return T::SimpleLinear;
  if (name == "Kernel" || name == T::TypeName[T::Kernel]) return T::Kernel;
  return T::Unknown;
}

ZqUniVarLinearSmootherBase::ZqUniVarLinearSmootherBase(const std::string& predictorName,
                                                       const std::string& responseName, const ZqDataTable& table,
                                                       unsigned long predictorIndex)
    : predictorName_(predictorName), responseName_(responseName), predictorIndex_(predictorIndex) {
  const char* routine = "ZqUniVarLinearSmootherBase::SetupDataTableFromTrainingSetNamesAndDataTable";
  ZqStatModelResult result(true);
  const ZqDataTableCol& response = table.GetColumnFromName(result, responseName);
  if (result.IsSuccessful()) result = table_.AddColumn(response);
  if (result.IsSuccessful()) {
    const ZqDataTableCol& predictor = table.GetColumnFromName(result, predictorName);
    if (result.IsSuccessful()) result = table_.AddColumn(predictor);
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    result.AddCallContext("Constructor of ZqUniVarLinearSmootherBase");
  }
  setupResult_ = result;
}

ZqUniVarLinearSmootherBase::ZqUniVarLinearSmootherBase(const ZqDataTableCol& predictor,
                                                       const ZqDataTableCol& response, unsigned long predictorIndex)
    : predictorName_(predictor.GetColumnName()),
      responseName_(response.GetColumnName()),
      predictorIndex_(predictorIndex) {
  ZqStatModelResult result = table_.AddColumn(response);
  if (result.IsSuccessful()) result = table_.AddColumn(predictor);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqUniVarLinearSmootherBase::SetupTrainingSetColsFromCols");
    result.AddCallContext("Constructor of ZqUniVarLinearSmootherBase");
  }
  setupResult_ = result;
}

bool ZqUniVarLinearSmootherBase::ModelIsValid() const { return SetupIsValid(); }

ZqStatModelResult ZqUniVarLinearSmootherBase::GetResultOfConstructor() const {
  return setupResult_.NotSuccessful() ? setupResult_ : constructorResult_;
}

ZqStatModelResult ZqUniVarLinearSmootherBase::GetPredictedResponseCol(ZqDataTableCol& predicted,
                                                                      const std::string& predictorName,
                                                                      const ZqDataTable& table, bool leaveOneOut,
                                                                      unsigned long predictorIndex) const {
  ZqStatModelResult result(true);
  const ZqDataTableCol& predictor = table.GetColumnFromName(result, predictorName);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqUniVarLinearSmootherBase::GetPredictedResponse");
    return result;
  }
  // A row whose predictor is missing or bad keeps the missing value: the
  // column has one element per row of the table's columns, so that it
  // lines up with them.
  std::vector<double> values(predictor.GetTotalNumRowsInCol(), VarimoBadData::MissingDouble);
  for (const ZqDataTableRow& row : table.GetRows()) {
    const std::uint64_t r = row.GetRowNumber();
    if (r >= values.size()) continue;
    const double x = predictor.GetDouble(r, predictorIndex);
    if (ZqIsMissingOrBad(x)) continue;
    values[r] = leaveOneOut ? GetPredictedResponse(x, static_cast<unsigned long>(r)) : GetPredictedResponse(x);
  }
  predicted = ZqDataTableCol("PredictedResponses", values);
  return ZqStatModelResult(true);
}

ZqUnivariateRegressionResult ZqUniVarLinearSmootherBase::GetRegressionResults(
    const std::string& title, const std::string& predictorName, const std::string& responseName,
    const ZqDataTable& table, bool leaveOneOut, unsigned long predictorIndex) const {
  const char* routine = "ZqUniVarLinearSmootherBase::GetRegressionResults";
  if (!ModelIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return ZqUnivariateRegressionResult(failure);
  }
  ZqDataTableCol predicted;
  ZqStatModelResult result = GetPredictedResponseCol(predicted, predictorName, table, leaveOneOut, predictorIndex);
  ZqDataTableCol predictor, response;
  if (result.IsSuccessful()) predictor = table.GetColumnFromName(result, predictorName);
  if (result.IsSuccessful()) response = table.GetColumnFromName(result, responseName);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUnivariateRegressionResult(result);
  }
  ZqDataTableCol residuals = predicted - response;
  residuals.SetColumnName("ResidualErrors");
  ZqDataTableCol absolute = ZqAbsoluteValue(residuals);
  absolute.SetColumnName("AbsoluteResidualErrors");
  ZqDataTable results = table;
  results.ClearColumns();
  for (const ZqDataTableCol* col : {&predictor, &response, &predicted, &residuals, &absolute}) {
    result = results.AddColumn(*col);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return ZqUnivariateRegressionResult(result);
    }
  }
  return ZqUnivariateRegressionResult(ZqStatModelResult(true), GetNameOfUniVarLinearSmoother(), title, results,
                                      GetModelParams(), GetModelParamNames(), predictorIndex);
}

ZqUnivariateRegressionResult ZqUniVarLinearSmootherBase::GetTrainingSetResults(bool leaveOneOut) const {
  return GetRegressionResults("Training Set Results", predictorName_, responseName_, table_, leaveOneOut,
                              predictorIndex_);
}

ZqUnivariateRegressionResult ZqUniVarLinearSmootherBase::GetTestSetResults(const ZqDataTableCol& predictor,
                                                                           const ZqDataTableCol& response,
                                                                           unsigned long predictorIndex) const {
  ZqDataTable table("Response and Predictor Columns");
  ZqStatModelResult result = table.AddColumn(response);
  if (result.IsSuccessful()) result = table.AddColumn(predictor);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqUniVarLinearSmootherBase::GetTestSetResults");
    return ZqUnivariateRegressionResult(result);
  }
  return GetRegressionResults("Test Set Results", predictor.GetColumnName(), response.GetColumnName(), table, false,
                              predictorIndex);
}

ZqUnivariateRegressionResult ZqUniVarLinearSmootherBase::GetTestSetResults(const std::string& predictorName,
                                                                           const std::string& responseName,
                                                                           const ZqDataTable& table,
                                                                           unsigned long predictorIndex) const {
  ZqStatModelResult result(true);
  const ZqDataTableCol& predictor = table.GetColumnFromName(result, predictorName);
  ZqDataTableCol response;
  if (result.IsSuccessful()) response = table.GetColumnFromName(result, responseName);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqUniVarLinearSmootherBase::GetTestSetResults");
    return ZqUnivariateRegressionResult(result);
  }
  return GetTestSetResults(predictor, response, predictorIndex);
}

}  // namespace Varimo
