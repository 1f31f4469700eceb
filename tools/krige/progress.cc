#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace VarimoKrige {

Progress::Progress(std::size_t total, bool enabled) : Progress(total, enabled, stderr, isatty(fileno(stderr)) != 0) {}

Progress::Progress(std::size_t total, bool enabled, std::FILE* stream, bool inPlace)
    : total_(total), enabled_(enabled && (total == 0 || total >= kMinRows)), stream_(stream), inPlace_(enabled_ && inPlace) {
  if (!inPlace_) return;
  previousThrowSink_ = Corvane::ZqThrow.SetSink([this](Corvane::ZqThrowLevel level, const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    EndLineLocked();
    if (previousThrowSink_) {
      previousThrowSink_(level, text);
    } else {
      Corvane::ZqErrorHandler::DefaultSink(level, text);
    }
  });
  previousOutputSink_ = Corvane::ZqSetOutputSink([this](Corvane::ZqOutputStream stream, const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    EndLineLocked();
    if (previousOutputSink_) {
      previousOutputSink_(stream, text);
    } else {
      Corvane::ZqDefaultOutputSink(stream, text);
    }
  });
}

Progress::~Progress() {
  if (!inPlace_) return;
  Corvane::ZqThrow.SetSink(std::move(previousThrowSink_));
  Corvane::ZqSetOutputSink(std::move(previousOutputSink_));
}

void Progress::EndLineLocked() {
  if (!lineOpen_) return;
  std::fputc('\n', stream_);
  std::fflush(stream_);
  lineOpen_ = false;
}

void Progress::Update(std::size_t done) {
  if (!enabled_) return;
  if (total_ == 0) {
    UpdateUncounted(done);
    return;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  if (inPlace_) {
    // A thousand rewrites at most: a terminal that scrolls through millions
    // would slow the predictions down. A line ended by a message is drawn
    // again at once.
    const bool ended = !lineOpen_ && shown_ > 0;
    if (!ended && done < total_ && done < shown_ + std::max<std::size_t>(1, total_ / 1000)) return;
    std::fprintf(stream_, "\rvarimo-krige: predicted %zu/%zu", done, total_);
    std::fflush(stream_);
    shown_ = done;
    lineOpen_ = true;
    return;
  }
  const std::size_t tenths = done * 10 / total_;
  if (tenths <= shown_) return;
  std::fprintf(stream_, "varimo-krige: predicted %zu/%zu\n", done, total_);
  shown_ = tenths;
}

void Progress::UpdateUncounted(std::size_t done) {
  if (done < kMinRows) return;
  std::lock_guard<std::mutex> lock(mutex_);
  if (inPlace_) {
    std::fprintf(stream_, "\rvarimo-krige: predicted %zu", done);
    std::fflush(stream_);
    shown_ = done;
    lineOpen_ = true;
    return;
  }
  // Without a total, a log gets a line at 1000, 2000, 5000, 10000, ... rows.
  if (done < nextLine_) return;
  std::fprintf(stream_, "varimo-krige: predicted %zu\n", done);
  while (nextLine_ <= done) {
    const std::size_t step = nextLine_;
    std::size_t decade = 1;
    while (decade * 10 <= step) decade *= 10;
    nextLine_ = step / decade == 1 ? 2 * decade : step / decade == 2 ? 5 * decade : 10 * decade;
  }
}

void Progress::Finish() {
  if (!inPlace_) return;
  std::lock_guard<std::mutex> lock(mutex_);
  EndLineLocked();
  shown_ = 0;
}

}  // namespace VarimoKrige
