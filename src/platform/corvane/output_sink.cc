#include "varimo/platform/corvane/output_sink.h"

#include <cstdarg>
#include <cstdio>
#include <optional>
#include <utility>

#include "varimo/platform/corvane/strings.h"

namespace Corvane {

namespace {

ZqOutputSink& InstalledSink() {
  static ZqOutputSink sink;
  return sink;
}

}  // namespace

ZqOutputSink ZqSetOutputSink(ZqOutputSink sink) {
  ZqOutputSink previous = std::move(InstalledSink());
  InstalledSink() = std::move(sink);
  return previous;
}

void ZqDefaultOutputSink(ZqOutputStream stream, const std::string& text) {
  std::FILE* file = stream == ZqOutputStream::Out ? stdout : stderr;
  std::fwrite(text.data(), 1, text.size(), file);
  std::fflush(file);
}

void ZqPrint(ZqOutputStream stream, const std::string& text) {
  const ZqOutputSink& sink = InstalledSink();
  if (sink) {
    sink(stream, text);
  } else {
    ZqDefaultOutputSink(stream, text);
  }
}

void ZqPrint(ZqOutputStream stream, const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::optional<std::string> text = ZqFormatStringV(format, args);
  va_end(args);
  ZqPrint(stream, text.value_or(std::string("(unformattable text) ") + format));
}

ZqScopedOutputCapture::ZqScopedOutputCapture() {
  previous_ = ZqSetOutputSink([this](ZqOutputStream stream, const std::string& text) {
    (stream == ZqOutputStream::Out ? out_ : err_) += text;
  });
}

ZqScopedOutputCapture::~ZqScopedOutputCapture() { ZqSetOutputSink(std::move(previous_)); }

}  // namespace Corvane
