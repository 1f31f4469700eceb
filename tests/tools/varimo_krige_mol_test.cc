// varimo-krige on molecule files: bzr.sdf (RDKit's sample data, pIC50 in
// ACTIVITY) split into training and query files, and small SMILES files
// made here. The output formats exactly, the numbers against the library's
// ZqMolKrige on the same molecules, saved models and threads giving the
// same bytes, cross-validation's closing lines, and a message naming the
// record for every bad one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "program_support.h"
#include "varimo/mol/mol_cross_validation.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

using ::testing::HasSubstr;
using VarimoTest::Krige;
using VarimoTest::Lines;
using VarimoTest::Outcome;
using VarimoTest::Scratch;
using VarimoTest::SeventeenDigits;
using VarimoTest::Slurp;
using VarimoTest::Write;
using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

constexpr const char* kBzr = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";

// bzr split: every 8th record is a query, the others train.
class BzrSplit : public ::testing::Test {
 protected:
  void SetUp() override {
    std::vector<std::string> errors;
    ASSERT_TRUE(Molkit::ZqReadSDFile(kBzr, all_, errors));
    ASSERT_EQ(all_.size(), 163u);
    std::string train, query;
    for (std::size_t i = 0; i < all_.size(); ++i) (i % 8 == 0 ? query : train) += Molkit::ZqMolToSDRecord(*all_[i]);
    trainPath_ = Scratch("train.sdf");
    queryPath_ = Scratch("query.sdf");
    Write(trainPath_, train);
    Write(queryPath_, query);
  }
  std::string Files() const { return "--train " + trainPath_ + " --response ACTIVITY --predict " + queryPath_; }

  Mols all_;
  std::string trainPath_, queryPath_;
};

TEST_F(BzrSplit, PredictionsMatchTheLibraryInTheirExactFormatWithOrWithoutTheVariance) {
  const std::string pred = Scratch("pred.csv"), contrib = Scratch("contrib.csv");
  const Outcome run = Krige(Files() + " --out " + pred + " --contributions " + contrib);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, ::testing::StartsWith("kernel: "));

  Varimo::ZqMolKrige model{Varimo::ZqGlobalKrigeOptions()};
  double sum = 0.0;
  for (std::size_t i = 0; i < all_.size(); ++i) {
    if (i % 8 == 0) continue;
    const double y = std::stod(all_[i]->GetSDData("ACTIVITY"));
    ASSERT_TRUE(model.AddTraining(*all_[i], y));
    sum += y;
  }
  ASSERT_TRUE(model.Train());
  const double mean = sum / 142.0;

  const std::vector<std::string> lines = Lines(Slurp(pred));
  ASSERT_EQ(lines.size(), 22u);
  EXPECT_EQ(lines[0], "row,name,prediction,variance,neighbours");
  std::vector<std::string> contributions = Lines(Slurp(contrib));
  EXPECT_EQ(contributions.at(0), "row,atom,contribution");
  std::size_t contributionLine = 1;
  for (std::size_t q = 0; q < 21; ++q) {
    const Molkit::ZqMolBase& mol = *all_[q * 8];
    Varimo::ZqMolKrigeResult result = model.GetResult(mol);
    std::vector<std::string> fields;
    Corvane::ZqStringTokenize(fields, lines[q + 1], ",", false);
    ASSERT_EQ(fields.size(), 5u) << lines[q + 1];
    EXPECT_EQ(fields[0], std::to_string(q));
    EXPECT_EQ(fields[1], mol.GetName());
    EXPECT_EQ(fields[2], SeventeenDigits(result.GetResponse()));
    EXPECT_EQ(fields[3], SeventeenDigits(result.GetVariance()));
    // The neighbours: three names, the largest weight first.
    std::vector<std::string> names;
    Corvane::ZqStringTokenize(names, fields[4], ";", false);
    ASSERT_EQ(names.size(), 3u);
    double best = 0.0;
    std::string bestName;
    for (unsigned int e = 0; e < result.GetNumElements(); ++e) {
      if (result.GetElementWeight(e) > best) best = result.GetElementWeight(e), bestName = result.GetElement(e).GetName();
    }
    EXPECT_EQ(names[0], bestName);
    // One line per heavy atom, measured against the training mean.
    const std::vector<double> expected = result.GetAtomContributions(mol, mean);
    for (std::size_t a = 0; a < mol.GetNumAtoms(); ++a) {
      if (Molkit::ZqIsHydrogen(mol.GetAtom(a))) continue;
      ASSERT_LT(contributionLine, contributions.size());
      EXPECT_EQ(contributions[contributionLine++],
                std::to_string(q) + "," + std::to_string(a) + "," + SeventeenDigits(expected[a]));
    }
  }
  EXPECT_EQ(contributionLine, contributions.size());

  // Without the variance: the prediction column alone, its numbers those of
  // the full run up to rounding, in CSV and SD.
  const std::string alone = Scratch("alone.csv"), sd = Scratch("alone.sdf");
  ASSERT_EQ(Krige(Files() + " --out " + alone + " --no-variance --threads 2").status, 0);
  const std::vector<std::string> meanLines = Lines(Slurp(alone));
  ASSERT_EQ(meanLines.size(), lines.size());
  EXPECT_EQ(meanLines[0], "row,name,prediction");
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::vector<std::string> a, b;
    Corvane::ZqStringTokenizeQuoted(a, lines[i], ",", "\"", false);
    Corvane::ZqStringTokenizeQuoted(b, meanLines[i], ",", "\"", false);
    ASSERT_EQ(b.size(), 3u) << meanLines[i];
    EXPECT_EQ(b[0] + b[1], a[0] + a[1]);
    EXPECT_NEAR(std::stod(b[2]), std::stod(a[2]), 1e-9 * std::fabs(std::stod(a[2])));
  }
  ASSERT_EQ(Krige(Files() + " --out " + sd + " --no-variance").status, 0);
  const std::string records = Slurp(sd);
  EXPECT_THAT(records, HasSubstr(">  <prediction>\n"));
  EXPECT_THAT(records, ::testing::Not(HasSubstr(">  <std>")));
  EXPECT_THAT(records, ::testing::Not(HasSubstr(">  <neighbours>")));
}

