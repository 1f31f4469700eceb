// Dense linear algebra on plain vectors of doubles, for the covariance
// matrices of distributions, mixtures and similarity models.
//
// A matrix is a std::vector<double> with its dimension n passed beside it.
// Its length tells its kind:
//   length 1      scalar matrix: s times the identity of size n
//   length n      diagonal matrix: the vector holds the diagonal
//   length n * n  full matrix, row-major: element (i, j) at i * n + j
// Functions that accept all three ("general" below) test the lengths in that
// order, so a length of 1 is always the scalar kind, whatever n is; any other
// length is a wrong size. A vector is a std::vector<double> of length n.
//
// The square root of a matrix is always its lower Cholesky factor L with
// A = L L', stored as a full matrix whose strict upper triangle is zero.
//
// Every function returns a ZqStatModelResult and writes its answer to its
// output argument, which is cleared and refilled. A failure names the
// function as the routine where it arose; a general function that hands on
// to another adds its own name to the chain. Failure types:
//   WrongInputVectorSize  a vector (or the list of indices) has the wrong length
//   WrongInputMatrixSize  a matrix has a length that fits none of its kinds
//   SingularMatrix        not positive definite: a pivot or element <= 0, or
//                         one that is NaN or infinite
//   ArgumentOutOfRange    an index at or beyond n
// A double output that cannot be computed is set to DBL_MAX, the bad value
// (the trace is the exception: 0).
//
// Only the factorisations and their users test for non-finite values.
// Products, sums and triangular solves are plain arithmetic and pass a NaN
// or an infinity in their inputs on to their outputs; a zero on the
// diagonal of a triangular solve gives an infinity or a NaN in the answer
// and a successful result.
//
// Costs: the factorisation, the inverses and the matrix product are O(n^3),
// the solves and matrix-vector products O(n^2); all use Eigen's blocked
// kernels.
#pragma once

#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

// --- Vectors. Every input vector must have length n (WrongInputVectorSize).

// out = sum a[i] b[i]; DBL_MAX on failure.
ZqStatModelResult ZqDotProductOfVectors(unsigned long n, const std::vector<double>& a,
                                        const std::vector<double>& b, double& out);
// acc[i] += a[i]
ZqStatModelResult ZqVectorElementwiseSumAccumulate(unsigned long n, const std::vector<double>& a,
                                                   std::vector<double>& acc);
// acc[i] += alpha x[i]
ZqStatModelResult ZqVectorSaxpy(unsigned long n, double alpha, const std::vector<double>& x,
                                std::vector<double>& acc);
// acc[i] *= a[i]
ZqStatModelResult ZqVectorElementwiseProductAccumulate(unsigned long n, const std::vector<double>& a,
                                                       std::vector<double>& acc);
// out[i] = alpha x[i]
ZqStatModelResult ZqScalarTimesVector(unsigned long n, double alpha, const std::vector<double>& x,
                                      std::vector<double>& out);
// out[i] = a[i] - b[i]
ZqStatModelResult ZqDifferenceBetweenVectors(unsigned long n, const std::vector<double>& a,
                                             const std::vector<double>& b, std::vector<double>& out);
// out = v v', a full n by n matrix.
ZqStatModelResult ZqVectorVectorTranspose(unsigned long n, const std::vector<double>& v, std::vector<double>& out);
// out = v[index]. A v of length 1 is a constant vector and gives v[0] for
// every index below n. An index >= n fails with ArgumentOutOfRange and the
// comment "Index: <index> bigger than dimension: <n>"; out is then DBL_MAX.
ZqStatModelResult ZqGetVecElementFromIndex(unsigned long n, const std::vector<double>& v, unsigned long index,
                                           double& out);
// out[k] = v[indices[k]]. More indices than n fail with WrongInputVectorSize
// and "Too many indices"; an index >= n as ZqGetVecElementFromIndex.
ZqStatModelResult ZqGetVecOfVecElementsFromVecOfIndices(unsigned long n, const std::vector<double>& v,
                                                        const std::vector<unsigned long>& indices,
                                                        std::vector<double>& out);
