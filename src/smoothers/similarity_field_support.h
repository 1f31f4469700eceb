// What the random-field smoothers on similarity share: the kernel matrix of
// the training rows, the training responses, and the checks of a column
// of similarities to the training rows.
#pragma once

#include <Eigen/Dense>
#include <string>

#include "varimo/smoothers/similarity_smoother.h"

namespace Varimo {

// K(s(i, j)) over the training rows, times `scale`; a similarity outside
// [0, 1.0000000000000022] fails with MissingOrBadPredictorValue.
ZqStatModelResult ZqSimilarityKernelMatrix(Eigen::MatrixXd& matrix, const ZqDataTable& table,
                                           const std::string& predictorName, const ZqSimilarityKernel& kernel,
                                           double param, double scale, const char* routine);
// The responses of the training rows; a missing or bad one fails with
// MissingOrBadResponseValue.
ZqStatModelResult ZqTrainingResponses(Eigen::VectorXd& responses, const ZqDataTable& table,
                                      const std::string& responseName, const char* routine);
// A column of one element per row, else WrongInputVectorSize.
ZqStatModelResult ZqCheckSimilarityColumn(const ZqDataTableCol& similarities, const char* routine);
// A parameter vector of the right length, else WrongInputVectorSize.
ZqStatModelResult ZqCheckParamCount(std::size_t given, std::size_t wanted, const char* routine);

}  // namespace Varimo
