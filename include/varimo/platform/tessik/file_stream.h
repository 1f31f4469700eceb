// Line-oriented text streams over a file or over text held in memory. The
// table loaders read from a zqifstream and the writers write to a zqofstream;
// the in-memory forms let callers (and tests, and fuzzers) load and save
// tables without touching the file system.
#pragma once

#include <fstream>
#include <istream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace Tessik {

class zqifstream : public std::istream {
 public:
  zqifstream();
  // Opens `fileName`; check is_open() or the stream state.
  explicit zqifstream(const std::string& fileName);
  zqifstream(const zqifstream&) = delete;
  zqifstream& operator=(const zqifstream&) = delete;

  // Opens a file, closing what was open; false when it cannot be read.
  bool open(const std::string& fileName);
  // Reads from `text` instead of a file; the stream is then open.
  void OpenText(std::string text);
  bool is_open() const;
  void close();

  // Reads one line without its terminator; a carriage return before the
  // newline (a file written on Windows) is dropped too. False at the end of
  // the input, with `line` emptied.
  bool getline(std::string& line);

 private:
  std::filebuf file_;
  std::stringbuf text_;
  bool readsText_ = false;
  // Table files are read whole several times; a large buffer keeps the
  // number of reads (and system calls) small.
  std::vector<char> fileBuffer_;
};

class zqofstream : public std::ostream {
 public:
  zqofstream();
  // Creates or truncates `fileName`; check is_open() or the stream state.
  explicit zqofstream(const std::string& fileName);
  zqofstream(const zqofstream&) = delete;
  zqofstream& operator=(const zqofstream&) = delete;

  bool open(const std::string& fileName);
  // Writes into memory from here on; GetText() returns what was written.
  void OpenText();
  std::string GetText() const { return text_.str(); }
  bool is_open() const;
  // Flushes and closes a file; a memory stream keeps its text.
  void close();

 private:
  std::filebuf file_;
  std::stringbuf text_;
  bool writesText_ = false;
};

}  // namespace Tessik
