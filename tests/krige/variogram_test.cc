// Krige kernels, variograms and kernel fitting. Kernels: names, values
// against an independent evaluation of their formulas
// (tests/data/krige/make_kernel_refs.py), the points where they reach their
// sill, copies and the candidate list. Variograms: bin sizes, the
// zero-distance bin, and fits checked against a Python transcription of the
// rules run on a seeded pair cloud (tests/data/krige/make_variogram_refs.py).
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
#include "varimo/krige/krige_kernels.h"
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

// A plain variogram of the given (distance, semivariance) bins.
ZqVariogram VariogramOf(const Pairs& bins) {
  auto* plain = new ZqVariogramImpl;
  for (const auto& [distance, semivariance] : bins) plain->Push(distance, semivariance);
  return ZqVariogram(plain);
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
  Pairs firstFour;
  for (unsigned int i = 0; i < 4; ++i) firstFour.emplace_back(variogram.GetDistance(i), variogram.GetSemivariance(i));
  const ZqVariogram four = VariogramOf(firstFour);
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

  kernel.SetNugget(1.0);
  EXPECT_EQ(ZqFitKernel(kernel, VariogramOf({{2.0, 3.0}})), 0.0);
  EXPECT_EQ(kernel.GetNugget(), 0.0);
  EXPECT_EQ(kernel.GetSill(), 3.0);
  EXPECT_EQ(kernel.GetRange(), 2.0);

  // Linear through (1, 0.6) and (2, 1): the exact fit has nugget 0.2, the
  // 21st step of the scan.
  const ZqVariogram twoBins = VariogramOf({{1.0, 0.6}, {2.0, 1.0}});
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
  ZqKrigeKernel exponential(ZqKrigeKernelType::Exponential);
  EXPECT_EQ(ZqFitKernel(exponential, VariogramOf({{1.0, 0.0}, {2.0, 0.0}})), kLargest);

  // Every bin at distance zero: the range is 0 and the fitness NaN.
  EXPECT_EQ(ZqFitKernel(exponential, VariogramOf({{0.0, 0.5}, {0.0, 1.0}, {0.0, 1.5}})), kLargest);

  // NaN semivariances do not hang the search either.
  const double nan = std::nan("");
  const double nanFitness = ZqFitKernel(exponential, VariogramOf({{0.5, 0.5}, {nan, nan}, {1.5, 1.5}}));
  EXPECT_TRUE(nanFitness == kLargest || std::isnan(nanFitness));
}

std::vector<std::unique_ptr<ZqKrigeKernelBase>> Candidates() {
  std::vector<std::unique_ptr<ZqKrigeKernelBase>> kernels;
  for (const ZqKrigeKernelBase& kernel : ZqGetKrigeKernels()) kernels.emplace_back(kernel.CreateCopy());
  return kernels;
}

TEST(KrigeKernels, CandidatesComeInOrderWithDefaultParameters) {
  std::vector<std::string> names;
  for (const auto& kernel : Candidates()) {
    names.push_back(kernel->GetName());
    EXPECT_EQ(kernel->GetRange(), 0.5);
    EXPECT_EQ(kernel->GetSill(), 1.0);
    EXPECT_EQ(kernel->GetNugget(), 0.0);
  }
  EXPECT_EQ(names, (std::vector<std::string>{
                       "Linear", "Exponential", "Gaussian", "Spherical", "Cauchy", "StudentT(0.500000000000)",
                       "StudentT(1.000000000000)", "StudentT(3.000000000000)", "StudentT(4.000000000000)",
                       "Power(0.250)", "Power(0.333)", "Power(0.500)", "Power(1.500)", "Power(2.000)", "Power(3.000)",
                       "Power(4.000)"}));
  EXPECT_EQ(ZqKrigeReverseGaussianKernel(2.0).GetName(), "Reverse Gaussian(2.000)");
}

TEST(KrigeKernels, ValuesMatchAnIndependentEvaluation) {
  std::map<std::string, std::unique_ptr<ZqKrigeKernelBase>> byName;
  for (auto& kernel : Candidates()) byName[kernel->GetName()] = std::move(kernel);
  byName["Reverse Gaussian(2.000)"] = std::make_unique<ZqKrigeReverseGaussianKernel>(2.0);
  int checked = 0;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("krige/kernel_refs.txt")) {
    std::string name = tokens[0];
    for (char& c : name) c = c == '_' ? ' ' : c;
    ASSERT_TRUE(byName.count(name)) << name;
    ZqKrigeKernelBase& kernel = *byName[name];
    const std::vector<double> v = VarimoTest::ToDoubles(tokens, 1);
    kernel.SetRange(v[0]);
    kernel.SetSill(v[1]);
    kernel.SetNugget(v[2]);
    EXPECT_TRUE(VarimoTest::WithinUlps(kernel.GetValue(v[3]), v[4], 4)) << name << " at " << v[3];
    ++checked;
  }
  EXPECT_EQ(checked, 272);
}