// "Values of vector <name>" followed by " <value>" for each element, at the
// given stream precision (0 keeps the stream's default of 6).
std::string ZqPrintVectorDoubles(const std::string& name, const std::vector<double>& v, int precision);

// --- Full matrices. A matrix whose length is not n * n fails with
// WrongInputMatrixSize, a right-hand side whose length is not n with
// WrongInputVectorSize. n = 0 with empty vectors is a valid empty problem.

// l = the lower Cholesky factor of a. Only the lower triangle of a is read;
// its symmetry is assumed. A pivot that is <= 0 (compared with exact zero,
// no tolerance, no pivoting) or not finite fails with SingularMatrix, and l
// is then unusable: look at the result first. Cost n^3 / 3 flops.
ZqStatModelResult ZqCholeskyDecomposition(unsigned long n, const std::vector<double>& a, std::vector<double>& l);
// out = inverse of the lower-triangular l, itself lower triangular. The
// diagonal is inverted without a test for zero.
ZqStatModelResult ZqInverseOfLowerTriangularMatrix(unsigned long n, const std::vector<double>& l,
                                                   std::vector<double>& out);
// out = a b
ZqStatModelResult ZqMatrixTimesMatrix(unsigned long n, const std::vector<double>& a, const std::vector<double>& b,
                                      std::vector<double>& out);
// out = a x
ZqStatModelResult ZqMatrixTimesVector(unsigned long n, const std::vector<double>& a, const std::vector<double>& x,
                                      std::vector<double>& out);
// out = trace(a b), without forming the product; 0 on failure.
ZqStatModelResult ZqTraceOfMatrixProduct(unsigned long n, const std::vector<double>& a,
                                         const std::vector<double>& b, double& out);
// Solves l x = b by forward substitution; l is read as lower triangular.
ZqStatModelResult ZqSolveLowerTriangularEquations(unsigned long n, const std::vector<double>& l,
                                                  const std::vector<double>& b, std::vector<double>& x);
// Solves l' x = b by back substitution; l is read as lower triangular.
ZqStatModelResult ZqSolveTransposedLowerTriangularEquations(unsigned long n, const std::vector<double>& l,
                                                            const std::vector<double>& b, std::vector<double>& x);
// Given the factor l of a, solves a x = b: l y = b, then l' x = y.
ZqStatModelResult ZqSolveSymmetricEquationsViaLowerTriSquareRoot(unsigned long n, const std::vector<double>& l,
                                                                 const std::vector<double>& b,
                                                                 std::vector<double>& x);
// out = inverse of a = l^-T l^-1, from the factor l of a: by
// ZqInverseOfLowerTriangularMatrix, ZqTransposeMatrix, ZqMatrixTimesMatrix.
ZqStatModelResult ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(unsigned long n, const std::vector<double>& l,
                                                          std::vector<double>& out);
// ZqCholeskyDecomposition, then ZqInvOfSymmPosDefMatrixFromLowTriSqRoot.
ZqStatModelResult ZqInverseOfSymmetricPositiveDefiniteMatrix(unsigned long n, const std::vector<double>& a,
                                                             std::vector<double>& out);
// out = sum of log l(i,i): the log determinant of the factor, half that of
// a. DBL_MAX on a wrong size; a non-positive diagonal gives what log gives.
ZqStatModelResult ZqLogDeterminantOfLowerTriSqRoot(unsigned long n, const std::vector<double>& l, double& out);
// Factor, then out = 2 ZqLogDeterminantOfLowerTriSqRoot; DBL_MAX on failure.
ZqStatModelResult ZqLogDeterminantOfSymmPosDefMatrix(unsigned long n, const std::vector<double>& a, double& out);
// out(i,j) = alpha a(i,j), then beta added to each diagonal element.
ZqStatModelResult ZqScalarTimesMatrixPlusDiagTerm(unsigned long n, const std::vector<double>& a, double alpha,
                                                  double beta, std::vector<double>& out);

