#include "varimo/statistics/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
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

TEST(SampleWithoutReplacement, FollowsThePartialShuffle) {
  // Replays the documented draws: m falls by one, i from [0, m], then the
  // entry at m fills the hole at i.
  Numarc::ZqRanNumEngine engine(3), replay(3);
  Ids chosen, rest;
  ZqSampleWithoutReplacement(engine, chosen, rest, 3, kPopulation);
  Ids scratch = kPopulation, expected;
  std::size_t m = scratch.size();
  for (int k = 0; k < 3; ++k) {
    --m;
    const auto i = static_cast<std::size_t>(Numarc::ZqUniformIntRNG(0, static_cast<long>(m))(replay));
    expected.push_back(scratch[i]);
    scratch[i] = scratch[m];
  }
  EXPECT_EQ(chosen, Sorted(expected));
  EXPECT_EQ(rest, Sorted(Ids(scratch.begin(), scratch.begin() + 7)));
}

TEST(SampleWithoutReplacement, AllOrMoreReturnsThePopulationUnsortedAndNoRest) {
  for (std::uint64_t count : {10u, 11u, 1000u}) {
    Numarc::ZqRanNumEngine engine(5), untouched(5);
    Ids chosen, rest = {1, 2};
    ZqSampleWithoutReplacement(engine, chosen, rest, count, kPopulation);
    EXPECT_EQ(chosen, kPopulation);
    EXPECT_TRUE(rest.empty());
    EXPECT_EQ(engine(), untouched());
  }
}

TEST(SampleWithoutReplacement, ZeroAndEmpty) {
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
}

TEST(SampleWithReplacement, EmptyPopulationGivesNothing) {
  Numarc::ZqRanNumEngine engine(1);
  Ids out = {4};
  ZqSampleWithReplacement(engine, out, 5, {});
  EXPECT_TRUE(out.empty());
  ZqSampleWithReplacement(engine, out, 0, kPopulation);
  EXPECT_TRUE(out.empty());
}

}  // namespace
}  // namespace Varimo
