#include "varimo/krige/condition_estimate.h"

#include <algorithm>
#include <cmath>

namespace Varimo {

double ZqEstimateReciprocalCondition(double normOne, Eigen::Index n,
                                     const std::function<void(Eigen::VectorXd&)>& solveInPlace) {
  if (n == 0) return 1.0;
  if (!(normOne > 0.0) || !std::isfinite(normOne)) return 0.0;
  // Hager (1984): maximise |A^-1 x|_1 over the unit 1-ball by steps along
  // the gradient sign(A^-1 x), which for a symmetric A needs no transposed
  // solve; the maximum is reached at a vertex e_j.
  Eigen::VectorXd x = Eigen::VectorXd::Constant(n, 1.0 / static_cast<double>(n));
  double inverseNorm = 0.0;
  for (int step = 0; step < 5; ++step) {
    Eigen::VectorXd y = x;
    solveInPlace(y);
    const double norm = y.lpNorm<1>();
    if (!std::isfinite(norm)) return 0.0;
    if (step > 0 && norm <= inverseNorm) break;
    inverseNorm = norm;
    Eigen::VectorXd z = y.unaryExpr([](double v) { return v >= 0.0 ? 1.0 : -1.0; });
    solveInPlace(z);
    if (!z.allFinite()) return 0.0;
    Eigen::Index j = 0;
    const double largest = z.cwiseAbs().maxCoeff(&j);
    if (step > 0 && largest <= z.dot(x)) break;
    x = Eigen::VectorXd::Unit(n, j);
  }
  // Higham's safeguard, as LAPACK's xLACN2: a vector of alternating signs
  // and growing size, which the steps above can miss when the matrix is
  // symmetric about the start (two near-duplicate elements, say).
  Eigen::VectorXd alternating(n);
  for (Eigen::Index i = 0; i < n; ++i) {
    const double growth = n > 1 ? static_cast<double>(i) / static_cast<double>(n - 1) : 0.0;
    alternating(i) = (i % 2 == 0 ? 1.0 : -1.0) * (1.0 + growth);
  }
  solveInPlace(alternating);
  if (!alternating.allFinite()) return 0.0;
  inverseNorm = std::max(inverseNorm, 2.0 * alternating.lpNorm<1>() / (3.0 * static_cast<double>(n)));
  return inverseNorm > 0.0 ? 1.0 / (normOne * inverseNorm) : 0.0;
}

}  // namespace Varimo
