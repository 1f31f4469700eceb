// Molecule models with their records: model files that give back the model
// saved, bit for bit and without fitting again; the files of the earlier
// format; refusals of damaged files; cross-validation folds and summary;
// predictions on several threads. On bzr.sdf (RDKit's sample data, pIC50 in
// ACTIVITY), every 8th record a query.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "test_support.h"
#include "varimo/krige/likelihood_training.h"
#include "varimo/mol/krige_vsepr.h"
#include "varimo/mol/mol_cross_validation.h"
#include "varimo/mol/mol_model_file.h"
#include "varimo/mol/mol_predict.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace {

using ::testing::HasSubstr;
using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

constexpr const char* kBzr = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf";

class BzrModel : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::vector<std::string> errors;
    all_ = new Mols;
    ASSERT_TRUE(Molkit::ZqReadSDFile(kBzr, *all_, errors));
    // A drift field for universal kriging: the number of heavy atoms.
    for (auto& mol : *all_) mol->SetSDData("HEAVY", std::to_string(mol->GetNumHeavyAtoms()));
  }
  static void TearDownTestSuite() { delete all_; }

  static double Activity(const Molkit::ZqMolBase& mol) { return std::stod(mol.GetSDData("ACTIVITY")); }

  static Varimo::ZqMolModel Trained(const Varimo::ZqMolModelSettings& settings) {
    Varimo::ZqMolModel model(settings);
    for (std::size_t i = 0; i < all_->size(); ++i) {
      if (i % 8 != 0) {
        EXPECT_TRUE(model.AddTraining(*(*all_)[i], Activity(*(*all_)[i])));
      }
    }
    EXPECT_TRUE(model.Train());
    return model;
  }
  static std::vector<const Molkit::ZqMolBase*> Queries() {
    std::vector<const Molkit::ZqMolBase*> queries;
    for (std::size_t i = 0; i < all_->size(); i += 8) queries.push_back((*all_)[i].get());
    return queries;
  }
  // Every query's prediction and variance by `a` equals that by `b`, to the bit.
  static void ExpectSamePredictions(const Varimo::ZqMolModel& a, const Varimo::ZqMolModel& b) {
    std::size_t valid = 0;
    for (const Molkit::ZqMolBase* query : Queries()) {
      const Varimo::ZqMolKrigeResult x = a.GetKrige().GetResult(*query), y = b.GetKrige().GetResult(*query);
      ASSERT_EQ(x.Valid(), y.Valid()) << query->GetName();
      EXPECT_EQ(x.GetResponse(), y.GetResponse()) << query->GetName();
      EXPECT_EQ(x.GetVariance(), y.GetVariance()) << query->GetName();
      valid += x.Valid() ? 1 : 0;
    }
    EXPECT_GT(valid, Queries().size() / 2);
  }

  static Mols* all_;
};
Mols* BzrModel::all_ = nullptr;

// The text with its checksum line made anew, after an edit.
std::string Resealed(const std::string& text) {
  const std::string body = text.substr(0, text.rfind("checksum "));
  return body + Varimo::ZqMolModelChecksumLine(body);
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << from;
  text.replace(at, from.size(), to);
}

