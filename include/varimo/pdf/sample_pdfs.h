// Univariate laws built from other laws: a finite mixture of Gaussian or
// Students-T components, and the empirical law of a drawn sample.
//
//   ZqStatModelResult result;
//   ZqUniVarPDF mix = ZqUnivariateGaussMixture("x", {0.3, 0.7}, {-1.0, 2.0}, {0.5, 1.0}, result);
//   Numarc::ZqRanNumEngine engine(7);
//   ZqUniVarPDF sample = ZqUniVarContValRandomSample(result, mix, engine, 1000);
#pragma once

#include <vector>

#include "varimo/pdf/pdf.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {

// Parameters: 0 the number of components, 1 their pdf types, 2 their
// numbers of parameter variables, 3 their probabilities, then the
// components' parameter variables one component after another. Outcomes:
// the mixture's own, then one per component. The probabilities must sum to
// one within the component count times the double epsilon; they are not
// renormalised.
class ZqUniVarMixtureImpl final : public ZqUniVarPDFImpl {
 public:
  ZqUniVarMixtureImpl(const std::string& variableName, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);

  ZqUniVarMixtureImpl* CreateCopy() const override { return new ZqUniVarMixtureImpl(*this); }
  // The default text, then each component's.
  std::string Print(std::size_t limit) const override;
  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const override;
  double GetMean(ZqStatModelResult& result) const override;
  // The best of 101 points from the 1% to the 99% percentile: a mixture
  // has no closed mode.
  double GetMode(ZqStatModelResult& result) const override;
  double GetVariance(ZqStatModelResult& result) const override;
  double GetPercentile(double p, ZqStatModelResult& result) const override;
  double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const override;

 private:
  ZqStatModelResult GetParams(const std::string& variableName, const ZqRanVarVec& parameters,
                              const ZqRanVarVec& outcomes);

  Numarc::ZqUniformDoubleRNG uniformRNG_{0.0, 1.0};
  std::vector<double> mixProbs_;
  std::vector<ZqUniVarPDF> components_;
};

// The empirical law of a sample: its CDF counts, its percentile is the
// quantile of type 8, its draws resample the data; it has no density.
class ZqUniVarContValRandomSampleImpl final : public ZqUniVarPDFImpl {
 public:
  ZqUniVarContValRandomSampleImpl(const std::string& variableName, const ZqRanVarVec& parameters,
                                  const ZqRanVarVec& outcomes);

  ZqUniVarContValRandomSampleImpl* CreateCopy() const override { return new ZqUniVarContValRandomSampleImpl(*this); }
  std::string Print(std::size_t limit) const override;
  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const override;
  double GetMean(ZqStatModelResult& result) const override;
  double GetMode(ZqStatModelResult& result) const override;
  double GetVariance(ZqStatModelResult& result) const override;
  double GetPercentile(double p, ZqStatModelResult& result) const override;
  double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const override;

 private:
  bool GetData();

  Numarc::ZqUniformIntRNG uniformIntRNG_{0, 9};
  std::vector<double> data_;
  double mean_ = 0.0;
  double variance_ = 0.0;
};

// A mixture of components of the given pdf types (2 Gaussian: mean,
// variance; 4 Students-T: degrees of freedom, location, precision).
ZqUniVarPDF ZqUnivariateMixture(const std::string& name, const std::vector<std::size_t>& pdfTypes,
                                const std::vector<double>& probabilities,
                                const std::vector<std::vector<double>>& parameters, ZqStatModelResult& result);
ZqUniVarPDF ZqUnivariateGaussMixture(const std::string& name, const std::vector<double>& probabilities,
                                     const std::vector<double>& means, const std::vector<double>& variances,
                                     ZqStatModelResult& result);
ZqUniVarPDF ZqUnivariateStudentsTMixture(const std::string& name, const std::vector<double>& probabilities,
                                         const std::vector<double>& degreesOfFreedom,
                                         const std::vector<double>& locations, const std::vector<double>& precisions,
                                         ZqStatModelResult& result);
// The empirical law of n draws from `pdf`, under its variable name.
ZqUniVarPDF ZqUniVarContValRandomSample(ZqStatModelResult& result, ZqUniVarPDF& pdf, Numarc::ZqRanNumEngine& engine,
                                        std::size_t n);

}  // namespace Varimo
