// Property functions on molecules: SD data and generic data, the order in
// which multi-conformer molecules are searched, the values cached by
// PrepMol, and the molecular weight and log10 functions.
#include "varimo/mol/mol_properties.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "varimo/platform/corvane/generic_data.h"

namespace Varimo {
namespace {

std::unique_ptr<ZqMolBase> Mol(const std::string& smiles) {
  std::unique_ptr<ZqMolBase> mol = Molkit::ZqMolFromSmiles(smiles);
  EXPECT_NE(mol, nullptr) << smiles;
  return mol;
}

TEST(MolProperties, SDDataThatDoesNotConvertFallsBackToGenericData) {
  auto mol = Mol("CCO");
  mol->SetSDData("logP", "n/a");
  mol->SetData(Corvane::ZqGetTag("logP"), 0.25);
  EXPECT_FALSE(ZqSCMolGetSDData("logP").Has(*mol));
  EXPECT_EQ(ZqSCMolGetSDData("logP").Get(*mol), 0.0);
  EXPECT_TRUE(ZqSCMolGetTagged("logP").Has(*mol));
  EXPECT_EQ(ZqSCMolGetTagged("logP").Get(*mol), 0.25);
  mol->SetSDData("logP", " -1.5e1 ");
  EXPECT_EQ(ZqSCMolGetTagged("logP").Get(*mol), -15.0);  // SD data first when they convert

  // A float counts only when converting.
  mol->SetData(Corvane::ZqGetTag("charge"), 0.5f);
  EXPECT_FALSE(ZqSCMolGetGenericData("charge", false).Has(*mol));
  EXPECT_TRUE(ZqSCMolGetGenericData("charge", true).Has(*mol));
  EXPECT_TRUE(ZqSCMolGetTagged("charge").Has(*mol));
  EXPECT_EQ(ZqSCMolGetTagged("charge").Get(*mol), 0.5);
  // A double among other data under the tag is found; the first one counts.
  mol->AddData(Corvane::ZqGetTag("charge"), std::string("text"));
  mol->AddData(Corvane::ZqGetTag("charge"), 2.0);
  mol->AddData(Corvane::ZqGetTag("charge"), 3.0);
  EXPECT_EQ(ZqSCMolGetGenericData("charge", false).Get(*mol), 2.0);
  EXPECT_FALSE(ZqSCMolGetTagged("missing").Has(*mol));
  EXPECT_EQ(ZqSCMolGetTagged("missing").Get(*mol), 0.0);

  // Copies of a handle are independent of the original.
  std::unique_ptr<ZqPropertyFxn<ZqMolBase>> copy(ZqSCMolGetTagged("logP").CreateCopy());
  EXPECT_EQ(copy->Get(*mol), -15.0);
}

TEST(MolProperties, MultiConformerMoleculesAreSearchedInOrder) {
  auto first = Mol("CCN");
  ZqMCMolBase mc(*first);
  for (int c = 0; c < 3; ++c) ASSERT_TRUE(mc.AddConf(*first));
  // The tag only on the third conformer.
  mc.GetConf(2).SetSDData("energy", "-7.5");
  EXPECT_FALSE(ZqMCMolGetTagged("energy", false, false).Has(mc));
  EXPECT_FALSE(ZqMCMolGetTagged("energy", true, false).Has(mc));
  EXPECT_TRUE(ZqMCMolGetTagged("energy", false, true).Has(mc));
  EXPECT_EQ(ZqMCMolGetTagged("energy", false, true).Get(mc), -7.5);
  ASSERT_TRUE(mc.SetActiveConf(2));
  EXPECT_TRUE(ZqMCMolGetSDData("energy", true, false).Has(mc));
  // The molecule itself comes before its conformers.
  mc.SetSDData("energy", "1");
  mc.GetConf(0).SetData(Corvane::ZqGetTag("energy"), 9.0);
  EXPECT_EQ(ZqMCMolGetTagged("energy", true, true).Get(mc), 1.0);
  EXPECT_EQ(ZqMCMolGetGenericData("energy", false, false, true).Get(mc), 9.0);
  EXPECT_EQ(ZqMCMolGetGenericData("energy", false, false, false).Get(mc), 0.0);

  ZqMCMolPropertyList list;
  list.PushTag("energy", false, false);
  EXPECT_TRUE(list.HasProperties(mc));
  EXPECT_EQ(list.GetProperty(mc, 0), 1.0);
}

TEST(MolProperties, PrepMolCachesTheValuesAndTrustsThem) {
  auto mol = Mol("c1ccccc1O");
  mol->SetSDData("a", "1.5");
  mol->SetSDData("b", "2.5");
  ZqSCMolPropertyList list("a");
  list.PushTag("b");
  ASSERT_EQ(list.GetSize(), 2u);
  const unsigned int cache = Corvane::ZqGetTag("ZqMolPropertyListFxn_PrepMol_Cache");

  // A missing property: false, and nothing stored.
  ZqSCMolPropertyList withMissing = list;
  withMissing.PushTag("c");
  EXPECT_FALSE(withMissing.PrepMol(*mol));
  EXPECT_FALSE(mol->HasData(cache));
  EXPECT_TRUE(ZqSCMolPropertyList().PrepMol(*mol));  // an empty list stores nothing
  EXPECT_FALSE(mol->HasData(cache));

  ASSERT_TRUE(list.PrepMol(*mol));
  ASSERT_NE(mol->GetData<std::vector<double>>(cache), nullptr);
  EXPECT_EQ(*mol->GetData<std::vector<double>>(cache), (std::vector<double>{1.5, 2.5}));
  // Stale values are used as they stand...
  mol->SetSDData("a", "100");
  EXPECT_EQ(list.GetProperty(*mol, 0), 1.5);
  // ...but a cache of another length is not this list's: computed afresh.
  ZqSCMolPropertyList one("a");
  EXPECT_EQ(one.GetProperty(*mol, 0), 100.0);
  // A copy of the molecule carries the cache along.
  const ZqMolBase copy(*mol);
  EXPECT_EQ(list.GetProperty(copy, 1), 2.5);
  list.Clear();
  EXPECT_EQ(list.GetSize(), 0u);
}

TEST(MolProperties, MolecularWeightAndItsLogarithm) {
  // Standard atomic weights: 6 x 12.011 (C) + 6 x 1.008 (H) = 78.114.
  auto benzene = Mol("c1ccccc1");
  const ZqMolecularWeightPropertyFxn weight;
  EXPECT_NEAR(weight.Get(*benzene), 78.114, 1e-9);
  const ZqMolLog10PropertyFxn logWeight(weight);
  EXPECT_TRUE(logWeight.Has(*benzene));
  EXPECT_NEAR(logWeight.Get(*benzene), std::log10(78.114), 1e-12);

  // Defined only where the value is positive.
  benzene->SetSDData("zero", "0");
  benzene->SetSDData("negative", "-3");
  benzene->SetSDData("ten", "10");
  EXPECT_FALSE(ZqMolLog10PropertyFxn(Molkit::ZqMolSDDataPropertyFxn("zero")).Has(*benzene));
  EXPECT_FALSE(ZqMolLog10PropertyFxn(Molkit::ZqMolSDDataPropertyFxn("negative")).Has(*benzene));
  EXPECT_EQ(ZqMolLog10PropertyFxn(Molkit::ZqMolSDDataPropertyFxn("ten")).Get(*benzene), 1.0);

  // On a multi-conformer molecule the SD field of the active conformer
  // stands in for a missing one of the molecule.
  ZqMCMolBase mc(*benzene);
  mc.AddConf(*benzene);
  mc.GetConf(1).SetSDData("x", "4");
  mc.SetActiveConf(1);
  Molkit::ZqMolPropertyPushList drift;
  drift.Push(Molkit::ZqMolSDDataPropertyFxn("x"));
  drift.Push(weight);
  EXPECT_TRUE(drift.HasProperties(mc));
  EXPECT_FALSE(drift.HasProperties(*benzene));
  EXPECT_EQ(drift.GetProperty(mc, 0), 4.0);
  std::unique_ptr<Molkit::ZqMolPropertyList> copy(drift.CreateCopy());
  EXPECT_NEAR(copy->GetProperty(mc, 1), 78.114, 1e-9);
  Molkit::ZqMolPropertyPushList assigned;
  assigned.Push(Molkit::ZqMolSDDataPropertyFxn("ten"));
  assigned = drift;
  ASSERT_EQ(assigned.GetSize(), 2u);
  EXPECT_EQ(assigned.GetProperty(mc, 0), 4.0);
}

}  // namespace
}  // namespace Varimo
