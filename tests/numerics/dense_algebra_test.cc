// The dense factorisations on both paths, Eigen and LAPACK, forced one at a
// time: each answer is checked by the identity it must satisfy (C x = b,
// A V = V diag(w), U diag(s) V' = M), which needs no stored reference. Orders
// 1, 6 and 7 cover both shapes of LAPACK's packed storage (even and odd);
// 200 is above the Cholesky threshold by size.
#include <gtest/gtest.h>

#include <Eigen/Cholesky>
#include <Eigen/Core>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <tuple>

#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

// Names the path in test names and failure messages.
void PrintTo(ZqDenseBackend backend, std::ostream* out) {
  *out << (backend == ZqDenseBackend::Eigen ? "Eigen" : backend == ZqDenseBackend::Lapack ? "Lapack" : "BySize");
}

namespace {

// A symmetric positive definite matrix: a Gaussian covariance of points on
// a line plus a small nugget, as in kriging.
Eigen::MatrixXd Covariance(Eigen::Index n) {
  Eigen::MatrixXd c(n, n);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = 0; j < n; ++j) c(i, j) = std::exp(-0.01 * static_cast<double>((i - j) * (i - j)));
  }
  c.diagonal().array() += 0.1;
  return c;
}

Eigen::MatrixXd RightHandSides(Eigen::Index n, Eigen::Index count) {
  Eigen::MatrixXd b(n, count);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index k = 0; k < count; ++k) b(i, k) = std::sin(1.0 + static_cast<double>(i) * 0.7 + k);
  }
  return b;
}

class DenseAlgebra : public ::testing::TestWithParam<ZqDenseBackend> {
 protected:
  void SetUp() override { ZqSetDenseBackend(GetParam()); }
  void TearDown() override { ZqSetDenseBackend(ZqDenseBackend::BySize); }
};

TEST_P(DenseAlgebra, CholeskySolvesAndWhitens) {
  for (const Eigen::Index n : {1, 6, 7, 200}) {
    SCOPED_TRACE(n);
    const Eigen::MatrixXd c = Covariance(n), b = RightHandSides(n, 3);
    // Written column by column, as the kriging models fill it.
    ZqCholeskyFactor factor;
    factor.Reset(n);
    for (Eigen::Index col = 0; col < n; ++col) {
      const ZqCholeskyFactor::Column column = factor.UpperColumn(col);
      for (Eigen::Index r = 0; r <= col; ++r) column[r] = c(r, col);
    }
    ASSERT_TRUE(factor.Factorise());
    EXPECT_EQ(factor.Order(), n);
    // The pivots are the diagonal of Eigen's factor (orders 7 and 200 are
    // odd and even in the packed form).
    const Eigen::VectorXd pivots = Eigen::LLT<Eigen::MatrixXd>(c).matrixLLT().diagonal();
    for (Eigen::Index k = 0; k < n; ++k) EXPECT_NEAR(factor.Pivot(k), pivots(k), 1e-12 * pivots(k)) << k;
    Eigen::MatrixXd x = b;
    factor.SolveInPlace(x);
    EXPECT_LT((c * x - b).norm(), 1e-12 * b.norm() * static_cast<double>(n));
    Eigen::VectorXd single = b.col(1);
    factor.SolveInPlace(single);
    EXPECT_LT((single - x.col(1)).norm(), 1e-12 * x.norm());
    // |U'^-1 b|^2 = b' C^-1 b, and U^-1 undoes the whitening's partner.
    Eigen::MatrixXd whitened = b;
    factor.WhitenInPlace(whitened);
    EXPECT_NEAR(whitened.col(0).squaredNorm(), b.col(0).dot(x.col(0)), 1e-10 * b.col(0).dot(x.col(0)));
    factor.BackSolveInPlace(whitened);
    EXPECT_LT((whitened - x).norm(), 1e-12 * x.norm() * static_cast<double>(n));

    ZqCholeskyFactor copy;
    ASSERT_TRUE(copy.Compute(c));
    Eigen::MatrixXd y = b;
    copy.SolveInPlace(y);
    EXPECT_EQ(y, x);
  }
}

TEST_P(DenseAlgebra, CholeskyRefusesIndefiniteAndNonFiniteMatrices) {
  for (const Eigen::Index n : {6, 200}) {
    SCOPED_TRACE(n);
    ZqCholeskyFactor factor;
    Eigen::MatrixXd c = Covariance(n);
    c(n - 1, n - 1) = -1.0;
    EXPECT_FALSE(factor.Compute(c));
    EXPECT_FALSE(factor.Valid());
    c = Covariance(n);
    c(0, n / 2) = c(n / 2, 0) = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(factor.Compute(c));
    c(0, n / 2) = c(n / 2, 0) = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(factor.Compute(c));
    ASSERT_TRUE(factor.Compute(Covariance(n)));
    factor.Clear();
    EXPECT_FALSE(factor.Valid());
    EXPECT_EQ(factor.Order(), 0);
  }
}

// The bordered system of ordinary kriging with one drift column.
Eigen::MatrixXd Bordered(Eigen::Index n) {
  Eigen::MatrixXd a = Eigen::MatrixXd::Zero(n + 2, n + 2);
  a.topLeftCorner(n, n) = Covariance(n);
  for (Eigen::Index i = 0; i < n; ++i) {
    a(n, i) = a(i, n) = 1.0;
    a(n + 1, i) = a(i, n + 1) = std::cos(static_cast<double>(i));
  }
  return a;
}

