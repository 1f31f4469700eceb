#include "varimo/tables/derived_columns.h"

#include <algorithm>
#include <ostream>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/foundations/value_conversion.h"
#include "varimo/tables/data_table_column_kinds.h"

namespace Varimo {
namespace {

namespace DT = ZqStatVarDataType;

// Every (row, col) address of a column of this shape, row by row.
template <class Visit>
void ForEachElement(const ZqDataTableColBase& col, Visit visit) {
  const std::uint64_t rows = col.GetTotalNumRowsInCol();
  const std::uint64_t cols = col.GetNumColumnsInCol();
  for (std::uint64_t r = 0; r < rows; ++r) {
    const std::uint64_t last = col.ColIsLowerTriangular() ? std::min(cols, r + 1) : cols;
    for (std::uint64_t c = 0; c < last; ++c) visit(r, c);
  }
}

// The distinct values that a derived column reads, ascending: numbers by
// value for a double result, names for a nominal one.
std::vector<std::string> UniqueValues(const ZqDataTableColBase& col) {
  std::vector<std::string> texts;
  if (col.GetStatVarDataType() == DT::Double) {
    std::vector<double> values;
    ForEachElement(col, [&](std::uint64_t r, std::uint64_t c) { values.push_back(col.GetDouble(r, c)); });
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    for (const double v : values) texts.push_back(ZqStringFromDouble(v));
    return texts;
  }
  ForEachElement(col, [&](std::uint64_t r, std::uint64_t c) { texts.push_back(col.GetString(r, c)); });
  std::sort(texts.begin(), texts.end());
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  return texts;
}

std::uint32_t IndexOf(const std::vector<std::string>& values, const std::string& value) {
  const auto it = std::find(values.begin(), values.end(), value);
  return it == values.end() ? 0xFFFFFFFFu : static_cast<std::uint32_t>(it - values.begin());
}

// A cell read in the source's own data type, handed to the transform.
template <class R, class Transform>
R ReadThrough(const Transform& t, const ZqDataTableCol& src, std::uint64_t row, std::uint64_t col, R bad,
              R (Transform::*unsignedArg)(std::uint32_t) const, R (Transform::*intArg)(std::int32_t) const,
              R (Transform::*doubleArg)(double) const, R (Transform::*stringArg)(const std::string&) const) {
  switch (src.GetStatVarDataType()) {
    case DT::Unsigned: return (t.*unsignedArg)(src.GetUnsigned(row, col));
    case DT::Int: return (t.*intArg)(src.GetInt(row, col));
    case DT::Double: return (t.*doubleArg)(src.GetDouble(row, col));
    case DT::String: return (t.*stringArg)(src.GetString(row, col));
    default: return bad;
  }
}

// Reads the two sources in their own types and hands the pair on: 5 times
// the first type plus the second picks the overload.
template <class R, class Get>
R ReadPair(const ZqDataTableCol& a, const ZqDataTableCol& b, std::uint64_t row, std::uint64_t col, R bad, Get get) {
  auto second = [&](auto x) -> R {
    switch (b.GetStatVarDataType()) {
      case DT::Unsigned: return get(x, b.GetUnsigned(row, col));
      case DT::Int: return get(x, b.GetInt(row, col));
      case DT::Double: return get(x, b.GetDouble(row, col));
      case DT::String: return get(x, b.GetString(row, col));
      default: return bad;
    }
  };
  switch (a.GetStatVarDataType()) {
    case DT::Unsigned: return second(a.GetUnsigned(row, col));
    case DT::Int: return second(a.GetInt(row, col));
    case DT::Double: return second(a.GetDouble(row, col));
    case DT::String: return second(a.GetString(row, col));
    default: return bad;
  }
}

bool SameShape(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return a.GetNumColumnsInCol() == b.GetNumColumnsInCol() && a.GetNumElementsInCol() == b.GetNumElementsInCol() &&
         a.ColIsLowerTriangular() == b.ColIsLowerTriangular() && a.ColIsSparse() == b.ColIsSparse();
}

const std::vector<std::string> kFalseTrue{"False", "True"};

}  // namespace

// ------------------------------------------------------------ one column

ZqSingleArgColTransform::ZqSingleArgColTransform(const ZqSingleArgDataTransformBase& transform,
                                                 const ZqDataTableCol& col)
    : ZqDataTableColBase(transform.GetTransformName() + "(" + col.GetColumnName() + ")",
                         transform.GetTransformName() + "(" + col.GetFullColumnName() + ")", col.GetNumColumnsInCol(),
                         col.ColIsLowerTriangular(), col.ColIsSparse()),
      transform_(transform.CreateCopy()),
      col_(col) {
  SetColReadOnly();
}

std::uint32_t ZqSingleArgColTransform::IndexOfStringInListOfPossibleValues(const std::string& value) const {
  return IndexOf(GetUniqueDiscreteValues(), value);
}
std::uint64_t ZqSingleArgColTransform::GetNumUniqueDiscreteValues() const { return UniqueValues(*this).size(); }
std::vector<std::string> ZqSingleArgColTransform::GetUniqueDiscreteValues() const { return UniqueValues(*this); }
void ZqSingleArgColTransform::PrintUniqueDiscreteValues(unsigned long, std::ostream& out) const {
  out << "Not implemented yet" << '\n';
}

bool ZqSingleArgColTransform::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return false;
  return GetStatVarDataType() == DT::Double ? ZqIsMissing(GetDouble(row, col)) : ZqIsMissing(GetUnsigned(row, col));
}

