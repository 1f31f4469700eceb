// Resampling on columns: packing or reading the columns, then the
// bootstrap and independence tools of the sample statistics.
#include "varimo/tables/column_resampling.h"

#include <vector>

#include "column_walk.h"
#include "varimo/statistics/bootstrap.h"
#include "varimo/statistics/independence_statistic.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

namespace {

using ColumnWalk::Failed;
using ColumnWalk::FindColumn;

constexpr double kBad = VarimoBadData::BadDouble;
constexpr const char* kBootstrap = "ZqBootstrapTwoSampleStatForTwoColsOfRatioType";
constexpr const char* kIndepStat = "ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType";
constexpr const char* kPValue = "ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType";

ZqStatModelResult BootstrapOfPairs(std::vector<double>& values, ZqStatModelResult packing,
                                   Numarc::ZqRanNumEngine& engine, unsigned int statType, const ZqPairSample& pairs,
                                   std::uint64_t numSamples) {
  values.clear();
  if (Failed(packing, kBootstrap)) return packing;
  ZqStatModelResult result = ZqBootstrapTwoSampleStatisticForDataPairVec(values, engine, statType, pairs, numSamples);
  Failed(result, kBootstrap);
  return result;
}

// One sample of an independence statistic: the column's cells as one flat
// vector, its number of columns, and whether it is a similarity matrix.
struct IndepSample {
  std::vector<double> data;
  std::uint64_t numCols = 0;
  bool isSimilarity = false;
};

ZqStatModelResult ReadSample(IndepSample& sample, const ZqDataTable& table, const std::string& name,
                             const char* routine) {
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, routine);
  if (result.NotSuccessful()) return result;
  sample.isSimilarity = col.ColIsLowerTriangular();
  result = ZqGetDataVectorFromColumnByName(sample.data, sample.numCols, table, name);
  Failed(result, routine);
  return result;
}

// Both samples, or the failure of the first that could not be read.
ZqStatModelResult ReadSamples(IndepSample& first, IndepSample& second, const ZqDataTable& table,
                              const std::string& name1, const std::string& name2, const char* routine) {
  ZqStatModelResult result = ReadSample(first, table, name1, routine);
  if (result.IsSuccessful()) result = ReadSample(second, table, name2, routine);
  return result;
}

// Reads both columns and gives apply(first, second), which fills `result`;
// the bad double, with `routine` on the chain, on any failure.
template <class Apply>
double OnTwoSamples(ZqStatModelResult& result, const ZqDataTable& table, const std::string& name1,
                    const std::string& name2, const char* routine, Apply&& apply) {
  IndepSample first, second;
  result = ReadSamples(first, second, table, name1, name2, routine);
  if (result.NotSuccessful()) return kBad;
  const double value = apply(first, second);
  return Failed(result, routine) ? kBad : value;
}

}  // namespace

ZqStatModelResult ZqBootstrapTwoSampleStatForTwoColsOfRatioType(std::vector<double>& values, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, Numarc::ZqRanNumEngine& engine,
                                                                unsigned int statType, std::uint64_t numSamples,
                                                                const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                                std::uint64_t colNum1, std::uint64_t colNum2) {
  ZqPairSample pairs;
  ZqStatModelResult packing =
      ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, col1, col2, colNum1, colNum2);
  return BootstrapOfPairs(values, packing, engine, statType, pairs, numSamples);
}

ZqStatModelResult ZqBootstrapTwoSampleStatForTwoColsOfRatioType(std::vector<double>& values, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, Numarc::ZqRanNumEngine& engine,
                                                                unsigned int statType, std::uint64_t numSamples,
                                                                const ZqDataTable& table, const std::string& name1,
                                                                const std::string& name2, std::uint64_t colNum1,
                                                                std::uint64_t colNum2) {
  values.clear();
  ZqStatModelResult result;
  FindColumn(result, table, name1, kBootstrap);
  if (result.IsSuccessful()) FindColumn(result, table, name2, kBootstrap);
  if (result.NotSuccessful()) return result;
  ZqPairSample pairs;
  ZqStatModelResult packing =
      ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, table, name1, name2, colNum1, colNum2);
  return BootstrapOfPairs(values, packing, engine, statType, pairs, numSamples);
}

double ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType(ZqStatModelResult& result, unsigned int statType,
                                                       const ZqDataTable& table, const std::string& name1,
                                                       const std::string& name2) {
  return OnTwoSamples(
      result, table, name1, name2, kIndepStat, [&](const IndepSample& first, const IndepSample& second) {
        return ZqGetTwoSampleIndepStatForVectors(result, statType, first.data, first.numCols, first.isSimilarity,
                                                 second.data, second.numCols, second.isSimilarity);
      });
}

double ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(ZqStatModelResult& result,
                                                                Numarc::ZqRanNumEngine& engine,
                                                                std::uint64_t numSimulations, unsigned int statType,
                                                                const ZqDataTable& table, const std::string& name1,
                                                                const std::string& name2) {
  return OnTwoSamples(result, table, name1, name2, kPValue, [&](const IndepSample& first, const IndepSample& second) {
    return ZqGetPValueForTwoSampleIndepStatistic(result, engine, numSimulations, statType, first.data, first.numCols,
                                                 first.isSimilarity, second.data, second.numCols, second.isSimilarity);
  });
}

}  // namespace Varimo
