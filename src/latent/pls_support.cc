// The matrix helpers of partial least squares.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "varimo/latent/pls_krige.h"
#include "varimo/numerics/dense_algebra.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

double mean(const ZqPLSVector& v) { return v.sum() / static_cast<double>(v.size()); }

double stdDeviation(const ZqPLSVector& v) {
  const double m = mean(v);
  return std::sqrt((v.array() - m).square().sum() / static_cast<double>(v.size() - 1));
}

ZqPLSMatrix Zscore(const ZqPLSMatrix& m, ZqPLSVector& means, ZqPLSVector& stdDevs) {
  means.resize(m.cols());
  stdDevs.resize(m.cols());
  ZqPLSMatrix out(m.rows(), m.cols());
  for (Eigen::Index j = 0; j < m.cols(); ++j) {
    const ZqPLSVector column = m.col(j);
    means[j] = mean(column);
    stdDevs[j] = stdDeviation(column);
    out.col(j) = (column.array() - means[j]) / stdDevs[j];
  }
  return out;
}

ZqPLSMatrix Zscore(const ZqPLSMatrix& m) {
  ZqPLSVector means, stdDevs;
  return Zscore(m, means, stdDevs);
}

double Matrix_Norm(const ZqPLSMatrix& m) { return m.rows() == 0 ? 0.0 : m.norm(); }

ZqPLSMatrix pinv(const ZqPLSMatrix& m) {
  ZqPLSMatrix u, v;
  ZqPLSVector singular;
  // Not converging leaves NaN in the answer, as an infinite value would.
  if (!ZqThinSvd(m, u, singular, v)) return ZqPLSMatrix::Constant(m.cols(), m.rows(), std::nan(""));
  // No threshold: the weights come from P'W, which is square and of full
  // rank for the latent vectors NIPALS finds.
  const ZqPLSVector inverted = singular.cwiseInverse();
  return v * inverted.asDiagonal() * u.transpose();
}

void RemoveRow(const ZqPLSMatrix& m, unsigned long row, ZqPLSMatrix& out) {
  const Eigen::Index rows = m.rows();
  if (static_cast<Eigen::Index>(row) >= rows) {
    out = m;
    return;
  }
  const Eigen::Index r = static_cast<Eigen::Index>(row);
  out.resize(rows - 1, m.cols());
  out.topRows(r) = m.topRows(r);
  out.bottomRows(rows - 1 - r) = m.bottomRows(rows - 1 - r);
}

double GetRandomDoubleWithinBounds(double lower, double upper) {
  if (lower >= upper) {
    Corvane::ZqPrint(Corvane::ZqOutputStream::Out, "lb >= ub in GetRandomDoubleWithinBounds!   %f %f \n", lower,
                     upper);
    return lower;
  }
  return lower + (upper - lower) * (static_cast<double>(std::rand()) / RAND_MAX);
}

}  // namespace Varimo
