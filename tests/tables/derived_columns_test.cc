// Columns derived from columns: the values they read beside an eager
// computation of the same rule, the reserved values, names, shapes, and
// sources that change after the derived column was made.
#include "varimo/tables/derived_columns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

namespace B = VarimoBadData;

ZqDataTableCol Ratio(const std::string& name, const std::vector<double>& values) {
  return ZqDataTableCol(name, values);
}

TEST(DerivedColumns, ReadTheEagerValuesOfTheirRules) {
  const std::vector<double> x{0.5, 2.0, 3.5, 9.0, 0.25};
  const std::vector<double> y{1.0, -2.0, 4.0, 0.125, 8.0};
  const ZqDataTableCol a = Ratio("a", x), b = Ratio("b", y);
  const ZqDataTableCol sum = a + b, diff = a - b, product = a * b, ratio = a / b;
  const ZqDataTableCol root = ZqSqrt(a), log = ZqLog(a), shifted = 3.0 - a, scaled = 2.0 / a;
  const ZqDataTableCol doubled = 2.0 * a, halved = a / 2.0;
  const ZqDataTableCol average = ZqAverage({a, b}), spread = ZqRange({a, b}), variance = ZqVariance({a, b});
  for (std::uint64_t r = 0; r < x.size(); ++r) {
    SCOPED_TRACE(r);
    EXPECT_EQ(sum.GetDouble(r, 0), x[r] + y[r]);
    EXPECT_EQ(diff.GetDouble(r, 0), x[r] - y[r]);
    EXPECT_EQ(product.GetDouble(r, 0), x[r] * y[r]);
    EXPECT_EQ(ratio.GetDouble(r, 0), x[r] / y[r]);
    EXPECT_EQ(root.GetDouble(r, 0), std::sqrt(x[r]));
    EXPECT_EQ(log.GetDouble(r, 0), std::log(x[r]));
    EXPECT_EQ(shifted.GetDouble(r, 0), 3.0 - x[r]);
    EXPECT_EQ(scaled.GetDouble(r, 0), 2.0 / x[r]);
    EXPECT_EQ(doubled.GetDouble(r, 0), 2.0 * x[r]);
    EXPECT_EQ(halved.GetDouble(r, 0), x[r] / 2.0);
    EXPECT_EQ(average.GetDouble(r, 0), (x[r] + y[r]) / 2.0);
    EXPECT_EQ(spread.GetDouble(r, 0), std::fabs(x[r] - y[r]));
    // The sample variance of two values: half the squared difference.
    EXPECT_NEAR(variance.GetDouble(r, 0), 0.5 * (x[r] - y[r]) * (x[r] - y[r]), 1e-15);
    EXPECT_EQ((a > b).GetString(r, 0), x[r] > y[r] ? "True" : "False");
    EXPECT_EQ((a <= 2.0).GetUnsigned(r, 0), x[r] <= 2.0 ? 1u : 0u);
  }
  // The log odds on [0, 10], clipped 0.5 inside the ends.
  const ZqDataTableCol odds = ZqLogistic(a, 0.0, 10.0, 0.5);
  EXPECT_EQ(odds.GetDouble(1, 0), std::log(2.0 / 8.0));
  EXPECT_EQ(odds.GetDouble(4, 0), std::log(0.5 / 9.5));
  EXPECT_EQ(ZqLogistic(a, 1.0, 3.0, 0.1).GetDouble(3, 0), B::BadDouble);
}

