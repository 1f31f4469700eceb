// What every smoother on a similarity matrix shares: its training table and
// the result tables of a training or test set.
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/similarity_smoother.h"
#include "varimo/tables/data_table_row.h"
#include "varimo/tables/derived_columns.h"
#include "regression_result_columns.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqLinearSmootherOnSimilarityType;

}  // namespace

const char* const ZqLinearSmootherOnSimilarityType::TypeName[NumTypes] = {
    "Unknown", "Kernel or Nadaraya-Watson Regression", "Gaussian Process Regression", "Kriging on Similarity",
    "Ordinary Kriging on Similarity"};

unsigned int ZqGetLinearSmootherOnSimilarityType(const std::string& name) {
  if (name == "KernelRegression") return T::KernelRegression;
  if (name == "GaussianProcess") return T::GaussianProcess;
  return T::Unknown;
}

ZqLinearSmootherOnSimilarityBase::ZqLinearSmootherOnSimilarityBase(const std::string& predictorName,
                                                                   const std::string& responseName,
                                                                   const ZqDataTable& table)
    : predictorName_(predictorName), responseName_(responseName), table_(table) {
  // This set-up reports under the name of the predictor-column smoothers'
  // set-up, which does the same work on a plain predictor.
  const char* routine = "ZqUniVarLinearSmootherBase::SetupDataTableFromTrainingSetNamesAndDataTable";
  table_.ClearColumns();
  ZqStatModelResult result(true);
  const ZqDataTableCol& predictor = table.GetColumnFromName(result, predictorName);
  if (result.IsSuccessful() && !predictor.ColIsLowerTriangular()) {
    result = ZqMakeFailedResult(F::MismatchBetweenPrivateVecSizes, routine,
                                "Predictor column " + predictorName + " Is not a symmetric matrix");
  } else if (result.IsSuccessful()) {
    result = table_.AddColumn(predictor);
    if (result.IsSuccessful()) {
      const ZqDataTableCol& response = table.GetColumnFromName(result, responseName);
      if (result.IsSuccessful()) result = table_.AddColumn(response);
    }
    if (result.NotSuccessful()) result.AddCallContext(routine);
  } else {
    result.AddCallContext(routine);
  }
  if (result.NotSuccessful()) result.AddCallContext("Constructor for ZqLinearSmootherOnSimilarityBase");
  setupResult_ = result;
}

bool ZqLinearSmootherOnSimilarityBase::ModelIsValid() const { return SetupIsValid(); }

ZqStatModelResult ZqLinearSmootherOnSimilarityBase::GetResultOfConstructor() const {
  return setupResult_.NotSuccessful() ? setupResult_ : constructorResult_;
}

ZqStatModelResult ZqLinearSmootherOnSimilarityBase::GetPredictedResponses(
    std::vector<double>& predicted, std::vector<double>& averageWeights, std::vector<double>& estimatedErrors,
    const std::vector<ZqDataTableCol>& similarities) const {
  const std::size_t count = similarities.size();
  predicted.assign(count, VarimoBadData::BadDouble);
  averageWeights.assign(count, VarimoBadData::BadDouble);
  estimatedErrors.assign(count, VarimoBadData::BadDouble);
  for (std::size_t q = 0; q < count; ++q) {
    ZqStatModelResult result = GetPredictedResponse(predicted[q], averageWeights[q], estimatedErrors[q], similarities[q]);
    if (result.NotSuccessful()) return result;
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqLinearSmootherOnSimilarityBase::GetPredictedResponseCols(ZqDataTableCol& predicted,
                                                                             ZqDataTableCol& averageWeights,
                                                                             ZqDataTableCol& errors,
                                                                             const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnSimilarityBase::GetPredictedResponse";
  ZqStatModelResult result(true);
  const ZqDataTableCol& similarities = table.GetColumnFromName(result, predictorName_);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  const std::uint64_t rows = similarities.GetTotalNumRowsInCol();
  std::vector<double> p(rows, VarimoBadData::MissingDouble), w = p, e = p;
  // The rows go to the batch prediction in blocks, which bounds the memory
  // of the slices (each as long as the table) at a few megabytes.
  constexpr std::size_t kBlock = 256;
  std::vector<std::uint64_t> block;
  std::vector<ZqDataTableCol> slices;
  std::vector<double> bp, bw, be;
  const auto predictBlock = [&] {
    result = GetPredictedResponses(bp, bw, be, slices);
    for (std::size_t q = 0; q < block.size(); ++q) {
      p[block[q]] = bp[q];
      w[block[q]] = bw[q];
      e[block[q]] = be[q];
    }
    block.clear();
    slices.clear();
    return result.IsSuccessful();
  };
  for (const ZqDataTableRow& row : table.GetRows()) {
    const std::uint64_t r = row.GetRowNumber();
    if (r >= rows) continue;
    // The row's similarities to every row, one element per row.
    block.push_back(r);
    slices.push_back(ZqSliceColumn(similarities, r));
    if (block.size() == kBlock && !predictBlock()) break;
  }
  if (result.IsSuccessful() && !block.empty()) predictBlock();
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  ZqMakePredictionColumns(predicted, averageWeights, errors, responseName_, p, w, e);
  return ZqStatModelResult(true);
}

ZqSimilarityRegressionResult ZqLinearSmootherOnSimilarityBase::GetRegressionResults(const std::string& title,
                                                                                    const std::string& responseName,
                                                                                    const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnSimilarityBase::GetRegressionResults";
  if (!ModelIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return ZqSimilarityRegressionResult(failure);
  }
  ZqDataTableCol predicted, weights, errors, response;
  ZqStatModelResult result = GetPredictedResponseCols(predicted, weights, errors, table);
  if (result.IsSuccessful()) response = table.GetColumnFromName(result, responseName);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqSimilarityRegressionResult(result);
  }
  ZqDataTable results;
  result = ZqFillRegressionResultTable(results, table, {}, response, predicted, weights, errors);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqSimilarityRegressionResult(result);
  }
  return ZqSimilarityRegressionResult(ZqStatModelResult(true), GetNameOfLinearSmootherOnSimilarity(), title, results,
                                      GetModelParams(), GetModelParamNames());
}

ZqSimilarityRegressionResult ZqLinearSmootherOnSimilarityBase::GetTrainingSetResults() const {
  return GetRegressionResults("Training Set Results", responseName_, table_);
}

ZqSimilarityRegressionResult ZqLinearSmootherOnSimilarityBase::GetTestSetResults(const std::string& responseName,
                                                                                 const ZqDataTable& table) const {
  const char* routine = "ZqLinearSmootherOnSimilarityBase::GetTestSetResults";
  if (!ModelIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return ZqSimilarityRegressionResult(failure);
  }
  ZqStatModelResult result(true);
  const ZqDataTableCol& response = table.GetColumnFromName(result, responseName);
  // Each lookup reports on itself alone: the first failure is the one kept.
  ZqStatModelResult predictorLookup(true);
  const ZqDataTableCol& predictor = table_.GetColumnFromName(predictorLookup, predictorName_);
  if (result.IsSuccessful()) result = predictorLookup;
  ZqDataTable test = table;
  test.ClearColumns();
  if (result.IsSuccessful()) result = test.AddColumn(predictor);
  if (result.IsSuccessful()) result = test.AddColumn(response);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqSimilarityRegressionResult(result);
  }
  return GetRegressionResults("Test Set Results", responseName, test);
}

}  // namespace Varimo