TEST_F(BzrSplit, SavedModelsAndThreadsGiveTheSameBytes) {
  const std::string model = Scratch("model.vkm"), first = Scratch("first.csv"), second = Scratch("second.csv");
  ASSERT_EQ(Krige(Files() + " --out " + first + " --save " + model).status, 0);
  const Outcome loaded = Krige("--load " + model + " --predict " + queryPath_ + " --out " + second + " --threads 3");
  ASSERT_EQ(loaded.status, 0) << loaded.err;
  EXPECT_EQ(Slurp(first), Slurp(second));

  // Training only, to save; the model file is versioned text.
  ASSERT_EQ(Krige("--train " + trainPath_ + " --response ACTIVITY --save " + model).status, 0);
  const std::string text = Slurp(model);
  EXPECT_THAT(text, ::testing::StartsWith("varimo molecule model 2\nfingerprint 6 1 1 0 0\nfingerprint-version 1\nlocal 0\n"
                                         "local-options 0 0\ndrift\n"
                                         "kernel-fit all\nresponse-name ACTIVITY\nkernels 1 fixed\n"));

  std::string corrupt = text;
  corrupt[corrupt.size() / 2] ^= 0x01;
  Write(model, corrupt);
  const Outcome refused = Krige("--load " + model + " --predict " + queryPath_ + " --out " + second);
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.err, HasSubstr("corrupt (checksum does not match)"));  // the other reasons: mol_model_test
}

// Queries with an unreadable record between two molecules: rows 0 and 2.
std::string QueriesWithAGap(const Mols& all) {
  return Molkit::ZqMolToSDRecord(*all[0]) + "unreadable\n\n\nnot a counts line\nM  END\n$$$$\n" +
         Molkit::ZqMolToSDRecord(*all[8]);
}

std::vector<std::string> DirectoryEntries(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

TEST_F(BzrSplit, ReportsAreNamedByTheirRowInPredCsv) {
  const std::string query = Scratch("gap.sdf"), pred = Scratch("pred.csv"), dir = Scratch("reports") + "/png";
  Write(query, QueriesWithAGap(all_));
  const std::string train = "--train " + trainPath_ + " --response ACTIVITY --predict " + query + " --out " + pred;
  const Outcome run = Krige(train + " --report " + dir + " --quiet");
  ASSERT_EQ(run.status, 0) << run.err;
  // The unreadable record keeps its row, named on standard error.
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: row 1 (unreadable): cannot read the mol block: "));
  const std::vector<std::string> lines = Lines(Slurp(pred));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_THAT(lines[1], ::testing::StartsWith("0," + all_[0]->GetName() + ","));
  EXPECT_EQ(lines[2], "1,unreadable,1.7976931348623157e+308,1.7976931348623157e+308,");
  EXPECT_THAT(lines[3], ::testing::StartsWith("2," + all_[8]->GetName() + ","));
  // The directory did not exist, nor its parent.
  EXPECT_EQ(DirectoryEntries(dir), (std::vector<std::string>{"0.png", "2.png"}));
  for (const char* name : {"/0.png", "/2.png"}) {
    EXPECT_EQ(Slurp(dir + name).substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8)) << name;
  }

  const std::string svg = Scratch("svg");
  ASSERT_EQ(Krige(train + " --report " + svg + " --report-format svg").status, 0);
  EXPECT_EQ(DirectoryEntries(svg), (std::vector<std::string>{"0.svg", "2.svg"}));
  EXPECT_THAT(Slurp(svg + "/2.svg"), HasSubstr("<svg"));
  const std::string pdf = Scratch("pdf");
  ASSERT_EQ(Krige(train + " --report " + pdf + " --report-format pdf").status, 0);
  EXPECT_EQ(DirectoryEntries(pdf), (std::vector<std::string>{"0.pdf", "2.pdf"}));
  EXPECT_EQ(Slurp(pdf + "/0.pdf").substr(0, 5), "%PDF-");
}

