// Empirical variograms of a response against similarity, and the fit of a
// similarity kernel to them: pairs of rows are sorted into similarity bins,
// half the squared difference of their responses makes each bin's value,
// and the curve nugget + (sill - nugget) (1 - K(s, p)) is fitted, the
// kernel parameter by a line search and nugget and sill in closed form.
//
//   ZqVariogramBinWeights weights(false, 0.1, 0.0);
//   ZqBinnedVariogramFromSimilarity variogram(responses, similarityMatrix, weights, 20);
//   variogram.CalcEmpiricalVariogram(0.0, 0);
//   double error, param;
//   variogram.CalcOptimalTheoryVariogram(error, param, ZqSimilarityKernelType::Exponential, 50, -1, -1, -1);
//   std::vector<double> krige = variogram.GetKrigingParameters();   // parameter, nugget, sill
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/iter.h"
#include "varimo/platform/minarc/func.h"
#include "varimo/smoothers/similarity_kernels.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

using ZqVariogramPoints = std::vector<std::pair<double, double>>;

// How much each bin counts in the fit: bins below a similarity threshold,
// or holding fewer pairs than a fraction of the average, count nothing; the
// others equally or by their pairs.
class ZqVariogramBinWeights {
 public:
  ZqVariogramBinWeights(bool useEqualWeights, double fracAveBinCountThreshold, double similarityThreshold);
  bool IsValid() const { return valid_; }
  ZqStatModelResult GetResultOfConstruction() const { return result_; }
  ZqStatModelResult GetBinWeights(std::vector<double>& weights, const std::vector<unsigned long>& numPairsPerBin) const;

 private:
  bool valid_ = true;
  ZqStatModelResult result_{true};
  bool useEqualWeights_;
  double fracAveBinCountThresholdForBinWeights_;
  double similarityThresholdForBinWeights_;
};

// The least-squares objective of the theory curve at a kernel parameter;
// the nugget and sill of its last evaluation are kept.
class ZqSimilarityVariogramLSFit final : public Minarc::ZqFunc0 {
 public:
  ZqSimilarityVariogramLSFit(unsigned int kernelType, const ZqVariogramPoints& points,
                             const std::vector<double>& weights);
  unsigned int NumVar() const override { return 1; }
  double operator()(const double* p) override;
  bool IsValid() const { return valid_; }
  double GetNugget() const { return nugget_; }
  double GetSill() const { return sill_; }

 private:
  bool valid_;
  ZqSimilarityKernel kernel_;
  ZqVariogramPoints points_;
  std::vector<double> weights_;
  double nugget_;
  double sill_;
};

class ZqBinnedVariogramFromSimilarity {
 public:
  ZqBinnedVariogramFromSimilarity(const ZqDataTable& table, const std::string& similarityColumnName,
                                  const std::string& responseColumnName, const ZqVariogramBinWeights& weights,
                                  unsigned long numBins);
  // The similarity matrix n by n, row-major; only its upper triangle is read.
  ZqBinnedVariogramFromSimilarity(const std::vector<double>& responseVals, const std::vector<double>& similarityMatrix,
                                  const ZqVariogramBinWeights& weights, unsigned long numBins);

  // The mean (fraction up to 0.001) or trimmed mean of each bin's half
  // squared differences; a non-zero `reserved` does nothing.
  ZqStatModelResult CalcEmpiricalVariogram(double fractionToTrim, unsigned long reserved);
  // Negative parameter bounds take the kernel's own; fills the theory curve
  // at numTheoryPoints similarities.
  ZqStatModelResult CalcOptimalTheoryVariogram(double& bestFitError, double& bestParam, unsigned int kernelType,
                                               unsigned long numTheoryPoints, double initialParam, double minParam,
                                               double maxParam);
  bool IsValid() const { return valid_; }
  ZqStatModelResult GetResultOfConstruction() const { return result_; }
  const std::vector<unsigned long>& GetNumPairsPerBin() const { return numPairsPerBin_; }
  Corvane::ZqIter<const std::pair<double, double>> GetEmpiricalVariogram() const;
  Corvane::ZqIter<const std::pair<double, double>> GetTheoryVariogram() const;
  double GetNugget() const { return nugget_; }
  double GetSill() const { return sill_; }
  double GetKernelParameter() const { return kernelParameter_; }
  std::vector<double> GetKrigingParameters() const { return {kernelParameter_, nugget_, sill_}; }

 private:
  ZqStatModelResult CheckSizes(unsigned long numBins) const;
  std::size_t BinOf(std::size_t i, std::size_t j) const;
  void CalcExactMeanOfBinnedSqDiffsOfResponses();
  void GetLinkedListOfPairsForBins(std::vector<unsigned long>& next, std::vector<unsigned long>& first);
  ZqStatModelResult CalcTrimmedMeanOfBinnedSqDiffsUsingLinkedList(double fraction);
  void FillTheoryVariogram(unsigned long numTheoryPoints);

  bool valid_ = true;
  ZqStatModelResult result_{true};
  std::vector<double> responseVals_;
  std::vector<double> similarityMatrix_;
  ZqVariogramBinWeights binWeights_;
  unsigned long numBins_;
  ZqVariogramPoints empiricalVariogram_;
  ZqVariogramPoints theoryVariogram_;
  std::vector<unsigned long> numPairsPerBin_;
  ZqSimilarityKernel kernel_{0};
  double kernelParameter_;
  double nugget_;
  double sill_;
};

}  // namespace Varimo
