// Columns read as rows and matrices: one row of a column, a whole column as
// a flat data matrix, frequencies of a nominal column, and the eigenvalues
// of a similarity matrix.
#include <Eigen/Eigenvalues>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include "column_walk.h"
#include "varimo/tables/column_statistics.h"

namespace Varimo {

namespace {

using namespace ColumnWalk;
namespace Failure = ZqStatModelFailureType;

// The shortest text that reads back as `value`, so that a similarity of
// 1.0000001 is reported as that and not rounded to "1".
std::string ExactText(double value) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return error == std::errc() ? std::string(buffer, end) : Corvane::ZqMakeString(value);
}

// Reads columns 0 to length - 1 of one row; a bad index, a missing or a bad
// cell fails the read.
ZqStatModelResult ReadRow(std::vector<double>& values, std::uint64_t rowNum, const ZqDataTableCol& col,
                          std::uint64_t length, const char* routine) {
  values.clear();
  values.reserve(length);
  for (std::uint64_t c = 0; c < length; ++c) {
    switch (CheckCell(col, rowNum, c)) {
      case Cell::BadIndex:
        return ZqMakeFailedResult(Failure::ArgumentOutOfRange, routine,
                                  RowColText(rowNum, c) + " out of range for Column!");
      case Cell::Missing:
      case Cell::Bad:
        return ZqMakeFailedResult(Failure::MissingOrBadPredictorValue, routine,
                                  RowColText(rowNum, c) + " has bad or missing data!");
      case Cell::Good:
        values.push_back(col.GetDouble(rowNum, c));
        break;
    }
  }
  return ZqStatModelResult(true);
}

}  // namespace

ZqStatModelResult ZqGetOneRowOfColumn(std::vector<double>& row, std::uint64_t rowNum, const ZqDataTableCol& col) {
  return ReadRow(row, rowNum, col, col.GetNumColumnsInCol(), "ZqGetOneRowOfColumn");
}

ZqStatModelResult ZqGetOneRowOfLowerTriangularColumn(std::vector<double>& row, std::uint64_t rowNum,
                                                     const ZqDataTable& table, const ZqDataTableCol& col) {
  return ReadRow(row, rowNum, col, table.GetImpl().GetDataTableColSet().GetNumRowsInColumns(),
                 "ZqGetOneRowOfLowerTriangularColumn");
}

ZqStatModelResult ZqGetDataVectorFromColumnByName(std::vector<double>& data, std::uint64_t& numCols,
                                                  const ZqDataTable& table, const std::string& name) {
  constexpr const char* kRoutine = "ZqGetDataVectorFromColumnByName";
  data.clear();
  numCols = 0;
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, kRoutine);
  if (result.NotSuccessful()) return result;
  if (col.GetStatVariableType() != ZqStatVariableType::Ratio) {
    return ZqMakeFailedResult(Failure::ColumnHasWrongDataType, kRoutine, "Column name: " + name);
  }
  const bool similarity = col.ColIsLowerTriangular();
  numCols = similarity ? col.GetTotalNumRowsInCol() : col.GetNumColumnsInCol();
  TableRows{table}.ForEach([&](std::uint64_t row) {
    for (std::uint64_t c = 0; c < numCols; ++c) {
      if (!similarity) {
        if (CheckCell(col, row, c) != Cell::Good) {
          result = ZqMakeFailedResult(Failure::MissingOrBadPredictorValue, kRoutine,
                                      Corvane::ZqMakeString("row num = ", row));
          return false;
        }
        data.push_back(col.GetDouble(row, c));
        continue;
      }
      // Reserved values are far above 1, so a missing similarity is refused
      // as out of bounds along with every other impossible one.
      const double value = col.GetDouble(row, c);
      if (value < 0.0 || value > 1.0 || value != value) {
        result = ZqMakeFailedResult(value < 0.0 ? Failure::LowerBoundViolated : Failure::UpperBoundViolated,
                                    kRoutine,
                                    Corvane::ZqMakeString("Column name: ", name, "; Bad Similarity: ", "row col num = ",
                                                          row, " ", c, "; element = ", ExactText(value)));
        return false;
      }
      data.push_back(value);
    }
    return true;
  });
  return result;
}

ZqStatModelResult ZqGetFreqOfOutcomesFromColumnOfNominalType(
    std::vector<std::pair<std::string, std::uint64_t>>& outcomes, const ZqDataTable& table,
    const std::string& name, std::uint64_t colNum) {
  constexpr const char* kRoutine = "ZqGetFreqOfOutcomesFromColumnOfNominalType";
  outcomes.clear();
  ZqStatModelResult result;
  const ZqDataTableCol& col = FindColumn(result, table, name, kRoutine);
  if (result.NotSuccessful()) return result;
  if (col.GetStatVariableType() != ZqStatVariableType::Nominal) {
    return ZqMakeFailedResult(Failure::ColumnHasWrongDataType, kRoutine,
                              "Column: " + name + ": " + ScaleText(col));
  }
  for (const std::string& value : col.GetUniqueDiscreteValues()) outcomes.emplace_back(value, 0);
  TableRows{table}.ForEach([&](std::uint64_t row) {
    // Missing and bad cells and bad indices read as reserved indices past
    // the slots, and are not counted.
    const std::uint32_t slot = col.GetUnsigned(row, colNum);
    if (slot < outcomes.size()) {
      outcomes[slot].first = col.GetString(row, colNum);
      ++outcomes[slot].second;
    }
    return true;
  });
  return result;
}

ZqStatModelResult ZqGetSortedEigenValsOfLowerTriangularColumn(std::vector<double>& eigenValues,
                                                              const ZqDataTableCol& col) {
  eigenValues.clear();
  if (!col.ColIsLowerTriangular()) {
    return ZqMakeFailedResult(Failure::WrongInputMatrixSize, "ZqGetSortedEigenValsOfLowerTriangularColumn");
  }
  const Eigen::Index n = static_cast<Eigen::Index>(col.GetTotalNumRowsInCol());
  Eigen::MatrixXd matrix(n, n);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = 0; j <= i; ++j) {
      matrix(i, j) = matrix(j, i) = col.GetDouble(static_cast<std::uint64_t>(i), static_cast<std::uint64_t>(j));
    }
  }
  const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(matrix, Eigen::EigenvaluesOnly);
  eigenValues.assign(solver.eigenvalues().data(), solver.eigenvalues().data() + n);
  std::sort(eigenValues.begin(), eigenValues.end());
  return ZqStatModelResult(true);
}

}  // namespace Varimo