TEST_F(BzrSplit, AReportDirectoryThatCannotBeMadeStopsTheRun) {
  const std::string file = Scratch("a_file"), pred = Scratch("pred.csv");
  Write(file, "x");
  const Outcome run = Krige(Files() + " --out " + pred + " --report " + file + "/reports");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "varimo-krige: cannot create the report directory " + file + "/reports: Not a directory\n");
  EXPECT_FALSE(std::filesystem::exists(pred));
}

TEST_F(BzrSplit, CrossValidationEndsWithItsThreeLinesAndTheCalibrationWhenAsked) {
  const std::string cv = "cv --train " + std::string(kBzr) + " --response ACTIVITY --folds 3 --seed 7";
  const Outcome run = Krige(cv);
  ASSERT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 6u) << run.out;
  EXPECT_THAT(lines[0], ::testing::MatchesRegex("fold 1/3: 55 held out, kernel .*"));
  const std::regex number("-?[0-9.]+(e[-+][0-9]+)?");
  EXPECT_TRUE(std::regex_match(lines[3].substr(5), number) && lines[3].rfind("RMSE ", 0) == 0) << lines[3];
  EXPECT_TRUE(std::regex_match(lines[4].substr(3), number) && lines[4].rfind("R2 ", 0) == 0) << lines[4];
  ASSERT_EQ(lines[5].rfind("coverage95 ", 0), 0u) << lines[5];
  const double coverage = std::stod(lines[5].substr(11));
  EXPECT_GT(coverage, 0.8);
  EXPECT_LE(coverage, 1.0);
  // The same seed gives the same folds and figures, the calibration after them.
  const std::vector<std::string> calibrated = Lines(Krige(cv + " --calibration").out);
  ASSERT_EQ(calibrated.size(), 12u);
  EXPECT_EQ(std::vector<std::string>(calibrated.begin(), calibrated.begin() + 6), lines);
  const char* names[] = {"coverage50 ", "coverage80 ", "coverage90 ", "miscalibration area ",
                         "Spearman |error| sd ", "NLPD "};
  for (int k = 0; k < 6; ++k) EXPECT_EQ(calibrated[6 + k].rfind(names[k], 0), 0u) << calibrated[6 + k];

  // --fit likelihood: the folds of the library's cross-validation with that fit.
  const std::vector<std::string> byLikelihood = Lines(Krige(cv + " --fit likelihood").out);
  ASSERT_EQ(byLikelihood.size(), 6u);
  Varimo::ZqMolModelSettings settings;
  settings.fit = Varimo::ZqKernelFit::Likelihood;
  std::vector<const Molkit::ZqMolBase*> mols;
  std::vector<double> responses;
  for (const auto& mol : all_) {
    mols.push_back(mol.get());
    responses.push_back(std::stod(mol->GetSDData("ACTIVITY")));
  }
  const Varimo::ZqMolCrossValidation library = Varimo::ZqCrossValidateMolModel(settings, mols, responses, 3, 7, 1);
  for (unsigned int k = 0; k < 3; ++k) {
    EXPECT_THAT(byLikelihood[k], ::testing::EndsWith(", kernel " + library.folds[k].kernel));
  }
  EXPECT_NEAR(std::stod(byLikelihood[3].substr(5)), library.summary.rmse, 1e-5 * library.summary.rmse);
  EXPECT_NE(byLikelihood[3], lines[3]);
}

