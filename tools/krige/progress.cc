#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace VarimoKrige {

Progress::Progress(std::size_t total, bool enabled)
    : total_(total), enabled_(enabled && total >= kMinRows), inPlace_(enabled_ && isatty(fileno(stderr))) {}

void Progress::Update(std::size_t done) {
  if (!enabled_) return;
  if (inPlace_) {
    // A thousand rewrites at most: a terminal that scrolls through millions
    // would slow the predictions down.
    if (done < total_ && done < shown_ + std::max<std::size_t>(1, total_ / 1000)) return;
    std::fprintf(stderr, "\rvarimo-krige: predicted %zu/%zu", done, total_);
    std::fflush(stderr);
    shown_ = done;
    return;
  }
  const std::size_t tenths = done * 10 / total_;
  if (tenths <= shown_) return;
  std::fprintf(stderr, "varimo-krige: predicted %zu/%zu\n", done, total_);
  shown_ = tenths;
}

void Progress::Finish() {
  if (!inPlace_ || shown_ == 0) return;
  std::fputc('\n', stderr);
  shown_ = 0;
}

}  // namespace VarimoKrige
