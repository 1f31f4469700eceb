// The routine chain and the comments of a failure report as plain vectors,
// for comparing with EXPECT_EQ.
#pragma once

#include <cstdint>
#include <ostream>
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

// The whole of a result as one comparable value:
//   EXPECT_EQ(Report(result), (ResultReport{false, F::ObjectNotValid, {"Routine"}, {}}));
struct ResultReport {
  bool success = false;
  std::uint32_t type = 0;
  std::vector<std::string> context;
  std::vector<std::string> comments;
  bool operator==(const ResultReport&) const = default;
};

inline ResultReport Report(const Varimo::ZqStatModelResult& result) {
  return {result.IsSuccessful(), result.GetFailureType(), Context(result), Comments(result)};
}

// The success report: flag set, nothing recorded.
inline ResultReport Success() { return {true, 0, {}, {}}; }

inline void PrintTo(const ResultReport& report, std::ostream* out) {
  *out << (report.success ? "success" : "failure") << ", type " << report.type << ", context {";
  for (const std::string& c : report.context) *out << " \"" << c << "\"";
  *out << " }, comments {";
  for (const std::string& c : report.comments) *out << " \"" << c << "\"";
  *out << " }";
}

}  // namespace VarimoTest
