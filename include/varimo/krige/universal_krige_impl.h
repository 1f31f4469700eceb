// Definitions of ZqUniversalKrige.
#pragma once

#include <memory>
#include <utility>

#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/standard_krige_impl.h"
#include "varimo/krige/universal_krige.h"
#include "varimo/platform/tessik/is_nan.h"

namespace Varimo {

template <class T, class TT>
ZqUniversalKrige<T, TT>::ZqUniversalKrige(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn,
                                          double errorValue, unsigned int missingIDValue, bool includeUnmeasured,
                                          unsigned int uniqueResponseMethod)
    : Base(distFxn, propFxn, errorValue, missingIDValue, includeUnmeasured, uniqueResponseMethod),
      ldlt_(std::make_unique<ZqSymmetricIndefiniteFactor>()) {}

template <class T, class TT>
ZqUniversalKrige<T, TT>::ZqUniversalKrige(const Container& container, double errorValue, unsigned int missingIDValue,
                                          bool includeUnmeasured)
    : Base(container, errorValue, missingIDValue, includeUnmeasured),
      ldlt_(std::make_unique<ZqSymmetricIndefiniteFactor>()) {}

template <class T, class TT>
ZqUniversalKrige<T, TT>::ZqUniversalKrige(const ZqUniversalKrige& other)
    : Base(other),
      ldlt_(std::make_unique<ZqSymmetricIndefiniteFactor>(*other.ldlt_)),
      uniqueResponses_(other.uniqueResponses_) {}

template <class T, class TT>
ZqUniversalKrige<T, TT>::~ZqUniversalKrige() = default;

template <class T, class TT>
void ZqUniversalKrige<T, TT>::Clear() {
  ldlt_ = std::make_unique<ZqSymmetricIndefiniteFactor>();
  uniqueResponses_.clear();
  Base::Clear();
}

template <class T, class TT>
bool ZqUniversalKrige<T, TT>::TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) {
  const std::size_t n = container.GetNumUnique();
  if (n == 0) {
    Corvane::ZqThrow.Warning("ZqUniversalKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data");
    return false;
  }
  const ZqPropertyListFxn<T>* drift = container.GetPropertyFxn();
  const std::size_t m = drift ? drift->GetSize() : 0;
  const auto size = static_cast<Eigen::Index>(n);
  Eigen::MatrixXd system(size, size);
  if (!ZqFillCovarianceMatrix(system, container, kernel)) return false;
  // The kernel is refused on the covariance block alone: the bordered
  // matrix is indefinite by construction.
  if (!system.allFinite()) return false;
  {
    ZqCholeskyFactor covariance;
    if (!covariance.Compute(system)) return false;
    if (this->WarnsOfConditioning()) {
      krige_detail::WarnIfNearlySingular("ZqUniversalKrige::TrainFixed", system.cwiseAbs().colwise().sum().maxCoeff(),
                                         size, [&covariance](Eigen::VectorXd& b) { covariance.SolveInPlace(b); });
    }
  }
  uniqueResponses_.resize(n);
  for (std::size_t k = 0; k < n; ++k) uniqueResponses_[k] = container.GetUniqueResponse(k);

  const auto border = static_cast<Eigen::Index>(1 + m);
  system.conservativeResize(size + border, size + border);
  system.bottomRightCorner(border, border).setZero();
  for (Eigen::Index i = 0; i < size; ++i) {
    system(size, i) = system(i, size) = 1.0;
    const std::vector<double> properties = container.GetUniqueProperties(static_cast<std::size_t>(i));
    for (std::size_t k = 0; k < m; ++k) {
      const Eigen::Index row = size + 1 + static_cast<Eigen::Index>(k);
      system(row, i) = system(i, row) = properties[k];
    }
  }
  if (!ldlt_->Compute(std::move(system))) return false;
  // The system is symmetric, so a query's prediction w'y, with w the head
  // of S^-1 r, is also r' S^-1 [y; 0]: one solve serves every query.
  Eigen::VectorXd responses = Eigen::VectorXd::Zero(size + border);
  responses.head(size) = Eigen::Map<const Eigen::VectorXd>(uniqueResponses_.data(), size);
  const Eigen::VectorXd solution = ldlt_->Solve(responses);
  this->SetMeanSolution(solution.head(size), solution.tail(border));
  return true;
}

