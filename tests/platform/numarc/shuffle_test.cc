#include "varimo/platform/numarc/shuffle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <vector>

namespace Numarc {
namespace {

TEST(NumarcShuffle, IsAReproduciblePermutationWithEveryOrderEquallyLikely) {
  ZqRanNumEngine engine(31), again(31), other(32);
  std::vector<std::size_t> indices{99, 98}, repeat, different;
  ZqRandomShuffleOfIndices(indices, 50, engine);
  ZqRandomShuffleOfIndices(repeat, 50, again);
  ZqRandomShuffleOfIndices(different, 50, other);

  std::vector<std::size_t> identity(50);
  std::iota(identity.begin(), identity.end(), std::size_t{0});
  std::vector<std::size_t> sorted = indices;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, identity);
  EXPECT_NE(indices, identity);
  EXPECT_EQ(indices, repeat);
  EXPECT_NE(indices, different);

  ZqRandomShuffleOfIndices(indices, 0, engine);
  EXPECT_TRUE(indices.empty());

  // 60000 shuffles of three: each of the 6 orders 10000 times, +- 5 standard
  // deviations of binomial(60000, 1/6). Swapping each place with a random one
  // of all three, a classic slip, makes some orders 8889 and others 11111.
  std::map<std::vector<std::size_t>, int> counts;
  for (int i = 0; i < 60000; ++i) {
    ZqRandomShuffleOfIndices(indices, 3, engine);
    ++counts[indices];
  }
  ASSERT_EQ(counts.size(), 6u);
  for (const auto& [order, count] : counts) EXPECT_NEAR(count, 10000, 5.0 * std::sqrt(10000.0 * 5.0 / 6.0));
}

}  // namespace
}  // namespace Numarc