bool ZqSingleArgColTransform::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return false;
  return GetStatVarDataType() == DT::Double ? ZqIsBad(GetDouble(row, col)) : ZqIsBad(GetUnsigned(row, col));
}

std::uint32_t ZqSingleArgColTransform::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  using T = ZqSingleArgDataTransformBase;
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexUnsigned;
  return ReadThrough<std::uint32_t, T>(*transform_, col_, row, col, VarimoBadData::BadUnsigned, &T::GetUnsigned,
                                       &T::GetUnsigned, &T::GetUnsigned, &T::GetUnsigned);
}

std::int32_t ZqSingleArgColTransform::GetInt(std::uint64_t row, std::uint64_t col) const {
  using T = ZqSingleArgDataTransformBase;
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexInt;
  return ReadThrough<std::int32_t, T>(*transform_, col_, row, col, VarimoBadData::BadInt, &T::GetInt, &T::GetInt,
                                      &T::GetInt, &T::GetInt);
}

double ZqSingleArgColTransform::GetDouble(std::uint64_t row, std::uint64_t col) const {
  using T = ZqSingleArgDataTransformBase;
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexDouble;
  return ReadThrough<double, T>(*transform_, col_, row, col, VarimoBadData::BadDouble, &T::GetDouble, &T::GetDouble,
                                &T::GetDouble, &T::GetDouble);
}

std::string ZqSingleArgColTransform::GetString(std::uint64_t row, std::uint64_t col) const {
  using T = ZqSingleArgDataTransformBase;
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexString;
  return ReadThrough<std::string, T>(*transform_, col_, row, col, VarimoBadData::BadString, &T::GetString,
                                     &T::GetString, &T::GetString, &T::GetString);
}

// ------------------------------------------------------------ two columns

ZqTransformTwoColsIntoOne::ZqTransformTwoColsIntoOne(const ZqTwoArgsDataTransformBase& transform,
                                                     const ZqDataTableCol& first, const ZqDataTableCol& second)
    : ZqDataTableColBase(
          transform.GetTransformName() + "(" + first.GetColumnName() + "," + second.GetColumnName() + ")",
          transform.GetTransformName() + "(" + first.GetFullColumnName() + "," + second.GetFullColumnName() + ")",
          first.GetNumColumnsInCol(), first.ColIsLowerTriangular(), first.ColIsSparse()),
      transform_(transform.CreateCopy()),
      first_(first),
      second_(second) {
  SetColReadOnly();
}

std::uint32_t ZqTransformTwoColsIntoOne::IndexOfStringInListOfPossibleValues(const std::string& value) const {
  return IndexOf(GetUniqueDiscreteValues(), value);
}
std::uint64_t ZqTransformTwoColsIntoOne::GetNumUniqueDiscreteValues() const { return UniqueValues(*this).size(); }
std::vector<std::string> ZqTransformTwoColsIntoOne::GetUniqueDiscreteValues() const { return UniqueValues(*this); }
void ZqTransformTwoColsIntoOne::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(UniqueValues(*this), maxNum, out);
}

