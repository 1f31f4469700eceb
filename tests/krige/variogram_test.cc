// Variograms and kernel fitting: bin sizes, the zero-distance bin, and fits
// checked against a Python transcription of the rules run on a seeded pair
// cloud (tests/data/krige/make_variogram_refs.py).
#include "varimo/krige/variogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Pairs = std::vector<std::pair<double, double>>;
constexpr double kLargest = std::numeric_limits<double>::max();

// n pairs at distances 1, 2, ..., n (given in reverse, so sorting matters).
Pairs Ladder(std::size_t n) {
  Pairs pairs;
  for (std::size_t i = n; i > 0; --i) pairs.emplace_back(static_cast<double>(i), 1.0);
  return pairs;
}

std::vector<unsigned int> BinSizes(Pairs pairs) {
  ZqFullVariogramImpl full;
  EXPECT_TRUE(ZqSetupVariogram(full, pairs, true));
  std::vector<unsigned int> sizes;
  for (unsigned int b = 0; b < full.GetNumBins(); ++b) sizes.push_back(full.GetNumBinElements(b));
  return sizes;
}

TEST(Variogram, BinsStartSmallAndDoubleUpToAFifth) {
  using Sizes = std::vector<unsigned int>;
  EXPECT_EQ(BinSizes(Ladder(10)), (Sizes{1, 1, 2, 2, 2, 2}));
  EXPECT_EQ(BinSizes(Ladder(100)), (Sizes{7, 13, 20, 20, 20, 20}));
  EXPECT_EQ(BinSizes(Ladder(1000)), (Sizes{67, 133, 200, 200, 200, 200}));
  // The tail of 1470 pairs is too short for two bins of 990: one bin.
  EXPECT_EQ(BinSizes(Ladder(4950)), (Sizes{100, 200, 400, 800, 990, 990, 1470}));
  EXPECT_EQ(BinSizes(Ladder(1)), (Sizes{1}));
  // Tails that the rule puts whole into the last bin, worked by hand for 9
  // pairs: sizes 1, 1 (limit 1.8), 2, 2; 3 pairs then remain, fewer than
  // two bins of 2. The same sizes follow a zero-distance bin of 60.
  const std::vector<std::pair<std::size_t, Sizes>> tails = {
      {9, {1, 1, 2, 2, 3}},          {14, {1, 2, 3, 3, 5}},       {29, {2, 4, 6, 6, 11}},
      {49, {3, 7, 10, 10, 19}},      {149, {10, 20, 30, 30, 59}}, {1499, {100, 200, 300, 300, 599}}};
  for (const auto& [count, sizes] : tails) {
    EXPECT_EQ(BinSizes(Ladder(count)), sizes) << count;
    Pairs withZeros = Ladder(count);
    withZeros.insert(withZeros.end(), 60, {0.0, 1.0});
    Sizes zeroFirst{60};
    zeroFirst.insert(zeroFirst.end(), sizes.begin(), sizes.end());
    EXPECT_EQ(BinSizes(withZeros), zeroFirst) << count;
  }

  Pairs pairs = Ladder(10);
  ZqVariogramImpl plain;
  ASSERT_TRUE(ZqSetupVariogram(plain, pairs, true));
  EXPECT_EQ(pairs.front().first, 1.0);  // sorted in place
  ASSERT_EQ(plain.GetNumBins(), 6u);
  EXPECT_EQ(plain.GetDistance(2), 3.5);  // pairs at 3 and 4
  EXPECT_EQ(plain.GetSemivariance(2), 0.5);
  Pairs none;
  EXPECT_FALSE(ZqSetupVariogram(plain, none, true));
  EXPECT_EQ(plain.GetNumBins(), 0u);
}

