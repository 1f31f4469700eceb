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
  // Four partial sums, of the coordinates k = 0, 1, 2, 3 (mod 4): four
  // chains of additions that the processor runs side by side, where one
  // chain waits on each addition. Tabling the distances and the queries'
  // covariances is the largest cost of a global fit outside the BLAS.
  double sums[4] = {0.0, 0.0, 0.0, 0.0};
  const double* a = x.data();
  const double* b = y.data();
  std::size_t k = 0;
  for (; k + 4 <= count; k += 4) {
    for (std::size_t j = 0; j < 4; ++j) {
      const double difference = a[k + j] - b[k + j];
      sums[j] += difference * difference;
    }
  }
  for (; k < count; ++k) {
    const double difference = a[k] - b[k];
    sums[k % 4] += difference * difference;
  }
  return std::sqrt((sums[0] + sums[1]) + (sums[2] + sums[3]));
}

}  // namespace Varimo
