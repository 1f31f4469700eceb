// varimo-krige under careless and hostile molecule inputs, on small files
// made here: a row that cannot be predicted is named with its row, name and
// reason and keeps its place; a damaged input is named; outputs are never
// lost to a failed run nor written over an input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "program_support.h"

namespace {

using ::testing::HasSubstr;
using VarimoTest::Krige;
using VarimoTest::Lines;
using VarimoTest::Outcome;
using VarimoTest::Scratch;
using VarimoTest::Slurp;
using VarimoTest::Write;

// Eight substituted benzenes with made-up pIC50 values.
constexpr const char* kTraining =
    "smiles name pIC50\n"
    "c1ccccc1O phenol 5.0\nCc1ccccc1O cresol 5.5\nCCc1ccccc1O ethylphenol 6.0\nc1ccccc1N aniline 4.0\n"
    "Cc1ccccc1N toluidine 4.5\nc1ccccc1Cl chlorobenzene 3.0\nCc1ccccc1Cl chlorotoluene 3.5\n"
    "OCc1ccccc1 benzylalcohol 4.8\n";

class Inputs : public ::testing::Test {
 protected:
  void SetUp() override {
    train_ = Scratch("train.smi");
    Write(train_, kTraining);
  }
  std::string Train() const { return "--train " + train_ + " --response pIC50"; }
  std::string train_;
};

TEST_F(Inputs, OutputsNeverOverwriteInputsNorSurviveAFailedRun) {
  const std::string query = Scratch("query.smi"), pred = Scratch("pred.csv"), model = Scratch("model.vkm");
  Write(query, "CCc1ccccc1N q1\n");
  VarimoTest::ExpectRefused({
      {Train() + " --predict " + query + " --out " + query, "--out " + query + " is also --predict"},
      {Train() + " --save " + train_, "--save " + train_ + " is also --train"},
      {Train() + " --predict " + query + " --out " + pred + " --contributions " + pred,
       "--out and --contributions are the same file"},
  });
  EXPECT_EQ(Slurp(query), "CCc1ccccc1N q1\n");
  EXPECT_EQ(Slurp(train_), kTraining);

  // Earlier outputs stay as they were when a run fails, at its start (an
  // output that cannot be written) or at its end (a query file without
  // records).
  Write(pred, "old\n");
  Write(model, "old\n");
  Outcome run = Krige(Train() + " --predict " + query + " --out " + pred + " --save " + model +
                      " --contributions /nonexistent/c.csv");
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("cannot write /nonexistent/c.csv"));
  Write(query, "# nothing but a comment\n");
  run = Krige(Train() + " --predict " + query + " --out " + pred + " --save " + model);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr(query + " holds no molecule record; nothing written"));
  EXPECT_EQ(Slurp(pred), "old\n");
  EXPECT_EQ(Slurp(model), "old\n");
  // No part file of this test's outputs is left; the tests running beside
  // it hold theirs, and a crashed run elsewhere may have left its own.
  const std::string own = std::filesystem::path(Scratch("")).filename().string();
  for (const auto& entry : std::filesystem::directory_iterator(::testing::TempDir())) {
    const std::string name = entry.path().filename().string();
    if (name.rfind(own, 0) == 0) {
      EXPECT_EQ(name.find(".part-"), std::string::npos) << entry.path();
    }
  }
}

TEST_F(Inputs, HostileQueryRecordsKeepTheirRowsAndAreNamed) {
  const std::string query = Scratch("query.smi"), pred = Scratch("pred.csv");
  std::string text = "smiles name\nCCCc1ccccc1O fine\nCC";
  text += '\0';
  text += "O nul\nCCOc1ccccc1 vitamin 2\n" + std::string(2000, 'C') + " chain\nC1CC( broken\n";
  Write(query, text);
  const Outcome run = Krige(Train() + " --predict " + query + " --out " + pred);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "varimo-krige: row 1 (nul): a control byte (0x00) in the line\n"
            "varimo-krige: row 2 (vitamin): has 3 fields where the header names 2 (a blank in a name?)\n"
            "varimo-krige: row 3 (chain): too large: 2000 atoms, at most 1000\n"
            "varimo-krige: row 4 (broken): cannot parse SMILES 'C1CC('\n"
            "varimo-krige: 4 of 5 rows could not be predicted (named above); they hold the error value "
            "1.7976931348623157e+308\n");
  const std::vector<std::string> lines = Lines(Slurp(pred));
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_THAT(lines[1], ::testing::StartsWith("0,fine,"));
  for (std::size_t row = 1; row <= 4; ++row) {
    EXPECT_THAT(lines[row + 1], ::testing::StartsWith(std::to_string(row) + ","));
    EXPECT_THAT(lines[row + 1], HasSubstr(",1.7976931348623157e+308,1.7976931348623157e+308,"));
  }
}

