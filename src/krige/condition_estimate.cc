#include "varimo/krige/condition_estimate.h"

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
  return inverseNorm > 0.0 ? 1.0 / (normOne * inverseNorm) : 0.0;
}

}  // namespace Varimo
