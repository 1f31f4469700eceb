#include "varimo/smoothers/predict_by_gen_sim.h"

#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;
constexpr double kWeightFloor = 1.1920928955078125e-7;

// Walks the test rows with a usable response, handing each its training
// prediction's three figures.
template <class Use>
ZqStatModelResult WalkTestRows(const std::string& similarityName, const std::string& responseName,
                               const ZqDataTable& training, const ZqDataTable& test, const ZqSimilarityKernel& kernel,
                               double param, const char* routine, Use use) {
  ZqStatModelResult result(true);
  const ZqDataTableCol& similarities = test.GetColumnFromName(result, similarityName);
  ZqDataTableCol testResponses, trainingResponses;
  if (result.IsSuccessful()) testResponses = test.GetColumnFromName(result, responseName);
  if (result.IsSuccessful()) trainingResponses = training.GetColumnFromName(result, responseName);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  for (const ZqDataTableRow& row : test.GetRows()) {
    const std::uint64_t t = row.GetRowNumber();
    const double response = testResponses.GetDouble(t, 0);
    if (ZqIsMissingOrBad(response) || testResponses.RowColIndexIsBad(t, 0)) continue;
    double average = 0.0, sumWeights = 0.0, maxSimilarity = 0.0;
    Corvane::ZqIter<const ZqDataTableRow> rows = training.GetRows();
    result = CalcWeightedAveOfResponseOnSelect(average, sumWeights, maxSimilarity, similarities, trainingResponses,
                                               static_cast<unsigned long>(t), rows, kernel, param);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    use(response, average, sumWeights, maxSimilarity);
  }
  return ZqStatModelResult(true);
}

}  // namespace

ZqStatModelResult CalcWeightedAveOfResponseOnSelect(double& average, double& sumWeights, double& maxSimilarity,
                                                    const ZqDataTableCol& similarities,
                                                    const ZqDataTableCol& responses, unsigned long column,
                                                    Corvane::ZqIter<const ZqDataTableRow>& rows,
                                                    const ZqSimilarityKernel& kernel, double param) {
  const char* routine = "CalcWeightedSumOfResponseOnSelect";
  sumWeights = 0.0;
  maxSimilarity = std::numeric_limits<double>::lowest();
  double weighted = 0.0;
  for (const ZqDataTableRow& row : rows) {
    const std::uint64_t r = row.GetRowNumber();
    const double s = similarities.GetDouble(r, column);
    const double y = responses.GetDouble(r, 0);
    if (s < 0.0 || s > 1.0) {
      return ZqMakeFailedResult(s < 0.0 ? F::LowerBoundViolated : F::UpperBoundViolated, routine,
                                ZqMakeString("For similarity array ", similarities.GetColumnName(),
                                             ": Bad similarity: ", s, " at i,j = ", r, ",", column,
                                             "; occurs at row number ", r));
    }
    const double w = kernel(s, param) + kWeightFloor;
    sumWeights += w;
    weighted += w * y;
    maxSimilarity = std::max(maxSimilarity, s);
  }
  if (!(sumWeights > 0.0)) {
    ZqStatModelResult result =
        ZqMakeFailedResult(F::InternalLogicFailure, routine, "Sum of weights is non-Positive; Something wrong? ");
    result.AddExtraComment("Kernel type = " + kernel.GetKernelName());
    result.AddExtraComment("Similarity array " + similarities.GetColumnName());
    result.AddExtraComment(ZqMakeString("parameter to convert similarity to distance = ", param));
    result.AddExtraComment(ZqMakeString("Similarity matrix column number = ", column));
    result.AddExtraComment(ZqMakeString("The max similarity on this column is ", maxSimilarity));
    return result;
  }
  average = weighted / sumWeights;
  return ZqStatModelResult(true);
}

ZqStatModelResult GetResponseAndPredResponseFromSimilarity(std::vector<double>& responses,
                                                           std::vector<double>& predicted,
                                                           const std::string& similarityName,
                                                           const std::string& responseName,
                                                           const ZqDataTable& training, const ZqDataTable& test,
                                                           const ZqSimilarityKernel& kernel, double param) {
  return WalkTestRows(similarityName, responseName, training, test, kernel, param,
                      "GetResponseAndPredResponseFromSimilarity",
                      [&](double response, double average, double, double) {
                        responses.push_back(response);
                        predicted.push_back(average);
                      });
}

ZqStatModelResult GetMinDistanceAndTotalWeightFromSimilarity(std::vector<double>& minDistances,
                                                             std::vector<double>& totalWeights,
                                                             const std::string& similarityName,
                                                             const std::string& responseName,
                                                             const ZqDataTable& training, const ZqDataTable& test,
                                                             const ZqSimilarityKernel& kernel, double param) {
  return WalkTestRows(similarityName, responseName, training, test, kernel, param,
                      "GetMinDistanceAndTotalWeightFromSimilarity",
                      [&](double, double, double sumWeights, double maxSimilarity) {
                        minDistances.push_back(1.0 - maxSimilarity);
                        totalWeights.push_back(sumWeights);
                      });
}

}  // namespace Varimo
