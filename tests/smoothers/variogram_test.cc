// Kernel functions and similarity kernels against values computed from
// their formulas in Python (tests/data/smoothers/make_kernel_refs.py), their
// names and types, and the edges of their supports. Binned variograms of a
// response against similarity, their kernel fits, and the variogram on
// several predictor columns. The real-data references are Tanimoto
// similarities and Crippen logP of 150 molecules of first_5K.smi, computed
// with RDKit, numpy and scipy by tests/data/smoothers/make_variogram_refs.py.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/smoothers/kernel_functions.h"
#include "varimo/smoothers/pred_columns_variogram.h"
#include "varimo/smoothers/similarity_kernels.h"
#include "varimo/smoothers/similarity_variogram.h"
#include "varimo/statistics/sample_statistic.h"
#include "varimo/tables/data_table_files.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace K = ZqSimilarityKernelType;
using VarimoTest::Comments;
using VarimoTest::WithinRelative;

constexpr double kBad = VarimoBadData::BadDouble;

std::map<std::string, std::vector<double>> ReadRefs() {
  std::map<std::string, std::vector<double>> refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("smoothers/variogram_refs.txt")) {
    refs[line[0]] = VarimoTest::ToDoubles(line, 1);
  }
  return refs;
}

ZqDataTable LoadTable(bool withSimilarities) {
  ZqDataTable properties("properties");
  Tessik::zqifstream csv(VarimoTest::DataPath("smoothers/logp150.csv"));
  EXPECT_TRUE(ZqLoadDataTableFromCSVFileWithHeader(properties, csv, "logp150.csv").IsSuccessful());
  if (!withSimilarities) return properties;
  ZqDataTable table("tanimoto");
  Tessik::zqifstream pgs(VarimoTest::DataPath("smoothers/tanimoto150.pgs"));
  EXPECT_TRUE(ZqLoadDataTableFromPGSFile(table, pgs, "tanimoto150.pgs", false).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(properties.GetColumnFromName("logP")).IsSuccessful());
  return table;
}

std::vector<double> Values(Corvane::ZqIter<const std::pair<double, double>> points) {
  std::vector<double> values;
  for (const auto& point : points) values.push_back(point.second);
  return values;
}

// The references and the similarity table, read once for the tests on them.
const std::vector<double>& Ref(const std::string& key) {
  static const std::map<std::string, std::vector<double>> refs = ReadRefs();
  return refs.at(key);
}

const ZqDataTable& TanimotoTable() {
  static const ZqDataTable table = LoadTable(true);
  return table;
}

TEST(TanimotoVariogram, BinCountsMeansAndTrimmedMeansMatchNumpy) {
  const ZqVariogramBinWeights weights(false, 0.001, 0.1);
  ZqBinnedVariogramFromSimilarity variogram(TanimotoTable(), "SimilarityMatrix", "logP", weights, 10);
  ASSERT_TRUE(variogram.IsValid()) << variogram.GetResultOfConstruction().ReportStatResultDetails();

  ASSERT_TRUE(variogram.CalcEmpiricalVariogram(0.001, 0).IsSuccessful());
  std::vector<double> counts(variogram.GetNumPairsPerBin().begin(), variogram.GetNumPairsPerBin().end());
  EXPECT_EQ(counts, Ref("count"));
  const std::vector<double> means = Values(variogram.GetEmpiricalVariogram());
  ASSERT_EQ(means.size(), 10u);
  for (std::size_t b = 0; b < 10; ++b) EXPECT_TRUE(WithinRelative(means[b], Ref("mean")[b], 1e-12)) << b;
  std::vector<double> centres;
  for (const auto& point : variogram.GetEmpiricalVariogram()) centres.push_back(point.first);
  EXPECT_DOUBLE_EQ(centres.front(), 0.05);
  EXPECT_DOUBLE_EQ(centres.back(), 0.95);

  // 0.001 is still the plain mean; anything above trims through the chained
  // pairs of each bin.
  ASSERT_TRUE(variogram.CalcEmpiricalVariogram(0.2, 0).IsSuccessful());
  const std::vector<double> trimmed = Values(variogram.GetEmpiricalVariogram());
  for (std::size_t b = 0; b < 10; ++b) EXPECT_TRUE(WithinRelative(trimmed[b], Ref("trim")[b], 1e-12)) << b;
  ASSERT_TRUE(variogram.CalcEmpiricalVariogram(0.0011, 0).IsSuccessful());
  EXPECT_NE(Values(variogram.GetEmpiricalVariogram())[0], means[0]);

  std::vector<double> binWeights;
  ASSERT_TRUE(weights.GetBinWeights(binWeights, variogram.GetNumPairsPerBin()).IsSuccessful());
  for (std::size_t b = 0; b < 10; ++b) EXPECT_TRUE(WithinRelative(binWeights[b], Ref("weights")[b], 1e-14)) << b;
}

