// Variational Bayes fits of one-dimensional Gaussian mixtures: the model
// over a data vector (one E and M cycle at a time), the Dirichlet
// Gauss-Gamma mixture started from equal-frequency slices of the sorted
// data, and the search over numbers of components.
//
//   ZqStatModelResult result;
//   std::vector<double> probs;
//   std::vector<ZqDirichletGaussGammaMixtureModel> models;
//   ZqDirichletGaussGammaMixtureModel best =
//       FitDirichletGaussGammaMixtureModel(result, probs, models, 1, 4, "x", 1.0, data);
//   ZqUniVarPDF predictive = best.GetPosteriorPredictiveDist(result);
//
// The fits are deterministic: no random start anywhere. They write their
// progress through Corvane's output sink (standard output by default).
#pragma once

#include <string>
#include <vector>

#include "varimo/mixture/gauss_mix_component.h"
#include "varimo/pdf/pdf.h"

namespace Varimo {

class ZqOneDimGaussMixModel {
 public:
  ZqOneDimGaussMixModel() = default;
  // One component per pair of parameters, all named `name`. Not valid for
  // empty or unequal lists, or fixed probabilities that do not sum to one.
  ZqOneDimGaussMixModel(const std::string& name, const std::vector<ZqGaussMixParam>& probParams,
                        const std::vector<ZqGaussMixParam>& gaussParams, const std::vector<double>& data);

  bool Valid() const { return valid_; }
  const std::vector<double>& GetData() const { return data_; }
  Corvane::ZqIter<const ZqOneDimGaussMixComponent> GetComponents() const;
  const std::vector<ZqOneDimGaussMixComponent>& Components() const { return components_; }
  ZqStatModelResult DoOneEMCycle();
  // The sum of the components' parts of the lower bound.
  double GetModelFitness(ZqStatModelResult& result) const;
  void GetModelParams(std::vector<double>& vals) const;
  std::string Print() const;

 private:
  bool valid_ = false;
  std::vector<double> data_;
  std::vector<ZqOneDimGaussMixComponent> components_;
};

class ZqDirichletGaussGammaMixtureModel {
 public:
  ZqDirichletGaussGammaMixtureModel() = default;
  // K components under a symmetric Dirichlet of total dirichletSum, each
  // with a Gauss-Gamma prior centred on its slice of the sorted data.
  ZqDirichletGaussGammaMixtureModel(std::size_t numComponents, const std::string& name, double dirichletSum,
                                    const std::vector<double>& data);

  bool Valid() const { return valid_; }
  std::size_t GetNumComponents(ZqStatModelResult& result) const;
  const ZqOneDimGaussMixModel& GetModel() const { return model_; }
  // Cycles until the lower bound and the parameters settle (or maxCycles,
  // with a warning); `fitness` is then the lower bound plus ln K!.
  ZqStatModelResult FitModel(double& fitness, double fitnessTol, double paramTol, std::size_t maxCycles);
  void GetModelParams(std::vector<double>& vals) const;
  // The mixture of the components' Students-T predictive laws.
  ZqUniVarPDF GetPosteriorPredictiveDist(ZqStatModelResult& result) const;
  std::string Print() const;

 private:
  bool valid_ = false;
  std::size_t numComponents_ = 0;
  std::string variableName_ = "invalid";
  ZqOneDimGaussMixModel model_;
};

// Fits K = minComponents ... maxComponents and returns the one of highest
// fitness (the smaller K on ties); `modelProbs` are the fitnesses turned
// into posterior probabilities of K.
ZqDirichletGaussGammaMixtureModel FitDirichletGaussGammaMixtureModel(
    ZqStatModelResult& result, std::vector<double>& modelProbs, std::vector<ZqDirichletGaussGammaMixtureModel>& models,
    std::size_t minComponents, std::size_t maxComponents, const std::string& name, double dirichletSum,
    const std::vector<double>& data);

}  // namespace Varimo
