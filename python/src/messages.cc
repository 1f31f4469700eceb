#include "messages.h"

#include <pybind11/stl.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"

namespace py = pybind11;

namespace VarimoPython {
namespace {

std::mutex queueMutex;
std::vector<std::pair<std::string, std::string>> queue;  // (level, text)

void Queue(const char* level, const std::string& text) {
  std::lock_guard<std::mutex> lock(queueMutex);
  // A runaway loop of warnings must not fill the memory before the next
  // drain: past this many, messages are counted only.
  constexpr std::size_t kMaxQueued = 10000;
  if (queue.size() < kMaxQueued) queue.emplace_back(level, text);
}

std::vector<std::pair<std::string, std::string>> Drain() {
  std::lock_guard<std::mutex> lock(queueMutex);
  std::vector<std::pair<std::string, std::string>> drained;
  drained.swap(queue);
  return drained;
}

}  // namespace

void InstallMessageQueue() {
  Corvane::ZqThrow.SetSink([](Corvane::ZqThrowLevel level, const std::string& text) {
    Queue(Corvane::ZqThrowLevelName(level), text);
  });
  // What the library would print (progress of fits, diagnostics) becomes
  // log records too, one per call.
  Corvane::ZqSetOutputSink([](Corvane::ZqOutputStream stream, const std::string& text) {
    Queue(stream == Corvane::ZqOutputStream::Out ? "Out" : "Err", text);
  });
}

void BindMessages(py::module_& m) {
  m.def("drain_messages", &Drain,
        "The library's messages since the last call, as (level, text) pairs; level is one of Info, Warning, "
        "Error, Fatal, Out or Err.");
}

}  // namespace VarimoPython