TEST(TanimotoVariogram, ExponentialFitRunsToTheLowerBoundLikeScipy) {
  // On these molecules the variogram is nearly linear in similarity, so the
  // best exponential kernel is the flattest one allowed: scipy's bounded
  // search ends at the bound, and so must the line search.
  ZqBinnedVariogramFromSimilarity variogram(TanimotoTable(), "SimilarityMatrix", "logP",
                                            ZqVariogramBinWeights(false, 0.001, 0.1), 10);
  ASSERT_TRUE(variogram.CalcEmpiricalVariogram(0.0, 0).IsSuccessful());
  double error = 0.0, param = 0.0;
  ASSERT_TRUE(variogram.CalcOptimalTheoryVariogram(error, param, K::Exponential, 20, 1.0, 0.01, 100.0).IsSuccessful());
  const std::vector<double>& fit = Ref("fit");
  EXPECT_NEAR(param, fit[0], 1e-6);
  EXPECT_TRUE(WithinRelative(error, fit[1], 1e-6));
  EXPECT_TRUE(WithinRelative(variogram.GetNugget(), fit[2], 1e-4));
  EXPECT_TRUE(WithinRelative(variogram.GetSill(), fit[3], 1e-4));
  EXPECT_EQ(variogram.GetKrigingParameters(), (std::vector<double>{param, variogram.GetNugget(), variogram.GetSill()}));
  const std::vector<double> theory = Values(variogram.GetTheoryVariogram());
  ASSERT_EQ(theory.size(), 20u);
  const double s = 0.025, c = kZqSimilarityOrigin;
  EXPECT_DOUBLE_EQ(theory[0], (1.0 - std::exp(-param * (c - s))) * (variogram.GetSill() - variogram.GetNugget()) +
                                  variogram.GetNugget());
}

// Pairs (2b, 2b+1) of similarity (b + 0.5) / 10 and half squared difference
// g(s) on an exact Gaussian-kernel curve; every other pair has similarity 0
// and lands in bin 0, which the threshold leaves out of the fit.
ZqBinnedVariogramFromSimilarity ExactCurveVariogram(double nugget, double sill, double p) {
  const std::size_t n = 20;
  std::vector<double> y(n), sim(n * n, 0.0);
  for (std::size_t b = 1; b < 10; ++b) {
    const double s = (b + 0.5) / 10.0;
    const double d = p * (kZqSimilarityOrigin - s);
    const double g = nugget + (sill - nugget) * (1.0 - std::exp(-d * d));
    y[2 * b] = 10.0 * b;
    y[2 * b + 1] = y[2 * b] + std::sqrt(2.0 * g);
    sim[2 * b * n + 2 * b + 1] = s;
  }
  return ZqBinnedVariogramFromSimilarity(y, sim, ZqVariogramBinWeights(true, 0.0, 0.1), 10);
}

