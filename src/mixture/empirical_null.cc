#include "varimo/mixture/empirical_null.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

#include "mixture_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kSumTolerance = 1.1920928955078125e-7;
constexpr std::size_t kNoCount = std::numeric_limits<std::size_t>::max();

// The index bound of a fraction of n sorted values: past the end for a
// fraction above one.
std::size_t Bound(double fraction, std::size_t n) {
  if (fraction > 1.0) return n;
  return static_cast<std::size_t>(std::llround(fraction * static_cast<double>(n)));
}

// The centre and precision of each component's slice: the null components
// share the lowest nullFraction of the sorted data, the alternative ones
// the rest.
void FillMeanAndPrecisionVectors(std::vector<double>& means, std::vector<double>& precisions, std::size_t numNull,
                                 std::size_t numAlt, double nullFraction, const std::vector<double>& data) {
  std::vector<double> sorted = data;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t n = sorted.size();
  auto add = [&](double loFraction, double hiFraction) {
    double center = 0.0, scale = 1.0;
    SliceCenterAndScale(sorted, Bound(std::max(0.0, loFraction), n), Bound(hiFraction, n), center, scale);
    means.push_back(center);
    precisions.push_back(1.0 / (scale * scale));
  };
  for (std::size_t i = 0; i < numNull; ++i) {
    add(static_cast<double>(i) * nullFraction / static_cast<double>(numNull),
        static_cast<double>(i + 1) * nullFraction / static_cast<double>(numNull));
  }
  const double f = 1.0 - nullFraction;
  for (std::size_t j = 0; j < numAlt; ++j) {
    add(static_cast<double>(j) * f / static_cast<double>(numAlt) + nullFraction,
        static_cast<double>(j + 1) * f / static_cast<double>(numAlt) + nullFraction);
  }
}

bool Constructible(std::size_t numNull, std::size_t numAlt, const std::vector<double>& coefficients) {
  return numNull != 0 && numAlt != 0 && numNull + numAlt == coefficients.size();
}

std::size_t Count(bool valid, std::size_t count, ZqStatModelResult& result, const char* routine) {
  if (!valid) {
    result = ZqMakeFailedResult(F::ObjectNotValid, routine);
    return kNoCount;
  }
  result = true;
  return count;
}

// The sum of the expected probabilities of `count` components from `first`.
double GroupProbability(bool valid, const ZqOneDimGaussMixModel& model, std::size_t first, std::size_t count,
                        ZqStatModelResult& result, const char* routine) {
  if (!valid) {
    result = ZqMakeFailedResult(F::ObjectNotValid, routine);
    return kBad;
  }
  const std::vector<ZqOneDimGaussMixComponent>& components = model.Components();
  if (components.size() < first + count) {
    result = ZqMakeFailedResult(F::InternalLogicFailure, routine,
                                Corvane::ZqMakeString("Components: ", components.size(), "; wanted ", first + count));
    return kBad;
  }
  double sum = 0.0;
  for (std::size_t k = first; k < first + count; ++k) {
    sum += GetExpectedComponentProbability(result, components[k].GetComponentProbParams());
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kBad;
    }
  }
  result = true;
  return sum;
}

