// The command line of varimo-krige.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace VarimoKrige {

struct Arguments {
  std::string trainPath;
  std::string responseName;
  std::string predictPath;
  std::string outPath;
  std::vector<std::string> features;  // empty: every numeric column but the response
  bool simple = false;                // --model simple; ordinary by default
  std::string kernelName;             // empty: walk all candidates
  std::string variogramPath;          // empty: no variogram file
  bool help = false;
};

// The arguments, or nothing with `error` set to a one-line message.
std::optional<Arguments> ParseArguments(const std::vector<std::string>& args, std::string& error);

// The --help text.
const char* HelpText();

}  // namespace VarimoKrige
