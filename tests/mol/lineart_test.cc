// The Lineart drawing layer: frames and grids place calls where their
// origins say, recorded images keep every call, text widths behave as
// widths of real faces, and written files are read back (PNG pixels through
// Cairo's own reader) to check what was drawn where.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "png_pixels.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/lineart/image.h"
#include "varimo/platform/lineart/recorded_image.h"
#include "varimo/platform/lineart/text.h"

namespace Lineart {
namespace {

using Corvane::ZqScopedThrowCapture;
using Corvane::ZqThrowLevel;
using Kind = ZqDrawCall::Kind;

// Grid positions are sums and products of a few doubles.
constexpr double kLayoutTolerance = 1e-9;

const ZqPen kThinBlack(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xFFFF);
const ZqPen kFilledRed(Corvane::ZqRed, Corvane::ZqRed, 1, 1.0, 0xFFFF);

void ExpectPoint(const Zq2DPoint& actual, double x, double y) {
  EXPECT_NEAR(actual.x, x, kLayoutTolerance);
  EXPECT_NEAR(actual.y, y, kLayoutTolerance);
}

void ExpectFrame(const ZqImageFrame& frame, double x, double y, double width, double height) {
  ExpectPoint(frame.GetOrigin(), x, y);
  EXPECT_NEAR(frame.GetWidth(), width, kLayoutTolerance);
  EXPECT_NEAR(frame.GetHeight(), height, kLayoutTolerance);
}

// ---------------------------------------------------------------- frames

TEST(LineartFrame, EveryCallLandsShiftedByTheOriginAndBordersRunAlongTheEdges) {
  ZqImage page(800, 600);
  ZqImageFrame frame(page, 300, 200, {100, 50});
  EXPECT_EQ(frame.GetWidth(), 300);
  EXPECT_EQ(frame.GetHeight(), 200);

  EXPECT_TRUE(frame.DrawLine({1, 2}, {3, 4}, kThinBlack));
  EXPECT_TRUE(frame.DrawCircle({5, 6}, 7, kThinBlack));
  EXPECT_TRUE(frame.DrawArc({8, 9}, 10, 20, 30, kThinBlack));
  EXPECT_TRUE(frame.DrawPie({11, 12}, 40, 50, 60, kFilledRed));
  EXPECT_TRUE(frame.DrawRectangle({13, 14}, {15, 16}, kFilledRed));
  EXPECT_TRUE(frame.DrawText({17, 18}, "label", ZqFont(), 42));
  EXPECT_TRUE(frame.DrawMolecule({19, 20}, nullptr));

  const std::vector<ZqDrawCall>& calls = page.GetCalls();
  ASSERT_EQ(calls.size(), 7u);
  const std::vector<Kind> kinds = {Kind::Line,      Kind::Circle, Kind::Arc,     Kind::Pie,
                                   Kind::Rectangle, Kind::Text,   Kind::Molecule};
  const std::vector<Zq2DPoint> starts = {{101, 52}, {105, 56}, {108, 59}, {111, 62}, {113, 64}, {117, 68}, {119, 70}};
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(calls[i].kind, kinds[i]) << "call " << i;
    EXPECT_EQ(calls[i].a, starts[i]) << "call " << i;
  }
  EXPECT_EQ(calls[0].b, Zq2DPoint(103, 54));
  EXPECT_EQ(calls[1].radius, 7);
  EXPECT_EQ(calls[2].startAngle, 10);
  EXPECT_EQ(calls[2].endAngle, 20);
  EXPECT_EQ(calls[2].radius, 30);
  EXPECT_EQ(calls[4].b, Zq2DPoint(115, 66));
  EXPECT_EQ(calls[5].width, 42);

