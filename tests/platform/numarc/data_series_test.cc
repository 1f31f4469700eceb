#include "varimo/platform/numarc/data_series.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Numarc {
namespace {

TEST(NumarcDataSeries, KeepsPointsInOrderAndTheNameAndCopiesAreIndependent) {
  ZqDataSeries series;
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(series.GetName(), "");
  series.SetName("residuals");
  series.AddPoint(ZqDataPoint(2.0, -1.0));
  series.AddPoint(ZqDataPoint(1.0, std::numeric_limits<double>::quiet_NaN()));
  ASSERT_EQ(series.GetNumPoints(), 2u);
  EXPECT_EQ(series.GetPoints()[0], ZqDataPoint(2.0, -1.0));
  EXPECT_EQ(series.GetPoints()[1].GetX(), 1.0);
  EXPECT_TRUE(std::isnan(series.GetPoints()[1].GetY()));

  series.Clear();
  EXPECT_EQ(series.GetNumPoints(), 0u);
  EXPECT_EQ(series.GetName(), "residuals");

  // SetPoints replaces; copies are independent.
  series.AddPoint(ZqDataPoint(9.0, 9.0));
  series.SetPoints({ZqDataPoint(0.0, 1.0), ZqDataPoint(0.5, 2.0), ZqDataPoint(1.0, 4.0)});
  ASSERT_EQ(series.GetNumPoints(), 3u);
  EXPECT_EQ(series.GetPoints().front(), ZqDataPoint(0.0, 1.0));

  ZqDataSeries copy = series;
  copy.AddPoint(ZqDataPoint(2.0, 8.0));
  copy.SetName("copy");
  EXPECT_EQ(series.GetNumPoints(), 3u);
  EXPECT_EQ(series.GetName(), "residuals");
  EXPECT_EQ(copy.GetNumPoints(), 4u);
}

}  // namespace
}  // namespace Numarc
