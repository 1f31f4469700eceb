#include <sstream>
#include <limits>

#include "column_helpers.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table.h"
#include "varimo/tables/data_table_column.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

namespace ColumnDetail {

std::uint64_t ElementsToReserve(std::uint64_t numRows, std::uint64_t numCols, bool lowerTriangular) {
  // Beyond this a reservation is more likely a mistake than a plan.
  constexpr std::uint64_t kMaxReserve = std::uint64_t{1} << 26;
  if (lowerTriangular) {
    if (numRows >= (std::uint64_t{1} << 32)) return 0;
    const std::uint64_t count = numRows * (numRows + 1) / 2;
    return count <= kMaxReserve ? count : 0;
  }
  if (numCols != 0 && numRows > kMaxReserve / numCols) return 0;
  return numRows * numCols;
}

}  // namespace ColumnDetail

ZqDataTableColBase::ZqDataTableColBase(const std::string& name, const std::string& fullName,
                                       std::uint64_t numColumns, bool lowerTriangular, bool sparse)
    : name_(name), fullName_(fullName), numColumns_(numColumns), lowerTriangular_(lowerTriangular), sparse_(sparse) {}

bool ZqDataTableColBase::RowColIndexIsBad(std::uint64_t row, std::uint64_t col) const {
  return GetElementIndex(row, col) >= GetNumElementsInCol();
}

std::uint64_t ZqDataTableColBase::GetElementIndex(std::uint64_t row, std::uint64_t col) const {
  if (col >= numColumns_) return VarimoBadData::BadIndex;
  if (!lowerTriangular_) {
    // row * numColumns + col must not wrap round onto a valid index.
    if (row > (VarimoBadData::BadIndex - col) / numColumns_) return VarimoBadData::BadIndex;
    return row * numColumns_ + col;
  }
  const std::uint64_t i = std::max(row, col);
  const std::uint64_t j = std::min(row, col);
  // i * (i + 1) / 2 stays far below 2^64 for any i below 2^32, and no
  // column holds the 2^63 elements a larger i would address.
  if (i >= (std::uint64_t{1} << 32)) return VarimoBadData::BadIndex;
  return i * (i + 1) / 2 + j;
}

std::uint64_t ZqDataTableColBase::GetTotalNumRowsInCol() const {
  const std::uint64_t elements = GetNumElementsInCol();
  if (lowerTriangular_ && elements > 0) return numColumns_;
  return numColumns_ == 0 ? 0 : elements / numColumns_;
}

void ZqDataTableColBase::PrintUniqueDiscreteValues(unsigned long maxNum) const {
  std::ostringstream out;
  PrintUniqueDiscreteValues(maxNum, out);
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
}

void ZqDataTableColBase::PrintValueList(const std::vector<std::string>& values, unsigned long maxNum,
                                        std::ostream& out) {
  out << "Discrete Unique Values: " << '\n' << "   ";
  const std::size_t count = std::min<std::size_t>(values.size(), maxNum);
  for (std::size_t i = 0; i < count; ++i) {
    out << values[i] << ' ';
    if ((i + 1) % 10 == 0 && i + 1 < count) out << '\n' << "   ";
  }
  out << '\n';
}

void ZqDataTableColBase::PrintSummary(std::ostream& out) const {
  out << std::string(52, '$') << '\n';
  out << "Column Name: " << name_ << '\n';
  out << "Full Column Name: " << fullName_ << '\n';
  const std::uint32_t scale = GetStatVariableType();
  const std::uint32_t storage = GetStatVarDataType();
  out << "Column Native Stat Var Type: "
      << (scale < ZqStatVariableType::NumTypes ? ZqStatVariableType::TypeName[scale] : "") << '\n';
  out << "Column Native Data Type: "
      << (storage < ZqStatVarDataType::NumTypes ? ZqStatVarDataType::TypeName[storage] : "") << '\n';
  if (numColumns_ > 1) out << "Column is an array with " << numColumns_ << " columns" << '\n';
  out << "Num rows in Column: " << GetTotalNumRowsInCol() << '\n';
  if (lowerTriangular_) out << "Column is a lower Triangular symmetric array" << '\n';
  if (sparse_) out << "Column is a sparse array" << '\n';
  if (readOnly_) out << "Column data is read only" << '\n';
}

void ZqDataTableColBase::PrintSummary() const {
  std::ostringstream out;
  PrintSummary(out);
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
}

void ZqDataTableColBase::PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols,
                                                     std::ostream& out) const {
  PrintSummary(out);
  const std::uint64_t rows = std::min(numRows, GetTotalNumRowsInCol());
  const std::uint64_t cols = std::min(numCols, numColumns_);
  if (rows == 0 || cols == 0) return;
  out << "Start of Data in Col:" << '\n';
  for (std::uint64_t row = 0; row < rows; ++row) {
    out << "   ";
    for (std::uint64_t col = 0; col < cols; ++col) out << GetString(row, col) << ' ';
    out << '\n';
  }
}

void ZqDataTableColBase::PrintSummaryPlusStartOfData(std::uint64_t numRows, std::uint64_t numCols) const {
  std::ostringstream out;
  PrintSummaryPlusStartOfData(numRows, numCols, out);
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
}

void ZqDataTableColBase::PrintSummaryPlusStartOfData(const ZqDataTable& table, std::uint64_t numRows,
                                                     std::uint64_t numCols, std::ostream& out) const {
  PrintSummary(out);
  const std::uint64_t cols = std::min(numCols, numColumns_);
  if (numRows == 0 || cols == 0 || table.GetNumRows() == 0) return;
  out << "Start of Data in Col:" << '\n';
  std::uint64_t printed = 0;
  for (Corvane::ZqIter<const ZqDataTableRow> row = table.GetRows(); row && printed < numRows; ++row, ++printed) {
    out << "   ";
    for (std::uint64_t col = 0; col < cols; ++col) out << GetString(row->GetRowNumber(), col) << ' ';
    out << '\n';
  }
}

void ZqDataTableColBase::PrintSummaryPlusStartOfData(const ZqDataTable& table, std::uint64_t numRows,
                                                     std::uint64_t numCols) const {
  std::ostringstream out;
  PrintSummaryPlusStartOfData(table, numRows, numCols, out);
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, out.str());
}

}  // namespace Varimo
