// The binned variogram of a response against one similarity matrix and the
// fit of a similarity kernel to it.
#include <cmath>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/numerics/minimizer.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/smoothers/similarity_variogram.h"
#include "varimo/statistics/data_vector_functions.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

constexpr double kBad = VarimoBadData::BadDouble;
constexpr const char* kConstructor = "ZqBinnedVariogramFromSimilarity::ZqBinnedVariogramFromSimilarity";
constexpr unsigned long kMaxBins = 1UL << 26;

double HalfSquaredDifference(double a, double b) { return 0.5 * (a - b) * (a - b); }

double BinCentre(std::size_t bin, std::size_t numBins) {
  return (static_cast<double>(bin) + 0.5) / static_cast<double>(numBins);
}

}  // namespace

ZqBinnedVariogramFromSimilarity::ZqBinnedVariogramFromSimilarity(const std::vector<double>& responseVals,
                                                                 const std::vector<double>& similarityMatrix,
                                                                 const ZqVariogramBinWeights& weights,
                                                                 unsigned long numBins)
    : responseVals_(responseVals),
      similarityMatrix_(similarityMatrix),
      binWeights_(weights),
      numBins_(numBins),
      kernelParameter_(kBad),
      nugget_(kBad),
      sill_(kBad) {
  const std::size_t n = responseVals_.size();
  if (similarityMatrix_.size() != n * n) {
    result_ = ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, kConstructor,
                                 ZqMakeString("similarityMatrix size = ", similarityMatrix_.size(),
                                              "; whereas responseVals size = ", n));
  } else {
    result_ = CheckSizes(numBins);
  }
  valid_ = result_.IsSuccessful();
}

ZqBinnedVariogramFromSimilarity::ZqBinnedVariogramFromSimilarity(const ZqDataTable& table,
                                                                 const std::string& similarityColumnName,
                                                                 const std::string& responseColumnName,
                                                                 const ZqVariogramBinWeights& weights,
                                                                 unsigned long numBins)
    : binWeights_(weights), numBins_(numBins), kernelParameter_(kBad), nugget_(kBad), sill_(kBad) {
  std::uint64_t simCols = 0, responseCols = 0;
  result_ = ZqGetDataVectorFromColumnByName(similarityMatrix_, simCols, table, similarityColumnName);
  if (result_.IsSuccessful()) {
    result_ = ZqGetDataVectorFromColumnByName(responseVals_, responseCols, table, responseColumnName);
  }
  if (result_.NotSuccessful()) {
    result_.AddCallContext(kConstructor);
  } else if (similarityMatrix_.size() != responseVals_.size() * responseVals_.size()) {
    result_ = ZqMakeFailedResult(F::MismatchBetweenInputVecSizes, kConstructor,
                                 ZqMakeString("similarityMatrix size = ", similarityMatrix_.size(),
                                              "; responseVals size = ", responseVals_.size(),
                                              "; num cols in simMatrix = ", simCols,
                                              "; num cols in response vec = ", responseCols));
  } else {
    result_ = CheckSizes(numBins);
  }
  valid_ = result_.IsSuccessful();
}

ZqStatModelResult ZqBinnedVariogramFromSimilarity::CheckSizes(unsigned long numBins) const {
  if (numBins <= 1) {
    return ZqMakeFailedResult(F::LowerBoundViolated, kConstructor, ZqMakeString(" numBins (", numBins, "); too small"));
  }
  // More bins than pairs cannot all be filled, and a count in the billions
  // would only exhaust memory.
  if (numBins > kMaxBins) {
    return ZqMakeFailedResult(F::UpperBoundViolated, kConstructor, ZqMakeString(" numBins (", numBins, "); too large"));
  }
  if (!binWeights_.IsValid()) {
    ZqStatModelResult result = binWeights_.GetResultOfConstruction();
    result.AddCallContext(kConstructor);
    return result;
  }
  return ZqStatModelResult(true);
}

