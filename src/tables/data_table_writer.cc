#include <ostream>

#include "varimo/tables/data_table_files.h"

namespace Varimo {

namespace {

// Texts that the reader would split, or take for a quoted token, go in
// double quotes; everything else is written as it stands.
void WriteText(std::ostream& stream, const std::string& text) {
  const bool needsQuotes = text.find_first_of(",\"\n\r") != std::string::npos || (!text.empty() && text[0] == '\'');
  if (!needsQuotes) {
    stream << text;
    return;
  }
  stream << '"';
  for (char c : text) {
    if (c == '"') stream << '"';
    stream << c;
  }
  stream << '"';
}

}  // namespace

void ZqWriteDataTableToCSVFileWithHeader(std::ostream& stream, const ZqDataTable& table, const std::string& titleLine) {
  if (!titleLine.empty()) stream << titleLine << '\n';
  std::vector<ZqDataTableCol> columns;
  for (const ZqDataTableCol& col : table.GetColumns()) columns.push_back(col);
  for (std::size_t c = 0; c < columns.size(); ++c) {
    if (c > 0) stream << ',';
    WriteText(stream, columns[c].GetColumnName());
  }
  stream << '\n';
  for (const ZqDataTableRow& row : table.GetRows()) {
    const std::uint64_t rowNumber = row.GetRowNumber();
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (c > 0) stream << ',';
      const ZqDataTableCol& col = columns[c];
      if (col.ColIsLowerTriangular()) {
        for (std::uint64_t element = 0; element <= rowNumber; ++element) {
          if (element > 0) stream << ',';
          stream << col.GetDouble(rowNumber, element);
        }
      } else {
        WriteText(stream, col.GetString(rowNumber, 0));
      }
    }
    stream << '\n';
  }
}

}  // namespace Varimo
