// Definitions of the templates of applicability_domain.h. Include in one
// source file per element type; the library compiles them for vectors and
// fingerprints.
#pragma once

#include <algorithm>
#include <limits>

#include "varimo/krige/applicability_domain.h"
#include "varimo/krige/local_krige.h"
#include "varimo/krige/standard_krige.h"

namespace Varimo {

template <class T>
std::vector<double> ZqNearestOtherDistances(const std::vector<const T*>& elements, const ZqKrigeDistanceFxn<T>& distance) {
  constexpr double kSameElement = 1e-30;
  const std::size_t n = elements.size();
  // Copies fold into the first element of their group, as the training
  // container folds them.
  std::vector<std::size_t> distinct;
  std::vector<std::vector<double>> table;  // row k: distances to distinct elements before k
  for (std::size_t i = 0; i < n; ++i) {
    std::vector<double> row;
    bool copy = false;
    for (std::size_t k = 0; k < distinct.size() && !copy; ++k) {
      row.push_back(distance(*elements[i], *elements[distinct[k]]));
      copy = row.back() < kSameElement;
    }
    if (copy) continue;
    distinct.push_back(i);
    table.push_back(std::move(row));
  }
  std::vector<double> nearest(distinct.size(), std::numeric_limits<double>::infinity());
  for (std::size_t a = 0; a < table.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      nearest[a] = std::min(nearest[a], table[a][b]);
      nearest[b] = std::min(nearest[b], table[a][b]);
    }
  }
  if (distinct.size() < 2) nearest.clear();
  return nearest;
}

template <class T>
ZqApplicabilityDomain ZqApplicabilityDomain::FromModel(const ZqKrigeBase<T>& model, const ZqDomainOptions& options) {
  using Storage = ZqKrigeDefaultElementStorage<T>;
  std::vector<double> nearest;
  if (const auto* global = dynamic_cast<const ZqStandardKrigeImpl<T, Storage>*>(&model)) {
    const auto& container = global->GetContainer();
    const std::size_t u = container.GetNumUnique();
    if (u >= 2) nearest.assign(u, std::numeric_limits<double>::infinity());
    for (std::size_t a = 0; a < u && u >= 2; ++a) {
      for (std::size_t b = 0; b < a; ++b) {
        const double d = container.GetUniqueDistance(a, b);
        nearest[a] = std::min(nearest[a], d);
        nearest[b] = std::min(nearest[b], d);
      }
    }
  } else if (const auto* local = dynamic_cast<const ZqLocalKrigeImpl<T, Storage>*>(&model)) {
    std::vector<const T*> elements;
    for (std::size_t i = 0; i < local->GetNumData(); ++i) elements.push_back(&local->GetDataElement(i));
    nearest = ZqNearestOtherDistances(elements, local->GetDistanceFxn());
  }
  return ZqApplicabilityDomain(std::move(nearest), options);
}

}  // namespace Varimo
