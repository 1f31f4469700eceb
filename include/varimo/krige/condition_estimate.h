// The conditioning of a covariance matrix, estimated from solves alone, so
// that it does not depend on which factorisation (Cholesky, LDL', a LAPACK
// routine) stands behind the solves.
#pragma once

#include <Eigen/Core>

#include <functional>

namespace Varimo {

// An estimate of the reciprocal condition number 1 / (|A|_1 |A^-1|_1) of a
// symmetric n x n matrix A from its 1-norm and a routine that overwrites b
// with A^-1 b. |A^-1|_1 comes from Hager's method with Higham's safeguard
// (the estimator of LAPACK's xLACN2): at most eleven solves, O(n^2) each,
// and an estimate that is a lower bound of the norm, most often the norm
// itself, so that the reciprocal condition comes out at or a little above
// the true one. 0 for a solve that gives a number that is not finite; 1 for
// n = 0.
double ZqEstimateReciprocalCondition(double normOne, Eigen::Index n,
                                     const std::function<void(Eigen::VectorXd&)>& solveInPlace);

}  // namespace Varimo
