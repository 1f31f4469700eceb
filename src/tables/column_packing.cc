// Packing the good cells of one, two or three columns into vectors.
#include <cstdint>
#include <string>
#include <vector>

#include "column_walk.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

namespace {

using namespace ColumnWalk;
namespace Failure = ZqStatModelFailureType;
namespace Scale = ZqStatVariableType;

// ---- one column -----------------------------------------------------------

// The walk shared by the ratio and interval forms: `append(row)` takes the
// good cells.
template <class Rows, class Append>
ZqStatModelResult PackOneColumn(std::uint64_t& numMissing, std::uint64_t& numBad, const ZqDataTableCol& col,
                                std::uint64_t colNum, std::uint32_t scale, const Rows& rows, const char* routine,
                                Append&& append) {
  numMissing = 0;
  numBad = 0;
  if (col.GetStatVariableType() != scale) {
    return ZqMakeFailedResult(Failure::ColumnHasWrongDataType, routine,
                              "Column: " + col.GetColumnName() + ": " + ScaleText(col));
  }
  ZqStatModelResult result(true);
  rows.ForEach([&](std::uint64_t row) {
    switch (CheckCell(col, row, colNum)) {
      case Cell::BadIndex:
        result = ZqMakeFailedResult(Failure::ArgumentOutOfRange, routine,
                                    RowColText(row, colNum) + " out of range for Column!");
        return false;
      case Cell::Missing:
        ++numMissing;
        break;
      case Cell::Bad:
        ++numBad;
        break;
      case Cell::Good:
        append(row);
        break;
    }
    return true;
  });
  return result;
}

constexpr const char* kRatioVec = "ZqGetVecOfDataFromColumnOfRatioType";
constexpr const char* kIntervalVec = "ZqGetVecOfDataFromColumnOfIntervalType";
constexpr const char* kPackedCol = "ZqGetPackedColFromColumnOfRatioType";

template <class Rows>
ZqStatModelResult RatioVec(std::vector<double>& data, std::uint64_t& numMissing, std::uint64_t& numBad,
                           const ZqDataTableCol& col, std::uint64_t colNum, const Rows& rows, const char* routine) {
  data.clear();
  return PackOneColumn(numMissing, numBad, col, colNum, Scale::Ratio, rows, routine,
                       [&](std::uint64_t row) { data.push_back(col.GetDouble(row, colNum)); });
}

template <class Rows>
ZqStatModelResult IntervalVec(std::vector<std::int32_t>& data, std::uint64_t& numMissing, std::uint64_t& numBad,
                              const ZqDataTableCol& col, std::uint64_t colNum, const Rows& rows) {
  data.clear();
  return PackOneColumn(numMissing, numBad, col, colNum, Scale::Interval, rows, kIntervalVec,
                       [&](std::uint64_t row) { data.push_back(col.GetInt(row, colNum)); });
}

template <class Rows>
ZqStatModelResult PackedCol(ZqDataTableCol& packed, std::uint64_t& numMissing, std::uint64_t& numBad,
                            const ZqDataTableCol& col, std::uint64_t colNum, const Rows& rows) {
  std::vector<double> values;
  ZqStatModelResult result = RatioVec(values, numMissing, numBad, col, colNum, rows, kPackedCol);
  if (result.IsSuccessful()) packed = ZqDataTableCol(col.GetColumnName(), values);
  return result;
}

// ---- two columns ------------------------------------------------------------

// The checks made before any row is read: equal row counts, then each
// column's scale, reported for every column as "Col One: <name>: <scale>".
ZqStatModelResult CheckColumns(std::initializer_list<const ZqDataTableCol*> cols,
                               std::initializer_list<std::uint32_t> scales, const char* routine) {
  const std::uint64_t rows = (*cols.begin())->GetTotalNumRowsInCol();
  for (const ZqDataTableCol* col : cols) {
    if (col->GetTotalNumRowsInCol() != rows) return ZqMakeFailedResult(Failure::MismatchBetweenInputVecSizes, routine);
  }
  static const char* const kLabels[] = {"Col One: ", "Col Two: ", "Col Three: "};
  bool scalesRight = true;
  auto scale = scales.begin();
  for (const ZqDataTableCol* col : cols) scalesRight = scalesRight && col->GetStatVariableType() == *scale++;
  if (scalesRight) return ZqStatModelResult(true);
  ZqStatModelResult result = ZqMakeFailedResult(Failure::ColumnHasWrongDataType, routine);
  const char* const* label = kLabels;
  for (const ZqDataTableCol* col : cols) result.AddExtraComment(*label++ + col->GetColumnName() + ": " + ScaleText(*col));
  return result;
}

// The cells of one row across several columns: a row with a missing cell
// counts as missing even if another cell is bad.
struct RowCells {
  bool missing = false;
  bool bad = false;
  void Add(Cell cell) {
    missing = missing || cell == Cell::Missing;
    bad = bad || cell == Cell::Bad;
  }
};

const char* const kOutOfRangeFor[] = {") out of range for ColumnOne!", ") out of range for ColumnTwo!",
                                      ") out of range for ColumnThree!"};

ZqStatModelResult OutOfRange(const char* routine, std::size_t which, std::uint64_t row, std::uint64_t colNum) {
  const std::string prefix = which == 0 ? "" : "or ";
  return ZqMakeFailedResult(
      Failure::ArgumentOutOfRange, routine,
      Corvane::ZqMakeString(prefix, "row column index combination (", row, ", ", colNum, kOutOfRangeFor[which]));
}

// Walks the rows of several columns at once, each at its own column number,
// and hands the rows whose cells are all good to `keep`.
template <class Rows, class Keep>
ZqStatModelResult PackColumns(std::uint64_t& numMissing, std::uint64_t& numBad,
                              std::initializer_list<const ZqDataTableCol*> cols,
                              std::initializer_list<std::uint64_t> colNums, const Rows& rows, const char* routine,
                              Keep&& keep) {
  ZqStatModelResult result(true);
  rows.ForEach([&](std::uint64_t row) {
    RowCells cells;
    auto colNum = colNums.begin();
    std::size_t which = 0;
    for (const ZqDataTableCol* col : cols) {
      const Cell cell = CheckCell(*col, row, *colNum);
      if (cell == Cell::BadIndex) {
        result = OutOfRange(routine, which, row, *colNum);
        return false;
      }
      cells.Add(cell);
      ++colNum;
      ++which;
    }
    if (cells.missing) {
      ++numMissing;
    } else if (cells.bad) {
      ++numBad;
    } else {
      keep(row);
    }
    return true;
  });
  return result;
}

constexpr const char* kPairVec = "ZqGetVecOfPairedDataFromTwoColumnsOfRatioType";
constexpr const char* kTwoPackedCols = "ZqGetTwoPackedColsFromTwoColumnsOfRatioType";
constexpr const char* kClassified = "ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType";

template <class Rows>
ZqStatModelResult PairVec(ZqPairSample& pairs, std::uint64_t& numMissing, std::uint64_t& numBad,
                          const ZqDataTableCol& col1, const ZqDataTableCol& col2, std::uint64_t colNum1,
                          std::uint64_t colNum2, const Rows& rows, const char* routine) {
  pairs.clear();
  numMissing = 0;
  numBad = 0;
  ZqStatModelResult result = CheckColumns({&col1, &col2}, {Scale::Ratio, Scale::Ratio}, routine);
  if (result.NotSuccessful()) return result;
  return PackColumns(numMissing, numBad, {&col1, &col2}, {colNum1, colNum2}, rows, routine, [&](std::uint64_t row) {
    pairs.emplace_back(col1.GetDouble(row, colNum1), col2.GetDouble(row, colNum2));
  });
}

template <class Rows>
ZqStatModelResult TwoPackedCols(ZqDataTableCol& packed1, ZqDataTableCol& packed2, std::uint64_t& numMissing,
                                std::uint64_t& numBad, const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                std::uint64_t colNum1, std::uint64_t colNum2, const Rows& rows) {
  ZqPairSample pairs;
  ZqStatModelResult result = PairVec(pairs, numMissing, numBad, col1, col2, colNum1, colNum2, rows, kTwoPackedCols);
  if (result.NotSuccessful()) return result;
  std::vector<double> first, second;
  first.reserve(pairs.size());
  second.reserve(pairs.size());
  for (const auto& [x, y] : pairs) {
    first.push_back(x);
    second.push_back(y);
  }
  packed1 = ZqDataTableCol(col1.GetColumnName(), first);
  packed2 = ZqDataTableCol(col2.GetColumnName(), second);
  return result;
}

template <class Rows>
ZqStatModelResult Classified(ZqClassifiedPairSample& data, std::uint64_t& numMissing, std::uint64_t& numBad,
                             const ZqDataTableCol& col1, const ZqDataTableCol& col2, const ZqDataTableCol& col3,
                             std::uint64_t colNum1, std::uint64_t colNum2, std::uint64_t colNum3, const Rows& rows) {
  data.clear();
  numMissing = 0;
  numBad = 0;
  ZqStatModelResult result =
      CheckColumns({&col1, &col2, &col3}, {Scale::Ratio, Scale::Ratio, Scale::Nominal}, kClassified);
  if (result.NotSuccessful()) return result;
  return PackColumns(numMissing, numBad, {&col1, &col2, &col3}, {colNum1, colNum2, colNum3}, rows, kClassified,
                     [&](std::uint64_t row) {
                       data.push_back({{col1.GetDouble(row, colNum1), col2.GetDouble(row, colNum2)},
                                       col3.GetUnsigned(row, colNum3)});
                     });
}

// ---- whole rows ---------------------------------------------------------------

constexpr const char* kPairedVecs = "ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType";

// The cells of a whole row: all columns of a rectangular column, or the full
// symmetric row of a lower-triangular one.
std::uint64_t RowLength(const ZqDataTableCol& col) {
  return col.ColIsLowerTriangular() ? col.GetTotalNumRowsInCol() : col.GetNumColumnsInCol();
}

template <class Rows>
ZqStatModelResult PairedVecs(ZqPairedRowVecs& pairs, std::uint64_t& numMissing, std::uint64_t& numBad,
                             const ZqDataTableCol& col1, const ZqDataTableCol& col2, const Rows& rows) {
  pairs.clear();
  numMissing = 0;
  numBad = 0;
  ZqStatModelResult result = CheckColumns({&col1, &col2}, {Scale::Ratio, Scale::Ratio}, kPairedVecs);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol* cols[] = {&col1, &col2};
  rows.ForEach([&](std::uint64_t row) {
    RowCells cells;
    std::vector<double> values[2];
    for (std::size_t which = 0; which < 2; ++which) {
      const ZqDataTableCol& col = *cols[which];
      const std::uint64_t length = RowLength(col);
      for (std::uint64_t c = 0; c < length; ++c) {
        const Cell cell = CheckCell(col, row, c);
        if (cell == Cell::BadIndex) {
          result = OutOfRange(kPairedVecs, which, row, c);
          return false;
        }
        cells.Add(cell);
        values[which].push_back(col.GetDouble(row, c));
      }
    }
    if (cells.missing) {
      ++numMissing;
    } else if (cells.bad) {
      ++numBad;
    } else {
      pairs.emplace_back(std::move(values[0]), std::move(values[1]));
    }
    return true;
  });
  return result;
}

}  // namespace

