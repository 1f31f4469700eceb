// Report options and number formats: defaults, the property list on plain
// and conformer-set molecules, classes and their colours.
#include "varimo/mol/krige_report_options.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "varimo/mol/krige_report_format.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/molkit/molecule.h"

namespace Varimo {
namespace {

std::unique_ptr<Molkit::ZqMolBase> Smiles(const std::string& smiles) {
  std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromSmiles(smiles);
  EXPECT_TRUE(mol) << smiles;
  return mol;
}

TEST(KrigeReportFormat, DecimalsFollowTheSignificantFigures) {
  // Four figures: 0 gets four decimals, 1234.5 none, 0.05 five, and 1e12
  // none, staying a fixed format however large. For -12.5 the magnitude
  // counts; 1000 has exactly four digits before the point, 999 three.
  const std::vector<std::pair<double, std::string>> cases = {
      {0.0, "%.4f"},  {1234.5, "%.0f"}, {0.05, "%.5f"}, {1e12, "%.0f"}, {1e-9, "%.12f"},        {-12.5, "%.2f"},
      {1000, "%.0f"}, {999, "%.1f"},    {1.0, "%.3f"},  {HUGE_VAL, "%.0f"}, {-HUGE_VAL, "%.0f"}, {std::nan(""), "%.0f"}};
  for (const auto& [value, format] : cases) EXPECT_EQ(ZqGetFormatString(value, 4), format) << value;
  EXPECT_EQ(ZqGetFormatString(5.0, 0), "%f");
}

// The defaults that the report tests (krige_report_test.cc) do not show.
TEST(KrigeReportOptions, DefaultsCopiesAndClear) {
  ZqKrigeReportOptions options;
  EXPECT_EQ(options.GetTitle(), "");
  EXPECT_EQ(options.GetResponseName(), "Response");
  EXPECT_TRUE(options.GetHigherIsBetter());
  EXPECT_FALSE(options.GetHasContributionBaseline());
  EXPECT_EQ(options.GetContributionPositiveColor(), Corvane::ZqBlue);

  // A copy keeps its own state when the original is cleared, and Clear()
  // brings back the defaults.
  options.SetContributionBaseline(5.5);
  options.SetTitle("t");
  options.PushSDProperty("NAME");
  options.SetContributionPositiveLabel("up");
  ZqKrigeReportOptions copy(options);
  options.ClearContributionBaseline();
  options.ClearTitle();
  options.ClearContributionLabels();
  EXPECT_FALSE(options.GetHasContributionBaseline());
  EXPECT_EQ(options.GetContributionPositiveLabel(), "");
  EXPECT_EQ(copy.GetContributionBaseline(), 5.5);
  EXPECT_EQ(copy.GetTitle(), "t");
  EXPECT_EQ(copy.GetContributionPositiveLabel(), "up");
  copy.Clear();
  EXPECT_EQ(copy.GetNumProperties(), 0u);
  EXPECT_FALSE(copy.GetHasContributionBaseline());
  EXPECT_EQ(options.GetNumProperties(), 1u);
}

TEST(KrigeReportOptions, PropertiesListSDDataThenComputedValues) {
  ZqKrigeReportOptions options;
  options.PushProperty(Molkit::ZqMolSDDataPropertyFxn("IC50"), "IC50 (nM)", 3);
  options.PushSDProperty("NAME");
  options.PushSDProperty("ID", "Compound");
  ASSERT_EQ(options.GetNumProperties(), 3u);
  // SD entries come first whatever the order of pushing.
  EXPECT_EQ(options.GetPropertyName(0), "NAME");
  EXPECT_EQ(options.GetPropertyName(1), "Compound");
  EXPECT_EQ(options.GetPropertyName(2), "IC50 (nM)");
  EXPECT_EQ(options.GetPropertyName(3), "");

  auto mol = Smiles("CCO");
  mol->SetSDData("NAME", "ethanol");
  mol->SetSDData("IC50", "0.0123456");
  EXPECT_EQ(options.GetPropertyValue(0, *mol), "ethanol");
  EXPECT_EQ(options.GetPropertyValue(1, *mol), "");  // no ID
  // Three figures of 0.0123: L = -1.9, k = -1, 4 decimals.
  EXPECT_EQ(options.GetPropertyValue(2, *mol), "0.0123");
  EXPECT_EQ(options.GetPropertyValue(3, *mol), "");
  mol->SetSDData("IC50", "not a number");
  EXPECT_EQ(options.GetPropertyValue(2, *mol), "");

  // A conformer set: its own data, else the active conformer's, else the
  // first conformer that has it.
  auto first = Smiles("CCO");
  auto second = Smiles("CCO");
  first->SetSDData("ID", "from-first");
  second->SetSDData("ID", "from-second");
  second->SetSDData("NAME", "second-name");
  Molkit::ZqMCMolBase set(*Smiles("CCO"));
  ASSERT_TRUE(set.AddConf(*first));
  ASSERT_TRUE(set.AddConf(*second));
  EXPECT_EQ(options.GetPropertyValue(0, set), "second-name");
  EXPECT_EQ(options.GetPropertyValue(1, set), "from-first");  // conformer 1 (a copy of the molecule) has none
  ASSERT_TRUE(set.SetActiveConf(2));
  EXPECT_EQ(options.GetPropertyValue(1, set), "from-second");
  set.SetSDData("ID", "own");
  EXPECT_EQ(options.GetPropertyValue(1, set), "own");

  options.ClearProperties();
  EXPECT_EQ(options.GetNumProperties(), 0u);
}

TEST(KrigeReportOptions, ClassesBoundsAndColours) {
  ZqKrigeReportOptions options;
  options.PushClassificationBoundry(DBL_MAX);
  options.PushClassificationBoundry(-DBL_MAX);
  options.PushClassificationBoundry(HUGE_VAL);
  {
    Corvane::ZqScopedThrowCapture capture;
    options.PushClassificationBoundry(std::nan(""));
    EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
              std::vector<std::string>{
                  "ZqKrigeReportOptions::PushClassificationBoundry, a boundary that is not a number is refused"});
  }
  EXPECT_EQ(options.GetNumClassifications(), 0u);
  options.PushClassificationBoundry(7.0);
  options.PushClassificationBoundry(5.0);
  options.PushClassificationBoundry(6.0);
  options.PushClassificationBoundry(6.0);  // kept once
  ASSERT_EQ(options.GetNumClassifications(), 4u);
  EXPECT_EQ(options.GetClassificationLowerBound(0), -DBL_MAX);
  EXPECT_EQ(options.GetClassificationUpperBound(0), 5.0);
  EXPECT_EQ(options.GetClassificationLowerBound(1), 5.0);
  EXPECT_EQ(options.GetClassificationUpperBound(1), 6.0);
  EXPECT_EQ(options.GetClassificationLowerBound(3), 7.0);
  EXPECT_EQ(options.GetClassificationUpperBound(3), DBL_MAX);

  // Six defaults until two colours are pushed; then those, cyclically.
  EXPECT_EQ(options.GetClassificationColor(0), Corvane::ZqRed);
  EXPECT_EQ(options.GetClassificationColor(1), Corvane::ZqBlue);
  EXPECT_EQ(options.GetClassificationColor(2), Corvane::ZqGreen);
  EXPECT_EQ(options.GetClassificationColor(5), Corvane::ZqColor(255, 255, 0));
  EXPECT_EQ(options.GetClassificationColor(6), Corvane::ZqRed);
  options.PushClassificationColor(Corvane::ZqGrey);
  EXPECT_EQ(options.GetClassificationColor(0), Corvane::ZqRed);
  options.PushClassificationColor(Corvane::ZqOrange);
  EXPECT_EQ(options.GetClassificationColor(0), Corvane::ZqGrey);
  EXPECT_EQ(options.GetClassificationColor(3), Corvane::ZqOrange);

  options.ClearClassifications();
  EXPECT_EQ(options.GetNumClassifications(), 0u);
  EXPECT_EQ(options.GetClassificationColor(0), Corvane::ZqRed);
}

}  // namespace
}  // namespace Varimo
