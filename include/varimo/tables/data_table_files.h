// Table files: five loaders and one writer.
//
//   loader                                      header                 data split on
//   ZqLoadDataTableFromCSVFileWithHeader        first line: names      commas, empty fields kept
//   ZqLoadDataTableFromPlainFileWithHeader      first line: names      blanks, tabs, commas
//   ZqLoadDataTableFromPlainFileWithoutHeader   none ("Column_0", ...) blanks, commas
//   ZqLoadDataTableFromArffFile                 @ATTRIBUTE lines       blanks, commas
//   ZqLoadDataTableFromPGSFile                  two comments + names   commas (lower triangle)
//
// All take quotes ' and ", comments starting with %, and ? (or, in CSV, an
// empty field) for a missing value. Columns whose type the file does not
// state become ratio when every value is a number, nominal with fewer than
// 20 distinct texts, identifier otherwise. The table gains one column more
// than the file: the first, "<fileName>::LineNumbers", holds the source line
// of each row. `fileName` only names columns; the stream is read, and
// rewound, several times (it must be seekable).
//
// A failed load returns its failure report; columns added before the failure
// stay in the table.
#pragma once

#include <ostream>
#include <string>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/tessik/file_stream.h"
#include "varimo/tables/data_table.h"

namespace Varimo {

ZqStatModelResult ZqLoadDataTableFromCSVFileWithHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                       const std::string& fileName);
ZqStatModelResult ZqLoadDataTableFromPlainFileWithHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                         const std::string& fileName);
// Also prints each column's summary, first values and distinct values
// through Corvane's output sink.
ZqStatModelResult ZqLoadDataTableFromPlainFileWithoutHeader(ZqDataTable& table, Tessik::zqifstream& stream,
                                                            const std::string& fileName);
ZqStatModelResult ZqLoadDataTableFromArffFile(ZqDataTable& table, Tessik::zqifstream& stream,
                                              const std::string& fileName);
// A lower-triangular similarity matrix: columns "Index" (interval), "Title"
// (identifier) and "SimilarityMatrix" (ratio, lower triangular); data row i
// holds Index, Title and i + 1 similarities. With `printColumns` each
// column's summary and first values go to the output sink.
ZqStatModelResult ZqLoadDataTableFromPGSFile(ZqDataTable& table, Tessik::zqifstream& stream,
                                             const std::string& fileName, bool printColumns);

// Writes an optional title line, the column names, then one line per row of
// the table: a lower-triangular column writes the row's elements up to the
// diagonal, any other column its cell as text (reserved values by their
// names, which do not read back as missing). A text holding a comma, a double
// quote or a line break, or starting with a single quote, is written in
// double quotes with inner double quotes doubled, so that it reads back whole.
void ZqWriteDataTableToCSVFileWithHeader(std::ostream& stream, const ZqDataTable& table, const std::string& titleLine);

}  // namespace Varimo