  // Borders run along the edges of the page and of the frame.
  ASSERT_TRUE(ZqDrawBorder(page, kThinBlack));
  ASSERT_TRUE(ZqDrawBorder(frame, kFilledRed));
  ASSERT_EQ(calls.size(), 9u);
  EXPECT_EQ(calls[7].kind, Kind::Rectangle);
  EXPECT_EQ(calls[7].a, Zq2DPoint(0, 0));
  EXPECT_EQ(calls[7].b, Zq2DPoint(800, 600));
  EXPECT_EQ(calls[7].pen, kThinBlack);
  EXPECT_EQ(calls[8].a, Zq2DPoint(100, 50));
  EXPECT_EQ(calls[8].b, Zq2DPoint(400, 250));
  EXPECT_EQ(calls[8].pen, kFilledRed);
}

TEST(LineartFrame, NestedFramesAddTheirOriginsAndCentresAreTheirOwn) {
  ZqImage page(800, 600);
  ZqImageFrame outer(page, 400, 300, {100, 50});
  ZqImageFrame inner(outer, 40, 30, {10, 20});
  ExpectPoint(ZqGetCenter(inner), 20, 15);
  ExpectPoint(ZqGetCenter(page), 400, 300);

  ASSERT_TRUE(inner.DrawCircle(ZqGetCenter(inner), 5, kThinBlack));
  ASSERT_EQ(page.GetCalls().size(), 1u);
  EXPECT_EQ(page.GetCalls()[0].a, Zq2DPoint(130, 85));
}

// ----------------------------------------------------------------- grids

TEST(LineartGrid, CellsDivideTheImageInsideTheMargin) {
  ZqImage page(800, 600);
  ZqImageGrid noMargin(page, 2, 4);
  EXPECT_EQ(noMargin.NumRows(), 2u);
  EXPECT_EQ(noMargin.NumCols(), 4u);
  ExpectFrame(noMargin.GetCell(1, 1), 0, 0, 200, 300);
  ExpectFrame(noMargin.GetCell(2, 3), 400, 300, 200, 300);
  ExpectFrame(noMargin.GetCell(2, 4), 600, 300, 200, 300);

  // 800 x 600 less 10 on each side: 780 / 2 = 390 wide, 580 / 3 = 193.33 high.
  ZqImageGrid grid(page, 3, 2);
  grid.SetMargins(10);
  ExpectFrame(grid.GetCell(1, 1), 10, 10, 390, 580.0 / 3.0);
  ExpectFrame(grid.GetCell(3, 2), 400, 10 + 2 * 580.0 / 3.0, 390, 580.0 / 3.0);

  // A square page, one row, margin 50: (1000 - 100) / 3 = 300 wide, 900 high.
  ZqImage square(1000, 1000);
  ZqImageGrid row(square, 1, 3);
  row.SetMargins(50);
  ExpectFrame(row.GetCell(1, 2), 350, 50, 300, 900);
}

TEST(LineartGrid, NewMarginsMoveTheCellsCallersHold) {
  ZqImage page(400, 400);
  ZqImageGrid grid(page, 2, 2);
  ZqImageFrame& held = grid.GetCell(2, 2);
  ExpectFrame(held, 200, 200, 200, 200);
  grid.SetMargins(20);
  ExpectFrame(held, 200, 200, 180, 180);
  ASSERT_TRUE(held.DrawLine({0, 0}, {1, 1}, kThinBlack));
  EXPECT_EQ(page.GetCalls().back().a, Zq2DPoint(200, 200));
  grid.SetMargins(0);
  ExpectFrame(held, 200, 200, 200, 200);
}

TEST(LineartGrid, CellsPastTheGridAreTheLastOnesAndGetCellsRunsRowByRow) {
  ZqImage page(300, 300);
  ZqImageGrid wide(page, 2, 3);
  EXPECT_EQ(&wide.GetCell(5, 9), &wide.GetCell(2, 3));
  EXPECT_EQ(&wide.GetCell(1, 9), &wide.GetCell(1, 3));
  EXPECT_EQ(&wide.GetCell(7, 1), &wide.GetCell(2, 1));
  EXPECT_NE(&wide.GetCell(1, 1), &wide.GetCell(2, 3));

  ZqImageGrid grid(page, 3, 3);
  const std::vector<ZqImageFrame*> fromMiddle = grid.GetCells(2, 2);
  ASSERT_EQ(fromMiddle.size(), 5u);
  const std::vector<Zq2DPoint> origins = {{100, 100}, {200, 100}, {0, 200}, {100, 200}, {200, 200}};
  for (std::size_t i = 0; i < origins.size(); ++i) {
    ExpectPoint(fromMiddle[i]->GetOrigin(), origins[i].x, origins[i].y);
  }
  EXPECT_EQ(fromMiddle.front(), &grid.GetCell(2, 2));

  const std::vector<ZqImageFrame*> all = grid.GetCells(0, 0);
  ASSERT_EQ(all.size(), 9u);
  EXPECT_EQ(all.front(), &grid.GetCell(1, 1));
  EXPECT_EQ(all.back(), &grid.GetCell(3, 3));
  EXPECT_EQ(grid.GetCells(1, 0), all);
  EXPECT_EQ(grid.GetCells(3, 3).size(), 1u);
}

// ------------------------------------------------------- recorded images

TEST(LineartRecord, PagesAreTilesOf400AndCounted) {
  ZqMultiPageImageFile file(2, 3);
  EXPECT_EQ(file.GetNumPages(), 0u);
  ZqImage first = file.NewPage();
  first.DrawLine({0, 0}, {1, 1}, kThinBlack);
  const ZqImage second = file.NewPage();
  EXPECT_EQ(file.GetNumPages(), 2u);
  EXPECT_EQ(second.GetWidth(), 800);
  EXPECT_EQ(second.GetHeight(), 1200);
  EXPECT_TRUE(second.GetCalls().empty());
}

// ------------------------------------------------------------ text widths

ZqFont Font(unsigned int family, unsigned int style, unsigned int size) {
  return ZqFont(family, style, size, ZqFont::kLeft, Corvane::ZqBlack);
}

TEST(LineartText, WidthsGrowWithSizeAndLengthAndDifferByFaceAndStyle) {
  const std::string label = "Predicted pIC50";
  for (unsigned int family : {2u, 3u}) {
    for (unsigned int style : {0u, 1u, 2u}) {
      double previous = 0.0;
      for (unsigned int size = 1; size <= 72; ++size) {
        const double width = ZqEstimateTextWidth(label, Font(family, style, size));
        EXPECT_GE(width, previous) << "family " << family << " style " << style << " size " << size;
        previous = width;
      }
      const double at12 = ZqEstimateTextWidth(label, Font(family, style, 12));
      const double at24 = ZqEstimateTextWidth(label, Font(family, style, 24));
      // Nearly in proportion: hinting rounds each glyph to a whole pixel.
      EXPECT_NEAR(at24 / at12, 2.0, 0.2);
      EXPECT_GT(ZqEstimateTextWidth(label + " (log units)", Font(family, style, 12)), at12);
    }
  }
  EXPECT_GT(ZqEstimateTextWidth("W", Font(3, 0, 20)), ZqEstimateTextWidth("i", Font(3, 0, 20)));

  // Faces and styles measure differently.
  const std::string sentence = "Observed vs predicted";
  EXPECT_GT(ZqEstimateTextWidth(sentence, Font(3, 1, 16)), ZqEstimateTextWidth(sentence, Font(3, 0, 16)));
  EXPECT_NE(ZqEstimateTextWidth(sentence, Font(2, 0, 16)), ZqEstimateTextWidth(sentence, Font(3, 0, 16)));
  // Families other than 2 are all the sans face.
  EXPECT_EQ(ZqEstimateTextWidth(sentence, Font(0, 0, 16)), ZqEstimateTextWidth(sentence, Font(3, 0, 16)));
}

TEST(LineartText, BytesThatAreNotUtf8AreReadAsLatin1) {
  const ZqFont font = Font(3, 0, 20);
  const double before = ZqEstimateTextWidth("abc", font);
  EXPECT_EQ(ZqEstimateTextWidth("10 \xB5M", font), ZqEstimateTextWidth("10 \xC2\xB5M", font));
  EXPECT_GT(ZqEstimateTextWidth("\xFF\xFE", font), 0.0);
  // A truncated sequence and a noncharacter, which Cairo refuses.
  EXPECT_GT(ZqEstimateTextWidth("ab\xE2\x82", font), ZqEstimateTextWidth("ab", font));
  EXPECT_GT(ZqEstimateTextWidth("\xEF\xBF\xBF", font), 0.0);
  EXPECT_EQ(ZqEstimateTextWidth("abc", font), before);
}

TEST(LineartText, ThreadsMeasureAsOneThreadDoes) {
  const auto measureAll = [] {
    std::vector<double> widths;
    for (const std::string text : {"Kriging", "Observed vs predicted", "ΔG (kcal/mol)", "x"}) {
      for (unsigned int size = 6; size <= 30; ++size) widths.push_back(ZqEstimateTextWidth(text, Font(2, 1, size)));
    }
    return widths;
  };
  const std::vector<double> expected = measureAll();
  constexpr int kThreads = 4;
  std::vector<std::vector<double>> measured(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&measureAll, &measured, t] {
      for (int round = 0; round < 20; ++round) measured[t] = measureAll();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(measured[t], expected) << "thread " << t;
}

// ------------------------------------------------------------- fitting text

// The definition itself: every size from the font's down to the minimum.
unsigned int LargestFittingSize(const std::string& text, const ZqFont& font, unsigned int minimum, double width) {
  if (font.GetSize() < minimum) return font.GetSize();
  for (unsigned int size = font.GetSize();; --size) {
    ZqFont sized = font;
    sized.SetSize(size);
    if (ZqEstimateTextWidth(text, sized) <= width) return size;
    if (size == minimum) return minimum;
  }
}

TEST(LineartFit, FindsTheLargestSizeThatFits) {
  const std::vector<std::string> texts = {"pIC50", "Observed vs predicted activity", "i", "WWWWWWWW",
                                          "Compound 12 (training)"};
  int checked = 0;
  for (const std::string& text : texts) {
    for (unsigned int family : {2u, 3u}) {
      for (unsigned int style : {0u, 1u, 2u}) {
        for (unsigned int size : {8u, 13u, 24u, 40u}) {
          const ZqFont font = Font(family, style, size);
          for (unsigned int minimum : {1u, 5u}) {
            // Widths between and exactly at those of every size, where `<=` decides.
            std::vector<double> widths = {0.0, 1.0, 1e9};
            for (unsigned int s = minimum; s <= size; ++s) {
              const double at = ZqEstimateTextWidth(text, Font(family, style, s));
              widths.insert(widths.end(), {at, at - 0.25, at + 0.25});
            }
            for (double width : widths) {
              ASSERT_EQ(ZqReduceFontSizeToFit(text, font, minimum, width),
                        LargestFittingSize(text, font, minimum, width))
                  << '"' << text << "\" family " << family << " style " << style << " size " << size << " minimum "
                  << minimum << " width " << width;
              ++checked;
            }
          }
        }
      }
    }
  }
  EXPECT_GT(checked, 1000);
}

TEST(LineartFit, EdgeCases) {
  const std::string text = "Observed vs predicted";
  const ZqFont font = Font(3, 0, 20);
  const double full = ZqEstimateTextWidth(text, font);
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 6, full), 20u) << "fits as it is";
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 6, 1e6), 20u);
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 6, 0.0), 6u) << "nothing fits: the minimum";
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 6, -5.0), 6u);
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 6, std::numeric_limits<double>::quiet_NaN()), 6u);
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 20, 1.0), 20u) << "the minimum is the font's size";
  EXPECT_EQ(ZqReduceFontSizeToFit(text, Font(3, 0, 4), 6, 1.0), 4u) << "below the minimum already";
  EXPECT_EQ(ZqReduceFontSizeToFit(text, Font(3, 0, 4), 6, 1e6), 4u);
  EXPECT_EQ(ZqReduceFontSizeToFit("", font, 6, 0.0), 20u) << "empty text fits anywhere";
  EXPECT_EQ(ZqReduceFontSizeToFit(text, font, 0, 0.0), LargestFittingSize(text, font, 0, 0.0));
  // About half the room: about half the size.
  const unsigned int half = ZqReduceFontSizeToFit(text, font, 1, full / 2.0);
  EXPECT_GE(half, 8u);
  EXPECT_LE(half, 10u);
}

