// From columns to statistics: packing the cells of one, two or three columns
// into vectors with the missing and bad cells left out and counted, and each
// statistic of the statistic objects applied to a column.
//
// Most functions have two forms. The form with a column and a column number
// walks every row of the column, 0 to GetTotalNumRowsInCol() - 1. The form
// with a table and column names looks the columns up by name and walks the
// rows the table shows (GetRows), so views and predicates apply:
//
//   std::uint64_t numMissing = 0, numBad = 0;
//   Varimo::ZqStatModelResult result;
//   const double median = Varimo::ZqGetSampleStatisticForColumnOfRatioType(
//       result, numMissing, numBad, Varimo::ZqSampleStatisticType::Median, table, "TPSA");
//
// A failure carries the function's own name in its routine chain. Output
// vectors may be partly filled after a failure. Row counts are counts of
// rows, not of cells: a row missing in one column and bad in another counts
// once, as missing.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/iter.h"
#include "varimo/statistics/two_sample_statistic.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

// ---------------------------------------------------------------------------
// Checks. True at the first row whose cell (row, colNum) has a bad index,
// missing data or bad data; cells with a bad index are neither missing nor
// bad. The iterator form looks at no more than `count` rows from `rows`:
//   ZqColumnHasMissingData(table.GetRows(), table.GetNumRows(), col, 0)
bool ZqColumnHasBadRowColIndex(const ZqDataTableCol& col, std::uint64_t colNum);
bool ZqColumnHasBadRowColIndex(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count,
                               const ZqDataTableCol& col, std::uint64_t colNum);
bool ZqColumnHasMissingData(const ZqDataTableCol& col, std::uint64_t colNum);
bool ZqColumnHasMissingData(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count,
                            const ZqDataTableCol& col, std::uint64_t colNum);
bool ZqColumnHasBadData(const ZqDataTableCol& col, std::uint64_t colNum);
bool ZqColumnHasBadData(Corvane::ZqIter<const ZqDataTableRow> rows, std::uint64_t count,
                        const ZqDataTableCol& col, std::uint64_t colNum);

// ---------------------------------------------------------------------------
// One column. The column must be of ratio scale (interval for the int form),
// else ColumnHasWrongDataType with "Column: <name>: <scale text>". A cell
// with a bad index fails with ArgumentOutOfRange; a missing cell raises
// numMissing, a bad one numBad; every other cell is appended. Both counts
// and the output are cleared first.
ZqStatModelResult ZqGetVecOfDataFromColumnOfRatioType(std::vector<double>& data, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTableCol& col,
                                                      std::uint64_t colNum);
ZqStatModelResult ZqGetVecOfDataFromColumnOfRatioType(std::vector<double>& data, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTable& table,
                                                      const std::string& name, std::uint64_t colNum = 0);
ZqStatModelResult ZqGetVecOfDataFromColumnOfIntervalType(std::vector<std::int32_t>& data,
                                                         std::uint64_t& numMissing, std::uint64_t& numBad,
                                                         const ZqDataTableCol& col, std::uint64_t colNum);
ZqStatModelResult ZqGetVecOfDataFromColumnOfIntervalType(std::vector<std::int32_t>& data,
                                                         std::uint64_t& numMissing, std::uint64_t& numBad,
                                                         const ZqDataTable& table, const std::string& name,
                                                         std::uint64_t colNum = 0);

// The good values as a new one-column ratio column named as the source.
ZqStatModelResult ZqGetPackedColFromColumnOfRatioType(ZqDataTableCol& packed, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTableCol& col,
                                                      std::uint64_t colNum);
ZqStatModelResult ZqGetPackedColFromColumnOfRatioType(ZqDataTableCol& packed, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTable& table,
                                                      const std::string& name, std::uint64_t colNum = 0);

// The one-sample statistic `statType` (ZqSampleStatisticType) of the good
// values; the form with `parameter` sets the trimming fraction or the
// quantile. Gives the bad double on failure. An empty column is not a
// failure: the statistic itself gives the bad double.
double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType,
                                                const ZqDataTableCol& col, std::uint64_t colNum);
double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType, double parameter,
                                                const ZqDataTableCol& col, std::uint64_t colNum);
double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType,
                                                const ZqDataTable& table, const std::string& name,
                                                std::uint64_t colNum = 0);
double ZqGetSampleStatisticForColumnOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                std::uint64_t& numBad, unsigned int statType, double parameter,
                                                const ZqDataTable& table, const std::string& name,
                                                std::uint64_t colNum = 0);

// ---------------------------------------------------------------------------
// Two columns, cell (row, colNum1) of the first with (row, colNum2) of the
// second. Columns of different row counts fail with
// MismatchBetweenInputVecSizes; a column not of ratio scale fails with
// ColumnHasWrongDataType. A row is kept only if both cells are good; it
// raises numMissing if either is missing, else numBad if either is bad.
ZqStatModelResult ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(ZqPairSample& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTableCol& col1,
                                                                const ZqDataTableCol& col2, std::uint64_t colNum1,
                                                                std::uint64_t colNum2);
ZqStatModelResult ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(ZqPairSample& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTable& table,
                                                                const std::string& name1, const std::string& name2,
                                                                std::uint64_t colNum1 = 0,
                                                                std::uint64_t colNum2 = 0);

