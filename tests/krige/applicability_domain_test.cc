// The applicability domain: its threshold from the training set's
// leave-one-out nearest distances, copies included, and its assessments.
#include <gtest/gtest.h>

#include <cmath>

#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/vector_krige.h"

namespace Varimo {
namespace {

using Element = ZqVectorElement;

// Points 0, 1, 1 (a copy), 3 and 10 on a line: the unique elements' nearest
// other distances are 1, 1, 2 and 7 (the copy of 1 is the same element, not
// a neighbour at 0), and their type-8 quantile at 0.5 is 1.5
// (numpy.quantile(..., method="median_unbiased")).
std::unique_ptr<ZqKrigeBase<Element>> LineModel(unsigned int local) {
  ZqKrigeOptions options = local > 0 ? ZqKrigeOptions(ZqLocalKrigeOptions().SetNumLocal(local))
                                     : ZqKrigeOptions(ZqGlobalKrigeOptions());
  auto model = ZqCreateKrige<Element>(ZqEuclideanDistance(), options, false);
  const double xs[] = {0.0, 1.0, 1.0, 3.0, 10.0}, ys[] = {0.0, 1.0, 1.2, 2.0, 1.0};
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(model->AddTraining({xs[i]}, ys[i]));
  EXPECT_TRUE(model->Train());
  return model;
}

TEST(ApplicabilityDomain, ThresholdLeavesEachElementOutAndNeedsTwoElements) {
  ZqDomainOptions half;
  half.quantile = 0.5;
  for (unsigned int local : {0u, 4u}) {
    auto model = LineModel(local);
    const ZqApplicabilityDomain domain = ZqApplicabilityDomain::FromModel(*model, half);
    EXPECT_EQ(domain.GetNumElements(), 4u) << local;
    EXPECT_DOUBLE_EQ(domain.GetThreshold(), 1.5) << local;
    const ZqDomainAssessment near = domain.Assess(model->GetKrigeResult({2.4}));
    EXPECT_NEAR(near.nearestDistance, 0.6, 1e-12);
    EXPECT_NEAR(near.nearestSimilarity, 0.4, 1e-12);
    EXPECT_TRUE(near.inDomain);
    EXPECT_EQ(near.withinRadius, 2u);  // 1 and 3 within 1.5 of 2.4
    EXPECT_GT(near.sdRatio, 0.0);
    EXPECT_LT(near.sdRatio, 1.0);
    const ZqDomainAssessment far = domain.Assess(model->GetKrigeResult({5.0}));
    EXPECT_DOUBLE_EQ(far.nearestDistance, 2.0);
    EXPECT_FALSE(far.inDomain);
    // On a training element the prediction is (nearly) certain.
    EXPECT_LT(domain.Assess(model->GetKrigeResult({3.0})).sdRatio, far.sdRatio);
  }
  // The default 95 % of four distances is the largest, 7.
  EXPECT_DOUBLE_EQ(ZqApplicabilityDomain::FromModel(*LineModel(0)).GetThreshold(), 7.0);

  // Too few elements give no threshold.
  const Element a{0.0}, b{0.0};
  EXPECT_TRUE(ZqNearestOtherDistances<Element>({&a, &b}, ZqEuclideanDistance()).empty());
  const ZqApplicabilityDomain none({}, ZqDomainOptions());
  EXPECT_TRUE(std::isnan(none.GetThreshold()));
  EXPECT_FALSE(none.Assess({0.0}, 0.0, 1.0).inDomain);
  // So does a quantile that is not a probability.
  for (double quantile : {-0.1, 1.5, std::nan("")}) {
    ZqDomainOptions options;
    options.quantile = quantile;
    EXPECT_TRUE(std::isnan(ZqApplicabilityDomain({1.0, 1.0, 2.0, 7.0}, options).GetThreshold())) << quantile;
  }
}

}  // namespace
}  // namespace Varimo