// ------------------------------------------------------------ written files

constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kBlue = 0x0000FF;

std::string WholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class LineartWrite : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) {
    const std::string path = ::testing::TempDir() + "varimo_lineart_" + std::to_string(::getpid()) + "_" + name;
    written_.push_back(path);
    return path;
  }
  void TearDown() override {
    for (const std::string& path : written_) std::remove(path.c_str());
  }
  // The page written as a PNG file and read back (Read() is false when either fails).
  const PngPixels& WriteAndRead(const ZqImage& page) {
    const std::string path = Path("page.png");
    EXPECT_TRUE(ZqWriteImage(path, page));
    return *read_.emplace_back(std::make_unique<PngPixels>(path));
  }

 private:
  std::vector<std::string> written_;
  std::vector<std::unique_ptr<PngPixels>> read_;
};

TEST_F(LineartWrite, PngHasTheSizeAWhiteGroundAndTheShapes) {
  ZqImage page(120.5, 80);
  ASSERT_TRUE(page.DrawRectangle({60, 50}, {20, 20}, kFilledRed));
  ASSERT_TRUE(page.DrawCircle({95, 40}, 10, ZqPen(Corvane::ZqBlue, Corvane::ZqBlue, 1, 1.0, 0xFFFF)));
  ASSERT_TRUE(page.DrawCircle({95, 70}, 6, ZqPen(Corvane::ZqBlue, Corvane::ZqBlack, 0, 1.0, 0xFFFF)));
  ZqScopedThrowCapture capture;
  const PngPixels& png = WriteAndRead(page);
  ASSERT_TRUE(png.Read());
  EXPECT_TRUE(capture.Messages().empty());
  EXPECT_EQ(png.Width(), 121) << "rounded up to whole pixels";
  EXPECT_EQ(png.Height(), 80);
  EXPECT_EQ(png.At(0, 0), kWhite);
  EXPECT_EQ(png.At(120, 79), kWhite);
  EXPECT_EQ(png.At(40, 35), kRed);
  EXPECT_EQ(png.At(10, 35), kWhite);
  EXPECT_EQ(png.At(95, 40), kBlue) << "filled circle";
  EXPECT_EQ(png.At(95, 70), kWhite) << "an outline only";
}

