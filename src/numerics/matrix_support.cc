#include "matrix_support.h"

#include <cmath>

#include "varimo/platform/corvane/strings.h"

namespace Varimo::MatrixDetail {

namespace F = ZqStatModelFailureType;

ZqStatModelResult PassOn(ZqStatModelResult calleeResult, const char* routine) {
  calleeResult.AddCallContext(routine);
  return calleeResult;
}

ZqStatModelResult CheckVectorLengths(const char* routine, unsigned long n,
                                     std::initializer_list<const std::vector<double>*> vectors) {
  for (const std::vector<double>* v : vectors) {
    if (v->size() != n) {
      return ZqMakeFailedResult(F::WrongInputVectorSize, routine,
                     Corvane::ZqMakeString("Vector length: ", v->size(), "; dimension: ", n));
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult CheckFullLengths(const char* routine, unsigned long n,
                                   std::initializer_list<const std::vector<double>*> matrices) {
  for (const std::vector<double>* a : matrices) {
    if (!IsFullLength(a->size(), n)) {
      return ZqMakeFailedResult(F::WrongInputMatrixSize, routine,
                     Corvane::ZqMakeString("Matrix length: ", a->size(), "; dimension: ", n));
    }
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult CheckKindLength(const char* routine, Kind kind, std::size_t length, unsigned long n) {
  const bool fits = kind == Kind::Scalar ? length == 1 : length == n;
  if (fits) return ZqStatModelResult(true);
  return ZqMakeFailedResult(F::WrongInputMatrixSize, routine,
                 Corvane::ZqMakeString(kind == Kind::Scalar ? "Scalar" : "Diagonal", " matrix length: ", length,
                                       "; dimension: ", n));
}

ZqStatModelResult WrongKindLength(const char* routine, std::size_t length, unsigned long n) {
  return ZqMakeFailedResult(F::WrongInputMatrixSize, routine,
                 Corvane::ZqMakeString("Matrix length: ", length, " is neither 1, ", n, " nor ", n, " squared"));
}

ZqStatModelResult CheckElementsPositive(const char* routine, Kind kind, const std::vector<double>& elements,
                                        bool allowZero) {
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const double e = elements[i];
    // Written so that a NaN fails the sign test.
    const bool signOk = allowZero ? e >= 0.0 : e > 0.0;
    if (signOk && std::isfinite(e)) continue;
    if (kind == Kind::Scalar) {
      return ZqMakeFailedResult(F::SingularMatrix, routine,
                     signOk ? "Scalar matrix with non-finite scalar" : "Scalar matrix with non-positive scalar");
    }
    return ZqMakeFailedResult(F::SingularMatrix, routine,
                   Corvane::ZqMakeString("Diagonal element ", i, " = ", e, " is not a finite ",
                                         allowZero ? "non-negative" : "positive", " number"));
  }
  return ZqStatModelResult(true);
}

ZqStatModelResult CheckIndex(const char* routine, unsigned long n, unsigned long index, const char* words) {
  if (index < n) return ZqStatModelResult(true);
  return ZqMakeFailedResult(F::ArgumentOutOfRange, routine, Corvane::ZqMakeString("Index: ", index, words, n));
}

ZqStatModelResult CheckIndices(const char* routine, unsigned long n, const std::vector<unsigned long>& indices) {
  if (indices.size() > n) return ZqMakeFailedResult(F::WrongInputVectorSize, routine, "Too many indices");
  for (unsigned long index : indices) {
    ZqStatModelResult result = CheckIndex(routine, n, index, " bigger than dimension: ");
    if (result.NotSuccessful()) return result;
  }
  return ZqStatModelResult(true);
}

}  // namespace Varimo::MatrixDetail
