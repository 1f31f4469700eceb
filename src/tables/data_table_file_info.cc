#include "varimo/tables/data_table_file_info.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

namespace Failure = ZqStatModelFailureType;
namespace Header = ZqDataTableFileHeaderType;
namespace Layout = ZqDataTableFileDataLayoutType;
namespace State = ZqDataTableFileState;

// Runs of delimiters merge, except in comma-separated data, where an empty
// field between two commas is a field.
bool MergeDelimiters(const std::string& delimiters) { return delimiters != ",\n"; }

// Counts the lines from the stream's position on that are neither blank nor
// comments, as reading them one by one would, but scanning raw blocks: the
// loaders count before they read, and a large file should not be split
// into line strings twice.
std::uint64_t CountContentLines(Tessik::zqifstream& stream, const std::string& commentChars) {
  std::array<bool, 256> isComment{};
  for (char c : commentChars) isComment[static_cast<unsigned char>(c)] = true;
  const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r' && c != '\n'); };
  // Small enough to come from the heap rather than a fresh mapping.
  std::vector<char> block(std::size_t{1} << 16);
  std::uint64_t count = 0;
  // Within a line only its first non-blank byte matters; the rest of the
  // line is skipped by memchr to its newline.
  bool contentSeen = false, comment = false;
  while (stream) {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    const char* p = block.data();
    const char* const end = p + stream.gcount();
    while (p < end) {
      if (!contentSeen) {
        while (p < end && isBlank(*p)) ++p;
        if (p == end) break;
        if (*p != '\n') {
          contentSeen = true;
          comment = isComment[static_cast<unsigned char>(*p)];
        }
      }
      const void* newline = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
      if (newline == nullptr) break;  // the line goes on in the next block
      if (contentSeen && !comment) ++count;
      contentSeen = comment = false;
      p = static_cast<const char*>(newline) + 1;
    }
  }
  if (contentSeen && !comment) ++count;  // a last line without a newline
  return count;
}

std::string FirstTokenUpper(const std::vector<std::string>& fields) {
  return fields.empty() ? std::string() : Corvane::ZqStringUpper(fields.front());
}

}  // namespace

ZqDataTableFileInfo::ZqDataTableFileInfo(Tessik::zqifstream& stream, const std::string& fileName,
                                         std::uint32_t headerType, std::uint32_t layoutType,
                                         const std::string& headerDelimiters, const std::string& dataDelimiters,
                                         const std::string& headerQuotes, const std::string& dataQuotes,
                                         const std::string& commentChars, const std::string& missingValue)
    : status_(stream),
      fileName_(fileName),
      headerType_(headerType < Header::NumTypes ? headerType : Header::Unknown),
      layoutType_(layoutType < Layout::NumTypes ? layoutType : Layout::Unknown),
      headerDelimiters_(headerDelimiters),
      dataDelimiters_(dataDelimiters),
      headerQuotes_(headerQuotes),
      dataQuotes_(dataQuotes),
      commentChars_(commentChars),
      missingValue_(missingValue) {
  status_.GoToStartOfFile();
}

ZqDataTableFileInfo::ZqDataTableFileInfo(Tessik::zqifstream& stream, const std::string& fileName,
                                         std::uint32_t headerType, std::uint32_t layoutType,
                                         const std::string& delimiters, const std::string& quotes,
                                         const std::string& commentChars, const std::string& missingValue)
    : ZqDataTableFileInfo(stream, fileName, headerType, layoutType, delimiters, delimiters, quotes, quotes,
                          commentChars, missingValue) {}

std::string ZqDataTableFileInfo::ReportFileType() const {
  return Corvane::ZqMakeString("File Name: ", fileName_, "\n", "Assigned File Header Type: ",
                               Header::TypeName[headerType_], "\n", "Assigned File Data Layout Type: ",
                               Layout::TypeName[layoutType_], "\n", "Number Of Fixed Columns in Data Region : ",
                               GetNumColumnsInFile());
}