TEST(VarimoKrigeMolecules, BadRecordsAreNamedAndLeftOut) {
  const std::string smi = Scratch("train.smi"), csv = Scratch("query.csv"), pred = Scratch("pred.csv");
  Write(smi,
        "smiles name pIC50\n"
        "c1ccccc1O phenol 5.0\nCc1ccccc1O cresol 5.5\nCCc1ccccc1O ethylphenol 6.0\nc1ccccc1N aniline 4.0\n"
        "Cc1ccccc1N toluidine 4.5\nc1ccccc1Cl chlorobenzene 3.0\nCc1ccccc1Cl chlorotoluene 3.5\n"
        "OCc1ccccc1 benzylalcohol 4.8\nc1ccc1(((C bad 5.0\nC1CCCCC1 cyclohexane n/a\n[H][H] hydrogen 1.0\n"
        "CCO ethanol\n");
  Write(csv, "id,SMILES,note\nq1,Cc1ccccc1O,\"a, quoted note\"\nq2,not-a-smiles,x\n");
  const Outcome run = Krige("--train " + smi + " --response pIC50 --predict " + csv + " --out " + pred);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: left out record 9 (bad): "));
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: left out record 10 (cyclohexane): pIC50 is not a number: 'n/a'"));
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: left out record 11 (hydrogen): no heavy atoms"));
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: left out record 12 (ethanol): no pIC50"));
  EXPECT_THAT(run.err, HasSubstr("varimo-krige: row 1 (q2): cannot parse SMILES 'not-a-smiles'"));
  const std::vector<std::string> lines = Lines(Slurp(pred));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[1], ::testing::StartsWith("0,q1,"));
  EXPECT_THAT(lines[2], ::testing::StartsWith("1,q2,1.7976931348623157e+308,"));

  Write(smi, "");
  const Outcome empty = Krige("--train " + smi + " --response pIC50 --predict " + csv + " --out " + pred);
  EXPECT_EQ(empty.status, 2);
  EXPECT_THAT(empty.err, HasSubstr("holds no molecule"));
}

TEST(VarimoKrigeMolecules, ConflictingArgumentsAreRefused) {
  const std::string sdf = std::string(" --train ") + kBzr;
  VarimoTest::ExpectRefused({
      {"--load m.vkm" + sdf + " --response ACTIVITY --predict q.sdf --out p.csv",
       "--load replaces --train and --response"},
      {"cv" + sdf + " --response ACTIVITY --predict q.sdf", "cv takes no --predict"},
      {"cv" + sdf + " --response ACTIVITY --folds 1", "--folds must be a whole number from 2 to 4294967295, not 1"},
      {sdf + " --response ACTIVITY --model simple --predict q.sdf --out p.csv",
       "--model simple is only for CSV files of numbers"},
      {sdf + " --response ACTIVITY --predict q.sdf", "missing --out"},
      {"--load " + Scratch("absent.vkm") + " --predict q.sdf --out p.csv", "cannot read"},
      {"cv" + sdf + " --response ACTIVITY --report r", "cv takes no --report or --report-format"},
      {"cv" + sdf + " --response ACTIVITY --report-format svg", "cv takes no --report or --report-format"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --report-format svg",
       "--report-format needs --report DIR"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --report r --report-format gif",
       "--report-format must be png, svg or pdf, not gif"},
      {sdf + " --response ACTIVITY --save m.vkm --report r", "--report needs --predict"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --no-variance --threshold 6",
       "--no-variance leaves out what --threshold, --contributions, --report and --variance need"},
      {"cv" + sdf + " --response ACTIVITY --no-variance", "cv takes no --threshold, --fallback-kernels, --no-variance"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --variance wide",
       "--variance must be kriging or full, not wide"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --threads 100000",
       "varimo-krige: --threads 100000 is too large: it must be from 1 to 1024\n"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --threads 0",
       "varimo-krige: --threads must be a whole number from 1 to 1024, not 0\n"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --threads x",
       "varimo-krige: --threads must be a whole number from 1 to 1024, not x\n"},
      {sdf + " --response ACTIVITY --predict q.sdf --out p.csv --threshold high",
       "varimo-krige: --threshold must be a number, not high\n"},
      {"cv" + sdf + " --response ACTIVITY --local 10 --fit likelihood",
       "--fit likelihood is for global models, not --local K"},
      {"--load m.vkm --predict q.sdf --out p.csv --fit likelihood", "--load takes the model's own --fit"},
      {"select --load m.vkm --pool q.sdf --picks 2 --out p.csv --fit variogram", "--load takes the model's own --fit"},
      {"select --load m.vkm --pool q.sdf --picks 2 --out p.csv --local 5",
       "--load takes the model's own --drift and --local"},
      {"cv" + sdf + " --response ACTIVITY --seed 99999999999",
       "varimo-krige: --seed 99999999999 is too large: it must be from 0 to 4294967295\n"},
  });
}

}  // namespace
