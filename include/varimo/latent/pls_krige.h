// Partial least squares regression by the NIPALS iteration, on standardised
// predictors X (I by J) and responses Y (I by K), with the helpers it stands
// on: column standardisation, the Moore-Penrose inverse and the leave-one-out
// prediction error.
//
//   Varimo::ZqPartialLeastSquareRegression pls(1e-6, 1e-6, X, Y);
//   const unsigned long found = pls.BuildLatentVectorsViaNIPALS();
//   pls.Predict(std::min(found, 3ul));
//   pls.GetFPLS(F, Fstar);   // [1, x] Fstar: latent scores of a raw row x
//
// The start vector of the iteration comes from the process-wide C rand(),
// unseeded here: the signs of t, u, w, p and c may differ between runs, while
// the predictions and the raw-scale weights do not. The class reports
// nothing; a constant column of X gives NaN at once and no latent vector.
#pragma once

#include <Eigen/Core>

#include <vector>

namespace Varimo {

using ZqPLSMatrix = Eigen::MatrixXd;
using ZqPLSVector = Eigen::VectorXd;

class ZqPartialLeastSquareRegression {
 public:
  // A 1 by 1 model with inner tolerance 0.001 and residual tolerance 1e-10.
  ZqPartialLeastSquareRegression();
  // Copies X and Y; I and J from X, K from Y.
  ZqPartialLeastSquareRegression(double innerTol, double residualTol, const ZqPLSMatrix& X, const ZqPLSMatrix& Y);

  // Extracts latent vectors until the deflated standardised X has a norm
  // not above the residual tolerance, and returns how many it found. None
  // when X and Y differ in rows or have fewer than two, or when the
  // standardised data are not finite (a constant column); the search stops
  // too at an iterate that turns non-finite. Each vector costs power
  // iterations of O(I J + I K) until t moves by less than the inner
  // tolerance.
  unsigned long BuildLatentVectorsViaNIPALS();
  unsigned long GetNumLatentVectors() const { return numLatent_; }

  // The model of the first L latent vectors (at most the number found):
  // Y hat and RESS, the weights B and Bstar, F and Fstar, and Xstar.
  void Predict(unsigned long L);
  void Predict(unsigned long L, double& ress, ZqPLSMatrix& yHat);

  void GetMeanVarianceXY(ZqPLSVector& meanX, ZqPLSVector& stdX, ZqPLSVector& meanY, ZqPLSVector& stdY) const;
  void GetTUPWCB(std::vector<ZqPLSVector>& t, std::vector<ZqPLSVector>& u, std::vector<ZqPLSVector>& p,
                 std::vector<ZqPLSVector>& w, std::vector<ZqPLSVector>& c, std::vector<double>& b) const;
  // B (J by K) acts on standardised rows and gives standardised responses;
  // Bstar (J + 1 by K) acts on raw rows with a leading 1.
  void GetBPLS(ZqPLSMatrix& B, ZqPLSMatrix& Bstar) const;
  // F (J by L) gives the latent scores T = Xs F of standardised rows; Fstar
  // (J + 1 by L) those of raw rows with a leading 1.
  void GetFPLS(ZqPLSMatrix& F, ZqPLSMatrix& Fstar) const;
  // X rebuilt from the latent vectors of the last Predict, on the raw
  // scale, with a leading column of ones.
  ZqPLSMatrix GetXstar() const { return Xstar_; }
  // The share of the total variance of standardised X and Y that each
  // latent vector accounts for.
  void GetVarianceProportions(std::vector<double>& ofX, std::vector<double>& ofY) const;

 private:
  unsigned long I_ = 1, J_ = 1, K_ = 1;
  unsigned long numLatent_ = 0;
  double innerTol_ = 0.001;
  double residualTol_ = 1e-10;
  double ress_ = 0.0;
  ZqPLSVector meanX_, stdX_, meanY_, stdY_;
  ZqPLSMatrix X_, Y_;
  ZqPLSMatrix yHat_;
  ZqPLSMatrix B_, Bstar_;
  ZqPLSMatrix F_, Fstar_;
  ZqPLSMatrix Xstar_;
  std::vector<ZqPLSVector> t_, u_, p_, w_, c_;
  std::vector<double> b_;
  std::vector<double> proportionX_, proportionY_;
};

// Each column of m less its mean, divided by its sample standard deviation;
// the means and deviations are handed out. A constant column, or a single
// row, gives infinities or NaN.
ZqPLSMatrix Zscore(const ZqPLSMatrix& m, ZqPLSVector& means, ZqPLSVector& stdDevs);
ZqPLSMatrix Zscore(const ZqPLSMatrix& m);

double mean(const ZqPLSVector& v);
// The sample standard deviation (divisor n - 1).
double stdDeviation(const ZqPLSVector& v);

// The Frobenius norm; 0 for a matrix with no rows.
double Matrix_Norm(const ZqPLSMatrix& m);

// The Moore-Penrose inverse by a thin singular value decomposition. Every
// singular value is inverted, so a zero one gives infinities.
ZqPLSMatrix pinv(const ZqPLSMatrix& m);

// m without row `row` (a plain copy when row is past the end).
void RemoveRow(const ZqPLSMatrix& m, unsigned long row, ZqPLSMatrix& out);

// Uniform on [lower, upper] from the C rand(). For lower >= upper, prints
// "lb >= ub in GetRandomDoubleWithinBounds!   <lower> <upper> " to standard
// output and returns lower.
double GetRandomDoubleWithinBounds(double lower, double upper);

// The leave-one-out predicted residual sum of squares of a model of L
// latent vectors: each row is predicted by a model built without it, into
// yPredicted (I by K). Costs a full model per row.
double ZqPredictedResidualSumOfSquares(unsigned long L, double innerTol, double residualTol, const ZqPLSMatrix& X,
                                       const ZqPLSMatrix& Y, ZqPLSMatrix& yPredicted);

}  // namespace Varimo