TEST(SimilarityVariogramFit, LineSearchRecoversAnExactCurve) {
  ZqBinnedVariogramFromSimilarity variogram = ExactCurveVariogram(0.2, 1.5, 3.0);
  ASSERT_TRUE(variogram.CalcEmpiricalVariogram(0.0, 0).IsSuccessful());
  double error = 0.0, param = 0.0;
  // Downward from 1 the error rises, so the upward search decides.
  ASSERT_TRUE(variogram.CalcOptimalTheoryVariogram(error, param, K::Gaussian, 10, 1.0, 0.1, 10.0).IsSuccessful());
  EXPECT_NEAR(param, 3.0, 0.01);
  EXPECT_LT(error, 0.01);
  EXPECT_NEAR(variogram.GetNugget(), 0.2, 0.02);
  EXPECT_NEAR(variogram.GetSill(), 1.5, 0.02);

  // An initial parameter on the minimum gives a downward search of no length.
  double errorAtMin = 0.0, paramAtMin = 0.0;
  ASSERT_TRUE(
      variogram.CalcOptimalTheoryVariogram(errorAtMin, paramAtMin, K::Gaussian, 10, 0.5, 0.5, 10.0).IsSuccessful());
  EXPECT_NEAR(paramAtMin, 3.0, 0.01);
}

TEST(SimilarityVariogramFit, ObjectiveSolvesNuggetAndSillInClosedForm) {
  // Against numpy's lstsq in the generator on the same points is the real-data
  // test; here the two degenerate branches.
  const ZqVariogramPoints flat = {{0.1, 2.0}, {0.5, 4.0}, {0.9, 3.0}};
  ZqSimilarityVariogramLSFit boxCar(K::BoxCar, flat, {0.25, 0.25, 0.5});
  const double p = 0.5;  // p d <= 1 everywhere: every kernel value is 1
  const double error = boxCar(&p);
  EXPECT_DOUBLE_EQ(boxCar.GetNugget(), 3.0);
  EXPECT_DOUBLE_EQ(boxCar.GetSill(), 3.0);
  EXPECT_DOUBLE_EQ(error, std::sqrt(0.25 * 4 + 0.25 * 16 + 0.5 * 9 - 9.0));

  ZqSimilarityVariogramLSFit noWeight(K::Gaussian, flat, {0.0, 0.0, 0.0});
  EXPECT_EQ(noWeight(&p), kBad);
  EXPECT_EQ(noWeight.GetNugget(), kBad);
  EXPECT_FALSE(ZqSimilarityVariogramLSFit(K::Unknown, flat, {1, 1, 1}).IsValid());
  EXPECT_FALSE(ZqSimilarityVariogramLSFit(K::Gaussian, flat, {1, 1}).IsValid());
}

TEST(SimilarityVariogramEdges, BinsWeightsAndTheirFailures) {
  // A similarity of exactly 1 falls into the last bin.
  ZqBinnedVariogramFromSimilarity ones({1.0, 3.0}, {1.0, 1.0, 1.0, 1.0}, ZqVariogramBinWeights(false, 0.0, 0.0), 4);
  ASSERT_TRUE(ones.CalcEmpiricalVariogram(0.0, 0).IsSuccessful());
  EXPECT_EQ(ones.GetNumPairsPerBin(), (std::vector<unsigned long>{0, 0, 0, 1}));
  EXPECT_EQ(Values(ones.GetEmpiricalVariogram()), (std::vector<double>{0.0, 0.0, 0.0, 2.0}));

  // Every bin excluded: NaN weights without a failure; the line search
  // never takes a NaN error for a descent, so the fit fails.
  const ZqVariogramBinWeights none(false, 0.0, 1.0);
  std::vector<double> w;
  ASSERT_TRUE(none.GetBinWeights(w, {3, 4}).IsSuccessful());
  EXPECT_TRUE(std::isnan(w[0]) && std::isnan(w[1]));
  ZqBinnedVariogramFromSimilarity excluded({1.0, 3.0, 2.0}, std::vector<double>(9, 0.3), none, 4);
  ASSERT_TRUE(excluded.CalcEmpiricalVariogram(0.0, 0).IsSuccessful());
  double error = 0.0, param = 0.0;
  const ZqStatModelResult nanFit = excluded.CalcOptimalTheoryVariogram(error, param, K::Gaussian, 5, -1, -1, -1);
  EXPECT_EQ(Comments(nanFit), (std::vector<std::string>{"minmizer failed both directions!"}));
  EXPECT_EQ(error, kBad);

  EXPECT_EQ(Comments(none.GetBinWeights(w, {})), (std::vector<std::string>{"numPairsInBin is empty!"}));
  const ZqVariogramBinWeights badFraction(false, 1.5, 0.0);
  EXPECT_FALSE(badFraction.IsValid());
  EXPECT_EQ(Comments(badFraction.GetResultOfConstruction()),
            (std::vector<std::string>{"fracAveBinCountThresholdForBinWeights = 1.5; must be between 0 and 1"}));
  EXPECT_EQ(badFraction.GetBinWeights(w, {1}).GetFailureType(), F::ObjectNotValid);
  EXPECT_EQ(Comments(ZqVariogramBinWeights(true, 0.5, -0.25).GetResultOfConstruction()),
            (std::vector<std::string>{"similarityThresholdForBinWeights = -0.25; must be between 0 and 1"}));
  ZqBinnedVariogramFromSimilarity withBadWeights({1.0}, {1.0}, badFraction, 4);
  EXPECT_EQ(withBadWeights.GetResultOfConstruction().GetFailureType(), F::ArgumentOutOfRange);
}

