// Neighbour searches for the local kriging models. Without one, a local
// model finds the neighbours of each query by computing its distance to
// every training element, which for large sets dominates the cost of a
// query. An element type with a metric structure (points in a vector
// space) can do better with a spatial index. The index only proposes
// candidates: the model still computes the distances with its own distance
// functor and orders the neighbours by them, so that neighbourhoods and
// results are those of the full scan.
#pragma once

#include <cstddef>
#include <vector>

namespace Varimo {

template <class T>
class ZqKrigeNeighbourSearch {
 public:
  virtual ~ZqKrigeNeighbourSearch() = default;
  // Indexes the training elements in record order. False when they cannot
  // be indexed (for example a coordinate that is not finite): the model
  // then scans.
  virtual bool Build(const std::vector<const T*>& elements) = 0;
  // Fills `indices` with at least min(count, number indexed) element
  // numbers, among them every element whose distance to the query is below
  // `bound` (the largest double when every element is listed). False when
  // the query cannot be searched: the model then scans.
  virtual bool Candidates(const T& query, std::size_t count, std::vector<std::size_t>& indices,
                          double& bound) const = 0;
  // A new search of the same kind and settings, not yet built, owned by the
  // caller.
  virtual ZqKrigeNeighbourSearch* CreateCopy() const = 0;
};

}  // namespace Varimo