ZqStatModelResult ModelParams(const ZqOneDimGaussMixModel& model, std::vector<double>& vals, const char* routine) {
  model.GetModelParams(vals);
  const std::size_t k = model.Components().size();
  if (vals.size() != 3 * k && vals.size() != 5 * k) {
    return ZqMakeFailedResult(F::InternalLogicFailure, routine,
                              Corvane::ZqMakeString(vals.size(), " values for ", k, " components"));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult GetComponentParamsForGaussPredictiveDist(const ZqOneDimGaussMixComponent& component,
                                                           double& probability, double& mean, double& variance) {
  const char* routine = "GetComponentParamsForGaussPredictiveDist";
  ZqStatModelResult result;
  probability = GetExpectedComponentProbability(result, component.GetComponentProbParams());
  double precision = 0.0;
  if (result.IsSuccessful()) result = component.GetFrequentistGaussParams(mean, precision);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (!(precision > 0.0)) {
    return ZqMakeFailedResult(F::SingularScaleOrCovariance, routine,
                              Corvane::ZqMakeString("mean, precision = ", mean, " ", precision));
  }
  variance = 1.0 / precision;
  return ZqStatModelResult(true);
}

// Refuses probabilities that, renormalised within their group, do not sum
// to one.
bool SumsToOne(double sum, ZqStatModelResult& result, const char* routine) {
  if (std::fabs(sum - 1.0) <= kSumTolerance) return true;
  result = ZqMakeFailedResult(F::UpperBoundViolated, routine, "probs sum to different than one! ");
  result.AddExtraComment(Corvane::ZqMakeString("sum probs = ", sum));
  return false;
}

}  // namespace

// ------------------------------------------------------------ fixed-point Gaussian components

DirGaussMixForEmpiricalNullAlt::DirGaussMixForEmpiricalNullAlt(double nullFraction, std::size_t numNull,
                                                               std::size_t numAlt, const std::string& name,
                                                               const std::vector<double>& dirichletCoeffs,
                                                               const std::vector<double>& data)
    : nullFraction_(nullFraction), numNullComponents_(numNull), numAltComponents_(numAlt), variableName_(name) {
  if (!Constructible(numNull, numAlt, dirichletCoeffs)) return;
  std::vector<double> means, precisions;
  FillMeanAndPrecisionVectors(means, precisions, numNull, numAlt, nullFraction, data);
  std::vector<ZqGaussMixParam> gauss;
  for (std::size_t k = 0; k < means.size(); ++k) {
    gauss.emplace_back(T::FixedGaussParams, "Frequentist One Dim Gauss Params",
                       std::vector<std::string>{"Gaussian Mean", "Gaussian Precision"},
                       std::vector<double>{means[k], precisions[k]});
  }
  model_ = ZqOneDimGaussMixModel(name, FillMixtureProbParams(dirichletCoeffs), gauss, data);
  valid_ = model_.Valid();
}

std::size_t DirGaussMixForEmpiricalNullAlt::GetNumNullComponents(ZqStatModelResult& result) const {
  return Count(valid_, numNullComponents_, result, "DirGaussMixForEmpiricalNullAlt::GetNumNullComponents");
}

std::size_t DirGaussMixForEmpiricalNullAlt::GetNumAltComponents(ZqStatModelResult& result) const {
  return Count(valid_, numAltComponents_, result, "DirGaussMixForEmpiricalNullAlt::GetNumAltComponents");
}

ZqStatModelResult DirGaussMixForEmpiricalNullAlt::FitModel(std::size_t numCycles) {
  const char* routine = "DirGaussMixForEmpiricalNullAlt::FitModel";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  for (std::size_t cycle = 0; cycle < numCycles; ++cycle) {
    ZqStatModelResult result = model_.DoOneEMCycle();
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
  }
  return ZqStatModelResult(true);
}

double DirGaussMixForEmpiricalNullAlt::GetExpectedProbNull(ZqStatModelResult& result) const {
  return GroupProbability(valid_, model_, 0, numNullComponents_, result,
                          "DirGaussMixForEmpiricalNullAlt::GetExpectedProbNull");
}

double DirGaussMixForEmpiricalNullAlt::GetExpectedProbAlt(ZqStatModelResult& result) const {
  return GroupProbability(valid_, model_, numNullComponents_, numAltComponents_, result,
                          "DirGaussMixForEmpiricalNullAlt::GetExpectedProbAlt");
}

ZqStatModelResult DirGaussMixForEmpiricalNullAlt::GetModelParams(std::vector<double>& vals) const {
  return ModelParams(model_, vals, "DirGaussMixForEmpiricalNullAlt::GetModelParams");
}

ZqUniVarPDF DirGaussMixForEmpiricalNullAlt::Predictive(std::size_t first, std::size_t count, double groupProbability,
                                                       bool, ZqStatModelResult& result, const char* routine) const {
  std::vector<double> probs, means, variances;
  double sum = 0.0;
  for (std::size_t k = first; k < first + count; ++k) {
    double p = 0.0, mean = 0.0, variance = 0.0;
    result = GetComponentParamsForGaussPredictiveDist(model_.Components()[k], p, mean, variance);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return ZqUniVarNullPDF(variableName_);
    }
    probs.push_back(p / groupProbability);
    means.push_back(mean);
    variances.push_back(variance);
    sum += probs.back();
  }
  if (!SumsToOne(sum, result, routine)) return ZqUniVarNullPDF(variableName_);
  ZqRescaleToSumOne(probs, sum);
  return ZqUnivariateGaussMixture(variableName_, probs, means, variances, result);
}

