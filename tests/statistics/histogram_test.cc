#include "varimo/statistics/histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "tpsa_data.h"

namespace Varimo {
namespace {

constexpr double kBad = 1.7976931348623157e308;
// numpy takes each bin's width from its own pair of edges.
constexpr double kTolerance = 1e-12;

using Tokens = std::vector<std::string>;

const std::vector<Tokens>& Lines() {
  static const std::vector<Tokens> lines = VarimoTest::ReadReferenceLines("statistics/histogram_reference.txt");
  return lines;
}

std::vector<Tokens> LinesOf(const std::string& kind) {
  std::vector<Tokens> out;
  for (const Tokens& t : Lines()) {
    if (t[0] == kind) out.push_back(t);
  }
  return out;
}

std::uint64_t ToCount(const std::string& token) { return static_cast<std::uint64_t>(VarimoTest::ToDouble(token)); }

const std::vector<double>& Data(const std::string& name) {
  static const std::map<std::string, std::vector<double>> data = [] {
    std::map<std::string, std::vector<double>> d;
    for (const Tokens& t : LinesOf("data")) d[t[1]] = VarimoTest::ToDoubles(t, 2);
    // The TPSA column, sorted.
    d["tpsa"] = VarimoTest::TpsaValues();
    std::sort(d["tpsa"].begin(), d["tpsa"].end());
    return d;
  }();
  return data.at(name);
}

void ExpectNear(const std::vector<double>& actual, const std::vector<double>& expected, const std::string& what) {
  ASSERT_EQ(actual.size(), expected.size()) << what;
  for (std::size_t k = 0; k < actual.size(); ++k) {
    EXPECT_TRUE(VarimoTest::WithinRelative(actual[k], expected[k], kTolerance)) << what << " bin " << k;
  }
}

double Integral(const std::vector<double>& heights, const std::vector<double>& bounds) {
  double sum = 0.0;
  for (std::size_t k = 0; k < heights.size(); ++k) sum += heights[k] * (bounds[k + 1] - bounds[k]);
  return sum;
}

TEST(Histogram, EqualWidthAgainstNumpy) {
  ASSERT_EQ(LinesOf("width").size(), 3u);
  for (const Tokens& t : LinesOf("width")) {
    const std::string what = t[1] + " " + t[2];
    double xlo, xhi, binWidth, maxHeight;
    std::vector<double> heights, bounds;
    const std::uint64_t numBins = ToCount(t[2]);
    const double lo = VarimoTest::ToDouble(t[3]), hi = VarimoTest::ToDouble(t[4]);
    ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, Data(t[1]), numBins, lo, hi);
    EXPECT_EQ(xlo, VarimoTest::ToDouble(t[5])) << what;
    EXPECT_EQ(xhi, VarimoTest::ToDouble(t[6])) << what;
    EXPECT_TRUE(VarimoTest::WithinRelative(binWidth, VarimoTest::ToDouble(t[7]), kTolerance)) << what;
    EXPECT_TRUE(VarimoTest::WithinRelative(maxHeight, VarimoTest::ToDouble(t[8]), kTolerance)) << what;
    ExpectNear(heights, VarimoTest::ToDoubles(t, 9), what);
    ZqGetBinBoundariesForSortedData(bounds, numBins, false, Data(t[1]), lo, hi);
    ASSERT_EQ(bounds.size(), numBins + 1);
    EXPECT_NEAR(Integral(heights, bounds), 1.0, 1e-12) << what;
  }
}

TEST(Histogram, HandCountedBinsAndRanges) {
  double xlo = 1, xhi = 1, binWidth, maxHeight;
  std::vector<double> heights;
  // The range takes in the suggestions.
  ZqGetXloXhiForSortedData(xlo, xhi, {}, -5.0, 5.0);
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 0.0);
  ZqGetXloXhiForSortedData(xlo, xhi, {-1.0, 2.0, 3.0}, -5.0, 0.0);
  EXPECT_EQ(xlo, -5.0);
  EXPECT_EQ(xhi, 3.0);
  // Wide suggestions leave empty bins at both ends.
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, {4.0, 5.0, 6.0}, 10, 0.0, 10.0);
  EXPECT_EQ(binWidth, 1.0);
  EXPECT_EQ(heights, (std::vector<double>{0, 0, 0, 0, 1.0 / 3, 1.0 / 3, 1.0 / 3, 0, 0, 0}));
  // Bins of width 1 on [0, 4]: the value at the top edge, 4, falls in the last.
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, {0.0, 1.0, 2.0, 4.0}, 4, 0.0, 0.0);
  EXPECT_EQ(heights, (std::vector<double>{0.25, 0.25, 0.25, 0.25}));
  EXPECT_EQ(maxHeight, 0.25);
  // A single equal-frequency bin spans the range.
  ZqGetUserDefinedConstFreqHistogram(xlo, xhi, binWidth, maxHeight, heights, {1.0, 2.0, 5.0}, 1, 1.0, 1.0);
  EXPECT_EQ(heights, std::vector<double>{0.25});
  EXPECT_EQ(binWidth, 4.0);
}

