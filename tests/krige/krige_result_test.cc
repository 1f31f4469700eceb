// Krige results and their statistics, built by hand with values chosen so
// that the expected numbers follow by mental arithmetic (stated beside each
// case); the option classes and their one checking setter.
#include "varimo/krige/krige_result.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "test_support.h"
#include "varimo/krige/krige_options.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kError = -99.0;

// Elements at distance 0.5 with the given weights and responses, on a
// linear kernel of range 1, sill 2 and nugget 0.5.
ZqKrigeResultImpl Built(const std::vector<double>& weights, const std::vector<double>& responses) {
  ZqKrigeResultImpl result;
  ZqKrigeLinearKernel kernel;
  kernel.SetRange(1.0);
  kernel.SetSill(2.0);
  kernel.SetNugget(0.5);
  result.SetKernel(kernel);
  for (std::size_t i = 0; i < weights.size(); ++i) result.AddElement(0.5, weights[i], responses[i], false, 0, false);
  return result;
}

TEST(KrigeResult, DefaultResultIsTheSignOfFailure) {
  const ZqKrigeResult result;
  EXPECT_FALSE(result.Valid());
  EXPECT_EQ(result.GetNumElements(), 0u);
  EXPECT_EQ(ZqCalculateResponse(result, kError), kError);
  EXPECT_EQ(ZqCalculateVariance(result, kError), kError);
  EXPECT_EQ(ZqSumWeights(result, kError), kError);
  EXPECT_EQ(ZqAbsWeightedVariance(result, 1.0, false, kError), kError);
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_EQ(result.GetKernel().GetName(), "Linear");
  ZqKrigeResultImpl noKernel;
  noKernel.AddElement(0.0, 1.0, 1.0, false, 0, false);
  EXPECT_EQ(noKernel.GetKernel().GetName(), "Linear");
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            (std::vector<std::string>{"ZqKrigeResultImpl::GetKernel().  Result is not valid",
                                      "ZqKrigeResultImpl::GetKernel().  No kernel"}));
}

TEST(KrigeResult, ResponseVarianceAndWeightSums) {
  ZqKrigeResultImpl result = Built({0.5, -0.5}, {4.0, 2.0});
  result.SetBaselineResponse(1.0);
  EXPECT_EQ(ZqCalculateResponse(result, kError), 2.0);  // 1 + 2 - 1
  EXPECT_EQ(ZqSumWeights(result, kError), 0.0);
  EXPECT_EQ(ZqSumAbsWeights(result, kError), 1.0);
  EXPECT_EQ(ZqSumSquaredWeights(result, kError), 0.5);  // (0.25 + 0.25) / 1
  // kernel(0.5) = 0.5 + 0.5 * 1.5 = 1.25: variance 2 - 1 * (2 - 1.25).
  EXPECT_EQ(ZqCalculateVariance(Built({1.0}, {0.0}), kError), 1.25);
  EXPECT_EQ(ZqCalculateVariance(Built({3.0}, {0.0}), kError), kError);  // 2 - 2.25 < 0
  EXPECT_TRUE(std::isnan(ZqSumSquaredWeights(Built({0.0, 0.0}, {1.0, 2.0}), kError)));
}

TEST(KrigeResult, AbsWeightedVarianceOverAllOrTheLargestWeights) {
  // All: |w| 1, 1 on responses 0, 2: mean 1, spread 2 / 2 = 1; the nugget
  // term 0.5 * 1 / 2.
  const ZqKrigeResultImpl two = Built({1.0, -1.0}, {0.0, 2.0});
  EXPECT_EQ(ZqAbsWeightedVariance(two, 1.0, false, kError), 1.0);
  EXPECT_EQ(ZqAbsWeightedVariance(two, 1.0, true, kError), 1.25);

  // |w| 8..1 (total 36). Fraction 0.9 stops at the sixth weight, whose
  // share lifts the sum (33/36) above it: |w| 8..3 on responses 0 except 11
  // under |w| 3: mean 33 / 33 = 1, spread (30 * 1 + 3 * 100) / 33 = 10. The
  // last two elements (responses 1000) must stay out.
  const ZqKrigeResultImpl eight = Built({8, -7, 6, -5, 4, 3, -2, 1}, {0, 0, 0, 0, 0, 11, 1000, 1000});
  EXPECT_EQ(ZqAbsWeightedVariance(eight, 0.9, false, kError), 10.0);
  // Fraction 0 and fraction 0.5 stop after one and three elements: raised
  // to the five largest, all on response 0.
  EXPECT_EQ(ZqAbsWeightedVariance(eight, 0.0, false, kError), 0.0);
  EXPECT_EQ(ZqAbsWeightedVariance(eight, 0.5, true, kError), 0.5 * 8.0 / 30.0);

  const ZqKrigeResultImpl zero = Built({0.0, 0.0}, {1.0, 2.0});
  EXPECT_EQ(ZqAbsWeightedVariance(zero, 1.0, false, kError), 2.0);  // the sill
  EXPECT_EQ(ZqAbsWeightedVariance(zero, 0.5, false, kError), kError);
}

