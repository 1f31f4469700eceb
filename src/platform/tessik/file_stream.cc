#include "varimo/platform/tessik/file_stream.h"

#include <utility>

namespace Tessik {

zqifstream::zqifstream() : std::istream(nullptr) { rdbuf(&file_); }

zqifstream::zqifstream(const std::string& fileName) : zqifstream() { open(fileName); }

bool zqifstream::open(const std::string& fileName) {
  close();
  readsText_ = false;
  fileBuffer_.resize(std::size_t{1} << 17);
  // Must precede open to take effect with libstdc++.
  file_.pubsetbuf(fileBuffer_.data(), static_cast<std::streamsize>(fileBuffer_.size()));
  rdbuf(&file_);
  if (file_.open(fileName, std::ios::in | std::ios::binary) == nullptr) {
    setstate(std::ios::failbit);
    return false;
  }
  clear();
  return true;
}

void zqifstream::OpenText(std::string text) {
  close();
  text_.str(std::move(text));
  readsText_ = true;
  rdbuf(&text_);
  clear();
}

bool zqifstream::is_open() const { return readsText_ || file_.is_open(); }

void zqifstream::close() {
  if (file_.is_open()) file_.close();
  text_.str(std::string());
  readsText_ = false;
  rdbuf(&file_);
}

bool zqifstream::getline(std::string& line) {
  line.clear();
  if (!std::getline(static_cast<std::istream&>(*this), line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

zqofstream::zqofstream() : std::ostream(nullptr) { rdbuf(&file_); }

zqofstream::zqofstream(const std::string& fileName) : zqofstream() { open(fileName); }

bool zqofstream::open(const std::string& fileName) {
  close();
  writesText_ = false;
  rdbuf(&file_);
  if (file_.open(fileName, std::ios::out | std::ios::trunc | std::ios::binary) == nullptr) {
    setstate(std::ios::failbit);
    return false;
  }
  clear();
  return true;
}

void zqofstream::OpenText() {
  close();
  text_.str(std::string());
  writesText_ = true;
  rdbuf(&text_);
  clear();
}

bool zqofstream::is_open() const { return writesText_ || file_.is_open(); }

void zqofstream::close() {
  if (file_.is_open()) {
    flush();
    file_.close();
  }
  writesText_ = false;
  rdbuf(&file_);
}

}  // namespace Tessik