TEST(SimilarityVariogramEdges, ConstructionAndCallFailures) {
  const ZqVariogramBinWeights weights(false, 0.0, 0.0);
  ZqBinnedVariogramFromSimilarity wrongSize({1.0, 2.0}, {1.0, 0.5, 0.5}, weights, 4);
  EXPECT_FALSE(wrongSize.IsValid());
  EXPECT_EQ(Comments(wrongSize.GetResultOfConstruction()),
            (std::vector<std::string>{"similarityMatrix size = 3; whereas responseVals size = 2"}));
  EXPECT_EQ(wrongSize.CalcEmpiricalVariogram(0.0, 0).GetFailureType(), F::ObjectNotValid);
  ZqBinnedVariogramFromSimilarity oneBin({1.0, 2.0}, {1.0, 0.5, 0.5, 1.0}, weights, 1);
  EXPECT_EQ(oneBin.GetResultOfConstruction().GetFailureType(), F::LowerBoundViolated);
  EXPECT_EQ(Comments(oneBin.GetResultOfConstruction()), (std::vector<std::string>{" numBins (1); too small"}));
  ZqBinnedVariogramFromSimilarity tooMany({1.0, 2.0}, {1.0, 0.5, 0.5, 1.0}, weights, 1UL << 40);
  EXPECT_EQ(tooMany.GetResultOfConstruction().GetFailureType(), F::UpperBoundViolated);

  ZqBinnedVariogramFromSimilarity ok({1.0, 2.0}, {1.0, 0.5, 0.5, 1.0}, weights, 4);
  EXPECT_EQ(Comments(ok.CalcEmpiricalVariogram(1.5, 0)),
            (std::vector<std::string>{"fractionToTrimForTrimmedMeanSqDiff (1.5); should be between 0 and 1 )"}));
  // A non-zero second argument succeeds and computes nothing.
  ASSERT_TRUE(ok.CalcEmpiricalVariogram(0.0, 7).IsSuccessful());
  double error = 0.0, param = 0.0;
  const ZqStatModelResult noData = ok.CalcOptimalTheoryVariogram(error, param, K::Gaussian, 5, -1, -1, -1);
  EXPECT_EQ(noData.GetFailureType(), F::NoData);
  EXPECT_EQ(Comments(noData), (std::vector<std::string>{"Need to first calculate empirical variogram!"}));
  EXPECT_EQ(error, kBad);
  ASSERT_TRUE(ok.CalcEmpiricalVariogram(0.0, 0).IsSuccessful());
  EXPECT_EQ(Comments(ok.CalcOptimalTheoryVariogram(error, param, K::Unknown, 5, -1, -1, -1)),
            (std::vector<std::string>{"optimization func invalid; invalid kernel or vec size mismatch?"}));

  // Read from a table, a similarity column must be a matrix over its rows.
  const ZqDataTable properties = LoadTable(false);
  ZqBinnedVariogramFromSimilarity plain(properties, "rings", "logP", weights, 4);
  EXPECT_EQ(Comments(plain.GetResultOfConstruction()),
            (std::vector<std::string>{"similarityMatrix size = 150; responseVals size = 150; num cols in simMatrix = 1; "
                                      "num cols in response vec = 1"}));
  ZqBinnedVariogramFromSimilarity unknown(properties, "nothing", "logP", weights, 4);
  EXPECT_FALSE(unknown.IsValid());
}

