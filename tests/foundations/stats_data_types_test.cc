#include "varimo/foundations/stats_data_types.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>

namespace Varimo {
namespace {

namespace Bad = VarimoBadData;

TEST(StatTypeTexts, VariableTypeNames) {
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Unknown], "Stat Variable Type is Unknown");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Nominal], "Stat Variable Type is Nominal");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Ordinal], "Stat Variable Type is Ordinal");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Interval], "Stat Variable Type is Interval");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Ratio], "Stat Variable Type is Ratio");
  EXPECT_STREQ(ZqStatVariableType::TypeName[ZqStatVariableType::Identifier], "Stat Variable Type is Identifier");
}

TEST(StatTypeTexts, DataTypeNames) {
  EXPECT_STREQ(ZqStatVarDataType::TypeName[0], "Stat Variable Data Type is Unknown");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[1], "Stat Variable Data Type is Unsigned Integer");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[2], "Stat Variable Data Type is Integer");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[3], "Stat Variable Data Type is Double");
  EXPECT_STREQ(ZqStatVarDataType::TypeName[4], "Stat Variable Data Type is String");
}

TEST(StatTypeTexts, TwoTypeNamesFollowTheirRule) {
  const char* words[] = {"Unknown", "Unsigned", "Integer", "Double", "String"};
  for (unsigned first = 0; first < 5; ++first) {
    for (unsigned second = 0; second < 5; ++second) {
      EXPECT_EQ(std::string(ZqStatVarDataType::TwoTypeName[5 * first + second]),
                std::string("Stat Two Variable Data Type is ") + words[first] + ", " + words[second]);
    }
  }
  EXPECT_STREQ(ZqStatVarDataType::TwoTypeName[7], "Stat Two Variable Data Type is Unsigned, Integer");
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

TEST(ReservedValues, Names) {
  EXPECT_STREQ(Bad::BadIndexString, "BadIndexToStringData");
  EXPECT_STREQ(Bad::MissingString, "MissingStringData");
  EXPECT_STREQ(Bad::BadString, "BadStringData");
  EXPECT_STREQ(Bad::BadIndexUnsignedName, "BadIndexToUnsignedData");
  EXPECT_STREQ(Bad::MissingUnsignedName, "MissingUnsignedData");
  EXPECT_STREQ(Bad::BadUnsignedName, "BadUnsignedData");
  EXPECT_STREQ(Bad::BadIndexIntName, "BadIndexToIntData");
  EXPECT_STREQ(Bad::MissingIntName, "MissingIntData");
  EXPECT_STREQ(Bad::BadIntName, "BadIntData");
  EXPECT_STREQ(Bad::BadIndexDoubleName, "BadIndexToDoubleData");
  EXPECT_STREQ(Bad::MissingDoubleName, "MissingDoubleData");
  EXPECT_STREQ(Bad::BadDoubleName, "BadDoubleData");
  EXPECT_STREQ(Bad::BadIndexName, "BadIndexToData");
  EXPECT_STREQ(Bad::MissingIndexName, "MissingIndexToData");
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
