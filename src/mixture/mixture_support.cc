#include "mixture_support.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <iomanip>
#include <sstream>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;

}  // namespace

std::vector<ZqGaussMixParam> FillMixtureProbParams(const std::vector<double>& coefficients) {
  double sum = 0.0;
  for (const double c : coefficients) sum += c;
  std::vector<ZqGaussMixParam> params;
  params.reserve(coefficients.size());
  for (const double c : coefficients) {
    params.emplace_back(T::DirichletMixingProbability, "Bayes Dirichlet Mixing Probs",
                        std::vector<std::string>{"Dirichlet Coeff", "Sum Of Dirichlet Coeffs"},
                        std::vector<double>{c, sum});
  }
  return params;
}

std::vector<ZqGaussMixParam> FillComponentGaussGammaParams(const std::vector<double>& means,
                                                           const std::vector<double>& precisions) {
  std::vector<ZqGaussMixParam> params;
  params.reserve(means.size());
  for (std::size_t i = 0; i < means.size() && i < precisions.size(); ++i) {
    params.emplace_back(T::GaussGammaParams, "Bayes One Dim Gauss-Gamma Params",
                        std::vector<std::string>{"Gauss-Gamma Mean", "Gauss-Gamma Precision Multiplier",
                                                 "Gauss-Gamma Precision Alpha", "Gauss-Gamma Precision Beta"},
                        std::vector<double>{means[i], 1.0, 1.0, 1.0 / precisions[i]});
  }
  return params;
}

void SliceCenterAndScale(const std::vector<double>& sorted, std::size_t lo, std::size_t hi, double& center,
                         double& scale) {
  center = 0.0;
  scale = 1.0;
  if (hi > sorted.size()) hi = sorted.size();
  if (lo >= hi) return;
  const std::vector<double> slice(sorted.begin() + static_cast<long>(lo), sorted.begin() + static_cast<long>(hi));
  if (slice.size() == 1) {
    center = slice[0];
    return;
  }
  double c = kBad, s = kBad;
  ZqGetCenterAndScale(c, s, true, slice);
  center = c;
  // Below four values the quartiles of type 8 still exist, though the
  // statistic declines them.
  scale = s != kBad ? s : (ZqQuantile(0.75, slice, 8) - ZqQuantile(0.25, slice, 8)) / 1.34898;
}

ZqStatModelResult GetComponentParamsForStudentsTPredictiveDist(const ZqOneDimGaussMixComponent& component,
                                                               double& probability, double& degreesOfFreedom,
                                                               double& location, double& precision) {
  const char* routine = "GetComponentParamsForStudentsTPredictiveDist";
  ZqStatModelResult result;
  probability = GetExpectedComponentProbability(result, component.GetComponentProbParams());
  double m = 0.0, k = 0.0, a = 0.0, b = 0.0;
  if (result.IsSuccessful()) result = component.GetBayesPosteriorGaussParams(m, k, a, b);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  degreesOfFreedom = 2.0 * a;
  location = m;
  precision = (k / (1.0 + k)) * (a / b);
  if (!(precision > 0.0)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, routine,
                              Corvane::ZqMakeString("gaussGammaMean, precMultiplier, alpha, beta = ", m, " ", k, " ",
                                                    a, " ", b));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult ZqRunFitLoop(ZqOneDimGaussMixModel& model, std::size_t numComponents, double fitnessTol,
                               double paramTol, std::size_t maxCycles, ZqFitLoopOutcome& outcome) {
  std::vector<double> newParams(5 * numComponents, 0.0);
  std::vector<double> oldParams(5 * numComponents, -3.4028234663852886e38);
  double prevFitness = 0.0;
  outcome = ZqFitLoopOutcome();
  std::size_t cycle = 0;
  for (; cycle < maxCycles; ++cycle) {
    oldParams = newParams;
    ZqStatModelResult result = model.DoOneEMCycle();
    double fitness = kBad;
    if (result.IsSuccessful()) fitness = model.GetModelFitness(result);
    if (result.NotSuccessful()) return result;
    // A bound that is not a number never settles: data with NaN, or all
    // equal (an infinite precision), end the fit here rather than after
    // maxCycles cycles.
    if (std::isnan(fitness)) {
      return ZqMakeFailedResult(ZqStatModelFailureType::InternalLogicFailure, "ZqRunFitLoop",
                                Corvane::ZqMakeString("Lower bound is not a number at cycle ", cycle));
    }
    model.GetModelParams(newParams);
    double paramDiff = 0.0;
    for (std::size_t i = 0; i < newParams.size() && i < oldParams.size(); ++i) {
      paramDiff = std::max(paramDiff, std::fabs(newParams[i] - oldParams[i]) / std::fabs(newParams[i] + 1e-5));
    }
    const double fitnessDiff = fitness - prevFitness;
    outcome.fitness = fitness;
    outcome.fitnessDiff = fitnessDiff;
    outcome.paramDiff = paramDiff;
    if (cycle != 0 && cycle % 100 == 0) {
      std::ostringstream line;
      line << "* ";
      if (cycle % 500 == 0) line << fitnessDiff << " " << paramDiff << " " << std::setprecision(9) << fitness << "\n";
      Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
    }
    if (fitnessTol > std::fabs(fitnessDiff) && paramTol > paramDiff && cycle < maxCycles) {
      outcome.converged = true;
      break;
    }
    prevFitness = fitness;
  }
  outcome.cycles = cycle;
  return ZqStatModelResult(true);
}

ZqFitTimer::ZqFitTimer()
    : cpuStart_(static_cast<long>(std::clock())),
      wallStart_(static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(
                                       std::chrono::steady_clock::now().time_since_epoch())
                                       .count())) {}

double ZqFitTimer::Seconds() const {
  const long wall = static_cast<long>(
                        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now().time_since_epoch())
                            .count()) -
                    wallStart_;
  if (wall >= 2148) return static_cast<double>(wall);
  return static_cast<double>(static_cast<long>(std::clock()) - cpuStart_) / CLOCKS_PER_SEC;
}

void ZqRescaleToSumOne(std::vector<double>& probabilities, double sum) {
  for (double& p : probabilities) p /= sum;
}

std::vector<double> ZqModelProbabilities(const std::vector<double>& fitnesses, double bestFitness) {
  std::vector<double> probs;
  double sum = 0.0;
  for (const double f : fitnesses) {
    probs.push_back(std::exp(f - bestFitness));
    sum += probs.back();
  }
  for (double& p : probs) p /= sum;
  return probs;
}

}  // namespace Varimo
