// Random orderings of row indices, for resampling and cross-validation folds.
#pragma once

#include <cstddef>
#include <vector>

#include "varimo/platform/numarc/random_engine.h"

namespace Numarc {

// Replaces the contents of `indices` with 0, 1, ..., n-1 in uniformly random
// order (every permutation equally likely), drawn from `engine`. n = 0 leaves
// `indices` empty. The same engine state gives the same order.
void ZqRandomShuffleOfIndices(std::vector<std::size_t>& indices, std::size_t n,
                              ZqRanNumEngine& engine);

}  // namespace Numarc
