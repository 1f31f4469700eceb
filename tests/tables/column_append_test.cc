#include "varimo/tables/column_append.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::Comments;

namespace Bad = VarimoBadData;
namespace Type = ZqStatVariableType;
namespace Failure = ZqStatModelFailureType;

const auto U = [](ZqDataTableCol& c) { return ZqAppendUnsignedToCol(c, 7u); };
const auto I = [](ZqDataTableCol& c) { return ZqAppendIntToCol(c, -7); };
const auto F = [](ZqDataTableCol& c) { return ZqAppendFloatToCol(c, 1.5f); };
const auto D = [](ZqDataTableCol& c) { return ZqAppendDoubleToCol(c, 2.5); };
const auto S = [](ZqDataTableCol& c) { return ZqAppendStringToCol(c, "txt"); };

TEST(ColumnAppend, StrictAppendsAcceptOrRefuseWithTheirText) {
  struct Append {
    const char* routine;
    const char* what;
    std::function<ZqStatModelResult(ZqDataTableCol&)> call;
  };
  const Append appends[] = {{"ZqAppendUnsignedToCol", "unsigned", U},
                            {"ZqAppendIntToCol", "int", I},
                            {"ZqAppendFloatToCol", "float", F},
                            {"ZqAppendDoubleToCol", "double", D},
                            {"ZqAppendStringToCol", "string", S}};
  // Per kind and append, in the order above: "" where the value is taken,
  // else what the refusal says the kind accepts, as in "Tried adding int,
  // but Ratio Var accepts only doubles!".
  struct Kind {
    std::uint32_t type;
    const char* word;
    std::vector<std::string> accepted;
  };
  const Kind kinds[] = {{Type::Nominal, "Nominal", {"strings", "strings", "strings", "strings", ""}},
                        {Type::Interval, "Interval", {"", "", "doubles", "ints", "ints"}},
                        {Type::Ratio, "Ratio", {"doubles", "doubles", "", "", "doubles"}},
                        {Type::Identifier, "Identifier", {"strings", "strings", "strings", "strings", ""}}};
  for (const Kind& kind : kinds) {
    for (std::size_t a = 0; a < std::size(appends); ++a) {
      SCOPED_TRACE(std::string(appends[a].routine) + " on kind " + kind.word);
      ZqDataTableCol col("c", kind.type, 2);
      const ZqStatModelResult result = appends[a].call(col);
      if (kind.accepted[a].empty()) {
        EXPECT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
        EXPECT_EQ(col.GetNumElementsInCol(), 1u);
        continue;
      }
      EXPECT_EQ(result.GetFailureType(), Failure::ArgumentTypeWrong);
      EXPECT_EQ(Context(result), std::vector<std::string>{appends[a].routine});
      EXPECT_EQ(Comments(result), std::vector<std::string>{std::string("Tried adding ") + appends[a].what + ", but " +
                                                           kind.word + " Var accepts only " + kind.accepted[a] + "!"});
      EXPECT_NE(result.ReportStatResultDetails().find("Wrong Random variable type requested!\n"), std::string::npos);
      EXPECT_EQ(col.GetNumElementsInCol(), 0u);  // unchanged
    }
  }
}

TEST(ColumnAppend, ReadOnlyAndNullColumnsRefuseEverything) {
  ZqDataTableCol ratio("r", Type::Ratio, 1);
  ASSERT_TRUE(ZqFinishAppendingVars(ratio).IsSuccessful());
  ZqDataTableCol nullCol;
  const std::vector<std::function<ZqStatModelResult(ZqDataTableCol&)>> appends = {
      U, I, F, D, S,
      [](ZqDataTableCol& c) { return ZqAppendMissingDataToCol(c); },
      [](ZqDataTableCol& c) { return ZqConvertUnsignedAndAppendToCol(c, 1u); },
      [](ZqDataTableCol& c) { return ZqConvertIntAndAppendToCol(c, 1); },
      [](ZqDataTableCol& c) { return ZqConvertFloatAndAppendToCol(c, 1.0f); },
      [](ZqDataTableCol& c) { return ZqConvertDoubleAndAppendToCol(c, 1.0); },
      [](ZqDataTableCol& c) { return ZqConvertStringAndAppendToCol(c, "1"); }};
  for (const auto& append : appends) {
    EXPECT_EQ(append(ratio).GetFailureType(), Failure::VariableIsReadOnly);
    EXPECT_EQ(append(nullCol).GetFailureType(), Failure::ColumnHasWrongDataType);
  }
  EXPECT_EQ(ratio.GetNumElementsInCol(), 0u);
  // Every kind becomes read only at its finish.
  for (std::uint32_t type : {Type::Nominal, Type::Interval, Type::Identifier}) {
    ZqDataTableCol col("c", type, 1);
    col.FinishAddingVars();
    EXPECT_EQ(ZqAppendMissingDataToCol(col).GetFailureType(), Failure::VariableIsReadOnly) << type;
  }
}

