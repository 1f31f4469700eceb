// The Euclidean distance between two vectors of doubles, the distance for
// kriging on numeric descriptors.
#pragma once

#include <cstddef>
#include <vector>

#include "varimo/krige/training_container.h"

namespace Varimo {

// sqrt(sum over k of (x[k] - y[k])^2), summed in a fixed order (four partial
// sums over k mod 4, then added pairwise) so that the result does not
// depend on the build. NaN for vectors of different sizes.
//
// With a number of dimensions d, over the first d coordinates only, and NaN
// for a vector shorter than d: elements may then carry more values than
// their position, for example the drift properties of universal kriging.
class ZqEuclideanDistance final : public ZqKrigeDistanceFxn<std::vector<double>> {
 public:
  ZqEuclideanDistance() = default;
  explicit ZqEuclideanDistance(std::size_t dimensions) : dimensions_(dimensions), prefix_(true) {}

  double operator()(const std::vector<double>& x, const std::vector<double>& y) const override;
  ZqEuclideanDistance* CreateCopy() const override { return new ZqEuclideanDistance(*this); }

  // The dimensions compared; 0 for all.
  std::size_t GetDimensions() const { return prefix_ ? dimensions_ : 0; }

 private:
  std::size_t dimensions_ = 0;
  bool prefix_ = false;
};

}  // namespace Varimo
