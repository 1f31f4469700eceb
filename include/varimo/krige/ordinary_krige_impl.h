// Definitions of ZqOrdinaryKrige.
#pragma once

#include <algorithm>
#include <cmath>

#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/ordinary_krige.h"
#include "varimo/krige/standard_krige_impl.h"

namespace Varimo {

template <class T, class TT>
void ZqOrdinaryKrige<T, TT>::Clear() {
  cholesky_.Clear();
  uniqueResponses_.clear();
  unitSolve_.resize(0);
  unitSum_ = 0.0;
  whitenedUnit_.resize(0);
  whitenedResponses_.resize(0);
  Base::Clear();
}

template <class T, class TT>
bool ZqOrdinaryKrige<T, TT>::TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) {
  const std::size_t n = container.GetNumUnique();
  if (n == 0) {
    Corvane::ZqThrow.Warning("ZqOrdinaryKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data");
    return false;
  }
  // A kernel fails on the positive-definiteness of the unbordered matrix.
  double normOne = 0.0;
  if (!krige_detail::FactorCovariance(container, kernel, cholesky_, normOne)) return false;
  if (this->WarnsOfConditioning()) {
    krige_detail::WarnIfNearlySingular("ZqOrdinaryKrige::TrainFixed", normOne, cholesky_.Order(),
                                       [this](Eigen::VectorXd& b) { krige_detail::SolveWithFactor(cholesky_, b); });
  }
  const auto size = static_cast<Eigen::Index>(n);
  uniqueResponses_.resize(n);
  for (std::size_t k = 0; k < n; ++k) uniqueResponses_[k] = container.GetUniqueResponse(k);

  whitenedUnit_ = Eigen::VectorXd::Ones(size);
  krige_detail::WhitenInPlace(cholesky_, whitenedUnit_);
  unitSum_ = whitenedUnit_.squaredNorm();
  unitSolve_ = whitenedUnit_;
  cholesky_.BackSolveInPlace(unitSolve_);
  whitenedResponses_ = Eigen::Map<const Eigen::VectorXd>(uniqueResponses_.data(), size);
  krige_detail::WhitenInPlace(cholesky_, whitenedResponses_);
  // The Schur complement 1' C^-1 1 of the bordered matrix; positive for a
  // positive definite C unless rounding has destroyed it.
  if (!(unitSum_ > 0.0 && std::isfinite(unitSum_))) return false;
  // With the estimated mean b = 1'C^-1 y / 1'C^-1 1, the prediction is
  // b + c' C^-1 (y - b 1).
  const double mean = whitenedUnit_.dot(whitenedResponses_) / unitSum_;
  Eigen::VectorXd meanWeights = whitenedResponses_;
  cholesky_.BackSolveInPlace(meanWeights);
  meanWeights -= mean * unitSolve_;
  this->SetMeanSolution(std::move(meanWeights), Eigen::VectorXd::Constant(1, mean));
  return true;
}

template <class T, class TT>
ZqKrigeResult ZqOrdinaryKrige<T, TT>::GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                                                     const Container& container) const {
  const std::size_t n = container.GetNumUnique();
  if (uniqueResponses_.size() != n || static_cast<std::size_t>(cholesky_.Order()) != n) return ZqKrigeResult();
  std::vector<double> distances;
  Eigen::VectorXd weights = krige_detail::QueryCovariances(element, kernel, container, distances);
  const std::size_t under = krige_detail::ElementUnderQuery(weights.data(), kernel, container);
  double multiplier = 0.0;
  if (under < n) {
    weights = Eigen::VectorXd::Unit(static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(under));
  } else {
    krige_detail::SolveWithFactor(cholesky_, weights);
    // The Lagrange multiplier that makes the weights sum to one.
    multiplier = (weights.sum() - 1.0) / unitSum_;
    weights -= multiplier * unitSolve_;
  }
  if (!weights.allFinite()) return ZqKrigeResult();

  auto result = std::make_unique<ZqKrigeResultImpl>();
  result->SetKernel(kernel);
  result->SetBaselineResponse(0.0);
  // The bordered system C w + mu 1 = c has mu = multiplier.
  result->SetBorderVariance(-multiplier);
  krige_detail::FillResultElements(*result, container, distances, weights, uniqueResponses_, 0.0);
  if (!krige_detail::VarianceInRange(ZqCalculateVariance(*result, -1.0), kernel)) return ZqKrigeResult();
  return ZqKrigeResult(result.release());
}