template <class T, class TT>
ZqKrigeResult ZqUniversalKrige<T, TT>::GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                                                      const Container& container) const {
  const std::size_t n = container.GetNumUnique();
  // Responses are kept only by a training that reached the factorisation.
  if (n == 0 || uniqueResponses_.size() != n) return ZqKrigeResult();
  const ZqPropertyListFxn<T>* drift = container.GetPropertyFxn();
  const std::size_t m = drift ? drift->GetSize() : 0;
  if (drift && !drift->HasProperties(element)) return ZqKrigeResult();
  const auto size = static_cast<Eigen::Index>(n);

  std::vector<double> distances;
  Eigen::VectorXd rightHand(size + 1 + static_cast<Eigen::Index>(m));
  rightHand.head(size) = krige_detail::QueryCovariances(element, kernel, container, distances);
  rightHand(size) = 1.0;
  for (std::size_t k = 0; k < m; ++k)
    rightHand(size + 1 + static_cast<Eigen::Index>(k)) = drift->GetProperty(element, k);
  // A query whose drift is not finite has no properties to krige with, as
  // one without them.
  if (!rightHand.tail(static_cast<Eigen::Index>(m)).allFinite()) return ZqKrigeResult();
  if (!ldlt_->Valid() || ldlt_->Order() != rightHand.size()) return ZqKrigeResult();
  Eigen::VectorXd weights;
  const std::size_t under = krige_detail::ElementUnderQuery(rightHand.data(), kernel, container);
  if (under < n && rightHand.tail(static_cast<Eigen::Index>(m)) ==
                       Eigen::Map<const Eigen::VectorXd>(container.GetUniqueProperties(under).data(),
                                                         static_cast<Eigen::Index>(m))) {
    // The query is that element, drift and all: its own weight 1 solves
    // the system exactly.
    weights = Eigen::VectorXd::Unit(rightHand.size(), static_cast<Eigen::Index>(under));
  } else {
    weights = ldlt_->Solve(rightHand);
  }
  for (Eigen::Index i = 0; i < weights.size(); ++i) {
    if (Tessik::ZqIsNaN(weights(i))) {
      Corvane::ZqThrow.Warning("Universal kriging failed, NaN weights");
      return ZqKrigeResult();
    }
  }
  // A singular bordered matrix (drift properties collinear on the training
  // data) still gets a solve; the weights are only usable when they meet
  // the constraints of the border: a sum of one, and the query's drift.
  const double residual = krige_detail::WorstBorderResidual(weights.head(size), rightHand.tail(1 + m), container);
  if (!(residual <= krige_detail::kBorderTolerance)) {
    Corvane::ZqThrow.Warning("Universal kriging failed, the weights miss the drift constraints (residual %.3g)",
                             residual);
    return ZqKrigeResult();
  }

  auto result = std::make_unique<ZqKrigeResultImpl>();
  result->SetKernel(kernel);
  result->SetBaselineResponse(0.0);
  // The multipliers of the constraints (entries n and beyond) give the
  // border's part of the full variance; the elements take the rest.
  result->SetBorderVariance(-weights.tail(1 + static_cast<Eigen::Index>(m))
                                         .dot(rightHand.tail(1 + static_cast<Eigen::Index>(m))));
  krige_detail::FillResultElements(*result, container, distances, weights, uniqueResponses_, 0.0);
  if (!krige_detail::VarianceInRange(ZqCalculateVariance(*result, -1.0), kernel)) return ZqKrigeResult();
  return ZqKrigeResult(result.release());
}

template <class T, class TT>
bool ZqUniversalKrige<T, TT>::RightHandSide(const T& query, Eigen::VectorXd& rightHand) const {
  const Container& container = this->GetContainer();
  const std::size_t n = container.GetNumUnique();
  if (!this->IsTrained() || uniqueResponses_.size() != n) return false;
  const ZqPropertyListFxn<T>* drift = container.GetPropertyFxn();
  const std::size_t m = drift ? drift->GetSize() : 0;
  if (drift && !drift->HasProperties(query)) return false;
  const auto size = static_cast<Eigen::Index>(n);
  std::vector<double> distances;
  rightHand.resize(size + 1 + static_cast<Eigen::Index>(m));
  rightHand.head(size) = krige_detail::QueryCovariances(query, this->TrainedKernel(), container, distances);
  rightHand(size) = 1.0;
  for (std::size_t k = 0; k < m; ++k) rightHand(size + 1 + static_cast<Eigen::Index>(k)) = drift->GetProperty(query, k);
  return rightHand.allFinite();
}

template <class T, class TT>
bool ZqUniversalKrige<T, TT>::SolveSystem(Eigen::MatrixXd& rightHands) const {
  if (!this->IsTrained() || !ldlt_->Valid() || ldlt_->Order() != rightHands.rows()) return false;
  for (Eigen::Index q = 0; q < rightHands.cols(); ++q) rightHands.col(q) = ldlt_->Solve(rightHands.col(q));
  return rightHands.allFinite();
}

}  // namespace Varimo
