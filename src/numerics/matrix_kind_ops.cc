// Operations on scalar and diagonal matrices, and the general functions that
// tell the kind of a matrix by its length and hand on to the right one.
#include <cmath>
#include <utility>

#include "matrix_support.h"
#include "varimo/numerics/matrix.h"

namespace Varimo {

using namespace MatrixDetail;

namespace {

// The shift that makes a positive semi-definite matrix factorable: 2^-23,
// the single-precision epsilon, the one tolerance of this layer.
constexpr double kNonNegDefShift = 1.1920928955078125e-7;

// Length check, then the sign and finiteness check, for scalar and diagonal
// matrices.
ZqStatModelResult CheckPositiveOfKind(const char* routine, Kind kind, unsigned long n, const std::vector<double>& d) {
  ZqStatModelResult result = CheckKindLength(routine, kind, d.size(), n);
  if (result.IsSuccessful()) result = CheckElementsPositive(routine, kind, d, false);
  return result;
}

}  // namespace

ZqStatModelResult ZqLogDeterminantOfScalarMatrix(unsigned long n, const std::vector<double>& s, double& out) {
  out = kBadDouble;
  ZqStatModelResult result = CheckPositiveOfKind("ZqLogDeterminantOfScalarMatrix", Kind::Scalar, n, s);
  if (result.NotSuccessful()) return result;
  out = static_cast<double>(n) * std::log(s[0]);
  return result;
}

ZqStatModelResult ZqLogDeterminantOfDiagonalMatrix(unsigned long n, const std::vector<double>& d, double& out) {
  out = kBadDouble;
  ZqStatModelResult result = CheckPositiveOfKind("ZqLogDeterminantOfDiagonalMatrix", Kind::Diagonal, n, d);
  if (result.NotSuccessful()) return result;
  out = ViewVector(d).array().log().sum();
  return result;
}

ZqStatModelResult ZqInverseOfScalarMatrix(const std::vector<double>& s, std::vector<double>& out) {
  ZqStatModelResult result = CheckPositiveOfKind("ZqInverseOfScalarMatrix", Kind::Scalar, 1, s);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  out = {1.0 / s[0]};
  return result;
}

ZqStatModelResult ZqInverseOfDiagonalMatrix(unsigned long n, const std::vector<double>& d, std::vector<double>& out) {
  ZqStatModelResult result = CheckPositiveOfKind("ZqInverseOfDiagonalMatrix", Kind::Diagonal, n, d);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> inverse(n);
  ViewVector(inverse) = ViewVector(d).cwiseInverse();
  out = std::move(inverse);
  return result;
}

ZqStatModelResult ZqSquareRootOfScalarMatrix(const std::vector<double>& s, std::vector<double>& out) {
  ZqStatModelResult result = CheckPositiveOfKind("ZqSquareRootOfScalarMatrix", Kind::Scalar, 1, s);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  out = {std::sqrt(s[0])};
  return result;
}

ZqStatModelResult ZqSquareRootOfDiagonalMatrix(unsigned long n, const std::vector<double>& d,
                                               std::vector<double>& out) {
  ZqStatModelResult result = CheckPositiveOfKind("ZqSquareRootOfDiagonalMatrix", Kind::Diagonal, n, d);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> root(n);
  ViewVector(root) = ViewVector(d).cwiseSqrt();
  out = std::move(root);
  return result;
}

ZqStatModelResult ZqLogDeterminantOfPosDefMatrix(unsigned long n, const std::vector<double>& a, double& out) {
  static constexpr const char* kName = "ZqLogDeterminantOfPosDefMatrix";
  ZqStatModelResult result;
  switch (KindOf(a.size(), n)) {
    case Kind::Scalar: result = ZqLogDeterminantOfScalarMatrix(n, a, out); break;
    case Kind::Diagonal: result = ZqLogDeterminantOfDiagonalMatrix(n, a, out); break;
    case Kind::Full: result = ZqLogDeterminantOfSymmPosDefMatrix(n, a, out); break;
    case Kind::WrongSize: out = kBadDouble; return WrongKindLength(kName, a.size(), n);
  }
  return result.IsSuccessful() ? result : PassOn(result, kName);
}

ZqStatModelResult ZqInverseOfPosDefMatrix(unsigned long n, const std::vector<double>& a, std::vector<double>& out) {
  static constexpr const char* kName = "ZqInverseOfPosDefMatrix";
  ZqStatModelResult result;
  switch (KindOf(a.size(), n)) {
    case Kind::Scalar: result = ZqInverseOfScalarMatrix(a, out); break;
    case Kind::Diagonal: result = ZqInverseOfDiagonalMatrix(n, a, out); break;
    case Kind::Full: result = ZqInverseOfSymmetricPositiveDefiniteMatrix(n, a, out); break;
    case Kind::WrongSize: out.clear(); return WrongKindLength(kName, a.size(), n);
  }
  return result.IsSuccessful() ? result : PassOn(result, kName);
}

ZqStatModelResult ZqSquareRootOfPosDefMatrix(unsigned long n, const std::vector<double>& a,
                                             std::vector<double>& out) {
  static constexpr const char* kName = "ZqSquareRootOfPosDefMatrix";
  ZqStatModelResult result;
  switch (KindOf(a.size(), n)) {
    case Kind::Scalar: result = ZqSquareRootOfScalarMatrix(a, out); break;
    case Kind::Diagonal: result = ZqSquareRootOfDiagonalMatrix(n, a, out); break;
    case Kind::Full: result = ZqCholeskyDecomposition(n, a, out); break;
    case Kind::WrongSize: out.clear(); return WrongKindLength(kName, a.size(), n);
  }
  return result.IsSuccessful() ? result : PassOn(result, kName);
}

ZqStatModelResult ZqTransposeMatrix(unsigned long n, const std::vector<double>& a, std::vector<double>& out) {
  switch (KindOf(a.size(), n)) {
    case Kind::Scalar:
    case Kind::Diagonal:
      if (&out != &a) out = a;
      return ZqStatModelResult(true);
    case Kind::Full: {
      std::vector<double> transposed(a.size());
      ViewMatrix(transposed, n) = ViewMatrix(a, n).transpose();
      out = std::move(transposed);
      return ZqStatModelResult(true);
    }
    case Kind::WrongSize: break;
  }
  out.clear();
  return WrongKindLength("ZqTransposeMatrix", a.size(), n);
}

namespace {

ZqStatModelResult TestDefiniteness(const char* routine, unsigned long n, const std::vector<double>& a,
                                   bool allowSemiDefinite) {
  const Kind kind = KindOf(a.size(), n);
  switch (kind) {
    case Kind::Scalar:
    case Kind::Diagonal: return CheckElementsPositive(routine, kind, a, allowSemiDefinite);
    case Kind::Full: {
      std::vector<double> matrix, factor;
      ZqStatModelResult result(true);
      if (allowSemiDefinite) result = ZqScalarTimesMatrixPlusDiagTerm(n, a, 1.0, kNonNegDefShift, matrix);
      if (result.IsSuccessful()) result = ZqCholeskyDecomposition(n, allowSemiDefinite ? matrix : a, factor);
      return result.IsSuccessful() ? result : PassOn(result, routine);
    }
    case Kind::WrongSize: break;
  }
  return WrongKindLength(routine, a.size(), n);
}

}  // namespace

ZqStatModelResult ZqMatrixIsPosDef(unsigned long n, const std::vector<double>& a) {
  return TestDefiniteness("ZqMatrixIsPosDef", n, a, false);
}

ZqStatModelResult ZqMatrixIsNonNegDef(unsigned long n, const std::vector<double>& a) {
  return TestDefiniteness("ZqMatrixIsNonNegDef", n, a, true);
}

ZqStatModelResult ZqGetDiagonalElemOfMatrix(unsigned long n, const std::vector<double>& a, unsigned long i,
                                            double& out) {
  static constexpr const char* kName = "ZqGetDiagonalElemOfMatrix";
  out = kBadDouble;
  const Kind kind = KindOf(a.size(), n);
  if (kind == Kind::WrongSize) return WrongKindLength(kName, a.size(), n);
  ZqStatModelResult result = CheckIndex(kName, n, i, " bigger than matrix Dimension: ");
  if (result.NotSuccessful()) return result;
  out = kind == Kind::Scalar ? a[0] : kind == Kind::Diagonal ? a[i] : a[i * n + i];
  return result;
}

ZqStatModelResult ZqGetBlockSubMatrixOfMatrix(unsigned long n, const std::vector<double>& a,
                                              const std::vector<unsigned long>& indices, std::vector<double>& out) {
  static constexpr const char* kName = "ZqGetBlockSubMatrixOfMatrix";
  const Kind kind = KindOf(a.size(), n);
  ZqStatModelResult result = kind == Kind::WrongSize ? WrongKindLength(kName, a.size(), n)
                                                     : CheckIndices(kName, n, indices);
  if (result.NotSuccessful()) {
    out.clear();
    return result;
  }
  std::vector<double> block;
  if (kind == Kind::Scalar) {
    block = {a[0]};
  } else if (kind == Kind::Diagonal) {
    block.reserve(indices.size());
    for (unsigned long index : indices) block.push_back(a[index]);
  } else {
    const unsigned long m = indices.size();
    block.resize(m * m);
    ViewMatrix(block, m) = ViewMatrix(a, n)(indices, indices);
  }
  out = std::move(block);
  return result;
}

}  // namespace Varimo
