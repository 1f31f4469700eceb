// Vsepr fingerprints bin by bin against a second implementation written in
// Python on RDKit's own path search (tests/data/mol/make_vsepr_refs.py), the
// bit fingerprints' Tanimoto against RDKit's DataStructs, and what the
// kriging engine and the contributions rely on: exact 1 for one molecule,
// hydrogens left out, atom fingerprints from one search, and the algebra of
// sums, minima and scaled weights.
#include "varimo/platform/printex/vsepr_fingerprint.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "test_support.h"
#include "varimo/platform/corvane/strings.h"
#include "varimo/platform/molkit/molecule_files.h"
#include "varimo/platform/printex/fingerprint.h"

namespace Printex {
namespace {

using Mol = std::unique_ptr<Molkit::ZqMolBase>;
using Texts = std::vector<std::string>;
using Weights = std::vector<double>;
constexpr std::size_t kBins = ZqVseprFingerprint::kNumBins;

Mol Smiles(const std::string& smiles) {
  Mol mol = Molkit::ZqMolFromSmiles(smiles);
  EXPECT_TRUE(mol) << smiles;
  return mol;
}
Weights WeightsOf(const ZqVseprFingerprint& fp) {
  Weights weights(kBins);
  for (std::size_t b = 0; b < kBins; ++b) weights[b] = fp.GetWeight(b);
  return weights;
}
// Every bin, so that a weight where the reference has none fails too.
::testing::AssertionResult SameBins(const ZqVseprFingerprint& fp, const Weights& expected) {
  const Weights weights = WeightsOf(fp);
  for (std::size_t b = 0; b < kBins; ++b) {
    if (weights[b] != expected[b]) {
      return ::testing::AssertionFailure() << "bin " << b << ": " << weights[b] << " vs " << expected[b];
    }
  }
  return ::testing::AssertionSuccess();
}

// vsepr_refs.tsv: option sets, the molecules it names, its other lines.
struct Refs {
  std::map<std::string, ZqVseprOptions> options;
  std::map<std::string, Mol> mols;
  std::vector<Texts> lines;
};

Refs ReadRefs() {
  Refs refs;
  std::vector<Mol> bzr;
  Texts errors;
  EXPECT_TRUE(Molkit::ZqReadSDFile("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf", bzr, errors))
      << "rdkit-data is installed by scripts/install-deps";
  std::ifstream in(VarimoTest::DataPath("mol/vsepr_refs.tsv"));
  EXPECT_TRUE(in.is_open());
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    Texts f;
    Corvane::ZqStringTokenize(f, line, "\t", false);
    if (f[0] == "options") {
      ZqVseprOptions& o = refs.options[f[1]];
      o.SetMinPathLength(std::stoul(f[2]));
      o.SetMaxPathLength(std::stoul(f[3]));
      o.SetForcePathsOut(f[4] == "1");
      o.SetWeightByLength(f[5] == "1");
      o.SetStereoAware(f[6] == "1");
    } else if (f[0] == "mol") {
      refs.mols[f[1]] = f[2] == "smiles" ? Smiles(f[3]) : Mol(bzr.at(std::stoul(f[3]))->CreateCopy());
    } else {
      refs.lines.push_back(f);
    }
  }
  EXPECT_EQ(refs.options.size(), 7u);
  EXPECT_EQ(refs.mols.size(), 20u);
  return refs;
}

Weights SparseBins(const std::string& sparse) {
  Weights bins(kBins, 0.0);
  Texts pairs;
  Corvane::ZqStringTokenize(pairs, sparse, ",", true);
  for (const std::string& pair : pairs) {
    const std::size_t colon = pair.find(':');
    bins.at(std::stoul(pair.substr(0, colon))) = std::stod(pair.substr(colon + 1));
  }
  return bins;
}

TEST(VseprFingerprint, AgreesWithPythonReimplementationOnRDKitPaths) {
  const Refs refs = ReadRefs();
  std::size_t fingerprints = 0, pairs = 0;
  for (const Texts& f : refs.lines) {
    SCOPED_TRACE(Corvane::ZqMakeString(f[0], " ", f[1], " ", f[2], " ", f[3]));
    if (f[0] == "fp" || f[0] == "atom" || f[0] == "bond") {
      const Molkit::ZqMolBase& mol = *refs.mols.at(f[1]);
      const ZqVseprOptions& options = refs.options.at(f[2]);
      const std::size_t at = f[0] == "fp" ? 3 : 4;  // the volume; the bins follow
      ZqVseprFingerprint fp;
      // Every molecule here has heavy atoms, and no atom or bond is a hydrogen.
      EXPECT_TRUE(f[0] == "fp"     ? fp.Setup(mol, options)
                  : f[0] == "atom" ? fp.Setup(mol.GetAtom(std::stoul(f[3])), options)
                                   : fp.Setup(mol.GetBond(std::stoul(f[3])), options));
      EXPECT_TRUE(SameBins(fp, SparseBins(f.size() > at + 1 ? f[at + 1] : "")));
      EXPECT_EQ(fp.GetVolume(), std::stod(f[at]));
      EXPECT_EQ(fp.IsEmpty(), f[at] == "0");  // the ions, and methane, without forced paths
      EXPECT_EQ(fp.GetOptions(), options);
      ++fingerprints;
    } else if (f[0] == "tanimoto") {
      const ZqVseprOptions& options = refs.options.at(f[3]);
      const ZqVseprFingerprint a(*refs.mols.at(f[1]), options), b(*refs.mols.at(f[2]), options);
      const double common = std::stod(f[4]), combined = std::stod(f[5]);
      // Two fingerprints without weight are alike.
      const double expected = combined == 0 ? 1.0 : common / combined;
      EXPECT_EQ(a.GetTanimoto(b), expected);
      EXPECT_EQ(b.GetTanimoto(a), expected);
      EXPECT_EQ((a & b).GetVolume(), common);
      EXPECT_EQ((a + b).GetVolume(), a.GetVolume() + b.GetVolume());
      ++pairs;
    }
  }
  EXPECT_EQ(fingerprints, 7u * (20 + 20 + 18));  // a bond in all but the ions and methane
  EXPECT_EQ(pairs, 7u * 10);
}

TEST(VseprFingerprint, PrintexKindsAgreeWithRDKitDataStructs) {
  const Refs refs = ReadRefs();
  std::size_t pairs = 0;
  for (const Texts& f : refs.lines) {
    if (f[0] != "bits") continue;
    const unsigned int type = f[3] == "morgan" ? kZqMorganFP : kZqTopologicalFP;
    ZqFingerPrint a, b;
    ASSERT_TRUE(ZqMakeFP(a, *refs.mols.at(f[1]), type) && ZqMakeFP(b, *refs.mols.at(f[2]), type));
    EXPECT_EQ(a.GetBits().size(), ZqFingerPrint::kNumBits / 64);
    EXPECT_NEAR(ZqTanimoto(a, b), std::stod(f[4]), 1e-15) << f[1] << " ~ " << f[2] << " " << f[3];
    ++pairs;
  }
  EXPECT_EQ(pairs, 10u);

  const Mol ethanol = Smiles("CCO"), glycerol = Smiles("OCC(O)CO"), h2 = Smiles("[H][H]");
  ZqFingerPrint vsepr, other, morgan, topological, unset;
  ASSERT_TRUE(ZqMakeFP(vsepr, *ethanol, kZqVseprFP) && ZqMakeFP(other, *glycerol, kZqVseprFP));
  ASSERT_TRUE(ZqMakeFP(morgan, *ethanol, kZqMorganFP) && ZqMakeFP(topological, *ethanol, kZqTopologicalFP));
  EXPECT_EQ(ZqTanimoto(vsepr, other), ZqVseprFingerprint(*ethanol, {}).GetTanimoto({*glycerol, {}}));
  EXPECT_EQ(ZqTanimoto(morgan, morgan), 1.0);
  // Kinds do not compare, even on one molecule; nor do unset fingerprints.
  EXPECT_EQ(ZqTanimoto(vsepr, morgan), 0.0);
  EXPECT_EQ(ZqTanimoto(morgan, topological), 0.0);
  EXPECT_EQ(ZqTanimoto(unset, unset), 0.0);
  EXPECT_FALSE(ZqMakeFP(other, *ethanol, 3));
  EXPECT_FALSE(other.IsSet());
  for (unsigned int type : {kZqVseprFP, kZqMorganFP, kZqTopologicalFP}) {
    EXPECT_FALSE(ZqMakeFP(other, *h2, type)) << type;
  }
}

TEST(VseprFingerprint, OneMoleculeWrittenTwoWaysComparesExactlyOne) {
  ZqVseprOptions stereo;
  stereo.SetStereoAware(true);
  const auto expectSame = [&](const std::string& x, const std::string& y) {
    const Mol a = Smiles(x), b = Smiles(y);
    for (const ZqVseprOptions& options : {ZqVseprOptions(), stereo}) {
      const ZqVseprFingerprint fa(*a, options), fb(*b, options);
      EXPECT_EQ(fa.GetTanimoto(fb), 1.0) << x << " vs " << y;
      EXPECT_TRUE(SameBins(fa, WeightsOf(fb))) << x << " vs " << y;
    }
  };
  // Rings, which the longest paths close: a 6-ring alone, and a 5-ring on a
  // one-bond tail, walked round one way or the other by the atom order. The
  // kriging engine folds a molecule entered twice only when its fingerprints
  // compare to exactly 1.
  for (const auto& [x, y] : std::vector<std::pair<std::string, std::string>>{
           {"OCC", "CCO"},
           {"OCC(C)C", "CC(C)CO"},
           {"NCC(=O)O", "OC(=O)CN"},
           {"C[C@H](N)O", "N[C@@H](C)O"},
           {"Oc1ccccc1", "c1ccc(O)cc1"},
           {"OC1CCCCC1", "C1CCC(O)CC1"},
           {"CC1C(F)CCC1", "CC1CCCC1F"}}) {
    ASSERT_EQ(Smiles(x)->GetCanonicalSmiles(), Smiles(y)->GetCanonicalSmiles());
    expectSame(x, y);
  }
  // Explicit hydrogens (deuterium stays explicit through RDKit's readers)
  // enter no path and count as the hydrogens of their heavy atom.
  expectSame("[2H]OC", "CO");
  expectSame("[2H]C([2H])([2H])C(=O)O", "CC(=O)O");
}

TEST(VseprFingerprint, HydrogensHaveNoFingerprint) {
  Mol h2 = Smiles("[H][H]");
  ASSERT_EQ(h2->GetNumAtoms(), 2u);
  ZqVseprFingerprint fp(*Smiles("CCO"), {});
  EXPECT_FALSE(fp.Setup(*h2, {}));  // and what was there is gone
  EXPECT_TRUE(fp.IsEmpty());
  EXPECT_EQ(fp.GetVolume(), 0.0);
  EXPECT_FALSE(ZqPrepVsepr(*h2, {}));
  EXPECT_EQ(ZqGetVseprFingerprint(*h2), nullptr);
  const Mol deuterated = Smiles("[2H]OC");
  EXPECT_FALSE(fp.Setup(deuterated->GetAtom(0), {}));
  EXPECT_FALSE(fp.Setup(deuterated->GetBond(0), {}));  // [2H]-O
  EXPECT_TRUE(fp.IsEmpty());
  EXPECT_TRUE(ZqMakeVseprAtomFingerprints(*deuterated, {})[0].IsEmpty());
}

TEST(VseprFingerprint, AtomFingerprintsFromOneSearchEqualSetupOnEachAtom) {
  Refs refs = ReadRefs();
  refs.mols["deuterated"] = Smiles("[2H]OC1CC1");
  for (const char* name : {"default", "long", "min3max2", "bylength", "noforce"}) {
    const ZqVseprOptions& options = refs.options.at(name);
    for (const auto& [key, mol] : refs.mols) {
      if (key == "chain") continue;  // 300 atoms, nothing new
      const std::vector<ZqVseprFingerprint> atoms = ZqMakeVseprAtomFingerprints(*mol, options);
      ASSERT_EQ(atoms.size(), mol->GetNumAtoms());
      for (std::size_t a = 0; a < atoms.size(); ++a) {
        const ZqVseprFingerprint one(mol->GetAtom(a), options);
        EXPECT_TRUE(SameBins(atoms[a], WeightsOf(one))) << name << " " << key << " atom " << a;
        EXPECT_EQ(atoms[a].GetVolume(), one.GetVolume());
        EXPECT_EQ(atoms[a].GetOptions(), options);
      }
    }
  }
}

TEST(VseprFingerprint, PreparedMoleculesCompareThroughStoredFingerprints) {
  Mol a = Smiles("c1ccccc1CCN"), b = Smiles("c1ccccc1CCO"), c = Smiles("CCCC");
  ZqVseprOptions options;
  options.SetWeightByLength(true);
  ASSERT_TRUE(ZqPrepVsepr(*a, options) && ZqPrepVsepr(*b, options));
  ASSERT_NE(ZqGetVseprFingerprint(*a), nullptr);
  EXPECT_EQ(ZqGetVseprFingerprint(*a)->GetOptions(), options);
  EXPECT_TRUE(SameBins(*ZqGetVseprFingerprint(*a), WeightsOf(ZqVseprFingerprint(*a, options))));
  const double t = ZqGetVseprTanimoto(*a, *b, -1.0);
  EXPECT_EQ(t, ZqVseprFingerprint(*a, options).GetTanimoto({*b, options}));
  EXPECT_TRUE(t > 0.0 && t < 1.0) << t;
  EXPECT_EQ(ZqGetVseprTanimoto(*a, *c, -7.5), -7.5);  // c not prepared
  EXPECT_EQ(ZqGetVseprTanimoto(*c, *a, -7.5), -7.5);
  EXPECT_EQ(ZqGetVseprTanimoto(*Mol(a->CreateCopy()), *a, -1.0), 1.0);  // a copy keeps it
}

TEST(VseprFingerprint, ScaledSummedAndMinimumFingerprints) {
  ZqVseprOptions options;
  options.SetMinPathLength(0);
  const ZqVseprFingerprint a(*Smiles("OCC(O)CO"), options), b(*Smiles("CCCO"), options), empty;
  const double va = a.GetVolume(), vb = b.GetVolume();
  ASSERT_GT(va, 0.0);
  ZqVseprFingerprint twice = a;
  twice.Scale(2.0);
  EXPECT_EQ(twice.GetVolume(), 2 * va);
  EXPECT_EQ(twice.GetTanimoto(a), 0.5);                             // va over 2 va
  EXPECT_EQ(ZqVseprFingerprint(a).Scale(1.0).GetTanimoto(a), 1.0);  // real weights against bytes
  EXPECT_EQ((a + b).GetTanimoto(a), va / (va + vb));
  EXPECT_EQ((twice & a).GetVolume(), va);
  // Weights below zero count as none.
  ZqVseprFingerprint negative = a;
  negative.Scale(-1.0);
  EXPECT_EQ(negative.GetVolume(), -va);
  EXPECT_EQ(negative.GetTanimoto(b), 0.0);
  EXPECT_EQ(negative.GetTanimoto(negative), 1.0);  // nothing on either side
  EXPECT_EQ((negative + twice).GetTanimoto(a), 1.0);
  EXPECT_EQ((a & negative).GetVolume(), -va);
  // The empty fingerprint weighs nothing and takes the other side's options.
  EXPECT_EQ(empty.GetTanimoto(a), 0.0);
  EXPECT_EQ(empty.GetTanimoto(empty), 1.0);
  EXPECT_NE(options, ZqVseprOptions());
  EXPECT_EQ((empty + a).GetOptions(), options);
  EXPECT_EQ((empty & a).GetOptions(), options);
  EXPECT_TRUE((empty & a).IsEmpty());
  EXPECT_TRUE(SameBins(empty + a, WeightsOf(a)));
  ZqVseprFingerprint sum;
  sum += a;
  sum += b;
  EXPECT_EQ(sum.GetOptions(), options);
  EXPECT_TRUE(SameBins(sum, WeightsOf(a + b)));
  EXPECT_TRUE(ZqVseprFingerprint(empty).Scale(3.0).IsEmpty());
}

}  // namespace
}  // namespace Printex