TEST_F(LineartWrite, StippleBitsAreLineWidthsFromTheLowestBit) {
  // Lines 2 pixels wide across rows 9 and 10: every dash starts on a whole
  // pixel, so each pixel is wholly ink or wholly paper.
  for (std::uint16_t stipple : {0xFFFF, 0xF0F0, 0x0101, 0x0FF0, 0x8001, 0x00FF}) {
    ZqImage page(160, 20);
    ASSERT_TRUE(page.DrawLine({0, 10}, {160, 10}, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 2.0, stipple)));
    const PngPixels& png = WriteAndRead(page);
    ASSERT_TRUE(png.Read());
    int inked = 0;
    for (int x = 0; x < 160; ++x) {
      const bool ink = (stipple >> ((x / 2) % 16)) & 1;
      inked += ink ? 1 : 0;
      for (int y : {9, 10}) {
        ASSERT_EQ(png.At(x, y), ink ? kBlack : kWhite) << std::hex << "stipple 0x" << stipple << std::dec << " x " << x;
      }
    }
    EXPECT_GT(inked, 0);
    EXPECT_EQ(png.At(20, 5), kWhite);
  }
}

TEST_F(LineartWrite, PiesTurnCounterClockwiseOnTheScreen) {
  struct Case {
    double start, end;
    bool right, up, left, down;  // which of the four points 20 pixels out is inside
  };
  const std::vector<Case> cases = {
      {10, 80, false, false, false, false},  // the upper right quadrant only: none of the axes
      {-45, 45, true, false, false, false},
      {315, 45, true, false, false, false},   // an end before the start goes on through 0
      {45, 135, false, true, false, false},   // up the screen is y decreasing
      {135, 225, false, false, true, false},
      {225, 315, false, false, false, true},
      {0, 360, true, true, true, true},
      {90, -270, true, true, true, true},
      {30, 30, false, false, false, false},
  };
  for (const Case& c : cases) {
    ZqImage page(100, 100);
    ASSERT_TRUE(page.DrawPie({50, 50}, c.start, c.end, 30, kFilledRed));
    const PngPixels& png = WriteAndRead(page);
    ASSERT_TRUE(png.Read());
    const std::string label = "pie " + std::to_string(c.start) + " to " + std::to_string(c.end);
    EXPECT_EQ(png.At(70, 50), c.right ? kRed : kWhite) << label;
    EXPECT_EQ(png.At(50, 30), c.up ? kRed : kWhite) << label;
    EXPECT_EQ(png.At(30, 50), c.left ? kRed : kWhite) << label;
    EXPECT_EQ(png.At(50, 70), c.down ? kRed : kWhite) << label;
  }
  // The quadrant (10, 80) lies above and to the right of the centre.
  ZqImage page(100, 100);
  ASSERT_TRUE(page.DrawPie({50, 50}, 10, 80, 30, kFilledRed));
  ASSERT_TRUE(page.DrawArc({50, 50}, 90, 180, 40, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 4.0, 0xFFFF)));
  const PngPixels& png = WriteAndRead(page);
  ASSERT_TRUE(png.Read());
  EXPECT_EQ(png.At(62, 38), kRed);
  EXPECT_EQ(png.At(38, 62), kWhite);
  EXPECT_EQ(png.At(38, 38), kWhite) << "an arc is not filled";
  // A pixel wholly inside the 4 pixels wide ring, up and to the left, and
  // its mirror image down and to the right.
  const int dx = static_cast<int>(40 * std::cos(0.75));
  const int dy = static_cast<int>(40 * std::sin(0.75));
  EXPECT_EQ(png.At(50 - dx, 50 - dy), kBlack) << "on the arc";
  EXPECT_EQ(png.At(50 + dx - 1, 50 + dy - 1), kWhite) << "where a clockwise arc would run";
}