TEST_F(BzrModel, ALoadedModelPredictsAsTheSavedOneGlobalLocalUniversalAndNamed) {
  Varimo::ZqMolModelSettings global, local, universal, named;
  local.numLocal = 30;
  universal.drift = {"HEAVY"};
  universal.responseName = "pIC50";
  named.kernel = "Spherical";  // fitted alone
  for (const Varimo::ZqMolModelSettings& settings : {global, local, universal, named}) {
    const Varimo::ZqMolModel saved = Trained(settings);
    if (!settings.kernel.empty()) {
      EXPECT_EQ(saved.GetKernel().GetName(), settings.kernel);
    }
    const std::string text = Varimo::ZqWriteMolModel(saved);
    std::string error;
    const std::optional<Varimo::ZqMolModel> loaded = Varimo::ZqReadMolModel(text, "m.vkm", error);
    ASSERT_TRUE(loaded) << error;
    EXPECT_EQ(loaded->GetNumRecords(), saved.GetNumRecords());
    EXPECT_EQ(loaded->GetSettings().drift, settings.drift);
    EXPECT_EQ(loaded->GetSettings().numLocal, settings.numLocal);
    EXPECT_EQ(loaded->GetSettings().responseName, settings.responseName);
    EXPECT_EQ(loaded->GetSettings().kernel, settings.kernel);
    const std::size_t numKernels = loaded->GetTrainedKernels().kernels.size();
    EXPECT_TRUE(settings.numLocal > 0 ? numKernels > 1 : numKernels == 1) << numKernels;
    ExpectSamePredictions(saved, *loaded);
    // Saving the loaded model writes the same file.
    EXPECT_EQ(Varimo::ZqWriteMolModel(*loaded), text);
  }
}

