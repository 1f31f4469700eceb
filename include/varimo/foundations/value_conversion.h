// Conversions between the storage types of the statistics layer. Each maps
// the missing and bad values of its source to those of its target; what
// cannot be converted becomes the bad value of the target. No conversion
// reports a failure: callers that must tell test the result.
//
// Bad-index values are not reserved here and pass through as ordinary
// numbers. Every scalar form has a vector form of the same name that
// converts element by element.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Varimo {

// Int bits reinterpreted, except int missing/bad -> unsigned missing/bad.
// So ZqUnsignedFromInt(-2) is 0xFFFFFFFE, the unsigned missing value.
std::uint32_t ZqUnsignedFromInt(std::int32_t value);
// Rounded to nearest (ties to even) and cut to the low 32 bits, so -1.0
// gives 0xFFFFFFFF, the bad value. NaN and infinities give the bad value.
std::uint32_t ZqUnsignedFromDouble(double value);
// Reserved names of any numeric type give the reserved value of the same
// sort; otherwise a base-10 parse of the whole text, bad when it fails.
std::uint32_t ZqUnsignedFromString(const std::string& value);

std::int32_t ZqIntFromUnsigned(std::uint32_t value);
std::int32_t ZqIntFromDouble(double value);
std::int32_t ZqIntFromString(const std::string& value);

double ZqDoubleFromUnsigned(std::uint32_t value);
double ZqDoubleFromInt(std::int32_t value);
double ZqDoubleFromString(const std::string& value);

// The reserved names ("MissingUnsignedData", "BadIntData", ...) or the
// decimal text; doubles as a default stream writes them (six significant
// digits, general format).
std::string ZqStringFromUnsigned(std::uint32_t value);
std::string ZqStringFromInt(std::int32_t value);
std::string ZqStringFromDouble(double value);

std::vector<std::uint32_t> ZqUnsignedFromInt(const std::vector<std::int32_t>& values);
std::vector<std::uint32_t> ZqUnsignedFromDouble(const std::vector<double>& values);
std::vector<std::uint32_t> ZqUnsignedFromString(const std::vector<std::string>& values);
std::vector<std::int32_t> ZqIntFromUnsigned(const std::vector<std::uint32_t>& values);
std::vector<std::int32_t> ZqIntFromDouble(const std::vector<double>& values);
std::vector<std::int32_t> ZqIntFromString(const std::vector<std::string>& values);
std::vector<double> ZqDoubleFromUnsigned(const std::vector<std::uint32_t>& values);
std::vector<double> ZqDoubleFromInt(const std::vector<std::int32_t>& values);
std::vector<double> ZqDoubleFromString(const std::vector<std::string>& values);
std::vector<std::string> ZqStringFromUnsigned(const std::vector<std::uint32_t>& values);
std::vector<std::string> ZqStringFromInt(const std::vector<std::int32_t>& values);
std::vector<std::string> ZqStringFromDouble(const std::vector<double>& values);

}  // namespace Varimo