std::size_t ZqBinnedVariogramFromSimilarity::BinOf(std::size_t i, std::size_t j) const {
  // Similarities are taken as they are: a value outside [0, 1] lands in an
  // end bin (a NaN in the first).
  const double scaled = std::floor(similarityMatrix_[i * responseVals_.size() + j] * static_cast<double>(numBins_));
  if (!(scaled > 0.0)) return 0;
  return scaled >= static_cast<double>(numBins_) ? numBins_ - 1 : static_cast<std::size_t>(scaled);
}

Corvane::ZqIter<const std::pair<double, double>> ZqBinnedVariogramFromSimilarity::GetEmpiricalVariogram() const {
  return Corvane::ZqMakeIterView<const std::pair<double, double>>(empiricalVariogram_.begin(),
                                                                  empiricalVariogram_.end());
}

Corvane::ZqIter<const std::pair<double, double>> ZqBinnedVariogramFromSimilarity::GetTheoryVariogram() const {
  return Corvane::ZqMakeIterView<const std::pair<double, double>>(theoryVariogram_.begin(), theoryVariogram_.end());
}

ZqStatModelResult ZqBinnedVariogramFromSimilarity::CalcEmpiricalVariogram(double fractionToTrim,
                                                                          unsigned long reserved) {
  const char* routine = "ZqBinnedVariogramFromSimilarity::CalcExactTrimmedMeanOfBinnedSqDiffs";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  if (!(fractionToTrim >= 0.0 && fractionToTrim <= 1.0)) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                              ZqMakeString("fractionToTrimForTrimmedMeanSqDiff (", fractionToTrim,
                                           "); should be between 0 and 1 )"));
  }
  if (reserved != 0) return ZqStatModelResult(true);
  if (fractionToTrim <= 0.001) {
    CalcExactMeanOfBinnedSqDiffsOfResponses();
    return ZqStatModelResult(true);
  }
  ZqStatModelResult result = CalcTrimmedMeanOfBinnedSqDiffsUsingLinkedList(fractionToTrim);
  if (result.NotSuccessful()) result.AddCallContext(routine);
  return result;
}

void ZqBinnedVariogramFromSimilarity::CalcExactMeanOfBinnedSqDiffsOfResponses() {
  const std::size_t n = responseVals_.size();
  std::vector<double> sums(numBins_, 0.0);
  numPairsPerBin_.assign(numBins_, 0);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      const std::size_t bin = BinOf(i, j);
      sums[bin] += HalfSquaredDifference(responseVals_[i], responseVals_[j]);
      ++numPairsPerBin_[bin];
    }
  }
  empiricalVariogram_.clear();
  for (std::size_t bin = 0; bin < numBins_; ++bin) {
    const unsigned long count = numPairsPerBin_[bin];
    empiricalVariogram_.emplace_back(BinCentre(bin, numBins_), count == 0 ? 0.0 : sums[bin] / count);
  }
}

void ZqBinnedVariogramFromSimilarity::GetLinkedListOfPairsForBins(std::vector<unsigned long>& next,
                                                                  std::vector<unsigned long>& first) {
  // Each bin's pairs are chained through their matrix index i n + j, newest
  // first; the index n n ends a chain.
  const std::size_t n = responseVals_.size();
  const unsigned long end = n * n;
  next.assign(n * n, end);
  first.assign(numBins_, end);
  numPairsPerBin_.assign(numBins_, 0);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      const std::size_t bin = BinOf(i, j);
      const unsigned long index = i * n + j;
      next[index] = first[bin];
      first[bin] = index;
      ++numPairsPerBin_[bin];
    }
  }
}