TEST(KrigeKernels, NuggetAtZeroAndSillOrNinetyPercentAtTheRange) {
  std::vector<std::unique_ptr<ZqKrigeKernelBase>> kernels = Candidates();
  kernels.push_back(std::make_unique<ZqKrigeReverseGaussianKernel>(3.0));
  for (const auto& kernel : kernels) {
    kernel->SetRange(2.0);
    kernel->SetSill(5.0);
    kernel->SetNugget(1.0);
    const std::string name = kernel->GetName();
    EXPECT_EQ(kernel->GetValue(0.0), 1.0) << name;
    const bool bounded = name == "Linear" || name == "Spherical" || name.rfind("Power", 0) == 0 ||
                         name.rfind("Reverse", 0) == 0;
    if (bounded) {
      EXPECT_DOUBLE_EQ(kernel->GetValue(2.0), 5.0) << name;
      EXPECT_EQ(kernel->GetValue(2.0000001), 5.0) << name;  // the sill exactly beyond the range
    } else {
      EXPECT_NEAR(kernel->GetValue(2.0), 1.0 + 0.9 * 4.0, 1e-12) << name;
      EXPECT_LT(kernel->GetValue(4.0), 5.0) << name;  // not there at twice the range
    }
  }
}

TEST(KrigeKernels, CopiesKeepParametersAndAreIndependent) {
  ZqKrigeReverseGaussianKernel source(1.5);
  source.SetRange(3.0);
  source.SetSill(2.0);
  source.SetNugget(0.5);
  ZqKrigeKernel handle(source);
  std::unique_ptr<ZqKrigeKernelBase> copy(handle.CreateCopy());
  // The copy of a handle is the concrete kernel, shape and offset included.
  ASSERT_NE(dynamic_cast<ZqKrigeReverseGaussianKernel*>(copy.get()), nullptr);
  EXPECT_EQ(copy->GetName(), "Reverse Gaussian(1.500)");
  EXPECT_EQ(copy->GetValue(1.0), source.GetValue(1.0));
  copy->SetSill(9.0);
  handle.SetRange(7.0);
  EXPECT_EQ(source.GetSill(), 2.0);
  EXPECT_EQ(source.GetRange(), 3.0);
  ZqKrigeKernel assigned(ZqKrigeKernelType::Gaussian);
  assigned = handle;
  handle.SetNugget(0.0);
  EXPECT_EQ(assigned.GetRange(), 7.0);
  EXPECT_EQ(assigned.GetNugget(), 0.5);
}

TEST(KrigeKernels, AnUnknownTypeIsLinearAndAZeroRangeFollowsTheFormula) {
  Corvane::ZqScopedThrowCapture capture;
  const ZqKrigeKernel kernel(5);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{
                "Invalid ZqKrigeKernelType (5) passed to ZqKrigeKernel constructor, defaulting to Linear kernel"});
  EXPECT_EQ(kernel.GetName(), "Linear");
  EXPECT_EQ(kernel.GetValue(0.25), ZqKrigeKernel(ZqKrigeKernelType::Linear).GetValue(0.25));
  EXPECT_EQ(ZqKrigeKernel(ZqKrigeKernelType::Cauchy).GetName(), "Cauchy");
  EXPECT_EQ(capture.Messages().size(), 1u);

  // A zero range gives what the formula gives.
  ZqKrigeKernel gaussian(ZqKrigeKernelType::Gaussian);
  gaussian.SetRange(0.0);
  EXPECT_EQ(gaussian.GetValue(1.0), 1.0);  // exp(-inf)
  EXPECT_TRUE(std::isnan(gaussian.GetValue(0.0)));  // 0 / 0
  ZqKrigeKernel linear(ZqKrigeKernelType::Linear);
  linear.SetRange(0.0);
  EXPECT_EQ(linear.GetValue(1.0), 1.0);  // beyond the range
}

}  // namespace
}  // namespace Varimo
