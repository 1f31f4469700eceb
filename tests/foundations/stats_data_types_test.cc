// The reserved missing and bad values, their names and type names, and the
// conversions between the value types that carry them across.
#include "varimo/foundations/stats_data_types.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "varimo/foundations/value_conversion.h"

namespace Varimo {
namespace {

namespace Bad = VarimoBadData;

// The type names show in column reports: the ends of each table in full, and
// the two-type names by their rule.
TEST(StatTypeTexts, TypeNamesAndTwoTypeNames) {
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Unknown], "Stat Variable Type is Unknown");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Identifier], "Stat Variable Type is Identifier");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[1], "Stat Variable Data Type is Unsigned Integer");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[4], "Stat Variable Data Type is String");
  const char* words[] = {"Unknown", "Unsigned", "Integer", "Double", "String"};
  for (unsigned first = 0; first < 5; ++first) {
    for (unsigned second = 0; second < 5; ++second) {
      EXPECT_EQ(std::string(ZqStatVarDataType::TwoTypeName[5 * first + second]),
                std::string("Stat Two Variable Data Type is ") + words[first] + ", " + words[second]);
    }
  }
}

TEST(ReservedValues, NumbersAndBitPatterns) {
  EXPECT_EQ(Bad::BadIndexUnsigned, 0xFFFFFFFDu);
  EXPECT_EQ(Bad::MissingUnsigned, 0xFFFFFFFEu);
  EXPECT_EQ(Bad::BadUnsigned, 0xFFFFFFFFu);
  EXPECT_EQ(Bad::BadIndexInt, 0x7FFFFFFD);
  EXPECT_EQ(Bad::MissingInt, 0x7FFFFFFE);
  EXPECT_EQ(Bad::BadInt, 0x7FFFFFFF);
  EXPECT_EQ(Bad::BadDouble, std::numeric_limits<double>::max());
  // The decimal forms quoted in the documentation (equal doubles, so equal bits).
  EXPECT_EQ(Bad::BadIndexDouble, 1.7976931348623156e306);
  EXPECT_EQ(Bad::MissingDouble, 1.7976931348623158e307);
  EXPECT_EQ(Bad::BadDouble, 1.7976931348623157e308);
  EXPECT_EQ(Bad::BadIndex, std::numeric_limits<std::size_t>::max());
}

// The missing and bad names of the numeric types are checked through the
// conversions to text; these are the others.
TEST(ReservedValues, NamesWithoutAConversion) {
  EXPECT_STREQ(Bad::BadIndexString, "BadIndexToStringData");
  EXPECT_STREQ(Bad::MissingString, "MissingStringData");
  EXPECT_STREQ(Bad::BadIndexName, "BadIndexToData");
  EXPECT_STREQ(Bad::BadIndexToLookupTableName, "BadIndexToLookupTable");
  EXPECT_STREQ(Bad::BadLookupIndexName, "BadIndexInTheLookupTable");
}

TEST(ReservedValues, TestsAreExact) {
  EXPECT_TRUE(ZqIsMissing(Bad::MissingDouble));
  EXPECT_TRUE(ZqIsBad(Bad::BadDouble));
  EXPECT_FALSE(ZqIsMissing(std::nextafter(Bad::MissingDouble, 0.0)));
  EXPECT_FALSE(ZqIsBad(std::nextafter(Bad::BadDouble, 0.0)));
  EXPECT_FALSE(ZqIsMissing(std::nan("")));
  EXPECT_FALSE(ZqIsBad(std::nan("")));
  EXPECT_FALSE(ZqIsMissingOrBad(Bad::BadIndexDouble));
  EXPECT_TRUE(ZqIsMissing(Bad::MissingInt));
  EXPECT_TRUE(ZqIsBad(Bad::BadUnsigned));
  EXPECT_TRUE(ZqIsMissing(std::string("MissingStringData")));
  EXPECT_FALSE(ZqIsMissing(std::string("MissingStringData ")));
}

