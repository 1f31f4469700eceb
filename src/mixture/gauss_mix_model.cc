#include "varimo/mixture/gauss_mix_model.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "mixture_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/pdf/sample_pdfs.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqGaussMixParamType;
constexpr double kBad = VarimoBadData::BadDouble;
constexpr double kSumTolerance = 1.1920928955078125e-7;

}  // namespace

// ------------------------------------------------------------ the model over data

ZqOneDimGaussMixModel::ZqOneDimGaussMixModel(const std::string& name, const std::vector<ZqGaussMixParam>& probParams,
                                             const std::vector<ZqGaussMixParam>& gaussParams,
                                             const std::vector<double>& data) {
  if (probParams.empty() || probParams.size() != gaussParams.size()) return;
  if (probParams[0].GetParameterType() == T::FixedComponentProbability) {
    double sum = 0.0;
    for (const ZqGaussMixParam& p : probParams) {
      ZqStatModelResult result;
      sum += p.GetInitialOrPriorParamVal(result, 0);
    }
    if (!(std::fabs(sum - 1.0) <= kSumTolerance)) return;
  }
  data_ = data;
  components_.reserve(probParams.size());
  for (std::size_t k = 0; k < probParams.size(); ++k) components_.emplace_back(name, probParams[k], gaussParams[k]);
  valid_ = true;
}

Corvane::ZqIter<const ZqOneDimGaussMixComponent> ZqOneDimGaussMixModel::GetComponents() const {
  return Corvane::ZqMakeOwnedIter<const ZqOneDimGaussMixComponent>(components_);
}

ZqStatModelResult ZqOneDimGaussMixModel::DoOneEMCycle() {
  const char* routine = "ZqOneDimGaussMixModel::DoOneEMCycle";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  const std::size_t n = data_.size();
  for (ZqOneDimGaussMixComponent& component : components_) {
    ZqStatModelResult result = component.EStepUpdateLogRelativeResponsibility(data_);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
  }
  for (const ZqOneDimGaussMixComponent& component : components_) {
    ZqStatModelResult result = component.CheckSizeResponsibilityVec(n);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
  }
  // Normalised over the components with the largest term taken out first,
  // so that no point's total underflows to zero.
  const std::size_t k = components_.size();
  std::vector<double> logs(k), e(k);
  for (std::size_t i = 0; i < n; ++i) {
    double largest = std::numeric_limits<double>::lowest();
    for (std::size_t c = 0; c < k; ++c) {
      logs[c] = components_[c].EStepGetLogRelativeResponsibility(i);
      largest = std::max(largest, logs[c]);
    }
    double sum = 0.0;
    for (std::size_t c = 0; c < k; ++c) {
      logs[c] -= largest;
      e[c] = std::exp(logs[c]);
      sum += e[c];
    }
    const double logSum = std::log(sum);
    for (std::size_t c = 0; c < k; ++c) {
      components_[c].EStepFillResponsibilityAndLogResp(i, e[c] / sum, logs[c] - logSum);
    }
  }
  for (ZqOneDimGaussMixComponent& component : components_) {
    ZqStatModelResult result = component.MStepUpdateParams(data_);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return result;
    }
  }
  return ZqStatModelResult(true);
}

double ZqOneDimGaussMixModel::GetModelFitness(ZqStatModelResult& result) const {
  const char* routine = "ZqOneDimGaussMixModel::GetModelFitness";
  if (!valid_) {
    result = ZqMakeFailedResult(F::ObjectNotValid, routine);
    return kBad;
  }
  double fitness = 0.0;
  for (const ZqOneDimGaussMixComponent& component : components_) {
    fitness += component.GetComponentOfModelFitness(result);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return kBad;
    }
  }
  result = true;
  return fitness;
}

void ZqOneDimGaussMixModel::GetModelParams(std::vector<double>& vals) const {
  vals.clear();
  std::vector<double> own;
  for (const ZqOneDimGaussMixComponent& component : components_) {
    component.GetComponentParams(own);
    vals.insert(vals.end(), own.begin(), own.end());
  }
}

std::string ZqOneDimGaussMixModel::Print() const {
  if (!valid_) return "INVALID MIXTURE MODEL!\n";
  std::string text = "ZqOneDimGaussMixModel: \n";
  for (const ZqOneDimGaussMixComponent& component : components_) text += component.Print();
  return text;
}

// ------------------------------------------------------------ Dirichlet Gauss-Gamma mixture

ZqDirichletGaussGammaMixtureModel::ZqDirichletGaussGammaMixtureModel(std::size_t numComponents,
                                                                     const std::string& name, double dirichletSum,
                                                                     const std::vector<double>& data)
    : numComponents_(numComponents), variableName_(name) {
  const std::vector<double> coefficients(numComponents, dirichletSum / static_cast<double>(numComponents));
  std::vector<double> sorted = data;
  std::sort(sorted.begin(), sorted.end());
  const double n = static_cast<double>(sorted.size());
  const double k = static_cast<double>(numComponents);
  std::vector<double> means, precisions;
  for (std::size_t i = 0; i < numComponents; ++i) {
    const auto lo = static_cast<std::size_t>(std::llround(static_cast<double>(i) / k * n));
    const auto hi = static_cast<std::size_t>(std::llround(static_cast<double>(i + 1) / k * n));
    double center = 0.0, scale = 1.0;
    SliceCenterAndScale(sorted, lo, hi, center, scale);
    means.push_back(center);
    precisions.push_back(1.0 / (scale * scale));
  }
  model_ = ZqOneDimGaussMixModel(name, FillMixtureProbParams(coefficients), FillComponentGaussGammaParams(means, precisions),
                                 data);
  valid_ = model_.Valid();
}