ZqUniVarPDF DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveNullDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveNullDist";
  const double p = GetExpectedProbNull(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(0, numNullComponents_, p, false, result, routine);
}

ZqUniVarPDF DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveAltDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveAltDist";
  const double p = GetExpectedProbAlt(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(numNullComponents_, numAltComponents_, p, false, result, routine);
}

ZqUniVarPDF DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveTotDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussMixForEmpiricalNullAlt::GetPosteriorPredictiveTotDist";
  const double pNull = GetExpectedProbNull(result);
  double pAlt = kBad;
  if (result.IsSuccessful()) pAlt = GetExpectedProbAlt(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(0, numNullComponents_ + numAltComponents_, pNull + pAlt, true, result, routine);
}

// ------------------------------------------------------------ Gauss-Gamma components

DirGaussGammaMixForEmpiricalNullAlt::DirGaussGammaMixForEmpiricalNullAlt(double nullFraction, std::size_t numNull,
                                                                         std::size_t numAlt, const std::string& name,
                                                                         const std::vector<double>& dirichletCoeffs,
                                                                         const std::vector<double>& data)
    : nullFraction_(nullFraction), numNullComponents_(numNull), numAltComponents_(numAlt), variableName_(name) {
  if (!Constructible(numNull, numAlt, dirichletCoeffs)) return;
  std::vector<double> means, precisions;
  FillMeanAndPrecisionVectors(means, precisions, numNull, numAlt, nullFraction, data);
  model_ = ZqOneDimGaussMixModel(name, FillMixtureProbParams(dirichletCoeffs),
                                 FillComponentGaussGammaParams(means, precisions), data);
  valid_ = model_.Valid();
}

std::size_t DirGaussGammaMixForEmpiricalNullAlt::GetNumNullComponents(ZqStatModelResult& result) const {
  return Count(valid_, numNullComponents_, result, "DirGaussGammaMixForEmpiricalNullAlt::GetNumNullComponents");
}

std::size_t DirGaussGammaMixForEmpiricalNullAlt::GetNumAltComponents(ZqStatModelResult& result) const {
  return Count(valid_, numAltComponents_, result, "DirGaussGammaMixForEmpiricalNullAlt::GetNumAltComponents");
}

ZqStatModelResult DirGaussGammaMixForEmpiricalNullAlt::FitModel(double& fitness, double fitnessTol, double paramTol,
                                                                std::size_t maxCycles) {
  const char* routine = "DirGaussGammaMixForEmpiricalNullAlt::FitModel";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  ZqFitLoopOutcome outcome;
  ZqStatModelResult result = ZqRunFitLoop(model_, numNullComponents_ + numAltComponents_, fitnessTol, paramTol,
                                          maxCycles, outcome);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (!outcome.converged) {
    std::ostringstream comment;
    comment << "Convergence Failure!! Num cycles, fitness difference," << " var lower bound = " << outcome.cycles
            << " " << outcome.fitnessDiff << " " << std::setprecision(9) << outcome.fitness << "\n";
    return ZqMakeFailedResult(F::InternalLogicFailure, routine, comment.str());
  }
  std::ostringstream line;
  line << "Num cycles, fitness difference, paramDiff, var lower bound = " << outcome.cycles << " "
       << outcome.fitnessDiff << " " << outcome.paramDiff << " " << std::setprecision(9) << outcome.fitness << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
  fitness = outcome.fitness + Numarc::Zqlgamma(static_cast<double>(numNullComponents_) + 1.0) +
            Numarc::Zqlgamma(static_cast<double>(numAltComponents_) + 1.0);
  return ZqStatModelResult(true);
}

double DirGaussGammaMixForEmpiricalNullAlt::GetExpectedProbNull(ZqStatModelResult& result) const {
  return GroupProbability(valid_, model_, 0, numNullComponents_, result,
                          "DirGaussGammaMixForEmpiricalNullAlt::GetExpectedProbNull");
}

double DirGaussGammaMixForEmpiricalNullAlt::GetExpectedProbAlt(ZqStatModelResult& result) const {
  return GroupProbability(valid_, model_, numNullComponents_, numAltComponents_, result,
                          "DirGaussGammaMixForEmpiricalNullAlt::GetExpectedProbAlt");
}

ZqStatModelResult DirGaussGammaMixForEmpiricalNullAlt::GetModelParams(std::vector<double>& vals) const {
  return ModelParams(model_, vals, "DirGaussGammaMixForEmpiricalNullAlt::GetModelParams");
}