TEST(ValueConversion, ReservedValuesMapAcrossTypes) {
  EXPECT_EQ(ZqUnsignedFromInt(Bad::MissingInt), Bad::MissingUnsigned);
  EXPECT_EQ(ZqUnsignedFromInt(Bad::BadInt), Bad::BadUnsigned);
  EXPECT_EQ(ZqUnsignedFromDouble(Bad::MissingDouble), Bad::MissingUnsigned);
  EXPECT_EQ(ZqUnsignedFromDouble(Bad::BadDouble), Bad::BadUnsigned);
  EXPECT_EQ(ZqIntFromUnsigned(Bad::MissingUnsigned), Bad::MissingInt);
  EXPECT_EQ(ZqIntFromUnsigned(Bad::BadUnsigned), Bad::BadInt);
  EXPECT_EQ(ZqIntFromDouble(Bad::MissingDouble), Bad::MissingInt);
  EXPECT_EQ(ZqIntFromDouble(Bad::BadDouble), Bad::BadInt);
  EXPECT_EQ(ZqDoubleFromUnsigned(Bad::MissingUnsigned), Bad::MissingDouble);
  EXPECT_EQ(ZqDoubleFromUnsigned(Bad::BadUnsigned), Bad::BadDouble);
  EXPECT_EQ(ZqDoubleFromInt(Bad::MissingInt), Bad::MissingDouble);
  EXPECT_EQ(ZqDoubleFromInt(Bad::BadInt), Bad::BadDouble);
  EXPECT_EQ(ZqStringFromUnsigned(Bad::MissingUnsigned), "MissingUnsignedData");
  EXPECT_EQ(ZqStringFromUnsigned(Bad::BadUnsigned), "BadUnsignedData");
  EXPECT_EQ(ZqStringFromInt(Bad::MissingInt), "MissingIntData");
  EXPECT_EQ(ZqStringFromInt(Bad::BadInt), "BadIntData");
  EXPECT_EQ(ZqStringFromDouble(Bad::MissingDouble), "MissingDoubleData");
  EXPECT_EQ(ZqStringFromDouble(Bad::BadDouble), "BadDoubleData");
}

TEST(ValueConversion, BadIndexValuesAndIntegerBitsAreOrdinaryNumbers) {
  EXPECT_EQ(ZqDoubleFromInt(0x7FFFFFFD), 2147483645.0);
  EXPECT_EQ(ZqUnsignedFromInt(Bad::BadIndexInt), 0x7FFFFFFDu);
  EXPECT_EQ(ZqDoubleFromUnsigned(Bad::BadIndexUnsigned), 4294967293.0);
  EXPECT_EQ(ZqStringFromInt(Bad::BadIndexInt), "2147483645");
  EXPECT_EQ(ZqStringFromDouble(Bad::BadIndexDouble), "1.79769e+306");
  EXPECT_EQ(ZqUnsignedFromInt(-2), 0xFFFFFFFEu);  // lands on unsigned missing
  EXPECT_EQ(ZqUnsignedFromInt(-3), 0xFFFFFFFDu);
  EXPECT_EQ(ZqIntFromUnsigned(0x80000000u), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ZqIntFromUnsigned(0xFFFFFFFDu), -3);
}

TEST(ValueConversion, DoublesRoundToNearestEvenAndNonFiniteOnesAreBad) {
  const std::vector<std::pair<double, std::int32_t>> rounded = {{0.5, 0},   {1.5, 2},   {2.5, 2}, {3.5, 4},
                                                               {-2.5, -2}, {-0.7, -1}, {2.4999999999999996, 2}};
  for (const auto& [value, integer] : rounded) EXPECT_EQ(ZqIntFromDouble(value), integer) << value;
  EXPECT_EQ(ZqUnsignedFromDouble(-1.0), 0xFFFFFFFFu);  // same as bad, unguarded
  EXPECT_EQ(ZqUnsignedFromDouble(4294967296.0 + 7.0), 7u);  // low 32 bits
  EXPECT_EQ(ZqIntFromDouble(2147483648.0), std::numeric_limits<std::int32_t>::min());
  // Past 2^52 the value is an integer already; past 2^64 the low bits are
  // still exact (2^70 + 2^40 has low 32 bits zero, 2^60 + 5 * 2^8 does not).
  EXPECT_EQ(ZqUnsignedFromDouble(std::ldexp(1.0, 70) + std::ldexp(1.0, 40)), 0u);
  EXPECT_EQ(ZqUnsignedFromDouble(std::ldexp(1.0, 60) + 1280.0), 1280u);
  EXPECT_EQ(ZqIntFromDouble(std::nan("")), Bad::BadInt);
  EXPECT_EQ(ZqUnsignedFromDouble(std::numeric_limits<double>::infinity()), Bad::BadUnsigned);
  EXPECT_EQ(ZqIntFromDouble(-std::numeric_limits<double>::infinity()), Bad::BadInt);
}

