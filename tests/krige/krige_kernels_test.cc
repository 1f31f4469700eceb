// Krige kernels: names, values against an independent evaluation of their
// formulas (tests/data/krige/make_kernel_refs.py), the points where the
// kernels reach their sill, copies and the candidate list.
#include "varimo/krige/krige_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

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
