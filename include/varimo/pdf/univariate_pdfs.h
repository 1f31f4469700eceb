// The parametric univariate laws. Each is built from the parameter and
// outcome lists of its set-up class (ran_var_setup.h), usually through the
// functions of pdf_setup.h, and is valid when its parameters could be read.
//
// Parametrisations: the Gaussian holds its inverse variance (precision),
// the Students-T a precision, the Gamma an inverse scale.
#pragma once

#include "varimo/pdf/pdf.h"
#include "varimo/platform/numarc/generators.h"

namespace Varimo {

#define VARIMO_UNIVARIATE_PDF_SLOTS(Class)                                                         \
  Class(const std::string& variableName, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes); \
  Class* CreateCopy() const override { return new Class(*this); }                                 \
  std::string Print(std::size_t limit) const override { return DefaultPrint(limit); }              \
  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;     \
  double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const override;        \
  double GetMean(ZqStatModelResult& result) const override;                                        \
  double GetMode(ZqStatModelResult& result) const override;                                        \
  double GetVariance(ZqStatModelResult& result) const override;                                    \
  double GetPercentile(double p, ZqStatModelResult& result) const override;                        \
  double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const override

// Normal law of the given mean and precision (inverse variance).
class ZqUniVarGaussImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqUniVarGaussImpl);

 private:
  bool GetParams();
  Numarc::ZqGaussianRNG generator_{0.0, 1.0};
  double mean_ = 0.0;
  double precision_ = 1.0;
  double logNorm_ = 0.0;
};

// Student's t law: location + t / sqrt(precision), t with the degrees of
// freedom given.
class ZqUniVarStudentsTImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqUniVarStudentsTImpl);

 private:
  bool GetParams();
  Numarc::ZqStudentsTRNG generator_{0.0, 1.0, 1.0};
  double degreesOfFreedom_ = 1.0;
  double location_ = 0.0;
  double precision_ = 1.0;
  double logNorm_ = 0.0;
};

// Gamma law of density proportional to x^(shape - 1) exp(-x inverseScale).
// Its moments leave the result untouched on success.
class ZqGammaImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqGammaImpl);

 private:
  bool GetParams();
  Numarc::ZqGammaRNG generator_{1.0, 1.0};
  double shape_ = 1.0;
  double inverseScale_ = 1.0;
  double logNorm_ = 0.0;
};

// Chi-squared law. Its moments leave the result untouched on success.
class ZqChiSquareImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqChiSquareImpl);

 private:
  bool GetParams();
  Numarc::ZqChiSquaredRNG generator_{1.0};
  double degreesOfFreedom_ = 1.0;
  double logNorm_ = 0.0;
};

// Snedecor's F law of d1 (numerator) and d2 (denominator) degrees of freedom.
class ZqSnedecorsFImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqSnedecorsFImpl);

 private:
  bool GetParams();
  Numarc::ZqSnedecorsFRNG generator_{1.0, 1.0};
  double numeratorDF_ = 1.0;
  double denominatorDF_ = 1.0;
  double logNorm_ = 0.0;
};

// Beta law on [0, 1].
class ZqBetaImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqBetaImpl);

 private:
  bool GetParams();
  Numarc::ZqBetaRNG generator_{1.0, 1.0};
  double alpha_ = 1.0;
  double beta_ = 1.0;
  double logNorm_ = 0.0;
};

// Gumbel law (of maxima): CDF exp(-exp(-(x - location) / scale)).
class ZqGumbelImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqGumbelImpl);

 private:
  bool GetParams();
  Numarc::ZqGumbelRNG generator_{0.0, 1.0};
  double location_ = 0.0;
  double scale_ = 1.0;
};

// Generalized extreme value law: CDF exp(-(1 + shape z)^(-1 / shape)),
// z = (x - location) / scale; the Gumbel law at shape 0.
class ZqGeneralizedExtremeValueImpl final : public ZqUniVarPDFImpl {
 public:
  VARIMO_UNIVARIATE_PDF_SLOTS(ZqGeneralizedExtremeValueImpl);

 private:
  bool GetParams();
  Numarc::ZqGenExtremeValRNG generator_{0.0, 1.0, 0.0};
  double location_ = 0.0;
  double scale_ = 1.0;
  double shape_ = 0.0;
};

#undef VARIMO_UNIVARIATE_PDF_SLOTS

}  // namespace Varimo
