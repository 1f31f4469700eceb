// The drift of varimo-krige's universal kriging. An element is the values
// of the F feature columns followed by those of the m drift columns; the
// distance reads the first F (Varimo::ZqEuclideanDistance(F)) and the drift
// the last m.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "varimo/krige/property_list.h"

namespace VarimoKrige {

class TrailingDrift final : public Varimo::ZqPropertyListFxn<std::vector<double>> {
 public:
  TrailingDrift(std::size_t numFeatures, std::size_t numDrift) : numFeatures_(numFeatures), numDrift_(numDrift) {}

  // A missing drift cell reads as NaN; refusing the element keeps it out of
  // the drift's least-squares fit and the kriging system.
  bool HasProperties(const std::vector<double>& element) const override {
    if (element.size() != numFeatures_ + numDrift_) return false;
    for (std::size_t k = numFeatures_; k < element.size(); ++k) {
      if (!std::isfinite(element[k])) return false;
    }
    return true;
  }
  std::size_t GetSize() const override { return numDrift_; }
  double GetProperty(const std::vector<double>& element, std::size_t index) const override {
    return element[numFeatures_ + index];
  }
  Varimo::ZqPropertyListFxn<std::vector<double>>* CreateCopy() const override { return new TrailingDrift(*this); }

 private:
  std::size_t numFeatures_;
  std::size_t numDrift_;
};

}  // namespace VarimoKrige