TEST_F(LineartWrite, TextsSitOnTheSideTheirAlignmentSays) {
  const std::string text = "Kriging";
  const double advance = ZqEstimateTextWidth(text, Font(3, 0, 20));
  struct Case {
    unsigned int alignment;
    double firstInk, lastInk;  // where the ink may be, around the anchor at x = 100
  };
  for (const Case& c : {Case{ZqFont::kLeft, 100, 100 + advance}, Case{ZqFont::kRight, 100 - advance, 100},
                        Case{ZqFont::kCentred, 100 - advance / 2, 100 + advance / 2}}) {
    ZqImage page(200, 60);
    ASSERT_TRUE(page.DrawText({100, 40}, text, ZqFont(3, 0, 20, c.alignment, Corvane::ZqBlack), advance));
    const PngPixels& png = WriteAndRead(page);
    ASSERT_TRUE(png.Read());
    const auto [first, last] = png.InkedColumns(0, 60);
    ASSERT_LE(first, last) << "alignment " << c.alignment << ": no ink";
    // Glyphs stand a pixel or two inside their advances.
    EXPECT_GE(first, c.firstInk - 1) << "alignment " << c.alignment;
    EXPECT_LE(last, c.lastInk + 1) << "alignment " << c.alignment;
    EXPECT_GT(last - first, advance * 0.8) << "alignment " << c.alignment;
    // Above the baseline: descenders ("g") reach a few pixels below it.
    EXPECT_EQ(png.InkedColumns(47, 60).second, -1) << "alignment " << c.alignment;
  }
}

