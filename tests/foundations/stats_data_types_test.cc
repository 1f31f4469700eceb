#include "varimo/foundations/stats_data_types.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>

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
  EXPECT_EQ(std::bit_cast<std::uint64_t>(Bad::BadIndexDouble), 0x7F847AE147AE147Aull);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(Bad::MissingDouble), 0x7FB9999999999999ull);
  EXPECT_EQ(Bad::BadDouble, std::numeric_limits<double>::max());
  // The decimal forms quoted in the documentation parse to the same bits.
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

}  // namespace
}  // namespace Varimo