bool ZqTransformTwoColsIntoOne::RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const {
  return first_.RowColIndexIsBad(row, col) || second_.RowColIndexIsBad(row, col);
}
bool ZqTransformTwoColsIntoOne::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  return first_.RowColHasMissingData(row, col) || second_.RowColHasMissingData(row, col);
}
bool ZqTransformTwoColsIntoOne::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  if (first_.RowColHasBadData(row, col) || second_.RowColHasBadData(row, col)) return true;
  // A rule can make a bad value of good ones too (a ratio over zero).
  if (RowColIndexIsBad(row, col) || RowColHasMissingData(row, col)) return false;
  return GetStatVarDataType() == DT::Double ? ZqIsBad(GetDouble(row, col)) : ZqIsBad(GetUnsigned(row, col));
}

std::uint32_t ZqTransformTwoColsIntoOne::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexUnsigned;
  return ReadPair<std::uint32_t>(first_, second_, row, col, VarimoBadData::BadUnsigned,
                                 [&](auto a, auto b) { return transform_->GetUnsigned(a, b); });
}

std::int32_t ZqTransformTwoColsIntoOne::GetInt(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexInt;
  return ReadPair<std::int32_t>(first_, second_, row, col, VarimoBadData::BadInt,
                                [&](auto a, auto b) { return transform_->GetInt(a, b); });
}

double ZqTransformTwoColsIntoOne::GetDouble(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexDouble;
  return ReadPair<double>(first_, second_, row, col, VarimoBadData::BadDouble,
                          [&](auto a, auto b) { return transform_->GetDouble(a, b); });
}

std::string ZqTransformTwoColsIntoOne::GetString(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexString;
  return ReadPair<std::string>(first_, second_, row, col, std::string(VarimoBadData::BadString),
                               [&](auto a, auto b) { return transform_->GetString(a, b); });
}

// ------------------------------------------------------------ a vector of columns

namespace {

std::string JoinedNames(const std::vector<ZqDataTableCol>& cols, bool full) {
  std::string names = "(";
  for (std::size_t i = 0; i < cols.size(); ++i) {
    names += (i == 0 ? "" : ",") + (full ? cols[i].GetFullColumnName() : cols[i].GetColumnName());
  }
  return names + ")";
}

}  // namespace

ZqTransformVecOfColsIntoOne::ZqTransformVecOfColsIntoOne(const ZqVecOfArgsDataTransformBase& transform,
                                                         const std::vector<ZqDataTableCol>& cols)
    : ZqDataTableColBase(transform.GetTransformName() + JoinedNames(cols, false),
                         transform.GetTransformName() + JoinedNames(cols, true), cols.front().GetNumColumnsInCol(),
                         cols.front().ColIsLowerTriangular(), cols.front().ColIsSparse()),
      transform_(transform.CreateCopy()),
      cols_(cols) {
  SetColReadOnly();
}

std::uint32_t ZqTransformVecOfColsIntoOne::IndexOfStringInListOfPossibleValues(const std::string& value) const {
  return IndexOf(GetUniqueDiscreteValues(), value);
}
std::uint64_t ZqTransformVecOfColsIntoOne::GetNumUniqueDiscreteValues() const { return UniqueValues(*this).size(); }
std::vector<std::string> ZqTransformVecOfColsIntoOne::GetUniqueDiscreteValues() const { return UniqueValues(*this); }
void ZqTransformVecOfColsIntoOne::PrintUniqueDiscreteValues(unsigned long maxNum, std::ostream& out) const {
  PrintValueList(UniqueValues(*this), maxNum, out);
}

bool ZqTransformVecOfColsIntoOne::RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const {
  return std::any_of(cols_.begin(), cols_.end(), [&](const ZqDataTableCol& c) { return c.RowColIndexIsBad(row, col); });
}
bool ZqTransformVecOfColsIntoOne::RowColHasMissingData(std::uint64_t row, std::uint64_t col) const {
  return !RowColIndexIsBad(row, col) && ZqIsMissing(GetDouble(row, col));
}
bool ZqTransformVecOfColsIntoOne::RowColHasBadData(std::uint64_t row, std::uint64_t col) const {
  return !RowColIndexIsBad(row, col) && ZqIsBad(GetDouble(row, col));
}

