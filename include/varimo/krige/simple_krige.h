// Simple kriging: the responses are residuals around their mean over the
// unique elements, and the weights solve C w = b with C the covariance
// matrix of the training elements and b the covariances of the query.
//
//   Varimo::ZqSimpleKrige<std::vector<double>> model(Varimo::ZqEuclideanDistance(),
//                                                    errorValue, missingID, false,
//                                                    Varimo::ZqKrigeUniqueResponseMethod::Mean);
//   model.AddTraining(x, y);  ...
//   if (model.Train()) prediction = model.Predict(query);
//
// Training costs one Cholesky factorisation per kernel tried, O(n^3) in the
// number n of unique elements; a query one pair of triangular solves and n
// distance calls.
#pragma once

#include <Eigen/Core>

#include <vector>

#include "varimo/krige/standard_krige.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqSimpleKrige final : public ZqStandardKrigeImpl<T, TT> {
 public:
  using Base = ZqStandardKrigeImpl<T, TT>;
  using Container = typename Base::Container;
  using Base::Base;
  using Base::GetKrigeResult;
  using Base::TrainFixed;

  void Clear() override;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqSimpleKrige(*this); }
  // No border: r holds the covariances alone.
  bool RightHandSide(const T& query, Eigen::VectorXd& rightHand) const override;
  bool SolveSystem(Eigen::MatrixXd& rightHands) const override;

 protected:
  // Fails, and the next kernel is tried, when the covariance matrix is not
  // positive definite.
  bool TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) override;
  // Not valid when the kriging variance comes out negative (a numerically
  // broken solve).
  ZqKrigeResult GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                               const Container& container) const override;
  void PredictTrained(const std::vector<const T*>& queries, double* predictions, double* variances) const override;

 private:
  ZqCholeskyFactor cholesky_;  // upper factor U of the covariance matrix C = U' U
  std::vector<double> uniqueResponses_;  // minus mean_
  double mean_ = 0.0;
  Eigen::VectorXd whitenedResponses_;  // L^-1 uniqueResponses_, for batches
};

}  // namespace Varimo
