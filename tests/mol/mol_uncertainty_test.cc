// How far a molecule model's predictions are trusted: intervals calibrated
// on its own cross-validation, its applicability domain, and both as the
// report's entries. On bzr.sdf (RDKit's sample data, pIC50 in ACTIVITY).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "varimo/mol/mol_uncertainty.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

constexpr const char* kBzr = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";

TEST(MolUncertainty, IntervalsDomainAndReportEntries) {
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> all;
  std::vector<std::string> errors;
  ASSERT_TRUE(Molkit::ZqReadSDFile(kBzr, all, errors));
  Varimo::ZqMolModel model{Varimo::ZqMolModelSettings()};
  for (std::size_t i = 1; i < all.size(); i += 2) {
    ASSERT_TRUE(model.AddTraining(*all[i], std::stod(all[i]->GetSDData("ACTIVITY"))));
  }
  ASSERT_TRUE(model.Train());

  const Varimo::ZqConformalIntervals intervals = Varimo::ZqCalibrateMolModel(model, 5, 1, 2);
  ASSERT_TRUE(intervals.IsFitted());
  EXPECT_GT(intervals.GetNumScores(), 70u);  // of 81 records, a few held-out predictions may fail
  EXPECT_GT(intervals.GetScoreQuantile(0.1), intervals.GetScoreQuantile(0.5));
  // The same folds give the same intervals, whatever the threads.
  EXPECT_EQ(Varimo::ZqCalibrateMolModel(model, 5, 1, 1).GetScoreQuantile(0.1), intervals.GetScoreQuantile(0.1));
  EXPECT_FALSE(Varimo::ZqCalibrateMolModel(model, 100, 1, 1).IsFitted());

  const Varimo::ZqApplicabilityDomain domain = Varimo::ZqMolModelDomain(model);
  EXPECT_GT(domain.GetThreshold(), 0.0);
  EXPECT_LT(domain.GetThreshold(), 1.0);
  const Varimo::ZqMolKrigeResult onTraining = model.GetKrige().GetResult(*all[1]);
  const Varimo::ZqDomainAssessment own = domain.Assess(onTraining.GetKrigeResult());
  EXPECT_DOUBLE_EQ(own.nearestSimilarity, 1.0);
  EXPECT_TRUE(own.inDomain);

  Varimo::ZqKrigeReportOptions options;
  Varimo::ZqPushReportUncertainty(options, 0.1, true, true);
  ASSERT_EQ(options.GetNumProperties(), 2u);
  EXPECT_EQ(options.GetPropertyName(0), "90% interval");
  EXPECT_EQ(options.GetPropertyName(1), "In domain");
  const Varimo::ZqMolKrigeResult result = model.GetKrige().GetResult(*all[0]);
  Varimo::ZqSetReportUncertainty(*all[0], result, options, &intervals, 0.1, &domain);
  EXPECT_THAT(options.GetPropertyValue(1, *all[0]), ::testing::MatchesRegex("(yes|no) \\(nearest 0\\.[0-9][0-9]\\)"));
  EXPECT_THAT(options.GetPropertyValue(0, *all[0]), ::testing::MatchesRegex("\\[[0-9.]+, [0-9.]+\\]"));
}

}  // namespace