TEST(PredColumnsVariogram, CellsAndGridFitMatchNumpy) {
  const ZqDataTable table = LoadTable(false);
  ZqVariogramOnPredColumns variogram("logP", {"rings", "aromatic"}, table, {3, 4}, false, 0.0, {0.0, 0.0},
                                     ZqSampleStatisticType::Mean, 0.0);
  ASSERT_TRUE(variogram.GetResultOfConstruction().IsSuccessful())
      << variogram.GetResultOfConstruction().ReportStatResultDetails();
  const std::vector<double>& grid = Ref("grid");
  const std::vector<double> counts(grid.begin(), grid.begin() + 12);
  EXPECT_EQ(variogram.GetNumPairsPerBin(), counts);
  for (std::size_t c = 0; c < 12; ++c) {
    if (counts[c] == 0) {
      EXPECT_EQ(variogram.GetSampleStatisticPerBin()[c], kBad);
      EXPECT_EQ(variogram.GetWeightsForFittingPerBin()[c], 0.0);
    } else {
      EXPECT_TRUE(WithinRelative(variogram.GetSampleStatisticPerBin()[c], grid[12 + c], 1e-12)) << c;
    }
    EXPECT_TRUE(variogram.GetBins()[c].IsSorted());
  }
  // The cell centres, digit by digit with the last predictor fastest.
  EXPECT_EQ(variogram.GetSimilaritiesFromBinIndex(7), (std::vector<double>{0.5, 0.875}));
  // Truncation before scaling: only a similarity of exactly 1 leaves digit 0.
  EXPECT_EQ(variogram.GetBinIndexFromSimilarities({0.99, 1.0}), 3u);
  EXPECT_EQ(variogram.GetBinIndexFromSimilarities({1.0, 0.5}), 8u);

  double error = 0.0;
  ASSERT_TRUE(variogram
                  .CalcOptimalTheoryVariogram(error, {K::Exponential, K::Exponential}, {-1, -1}, {1.0, 1.0},
                                              {9.0, 9.0}, {5, 5})
                  .IsSuccessful());
  const std::vector<double>& fit = Ref("gridfit");
  EXPECT_EQ(variogram.GetKernelParameter(), (std::vector<double>{fit[0], fit[1]}));
  EXPECT_TRUE(WithinRelative(error, fit[2], 1e-9));
  EXPECT_TRUE(WithinRelative(variogram.GetNugget(), fit[3], 1e-9));
  EXPECT_TRUE(WithinRelative(variogram.GetSill(), fit[4], 1e-9));
  EXPECT_EQ(variogram.GetKrigingParameters().size(), 4u);
}