std::size_t ZqDirichletGaussGammaMixtureModel::GetNumComponents(ZqStatModelResult& result) const {
  if (!valid_) {
    result = ZqMakeFailedResult(F::ObjectNotValid, "ZqDirichletGaussGammaMixtureModel::GetNumComponents");
    return std::numeric_limits<std::size_t>::max();
  }
  result = true;
  return numComponents_;
}

ZqStatModelResult ZqDirichletGaussGammaMixtureModel::FitModel(double& fitness, double fitnessTol, double paramTol,
                                                              std::size_t maxCycles) {
  const char* routine = "ZqDirichletGaussGammaMixtureModel::FitModel";
  if (!valid_) return ZqMakeFailedResult(F::ObjectNotValid, routine);
  ZqFitLoopOutcome outcome;
  ZqStatModelResult result = ZqRunFitLoop(model_, numComponents_, fitnessTol, paramTol, maxCycles, outcome);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return result;
  }
  if (!outcome.converged) Corvane::ZqThrow.Warning("NumCycles exceeded");
  std::ostringstream line;
  line << "Num cycles, fitness difference, paramDiff, var lower bound = " << outcome.cycles << " "
       << outcome.fitnessDiff << " " << outcome.paramDiff << " " << std::setprecision(9) << outcome.fitness << "\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
  // The K! labellings of the same mixture are one model.
  fitness = outcome.fitness + Numarc::Zqlgamma(static_cast<double>(numComponents_) + 1.0);
  return ZqStatModelResult(true);
}

void ZqDirichletGaussGammaMixtureModel::GetModelParams(std::vector<double>& vals) const { model_.GetModelParams(vals); }

ZqUniVarPDF ZqDirichletGaussGammaMixtureModel::GetPosteriorPredictiveDist(ZqStatModelResult& result) const {
  const char* routine = "ZqDirichletGaussGammaMixtureModel::GetPosteriorPredictiveDist";
  if (!valid_) {
    result = ZqMakeFailedResult(F::ObjectNotValid, routine);
    return ZqUniVarNullPDF(variableName_);
  }
  std::vector<double> probs, dofs, locations, precisions;
  double sum = 0.0;
  for (const ZqOneDimGaussMixComponent& component : model_.Components()) {
    double p = 0.0, dof = 0.0, location = 0.0, precision = 0.0;
    result = GetComponentParamsForStudentsTPredictiveDist(component, p, dof, location, precision);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return ZqUniVarNullPDF(variableName_);
    }
    probs.push_back(p);
    dofs.push_back(dof);
    locations.push_back(location);
    precisions.push_back(precision);
    sum += p;
  }
  if (!(std::fabs(sum - 1.0) <= kSumTolerance)) {
    result = ZqMakeFailedResult(F::UpperBoundViolated, routine, "probs sum to different than one! ");
    result.AddExtraComment(Corvane::ZqMakeString("sum probs = ", sum));
    return ZqUniVarNullPDF(variableName_);
  }
  ZqRescaleToSumOne(probs, sum);
  return ZqUnivariateStudentsTMixture(variableName_, probs, dofs, locations, precisions, result);
}

std::string ZqDirichletGaussGammaMixtureModel::Print() const { return model_.Print(); }

ZqDirichletGaussGammaMixtureModel FitDirichletGaussGammaMixtureModel(
    ZqStatModelResult& result, std::vector<double>& modelProbs, std::vector<ZqDirichletGaussGammaMixtureModel>& models,
    std::size_t minComponents, std::size_t maxComponents, const std::string& name, double dirichletSum,
    const std::vector<double>& data) {
  models.clear();
  modelProbs.clear();
  if (maxComponents >= minComponents) models.reserve(maxComponents - minComponents + 1);
  ZqDirichletGaussGammaMixtureModel best;
  double bestFitness = -1e20;
  std::vector<double> fitnesses;
  result = true;
  for (std::size_t k = minComponents; k <= maxComponents && k >= minComponents; ++k) {
    ZqDirichletGaussGammaMixtureModel model(k, name, dirichletSum, data);
    double fitness = 0.0;
    const ZqFitTimer timer;
    result = model.FitModel(fitness, 0.0005, 0.0005, 50000);
    if (result.NotSuccessful()) {
      result.AddCallContext("FitDirichletGaussGammaMixtureModel");
      return best;
    }
    std::ostringstream line;
    line << "NumComp, OptimalFitness = " << k << " " << fitness << " " << "Fitting time = " << timer.Seconds() << "\n";
    Corvane::ZqPrint(Corvane::ZqOutputStream::Out, line.str());
    models.push_back(model);
    fitnesses.push_back(fitness);
    if (fitness > bestFitness) {
      bestFitness = fitness;
      best = model;
    }
    if (k == std::numeric_limits<std::size_t>::max()) break;
  }
  modelProbs = ZqModelProbabilities(fitnesses, bestFitness);
  return best;
}

}  // namespace Varimo
