// Predictions from a similarity matrix column: the kernel-weighted average
// of training responses for each test row, as the search over kernel
// parameters needs them. The similarity column is a symmetric (lower
// triangular) matrix over the rows of one table of which the training and
// test tables are views, read at (training row, test row).
#pragma once

#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/smoothers/similarity_kernels.h"
#include "varimo/tables/data_table.h"
#include "varimo/tables/data_table_row.h"

namespace Varimo {

// Over the rows selected: the average of the responses (element 0)
// weighted by K(s, param) + 2^-23, s the similarity at `column`; the total
// weight and the largest similarity. A similarity outside [0, 1] fails.
ZqStatModelResult CalcWeightedAveOfResponseOnSelect(double& average, double& sumWeights, double& maxSimilarity,
                                                    const ZqDataTableCol& similarities,
                                                    const ZqDataTableCol& responses, unsigned long column,
                                                    Corvane::ZqIter<const ZqDataTableRow>& rows,
                                                    const ZqSimilarityKernel& kernel, double param);
// For each test row with a usable response: that response and its
// prediction from the training rows.
ZqStatModelResult GetResponseAndPredResponseFromSimilarity(std::vector<double>& responses,
                                                           std::vector<double>& predicted,
                                                           const std::string& similarityName,
                                                           const std::string& responseName,
                                                           const ZqDataTable& training, const ZqDataTable& test,
                                                           const ZqSimilarityKernel& kernel, double param);
// For each test row with a usable response: the distance 1 - s to its
// most similar training row, and the total weight of the training rows.
ZqStatModelResult GetMinDistanceAndTotalWeightFromSimilarity(std::vector<double>& minDistances,
                                                             std::vector<double>& totalWeights,
                                                             const std::string& similarityName,
                                                             const std::string& responseName,
                                                             const ZqDataTable& training, const ZqDataTable& test,
                                                             const ZqSimilarityKernel& kernel, double param);

}  // namespace Varimo
