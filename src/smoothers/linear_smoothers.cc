// The smoothers on a predictor column: null, least squares and kernel.
#include <cmath>
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/linear_smoother.h"
#include "varimo/statistics/pair_statistic.h"
#include "varimo/tables/column_statistics.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqUnivarLinearSmootherType;
constexpr double kBad = VarimoBadData::BadDouble;
// Added to every kernel weight, so that a point outside every kernel still
// has a positive total weight: the plain mean of the responses.
constexpr double kWeightFloor = 1.1920928955078125e-7;
constexpr unsigned long kNoRow = std::numeric_limits<unsigned long>::max();

ZqStatModelResult WrongSize(std::size_t given, std::size_t wanted, const char* routine) {
  return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                            Corvane::ZqMakeString("Parameters given: ", given, "; expected: ", wanted));
}

}  // namespace

// ------------------------------------------------------------ null

ZqNullRegression::ZqNullRegression(const std::string& predictorName, const std::string& responseName,
                                   const ZqDataTable& table, unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictorName, responseName, table, predictorIndex) {
  SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqNullRegression"));
}

ZqNullRegression::ZqNullRegression(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                   unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictor, response, predictorIndex) {
  SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqNullRegression"));
}

std::string ZqNullRegression::GetNameOfUniVarLinearSmoother() const { return T::TypeName[T::Unknown]; }
ZqStatModelResult ZqNullRegression::SetModelParams(const std::vector<double>&) {
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqNullRegression::SetModelParams");
}
double ZqNullRegression::GetPredictedResponse(double) const { return kBad; }
double ZqNullRegression::GetPredictedResponse(double, unsigned long) const { return kBad; }

// ------------------------------------------------------------ least squares

ZqSimpleLinearRegression::ZqSimpleLinearRegression(const std::string& predictorName, const std::string& responseName,
                                                   const ZqDataTable& table, unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictorName, responseName, table, predictorIndex) {
  ZqStatModelResult result = SolveLeastSquaresForSlopeAndIntercept();
  if (result.NotSuccessful()) result.AddCallContext("Constructor for ZqSimpleLinearRegression");
  SetResultOfConstructor(result);
}

ZqSimpleLinearRegression::ZqSimpleLinearRegression(const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                                   unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictor, response, predictorIndex) {
  ZqStatModelResult result = SolveLeastSquaresForSlopeAndIntercept();
  if (result.NotSuccessful()) result.AddCallContext("Constructor for ZqSimpleLinearRegression");
  SetResultOfConstructor(result);
}

std::string ZqSimpleLinearRegression::GetNameOfUniVarLinearSmoother() const { return T::TypeName[T::SimpleLinear]; }

ZqStatModelResult ZqSimpleLinearRegression::SolveLeastSquaresForSlopeAndIntercept() {
  const char* routine = "ZqSimpleLinearRegression::SolveLeastSquaresForSlopeAndIntercept";
  params_.clear();
  if (!SetupIsValid()) {
    ZqStatModelResult failure = ZqMakeFailedResult(F::ObjectNotValid, routine);
    failure.AddExtraComment(GetResultOfConstructor().ReportStatResultDetails());
    return failure;
  }
  ZqStatModelResult result(true);
  std::uint64_t missing = 0, bad = 0;
  // Rows with a missing or bad cell drop out; fewer than two rows leave
  // the bad pair, and the fit still stands.
  const auto [intercept, slope] = ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
      result, missing, bad, ZqTwoSamplePairStatisticType::InterceptSlopeOfOLSRegression, GetTrainingTable(),
      GetPredictorName(), GetResponseName(), GetPredictorIndex(), 0);
  if (result.NotSuccessful() && result.GetFailureType() != F::NoData) {
    result.AddCallContext(routine);
    return result;
  }
  params_ = {intercept, slope};
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqSimpleLinearRegression::SetModelParams(const std::vector<double>& params) {
  if (params.size() != GetNumModelParams()) {
    return WrongSize(params.size(), GetNumModelParams(), "ZqSimpleLinearRegression::SetModelParams");
  }
  params_ = params;
  return ZqStatModelResult(true);
}

double ZqSimpleLinearRegression::GetPredictedResponse(double x) const {
  if (params_.size() != 2) return kBad;
  return params_[0] + params_[1] * x;
}

