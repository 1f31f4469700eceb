// Statistics of columns, and the checks for bad indices, missing and bad
// cells.
#include <cstdint>
#include <string>
#include <vector>

#include "column_walk.h"
#include "varimo/statistics/data_vector_functions.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

namespace {

using namespace ColumnWalk;

constexpr double kBad = VarimoBadData::BadDouble;
constexpr const char* kSampleStatistic = "ZqGetSampleStatisticForColumnOfRatioType";
constexpr const char* kTwoSampleStatistic = "ZqGetTwoSampleStatisticForTwoColumnsOfRatioType";
constexpr const char* kPairStatistic = "ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType";

// True at the first row of `rows` whose cell passes `test`.
template <class Rows, class Test>
bool AnyRow(const Rows& rows, Test&& test) {
  return !rows.ForEach([&](std::uint64_t row) { return !test(row); });
}

// At most `count` rows of an iterator.
struct IterRows {
  Corvane::ZqIter<const ZqDataTableRow>& rows;
  std::uint64_t count;
  template <class Visit>
  bool ForEach(Visit&& visit) const {
    std::uint64_t seen = 0;
    for (; rows && seen < count; ++rows, ++seen) {
      if (!visit(rows->GetRowNumber())) return false;
    }
    return true;
  }
};

// Takes over a packing failure: the caller's name goes on the chain.
bool PackingFailed(ZqStatModelResult& result, ZqStatModelResult packing, const char* routine) {
  result = std::move(packing);
  if (result.IsSuccessful()) return false;
  result.AddCallContext(routine);
  return true;
}

double SampleStatisticOfData(ZqStatModelResult& result, unsigned int statType, const double* parameter,
                             const std::vector<double>& data) {
  const double value = parameter != nullptr ? ZqGetSampleStatisticForDataVec(result, statType, *parameter, data)
                                            : ZqGetSampleStatisticForDataVec(result, statType, data);
  if (result.NotSuccessful()) {
    result.AddCallContext(kSampleStatistic);
    return kBad;
  }
  return value;
}

double TwoSampleStatisticOfPairs(ZqStatModelResult& result, unsigned int statType, const ZqPairSample& pairs) {
  const double value = ZqGetTwoSampleStatisticForDataPairVec(result, statType, pairs);
  if (result.NotSuccessful()) {
    result.AddCallContext(kTwoSampleStatistic);
    return kBad;
  }
  return value;
}

std::pair<double, double> PairStatisticOfPairs(ZqStatModelResult& result, unsigned int statType,
                                               const ZqPairSample& pairs) {
  const std::pair<double, double> value = ZqGetTwoSamplePairStatisticForDataPairVec(result, statType, pairs);
  if (result.NotSuccessful()) {
    result.AddCallContext(kPairStatistic);
    return {kBad, kBad};
  }
  return value;
}

double SampleStatistic(ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad,
                       unsigned int statType, const double* parameter, const ZqDataTableCol& col,
                       std::uint64_t colNum) {
  std::vector<double> data;
  if (PackingFailed(result, ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, col, colNum),
                    kSampleStatistic)) {
    return kBad;
  }
  return SampleStatisticOfData(result, statType, parameter, data);
}

double SampleStatistic(ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad,
                       unsigned int statType, const double* parameter, const ZqDataTable& table,
                       const std::string& name, std::uint64_t colNum) {
  std::vector<double> data;
  if (PackingFailed(result, ZqGetVecOfDataFromColumnOfRatioType(data, numMissing, numBad, table, name, colNum),
                    kSampleStatistic)) {
    return kBad;
  }
  return SampleStatisticOfData(result, statType, parameter, data);
}

}  // namespace

// ---- checks ---------------------------------------------------------------------

bool ZqColumnHasBadRowColIndex(const ZqDataTableCol& col, std::uint64_t colNum) {
  return AnyRow(AllRows{col.GetTotalNumRowsInCol()},
                [&](std::uint64_t row) { return col.RowColIndexIsBad(row, colNum); });
}

