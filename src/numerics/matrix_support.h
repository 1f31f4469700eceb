// Private helpers of the matrix layer: the kind of a matrix from its length,
// the argument checks every routine shares, and Eigen views of the plain
// vectors. Not installed.
#pragma once

#include <Eigen/Core>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo::MatrixDetail {

inline constexpr double kBadDouble = DBL_MAX;

using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using MatrixView = Eigen::Map<RowMatrix>;
using ConstMatrixView = Eigen::Map<const RowMatrix>;
using VectorView = Eigen::Map<Eigen::VectorXd>;
using ConstVectorView = Eigen::Map<const Eigen::VectorXd>;

inline ConstMatrixView ViewMatrix(const std::vector<double>& a, unsigned long n) {
  return ConstMatrixView(a.data(), static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(n));
}
inline MatrixView ViewMatrix(std::vector<double>& a, unsigned long n) {
  return MatrixView(a.data(), static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(n));
}
inline ConstVectorView ViewVector(const std::vector<double>& v) {
  return ConstVectorView(v.data(), static_cast<Eigen::Index>(v.size()));
}
inline VectorView ViewVector(std::vector<double>& v) {
  return VectorView(v.data(), static_cast<Eigen::Index>(v.size()));
}

// Whether `length` is n * n, without the product overflowing for huge n.
inline bool IsFullLength(std::size_t length, unsigned long n) {
  if (n == 0) return length == 0;
  return length % n == 0 && length / n == n;
}

enum class Kind { Scalar, Diagonal, Full, WrongSize };

// The order of the tests is part of the contract: length 1 is always the
// scalar kind, even for n = 1, where all three kinds coincide.
inline Kind KindOf(std::size_t length, unsigned long n) {
  if (length == 1) return Kind::Scalar;
  if (length == n) return Kind::Diagonal;
  if (IsFullLength(length, n)) return Kind::Full;
  return Kind::WrongSize;
}

// Takes over a callee's failure and adds the caller to the chain.
ZqStatModelResult PassOn(ZqStatModelResult calleeResult, const char* routine);

// Successful when every vector has length n; else WrongInputVectorSize.
ZqStatModelResult CheckVectorLengths(const char* routine, unsigned long n,
                                     std::initializer_list<const std::vector<double>*> vectors);
// Successful when every matrix has length n * n; else WrongInputMatrixSize.
ZqStatModelResult CheckFullLengths(const char* routine, unsigned long n,
                                   std::initializer_list<const std::vector<double>*> matrices);
// Successful when `length` is 1 (scalar) or n (diagonal), as `kind` asks.
ZqStatModelResult CheckKindLength(const char* routine, Kind kind, std::size_t length, unsigned long n);
// WrongInputMatrixSize for a general function given a length of no kind.
ZqStatModelResult WrongKindLength(const char* routine, std::size_t length, unsigned long n);

// Successful when every element of a scalar or diagonal matrix is a finite
// number above 0, or at least 0 when `allowZero`; else SingularMatrix with a
// comment naming the first offender.
ZqStatModelResult CheckElementsPositive(const char* routine, Kind kind, const std::vector<double>& elements,
                                        bool allowZero);

// Successful when every index is below n and there are at most n of them.
ZqStatModelResult CheckIndices(const char* routine, unsigned long n, const std::vector<unsigned long>& indices);
// ArgumentOutOfRange for index >= n, with the comment
// "Index: <index><words><n>".
ZqStatModelResult CheckIndex(const char* routine, unsigned long n, unsigned long index, const char* words);

}  // namespace Varimo::MatrixDetail
