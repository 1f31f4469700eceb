#include "varimo/platform/corvane/generic_data.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvane {
namespace {

TEST(ZqGenericData, TagsAndTypedDataUnderThem) {
  const unsigned a = ZqGetTag("Contribution");
  EXPECT_NE(a, 0u);
  EXPECT_EQ(ZqGetTag("Contribution"), a);
  EXPECT_NE(ZqGetTag("contribution"), a);
  EXPECT_EQ(ZqGetTagName(a), "Contribution");
  EXPECT_EQ(ZqGetTagName(0), "");

  // Typed data under a tag.
  ZqBase object;
  const unsigned tag = ZqGetTag("logP");
  EXPECT_FALSE(object.HasData(tag));
  object.AddData(tag, 2.5f);
  object.AddData(tag, 3.5);
  object.AddData(tag, 4.5);
  EXPECT_TRUE(object.HasData(tag));
  EXPECT_TRUE(object.HasData<float>(tag));
  EXPECT_FALSE(object.HasData<int>(tag));
  ASSERT_NE(object.GetData<double>(tag), nullptr);
  EXPECT_EQ(*object.GetData<double>(tag), 3.5);  // the first double

  std::vector<bool> isDouble;
  for (const ZqGenericData& datum : object.GetDataIter(tag)) isDouble.push_back(datum.IsType<double>());
  EXPECT_EQ(isDouble, (std::vector<bool>{false, true, true}));

  object.SetData(tag, std::vector<double>{1.0, 2.0});
  EXPECT_EQ(object.GetDataIter(tag).Count(), 1u);
  EXPECT_EQ(object.GetData<std::vector<double>>(tag)->size(), 2u);
  EXPECT_TRUE(object.DeleteData(tag));
  EXPECT_FALSE(object.DeleteData(tag));
  EXPECT_FALSE(object.HasData(tag));
}

}  // namespace
}  // namespace Corvane