TEST_F(LineartWrite, RotatedTextRunsUpTheScreen) {
  ZqImage page(60, 200);
  ASSERT_TRUE(page.DrawText({30, 150}, "Residuals", ZqFont(3, 0, 16, ZqFont::kLeft, Corvane::ZqRed, 90.0), 0));
  const PngPixels& png = WriteAndRead(page);
  ASSERT_TRUE(png.Read());
  int inkAbove = 0;
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 60; ++x) {
      if (png.IsWhite(x, y)) continue;
      EXPECT_LE(y, 151) << "ink below the anchor at " << x << "," << y;
      EXPECT_LE(x, 31) << "ink right of the baseline at " << x << "," << y;
      ++inkAbove;
    }
  }
  EXPECT_GT(inkAbove, 50);
}

TEST_F(LineartWrite, SvgAndPdfInAnyCase) {
  ZqImage page(200, 100);
  page.DrawRectangle({10, 10}, {90, 90}, kFilledRed);
  page.DrawText({100, 50}, "µM", ZqFont(), 0);
  for (const std::string name : {"plot.svg", "plot.SVG"}) {
    const std::string path = Path(name);
    ASSERT_TRUE(ZqWriteImage(path, page)) << name;
    const std::string svg = WholeFile(path);
    EXPECT_EQ(svg.rfind("<?xml", 0), 0u) << name;
    EXPECT_NE(svg.find("<svg"), std::string::npos) << name;
  }
  for (const std::string name : {"plot.pdf", "plot.Pdf"}) {
    const std::string path = Path(name);
    ASSERT_TRUE(ZqWriteImage(path, page)) << name;
    EXPECT_EQ(WholeFile(path).rfind("%PDF", 0), 0u) << name;
  }
  const std::string upper = Path("plot.PNG");
  ASSERT_TRUE(ZqWriteImage(upper, page));
  EXPECT_EQ(WholeFile(upper).rfind("\x89PNG", 0), 0u);
}

