// The symmetric indefinite factorisation, the symmetric eigen decomposition
// and the thin SVD, each by Eigen below its threshold and LAPACK from it on.
#include <Eigen/Cholesky>
#include <Eigen/Eigenvalues>
#include <Eigen/SVD>
#include <lapacke.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "dense_backend.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

using DenseDetail::UseLapack;

// Eigen's LDLT below the threshold; LAPACK's dsytrf factors, lower
// triangle, with their pivots from it on.
struct ZqSymmetricIndefiniteFactor::Factors {
  Eigen::LDLT<Eigen::MatrixXd> ldlt;
  Eigen::MatrixXd lapackFactor;
  std::vector<lapack_int> pivots;
  bool lapack = false;
};

ZqSymmetricIndefiniteFactor::ZqSymmetricIndefiniteFactor() = default;
ZqSymmetricIndefiniteFactor::~ZqSymmetricIndefiniteFactor() = default;
ZqSymmetricIndefiniteFactor::ZqSymmetricIndefiniteFactor(const ZqSymmetricIndefiniteFactor&) = default;
ZqSymmetricIndefiniteFactor& ZqSymmetricIndefiniteFactor::operator=(const ZqSymmetricIndefiniteFactor&) = default;

bool ZqSymmetricIndefiniteFactor::Compute(Eigen::MatrixXd matrix) {
  factors_.reset();
  auto factors = std::make_shared<Factors>();
  const Eigen::Index n = matrix.rows();
  bool valid = false;
  if (UseLapack(n, DenseDetail::kIndefiniteOrder)) {
    factors->lapack = true;
    factors->pivots.resize(static_cast<std::size_t>(n));
    const auto order = static_cast<lapack_int>(n);
    // info > 0: a diagonal block of D is exactly singular.
    valid = LAPACKE_dsytrf(LAPACK_COL_MAJOR, 'L', order, matrix.data(), order, factors->pivots.data()) == 0;
    factors->lapackFactor = std::move(matrix);
    // A NaN passes dsytrf silently and ends up in D or L.
    for (Eigen::Index c = 0; c < n && valid; ++c) valid = factors->lapackFactor.col(c).tail(n - c).allFinite();
  } else {
    factors->ldlt.compute(matrix);
    valid = factors->ldlt.info() == Eigen::Success && factors->ldlt.vectorD().allFinite();
  }
  if (valid) factors_ = std::move(factors);
  return valid;
}

void ZqSymmetricIndefiniteFactor::Clear() { factors_.reset(); }

bool ZqSymmetricIndefiniteFactor::Valid() const { return factors_ != nullptr; }

Eigen::Index ZqSymmetricIndefiniteFactor::Order() const {
  if (!factors_) return 0;
  return factors_->lapack ? factors_->lapackFactor.rows() : factors_->ldlt.rows();
}

Eigen::VectorXd ZqSymmetricIndefiniteFactor::Solve(const Eigen::VectorXd& b) const {
  if (!factors_->lapack) return factors_->ldlt.solve(b);
  Eigen::VectorXd x = b;
  const auto order = static_cast<lapack_int>(factors_->lapackFactor.rows());
  LAPACKE_dsytrs_work(LAPACK_COL_MAJOR, 'L', order, 1, factors_->lapackFactor.data(), order,
                      factors_->pivots.data(), x.data(), std::max<lapack_int>(order, 1));
  return x;
}

bool ZqSymmetricEigenInPlace(Eigen::MatrixXd& matrix, Eigen::VectorXd& eigenvalues) {
  const Eigen::Index n = matrix.rows();
  if (!UseLapack(n, DenseDetail::kEigenOrder)) {
    Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(matrix);
    if (solver.info() != Eigen::Success) return false;
    eigenvalues = solver.eigenvalues();
    matrix = solver.eigenvectors();
    return true;
  }
  eigenvalues.resize(n);
  const auto order = static_cast<lapack_int>(n);
  return LAPACKE_dsyevd(LAPACK_COL_MAJOR, 'V', 'L', order, matrix.data(), std::max<lapack_int>(order, 1),
                        eigenvalues.data()) == 0;
}

bool ZqThinSvd(const Eigen::MatrixXd& m, Eigen::MatrixXd& u, Eigen::VectorXd& s, Eigen::MatrixXd& v) {
  const Eigen::Index rows = m.rows(), cols = m.cols(), k = std::min(rows, cols);
  if (!UseLapack(k, DenseDetail::kSvdSide) || !DenseDetail::FitsLapack(std::max(rows, cols))) {
    const Eigen::JacobiSVD<Eigen::MatrixXd> svd(m, Eigen::ComputeThinU | Eigen::ComputeThinV);
    if (svd.info() != Eigen::Success) return false;
    u = svd.matrixU();
    s = svd.singularValues();
    v = svd.matrixV();
    return true;
  }
  Eigen::MatrixXd a = m;
  Eigen::MatrixXd vt(k, cols);
  u.resize(rows, k);
  s.resize(k);
  const auto r = static_cast<lapack_int>(rows), c = static_cast<lapack_int>(cols);
  const lapack_int info = LAPACKE_dgesdd(LAPACK_COL_MAJOR, 'S', r, c, a.data(), std::max<lapack_int>(r, 1),
                                         s.data(), u.data(), std::max<lapack_int>(r, 1), vt.data(),
                                         std::max<lapack_int>(static_cast<lapack_int>(k), 1));
  v = vt.transpose();
  return info == 0;
}

}  // namespace Varimo
