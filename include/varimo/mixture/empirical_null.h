// Mixtures that split a one-dimensional sample into a null group and an
// alternative group of components: the lowest `nullFraction` of the sorted
// data seeds the null components, the rest the alternative ones. After the
// fit they tell how much probability each group holds and give each
// group's predictive law, and the whole one.
//
// DirGaussMixForEmpiricalNullAlt has fixed-point Gaussian components,
// cycled a given number of times; DirGaussGammaMixForEmpiricalNullAlt has
// Gauss-Gamma components fitted by variational Bayes until they settle
// (not settling within the cycles is a failure here). Components are held
// null group first.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "varimo/mixture/gauss_mix_model.h"

namespace Varimo {

class DirGaussMixForEmpiricalNullAlt {
 public:
  DirGaussMixForEmpiricalNullAlt() = default;
  // Not valid when a group is empty or the coefficients are not one per
  // component.
  DirGaussMixForEmpiricalNullAlt(double nullFraction, std::size_t numNull, std::size_t numAlt,
                                 const std::string& name, const std::vector<double>& dirichletCoeffs,
                                 const std::vector<double>& data);

  bool Valid() const { return valid_; }
  std::size_t GetNumNullComponents(ZqStatModelResult& result) const;
  std::size_t GetNumAltComponents(ZqStatModelResult& result) const;
  const ZqOneDimGaussMixModel& GetModel() const { return model_; }
  // Exactly numCycles E and M cycles.
  ZqStatModelResult FitModel(std::size_t numCycles);
  double GetExpectedProbNull(ZqStatModelResult& result) const;
  double GetExpectedProbAlt(ZqStatModelResult& result) const;
  ZqStatModelResult GetModelParams(std::vector<double>& vals) const;
  // Gaussian mixtures of each group, with probabilities renormalised
  // within the group, and of the whole.
  ZqUniVarPDF GetPosteriorPredictiveNullDist(ZqStatModelResult& result) const;
  ZqUniVarPDF GetPosteriorPredictiveAltDist(ZqStatModelResult& result) const;
  ZqUniVarPDF GetPosteriorPredictiveTotDist(ZqStatModelResult& result) const;
  std::string Print() const { return model_.Print(); }

 private:
  ZqUniVarPDF Predictive(std::size_t first, std::size_t count, double groupProbability, bool total,
                         ZqStatModelResult& result, const char* routine) const;

  bool valid_ = false;
  double nullFraction_ = 1.0;
  std::size_t numNullComponents_ = 0;
  std::size_t numAltComponents_ = 0;
  std::string variableName_ = "invalid";
  ZqOneDimGaussMixModel model_;
};

class DirGaussGammaMixForEmpiricalNullAlt {
 public:
  DirGaussGammaMixForEmpiricalNullAlt() = default;
  DirGaussGammaMixForEmpiricalNullAlt(double nullFraction, std::size_t numNull, std::size_t numAlt,
                                      const std::string& name, const std::vector<double>& dirichletCoeffs,
                                      const std::vector<double>& data);

  bool Valid() const { return valid_; }
  std::size_t GetNumNullComponents(ZqStatModelResult& result) const;
  std::size_t GetNumAltComponents(ZqStatModelResult& result) const;
  const ZqOneDimGaussMixModel& GetModel() const { return model_; }
  // On convergence `fitness` is the lower bound plus ln numNull! and
  // ln numAlt!; running out of cycles fails and leaves it alone.
  ZqStatModelResult FitModel(double& fitness, double fitnessTol, double paramTol, std::size_t maxCycles);
  double GetExpectedProbNull(ZqStatModelResult& result) const;
  double GetExpectedProbAlt(ZqStatModelResult& result) const;
  ZqStatModelResult GetModelParams(std::vector<double>& vals) const;
  // Students-T mixtures of each group and of the whole.
  ZqUniVarPDF GetPosteriorPredictiveNullDist(ZqStatModelResult& result) const;
  ZqUniVarPDF GetPosteriorPredictiveAltDist(ZqStatModelResult& result) const;
  ZqUniVarPDF GetPosteriorPredictiveTotDist(ZqStatModelResult& result) const;
  std::string Print() const { return model_.Print(); }

 private:
  ZqUniVarPDF Predictive(std::size_t first, std::size_t count, double groupProbability, bool total,
                         ZqStatModelResult& result, const char* routine) const;

  bool valid_ = false;
  double nullFraction_ = 1.0;
  std::size_t numNullComponents_ = 0;
  std::size_t numAltComponents_ = 0;
  std::string variableName_ = "invalid";
  ZqOneDimGaussMixModel model_;
};

// Fits one model per (numNull, numAlt) pair, in order, and returns the one
// of highest fitness (the earlier pair on ties); `modelProbs` are the
// fitnesses as posterior probabilities.
DirGaussGammaMixForEmpiricalNullAlt FitGaussGammaMixModel(
    ZqStatModelResult& result, std::vector<double>& modelProbs, std::vector<DirGaussGammaMixForEmpiricalNullAlt>& models,
    double nullFraction, const std::vector<std::pair<std::size_t, std::size_t>>& numNullAltPairs,
    const std::string& name, double nullDirichletSum, double altDirichletSum, const std::vector<double>& data);

}  // namespace Varimo