TEST(ColumnAppend, MissingDataOfEachKindAndStoredValuesReadBack) {
  ZqDataTableCol nominal("n", Type::Nominal, 1), interval("i", Type::Interval, 1), ratio("r", Type::Ratio, 1),
      identifier("d", Type::Identifier, 1);
  for (ZqDataTableCol* col : {&nominal, &interval, &ratio, &identifier}) {
    ASSERT_TRUE(ZqAppendMissingDataToCol(*col).IsSuccessful());
    col->FinishAddingVars();
    EXPECT_TRUE(col->RowColHasMissingData(0, 0)) << col->GetColumnName();
    EXPECT_EQ(col->GetDouble(0, 0), Bad::MissingDouble) << col->GetColumnName();
  }
  EXPECT_EQ(interval.GetInt(0, 0), 0x7FFFFFFE);
  EXPECT_TRUE(interval.ColHasMissingData());

  // Stored values read back: an unsigned keeps its bits, a float its value.
  ZqDataTableCol bits("b", Type::Interval, 2);
  ASSERT_TRUE(ZqAppendUnsignedToCol(bits, 0xFFFFFFFFu).IsSuccessful());
  EXPECT_EQ(bits.GetInt(0, 0), -1);
  ZqDataTableCol single("s", Type::Ratio, 2);
  ASSERT_TRUE(ZqAppendFloatToCol(single, 0.1f).IsSuccessful());
  EXPECT_EQ(single.GetDouble(0, 0), static_cast<double>(0.1f));
}

TEST(ColumnAppend, FixedListRefusesUnknownStrings) {
  ZqDataTableCol col("n", Type::Nominal, std::vector<std::string>{"low", "high"}, 2);
  const ZqStatModelResult refused = ZqAppendStringToCol(col, "medium");
  EXPECT_EQ(refused.GetFailureType(), Failure::ArgumentOutOfRange);
  EXPECT_EQ(Context(refused), std::vector<std::string>{"ZqAppendStringToCol"});
  EXPECT_EQ(Comments(refused), std::vector<std::string>{"String medium not found in list of unique nominal values"});
  EXPECT_EQ(col.GetNumElementsInCol(), 0u);

  const ZqStatModelResult converted = ZqConvertDoubleAndAppendToCol(col, 2.5);
  EXPECT_EQ(Context(converted).front(), "ZqAppendStringToCol");
  EXPECT_EQ(Comments(converted), std::vector<std::string>{"String 2.5 not found in list of unique nominal values"});

  const ZqStatModelResult convertedText = ZqConvertStringAndAppendToCol(col, "zero");
  EXPECT_EQ(Context(convertedText), std::vector<std::string>{"ZqConvertStringAndAppendToCol"});
  EXPECT_EQ(Comments(convertedText), std::vector<std::string>{"String zero not found in list of unique nominal values"});
}