std::string ZqDataTableFileInfo::ReportFileTypeAndStatus() const {
  return ReportFileType() + "\n" + status_.ReportFileStatus();
}

ZqStatModelResult ZqDataTableFileInfo::Fail(std::uint32_t failureType, const char* routine,
                                            const std::vector<std::string>& comments) const {
  ZqStatModelResult result(false);
  result.SetFailureTypeAndWhereFailed(failureType, routine);
  for (const std::string& comment : comments) result.AddExtraComment(comment);
  result.AddExtraComment(ReportFileTypeAndStatus());
  return result;
}

bool ZqDataTableFileInfo::IsBlankOrCommentLine(const std::string& line) const {
  const auto first = line.find_first_not_of(" \t\n\v\f\r");
  if (first == std::string::npos) return true;
  return commentChars_.find(line[first]) != std::string::npos;
}

void ZqDataTableFileInfo::TokenizeData(std::vector<std::string>& fields, const std::string& line) const {
  Corvane::ZqStringTokenizeQuoted(fields, line, dataDelimiters_, dataQuotes_, MergeDelimiters(dataDelimiters_));
}

void ZqDataTableFileInfo::TokenizeHeader(std::vector<std::string>& fields, const std::string& line) const {
  Corvane::ZqStringTokenizeQuoted(fields, line, headerDelimiters_, headerQuotes_, MergeDelimiters(headerDelimiters_));
}

bool ZqDataTableFileInfo::NextContentLine() {
  while (status_.GetNextLine()) {
    if (!IsBlankOrCommentLine(status_.GetLastLine())) return true;
  }
  return false;
}

ZqStatModelResult ZqDataTableFileInfo::GoToStartOfHeaderInfo() {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::GoToStartOfHeaderInfo";
  status_.GoToStartOfFile();
  status_.SetNumHeaderLinesProcessed(0);
  currentLinePending_ = false;
  bool reached = true;
  switch (headerType_) {
    case Header::Unknown: return Fail(Failure::BadDataViewFileType, kRoutine);
    case Header::NoHeader: return Fail(Failure::WrongDataViewFileType, kRoutine);
    case Header::Arff:
      reached = NextContentLine();
      currentLinePending_ = reached;
      break;
    case Header::NamesLine: break;
    case Header::CommentThenNames: reached = status_.GetNextLine(); break;
    case Header::TwoCommentsThenNames: reached = status_.GetNextLine() && status_.GetNextLine(); break;
    default: return Fail(Failure::InternalLogicFailure, kRoutine, {"Switch should have caught all possibilities"});
  }
  if (!reached) return Fail(Failure::NoData, kRoutine);
  status_.SetFileState(State::InHeader);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqDataTableFileInfo::GetNextHeaderFieldVector(std::vector<std::string>& fields) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::GetNextHeaderFieldVector";
  fields.clear();
  if (status_.GetFileState() != State::InHeader) {
    return Fail(Failure::WrongDataViewFileState, kRoutine,
                {std::string("Desired File State is: ") + State::StateName[State::InHeader]});
  }
  if (headerType_ == Header::Arff) {
    while (true) {
      if (!currentLinePending_ && !status_.GetNextLine()) return Fail(Failure::NoData, kRoutine);
      currentLinePending_ = false;
      if (IsBlankOrCommentLine(status_.GetLastLine())) continue;
      TokenizeHeader(fields, status_.GetLastLine());
      const std::string keyword = FirstTokenUpper(fields);
      if (keyword == "@ATTRIBUTE") return ZqStatModelResult(true);
      if (keyword == "@DATA") {
        fields.clear();
        status_.SetFileState(State::InData);
        return ZqStatModelResult(true);
      }
    }
  }
  if (!status_.GetNextLine()) return Fail(Failure::NoData, kRoutine);
  TokenizeHeader(fields, status_.GetLastLine());
  status_.SetFileState(State::InData);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqDataTableFileInfo::CountNumberOfHeaderColumns(std::uint64_t& count) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::CountNumberOfHeaderColumns";
  count = 0;
  status_.GoToStartOfFile();
  std::vector<std::string> fields;
  switch (headerType_) {
    case Header::NoHeader:
      // The first line with data sets the number of columns.
      if (!NextContentLine()) return Fail(Failure::NoData, kRoutine);
      TokenizeData(fields, status_.GetLastLine());
      count = fields.size();
      return ZqStatModelResult(true);
    case Header::Arff:
      while (status_.GetNextLine()) {
        if (IsBlankOrCommentLine(status_.GetLastLine())) continue;
        Corvane::ZqStringTokenize(fields, status_.GetLastLine(), headerDelimiters_, true);
        const std::string keyword = FirstTokenUpper(fields);
        if (keyword == "@DATA") return ZqStatModelResult(true);
        if (keyword == "@ATTRIBUTE") ++count;
      }
      return Fail(Failure::NoData, kRoutine, {"While loop should have caught line starting with @DATA "});
    case Header::NamesLine:
    case Header::CommentThenNames:
    case Header::TwoCommentsThenNames: {
      ZqStatModelResult result = GoToStartOfHeaderInfo();
      if (result.IsSuccessful()) result = GetNextHeaderFieldVector(fields);
      if (result.NotSuccessful()) {
        result.AddCallContext(kRoutine);
        return result;
      }
      count = fields.size();
      return result;
    }
    default: return Fail(Failure::BadDataViewFileType, kRoutine);
  }
}

