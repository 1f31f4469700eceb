#include "varimo/platform/corvane/error_handler.h"

#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace Corvane {
namespace {

TEST(ZqThrow, CaptureReceivesFormattedTextsByLevel) {
  ZqScopedThrowCapture capture;
  ZqThrow.Info("sum density = %f", 0.5);
  ZqThrow.Warning("Invalid ZqKrigeKernelType (%d) passed", 7);
  ZqThrow.Error(std::string("100% literal"));
  ZqThrow.Fatal("Bad implementation--need to fix!");
  ASSERT_EQ(capture.Messages().size(), 4u);
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Info), std::vector<std::string>{"sum density = 0.500000"});
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning), std::vector<std::string>{"Invalid ZqKrigeKernelType (7) passed"});
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Error), std::vector<std::string>{"100% literal"});
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Fatal), std::vector<std::string>{"Bad implementation--need to fix!"});
  // Long messages are not truncated.
  const std::string long_text(10000, 'x');
  ZqThrow.Warning("%s|end", long_text.c_str());
  ASSERT_EQ(capture.Messages().size(), 5u);
  EXPECT_EQ(capture.Messages()[4].second, long_text + "|end");
}

TEST(ZqThrow, CapturesNestAndRestoreTheDefaultSink) {
  {
    ZqScopedThrowCapture outer;
    {
      ZqScopedThrowCapture inner;
      ZqThrow.Warning("inner");
      EXPECT_EQ(inner.Messages().size(), 1u);
    }
    ZqThrow.Warning("outer");
    EXPECT_EQ(outer.Texts(ZqThrowLevel::Warning), std::vector<std::string>{"outer"});
  }
  VarimoTest::CaptureStderr err;
  ZqThrow.Warning("to stderr %d", 1);
  EXPECT_EQ(err.Text(), "Warning: to stderr 1\n");
}

}  // namespace
}  // namespace Corvane
