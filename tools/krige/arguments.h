// The command line of varimo-krige.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "choice_arguments.h"

namespace VarimoKrige {

struct Arguments {
  std::string trainPath;
  std::string responseName;
  std::string predictPath;
  std::string outPath;
  std::vector<std::string> features;  // empty: every numeric column but the response and the drift
  bool simple = false;                // --model simple; ordinary by default
  bool universal = false;             // --model universal
  std::vector<std::string> drift;     // the drift columns, given exactly with --model universal
  std::string kernelName;             // empty: walk all candidates
  std::string fit;                    // --fit variogram|likelihood; empty: not given, variogram
  bool minMax = false;                // --metric minmax; Euclidean by default (CSV files only)
  bool metricGiven = false;           // --metric was given, whichever
  std::string variogramPath;          // empty: no variogram file
  unsigned int numLocal = 0;          // neighbours per query; 0: a global model
  bool predictTraining = false;       // only with numLocal
  std::optional<unsigned int> maxVariogramSize;  // only with numLocal; nothing: the library's default
  bool quiet = false;                 // no progress lines
  bool help = false;

  // Molecule files only.
  bool molecules = false;             // --train (or --predict with --load) is a molecule file
  bool crossValidate = false;         // the cv command
  unsigned int folds = 5;
  unsigned int seed = 1;
  std::string contributionsPath;      // empty: no contributions file
  std::string savePath;               // empty: the model is not saved
  std::string loadPath;               // empty: trained from --train
  unsigned int threads = 1;           // at most kMaxThreads
  std::optional<double> threshold;    // --threshold T: the column P(>T)
  std::string thresholdText;          // T as given
  bool fallbackKernels = false;       // a failed global prediction tries the lesser kernels
  bool noVariance = false;            // the prediction alone, without the variance solve
  bool fullVariance = false;          // --variance full: with the variance of the mean and drift
  std::string reportDir;              // empty: no report images
  std::string reportFormat;           // png, svg or pdf; empty: not given, png

  // The select command, and the options of choosing and trusting.
  bool select = false;
  ChoiceArguments choice;
};

// More threads than this is a slip of the keyboard rather than a machine.
constexpr unsigned int kMaxThreads = 1024;

// Whether the path names a molecule file: .sdf, .sdf.gz, .smi, .smi.gz, or
// a .csv file whose header has a "smiles" column (extensions and column
// name in any case).
bool IsMoleculeFile(const std::string& path);

// A whole number from `least` to `most` into `number`; false, with `error`
// set, otherwise.
bool ParseCount(const std::string& flag, const std::string& value, unsigned int& number, std::string& error,
                unsigned int least = 1, unsigned int most = 4294967295u);

// The arguments, or nothing with `error` set to a one-line message.
std::optional<Arguments> ParseArguments(const std::vector<std::string>& args, std::string& error);

// The --help text.
const char* HelpText();

}  // namespace VarimoKrige