ZqStatModelResult ZqDataTableFileInfo::GoToStartOfData() {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::GoToStartOfData";
  status_.GoToStartOfFile();
  status_.SetNumDataLinesProcessed(0);
  std::vector<std::string> fields;
  switch (headerType_) {
    case Header::NoHeader: break;
    case Header::Arff: {
      bool found = false;
      while (!found && status_.GetNextLine()) {
        Corvane::ZqStringTokenize(fields, status_.GetLastLine(), headerDelimiters_, true);
        found = FirstTokenUpper(fields) == "@DATA";
      }
      if (!found) return Fail(Failure::NoData, kRoutine, {"While loop should have caught line starting with @DATA "});
      break;
    }
    case Header::NamesLine:
    case Header::CommentThenNames:
    case Header::TwoCommentsThenNames:
      // The header lines may be missing from a short file; the data walk
      // then simply finds no line.
      for (std::uint32_t i = 0; i < headerType_ - 2 && status_.GetNextLine(); ++i) {
      }
      break;
    default: return Fail(Failure::BadDataViewFileType, kRoutine);
  }
  status_.SetFileState(State::InData);
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqDataTableFileInfo::CountNumberOfDataLines(std::uint64_t& count) {
  count = 0;
  ZqStatModelResult result = GoToStartOfData();
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqDataTableFileInfo::CountNumberOfDataLines");
    return result;
  }
  if (!dataLinesCounted_) {
    countedDataLines_ = CountContentLines(status_.GetStream(), commentChars_);
    dataLinesCounted_ = true;
    status_.SetFileState(State::AtEnd);
  }
  count = countedDataLines_;
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::GetNextDataFieldVector(std::vector<std::string>& fields) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::GetNextDataFieldVector";
  if (status_.GetFileState() != State::InData) {
    fields.clear();
    return Fail(Failure::WrongDataViewFileState, kRoutine,
                {std::string("Desired File State is: ") + State::StateName[State::InData]});
  }
  if (!NextContentLine()) {
    fields.clear();
    return Fail(Failure::InternalLogicFailure, kRoutine, {"While loop should have caught remaining data "});
  }
  TokenizeData(fields, status_.GetLastLine());
  std::uint64_t expected = GetNumColumnsInFile();
  if (layoutType_ == Layout::LeadingColumnsPlusLowerTriangular) expected += status_.GetNumDataLinesProcessed();
  if (fields.size() != expected) {
    std::string joined;
    for (std::size_t i = 0; i < fields.size(); ++i) joined += (i == 0 ? "" : " // ") + fields[i];
    return Fail(Failure::MismatchBetweenPrivateVecSizes, kRoutine,
                {Corvane::ZqMakeString("Num Field elements tokenized: ", fields.size(), "; Expected ", expected),
                 "Fields: " + joined});
  }
  return ZqStatModelResult(true);
}

