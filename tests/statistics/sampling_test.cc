#include "varimo/statistics/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

#include "varimo/platform/numarc/generators.h"

namespace Varimo {
namespace {

using Ids = std::vector<std::uint64_t>;
const Ids kPopulation = {40, 7, 93, 12, 55, 3, 71, 28, 66, 19};

Ids Sorted(Ids ids) {
  std::sort(ids.begin(), ids.end());
  return ids;
}

TEST(SampleWithoutReplacement, SplitsThePopulationAtRandomAndRepeatably) {
  Numarc::ZqRanNumEngine engine(3), same(3);
  Ids chosen, rest, again, againRest;
  ZqSampleWithoutReplacement(engine, chosen, rest, 3, kPopulation);
  ZqSampleWithoutReplacement(same, again, againRest, 3, kPopulation);
  EXPECT_EQ(chosen, again);
  ASSERT_EQ(chosen.size(), 3u);
  ASSERT_EQ(rest.size(), 7u);
  EXPECT_TRUE(std::is_sorted(chosen.begin(), chosen.end()) && std::is_sorted(rest.begin(), rest.end()));
  Ids all = chosen;
  all.insert(all.end(), rest.begin(), rest.end());
  EXPECT_EQ(Sorted(all), Sorted(kPopulation));
  // Each member is chosen 3 times in 10 over many draws: 3000 of 10000,
  // within 5 standard deviations (sqrt(10000 0.3 0.7) = 46).
  std::map<std::uint64_t, int> counts;
  for (int draw = 0; draw < 10000; ++draw) {
    ZqSampleWithoutReplacement(engine, chosen, rest, 3, kPopulation);
    for (const std::uint64_t id : chosen) ++counts[id];
  }
  for (const std::uint64_t id : kPopulation) EXPECT_NEAR(counts[id], 3000, 230) << id;
}

TEST(SampleWithoutReplacement, AllZeroOrNone) {
  for (std::uint64_t count : {10u, 11u, 1000u}) {
    Numarc::ZqRanNumEngine engine(5), untouched(5);
    Ids chosen, rest = {1, 2};
    ZqSampleWithoutReplacement(engine, chosen, rest, count, kPopulation);
    EXPECT_EQ(chosen, kPopulation);
    EXPECT_TRUE(rest.empty());
    EXPECT_EQ(engine(), untouched());
  }
  Numarc::ZqRanNumEngine engine(5);
  Ids chosen = {9}, rest;
  ZqSampleWithoutReplacement(engine, chosen, rest, 0, kPopulation);
  EXPECT_TRUE(chosen.empty());
  EXPECT_EQ(rest, Sorted(kPopulation));
  ZqSampleWithoutReplacement(engine, chosen, rest, 0, {});
  EXPECT_TRUE(chosen.empty());
  EXPECT_TRUE(rest.empty());
}

TEST(SampleWithReplacement, SortedDrawsFromThePopulationReproducibly) {
  Numarc::ZqRanNumEngine e1(99), e2(99);
  Ids a, b;
  ZqSampleWithReplacement(e1, a, 25, kPopulation);
  ZqSampleWithReplacement(e2, b, 25, kPopulation);
  ASSERT_EQ(a.size(), 25u);
  EXPECT_EQ(a, b);
  EXPECT_TRUE(std::is_sorted(a.begin(), a.end()));
  for (std::uint64_t id : a) EXPECT_NE(std::find(kPopulation.begin(), kPopulation.end(), id), kPopulation.end());
  // 25 draws from 10 ids repeat some.
  EXPECT_LT(std::unique(a.begin(), a.end()) - a.begin(), 25);
  // An empty population or a count of zero gives nothing.
  ZqSampleWithReplacement(e1, a, 5, {});
  EXPECT_TRUE(a.empty());
  b = {4};
  ZqSampleWithReplacement(e1, b, 0, kPopulation);
  EXPECT_TRUE(b.empty());
}

}  // namespace
}  // namespace Varimo
