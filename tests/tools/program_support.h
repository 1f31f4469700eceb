// Running varimo-krige from a test: scratch files named by the test, the
// program's exit status and its two streams.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace VarimoTest {

struct Outcome {
  int status;
  std::string out, err;
};

inline std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void Write(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// A path of the running test's own, in the temporary folder.
inline std::string Scratch(const std::string& name) {
  const std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
  return ::testing::TempDir() + "varimo_krige_" + test + "_" + std::to_string(getpid()) + "_" + name;
}

inline Outcome Krige(const std::string& args) {
  const std::string out = Scratch("stdout"), err = Scratch("stderr");
  const int raw = std::system((std::string(VARIMO_KRIGE_PROGRAM) + " " + args + " >" + out + " 2>" + err).c_str());
  return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, Slurp(out), Slurp(err)};
}

// Every run of (arguments, message) in `cases` stops with status 2 and one
// line on standard error that holds the message.
inline void ExpectRefused(const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [args, message] : cases) {
    const Outcome run = Krige(args);
    EXPECT_EQ(run.status, 2) << args;
    EXPECT_EQ(run.err.rfind("varimo-krige: ", 0), 0u) << run.err;
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;  // one line
  }
}

// The program writes every number with 17 significant digits: read back, the same double.
inline std::string SeventeenDigits(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace VarimoTest
