// Progress of varimo-krige's predictions on standard error.
#pragma once

#include <cstddef>

namespace VarimoKrige {

// "varimo-krige: predicted N/TOTAL", for runs long enough to want it. On a
// terminal the line is rewritten in place; otherwise (a log file, a pipe)
// one line is written per tenth of the rows, so that the log stays
// readable.
class Progress {
 public:
  // Below this many rows, predicting takes too little time to report.
  static constexpr std::size_t kMinRows = 301;

  // Silent unless `enabled` and `total` is at least kMinRows.
  Progress(std::size_t total, bool enabled);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // `done` of the rows are predicted; calls come with `done` increasing.
  void Update(std::size_t done);
  // Ends the line written in place.
  void Finish();

 private:
  std::size_t total_;
  bool enabled_;
  bool inPlace_;
  std::size_t shown_ = 0;  // in place: rows last shown; otherwise tenths
};

}  // namespace VarimoKrige
