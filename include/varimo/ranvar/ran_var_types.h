// The code tables that describe a random variable: which distribution it
// belongs to, in which package (parameter, outcome, sample statistic), and
// its data type, shape and constraint. A code is the row number of its text.
#pragma once

#include <cstddef>

namespace Varimo {

namespace ZqPDFType {
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
