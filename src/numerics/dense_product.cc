// The matrix product, on the BLAS from the size where its run-time chosen
// kernels beat Eigen's compiled ones.
#include <cblas.h>

#include <algorithm>

#include "dense_backend.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

Eigen::MatrixXd ZqMatrixProduct(const Eigen::Ref<const Eigen::MatrixXd>& a, const Eigen::Ref<const Eigen::MatrixXd>& b) {
  const Eigen::Index rows = a.rows(), inner = a.cols(), cols = b.cols();
  if (b.rows() != inner) return Eigen::MatrixXd();
  if (!DenseDetail::UseLapack(std::min({rows, inner, cols}), DenseDetail::kProductSide) ||
      !DenseDetail::FitsLapack(std::max({rows, inner, cols}))) {
    return a * b;
  }
  Eigen::MatrixXd product(rows, cols);
  cblas_dgemm(CblasColMajor, CblasNoTrans, CblasNoTrans, static_cast<int>(rows), static_cast<int>(cols),
              static_cast<int>(inner), 1.0, a.data(), static_cast<int>(a.outerStride()), b.data(),
              static_cast<int>(b.outerStride()), 0.0, product.data(), static_cast<int>(rows));
  return product;
}

}  // namespace Varimo
