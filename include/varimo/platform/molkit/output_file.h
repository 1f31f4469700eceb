// An output file that appears whole or not at all: text goes to a scratch
// file beside the target, which Commit() renames into place. A run that
// fails before committing leaves the target as it was (an earlier run's
// output is never half overwritten), and the scratch file is removed.
// A target ending in ".gz" is written gzip-compressed.
//
//   Molkit::ZqOutputFile out;
//   if (!out.Open("pred.csv", error)) ...
//   out.Write("row,name\n");
//   if (!out.Commit(error)) ...
#pragma once

#include <string>

namespace Molkit {

class ZqOutputFile {
 public:
  ZqOutputFile() = default;
  ~ZqOutputFile();  // removes the scratch file of an output not committed
  ZqOutputFile(const ZqOutputFile&) = delete;
  ZqOutputFile& operator=(const ZqOutputFile&) = delete;

  // Creates the scratch file; false, with `error` set to one line naming
  // the target, when it cannot be created (a folder that does not exist or
  // cannot be written).
  bool Open(const std::string& path, std::string& error);
  bool IsOpen() const { return handle_ != nullptr; }
  // False, keeping the first failure for Commit, when the text cannot be
  // written (a full disk).
  bool Write(const std::string& text);
  // Closes the scratch file and renames it to the target; false, with
  // `error` set, when anything failed on the way.
  bool Commit(std::string& error);
  // Closes and removes the scratch file; the target is left alone.
  void Discard();

  const std::string& GetPath() const { return path_; }

 private:
  std::string path_;
  std::string scratch_;
  void* handle_ = nullptr;  // a FILE* or, for ".gz", a gzFile
  bool compressed_ = false;
  bool failed_ = false;
};

}  // namespace Molkit
