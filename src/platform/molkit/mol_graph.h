// The RDKit molecule behind a Molkit::ZqMolBase, for the library's own
// sources only: the public headers name it but never include RDKit.
#pragma once

#include <GraphMol/RWMol.h>

#include <memory>

#include "varimo/platform/molkit/molecule.h"

namespace Molkit {

struct ZqMolGraph {
  RDKit::RWMol mol;
};

// The atom property that keeps an atom's index in its file record when
// explicit hydrogens are taken out of the graph.
inline constexpr const char* kRecordAtomIndexProperty = "_varimoRecordAtomIndex";
// Takes the hydrogens out of a molecule read with them (RDKit's removeHs),
// each remaining atom keeping its index before as kRecordAtomIndexProperty.
void ZqRemoveHydrogensKeepingRecordIndices(RDKit::RWMol& mol);

// A molecule taking over `graph`.
std::unique_ptr<ZqMolBase> ZqMakeMol(std::unique_ptr<ZqMolGraph> graph);

}  // namespace Molkit
