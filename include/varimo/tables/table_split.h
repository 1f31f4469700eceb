// Splitting a table into two views by row, to hold data out for validation,
// and resampling its rows. Nothing is copied: each output is a view
// ZqDataTable(name, source, rowSet) that shares the source's columns, and
// each keeps the name of the table it replaces. Randomness comes from the
// caller's engine, so the same engine state gives the same split. On
// failure the outputs are left as they were.
#pragma once

#include <cstdint>
#include <string>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/random_engine.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

// Each row of the source, in GetRows order, goes to selected with the given
// probability: a uniform draw on [0, 1) below it selects the row, so 0
// selects none and 1 all. A probability outside [0, 1], or NaN, fails with
// ArgumentOutOfRange, routine "SplitDataTableByRandomRowSelection".
ZqStatModelResult ZqSplitDataTableByRandomRowSelection(ZqDataTable& selected, ZqDataTable& rest,
                                                       Numarc::ZqRanNumEngine& engine, double probability,
                                                       const ZqDataTable& source);

// Exactly `count` rows, drawn uniformly without replacement, go to
// selected, the others to rest, both in ascending row order. count must be
// below the source's number of rows, else ArgumentOutOfRange, routine
// "ZqSplitDataTableByUnifSamplingWithoutReplacement".
ZqStatModelResult ZqSplitDataTableByUnifSamplingWithoutReplacement(ZqDataTable& selected, ZqDataTable& rest,
                                                                   Numarc::ZqRanNumEngine& engine,
                                                                   std::uint64_t count, const ZqDataTable& source);

// The rows picked by ZqGetMaximalCoverageDistanceSubMatrix on the distances
// between the rows of the named ratio column (Euclidean, or sqrt(1 - s) for
// a lower-triangular similarity column) go to selected, the others to rest.
// Failures of the column (not found, not ratio, a missing or bad cell) and of
// the selection come back with "ZqSplitDataTableByMaxUnifCoverageOfColVals"
// on the chain; a distance matrix whose size differs from the table's rows
// fails with InternalLogicFailure. O(rows^2) memory.
ZqStatModelResult ZqSplitDataTableByMaxUnifCoverageOfColVals(ZqDataTable& selected, ZqDataTable& rest,
                                                             Numarc::ZqRanNumEngine& engine, std::uint64_t count,
                                                             const std::string& columnName,
                                                             const ZqDataTable& source);

// A bootstrap view: `count` rows drawn uniformly with replacement, in draw
// order, repeats included, named as the source. A source without rows gives
// a view without rows.
ZqDataTable ZqGetNewDataTableByUnifSamplingWithReplacement(Numarc::ZqRanNumEngine& engine, std::uint64_t count,
                                                           const ZqDataTable& source);

}  // namespace Varimo
