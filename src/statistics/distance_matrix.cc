#include "varimo/statistics/distance_matrix.h"

#include <cmath>
#include <string>

#include "statistic_support.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

using namespace StatisticDetail;
namespace Failure = ZqStatModelFailureType;

namespace {

constexpr const char* kRoutine = "GetDistanceMatrix";

void FillPointDistances(ZqStatModelResult& result, Eigen::MatrixXd& matrix, const std::vector<double>& data,
                        std::uint64_t numCols) {
  const std::uint64_t n = data.size() / numCols;
  for (std::uint64_t k = 0; k < n * numCols; ++k) {
    if (!std::isfinite(data[k])) {
      result = ZqMakeFailedResult(Failure::ArgumentValueWrong, kRoutine,
                                  Corvane::ZqMakeString("For input vector: Bad value: ", data[k], " at row ",
                                                        k / numCols, "\n"));
      return;
    }
  }
  matrix.setZero(static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(n));
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < i; ++j) {
      double sum = 0.0;
      for (std::uint64_t c = 0; c < numCols; ++c) {
        const double d = data[i * numCols + c] - data[j * numCols + c];
        sum += d * d;
      }
      const auto ii = static_cast<Eigen::Index>(i), jj = static_cast<Eigen::Index>(j);
      matrix(ii, jj) = matrix(jj, ii) = std::sqrt(sum);
    }
  }
}

void FillSimilarityDistances(ZqStatModelResult& result, Eigen::MatrixXd& matrix, const std::vector<double>& data,
                             std::uint64_t numCols) {
  const std::uint64_t n = data.size() / numCols;
  if (n != numCols) {
    result = ZqMakeFailedResult(Failure::WrongInputMatrixSize, kRoutine,
                                Corvane::ZqMakeString("smilarity matrix assumed square, but numRows, numCols = ", n,
                                                      "; ", numCols));
    return;
  }
  matrix.resize(static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(n));
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < n; ++j) {
      const double s = data[i * n + j];
      // Written so that a NaN fails too.
      if (!(s >= 0.0 && s <= 1.0)) {
        result = ZqMakeFailedResult(Failure::UpperBoundViolated, kRoutine,
                                    Corvane::ZqMakeString("For input vector: Bad similarity: ", s, " at i,j = ", "(",
                                                          i, ",", j, ")", "\n"));
        matrix.resize(0, 0);
        return;
      }
      matrix(static_cast<Eigen::Index>(i), static_cast<Eigen::Index>(j)) = std::sqrt(1.0 - s);
    }
  }
}

}  // namespace

void GetDistanceMatrix(ZqStatModelResult& result, Eigen::MatrixXd& matrix, const std::vector<double>& data,
                       std::uint64_t numCols, bool isSimilarity) {
  result = true;
  matrix.resize(0, 0);
  if (numCols == 0) {
    result = ZqMakeFailedResult(Failure::ArgumentOutOfRange, kRoutine, "numCols = 0");
    return;
  }
  if (isSimilarity) {
    FillSimilarityDistances(result, matrix, data, numCols);
  } else {
    FillPointDistances(result, matrix, data, numCols);
  }
}

void CenterDistanceMatrix(Eigen::MatrixXd& matrix) {
  if (matrix.size() == 0) return;
  const Eigen::VectorXd rowMeans = matrix.rowwise().mean();
  const Eigen::RowVectorXd colMeans = matrix.colwise().mean();
  const double grandMean = matrix.mean();
  matrix.colwise() -= rowMeans;
  matrix.rowwise() -= colMeans;
  matrix.array() += grandMean;
}

std::pair<double, double> DistanceMatrixCorrelation(const Eigen::MatrixXd& a, const Eigen::MatrixXd& b) {
  if (a.size() == 0 || a.rows() != b.rows() || a.cols() != b.cols()) return {0.0, 0.0};
  const double n2 = static_cast<double>(a.size());
  const double dCov2 = a.cwiseProduct(b).sum() / n2;
  const double dVarX = a.squaredNorm() / n2;
  const double dVarY = b.squaredNorm() / n2;
  if (dCov2 >= kEps && dVarX >= kEps && dVarY >= kEps) {
    const double dCor2 = dCov2 / std::sqrt(dVarX * dVarY);
    return {std::sqrt(dCor2), dCor2};
  }
  return {0.0, 0.0};
}

double DistanceMatrixCovariance(const Eigen::MatrixXd& a, const Eigen::MatrixXd& b,
                                const std::vector<std::size_t>& permutation) {
  const Eigen::Index n = a.rows();
  if (n == 0) return 0.0;
  double sum = 0.0;
  for (Eigen::Index j = 0; j < n; ++j) {
    const auto pj = static_cast<Eigen::Index>(permutation[static_cast<std::size_t>(j)]);
    for (Eigen::Index i = 0; i < n; ++i) {
      sum += a(i, j) * b(static_cast<Eigen::Index>(permutation[static_cast<std::size_t>(i)]), pj);
    }
  }
  return sum / static_cast<double>(n);
}

}  // namespace Varimo
