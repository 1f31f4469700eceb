#include "varimo/platform/corvane/output_sink.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "test_support.h"

namespace Corvane {
namespace {

TEST(ZqOutputSink, CaptureKeepsEachStreamsTextAsPrinted) {
  ZqScopedOutputCapture capture;
  ZqPrint(ZqOutputStream::Out, "num intersecting edges = %u\n", 12u);
  ZqPrint(ZqOutputStream::Err, std::string("100% literal"));
  ZqPrint(ZqOutputStream::Out, "%s|end", std::string(5000, 'x').c_str());
  EXPECT_EQ(capture.Text(ZqOutputStream::Out), "num intersecting edges = 12\n" + std::string(5000, 'x') + "|end");
  EXPECT_EQ(capture.Text(ZqOutputStream::Err), "100% literal");
}

TEST(ZqOutputSink, SetReturnsThePreviousSinkAndEmptyRestoresTheDefault) {
  std::vector<std::pair<ZqOutputStream, std::string>> seen;
  const ZqOutputSink before =
      ZqSetOutputSink([&](ZqOutputStream stream, const std::string& text) { seen.emplace_back(stream, text); });
  EXPECT_FALSE(before);
  {
    ZqScopedOutputCapture nested;
    ZqPrint(ZqOutputStream::Out, "inner\n");
    EXPECT_EQ(nested.Text(ZqOutputStream::Out), "inner\n");
  }
  ZqPrint(ZqOutputStream::Err, "outer\n");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].first, ZqOutputStream::Err);
  EXPECT_EQ(seen[0].second, "outer\n");
  EXPECT_TRUE(ZqSetOutputSink(nullptr));

  VarimoTest::CaptureStdout out;
  VarimoTest::CaptureStderr err;
  ZqPrint(ZqOutputStream::Out, "to stdout %d\n", 1);
  ZqPrint(ZqOutputStream::Err, "to stderr\n");
  EXPECT_EQ(out.Text(), "to stdout 1\n");
  EXPECT_EQ(err.Text(), "to stderr\n");
}

}  // namespace
}  // namespace Corvane
