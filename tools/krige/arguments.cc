#include "arguments.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <cmath>
#include <fstream>

#include "varimo/platform/corvane/strings.h"

namespace VarimoKrige {

const char* HelpText() {
  return R"HELP(Usage: varimo-krige --train TRAIN.csv --response NAME --predict QUERY.csv --out PRED.csv
                    [--features A,B,...] [--model simple|ordinary|universal]
                    [--drift C1,C2,...] [--kernel NAME] [--fit variogram|likelihood]
                    [--metric euclidean|minmax] [--variogram VARIOGRAM.csv]
                    [--local K [--predict-training] [--max-variogram-size M]]
                    [--quiet]
       varimo-krige --train MOLS --response NAME --predict QUERY --out PRED.csv|PRED.sdf
                    [--contributions CONTRIB.csv] [--local K [--predict-training]
                    [--max-variogram-size M]] [--drift TAG,...] [--threshold T]
                    [--fallback-kernels] [--no-variance] [--variance kriging|full]
                    [--save MODEL.vkm] [--load MODEL.vkm] [--threads N] [--quiet]
                    [--report DIR [--report-format png|svg|pdf]]
                    [--interval ALPHA] [--domain] [--fit variogram|likelihood]
       varimo-krige cv --train MOLS --response NAME [--folds 5] [--seed S]
                    [--local K] [--drift TAG,...] [--threads N] [--calibration]
                    [--fit variogram|likelihood]
       varimo-krige select --train MOLS --response NAME --pool POOL --picks N
                    --out PICKS.csv|PICKS.sdf [--acquisition greedy|ucb|ei|pi|thompson]
                    [--batch believer|liar-min|liar-mean|liar-max|thompson]
                    [--kappa K] [--xi X] [--minimize] [--exclude-training]
                    [--allow-duplicates] [--candidates M] [--seed S] [--local K]
                    [--drift TAG,...] [--load MODEL.vkm] [--threads N]
                    [--fit variogram|likelihood]

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
                         summed in the order given, unless --metric minmax
  --metric euclidean|minmax  the distance over the features: Euclidean (the
                         default), or min-max for counts such as count
                         fingerprints, 1 - sum(min(a,b)) / sum(max(a,b)), one
                         minus the Tanimoto similarity on counts and on 0/1
                         bits; training rows with a negative feature are left
                         out, and query rows with one fail
  --model simple|ordinary|universal  simple kriging (around the mean response),
                         ordinary kriging (weights summing to one) or universal
                         kriging (around a drift linear in the --drift columns);
                         default ordinary
  --drift C1,C2,...      with --model universal, and needed by it: the numeric
                         columns of the drift; they do not enter the distance
  --kernel NAME          fit only this kernel, named as printed on the kernel line,
                         e.g. Gaussian, Spherical, "StudentT(1.000000000000)",
                         "Power(1.500)"; by default all 16 candidates are fitted
                         (with --fit likelihood, those that are covariances under
                         the distance) and the best that gives a usable
                         covariance matrix is kept
  --fit variogram|likelihood  how the kernels' parameters are found: by the least
                         squares fit of each candidate to the experimental
                         variogram (the default), or by the likelihood of the
                         training responses (each candidate's range of largest
                         likelihood, sill by generalised least squares, nugget
                         0; the candidates ranked by their likelihood); not
                         with --local. With few training elements the variogram
                         is noisy and its fit often picks too short a range;
                         the likelihood uses every pair at once. Without
                         --kernel its candidates are the kernels that are
                         covariances under the distance: Exponential,
                         "StudentT(0.500000000000)", "StudentT(1.000000000000)",
                         and under the Euclidean distance Gaussian and Cauchy
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

Molecules. When --train is a molecule file (MOLS: an SD file .sdf or .sdf.gz;
a SMILES file .smi, each line a SMILES, a name, then further columns, with an
optional header line starting "smiles" that names them; or a CSV file with a
"smiles" column, its name taken from a "name" or "id" column), the elements
are molecules and the distance is one minus the Tanimoto coefficient of their
Vsepr path fingerprints. The response and the drift are SD data fields (or
columns) of that name.
  --out PRED.csv         "row,name,prediction,variance,neighbours" per record of
                         QUERY (row: the record's number in QUERY from 0), every
                         record a row: one that cannot be read or predicted has
                         the error value 1.7976931348623157e+308 and no
                         neighbours; neighbours: the names of the three training
                         molecules of largest weight, separated by ';' (a ';' or
                         '\' in a name is escaped with '\'); with a local model a
                         last column "kernel" names the kernel of each row
  --out PRED.sdf         (or .sdf.gz) SD records instead: each query molecule with
                         its own data fields and "prediction", "std", "neighbours"
                         (a row without a prediction: the error value, and
                         "failure" with the reason; an unreadable record: an
                         empty molecule with its name)
  --threshold T          also the probability of a true value above T: a column
                         "P(>T)", or the SD field "P(above T)"
  --fallback-kernels     a query the model cannot predict is tried again with the
                         kernels its variogram (or with --fit likelihood, the
                         likelihood, over its candidates; all of them below a
                         --kernel that is not one) ranks below the model's (each
                         trained once, when first needed), until one predicts it;
                         a last column (or SD field) "kernel" names the kernel of
                         each row
  --no-variance          the prediction alone, "row,name,prediction" (SD: the
                         field "prediction"), for ranking a large library: a
                         global model skips the solve behind the variance and
                         the neighbours and predicts several times as fast; a
                         query whose variance would make it fail still gets its
                         prediction; not with --threshold, --contributions or
                         --report
  --variance kriging|full  the variance of the rows, their "std" and "P(>T)":
                         the kriging variance (the default), or the full one,
                         which adds the variance of estimating the mean and the
                         drift; far outside the drift's training range a
                         universal model extrapolates its drift while the
                         kriging variance stays at the sill, and only the full
                         variance grows. A query whose drift field lies outside
                         the range of the training records' values is named on
                         standard error either way
  --contributions FILE   "row,atom,contribution" for each heavy atom of each
                         query (atom: its index in the record from 0, explicit
                         hydrogens counted): how much the atom moves the
                         prediction away from the mean of the training responses
  --drift TAG,...        universal kriging around a drift linear in these fields
  --fit variogram|likelihood  as for CSV files; also for cv, select and the
                         cross-validation behind --interval
  --local K              as for CSV files, with --predict-training and
                         --max-variogram-size; prints "kernels: A, B, ..." (the
                         order each query tries them) instead of the kernel line
  --save MODEL.vkm       write the trained model (format described in the README)
  --load MODEL.vkm       read a saved model instead of --train and --response; it
                         brings its own --drift, --local and --fit
  --threads N            predict N queries at a time (1 to 1024); the same numbers
                         as one
  --report DIR           write one report image per query, DIR/ROW.png (ROW as
                         in PRED.csv; DIR made if missing): the molecule with
                         its atoms coloured by their contributions, the
                         predicted distribution and the training molecules of
                         largest weight; none for a row that fails, whose image
                         of an earlier run is removed
  --report-format png|svg|pdf  with --report: the images' format (default png)
  cv                     K-fold cross-validation (--folds K, default 5; records
                         shuffled with --seed S, default 1); ends with the lines
                         "RMSE x", "R2 x" and "coverage95 x" (the fraction of
                         held-out values within prediction +- 1.96 sqrt(variance));
                         R2 is nan, and said to be undefined, when fewer than two
                         predictions count or their measured values are equal
  --calibration          with cv: then "coverage50 x", "coverage80 x", "coverage90 x",
                         "miscalibration area x" (mean |coverage - level| over the
                         levels 0.05 to 0.95), "Spearman |error| sd x" and "NLPD x"
                         (mean negative log predictive density)
  --interval ALPHA       with --predict: columns (or SD fields) "lower" and "upper"
                         of a conformal interval that misses with probability
                         ALPHA (0.1 for 90 %), calibrated on the residuals of a
                         cross-validation of the training set (--folds, --seed)
  --domain               with --predict: columns (or SD fields) "nearest_similarity"
                         (of the nearest training molecule) and "in_domain" (1 when
                         that molecule is as near as 95 % of the training molecules
                         are to their own nearest other one, else 0)
  select                 the next N molecules to make from POOL (any molecule file
                         --predict reads): "rank,row,name,prediction,sd,acquisition"
                         in pick order (row: the record's number in POOL from 0),
                         or with PICKS.sdf (POOL an SD file) the picked records
                         with those fields. Without --batch, the top N by the
                         acquisition (default ei: expected improvement over the
                         best training response by at least --xi, default 0; ucb:
                         mean + K sd, --kappa default 2; pi: probability of
                         improvement; greedy: the mean; --minimize for the
                         smallest response). --batch believer or liar-*: each pick
                         is taken in as if measured at its prediction (or the
                         min, mean or max training response) before the next.
                         --batch thompson: each pick the best of one joint
                         posterior draw over the --candidates M (default 2000)
                         members of largest ucb, deterministic under --seed.
                         Picks never repeat; two identical molecules are not both
                         picked unless --allow-duplicates; --exclude-training
                         leaves out molecules equal to a training molecule
The query file is read, predicted and written a chunk of records at a time, so
files of any size take little memory. A row that cannot be predicted is named on
standard error with its row, its name and the reason, and the run ends with one
line counting them. Records that cannot be read: control bytes, a field more than
a SMILES file's header names, an SD record without its "$$$$" line (it and the
next are named), more than 1000 atoms. Training records that cannot be read, or
lack a numeric response, are left out with a message naming the record (counted
from 1). Outputs are written whole or not at all: to a scratch file beside each,
renamed into place when the run succeeds; an output that is also an input or
another output is refused.

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
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (names[k].empty()) {
      error = flag + " has an empty column name: " + value;
      return false;
    }
    if (std::find(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(k), names[k]) !=
        names.begin() + static_cast<std::ptrdiff_t>(k)) {
      error = flag + " names " + names[k] + " twice";
      return false;
    }
  }
  return true;
}

constexpr const char* kLikelihoodIsGlobal = "--fit likelihood is for global models, not --local K";

bool AllDigits(const std::string& value) {
  return !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

// A whole number from `least` to `most` into `number`; false, with `error`
// set, otherwise: too large a number is said to be too large, not to be no
// number.
bool ParseCount(const std::string& flag, const std::string& value, unsigned int& number, std::string& error,
                unsigned int least, unsigned int most) {
  if (Corvane::ZqStringToNumber(value, number) && number >= least && number <= most) return true;
  const std::string range = "from " + std::to_string(least) + " to " + std::to_string(most);
  error = flag + " must be a whole number " + range + ", not " + value;
  if (AllDigits(value) && !(Corvane::ZqStringToNumber(value, number) && number < least)) {
    error = flag + " " + value + " is too large: it must be " + range;
  }
  return false;
}

bool IsMoleculeFile(const std::string& path) {
  std::string lower = path;
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  auto endsWith = [&](const std::string& suffix) {
    return lower.size() >= suffix.size() && lower.compare(lower.size() - suffix.size(), suffix.size(), suffix) == 0;
  };
  if (endsWith(".sdf") || endsWith(".sdf.gz") || endsWith(".smi") || endsWith(".smi.gz")) return true;
  if (!endsWith(".csv")) return false;
  std::ifstream in(path);
  std::string header;
  std::getline(in, header);
  std::vector<std::string> names;
  Corvane::ZqStringTokenizeQuoted(names, header, ",", "\"", false);
  for (std::string& name : names) {
    name = Corvane::ZqStringStripWhiteSpace(name);
    if (Corvane::ZqStringUpper(name) == "SMILES") return true;
  }
  return false;
}

namespace {

// What the arguments are missing or combine wrongly, for molecule files;
// empty when nothing.
std::string MoleculeConflict(const Arguments& parsed) {
  if (!parsed.features.empty()) return "--features is only for CSV files of numbers";
  if (parsed.simple) return "--model simple is only for CSV files of numbers";
  if (!parsed.kernelName.empty()) return "--kernel is only for CSV files of numbers";
  if (!parsed.variogramPath.empty()) return "--variogram is only for CSV files of numbers";
  if (parsed.universal && parsed.drift.empty()) return "--model universal needs --drift TAG,...";
  if (parsed.numLocal == 0 && parsed.predictTraining) return "--predict-training is only for --local K";
  if (parsed.numLocal == 0 && parsed.maxVariogramSize) return "--max-variogram-size is only for --local K";
  if (parsed.numLocal > 0 && parsed.fit == "likelihood") return kLikelihoodIsGlobal;
  if (!parsed.loadPath.empty() && !parsed.fit.empty()) return "--load takes the model's own --fit";
  if (!parsed.loadPath.empty() && parsed.select && (!parsed.drift.empty() || parsed.numLocal > 0)) {
    return "--load takes the model's own --drift and --local";
  }
  if (std::string choice = ChoiceConflict(parsed); !choice.empty() || parsed.select) return choice;
  if (parsed.crossValidate) {
    if (parsed.trainPath.empty()) return "missing --train (see --help)";
    if (parsed.responseName.empty()) return "missing --response (see --help)";
    if (!parsed.predictPath.empty() || !parsed.outPath.empty() || !parsed.savePath.empty() ||
        !parsed.loadPath.empty() || !parsed.contributionsPath.empty()) {
      return "cv takes no --predict, --out, --contributions, --save or --load";
    }
    if (!parsed.reportDir.empty() || !parsed.reportFormat.empty()) return "cv takes no --report or --report-format";
    if (parsed.threshold || parsed.fallbackKernels || parsed.noVariance || parsed.fullVariance) {
      return "cv takes no --threshold, --fallback-kernels, --no-variance or --variance";
    }
    return {};
  }
  if (!parsed.reportFormat.empty() && parsed.reportDir.empty()) return "--report-format needs --report DIR";
  if (parsed.noVariance && (parsed.threshold || !parsed.contributionsPath.empty() || !parsed.reportDir.empty() ||
                            parsed.fullVariance)) {
    return "--no-variance leaves out what --threshold, --contributions, --report and --variance need";
  }
  if (!parsed.loadPath.empty()) {
    if (!parsed.trainPath.empty() || !parsed.responseName.empty()) {
      return "--load replaces --train and --response";
    }
    if (!parsed.drift.empty() || parsed.numLocal > 0) return "--load takes the model's own --drift and --local";
    if (parsed.predictTraining || parsed.maxVariogramSize) {
      return "--load takes the model's own --predict-training and --max-variogram-size";
    }
  } else {
    if (parsed.trainPath.empty()) return "missing --train (see --help)";
    if (parsed.responseName.empty()) return "missing --response (see --help)";
  }
  // Training only, to save the model, needs no query.
  if (parsed.predictPath.empty() && parsed.outPath.empty() && !parsed.savePath.empty()) {
    if (!parsed.contributionsPath.empty()) return "--contributions needs --predict";
    if (!parsed.reportDir.empty()) return "--report needs --predict";
    if (parsed.threshold) return "--threshold needs --predict";
    return {};
  }
  if (parsed.predictPath.empty()) return "missing --predict (see --help)";
  if (parsed.outPath.empty()) return "missing --out (see --help)";
  return {};
}

}  // namespace

std::optional<Arguments> ParseArguments(const std::vector<std::string>& args, std::string& error) {
  Arguments parsed;
  std::size_t first = 0;
  if (!args.empty() && (args.front() == "cv" || args.front() == "select")) {
    (args.front() == "cv" ? parsed.crossValidate : parsed.select) = true;
    first = 1;
  }
  for (std::size_t i = first; i < args.size(); ++i) {
    const std::string& flag = args[i];
    if (flag == "--help" || flag == "-h") {
      parsed.help = true;
      return parsed;
    }
    if (const ChoiceFlag choice = ParseChoiceFlag(args, i, parsed, error); choice != ChoiceFlag::NotOurs) {
      if (choice == ChoiceFlag::Invalid) return std::nullopt;
      continue;
    }
    if (flag == "--predict-training" || flag == "--quiet" || flag == "--fallback-kernels" || flag == "--no-variance") {
      (flag == "--quiet"              ? parsed.quiet
       : flag == "--fallback-kernels" ? parsed.fallbackKernels
       : flag == "--no-variance"      ? parsed.noVariance
                                      : parsed.predictTraining) = true;
      continue;
    }
    std::string* target = nullptr;
    if (flag == "--train") target = &parsed.trainPath;
    if (flag == "--response") target = &parsed.responseName;
    if (flag == "--predict") target = &parsed.predictPath;
    if (flag == "--out") target = &parsed.outPath;
    if (flag == "--kernel") target = &parsed.kernelName;
    if (flag == "--variogram") target = &parsed.variogramPath;
    if (flag == "--contributions") target = &parsed.contributionsPath;
    if (flag == "--save") target = &parsed.savePath;
    if (flag == "--load") target = &parsed.loadPath;
    if (flag == "--report") target = &parsed.reportDir;
    const bool known = target || flag == "--features" || flag == "--drift" || flag == "--model" ||
                       flag == "--local" || flag == "--max-variogram-size" || flag == "--threads" ||
                       flag == "--folds" || flag == "--seed" || flag == "--report-format" || flag == "--threshold" ||
                       flag == "--variance" || flag == "--fit" || flag == "--metric";
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
    } else if (flag == "--threads") {
      valid = ParseCount(flag, value, parsed.threads, error, 1, kMaxThreads);
    } else if (flag == "--folds") {
      valid = ParseCount(flag, value, parsed.folds, error, 2);
    } else if (flag == "--seed") {
      valid = ParseCount(flag, value, parsed.seed, error, 0);
    } else if (flag == "--threshold") {
      double threshold = 0.0;
      valid = Corvane::ZqStringToNumber(value, threshold) && std::isfinite(threshold);
      if (valid) {
        parsed.threshold = threshold;
        parsed.thresholdText = value;
      } else {
        error = "--threshold must be a number, not " + value;
      }
    } else if (flag == "--max-variogram-size") {
      unsigned int size = 0;
      valid = ParseCount(flag, value, size, error);
      parsed.maxVariogramSize = size;
    } else if (flag == "--variance") {
      parsed.fullVariance = value == "full";
      valid = value == "kriging" || value == "full";
      if (!valid) error = "--variance must be kriging or full, not " + value;
    } else if (flag == "--fit") {
      parsed.fit = value;
      valid = value == "variogram" || value == "likelihood";
      if (!valid) error = "--fit must be variogram or likelihood, not " + value;
    } else if (flag == "--metric") {
      parsed.minMax = value == "minmax";
      parsed.metricGiven = true;
      valid = value == "euclidean" || value == "minmax";
      if (!valid) error = "--metric must be euclidean or minmax, not " + value;
    } else if (flag == "--report-format") {
      parsed.reportFormat = value;
      valid = value == "png" || value == "svg" || value == "pdf";
      if (!valid) error = "--report-format must be png, svg or pdf, not " + value;
    } else if (value == "simple" || value == "ordinary" || value == "universal") {
      parsed.simple = value == "simple";
      parsed.universal = value == "universal";
    } else {
      error = "--model must be simple, ordinary or universal, not " + value;
      valid = false;
    }
    if (!valid) return std::nullopt;
  }
  parsed.molecules =
      parsed.crossValidate || parsed.select || !parsed.loadPath.empty() || IsMoleculeFile(parsed.trainPath);
  if (parsed.molecules && parsed.metricGiven) {
    error = "--metric is only for CSV files of numbers; molecules are compared by their fingerprints";
    return std::nullopt;
  }
  if (parsed.molecules) {
    error = MoleculeConflict(parsed);
    if (!error.empty()) return std::nullopt;
    return parsed;
  }
  if (!parsed.contributionsPath.empty() || !parsed.savePath.empty() || parsed.threads != 1 || parsed.threshold ||
      parsed.fallbackKernels || parsed.noVariance || parsed.fullVariance) {
    error = "--contributions, --save, --threads, --threshold, --fallback-kernels, --no-variance and --variance full "
            "are only for molecule files (see --help)";
    return std::nullopt;
  }
  if (!parsed.reportDir.empty() || !parsed.reportFormat.empty()) {
    error = "--report and --report-format are only for molecule files (see --help)";
    return std::nullopt;
  }
  if (AnyChoiceFlag(parsed)) {
    error = "select, --interval, --domain and --calibration are only for molecule files (see --help)";
    return std::nullopt;
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
  if (parsed.numLocal > 0 && parsed.fit == "likelihood") conflict = kLikelihoodIsGlobal;
  if (!conflict.empty()) {
    error = conflict;
    return std::nullopt;
  }
  return parsed;
}

}  // namespace VarimoKrige
