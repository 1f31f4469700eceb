// varimo-krige select and predict --interval/--domain on
// bzr.sdf (RDKit's sample data, pIC50 in ACTIVITY): every 4th record is the
// pool, the others train. The picks' exact format, agreement with predict
// on the same molecules, threads giving the same bytes, and the refusals.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "program_support.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

using VarimoTest::Krige;
using VarimoTest::Lines;
using VarimoTest::Outcome;
using VarimoTest::Scratch;
using VarimoTest::Slurp;
using VarimoTest::Write;

constexpr const char* kBzr = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  Corvane::ZqStringTokenize(fields, line, ",");
  return fields;
}

class BzrPool : public ::testing::Test {
 protected:
  void SetUp() override {
    std::vector<std::unique_ptr<Molkit::ZqMolBase>> all;
    std::vector<std::string> errors;
    ASSERT_TRUE(Molkit::ZqReadSDFile(kBzr, all, errors));
    std::string train, pool;
    for (std::size_t i = 0; i < all.size(); ++i) (i % 4 == 0 ? pool : train) += Molkit::ZqMolToSDRecord(*all[i]);
    trainPath_ = Scratch("train.sdf");
    poolPath_ = Scratch("pool.sdf");
    Write(trainPath_, train);
    Write(poolPath_, pool);
  }
  std::string Train() const { return " --train " + trainPath_ + " --response ACTIVITY"; }

  std::string trainPath_, poolPath_;
};

TEST_F(BzrPool, PicksAgreeWithPredictionsAndThreads) {
  const std::string picks = Scratch("picks.csv"), pred = Scratch("pred.csv");
  const Outcome run = Krige("select" + Train() + " --pool " + poolPath_ + " --picks 6 --acquisition ucb --out " + picks);
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> lines = Lines(Slurp(picks));
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[0], "rank,row,name,prediction,sd,acquisition");
  ASSERT_EQ(Krige(Train() + " --predict " + poolPath_ + " --out " + pred).status, 0);
  const std::vector<std::string> predicted = Lines(Slurp(pred));
  // Without a batch the picks are the top by mean + 2 sd of predict's rows.
  std::vector<double> ucb;
  for (std::size_t r = 1; r < predicted.size(); ++r) {
    const std::vector<std::string> f = Fields(predicted[r]);
    ucb.push_back(std::stod(f[2]) + 2.0 * std::sqrt(std::stod(f[3])));
  }
  std::vector<double> sorted = ucb;
  std::sort(sorted.rbegin(), sorted.rend());
  for (std::size_t k = 1; k < lines.size(); ++k) {
    const std::vector<std::string> f = Fields(lines[k]);
    ASSERT_EQ(f.size(), 6u) << lines[k];
    EXPECT_EQ(f[0], std::to_string(k));
    const std::size_t row = std::stoul(f[1]);
    const std::vector<std::string> p = Fields(predicted.at(row + 1));
    EXPECT_EQ(f[2], p[1]);
    EXPECT_NEAR(std::stod(f[3]), std::stod(p[2]), 1e-9);
    EXPECT_NEAR(std::stod(f[4]), std::sqrt(std::stod(p[3])), 1e-9);
    EXPECT_NEAR(std::stod(f[5]), sorted[k - 1], 1e-9);
  }

  // A believer batch, the same bytes with threads, and SD records.
  const std::string args = "select" + Train() + " --pool " + poolPath_ + " --picks 6 --batch believer --out ";
  ASSERT_EQ(Krige(args + picks).status, 0);
  const std::string threaded = Scratch("threaded.csv"), sdf = Scratch("picks.sdf");
  ASSERT_EQ(Krige(args + threaded + " --threads 3").status, 0);
  EXPECT_EQ(Slurp(picks), Slurp(threaded));
  std::set<std::string> rows;
  for (const std::string& line : Lines(Slurp(picks))) rows.insert(Fields(line)[1]);
  EXPECT_EQ(rows.size(), 7u);  // the header and six distinct rows
  ASSERT_EQ(Krige(args + sdf).status, 0);
  std::vector<std::unique_ptr<Molkit::ZqMolBase>> mols;
  std::vector<std::string> errors;
  ASSERT_TRUE(Molkit::ZqReadSDFile(sdf, mols, errors));
  ASSERT_EQ(mols.size(), 6u);
  const std::vector<std::string> first = Fields(Lines(Slurp(picks))[1]);
  EXPECT_EQ(mols[0]->GetSDData("rank"), "1");
  EXPECT_EQ(mols[0]->GetSDData("row"), first[1]);
  EXPECT_EQ(mols[0]->GetSDData("acquisition"), first[5]);
  EXPECT_EQ(mols[0]->GetName(), first[2]);
}

TEST_F(BzrPool, IntervalsAndDomainJoinPredictions) {
  const std::string pred = Scratch("pred.csv");
  const Outcome run = Krige(Train() + " --predict " + poolPath_ + " --out " + pred + " --interval 0.1 --domain");
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> lines = Lines(Slurp(pred));
  EXPECT_EQ(lines[0], "row,name,prediction,variance,neighbours,lower,upper,nearest_similarity,in_domain");
  std::size_t inside = 0;
  for (std::size_t r = 1; r < lines.size(); ++r) {
    const std::vector<std::string> f = Fields(lines[r]);
    ASSERT_EQ(f.size(), 9u) << lines[r];
    const double prediction = std::stod(f[2]), lower = std::stod(f[5]), upper = std::stod(f[6]);
    EXPECT_LT(lower, prediction);
    EXPECT_NEAR(upper - prediction, prediction - lower, 1e-9);
    const double similarity = std::stod(f[7]);
    EXPECT_GT(similarity, 0.0);
    EXPECT_LE(similarity, 1.0);
    ASSERT_TRUE(f[8] == "0" || f[8] == "1") << lines[r];
    inside += f[8] == "1";
  }
  // bzr's pool is drawn from the training set's own series: most lie inside.
  EXPECT_GT(inside, (lines.size() - 1) / 2);
}

TEST_F(BzrPool, BadSelectionsAreRefused) {
  const std::string picks = Scratch("picks.csv"), empty = Scratch("empty.smi");
  Write(empty, "not-a-smiles x\n");
  const std::string select = "select" + Train() + " --out " + picks;
  VarimoTest::ExpectRefused({
      {select + " --picks 2", "missing --pool"},
      {select + " --pool " + poolPath_, "missing --picks"},
      {select + " --pool " + poolPath_ + " --picks 2 --kappa 1", "--kappa is only for --acquisition ucb"},
      {select + " --pool " + poolPath_ + " --picks 2 --kappa -1 --acquisition ucb", "--kappa must be at least 0"},
      {select + " --pool " + poolPath_ + " --picks 2 --batch top", "--batch must be believer, liar-min"},
      {select + " --pool " + poolPath_ + " --picks 42", "only 41 members of the pool can be picked, not 42"},
      {Train() + " --predict " + poolPath_ + " --out " + picks + " --interval 1", "--interval ALPHA must lie"},
      {Train() + " --predict " + poolPath_ + " --out " + picks + " --picks 3", "only for select"},
  });
  const Outcome run = Krige(select + " --pool " + empty + " --picks 1");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "varimo-krige: row 0 (x): cannot parse SMILES 'not-a-smiles'; it cannot be picked\n"
                     "varimo-krige: " + empty + ": no member of the pool could be predicted; nothing written\n");
}

}  // namespace