std::vector<double> ZqTransformVecOfColsIntoOne::Arguments(std::uint64_t row, std::uint64_t col) const {
  std::vector<double> values;
  values.reserve(cols_.size());
  for (const ZqDataTableCol& c : cols_) values.push_back(c.GetDouble(row, col));
  return values;
}

std::uint32_t ZqTransformVecOfColsIntoOne::GetUnsigned(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexUnsigned;
  return transform_->GetUnsigned(Arguments(row, col));
}
std::int32_t ZqTransformVecOfColsIntoOne::GetInt(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexInt;
  return transform_->GetInt(Arguments(row, col));
}
double ZqTransformVecOfColsIntoOne::GetDouble(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexDouble;
  return transform_->GetDouble(Arguments(row, col));
}
std::string ZqTransformVecOfColsIntoOne::GetString(std::uint64_t row, std::uint64_t col) const {
  if (RowColIndexIsBad(row, col)) return VarimoBadData::BadIndexString;
  return transform_->GetString(Arguments(row, col));
}

// ------------------------------------------------------------ handles and operators

ZqDataTableCol ZqMakeSingleColTransform(const ZqSingleArgDataTransformBase& transform, const ZqDataTableCol& col) {
  return ZqDataTableCol(std::make_unique<ZqSingleArgColTransform>(transform, col));
}

ZqDataTableCol ZqMakeTwoColTransform(const ZqTwoArgsDataTransformBase& transform, const ZqDataTableCol& first,
                                     const ZqDataTableCol& second) {
  if (!SameShape(first, second)) {
    const std::string name = transform.GetTransformName();
    return ZqDataTableCol(name + "(" + first.GetColumnName() + "," + second.GetColumnName() + ")",
                          name + "(" + first.GetFullColumnName() + "," + second.GetFullColumnName() + ")");
  }
  return ZqDataTableCol(std::make_unique<ZqTransformTwoColsIntoOne>(transform, first, second));
}

ZqDataTableCol ZqMakeVecOfColsTransform(const ZqVecOfArgsDataTransformBase& transform,
                                        const std::vector<ZqDataTableCol>& cols) {
  const std::string name = transform.GetTransformName();
  if (cols.empty()) return ZqDataTableCol(name + "()", name + "()");
  for (const ZqDataTableCol& c : cols) {
    if (!SameShape(cols.front(), c)) return ZqDataTableCol(name + JoinedNames(cols, false), name + JoinedNames(cols, true));
  }
  return ZqDataTableCol(std::make_unique<ZqTransformVecOfColsIntoOne>(transform, cols));
}

