// The distance correlation of Szekely and Rizzo and its test statistic.
#include <Eigen/Core>
#include <cmath>

#include "statistic_support.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {

using namespace StatisticDetail;

namespace {

struct DistanceMoments {
  double dCov2 = 0.0, dVarX = 0.0, dVarY = 0.0;
  double meanDistX = 0.0, meanDistY = 0.0;  // of the uncentred matrices
};

// |v_i - v_j| for all i, j.
Eigen::ArrayXXd DistanceMatrix(const Eigen::ArrayXd& v) {
  const Eigen::Index n = v.size();
  return (v.replicate(1, n) - v.transpose().replicate(n, 1)).abs();
}

// Subtracts row and column means and adds back the grand mean.
Eigen::ArrayXXd DoublyCentred(const Eigen::ArrayXXd& d) {
  const Eigen::Index n = d.rows();
  const Eigen::ArrayXd rowMeans = d.rowwise().mean();
  const Eigen::ArrayXd colMeans = d.colwise().mean().transpose();
  return d - rowMeans.replicate(1, n) - colMeans.transpose().replicate(n, 1) + d.mean();
}

DistanceMoments GetDistanceMoments(const ZqPairSample& pairs) {
  const auto n = static_cast<Eigen::Index>(pairs.size());
  Eigen::ArrayXd x(n), y(n);
  for (Eigen::Index i = 0; i < n; ++i) {
    x[i] = pairs[static_cast<std::size_t>(i)].first;
    y[i] = pairs[static_cast<std::size_t>(i)].second;
  }
  const Eigen::ArrayXXd a = DistanceMatrix(x), b = DistanceMatrix(y);
  const Eigen::ArrayXXd centredA = DoublyCentred(a), centredB = DoublyCentred(b);
  const double n2 = static_cast<double>(n) * static_cast<double>(n);
  DistanceMoments m;
  m.dCov2 = (centredA * centredB).sum() / n2;
  m.dVarX = centredA.square().sum() / n2;
  m.dVarY = centredB.square().sum() / n2;
  m.meanDistX = a.mean();
  m.meanDistY = b.mean();
  return m;
}

}  // namespace

double ZqDistanceCorrelation::operator()(const ZqPairSample& pairs) const {
  if (!AllFinite(pairs)) return kBad;
  if (pairs.empty()) return 0.0;
  const DistanceMoments m = GetDistanceMoments(pairs);
  if (m.dVarX >= kEps && m.dVarY >= kEps && m.dCov2 >= kEps) return std::sqrt(m.dCov2 / std::sqrt(m.dVarX * m.dVarY));
  return 0.0;
}

double ZqDistanceCovarTestStat::operator()(const ZqPairSample& pairs) const {
  if (pairs.empty() || !AllFinite(pairs)) return kBad;
  const DistanceMoments m = GetDistanceMoments(pairs);
  if (m.meanDistX == 0.0 || m.meanDistY == 0.0) return kBad;
  return static_cast<double>(pairs.size()) * m.dCov2 / (m.meanDistX * m.meanDistY);
}

}  // namespace Varimo
