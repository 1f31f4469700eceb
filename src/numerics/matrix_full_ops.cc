// Operations on full matrices: the Cholesky factor and what is built on it,
// products and triangular solves. All of them view the plain vectors through
// Eigen maps; results are built aside and moved into the output so that an
// output may be one of the inputs.
#include <Eigen/Cholesky>
#include <utility>

#include "matrix_support.h"
#include "varimo/numerics/matrix.h"

namespace Varimo {

using namespace MatrixDetail;
namespace F = ZqStatModelFailureType;

ZqStatModelResult ZqCholeskyDecomposition(unsigned long n, const std::vector<double>& a, std::vector<double>& l) {
  static constexpr const char* kName = "ZqCholeskyDecomposition";
  ZqStatModelResult result = CheckFullLengths(kName, n, {&a});
  if (result.NotSuccessful()) {
    l.clear();
    return result;
  }
  if (&l != &a) l.assign(a.begin(), a.end());
  // Read column-major, the row-major storage is the transpose: its upper
  // triangle is the lower triangle of a, and the factor U = L' that Eigen
  // writes there in place is our L read row-major. This saves a copy and a
  // transpose, and lets Eigen's blocked kernel work on contiguous columns.
  const auto dim = static_cast<Eigen::Index>(n);
  Eigen::Map<Eigen::MatrixXd> upper(l.data(), dim, dim);
  const Eigen::LLT<Eigen::Ref<Eigen::MatrixXd>, Eigen::Upper> llt(upper);
  upper.triangularView<Eigen::StrictlyLower>().setZero();
  // Eigen stops at a pivot <= 0 but lets a NaN pivot through; an infinite or
  // NaN element anywhere in the lower triangle of a reaches the pivot of its
  // row, so one scan of the factor catches both.
  if (llt.info() != Eigen::Success) {
    return ZqMakeFailedResult(F::SingularMatrix, kName, "A pivot is not positive: the matrix is not positive definite");
  }
  if (!upper.allFinite()) {
    return ZqMakeFailedResult(F::SingularMatrix, kName, "A pivot is not finite: the matrix has NaN or infinite elements");
  }
  return result;
}

ZqStatModelResult ZqInverseOfLowerTriangularMatrix(unsigned long n, const std::vector<double>& l,
                                                   std::vector<double>& out) {
  ZqStatModelResult result = CheckFullLengths("ZqInverseOfLowerTriangularMatrix", n, {&l});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> inverse(n * n, 0.0);
  MatrixView inv = ViewMatrix(inverse, n);
  inv.setIdentity();
  ViewMatrix(l, n).triangularView<Eigen::Lower>().solveInPlace(inv);
  // With a zero pivot the solve spreads 0 * inf = NaN above the diagonal;
  // the inverse of a lower-triangular matrix is lower triangular regardless.
  inv.triangularView<Eigen::StrictlyUpper>().setZero();
  out = std::move(inverse);
  return result;
}

ZqStatModelResult ZqMatrixTimesMatrix(unsigned long n, const std::vector<double>& a, const std::vector<double>& b,
                                      std::vector<double>& out) {
  ZqStatModelResult result = CheckFullLengths("ZqMatrixTimesMatrix", n, {&a, &b});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> product(n * n);
  ViewMatrix(product, n).noalias() = ViewMatrix(a, n) * ViewMatrix(b, n);
  out = std::move(product);
  return result;
}

ZqStatModelResult ZqMatrixTimesVector(unsigned long n, const std::vector<double>& a, const std::vector<double>& x,
                                      std::vector<double>& out) {
  static constexpr const char* kName = "ZqMatrixTimesVector";
  ZqStatModelResult result = CheckFullLengths(kName, n, {&a});
  if (result.IsSuccessful()) result = CheckVectorLengths(kName, n, {&x});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> product(n);
  ViewVector(product).noalias() = ViewMatrix(a, n) * ViewVector(x);
  out = std::move(product);
  return result;
}

ZqStatModelResult ZqTraceOfMatrixProduct(unsigned long n, const std::vector<double>& a,
                                         const std::vector<double>& b, double& out) {
  out = 0.0;
  ZqStatModelResult result = CheckFullLengths("ZqTraceOfMatrixProduct", n, {&a, &b});
  if (result.NotSuccessful()) return result;
  // trace(a b) = sum over i, j of a(i,j) b(j,i): O(n^2), no product formed.
  out = ViewMatrix(a, n).cwiseProduct(ViewMatrix(b, n).transpose()).sum();
  return result;
}

namespace {

enum class Triangle { Lower, LowerTransposed, Both };

// Solves with the lower-triangular l, its transpose, or one after the other.
// The pivots are divided by without a test: a zero pivot gives an infinity
// or a NaN and still a successful result.
ZqStatModelResult SolveWithLowerFactor(const char* routine, Triangle which, unsigned long n,
                                       const std::vector<double>& l, const std::vector<double>& b,
                                       std::vector<double>& x) {
  ZqStatModelResult result = CheckFullLengths(routine, n, {&l});
  if (result.IsSuccessful()) result = CheckVectorLengths(routine, n, {&b});
  if (result.NotSuccessful()) {
    x.clear();
    return result;
  }
  std::vector<double> solution(b);
  VectorView y = ViewVector(solution);
  const ConstMatrixView factor = ViewMatrix(l, n);
  if (which != Triangle::LowerTransposed) factor.triangularView<Eigen::Lower>().solveInPlace(y);
  if (which != Triangle::Lower) factor.transpose().triangularView<Eigen::Upper>().solveInPlace(y);
  x = std::move(solution);
  return result;
}

}  // namespace

ZqStatModelResult ZqSolveLowerTriangularEquations(unsigned long n, const std::vector<double>& l,
                                                  const std::vector<double>& b, std::vector<double>& x) {
  return SolveWithLowerFactor("ZqSolveLowerTriangularEquations", Triangle::Lower, n, l, b, x);
}

ZqStatModelResult ZqSolveTransposedLowerTriangularEquations(unsigned long n, const std::vector<double>& l,
                                                            const std::vector<double>& b, std::vector<double>& x) {
  return SolveWithLowerFactor("ZqSolveTransposedLowerTriangularEquations", Triangle::LowerTransposed, n, l, b, x);
}

ZqStatModelResult ZqSolveSymmetricEquationsViaLowerTriSquareRoot(unsigned long n, const std::vector<double>& l,
                                                                 const std::vector<double>& b,
                                                                 std::vector<double>& x) {
  return SolveWithLowerFactor("ZqSolveSymmetricEquationsViaLowerTriSquareRoot", Triangle::Both, n, l, b, x);
}

ZqStatModelResult ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(unsigned long n, const std::vector<double>& l,
                                                          std::vector<double>& out) {
  static constexpr const char* kName = "ZqInvOfSymmPosDefMatrixFromLowTriSqRoot";
  std::vector<double> inverse, inverseTransposed;
  ZqStatModelResult result = ZqInverseOfLowerTriangularMatrix(n, l, inverse);
  if (result.IsSuccessful()) result = ZqTransposeMatrix(n, inverse, inverseTransposed);
  if (result.IsSuccessful()) result = ZqMatrixTimesMatrix(n, inverseTransposed, inverse, out);
  if (result.NotSuccessful()) {
    out.clear();
    return PassOn(result, kName);
  }
  return result;
}

ZqStatModelResult ZqInverseOfSymmetricPositiveDefiniteMatrix(unsigned long n, const std::vector<double>& a,
                                                             std::vector<double>& out) {
  static constexpr const char* kName = "ZqInverseOfSymmetricPositiveDefiniteMatrix";
  std::vector<double> factor;
  ZqStatModelResult result = ZqCholeskyDecomposition(n, a, factor);
  if (result.IsSuccessful()) result = ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(n, factor, out);
  if (result.NotSuccessful()) {
    out.clear();
    return PassOn(result, kName);
  }
  return result;
}

ZqStatModelResult ZqLogDeterminantOfLowerTriSqRoot(unsigned long n, const std::vector<double>& l, double& out) {
  out = kBadDouble;
  ZqStatModelResult result = CheckFullLengths("ZqLogDeterminantOfLowerTriSqRoot", n, {&l});
  if (result.NotSuccessful()) return result;
  out = ViewMatrix(l, n).diagonal().array().log().sum();
  return result;
}

ZqStatModelResult ZqLogDeterminantOfSymmPosDefMatrix(unsigned long n, const std::vector<double>& a, double& out) {
  static constexpr const char* kName = "ZqLogDeterminantOfSymmPosDefMatrix";
  out = kBadDouble;
  std::vector<double> factor;
  ZqStatModelResult result = ZqCholeskyDecomposition(n, a, factor);
  double half = kBadDouble;
  if (result.IsSuccessful()) result = ZqLogDeterminantOfLowerTriSqRoot(n, factor, half);
  if (result.NotSuccessful()) return PassOn(result, kName);
  out = 2.0 * half;
  return result;
}

ZqStatModelResult ZqScalarTimesMatrixPlusDiagTerm(unsigned long n, const std::vector<double>& a, double alpha,
                                                  double beta, std::vector<double>& out) {
  ZqStatModelResult result = CheckFullLengths("ZqScalarTimesMatrixPlusDiagTerm", n, {&a});
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> shifted(n * n);
  MatrixView s = ViewMatrix(shifted, n);
  s = alpha * ViewMatrix(a, n);
  s.diagonal().array() += beta;
  out = std::move(shifted);
  return result;
}

}  // namespace Varimo
