// The variogram of a response on several predictor columns and the grid
// search of one kernel parameter per column.
#include "varimo/smoothers/pred_columns_variogram.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/statistics/data_vector_functions.h"
#include "varimo/tables/data_table_row.h"
#include "variogram_fit.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Corvane::ZqMakeString;

constexpr double kBad = VarimoBadData::BadDouble;
constexpr const char* kConstructor = "ZqVariogramOnPredColumns::ZqVariogramOnPredColumns";
constexpr std::uint64_t kNoBin = std::numeric_limits<std::uint64_t>::max();
// Cells of the bin grid or of the parameter grid beyond this are refused:
// memory or time would run out long before a useful answer.
constexpr std::uint64_t kMaxCells = std::uint64_t{1} << 26;

// The product of the counts, or kMaxCells + 1 once it passes kMaxCells.
std::uint64_t CappedProduct(const std::vector<unsigned long>& counts) {
  std::uint64_t product = 1;
  for (const unsigned long c : counts) {
    if (c > kMaxCells || product * c > kMaxCells) return kMaxCells + 1;
    product *= c;
  }
  return product;
}

std::vector<std::uint64_t> RowNumbers(const ZqDataTable& table) {
  std::vector<std::uint64_t> rows;
  for (const ZqDataTableRow& row : table.GetRows()) rows.push_back(row.GetRowNumber());
  return rows;
}

ZqStatModelResult SizeMismatch(const char* routine, std::size_t a, std::size_t b, std::size_t numPredictors) {
  ZqStatModelResult result = ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                                                ZqMakeString("Input vector sizes are: ", a, " and ", b));
  result.AddExtraComment(ZqMakeString("Num predictor variables = ", numPredictors));
  return result;
}

}  // namespace

ZqVariogramBin::ZqVariogramBin(const std::vector<double>& similarities, std::size_t expectedCount)
    : similarities_(similarities) {
  sqDiffs_.reserve(expectedCount);
}

void ZqVariogramBin::SortSquaredDiffsOfResponses() {
  std::sort(sqDiffs_.begin(), sqDiffs_.end());
  isSorted_ = true;
}

ZqVariogramOnPredColumns::ZqVariogramOnPredColumns(const std::string& responseName,
                                                   const std::vector<std::string>& predictorNames,
                                                   const ZqDataTable& table,
                                                   const std::vector<unsigned long>& numBinsPerDim,
                                                   bool useEqualWeights, double fracAveBinCountThreshold,
                                                   const std::vector<double>& similarityThresholdPerDim,
                                                   unsigned int sampleStatType, double statParam)
    : table_(table), numBinsPerDim_(numBinsPerDim), nugget_(kBad), sill_(kBad) {
  if (predictorNames.size() != numBinsPerDim.size() || similarityThresholdPerDim.size() != numBinsPerDim.size()) {
    result_ = ZqMakeFailedResult(
        F::WrongInputVectorSize, kConstructor,
        ZqMakeString("num predictors = ", predictorNames.size(), "; num bins per dim size = ", numBinsPerDim.size(),
                     "; similarity thresholds size = ", similarityThresholdPerDim.size()));
    return;
  }
  result_ = CheckArguments(similarityThresholdPerDim, fracAveBinCountThreshold);
  if (result_.NotSuccessful()) return;
  result_ = SetupDataTableFromColumnNamesAndTable(responseName, predictorNames, table);
  if (result_.IsSuccessful()) result_ = FillVariogramBins();
  if (result_.NotSuccessful()) {
    bins_.clear();
    result_.AddCallContext(kConstructor);
    return;
  }
  CalcWeightsForFittingVariogram(useEqualWeights, fracAveBinCountThreshold, similarityThresholdPerDim);
  CalcSampleStatPerBin(sampleStatType, statParam);
}

