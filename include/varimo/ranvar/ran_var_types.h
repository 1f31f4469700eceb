// The code tables that describe a random variable: which distribution it
// belongs to, in which package (parameter, outcome, sample statistic), and
// its data type, shape and constraint. A code is the row number of its text.
#pragma once

#include <cstddef>

namespace Varimo {

namespace ZqPDFType {
// The codes that code names by name.
inline constexpr std::size_t NullPDF = 1;
inline constexpr std::size_t UniVariateGaussian = 2;
inline constexpr std::size_t MultiVariateGaussian = 3;
inline constexpr std::size_t UnivariateStudentsT = 4;
inline constexpr std::size_t MultivariateStudentsT = 5;
inline constexpr std::size_t UniVariateContValRandomSample = 21;
inline constexpr std::size_t UniVariateMixture = 25;
inline constexpr std::size_t NumTypes = 27;
extern const char* const NameOf[NumTypes];
}  // namespace ZqPDFType

namespace ZqPackageTypes {
inline constexpr std::size_t NumTypes = 4;
extern const char* const NameOf[NumTypes];
}  // namespace ZqPackageTypes

namespace ZqRanVarDataType {
inline constexpr std::size_t NumTypes = 4;
extern const char* const Describe[NumTypes];
}  // namespace ZqRanVarDataType

namespace ZqRanVarDimType {
inline constexpr std::size_t NumTypes = 4;
extern const char* const Describe[NumTypes];
}  // namespace ZqRanVarDimType

namespace ZqRanVarConstraintTypes {
inline constexpr std::size_t NumTypes = 8;
extern const char* const Describe[NumTypes];
}  // namespace ZqRanVarConstraintTypes

}  // namespace Varimo
