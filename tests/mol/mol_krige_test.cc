// Kriging on molecules through the ZqMolKrige facade: held-out bzr
// compounds (RDKit's benzodiazepine receptor set, ACTIVITY as response),
// what a result says about its training molecules, drift, contributions on
// a made-up series, and the custom route with the distance functors.
#include "varimo/mol/mol_krige.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "test_support.h"
#include "varimo/mol/krige_distfxns.h"
#include "varimo/mol/mol_data_model.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/generic_data.h"
#include "varimo/platform/molkit/molecule_files.h"
#include "varimo/platform/printex/fingerprint.h"

namespace Varimo {
namespace {

using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

Mols ReadBzr() {
  Mols mols;
  std::vector<std::string> errors;
  EXPECT_TRUE(Molkit::ZqReadSDFile("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf", mols, errors))
      << "rdkit-data is installed by scripts/install-deps";
  EXPECT_EQ(mols.size(), 163u);
  return mols;
}
double Activity(const Molkit::ZqMolBase& mol) { return std::stod(Molkit::ZqGetSDData(mol, "ACTIVITY")); }
bool HeldOut(std::size_t i) { return i % 10 == 0; }

std::unique_ptr<Molkit::ZqMolBase> Smiles(const std::string& smiles) {
  std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromSmiles(smiles);
  EXPECT_TRUE(mol) << smiles;
  return mol;
}

// The normal law's chance below x, by another route than the library's erf.
double NormalBelow(double x, double mean, double variance) {
  return 0.5 * std::erfc(-(x - mean) / std::sqrt(2.0 * variance));
}

TEST(MolKrige, HeldOutBzrPredictionsAndTheirProbabilities) {
  const Mols mols = ReadBzr();
  ZqMolKrige model{ZqGlobalKrigeOptions()};
  double mean = 0.0;
  std::size_t trained = 0;
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (HeldOut(i)) continue;
    ASSERT_TRUE(model.AddTraining(*mols[i], Activity(*mols[i])));
    mean += Activity(*mols[i]);
    ++trained;
  }
  mean /= static_cast<double>(trained);
  ASSERT_TRUE(model.Train());
  const ZqMolKrige& constModel = model;
  double krigeError = 0.0, meanError = 0.0;
  for (std::size_t i = 0; i < mols.size(); i += 10) {
    SCOPED_TRACE(mols[i]->GetName());
    const ZqMolKrigeResult r = model.GetResult(*mols[i]);
    ASSERT_TRUE(r.Valid());
    const double y = r.GetResponse(), v = r.GetVariance();
    ASSERT_TRUE(std::isfinite(y) && std::isfinite(v));
    EXPECT_GT(v, 0.0);
    EXPECT_EQ(constModel.GetResult(*mols[i]).GetResponse(), y);
    // Ordinary kriging: the weights sum to one and make the prediction.
    double sum = 0.0, weighted = 0.0;
    for (unsigned int e = 0; e < r.GetNumElements(); ++e) {
      sum += r.GetElementWeight(e);
      weighted += r.GetElementWeight(e) * r.GetElementResponse(e);
    }
    EXPECT_NEAR(sum, 1.0, 1e-9);
    EXPECT_NEAR(weighted, y, 1e-9);
    EXPECT_EQ(r.GetTrainingResponses(false).Count(), trained);

    EXPECT_EQ(ZqProbabilityLessThan(r, y), 0.5);
    for (const auto& [a, b] : std::vector<std::pair<double, double>>{{1, 2}, {y - 0.3, y + 1.1}, {y - 2, y}}) {
      const double between = ZqProbabilityBetween(r, a, b);
      EXPECT_EQ(between, ZqProbabilityBetween(r, b, a));
      EXPECT_NEAR(between, NormalBelow(b, y, v) - NormalBelow(a, y, v), 1e-14);
      EXPECT_NEAR(ZqProbabilityLessThan(r, a), NormalBelow(a, y, v), 1e-14);
      EXPECT_NEAR(ZqProbabilityGreaterThan(r, b), 1.0 - NormalBelow(b, y, v), 1e-14);
    }
    krigeError += (y - Activity(*mols[i])) * (y - Activity(*mols[i]));
    meanError += (mean - Activity(*mols[i])) * (mean - Activity(*mols[i]));
  }
  // The fingerprints carry the activity: kriging beats the training mean.
  EXPECT_LT(krigeError, 0.8 * meanError);
}

TEST(MolKrige, AtVarianceZeroTheProbabilitiesAreThoseOfAPointMass) {
  const Mols mols = ReadBzr();
  ZqMolKrige model{ZqGlobalKrigeOptions()};
  for (std::size_t i = 0; i < 20; ++i) ASSERT_TRUE(model.AddTraining(*mols[i], Activity(*mols[i])));
  ZqKrigeKernel kernel(ZqKrigeKernelType::Exponential);
  kernel.SetSill(1.0);
  kernel.SetRange(0.5);
  kernel.SetNugget(0.0);
  ASSERT_TRUE(model.TrainFixed(kernel));
  // A training molecule under a kernel without nugget: no uncertainty left.
  const ZqMolKrigeResult r = model.GetResult(*mols[3]);
  ASSERT_TRUE(r.Valid());
  ASSERT_EQ(r.GetVariance(), 0.0);
  const double y = r.GetResponse();
  EXPECT_EQ(ZqProbabilityLessThan(r, y - 1e-9), 0.0);
  EXPECT_EQ(ZqProbabilityLessThan(r, y), 0.5);
  EXPECT_EQ(ZqProbabilityLessThan(r, y + 1e-9), 1.0);
  EXPECT_EQ(ZqProbabilityGreaterThan(r, y), 0.5);
  EXPECT_EQ(ZqProbabilityBetween(r, y + 1.0, y - 1.0), 1.0);
  EXPECT_EQ(ZqProbabilityBetween(r, y, y + 1.0), 0.5);
}

TEST(MolKrige, ElementsAreTaggedCopiesThatOutliveClear) {
  const Mols mols = ReadBzr();
  std::map<std::string, const Molkit::ZqMolBase*> byName;  // bzr's names are unique
  for (const auto& mol : mols) byName[mol->GetName()] = mol.get();
  ZqMolKrige model{ZqGlobalKrigeOptions()};
  for (std::size_t i = 1; i < 40; ++i) ASSERT_TRUE(model.AddTraining(*mols[i], Activity(*mols[i])));
  const ZqMolKrigeResult before = model.GetResult(*mols[0]);
  ASSERT_TRUE(before.Valid());
  ASSERT_EQ(before.GetNumElements(), 39u);
  const unsigned int tag = Corvane::ZqGetTag("ZqMolKrigeImpl_training_fingerprint_tag");
  std::vector<std::string> names;
  for (unsigned int e = 0; e < before.GetNumElements(); ++e) {
    const Molkit::ZqMolBase& element = before.GetElement(e);
    names.push_back(element.GetName());
    ASSERT_EQ(byName.count(element.GetName()), 1u) << element.GetName();
    const Molkit::ZqMolBase& original = *byName.at(element.GetName());
    EXPECT_NE(&original, &element);
    EXPECT_EQ(before.GetElementResponse(e), Activity(original));
    const auto* fp = element.GetData<Printex::ZqVseprFingerprint>(tag);
    ASSERT_NE(fp, nullptr);
    EXPECT_EQ(fp->GetTanimoto(Printex::ZqVseprFingerprint(original, {})), 1.0);
  }

  model.Clear();
  const ZqMolKrigeResult copy = before;
  EXPECT_TRUE(before.Valid() && copy.Valid());
  for (unsigned int e = 0; e < before.GetNumElements(); ++e) {
    EXPECT_EQ(before.GetElement(e).GetName(), names[e]);
    EXPECT_EQ(copy.GetElement(e).GetName(), names[e]);
  }
  EXPECT_EQ(before.GetTrainingResponses(true).Count(), 39u);
  // A new training numbers its molecules from 0 again: every element is
  // one of the new molecules, none the empty molecule of an unknown id.
  for (std::size_t i = 100; i < 130; ++i) ASSERT_TRUE(model.AddTraining(*mols[i], Activity(*mols[i])));
  const ZqMolKrigeResult after = model.GetResult(*mols[0]);
  ASSERT_EQ(after.GetNumElements(), 30u);
  for (unsigned int e = 0; e < after.GetNumElements(); ++e) {
    const std::string& name = after.GetElement(e).GetName();
    const auto isNew = [&](const auto& mol) { return mol->GetName() == name; };
    EXPECT_TRUE(std::any_of(mols.begin() + 100, mols.begin() + 130, isNew)) << "element " << e << " '" << name << "'";
  }
}

TEST(MolKrige, OneFingerprintAddedTwiceIsOneElementWithTwoCopies) {
  ZqMolKrige model{ZqGlobalKrigeOptions()};
  const std::vector<std::pair<std::string, double>> series = {{"CCO", 5.0}, {"OCC", 7.0},   {"CCCO", 5.5},
                                                              {"CCN", 4.0}, {"CCCCO", 6.5}, {"OCCO", 3.0}};
  for (const auto& [smiles, y] : series) ASSERT_TRUE(model.AddTraining(*Smiles(smiles), y));
  ASSERT_TRUE(model.TrainFixed(ZqKrigeKernel(ZqKrigeKernelType::Exponential)));
  const ZqMolKrigeResult r = model.GetResult(*Smiles("CCCN"));
  ASSERT_TRUE(r.Valid());
  EXPECT_EQ(r.GetNumElements(), 5u);
  unsigned int folded = 0;
  for (unsigned int e = 0; e < r.GetNumElements(); ++e) {
    if (r.GetNumCopies(e) == 1) {
      EXPECT_FALSE(r.GetHasMultipleCopies(e));
      continue;
    }
    ++folded;
    ASSERT_EQ(r.GetNumCopies(e), 2u);
    EXPECT_TRUE(r.GetHasMultipleCopies(e));
    EXPECT_EQ(r.GetElementResponse(e), 6.0);  // the mean of the copies
    EXPECT_EQ(r.GetElementResponse(e, 0) + r.GetElementResponse(e, 1), 12.0);
    EXPECT_EQ(r.GetElement(e, 0).GetCanonicalSmiles(), "CCO");
    EXPECT_EQ(r.GetElement(e, 1).GetCanonicalSmiles(), "CCO");
    EXPECT_NE(&r.GetElement(e, 0), &r.GetElement(e, 1));
  }
  EXPECT_EQ(folded, 1u);
}

TEST(MolKrige, UnmeasuredAndConformerSetRoutes) {
  const std::vector<std::pair<std::string, double>> series = {
      {"CCO", 5.0}, {"CCCO", 5.5}, {"CCN", 4.0}, {"CCCCO", 6.5}, {"OCCO", 3.0}, {"CCCN", 4.5}};
  ZqMolKrige plain{ZqGlobalKrigeOptions()}, conformers{ZqGlobalKrigeOptions()};
  for (const auto& [smiles, y] : series) {
    ASSERT_TRUE(plain.AddTraining(*Smiles(smiles), y));
    ASSERT_TRUE(conformers.AddTraining(Molkit::ZqMCMolBase(*Smiles(smiles)), y));
  }
  ASSERT_TRUE(plain.AddUnmeasuredTraining(*Smiles("CCCCN"), 9.0));
  ASSERT_TRUE(conformers.AddUnmeasuredTraining(Molkit::ZqMCMolBase(*Smiles("CCCCN")), 9.0));
  const ZqKrigeKernel kernel(ZqKrigeKernelType::Exponential);
  ASSERT_TRUE(plain.TrainFixed(kernel));
  ASSERT_TRUE(conformers.TrainFixed(kernel));
  const std::unique_ptr<Molkit::ZqMolBase> query = Smiles("CC(C)O");
  const ZqMolKrigeResult a = plain.GetResult(*query);
  const ZqMolKrigeResult b = conformers.GetResult(Molkit::ZqMCMolBase(*query));
  ASSERT_TRUE(a.Valid() && b.Valid());
  // A conformer set krieges as its molecule; its training copy is a molecule.
  EXPECT_EQ(a.GetResponse(), b.GetResponse());
  EXPECT_EQ(a.GetVariance(), b.GetVariance());
  ASSERT_EQ(b.GetNumElements(), 7u);
  unsigned int unmeasured = 0;
  for (unsigned int e = 0; e < b.GetNumElements(); ++e) {
    EXPECT_EQ(b.GetElement(e).GetCanonicalSmiles(), a.GetElement(e).GetCanonicalSmiles());
    if (!b.GetElementIsUnmeasured(e)) continue;
    ++unmeasured;
    EXPECT_EQ(b.GetElement(e).GetCanonicalSmiles(), "CCCCN");
    EXPECT_EQ(b.GetElementResponse(e), 9.0);
  }
  EXPECT_EQ(unmeasured, 1u);
  EXPECT_EQ(b.GetTrainingResponses(true).Count(), 7u);
  EXPECT_EQ(b.GetTrainingResponses(false).Count(), 6u);
}

// Tanimoto distances of small molecules take few values, so bin boundaries
// fall inside runs of equal distance. A global model (pairs i < j) and a
// local one that reaches every element (pairs later, earlier) bin the same
// pairs, fit the same kernel and predict alike.
TEST(MolKrige, GlobalAndAllReachingLocalModelsAgreeOnTiedDistances) {
  const std::vector<std::string> smiles = {"CC",     "CCC",    "CCCC",   "CCCCC", "CO",    "CCO",   "CCCO",
                                           "CCCCO",  "CN",     "CCN",    "CCCN",  "CC(C)C", "CC(C)O", "CC(C)N",
                                           "C=C",    "C=CC",   "CCl",    "CCCl",  "CBr",   "CCBr",  "OCCO",
                                           "NCCN",   "OCCN",   "CC(=O)O"};
  ZqMolKrige global{ZqGlobalKrigeOptions()};
  ZqMolKrige local{ZqLocalKrigeOptions().SetNumLocal(100)};
  for (std::size_t i = 0; i < smiles.size(); ++i) {
    const double y = std::sin(1.0 + static_cast<double>(i)) + 0.1 * static_cast<double>(smiles[i].size());
    ASSERT_TRUE(global.AddTraining(*Smiles(smiles[i]), y));
    ASSERT_TRUE(local.AddTraining(*Smiles(smiles[i]), y));
  }
  ASSERT_TRUE(global.Train());
  ASSERT_TRUE(local.Train());
  const ZqVariogram a = global.GetVariogram(), b = local.GetVariogram();
  ASSERT_EQ(a.GetNumBins(), b.GetNumBins());
  for (unsigned int bin = 0; bin < a.GetNumBins(); ++bin) {
    EXPECT_EQ(a.GetDistance(bin), b.GetDistance(bin)) << bin;
    EXPECT_EQ(a.GetSemivariance(bin), b.GetSemivariance(bin)) << bin;
  }
  EXPECT_EQ(global.GetKernel().GetName(), local.GetKernel().GetName());
  for (const char* query : {"CCCCCO", "CC(C)CO", "ClCCCl"}) {
    const ZqMolKrigeResult g = global.GetResult(*Smiles(query)), l = local.GetResult(*Smiles(query));
    ASSERT_TRUE(g.Valid() && l.Valid()) << query;
    EXPECT_EQ(g.GetKernel().GetName(), l.GetKernel().GetName()) << query;
    EXPECT_NEAR(g.GetResponse(), l.GetResponse(), 1e-9) << query;
  }
}

TEST(MolKrige, DriftPropertiesAreRequiredAndHonoured) {
  Mols mols = ReadBzr();
  for (std::size_t i = 1; i < mols.size(); ++i) {
    mols[i]->SetSDData("MW", std::to_string(Molkit::ZqCalculateMolecularWeight(*mols[i])));
  }
  Molkit::ZqMolPropertyPushList drift;
  drift.Push(Molkit::ZqMolSDDataPropertyFxn("MW"));
  ZqMolKrige model(drift, ZqGlobalKrigeOptions());
  EXPECT_FALSE(model.AddTraining(*mols[0], Activity(*mols[0])));  // no MW on it
  for (std::size_t i = 1; i < mols.size(); ++i) {
    if (HeldOut(i)) continue;
    ASSERT_TRUE(model.AddTraining(*mols[i], Activity(*mols[i])));
  }
  ASSERT_TRUE(model.Train());
  const ZqMolKrigeResult refused = model.GetResult(*mols[0]);
  EXPECT_FALSE(refused.Valid());
  EXPECT_EQ(refused.GetResponse(), DBL_MAX);
  EXPECT_EQ(refused.GetNumElements(), 0u);
  // Universal kriging reproduces the drift: the weights sum to one and
  // their molecular weights average to the query's.
  for (std::size_t i = 10; i < mols.size(); i += 10) {
    const ZqMolKrigeResult r = model.GetResult(*mols[i]);
    ASSERT_TRUE(r.Valid());
    double sum = 0.0, mw = 0.0;
    for (unsigned int e = 0; e < r.GetNumElements(); ++e) {
      sum += r.GetElementWeight(e);
      mw += r.GetElementWeight(e) * std::stod(Molkit::ZqGetSDData(r.GetElement(e), "MW"));
    }
    EXPECT_NEAR(sum, 1.0, 1e-8);
    EXPECT_NEAR(mw, std::stod(Molkit::ZqGetSDData(*mols[i], "MW")), 1e-6);
  }
}

TEST(MolKrige, AMethylThatRaisesTheSeriesContributesPositively) {
  // Para-substituted phenols, one unit higher with a methyl ortho to the OH.
  const std::vector<std::string> para = {"", "F", "Cl", "Br", "OC", "N", "C#N", "C(=O)C"};
  const auto phenol = [](const std::string& ortho, const std::string& p) {
    return Smiles("Oc1c" + ortho + "c" + (p.empty() ? "c" : "c(" + p + ")") + "cc1");
  };
  ZqMolKrige model{ZqGlobalKrigeOptions()};
  double mean = 0.0;
  for (std::size_t k = 0; k < para.size(); ++k) {
    const double base = 5.0 + 0.1 * static_cast<double>(k);
    ASSERT_TRUE(model.AddTraining(*phenol("", para[k]), base));
    ASSERT_TRUE(model.AddTraining(*phenol("(C)", para[k]), base + 1.0));
    mean += base + 0.5;
  }
  mean /= static_cast<double>(para.size());
  ZqKrigeKernel kernel(ZqKrigeKernelType::Exponential);
  kernel.SetRange(0.6);
  ASSERT_TRUE(model.TrainFixed(kernel));
  // The query: an unseen para ethyl with the methyl (atom 4) and an explicit
  // deuterium on the oxygen (atom 0).
  const auto query = Smiles("[2H]Oc1c(C)cc(CC)cc1");
  ASSERT_EQ(query->GetAtom(4).GetSymbol(), "C");
  ASSERT_EQ(query->GetAtom(0).GetAtomicNum(), 1u);
  const unsigned int methyl = 4;
  ZqMolKrigeResult r = model.GetResult(*query);
  ASSERT_TRUE(r.Valid());
  EXPECT_GT(r.GetResponse(), mean);
  const ZqMolKrigeResult& constResult = r;
  const std::vector<double> all = r.GetAtomContributions(*query, mean);
  ASSERT_EQ(all.size(), query->GetNumAtoms());
  EXPECT_GT(all[methyl], 0.0);
  EXPECT_EQ(all[0], 0.0);  // the deuterium
  for (unsigned int a = 0; a < all.size(); ++a) {
    EXPECT_EQ(all[a], constResult.GetAtomContribution(query->GetAtom(a), mean)) << a;
    EXPECT_EQ(all[a], r.GetAtomContribution(query->GetAtom(a), mean)) << a;
  }
  // Features that reach the methyl also reach its neighbours (the OH shares
  // it), but the far side of the ring (atoms 6 and 9) and the para ethyl
  // (7 and 8), which the training series varies without effect, carry less.
  for (unsigned int far : {6u, 7u, 8u, 9u}) EXPECT_GT(all[methyl], all[far]) << far;
  std::vector<double> sorted = all;
  std::sort(sorted.rbegin(), sorted.rend());
  EXPECT_GE(all[methyl], sorted[1]);
  // Against the prediction itself the same calls agree, kept or not.
  const std::vector<double> own = r.GetAtomContributions(*query);
  for (unsigned int a = 0; a < own.size(); ++a) {
    EXPECT_EQ(own[a], constResult.GetAtomContribution(query->GetAtom(a))) << a;
  }

  // The values by hand. Each neighbour pushes w = weight (response -
  // baseline); T2 sums the pushes above 1e-10 and T1 the others, negated.
  // An atom's shares fp = p / P and fn = n / N each sum to 1 over the heavy
  // atoms, or to 0 where no atom meets that side at all, so the
  // contributions sum to T1 / T2 [P > 0] - [N > 0] when T1 <= T2, and to
  // [P > 0] - T2 / T1 [N > 0] otherwise, whatever the volumes.
  for (const double baseline : {mean, r.GetResponse(), mean + 0.4}) {
    double above = 0.0, below = 0.0;
    for (unsigned int e = 0; e < r.GetNumElements(); ++e) {
      const double w = r.GetElementWeight(e) * (r.GetElementResponse(e) - baseline);
      if (w > 1e-10) above += w;
      if (w < 1e-10) below -= w;
    }
    const std::vector<double> contributions = r.GetAtomContributions(*query, baseline);
    double sum = 0.0;
    for (const double c : contributions) sum += c;
    const double ratio = below <= above ? below / above : above / below;
    const std::vector<double> candidates = below <= above ? std::vector<double>{ratio - 1.0, ratio, -1.0, 0.0}
                                                          : std::vector<double>{1.0 - ratio, 1.0, -ratio, 0.0};
    double nearest = 1.0;
    for (const double candidate : candidates) nearest = std::min(nearest, std::fabs(sum - candidate));
    EXPECT_LT(nearest, 1e-12) << baseline << ": " << sum << " against the ratio " << ratio;
  }
}

// Two models trained on the same molecules (all but the held-out ones).
template <class A, class B>
void TrainBothOnKept(A& a, B& b, const Mols& mols) {
  for (std::size_t i = 0; i < mols.size(); ++i) {
    if (HeldOut(i)) continue;
    ASSERT_TRUE(a.AddTraining(*mols[i], Activity(*mols[i])));
    ASSERT_TRUE(b.AddTraining(*mols[i], Activity(*mols[i])));
  }
  ASSERT_TRUE(a.Train());
  ASSERT_TRUE(b.Train());
}

// The default distance on the custom route predicts as the Vsepr route; the
// single-conformer engine on Morgan distances as the facade over it.
TEST(MolKrige, CustomRoutesMatchTheVseprRouteAndTheirEngine) {
  Mols mols = ReadBzr();
  const ZqMolKrigeDefaultDistFxn distance{ZqDefaultKrigeDistanceOptions()};
  const ZqMolKrigePrintexDistFxn morgan(Printex::kZqMorganFP);
  for (auto& mol : mols) ASSERT_TRUE(distance.PrepMol(*mol) && morgan.PrepMol(*mol));
  ZqMolKrige vsepr{ZqGlobalKrigeOptions()};
  ZqMolKrige custom(distance, ZqGlobalKrigeOptions());
  TrainBothOnKept(vsepr, custom, mols);
  ZqSCMolKrige engine(morgan, ZqKrigeOptions(ZqGlobalKrigeOptions()));
  ZqMolKrige facade(morgan, ZqGlobalKrigeOptions());
  TrainBothOnKept(engine, facade, mols);
  if (HasFatalFailure()) return;
  const ZqMolKrige copy(vsepr);
  // Training the original further leaves the copy as it was.
  ASSERT_TRUE(vsepr.AddTraining(*mols[0], Activity(*mols[0])));
  ZqMolKrige untouched{ZqGlobalKrigeOptions()};
  untouched = copy;
  for (std::size_t i = 10; i < mols.size(); i += 10) {
    SCOPED_TRACE(mols[i]->GetName());
    const ZqMolKrigeResult a = copy.GetResult(*mols[i]), b = custom.GetResult(*mols[i]);
    ASSERT_TRUE(a.Valid() && b.Valid());
    EXPECT_TRUE(VarimoTest::WithinRelative(b.GetResponse(), a.GetResponse(), 1e-12));
    EXPECT_TRUE(VarimoTest::WithinRelative(b.GetVariance(), a.GetVariance(), 1e-10));
    EXPECT_EQ(untouched.GetResult(*mols[i]).GetResponse(), a.GetResponse());
    const double y = engine.Predict(*mols[i]);
    ASSERT_NE(y, engine.GetErrorValue());
    EXPECT_GT(engine.GetVariance(*mols[i]), 0.0);
    EXPECT_TRUE(VarimoTest::WithinRelative(facade.GetResult(*mols[i]).GetResponse(), y, 1e-12));
  }
}

TEST(MolKrige, DistanceFunctorsReportUnpreparedMolecules) {
  auto a = Smiles("CCO"), b = Smiles("OCC(O)CO"), h2 = Smiles("[H][H]");
  Corvane::ZqScopedThrowCapture capture;
  const ZqMolKrigePrintexDistFxn morgan(Printex::kZqMorganFP);
  ASSERT_TRUE(morgan.PrepMol(*a));
  EXPECT_FALSE(morgan.PrepMol(*h2));
  EXPECT_FALSE(ZqMolKrigePrintexDistFxn(7).PrepMol(*b));
  EXPECT_TRUE(capture.Messages().empty());
  for (const Molkit::ZqMolBase* other : {b.get(), h2.get()}) {
    EXPECT_EQ(morgan(*a, *other), 1.0);
    EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
              std::vector<std::string>{"ZqMolKrigePrintexDistFxn::PrepMol no called on mol passed to "
                                       "ZqMolKrigePrintexDistFxn::operator(), or PrepMol failed"});
    capture.Clear();
  }
  ASSERT_TRUE(morgan.PrepMol(*b));
  Printex::ZqFingerPrint fa, fb;
  ASSERT_TRUE(Printex::ZqMakeFP(fa, *a, Printex::kZqMorganFP) && Printex::ZqMakeFP(fb, *b, Printex::kZqMorganFP));
  EXPECT_EQ(morgan(*a, *b), 1.0 - Printex::ZqTanimoto(fa, fb));
  EXPECT_EQ(morgan(*a, *a), 0.0);
  // Each kind keeps its own fingerprint: a topological distance does not
  // read the Morgan one.
  EXPECT_EQ(ZqMolKrigePrintexDistFxn(Printex::kZqTopologicalFP)(*a, *b), 1.0);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error).size(), 1u);
  capture.Clear();

  const ZqMolKrigeDefaultDistFxn vsepr{ZqDefaultKrigeDistanceOptions()};
  auto c = Smiles("CCCO");
  EXPECT_EQ(vsepr(*a, *c), 1.0);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            std::vector<std::string>{
                "ZqMolKrigeDefaultDistFxn::PrepMol not called on mol passed to ZqMolKrigeDefaultDistFxn::operator()"});
  capture.Clear();
  ASSERT_TRUE(vsepr.PrepMol(*a));
  ASSERT_TRUE(vsepr.PrepMol(*c));
  EXPECT_EQ(vsepr(*a, *c), 1.0 - Printex::ZqVseprFingerprint(*a, {}).GetTanimoto({*c, {}}));
  EXPECT_TRUE(capture.Messages().empty());
}

}  // namespace
}  // namespace Varimo