ZqStatModelResult ZqVariogramOnPredColumns::CheckArguments(const std::vector<double>& similarityThresholdPerDim,
                                                           double fracAveBinCountThreshold) const {
  if (numBinsPerDim_.empty()) return ZqMakeFailedResult(F::NoData, kConstructor, "No predictor columns");
  for (std::size_t d = 0; d < numBinsPerDim_.size(); ++d) {
    if (numBinsPerDim_[d] == 0) {
      return ZqMakeFailedResult(F::LowerBoundViolated, kConstructor,
                                ZqMakeString("numBinsPerDim[", d, "] (0); too small"));
    }
    if (!(similarityThresholdPerDim[d] >= 0.0 && similarityThresholdPerDim[d] <= 1.0)) {
      return ZqMakeFailedResult(F::ArgumentOutOfRange, kConstructor,
                                ZqMakeString("similarityThresholdForBinWeights = ", similarityThresholdPerDim[d],
                                             "; must be between 0 and 1"));
    }
  }
  if (CappedProduct(numBinsPerDim_) > kMaxCells) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, kConstructor,
                              ZqMakeString("product of numBinsPerDim above ", kMaxCells, "; too many bins"));
  }
  if (!(fracAveBinCountThreshold >= 0.0 && fracAveBinCountThreshold <= 1.0)) {
    return ZqMakeFailedResult(
        F::ArgumentOutOfRange, kConstructor,
        ZqMakeString("fracAveBinCountThresholdForBinWeights = ", fracAveBinCountThreshold, "; must be between 0 and 1"));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqVariogramOnPredColumns::SetupDataTableFromColumnNamesAndTable(
    const std::string& responseName, const std::vector<std::string>& predictorNames, const ZqDataTable& table) {
  const char* routine = "ZqVariogramOnPredColumns::SetupDataTableFromColumnNamesAndTable";
  table_.ClearColumns();
  std::vector<std::string> names = predictorNames;
  names.push_back(responseName);
  for (const std::string& name : names) {
    ZqStatModelResult result(true);
    const ZqDataTableCol& col = table.GetColumnFromName(result, name);
    if (result.IsSuccessful()) result = table_.AddColumn(col);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    columns_.push_back(col);
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqVariogramOnPredColumns::SetMaxDistPerDim() {
  const char* routine = "ZqVariogramOnPredColumns::SetMaxDistPerDim";
  const std::vector<std::uint64_t> rows = RowNumbers(table_);
  maxDistPerDim_.assign(NumPredictors(), 1.0);
  for (std::size_t d = 0; d < NumPredictors(); ++d) {
    const ZqDataTableCol& col = columns_[d];
    if (col.ColIsLowerTriangular()) continue;
    if (col.GetNumColumnsInCol() != 1) {
      return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                                ZqMakeString("predictor column ", col.GetColumnName(), " has ",
                                             col.GetNumColumnsInCol(), " elements per row; must have 1"));
    }
    std::vector<double> values;
    for (const std::uint64_t r : rows) values.push_back(col.GetDouble(r, 0));
    ZqStatModelResult ignored(true);
    maxDistPerDim_[d] = ZqGetSampleStatisticForDataVec(ignored, ZqSampleStatisticType::Range, values);
    // A constant column would divide 0 by 0 for every pair.
    if (!(maxDistPerDim_[d] > 0.0 && maxDistPerDim_[d] < kBad)) {
      return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                ZqMakeString("predictor column ", col.GetColumnName(), " has range ",
                                             maxDistPerDim_[d], "; must be positive and finite"));
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqVariogramOnPredColumns::FillVariogramBins() {
  const char* routine = "ZqVariogramOnPredColumns::FillVariogramBins";
  std::uint64_t numBins = 1;
  for (const unsigned long b : numBinsPerDim_) numBins *= b;
  const std::vector<std::uint64_t> rows = RowNumbers(table_);
  const std::uint64_t m = rows.size();
  bins_.clear();
  bins_.reserve(numBins);
  for (std::uint64_t b = 0; b < numBins; ++b) {
    bins_.emplace_back(GetSimilaritiesFromBinIndex(b), m * (m + 1) / 2 / numBins + 1);
  }
  ZqStatModelResult result = SetMaxDistPerDim();
  const ZqDataTableCol& response = columns_[NumPredictors()];
  for (std::size_t a = 0; a < m && result.IsSuccessful(); ++a) {
    for (std::size_t c = a + 1; c < m; ++c) {
      std::uint64_t bin = 0;
      result = GetBinIndexForTwoRowNumbers(bin, rows[a], rows[c]);
      if (result.NotSuccessful()) break;
      if (bin >= numBins) {
        result = ZqMakeFailedResult(F::InternalLogicFailure, routine,
                                    ZqMakeString("bin index = ", bin, "; num bins = ", numBins));
        break;
      }
      const double diff = response.GetDouble(rows[c], 0) - response.GetDouble(rows[a], 0);
      bins_[bin].AddSqDiffOfResponses(diff * diff);
    }
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  for (ZqVariogramBin& bin : bins_) bin.SortSquaredDiffsOfResponses();
  return result;
}

ZqStatModelResult ZqVariogramOnPredColumns::GetBinIndexForTwoRowNumbers(std::uint64_t& binIndex, std::uint64_t i,
                                                                        std::uint64_t j) const {
  const char* routine = "ZqVariogramOnPredColumns::GetBinIndexForTwoRowNumbers";
  std::vector<double> similarities(NumPredictors());
  for (std::size_t d = 0; d < NumPredictors(); ++d) {
    const ZqDataTableCol& col = columns_[d];
    if (col.ColIsLowerTriangular()) {
      similarities[d] = col.GetDouble(i, j);
      if (!(similarities[d] >= 0.0 && similarities[d] <= 1.0)) {
        return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                                  ZqMakeString("similarity of rows (", i, ", ", j, ") in ", col.GetColumnName(),
                                               " = ", similarities[d], "; must be between 0 and 1"));
      }
    } else {
      similarities[d] = 1.0 - std::abs(col.GetDouble(i, 0) - col.GetDouble(j, 0)) / maxDistPerDim_[d];
    }
  }
  binIndex = GetBinIndexFromSimilarities(similarities);
  return ZqStatModelResult(true);
}

std::uint64_t ZqVariogramOnPredColumns::GetBinIndexFromSimilarities(const std::vector<double>& similarities) const {
  std::uint64_t index = 0;
  for (std::size_t d = 0; d < NumPredictors(); ++d) {
    const double bins = static_cast<double>(numBinsPerDim_[d]);
    const double digit = std::trunc(similarities[d]) * bins;
    // A missing cell's value, far outside the column's range, lands here.
    if (!(digit >= 0.0 && digit <= bins)) return kNoBin;
    const std::uint64_t whole = std::min(static_cast<std::uint64_t>(digit), std::uint64_t{numBinsPerDim_[d] - 1});
    index = index * numBinsPerDim_[d] + whole;
  }
  return index;
}

std::vector<double> ZqVariogramOnPredColumns::GetSimilaritiesFromBinIndex(std::uint64_t binIndex) const {
  std::vector<double> similarities(NumPredictors());
  for (std::size_t d = NumPredictors(); d-- > 0;) {
    const std::uint64_t digit = binIndex % numBinsPerDim_[d];
    binIndex /= numBinsPerDim_[d];
    similarities[d] = (static_cast<double>(digit) + 0.5) / static_cast<double>(numBinsPerDim_[d]);
  }
  return similarities;
}

void ZqVariogramOnPredColumns::CalcWeightsForFittingVariogram(bool useEqualWeights, double fracAveBinCountThreshold,
                                                              const std::vector<double>& similarityThresholdPerDim) {
  numPairsPerBin_.clear();
  double total = 0.0;
  for (const ZqVariogramBin& bin : bins_) {
    numPairsPerBin_.push_back(static_cast<double>(bin.GetNumPairs()));
    total += numPairsPerBin_.back();
  }
  const double minCount = std::floor(fracAveBinCountThreshold * total / static_cast<double>(bins_.size()));
  weightsPerBin_.assign(bins_.size(), 0.0);
  double sum = 0.0;
  for (std::size_t b = 0; b < bins_.size(); ++b) {
    const std::vector<double>& similarities = bins_[b].GetPredVarSimilarities();
    bool above = true;
    for (std::size_t d = 0; d < NumPredictors(); ++d) above = above && similarities[d] >= similarityThresholdPerDim[d];
    // An empty cell has no statistic to fit, whatever the count threshold.
    if (above && numPairsPerBin_[b] >= minCount && numPairsPerBin_[b] > 0) {
      weightsPerBin_[b] = useEqualWeights ? 1.0 : numPairsPerBin_[b] / total;
    }
    sum += weightsPerBin_[b];
  }
  for (double& w : weightsPerBin_) w /= sum;
}

void ZqVariogramOnPredColumns::CalcSampleStatPerBin(unsigned int statType, double param) {
  sampleStatPerBin_.clear();
  for (const ZqVariogramBin& bin : bins_) {
    ZqStatModelResult ignored(true);
    sampleStatPerBin_.push_back(ZqGetSampleStatisticForDataVec(ignored, statType, param, bin.GetSqDiffsOfResponses()));
  }
}

ZqStatModelResult ZqVariogramOnPredColumns::GetKernelValue(double& value, const std::vector<double>& similarities,
                                                           const std::vector<ZqSimilarityKernel>& kernels,
                                                           const std::vector<double>& params) const {
  const char* routine = "ZqVariogramOnPredColumns::GetKernelValue";
  if (similarities.size() != kernels.size()) return SizeMismatch(routine, similarities.size(), kernels.size(), NumPredictors());
  if (similarities.size() != params.size()) return SizeMismatch(routine, similarities.size(), params.size(), NumPredictors());
  value = 1.0;
  for (std::size_t d = 0; d < similarities.size(); ++d) value *= kernels[d](similarities[d], params[d]);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqVariogramOnPredColumns::CalcKernelValuePerBin(const std::vector<ZqSimilarityKernel>& kernels,
                                                                  const std::vector<double>& params) {
  kernelValuesPerBin_.assign(bins_.size(), kBad);
  for (std::size_t b = 0; b < bins_.size(); ++b) {
    ZqStatModelResult result = GetKernelValue(kernelValuesPerBin_[b], bins_[b].GetPredVarSimilarities(), kernels, params);
    if (result.NotSuccessful()) {
      result.AddCallContext("ZqVariogramOnPredColumns::CalcKernelValuePerBin");
      return result;
    }
  }
  return ZqStatModelResult(true);
}

double ZqVariogramOnPredColumns::LeastSquaresFitGivenKernelVals(double& nugget, double& sill) const {
  std::vector<double> k(bins_.size()), y(bins_.size());
  for (std::size_t b = 0; b < bins_.size(); ++b) {
    k[b] = 1.0 - kernelValuesPerBin_[b];
    // An empty cell's statistic is the bad double; its weight is 0, and 0
    // times a finite stand-in keeps the sums finite.
    y[b] = weightsPerBin_[b] > 0.0 ? 0.5 * sampleStatPerBin_[b] : 0.0;
  }
  return ZqFitNuggetAndSill(nugget, sill, k, y, weightsPerBin_);
}

std::vector<double> ZqVariogramOnPredColumns::GetParamValsFromGridIndex(
    std::uint64_t gridIndex, const std::vector<double>& minParams, const std::vector<double>& maxParams,
    const std::vector<unsigned long>& numGridPoints) const {
  std::vector<double> params(NumPredictors());
  for (std::size_t d = NumPredictors(); d-- > 0;) {
    const std::uint64_t digit = gridIndex % numGridPoints[d];
    gridIndex /= numGridPoints[d];
    const double step = numGridPoints[d] > 1 ? (maxParams[d] - minParams[d]) / static_cast<double>(numGridPoints[d] - 1)
                                             : 0.0;
    params[d] = minParams[d] + static_cast<double>(digit) * step;
  }
  return params;
}

ZqStatModelResult ZqVariogramOnPredColumns::CalcOptimalTheoryVariogram(
    double& fitError, const std::vector<unsigned int>& kernelTypes, const std::vector<double>& initialParams,
    const std::vector<double>& minParams, const std::vector<double>& maxParams,
    const std::vector<unsigned long>& numGridPoints) {
  const char* routine = "ZqVariogramOnPredColumns::CalcOptimalTheoryVariogram";
  fitError = nugget_ = sill_ = kBad;
  if (result_.NotSuccessful()) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  for (const std::size_t size : {kernelTypes.size(), initialParams.size(), minParams.size(), maxParams.size(),
                                 numGridPoints.size()}) {
    if (size != NumPredictors()) return SizeMismatch(routine, size, NumPredictors(), NumPredictors());
  }
  const std::uint64_t gridSize = CappedProduct(numGridPoints);
  if (gridSize > kMaxCells) {
    return ZqMakeFailedResult(F::ArgumentOutOfRange, routine,
                              ZqMakeString("product of numGridPoints above ", kMaxCells, "; too many grid points"));
  }
  std::vector<ZqSimilarityKernel> kernels;
  std::vector<double> lo = minParams, hi = maxParams;
  for (std::size_t d = 0; d < NumPredictors(); ++d) {
    kernels.emplace_back(kernelTypes[d]);
    if (lo[d] < 0.0) lo[d] = kernels[d].GetMinimumAllowedParamVal();
    if (hi[d] < 0.0) hi[d] = kernels[d].GetMaximumAllowedParamVal();
  }
  double bestError = kBad;
  std::vector<double> bestParams;
  for (std::uint64_t cell = 0; cell < gridSize; ++cell) {
    const std::vector<double> params = GetParamValsFromGridIndex(cell, lo, hi, numGridPoints);
    ZqStatModelResult result = CalcKernelValuePerBin(kernels, params);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
    double nugget = kBad, sill = kBad;
    const double error = LeastSquaresFitGivenKernelVals(nugget, sill);
    if (error < bestError) {
      bestError = error;
      bestParams = params;
      nugget_ = nugget;
      sill_ = sill;
    }
  }
  if (!bestParams.empty()) {
    kernelParams_ = bestParams;
    CalcKernelValuePerBin(kernels, bestParams);
  }
  fitError = bestError;
  return ZqStatModelResult(true);
}

std::vector<double> ZqVariogramOnPredColumns::GetKrigingParameters() const {
  std::vector<double> params = kernelParams_;
  params.push_back(nugget_);
  params.push_back(sill_);
  return params;
}

}  // namespace Varimo