// Fitted by likelihood: the kernel of the likelihood's ranking over the
// model's own distances and responses (or of the one named shape), saved
// as such, used by the folds of a cross-validation, and refused for local
// models.
TEST_F(BzrModel, AFitByLikelihoodTrainsWithTheBestRankedKernelAndIsSavedAsSuch) {
  Varimo::ZqMolModelSettings settings, named;
  settings.fit = named.fit = Varimo::ZqKernelFit::Likelihood;
  named.kernel = "Spherical";
  const Varimo::ZqMolModel byVariogram = Trained({});
  for (const Varimo::ZqMolModelSettings& each : {settings, named}) {
    SCOPED_TRACE(each.kernel);
    const Varimo::ZqMolModel model = Trained(each);
    using Engine = Varimo::ZqStandardKrigeImpl<Varimo::ZqVseprPropFP,
                                               Varimo::ZqKrigeDefaultElementStorage<Varimo::ZqVseprPropFP>>;
    const auto* engine = dynamic_cast<const Engine*>(model.GetKrige().GetFingerprintModel());
    ASSERT_NE(engine, nullptr);
    // The candidates: those that are covariances under a distance of
    // negative type, or the one named (Spherical is none of them).
    const std::vector<Varimo::ZqKrigeKernel> valid =
        Varimo::ZqLikelihoodCandidates(Varimo::ZqDistanceClass::NegativeType);
    auto kernels = Varimo::ZqGetKrigeKernels();
    std::vector<const Varimo::ZqKrigeKernelBase*> candidates, defaults;
    for (const Varimo::ZqKrigeKernel& kernel : valid) defaults.push_back(&kernel);
    for (const Varimo::ZqKrigeKernelBase& kernel : kernels) {
      if (kernel.GetName() == each.kernel) candidates.push_back(&kernel);
    }
    if (each.kernel.empty()) candidates = defaults;
    const auto ranked = Varimo::ZqRankKernelsByLikelihood(Varimo::ZqLikelihoodDataOf(*engine), candidates);
    ASSERT_FALSE(ranked.empty());
    const Varimo::ZqKrigeKernel used = model.GetKernel();
    EXPECT_EQ(used.GetName(), ranked[0].kernel.GetName());
    EXPECT_EQ(used.GetRange(), ranked[0].kernel.GetRange());
    EXPECT_EQ(used.GetSill(), ranked[0].kernel.GetSill());
    EXPECT_EQ(used.GetNugget(), 0.0);
    EXPECT_NE(used.GetRange(), byVariogram.GetKernel().GetRange());

    const std::string text = Varimo::ZqWriteMolModel(model);
    EXPECT_THAT(text, HasSubstr("\nkernel-fit " + (each.kernel.empty() ? "all" : each.kernel) + " likelihood\n"));
    std::string error;
    const std::optional<Varimo::ZqMolModel> loaded = Varimo::ZqReadMolModel(text, "m.vkm", error);
    ASSERT_TRUE(loaded) << error;
    EXPECT_EQ(loaded->GetSettings().fit, Varimo::ZqKernelFit::Likelihood);
    EXPECT_EQ(loaded->GetSettings().kernel, each.kernel);
    ExpectSamePredictions(model, *loaded);
    EXPECT_EQ(Varimo::ZqWriteMolModel(*loaded), text);
    // The lesser kernels of the fallbacks: those the likelihood ranks below
    // the one used over the default candidates (all of them below a named
    // kernel outside them), the same to the bit for the model loaded.
    const auto full = Varimo::ZqRankKernelsByLikelihood(Varimo::ZqLikelihoodDataOf(*engine), defaults);
    std::size_t next = 0;
    while (next < full.size() && full[next].kernel.GetName() != used.GetName()) ++next;
    next = next < full.size() ? next + 1 : 0;
    ASSERT_LT(next, full.size());
    const Varimo::ZqMolKrigeResult fallback = model.GetFallbackResult(*Queries()[0]);
    ASSERT_TRUE(fallback.Valid());
    EXPECT_EQ(fallback.GetKernel().GetName(), full[next].kernel.GetName());
    EXPECT_NEAR(fallback.GetKernel().GetRange(), full[next].kernel.GetRange(), 1e-9 * full[next].kernel.GetRange());
    EXPECT_EQ(loaded->GetFallbackResult(*Queries()[0]).GetResponse(), fallback.GetResponse());
    // The fit is for global models only, in files too.
    std::string local = text;
    Replace(local, "\nlocal 0\n", "\nlocal 30\n");
    EXPECT_FALSE(Varimo::ZqReadMolModel(Resealed(local), "m.vkm", error));
    EXPECT_THAT(error, HasSubstr("bad kernel-fit line"));
  }
  EXPECT_THAT(Varimo::ZqWriteMolModel(byVariogram), HasSubstr("\nkernel-fit all\n"));

  // Each fold of a cross-validation fits by likelihood.
  std::vector<const Molkit::ZqMolBase*> mols;
  std::vector<double> responses;
  for (const auto& mol : *all_) {
    mols.push_back(mol.get());
    responses.push_back(Activity(*mol));
  }
  const Varimo::ZqMolCrossValidation cv = Varimo::ZqCrossValidateMolModel(settings, mols, responses, 3, 7, 2);
  Varimo::ZqMolModel fold(settings);
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (cv.fold[i] != cv.fold[10]) fold.AddTraining(*mols[i], responses[i]);
  }
  ASSERT_TRUE(fold.Train());
  EXPECT_EQ(cv.prediction[10], fold.GetKrige().GetResult(*mols[10]).GetResponse());

  // Refusals: a local model, and too few distinct molecules.
  Corvane::ZqScopedThrowCapture capture;
  settings.numLocal = 30;
  Varimo::ZqMolModel local(settings);
  for (int i = 1; i < 20; ++i) local.AddTraining(*(*all_)[i], Activity(*(*all_)[i]));
  EXPECT_FALSE(local.Train());
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            std::vector<std::string>{
                "ZqMolModel::Train, the likelihood fit is for global models; this one predicts from local "
                "neighbourhoods"});
  // Nor can such a model take a saved state.
  capture.Clear();
  EXPECT_FALSE(local.TrainWithKernels(byVariogram.GetTrainedKernels()));
  EXPECT_FALSE(local.IsTrained());
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            std::vector<std::string>{
                "ZqMolModel::TrainWithKernels, the likelihood fit is for global models; this one predicts from "
                "local neighbourhoods"});
  settings.numLocal = 0;
  Varimo::ZqMolModel twins(settings);
  for (int i : {1, 2, 1}) twins.AddTraining(*(*all_)[i], Activity(*(*all_)[i]) + i);
  EXPECT_FALSE(twins.Train());
  EXPECT_EQ(Varimo::ZqExplainNoKernel(twins, capture.Texts(Corvane::ZqThrowLevel::Warning)),
            "too few distinct elements (2)");
}

