// The smoothers on similarity of this family (null and kernel regression),
// the factory, and the search over a kernel's parameter.
#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/gaussian_process.h"
#include "varimo/smoothers/predict_by_gen_sim.h"
#include "varimo/smoothers/similarity_smoother.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqLinearSmootherOnSimilarityType;
using Corvane::ZqMakeString;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kWeightFloor = 1.1920928955078125e-7;

}  // namespace

ZqNullRegressionOnSimilarity::ZqNullRegressionOnSimilarity(const std::string& predictorName,
                                                           const std::string& responseName, const ZqDataTable& table)
    : ZqLinearSmootherOnSimilarityBase(predictorName, responseName, table) {
  SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqNullRegressionOnSimilarity"));
}

std::string ZqNullRegressionOnSimilarity::GetNameOfLinearSmootherOnSimilarity() const { return T::TypeName[T::Unknown]; }

ZqStatModelResult ZqNullRegressionOnSimilarity::SetModelParams(const std::vector<double>&) {
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqNullRegressionOnSimilarity::SetModelParams");
}

ZqStatModelResult ZqNullRegressionOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                                     double& estimatedError,
                                                                     const ZqDataTableCol&) const {
  predicted = averageWeight = estimatedError = kBad;
  return ZqMakeFailedResult(F::ObjectNotValid, "ZqNullRegressionOnSimilarity::GetPredictedResponse");
}

ZqKernelRegressionOnSimilarity::ZqKernelRegressionOnSimilarity(unsigned int kernelType,
                                                               const std::string& predictorName,
                                                               const std::string& responseName,
                                                               const ZqDataTable& table)
    : ZqLinearSmootherOnSimilarityBase(predictorName, responseName, table), kernel_(kernelType) {
  paramNames_ = {"Kernel parameter for " + kernel_.GetKernelName()};
  if (kernel_.GetKernelType() == ZqSimilarityKernelType::Unknown) {
    SetResultOfConstructor(ZqMakeFailedResult(F::ObjectNotValid, "Constructor for ZqKernelRegressionOnSimilarity",
                                              "Null similarity kernel Function constructed"));
  }
}

std::string ZqKernelRegressionOnSimilarity::GetNameOfLinearSmootherOnSimilarity() const {
  return T::TypeName[T::KernelRegression];
}

ZqStatModelResult ZqKernelRegressionOnSimilarity::SetModelParams(const std::vector<double>& params) {
  if (params.size() != paramNames_.size()) {
    return ZqMakeFailedResult(F::WrongInputVectorSize, "ZqKernelRegressionOnSimilarity::SetModelParams",
                              ZqMakeString("size input params = ", params.size(), "\nsize required = ",
                                           paramNames_.size()));
  }
  params_ = params;
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqKernelRegressionOnSimilarity::GetPredictedResponse(double& predicted, double& averageWeight,
                                                                       double& estimatedError,
                                                                       const ZqDataTableCol& similarities) const {
  const char* routine = "ZqKernelRegressionOnSimilarity::GetPredictedResponse";
  predicted = averageWeight = estimatedError = kBad;
  if (similarities.GetNumColumnsInCol() != 1) {
    ZqStatModelResult result = ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                                                  "Procedure expects an array with only one column; ");
    result.AddExtraComment(ZqMakeString("argument has ", similarities.GetNumColumnsInCol(), " cols"));
    return result;
  }
  if (params_.empty()) return ZqMakeFailedResult(F::ObjectNotValid, routine, "Model Parameter vector is empty!");
  ZqStatModelResult result(true);
  const ZqDataTableCol& response = GetTrainingTable().GetColumnFromName(result, GetResponseName());
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  double sumW = 0.0, sumWY = 0.0, sumWY2 = 0.0;
  std::uint64_t count = 0;
  for (const ZqDataTableRow& row : GetTrainingTable().GetRows()) {
    const std::uint64_t r = row.GetRowNumber();
    const double s = similarities.GetDouble(r, 0);
    const double y = response.GetDouble(r, 0);
    if (!(s >= 0.0 && s <= 1.0)) {
      return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                ZqMakeString("At row num (", r, ")", "; sim value = ", s));
    }
    if (ZqIsMissingOrBad(y) || !std::isfinite(y)) {
      return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                ZqMakeString("At row num ", r, ", response column value = ", y));
    }
    const double w = kernel_(s, params_[0]) + kWeightFloor;
    sumW += w;
    sumWY += w * y;
    sumWY2 += w * y * y;
    ++count;
  }
  if (count == 0) return ZqMakeFailedResult(F::NoData, routine);
  predicted = sumWY / sumW;
  averageWeight = sumW / static_cast<double>(count);
  estimatedError = std::sqrt(std::fabs(sumWY2 / sumW - predicted * predicted));
  return ZqStatModelResult(true);
}