TEST_F(Inputs, TrainingThatCannotWorkSaysWhyInOneLine) {
  const std::string same = Scratch("same.smi"), one = Scratch("one.smi");
  Outcome run = Krige(Train() + "x --save " + Scratch("m.vkm"));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "varimo-krige: " + train_ + " has no field pIC50x\n");
  std::string equal = "smiles name pIC50\n", copies = equal;
  for (const char* smiles : {"c1ccccc1O", "Cc1ccccc1O", "CCc1ccccc1O", "c1ccccc1N", "Cc1ccccc1N"}) {
    equal += std::string(smiles) + " m 5\n";
    copies += "c1ccccc1O phenol " + std::to_string(equal.size() % 7) + "\n";
  }
  Write(same, equal);
  Write(one, copies);
  run = Krige("--train " + same + " --response pIC50 --save " + Scratch("m.vkm"));
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("no kernel could be trained on " + same + ": all 5 responses are equal (5)"));
  run = Krige("--train " + one + " --response pIC50 --save " + Scratch("m.vkm"));
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("no kernel could be trained on " + one + ": all 5 records are one molecule"));
  // A drift field with one value everywhere is the intercept again.
  std::string constant = kTraining;
  constant.replace(constant.find("pIC50\n"), 6, "pIC50 logp\n");
  for (std::size_t at = constant.find('\n') + 1; at < constant.size(); at = constant.find('\n', at) + 1) {
    constant.insert(constant.find('\n', at), " 1.5");
  }
  Write(same, constant);
  run = Krige("--train " + same + " --response pIC50 --drift logp --save " + Scratch("m.vkm"));
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr(": the drift field \"logp\" has one value in every training record\n"));
  EXPECT_EQ(Krige(Train() + " --drift logp,logp --save m.vkm").err, "varimo-krige: --drift names logp twice\n");
}

TEST_F(Inputs, ContributionsNumberTheRecordsAtomsAndNamesSplitBack) {
  // Explicit hydrogens come first in the record: the heavy atoms are 1 to 7.
  const std::string query = Scratch("query.smi"), pred = Scratch("pred.csv"), contributions = Scratch("c.csv");
  Write(query, "[H]Oc1ccccc1 phenol\n");
  ASSERT_EQ(Krige(Train() + " --predict " + query + " --out " + pred + " --contributions " + contributions).status, 0);
  std::set<std::string> atoms;
  for (const std::string& line : Lines(Slurp(contributions))) {
    if (line.rfind("0,", 0) == 0) atoms.insert(line.substr(2, line.find(',', 2) - 2));
  }
  EXPECT_EQ(atoms, (std::set<std::string>{"1", "2", "3", "4", "5", "6", "7"}));

  // A ';' in a training name is escaped in the neighbours list.
  std::string named = kTraining;
  named.replace(named.find("phenol 5.0"), 6, "phe;nol");
  Write(train_, named);
  Write(query, "c1ccccc1O q\n");
  ASSERT_EQ(Krige(Train() + " --predict " + query + " --out " + pred).status, 0);
  EXPECT_THAT(Lines(Slurp(pred)).at(1), HasSubstr("phe\\;nol"));
}