TEST(ColumnAppend, ConvertingIntoEachKind) {
  ZqDataTableCol nominal("n", Type::Nominal, 4);
  ASSERT_TRUE(ZqConvertIntAndAppendToCol(nominal, 3).IsSuccessful());
  ASSERT_TRUE(ZqConvertDoubleAndAppendToCol(nominal, 0.25).IsSuccessful());
  ASSERT_TRUE(ZqConvertUnsignedAndAppendToCol(nominal, 3u).IsSuccessful());
  ASSERT_TRUE(ZqConvertStringAndAppendToCol(nominal, "z").IsSuccessful());
  nominal.FinishAddingVars();
  EXPECT_EQ(nominal.GetUniqueDiscreteValues(), (std::vector<std::string>{"0.25", "3", "z"}));

  ZqDataTableCol interval("i", Type::Interval, 8);
  ASSERT_TRUE(ZqConvertDoubleAndAppendToCol(interval, -2.9).IsSuccessful());
  ASSERT_TRUE(ZqConvertFloatAndAppendToCol(interval, 2.9f).IsSuccessful());
  ASSERT_TRUE(ZqConvertStringAndAppendToCol(interval, " 42 ").IsSuccessful());
  ASSERT_TRUE(ZqConvertDoubleAndAppendToCol(interval, Bad::MissingDouble).IsSuccessful());
  ASSERT_TRUE(ZqConvertDoubleAndAppendToCol(interval, 1e12).IsSuccessful());
  ASSERT_TRUE(ZqConvertDoubleAndAppendToCol(interval, std::nan("")).IsSuccessful());
  EXPECT_EQ(interval.GetInt(0, 0), -2);  // toward zero
  EXPECT_EQ(interval.GetInt(1, 0), 2);
  EXPECT_EQ(interval.GetInt(2, 0), 42);
  EXPECT_EQ(interval.GetInt(3, 0), Bad::MissingInt);
  EXPECT_EQ(interval.GetInt(4, 0), Bad::BadInt);
  EXPECT_EQ(interval.GetInt(5, 0), Bad::BadInt);
  const ZqStatModelResult notInt = ZqConvertStringAndAppendToCol(interval, "4.5");
  EXPECT_EQ(notInt.GetFailureType(), Failure::ArgumentValueWrong);
  EXPECT_EQ(Comments(notInt), std::vector<std::string>{"Unable to parse field : 4.5 as an int!"});
  // Reserved names are not numbers to the converting family.
  EXPECT_EQ(ZqConvertStringAndAppendToCol(interval, "MissingIntData").GetFailureType(), Failure::ArgumentValueWrong);
  EXPECT_EQ(interval.GetNumElementsInCol(), 6u);

  ZqDataTableCol ratio("r", Type::Ratio, 4);
  ASSERT_TRUE(ZqConvertIntAndAppendToCol(ratio, -3).IsSuccessful());
  ASSERT_TRUE(ZqConvertStringAndAppendToCol(ratio, "1e-3").IsSuccessful());
  EXPECT_EQ(ratio.GetDouble(0, 0), -3.0);
  EXPECT_EQ(ratio.GetDouble(1, 0), 0.001);
  const ZqStatModelResult notDouble = ZqConvertStringAndAppendToCol(ratio, "?");
  EXPECT_EQ(Comments(notDouble), std::vector<std::string>{"Unable to parse field : ? as a double!"});
  EXPECT_EQ(Context(notDouble), std::vector<std::string>{"ZqConvertStringAndAppendToCol"});
  EXPECT_EQ(ZqConvertStringAndAppendToCol(ratio, "BadDoubleData").GetFailureType(), Failure::ArgumentValueWrong);
}

TEST(ColumnAppend, NumberIntoIdentifierIsKeptButReportedWrong) {
  ZqDataTableCol ids("d", Type::Identifier, 2);
  const ZqStatModelResult result = ZqConvertDoubleAndAppendToCol(ids, 1.25);
  EXPECT_EQ(result.GetFailureType(), Failure::ColumnHasWrongDataType);
  EXPECT_EQ(Context(result), std::vector<std::string>{"ZqConvertDoubleAndAppendToCol"});
  EXPECT_EQ(ids.GetString(0, 0), "1.25");
  EXPECT_TRUE(ZqConvertStringAndAppendToCol(ids, "name").IsSuccessful());
  EXPECT_EQ(ids.GetNumElementsInCol(), 2u);
}

}  // namespace
}  // namespace Varimo
