// The PLS property list on the bzr set (RDKit's benzodiazepine receptor
// compounds, ACTIVITY as response), with the twelve RDKit descriptors that
// tests/data/latent/make_pls_refs.py computed put on each molecule as SD
// data. Scores are checked against scikit-learn's PLSRegression x_scores_
// (normalised, sign free) from the same script, and the list is then used
// as the drift of universal kriging, whose predictions must reproduce it.
#include "varimo/latent/property_mol.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"
#include "varimo/mol/mol_krige.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Varimo {
namespace {

using Corvane::ZqThrowLevel;
using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

struct Bzr {
  Mols mols;
  std::vector<std::string> names;
  std::vector<std::vector<double>> scores;  // sklearn's three normalised score columns
};

// The molecules with the descriptors as SD data, as the generator wrote them.
Bzr ReadBzr() {
  Bzr bzr;
  std::vector<std::string> errors;
  EXPECT_TRUE(Molkit::ZqReadSDFile("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf", bzr.mols, errors));
  EXPECT_EQ(bzr.mols.size(), 163u);
  for (const auto& line : VarimoTest::ReadReferenceLines("latent/pls_refs.txt")) {
    if (line[0] == "names") {
      bzr.names.assign(line.begin() + 1, line.end());
    } else if (line[0] == "row") {
      Molkit::ZqMolBase& mol = *bzr.mols.at(std::stoul(line[1]));
      EXPECT_EQ(VarimoTest::ToDouble(line[2]), std::stod(Molkit::ZqGetSDData(mol, "ACTIVITY")));
      for (std::size_t j = 0; j < bzr.names.size(); ++j) mol.SetSDData(bzr.names[j], line[4 + j]);
    } else if (line[0] == "t" && line[1] == "3") {
      bzr.scores.push_back(VarimoTest::ToDoubles(line, 3));
    }
  }
  EXPECT_EQ(bzr.names.size(), 12u);
  EXPECT_EQ(bzr.scores.size(), 3u);
  return bzr;
}

Molkit::ZqMolPropertyPushList Predictors(const Bzr& bzr) {
  Molkit::ZqMolPropertyPushList list;
  for (const std::string& name : bzr.names) list.Push(Molkit::ZqMolSDDataPropertyFxn(name));
  return list;
}

Molkit::ZqMolPropertyPushList Activity() {
  Molkit::ZqMolPropertyPushList list;
  list.Push(Molkit::ZqMolSDDataPropertyFxn("ACTIVITY"));
  return list;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool HasLine(const std::vector<std::string>& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Trains without showing the progress that training prints.
int QuietlyTrained(ZqMolPLSPropertyList& list) {
  VarimoTest::CaptureOutput out;
  return list.Train();
}

// The value after `prefix` on the line that starts with it.
double ValueAfter(const std::vector<std::string>& lines, const std::string& prefix) {
  for (const std::string& l : lines) {
    if (l.rfind(prefix, 0) == 0) return std::stod(l.substr(prefix.size()));
  }
  ADD_FAILURE() << "no line " << prefix;
  return NAN;
}

TEST(MolPLSPropertyList, TrainsReportsAndScoresLikeScikitLearn) {
  const Bzr bzr = ReadBzr();
  std::unique_ptr<ZqMolPLSPropertyList> list;
  {
    VarimoTest::CaptureOutput out;
    list = std::make_unique<ZqMolPLSPropertyList>(Predictors(bzr), Activity(), 3);
    EXPECT_EQ(out.Text(), "_J = 12\n");
  }
  for (const auto& mol : bzr.mols) ASSERT_TRUE(list->AddTraining(*mol));
  EXPECT_FALSE(list->HasProperties(*bzr.mols[0]));  // not trained yet

  VarimoTest::CaptureOutput out;
  Corvane::ZqScopedThrowCapture capture;
  ASSERT_EQ(list->Train(), 1);
  const std::vector<std::string> lines = Lines(out.Text());
  ASSERT_GE(lines.size(), 15u);
  EXPECT_EQ(lines[0], "Started the PLS training...");
  EXPECT_EQ(lines[1], "Number of observations (mols)          : I = 163");
  EXPECT_EQ(lines[2], "Number of predictors   (properties)    : J = 12");
  EXPECT_EQ(lines[3], "Number of responses    (for Kriging 1) : K = 1");
  EXPECT_EQ(lines[4], "total number of latent vectors found = 12");
  // The first three proportions as scikit-learn's loadings give them.
  EXPECT_EQ(lines[5].rfind("Proportion of total X variance reproduced per latent vector = 0.516551 0.161843 "
                           "0.0824742 ",
                           0),
            0u)
      << lines[5];
  EXPECT_EQ(lines[6].rfind("Proportion of total Y variance reproduced per latent vector = ", 0), 0u);
  EXPECT_EQ(lines[7], "Starting to work on RESS, PRESS coefficients calculation...");
  EXPECT_EQ(lines[8], "L     = 3");
  // scikit-learn: RESS 140.21637281471317, leave-one-out PRESS 157.99466003262654.
  EXPECT_EQ(lines[9], "RESS  = 140.216");
  EXPECT_EQ(lines[10], "PRESS = 157.995");
  EXPECT_LT(ValueAfter(lines, "norm difference T-X_hat*FPLS = "), 1e-8);
  EXPECT_LT(ValueAfter(lines, "norm difference T-Xstar*Fstar = "), 1e-8);
  EXPECT_EQ(lines[13], "last but not least Fstar = ");
  EXPECT_EQ(lines.back(), "Finished the PLS training...");
  EXPECT_EQ(lines.size(), 14u + 13u + 1u);  // Fstar prints its 13 rows
  EXPECT_TRUE(capture.Messages().empty());

  EXPECT_EQ(list->GetSize(), 3u);
  EXPECT_TRUE(list->HasProperties(*bzr.mols[0]));
  for (std::size_t l = 0; l < 3; ++l) {
    double dot = 0.0;
    for (std::size_t i = 0; i < 163; ++i) dot += list->GetProperty(*bzr.mols[i], l) * bzr.scores[l][i];
    const double sign = dot < 0 ? -1.0 : 1.0;
    for (std::size_t i = 0; i < 163; ++i) {
      EXPECT_NEAR(sign * list->GetProperty(*bzr.mols[i], l), bzr.scores[l][i], 1e-8) << l << " " << i;
    }
  }
  // A multi-conformer molecule reads the same predictors.
  const Molkit::ZqMCMolBase mc(*bzr.mols[5]);
  EXPECT_TRUE(list->HasProperties(mc));
  EXPECT_EQ(list->GetProperty(mc, 1), list->GetProperty(*bzr.mols[5], 1));

  // A copy is trained too.
  const std::unique_ptr<Molkit::ZqMolPropertyList> copy(list->CreateCopy());
  EXPECT_EQ(copy->GetSize(), 3u);
  EXPECT_EQ(copy->GetProperty(*bzr.mols[7], 2), list->GetProperty(*bzr.mols[7], 2));

  EXPECT_EQ(list->GetProperty(*bzr.mols[0], 3), 0.0);
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{"Requested index is outside of the size of the PLS list; zero will be "
                                      "returned but it is meaningless..."}));
}

TEST(MolPLSPropertyList, MissingPropertiesAndResponses) {
  Bzr bzr = ReadBzr();
  std::unique_ptr<ZqMolPLSPropertyList> list;
  {
    VarimoTest::CaptureOutput out;
    list = std::make_unique<ZqMolPLSPropertyList>(Predictors(bzr), Activity(), 2);
  }
  Corvane::ZqScopedThrowCapture capture;
  const auto bare = Molkit::ZqMolFromSmiles("c1ccccc1O");
  ASSERT_TRUE(bare);
  EXPECT_FALSE(list->AddTraining(*bare));
  EXPECT_FALSE(list->HasProperties(*bare));
  for (std::size_t i = 1; i < 20; ++i) ASSERT_TRUE(list->AddTraining(*bzr.mols[i]));
  // All predictors but no response: ignored, its predictors left behind.
  Molkit::ZqMolBase stripped(*bare);
  for (const std::string& name : bzr.names) stripped.SetSDData(name, "1.5");
  EXPECT_FALSE(list->AddTraining(stripped));
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{
                "At least one of the properties is not there, molecule will be ignored...",
                "At least one of the responses is not there, molecule will be ignored..."}));
  // The table is now unbalanced: training refuses it and stays untrained.
  {
    VarimoTest::CaptureOutput out;
    EXPECT_EQ(list->Train(), 0);
    EXPECT_NE(out.Text().find("Number of observations (mols)          : I = 19\n"), std::string::npos);
  }
  EXPECT_FALSE(list->HasProperties(*bzr.mols[1]));
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning).size(), 3u);

  // Cleared, the list starts again.
  list->Clear();
  EXPECT_EQ(QuietlyTrained(*list), 0);
  for (std::size_t i = 1; i < 40; ++i) ASSERT_TRUE(list->AddTraining(*bzr.mols[i]));
  EXPECT_EQ(QuietlyTrained(*list), 1);
  EXPECT_TRUE(list->HasProperties(*bzr.mols[1]));
  EXPECT_EQ(list->GetSize(), 2u);
}

