// Kernel functions and similarity kernels against values computed from
// their formulas in Python (tests/data/smoothers/make_kernel_refs.py), their
// names and types, and the edges of their supports.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>

#include "reference_file.h"
#include "varimo/smoothers/kernel_functions.h"
#include "varimo/smoothers/similarity_kernels.h"

namespace Varimo {
namespace {

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