// Longer alcohols than any trained on fall outside the best kernel's
// range; the lesser kernels, asked for, predict them and say which did.
TEST(InputsFallback, LesserKernelsPredictWhatTheBestCannot) {
  const std::string train = Scratch("alcohols.smi"), query = Scratch("longer.smi"), pred = Scratch("pred.csv");
  Write(train, "smiles name act\nCO methanol 1\nCCO ethanol 2\nCCCO propanol 3\nCCCCO butanol 4\n"
               "CCCCCO pentanol 5\nCCCCCCO hexanol 6\n");
  Write(query, "CCCCCCCO heptanol\nCCCCCCCCO octanol\nOCCCCCO pentanediol\n");
  const std::string args = "--train " + train + " --response act --predict " + query + " --out " + pred;
  Outcome run = Krige(args);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("3 of 3 rows could not be predicted"));
  run = Krige(args + " --fallback-kernels");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::vector<std::string> lines = Lines(Slurp(pred));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "row,name,prediction,variance,neighbours,kernel");
  const std::string best = run.out.substr(8, run.out.find(' ', 8) - 8);  // "kernel: NAME sill=..."
  for (std::size_t row = 1; row < lines.size(); ++row) {
    EXPECT_THAT(lines[row], ::testing::Not(HasSubstr("e+308")));
    EXPECT_THAT(lines[row], ::testing::Not(::testing::EndsWith("," + best)));
  }
}

// Universal kriging outside its drift's training range, or without the
// drift: the rows are named and keep their places, only the rows predicted
// get a report (a stale one of an earlier run goes), and only the full
// variance, asked for, grows with the distance. The training file's
// extension is in capitals.
TEST(InputsDrift, ExtrapolatedOrMissingDriftIsNamedAndTheFullVarianceGrows) {
  const std::string train = Scratch("DRIFT_TRAIN.SMI"), query = Scratch("drift_query.smi"),
                    pred = Scratch("drift_pred.csv"), reports = Scratch("reports");
  Write(train, "smiles name act d\nCO methanol 1.1 0\nCCO ethanol 2.3 0.2\nCCCO propanol 2.9 0.35\n"
               "CCCCO butanol 4.2 0.5\nCCCCCO pentanol 4.8 0.7\nCCCCCCO hexanol 6.1 0.85\nCCN ethylamine 2.2 1\n"
               "CCCN propylamine 3.1 0.4\nCCCCN butylamine 3.9 0.6\nCCCCCN pentylamine 4.6 0.3\n");
  Write(query, "smiles name d\nCCCCCCN inside 0.5\nCCOC beyond 3\nCCOC far 1e6\nCCCCO nodrift n/a\n");
  std::filesystem::create_directories(reports);
  Write(reports + "/2.png", "an image of an earlier run");
  const std::string args = "--train " + train + " --response act --drift d --predict " + query + " --out " + pred;
  Outcome run = Krige(args + " --report " + reports);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "varimo-krige: row 1 (beyond): its drift field d = 3 lies outside the training range [0, 1]: the "
            "prediction extrapolates the drift, further than its kriging variance says\n"
            "varimo-krige: row 2 (far): the model gives no valid prediction: its drift field d = 1e+06 lies outside "
            "the training range [0, 1], where its kriging variance falls outside the kernel's range\n"
            "varimo-krige: row 3 (nodrift): the drift field d is missing or not a number\n"
            "varimo-krige: 1 of 4 rows extrapolate the drift (named above)\n"
            "varimo-krige: 2 of 4 rows could not be predicted (named above); they hold the error value "
            "1.7976931348623157e+308\n");
  std::set<std::string> drawn;
  for (const auto& entry : std::filesystem::directory_iterator(reports)) drawn.insert(entry.path().filename());
  EXPECT_EQ(drawn, (std::set<std::string>{"0.png", "1.png"}));
  const std::vector<std::string> kriging = Lines(Slurp(pred));
  ASSERT_EQ(kriging.size(), 5u);
  EXPECT_EQ(kriging[4], "3,nodrift,1.7976931348623157e+308,1.7976931348623157e+308,");
  ASSERT_EQ(Krige(args + " --variance full").status, 0);
  const std::vector<std::string> full = Lines(Slurp(pred));
  ASSERT_EQ(full.size(), 5u);
  const auto variance = [](const std::string& line) {
    const std::size_t third = line.find(',', line.find(',', line.find(',') + 1) + 1);
    return std::stod(line.substr(third + 1));
  };
  EXPECT_LT(variance(full[1]), 2.0 * variance(kriging[1]));
  EXPECT_GT(variance(full[2]), 4.0 * variance(kriging[2]));
}

}  // namespace
