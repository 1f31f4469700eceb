#include "choice_arguments.h"

#include <cmath>

#include "arguments.h"
#include "varimo/krige/acquisition.h"
#include "varimo/krige/batch_selection.h"
#include "varimo/krige/calibration.h"
#include "varimo/platform/corvane/strings.h"

namespace VarimoKrige {
namespace {

bool ParseNumber(const std::string& flag, const std::string& value, std::optional<double>& number,
                 std::string& error) {
  double parsed = 0.0;
  if (Corvane::ZqStringToNumber(value, parsed) && std::isfinite(parsed)) {
    number = parsed;
    return true;
  }
  error = flag + " must be a number, not " + value;
  return false;
}

}  // namespace

bool ChoiceArguments::AnySelectFlag() const {
  return !poolPath.empty() || picks > 0 || !acquisition.empty() || !batch.empty() || kappa || xi || candidates ||
         minimize || excludeTraining || allowDuplicates;
}

ChoiceFlag ParseChoiceFlag(const std::vector<std::string>& args, std::size_t& i, Arguments& parsed,
                           std::string& error) {
  ChoiceArguments& choice = parsed.choice;
  const std::string& flag = args[i];
  bool* toggle = flag == "--minimize"           ? &choice.minimize
                 : flag == "--exclude-training" ? &choice.excludeTraining
                 : flag == "--allow-duplicates" ? &choice.allowDuplicates
                 : flag == "--domain"           ? &choice.domain
                 : flag == "--calibration"      ? &choice.calibration
                                                : nullptr;
  if (toggle) {
    *toggle = true;
    return ChoiceFlag::Taken;
  }
  const bool valued = flag == "--pool" || flag == "--picks" || flag == "--acquisition" || flag == "--batch" ||
                      flag == "--kappa" || flag == "--xi" || flag == "--candidates" || flag == "--interval";
  if (!valued) return ChoiceFlag::NotOurs;
  if (i + 1 >= args.size() || args[i + 1].empty()) {
    error = "option " + flag + " needs a value";
    return ChoiceFlag::Invalid;
  }
  const std::string& value = args[++i];
  bool valid = true;
  if (flag == "--pool") {
    choice.poolPath = value;
  } else if (flag == "--picks") {
    valid = ParseCount(flag, value, choice.picks, error);
  } else if (flag == "--candidates") {
    unsigned int candidates = 0;
    valid = ParseCount(flag, value, candidates, error);
    choice.candidates = candidates;
  } else if (flag == "--acquisition") {
    choice.acquisition = value;
    valid = Varimo::ZqAcquisitionKindNamed(value).has_value();
    if (!valid) error = "--acquisition must be greedy, ucb, ei, pi or thompson, not " + value;
  } else if (flag == "--batch") {
    choice.batch = value;
    valid = value != "top" && Varimo::ZqBatchKindNamed(value).has_value();
    if (!valid) error = "--batch must be believer, liar-min, liar-mean, liar-max or thompson, not " + value;
  } else if (flag == "--kappa" || flag == "--xi") {
    std::optional<double>& number = flag == "--kappa" ? choice.kappa : choice.xi;
    valid = ParseNumber(flag, value, number, error);
    if (valid && *number < 0.0) {
      error = flag + " must be at least 0, not " + value;
      valid = false;
    }
  } else {
    valid = ParseNumber(flag, value, choice.intervalAlpha, error);
    if (valid && !Varimo::ZqCheckIntervalAlpha(*choice.intervalAlpha).empty()) {
      error = "--interval ALPHA must lie strictly between 0 and 1 (0.1 for 90 % intervals), not " + value;
      valid = false;
    }
  }
  return valid ? ChoiceFlag::Taken : ChoiceFlag::Invalid;
}

bool AnyChoiceFlag(const Arguments& parsed) {
  const ChoiceArguments& c = parsed.choice;
  return c.AnySelectFlag() || c.intervalAlpha || c.domain || c.calibration;
}

std::string ChoiceConflict(const Arguments& parsed) {
  const ChoiceArguments& c = parsed.choice;
  if (!parsed.select) {
    if (c.AnySelectFlag()) return "--pool, --picks and the other options of choosing are only for select (see --help)";
    if (parsed.crossValidate && (c.intervalAlpha || c.domain)) return "cv takes no --interval or --domain";
    if (!parsed.crossValidate && c.calibration) return "--calibration is only for cv";
    if ((c.intervalAlpha || c.domain) && parsed.predictPath.empty()) return "--interval and --domain need --predict";
    if ((c.intervalAlpha || c.domain) && parsed.noVariance) {
      return "--interval and --domain need the full prediction that --no-variance leaves out";
    }
    if (c.intervalAlpha && parsed.fullVariance) return "--interval is calibrated on the kriging variance, not --variance full";
    return {};
  }
  if (parsed.loadPath.empty()) {
    if (parsed.trainPath.empty()) return "missing --train (see --help)";
    if (parsed.responseName.empty()) return "missing --response (see --help)";
  }
  if (c.poolPath.empty()) return "missing --pool (see --help)";
  if (c.picks == 0) return "missing --picks (see --help)";
  if (parsed.outPath.empty()) return "missing --out (see --help)";
  if (!parsed.predictPath.empty() || !parsed.contributionsPath.empty() || !parsed.savePath.empty() ||
      !parsed.reportDir.empty() || !parsed.reportFormat.empty() || parsed.threshold || parsed.fallbackKernels) {
    return "select takes no --predict, --contributions, --save, --report, --threshold or --fallback-kernels";
  }
  if (parsed.noVariance || parsed.fullVariance) return "select takes no --no-variance or --variance";
  if (c.intervalAlpha || c.domain || c.calibration) return "select takes no --interval, --domain or --calibration";
  const std::string acquisition = !c.acquisition.empty() ? c.acquisition : c.batch == "thompson" ? "thompson" : "ei";
  if (c.batch == "thompson" && acquisition != "thompson") {
    return "--batch thompson draws from the posterior: it takes no --acquisition " + c.acquisition;
  }
  if (c.acquisition == "thompson" && !c.batch.empty() && c.batch != "thompson") {
    return "--acquisition thompson is a joint draw: it goes with no --batch or --batch thompson";
  }
  if (c.kappa && acquisition != "ucb" && acquisition != "thompson") {
    return "--kappa is only for --acquisition ucb and Thompson sampling";
  }
  if (c.xi && acquisition != "ei" && acquisition != "pi") {
    return "--xi is only for --acquisition ei and pi";
  }
  return {};
}

}  // namespace VarimoKrige
