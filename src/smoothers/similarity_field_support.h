// What the random-field smoothers on similarity share: the kernel matrix of
// the training rows, the kernel values of a new item, the training
// responses, and the checks around a prediction.
#pragma once

#include <Eigen/Dense>
#include <string>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/similarity_smoother.h"

namespace Varimo {

// K(s(i, j)) over the training rows, times `scale`; a similarity outside
// [0, 1.0000000000000022], or not a number, fails with
// MissingOrBadPredictorValue.
ZqStatModelResult ZqSimilarityKernelMatrix(Eigen::MatrixXd& matrix, const ZqDataTable& table,
                                           const std::string& predictorName, const ZqSimilarityKernel& kernel,
                                           double param, double scale, const char* routine);
// K(s_i) times `scale` for a new item's similarity to each training row,
// and the sum of the unscaled K(s_i); a similarity outside [0, upperBound],
// or not a number, fails with MissingOrBadPredictorValue.
ZqStatModelResult ZqSimilarityKernelVector(Eigen::VectorXd& values, double& sumK, const ZqDataTable& table,
                                           const ZqDataTableCol& similarities, const ZqSimilarityKernel& kernel,
                                           double param, double scale, double upperBound, const char* routine);
// The responses of the training rows; a missing, bad or non-finite one
// fails with MissingOrBadResponseValue.
ZqStatModelResult ZqTrainingResponses(Eigen::VectorXd& responses, const ZqDataTable& table,
                                      const std::string& responseName, const char* routine);
// A column of one element per row, else WrongInputVectorSize.
ZqStatModelResult ZqCheckSimilarityColumn(const ZqDataTableCol& similarities, const char* routine);
// A parameter vector of the right length, else WrongInputVectorSize.
ZqStatModelResult ZqCheckParamCount(std::size_t given, std::size_t wanted, const char* routine);

// The frame of every GetPredictedResponse: the outputs start bad, the
// column and the parameters are checked, then `predict` runs and a failure
// gets `routine` as its context.
template <class Predict>
ZqStatModelResult ZqPredictWithChecks(double& predicted, double& averageWeight, double& estimatedError,
                                      const ZqDataTableCol& similarities, bool hasParams, const char* routine,
                                      Predict&& predict) {
  predicted = averageWeight = estimatedError = VarimoBadData::BadDouble;
  ZqStatModelResult result = ZqCheckSimilarityColumn(similarities, routine);
  if (result.NotSuccessful()) return result;
  if (!hasParams) {
    return ZqMakeFailedResult(ZqStatModelFailureType::ObjectNotValid, routine, "Model Parameter vector is empty!");
  }
  result = predict();
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

}  // namespace Varimo
