#include "feature_table.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/data_table_files.h"

namespace VarimoKrige {

namespace {

bool IsNumeric(const Varimo::ZqDataTableCol& column) {
  const std::uint32_t type = column.GetStatVariableType();
  return type == Varimo::ZqStatVariableType::Ratio || type == Varimo::ZqStatVariableType::Interval;
}

// The loader's own first column, the source line of each row, is not data.
bool IsLineNumberColumn(const CsvTable& csv, const Varimo::ZqDataTableCol& column) {
  return column.GetFullColumnName() == csv.path + "::LineNumbers";
}

}  // namespace

std::optional<CsvTable> LoadCsv(const std::string& path, std::string& error) {
  Tessik::zqifstream in(path);
  if (!in.is_open()) {
    error = "cannot read " + path;
    return std::nullopt;
  }
  CsvTable csv{Varimo::ZqDataTable(), path};
  const Varimo::ZqStatModelResult result = Varimo::ZqLoadDataTableFromCSVFileWithHeader(csv.table, in, path);
  if (result.NotSuccessful()) {
    // The failure's one-line text, without its trailing newline, then the
    // last comment, which names the offending line or field.
    std::string text = Varimo::ZqStatModelFailureType::FailureText[result.GetFailureType()];
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    std::string last;
    for (const std::string& comment : result.GetComments()) last = comment;
    // A comment that describes the reader's whole state is no one-line
    // cause: its first line is.
    last = last.substr(0, last.find('\n'));
    if (text.find('\n') != std::string::npos) text = text.substr(0, text.find('\n'));
    error = "cannot load " + path + ": " + text + (last.empty() ? std::string() : " (" + last + ")");
    return std::nullopt;
  }
  return csv;
}

std::vector<std::string> NumericColumnNames(const CsvTable& csv, const std::vector<std::string>& except) {
  std::vector<std::string> names;
  for (const Varimo::ZqDataTableCol& column : csv.table.GetColumns()) {
    const bool excepted = std::find(except.begin(), except.end(), column.GetColumnName()) != except.end();
    if (IsLineNumberColumn(csv, column) || !IsNumeric(column) || excepted) continue;
    names.push_back(column.GetColumnName());
  }
  return names;
}

std::optional<std::vector<double>> NumericColumn(const CsvTable& csv, const std::string& name, std::string& error) {
  // A handle of our own: the column iterator and its handles end with the
  // loop.
  std::optional<Varimo::ZqDataTableCol> found;
  for (const Varimo::ZqDataTableCol& column : csv.table.GetColumns()) {
    if (!IsLineNumberColumn(csv, column) && column.GetColumnName() == name) {
      found = column;
      break;
    }
  }
  if (!found) {
    error = csv.path + " has no column " + name;
    return std::nullopt;
  }
  if (!IsNumeric(*found)) {
    error = "column " + name + " of " + csv.path + " is not numeric";
    return std::nullopt;
  }
  const std::uint64_t rows = csv.table.GetNumRows();
  std::vector<double> values(rows);
  for (std::uint64_t row = 0; row < rows; ++row) {
    const double value = found->GetDouble(row, 0);
    const bool usable = !found->RowColHasMissingData(row, 0) && !found->RowColHasBadData(row, 0) &&
                        !Varimo::ZqIsMissingOrBad(value);
    values[row] = usable ? value : std::numeric_limits<double>::quiet_NaN();
  }
  return values;
}

std::optional<std::vector<std::vector<double>>> FeatureRows(const CsvTable& csv,
                                                            const std::vector<std::string>& names,
                                                            std::string& error) {
  std::vector<std::vector<double>> rows(csv.table.GetNumRows(), std::vector<double>(names.size()));
  for (std::size_t k = 0; k < names.size(); ++k) {
    const auto column = NumericColumn(csv, names[k], error);
    if (!column) return std::nullopt;
    for (std::size_t row = 0; row < rows.size(); ++row) rows[row][k] = (*column)[row];
  }
  return rows;
}

}  // namespace VarimoKrige
