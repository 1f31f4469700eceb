// Distance matrices of multivariate samples and the moments of distance
// correlation built on them, for the permutation test of independence
// (independence_statistic.h) and for farthest-first selection of rows.
//
// A sample is a flat vector of doubles in row order with its number of
// columns. It holds either points, one per row, or a square similarity
// matrix with values in [0, 1].
#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

// The n by n distance matrix of a sample, routine "GetDistanceMatrix".
//   - Points: n = size / numCols rows (a remainder is ignored); the
//     Euclidean distance between rows i and j. A NaN or infinite coordinate
//     fails with ArgumentValueWrong, since every distance to that row would
//     be meaningless.
//   - Similarity: n = size / numCols must equal numCols, else
//     WrongInputMatrixSize; s gives the distance sqrt(1 - s). A value outside
//     [0, 1], NaN included, fails with UpperBoundViolated whichever bound it
//     breaks.
// numCols 0 fails with ArgumentOutOfRange. O(n^2 numCols).
// On success result is true; on failure the matrix is empty.
void GetDistanceMatrix(ZqStatModelResult& result, Eigen::MatrixXd& matrix, const std::vector<double>& data,
                       std::uint64_t numCols, bool isSimilarity);

// Double centring: subtracts from each element its row mean and its column
// mean and adds the grand mean. Leaves an empty matrix alone.
void CenterDistanceMatrix(Eigen::MatrixXd& matrix);

// (dCor, dCor^2) of two centred distance matrices of the same size: with
// dCov2 = sum A_ij B_ij / n^2 and dVarX, dVarY the same of A with A and of B
// with B, dCor^2 = dCov2 / sqrt(dVarX dVarY) when all three are at least
// 2.220446049250313e-16, and (0, 0) otherwise, an empty matrix included.
std::pair<double, double> DistanceMatrixCorrelation(const Eigen::MatrixXd& a, const Eigen::MatrixXd& b);

// sum over i, j of A_ij B(perm_i, perm_j), over n: n dCov2 for the identity
// permutation, and the same statistic for a sample whose rows have been
// paired at random under the permutation. 0 for an empty matrix.
double DistanceMatrixCovariance(const Eigen::MatrixXd& a, const Eigen::MatrixXd& b,
                                const std::vector<std::size_t>& permutation);

}  // namespace Varimo
