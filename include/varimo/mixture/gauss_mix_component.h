// One component of a one-dimensional Gaussian mixture fitted by variational
// Bayes: its probability and Gauss parameters (gauss_mix_param.h), its
// responsibilities for the data, the sample moments they weigh, and its
// terms of the variational lower bound.
//
// With a Gauss-Gamma component (parameter type 4), m, k, a, b are the
// posterior mean, precision multiplier, shape and rate of the precision;
// m0, k0, a0, b0 the prior ones; E = a / b the expected precision and
// L = E[ln precision] = digamma(a) - ln b.
#pragma once

#include <string>
#include <vector>

#include "varimo/mixture/gauss_mix_param.h"

namespace Varimo {

class ZqOneDimGaussMixComponent {
 public:
  ZqOneDimGaussMixComponent(const std::string& name, const ZqGaussMixParam& probParams,
                            const ZqGaussMixParam& gaussParams);

  const std::string& GetComponentName() const { return componentName_; }
  const ZqGaussMixParam& GetComponentProbParams() const { return componentProbParams_; }
  const ZqGaussMixParam& GetComponentGaussParams() const { return componentGaussParams_; }
  // Fixed Gauss parameters (type 3): the current mean and precision.
  ZqStatModelResult GetFrequentistGaussParams(double& mean, double& precision) const;
  // Gauss-Gamma (type 4): prior and posterior mean, multiplier, alpha, beta.
  ZqStatModelResult GetBayesPriorGaussParams(double& mean, double& multiplier, double& alpha, double& beta) const;
  ZqStatModelResult GetBayesPosteriorGaussParams(double& mean, double& multiplier, double& alpha,
                                                 double& beta) const;
  // Nk, xbar and S: the responsibility-weighted count, mean and variance.
  ZqStatModelResult GetSampleMoments(const std::vector<double>& data);
  double GetSumResponsibilities() const { return sumResponsibilities_; }
  double GetMeanWithResponsibilities() const { return meanWithResponsibilities_; }
  double GetVarianceWithResponsibilities() const { return varianceWithResponsibilities_; }
  const std::vector<double>& GetResponsibilities() const { return responsibility_; }

  // 3 for fixed Gauss parameters, 5 for Gauss-Gamma: the probability and
  // the Gauss parameters, as GetComponentParams lists them.
  std::size_t GetNumComponentParams(ZqStatModelResult& result) const;
  void GetComponentParams(std::vector<double>& vals) const;

  // E step: each point's log responsibility before normalisation over the
  // components, E[ln pi] + E[ln N(x | mu, lambda)].
  ZqStatModelResult EStepUpdateLogRelativeResponsibility(const std::vector<double>& data);
  // The value of point n; the lowest double past the end, so that it never
  // wins a maximum.
  double EStepGetLogRelativeResponsibility(std::size_t n) const;
  // Stores point n's normalised responsibility and its log; nothing past
  // the end.
  void EStepFillResponsibilityAndLogResp(std::size_t n, double r, double logR);
  ZqStatModelResult CheckSizeResponsibilityVec(std::size_t n) const;
  // M step: sample moments, then the probability and Gauss parameters.
  ZqStatModelResult MStepUpdateParams(const std::vector<double>& data);
  ZqStatModelResult UpdateGaussParams();

  // The terms of the variational lower bound.
  double GetExpectedLogGaussPrecision(ZqStatModelResult& result) const;
  double GetExpectedLogProbDataGivenZAndParams(ZqStatModelResult& result) const;
  double GetExpectedLogProbZGivenComponentProb(ZqStatModelResult& result) const;
  double GetExpectedLogPriorGaussGamma(ZqStatModelResult& result) const;
  double GetExpectedLogPosteriorGaussGamma(ZqStatModelResult& result) const;
  double GetExpectedLogOfVarDistOfZ() const;
  // The data, Z, Dirichlet and Gauss-Gamma prior terms less the entropy
  // terms of Z, the Dirichlet and the Gauss-Gamma posteriors.
  double GetVariationalBayesLowerBound(ZqStatModelResult& result) const;
  // 0 for fixed mixing probabilities, the lower bound for Dirichlet ones.
  double GetComponentOfModelFitness(ZqStatModelResult& result) const;
  std::string Print() const;

 private:
  std::string componentName_;
  ZqGaussMixParam componentProbParams_;
  ZqGaussMixParam componentGaussParams_;
  double sumResponsibilities_ = 0.0;
  double meanWithResponsibilities_ = 0.0;
  double varianceWithResponsibilities_ = 0.0;
  std::vector<double> responsibility_;
  std::vector<double> logResponsibility_;
};

// A component of a mixture in d dimensions with a Gauss-Wishart law: mean
// vector (0), precision multiplier (1), degrees of freedom (2), d by d
// scale matrix (3) and its lower triangular square root (4). The data are
// points of d values.
class ZqMultiDimGaussMixComponent {
 public:
  ZqMultiDimGaussMixComponent(const std::vector<std::string>& names, const ZqGaussMixParam& probParams,
                              const ZqGaussMixParam& gaussParams);

  const std::vector<std::string>& GetComponentNames() const { return componentNames_; }
  const ZqGaussMixParam& GetComponentProbParams() const { return componentProbParams_; }
  const ZqGaussMixParam& GetComponentGaussParams() const { return componentGaussParams_; }
  ZqStatModelResult GetBayesPriorGaussWishartParams(std::vector<double>& mean, double& multiplier, double& nu,
                                                    std::vector<double>& scale,
                                                    std::vector<double>& scaleRoot) const;
  ZqStatModelResult GetBayesPosteriorGaussWishartParams(std::vector<double>& mean, double& multiplier, double& nu,
                                                        std::vector<double>& scale,
                                                        std::vector<double>& scaleRoot) const;
  // E[ln |precision|]: sum of digamma(0.5 (nu - i)) plus the log
  // determinant from the scale's square root.
  double GetExpectedLogDetGaussPrecision(ZqStatModelResult& result) const;
  ZqStatModelResult EStepUpdateLogRelativeResponsibility(const std::vector<std::vector<double>>& data);
  double EStepGetLogRelativeResponsibility(std::size_t n) const;
  void EStepFillResponsibilityAndLogResp(std::size_t n, double r, double logR);
  ZqStatModelResult CheckSizeResponsibilityVec(std::size_t n) const;
  // Nk, the weighted mean vector and the weighted covariance (over Nk).
  ZqStatModelResult GetSampleMoments(const std::vector<std::vector<double>>& data);
  double GetSumResponsibilities() const { return sumResponsibilities_; }
  const std::vector<double>& GetMeanWithResponsibilities() const { return meanWithResponsibilities_; }
  const std::vector<double>& GetCovarianceWithResponsibilities() const { return covarianceWithResponsibilities_; }
  std::string Print() const;

 private:
  std::size_t Dimension() const { return componentNames_.size(); }
  ZqStatModelResult GaussWishartParams(bool prior, std::vector<double>& mean, double& multiplier, double& nu,
                                       std::vector<double>& scale, std::vector<double>& scaleRoot) const;

  std::vector<std::string> componentNames_;
  ZqGaussMixParam componentProbParams_;
  ZqGaussMixParam componentGaussParams_;
  double sumResponsibilities_ = 0.0;
  std::vector<double> meanWithResponsibilities_;
  std::vector<double> covarianceWithResponsibilities_;
  std::vector<double> responsibility_;
  std::vector<double> logResponsibility_;
};

}  // namespace Varimo