// --- By kind. The scalar s must have length 1 and the diagonal d length n
// (WrongInputMatrixSize). An element that is <= 0, NaN or infinite fails with
// SingularMatrix and a comment naming it. Double outputs are DBL_MAX on
// failure.

// out = n log s
ZqStatModelResult ZqLogDeterminantOfScalarMatrix(unsigned long n, const std::vector<double>& s, double& out);
// out = sum log d[i]
ZqStatModelResult ZqLogDeterminantOfDiagonalMatrix(unsigned long n, const std::vector<double>& d, double& out);
// out = { 1 / s }
ZqStatModelResult ZqInverseOfScalarMatrix(const std::vector<double>& s, std::vector<double>& out);
// out[i] = 1 / d[i]
ZqStatModelResult ZqInverseOfDiagonalMatrix(unsigned long n, const std::vector<double>& d, std::vector<double>& out);
// out = { sqrt(s) }
ZqStatModelResult ZqSquareRootOfScalarMatrix(const std::vector<double>& s, std::vector<double>& out);
// out[i] = sqrt(d[i])
ZqStatModelResult ZqSquareRootOfDiagonalMatrix(unsigned long n, const std::vector<double>& d,
                                               std::vector<double>& out);

// --- General: scalar, diagonal or full, by the length of a.

// Scalar: ZqLogDeterminantOfScalarMatrix; diagonal:
// ZqLogDeterminantOfDiagonalMatrix; full: ZqLogDeterminantOfSymmPosDefMatrix.
ZqStatModelResult ZqLogDeterminantOfPosDefMatrix(unsigned long n, const std::vector<double>& a, double& out);
// The inverse, of the same kind as a.
ZqStatModelResult ZqInverseOfPosDefMatrix(unsigned long n, const std::vector<double>& a, std::vector<double>& out);
// The square root, of the same kind as a (the Cholesky factor when full).
ZqStatModelResult ZqSquareRootOfPosDefMatrix(unsigned long n, const std::vector<double>& a,
                                             std::vector<double>& out);
// A copy of a scalar or diagonal matrix; the transpose of a full one.
ZqStatModelResult ZqTransposeMatrix(unsigned long n, const std::vector<double>& a, std::vector<double>& out);
// Successful when a is positive definite. A scalar or diagonal element that
// is <= 0 fails with SingularMatrix (a scalar with the comment "Scalar matrix
// with non-positive scalar"); a full matrix must have a Cholesky factor.
ZqStatModelResult ZqMatrixIsPosDef(unsigned long n, const std::vector<double>& a);
// Successful when a is non-negative definite: scalar and diagonal elements
// fail only below 0; a full matrix must have a Cholesky factor after
// 2^-23 = 1.1920928955078125e-7 is added to its diagonal, the one tolerance
// of this layer.
ZqStatModelResult ZqMatrixIsNonNegDef(unsigned long n, const std::vector<double>& a);
// out = a(i,i): a[0], d[i] or a(i,i). An i >= n fails with
// ArgumentOutOfRange and "Index: <i> bigger than matrix Dimension: <n>";
// out is then DBL_MAX.
ZqStatModelResult ZqGetDiagonalElemOfMatrix(unsigned long n, const std::vector<double>& a, unsigned long i,
                                            double& out);
// The block of rows and columns `indices`: { a[0] } for a scalar, the
// diagonal elements d[indices[k]] for a diagonal matrix, and the full
// matrix of a(indices[r], indices[c]) of dimension indices.size() for a full
// one. Index checks as ZqGetVecOfVecElementsFromVecOfIndices.
ZqStatModelResult ZqGetBlockSubMatrixOfMatrix(unsigned long n, const std::vector<double>& a,
                                              const std::vector<unsigned long>& indices, std::vector<double>& out);

}  // namespace Varimo
