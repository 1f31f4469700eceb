// A k-d tree over the leading coordinates of vectors of doubles: the
// neighbour search of local kriging with ZqEuclideanDistance(dimensions)
// (or ZqEuclideanDistance() on vectors of exactly that size).
//
//   Varimo::ZqLocalOrdinaryKrige<std::vector<double>> model(Varimo::ZqEuclideanDistance(2), 100, ...);
//   model.SetNeighbourSearch(Varimo::ZqKdTreeNeighbourSearch(2));
//
// Building costs O(n log n) and n times the dimensions in doubles; a query
// visits O(log n + count) nodes for points spread in few dimensions. In
// many dimensions the tree degenerates towards a scan, but stays correct.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "varimo/krige/neighbour_search.h"

namespace Varimo {

class ZqKdTreeNeighbourSearch final : public ZqKrigeNeighbourSearch<std::vector<double>> {
 public:
  explicit ZqKdTreeNeighbourSearch(std::size_t dimensions);
  ~ZqKdTreeNeighbourSearch() override;
  ZqKdTreeNeighbourSearch(const ZqKdTreeNeighbourSearch& other);
  ZqKdTreeNeighbourSearch& operator=(const ZqKdTreeNeighbourSearch&) = delete;

  // False for no dimensions, for an element shorter than the dimensions or
  // with a coordinate that is not finite.
  bool Build(const std::vector<const std::vector<double>*>& elements) override;
  // The `count` nearest by the tree's own sum of squares; `bound` keeps a
  // relative margin of 1e-12 below the farthest of them, far above the
  // rounding by which that sum can differ from the distance functor's.
  bool Candidates(const std::vector<double>& query, std::size_t count, std::vector<std::size_t>& indices,
                  double& bound) const override;
  ZqKrigeNeighbourSearch<std::vector<double>>* CreateCopy() const override {
    return new ZqKdTreeNeighbourSearch(dimensions_);
  }

  std::size_t GetDimensions() const { return dimensions_; }

 private:
  struct Index;
  std::size_t dimensions_;
  std::unique_ptr<Index> index_;
};

}  // namespace Varimo
