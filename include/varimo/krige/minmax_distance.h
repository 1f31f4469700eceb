// The min-max distance between vectors of non-negative numbers: one minus
// the Tanimoto coefficient generalised to counts, the distance chemists use
// on count fingerprints (RDKit's Morgan counts as rows of a numpy array, for
// example). On vectors of 0 and 1 it is one minus the Tanimoto coefficient
// of the bit sets.
//
//   Varimo::ZqMinMaxDistance distance;
//   distance({2, 0, 1}, {1, 1, 1});  // 1 - (1 + 0 + 1) / (2 + 1 + 1) = 0.5
#pragma once

#include <cstddef>
#include <vector>

#include "varimo/krige/training_container.h"

namespace Varimo {

// 1 - sum over k of min(x[k], y[k]) / sum over k of max(x[k], y[k]), in
// [0, 1]; 0 for two vectors of zeros, which are the same element. NaN for
// vectors of different sizes and for a value that is negative or not
// finite: the measure is defined on counts, and a model must not see such a
// row (ZqIsUsableRow of vector_model.h says which rows it may).
//
// With a number of dimensions d, over the first d coordinates only, as
// ZqEuclideanDistance(d): the elements of universal kriging carry their
// drift values after their position.
class ZqMinMaxDistance final : public ZqKrigeDistanceFxn<std::vector<double>> {
 public:
  ZqMinMaxDistance() = default;
  explicit ZqMinMaxDistance(std::size_t dimensions) : dimensions_(dimensions), prefix_(true) {}

  double operator()(const std::vector<double>& x, const std::vector<double>& y) const override;
  ZqMinMaxDistance* CreateCopy() const override { return new ZqMinMaxDistance(*this); }

  // The dimensions compared; 0 for all.
  std::size_t GetDimensions() const { return prefix_ ? dimensions_ : 0; }

 private:
  std::size_t dimensions_ = 0;
  bool prefix_ = false;
};

}  // namespace Varimo
