// The features of a molecule that make its Vsepr fingerprint (bond paths
// and atom environments), with the atoms and bonds of each, so that atoms
// and bonds can pick out their own.
#pragma once

#include <GraphMol/ROMol.h>

#include <cstdint>
#include <functional>
#include <span>

#include "varimo/platform/printex/vsepr_fingerprint.h"

namespace Printex {

// One feature, valid during the call that hands it over.
struct ZqVseprFeature {
  std::uint32_t bin;     // below ZqVseprFingerprint::kNumBins
  std::uint32_t weight;  // 1, or the length in bonds with WeightByLength
  std::span<const int> atoms;
  std::span<const int> bonds;  // empty for an atom alone
};

// Hands every path of the chosen lengths between heavy atoms to `visit`,
// each once, then the shorter paths that ForcePathsOut adds, then the
// environments of each heavy atom whose diameter is a chosen length. The
// atoms and bonds of an environment are given only with `members` (they
// cost more than its identifier); a path always has them.
void ZqVisitVseprFeatures(const RDKit::ROMol& mol, const ZqVseprOptions& options, bool members,
                          const std::function<void(const ZqVseprFeature&)>& visit);

}  // namespace Printex
