// What varimo-krige prints, the same in every mode: one-line messages on
// standard error and numbers with every digit a double holds.
#pragma once

#include <cstdio>
#include <string>

#include "varimo/platform/corvane/output_sink.h"

namespace VarimoKrige {

constexpr int kTrainingFailed = 1;
constexpr int kBadInput = 2;

// "varimo-krige: MESSAGE" on standard error, through the library's output
// sink, so that an open progress line is ended before it.
inline void Say(const std::string& message) {
  Corvane::ZqPrint(Corvane::ZqOutputStream::Err, "varimo-krige: " + message + "\n");
}

inline int Fail(const std::string& message) {
  Say(message);
  return kBadInput;
}

inline std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// "row R (name)", or "row R", counted from 0 as the outputs count rows.
inline std::string DescribeRow(std::size_t row, const std::string& name) {
  return "row " + std::to_string(row) + (name.empty() ? std::string() : " (" + name + ")");
}

}  // namespace VarimoKrige
