// The variogram of a response on several predictor columns at once: each
// column, a plain one-value column or a similarity matrix, gives a
// similarity of two rows (a plain column 1 - |x_i - x_j| / range), the pairs
// fall into the cells of a grid over those similarities, and a product of
// one similarity kernel per column is fitted to a statistic of each cell's
// squared differences by a grid search over the kernel parameters.
//
//   ZqVariogramOnPredColumns variogram("pIC50", {"tanimoto", "logP"}, table, {4, 4}, false, 0.1,
//                                      {0.0, 0.0}, ZqSampleStatisticType::Mean, 0.0);
//   double error;
//   variogram.CalcOptimalTheoryVariogram(error, {ZqSimilarityKernelType::Exponential, ZqSimilarityKernelType::Gaussian},
//                                        {-1, -1}, {-1, -1}, {-1, -1}, {20, 20});
//   std::vector<double> krige = variogram.GetKrigingParameters();   // parameters, nugget, sill
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/smoothers/similarity_kernels.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

// One cell of the grid: its similarity per predictor (the cell's centre)
// and the squared response differences of the pairs that fell into it.
class ZqVariogramBin {
 public:
  ZqVariogramBin(const std::vector<double>& similarities, std::size_t expectedCount);
  void AddSqDiffOfResponses(double sqDiff) {
    sqDiffs_.push_back(sqDiff);
    isSorted_ = false;
  }
  std::size_t GetNumPairs() const { return sqDiffs_.size(); }
  const std::vector<double>& GetSqDiffsOfResponses() const { return sqDiffs_; }
  const std::vector<double>& GetPredVarSimilarities() const { return similarities_; }
  bool IsSorted() const { return isSorted_; }
  // Ascending.
  void SortSquaredDiffsOfResponses();

 private:
  bool isSorted_ = false;
  std::vector<double> similarities_;
  std::vector<double> sqDiffs_;
};

class ZqVariogramOnPredColumns {
 public:
  // `sampleStatType` and `statParam` choose the statistic of each cell's
  // squared differences (ZqSampleStatisticType); half of it is the cell's
  // variogram value. A cell whose similarities fall below
  // `similarityThresholdPerDim` in any predictor, or that holds fewer pairs
  // than `fracAveBinCountThreshold` of the average, counts nothing in the
  // fit; the others count equally or by their pairs.
  ZqVariogramOnPredColumns(const std::string& responseName, const std::vector<std::string>& predictorNames,
                           const ZqDataTable& table, const std::vector<unsigned long>& numBinsPerDim,
                           bool useEqualWeights, double fracAveBinCountThreshold,
                           const std::vector<double>& similarityThresholdPerDim, unsigned int sampleStatType,
                           double statParam);

  // Tries numGridPoints[d] parameters spread evenly from minParams[d] to
  // maxParams[d] in every combination; negative bounds take the kernel's
  // own. The first combination of least error wins.
  ZqStatModelResult CalcOptimalTheoryVariogram(double& fitError, const std::vector<unsigned int>& kernelTypes,
                                               const std::vector<double>& initialParams,
                                               const std::vector<double>& minParams,
                                               const std::vector<double>& maxParams,
                                               const std::vector<unsigned long>& numGridPoints);

  ZqStatModelResult GetResultOfConstruction() const { return result_; }
  const std::vector<ZqVariogramBin>& GetBins() const { return bins_; }
  const std::vector<double>& GetSampleStatisticPerBin() const { return sampleStatPerBin_; }
  const std::vector<double>& GetNumPairsPerBin() const { return numPairsPerBin_; }
  const std::vector<double>& GetKernelValuesPerBin() const { return kernelValuesPerBin_; }
  const std::vector<double>& GetWeightsForFittingPerBin() const { return weightsPerBin_; }
  double GetNugget() const { return nugget_; }
  double GetSill() const { return sill_; }
  const std::vector<double>& GetKernelParameter() const { return kernelParams_; }
  // The kernel parameters, then nugget and sill.
  std::vector<double> GetKrigingParameters() const;

  // The cell of two rows of the private table; a matrix similarity outside
  // [0, 1] fails.
  ZqStatModelResult GetBinIndexForTwoRowNumbers(std::uint64_t& binIndex, std::uint64_t i, std::uint64_t j) const;
  // Each similarity is truncated to a whole number before it is scaled by
  // the bin count, so only a similarity of exactly 1 leaves the first digit.
  std::uint64_t GetBinIndexFromSimilarities(const std::vector<double>& similarities) const;
  // The centre similarities of a cell, digit by digit from the last.
  std::vector<double> GetSimilaritiesFromBinIndex(std::uint64_t binIndex) const;
  // The product of the kernels' values at a cell's similarities.
  ZqStatModelResult GetKernelValue(double& value, const std::vector<double>& similarities,
                                   const std::vector<ZqSimilarityKernel>& kernels,
                                   const std::vector<double>& params) const;

 private:
  ZqStatModelResult SetupDataTableFromColumnNamesAndTable(const std::string& responseName,
                                                          const std::vector<std::string>& predictorNames,
                                                          const ZqDataTable& table);
  ZqStatModelResult CheckArguments(const std::vector<double>& similarityThresholdPerDim,
                                   double fracAveBinCountThreshold) const;
  ZqStatModelResult SetMaxDistPerDim();
  ZqStatModelResult FillVariogramBins();
  void CalcWeightsForFittingVariogram(bool useEqualWeights, double fracAveBinCountThreshold,
                                      const std::vector<double>& similarityThresholdPerDim);
  void CalcSampleStatPerBin(unsigned int statType, double param);
  ZqStatModelResult CalcKernelValuePerBin(const std::vector<ZqSimilarityKernel>& kernels,
                                          const std::vector<double>& params);
  double LeastSquaresFitGivenKernelVals(double& nugget, double& sill) const;
  std::vector<double> GetParamValsFromGridIndex(std::uint64_t gridIndex, const std::vector<double>& minParams,
                                                const std::vector<double>& maxParams,
                                                const std::vector<unsigned long>& numGridPoints) const;
  std::size_t NumPredictors() const { return numBinsPerDim_.size(); }

  ZqStatModelResult result_{true};
  ZqDataTable table_;
  // The table's columns, predictors then response, at hand by position.
  std::vector<ZqDataTableCol> columns_;
  std::vector<unsigned long> numBinsPerDim_;
  std::vector<double> maxDistPerDim_;
  std::vector<ZqVariogramBin> bins_;
  std::vector<double> sampleStatPerBin_;
  std::vector<double> numPairsPerBin_;
  std::vector<double> kernelValuesPerBin_;
  std::vector<double> weightsPerBin_;
  std::vector<double> kernelParams_;
  double nugget_;
  double sill_;
};

}  // namespace Varimo
