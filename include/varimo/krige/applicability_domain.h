// The applicability domain of a model: whether a query lies among the
// training elements or outside what the model has seen.
//
//   Varimo::ZqApplicabilityDomain domain = Varimo::ZqApplicabilityDomain::FromModel(model);
//   Varimo::ZqDomainAssessment a = domain.Assess(model.GetKrigeResult(query));
//   if (!a.inDomain) ...
//
// The threshold comes from the training set itself: each unique training
// element's distance to its nearest other element (leave one out: an
// element is never its own neighbour, and copies of it, at distance 0, are
// the same element), and of those the quantile `quantile` (type 8, default
// 0.95). A query whose nearest training element is within the threshold is
// in the domain: it is as close to the training set as 95 % of the
// training elements are to the rest of it.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/training_container.h"

namespace Varimo {

struct ZqDomainOptions {
  double quantile = 0.95;
  // The distance within which training elements are counted; NaN for the
  // threshold.
  double radius = std::numeric_limits<double>::quiet_NaN();
};

struct ZqDomainAssessment {
  double nearestDistance = std::numeric_limits<double>::quiet_NaN();
  // 1 - nearestDistance: the similarity of the nearest training element
  // for a distance that is one minus a similarity (Tanimoto).
  double nearestSimilarity = std::numeric_limits<double>::quiet_NaN();
  // Unique training elements within the radius. From a local model's
  // result only the neighbours are seen, so the count stops at their
  // number.
  std::size_t withinRadius = 0;
  // The prediction's sd over the prior sd (the square root of the sill):
  // near 0 on a training element, near 1 where the data say nothing.
  double sdRatio = std::numeric_limits<double>::quiet_NaN();
  bool inDomain = false;
};

class ZqApplicabilityDomain {
 public:
  // No threshold: nothing is in the domain.
  ZqApplicabilityDomain() = default;
  // From the leave-one-out nearest distances of the unique training
  // elements; fewer than two elements, or a quantile outside [0, 1] (NaN
  // included), leave the threshold NaN.
  ZqApplicabilityDomain(std::vector<double> nearestDistances, const ZqDomainOptions& options);

  // From a trained global model's table of distances between its unique
  // elements, or a local model's records (copies folded, each pair's
  // distance computed once). Any other model gives no threshold.
  template <class T>
  static ZqApplicabilityDomain FromModel(const ZqKrigeBase<T>& model, const ZqDomainOptions& options = {});

  double GetThreshold() const { return threshold_; }
  double GetRadius() const { return std::isnan(radius_) ? threshold_ : radius_; }
  std::size_t GetNumElements() const { return nearest_.size(); }

  // From the distances of a query to every unique training element, and
  // its variance against the prior variance (the sill).
  ZqDomainAssessment Assess(const std::vector<double>& distances, double variance, double priorVariance) const;
  // From a prediction: its elements' distances, its variance and its
  // kernel's sill. An invalid result is out of the domain.
  ZqDomainAssessment Assess(const ZqKrigeResult& result) const;

 private:
  std::vector<double> nearest_;
  double threshold_ = std::numeric_limits<double>::quiet_NaN();
  double radius_ = std::numeric_limits<double>::quiet_NaN();
};

// The leave-one-out nearest distances of elements under a distance: each
// distinct element's distance to its nearest other distinct one (elements
// within 1e-30 of each other being one). O(n^2) distance calls.
template <class T>
std::vector<double> ZqNearestOtherDistances(const std::vector<const T*>& elements, const ZqKrigeDistanceFxn<T>& distance);

}  // namespace Varimo
