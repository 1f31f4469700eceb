// The routine chain and the comments of a failure report as plain vectors,
// for comparing with EXPECT_EQ.
#pragma once

#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace VarimoTest {

inline std::vector<std::string> Context(const Varimo::ZqStatModelResult& result) {
  std::vector<std::string> out;
  for (const std::string& c : result.GetContext()) out.push_back(c);
  return out;
}

inline std::vector<std::string> Comments(const Varimo::ZqStatModelResult& result) {
  std::vector<std::string> out;
  for (const std::string& c : result.GetComments()) out.push_back(c);
  return out;
}

}  // namespace VarimoTest
