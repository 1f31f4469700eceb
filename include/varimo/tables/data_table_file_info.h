// Reading table files. ZqDataTableFileInfo is one machine for every text
// format the library reads: it is configured with a header type, a data
// layout and six strings (delimiters and quote sets for the header and the
// data, comment characters, the missing-value marker), and the loaders of
// data_table_files.h differ only in that configuration. It tracks where in
// the file it is and collects each column in a ZqDataTableFileCol.
//
// Every failure returns through ZqStatModelResult with the routine's
// "ZqDataTableFileInfo::Method" name and, as its last comment, the report of
// the file's type and reading status.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/tessik/file_stream.h"
#include "varimo/tables/data_table_column.h"

namespace Varimo {

namespace ZqDataTableFileHeaderType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t NoHeader = 1;
inline constexpr std::uint32_t Arff = 2;            // "@ATTRIBUTE" lines up to "@DATA"
inline constexpr std::uint32_t NamesLine = 3;       // the first line names the columns
inline constexpr std::uint32_t CommentThenNames = 4;
inline constexpr std::uint32_t TwoCommentsThenNames = 5;
inline constexpr std::uint32_t NumTypes = 6;
extern const char* const TypeName[NumTypes];
}  // namespace ZqDataTableFileHeaderType

namespace ZqDataTableFileDataLayoutType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t Rectangular = 1;
// Leading columns, then the lower triangle of a symmetric matrix: data row
// i holds i + 1 triangle elements.
inline constexpr std::uint32_t LeadingColumnsPlusLowerTriangular = 2;
inline constexpr std::uint32_t NumTypes = 3;
extern const char* const TypeName[NumTypes];
}  // namespace ZqDataTableFileDataLayoutType

namespace ZqDataTableFileState {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t AtStart = 1;
inline constexpr std::uint32_t InHeader = 2;
inline constexpr std::uint32_t InData = 3;
inline constexpr std::uint32_t AtEnd = 4;
inline constexpr std::uint32_t NumStates = 5;
extern const char* const StateName[NumStates];
}  // namespace ZqDataTableFileState

// Where the reader stands in its stream.
class ZqDataTableFileStatus {
 public:
  explicit ZqDataTableFileStatus(Tessik::zqifstream& stream);

  // Rewinds: clears end-of-file, seeks to 0, line number 0, state AtStart.
  void GoToStartOfFile();
  // Reads the next line into the last line; false at the end of the stream.
  bool GetNextLine();
  // Five lines: state, line number, last line, header and data lines processed.
  std::string ReportFileStatus() const;

  const std::string& GetLastLine() const { return lastLine_; }
  std::uint64_t GetLineNumber() const { return lineNumber_; }
  std::uint32_t GetFileState() const { return state_; }
  void SetFileState(std::uint32_t state) { state_ = state; }
  std::uint64_t GetNumHeaderLinesProcessed() const { return numHeaderLines_; }
  std::uint64_t GetNumDataLinesProcessed() const { return numDataLines_; }
  void SetNumHeaderLinesProcessed(std::uint64_t count) { numHeaderLines_ = count; }
  void SetNumDataLinesProcessed(std::uint64_t count) { numDataLines_ = count; }
  Tessik::zqifstream& GetStream() const { return *stream_; }

 private:
  Tessik::zqifstream* stream_;
  std::string lastLine_;
  std::uint64_t lineNumber_ = 0;
  std::uint32_t state_ = ZqDataTableFileState::Unknown;
  std::uint64_t numHeaderLines_ = 0;
  std::uint64_t numDataLines_ = 0;
};

