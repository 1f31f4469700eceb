// Shared-nearest-neighbour clustering: small lists whose links are worked
// out by hand in the comments, and three Gaussian blobs with background
// noise whose true labels and scikit-learn neighbour lists come from
// tests/data/cluster/make_snn_points.py.
#include "varimo/cluster/snn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
namespace {

using Corvane::ZqThrowLevel;
using Lists = std::vector<std::vector<unsigned int>>;
using Clusters = std::vector<ZqSNNCluster>;

ZqSNNParameters Params(unsigned int nbrCt, unsigned int topic, unsigned int noise, unsigned int merge,
                       unsigned int label) {
  return ZqSNNParameters{nbrCt, topic, noise, merge, label};
}

std::size_t CountLines(const std::string& text, const std::string& line) {
  std::istringstream in(text);
  std::size_t count = 0;
  for (std::string l; std::getline(in, l);) count += l == line ? 1 : 0;
  return count;
}

::testing::AssertionResult StartsWith(const std::string& text, const std::string& prefix) {
  if (text.compare(0, prefix.size(), prefix) == 0) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "text starts " << text.substr(0, prefix.size() + 20);
}

// One run of ZqGetSNNCluster with its messages and its standard error.
struct SnnRun {
  int found = 0;
  Clusters clusters;
  std::vector<unsigned int> noise;
  std::vector<std::string> infos, warnings, errors;
  std::string err;
};

template <class Call>
SnnRun Captured(Call call) {
  SnnRun run;
  Corvane::ZqScopedThrowCapture capture;
  VarimoTest::CaptureOutput err(Corvane::ZqOutputStream::Err);
  run.found = call(run);
  run.err = err.Text();
  run.infos = capture.Texts(ZqThrowLevel::Info);
  run.warnings = capture.Texts(ZqThrowLevel::Warning);
  run.errors = capture.Texts(ZqThrowLevel::Error);
  return run;
}

// The list overload, given outputs left over from an earlier run that it
// must clear.
SnnRun Cluster(unsigned long numItems, const Lists& lists, const ZqSNNParameters& params, bool sortLists = true) {
  return Captured([&](SnnRun& run) {
    run.clusters = {{42}};
    run.noise = {7};
    return ZqGetSNNCluster(run.clusters, run.noise, numItems, lists, params, sortLists);
  });
}

// The similarity overload.
SnnRun Cluster(unsigned long numItems, ZqSimInfo info) {
  return Captured([&](SnnRun& run) { return ZqGetSNNCluster(run.clusters, numItems, info); });
}

// Five items that all list each other: every link has strength 5, every item
// heads a cluster, and every head merges into the first.
TEST(SNNCluster, IdenticalListsMergeIntoOneClusterOnlyAboveTheMergeStrength) {
  const SnnRun run = Cluster(5, Lists(5, std::vector<unsigned int>{4, 3, 2, 1, 0}), Params(5, 4, 2, 4, 3));
  ASSERT_NE(run.found, 0);
  // One search line per listed neighbour other than the item: 5 x 4.
  EXPECT_EQ(CountLines(run.err, "slow unsorted search of size nn"), 20u);
  ASSERT_EQ(run.clusters.size(), 1u);
  EXPECT_EQ(run.clusters[0].front(), 0u);
  EXPECT_EQ(std::set<unsigned int>(run.clusters[0].begin(), run.clusters[0].end()),
            (std::set<unsigned int>{0, 1, 2, 3, 4}));
  EXPECT_EQ(run.clusters[0].size(), 5u);
  EXPECT_TRUE(run.noise.empty());
  EXPECT_EQ(run.infos, (std::vector<std::string>{"Singleton Ct = 0, Noise Ct = 0"}));

  // The same lists with merge equal to the strength: the test is strict, so
  // the five heads stay apart.
  const SnnRun apart = Cluster(5, Lists(5, std::vector<unsigned int>{0, 1, 2, 3, 4}), Params(5, 4, 2, 5, 3), false);
  ASSERT_NE(apart.found, 0);
  EXPECT_EQ(apart.clusters, (Clusters{{0}, {1}, {2}, {3}, {4}}));
}

// Items 0 to 4 list {0..5}; item 5 lists {0, 1, 5}. Links among 0..4 have
// strength 6; 5 is linked to 0 and 1 only, with strength 3, so it has two
// links: neither noise (2 is not below 2) nor a head (below 4). It joins the
// cluster only when 3 is strictly above the label threshold.
Lists Satellite() {
  Lists lists(6, std::vector<unsigned int>{0, 1, 2, 3, 4, 5});
  lists[5] = {5, 1, 0};
  return lists;
}

TEST(SNNCluster, LabelThresholdIsStrictItemsPastTheCountAreNotLabelledAndFewLinksMakeNoise) {
  const SnnRun strict = Cluster(6, Satellite(), Params(6, 4, 2, 5, 3));
  ASSERT_NE(strict.found, 0);
  ASSERT_EQ(strict.clusters.size(), 1u);
  EXPECT_EQ(strict.clusters[0].size(), 5u);
  EXPECT_EQ(strict.infos, (std::vector<std::string>{"Singleton Ct = 1, Noise Ct = 0"}));

  const SnnRun joined = Cluster(6, Satellite(), Params(6, 4, 2, 5, 2));
  ASSERT_NE(joined.found, 0);
  ASSERT_EQ(joined.clusters.size(), 1u);
  // Added after the merged heads, in one pass.
  EXPECT_EQ(joined.clusters[0].size(), 6u);
  EXPECT_EQ(joined.clusters[0].back(), 5u);
  EXPECT_EQ(joined.infos, (std::vector<std::string>{"Singleton Ct = 0, Noise Ct = 0"}));

  // Six lists for four items: items 4 and 5 still link and head, but the
  // labelling only hands out items below the count, so 5 joins nothing.
  const SnnRun pastCount = Cluster(4, Satellite(), Params(6, 4, 2, 5, 2));
  ASSERT_NE(pastCount.found, 0);
  ASSERT_EQ(pastCount.clusters.size(), 1u);
  EXPECT_EQ(pastCount.clusters[0].size(), 5u);
  EXPECT_EQ(pastCount.infos, (std::vector<std::string>{"Singleton Ct = 0, Noise Ct = 0"}));

  // With noise at 3, item 5 (two links) is noise and is never labelled; an
  // item 6 that lists only itself has no links at all.
  Lists lists = Satellite();
  lists.push_back({6});
  const SnnRun noisy = Cluster(7, lists, Params(6, 4, 3, 5, 2));
  ASSERT_NE(noisy.found, 0);
  // Item 6 is noise at once, while links are built; item 5 by its count.
  EXPECT_EQ(noisy.noise, (std::vector<unsigned int>{6, 5}));
  ASSERT_EQ(noisy.clusters.size(), 1u);
  EXPECT_EQ(noisy.clusters[0].size(), 5u);
  EXPECT_EQ(noisy.infos, (std::vector<std::string>{"Singleton Ct = 0, Noise Ct = 2"}));
}

TEST(SNNCluster, EmptyListsUnknownItemsNoHeadOrHugeIndicesFail) {
  const std::vector<std::string> failed{"Failed to find any connected near-neighbors"};
  const SnnRun empty = Cluster(3, Lists(3), Params(6, 4, 3, 3, 3));
  EXPECT_EQ(empty.found, 0);
  EXPECT_EQ(empty.noise, (std::vector<unsigned int>{0, 1, 2}));
  EXPECT_EQ(empty.warnings, failed);
  // Lists naming items that have no list of their own: no mutual neighbour,
  // but each is still searched.
  const SnnRun unknown = Cluster(2, Lists{{0, 7, 9}, {1, 12}}, Params(6, 4, 3, 3, 3), false);
  EXPECT_EQ(unknown.found, 0);
  EXPECT_EQ(CountLines(unknown.err, "slow unsorted search of size nn"), 3u);
  EXPECT_EQ(unknown.warnings, failed);
  const SnnRun none = Cluster(0, Lists{}, Params(6, 4, 3, 3, 3), false);
  EXPECT_EQ(none.found, 0);
  EXPECT_EQ(none.warnings, failed);
  // No head, or an index beyond the bit vector's limit.
  const SnnRun noHead = Cluster(6, Satellite(), Params(6, 9, 2, 5, 2));
  EXPECT_EQ(noHead.found, 0);
  EXPECT_EQ(noHead.warnings, (std::vector<std::string>{"Failed to identify representative clusters & noise."}));
  const SnnRun huge = Cluster(2, Lists{{0, 1}, {1, 4000000000u}}, Params(6, 1, 0, 0, 0));
  EXPECT_EQ(huge.found, 0);
  EXPECT_EQ(huge.errors, (std::vector<std::string>{"Max size for an ZqBitVector is INT_MAX"}));
}

// The blobs: reads points, true labels and the neighbour lists.
struct Blobs {
  std::vector<int> labels;
  std::vector<double> x, y;
  Lists lists;
};

Blobs ReadBlobs() {
  Blobs blobs;
  for (const auto& line : VarimoTest::ReadReferenceLines("cluster/snn_points.txt")) {
    if (line[0] == "point") {
      blobs.labels.push_back(std::stoi(line[2]));
      blobs.x.push_back(VarimoTest::ToDouble(line[3]));
      blobs.y.push_back(VarimoTest::ToDouble(line[4]));
    } else if (line[0] == "nn") {
      std::vector<unsigned int> list;
      for (std::size_t k = 2; k < line.size(); ++k) list.push_back(static_cast<unsigned int>(std::stoul(line[k])));
      blobs.lists.push_back(list);
    }
  }
  return blobs;
}

// Each cluster must hold the points of one blob only, each blob must be
// found as one cluster holding most of it, and no background point may be
// put in a cluster.
void ExpectBlobsRecovered(const Clusters& clusters, const Blobs& blobs) {
  ASSERT_EQ(clusters.size(), 3u);
  std::set<int> found;
  for (const ZqSNNCluster& cluster : clusters) {
    std::map<int, std::size_t> counts;
    for (const unsigned int m : cluster) ++counts[blobs.labels.at(m)];
    ASSERT_EQ(counts.size(), 1u) << "a cluster mixes blobs or noise";
    EXPECT_NE(counts.begin()->first, -1);
    EXPECT_GE(counts.begin()->second, 45u);  // of 60; stragglers at the edge may stay out
    found.insert(counts.begin()->first);
  }
  EXPECT_EQ(found, (std::set<int>{0, 1, 2}));
}

ZqSimInfo NegativeDistances(const Blobs& blobs) {
  ZqSimInfo info;
  info.n = blobs.x.size();
  info.sims.assign(info.n * info.n, 0.0);
  for (unsigned long i = 0; i < info.n; ++i) {
    for (unsigned long j = i; j < info.n; ++j) {
      info.sims[info.n * i + j] = -std::hypot(blobs.x[i] - blobs.x[j], blobs.y[i] - blobs.y[j]);
    }
  }
  return info;
}

TEST(SNNCluster, RecoversBlobsFromNeighbourListsAndFromSimilarities) {
  const Blobs blobs = ReadBlobs();
  ASSERT_EQ(blobs.lists.size(), 200u);
  // The parameters that 200 items give: nbrCt 20.
  const SnnRun run = Cluster(200, blobs.lists, Params(20, 15, 10, 12, 10));
  ASSERT_NE(run.found, 0);
  ExpectBlobsRecovered(run.clusters, blobs);
  // Noise is the sparse points: all the background, and some blob edges.
  std::size_t background = 0;
  for (const unsigned int m : run.noise) background += blobs.labels[m] == -1 ? 1 : 0;
  EXPECT_EQ(background, 20u);

  const SnnRun similar = Cluster(200, NegativeDistances(blobs));
  ASSERT_NE(similar.found, 0);
  EXPECT_TRUE(StartsWith(similar.err, "nbrCt = 20\ntopic = 15\nnoise = 10\nmerge = 12\nlabel = 10\n0:: ("));
  EXPECT_NE(similar.err.find("\n199:: ("), std::string::npos);
  EXPECT_EQ(CountLines(similar.err, "EndPrint"), 1u);
  ExpectBlobsRecovered(similar.clusters, blobs);
}

TEST(SNNCluster, ParametersClampAtBothEnds) {
  // Equal similarities: all ten items are the six "nearest" of each other
  // as the selection leaves them; any outcome is fine, the texts are not.
  EXPECT_TRUE(StartsWith(Cluster(10, ZqSimInfo{10, std::vector<double>(100, 0.5)}).err,
                         "nbrCt = 6\ntopic = 4\nnoise = 3\nmerge = 3\nlabel = 3\n"));
  ZqSimInfo line{300, std::vector<double>(300 * 300, 0.0)};
  for (unsigned long i = 0; i < 300; ++i) {
    for (unsigned long j = i; j < 300; ++j) line.sims[300 * i + j] = -std::fabs(double(i) - double(j));
  }
  EXPECT_TRUE(StartsWith(Cluster(300, line).err, "nbrCt = 30\ntopic = 22\nnoise = 15\nmerge = 18\nlabel = 15\n"));
}

TEST(SNNCluster, SimilaritiesThatDoNotFitOrDoNotClusterFail) {
  // Empty, too short for five items, and five items' matrix given for six.
  for (const auto& [numItems, info] : {std::pair<unsigned long, ZqSimInfo>{0, ZqSimInfo{}},
                                       {5, ZqSimInfo{5, std::vector<double>(24, 1.0)}},
                                       {6, ZqSimInfo{5, std::vector<double>(25, 1.0)}}}) {
    SCOPED_TRACE(numItems);
    const SnnRun run = Cluster(numItems, info);
    EXPECT_EQ(run.found, 0);
    EXPECT_EQ(CountLines(run.err, "EndPrint"), 1u);
    EXPECT_EQ(run.warnings, std::vector<std::string>{"Failed to identify near-neghbors"});
  }
  // Two items on a line: one link each, below topic 4, so the list
  // clustering fails and the similarity overload passes the failure on with
  // its own warning.
  const SnnRun run = Cluster(2, ZqSimInfo{2, {1.0, 0.5, 0.0, 1.0}});
  EXPECT_EQ(run.found, 0);
  EXPECT_EQ(run.warnings,
            (std::vector<std::string>{"Failed to identify representative clusters & noise.",
                                      "Failed to generate cluster from NN list."}));
}

}  // namespace
}  // namespace Varimo