double ZqSimpleLinearRegression::GetPredictedResponse(double x, unsigned long) const {
  return GetPredictedResponse(x);
}

// ------------------------------------------------------------ kernel

ZqUniVarKernelRegression::ZqUniVarKernelRegression(unsigned int kernelType, const std::string& predictorName,
                                                   const std::string& responseName, const ZqDataTable& table,
                                                   unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictorName, responseName, table, predictorIndex), kernel_(kernelType) {
  CheckKernel();
}

ZqUniVarKernelRegression::ZqUniVarKernelRegression(unsigned int kernelType, const ZqDataTableCol& predictor,
                                                   const ZqDataTableCol& response, unsigned long predictorIndex)
    : ZqUniVarLinearSmootherBase(predictor, response, predictorIndex), kernel_(kernelType) {
  CheckKernel();
}

void ZqUniVarKernelRegression::CheckKernel() {
  paramNames_ = {"Parameter for Kernel of type " + kernel_.GetNameOfKernel()};
  if (kernel_.GetTypeOfKernel() == ZqKernelFunctionType::Unknown) {
    SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqUniVarKernelRegression",
                                              "Null kernelFunction constructed"));
  }
}

std::string ZqUniVarKernelRegression::GetNameOfUniVarLinearSmoother() const { return T::TypeName[T::Kernel]; }

ZqStatModelResult ZqUniVarKernelRegression::SetModelParams(const std::vector<double>& params) {
  if (params.size() != GetNumModelParams()) {
    return WrongSize(params.size(), GetNumModelParams(), "ZqUniVarKernelRegression::SetModelParams");
  }
  params_ = params;
  return ZqStatModelResult(true);
}

bool ZqUniVarKernelRegression::ModelIsValid() const { return SetupIsValid() && !params_.empty(); }

double ZqUniVarKernelRegression::GetPredictedResponse(double x) const { return GetPredictedResponse(x, kNoRow); }

double ZqUniVarKernelRegression::GetPredictedResponse(double x, unsigned long rowToLeaveOut) const {
  if (!ModelIsValid()) return kBad;
  ZqStatModelResult result(true);
  const ZqDataTableCol& response = GetTrainingTable().GetColumnFromName(result, GetResponseName());
  if (result.NotSuccessful()) return kBad;
  const ZqDataTableCol& predictor = GetTrainingTable().GetColumnFromName(result, GetPredictorName());
  if (result.NotSuccessful()) return kBad;
  const double h = params_[0];
  double weighted = 0.0, total = 0.0;
  for (const ZqDataTableRow& row : GetTrainingTable().GetRows()) {
    const std::uint64_t r = row.GetRowNumber();
    if (r == rowToLeaveOut) continue;
    const double y = response.GetDouble(r, 0);
    const double xi = predictor.GetDouble(r, GetPredictorIndex());
    // Only a missing predictor leaves the row out; a bad one is weighed as
    // the number it holds.
    if (ZqIsMissingOrBad(y) || ZqIsMissing(xi)) continue;
    const double w = kernel_((x - xi) * h) + kWeightFloor;
    weighted += w * y;
    total += w;
  }
  return weighted / total;
}

// ------------------------------------------------------------ factory

ZqUniVarLinearSmootherBase* ZqGetUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType,
                                                      const std::string& predictorName,
                                                      const std::string& responseName, const ZqDataTable& table,
                                                      unsigned long predictorIndex) {
  switch (smootherType) {
    case T::SimpleLinear: return new ZqSimpleLinearRegression(predictorName, responseName, table, predictorIndex);
    case T::Kernel:
      return new ZqUniVarKernelRegression(kernelType, predictorName, responseName, table, predictorIndex);
    default: return new ZqNullRegression(predictorName, responseName, table, predictorIndex);
  }
}

ZqUniVarLinearSmootherBase* ZqGetUniVarLinearSmoother(unsigned int smootherType, unsigned int kernelType,
                                                      const ZqDataTableCol& predictor, const ZqDataTableCol& response,
                                                      unsigned long predictorIndex) {
  switch (smootherType) {
    case T::SimpleLinear: return new ZqSimpleLinearRegression(predictor, response, predictorIndex);
    case T::Kernel: return new ZqUniVarKernelRegression(kernelType, predictor, response, predictorIndex);
    default: return new ZqNullRegression(predictor, response, predictorIndex);
  }
}

}  // namespace Varimo
