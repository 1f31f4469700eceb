#include "varimo/platform/corvane/error_handler.h"

#include <cstdarg>
#include <cstdio>

#include "varimo/platform/corvane/strings.h"

namespace Corvane {

ZqErrorHandler ZqThrow;

namespace {

std::string FormatVarArgs(const char* format, va_list args) {
  return ZqFormatStringV(format, args).value_or(std::string("(unformattable message) ") + format);
}

}  // namespace

const char* ZqThrowLevelName(ZqThrowLevel level) {
  switch (level) {
    case ZqThrowLevel::Info: return "Info";
    case ZqThrowLevel::Warning: return "Warning";
    case ZqThrowLevel::Error: return "Error";
    case ZqThrowLevel::Fatal: return "Fatal";
  }
  return "Unknown";
}

void ZqErrorHandler::Info(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Report(ZqThrowLevel::Info, FormatVarArgs(format, args));
  va_end(args);
}

void ZqErrorHandler::Warning(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Report(ZqThrowLevel::Warning, FormatVarArgs(format, args));
  va_end(args);
}

void ZqErrorHandler::Error(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Report(ZqThrowLevel::Error, FormatVarArgs(format, args));
  va_end(args);
}

void ZqErrorHandler::Fatal(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Report(ZqThrowLevel::Fatal, FormatVarArgs(format, args));
  va_end(args);
}

void ZqErrorHandler::Report(ZqThrowLevel level, const std::string& text) const {
  if (sink_) {
    sink_(level, text);
  } else {
    DefaultSink(level, text);
  }
}

ZqThrowSink ZqErrorHandler::SetSink(ZqThrowSink sink) {
  ZqThrowSink previous = std::move(sink_);
  sink_ = std::move(sink);
  return previous;
}

void ZqErrorHandler::DefaultSink(ZqThrowLevel level, const std::string& text) {
  std::fprintf(stderr, "%s: %s\n", ZqThrowLevelName(level), text.c_str());
  std::fflush(stderr);
}

ZqScopedThrowCapture::ZqScopedThrowCapture() {
  previous_ = ZqThrow.SetSink(
      [this](ZqThrowLevel level, const std::string& text) { messages_.emplace_back(level, text); });
}

ZqScopedThrowCapture::~ZqScopedThrowCapture() { ZqThrow.SetSink(std::move(previous_)); }

std::vector<std::string> ZqScopedThrowCapture::Texts(ZqThrowLevel level) const {
  std::vector<std::string> texts;
  for (const auto& [messageLevel, text] : messages_) {
    if (messageLevel == level) texts.push_back(text);
  }
  return texts;
}

}  // namespace Corvane
