// The variable tables of each distribution: name, data type (1 continuous,
// 2 integer), dimensional type (1 scalar, 2 vector, 3 symmetric matrix)
// and constraint (ran_var_types.h), by ranVarType. Rows after a
// distribution's outcome describe sample statistics.
#include "varimo/ranvar/ran_var_setup.h"

namespace Varimo {

#define VARIMO_TABLES(Class, N, names, data, dims, constraints) \
  const char* const Class::NameOf[N] = names;                   \
  const std::size_t Class::DataTypeOf[N] = data;                \
  const std::size_t Class::DimTypeOf[N] = dims;                 \
  const std::size_t Class::ConstraintTypeOf[N] = constraints
#define ROW(...) {__VA_ARGS__}

VARIMO_TABLES(ZqNullPDFRanVars, 2, ROW("Unknown Parameter", "Unknown Outcome"), ROW(0, 0), ROW(0, 0), ROW(0, 0));
const char* const ZqUnknownPDFRanVars::NameOf[2] = {"Unknown Parameter", "Unknown Outcome"};

VARIMO_TABLES(ZqUniVarGaussRanVars, 6,
              ROW("Univariate Gaussian Mean", "Univariate Gaussian Inverse Variance", "Univariate Gaussian Outcome",
                  "Univariate Gaussian Sample Size", "Univariate Gaussian Sample Mean",
                  "Univariate Gaussian Sample Variance"),
              ROW(1, 1, 1, 2, 1, 1), ROW(1, 1, 1, 1, 1, 1), ROW(1, 3, 1, 3, 1, 2));

VARIMO_TABLES(ZqMultiVarGaussRanVars, 4,
              ROW("Multivariate Gaussian Mean", "Multivariate Gaussian Size of Precision Matrix",
                  "Multivariate Gaussian Precision Matrix", "Multivariate Gaussian Outcome"),
              ROW(1, 2, 1, 1), ROW(2, 1, 3, 2), ROW(1, 3, 3, 1));

VARIMO_TABLES(ZqUniVarStudentsTRanVars, 4,
              ROW("Univariate Students-T Degrees Of Freedom", "Univariate Students-T Location",
                  "Univariate Students-T Precision", "Univariate Students-T Outcome"),
              ROW(1, 1, 1, 1), ROW(1, 1, 1, 1), ROW(3, 1, 3, 1));

VARIMO_TABLES(ZqMultiVarStudentsTRanVars, 5,
              ROW("Multivariate Students-T Degrees Of Freedom", "Multivariate Students-T Location",
                  "Multivariate Size of Precision Matrix", "Multivariate Students-T Precision Matrix",
                  "Multivariate Students-T Outcome"),
              ROW(1, 1, 2, 1, 1), ROW(1, 2, 1, 3, 2), ROW(3, 1, 3, 3, 1));

VARIMO_TABLES(ZqGammaRanVars, 6,
              ROW("Gamma Shape", "Gamma Inverse Scale", "Gamma Outcome", "Sample Size", "Sample Product",
                  "Sample Sum"),
              ROW(1, 1, 1, 2, 1, 1), ROW(1, 1, 1, 1, 1, 1), ROW(3, 3, 3, 3, 3, 3));

VARIMO_TABLES(ZqChiSquareRanVars, 2, ROW("Chi-Squared Degrees Of Freedom", "Chi-Squared Outcome"), ROW(1, 1),
              ROW(1, 1), ROW(3, 3));

VARIMO_TABLES(ZqSnedecorsFRanVars, 3,
              ROW("Snedecor's F Numerator Degrees Of Freedom", "Snedecor's F Denominator Degrees Of Freedom",
                  "Snedecor's F Outcome"),
              ROW(1, 1, 1), ROW(1, 1, 1), ROW(3, 3, 3));

VARIMO_TABLES(ZqBetaRanVars, 3, ROW("Beta shape Alpha", "Beta shape Beta", "Beta Outcome"), ROW(1, 1, 1),
              ROW(1, 1, 1), ROW(3, 3, 6));
const double ZqBetaRanVars::LowerBoundOf[3] = {0.0, 0.0, 0.0};
const double ZqBetaRanVars::UpperBoundOf[3] = {0.0, 0.0, 1.0};
const double ZqBetaRanVars::VarSumConstraintOf[3] = {0.0, 0.0, 0.0};

VARIMO_TABLES(ZqLogNormalRanVars, 3, ROW("LogNormal Location", "LogNormal Inverse Scale", "LogNormal Outcome"),
              ROW(1, 1, 1), ROW(1, 1, 1), ROW(1, 3, 3));

VARIMO_TABLES(ZqGumbelRanVars, 3, ROW("Gumbel Location", "Gumbel Scale", "Gumbel Outcome"), ROW(1, 1, 1),
              ROW(1, 1, 1), ROW(1, 3, 1));

VARIMO_TABLES(ZqGeneralizedExtremeValueRanVars, 4,
              ROW("GeneralizedExtremeValue Location", "GeneralizedExtremeValue Scale",
                  "GeneralizedExtremeValue Shape", "GeneralizedExtremeValue Outcome"),
              ROW(1, 1, 1, 1), ROW(1, 1, 1, 1), ROW(1, 3, 1, 1));
const double ZqGeneralizedExtremeValueRanVars::VarSumConstraintOf[4] = {0.0, 0.0, 0.0, 0.0};

VARIMO_TABLES(ZqBinomialRanVars, 3, ROW("Binomial Sample Size", "Binomial Success Probability", "Binomial Outcome"),
              ROW(2, 1, 2), ROW(1, 1, 1), ROW(3, 6, 6));
const double ZqBinomialRanVars::LowerBoundOf[3] = {0.0, 0.0, 0.0};
const double ZqBinomialRanVars::UpperBoundOf[3] = {0.0, 1.0, 0.0};
const double ZqBinomialRanVars::VarSumConstraintOf[3] = {0.0, 0.0, 0.0};

VARIMO_TABLES(ZqUniVarContValRandomSampleRanVars, 5,
              ROW("Random Sample Size", "Random Sample Minimum", "Random Sample Maximum", "PDF Sample Was Drawn From",
                  "Random Sample Outcome"),
              ROW(2, 1, 1, 2, 1), ROW(1, 1, 1, 1, 1), ROW(3, 1, 1, 2, 1));
const double ZqUniVarContValRandomSampleRanVars::LowerBoundOf[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
const double ZqUniVarContValRandomSampleRanVars::UpperBoundOf[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
const double ZqUniVarContValRandomSampleRanVars::VarSumConstraintOf[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
const char* const ZqUniVarIntValRandomSampleRanVars::NameOf[5] = {
    "Random Sample Size", "Random Sample Minimum", "Random Sample Maximum", "PDF Sample Was Drawn From",
    "Random Sample Outcome"};

// "Typesa" is the text as users see it; names are compared by code only, so
// its spelling matters to no lookup.
VARIMO_TABLES(ZqUniVarMixtureRanVars, 5,
              ROW("Number of PDF Components", "Univariate PDF Typesa of Components",
                  "Number of Params per PDF Components", "Mixture Probabilities of Components",
                  "Univariate Mixture Outcome"),
              ROW(2, 2, 2, 1, 1), ROW(1, 2, 2, 2, 1), ROW(3, 3, 3, 7, 1));

#undef ROW
#undef VARIMO_TABLES

}  // namespace Varimo