TEST(ValueConversion, StringsToNumbersAndBack) {
  EXPECT_EQ(ZqDoubleFromString("MissingIntData"), 1.7976931348623158e307);
  EXPECT_EQ(ZqIntFromString("MissingDoubleData"), 0x7FFFFFFE);
  EXPECT_EQ(ZqUnsignedFromString("MissingIntData"), Bad::MissingUnsigned);
  EXPECT_EQ(ZqIntFromString("abc"), 0x7FFFFFFF);
  EXPECT_EQ(ZqIntFromString("BadUnsignedData"), 0x7FFFFFFF);
  EXPECT_EQ(ZqDoubleFromString("BadIntData"), Bad::BadDouble);
  // The string reserved names are not numeric names: a failed parse, so bad.
  EXPECT_EQ(ZqDoubleFromString("MissingStringData"), Bad::BadDouble);
  EXPECT_EQ(ZqIntFromString("BadStringData"), Bad::BadInt);
  EXPECT_EQ(ZqDoubleFromString(""), Bad::BadDouble);
  EXPECT_EQ(ZqIntFromString("42"), 42);
  EXPECT_EQ(ZqIntFromString("-42"), -42);
  EXPECT_EQ(ZqIntFromString("4.2"), Bad::BadInt);
  EXPECT_EQ(ZqIntFromString("2147483648"), Bad::BadInt);  // overflow
  EXPECT_EQ(ZqUnsignedFromString("-1"), Bad::BadUnsigned);
  EXPECT_EQ(ZqUnsignedFromString("4294967294"), Bad::MissingUnsigned);  // numerically the missing value
  EXPECT_EQ(ZqDoubleFromString("2.5e-3"), 0.0025);
  EXPECT_EQ(ZqDoubleFromString("1.7976931348623157e308"), Bad::BadDouble);
  EXPECT_EQ(ZqStringFromUnsigned(4000000000u), "4000000000");
  EXPECT_EQ(ZqStringFromInt(-17), "-17");
  EXPECT_EQ(ZqStringFromDouble(3.14159265), "3.14159");
  EXPECT_EQ(ZqStringFromDouble(1234567.0), "1.23457e+06");
  EXPECT_EQ(ZqStringFromDouble(0.0001), "0.0001");
  EXPECT_EQ(ZqStringFromDouble(-0.5), "-0.5");
}

TEST(ValueConversion, VectorFormsConvertEachElementInOrder) {
  const std::vector<double> doubles = {1.5, Bad::MissingDouble, -1.0, Bad::BadDouble};
  EXPECT_EQ(ZqIntFromDouble(doubles), (std::vector<std::int32_t>{2, Bad::MissingInt, -1, Bad::BadInt}));
  EXPECT_EQ(ZqStringFromDouble(doubles),
            (std::vector<std::string>{"1.5", "MissingDoubleData", "-1", "BadDoubleData"}));
  EXPECT_EQ(ZqDoubleFromString(std::vector<std::string>{"1", "x", "MissingUnsignedData"}),
            (std::vector<double>{1.0, Bad::BadDouble, Bad::MissingDouble}));
  EXPECT_TRUE(ZqUnsignedFromInt(std::vector<std::int32_t>{}).empty());
  EXPECT_EQ(ZqUnsignedFromString(std::vector<std::string>{"7", "BadDoubleData"}),
            (std::vector<std::uint32_t>{7u, Bad::BadUnsigned}));
  EXPECT_EQ(ZqIntFromUnsigned(std::vector<std::uint32_t>{0xFFFFFFFEu, 5u}),
            (std::vector<std::int32_t>{Bad::MissingInt, 5}));
  EXPECT_EQ(ZqDoubleFromInt(std::vector<std::int32_t>{Bad::BadInt, 3}),
            (std::vector<double>{Bad::BadDouble, 3.0}));
  EXPECT_EQ(ZqStringFromUnsigned(std::vector<std::uint32_t>{1u}), std::vector<std::string>{"1"});
  EXPECT_EQ(ZqStringFromInt(std::vector<std::int32_t>{Bad::MissingInt}), std::vector<std::string>{"MissingIntData"});
  EXPECT_EQ(ZqIntFromString(std::vector<std::string>{"-3"}), std::vector<std::int32_t>{-3});
  EXPECT_EQ(ZqUnsignedFromDouble(std::vector<double>{2.5}), std::vector<std::uint32_t>{2u});
  EXPECT_EQ(ZqDoubleFromUnsigned(std::vector<std::uint32_t>{9u}), std::vector<double>{9.0});
}

}  // namespace
}  // namespace Varimo
