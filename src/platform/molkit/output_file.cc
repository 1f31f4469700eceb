#include "varimo/platform/molkit/output_file.h"

#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Molkit {

ZqOutputFile::~ZqOutputFile() { Discard(); }

bool ZqOutputFile::Open(const std::string& path, std::string& error) {
  Discard();
  path_ = path;
  // Beside the target, so that the rename stays on one file system; the
  // process id keeps two runs apart.
  scratch_ = path + ".part-" + std::to_string(getpid());
  compressed_ = path.size() > 3 && path.compare(path.size() - 3, 3, ".gz") == 0;
  failed_ = false;
  handle_ = compressed_ ? static_cast<void*>(gzopen(scratch_.c_str(), "wb")) : static_cast<void*>(std::fopen(scratch_.c_str(), "wb"));
  if (handle_ == nullptr) {
    error = "cannot write " + path + ": " + std::strerror(errno);
    return false;
  }
  return true;
}

bool ZqOutputFile::Write(const std::string& text) {
  if (handle_ == nullptr || failed_) return false;
  if (text.empty()) return true;
  const bool written =
      compressed_ ? gzwrite(static_cast<gzFile>(handle_), text.data(), static_cast<unsigned>(text.size())) ==
                        static_cast<int>(text.size())
                  : std::fwrite(text.data(), 1, text.size(), static_cast<std::FILE*>(handle_)) == text.size();
  failed_ = !written;
  return written;
}

bool ZqOutputFile::Commit(std::string& error) {
  if (handle_ == nullptr) {
    error = "cannot write " + path_ + ": not open";
    return false;
  }
  const int closed = compressed_ ? gzclose(static_cast<gzFile>(handle_)) : std::fclose(static_cast<std::FILE*>(handle_));
  handle_ = nullptr;
  if (failed_ || closed != 0) {
    error = "cannot write " + path_ + " (the disk full?)";
    std::remove(scratch_.c_str());
    return false;
  }
  if (std::rename(scratch_.c_str(), path_.c_str()) != 0) {
    error = "cannot write " + path_ + ": " + std::strerror(errno);
    std::remove(scratch_.c_str());
    return false;
  }
  return true;
}

void ZqOutputFile::Discard() {
  if (handle_ == nullptr) return;
  if (compressed_) {
    gzclose(static_cast<gzFile>(handle_));
  } else {
    std::fclose(static_cast<std::FILE*>(handle_));
  }
  handle_ = nullptr;
  std::remove(scratch_.c_str());
}

}  // namespace Molkit
