#include "varimo/platform/corvane/strings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace Corvane {
namespace {

using Tokens = std::vector<std::string>;

Tokens Tokenize(const std::string& line, const std::string& delimiters, bool merge) {
  Tokens tokens{"stale"};
  ZqStringTokenize(tokens, line, delimiters, merge);
  return tokens;
}

Tokens TokenizeQuoted(const std::string& line, const std::string& delimiters, bool merge) {
  Tokens tokens{"stale"};
  ZqStringTokenizeQuoted(tokens, line, delimiters, "\"'", merge);
  return tokens;
}

TEST(ZqStringToNumber, AcceptsWholeNumbersWithBlanksAndSigns) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  // Underflow reads as zero; subnormals are kept.
  const std::vector<std::pair<const char*, double>> doubles = {
      {" 2.5e3\r", 2500.0}, {"+.5", 0.5}, {"-1E-2", -0.01}, {"1e-400", 0.0}, {"-2.5e-320", -2.5e-320},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()}, {"-Inf", -kInf}};
  for (const auto& [text, value] : doubles) {
    double d = 7.0;
    EXPECT_TRUE(ZqStringToNumber(text, d)) << text;
    EXPECT_EQ(d, value) << text;
  }
  double d = 0.0;
  EXPECT_TRUE(ZqStringToNumber("NaN", d));
  EXPECT_TRUE(std::isnan(d));

  int i = 0;
  EXPECT_TRUE(ZqStringToNumber("-2147483648", i));
  EXPECT_EQ(i, std::numeric_limits<int>::min());
  EXPECT_TRUE(ZqStringToNumber("ff", i, 16));
  EXPECT_EQ(i, 255);
  unsigned int u = 0;
  EXPECT_TRUE(ZqStringToNumber("+4294967295", u));
  EXPECT_EQ(u, 4294967295u);
}

TEST(ZqStringToNumber, RefusesPartialEmptyAndOutOfRangeTextAndKeepsValue) {
  double d = 7.0;
  for (const char* text : {"", "  ", "1.5x", "x1.5", "1e400", "0x1p3", "+-1", "++1", "-", "1 2"}) {
    EXPECT_FALSE(ZqStringToNumber(text, d)) << '"' << text << '"';
    EXPECT_EQ(d, 7.0);
  }
  int i = 3;
  for (const char* text : {"2147483648", "1.0", "1e3", "", "12abc", "0x10"}) {
    EXPECT_FALSE(ZqStringToNumber(text, i)) << '"' << text << '"';
    EXPECT_EQ(i, 3);
  }
  EXPECT_FALSE(ZqStringToNumber("10", i, 1));  // no such base
  unsigned int u = 9;
  EXPECT_FALSE(ZqStringToNumber("-1", u));
  EXPECT_FALSE(ZqStringToNumber("4294967296", u));
  EXPECT_EQ(u, 9u);
}

TEST(ZqNumberToString, FormatsLikePrintf) {
  std::string text;
  ASSERT_TRUE(ZqNumberToString(text, 1.5, 'f', 12));
  EXPECT_EQ(text, "1.500000000000");
  ASSERT_TRUE(ZqNumberToString(text, 12345.678, 'e', 2));
  EXPECT_EQ(text, "1.23e+04");
  ASSERT_TRUE(ZqNumberToString(text, 0.0001234, 'g', 3));
  EXPECT_EQ(text, "0.000123");
  EXPECT_FALSE(ZqNumberToString(text, 1.0, 'd', 3));
  EXPECT_FALSE(ZqNumberToString(text, 1.0, 'f', -1));
  EXPECT_EQ(text, "0.000123");  // untouched on failure
  // A long fixed rendering is not cut short.
  ASSERT_TRUE(ZqNumberToString(text, 1e300, 'f', 2));
  EXPECT_EQ(text.size(), 304u);
  EXPECT_EQ(ZqNumberToString(-12LL), "-12");
  EXPECT_EQ(ZqNumberToString(18446744073709551615ULL), "18446744073709551615");
}

TEST(ZqStringTokenize, MergingRunsOfDelimitersOrKeepingEmptyFieldsAsCsvDoes) {
  EXPECT_EQ(Tokenize("  a \t b  ", " \t", true), (Tokens{"a", "b"}));
  EXPECT_EQ(Tokenize("   ", " ", true), Tokens{});
  EXPECT_EQ(Tokenize("", " ", true), Tokens{});
  EXPECT_EQ(Tokenize("abc", " ", true), Tokens{"abc"});
  EXPECT_EQ(Tokenize("a,,b,", ",\n", false), (Tokens{"a", "", "b", ""}));
  EXPECT_EQ(Tokenize(",a", ",", false), (Tokens{"", "a"}));
  EXPECT_EQ(Tokenize(",", ",", false), (Tokens{"", ""}));
  EXPECT_EQ(Tokenize("", ",", false), Tokens{});
}

TEST(ZqStringTokenizeQuoted, QuotesProtectDelimiters) {
  EXPECT_EQ(TokenizeQuoted("\"a,b\",c", ",", false), (Tokens{"a,b", "c"}));
  EXPECT_EQ(TokenizeQuoted("'x y' z", " ", true), (Tokens{"x y", "z"}));
  EXPECT_EQ(TokenizeQuoted("\"say \"\"hi\"\"\",2", ",", false), (Tokens{"say \"hi\"", "2"}));
  EXPECT_EQ(TokenizeQuoted("\"\" b", " ", true), (Tokens{"", "b"}));  // an empty quoted token survives merging
  EXPECT_EQ(TokenizeQuoted("\"ab\"c,d", ",", false), (Tokens{"abc", "d"}));
  EXPECT_EQ(TokenizeQuoted("N'-methyl,2", ",", false), (Tokens{"N'-methyl", "2"}));  // quote inside a token
  EXPECT_EQ(TokenizeQuoted("\"open, never closed", ",", false), Tokens{"open, never closed"});
  EXPECT_EQ(TokenizeQuoted("a,'',b", ",", false), (Tokens{"a", "", "b"}));
}

TEST(StringCaseAndBlanks, UpperAndStrip) {
  EXPECT_EQ(ZqStringUpper("@attribute x1"), "@ATTRIBUTE X1");
  EXPECT_EQ(ZqStringStripWhiteSpace(" \t x y \r\n"), "x y");
  EXPECT_EQ(ZqStringStripWhiteSpace(" \t "), "");
  EXPECT_EQ(ZqMakeString("n = ", 3, ", x = ", 0.5), "n = 3, x = 0.5");
}

}  // namespace
}  // namespace Corvane
