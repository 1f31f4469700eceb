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

// A molecule taking over `graph`.
std::unique_ptr<ZqMolBase> ZqMakeMol(std::unique_ptr<ZqMolGraph> graph);

}  // namespace Molkit
