#include "varimo/latent/pls_krige.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Varimo {

namespace {

ZqPLSVector Normalised(const ZqPLSVector& v) { return v / v.norm(); }

// The first L vectors of a list as the columns of a matrix.
ZqPLSMatrix Columns(const std::vector<ZqPLSVector>& list, unsigned long L, Eigen::Index rows) {
  ZqPLSMatrix m(rows, static_cast<Eigen::Index>(L));
  for (unsigned long l = 0; l < L; ++l) m.col(static_cast<Eigen::Index>(l)) = list[l];
  return m;
}

}  // namespace

ZqPartialLeastSquareRegression::ZqPartialLeastSquareRegression()
    : X_(ZqPLSMatrix::Zero(1, 1)), Y_(ZqPLSMatrix::Zero(1, 1)) {}

ZqPartialLeastSquareRegression::ZqPartialLeastSquareRegression(double innerTol, double residualTol,
                                                               const ZqPLSMatrix& X, const ZqPLSMatrix& Y)
    : I_(static_cast<unsigned long>(X.rows())),
      J_(static_cast<unsigned long>(X.cols())),
      K_(static_cast<unsigned long>(Y.cols())),
      innerTol_(innerTol),
      residualTol_(residualTol),
      X_(X),
      Y_(Y) {}

unsigned long ZqPartialLeastSquareRegression::BuildLatentVectorsViaNIPALS() {
  t_.clear();
  u_.clear();
  p_.clear();
  w_.clear();
  c_.clear();
  b_.clear();
  proportionX_.clear();
  proportionY_.clear();
  numLatent_ = 0;
  if (X_.rows() != Y_.rows() || X_.rows() < 2 || X_.cols() == 0 || Y_.cols() == 0) return 0;

  ZqPLSMatrix Xs = Zscore(X_, meanX_, stdX_);
  ZqPLSMatrix Ys = Zscore(Y_, meanY_, stdY_);
  const double ssqX = std::pow(Matrix_Norm(Xs), 2);
  const double ssqY = std::pow(Matrix_Norm(Ys), 2);
  const Eigen::Index rows = Xs.rows();

  // Any start with a non-zero projection will do; drawn once for all vectors.
  ZqPLSVector u(rows);
  for (Eigen::Index i = 0; i < rows; ++i) u[i] = std::rand() / 2147483647.0;

  unsigned long L = 0;
  // The negated test also stops on NaN: a constant column finds nothing.
  while (Matrix_Norm(Xs) > residualTol_) {
    ZqPLSVector w, t, c;
    ZqPLSVector previous = ZqPLSVector::Zero(rows);
    for (;;) {
      w = Normalised(Xs.transpose() * u);
      t = Normalised(Xs * w);
      c = Normalised(Ys.transpose() * t);
      u = Ys * c;
      const double moved = (t - previous).norm();
      // A constant response, or an X that deflated to exact zero along u,
      // gives NaN here; without this stop the iteration would never end.
      if (!std::isfinite(moved)) {
        numLatent_ = L;
        return L;
      }
      if (moved < innerTol_) break;
      previous = t;
    }
    const double b = t.dot(u);
    const ZqPLSVector p = Xs.transpose() * t;
    Xs -= t * p.transpose();
    Ys -= b * t * c.transpose();
    proportionX_.push_back(p.dot(p) / ssqX);
    proportionY_.push_back(b * b / ssqY);
    t_.push_back(t);
    u_.push_back(u);
    p_.push_back(p);
    w_.push_back(w);
    c_.push_back(c);
    b_.push_back(b);
    ++L;
  }
  numLatent_ = L;
  return L;
}