ZqDataTableCol operator+(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqSumOfTwoDoubles(), a, b);
}
ZqDataTableCol operator-(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqDifferenceOfTwoDoubles(), a, b);
}
ZqDataTableCol operator*(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqProductOfTwoDoubles(), a, b);
}
ZqDataTableCol operator/(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqRatioOfTwoDoubles(), a, b);
}
ZqDataTableCol operator+(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqAddAScalarDataTransform(c), col);
}
ZqDataTableCol operator+(double c, const ZqDataTableCol& col) { return col + c; }
ZqDataTableCol operator-(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqSubtractAScalarDataTransform(c), col);
}
ZqDataTableCol operator-(double c, const ZqDataTableCol& col) {
  return ZqMakeSingleColTransform(ZqSubtractFromAScalarDataTransform(c), col);
}
ZqDataTableCol operator*(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqMultiplyByScalarDataTransform(c), col);
}
ZqDataTableCol operator*(double c, const ZqDataTableCol& col) { return col * c; }
ZqDataTableCol operator/(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqDivideByScalarDataTransform(c), col);
}
ZqDataTableCol operator/(double c, const ZqDataTableCol& col) {
  return ZqMakeSingleColTransform(ZqDivideIntoScalarDataTransform(c), col);
}
ZqDataTableCol ZqSqrt(const ZqDataTableCol& col) { return ZqMakeSingleColTransform(ZqSqrtDataTransform(), col); }
ZqDataTableCol ZqLog(const ZqDataTableCol& col) { return ZqMakeSingleColTransform(ZqLogDataTransform(), col); }
ZqDataTableCol ZqAbsoluteValue(const ZqDataTableCol& col) {
  return ZqMakeSingleColTransform(ZqAbsoluteValueDataTransform(), col);
}
ZqDataTableCol ZqLogistic(const ZqDataTableCol& col, double lo, double hi, double eps) {
  return ZqMakeSingleColTransform(ZqLogisticDataTransform(lo, hi, eps), col);
}
ZqDataTableCol operator>(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqArgGreaterThanScalar(c, kFalseTrue), col);
}
ZqDataTableCol operator>=(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqArgGreaterEqualToScalar(c, kFalseTrue), col);
}
ZqDataTableCol operator==(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqArgEqualToScalar(c, kFalseTrue), col);
}
ZqDataTableCol operator<=(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqArgLessEqualToScalar(c, kFalseTrue), col);
}
ZqDataTableCol operator<(const ZqDataTableCol& col, double c) {
  return ZqMakeSingleColTransform(ZqArgLessThanScalar(c, kFalseTrue), col);
}
ZqDataTableCol operator>(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqArgOneGreaterThanArgTwo(kFalseTrue), a, b);
}
ZqDataTableCol operator>=(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqArgOneGreaterEqualToArgTwo(kFalseTrue), a, b);
}
ZqDataTableCol operator==(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqArgOneEqualToArgTwo(kFalseTrue), a, b);
}
ZqDataTableCol operator<=(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqArgOneLessEqualToArgTwo(kFalseTrue), a, b);
}
ZqDataTableCol operator<(const ZqDataTableCol& a, const ZqDataTableCol& b) {
  return ZqMakeTwoColTransform(ZqArgOneLessThanArgTwo(kFalseTrue), a, b);
}
ZqDataTableCol ZqAverage(const std::vector<ZqDataTableCol>& cols) {
  return ZqMakeVecOfColsTransform(ZqAveOfVecOfDoubles(), cols);
}
ZqDataTableCol ZqVariance(const std::vector<ZqDataTableCol>& cols) {
  return ZqMakeVecOfColsTransform(ZqVarianceOfVecOfDoubles(), cols);
}
ZqDataTableCol ZqRange(const std::vector<ZqDataTableCol>& cols) {
  return ZqMakeVecOfColsTransform(ZqRangeOfVecOfDoubles(), cols);
}

}  // namespace Varimo

namespace Varimo {

ZqDataTableCol::ZqDataTableCol(const ZqSingleArgDataTransformBase& transform, const ZqDataTableCol& col)
    : ZqDataTableCol(ZqMakeSingleColTransform(transform, col)) {}
ZqDataTableCol::ZqDataTableCol(const ZqTwoArgsDataTransformBase& transform, const ZqDataTableCol& first,
                               const ZqDataTableCol& second)
    : ZqDataTableCol(ZqMakeTwoColTransform(transform, first, second)) {}
ZqDataTableCol::ZqDataTableCol(const ZqVecOfArgsDataTransformBase& transform, const std::vector<ZqDataTableCol>& cols)
    : ZqDataTableCol(ZqMakeVecOfColsTransform(transform, cols)) {}

ZqDataTableCol ZqSliceColumn(const ZqDataTableCol& col, std::uint64_t colNum) {
  const std::string name = "SliceCol_" + std::to_string(colNum) + "_From:" + col.GetColumnName();
  const std::uint32_t scale = col.GetStatVariableType();
  namespace ST = ZqStatVariableType;
  if (scale != ST::Ratio && scale != ST::Interval && scale != ST::Nominal && scale != ST::Identifier) {
    return ZqDataTableCol(name, name);
  }
  const std::uint64_t rows = col.GetTotalNumRowsInCol();
  ZqDataTableCol slice(name, name, scale, rows);
  ZqDataTableColBase& out = slice.GetImpl();
  for (std::uint64_t r = 0; r < rows; ++r) {
    if (scale == ST::Ratio) {
      out.PushBackDouble(col.GetDouble(r, colNum));
    } else if (scale == ST::Interval) {
      out.PushBackInt(col.GetInt(r, colNum));
    } else {
      out.PushBackString(col.GetString(r, colNum));
    }
  }
  // It holds its own data, and reads only.
  out.FinishAddingVars();
  out.SetColReadOnly();
  return slice;
}

}  // namespace Varimo
