// The options of varimo-krige for choosing the next molecules and
// trusting predictions: the select mode, predict's --interval and
// --domain, and cv's --calibration.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace VarimoKrige {

struct Arguments;

struct ChoiceArguments {
  // select
  std::string poolPath;
  unsigned int picks = 0;
  std::string acquisition;  // empty: ei, or thompson with --batch thompson
  std::string batch;        // empty: the top picks by the acquisition
  std::optional<double> kappa;
  std::optional<double> xi;
  std::optional<unsigned int> candidates;
  bool minimize = false;
  bool excludeTraining = false;
  bool allowDuplicates = false;
  // predict
  std::optional<double> intervalAlpha;
  bool domain = false;
  // cv
  bool calibration = false;

  bool AnySelectFlag() const;
};

enum class ChoiceFlag { NotOurs, Taken, Invalid };

// Reads args[i] (and its value, advancing i) when it is one of these
// options; Invalid with `error` set for a bad value.
ChoiceFlag ParseChoiceFlag(const std::vector<std::string>& args, std::size_t& i, Arguments& parsed,
                           std::string& error);

// What the select mode is missing or combines wrongly, and the new options
// of predict and cv given to another mode; empty when nothing.
std::string ChoiceConflict(const Arguments& parsed);

// Whether any of these options is given: they are for molecule files only.
bool AnyChoiceFlag(const Arguments& parsed);

}  // namespace VarimoKrige
