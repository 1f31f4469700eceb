// The error handler of the engine layers: levelled, printf-style messages that
// go to a replaceable sink. The statistics layer never writes here; it carries
// failures in ZqStatModelResult instead.
//
//   Corvane::ZqThrow.Warning("Train(), unable to train. (%d bins)", numBins);
//
// Every level reports and returns, Fatal included: callers that raise Fatal
// decide themselves whether to go on. The default sink writes
// "<Level>: <text>\n" to standard error. The sink is process-wide and
// unlocked, like the rest of the library: replace it before threads start.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Corvane {

enum class ZqThrowLevel { Info, Warning, Error, Fatal };

// "Info", "Warning", "Error", "Fatal".
const char* ZqThrowLevelName(ZqThrowLevel level);

// Receives each formatted message, without a trailing newline added.
using ZqThrowSink = std::function<void(ZqThrowLevel, const std::string&)>;

class ZqErrorHandler {
 public:
  // printf-style; the whole text is formatted, however long.
  void Info(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  void Warning(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  void Error(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  void Fatal(const char* format, ...) const __attribute__((format(printf, 2, 3)));

  // Texts already formatted; no '%' in them is interpreted.
  void Info(const std::string& text) const { Report(ZqThrowLevel::Info, text); }
  void Warning(const std::string& text) const { Report(ZqThrowLevel::Warning, text); }
  void Error(const std::string& text) const { Report(ZqThrowLevel::Error, text); }
  void Fatal(const std::string& text) const { Report(ZqThrowLevel::Fatal, text); }

  void Report(ZqThrowLevel level, const std::string& text) const;

  // Installs a sink and returns the one it replaces. An empty sink restores
  // the default one.
  ZqThrowSink SetSink(ZqThrowSink sink);

  // Writes "<Level>: <text>\n" to standard error.
  static void DefaultSink(ZqThrowLevel level, const std::string& text);

 private:
  ZqThrowSink sink_;
};

// The one handler of the process.
extern ZqErrorHandler ZqThrow;

// Collects every message sent to ZqThrow while it lives and restores the
// previous sink on destruction. Meant for tests and for callers that turn
// messages into their own reports.
class ZqScopedThrowCapture {
 public:
  ZqScopedThrowCapture();
  ~ZqScopedThrowCapture();
  ZqScopedThrowCapture(const ZqScopedThrowCapture&) = delete;
  ZqScopedThrowCapture& operator=(const ZqScopedThrowCapture&) = delete;

  const std::vector<std::pair<ZqThrowLevel, std::string>>& Messages() const { return messages_; }
  // The texts of the messages of one level, in the order sent.
  std::vector<std::string> Texts(ZqThrowLevel level) const;
  void Clear() { messages_.clear(); }

 private:
  std::vector<std::pair<ZqThrowLevel, std::string>> messages_;
  ZqThrowSink previous_;
};

}  // namespace Corvane