template <class T, class TT>
void ZqOrdinaryKrige<T, TT>::PredictTrained(const std::vector<const T*>& queries, double* predictions,
                                            double* variances) const {
  const Container& container = this->GetContainer();
  const ZqKrigeKernelBase& kernel = this->TrainedKernel();
  const double errorValue = this->GetErrorValue();
  const double unitResponses = whitenedUnit_.dot(whitenedResponses_);  // 1' C^-1 y
  // With v = L^-1 b: u = C^-1 b, mu = (1'u - 1) / (1'z), w = u - mu z, so
  //   prediction = w'y = v'(L^-1 y) - mu 1'C^-1 y
  //   variance   = sill - w'b = sill - (|v|^2 - mu v'(L^-1 1))
  for (std::size_t first = 0; first < queries.size(); first += krige_detail::kQueryBlock) {
    const std::size_t count = std::min(krige_detail::kQueryBlock, queries.size() - first);
    Eigen::MatrixXd block = krige_detail::QueryCovarianceBlock(queries, first, count, kernel, container);
    const std::vector<std::size_t> under = krige_detail::ElementsUnderQueries(block, kernel, container);
    krige_detail::WhitenInPlace(cholesky_, block);
    for (std::size_t q = 0; q < count; ++q) {
      const auto column = block.col(static_cast<Eigen::Index>(q));
      const double unitQuery = whitenedUnit_.dot(column);
      const double multiplier = (unitQuery - 1.0) / unitSum_;
      double prediction = column.dot(whitenedResponses_) - multiplier * unitResponses;
      double variance = kernel.GetSill() - (column.squaredNorm() - multiplier * unitQuery);
      if (under[q] < uniqueResponses_.size()) {
        prediction = uniqueResponses_[under[q]];
        variance = kernel.GetSill() - (kernel.GetSill() - kernel.GetValue(0.0));
      }
      const bool valid = krige_detail::VarianceInRange(variance, kernel) && std::isfinite(prediction);
      predictions[first + q] = valid ? prediction : errorValue;
      variances[first + q] = valid ? variance : errorValue;
    }
  }
}

template <class T, class TT>
bool ZqOrdinaryKrige<T, TT>::RightHandSide(const T& query, Eigen::VectorXd& rightHand) const {
  const auto n = cholesky_.Order();
  if (!this->IsTrained() || static_cast<std::size_t>(n) != this->GetContainer().GetNumUnique()) return false;
  std::vector<double> distances;
  const Eigen::VectorXd covariances =
      krige_detail::QueryCovariances(query, this->TrainedKernel(), this->GetContainer(), distances);
  rightHand.resize(n + 1);
  rightHand << covariances, 1.0;
  return true;
}

template <class T, class TT>
bool ZqOrdinaryKrige<T, TT>::SolveSystem(Eigen::MatrixXd& rightHands) const {
  const auto n = cholesky_.Order();
  if (!this->IsTrained() || rightHands.rows() != n + 1) return false;
  // C w + mu 1 = b and 1'w = beta: with u = C^-1 b and z = C^-1 1,
  // mu = (1'u - beta) / (1'z) and w = u - mu z.
  auto weights = rightHands.topRows(n);
  krige_detail::SolveWithFactor(cholesky_, weights);
  for (Eigen::Index q = 0; q < rightHands.cols(); ++q) {
    const double multiplier = (weights.col(q).sum() - rightHands(n, q)) / unitSum_;
    weights.col(q) -= multiplier * unitSolve_;
    rightHands(n, q) = multiplier;
  }
  return rightHands.allFinite();
}

}  // namespace Varimo