TEST(DerivedColumns, ReservedValuesNamesAndShapes) {
  ZqDataTableCol a("a", ZqStatVariableType::Ratio, 4);
  for (const double v : {0.0, -1.0, 4.0}) ASSERT_TRUE(ZqAppendDoubleToCol(a, v).IsSuccessful());
  ASSERT_TRUE(ZqAppendMissingDataToCol(a).IsSuccessful());
  ZqDataTableCol b("b", ZqStatVariableType::Ratio, 4);
  for (const double v : {1.0, B::BadDouble, 0.0, B::BadDouble}) ASSERT_TRUE(ZqAppendDoubleToCol(b, v).IsSuccessful());

  EXPECT_EQ(ZqLog(a).GetDouble(0, 0), B::BadDouble);
  EXPECT_EQ(ZqSqrt(a).GetDouble(1, 0), B::BadDouble);
  EXPECT_TRUE(ZqLog(a).RowColHasBadData(0, 0));
  EXPECT_EQ(ZqSqrt(a).GetDouble(3, 0), B::MissingDouble);
  EXPECT_TRUE(ZqSqrt(a).RowColHasMissingData(3, 0));
  // Missing before bad.
  EXPECT_EQ((a + b).GetDouble(3, 0), B::MissingDouble);
  EXPECT_EQ((a + b).GetDouble(1, 0), B::BadDouble);
  EXPECT_EQ((a / b).GetDouble(2, 0), B::BadDouble);  // over zero
  EXPECT_EQ((a > 1.0).GetString(3, 0), B::MissingDoubleName);
  EXPECT_EQ((a > 1.0).GetUnsigned(1, 0), 0u);
  EXPECT_EQ((a > 1.0).GetStatVariableType(), ZqStatVariableType::Nominal);
  EXPECT_EQ(ZqSqrt(a).GetStatVariableType(), ZqStatVariableType::Ratio);

  EXPECT_EQ(ZqSqrt(a).GetColumnName(), "Square Root Transform(a)");
  EXPECT_EQ((a + b).GetColumnName(), "Sum of Two Double Args(a,b)");
  EXPECT_EQ((a > b).GetColumnName(), "Arg Two Greater Than Arg One(a,b)");
  EXPECT_EQ(ZqAverage({a, b, a}).GetColumnName(), "Average value Of a Vec of Doubles(a,b,a)");
  EXPECT_EQ(ZqSqrt(a).GetDouble(9, 0), B::BadIndexDouble);

  // Unequal sources: a null column under the derived name.
  const ZqDataTableCol shorter = Ratio("s", {1.0, 2.0});
  const ZqDataTableCol mismatched = a + shorter;
  EXPECT_EQ(mismatched.GetColumnName(), "Sum of Two Double Args(a,s)");
  EXPECT_EQ(mismatched.GetNumElementsInCol(), 0u);
  EXPECT_EQ(mismatched.GetDouble(0, 0), B::BadIndexDouble);
  EXPECT_EQ(ZqAverage({}).GetNumElementsInCol(), 0u);
}

TEST(DerivedColumns, FollowTheirSourcesAndSlice) {
  ZqDataTableCol source("x", ZqStatVariableType::Ratio, 3);
  ASSERT_TRUE(ZqAppendDoubleToCol(source, 4.0).IsSuccessful());
  const ZqDataTableCol root = ZqSqrt(source);
  EXPECT_EQ(root.GetNumElementsInCol(), 1u);
  ASSERT_TRUE(ZqAppendDoubleToCol(source, 9.0).IsSuccessful());
  EXPECT_EQ(root.GetNumElementsInCol(), 2u);
  EXPECT_EQ(root.GetDouble(1, 0), 3.0);
  EXPECT_EQ(root.GetString(1, 0), "3");
  EXPECT_TRUE(root.ColIsReadOnly());

  // One column of a two-column array, copied.
  const ZqDataTableCol pairs("p", std::vector<double>{1, 10, 2, 20, 3, 30}, 2);
  const ZqDataTableCol slice = ZqSliceColumn(pairs, 1);
  EXPECT_EQ(slice.GetColumnName(), "SliceCol_1_From:p");
  ASSERT_EQ(slice.GetNumElementsInCol(), 3u);
  EXPECT_EQ(slice.GetDouble(2, 0), 30.0);
  EXPECT_FALSE(slice.SharesColumnWith(pairs));
  EXPECT_TRUE(slice.ColIsReadOnly());
  EXPECT_EQ(ZqSliceColumn(ZqDataTableCol(), 0).GetNumElementsInCol(), 0u);
}

TEST(DataTransforms, EveryOverloadConvertsAndTheTextsStand) {
  const ZqAddAScalarDataTransform add(1.5);
  EXPECT_EQ(add.GetDouble(std::int32_t{2}), 3.5);
  EXPECT_EQ(add.GetInt(2.0), 4);  // 3.5 converted to an int: 4
  EXPECT_EQ(add.GetDouble(std::string("2")), 3.5);
  EXPECT_EQ(add.GetDouble(B::MissingInt), B::MissingDouble);
  EXPECT_EQ(ZqDivideIntoScalarDataTransform(1.0).GetDouble(B::BadDouble), B::BadDouble);
  EXPECT_EQ(ZqRatioOfTwoDoubles().GetDouble(B::BadDouble, 0.0), B::BadDouble);
  EXPECT_EQ(ZqRatioOfTwoDoubles().GetDouble(1.0, B::MissingDouble), B::MissingDouble);
  EXPECT_EQ(ZqArgOneLessThanArgTwo({"no", "yes"}).GetString(1.0, 2.0), "yes");
  EXPECT_EQ(ZqArgOneLessEqualToArgTwo({"no", "yes"}).GetTransformName(), "Arg Two Less Or Equal To Arg One");
  EXPECT_EQ(ZqArgEqualToScalar(1.0, {"F", "T"}).StringFromUnsigned(7), B::BadIndexDoubleName);
  EXPECT_EQ(ZqMaxOfVecOfDoubles().GetDouble(std::vector<double>{1.0, 5.0, 3.0}), 5.0);
  EXPECT_EQ(ZqMinOfVecOfDoubles().GetDouble(std::vector<double>{1.0, B::MissingDouble}), B::MissingDouble);
}

}  // namespace
}  // namespace Varimo
