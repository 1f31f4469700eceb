// What varimo-krige prints, the same in every mode: one-line messages on
// standard error and numbers with every digit a double holds.
#pragma once

#include <cstdio>
#include <string>

namespace VarimoKrige {

constexpr int kTrainingFailed = 1;
constexpr int kBadInput = 2;

// "varimo-krige: MESSAGE" on standard error.
inline void Say(const std::string& message) { std::fprintf(stderr, "varimo-krige: %s\n", message.c_str()); }

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