// A cloud large enough for the radix sort's own passes (small ones fall back
// to a comparison sort), with the awkward distances a user's functor may
// give: signed zeros, negatives, subnormals and infinity.
TEST(Variogram, LargeCloudsSortByDistanceKeepingEveryPair) {
  std::mt19937_64 engine(7);
  std::uniform_real_distribution<double> uniform(-1.0, 3.0);
  Pairs pairs;
  // Enough pairs for the sort to be shared among threads where there are
  // several; the negative and infinite distances take the comparison sort.
  for (int i = 0; i < 200000; ++i) pairs.emplace_back(uniform(engine), static_cast<double>(i));
  for (double awkward : {0.0, -0.0, 4.9e-324, -4.9e-324, std::numeric_limits<double>::infinity(), -2.5, 1.0}) {
    pairs.emplace_back(awkward, -1.0);
  }
  Pairs expected = pairs;
  std::stable_sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  ZqVariogramImpl plain;
  ASSERT_TRUE(ZqSetupVariogram(plain, pairs, true));
  ASSERT_EQ(pairs.size(), expected.size());
  double sumOfSeconds = 0.0, expectedSum = 0.0;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    ASSERT_EQ(pairs[i].first, expected[i].first) << i;  // -0.0 == 0.0: their order is free
    sumOfSeconds += pairs[i].second;
    expectedSum += expected[i].second;
  }
  EXPECT_EQ(sumOfSeconds, expectedSum);  // integers: exact in any order
}

// Four distances only, as Tanimoto distances of small molecules often are:
// bin boundaries fall inside runs of equal distance.
TEST(Variogram, TiedDistancesBinTheSameInAnyOrderAndSign) {
  std::mt19937_64 engine(3);
  std::uniform_int_distribution<int> level(1, 4);
  std::normal_distribution<double> difference;
  Pairs pairs;
  for (int i = 0; i < 300; ++i) pairs.emplace_back(0.25 * level(engine), difference(engine));
  Pairs reordered = pairs;
  std::shuffle(reordered.begin(), reordered.end(), engine);
  for (auto& pair : reordered) pair.second = -pair.second;
  ZqVariogramImpl plain, fromReordered;
  ASSERT_TRUE(ZqSetupVariogram(plain, pairs, true));
  ASSERT_TRUE(ZqSetupVariogram(fromReordered, reordered, true));
  ASSERT_EQ(plain.GetNumBins(), 6u);
  ASSERT_EQ(fromReordered.GetNumBins(), 6u);
  for (unsigned int bin = 0; bin < plain.GetNumBins(); ++bin) {
    EXPECT_EQ(plain.GetDistance(bin), fromReordered.GetDistance(bin)) << bin;
    EXPECT_EQ(plain.GetSemivariance(bin), fromReordered.GetSemivariance(bin)) << bin;
  }
  for (std::size_t i = 1; i < pairs.size(); ++i) {
    if (pairs[i].first == pairs[i - 1].first) {
      EXPECT_LE(std::fabs(pairs[i - 1].second), std::fabs(pairs[i].second)) << i;
    }
  }
}

TEST(Variogram, ZeroDistancePairsGetABinFromFiftyOn) {
  Pairs pairs = Ladder(10);
  for (int i = 0; i < 49; ++i) pairs.emplace_back(0.0, 2.0);
  EXPECT_EQ(BinSizes(pairs).front(), 4u);  // 59 pairs: the zeros join the first bin
  pairs.emplace_back(1e-31, 2.0);
  ZqVariogramImpl plain;
  ASSERT_TRUE(ZqSetupVariogram(plain, pairs, true));
  EXPECT_EQ(plain.GetSemivariance(0), 2.0);
  EXPECT_EQ(plain.GetNumBins(), 7u);  // the zero bin, then the bins of 10 pairs

  Pairs zeros(60, {0.0, 1.0});
  EXPECT_FALSE(ZqSetupVariogram(plain, zeros, false));
  EXPECT_EQ(plain.GetNumBins(), 1u);
  ZqFullVariogramImpl full;
  EXPECT_FALSE(ZqSetupVariogram(full, zeros, false));
  EXPECT_EQ(full.GetNumBins(), 0u);
}

