// The lower triangle of the distances between a model's unique elements:
// row u holds d(u, v) for v < u. The rows are packed into large blocks
// instead of being allocated one by one. Rows allocated beside each new
// element would scatter the elements over the whole table, and every query
// and every new element reads all of them back: scattered, each read misses
// the cache, which doubled the time of the distances.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace Varimo::krige_detail {

class DistanceTriangle {
 public:
  DistanceTriangle() = default;
  // The copy packs every row into one block.
  DistanceTriangle(const DistanceTriangle& other) {
    const std::size_t total = Values(other.rows_.size());
    if (total > 0) NewBlock(total);
    rows_.reserve(other.rows_.size());
    for (std::size_t u = 0; u < other.rows_.size(); ++u) {
      double* row = NextRow(u);
      std::copy(other.rows_[u], other.rows_[u] + u, row);
      rows_.push_back(row);
      used_ += u;
    }
  }
  DistanceTriangle& operator=(const DistanceTriangle& other) {
    if (this != &other) *this = DistanceTriangle(other);
    return *this;
  }
  DistanceTriangle(DistanceTriangle&&) noexcept = default;
  DistanceTriangle& operator=(DistanceTriangle&&) noexcept = default;

  double At(std::size_t u, std::size_t v) const { return rows_[u][v]; }

  // Room for the next row (one value per row so far), valid until the next
  // call; the row joins the table at CommitRow, and is dropped when it
  // never does.
  double* NextRow() { return NextRow(rows_.size()); }
  void CommitRow() {
    const std::size_t length = rows_.size();
    rows_.push_back(NextRow(length));
    used_ += length;
  }

  void Clear() {
    blocks_.clear();
    rows_.clear();
    size_ = used_ = 0;
  }

 private:
  // Blocks grow from 32 KiB to 16 MiB: small models stay small, and a large
  // table loses at most one row at the end of each block.
  static constexpr std::size_t kFirstBlock = std::size_t{1} << 12;
  static constexpr std::size_t kLargestBlock = std::size_t{1} << 21;

  static std::size_t Values(std::size_t rows) { return rows < 2 ? 0 : rows * (rows - 1) / 2; }

  void NewBlock(std::size_t size) {
    blocks_.push_back(std::make_unique_for_overwrite<double[]>(size));
    size_ = size;
    used_ = 0;
  }

  double* NextRow(std::size_t length) {
    if (length == 0) return nullptr;
    if (blocks_.empty() || used_ + length > size_) {
      NewBlock(std::max(length, std::clamp(2 * size_, kFirstBlock, kLargestBlock)));
    }
    return blocks_.back().get() + used_;
  }

  std::vector<std::unique_ptr<double[]>> blocks_;
  std::size_t size_ = 0;  // of the last block
  std::size_t used_ = 0;  // of the last block
  std::vector<double*> rows_;
};

}  // namespace Varimo::krige_detail