TEST(PredColumnsVariogram, Failures) {
  const ZqDataTable table = LoadTable(false);
  const unsigned int mean = ZqSampleStatisticType::Mean;
  ZqVariogramOnPredColumns unknown("logP", {"nothing"}, table, {3}, false, 0.0, {0.0}, mean, 0.0);
  EXPECT_TRUE(unknown.GetResultOfConstruction().NotSuccessful());
  ZqVariogramOnPredColumns mismatched("logP", {"rings"}, table, {3, 4}, false, 0.0, {0.0}, mean, 0.0);
  EXPECT_EQ(mismatched.GetResultOfConstruction().GetFailureType(), F::WrongInputVectorSize);
  ZqVariogramOnPredColumns noBins("logP", {"rings"}, table, {0}, false, 0.0, {0.0}, mean, 0.0);
  EXPECT_EQ(noBins.GetResultOfConstruction().GetFailureType(), F::LowerBoundViolated);
  EXPECT_EQ(VarimoTest::Context(noBins.GetResultOfConstruction()),
            (std::vector<std::string>{"ZqVariogramOnPredColumns::ZqVariogramOnPredColumns"}));
  // Grids too large to hold or to search are refused, not attempted.
  ZqVariogramOnPredColumns huge("logP", {"rings", "aromatic"}, table, {1UL << 20, 1UL << 20}, false, 0.0, {0.0, 0.0},
                                mean, 0.0);
  EXPECT_EQ(huge.GetResultOfConstruction().GetFailureType(), F::ArgumentOutOfRange);

  // A constant predictor has no range to scale distances by.
  ZqDataTable constant("constant");
  ASSERT_TRUE(constant.AddColumn(ZqDataTableCol("x", std::vector<double>{2.0, 2.0, 2.0})).IsSuccessful());
  ASSERT_TRUE(constant.AddColumn(ZqDataTableCol("y", std::vector<double>{1.0, 2.0, 4.0})).IsSuccessful());
  ZqVariogramOnPredColumns flat("y", {"x"}, constant, {2}, false, 0.0, {0.0}, mean, 0.0);
  EXPECT_EQ(flat.GetResultOfConstruction().GetFailureType(), F::ArgumentOutOfRange);
  double error = 0.0;
  EXPECT_EQ(flat.CalcOptimalTheoryVariogram(error, {K::Gaussian}, {-1}, {-1}, {-1}, {3}).GetFailureType(),
            F::ObjectNotValid);

  ZqVariogramOnPredColumns ok("logP", {"rings"}, table, {3}, true, 0.0, {0.0}, mean, 0.0);
  ASSERT_TRUE(ok.GetResultOfConstruction().IsSuccessful());
  EXPECT_EQ(ok.CalcOptimalTheoryVariogram(error, {K::Gaussian, K::Gaussian}, {-1}, {-1}, {-1}, {3}).GetFailureType(),
            F::WrongInputVectorSize);
  double value = 0.0;
  const ZqStatModelResult sizes = ok.GetKernelValue(value, {0.5, 0.5}, {ZqSimilarityKernel(K::Gaussian)}, {1.0});
  EXPECT_EQ(Comments(sizes), (std::vector<std::string>{"Input vector sizes are: 2 and 1", "Num predictor variables = 1"}));
  EXPECT_EQ(ok.CalcOptimalTheoryVariogram(error, {K::Gaussian}, {-1}, {-1}, {-1}, {1UL << 40}).GetFailureType(),
            F::ArgumentOutOfRange);
  // An empty grid leaves nugget and sill bad.
  ASSERT_TRUE(ok.CalcOptimalTheoryVariogram(error, {K::Gaussian}, {-1}, {-1}, {-1}, {0}).IsSuccessful());
  EXPECT_EQ(ok.GetNugget(), kBad);
}

TEST(Kernels, ValuesAgreeWithTheirFormulas) {
  const auto lines = VarimoTest::ReadReferenceLines("smoothers/kernel_refs.txt");
  ASSERT_GT(lines.size(), 400u);
  for (const auto& line : lines) {
    SCOPED_TRACE(line[0] + " " + line[1] + " " + line[2]);
    const auto type = static_cast<unsigned int>(VarimoTest::ToDouble(line[1]));
    if (line[0] == "kernel") {
      const ZqKernelFunction kernel(type);
      EXPECT_NEAR(kernel(VarimoTest::ToDouble(line[2])), VarimoTest::ToDouble(line[3]), 1e-15);
    } else {
      const ZqSimilarityKernel kernel(type);
      const double expected = VarimoTest::ToDouble(line[4]);
      EXPECT_NEAR(kernel(VarimoTest::ToDouble(line[2]), VarimoTest::ToDouble(line[3])), expected,
                  1e-14 * std::max(1.0, std::fabs(expected)));
    }
  }
}

