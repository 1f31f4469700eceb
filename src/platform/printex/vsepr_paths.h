// The features of a molecule that make its Vsepr fingerprint (bond paths
// and atom environments), with the atoms and bonds of each, so that atoms
// and bonds can pick out their own.
#pragma once

#include <GraphMol/ROMol.h>

#include <cstdint>
#include <vector>

#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Printex {

struct ZqVseprFeature {
  std::uint32_t bin;     // below ZqVseprFingerprint::kNumBins
  std::uint32_t weight;  // 1, or the length in bonds with WeightByLength
  std::vector<int> atoms;
  std::vector<int> bonds;  // empty for an atom alone
};

// Every path of the chosen lengths between heavy atoms, each once, the
// shorter paths that ForcePathsOut adds, then the environments of each
// heavy atom whose diameter is a chosen length.
std::vector<ZqVseprFeature> ZqFindVseprFeatures(const RDKit::ROMol& mol, const ZqVseprOptions& options);

}  // namespace Printex
