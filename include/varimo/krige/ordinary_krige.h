// Ordinary kriging: the weights sum to one, so that no mean needs to be
// known. The bordered system [C 1; 1' 0] [w; mu] = [b; 1] is solved by block
// elimination through the Cholesky factor of C: with z = C^-1 1,
// mu = (1' C^-1 b - 1) / (1' z) and w = C^-1 b - mu z. A kernel is refused
// exactly when C is not positive definite; when it is, 1' z is positive and
// the bordered system has its unique solution, so no second factorisation
// is needed.
//
// Costs as for ZqSimpleKrige, plus one solve at training.
#pragma once

#include <Eigen/Core>

#include <vector>

#include "varimo/krige/standard_krige.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqOrdinaryKrige final : public ZqStandardKrigeImpl<T, TT> {
 public:
  using Base = ZqStandardKrigeImpl<T, TT>;
  using Container = typename Base::Container;
  using Base::Base;
  using Base::GetKrigeResult;
  using Base::TrainFixed;

  void Clear() override;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqOrdinaryKrige(*this); }
  // The border is the 1 of the weights' sum; solved by the block
  // elimination of the queries.
  bool RightHandSide(const T& query, Eigen::VectorXd& rightHand) const override;
  bool SolveSystem(Eigen::MatrixXd& rightHands) const override;

 protected:
  bool TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) override;
  // Not valid when the kriging variance falls outside [nugget, sill] (with
  // a margin of 1e-6 relative, and of the rounding of the variance below):
  // a numerically broken solve.
  ZqKrigeResult GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                               const Container& container) const override;
  void PredictTrained(const std::vector<const T*>& queries, double* predictions, double* variances) const override;

 private:
  ZqCholeskyFactor cholesky_;  // upper factor U of the covariance matrix C = U' U
  std::vector<double> uniqueResponses_;  // raw
  Eigen::VectorXd unitSolve_;  // z = C^-1 1
  double unitSum_ = 0.0;  // 1' z
  Eigen::VectorXd whitenedUnit_;  // L^-1 1, for batches
  Eigen::VectorXd whitenedResponses_;  // L^-1 y, for batches
};

}  // namespace Varimo