bool ZqColumnHasBadRowColIndex(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count,
                               const ZqDataTableCol& col, std::uint64_t colNum) {
  return AnyRow(IterRows{rows, count}, [&](std::uint64_t row) { return col.RowColIndexIsBad(row, colNum); });
}

bool ZqColumnHasMissingData(const ZqDataTableCol& col, std::uint64_t colNum) {
  return AnyRow(AllRows{col.GetTotalNumRowsInCol()},
                [&](std::uint64_t row) { return CheckCell(col, row, colNum) == Cell::Missing; });
}

bool ZqColumnHasMissingData(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count,
                            const ZqDataTableCol& col, std::uint64_t colNum) {
  return AnyRow(IterRows{rows, count},
                [&](std::uint64_t row) { return CheckCell(col, row, colNum) == Cell::Missing; });
}

bool ZqColumnHasBadData(const ZqDataTableCol& col, std::uint64_t colNum) {
  return AnyRow(AllRows{col.GetTotalNumRowsInCol()},
                [&](std::uint64_t row) { return CheckCell(col, row, colNum) == Cell::Bad; });
}

bool ZqColumnHasBadData(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count, const ZqDataTableCol& col,
                        std::uint64_t colNum) {
  return AnyRow(IterRows{rows, count}, [&](std::uint64_t row) { return CheckCell(col, row, colNum) == Cell::Bad; });
}

// ---- one column ------------------------------------------------------------------

double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType,
                                                const ZqDataTableCol& col, std::uint64_t colNum) {
  return SampleStatistic(result, numMissing, numBad, statType, nullptr, col, colNum);
}

double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType, double parameter,
                                                const ZqDataTableCol& col, std::uint64_t colNum) {
  return SampleStatistic(result, numMissing, numBad, statType, &parameter, col, colNum);
}

double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType,
                                                const ZqDataTable& table, const std::string& name,
                                                std::uint64_t colNum) {
  return SampleStatistic(result, numMissing, numBad, statType, nullptr, table, name, colNum);
}

double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType, double parameter,
                                                const ZqDataTable& table, const std::string& name,
                                                std::uint64_t colNum) {
  return SampleStatistic(result, numMissing, numBad, statType, &parameter, table, name, colNum);
}

// ---- two columns -----------------------------------------------------------------

double ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                       std::uint64_t& numBad, unsigned int statType,
                                                       const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                       std::uint64_t colNum1, std::uint64_t colNum2) {
  ZqPairSample pairs;
  if (PackingFailed(result,
                    ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, col1, col2, colNum1,
                                                                  colNum2),
                    kTwoSampleStatistic)) {
    return kBad;
  }
  return TwoSampleStatisticOfPairs(result, statType, pairs);
}

double ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                       std::uint64_t& numBad, unsigned int statType,
                                                       const ZqDataTable& table, const std::string& name1,
                                                       const std::string& name2, std::uint64_t colNum1,
                                                       std::uint64_t colNum2) {
  ZqPairSample pairs;
  if (PackingFailed(result,
                    ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, table, name1, name2,
                                                                  colNum1, colNum2),
                    kTwoSampleStatistic)) {
    return kBad;
  }
  return TwoSampleStatisticOfPairs(result, statType, pairs);
}

std::pair<double, double> ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
    ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad, unsigned int statType,
    const ZqDataTableCol& col1, const ZqDataTableCol& col2, std::uint64_t colNum1, std::uint64_t colNum2) {
  ZqPairSample pairs;
  if (PackingFailed(result,
                    ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, col1, col2, colNum1,
                                                                  colNum2),
                    kPairStatistic)) {
    return {kBad, kBad};
  }
  return PairStatisticOfPairs(result, statType, pairs);
}

std::pair<double, double> ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
    ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad, unsigned int statType,
    const ZqDataTable& table, const std::string& name1, const std::string& name2, std::uint64_t colNum1,
    std::uint64_t colNum2) {
  ZqPairSample pairs;
  if (PackingFailed(result,
                    ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(pairs, numMissing, numBad, table, name1, name2,
                                                                  colNum1, colNum2),
                    kPairStatistic)) {
    return {kBad, kBad};
  }
  return PairStatisticOfPairs(result, statType, pairs);
}

}  // namespace Varimo
