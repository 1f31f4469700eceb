// ROC area, its standard error and the median score. Areas come from
// scikit-learn's roc_auc_score and medians from numpy.median, written by
// tests/data/cluster/make_auc_refs.py; the standard errors from the same
// script's transcription of Hanley and McNeil (1982).
#include "varimo/cluster/calc_auc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using VarimoTest::ReadReferenceLines;
using VarimoTest::ToDouble;
using VarimoTest::ToDoubles;
using VarimoTest::WithinRelative;
using Corvane::ZqThrowLevel;

constexpr double kTol = 1e-13;

std::vector<std::vector<std::string>> RefLines(const std::string& kind) {
  std::vector<std::vector<std::string>> out;
  for (auto& line : ReadReferenceLines("cluster/auc_refs.txt")) {
    if (line[0] == kind) out.push_back(line);
  }
  return out;
}

std::vector<bool> Flags(const std::vector<std::string>& tokens, std::size_t first) {
  std::vector<bool> flags;
  for (std::size_t i = first; i < tokens.size(); ++i) flags.push_back(tokens[i] == "1");
  return flags;
}

TEST(CalculateAUC, ScoresMatchScikitLearnWithTies) {
  const auto lines = RefLines("scores");
  ASSERT_EQ(lines.size(), 5u);
  for (const auto& line : lines) {
    const bool higher = line[1] == "1";
    const double expected = ToDouble(line[2]);
    const std::size_t na = std::stoul(line[3]);
    const std::vector<double> all = ToDoubles(line, 5);
    const std::vector<double> actives(all.begin(), all.begin() + static_cast<long>(na));
    const std::vector<double> decoys(all.begin() + static_cast<long>(na), all.end());
    EXPECT_TRUE(WithinRelative(ZqCalculateAUC(actives, decoys, higher), expected, kTol));
  }
}

TEST(CalculateAUC, ScoresTieCountsOneHalfAndEmptyIsNaN) {
  EXPECT_EQ(ZqCalculateAUC({1.0}, {1.0}, true), 0.5);
  EXPECT_EQ(ZqCalculateAUC({2.0, 1.0}, {1.0}, true), 0.75);
  EXPECT_EQ(ZqCalculateAUC({2.0, 1.0}, {1.0}, false), 0.25);
  // Each pair counted by hand: 3 beats 1 and 2, ties 3; 2 ties 2, beats 1.
  EXPECT_EQ(ZqCalculateAUC({3.0, 2.0}, {1.0, 2.0, 3.0}, true), 4.0 / 6.0);
  EXPECT_EQ(ZqCalculateAUC({3.0, 2.0}, {1.0, 2.0, 3.0}, false), 2.0 / 6.0);
  // A NaN score counts nothing but still counts as a pair.
  EXPECT_EQ(ZqCalculateAUC({2.0, NAN}, {1.0, NAN}, true), 0.25);
  EXPECT_TRUE(std::isnan(ZqCalculateAUC({}, {1.0}, true)));
  EXPECT_TRUE(std::isnan(ZqCalculateAUC({1.0}, {}, false)));
}

TEST(CalculateAUC, RankedListsMatchScikitLearn) {
  const auto lines = RefLines("ranked");
  ASSERT_EQ(lines.size(), 5u);
  for (const auto& line : lines) {
    const double expected = ToDouble(line[1]);
    const unsigned int nact = static_cast<unsigned int>(std::stoul(line[2]));
    const unsigned int ndec = static_cast<unsigned int>(std::stoul(line[3]));
    const std::vector<bool> ranked = Flags(line, 4);
    double auc = -1.0;
    ASSERT_TRUE(ZqCalculateAUC(auc, ranked, nact, ndec));
    EXPECT_TRUE(WithinRelative(auc, expected, kTol)) << line[2] << " " << line[3];
    if (ranked.size() == nact + ndec) {
      // The whole ranking: the trapezoid adds nothing, both overloads agree.
      double whole = -1.0;
      ASSERT_TRUE(ZqCalculateAUC(whole, ranked));
      EXPECT_EQ(whole, auc);
    }
  }
}

TEST(CalculateAUC, PerfectReversedAndRefusedRankings) {
  double auc = -1.0;
  ASSERT_TRUE(ZqCalculateAUC(auc, {true, true, false, false, false}));
  EXPECT_EQ(auc, 1.0);
  ASSERT_TRUE(ZqCalculateAUC(auc, {false, false, true}));
  EXPECT_EQ(auc, 0.0);
  ASSERT_TRUE(ZqCalculateAUC(auc, {false, true, false, true}, 2, 2));
  EXPECT_EQ(auc, 0.25);
  // An empty top of a ranking of 4 actives and 9 decoys: the diagonal.
  ASSERT_TRUE(ZqCalculateAUC(auc, std::vector<bool>{}, 4, 9));
  EXPECT_EQ(auc, 0.5);

  // Without both classes, or with more than the counts say: false, and the
  // area stays as it was.
  auc = 0.125;
  EXPECT_FALSE(ZqCalculateAUC(auc, std::vector<bool>{}));
  EXPECT_FALSE(ZqCalculateAUC(auc, {true, true}));
  EXPECT_FALSE(ZqCalculateAUC(auc, {false}));
  EXPECT_FALSE(ZqCalculateAUC(auc, {true, false}, 0, 3));
  EXPECT_FALSE(ZqCalculateAUC(auc, {true, false}, 3, 0));
  // More actives or decoys in the list than the counts say warns.
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_FALSE(ZqCalculateAUC(auc, {true, true, true, false}, 2, 5));
  EXPECT_FALSE(ZqCalculateAUC(auc, {true, false, false, false, false}, 2, 3));
  EXPECT_EQ(auc, 0.125);
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{
                "ZqCalculateAUC, total number of actives (Nact 2) is less than number of actives there are known "
                "to be (nact 3)",
                "ZqCalculateAUC, total number of decoys (Ndec 3) is less than number of decoys there are known "
                "to be (ndec 4)"}));
}

TEST(CalculateStandardError, MatchesHanleyMcNeil) {
  const auto lines = RefLines("se");
  ASSERT_EQ(lines.size(), 4u);
  for (const auto& line : lines) {
    const double se = ZqCalculateStandardError(ToDouble(line[1]), static_cast<unsigned int>(std::stoul(line[2])),
                                               static_cast<unsigned int>(std::stoul(line[3])));
    EXPECT_TRUE(WithinRelative(se, ToDouble(line[4]), kTol));
  }
  EXPECT_EQ(ZqCalculateStandardError(1.0, 30, 40), 0.0);
  EXPECT_EQ(ZqCalculateStandardError(0.7, 0, 40), VarimoBadData::BadDouble);
}

TEST(MedianScore, MatchesNumpyAndLeavesInputAlone) {
  const auto lines = RefLines("median");
  ASSERT_EQ(lines.size(), 5u);
  for (const auto& line : lines) {
    const std::vector<double> values = ToDoubles(line, 2);
    const std::vector<double> before = values;
    EXPECT_TRUE(WithinRelative(ZqMedianScore(values), ToDouble(line[1]), kTol));
    EXPECT_TRUE(WithinRelative(ZqMedianScore(values.data(), values.size()), ToDouble(line[1]), kTol));
    EXPECT_EQ(values, before);
  }
  EXPECT_EQ(ZqMedianScore(std::vector<double>{}), VarimoBadData::BadDouble);
}

}  // namespace
}  // namespace Varimo