TEST(Kernels, NamesTypesAndEdges) {
  EXPECT_EQ(ZqGetKernelFunctionNameFromType(3), "Epachnikov or Quadratic Kernel Function");
  EXPECT_EQ(ZqGetKernelFunctionNameFromType(6),
            "ZqGetKernelFunctionNameFromType: argument out of Range.\nType must be less than 6");
  EXPECT_EQ(ZqGetKernelFunctionTypeFromName("Epachnikov or Quadratic Kernel Function"), 3u);
  EXPECT_EQ(ZqGetKernelFunctionTypeFromName("Epachnikov"), 3u);
  EXPECT_EQ(ZqGetKernelFunctionTypeFromName("Epanechnikov"), 0u);
  EXPECT_EQ(ZqKernelFunction(9).GetTypeOfKernel(), 0u);
  EXPECT_EQ(ZqKernelFunction(0)(0.3), DBL_MAX);
  // Only the box car holds |u| = 1.
  EXPECT_EQ(ZqKernelFunction(2)(1.0), 0.5);
  EXPECT_EQ(ZqKernelFunction(3)(1.0), 0.0);

  // The distance origin is one plus ten ulps, bit for bit.
  std::uint64_t bits;
  std::memcpy(&bits, &kZqSimilarityOrigin, sizeof bits);
  EXPECT_EQ(bits, 0x3FF000000000000AULL);
  const ZqSimilarityKernel null(0);
  EXPECT_EQ(null.GetDefaultInitialParamVal(), -1.0);
  EXPECT_EQ(null.GetMinimumAllowedParamVal(), -1.0);
  EXPECT_EQ(null.GetMaximumAllowedParamVal(), -1.0);
  EXPECT_EQ(null(0.5, 3.0), 0.0);
  EXPECT_EQ(ZqSimilarityKernel(4)(0.0, 1.0), 0.0);  // x = C > 1
  EXPECT_EQ(ZqSimilarityKernel(1)(kZqSimilarityOrigin, 10.0), 1.0);
  EXPECT_EQ(ZqSimilarityKernel(9)(0.5, 0.0), 0.0);  // p must be above 0
  const ZqSimilarityKernel smooth(8);
  EXPECT_NEAR(smooth(kZqSimilarityOrigin - 0.3, 0.3), 0.5, 1e-12);
  EXPECT_NEAR(smooth(1.0, 0.5), 1.0, 1e-10 + 1e-15);  // 1 / (1 + 10^-10), give or take an ulp
  EXPECT_EQ(ZqSimilarityKernel(11).GetMinimumAllowedParamVal(), 0.0001);
  EXPECT_EQ(ZqGetSimilarityKernelName(10), "ExponentialOfSqRoot");
  EXPECT_EQ(ZqGetSimilarityKernelName(12), "Unknown");
  EXPECT_EQ(ZqGetSimilarityKernelType("Spherical"), 11u);
  EXPECT_EQ(ZqGetSimilarityKernelType("spherical"), 0u);

  const Numarc::ZqDataSeries series = ZqSimilarityKernel(5).GetKernelValues(2.0, 5);
  ASSERT_EQ(series.GetNumPoints(), 5u);
  EXPECT_EQ(series.GetPoints()[2].GetX(), 0.5);
  EXPECT_EQ(series.GetPoints()[2].GetY(), 0.0);  // x = 2 (C - 0.5) > 1
  EXPECT_TRUE(std::isnan(ZqSimilarityKernel(5).GetKernelValues(2.0, 1).GetPoints()[0].GetX()));
  EXPECT_EQ(ZqSimilarityKernel(5).GetKernelValues(2.0, 0).GetNumPoints(), 0u);
}

}  // namespace
}  // namespace Varimo
