#include "varimo/krige/euclidean_distance.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace Varimo {

double ZqEuclideanDistance::operator()(const std::vector<double>& x, const std::vector<double>& y) const {
  std::size_t count = x.size();
  if (prefix_) {
    if (x.size() < dimensions_ || y.size() < dimensions_) return std::numeric_limits<double>::quiet_NaN();
    count = dimensions_;
  } else if (x.size() != y.size()) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  double sum = 0.0;
  for (std::size_t k = 0; k < count; ++k) {
    const double difference = x[k] - y[k];
    sum += difference * difference;
  }
  return std::sqrt(sum);
}

}  // namespace Varimo
