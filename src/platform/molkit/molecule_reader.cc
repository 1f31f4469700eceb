#include "varimo/platform/molkit/molecule_reader.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <deque>
#include <utility>
#include <vector>

#include "molecule_text.h"
#include "varimo/platform/corvane/strings.h"

namespace Molkit {
namespace {

// A line longer than this is no molecule record: a file without line ends
// would otherwise be read whole into memory.
constexpr std::size_t kMaxLineBytes = std::size_t{64} << 20;

// Lines of a file or of a text, without their line ends ("\n" or "\r\n"),
// the byte order mark of a UTF-8 file taken off the first.
class LineSource {
 public:
  virtual ~LineSource() = default;
  bool Next(std::string& line) {
    if (!Read(line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (first_ && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
    first_ = false;
    return true;
  }
  const std::string& GetError() const { return error_; }

 protected:
  virtual bool Read(std::string& line) = 0;
  std::string error_;

 private:
  bool first_ = true;
};

class TextLines final : public LineSource {
 public:
  explicit TextLines(std::string text) : text_(std::move(text)) {}

 private:
  bool Read(std::string& line) override {
    if (at_ >= text_.size()) return false;
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    line.assign(text_, at_, end - at_);
    at_ = end + 1;
    return true;
  }
  std::string text_;
  std::size_t at_ = 0;
};

// zlib reads plain files as they are, and compressed ones decompressed.
class FileLines final : public LineSource {
 public:
  explicit FileLines(gzFile file) : file_(file) {}
  ~FileLines() override { gzclose(file_); }
  FileLines(const FileLines&) = delete;
  FileLines& operator=(const FileLines&) = delete;

 private:
  bool Read(std::string& line) override {
    line.clear();
    for (;;) {
      if (at_ == size_ && !Fill()) return !line.empty();
      const char* start = buffer_ + at_;
      const char* newline = static_cast<const char*>(std::memchr(start, '\n', size_ - at_));
      const std::size_t take = newline ? static_cast<std::size_t>(newline - start) : size_ - at_;
      line.append(start, take);
      at_ += take + (newline ? 1 : 0);
      if (newline) return true;
      if (line.size() > kMaxLineBytes) {
        error_ = "a line longer than 64 MiB: not a molecule file";
        done_ = true;
        return false;
      }
    }
  }
  bool Fill() {
    if (done_) return false;
    const int read = gzread(file_, buffer_, sizeof buffer_);
    if (read <= 0) {
      done_ = true;
      // A compressed stream cut short ends like a whole one, with the
      // error kept aside.
      int code = Z_OK;
      const char* message = gzerror(file_, &code);
      if (read < 0 || code != Z_OK) error_ = std::string("the file is damaged: ") + (message ? message : "read error");
      return false;
    }
    size_ = static_cast<std::size_t>(read);
    at_ = 0;
    return true;
  }
  gzFile file_;
  char buffer_[1 << 16];
  std::size_t size_ = 0;
  std::size_t at_ = 0;
  bool done_ = false;
};

bool IsBlank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

// The first control byte of a line (tabs allowed), as "0xNN"; empty when
// there is none.
std::string ControlByte(const std::string& line) {
  for (unsigned char c : line) {
    if ((c < 0x20 && c != '\t') || c == 0x7f) {
      char text[8];
      std::snprintf(text, sizeof text, "0x%02x", c);
      return text;
    }
  }
  return {};
}

class SDReader final : public ZqMoleculeReader {
 public:
  SDReader(std::unique_ptr<LineSource> lines, std::size_t firstNumber)
      : lines_(std::move(lines)), number_(firstNumber - 1) {}

  bool Next(ZqMoleculeRecord& record) override {
    if (!pending_.empty()) {
      record = std::move(pending_.front());
      pending_.pop_front();
      return true;
    }
    std::vector<std::string> block;
    std::string line;
    bool any = false;
    while (lines_->Next(line)) {
      if (line.rfind("$$$$", 0) == 0) {
        if (std::all_of(block.begin(), block.end(), IsBlank)) {
          block.clear();
          continue;  // an empty record is no record
        }
        any = true;
        break;
      }
      block.push_back(std::move(line));
    }
    error_ = lines_->GetError();
    if (!any && std::all_of(block.begin(), block.end(), IsBlank)) return false;
    // A last record without its "$$$$" is read as it stands.
    Take(block, record);
    return true;
  }

 private:
  // The record of the lines, or, when they hold more than one molecule, the
  // first of their records, the others queued.
  void Take(const std::vector<std::string>& block, ZqMoleculeRecord& record) {
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < block.size(); ++i) {
      if (block[i].rfind("M  END", 0) == 0) ends.push_back(i);
    }
    record = ZqMoleculeRecord();
    record.number = ++number_;
    record.name = block.front();
    if (ends.size() <= 1) {
      record.mol = ZqMolFromRecordLines(block, record.error);
      return;
    }
    // The molecules after the first start three lines above their counts
    // line, which comes after the previous molecule's "M  END".
    std::vector<std::string> names{block.front()};
    for (std::size_t m = 1; m < ends.size(); ++m) {
      std::string name;
      for (std::size_t i = ends[m - 1] + 1; i < ends[m]; ++i) {
        if (ZqIsCountsLine(block[i]) && i >= ends[m - 1] + 4) {
          name = block[i - 3];
          break;
        }
      }
      names.push_back(name);
    }
    auto describe = [&](std::size_t m) {
      return "record " + std::to_string(number_ + m) + (names[m].empty() ? std::string() : " (" + names[m] + ")");
    };
    record.error = "runs into the next molecule, " + describe(1) + ", without a \"$$$$\" line: both left out";
    for (std::size_t m = 1; m < names.size(); ++m) {
      ZqMoleculeRecord next;
      next.number = number_ + m;
      next.name = names[m];
      next.error = "follows " + describe(m - 1) + " without a \"$$$$\" line between them: both left out";
      pending_.push_back(std::move(next));
    }
    number_ += names.size() - 1;
  }

  std::unique_ptr<LineSource> lines_;
  std::size_t number_;
  std::deque<ZqMoleculeRecord> pending_;
};

// SMILES files: per line a SMILES, a name and further columns, separated by
// blanks, tabs or commas; a first line whose first column is "smiles" (any
// case) names the columns.
class SmilesReader final : public ZqMoleculeReader {
 public:
  SmilesReader(std::unique_ptr<LineSource> lines, std::size_t firstNumber, const std::string& header)
      : lines_(std::move(lines)), number_(firstNumber - 1) {
    if (!header.empty()) {
      names_ = ZqSplitSmilesColumns(header);
      first_ = false;
    }
  }

  bool Next(ZqMoleculeRecord& record) override {
    std::string line;
    while (lines_->Next(line)) {
      const std::vector<std::string> columns = ZqSplitSmilesColumns(line);
      if (columns.empty() || columns.front().front() == '#') continue;
      if (first_ && ZqLowerCase(columns.front()) == "smiles") {
        names_ = columns;
        first_ = false;
        continue;
      }
      first_ = false;
      record = ZqMoleculeRecord();
      record.number = ++number_;
      record.name = columns.size() > 1 ? columns[1] : std::string();
      if (const std::string control = ControlByte(line); !control.empty()) {
        record.error = "a control byte (" + control + ") in the line";
      } else if (!names_.empty() && columns.size() > names_.size()) {
        record.error = "has " + std::to_string(columns.size()) + " fields where the header names " +
                       std::to_string(names_.size()) + " (a blank in a name?)";
      } else if ((record.mol = ZqMolFromSmiles(columns.front(), &record.error))) {
        record.mol->SetName(record.name);
        for (std::size_t c = 2; c < columns.size(); ++c) {
          record.mol->SetSDData(c < names_.size() ? names_[c] : "column " + std::to_string(c + 1), columns[c]);
        }
      }
      return true;
    }
    error_ = lines_->GetError();
    return false;
  }

 private:
  std::unique_ptr<LineSource> lines_;
  std::size_t number_;
  std::vector<std::string> names_;
  bool first_ = true;
};

// CSV files with a header and a "smiles" column; a "name" or "id" column
// names the molecules, the others become SD data fields.
class CsvReader final : public ZqMoleculeReader {
 public:
  CsvReader(std::unique_ptr<LineSource> lines, std::size_t firstNumber, const std::string& header)
      : lines_(std::move(lines)), number_(firstNumber - 1) {
    std::string line = header;
    if (line.empty() && !lines_->Next(line)) return;
    header_ = Fields(line);
    for (std::size_t c = 0; c < header_.size(); ++c) {
      const std::string lower = ZqLowerCase(header_[c]);
      if (lower == "smiles" && smiles_ == kNone) smiles_ = c;
      if ((lower == "name" || lower == "id") && name_ == kNone) name_ = c;
    }
  }

  bool Next(ZqMoleculeRecord& record) override {
    std::string line;
    while (lines_->Next(line)) {
      if (IsBlank(line)) continue;
      record = ZqMoleculeRecord();
      record.number = ++number_;
      const std::vector<std::string> values = Fields(line);
      record.name = name_ < values.size() ? values[name_] : std::to_string(record.number);
      if (const std::string control = ControlByte(line); !control.empty()) {
        record.error = "a control byte (" + control + ") in the line";
      } else if (values.size() > header_.size()) {
        record.error = "has " + std::to_string(values.size()) + " fields where the header names " +
                       std::to_string(header_.size());
      } else if (smiles_ >= values.size() || values[smiles_].empty()) {
        record.error = "no SMILES";
      } else if ((record.mol = ZqMolFromSmiles(values[smiles_], &record.error))) {
        record.mol->SetName(record.name);
        for (std::size_t c = 0; c < values.size(); ++c) {
          if (c != smiles_ && c != name_) record.mol->SetSDData(header_[c], values[c]);
        }
      }
      return true;
    }
    error_ = lines_->GetError();
    return false;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> values;
    Corvane::ZqStringTokenizeQuoted(values, line, ",", "\"", false);
    for (std::string& value : values) value = Corvane::ZqStringStripWhiteSpace(value);
    return values;
  }

  std::unique_ptr<LineSource> lines_;
  std::size_t number_;
  std::vector<std::string> header_;
  std::size_t smiles_ = kNone;
  std::size_t name_ = kNone;
};

std::unique_ptr<ZqMoleculeReader> MakeReader(std::unique_ptr<LineSource> lines, ZqMoleculeFileFormat format,
                                             std::size_t firstNumber, const std::string& header) {
  switch (format) {
    case ZqMoleculeFileFormat::SD:
      return std::make_unique<SDReader>(std::move(lines), firstNumber);
    case ZqMoleculeFileFormat::SmilesCsv:
      return std::make_unique<CsvReader>(std::move(lines), firstNumber, header);
    case ZqMoleculeFileFormat::Smiles:
      break;
  }
  return std::make_unique<SmilesReader>(std::move(lines), firstNumber, header);
}

}  // namespace

std::unique_ptr<ZqMoleculeReader> ZqMoleculeReader::Open(const std::string& path, std::string& error) {
  return Open(path, ZqGetMoleculeFileFormat(path), error);
}

std::unique_ptr<ZqMoleculeReader> ZqMoleculeReader::Open(const std::string& path, ZqMoleculeFileFormat format,
                                                         std::string& error) {
  gzFile file = gzopen(path.c_str(), "rb");
  if (!file) {
    error = "cannot read " + path;
    return nullptr;
  }
  gzbuffer(file, 1 << 17);
  return MakeReader(std::make_unique<FileLines>(file), format, 1, "");
}

std::unique_ptr<ZqMoleculeReader> ZqMoleculeReader::FromText(std::string text, ZqMoleculeFileFormat format,
                                                             std::size_t firstNumber, const std::string& header) {
  return MakeReader(std::make_unique<TextLines>(std::move(text)), format, firstNumber, header);
}

}  // namespace Molkit