TEST_F(LineartWrite, FailuresWarnNamingTheFileAndTheReason) {
  ZqImage page(50, 50);
  page.DrawLine({0, 0}, {50, 50}, kThinBlack);
  struct Case {
    ZqImage image;
    std::string path, warning;  // how the one warning starts
  };
  const std::string bmp = Path("foo.bmp"), empty = Path("empty.png"), huge = Path("huge.png");
  const std::string missing = "/nonexistent-dir/x.";
  const std::vector<Case> cases = {
      {page, missing + "png", "ZqWriteImage, cannot write " + missing + "png: No such file or directory"},
      {page, missing + "svg", "ZqWriteImage, cannot write " + missing + "svg: No such file or directory"},
      {page, missing + "pdf", "ZqWriteImage, cannot write " + missing + "pdf: No such file or directory"},
      {page, bmp, "ZqWriteImage, unknown image format of " + bmp + " (use .png, .svg or .pdf)"},
      {page, "no-extension", "ZqWriteImage, unknown image format of no-extension"},
      {page, "dir.png/plot", "ZqWriteImage, unknown image format of dir.png/plot"},
      {ZqImage(0, 50), empty, "ZqWriteImage, cannot write " + empty + ": the image is "},
      {ZqImage(50, 0.5), empty, "ZqWriteImage, cannot write " + empty + ": the image is "},
      {ZqImage(std::nan(""), 50), empty, "ZqWriteImage, cannot write " + empty + ": the image is "},
      // Beyond Cairo's image size.
      {ZqImage(100000, 10), huge, "ZqWriteImage, cannot write " + huge + ": "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    ZqScopedThrowCapture capture;
    EXPECT_FALSE(ZqWriteImage(c.path, c.image));
    const std::vector<std::string> warnings = capture.Texts(ZqThrowLevel::Warning);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].rfind(c.warning, 0), 0u) << warnings[0];
    EXPECT_FALSE(std::filesystem::exists(c.path)) << "nothing written, no empty file left behind";
  }
}

TEST_F(LineartWrite, AFullDiskIsReportedAtEveryFormat) {
  if (!std::ifstream("/dev/full").good()) GTEST_SKIP() << "no /dev/full here";
  ZqImage page(200, 200);
  for (double y = 0; y < 200; y += 4) page.DrawLine({0, 0}, {200, y}, kThinBlack);
  for (const std::string name : {"full.png", "full.svg", "full.pdf"}) {
    // Opening succeeds and every write fails, as on a full disk: for SVG
    // and PDF only when the surface is finished.
    const std::string path = Path(name);
    ASSERT_EQ(::symlink("/dev/full", path.c_str()), 0) << path;
    ZqScopedThrowCapture capture;
    EXPECT_FALSE(ZqWriteImage(path, page)) << name;
    const std::vector<std::string> warnings = capture.Texts(ZqThrowLevel::Warning);
    ASSERT_EQ(warnings.size(), 1u) << name;
    EXPECT_EQ(warnings[0], "ZqWriteImage, cannot write " + path + ": No space left on device");
    EXPECT_FALSE(std::filesystem::is_symlink(path)) << "what was cut short is removed";
  }
}

TEST_F(LineartWrite, BadCallsAreLeftOutWithoutSpoilingTheImage) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ZqImage page(100, 100);
  page.DrawLine({nan, 0}, {50, 50}, kThinBlack);
  page.DrawCircle({50, 50}, nan, kFilledRed);
  page.DrawText({5, 30}, "bad \xFF\xFE bytes", ZqFont(3, 0, 12, ZqFont::kLeft, Corvane::ZqBlack), 0);
  page.DrawLine({0, 90}, {100, 90}, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 0.0, 0xF0F0));
  page.DrawLine({0, 95}, {100, 95}, ZqPen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 2.0, 0x0000));
  page.DrawMolecule({0, 0}, nullptr);
  page.DrawRectangle({70, 70}, {80, 80}, kFilledRed);
  ZqScopedThrowCapture capture;
  const PngPixels& png = WriteAndRead(page);
  ASSERT_TRUE(png.Read());
  EXPECT_TRUE(capture.Messages().empty());
  EXPECT_EQ(png.At(75, 75), kRed) << "calls after the bad ones are drawn";
  EXPECT_EQ(png.At(50, 50), kWhite);
  EXPECT_EQ(png.InkedColumns(88, 100).second, -1) << "a pen of no width or no bits draws nothing";
  EXPECT_NE(png.InkedColumns(18, 34).second, -1) << "the text is drawn";
}

}  // namespace
}  // namespace Lineart