// One column of a file while it is read. A column whose type the file does
// not state ("deferred") collects its fields and decides its kind at the end
// (FillDataTableCol): ratio when every field is a number or the missing
// marker, else nominal with fewer than 20 distinct texts, else identifier.
class ZqDataTableFileCol {
 public:
  // A placeholder named "___TEMPCOL___".
  ZqDataTableFileCol();
  // A column of the given kind and shape.
  ZqDataTableFileCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                     std::uint64_t numRows, const std::string& missingValue, std::uint64_t numCols = 1,
                     bool lowerTriangular = false);
  // A nominal column with a fixed list of values.
  ZqDataTableFileCol(const std::string& name, const std::string& fullName, std::uint32_t statVarType,
                     const std::vector<std::string>& discreteValues, std::uint64_t numRows,
                     const std::string& missingValue);
  // A deferred-type column.
  ZqDataTableFileCol(const std::string& name, const std::string& fullName, std::uint64_t numRows,
                     const std::string& missingValue);

  bool FileDefinesStatVarType() const { return !deferredType_; }
  const ZqDataTableCol& GetDataTableCol() const { return col_; }
  ZqDataTableCol& GetDataTableCol() { return col_; }

  // Adds one field: an empty field is the missing marker; a deferred column
  // keeps it for later, a typed one appends it (the marker as missing data,
  // anything else converted).
  ZqStatModelResult AddField(const std::string& field);
  // Appends a line number to the line-number column (an interval column).
  ZqStatModelResult AddLineNumber(std::uint64_t lineNumber);
  // Decides the kind of a deferred column and fills it; no-op otherwise.
  ZqStatModelResult FillDataTableCol();
  void FinishAddVars() { col_.FinishAddingVars(); }

  // Number of distinct texts among the fields kept, counting stops at
  // `stopAt` (the kind decision only needs to know whether it reaches 20).
  std::uint64_t NumUniqueStringsToConvert(std::uint64_t stopAt = ~std::uint64_t{0}) const;

  // A deferred column keeps numbers while every field is one and only keeps
  // texts from its first non-number on. When that happens after row 0 the
  // texts of the earlier rows are needed again: the reader supplies them
  // here, in order, from a second pass over those lines.
  std::uint64_t NumLeadingTextsNeeded() const { return leadingTextsNeeded_; }
  void SupplyLeadingTexts(std::vector<std::string> texts);

 private:
  // Converts every kept field into col_ as ratio: true when all converted.
  bool ConvertAllStringsAndAddToDataTableCol();

  bool deferredType_ = false;
  ZqDataTableCol col_;
  std::string missingValue_;
  // A deferred column's fields: numbers while all are numbers (the marker
  // kept as the missing double), texts from the first non-number on.
  std::vector<double> numbers_;
  std::vector<std::string> staged_;
  bool allNumbers_ = true;
  std::uint64_t leadingTextsNeeded_ = 0;
};

class ZqDataTableFileInfo {
 public:
  // Header type above 5 and layout above 2 become 0 (unknown), silently.
  ZqDataTableFileInfo(Tessik::zqifstream& stream, const std::string& fileName, std::uint32_t headerType,
                      std::uint32_t layoutType, const std::string& headerDelimiters,
                      const std::string& dataDelimiters, const std::string& headerQuotes,
                      const std::string& dataQuotes, const std::string& commentChars, const std::string& missingValue);
  // One delimiter set and one quote set for header and data alike.
  ZqDataTableFileInfo(Tessik::zqifstream& stream, const std::string& fileName, std::uint32_t headerType,
                      std::uint32_t layoutType, const std::string& delimiters, const std::string& quotes,
                      const std::string& commentChars, const std::string& missingValue);

  // Blank after stripping white space, or starting with a comment character.
  bool IsBlankOrCommentLine(const std::string& line) const;

  ZqStatModelResult GoToStartOfHeaderInfo();
  // ARFF: the fields of the next "@ATTRIBUTE" line, or none at "@DATA"
  // (state becomes InData). Names line: the column names (state InData).
  ZqStatModelResult GetNextHeaderFieldVector(std::vector<std::string>& fields);
  ZqStatModelResult CountNumberOfHeaderColumns(std::uint64_t& count);
  ZqStatModelResult CountNumberOfDataLines(std::uint64_t& count);
  ZqStatModelResult GoToStartOfData();
  // The fields of the next data line; their number must be that of the
  // columns (plus the data lines read so far, for a triangular layout).
  ZqStatModelResult GetNextDataFieldVector(std::vector<std::string>& fields);

