#include "arguments.h"

#include <cstddef>

#include "varimo/platform/corvane/strings.h"

namespace VarimoKrige {

const char* HelpText() {
  return R"HELP(Usage: varimo-krige --train TRAIN.csv --response NAME --predict QUERY.csv --out PRED.csv
                    [--features A,B,...] [--model simple|ordinary|universal]
                    [--drift C1,C2,...] [--kernel NAME] [--variogram VARIOGRAM.csv]
                    [--local K [--predict-training] [--max-variogram-size M]]
                    [--quiet]

Kriges the rows of a CSV file (a header line of column names, then one line per
element) and predicts the rows of another.

  --train TRAIN.csv      training elements, one per row
  --response NAME        the numeric column of TRAIN.csv to learn
  --predict QUERY.csv    elements to predict; needs every feature and drift column
  --out PRED.csv         written with the header "row,prediction,variance" and one
                         line per row of QUERY.csv (row counted from 0), numbers
                         with 17 significant digits; a failed prediction (e.g. a
                         missing feature value) writes the model's error value
                         1.7976931348623157e+308
  --features A,B,...     the numeric columns that place an element (default: every
                         numeric column of TRAIN.csv but the response and the
                         drift columns); the distance is Euclidean over them,
                         summed in the order given
  --model simple|ordinary|universal  simple kriging (around the mean response),
                         ordinary kriging (weights summing to one) or universal
                         kriging (around a drift linear in the --drift columns);
                         default ordinary
  --drift C1,C2,...      with --model universal, and needed by it: the numeric
                         columns of the drift; they do not enter the distance
  --kernel NAME          fit only this kernel, named as printed on the kernel line,
                         e.g. Gaussian, Spherical, "StudentT(1.000000000000)",
                         "Power(1.500)"; by default all 16 candidates are fitted and
                         the best that gives a usable covariance matrix is kept
  --variogram FILE.csv   also write the experimental variogram, one line per bin:
                         bin,distance,semivariance,pairs (of the residuals of the
                         drift for universal kriging)
  --local K              predict each row from its K nearest training rows (K at
                         least 1) instead of all of them; the kernels are still
                         fitted to the variogram of the whole training set
  --predict-training     with --local: leave out neighbours at distance zero from
                         the row predicted, e.g. to predict the training rows
                         from the others
  --max-variogram-size M  with --local: above M pairs of training rows, build the
                         variogram from a random sample of about M pairs (default
                         500000)
  --quiet                no progress lines
  --help                 this text

Training rows with a missing response, feature or drift value are left out.
Prints "kernel: NAME sill=S nugget=N range=R" for the trained kernel. With more
than 300 rows in QUERY.csv, reports "varimo-krige: predicted N/TOTAL" on
standard error while predicting: in place on a terminal, otherwise one line per
tenth of the rows. Exit status 0 on success, 1 when no kernel can be trained on
the data, 2 for bad arguments or unreadable files (with a one-line message on
standard error).
)HELP";
}

namespace {

// A comma-separated list of column names into `names`; false, with `error`
// set, when a name is empty.
bool ParseNames(const std::string& flag, const std::string& value, std::vector<std::string>& names,
                std::string& error) {
  Corvane::ZqStringTokenize(names, value, ",", false);
  for (const std::string& name : names) {
    if (name.empty()) {
      error = flag + " has an empty column name: " + value;
      return false;
    }
  }
  return true;
}

// A whole number of at least 1 into `number`; false, with `error` set,
// otherwise.
bool ParseCount(const std::string& flag, const std::string& value, unsigned int& number, std::string& error) {
  if (Corvane::ZqStringToNumber(value, number) && number > 0) return true;
  error = flag + " must be a whole number of at least 1, not " + value;
  return false;
}

}  // namespace

std::optional<Arguments> ParseArguments(const std::vector<std::string>& args, std::string& error) {
  Arguments parsed;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& flag = args[i];
    if (flag == "--help" || flag == "-h") {
      parsed.help = true;
      return parsed;
    }
    if (flag == "--predict-training" || flag == "--quiet") {
      (flag == "--quiet" ? parsed.quiet : parsed.predictTraining) = true;
      continue;
    }
    std::string* target = nullptr;
    if (flag == "--train") target = &parsed.trainPath;
    if (flag == "--response") target = &parsed.responseName;
    if (flag == "--predict") target = &parsed.predictPath;
    if (flag == "--out") target = &parsed.outPath;
    if (flag == "--kernel") target = &parsed.kernelName;
    if (flag == "--variogram") target = &parsed.variogramPath;
    const bool known = target || flag == "--features" || flag == "--drift" || flag == "--model" ||
                       flag == "--local" || flag == "--max-variogram-size";
    if (!known) {
      error = "unknown option " + flag + " (see --help)";
      return std::nullopt;
    }
    if (i + 1 >= args.size() || args[i + 1].empty()) {
      error = "option " + flag + " needs a value";
      return std::nullopt;
    }
    const std::string& value = args[++i];
    bool valid = true;
    if (target) {
      *target = value;
    } else if (flag == "--features" || flag == "--drift") {
      valid = ParseNames(flag, value, flag == "--drift" ? parsed.drift : parsed.features, error);
    } else if (flag == "--local") {
      valid = ParseCount(flag, value, parsed.numLocal, error);
    } else if (flag == "--max-variogram-size") {
      unsigned int size = 0;
      valid = ParseCount(flag, value, size, error);
      parsed.maxVariogramSize = size;
    } else if (value == "simple" || value == "ordinary" || value == "universal") {
      parsed.simple = value == "simple";
      parsed.universal = value == "universal";
    } else {
      error = "--model must be simple, ordinary or universal, not " + value;
      valid = false;
    }
    if (!valid) return std::nullopt;
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
  // Options that would otherwise be silently ignored.
  std::string conflict;
  if (parsed.universal && parsed.drift.empty()) conflict = "--model universal needs --drift C1,C2,...";
  if (!parsed.universal && !parsed.drift.empty()) conflict = "--drift is only for --model universal";
  if (parsed.numLocal == 0 && parsed.predictTraining) conflict = "--predict-training is only for --local K";
  if (parsed.numLocal == 0 && parsed.maxVariogramSize) conflict = "--max-variogram-size is only for --local K";
  if (!conflict.empty()) {
    error = conflict;
    return std::nullopt;
  }
  return parsed;
}

}  // namespace VarimoKrige
