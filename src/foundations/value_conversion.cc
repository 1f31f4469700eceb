#include "varimo/foundations/value_conversion.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

namespace Bad = VarimoBadData;

enum class ReservedName { None, Missing, Bad };

ReservedName ClassifyReservedName(const std::string& text) {
  if (text == Bad::MissingUnsignedName || text == Bad::MissingIntName || text == Bad::MissingDoubleName) {
    return ReservedName::Missing;
  }
  if (text == Bad::BadUnsignedName || text == Bad::BadIntName || text == Bad::BadDoubleName) {
    return ReservedName::Bad;
  }
  return ReservedName::None;
}

// Round to nearest under the current rounding mode (ties to even by
// default) by pushing the magnitude through 2^52, where doubles have no
// fractional bits; magnitudes that large are integers already. Then keep the
// low 32 bits of the integer, computed exactly by fmod so that values beyond
// the range of a 64-bit integer are well defined too. The caller has
// excluded NaN and infinities.
std::uint32_t LowBitsOfRounded(double value) {
  constexpr double kTwo52 = 4503599627370496.0;
  constexpr double kTwo32 = 4294967296.0;
  double rounded = value;
  if (std::fabs(value) < kTwo52) {
    volatile double shifted = std::fabs(value) + kTwo52;  // volatile: keep the rounding step
    rounded = std::copysign(shifted - kTwo52, value);
  }
  double low = std::fmod(rounded, kTwo32);
  if (low < 0.0) low += kTwo32;
  return static_cast<std::uint32_t>(low);
}

template <class To, class From, class Convert>
std::vector<To> ConvertEach(const std::vector<From>& values, Convert convert) {
  std::vector<To> converted;
  converted.reserve(values.size());
  std::transform(values.begin(), values.end(), std::back_inserter(converted),
                 [&](const From& value) { return convert(value); });
  return converted;
}

}  // namespace

std::uint32_t ZqUnsignedFromInt(std::int32_t value) {
  if (value == Bad::MissingInt) return Bad::MissingUnsigned;
  if (value == Bad::BadInt) return Bad::BadUnsigned;
  return static_cast<std::uint32_t>(value);
}

std::uint32_t ZqUnsignedFromDouble(double value) {
  if (value == Bad::MissingDouble) return Bad::MissingUnsigned;
  if (value == Bad::BadDouble || !std::isfinite(value)) return Bad::BadUnsigned;
  return LowBitsOfRounded(value);
}

std::uint32_t ZqUnsignedFromString(const std::string& value) {
  switch (ClassifyReservedName(value)) {
    case ReservedName::Missing: return Bad::MissingUnsigned;
    case ReservedName::Bad: return Bad::BadUnsigned;
    case ReservedName::None: break;
  }
  unsigned int parsed = 0;
  return Corvane::ZqStringToNumber(value, parsed, 10) ? parsed : Bad::BadUnsigned;
}

std::int32_t ZqIntFromUnsigned(std::uint32_t value) {
  if (value == Bad::MissingUnsigned) return Bad::MissingInt;
  if (value == Bad::BadUnsigned) return Bad::BadInt;
  return static_cast<std::int32_t>(value);
}

std::int32_t ZqIntFromDouble(double value) {
  if (value == Bad::MissingDouble) return Bad::MissingInt;
  if (value == Bad::BadDouble || !std::isfinite(value)) return Bad::BadInt;
  return static_cast<std::int32_t>(LowBitsOfRounded(value));
}

std::int32_t ZqIntFromString(const std::string& value) {
  switch (ClassifyReservedName(value)) {
    case ReservedName::Missing: return Bad::MissingInt;
    case ReservedName::Bad: return Bad::BadInt;
    case ReservedName::None: break;
  }
  int parsed = 0;
  return Corvane::ZqStringToNumber(value, parsed, 10) ? parsed : Bad::BadInt;
}

double ZqDoubleFromUnsigned(std::uint32_t value) {
  if (value == Bad::MissingUnsigned) return Bad::MissingDouble;
  if (value == Bad::BadUnsigned) return Bad::BadDouble;
  return static_cast<double>(value);
}