TEST(MolModelFile, AFileOfTheFirstFormatStillLoads) {
  // Written by varimo-krige before the model files moved into the library:
  // six alcohols and amines, a global model.
  std::string error;
  const std::optional<Varimo::ZqMolModel> loaded =
      Varimo::ZqLoadMolModel(VarimoTest::DataPath("mol/version1_model.vkm"), error);
  ASSERT_TRUE(loaded) << error;
  ASSERT_EQ(loaded->GetNumRecords(), 6u);
  EXPECT_EQ(loaded->GetRecord(0).GetName(), "ethanol");
  EXPECT_EQ(loaded->GetKernel().GetName(), "Power(4.000)");
  // It predicts with the kernel it saved. (The same records trained afresh
  // need not find that kernel: the binning of the variogram has changed
  // since, for the thin last bin of 15 pairs.)
  const std::unique_ptr<Molkit::ZqMolBase> propanol = Molkit::ZqMolFromSmiles("CCCO");
  const Varimo::ZqMolKrigeResult result = loaded->GetKrige().GetResult(*propanol);
  ASSERT_TRUE(result.Valid());
  EXPECT_EQ(result.GetKernel().GetSill(), loaded->GetKernel().GetSill());
  EXPECT_EQ(result.GetKernel().GetName(), "Power(4.000)");
}

TEST_F(BzrModel, DamagedFilesAreRefusedWithTheirReasonAndEditedKernelsLoad) {
  Varimo::ZqMolModelSettings settings;
  settings.responseName = "ACTIVITY";
  const Varimo::ZqMolModel model = Trained(settings);
  const std::string text = Varimo::ZqWriteMolModel(model);
  const std::string kernelLine = "kernel " + model.GetKernel().GetName() + "\t";
  std::string flipped = text;
  flipped[text.size() / 2] ^= 0x01;
  std::string unknownKernel = text, badFit = text, otherFingerprint = text, noKernels = text, newer = text;
  Replace(newer, "fingerprint-version 1\n", "fingerprint-version 99\n");
  Replace(unknownKernel, kernelLine, "kernel Wiggly\t");
  Replace(badFit, "kernel-fit all", "kernel-fit Wiggly");
  Replace(noKernels, "kernels 1 fixed", "kernels 0 fixed");
  // Paths of 5 bonds at most: the records' saved bins no longer match.
  Replace(otherFingerprint, "fingerprint 6 1", "fingerprint 5 1");
  const std::string extra = text.substr(0, text.rfind("checksum ")) + "more\n";
  const std::map<std::string, std::string> cases = {
      {"not a model\n", "not a varimo molecule model"},
      {text.substr(0, text.size() / 3), "cut short (no checksum line)"},
      {flipped, "corrupt (checksum does not match)"},
      {Resealed(unknownKernel), "bad kernel line 1 of 1"},
      {Resealed(badFit), "bad kernel-fit line"},
      {Resealed(noKernels), "bad kernels line"},
      {Resealed(newer), "fingerprints of version 99, this library makes version 1: train the model again"},
      {Resealed(otherFingerprint), "record 1: the molecule gives another fingerprint than the saved one"},
      {extra + Varimo::ZqMolModelChecksumLine(extra), "unexpected text after the records"},
  };
  for (const auto& [damaged, reason] : cases) {
    std::string error;
    EXPECT_FALSE(Varimo::ZqReadMolModel(damaged, "m.vkm", error)) << reason;
    EXPECT_THAT(error, ::testing::StartsWith("m.vkm: "));
    EXPECT_THAT(error, HasSubstr(reason));
  }
  std::string error;
  EXPECT_FALSE(Varimo::ZqLoadMolModel("/nonexistent/m.vkm", error));
  EXPECT_EQ(error, "cannot read /nonexistent/m.vkm");
  EXPECT_FALSE(Varimo::ZqSaveMolModel("/nonexistent/m.vkm", model, error));
  EXPECT_EQ(error, "cannot write /nonexistent/m.vkm");
  EXPECT_FALSE(Varimo::ZqSaveMolModel("m.vkm", Varimo::ZqMolModel(settings), error));
  EXPECT_EQ(error, "cannot save an untrained model to m.vkm");

  // An edited kernel, sealed anew, is the one loaded: loading trains with the
  // saved kernels instead of fitting again.
  const Varimo::ZqKrigeKernel kernel = model.GetKernel();
  char sill[64], doubled[64];
  std::snprintf(sill, sizeof sill, "\t%a\t", kernel.GetSill());
  std::snprintf(doubled, sizeof doubled, "\t%a\t", 2 * kernel.GetSill());
  std::string edited = text;
  Replace(edited, sill, doubled);
  const std::optional<Varimo::ZqMolModel> loaded = Varimo::ZqReadMolModel(Resealed(edited), "m.vkm", error);
  ASSERT_TRUE(loaded) << error;
  EXPECT_EQ(loaded->GetKernel().GetSill(), 2 * kernel.GetSill());
  EXPECT_EQ(loaded->GetKernel().GetName(), kernel.GetName());
}

