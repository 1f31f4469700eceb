// Progress of varimo-krige's predictions on standard error.
#pragma once

#include <cstddef>
#include <cstdio>
#include <mutex>

#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"

namespace VarimoKrige {

// "varimo-krige: predicted N/TOTAL", for runs long enough to want it. On a
// terminal the line is rewritten in place; otherwise (a log file, a pipe)
// one line is written per tenth of the rows, so that the log stays
// readable.
//
// While a line rewritten in place is open, a warning of the library (or a
// line it prints) would land in its middle: so, for its lifetime, the
// progress stands in front of the error handler's and the output sink's
// sinks, ends its line before passing anything on, and draws the line anew at
// the next update. Any thread may warn; Update and Finish belong to one.
class Progress {
 public:
  // Below this many rows, predicting takes too little time to report.
  static constexpr std::size_t kMinRows = 301;

  // Silent unless `enabled` and `total` is at least kMinRows; in place when
  // standard error is a terminal. A total of 0 stands for a number of rows
  // not known in advance (a file read as it is predicted): the line then
  // says "predicted N" once N reaches kMinRows, and a log gets a line at
  // 1000, 2000, 5000, 10000, ... rows.
  Progress(std::size_t total, bool enabled);
  // The same on `stream`, in place or not as `inPlace` says.
  Progress(std::size_t total, bool enabled, std::FILE* stream, bool inPlace);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // `done` of the rows are predicted; calls come with `done` increasing.
  void Update(std::size_t done);
  // Ends the line written in place.
  void Finish();

 private:
  void EndLineLocked();
  void UpdateUncounted(std::size_t done);

  std::size_t total_;
  bool enabled_;
  std::FILE* stream_;
  bool inPlace_;
  std::size_t shown_ = 0;  // in place: rows last shown; otherwise tenths
  bool lineOpen_ = false;
  std::size_t nextLine_ = 1000;  // without a total, not in place
  std::mutex mutex_;
  Corvane::ZqThrowSink previousThrowSink_;
  Corvane::ZqOutputSink previousOutputSink_;
};

}  // namespace VarimoKrige
