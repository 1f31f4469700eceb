#include "varimo/platform/tessik/file_stream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <limits>
#include <vector>
#include <unistd.h>
#include <string>

#include "varimo/platform/tessik/is_nan.h"

namespace Tessik {
namespace {

TEST(ZqFileStreams, WriteThenReadLinesFromAFile) {
  const std::string path =
      (std::filesystem::temp_directory_path() / ("varimo_stream_" + std::to_string(::getpid()) + ".txt")).string();
  {
    zqofstream out(path);
    ASSERT_TRUE(out.is_open());
    out << "first\r\nsecond\n\nlast";
  }
  zqifstream in(path);
  ASSERT_TRUE(in.is_open());
  std::string line;
  std::vector<std::string> lines;
  while (in.getline(line)) lines.push_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"first", "second", "", "last"}));
  EXPECT_TRUE(line.empty());
  // Rewinding as the table reader does: clear end-of-file, seek to 0.
  in.clear();
  in.seekg(0);
  ASSERT_TRUE(in.getline(line));
  EXPECT_EQ(line, "first");
  std::remove(path.c_str());
}

TEST(ZqFileStreams, MemoryTextAndMissingFile) {
  zqifstream in;
  in.OpenText("a,b\n1,2\n");
  std::string line;
  ASSERT_TRUE(in.getline(line));
  EXPECT_EQ(line, "a,b");
  in.clear();
  in.seekg(0);
  ASSERT_TRUE(in.getline(line));
  EXPECT_EQ(line, "a,b");

  zqofstream out;
  out.OpenText();
  out << "x=" << 1.5 << '\n';
  EXPECT_EQ(out.GetText(), "x=1.5\n");

  zqifstream missing("/nonexistent/varimo/file.csv");
  EXPECT_FALSE(missing.is_open());
  EXPECT_FALSE(missing.getline(line));
}

TEST(ZqIsNaN, OnlyNaN) {
  EXPECT_TRUE(ZqIsNaN(std::nan("")));
  EXPECT_FALSE(ZqIsNaN(1.7976931348623157e308));
  EXPECT_FALSE(ZqIsNaN(std::numeric_limits<double>::infinity()));
}

}  // namespace
}  // namespace Tessik
