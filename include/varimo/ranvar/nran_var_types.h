// The type codes of the second generation of random variables and
// distributions, with their texts. An nZqRanVar is named by a pair (major
// type, minor type): the major type says which family the variable belongs
// to, the minor type which variable of that family it is. By convention its
// type name is the major text, "::" and the minor text.
#pragma once

#include <cstdint>
#include <iterator>

#include "varimo/ranvar/ran_var_types.h"

namespace Varimo {

// The kind of value an nZqRanVar carries.
namespace nZqRanVarDataType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t ScalarDouble = 1;
inline constexpr std::uint32_t VectorXd = 2;
inline constexpr std::uint32_t MatrixXd = 3;

inline constexpr std::uint32_t NumTypes = 4;
// "Unknown Type", "Scalar Double", "Eigen::VectorXd", "Eigen::MatrixXd".
extern const char* const RanVarDataTypeName[NumTypes];
}  // namespace nZqRanVarDataType

namespace nZqRanVarMajorType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t CommonToAllRanVars = 1;
inline constexpr std::uint32_t NullRanVar = 2;
inline constexpr std::uint32_t UniVarGaussian = 3;

inline constexpr std::uint32_t NumTypes = 4;
extern const char* const TypeName[NumTypes];
}  // namespace nZqRanVarMajorType

// Minor types of the major type NullRanVar.
namespace nZqNullRanVarMinorType {
inline constexpr std::uint32_t Unknown = 0;

inline constexpr std::uint32_t NumTypes = 1;
extern const char* const TypeName[NumTypes];
}  // namespace nZqNullRanVarMinorType

// Minor types of the major type CommonToAllRanVars: observations that any
// distribution may be given.
namespace nZqAllRanVarsMinorType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t SingleObservation = 1;
inline constexpr std::uint32_t TrainingObservations = 2;
inline constexpr std::uint32_t TestingObservations = 3;
inline constexpr std::uint32_t TrainingObservationWeights = 4;

inline constexpr std::uint32_t NumTypes = 5;
extern const char* const TypeName[NumTypes];
}  // namespace nZqAllRanVarsMinorType

// Minor types of the major type UniVarGaussian.
namespace nZqUniVarGaussRanVarsMinorType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t Mean = 1;
inline constexpr std::uint32_t Variance = 2;
inline constexpr std::uint32_t SampleMean = 3;
inline constexpr std::uint32_t SampleVariance = 4;

inline constexpr std::uint32_t NumTypes = 5;
extern const char* const TypeName[NumTypes];
}  // namespace nZqUniVarGaussRanVarsMinorType

// The distribution types of the second distribution frame; the codes and
// texts are those of the first frame.
namespace nZqPDFType {
inline constexpr std::uint32_t UnknownPDF = 0;
inline constexpr std::uint32_t NullPDF = 1;
inline constexpr std::uint32_t UniVariateGaussian = 2;
inline constexpr std::uint32_t MultiVariateGaussian = 3;
inline constexpr std::uint32_t UnivariateStudentsT = 4;
inline constexpr std::uint32_t MultivariateStudentsT = 5;
inline constexpr std::uint32_t Gamma = 6;
inline constexpr std::uint32_t ChiSquared = 7;
inline constexpr std::uint32_t SnedecorsF = 8;
inline constexpr std::uint32_t Beta = 9;
inline constexpr std::uint32_t Dirichlet = 10;
inline constexpr std::uint32_t Wishart = 11;
inline constexpr std::uint32_t LogNormal = 12;
inline constexpr std::uint32_t GaussianGamma = 13;
inline constexpr std::uint32_t GaussianWishart = 14;
inline constexpr std::uint32_t Gumbel = 15;
inline constexpr std::uint32_t GeneralizedExtremeValue = 16;
inline constexpr std::uint32_t Binomial = 17;
inline constexpr std::uint32_t Multinomial = 18;
inline constexpr std::uint32_t Poisson = 19;
inline constexpr std::uint32_t BetaBinomial = 20;
inline constexpr std::uint32_t UniVarContValRandomSample = 21;
inline constexpr std::uint32_t UniVarIntValRandomSample = 22;
inline constexpr std::uint32_t MultiVarContValRandomSample = 23;
inline constexpr std::uint32_t MultiVarIntValRandomSample = 24;
inline constexpr std::uint32_t UniVarMixture = 25;
inline constexpr std::uint32_t MultiVarMixture = 26;

inline constexpr std::uint32_t NumTypes = 27;
// "Unknown PDF", "NullPDF", "UniVariate Gaussian", ...: both generations of
// distributions share the codes and so the one table of names.
inline constexpr const auto& NameOf = ZqPDFType::NameOf;
static_assert(std::size(ZqPDFType::NameOf) == NumTypes);
}  // namespace nZqPDFType

}  // namespace Varimo
