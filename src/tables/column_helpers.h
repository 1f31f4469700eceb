// Internal helpers shared by the column kinds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace Varimo::ColumnDetail {

// Number of elements to reserve for numRows rows. Reserving is only an
// optimisation, so an absurd request (one that overflows, or that a caller
// made by mistake) reserves nothing instead of failing to allocate.
std::uint64_t ElementsToReserve(std::uint64_t numRows, std::uint64_t numCols, bool lowerTriangular);

// Doubles in ascending order with every NaN after all numbers. Sorting by
// plain < is undefined once a NaN is present, and a ratio column may hold
// one read from a file.
inline bool DoubleLess(double a, double b) { return a < b || (!std::isnan(a) && std::isnan(b)); }
inline bool DoubleSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// Sorted distinct values; the input is a copy the caller gives up.
inline std::vector<double> DistinctSorted(std::vector<double> values) {
  std::sort(values.begin(), values.end(), DoubleLess);
  values.erase(std::unique(values.begin(), values.end(), DoubleSame), values.end());
  return values;
}

template <class T>
std::vector<T> DistinctSorted(std::vector<T> values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  return values;
}

}  // namespace Varimo::ColumnDetail
