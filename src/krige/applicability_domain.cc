#include "varimo/krige/applicability_domain_impl.h"

#include <cmath>

#include "varimo/krige/vector_krige.h"
#include "varimo/statistics/quantile.h"

namespace Varimo {

ZqApplicabilityDomain::ZqApplicabilityDomain(std::vector<double> nearestDistances, const ZqDomainOptions& options)
    : nearest_(std::move(nearestDistances)), radius_(options.radius) {
  std::vector<double> sorted;
  for (double d : nearest_) {
    if (std::isfinite(d)) sorted.push_back(d);
  }
  if (sorted.size() < 2 || !(options.quantile >= 0.0 && options.quantile <= 1.0)) return;
  std::sort(sorted.begin(), sorted.end());
  const double q = ZqQuantile(options.quantile, sorted, 8);
  // ZqQuantile marks a level below 1/n with the negative bad value: below
  // the first point, the smallest distance is the threshold.
  threshold_ = std::fabs(q) >= 1e300 ? (q < 0.0 ? sorted.front() : sorted.back()) : q;
}

ZqDomainAssessment ZqApplicabilityDomain::Assess(const std::vector<double>& distances, double variance,
                                                 double priorVariance) const {
  ZqDomainAssessment a;
  const double radius = GetRadius();
  for (double d : distances) {
    if (std::isnan(d)) continue;
    if (std::isnan(a.nearestDistance) || d < a.nearestDistance) a.nearestDistance = d;
    if (d <= radius) ++a.withinRadius;
  }
  a.nearestSimilarity = 1.0 - a.nearestDistance;
  if (variance >= 0.0 && priorVariance > 0.0 && variance < 1e300) a.sdRatio = std::sqrt(variance / priorVariance);
  a.inDomain = a.nearestDistance <= threshold_;
  return a;
}

ZqDomainAssessment ZqApplicabilityDomain::Assess(const ZqKrigeResult& result) const {
  if (!result.Valid()) return {};
  std::vector<double> distances;
  for (unsigned int e = 0; e < result.GetNumElements(); ++e) distances.push_back(result.GetDistance(e));
  constexpr double kFailed = 1.7976931348623157e308;
  return Assess(distances, ZqCalculateVariance(result, kFailed), result.GetKernel().GetSill());
}

template std::vector<double> ZqNearestOtherDistances(const std::vector<const ZqVectorElement*>&,
                                                     const ZqKrigeDistanceFxn<ZqVectorElement>&);
template ZqApplicabilityDomain ZqApplicabilityDomain::FromModel(const ZqKrigeBase<ZqVectorElement>&,
                                                                const ZqDomainOptions&);

}  // namespace Varimo