ZqStatModelResult ZqBinnedVariogramFromSimilarity::CalcTrimmedMeanOfBinnedSqDiffsUsingLinkedList(double fraction) {
  const char* routine = "ZqBinnedVariogramFromSimilarity::CalcTrimmedMeanOfBinnedSqDiffsUsingLinkedList";
  const std::size_t n = responseVals_.size();
  std::vector<unsigned long> next, first;
  GetLinkedListOfPairsForBins(next, first);
  empiricalVariogram_.clear();
  std::vector<double> halfSquares;
  for (std::size_t bin = 0; bin < numBins_; ++bin) {
    halfSquares.clear();
    unsigned long current = first[bin];
    for (unsigned long k = 0; k < numPairsPerBin_[bin]; ++k) {
      const std::size_t i = current / n, j = current % n;
      if (i >= n || j >= n) {
        empiricalVariogram_.clear();
        return ZqMakeFailedResult(F::InternalLogicFailure, routine,
                                  k == 0 ? ZqMakeString("indBin, startIJ, i, j = ", bin, " ", current, " ", i, " ", j)
                                         : ZqMakeString("indBin, k, currIJ, i, j = ", bin, " ", k, " ", current, " ",
                                                        i, " ", j));
      }
      halfSquares.push_back(HalfSquaredDifference(responseVals_[i], responseVals_[j]));
      current = next[current];
    }
    double value = 0.0;
    if (!halfSquares.empty()) {
      ZqStatModelResult ignored(true);
      value = ZqGetSampleStatisticForDataVec(ignored, ZqSampleStatisticType::TrimmedMean, fraction, halfSquares);
    }
    empiricalVariogram_.emplace_back(BinCentre(bin, numBins_), value);
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqBinnedVariogramFromSimilarity::CalcOptimalTheoryVariogram(double& bestFitError, double& bestParam,
                                                                              unsigned int kernelType,
                                                                              unsigned long numTheoryPoints,
                                                                              double initialParam, double minParam,
                                                                              double maxParam) {
  const char* routine = "ZqBinnedVariogramFromSimilarity::CalcTheoryVariogram";
  bestFitError = bestParam = kernelParameter_ = nugget_ = sill_ = kBad;
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  if (empiricalVariogram_.empty()) {
    return ZqMakeFailedResult(F::NoData, routine, "Need to first calculate empirical variogram!");
  }
  std::vector<double> weights;
  ZqStatModelResult result = binWeights_.GetBinWeights(weights, numPairsPerBin_);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  kernel_ = ZqSimilarityKernel(kernelType);
  ZqSimilarityVariogramLSFit objective(kernelType, empiricalVariogram_, weights);
  if (!objective.IsValid()) {
    return ZqMakeFailedResult(F::ObjectNotValid, routine,
                              "optimization func invalid; invalid kernel or vec size mismatch?");
  }
  if (initialParam < 0.0) initialParam = kernel_.GetDefaultInitialParamVal();
  if (minParam < 0.0) minParam = kernel_.GetMinimumAllowedParamVal();
  if (maxParam < 0.0) maxParam = kernel_.GetMaximumAllowedParamVal();

  ZqGoldenSectionSearch search;
  search.SetRelTolOnSolutionStepAccuracy(0.001);
  search.SetMaxIterations(100);
  // Downward from the initial parameter first, then upward; the first
  // direction whose first step descends decides.
  double value = kBad;
  double direction = -1.0;
  search.SetUpperLimOnOneDimSteps(initialParam - minParam);
  double step = 0.01 * (initialParam - minParam);
  double param = kBad;
  if (search(1, &initialParam, &direction, &value, &step, objective)) {
    param = initialParam - step;
  } else {
    direction = 1.0;
    search.SetUpperLimOnOneDimSteps(maxParam - initialParam);
    step = 0.01 * (maxParam - initialParam);
    if (!search(1, &initialParam, &direction, &value, &step, objective)) {
      return ZqMakeFailedResult(F::InternalLogicFailure, routine, "minmizer failed both directions!");
    }
    param = initialParam + step;
  }
  // The nugget and sill of the search's last evaluation, which need not be
  // the one at the best parameter.
  kernelParameter_ = param;
  nugget_ = objective.GetNugget();
  sill_ = objective.GetSill();
  bestFitError = value;
  bestParam = param;
  FillTheoryVariogram(numTheoryPoints);
  return ZqStatModelResult(true);
}

void ZqBinnedVariogramFromSimilarity::FillTheoryVariogram(unsigned long numTheoryPoints) {
  theoryVariogram_.clear();
  for (unsigned long k = 0; k < numTheoryPoints; ++k) {
    const double s = BinCentre(k, numTheoryPoints);
    theoryVariogram_.emplace_back(s, (1.0 - kernel_(s, kernelParameter_)) * (sill_ - nugget_) + nugget_);
  }
}

}  // namespace Varimo