TEST(MolPLSPropertyList, MoreLatentVectorsThanFoundAreCapped) {
  Bzr bzr = ReadBzr();
  Molkit::ZqMolPropertyPushList two;
  two.Push(Molkit::ZqMolSDDataPropertyFxn("MolWt"));
  two.Push(Molkit::ZqMolSDDataPropertyFxn("TPSA"));
  VarimoTest::CaptureOutput out;
  ZqMolPLSPropertyList list(two, Activity(), 5);
  for (const auto& mol : bzr.mols) ASSERT_TRUE(list.AddTraining(*mol));
  Corvane::ZqScopedThrowCapture capture;
  ASSERT_EQ(list.Train(), 1);
  const std::vector<std::string> lines = Lines(out.Text());
  EXPECT_TRUE(HasLine(lines, "total number of latent vectors found = 2"));
  EXPECT_TRUE(HasLine(lines, "L     = 2"));
  EXPECT_EQ(capture.Texts(ZqThrowLevel::Warning),
            (std::vector<std::string>{"Attempt to keep number of latent vectors more than found, instead total "
                                      "number of found latent vectors will be used: 2"}));
  EXPECT_EQ(list.GetSize(), 2u);
}

// Universal kriging with the scores as drift: trained on nine tenths of bzr,
// each held-out prediction's weights sum to one and reproduce the query's
// scores, which is what the drift constraints of universal kriging demand.
TEST(MolPLSPropertyList, DrivesUniversalKrigingEndToEnd) {
  Bzr bzr = ReadBzr();
  VarimoTest::CaptureOutput out;  // the constructor prints too
  ZqMolPLSPropertyList scores(Predictors(bzr), Activity(), 2);
  for (std::size_t i = 0; i < bzr.mols.size(); ++i) {
    if (i % 10 != 0) {
      ASSERT_TRUE(scores.AddTraining(*bzr.mols[i]));
    }
  }
  ASSERT_EQ(QuietlyTrained(scores), 1);

  ZqMolKrige model(scores, ZqGlobalKrigeOptions());
  for (std::size_t i = 0; i < bzr.mols.size(); ++i) {
    if (i % 10 != 0) {
      ASSERT_TRUE(model.AddTraining(*bzr.mols[i], std::stod(Molkit::ZqGetSDData(*bzr.mols[i], "ACTIVITY"))));
    }
  }
  ASSERT_TRUE(model.Train());
  double squaredError = 0.0;
  unsigned int count = 0;
  for (std::size_t i = 0; i < bzr.mols.size(); i += 10) {
    const ZqMolKrigeResult r = model.GetResult(*bzr.mols[i]);
    ASSERT_TRUE(r.Valid()) << i;
    double sum = 0.0, s0 = 0.0, s1 = 0.0;
    for (unsigned int e = 0; e < r.GetNumElements(); ++e) {
      sum += r.GetElementWeight(e);
      s0 += r.GetElementWeight(e) * scores.GetProperty(r.GetElement(e), 0);
      s1 += r.GetElementWeight(e) * scores.GetProperty(r.GetElement(e), 1);
    }
    EXPECT_NEAR(sum, 1.0, 1e-8);
    EXPECT_NEAR(s0, scores.GetProperty(*bzr.mols[i], 0), 1e-6);
    EXPECT_NEAR(s1, scores.GetProperty(*bzr.mols[i], 1), 1e-6);
    const double error = r.GetResponse() - std::stod(Molkit::ZqGetSDData(*bzr.mols[i], "ACTIVITY"));
    squaredError += error * error;
    ++count;
  }
  // Activities span about 5 to 9; a working model is off by far less.
  EXPECT_LT(std::sqrt(squaredError / count), 1.5);
}

}  // namespace
}  // namespace Varimo