void ZqDataTableFileInfo::MakeLineNumberColumn(std::uint64_t numDataLines) {
  const std::string name = fileName_ + "::" + "LineNumbers";
  lineNumbers_ = ZqDataTableFileCol(name, name, ZqStatVariableType::Interval, numDataLines, missingValue_);
}

ZqStatModelResult ZqDataTableFileInfo::StartFileColumns(std::uint64_t& numDataLines, const char* routine) {
  ZqStatModelResult result = CountNumberOfDataLines(numDataLines);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  MakeLineNumberColumn(numDataLines);
  fileColumns_.clear();
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumns() {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::SetFileColumns";
  std::vector<std::string> names;
  ZqStatModelResult result(true);
  switch (headerType_) {
    case Header::NoHeader: {
      std::uint64_t count = 0;
      result = CountNumberOfHeaderColumns(count);
      for (std::uint64_t i = 0; i < count; ++i) names.push_back("Column_" + std::to_string(i));
      break;
    }
    case Header::Arff: result = SetFileColumnsForArffFile(); break;
    case Header::NamesLine:
    case Header::CommentThenNames:
    case Header::TwoCommentsThenNames:
      result = GoToStartOfHeaderInfo();
      if (result.IsSuccessful()) result = GetNextHeaderFieldVector(names);
      status_.SetNumHeaderLinesProcessed(status_.GetNumHeaderLinesProcessed() + 1);
      break;
    default: return Fail(Failure::BadDataViewFileType, kRoutine);
  }
  if (result.IsSuccessful() && headerType_ != Header::Arff) result = SetFileColumns(names);
  if (result.NotSuccessful()) result.AddCallContext(kRoutine);
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumns(const std::vector<std::string>& names) {
  std::uint64_t numDataLines = 0;
  ZqStatModelResult result = StartFileColumns(numDataLines, "ZqDataTableFileInfo::SetFileColumns");
  if (result.NotSuccessful()) return result;
  fileColumns_.reserve(names.size());
  for (const std::string& name : names) {
    fileColumns_.emplace_back(name, fileName_ + "::" + name, numDataLines, missingValue_);
  }
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumns(const std::vector<std::string>& names,
                                                      const std::vector<std::uint32_t>& types) {
  return SetFileColumns(names, types, std::vector<std::vector<std::string>>(types.size()));
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumns(const std::vector<std::string>& names,
                                                      const std::vector<std::uint32_t>& types,
                                                      const std::vector<std::vector<std::string>>& discreteValueVectors) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::SetFileColumns";
  if (names.size() != types.size() || names.size() != discreteValueVectors.size()) {
    return Fail(Failure::MismatchBetweenInputVecSizes, kRoutine,
                {Corvane::ZqMakeString("num names = ", names.size(), " num stat var types = ", types.size()),
                 Corvane::ZqMakeString("size of vec of discrete value vecs = ", discreteValueVectors.size())});
  }
  std::uint64_t numDataLines = 0;
  ZqStatModelResult result = StartFileColumns(numDataLines, kRoutine);
  if (result.NotSuccessful()) return result;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string fullName = fileName_ + "::" + names[i];
    if (discreteValueVectors[i].empty()) {
      fileColumns_.emplace_back(names[i], fullName, types[i], numDataLines, missingValue_);
    } else {
      fileColumns_.emplace_back(names[i], fullName, types[i], discreteValueVectors[i], numDataLines, missingValue_);
    }
  }
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumns(const std::vector<std::string>& names,
                                                      const std::vector<std::uint32_t>& types,
                                                      const std::vector<std::uint64_t>& secondDims,
                                                      bool lastIsLowerTriangular) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::SetFileColumns";
  if (names.size() != types.size() || names.size() != secondDims.size()) {
    return Fail(Failure::MismatchBetweenInputVecSizes, kRoutine,
                {Corvane::ZqMakeString("num names = ", names.size(), " num stat var types = ", types.size(),
                                       " num column 2nd dimension = ", secondDims.size())});
  }
  std::uint64_t numDataLines = 0;
  ZqStatModelResult result = StartFileColumns(numDataLines, kRoutine);
  if (result.NotSuccessful()) return result;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool triangle = lastIsLowerTriangular && i + 1 == names.size();
    fileColumns_.emplace_back(names[i], fileName_ + "::" + names[i], types[i], numDataLines, missingValue_,
                              triangle ? numDataLines : secondDims[i], triangle);
  }
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::ProcessArffAttributeLine(std::string& name, std::vector<std::string>& values,
                                                                std::uint32_t& statVarType,
                                                                const std::vector<std::string>& fields) {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::ProcessArffAttributeLine";
  values.clear();
  if (fields.size() < 3) {
    return Fail(Failure::WrongInputVectorSize, kRoutine,
                {Corvane::ZqMakeString("Number of fields in input line (", fields.size(), ")",
                                       " is less than minimum of 3")});
  }
  name = fields[1];
  const std::string& line = status_.GetLastLine();
  const std::size_t open = line.find('{');
  if (open != std::string::npos) {
    statVarType = ZqStatVariableType::Nominal;
    const std::size_t close = line.find('}');
    if (close == std::string::npos) return Fail(Failure::ArgumentValueWrong, kRoutine, {"No matching '}' for '{' "});
    // Both searches start at the beginning of the line; a '}' before the '{'
    // leaves the rest of the line after the '{' as the list.
    const std::size_t length = close > open ? close - open - 1 : std::string::npos;
    Corvane::ZqStringTokenizeQuoted(values, line.substr(open + 1, length), dataDelimiters_, dataQuotes_, true);
    return ZqStatModelResult(true);
  }
  const std::string type = Corvane::ZqStringUpper(fields[2]);
  if (type == "REAL" || type == "INTEGER" || type == "NUMERIC") {
    statVarType = ZqStatVariableType::Ratio;
  } else if (type == "STRING" || type == "DATE") {
    statVarType = ZqStatVariableType::Identifier;
  } else {
    return Fail(Failure::ArgumentValueWrong, kRoutine, {"Unable to parse DataType"});
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqDataTableFileInfo::SetFileColumnsForArffFile() {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::GetColumnInfoForArffFile";
  if (headerType_ != Header::Arff) return Fail(Failure::WrongDataViewFileType, kRoutine);
  std::uint64_t numColumns = 0, numDataLines = 0;
  ZqStatModelResult result = CountNumberOfHeaderColumns(numColumns);
  if (result.IsSuccessful()) result = CountNumberOfDataLines(numDataLines);
  if (result.IsSuccessful()) result = GoToStartOfHeaderInfo();
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  MakeLineNumberColumn(numDataLines);
  fileColumns_.clear();
  fileColumns_.reserve(numColumns);
  std::vector<std::string> fields, values;
  while (true) {
    result = GetNextHeaderFieldVector(fields);
    if (result.NotSuccessful()) {
      result.AddCallContext(kRoutine);
      return result;
    }
    if (fields.empty()) break;  // "@DATA"
    status_.SetNumHeaderLinesProcessed(status_.GetNumHeaderLinesProcessed() + 1);
    std::string name;
    std::uint32_t type = ZqStatVariableType::Unknown;
    result = ProcessArffAttributeLine(name, values, type, fields);
    if (result.NotSuccessful()) {
      result.AddCallContext(kRoutine);
      return result;
    }
    const std::string fullName = fileName_ + "::" + name;
    if (type == ZqStatVariableType::Nominal && values.empty()) {
      fileColumns_.emplace_back(name, fullName, numDataLines, missingValue_);
    } else if (type == ZqStatVariableType::Nominal) {
      fileColumns_.emplace_back(name, fullName, type, values, numDataLines, missingValue_);
    } else {
      fileColumns_.emplace_back(name, fullName, type, numDataLines, missingValue_);
    }
  }
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::RecoverLeadingTexts() {
  std::uint64_t linesNeeded = 0;
  for (const ZqDataTableFileCol& col : fileColumns_) linesNeeded = std::max(linesNeeded, col.NumLeadingTextsNeeded());
  if (linesNeeded == 0) return ZqStatModelResult(true);

  std::vector<std::vector<std::string>> texts(fileColumns_.size());
  for (std::size_t c = 0; c < fileColumns_.size(); ++c) texts[c].reserve(fileColumns_[c].NumLeadingTextsNeeded());
  const std::uint64_t dataLinesRead = status_.GetNumDataLinesProcessed();
  ZqStatModelResult result = GoToStartOfData();
  std::vector<std::string> fields;
  for (std::uint64_t line = 0; result.IsSuccessful() && line < linesNeeded; ++line) {
    result = GetNextDataFieldVector(fields);
    if (result.NotSuccessful()) break;
    for (std::size_t c = 0; c < fileColumns_.size() && c < fields.size(); ++c) {
      if (line < fileColumns_[c].NumLeadingTextsNeeded()) texts[c].push_back(std::move(fields[c]));
    }
    status_.SetNumDataLinesProcessed(status_.GetNumDataLinesProcessed() + 1);
  }
  status_.SetNumDataLinesProcessed(dataLinesRead);
  if (result.NotSuccessful()) return result;
  for (std::size_t c = 0; c < fileColumns_.size(); ++c) {
    if (fileColumns_[c].NumLeadingTextsNeeded() > 0) fileColumns_[c].SupplyLeadingTexts(std::move(texts[c]));
  }
  return result;
}

ZqStatModelResult ZqDataTableFileInfo::ProcessDataLines() {
  constexpr const char* kRoutine = "ZqDataTableFileInfo::ProcessDataLines";
  const std::uint64_t numColumns = GetNumColumnsInFile();
  if (numColumns == 0) return Fail(Failure::ColumnNotFound, kRoutine, {"No columns defined to parse data rows!"});
  const bool triangular = layoutType_ == Layout::LeadingColumnsPlusLowerTriangular;
  if (fileColumns_.back().GetDataTableCol().ColIsLowerTriangular() != triangular) {
    return Fail(Failure::WrongDataViewFileType, kRoutine,
                {"File data type has Lower tri form!", "But Last Column not that type of array!"});
  }
  std::uint64_t numDataLines = 0;
  ZqStatModelResult result = CountNumberOfDataLines(numDataLines);
  if (result.IsSuccessful()) result = GoToStartOfData();
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }

  const std::uint64_t numFixed = triangular ? numColumns - 1 : numColumns;
  std::vector<std::string> fields;
  // The loop runs once per cell of large files: results are checked where
  // they are made instead of being assigned round.
  const auto failed = [&](ZqStatModelResult& failure) {
    failure.AddCallContext(kRoutine);
    result = std::move(failure);
    return result;
  };
  for (std::uint64_t line = 0; line < numDataLines; ++line) {
    if (ZqStatModelResult read = GetNextDataFieldVector(fields); read.NotSuccessful()) return failed(read);
    if (ZqStatModelResult added = lineNumbers_.AddLineNumber(status_.GetLineNumber()); added.NotSuccessful()) {
      return failed(added);
    }
    for (std::uint64_t f = 0; f < fields.size(); ++f) {
      ZqStatModelResult added = fileColumns_[std::min(f, numFixed)].AddField(fields[f]);
      if (added.NotSuccessful()) return failed(added);
    }
    status_.SetNumDataLinesProcessed(status_.GetNumDataLinesProcessed() + 1);
  }

  result = RecoverLeadingTexts();
  for (ZqDataTableFileCol& col : fileColumns_) {
    if (result.IsSuccessful()) result = col.FillDataTableCol();
  }
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return result;
  }
  lineNumbers_.FinishAddVars();
  for (ZqDataTableFileCol& col : fileColumns_) col.FinishAddVars();
  status_.SetFileState(State::AtEnd);
  return result;
}

}  // namespace Varimo