// ---- public forms -------------------------------------------------------------

ZqStatModelResult ZqGetVecOfDataFromColumnOfRatioType(std::vector<double>& data, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTableCol& col,
                                                      std::uint64_t colNum) {
  return RatioVec(data, numMissing, numBad, col, colNum, AllRows{col.GetTotalNumRowsInCol()}, kRatioVec);
}

ZqStatModelResult ZqGetVecOfDataFromColumnOfRatioType(std::vector<double>& data, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTable& table,
                                                      const std::string& name, std::uint64_t colNum) {
  data.clear();
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, kRatioVec);
  if (result.NotSuccessful()) return result;
  return RatioVec(data, numMissing, numBad, col, colNum, TableRows{table}, kRatioVec);
}

ZqStatModelResult ZqGetVecOfDataFromColumnOfIntervalType(std::vector<std::int32_t>& data,
                                                         std::uint64_t& numMissing, std::uint64_t& numBad,
                                                         const ZqDataTableCol& col, std::uint64_t colNum) {
  return IntervalVec(data, numMissing, numBad, col, colNum, AllRows{col.GetTotalNumRowsInCol()});
}

ZqStatModelResult ZqGetVecOfDataFromColumnOfIntervalType(std::vector<std::int32_t>& data,
                                                         std::uint64_t& numMissing, std::uint64_t& numBad,
                                                         const ZqDataTable& table, const std::string& name,
                                                         std::uint64_t colNum) {
  data.clear();
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, kIntervalVec);
  if (result.NotSuccessful()) return result;
  return IntervalVec(data, numMissing, numBad, col, colNum, TableRows{table});
}