TEST(Variogram, FullVariogramMeansAreThePlainOnesAndHandlesCopyDeeply) {
  Pairs pairs = Ladder(100);
  for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i].second = std::sin(static_cast<double>(i));
  Pairs copy = pairs;
  ZqVariogramImpl plain;
  auto* full = new ZqFullVariogramImpl;
  ASSERT_TRUE(ZqSetupVariogram(plain, pairs, true));
  ASSERT_TRUE(ZqSetupVariogram(*full, copy, true));
  const ZqFullVariogram fullHandle(full);
  const ZqVariogramImpl fromFull(fullHandle);
  ASSERT_EQ(fromFull.GetNumBins(), plain.GetNumBins());
  for (unsigned int b = 0; b < plain.GetNumBins(); ++b) {
    EXPECT_EQ(fromFull.GetDistance(b), plain.GetDistance(b));
    EXPECT_EQ(fromFull.GetSemivariance(b), plain.GetSemivariance(b));
  }

  Corvane::ZqScopedThrowCapture capture;
  full->Push({1.0}, {1.0, 2.0});
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{"ZqFullVariogramImpl::Push : Vectors differ in size"});
  ZqFullVariogram other = fullHandle;
  EXPECT_EQ(other.GetNumBins(), 6u);

  auto* editable = new ZqVariogramImpl(plain);
  ZqVariogram handle(editable);
  const ZqVariogram handleCopy = handle;
  editable->Push(99.0, 1.0);
  EXPECT_EQ(handle.GetNumBins(), 7u);
  EXPECT_EQ(handleCopy.GetNumBins(), 6u);
}

class KernelFitTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Pairs pairs;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("krige/variogram_refs.txt")) {
      const std::vector<double> v = VarimoTest::ToDoubles(tokens, tokens[0] == "fit" ? 2 : 1);
      if (tokens[0] == "pair") pairs.emplace_back(v[0], v[1]);
      if (tokens[0] == "bin") bins.push_back(v);
      if (tokens[0] == "fit") fits[tokens[1]] = v;
      if (tokens[0] == "expvar") experimentalVariance = v[0];
    }
    auto* plain = new ZqVariogramImpl;
    ASSERT_TRUE(ZqSetupVariogram(*plain, pairs, true));
    variogram = ZqVariogram(plain);
  }
  std::vector<std::vector<double>> bins;
  std::map<std::string, std::vector<double>> fits;
  double experimentalVariance = 0.0;
  ZqVariogram variogram;
};

TEST_F(KernelFitTest, BinsAndFitsMatchThePythonTranscription) {
  ASSERT_EQ(variogram.GetNumBins(), bins.size());
  for (unsigned int b = 0; b < bins.size(); ++b) {
    EXPECT_TRUE(VarimoTest::WithinRelative(variogram.GetDistance(b), bins[b][0], 1e-14)) << b;
    EXPECT_TRUE(VarimoTest::WithinRelative(variogram.GetSemivariance(b), bins[b][1], 1e-14)) << b;
  }
  ASSERT_EQ(fits.size(), 6u);
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    const auto expected = fits.find(candidate.GetName());
    if (expected == fits.end()) continue;
    ZqKrigeKernel kernel(candidate);
    const double fitness = ZqFitKernel(kernel, variogram);
    const std::string& name = expected->first;
    EXPECT_TRUE(VarimoTest::WithinRelative(kernel.GetRange(), expected->second[0], 1e-12)) << name;
    EXPECT_TRUE(VarimoTest::WithinRelative(kernel.GetNugget(), expected->second[1], 1e-12)) << name;
    EXPECT_TRUE(VarimoTest::WithinRelative(kernel.GetSill(), expected->second[2], 1e-12)) << name;
    EXPECT_TRUE(VarimoTest::WithinRelative(fitness, expected->second[3], 1e-12)) << name;
    EXPECT_EQ(ZqGetFitness(kernel, variogram), fitness) << name;
  }
  EXPECT_TRUE(VarimoTest::WithinRelative(ZqGetExperimentalVariance(variogram), experimentalVariance, 1e-12));
}

