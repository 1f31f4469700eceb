// Molecule drawings: hydrogens suppressed, radii, 2-D coordinates and
// their orientation, property maps painted over a drawing, and drawings
// placed on images and written to files.
#include "varimo/platform/lineart/depiction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "png_pixels.h"
#include "varimo/platform/inkmap/prop_map.h"
#include "varimo/platform/lineart/recorded_image.h"
#include "varimo/platform/molkit/graph_mol.h"

namespace Lineart {
namespace {

Molkit::ZqGraphMol Graph(const std::string& smiles) {
  std::unique_ptr<Molkit::ZqMolBase> mol = Molkit::ZqMolFromSmiles(smiles);
  EXPECT_TRUE(mol) << smiles;
  return Molkit::ZqGraphMol(*mol);
}

// Extent of the atom positions along x and y.
std::pair<double, double> Extent(const Molkit::ZqMolBase& mol) {
  double x0 = 1e300, x1 = -1e300, y0 = 1e300, y1 = -1e300;
  for (std::size_t a = 0; a < mol.GetNumAtoms(); ++a) {
    const auto p = mol.GetAtomPosition(a);
    x0 = std::min(x0, p[0]);
    x1 = std::max(x1, p[0]);
    y0 = std::min(y0, p[1]);
    y1 = std::max(y1, p[1]);
  }
  return {x1 - x0, y1 - y0};
}

TEST(Depiction, SuppressionKeepsLabelledHydrogensAndRadiiComeFromTheElements) {
  // The readers leave only hydrogens that carry information (here an
  // isotope); suppression, as RDKit's removeHs, keeps those too.
  Molkit::ZqGraphMol mol = Graph("[2H]OCC(=O)Cl");
  ASSERT_EQ(mol.GetNumAtoms(), 6u);
  ASSERT_TRUE(Molkit::ZqSuppressHydrogens(mol, false, false, true));
  ASSERT_EQ(mol.GetNumAtoms(), 6u);
  EXPECT_EQ(mol.GetAtom(0).GetAtomicNum(), 1u);
  Molkit::ZqAssignBondiVdWRadii(mol);
  // Bondi's radii (1964): H 1.20, O 1.52, C 1.70, Cl 1.75 angstrom; Ca, which
  // he left out, takes RDKit's 2.4 (Chem.GetPeriodicTable().GetRvdw(20) in Python).
  const auto radius = [&](std::size_t a) { return *mol.GetAtom(a).GetData<double>(Molkit::ZqBondiVdWRadiusTag()); };
  EXPECT_NEAR(radius(1), 1.52, 1e-9);
  EXPECT_NEAR(radius(2), 1.70, 1e-9);
  EXPECT_NEAR(radius(5), 1.75, 1e-9);
  EXPECT_NEAR(radius(0), 1.20, 1e-9);
  Molkit::ZqGraphMol calcium = Graph("[Ca+2]");
  Molkit::ZqAssignBondiVdWRadii(calcium);
  EXPECT_NEAR(*calcium.GetAtom(0).GetData<double>(Molkit::ZqBondiVdWRadiusTag()), 2.4, 1e-9);
}

TEST(Depiction, CoordinatesAreFlatAndTurnedForTheFrame) {
  // A long chain with a branch: clearly longer one way than the other.
  for (unsigned int orientation : {3u, 4u}) {
    Molkit::ZqGraphMol mol = Graph("CCCCCCCCCC(C)CCCC");
    ZqPrepareDepictionOptions options(false, true);
    options.SetOrientation(orientation);
    ASSERT_TRUE(ZqPrepareDepiction(mol, options));
    ASSERT_TRUE(mol.HasCoordinates());
    for (std::size_t a = 0; a < mol.GetNumAtoms(); ++a) EXPECT_EQ(mol.GetAtomPosition(a)[2], 0.0);
    const auto [wide, high] = Extent(mol);
    if (orientation == 3) {
      EXPECT_GT(wide, 3.0 * high);
    } else {
      EXPECT_GT(high, 3.0 * wide);
    }
  }
  // Kept coordinates stay where they were; an empty molecule fails.
  Molkit::ZqGraphMol mol = Graph("c1ccccc1O");
  ZqPrepareDepictionOptions first(false, false);
  ASSERT_TRUE(ZqPrepareDepiction(mol, first));
  const auto before = mol.GetAtomPosition(6);
  ZqPrepareDepictionOptions keep(true, true);
  ASSERT_TRUE(ZqPrepareDepiction(mol, keep));
  EXPECT_EQ(mol.GetAtomPosition(6), before);
  Molkit::ZqGraphMol empty{Molkit::ZqMolBase()};
  EXPECT_FALSE(ZqPrepareDepiction(empty, keep));
}

TEST(Depiction, PropertyMapColoursAtomsByTheirValues) {
  Molkit::ZqGraphMol mol = Graph("OCC(=O)N");
  const unsigned int tag = Corvane::ZqGetTag("Contribution");
  mol.GetAtom(0).SetData(tag, 1.0);
  mol.GetAtom(1).SetData(tag, 0.0);
  mol.GetAtom(3).SetData(tag, -0.5);
  mol.GetAtom(4).SetData(tag, -7.0);  // clipped to the minimum
  Zq2DMolDisplay display(mol, Zq2DMolDisplayOptions(200, 150, 0));
  Inkmap::Zq2DPropMap map(Corvane::ZqWhite);
  map.SetPositiveColor(Corvane::ZqBlue);
  map.SetNegativeColor(Corvane::ZqRed);
  map.SetMinValue(-1.0);
  map.SetMaxValue(1.0);
  EXPECT_FALSE(map.Render(display, "no such tag"));
  EXPECT_TRUE(display.GetAtomMarks().empty());
  ASSERT_TRUE(map.Render(display, "Contribution"));
  const auto& marks = display.GetAtomMarks();
  ASSERT_EQ(marks.size(), 4u);  // atom 2 has no value
  EXPECT_EQ(marks.at(0).color, Corvane::ZqBlue);
  EXPECT_EQ(marks.at(1).color, Corvane::ZqWhite);
  EXPECT_EQ(marks.at(3).color, Corvane::ZqColor(255, 128, 128));  // halfway from white to red
  EXPECT_EQ(marks.at(4).color, Corvane::ZqRed);
  EXPECT_GT(marks.at(0).radius, marks.at(3).radius);
  EXPECT_EQ(marks.at(0).radius, marks.at(4).radius);
  EXPECT_FALSE(display.GetColorKey());
}

TEST(Depiction, DrawingsArePlacedAndWrittenWithTheirColours) {
  Molkit::ZqGraphMol mol = Graph("Oc1ccc(cc1)C(=O)N");
  ASSERT_TRUE(ZqPrepareDepiction(mol, ZqPrepareDepictionOptions(false, true)));
  const unsigned int tag = Corvane::ZqGetTag("Contribution");
  for (std::size_t a = 0; a < mol.GetNumAtoms(); ++a) mol.GetAtom(a).SetData(tag, a < 4 ? 0.9 : -0.9);
  Zq2DMolDisplay display(mol, Zq2DMolDisplayOptions(300, 200, 0));
  Inkmap::Zq2DPropMap map(Corvane::ZqWhite);
  map.SetPositiveColor(Corvane::ZqColor(0, 0, 255));
  map.SetNegativeColor(Corvane::ZqColor(255, 0, 0));
  map.SetLegendLocation(1);
  ASSERT_TRUE(map.Render(display, "Contribution"));
  ASSERT_TRUE(display.GetColorKey());

  ZqImage page(400, 300);
  ZqImageFrame frame(page, 300, 200, {50, 60});
  ASSERT_TRUE(ZqRenderMolecule(frame, display, true));
  ASSERT_EQ(page.GetCalls().size(), 2u);  // the drawing, then its border
  EXPECT_EQ(page.GetCalls()[0].kind, ZqDrawCall::Kind::Molecule);
  EXPECT_EQ(page.GetCalls()[0].a, Zq2DPoint(50, 60));
  EXPECT_EQ(page.GetCalls()[1].kind, ZqDrawCall::Kind::Rectangle);

  const std::string path = ::testing::TempDir() + "depiction_test.png";
  ASSERT_TRUE(ZqWriteImage(path, page));
  const PngPixels png(path);
  std::remove(path.c_str());
  ASSERT_TRUE(png.Read());
  EXPECT_EQ(png.Width(), 400);
  int bluish = 0, reddish = 0, dark = 0;
  for (int y = 0; y < 300; ++y) {
    for (int x = 0; x < 400; ++x) {
      const std::uint32_t p = png.At(x, y);
      const int r = p >> 16, g = (p >> 8) & 0xFF, b = p & 0xFF;
      if (b > 200 && g < 120 && r < 120) ++bluish;
      if (r > 200 && g < 120 && b < 120) ++reddish;
      const bool inside = x > 52 && x < 347 && y > 62 && y < 257;
      if (inside && r < 60 && g < 60 && b < 60) ++dark;
      // Nothing of the molecule lands outside its frame.
      if (x < 49 || y < 59) {
        EXPECT_TRUE(png.IsWhite(x, y)) << x << "," << y;
      }
    }
  }
  EXPECT_GT(bluish, 50);
  EXPECT_GT(reddish, 50);
  // The bonds, drawn by RDKit on the page's own context, inside the border.
  EXPECT_GT(dark, 300);
}

}  // namespace
}  // namespace Lineart