ZqStatModelResult ZqGetPackedColFromColumnOfRatioType(ZqDataTableCol& packed, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTableCol& col,
                                                      std::uint64_t colNum) {
  return PackedCol(packed, numMissing, numBad, col, colNum, AllRows{col.GetTotalNumRowsInCol()});
}

ZqStatModelResult ZqGetPackedColFromColumnOfRatioType(ZqDataTableCol& packed, std::uint64_t& numMissing,
                                                      std::uint64_t& numBad, const ZqDataTable& table,
                                                      const std::string& name, std::uint64_t colNum) {
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, kPackedCol);
  if (result.NotSuccessful()) return result;
  return PackedCol(packed, numMissing, numBad, col, colNum, TableRows{table});
}

ZqStatModelResult ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(ZqPairSample& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTableCol& col1,
                                                                const ZqDataTableCol& col2, std::uint64_t colNum1,
                                                                std::uint64_t colNum2) {
  return PairVec(pairs, numMissing, numBad, col1, col2, colNum1, colNum2, AllRows{col1.GetTotalNumRowsInCol()},
                 kPairVec);
}

ZqStatModelResult ZqGetVecOfPairedDataFromTwoColumnsOfRatioType(ZqPairSample& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTable& table,
                                                                const std::string& name1, const std::string& name2,
                                                                std::uint64_t colNum1, std::uint64_t colNum2) {
  pairs.clear();
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col1 = FindColumn(result, table, name1, kPairVec);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol& col2 = FindColumn(result, table, name2, kPairVec);
  if (result.NotSuccessful()) return result;
  return PairVec(pairs, numMissing, numBad, col1, col2, colNum1, colNum2, TableRows{table}, kPairVec);
}

