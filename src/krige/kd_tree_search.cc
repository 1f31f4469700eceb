#include "varimo/krige/kd_tree_search.h"

#include <nanoflann.hpp>

#include <cmath>
#include <cstdint>
#include <limits>

namespace Varimo {

namespace {

// Margin between the tree's distances and the bound it promises: any
// element the tree left out is at least this close to the farthest one it
// gave, whatever the rounding of the two distance computations.
constexpr double kBoundMargin = 1e-12;

}  // namespace

// The coordinates, row by row, as nanoflann's dataset adaptor.
struct ZqKdTreeNeighbourSearch::Index {
  using Metric = nanoflann::L2_Simple_Adaptor<double, Index>;
  using Tree = nanoflann::KDTreeSingleIndexAdaptor<Metric, Index, -1, std::uint32_t>;

  std::size_t dimensions = 0;
  std::vector<double> coordinates;
  std::unique_ptr<Tree> tree;

  std::size_t kdtree_get_point_count() const { return dimensions == 0 ? 0 : coordinates.size() / dimensions; }
  double kdtree_get_pt(std::uint32_t index, std::size_t dimension) const {
    return coordinates[static_cast<std::size_t>(index) * dimensions + dimension];
  }
  template <class Box>
  bool kdtree_get_bbox(Box&) const {
    return false;  // let the tree compute it
  }
};

ZqKdTreeNeighbourSearch::ZqKdTreeNeighbourSearch(std::size_t dimensions) : dimensions_(dimensions) {}

ZqKdTreeNeighbourSearch::~ZqKdTreeNeighbourSearch() = default;

ZqKdTreeNeighbourSearch::ZqKdTreeNeighbourSearch(const ZqKdTreeNeighbourSearch& other)
    : ZqKrigeNeighbourSearch(other), dimensions_(other.dimensions_) {
  if (other.index_) {
    index_ = std::make_unique<Index>();
    index_->dimensions = other.index_->dimensions;
    index_->coordinates = other.index_->coordinates;
    index_->tree = std::make_unique<Index::Tree>(dimensions_, *index_);
  }
}

bool ZqKdTreeNeighbourSearch::Build(const std::vector<const std::vector<double>*>& elements) {
  index_.reset();
  // The tree numbers its points in 32 bits.
  if (dimensions_ == 0 || elements.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  auto index = std::make_unique<Index>();
  index->dimensions = dimensions_;
  index->coordinates.reserve(elements.size() * dimensions_);
  for (const std::vector<double>* element : elements) {
    if (element->size() < dimensions_) return false;
    for (std::size_t k = 0; k < dimensions_; ++k) {
      if (!std::isfinite((*element)[k])) return false;
      index->coordinates.push_back((*element)[k]);
    }
  }
  if (!elements.empty()) index->tree = std::make_unique<Index::Tree>(dimensions_, *index);
  index_ = std::move(index);
  return true;
}

bool ZqKdTreeNeighbourSearch::Candidates(const std::vector<double>& query, std::size_t count,
                                         std::vector<std::size_t>& indices, double& bound) const {
  indices.clear();
  if (!index_ || query.size() < dimensions_) return false;
  for (std::size_t k = 0; k < dimensions_; ++k) {
    if (!std::isfinite(query[k])) return false;
  }
  const std::size_t total = index_->kdtree_get_point_count();
  const std::size_t wanted = std::min(count, total);
  if (wanted == 0 || wanted == total) {
    // Every element: nothing is left out.
    indices.resize(total);
    for (std::size_t i = 0; i < total; ++i) indices[i] = i;
    bound = std::numeric_limits<double>::max();
    return true;
  }
  std::vector<std::uint32_t> found(wanted);
  std::vector<double> squares(wanted);
  const std::size_t got = index_->tree->knnSearch(query.data(), wanted, found.data(), squares.data());
  double farthest = 0.0;
  indices.reserve(got);
  for (std::size_t i = 0; i < got; ++i) {
    indices.push_back(found[i]);
    farthest = std::max(farthest, squares[i]);
  }
  bound = std::sqrt(farthest) * (1.0 - kBoundMargin);
  return true;
}

}  // namespace Varimo