TEST_F(BzrModel, RecordsWithoutDriftOrAFiniteResponseAreRefused) {
  Varimo::ZqMolModelSettings settings;
  settings.drift = {"MISSING"};
  Varimo::ZqMolModel model(settings);
  EXPECT_FALSE(model.AddTraining(*(*all_)[0], 1.0));
  Varimo::ZqMolModel ordinary({});
  EXPECT_FALSE(ordinary.AddTraining(*(*all_)[0], std::nan("")));
  EXPECT_FALSE(ordinary.AddTraining(*(*all_)[0], INFINITY));
  EXPECT_EQ(ordinary.GetNumRecords(), 0u);
  EXPECT_TRUE(std::isnan(ordinary.GetMeanResponse()));
  settings = {};
  settings.kernel = "Wiggly";
  Varimo::ZqMolModel unknown(settings);
  ASSERT_TRUE(unknown.AddTraining(*(*all_)[1], 1.0));
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_FALSE(unknown.Train());
  EXPECT_THAT(capture.Texts(Corvane::ZqThrowLevel::Error),
              ::testing::ElementsAre("ZqMolModel::Train, no candidate kernel is named \"Wiggly\""));
}

TEST_F(BzrModel, PredictionsOnThreadsEqualThoseOnOne) {
  const Varimo::ZqMolModel model = Trained({});
  std::vector<const Molkit::ZqMolBase*> queries = Queries();
  queries.push_back(nullptr);
  Varimo::ZqMolPredictOptions options;
  options.contributions = true;
  options.baseline = model.GetMeanResponse();
  std::vector<std::size_t> progress;
  options.progress = [&](std::size_t done) { progress.push_back(done); };
  const auto one = Varimo::ZqPredictMolecules(model.GetKrige(), queries, options);
  ASSERT_FALSE(progress.empty());
  EXPECT_EQ(progress.back(), queries.size());
  EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
  options.threads = 1000;  // more than queries: capped
  const auto many = Varimo::ZqPredictMolecules(model.GetKrige(), queries, options);
  ASSERT_EQ(one.size(), queries.size());
  EXPECT_FALSE(one.back().result.Valid());
  for (std::size_t q = 0; q + 1 < queries.size(); ++q) {
    EXPECT_EQ(one[q].result.GetResponse(), many[q].result.GetResponse());
    EXPECT_EQ(one[q].result.GetVariance(), many[q].result.GetVariance());
    EXPECT_EQ(one[q].contributions, many[q].contributions);
    EXPECT_EQ(one[q].contributions.size(), queries[q]->GetNumAtoms());
  }
  // The neighbours come in decreasing weight.
  const std::vector<unsigned int> top = Varimo::ZqLargestWeights(one[0].result, 3);
  ASSERT_EQ(top.size(), 3u);
  EXPECT_GE(one[0].result.GetElementWeight(top[0]), one[0].result.GetElementWeight(top[1]));
  EXPECT_GE(one[0].result.GetElementWeight(top[1]), one[0].result.GetElementWeight(top[2]));
}