ZqUniVarPDF DirGaussGammaMixForEmpiricalNullAlt::Predictive(std::size_t first, std::size_t count,
                                                            double groupProbability, bool total,
                                                            ZqStatModelResult& result, const char* routine) const {
  std::vector<double> probs, dofs, locations, precisions;
  double sum = 0.0;
  for (std::size_t k = first; k < first + count; ++k) {
    double p = 0.0, dof = 0.0, location = 0.0, precision = 0.0;
    result = GetComponentParamsForStudentsTPredictiveDist(model_.Components()[k], p, dof, location, precision);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return ZqUniVarNullPDF(variableName_);
    }
    probs.push_back(p / groupProbability);
    dofs.push_back(dof);
    locations.push_back(location);
    precisions.push_back(precision);
    sum += probs.back();
  }
  if (total) {
    std::ostringstream line;
    line << "sumP - 1 = " << std::fabs(1.0 - sum) << "\n";
    Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
  }
  if (!SumsToOne(sum, result, routine)) return ZqUniVarNullPDF(variableName_);
  ZqRescaleToSumOne(probs, sum);
  return ZqUnivariateStudentsTMixture(variableName_, probs, dofs, locations, precisions, result);
}

ZqUniVarPDF DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveNullDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveNullDist";
  const double p = GetExpectedProbNull(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(0, numNullComponents_, p, false, result, routine);
}

ZqUniVarPDF DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveAltDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveAltDist";
  const double p = GetExpectedProbAlt(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(numNullComponents_, numAltComponents_, p, false, result, routine);
}

ZqUniVarPDF DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveTotDist(ZqStatModelResult& result) const {
  const char* routine = "DirGaussGammaMixForEmpiricalNullAlt::GetPosteriorPredictiveTotDist";
  const double pNull = GetExpectedProbNull(result);
  double pAlt = kBad;
  if (result.IsSuccessful()) pAlt = GetExpectedProbAlt(result);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(variableName_);
  }
  return Predictive(0, numNullComponents_ + numAltComponents_, pNull + pAlt, true, result, routine);
}

// ------------------------------------------------------------ the search over pairs

DirGaussGammaMixForEmpiricalNullAlt FitGaussGammaMixModel(
    ZqStatModelResult& result, std::vector<double>& modelProbs, std::vector<DirGaussGammaMixForEmpiricalNullAlt>& models,
    double nullFraction, const std::vector<std::pair<std::size_t, std::size_t>>& numNullAltPairs,
    const std::string& name, double nullDirichletSum, double altDirichletSum, const std::vector<double>& data) {
  models.clear();
  modelProbs.clear();
  models.reserve(numNullAltPairs.size());
  DirGaussGammaMixForEmpiricalNullAlt best;
  std::size_t bestNull = 0, bestAlt = 0;
  double bestFitness = -1e20;
  std::vector<double> fitnesses;
  result = true;
  for (const auto& [numNull, numAlt] : numNullAltPairs) {
    std::vector<double> coefficients(numNull, numNull ? nullDirichletSum / static_cast<double>(numNull) : 0.0);
    coefficients.insert(coefficients.end(), numAlt, numAlt ? altDirichletSum / static_cast<double>(numAlt) : 0.0);
    DirGaussGammaMixForEmpiricalNullAlt model(nullFraction, numNull, numAlt, name, coefficients, data);
    double fitness = 0.0;
    const ZqFitTimer timer;
    result = model.FitModel(fitness, 0.0005, 0.0005, 50000);
    if (result.NotSuccessful()) {
      result.AddCallContext("FitGaussGammaMixModel");
      return best;
    }
    std::ostringstream line;
    line << "NumNull, NumAlt, OptimalFitness = " << numNull << " " << numAlt << " " << fitness << " "
         << "Fitting time = " << timer.Seconds() << "\n";
    Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
    models.push_back(model);
    fitnesses.push_back(fitness);
    if (fitness > bestFitness) {
      bestFitness = fitness;
      best = model;
      bestNull = numNull;
      bestAlt = numAlt;
    }
  }
  modelProbs = ZqModelProbabilities(fitnesses, bestFitness);
  std::ostringstream line;
  line << std::string(42, '$') << "\n"
       << "Best RESULT: numNull, NumAlt, fitness = " << bestNull << " " << bestAlt << " " << bestFitness << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
  return best;
}

}  // namespace Varimo
