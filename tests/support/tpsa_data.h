// The TPSA column of the RDKit NCI sample (4999 values), a real column that
// several statistics tests check against numpy and scipy: the second field
// of each non-comment line, read with the platform stream and tokenizer.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/tessik/file_stream.h"

namespace VarimoTest {

inline const std::vector<double>& TpsaValues() {
  static const std::vector<double> values = [] {
    std::vector<double> v;
    Tessik::zqifstream in("/usr/share/RDKit/Data/NCI/first_5k.tpsa.csv");
    EXPECT_TRUE(in.is_open());
    std::string line;
    std::vector<std::string> fields;
    while (in.getline(line)) {
      if (line.empty() || line[0] == '#') continue;
      Corvane::ZqStringTokenize(fields, line, ",", false);
      double value = 0.0;
      EXPECT_TRUE(fields.size() == 2 && Corvane::ZqStringToNumber(fields[1], value)) << line;
      v.push_back(value);
    }
    return v;
  }();
  return values;
}

}  // namespace VarimoTest