ZqLinearSmootherOnSimilarityBase* ZqGetLinearSmootherOnSimilarity(unsigned int smootherType, unsigned int kernelType,
                                                                  const std::string& predictorName,
                                                                  const std::string& responseName,
                                                                  const ZqDataTable& table) {
  switch (smootherType) {
    case T::KernelRegression:
      return new ZqKernelRegressionOnSimilarity(kernelType, predictorName, responseName, table);
    case T::GaussianProcess:
      return new ZqGaussianProcessOnSimilarity(kernelType, predictorName, responseName, table);
    case T::Krige: return new ZqKrigeOnSimilarity(kernelType, predictorName, responseName, table);
    case T::OrdinaryKrige: return new ZqOrdinaryKrigeOnSimilarity(kernelType, predictorName, responseName, table);
    default: return new ZqNullRegressionOnSimilarity(predictorName, responseName, table);
  }
}

// ------------------------------------------------------------ fit measures and the search

std::string ZqGetPredictiveFitMeasureName(unsigned int type) {
  if (type == ZqPredictiveFitMeasureType::AverageAbsoluteDeviation) return "AverageAbsoluteDeviation";
  if (type == ZqPredictiveFitMeasureType::RootMeanSquaredDeviation) return "RootMeanSquaredDeviation";
  return "Unknown";
}

unsigned int ZqGetPredictiveFitMeasureType(const std::string& name) {
  if (name == "AverageAbsoluteDeviation") return ZqPredictiveFitMeasureType::AverageAbsoluteDeviation;
  if (name == "RootMeanSquaredDeviation") return ZqPredictiveFitMeasureType::RootMeanSquaredDeviation;
  return ZqPredictiveFitMeasureType::Unknown;
}

ZqStatModelResult GetResponseFitError(double& error, const std::vector<double>& responses,
                                      const std::vector<double>& predicted, unsigned int measure) {
  const char* routine = "GetResponseFitError";
  if (responses.empty() || responses.size() != predicted.size()) {
    return ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, routine,
                              ZqMakeString("Responses: ", responses.size(), "; predictions: ", predicted.size()));
  }
  double sum = 0.0;
  for (std::size_t i = 0; i < responses.size(); ++i) {
    const double d = responses[i] - predicted[i];
    sum += measure == ZqPredictiveFitMeasureType::AverageAbsoluteDeviation ? std::fabs(d) : d * d;
  }
  const double mean = sum / static_cast<double>(responses.size());
  if (measure == ZqPredictiveFitMeasureType::AverageAbsoluteDeviation) {
    error = mean;
  } else if (measure == ZqPredictiveFitMeasureType::RootMeanSquaredDeviation) {
    error = std::sqrt(mean);
  } else {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine, ZqMakeString("Fit measure: ", measure));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult OptimizePredResponseOverSimilarityKernelParams(double& bestError, double& bestParam,
                                                                 unsigned int kernelType, unsigned int fitMeasureType,
                                                                 double firstParam, double lastParam,
                                                                 unsigned long numSteps,
                                                                 const std::string& predictorName,
                                                                 const std::string& responseName,
                                                                 const ZqDataTable& training, const ZqDataTable& test) {
  const char* routine = "OptimizePredResponseOverSimilarityKernelParams";
  bestParam = kBad;
  if (numSteps == 0) return ZqMakeFailedResult(F::EmptyStatModel, routine);
  if (training.GetNumRows() == 0 || test.GetNumRows() == 0) {
    ZqStatModelResult result = ZqMakeFailedResult(F::EmptyStatModel, routine, "Training or test set empty of rows.");
    result.AddExtraComment(ZqMakeString("Num Training set rows = ", training.GetNumRows(), " Num Test set rows  = ",
                                        test.GetNumRows()));
    return result;
  }
  const ZqSimilarityKernel kernel(kernelType);
  bestError = kBad;
  for (unsigned long k = 0; k < numSteps; ++k) {
    const double param =
        k == 0 ? firstParam : firstParam + static_cast<double>(k) * (lastParam - firstParam) / static_cast<double>(numSteps - 1);
    std::vector<double> responses, predicted;
    ZqStatModelResult result = GetResponseAndPredResponseFromSimilarity(responses, predicted, predictorName,
                                                                        responseName, training, test, kernel, param);
    double error = kBad;
    if (result.IsSuccessful()) result = GetResponseFitError(error, responses, predicted, fitMeasureType);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    if (error < bestError) {
      bestError = error;
      bestParam = param;
    }
  }
  return ZqStatModelResult(true);
}

}  // namespace Varimo
