#include <cctype>
#include <filesystem>
#include <utility>
#include <vector>

#include "mol_modes.h"

namespace VarimoKrige {
namespace {

// Whether two paths name one file: the same file when both exist, the same
// place once made absolute otherwise.
bool SameFile(const std::string& a, const std::string& b) {
  std::error_code failure;
  if (std::filesystem::exists(a, failure) && std::filesystem::exists(b, failure)) {
    return std::filesystem::equivalent(a, b, failure);
  }
  return std::filesystem::weakly_canonical(a, failure) == std::filesystem::weakly_canonical(b, failure);
}

bool EndsWithLower(const std::string& path, const std::string& suffix) {
  std::string lower = path;
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower.size() >= suffix.size() && lower.compare(lower.size() - suffix.size(), suffix.size(), suffix) == 0;
}

}  // namespace

bool IsSDOutput(const std::string& path) { return EndsWithLower(path, ".sdf") || EndsWithLower(path, ".sdf.gz"); }

bool CheckPathsDiffer(const Arguments& args, std::string& error) {
  const std::vector<std::pair<const char*, const std::string*>> inputs = {
      {"--train", &args.trainPath}, {"--predict", &args.predictPath}, {"--load", &args.loadPath},
      {"--pool", &args.choice.poolPath}};
  const std::vector<std::pair<const char*, const std::string*>> outputs = {
      {"--out", &args.outPath}, {"--contributions", &args.contributionsPath}, {"--save", &args.savePath}};
  for (std::size_t o = 0; o < outputs.size(); ++o) {
    const auto& [flag, path] = outputs[o];
    if (path->empty()) continue;
    for (const auto& [inputFlag, input] : inputs) {
      if (!input->empty() && SameFile(*path, *input)) {
        error = std::string(flag) + " " + *path + " is also " + inputFlag + ": it would be overwritten";
        return false;
      }
    }
    for (std::size_t p = o + 1; p < outputs.size(); ++p) {
      const auto& [otherFlag, other] = outputs[p];
      if (!other->empty() && SameFile(*path, *other)) {
        error = std::string(flag) + " and " + otherFlag + " are the same file " + *path;
        return false;
      }
    }
  }
  return true;
}

}  // namespace VarimoKrige
