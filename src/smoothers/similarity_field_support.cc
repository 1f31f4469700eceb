#include "similarity_field_support.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {
namespace {
namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;
}  // namespace

ZqStatModelResult ZqSimilarityKernelMatrix(Eigen::MatrixXd& matrix, const ZqDataTable& table,
                                           const std::string& predictorName, const ZqSimilarityKernel& kernel,
                                           double param, double scale, const char* routine) {
  ZqStatModelResult result(true);
  const ZqDataTableCol& similarities = table.GetColumnFromName(result, predictorName);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  std::vector<std::uint64_t> rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  const auto n = static_cast<Eigen::Index>(rows.size());
  matrix.resize(n, n);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = 0; j < n; ++j) {
      const double s = similarities.GetDouble(rows[i], rows[j]);
      // A NaN fails too rather than spread through the decomposition.
      if (!(s >= 0.0 && s <= kZqSimilarityOrigin)) {
        return ZqMakeFailedResult(F::MissingOrBadPredictorValue, routine,
                                  ZqMakeString("at row, column (", i, ",", j, "),", " similarity value = ", s));
      }
      matrix(i, j) = scale * kernel(s, param);
    }
  }
  return result;
}

ZqStatModelResult ZqSimilarityKernelVector(Eigen::VectorXd& values, double& sumK, const ZqDataTable& table,
                                           const ZqDataTableCol& similarities, const ZqSimilarityKernel& kernel,
                                           double param, double scale, double upperBound, const char* routine) {
  std::vector<std::uint64_t> rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  values.resize(static_cast<Eigen::Index>(rows.size()));
  sumK = 0.0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double s = similarities.GetDouble(rows[i], 0);
    if (!(s >= 0.0 && s <= upperBound)) {
      return ZqMakeFailedResult(F::MissingOrBadPredictorValue, routine,
                                ZqMakeString("at row (", rows[i], ")", " similarity value = ", s));
    }
    const double value = kernel(s, param);
    values(static_cast<Eigen::Index>(i)) = scale * value;
    sumK += value;
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqTrainingResponses(Eigen::VectorXd& responses, const ZqDataTable& table,
                                      const std::string& responseName, const char* routine) {
  ZqStatModelResult result(true);
  const ZqDataTableCol& column = table.GetColumnFromName(result, responseName);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  std::vector<double> values;
  for (const ZqDataTableRow& row : table.GetRows()) {
    const double y = column.GetDouble(row.GetRowNumber(), 0);
    // A response that is not finite would turn the mean, and every fitted
    // value with it, into a NaN behind a successful fit.
    if (y == VarimoBadData::BadIndexDouble || ZqIsMissingOrBad(y) || !std::isfinite(y)) {
      return ZqMakeFailedResult(F::MissingOrBadResponseValue, routine,
                                ZqMakeString("at row number(", row.GetRowNumber(), "),", " response value = ",
                                             ZqStringFromDouble(y)));
    }
    values.push_back(y);
  }
  responses = Eigen::Map<const Eigen::VectorXd>(values.data(), static_cast<Eigen::Index>(values.size()));
  return result;
}

ZqStatModelResult ZqCheckSimilarityColumn(const ZqDataTableCol& similarities, const char* routine) {
  if (similarities.GetNumColumnsInCol() == 1) return ZqStatModelResult(true);
  ZqStatModelResult result =
      ZqMakeFailedResult(F::WrongInputVectorSize, routine, "Procedure expects an array with only one column; ");
  result.AddExtraComment(ZqMakeString("argument has ", similarities.GetNumColumnsInCol(), " cols"));
  return result;
}

ZqStatModelResult ZqCheckParamCount(std::size_t given, std::size_t wanted, const char* routine) {
  if (given == wanted) return ZqStatModelResult(true);
  return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                            ZqMakeString("size input params = ", given, "\nsize required = ", wanted));
}

}  // namespace Varimo