TEST(Histogram, AutomaticNumberOfBinsAgainstNumpy) {
  ASSERT_EQ(LinesOf("auto").size(), 2u);
  for (const Tokens& t : LinesOf("auto")) {
    double xlo, xhi, binWidth, maxHeight;
    std::vector<double> heights;
    std::uint64_t numBins = 0;
    const std::vector<double>& data = Data(t[1]);
    ZqGetAutoDefinedConstBinWidthHistogram(xlo, xhi, binWidth, maxHeight, heights, numBins, data, data.front(),
                                           data.back());
    EXPECT_EQ(numBins, ToCount(t[2])) << t[1];
    EXPECT_EQ(xlo, VarimoTest::ToDouble(t[3])) << t[1];
    EXPECT_EQ(xhi, VarimoTest::ToDouble(t[4])) << t[1];
    EXPECT_TRUE(VarimoTest::WithinRelative(binWidth, VarimoTest::ToDouble(t[5]), kTolerance)) << t[1];
    ExpectNear(heights, VarimoTest::ToDoubles(t, 6), t[1]);
    EXPECT_EQ(maxHeight, *std::max_element(heights.begin(), heights.end()));
  }
}

TEST(Histogram, EqualFrequencyAgainstNumpy) {
  ASSERT_EQ(LinesOf("freq").size(), 2u);
  for (const Tokens& t : LinesOf("freq")) {
    const std::uint64_t numBins = ToCount(t[2]);
    const std::vector<double> values = VarimoTest::ToDoubles(t, 5);
    const std::vector<double> edges(values.begin(), values.begin() + static_cast<long>(numBins) + 1);
    const std::vector<double> expected(values.begin() + static_cast<long>(numBins) + 1, values.end());
    double xlo, xhi, minWidth, maxHeight;
    std::vector<double> heights, bounds;
    // The data's own ends as suggestions: the range of the data.
    const std::vector<double>& data = Data(t[1]);
    ZqGetUserDefinedConstFreqHistogram(xlo, xhi, minWidth, maxHeight, heights, data, numBins, data.front(),
                                       data.back());
    ExpectNear(heights, expected, t[1]);
    EXPECT_TRUE(VarimoTest::WithinRelative(minWidth, VarimoTest::ToDouble(t[3]), kTolerance)) << t[1];
    EXPECT_TRUE(VarimoTest::WithinRelative(maxHeight, VarimoTest::ToDouble(t[4]), kTolerance)) << t[1];
    ZqGetBinBoundariesForSortedData(bounds, numBins, true, data, data.front(), data.back());
    ExpectNear(bounds, edges, t[1]);
    EXPECT_NEAR(Integral(heights, bounds), 1.0, 1e-12) << t[1];
  }
}

