// The Euclidean distance between two vectors of doubles, the distance for
// kriging on numeric descriptors.
#pragma once

#include <vector>

#include "varimo/krige/training_container.h"

namespace Varimo {

// sqrt(sum over k of (x[k] - y[k])^2), summed in index order so that the
// result does not depend on the build. NaN for vectors of different sizes.
class ZqEuclideanDistance final : public ZqKrigeDistanceFxn<std::vector<double>> {
 public:
  double operator()(const std::vector<double>& x, const std::vector<double>& y) const override;
  ZqEuclideanDistance* CreateCopy() const override { return new ZqEuclideanDistance(*this); }
};

}  // namespace Varimo
