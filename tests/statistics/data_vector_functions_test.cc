#include "varimo/statistics/data_vector_functions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "result_support.h"

namespace Varimo {
namespace {

using VarimoTest::Context;

constexpr double kBad = 1.7976931348623157e308;

TEST(ZqGetSampleStatisticForDataVec, AppliesTheStatisticAndNeverFails) {
  ZqStatModelResult result;  // starts as a failure
  EXPECT_EQ(ZqGetSampleStatisticForDataVec(result, ZqSampleStatisticType::Max, {1.0, 9.0, 3.0}), 9.0);
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(ZqGetSampleStatisticForDataVec(result, ZqSampleStatisticType::Quantile, 0.25, {1.0, 2.0, 3.0, 4.0}),
            ZqQuantile(0.25, {1.0, 2.0, 3.0, 4.0}, 8));
  ZqStatModelResult empty;
  EXPECT_EQ(ZqGetSampleStatisticForDataVec(empty, ZqSampleStatisticType::Mean, {}), kBad);
  EXPECT_TRUE(empty.IsSuccessful());
}

TEST(ZqGetTwoSampleAndPairStatisticForDataPairVec, EmptyIsNoData) {
  ZqStatModelResult result(true);
  EXPECT_EQ(ZqGetTwoSampleStatisticForDataPairVec(result, ZqTwoSampleStatisticType::Covariance, {}), kBad);
  EXPECT_EQ(result.GetFailureType(), ZqStatModelFailureType::NoData);
  EXPECT_EQ(Context(result), std::vector<std::string>{"ZqGetTwoSampleStatisticForDataPairVec"});
  EXPECT_EQ(ZqGetTwoSampleStatisticForDataPairVec(result, ZqTwoSampleStatisticType::Covariance,
                                                  {{1.0, 2.0}, {3.0, 6.0}}),
            2.0);
  EXPECT_TRUE(result.IsSuccessful());

  EXPECT_EQ(ZqGetTwoSamplePairStatisticForDataPairVec(result, ZqTwoSamplePairStatisticType::PairOfMeans, {}),
            std::make_pair(kBad, kBad));
  EXPECT_EQ(result.GetFailureType(), ZqStatModelFailureType::NoData);
  EXPECT_EQ(Context(result), std::vector<std::string>{"ZqGetTwoSamplePairStatisticForDataPairVec"});
  EXPECT_EQ(ZqGetTwoSamplePairStatisticForDataPairVec(result, ZqTwoSamplePairStatisticType::PairOfMeans,
                                                      {{1.0, 2.0}, {3.0, 6.0}}),
            std::make_pair(2.0, 4.0));
  EXPECT_TRUE(result.IsSuccessful());
}

}  // namespace
}  // namespace Varimo