double ZqDoubleFromInt(std::int32_t value) {
  if (value == Bad::MissingInt) return Bad::MissingDouble;
  if (value == Bad::BadInt) return Bad::BadDouble;
  return static_cast<double>(value);
}

double ZqDoubleFromString(const std::string& value) {
  switch (ClassifyReservedName(value)) {
    case ReservedName::Missing: return Bad::MissingDouble;
    case ReservedName::Bad: return Bad::BadDouble;
    case ReservedName::None: break;
  }
  double parsed = 0.0;
  return Corvane::ZqStringToNumber(value, parsed) ? parsed : Bad::BadDouble;
}

std::string ZqStringFromUnsigned(std::uint32_t value) {
  if (value == Bad::MissingUnsigned) return Bad::MissingUnsignedName;
  if (value == Bad::BadUnsigned) return Bad::BadUnsignedName;
  return std::to_string(value);
}

std::string ZqStringFromInt(std::int32_t value) {
  if (value == Bad::MissingInt) return Bad::MissingIntName;
  if (value == Bad::BadInt) return Bad::BadIntName;
  return std::to_string(value);
}

std::string ZqStringFromDouble(double value) {
  if (value == Bad::MissingDouble) return Bad::MissingDoubleName;
  if (value == Bad::BadDouble) return Bad::BadDoubleName;
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

std::vector<std::uint32_t> ZqUnsignedFromInt(const std::vector<std::int32_t>& values) {
  return ConvertEach<std::uint32_t>(values, [](std::int32_t v) { return ZqUnsignedFromInt(v); });
}
std::vector<std::uint32_t> ZqUnsignedFromDouble(const std::vector<double>& values) {
  return ConvertEach<std::uint32_t>(values, [](double v) { return ZqUnsignedFromDouble(v); });
}
std::vector<std::uint32_t> ZqUnsignedFromString(const std::vector<std::string>& values) {
  return ConvertEach<std::uint32_t>(values, [](const std::string& v) { return ZqUnsignedFromString(v); });
}
std::vector<std::int32_t> ZqIntFromUnsigned(const std::vector<std::uint32_t>& values) {
  return ConvertEach<std::int32_t>(values, [](std::uint32_t v) { return ZqIntFromUnsigned(v); });
}
std::vector<std::int32_t> ZqIntFromDouble(const std::vector<double>& values) {
  return ConvertEach<std::int32_t>(values, [](double v) { return ZqIntFromDouble(v); });
}
std::vector<std::int32_t> ZqIntFromString(const std::vector<std::string>& values) {
  return ConvertEach<std::int32_t>(values, [](const std::string& v) { return ZqIntFromString(v); });
}
std::vector<double> ZqDoubleFromUnsigned(const std::vector<std::uint32_t>& values) {
  return ConvertEach<double>(values, [](std::uint32_t v) { return ZqDoubleFromUnsigned(v); });
}
std::vector<double> ZqDoubleFromInt(const std::vector<std::int32_t>& values) {
  return ConvertEach<double>(values, [](std::int32_t v) { return ZqDoubleFromInt(v); });
}
std::vector<double> ZqDoubleFromString(const std::vector<std::string>& values) {
  return ConvertEach<double>(values, [](const std::string& v) { return ZqDoubleFromString(v); });
}
std::vector<std::string> ZqStringFromUnsigned(const std::vector<std::uint32_t>& values) {
  return ConvertEach<std::string>(values, [](std::uint32_t v) { return ZqStringFromUnsigned(v); });
}
std::vector<std::string> ZqStringFromInt(const std::vector<std::int32_t>& values) {
  return ConvertEach<std::string>(values, [](std::int32_t v) { return ZqStringFromInt(v); });
}
std::vector<std::string> ZqStringFromDouble(const std::vector<double>& values) {
  return ConvertEach<std::string>(values, [](double v) { return ZqStringFromDouble(v); });
}

}  // namespace Varimo
