// Reads the reference files that the generators under tests/data
// write: lines of blank-separated tokens, "#" lines being comments. Uses the
// library's own stream and tokenizer, which the tests trust from their own
// test programs.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/tessik/file_stream.h"

namespace VarimoTest {

// The token lines of the file under tests/data; fails the test when it
// cannot be read.
inline std::vector<std::vector<std::string>> ReadReferenceLines(const std::string& relativePath) {
  std::vector<std::vector<std::string>> lines;
  Tessik::zqifstream in(DataPath(relativePath));
  EXPECT_TRUE(in.is_open()) << relativePath;
  std::string line;
  while (in.getline(line)) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> tokens;
    Corvane::ZqStringTokenize(tokens, line, " ");
    if (!tokens.empty()) lines.push_back(tokens);
  }
  return lines;
}

inline double ToDouble(const std::string& token) {
  double value = 0.0;
  EXPECT_TRUE(Corvane::ZqStringToNumber(token, value)) << token;
  return value;
}

// The tokens from `first` on, as doubles.
inline std::vector<double> ToDoubles(const std::vector<std::string>& tokens, std::size_t first) {
  std::vector<double> values;
  for (std::size_t i = first; i < tokens.size(); ++i) values.push_back(ToDouble(tokens[i]));
  return values;
}

}  // namespace VarimoTest
