// The one place where the library's printed lines go: the progress and
// diagnostic lines of mixture fits, contour tracing, partial least squares,
// logistic regression, clustering and the tables' print-outs. A host program
// or a test replaces the sink to silence, capture or redirect them (to a log,
// to a GUI, to Python's logging); by default they go to standard output or
// standard error, as printed text.
//
//   Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "num intersecting edges = %u\n", n);
//
// Messages of the engine layers (warnings, errors) are not printed here: they
// go through the error handler, ZqThrow. Like that handler, the sink is
// process-wide and unlocked: replace it before threads start.
#pragma once

#include <functional>
#include <string>

namespace Corvane {

// Out: what the library wrote to standard output, Err: to standard error.
enum class ZqOutputStream { Out, Err };

// Receives each printed text exactly as it would have been written, newlines
// included; one call may hold several lines or part of one.
using ZqOutputSink = std::function<void(ZqOutputStream, const std::string& text)>;

// Installs a sink and returns the one it replaces (empty when the default was
// in place). An empty sink restores the default.
ZqOutputSink ZqSetOutputSink(ZqOutputSink sink);

// Writes `text` to standard output or error, unchanged, and flushes it.
void ZqDefaultOutputSink(ZqOutputStream stream, const std::string& text);

// printf-style; the whole text is formatted, however long, and passed to the
// sink in one call.
void ZqPrint(ZqOutputStream stream, const char* format, ...) __attribute__((format(printf, 2, 3)));
// A text already formatted; no '%' in it is interpreted.
void ZqPrint(ZqOutputStream stream, const std::string& text);

// Collects everything printed while it lives, by stream, and restores the
// previous sink on destruction. Meant for tests and for hosts that show the
// lines in their own way.
class ZqScopedOutputCapture {
 public:
  ZqScopedOutputCapture();
  ~ZqScopedOutputCapture();
  ZqScopedOutputCapture(const ZqScopedOutputCapture&) = delete;
  ZqScopedOutputCapture& operator=(const ZqScopedOutputCapture&) = delete;

  // All that was printed on one stream, concatenated in order.
  const std::string& Text(ZqOutputStream stream) const { return stream == ZqOutputStream::Out ? out_ : err_; }
  void Clear() {
    out_.clear();
    err_.clear();
  }

 private:
  std::string out_;
  std::string err_;
  ZqOutputSink previous_;
};

}  // namespace Corvane