  // Columns named by the file (or "Column_0", ... without a header), of
  // deferred type, or typed by the ARFF attributes.
  ZqStatModelResult SetFileColumns();
  ZqStatModelResult SetFileColumns(const std::vector<std::string>& names);
  ZqStatModelResult SetFileColumns(const std::vector<std::string>& names, const std::vector<std::uint32_t>& types);
  ZqStatModelResult SetFileColumns(const std::vector<std::string>& names, const std::vector<std::uint32_t>& types,
                                   const std::vector<std::vector<std::string>>& discreteValueVectors);
  // Each column takes its second dimension as its number of columns; with
  // `lastIsLowerTriangular` the last column instead becomes a lower
  // triangle as wide as the file has data lines.
  ZqStatModelResult SetFileColumns(const std::vector<std::string>& names, const std::vector<std::uint32_t>& types,
                                   const std::vector<std::uint64_t>& secondDims, bool lastIsLowerTriangular);
  ZqStatModelResult SetFileColumnsForArffFile();
  ZqStatModelResult ProcessArffAttributeLine(std::string& name, std::vector<std::string>& values,
                                             std::uint32_t& statVarType, const std::vector<std::string>& fields);

  // Reads every data line into the columns, then settles deferred kinds and
  // finishes all columns.
  ZqStatModelResult ProcessDataLines();

  std::uint64_t GetNumColumnsInFile() const { return fileColumns_.size(); }
  const std::vector<ZqDataTableFileCol>& GetFileColumns() const { return fileColumns_; }
  const ZqDataTableFileCol& GetLineNumberColumn() const { return lineNumbers_; }
  const std::string& GetFileName() const { return fileName_; }
  std::uint32_t GetHeaderType() const { return headerType_; }
  std::uint32_t GetLayoutType() const { return layoutType_; }
  const ZqDataTableFileStatus& GetFileStatus() const { return status_; }

  std::string ReportFileType() const;
  std::string ReportFileTypeAndStatus() const;

 private:
  ZqStatModelResult Fail(std::uint32_t failureType, const char* routine,
                         const std::vector<std::string>& comments = {}) const;
  void TokenizeData(std::vector<std::string>& fields, const std::string& line) const;
  void TokenizeHeader(std::vector<std::string>& fields, const std::string& line) const;
  // Reads the next line that is not blank or a comment; false at the end.
  bool NextContentLine();
  void MakeLineNumberColumn(std::uint64_t numDataLines);
  // Counts the data lines and starts an empty list of file columns with the
  // line-number column sized for them; a failure gets `routine` added.
  ZqStatModelResult StartFileColumns(std::uint64_t& numDataLines, const char* routine);
  // Second pass over the first data lines for deferred columns that turned
  // out not to be numbers after the first row.
  ZqStatModelResult RecoverLeadingTexts();

  ZqDataTableFileStatus status_;
  std::string fileName_;
  std::uint32_t headerType_;
  std::uint32_t layoutType_;
  std::string headerDelimiters_;
  std::string dataDelimiters_;
  std::string headerQuotes_;
  std::string dataQuotes_;
  std::string commentChars_;
  std::string missingValue_;
  std::vector<ZqDataTableFileCol> fileColumns_;
  ZqDataTableFileCol lineNumbers_;
  // The ARFF reader stops on the first non-blank line before the header
  // fields; that line is examined before the next one is read.
  bool currentLinePending_ = false;
  // Data lines counted once; later counts of the same stream reuse it.
  std::uint64_t countedDataLines_ = 0;
  bool dataLinesCounted_ = false;
};

}  // namespace Varimo
