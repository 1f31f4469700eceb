// Farthest-first selection of items from their distance matrix: a subset
// that covers the items as evenly as a greedy walk can, for hold-out sets
// that span the data rather than cluster in it.
#pragma once

#include <Eigen/Core>
#include <cstdint>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {

// Marks `count` of the n items of a square distance matrix with 1 in
// `selected` (n entries, the rest 0), routine
// "ZqGetMaximalCoverageDistanceSubMatrix". The first item is drawn
// uniformly; each next one is the item farthest from all those marked so
// far, the lowest index winning a tie. When every item is at distance 0 from
// the marked ones the walk stays where it is, so fewer items may end up
// marked. A count of 0 still marks the first item when n > 0.
// A count above n fails with ArgumentOutOfRange, a matrix that is not
// square with WrongInputMatrixSize; selected is then empty. O(count n).
ZqStatModelResult ZqGetMaximalCoverageDistanceSubMatrix(Numarc::ZqRanNumEngine& engine,
                                                        std::vector<std::uint32_t>& selected, std::uint64_t count,
                                                        const Eigen::MatrixXd& distanceMatrix);

}  // namespace Varimo
