// ZqCholeskyFactor. Below the threshold the factor is an Eigen matrix
// factorised by Eigen's blocked LLT; from it on, LAPACK's rectangular full
// packed form (RFP) with dpftrf and dtfsm, which run on the BLAS's level-3
// kernels like the full-storage routines but hold one triangle only: the
// global kriging models keep the factor beside a distance table of the same
// size, and would otherwise need three triangles in all.
#include <Eigen/Cholesky>
#include <lapacke.h>

#include <algorithm>
#include <cmath>

#include "dense_backend.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {
namespace {

using DenseDetail::UseLapack;

// The RFP form used here, TRANSR = 'N' and UPLO = 'U', of a matrix of
// order n with h = floor(n / 2): a column-major array with a leading
// dimension of n + 1 (n even) or n (n odd) and n - h columns. Column c >= h
// of the upper triangle is column c - h of the array, rows 0 to c; column
// c < h lies transposed along row c + h + 1 of the array, one leading
// dimension apart.
Eigen::Index PackedLeading(Eigen::Index n) { return n % 2 == 0 ? n + 1 : n; }

// The leading dimension of right-hand sides for LAPACK: a single column
// bound to a matrix reference may report a stride of its own length or 1.
lapack_int Leading(const Eigen::Ref<Eigen::MatrixXd>& b, Eigen::Index order) {
  return static_cast<lapack_int>(std::max({b.outerStride(), order, Eigen::Index{1}}));
}

}  // namespace

void ZqCholeskyFactor::Reset(Eigen::Index n) {
  valid_ = false;
  order_ = n;
  packed_ = UseLapack(n, DenseDetail::kCholeskyOrder);
  if (packed_) {
    full_.resize(0, 0);
    rfp_.resize(n * (n + 1) / 2);
  } else {
    rfp_.resize(0);
    full_.resize(n, n);
  }
}

ZqCholeskyFactor::Column ZqCholeskyFactor::UpperColumn(Eigen::Index c) {
  if (!packed_) return {full_.col(c).data(), 1};
  const Eigen::Index half = order_ / 2, leading = PackedLeading(order_);
  if (c >= half) return {rfp_.data() + (c - half) * leading, 1};
  return {rfp_.data() + c + half + 1, leading};
}

double ZqCholeskyFactor::Pivot(Eigen::Index c) const {
  // Where UpperColumn(c) keeps row c.
  if (!packed_) return full_(c, c);
  const Eigen::Index half = order_ / 2, leading = PackedLeading(order_);
  return c >= half ? rfp_[(c - half) * leading + c] : rfp_[c + half + 1 + c * leading];
}

bool ZqCholeskyFactor::Factorise() {
  if (packed_) {
    valid_ = LAPACKE_dpftrf_work(LAPACK_COL_MAJOR, 'N', 'U', static_cast<lapack_int>(order_), rfp_.data()) == 0;
  } else {
    const Eigen::LLT<Eigen::Ref<Eigen::MatrixXd>, Eigen::Upper> llt(full_);
    valid_ = llt.info() == Eigen::Success;
  }
  // Both stop at a pivot <= 0 but let a NaN through; a NaN or an infinity
  // anywhere in the triangle reaches the pivot of its column.
  for (Eigen::Index c = 0; c < order_ && valid_; ++c) valid_ = std::isfinite(UpperColumn(c)[c]);
  return valid_;
}

bool ZqCholeskyFactor::Compute(const Eigen::Ref<const Eigen::MatrixXd>& matrix) {
  Reset(matrix.rows());
  for (Eigen::Index c = 0; c < order_; ++c) {
    const Column column = UpperColumn(c);
    for (Eigen::Index r = 0; r <= c; ++r) column[r] = matrix(r, c);
  }
  return Factorise();
}

void ZqCholeskyFactor::Clear() {
  order_ = 0;
  valid_ = false;
  packed_ = false;
  full_.resize(0, 0);
  rfp_.resize(0);
}

void ZqCholeskyFactor::TriangularSolveInPlace(Eigen::Ref<Eigen::MatrixXd> b, bool transposed) const {
  if (packed_) {
    LAPACKE_dtfsm_work(LAPACK_COL_MAJOR, 'N', 'L', 'U', transposed ? 'T' : 'N', 'N', static_cast<lapack_int>(order_),
                       static_cast<lapack_int>(b.cols()), 1.0, rfp_.data(), b.data(), Leading(b, order_));
  } else if (b.cols() == 1) {
    // Eigen's matrix-vector solve runs about twice as fast as its blocked
    // path on a single column.
    if (transposed) {
      full_.triangularView<Eigen::Upper>().transpose().solveInPlace(b.col(0));
    } else {
      full_.triangularView<Eigen::Upper>().solveInPlace(b.col(0));
    }
  } else if (transposed) {
    full_.triangularView<Eigen::Upper>().transpose().solveInPlace(b);
  } else {
    full_.triangularView<Eigen::Upper>().solveInPlace(b);
  }
}

void ZqCholeskyFactor::WhitenInPlace(Eigen::Ref<Eigen::MatrixXd> b) const { TriangularSolveInPlace(b, true); }

void ZqCholeskyFactor::BackSolveInPlace(Eigen::Ref<Eigen::MatrixXd> b) const { TriangularSolveInPlace(b, false); }

void ZqCholeskyFactor::SolveInPlace(Eigen::Ref<Eigen::MatrixXd> b) const {
  WhitenInPlace(b);
  BackSolveInPlace(b);
}

}  // namespace Varimo