TEST_P(DenseAlgebra, IndefiniteSolvesBorderedSystems) {
  for (const Eigen::Index n : {5, 200}) {
    SCOPED_TRACE(n);
    const Eigen::MatrixXd a = Bordered(n);
    const Eigen::VectorXd b = RightHandSides(n + 2, 1);
    ZqSymmetricIndefiniteFactor factor;
    ASSERT_TRUE(factor.Compute(a));
    EXPECT_EQ(factor.Order(), n + 2);
    const ZqSymmetricIndefiniteFactor copy = factor;
    const Eigen::VectorXd x = copy.Solve(b);
    EXPECT_LT((a * x - b).norm(), 1e-10 * b.norm());

    Eigen::MatrixXd bad = a;
    bad(n + 1, 0) = bad(0, n + 1) = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(factor.Compute(bad));
    EXPECT_FALSE(factor.Valid());
    EXPECT_TRUE(copy.Valid());  // the copy keeps the factors it shared
  }
}

TEST_P(DenseAlgebra, SymmetricEigenDecomposition) {
  for (const Eigen::Index n : {1, 7, 40}) {
    SCOPED_TRACE(n);
    // Indefinite: the eigenvalues straddle 0.
    const Eigen::MatrixXd a = Covariance(n) - 0.9 * Eigen::MatrixXd::Identity(n, n);
    Eigen::MatrixXd v = a;
    Eigen::VectorXd w;
    ASSERT_TRUE(ZqSymmetricEigenInPlace(v, w));
    ASSERT_EQ(w.size(), n);
    for (Eigen::Index i = 1; i < n; ++i) EXPECT_LE(w(i - 1), w(i));
    EXPECT_LT((a * v - v * w.asDiagonal()).norm(), 1e-12 * static_cast<double>(n));
    EXPECT_LT((v.transpose() * v - Eigen::MatrixXd::Identity(n, n)).norm(), 1e-12 * static_cast<double>(n));
  }
}

TEST_P(DenseAlgebra, ThinSvdOfTallAndWideMatrices) {
  for (const auto& [rows, cols] : {std::pair<Eigen::Index, Eigen::Index>{50, 40}, {40, 50}, {3, 2}}) {
    SCOPED_TRACE(std::to_string(rows) + " x " + std::to_string(cols));
    const Eigen::MatrixXd m = RightHandSides(rows, cols) + Eigen::MatrixXd::Identity(rows, cols);
    Eigen::MatrixXd u, v;
    Eigen::VectorXd s;
    ASSERT_TRUE(ZqThinSvd(m, u, s, v));
    const Eigen::Index k = std::min(rows, cols);
    ASSERT_EQ(u.rows(), rows);
    ASSERT_EQ(u.cols(), k);
    ASSERT_EQ(v.rows(), cols);
    ASSERT_EQ(v.cols(), k);
    for (Eigen::Index i = 1; i < k; ++i) EXPECT_GE(s(i - 1), s(i));
    EXPECT_LT((u * s.asDiagonal() * v.transpose() - m).norm(), 1e-12 * m.norm());
  }
}

TEST_P(DenseAlgebra, MatrixProductOfBlocks) {
  // Blocks of larger matrices, whose columns lie further apart than their
  // rows, against the sums written out.
  for (const auto& [rows, inner, cols] : {std::tuple<Eigen::Index, Eigen::Index, Eigen::Index>{1, 3, 2}, {40, 33, 35}}) {
    SCOPED_TRACE(std::to_string(rows) + " x " + std::to_string(inner) + " x " + std::to_string(cols));
    const Eigen::MatrixXd big = RightHandSides(rows + inner + 5, inner + cols + 5);
    const auto a = big.block(2, 1, rows, inner);
    const auto b = big.block(3, 4, inner, cols);
    const Eigen::MatrixXd product = ZqMatrixProduct(a, b);
    ASSERT_EQ(product.rows(), rows);
    ASSERT_EQ(product.cols(), cols);
    for (Eigen::Index i = 0; i < rows; ++i) {
      for (Eigen::Index j = 0; j < cols; ++j) {
        double sum = 0.0;
        for (Eigen::Index k = 0; k < inner; ++k) sum += a(i, k) * b(k, j);
        EXPECT_NEAR(product(i, j), sum, 1e-13 * static_cast<double>(inner));
      }
    }
  }
  EXPECT_EQ(ZqMatrixProduct(Eigen::MatrixXd::Ones(40, 33), Eigen::MatrixXd::Ones(34, 40)).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(BothPaths, DenseAlgebra, ::testing::Values(ZqDenseBackend::Eigen, ZqDenseBackend::Lapack),
                         ::testing::PrintToStringParamName());

TEST(DenseBackend, ReportsThePathAndTheBlasThreads) {
  EXPECT_EQ(ZqGetDenseBackend(), ZqDenseBackend::BySize);
  const std::string description = ZqDenseBackendDescription();
  EXPECT_NE(description.find("OpenBLAS"), std::string::npos) << description;
  EXPECT_NE(description.find("by order"), std::string::npos) << description;
  {
    const ZqSingleThreadedBlas outer;
    {
      const ZqSingleThreadedBlas inner;
      EXPECT_NE(ZqDenseBackendDescription().find(", 1 threads"), std::string::npos);
    }
    EXPECT_NE(ZqDenseBackendDescription().find(", 1 threads"), std::string::npos);
  }
  EXPECT_EQ(ZqDenseBackendDescription(), description);
}

}  // namespace
}  // namespace Varimo
