// Universal kriging: the response is a linear drift in m properties of the
// element (a constant and the values of a property list) plus a spatially
// correlated residual. The variogram is built on the residuals of a
// least-squares fit of the drift, and the weights solve the bordered system
//
//   [ C   1   P ] [ w  ]   [ b ]
//   [ 1'  0   0 ] [ mu ] = [ 1 ]
//   [ P'  0   0 ] [ nu ]   [ p ]
//
// with P the properties of the training elements and p those of the query,
// so that the weights reproduce the drift exactly.
//
//   Varimo::ZqUniversalKrige<std::vector<double>> model(Varimo::ZqEuclideanDistance(),
//                                                       Varimo::ZqVecPropertyListFxn(3), errorValue,
//                                                       missingID, false, Varimo::ZqKrigeUniqueResponseMethod::Mean);
//
// A training element or query without the properties is refused. Training
// costs one Cholesky factorisation of C per kernel tried, to refuse kernels
// that are not positive definite, and one symmetric indefinite (LDL')
// factorisation of the bordered matrix; a query one solve and n distance
// calls.
#pragma once

#include <Eigen/Core>

#include <memory>
#include <vector>

#include "varimo/krige/standard_krige.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqUniversalKrige final : public ZqStandardKrigeImpl<T, TT> {
 public:
  using Base = ZqStandardKrigeImpl<T, TT>;
  using Container = typename Base::Container;

  ZqUniversalKrige(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn, double errorValue,
                   unsigned int missingIDValue, bool includeUnmeasured, unsigned int uniqueResponseMethod);
  // On a copy of a container with its property list, for the local models.
  ZqUniversalKrige(const Container& container, double errorValue, unsigned int missingIDValue,
                   bool includeUnmeasured);
  ZqUniversalKrige(const ZqUniversalKrige& other);
  ~ZqUniversalKrige() override;

  using Base::GetKrigeResult;
  using Base::TrainFixed;

  void Clear() override;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqUniversalKrige(*this); }
  bool RightHandSide(const T& query, Eigen::VectorXd& rightHand) const override;
  bool SolveSystem(Eigen::MatrixXd& rightHands) const override;

 protected:
  bool TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) override;
  // Not valid for a query without the properties or with drift values that
  // are not finite, for NaN weights (with the warning "Universal kriging
  // failed, NaN weights"), for weights that miss the border's constraints
  // (sum one, the query's drift) by more than 1e-8 relative (with a
  // warning), and for a kriging variance outside [nugget, sill]. Drift properties that are collinear on the training data (a
  // constant one, or one repeated) make the bordered matrix singular, but
  // its pivoting LDLT factorisation usually still solves the system, and
  // the predictions are then those of the drift without the redundant
  // columns.
  ZqKrigeResult GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                               const Container& container) const override;

 private:
  std::unique_ptr<ZqSymmetricIndefiniteFactor> ldlt_;
  std::vector<double> uniqueResponses_;  // raw
};

}  // namespace Varimo