TEST(KrigeResult, CopiesAreListedPerElementInKeyOrder) {
  ZqKrigeResultImpl result = Built({0.5, 0.5, 0.0}, {1.0, 2.0, 3.0});
  EXPECT_TRUE(result.PushCopyData(2, 30.0, true, 7, true));
  EXPECT_TRUE(result.PushCopyData(0, 10.0, false, 5, true));
  EXPECT_TRUE(result.PushCopyData(0, 11.0, true, 6, false));
  EXPECT_FALSE(result.PushCopyData(9, 0.0, false, 0, false));  // kept anyway
  const ZqKrigeResult copy(result);
  EXPECT_EQ(copy.GetNumCopies(0), 2u);
  EXPECT_TRUE(copy.GetHasMultipleCopies(0));
  EXPECT_EQ(copy.GetResponse(0, 1), 11.0);
  EXPECT_TRUE(copy.GetResponseIsUnmeasured(0, 1));
  EXPECT_EQ(copy.GetID(0, 0), 5u);
  EXPECT_FALSE(copy.GetHasID(0, 1));
  EXPECT_EQ(copy.GetNumCopies(2), 1u);  // a list of one is one copy
  EXPECT_FALSE(copy.GetHasMultipleCopies(2));
  EXPECT_EQ(copy.GetResponse(2, 0), 30.0);
  // Without a list, copy 0 is the element itself.
  EXPECT_EQ(copy.GetNumCopies(1), 1u);
  EXPECT_EQ(copy.GetResponse(1, 0), copy.GetResponse(1));
  EXPECT_EQ(copy.GetResponse(9, 0), 0.0);  // the orphan list answers

  Corvane::ZqScopedThrowCapture capture;
  EXPECT_EQ(copy.GetResponse(1, 1), kLargest);
  EXPECT_EQ(copy.GetResponse(5, 0), kLargest);
  EXPECT_EQ(copy.GetResponse(0, 3), kLargest);
  EXPECT_TRUE(copy.GetResponseIsUnmeasured(1, 1));
  EXPECT_FALSE(copy.GetHasID(5, 0));
  EXPECT_EQ(copy.GetID(1, 2), 0xFFFFFFFFu);
  EXPECT_EQ(copy.GetDistance(3), kLargest);
  EXPECT_EQ(copy.GetWeight(3), kLargest);
  EXPECT_EQ(copy.GetResponse(3), kLargest);
  EXPECT_TRUE(copy.GetResponseIsUnmeasured(3));
  EXPECT_TRUE(copy.GetHasID(3));
  EXPECT_EQ(copy.GetID(3), 0xFFFFFFFFu);
  EXPECT_EQ(copy.GetNumCopies(3), 0u);
  EXPECT_FALSE(copy.GetHasMultipleCopies(3));
  // One error each, naming the routine, the indices and the fault.
  const std::vector<std::string> errors = capture.Texts(Corvane::ZqThrowLevel::Error);
  ASSERT_EQ(errors.size(), 14u);
  EXPECT_EQ(errors[0], "ZqKrigeResultImpl::GetResponse(1,1), invalid copy");
  EXPECT_EQ(errors[1], "ZqKrigeResultImpl::GetResponse(5,0), invalid element");
  EXPECT_EQ(errors[2], "ZqKrigeResultImpl::GetResponse(0,3), invalid copy key");
  EXPECT_EQ(errors[6], "ZqKrigeResultImpl::GetDistance(3).  Invalid element");
  EXPECT_EQ(errors[13], "ZqKrigeResultImpl::GetHasMultipleCopies(3).  Invalid element");
  result.Clear();
  EXPECT_FALSE(result.Valid());
  EXPECT_EQ(result.GetBaselineResponse(), 0.0);
}

TEST(KrigeOptions, DefaultsConversionsAndTheCheckedMethod) {
  const ZqKrigeOptions defaults;
  EXPECT_EQ(defaults.GetNumLocal(), 100u);
  EXPECT_EQ(defaults.GetErrorValue(), kLargest);
  EXPECT_EQ(defaults.GetMissingIDValue(), 0xFFFFFFFFu);
  EXPECT_FALSE(defaults.GetIncludeUnmeasured());
  EXPECT_EQ(defaults.GetMaxVariogramSize(), 500000u);
  EXPECT_FALSE(defaults.GetPredictTraining());
  EXPECT_EQ(defaults.GetUniqueResponseMethod(), ZqKrigeUniqueResponseMethod::Mean);

  ZqGlobalKrigeOptions global;
  global.SetIncludeUnmeasured(true).SetUniqueResponseMethod(ZqKrigeUniqueResponseMethod::Max);
  const ZqKrigeOptions fromGlobal(global);
  EXPECT_EQ(fromGlobal.GetNumLocal(), 0u);
  EXPECT_TRUE(fromGlobal.GetIncludeUnmeasured());
  EXPECT_EQ(fromGlobal.GetUniqueResponseMethod(), ZqKrigeUniqueResponseMethod::Max);

  ZqLocalKrigeOptions local;
  local.SetNumLocal(7).SetMaxVariogramSize(10).SetPredictTraining(true).SetUniqueResponseMethod(3);
  EXPECT_EQ(local.GetUniqueResponseMethod(), 3u);  // stored without a word
  Corvane::ZqScopedThrowCapture capture;
  // The other local settings carry over as CreateKrige's test shows.
  EXPECT_EQ(ZqKrigeOptions(local).GetUniqueResponseMethod(), 0u);
  ZqKrigeOptions options;
  options.SetUniqueResponseMethod(ZqKrigeUniqueResponseMethod::Min).SetUniqueResponseMethod(3);
  EXPECT_EQ(options.GetUniqueResponseMethod(), ZqKrigeUniqueResponseMethod::Min);
  const std::string warning = "ZqKrigeOptions::SetUniqueResponseMethod.  3 is not a valid setting, ignorning.";
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning), (std::vector<std::string>{warning, warning}));
}

}  // namespace
}  // namespace Varimo