TEST(Histogram, DegenerateDataGiveAnEmptyHistogram) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  double xlo = 7, xhi = 7, width = 7, maxHeight = 7;
  std::vector<double> heights = {7.0};
  std::uint64_t numBins = 7;
  auto expectEmpty = [&](const std::string& what) {
    EXPECT_TRUE(heights.empty()) << what;
    EXPECT_EQ(width, 0.0) << what;
    EXPECT_EQ(maxHeight, 0.0) << what;
  };
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, {}, 5, 0.0, 1.0);
  expectEmpty("empty");
  EXPECT_EQ(xlo, 0.0);
  EXPECT_EQ(xhi, 0.0);
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, {1.0, 2.0}, 0, 0.0, 0.0);
  expectEmpty("no bins");
  // All values equal: a range of zero width.
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, {3.0, 3.0, 3.0}, 4, 3.0, 3.0);
  expectEmpty("all equal");
  ZqGetUserDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, {1.0, nan, 3.0}, 4, 0.0, 0.0);
  expectEmpty("NaN");
  ZqGetUserDefinedConstFreqHistogram(xlo, xhi, width, maxHeight, heights, {3.0, 3.0, 3.0, 3.0}, 2, 3.0, 3.0);
  expectEmpty("equal frequency, all equal");
  // Tied quantiles give a bin of no width.
  ZqGetUserDefinedConstFreqHistogram(xlo, xhi, width, maxHeight, heights, {1, 2, 2, 2, 2, 2, 2, 9}, 4, 0, 0);
  expectEmpty("tied quantiles");
  // Zero interquartile range: no automatic histogram, the range still set.
  ZqGetAutoDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, numBins, {1, 5, 5, 5, 5, 5, 9}, 5, 5);
  expectEmpty("zero IQR");
  EXPECT_EQ(numBins, 0u);
  EXPECT_EQ(xlo, 1.0);
  EXPECT_EQ(xhi, 9.0);
  for (const std::vector<double>& few : {std::vector<double>{2.0}, std::vector<double>{1.0, 2.0, 4.0}}) {
    ZqGetAutoDefinedConstBinWidthHistogram(xlo, xhi, width, maxHeight, heights, numBins, few, 0, 0);
    expectEmpty("fewer than four");
  }
  std::vector<double> bounds = {1.0};
  ZqGetBinBoundariesForSortedData(bounds, 3, false, {}, 0.0, 1.0);
  EXPECT_TRUE(bounds.empty());
}

TEST(HistogramConstants, CrossValidationScoreAndConfidenceBandAgainstNumpyAndScipy) {
  ASSERT_EQ(LinesOf("cv").size(), 2u);
  for (const Tokens& t : LinesOf("cv")) {
    const double score = ZqGetCrossValidationHistogramScore(VarimoTest::ToDouble(t[3]), VarimoTest::ToDouble(t[4]),
                                                            ToCount(t[2]), Data(t[1]));
    EXPECT_TRUE(VarimoTest::WithinRelative(score, VarimoTest::ToDouble(t[5]), kTolerance)) << t[2];
  }
  EXPECT_EQ(ZqGetCrossValidationHistogramScore(0.0, 1.0, 3, {0.5}), kBad);
  EXPECT_EQ(ZqGetCrossValidationHistogramScore(0.0, 1.0, 0, {0.5, 0.7}), kBad);
  EXPECT_EQ(ZqGetCrossValidationHistogramScore(1.0, 1.0, 3, {1.0, 1.0}), kBad);
  EXPECT_EQ(ZqGetCrossValidationHistogramScore(0.0, 1.0, 3, {0.5, std::nan("")}), kBad);

  // The constant of the confidence band.
  ASSERT_EQ(LinesOf("band").size(), 2u);
  for (const Tokens& t : LinesOf("band")) {
    const double c =
        ZqGetConstForConstBinWidthHistConfidenceInt(ToCount(t[1]), ToCount(t[2]), VarimoTest::ToDouble(t[3]),
                                                    VarimoTest::ToDouble(t[4]), VarimoTest::ToDouble(t[5]));
    EXPECT_TRUE(VarimoTest::WithinRelative(c, VarimoTest::ToDouble(t[6]), 1e-9)) << t[1];
  }
  EXPECT_EQ(ZqGetConstForConstBinWidthHistConfidenceInt(0, 5, 0.0, 1.0, 0.05), kBad);
  EXPECT_EQ(ZqGetConstForConstBinWidthHistConfidenceInt(10, 0, 0.0, 1.0, 0.05), kBad);
  EXPECT_EQ(ZqGetConstForConstBinWidthHistConfidenceInt(10, 5, 1.0, 1.0, 0.05), kBad);
  EXPECT_EQ(ZqGetConstForConstBinWidthHistConfidenceInt(10, 5, 0.0, 1.0, 0.0), kBad);
  EXPECT_EQ(ZqGetConstForConstBinWidthHistConfidenceInt(10, 5, 0.0, 1.0, 12.0), kBad);
}

}  // namespace
}  // namespace Varimo
