// The set-up classes: for each distribution, the tables of its random
// variables (name, data type, dimensional type and constraint codes,
// indexed by the variable's ranVarType), and SetupRanVarVecs, which checks
// a user's arguments and builds the parameter and outcome lists that a
// distribution is constructed from.
//
//   std::vector<ZqRanVar> parameters, outcomes;
//   ZqStatModelResult r = ZqUniVarGaussRanVars::SetupRanVarVecs(0.0, 2.0, parameters, outcomes);
//
// A failed set-up leaves both lists as they were.
#pragma once

#include <cstddef>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/ranvar/ran_var.h"

namespace Varimo {

using ZqRanVarVec = std::vector<ZqRanVar>;

// The four type tables of a distribution with N variables.
#define VARIMO_RAN_VAR_TABLES(N)                 \
  static constexpr std::size_t kNumRanVars = N;  \
  static const char* const NameOf[N];            \
  static const std::size_t DataTypeOf[N];        \
  static const std::size_t DimTypeOf[N];         \
  static const std::size_t ConstraintTypeOf[N]
// Default bounds and sums of a distribution whose variables have them.
#define VARIMO_RAN_VAR_BOUNDS(N)         \
  static const double LowerBoundOf[N];   \
  static const double UpperBoundOf[N];   \
  static const double VarSumConstraintOf[N]

struct ZqNullPDFRanVars {
  VARIMO_RAN_VAR_TABLES(2);
  static ZqStatModelResult SetupRanVarVecs(ZqRanVarVec& parameters, ZqRanVarVec& outcomes);
};

struct ZqUnknownPDFRanVars {
  static const char* const NameOf[2];
};

struct ZqUniVarGaussRanVars {
  VARIMO_RAN_VAR_TABLES(6);
  // The variance is stored as its inverse; it must be positive.
  static ZqStatModelResult SetupRanVarVecs(double mean, double variance, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqMultiVarGaussRanVars {
  VARIMO_RAN_VAR_TABLES(4);
  // The covariance, a flat list of a matrix of the mean's size (one value
  // for a multiple of the identity, n for a diagonal, n * n in full), must
  // be positive definite; its inverse is stored.
  static ZqStatModelResult SetupRanVarVecs(const std::vector<double>& mean, const std::vector<double>& covariance,
                                           ZqRanVarVec& parameters, ZqRanVarVec& outcomes);
};

struct ZqUniVarStudentsTRanVars {
  VARIMO_RAN_VAR_TABLES(4);
  static ZqStatModelResult SetupRanVarVecs(double degreesOfFreedom, double location, double precision,
                                           ZqRanVarVec& parameters, ZqRanVarVec& outcomes);
};

struct ZqMultiVarStudentsTRanVars {
  VARIMO_RAN_VAR_TABLES(5);
  static ZqStatModelResult SetupRanVarVecs(double degreesOfFreedom, const std::vector<double>& location,
                                           const std::vector<double>& scale, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqGammaRanVars {
  VARIMO_RAN_VAR_TABLES(6);
  static ZqStatModelResult SetupRanVarVecs(double shape, double inverseScale, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqChiSquareRanVars {
  VARIMO_RAN_VAR_TABLES(2);
  static ZqStatModelResult SetupRanVarVecs(double degreesOfFreedom, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqSnedecorsFRanVars {
  VARIMO_RAN_VAR_TABLES(3);
  static ZqStatModelResult SetupRanVarVecs(double numeratorDF, double denominatorDF, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqBetaRanVars {
  VARIMO_RAN_VAR_TABLES(3);
  VARIMO_RAN_VAR_BOUNDS(3);
  static ZqStatModelResult SetupRanVarVecs(double alpha, double beta, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqLogNormalRanVars {
  VARIMO_RAN_VAR_TABLES(3);
  static ZqStatModelResult SetupRanVarVecs(double location, double inverseScale, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqGumbelRanVars {
  VARIMO_RAN_VAR_TABLES(3);
  static ZqStatModelResult SetupRanVarVecs(double location, double scale, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqGeneralizedExtremeValueRanVars {
  VARIMO_RAN_VAR_TABLES(4);
  static const double VarSumConstraintOf[4];
  // The outcome's support follows the shape: unbounded for 0, above
  // location - scale / shape for a positive shape, below it for a negative.
  static ZqStatModelResult SetupRanVarVecs(double location, double scale, double shape, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqBinomialRanVars {
  VARIMO_RAN_VAR_TABLES(3);
  VARIMO_RAN_VAR_BOUNDS(3);
  static ZqStatModelResult SetupRanVarVecs(double sampleSize, double successProbability, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

struct ZqUniVarContValRandomSampleRanVars {
  VARIMO_RAN_VAR_TABLES(5);
  VARIMO_RAN_VAR_BOUNDS(5);
  // The sample's outcome holds all its values, sorted, as many
  // observations of one variable.
  static ZqStatModelResult SetupRanVarVecs(std::size_t pdfTypeDrawnFrom, const std::vector<double>& data,
                                           ZqRanVarVec& parameters, ZqRanVarVec& outcomes);
};

struct ZqUniVarIntValRandomSampleRanVars {
  static const char* const NameOf[5];
};

struct ZqUniVarMixtureRanVars {
  VARIMO_RAN_VAR_TABLES(5);
  static ZqStatModelResult SetupRanVarVecs(std::size_t numComponents, const std::vector<std::size_t>& pdfTypes,
                                           const std::vector<std::size_t>& numParams,
                                           const std::vector<double>& probabilities, ZqRanVarVec& parameters,
                                           ZqRanVarVec& outcomes);
};

// The set-up of a univariate distribution chosen by pdf type from a list
// of its parameters: the Gaussian (2: mean, variance) and the Students-T
// (4: degrees of freedom, location, precision).
struct ZqUniVarGenericRanVars {
  static ZqStatModelResult SetupRanVarVecs(std::size_t pdfType, const std::vector<double>& params,
                                           ZqRanVarVec& parameters, ZqRanVarVec& outcomes);
};

#undef VARIMO_RAN_VAR_TABLES
#undef VARIMO_RAN_VAR_BOUNDS

}  // namespace Varimo
