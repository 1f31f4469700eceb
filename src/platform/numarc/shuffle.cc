#include "varimo/platform/numarc/shuffle.h"

#include <algorithm>
#include <numeric>

namespace Numarc {

void ZqRandomShuffleOfIndices(std::vector<std::size_t>& indices, std::size_t n,
                              ZqRanNumEngine& engine) {
  indices.resize(n);
  std::iota(indices.begin(), indices.end(), std::size_t{0});
  std::shuffle(indices.begin(), indices.end(), engine);
}

}  // namespace Numarc