// The kept rows as two new one-column ratio columns named as the sources.
ZqStatModelResult ZqGetTwoPackedColsFromTwoColumnsOfRatioType(ZqDataTableCol& packed1, ZqDataTableCol& packed2,
                                                              std::uint64_t& numMissing, std::uint64_t& numBad,
                                                              const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                              std::uint64_t colNum1, std::uint64_t colNum2);
ZqStatModelResult ZqGetTwoPackedColsFromTwoColumnsOfRatioType(ZqDataTableCol& packed1, ZqDataTableCol& packed2,
                                                              std::uint64_t& numMissing, std::uint64_t& numBad,
                                                              const ZqDataTable& table, const std::string& name1,
                                                              const std::string& name2, std::uint64_t colNum1 = 0,
                                                              std::uint64_t colNum2 = 0);

// The two-sample statistic `statType` (ZqTwoSampleStatisticType) of the kept
// rows; no kept row fails with NoData. Gives the bad double on failure.
double ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                       std::uint64_t& numBad, unsigned int statType,
                                                       const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                       std::uint64_t colNum1, std::uint64_t colNum2);
double ZqGetTwoSampleStatisticForTwoColumnsOfRatioType(ZqStatModelResult& result, std::uint64_t& numMissing,
                                                       std::uint64_t& numBad, unsigned int statType,
                                                       const ZqDataTable& table, const std::string& name1,
                                                       const std::string& name2, std::uint64_t colNum1 = 0,
                                                       std::uint64_t colNum2 = 0);

// The pair statistic `statType` (ZqTwoSamplePairStatisticType) of the kept
// rows; no kept row fails with NoData. Gives the bad pair on failure.
std::pair<double, double> ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
    ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad, unsigned int statType,
    const ZqDataTableCol& col1, const ZqDataTableCol& col2, std::uint64_t colNum1, std::uint64_t colNum2);
std::pair<double, double> ZqGetTwoSamplePairStatisticForTwoColumnsOfRatioType(
    ZqStatModelResult& result, std::uint64_t& numMissing, std::uint64_t& numBad, unsigned int statType,
    const ZqDataTable& table, const std::string& name1, const std::string& name2, std::uint64_t colNum1 = 0,
    std::uint64_t colNum2 = 0);

// Whole rows of two multi-column (or lower-triangular) columns, paired row
// by row. The missing and bad rule applies to the whole row: one missing
// cell in either row raises numMissing and drops the pair.
using ZqPairedRowVecs = std::vector<std::pair<std::vector<double>, std::vector<double>>>;
ZqStatModelResult ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(ZqPairedRowVecs& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTableCol& col1,
                                                                const ZqDataTableCol& col2);
ZqStatModelResult ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(ZqPairedRowVecs& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTable& table,
                                                                const std::string& name1, const std::string& name2);

// Two ratio columns and a nominal one, as ((x, y), class) with the class the
// nominal's index (GetUnsigned). A row is kept if all three cells are good.
using ZqClassifiedPairSample = std::vector<std::pair<std::pair<double, double>, std::uint32_t>>;
ZqStatModelResult ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(
    ZqClassifiedPairSample& data, std::uint64_t& numMissing, std::uint64_t& numBad, const ZqDataTableCol& col1,
    const ZqDataTableCol& col2, const ZqDataTableCol& col3, std::uint64_t colNum1, std::uint64_t colNum2,
    std::uint64_t colNum3);
ZqStatModelResult ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(
    ZqClassifiedPairSample& data, std::uint64_t& numMissing, std::uint64_t& numBad, const ZqDataTable& table,
    const std::string& name1, const std::string& name2, const std::string& name3, std::uint64_t colNum1 = 0,
    std::uint64_t colNum2 = 0, std::uint64_t colNum3 = 0);

// ---------------------------------------------------------------------------
// Rows and matrices.

// Columns 0 to GetNumColumnsInCol() - 1 of one row. A bad index fails with
// ArgumentOutOfRange, a missing or bad cell with MissingOrBadPredictorValue.
ZqStatModelResult ZqGetOneRowOfColumn(std::vector<double>& row, std::uint64_t rowNum, const ZqDataTableCol& col);
// The whole symmetric row of a lower-triangular column, its length the
// table's number of rows in its columns.
ZqStatModelResult ZqGetOneRowOfLowerTriangularColumn(std::vector<double>& row, std::uint64_t rowNum,
                                                     const ZqDataTable& table, const ZqDataTableCol& col);

// The cells of a ratio column, row after row for the rows of the table, as
// one flat vector of rows of numCols values. Any missing or bad cell fails
// with MissingOrBadPredictorValue. A lower-triangular column is a similarity
// matrix read as a full square: every element must lie in [0, 1], else
// LowerBoundViolated or UpperBoundViolated.
ZqStatModelResult ZqGetDataVectorFromColumnByName(std::vector<double>& data, std::uint64_t& numCols,
                                                  const ZqDataTable& table, const std::string& name);

// (value, number of rows) for every unique value of a nominal column, in
// the column's order of unique values, counted over the rows of the table.
ZqStatModelResult ZqGetFreqOfOutcomesFromColumnOfNominalType(
    std::vector<std::pair<std::string, std::uint64_t>>& outcomes, const ZqDataTable& table,
    const std::string& name, std::uint64_t colNum = 0);

// The eigenvalues, ascending, of the full symmetric matrix a lower-triangular
// column stands for; any other column fails with WrongInputMatrixSize.
ZqStatModelResult ZqGetSortedEigenValsOfLowerTriangularColumn(std::vector<double>& eigenValues,
                                                              const ZqDataTableCol& col);

}  // namespace Varimo
