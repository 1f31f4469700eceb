#include "varimo/platform/molkit/graph_mol.h"

#include <GraphMol/MolOps.h>
#include <GraphMol/PeriodicTable.h>

#include <exception>
#include <iterator>

#include "mol_graph.h"

namespace Molkit {

bool ZqSuppressHydrogens(ZqGraphMol& mol, bool implicitOnly, bool updateExplicitCount, bool sanitize) {
  // RDKit edits in place and may throw halfway (sanitising a strange
  // valence): it works on a copy that replaces the graph only when done.
  RDKit::RWMol edited(mol.EditGraph().mol);
  try {
    RDKit::MolOps::removeHs(edited, implicitOnly, updateExplicitCount, sanitize);
  } catch (const std::exception&) {
    return false;
  }
  // Copied, not moved: RDKit's move assignment of RWMol leaks the atoms
  // and bonds it replaces.
  mol.EditGraph().mol = edited;
  mol.GraphChanged();
  return true;
}

unsigned int ZqBondiVdWRadiusTag() {
  static const unsigned int tag = Corvane::ZqGetTag("ZqBondiVdWRadius");
  return tag;
}

namespace {

// Bondi's van der Waals radii (J. Phys. Chem. 68, 441 (1964)), in angstrom,
// by atomic number; 0 where he gave none.
constexpr double kBondi[] = {
    0.0,  1.20, 1.40, 1.82, 0.0,  0.0,  1.70, 1.55, 1.52, 1.47, 1.54,  // - H He Li Be B C N O F Ne
    2.27, 1.73, 0.0,  2.10, 1.80, 1.80, 1.75, 1.88, 2.75, 0.0,         // Na Mg Al Si P S Cl Ar K Ca
    0.0,  0.0,  0.0,  0.0,  0.0,  0.0,  0.0,  1.63, 1.40, 1.39,        // Sc .. Zn
    1.87, 0.0,  1.85, 1.90, 1.85, 2.02, 0.0,  0.0,  0.0,  0.0,         // Ga Ge As Se Br Kr Rb Sr Y Zr
    0.0,  0.0,  0.0,  0.0,  0.0,  1.63, 1.72, 1.58, 1.93, 2.17,        // Nb .. Sn
    0.0,  2.06, 1.98, 2.16};                                           // Sb Te I Xe

}  // namespace

void ZqAssignBondiVdWRadii(ZqGraphMol& mol) {
  const RDKit::PeriodicTable* table = RDKit::PeriodicTable::getTable();
  for (ZqAtomBase& atom : mol.GetAtomIter()) {
    const unsigned int z = atom.GetAtomicNum();
    const double bondi = z < std::size(kBondi) ? kBondi[z] : 0.0;
    // Elements Bondi left out take RDKit's radius of the element.
    atom.SetData(ZqBondiVdWRadiusTag(), bondi > 0.0 ? bondi : table->getRvdw(z));
  }
}

}  // namespace Molkit
