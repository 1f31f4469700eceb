#include "varimo/platform/corvane/strings.h"
#include "varimo/tables/data_table_file_info.h"

namespace Varimo {

namespace ZqDataTableFileHeaderType {
const char* const TypeName[NumTypes] = {
    "Unknown Type",
    "File has no header",
    "Header has Arff-style Attribute lines",
    "File has a header line of column names",
    "File has comment line followed by a header line of column names",
    "File has two comment lines followed by a header line of column names",
};
}  // namespace ZqDataTableFileHeaderType

namespace ZqDataTableFileDataLayoutType {
const char* const TypeName[NumTypes] = {
    "Unknown Type",
    "Rectangular Layout",
    "Leading Columns plus Lower Triangular Layout",
};
}  // namespace ZqDataTableFileDataLayoutType

namespace ZqDataTableFileState {
const char* const StateName[NumStates] = {
    "Unknown State",
    "At Start of File Before Header Info",
    "In File Header Region",
    "In Data Part of File",
    "At End of File",
};
}  // namespace ZqDataTableFileState

ZqDataTableFileStatus::ZqDataTableFileStatus(Tessik::zqifstream& stream) : stream_(&stream) {}

void ZqDataTableFileStatus::GoToStartOfFile() {
  stream_->clear();
  stream_->seekg(0);
  lastLine_.clear();
  lineNumber_ = 0;
  state_ = ZqDataTableFileState::AtStart;
}

bool ZqDataTableFileStatus::GetNextLine() {
  if (!stream_->good()) return false;
  if (!stream_->getline(lastLine_)) return false;
  ++lineNumber_;
  return true;
}

std::string ZqDataTableFileStatus::ReportFileStatus() const {
  const char* stateText = state_ < ZqDataTableFileState::NumStates ? ZqDataTableFileState::StateName[state_] : "";
  return Corvane::ZqMakeString("Current File State: ", stateText, "\n", "Current File Line Number: ", lineNumber_,
                               "\n", "Last Line Read In: ", lastLine_, "\n", "Num Header Lines Processed: ",
                               numHeaderLines_, "\n", "Num Data Lines Processed: ", numDataLines_);
}

}  // namespace Varimo
