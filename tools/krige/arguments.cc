#include "arguments.h"

#include <cstddef>

#include "varimo/platform/corvane/strings.h"

namespace VarimoKrige {

const char* HelpText() {
  return R"HELP(Usage: varimo-krige --train TRAIN.csv --response NAME --predict QUERY.csv --out PRED.csv
                    [--features A,B,...] [--model simple|ordinary] [--kernel NAME]
                    [--variogram VARIOGRAM.csv]

Kriges the rows of a CSV file (a header line of column names, then one line per
element) and predicts the rows of another.

  --train TRAIN.csv      training elements, one per row
  --response NAME        the numeric column of TRAIN.csv to learn
  --predict QUERY.csv    elements to predict; needs every feature column
  --out PRED.csv         written with the header "row,prediction,variance" and one
                         line per row of QUERY.csv (row counted from 0), numbers
                         with 17 significant digits; a failed prediction (e.g. a
                         missing feature value) writes the model's error value
                         1.7976931348623157e+308
  --features A,B,...     the numeric columns that place an element (default: every
                         numeric column of TRAIN.csv but the response); the distance
                         is Euclidean over them, summed in the order given
  --model simple|ordinary  simple kriging (around the mean response) or ordinary
                         kriging (weights summing to one); default ordinary
  --kernel NAME          fit only this kernel, named as printed on the kernel line,
                         e.g. Gaussian, Spherical, "StudentT(1.000000000000)",
                         "Power(1.500)"; by default all 16 candidates are fitted and
                         the best that gives a usable covariance matrix is kept
  --variogram FILE.csv   also write the experimental variogram, one line per bin:
                         bin,distance,semivariance,pairs
  --help                 this text

Training rows with a missing response or feature value are left out. Prints
"kernel: NAME sill=S nugget=N range=R" for the trained kernel. Exit status 0 on
success, 1 when no kernel can be trained on the data, 2 for bad arguments or
unreadable files (with a one-line message on standard error).
)HELP";
}

std::optional<Arguments> ParseArguments(const std::vector<std::string>& args, std::string& error) {
  Arguments parsed;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& flag = args[i];
    if (flag == "--help" || flag == "-h") {
      parsed.help = true;
      return parsed;
    }
    std::string* target = nullptr;
    if (flag == "--train") target = &parsed.trainPath;
    if (flag == "--response") target = &parsed.responseName;
    if (flag == "--predict") target = &parsed.predictPath;
    if (flag == "--out") target = &parsed.outPath;
    if (flag == "--kernel") target = &parsed.kernelName;
    if (flag == "--variogram") target = &parsed.variogramPath;
    const bool known = target || flag == "--features" || flag == "--model";
    if (!known) {
      error = "unknown option " + flag + " (see --help)";
      return std::nullopt;
    }
    if (i + 1 >= args.size() || args[i + 1].empty()) {
      error = "option " + flag + " needs a value";
      return std::nullopt;
    }
    const std::string& value = args[++i];
    if (target) {
      *target = value;
    } else if (flag == "--features") {
      Corvane::ZqStringTokenize(parsed.features, value, ",", false);
      for (const std::string& name : parsed.features) {
        if (name.empty()) {
          error = "--features has an empty column name: " + value;
          return std::nullopt;
        }
      }
    } else if (value == "simple" || value == "ordinary") {
      parsed.simple = value == "simple";
    } else {
      error = "--model must be simple or ordinary, not " + value;
      return std::nullopt;
    }
  }
  const std::pair<const char*, const std::string*> required[] = {{"--train", &parsed.trainPath},
                                                                 {"--response", &parsed.responseName},
                                                                 {"--predict", &parsed.predictPath},
                                                                 {"--out", &parsed.outPath}};
  for (const auto& [flag, value] : required) {
    if (value->empty()) {
      error = std::string("missing ") + flag + " (see --help)";
      return std::nullopt;
    }
  }
  return parsed;
}

}  // namespace VarimoKrige
