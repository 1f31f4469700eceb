// The two classifications of a column of data (statistical scale and storage
// type) with their texts, and the reserved values that stand for a bad index,
// missing data and bad data in each storage type.
//
// There is no optional type and no NaN signalling in the statistics layer: a
// value is ordinary data or one of the three reserved values of its own
// type. The reserved numbers are fixed; files and other code rely on them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace Varimo {

// Statistical scale of a column.
namespace ZqStatVariableType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t Nominal = 1;
inline constexpr std::uint32_t Ordinal = 2;  // has a text but no column kind
inline constexpr std::uint32_t Interval = 3;
inline constexpr std::uint32_t Ratio = 4;
inline constexpr std::uint32_t Identifier = 5;

inline constexpr std::uint32_t NumTypes = 6;
// "Stat Variable Type is Unknown", ... indexed by value.
extern const char* const TypeName[NumTypes];
}  // namespace ZqStatVariableType

// Storage type of a value.
namespace ZqStatVarDataType {
inline constexpr std::uint32_t Unknown = 0;
inline constexpr std::uint32_t Unsigned = 1;
inline constexpr std::uint32_t Int = 2;
inline constexpr std::uint32_t Double = 3;
inline constexpr std::uint32_t String = 4;

inline constexpr std::uint32_t NumTypes = 5;
// "Stat Variable Data Type is Unknown", ... indexed by value.
extern const char* const TypeName[NumTypes];
// Texts of pairs of storage types, indexed by 5 * first + second:
// "Stat Two Variable Data Type is Unsigned, Integer" is entry 7.
extern const char* const TwoTypeName[NumTypes * NumTypes];
}  // namespace ZqStatVarDataType

// The reserved values. "Bad index" is what an accessor returns when the
// address names no element; "missing" marks an element the source had no
// value for; "bad" marks an element that could not be obtained or used.
namespace VarimoBadData {
inline constexpr std::uint32_t BadIndexUnsigned = 0xFFFFFFFDu;
inline constexpr std::uint32_t MissingUnsigned = 0xFFFFFFFEu;
inline constexpr std::uint32_t BadUnsigned = 0xFFFFFFFFu;

inline constexpr std::int32_t BadIndexInt = 0x7FFFFFFD;
inline constexpr std::int32_t MissingInt = 0x7FFFFFFE;
inline constexpr std::int32_t BadInt = 0x7FFFFFFF;

// The largest finite double, a tenth and a hundredth of it, given by their
// bit patterns: nearby values are ordinary data.
inline constexpr double BadIndexDouble = std::bit_cast<double>(std::uint64_t{0x7F847AE147AE147A});  // 1.7976931348623156e306
inline constexpr double MissingDouble = std::bit_cast<double>(std::uint64_t{0x7FB9999999999999});   // 1.7976931348623158e307
inline constexpr double BadDouble = std::bit_cast<double>(std::uint64_t{0x7FEFFFFFFFFFFFFF});       // 1.7976931348623157e308

inline constexpr const char* BadIndexString = "BadIndexToStringData";
inline constexpr const char* MissingString = "MissingStringData";
inline constexpr const char* BadString = "BadStringData";

// Display texts of the numeric reserved values and of bad lookups.
inline constexpr const char* BadIndexUnsignedName = "BadIndexToUnsignedData";
inline constexpr const char* MissingUnsignedName = "MissingUnsignedData";
inline constexpr const char* BadUnsignedName = "BadUnsignedData";
inline constexpr const char* BadIndexIntName = "BadIndexToIntData";
inline constexpr const char* MissingIntName = "MissingIntData";
inline constexpr const char* BadIntName = "BadIntData";
inline constexpr const char* BadIndexDoubleName = "BadIndexToDoubleData";
inline constexpr const char* MissingDoubleName = "MissingDoubleData";
inline constexpr const char* BadDoubleName = "BadDoubleData";
inline constexpr const char* BadIndexName = "BadIndexToData";
inline constexpr const char* MissingIndexName = "MissingIndexToData";
inline constexpr const char* BadIndexToLookupTableName = "BadIndexToLookupTable";
inline constexpr const char* BadLookupIndexName = "BadIndexInTheLookupTable";

// Returned by index computations that find no element.
inline constexpr std::size_t BadIndex = std::numeric_limits<std::size_t>::max();
}  // namespace VarimoBadData

// Tests for reserved values. Doubles compare exactly, so a NaN is neither
// missing nor bad; strings compare whole.
inline bool ZqIsMissing(std::uint32_t value) { return value == VarimoBadData::MissingUnsigned; }
inline bool ZqIsBad(std::uint32_t value) { return value == VarimoBadData::BadUnsigned; }
inline bool ZqIsMissing(std::int32_t value) { return value == VarimoBadData::MissingInt; }
inline bool ZqIsBad(std::int32_t value) { return value == VarimoBadData::BadInt; }
inline bool ZqIsMissing(double value) { return value == VarimoBadData::MissingDouble; }
inline bool ZqIsBad(double value) { return value == VarimoBadData::BadDouble; }
inline bool ZqIsMissing(const std::string& value) { return value == VarimoBadData::MissingString; }
inline bool ZqIsBad(const std::string& value) { return value == VarimoBadData::BadString; }
// Missing or bad.
template <class T>
bool ZqIsMissingOrBad(const T& value) {
  return ZqIsMissing(value) || ZqIsBad(value);
}

}  // namespace Varimo