TEST_F(KernelFitTest, FracPointsSelectsLeadingBinsAndZeroIsRefused) {
  // Seven bins: 0.5 uses trunc(3.5 + 0.5) = 4, 1.0 and 10.0 use all seven.
  ZqKrigeKernel a(ZqKrigeKernelType::Spherical), b(ZqKrigeKernelType::Spherical);
  const double allBins = ZqFitKernelPartial(a, variogram, 1.0);
  EXPECT_EQ(allBins, ZqFitKernelPartial(b, variogram, 10.0));
  auto* firstFour = new ZqVariogramImpl;
  for (unsigned int i = 0; i < 4; ++i) firstFour->Push(variogram.GetDistance(i), variogram.GetSemivariance(i));
  const ZqVariogram four(firstFour);
  // The fitness reported is over those four bins only.
  const double fourBins = ZqFitKernelPartial(a, variogram, 0.5);
  EXPECT_EQ(fourBins, ZqGetFitness(a, four));
  EXPECT_NE(fourBins, allBins);

  Corvane::ZqScopedThrowCapture capture;
  ZqKrigeKernel kernel(ZqKrigeKernelType::Gaussian);
  EXPECT_EQ(ZqFitKernelPartial(kernel, variogram, 0.0), kLargest);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning).front(),
            "ZqGetFitness, fracPoints must be greater than zero (0.000000 passed)");
  // Nothing improved, so the kernel stays at the start of the search.
  EXPECT_EQ(kernel.GetRange(), 0.5 * variogram.GetDistance(6));
  EXPECT_EQ(kernel.GetNugget(), variogram.GetSemivariance(0));
}

TEST(KernelFit, OneAndTwoBinsAndSearchesThatCannotEndStopAsUnfit) {
  ZqKrigeKernel kernel(ZqKrigeKernelType::Gaussian);
  EXPECT_EQ(ZqFitKernel(kernel, ZqVariogram()), kLargest);
  EXPECT_EQ(ZqGetFitness(kernel, ZqVariogram()), kLargest);

  auto* one = new ZqVariogramImpl;
  one->Push(2.0, 3.0);
  kernel.SetNugget(1.0);
  EXPECT_EQ(ZqFitKernel(kernel, ZqVariogram(one)), 0.0);
  EXPECT_EQ(kernel.GetNugget(), 0.0);
  EXPECT_EQ(kernel.GetSill(), 3.0);
  EXPECT_EQ(kernel.GetRange(), 2.0);

  // Linear through (1, 0.6) and (2, 1): the exact fit has nugget 0.2, the
  // 21st step of the scan.
  auto* two = new ZqVariogramImpl;
  two->Push(1.0, 0.6);
  two->Push(2.0, 1.0);
  const ZqVariogram twoBins(two);
  ZqKrigeKernel linear(ZqKrigeKernelType::Linear);
  const double fitness = ZqFitKernel(linear, twoBins);
  EXPECT_EQ(linear.GetSill(), 1.0);
  EXPECT_EQ(linear.GetRange(), 2.0);
  EXPECT_NEAR(linear.GetNugget(), 0.2, 1e-12);
  EXPECT_LT(fitness, 1e-12);

  Corvane::ZqScopedThrowCapture capture;
  EXPECT_EQ(ZqFitKernelPartial(linear, twoBins, -1.0), kLargest);
  EXPECT_EQ(linear.GetNugget(), 0.0);
  // 100 scan steps (0 to 0.99: a hundred sums of 0.01 pass 1.0) and the
  // final fitness.
  EXPECT_EQ(capture.Messages().size(), 101u);

  // Searches that cannot end stop as unfit. A sill of zero: the nugget scan
  // cannot advance.
  auto* flat = new ZqVariogramImpl;
  flat->Push(1.0, 0.0);
  flat->Push(2.0, 0.0);
  ZqKrigeKernel exponential(ZqKrigeKernelType::Exponential);
  EXPECT_EQ(ZqFitKernel(exponential, ZqVariogram(flat)), kLargest);

  // Every bin at distance zero: the range is 0 and the fitness NaN.
  auto* atZero = new ZqVariogramImpl;
  for (double s : {0.5, 1.0, 1.5}) atZero->Push(0.0, s);
  EXPECT_EQ(ZqFitKernel(exponential, ZqVariogram(atZero)), kLargest);

  // NaN semivariances do not hang the search either.
  auto* withNaN = new ZqVariogramImpl;
  for (double s : {0.5, std::nan(""), 1.5}) withNaN->Push(s, s);
  const double nanFitness = ZqFitKernel(exponential, ZqVariogram(withNaN));
  EXPECT_TRUE(nanFitness == kLargest || std::isnan(nanFitness));
}

}  // namespace
}  // namespace Varimo