void ZqPartialLeastSquareRegression::Predict(unsigned long L) {
  L = std::min<unsigned long>(L, t_.size());
  const Eigen::Index I = static_cast<Eigen::Index>(I_), J = static_cast<Eigen::Index>(J_),
                     K = static_cast<Eigen::Index>(K_);
  yHat_ = ZqPLSMatrix::Zero(I, K);
  for (unsigned long l = 0; l < L; ++l) yHat_ += b_[l] * t_[l] * c_[l].transpose();
  if (meanY_.size() == K) {
    for (Eigen::Index j = 0; j < K; ++j) yHat_.col(j) = (yHat_.col(j) * stdY_[j]).array() + meanY_[j];
  }
  ress_ = std::pow(Matrix_Norm(Y_ - yHat_), 2);
  if (meanX_.size() != J) return;  // never built: nothing more to form

  const ZqPLSMatrix P = Columns(p_, L, J), T = Columns(t_, L, I), W = Columns(w_, L, J), C = Columns(c_, L, K);
  const ZqPLSMatrix xHat = T * P.transpose();
  F_ = L == 0 ? ZqPLSMatrix(J, 0) : ZqPLSMatrix(W * pinv(P.transpose() * W));
  ZqPLSVector b(static_cast<Eigen::Index>(L));
  for (unsigned long l = 0; l < L; ++l) b[static_cast<Eigen::Index>(l)] = b_[l];
  B_ = F_ * b.asDiagonal() * C.transpose();

  Bstar_.resize(J + 1, K);
  for (Eigen::Index k = 0; k < K; ++k) {
    double shift = 0.0;
    for (Eigen::Index i = 0; i < J; ++i) {
      Bstar_(i + 1, k) = B_(i, k) * stdY_[k] / stdX_[i];
      shift += meanX_[i] * Bstar_(i + 1, k);
    }
    Bstar_(0, k) = meanY_[k] - shift;
  }
  const Eigen::Index numL = static_cast<Eigen::Index>(L);
  Fstar_.resize(J + 1, numL);
  for (Eigen::Index l = 0; l < numL; ++l) {
    double shift = 0.0;
    for (Eigen::Index i = 0; i < J; ++i) {
      Fstar_(i + 1, l) = F_(i, l) / stdX_[i];
      shift += meanX_[i] * Fstar_(i + 1, l);
    }
    Fstar_(0, l) = -shift;
  }
  Xstar_.resize(I, J + 1);
  Xstar_.col(0).setOnes();
  for (Eigen::Index j = 0; j < J; ++j) Xstar_.col(j + 1) = (xHat.col(j) * stdX_[j]).array() + meanX_[j];
}

void ZqPartialLeastSquareRegression::Predict(unsigned long L, double& ress, ZqPLSMatrix& yHat) {
  Predict(L);
  ress = ress_;
  yHat = yHat_;
}

void ZqPartialLeastSquareRegression::GetMeanVarianceXY(ZqPLSVector& meanX, ZqPLSVector& stdX, ZqPLSVector& meanY,
                                                       ZqPLSVector& stdY) const {
  meanX = meanX_;
  stdX = stdX_;
  meanY = meanY_;
  stdY = stdY_;
}

void ZqPartialLeastSquareRegression::GetTUPWCB(std::vector<ZqPLSVector>& t, std::vector<ZqPLSVector>& u,
                                               std::vector<ZqPLSVector>& p, std::vector<ZqPLSVector>& w,
                                               std::vector<ZqPLSVector>& c, std::vector<double>& b) const {
  t = t_;
  u = u_;
  p = p_;
  w = w_;
  c = c_;
  b = b_;
}

void ZqPartialLeastSquareRegression::GetBPLS(ZqPLSMatrix& B, ZqPLSMatrix& Bstar) const {
  B = B_;
  Bstar = Bstar_;
}

void ZqPartialLeastSquareRegression::GetFPLS(ZqPLSMatrix& F, ZqPLSMatrix& Fstar) const {
  F = F_;
  Fstar = Fstar_;
}

void ZqPartialLeastSquareRegression::GetVarianceProportions(std::vector<double>& ofX,
                                                            std::vector<double>& ofY) const {
  ofX = proportionX_;
  ofY = proportionY_;
}

double ZqPredictedResidualSumOfSquares(unsigned long L, double innerTol, double residualTol, const ZqPLSMatrix& X,
                                       const ZqPLSMatrix& Y, ZqPLSMatrix& yPredicted) {
  yPredicted = ZqPLSMatrix::Zero(Y.rows(), Y.cols());
  if (X.rows() != Y.rows()) return std::pow(Matrix_Norm(Y), 2);
  for (Eigen::Index i = 0; i < X.rows(); ++i) {
    ZqPLSMatrix xRest, yRest;
    RemoveRow(X, static_cast<unsigned long>(i), xRest);
    RemoveRow(Y, static_cast<unsigned long>(i), yRest);
    ZqPartialLeastSquareRegression model(innerTol, residualTol, xRest, yRest);
    model.BuildLatentVectorsViaNIPALS();
    model.Predict(L);
    ZqPLSVector meanX, stdX, meanY, stdY;
    model.GetMeanVarianceXY(meanX, stdX, meanY, stdY);
    ZqPLSMatrix B, Bstar;
    model.GetBPLS(B, Bstar);
    if (meanX.size() != X.cols() || B.rows() != X.cols()) continue;  // too few rows left to model
    const ZqPLSVector xs = (X.row(i).transpose() - meanX).cwiseQuotient(stdX);
    const ZqPLSVector ys = B.transpose() * xs;
    yPredicted.row(i) = (ys.cwiseProduct(stdY) + meanY).transpose();
  }
  return std::pow(Matrix_Norm(Y - yPredicted), 2);
}

}  // namespace Varimo
