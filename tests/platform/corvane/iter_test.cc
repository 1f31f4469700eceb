#include "varimo/platform/corvane/iter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvane {
namespace {

template <class T>
std::vector<std::remove_const_t<T>> Walk(ZqIter<T> iter) {
  std::vector<std::remove_const_t<T>> out;
  for (; iter; ++iter) out.push_back(*iter);
  return out;
}

TEST(ZqIter, DefaultIsExhausted) {
  ZqIter<int> empty;
  EXPECT_FALSE(empty);
  EXPECT_EQ(empty.Count(), 0u);
  ++empty;  // harmless
  EXPECT_FALSE(empty.IsValid());
}

TEST(ZqIter, OwnedSequencesOutliveTheirSourceAndCopiesKeepTheirPosition) {
  ZqIter<const std::string> iter;
  {
    std::vector<std::string> source{"a", "b", "c"};
    iter = ZqMakeOwnedIter<const std::string>(source);
  }
  EXPECT_EQ(iter.Count(), 3u);
  EXPECT_EQ(Walk(iter), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(iter->size(), 1u);
  ZqIter<double> first = ZqMakeOwnedIter<double>({1.0, 2.0, 3.0});
  ++first;
  ZqIter<double> second = first;
  ++second;
  EXPECT_EQ(*first, 2.0);
  EXPECT_EQ(*second, 3.0);
  second.ToFirst();
  EXPECT_EQ(*second, 1.0);
  *first = 20.0;  // owned, mutable elements
  EXPECT_EQ(Walk(second), (std::vector<double>{1.0, 20.0, 3.0}));
}

TEST(ZqIter, ViewAndFilterAndRangeFor) {
  std::vector<int> values{1, 2, 3, 4, 5, 6};
  ZqIter<int> view = ZqMakeIterView<int>(values.begin(), values.end());
  ZqIter<int> even = ZqMakeFilterIter<int>(view, [](const int& v) { return v % 2 == 0; });
  std::vector<int> seen;
  for (int& v : even) seen.push_back(v);
  EXPECT_EQ(seen, (std::vector<int>{2, 4, 6}));
  EXPECT_EQ(even.Count(), 3u);
  even.ToFirst();
  EXPECT_EQ(*even, 2);
  ZqIter<int> none = ZqMakeFilterIter<int>(view, [](const int&) { return false; });
  EXPECT_FALSE(none);
}

}  // namespace
}  // namespace Corvane
