// The links of one item in a near-neighbour graph: which items it shares
// mutual neighbourhood with, and how strongly (the size of the overlap of the
// two neighbour lists). The shared-nearest-neighbour clustering keeps one
// record per item in an ordered set, keyed by the item alone.
#pragma once

#include <utility>
#include <vector>

#include "varimo/platform/corvane/iter.h"

namespace Varimo {

// (neighbour index, strength).
using ZqStrValue = std::pair<unsigned int, unsigned int>;

class ZqNNStrength {
 public:
  using Values = std::vector<ZqStrValue>;

  // The item alone, with no links.
  explicit ZqNNStrength(unsigned int smallIdx) : smallIdx(smallIdx) {}
  // The item with one link to `neighbour` of `strength`.
  ZqNNStrength(unsigned int smallIdx, unsigned int neighbour, unsigned int strength)
      : smallIdx(smallIdx), values_{ZqStrValue(neighbour, strength)} {}

  unsigned int GetSmallIdx() const { return smallIdx; }
  // The number of links.
  unsigned int GetStrCt() const { return static_cast<unsigned int>(values_.size()); }
  // Appends a link; duplicates are kept.
  void Add(const ZqStrValue& value) { values_.push_back(value); }

  // The links in the order added; views valid until the next Add.
  Corvane::ZqIter<ZqStrValue> GetValues() {
    return Corvane::ZqMakeIterView<ZqStrValue>(values_.begin(), values_.end());
  }
  Corvane::ZqIter<const ZqStrValue> GetValues() const {
    return Corvane::ZqMakeIterView<const ZqStrValue>(values_.cbegin(), values_.cend());
  }

  // By item only, so that a set holds one record per item whatever its links.
  bool operator<(const ZqNNStrength& other) const { return smallIdx < other.smallIdx; }

  unsigned int smallIdx;

 private:
  Values values_;
};

}  // namespace Varimo
