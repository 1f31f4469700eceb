#include "varimo/platform/corvane/bit_vector.h"

#include <gtest/gtest.h>

#include "varimo/platform/corvane/error_handler.h"

namespace Corvane {
namespace {

TEST(ZqBitVector, SetClearTestGrowAndReadOffPastTheEndUpToTheSizeLimit) {
  ZqBitVector bits;
  EXPECT_FALSE(bits.IsBitOn(1000));
  EXPECT_TRUE(bits.SetBitOn(70));
  EXPECT_EQ(bits.GetSize(), 71u);
  EXPECT_TRUE(bits[70]);
  EXPECT_FALSE(bits[69]);
  EXPECT_FALSE(bits[71]);
  bits.SetBitOn(3);
  EXPECT_EQ(bits.CountBitsOn(), 2u);
  bits.SetBitOff(70);
  EXPECT_FALSE(bits[70]);
  bits.ClearBits();
  EXPECT_EQ(bits.CountBitsOn(), 0u);
  EXPECT_EQ(bits.GetSize(), 71u);

  // The size limit is reported and refused.
  ZqScopedThrowCapture capture;
  ZqBitVector eight(8);
  EXPECT_FALSE(eight.SetBitOn(ZqBitVector::kMaxSize));
  EXPECT_FALSE(eight.Resize(ZqBitVector::kMaxSize + 1));
  EXPECT_EQ(eight.GetSize(), 8u);
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Error),
            (std::vector<std::string>{"Max size for an ZqBitVector is INT_MAX",
                                      "Max size for an ZqBitVector is INT_MAX"}));
}

}  // namespace
}  // namespace Corvane
