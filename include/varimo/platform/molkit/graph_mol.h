// A molecule whose graph can be changed: a private copy made for drawing,
// from which hydrogens are removed and to which 2-D coordinates and atom
// radii are given, without touching the molecule it was copied from.
//
//   Molkit::ZqGraphMol mol(query);
//   Molkit::ZqSuppressHydrogens(mol, false, false, true);
//   Molkit::ZqAssignBondiVdWRadii(mol);
#pragma once

#include "varimo/platform/molkit/molecule.h"

namespace Molkit {

class ZqGraphMol : public ZqMolBase {
 public:
  // A copy of the molecule: graph, coordinates, name, SD data and the
  // generic data of the molecule, its atoms and bonds.
  explicit ZqGraphMol(const ZqMolBase& mol) : ZqMolBase(mol) {}
  ZqMolBase* CreateCopy() const override { return new ZqGraphMol(*this); }

  // For the library's own code: the RDKit molecule to edit, then
  // GraphChanged() when atoms or bonds came or went.
  ZqMolGraph& EditGraph() { return GetMutableGraph(); }
  void GraphChanged() { MakeAtomsAndBonds(); }
};

// Removes hydrogen atoms from the graph, as RDKit's removeHs does with the
// same three choices: only those without a reason to stay explicit
// (`implicitOnly`), raising their heavy atoms' explicit counts
// (`updateExplicitCount`), sanitising afterwards (`sanitize`). Atoms and
// bonds are made anew, without generic data. False, leaving the molecule
// as it was, when RDKit refuses.
bool ZqSuppressHydrogens(ZqGraphMol& mol, bool implicitOnly, bool updateExplicitCount, bool sanitize);

// Gives each atom its van der Waals radius in angstrom (Bondi's, or RDKit's
// for the elements Bondi gave none) as double data under
// ZqBondiVdWRadiusTag().
void ZqAssignBondiVdWRadii(ZqGraphMol& mol);
unsigned int ZqBondiVdWRadiusTag();

}  // namespace Molkit
