// The multivariate Gaussian and Student's t laws over named variables,
// parametrised by a precision matrix held flat (one value for a multiple of
// the identity, n for a diagonal, n * n in full). Marginals are asked for by
// variable name, in the variables' order.
//
// ZqMultivariateGaussian (pdf_setup.h) builds the Gaussian; the Student's t
// law is reached by constructing it directly from the lists of
// ZqMultiVarStudentsTRanVars: the pdf type 5 of the factory is the null law.
#pragma once

#include <vector>

#include "varimo/pdf/pdf.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {

class ZqMultiVarGaussImpl final : public ZqMultiVarPDFImpl {
 public:
  ZqMultiVarGaussImpl(const std::vector<std::string>& variableNames, const ZqRanVarVec& parameters,
                      const ZqRanVarVec& outcomes);

  ZqMultiVarGaussImpl* CreateCopy() const override { return new ZqMultiVarGaussImpl(*this); }
  std::string Print(std::size_t limit) const override { return DefaultPrint(limit); }
  Corvane::ZqIter<const double> GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(const std::vector<double>& x, ZqStatModelResult& result, bool checkOutcome) const override;
  Corvane::ZqIter<const double> GetMean(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetCovariance(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetMode(ZqStatModelResult& result) const override;
  ZqMultiVarPDF GetMultivariateMarginal(const std::vector<std::string>& names,
                                        ZqStatModelResult& result) const override;
  ZqUniVarPDF GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const override;

 private:
  ZqStatModelResult GetParams();

  Numarc::ZqGaussianRNG standardNormalRNG_{0.0, 1.0};
  std::vector<double> mean_;
  std::vector<double> precision_;
  std::vector<double> squareRootOfCovariance_;
  std::vector<double> covariance_;
  double logNorm_ = 0.0;
};

// Draws are the location plus the scale's square root times n independent
// one-dimensional t values.
class ZqMultiVarStudentsTImpl final : public ZqMultiVarPDFImpl {
 public:
  ZqMultiVarStudentsTImpl(const std::vector<std::string>& variableNames, const ZqRanVarVec& parameters,
                          const ZqRanVarVec& outcomes);

  ZqMultiVarStudentsTImpl* CreateCopy() const override { return new ZqMultiVarStudentsTImpl(*this); }
  std::string Print(std::size_t limit) const override { return DefaultPrint(limit); }
  Corvane::ZqIter<const double> GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(const std::vector<double>& x, ZqStatModelResult& result, bool checkOutcome) const override;
  Corvane::ZqIter<const double> GetMean(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetCovariance(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetMode(ZqStatModelResult& result) const override;
  ZqMultiVarPDF GetMultivariateMarginal(const std::vector<std::string>& names,
                                        ZqStatModelResult& result) const override;
  ZqUniVarPDF GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const override;

 private:
  ZqStatModelResult GetParams();

  Numarc::ZqStudentsTRNG standardStudentsRNG_{0.0, 1.0, 1.0};
  double degreesOfFreedom_ = 1.0;
  std::vector<double> location_;
  std::vector<double> precision_;
  std::vector<double> squareRootOfScale_;
  std::vector<double> scale_;
  double logNorm_ = 0.0;
};

}  // namespace Varimo
