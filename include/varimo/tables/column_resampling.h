// Resampling on columns: the bootstrap of a two-sample statistic over the
// rows of two ratio columns, and the independence statistic of two columns
// with its permutation p-value.
//
//   Numarc::ZqRanNumEngine engine(5);
//   ZqStatModelResult result;
//   double p = ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(
//       result, engine, 999, ZqTwoSampleIndependenceStatisticType::DistanceCorrelationTestStat, table, "x", "y");
//
// The forms with a table look the columns up by name, adding the function's
// name to the chain of a failed look-up (ColumnNotFound), and walk the rows
// the table shows. Randomness comes from the caller's engine only, so a
// seeded engine repeats its results.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/random_engine.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

// numSamples values of the two-sample statistic statType
// (ZqTwoSampleStatisticType), each on a bootstrap sample of the rows where
// both cells are good; whole rows are drawn together. numMissing and numBad
// count the rows left out, as in column_statistics.h. values is cleared
// first. Each sample goes through ZqGetBootstrapSampleForDataPairVec and so
// raises its Fatal message (see bootstrap.h). No kept row fails with NoData
// (unless numSamples is 0); a column not of ratio scale with
// ColumnHasWrongDataType. Failures carry
// "ZqBootstrapTwoSampleStatForTwoColsOfRatioType" and leave the values
// gathered so far.
ZqStatModelResult ZqBootstrapTwoSampleStatForTwoColsOfRatioType(std::vector<double>& values, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, Numarc::ZqRanNumEngine& engine,
                                                                unsigned int statType, std::uint64_t numSamples,
                                                                const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                                std::uint64_t colNum1, std::uint64_t colNum2);
ZqStatModelResult ZqBootstrapTwoSampleStatForTwoColsOfRatioType(std::vector<double>& values, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, Numarc::ZqRanNumEngine& engine,
                                                                unsigned int statType, std::uint64_t numSamples,
                                                                const ZqDataTable& table, const std::string& name1,
                                                                const std::string& name2, std::uint64_t colNum1 = 0,
                                                                std::uint64_t colNum2 = 0);

// The independence statistic statType (ZqTwoSampleIndependenceStatisticType)
// of two columns, each read whole by ZqGetDataVectorFromColumnByName: a
// multi-column column gives points in as many dimensions, a lower-triangular
// one a similarity matrix. Any missing or bad cell fails
// (MissingOrBadPredictorValue), as do similarities outside [0, 1] and
// columns of different row counts. The bad double on failure, with
// "ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType" on the chain.
double ZqGetTwoSampleIndepStatForTwoColumnsOfRatioType(ZqStatModelResult& result, unsigned int statType,
                                                       const ZqDataTable& table, const std::string& name1,
                                                       const std::string& name2);

// The permutation p-value of ZqGetPValueForTwoSampleIndepStatistic on the
// same two vectors, with its two lines on the output sink. The bad double
// on failure, with "ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType"
// on the chain. Cost: O(numSimulations n^2), n the number of rows.
double ZqGetPValueForTwoSampleIndepStatForTwoColumnsOfRatioType(ZqStatModelResult& result,
                                                                Numarc::ZqRanNumEngine& engine,
                                                                std::uint64_t numSimulations, unsigned int statType,
                                                                const ZqDataTable& table, const std::string& name1,
                                                                const std::string& name2);

}  // namespace Varimo