TEST_F(BzrModel, CrossValidationHoldsEachRecordOutOnceAndSummarisesItsPredictions) {
  std::vector<const Molkit::ZqMolBase*> mols;
  std::vector<double> responses;
  for (const auto& mol : *all_) {
    mols.push_back(mol.get());
    responses.push_back(Activity(*mol));
  }
  const Varimo::ZqMolCrossValidation cv = Varimo::ZqCrossValidateMolModel({}, mols, responses, 5, 7, 2);
  ASSERT_EQ(cv.folds.size(), 5u);
  std::vector<std::size_t> sizes(5, 0);
  for (unsigned int k : cv.fold) ++sizes[k];
  for (std::size_t k = 0; k < 5; ++k) {
    EXPECT_EQ(cv.folds[k].numHeldOut, sizes[k]);
    EXPECT_TRUE(sizes[k] == 32 || sizes[k] == 33) << sizes[k];  // 163 = 3 x 33 + 2 x 32
    EXPECT_TRUE(cv.folds[k].trained);
  }
  EXPECT_EQ(cv.fold, Varimo::ZqCrossValidationFolds(163, 5, 7));
  EXPECT_NE(cv.fold, Varimo::ZqCrossValidationFolds(163, 5, 8));
  // Record 10 predicted by a model of the others of its fold's complement.
  const unsigned int k = cv.fold[10];
  Varimo::ZqMolModel model({});
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (cv.fold[i] != k) model.AddTraining(*mols[i], responses[i]);
  }
  ASSERT_TRUE(model.Train());
  EXPECT_EQ(cv.prediction[10], model.GetKrige().GetResult(*mols[10]).GetResponse());
  EXPECT_EQ(cv.summary.counted + cv.summary.failed, 163u);
  EXPECT_LT(cv.summary.rmse, 1.2);
  EXPECT_GT(cv.summary.r2, 0.2);

  const Varimo::ZqMolCrossValidation few = Varimo::ZqCrossValidateMolModel({}, {mols[0], mols[1]}, {1, 2}, 5, 1, 1);
  EXPECT_TRUE(few.folds.empty());
  EXPECT_EQ(few.summary.failed, 2u);
  EXPECT_TRUE(std::isnan(few.summary.rmse));
}

TEST(CrossValidationSummary, MatchesHandComputedValuesAndSkipsFailures) {
  // Residuals 1, -1, 2 (the fourth failed); measured mean 2, SST = 1 + 0 + 1,
  // SSE = 6: R2 = 1 - 6 / 2 = -2. Within 1.96 sd: |1| <= 1.96, |-1| <= 0.98 is
  // not, |2| <= 3.92.
  const Varimo::ZqCrossValidationSummary summary = Varimo::ZqSummarizeCrossValidation(
      {1, 2, 3, 4}, {0, 3, 1, 5}, {1, 0.25, 4, std::numeric_limits<double>::max()});
  EXPECT_EQ(summary.counted, 3u);
  EXPECT_EQ(summary.failed, 1u);
  EXPECT_DOUBLE_EQ(summary.rmse, std::sqrt(2.0));
  EXPECT_DOUBLE_EQ(summary.r2, -2.0);
  EXPECT_DOUBLE_EQ(summary.coverage95, 2.0 / 3.0);
  // R2 is undefined when all measured values are equal.
  EXPECT_TRUE(std::isnan(Varimo::ZqSummarizeCrossValidation({1, 1}, {0, 2}, {1, 1}).r2));
}

}  // namespace