ZqStatModelResult ZqGetTwoPackedColsFromTwoColumnsOfRatioType(ZqDataTableCol& packed1, ZqDataTableCol& packed2,
                                                              std::uint64_t& numMissing, std::uint64_t& numBad,
                                                              const ZqDataTableCol& col1, const ZqDataTableCol& col2,
                                                              std::uint64_t colNum1, std::uint64_t colNum2) {
  return TwoPackedCols(packed1, packed2, numMissing, numBad, col1, col2, colNum1, colNum2,
                       AllRows{col1.GetTotalNumRowsInCol()});
}

ZqStatModelResult ZqGetTwoPackedColsFromTwoColumnsOfRatioType(ZqDataTableCol& packed1, ZqDataTableCol& packed2,
                                                              std::uint64_t& numMissing, std::uint64_t& numBad,
                                                              const ZqDataTable& table, const std::string& name1,
                                                              const std::string& name2, std::uint64_t colNum1,
                                                              std::uint64_t colNum2) {
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col1 = FindColumn(result, table, name1, kTwoPackedCols);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol& col2 = FindColumn(result, table, name2, kTwoPackedCols);
  if (result.NotSuccessful()) return result;
  return TwoPackedCols(packed1, packed2, numMissing, numBad, col1, col2, colNum1, colNum2, TableRows{table});
}

ZqStatModelResult ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(ZqPairedRowVecs& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTableCol& col1,
                                                                const ZqDataTableCol& col2) {
  return PairedVecs(pairs, numMissing, numBad, col1, col2, AllRows{col1.GetTotalNumRowsInCol()});
}

ZqStatModelResult ZqGetVecOfPairedVecsFromTwoColumnsOfRatioType(ZqPairedRowVecs& pairs, std::uint64_t& numMissing,
                                                                std::uint64_t& numBad, const ZqDataTable& table,
                                                                const std::string& name1, const std::string& name2) {
  pairs.clear();
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col1 = FindColumn(result, table, name1, kPairedVecs);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol& col2 = FindColumn(result, table, name2, kPairedVecs);
  if (result.NotSuccessful()) return result;
  return PairedVecs(pairs, numMissing, numBad, col1, col2, TableRows{table});
}

ZqStatModelResult ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(
    ZqClassifiedPairSample& data, std::uint64_t& numMissing, std::uint64_t& numBad, const ZqDataTableCol& col1,
    const ZqDataTableCol& col2, const ZqDataTableCol& col3, std::uint64_t colNum1, std::uint64_t colNum2,
    std::uint64_t colNum3) {
  return Classified(data, numMissing, numBad, col1, col2, col3, colNum1, colNum2, colNum3,
                    AllRows{col1.GetTotalNumRowsInCol()});
}

ZqStatModelResult ZqGetVecOfDataFromTwoColsOfRatioAndOneOfNominalType(
    ZqClassifiedPairSample& data, std::uint64_t& numMissing, std::uint64_t& numBad, const ZqDataTable& table,
    const std::string& name1, const std::string& name2, const std::string& name3, std::uint64_t colNum1,
    std::uint64_t colNum2, std::uint64_t colNum3) {
  data.clear();
  numMissing = numBad = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col1 = FindColumn(result, table, name1, kClassified);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol& col2 = FindColumn(result, table, name2, kClassified);
  if (result.NotSuccessful()) return result;
  const ZqDataTableCol& col3 = FindColumn(result, table, name3, kClassified);
  if (result.NotSuccessful()) return result;
  return Classified(data, numMissing, numBad, col1, col2, col3, colNum1, colNum2, colNum3, TableRows{table});
}

}  // namespace Varimo
