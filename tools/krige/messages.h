// What varimo-krige prints, the same in both modes: one-line failures on
// standard error and numbers with every digit a double holds.
#pragma once

#include <cstdio>
#include <string>

namespace VarimoKrige {

constexpr int kTrainingFailed = 1;
constexpr int kBadInput = 2;

inline int Fail(const std::string& message) {
  std::fprintf(stderr, "varimo-krige: %s\n", message.c_str());
  return kBadInput;
}

inline std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

}  // namespace VarimoKrige
