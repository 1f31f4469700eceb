// Helpers shared by the unit tests: floating-point comparison by stated
// tolerance, capture of standard output and error, and paths to test data.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "varimo/platform/corvane/output_sink.h"

namespace VarimoTest {

// Distance in units in the last place between two finite doubles of any sign.
inline std::uint64_t UlpDistance(double a, double b) {
  if (a == b) return 0;
  auto ordered = [](double x) {
    std::int64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    // Map the sign-magnitude bit pattern onto a monotone integer line.
    return bits < 0 ? std::numeric_limits<std::int64_t>::min() - bits : bits;
  };
  const std::int64_t ia = ordered(a), ib = ordered(b);
  return ia > ib ? static_cast<std::uint64_t>(ia) - static_cast<std::uint64_t>(ib)
                 : static_cast<std::uint64_t>(ib) - static_cast<std::uint64_t>(ia);
}

// gtest assertion: |actual - expected| within `ulps` units in the last place.
inline ::testing::AssertionResult WithinUlps(double actual, double expected, std::uint64_t ulps) {
  if (std::isnan(expected) && std::isnan(actual)) return ::testing::AssertionSuccess();
  if (std::isnan(expected) || std::isnan(actual)) {
    return ::testing::AssertionFailure() << "actual " << actual << " vs expected " << expected;
  }
  const std::uint64_t distance = UlpDistance(actual, expected);
  if (distance <= ulps) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << std::setprecision(17) << "actual " << actual << " vs expected "
                                       << expected << ": " << distance << " ulps apart, allowed " << ulps;
}

// gtest assertion: relative error |actual - expected| / |expected| within
// `tolerance` (absolute when expected is 0).
inline ::testing::AssertionResult WithinRelative(double actual, double expected, double tolerance) {
  const double scale = expected == 0.0 ? 1.0 : std::fabs(expected);
  const double error = std::fabs(actual - expected) / scale;
  if (error <= tolerance) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << std::setprecision(17) << "actual " << actual << " vs expected "
                                       << expected << ": relative error " << error << ", allowed " << tolerance;
}

inline std::string DataPath(const std::string& relative) {
  return std::string(VARIMO_TEST_DATA_DIR) + "/" + relative;
}

// What the library prints through its output sink on one stream while this
// lives; nothing reaches the process's standard streams meanwhile.
class CaptureOutput {
 public:
  explicit CaptureOutput(Corvane::ZqOutputStream stream = Corvane::ZqOutputStream::Out) : stream_(stream) {}
  std::string Text() const { return capture_.Text(stream_); }
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    std::istringstream in(Text());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }

 private:
  Corvane::ZqOutputStream stream_;
  Corvane::ZqScopedOutputCapture capture_;
};

// Captures what is written to the process's standard output or error.
class CaptureStdout {
 public:
  CaptureStdout() { ::testing::internal::CaptureStdout(); }
  std::string Text() { return ::testing::internal::GetCapturedStdout(); }
};
class CaptureStderr {
 public:
  CaptureStderr() { ::testing::internal::CaptureStderr(); }
  std::string Text() { return ::testing::internal::GetCapturedStderr(); }
};

}  // namespace VarimoTest
