// The neighbour-strength record: its constructors, links and ordering.
#include "varimo/cluster/nn_strength.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace Varimo {
namespace {

std::vector<ZqStrValue> Links(const ZqNNStrength& record) {
  std::vector<ZqStrValue> out;
  for (Corvane::ZqIter<const ZqStrValue> it = record.GetValues(); it; ++it) out.push_back(*it);
  return out;
}

TEST(NNStrength, ConstructorsLinksAndOrderByItemOnly) {
  ZqNNStrength alone(4);
  EXPECT_EQ(alone.GetSmallIdx(), 4u);
  EXPECT_EQ(alone.GetStrCt(), 0u);
  EXPECT_TRUE(Links(alone).empty());

  ZqNNStrength linked(2, 7, 5);
  EXPECT_EQ(linked.GetStrCt(), 1u);
  linked.Add(ZqStrValue(9, 3));
  linked.Add(ZqStrValue(9, 3));
  EXPECT_EQ(linked.GetStrCt(), 3u);
  EXPECT_EQ(Links(linked), (std::vector<ZqStrValue>{{7, 5}, {9, 3}, {9, 3}}));

  // The non-const walk can change a strength in place.
  for (Corvane::ZqIter<ZqStrValue> it = linked.GetValues(); it; ++it) it->second += 1;
  EXPECT_EQ(Links(linked), (std::vector<ZqStrValue>{{7, 6}, {9, 4}, {9, 4}}));

  ZqNNStrength a(3, 1, 1), b(3), c(5);
  EXPECT_FALSE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_TRUE(a < c);
  std::set<ZqNNStrength> set{c, a, b};
  ASSERT_EQ(set.size(), 2u);
  EXPECT_EQ(set.begin()->GetSmallIdx(), 3u);
  EXPECT_EQ(set.begin()->GetStrCt(), 1u);  // the first inserted record for 3 stays
}

}  // namespace
}  // namespace Varimo
