// Definitions of ZqSimpleKrige.
#pragma once

#include <algorithm>
#include <cmath>
#include <numeric>

#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/simple_krige.h"
#include "varimo/krige/standard_krige_impl.h"

namespace Varimo {

template <class T, class TT>
void ZqSimpleKrige<T, TT>::Clear() {
  cholesky_.Clear();
  uniqueResponses_.clear();
  mean_ = 0.0;
  whitenedResponses_.resize(0);
  Base::Clear();
}

template <class T, class TT>
bool ZqSimpleKrige<T, TT>::TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) {
  const std::size_t n = container.GetNumUnique();
  if (n == 0) {
    Corvane::ZqThrow.Warning("ZqSimpleKrige::TrainFixed(ZqKrigeKernelBase), unable to train.  No training data");
    return false;
  }
  double normOne = 0.0;
  if (!krige_detail::FactorCovariance(container, kernel, cholesky_, normOne)) return false;
  if (this->WarnsOfConditioning()) {
    krige_detail::WarnIfNearlySingular("ZqSimpleKrige::TrainFixed", normOne, cholesky_.Order(),
                                       [this](Eigen::VectorXd& b) { krige_detail::SolveWithFactor(cholesky_, b); });
  }
  uniqueResponses_.resize(n);
  for (std::size_t k = 0; k < n; ++k) uniqueResponses_[k] = container.GetUniqueResponse(k);
  mean_ = std::accumulate(uniqueResponses_.begin(), uniqueResponses_.end(), 0.0) / static_cast<double>(n);
  for (double& response : uniqueResponses_) response -= mean_;
  whitenedResponses_ = Eigen::Map<const Eigen::VectorXd>(uniqueResponses_.data(), static_cast<Eigen::Index>(n));
  krige_detail::WhitenInPlace(cholesky_, whitenedResponses_);
  // C^-1 (y - mean): the prediction is mean + c' C^-1 (y - mean).
  Eigen::VectorXd meanWeights = whitenedResponses_;
  cholesky_.BackSolveInPlace(meanWeights);
  this->SetMeanSolution(std::move(meanWeights), Eigen::VectorXd::Constant(1, mean_));
  return true;
}

template <class T, class TT>
ZqKrigeResult ZqSimpleKrige<T, TT>::GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                                                   const Container& container) const {
  const std::size_t n = container.GetNumUnique();
  if (uniqueResponses_.size() != n || static_cast<std::size_t>(cholesky_.Order()) != n) return ZqKrigeResult();
  std::vector<double> distances;
  Eigen::VectorXd weights = krige_detail::QueryCovariances(element, kernel, container, distances);
  const std::size_t under = krige_detail::ElementUnderQuery(weights.data(), kernel, container);
  if (under < n) {
    weights = Eigen::VectorXd::Unit(static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(under));
  } else {
    krige_detail::SolveWithFactor(cholesky_, weights);
  }
  // A NaN distance from the functor would otherwise pass as a prediction.
  if (!weights.allFinite()) return ZqKrigeResult();

  auto result = std::make_unique<ZqKrigeResultImpl>();
  result->SetKernel(kernel);
  result->SetBaselineResponse(mean_);
  krige_detail::FillResultElements(*result, container, distances, weights, uniqueResponses_, mean_);
  const double variance = ZqCalculateVariance(*result, -1.0);
  if (variance < 0.0 || !std::isfinite(variance)) return ZqKrigeResult();
  return ZqKrigeResult(result.release());
}

template <class T, class TT>
void ZqSimpleKrige<T, TT>::PredictTrained(const std::vector<const T*>& queries, double* predictions,
                                          double* variances) const {
  const Container& container = this->GetContainer();
  const ZqKrigeKernelBase& kernel = this->TrainedKernel();
  const double errorValue = this->GetErrorValue();
  // With C = L L' (L = U'):
  // prediction = mean + b' C^-1 (y - mean) = mean + (L^-1 b)'(L^-1 (y - mean))
  // variance   = sill - b' C^-1 b           = sill - |L^-1 b|^2
  for (std::size_t first = 0; first < queries.size(); first += krige_detail::kQueryBlock) {
    const std::size_t count = std::min(krige_detail::kQueryBlock, queries.size() - first);
    Eigen::MatrixXd block = krige_detail::QueryCovarianceBlock(queries, first, count, kernel, container);
    const std::vector<std::size_t> under = krige_detail::ElementsUnderQueries(block, kernel, container);
    krige_detail::WhitenInPlace(cholesky_, block);
    for (std::size_t q = 0; q < count; ++q) {
      const auto column = block.col(static_cast<Eigen::Index>(q));
      const bool onElement = under[q] < uniqueResponses_.size();
      const double variance = onElement ? kernel.GetSill() - (kernel.GetSill() - kernel.GetValue(0.0))
                                        : kernel.GetSill() - column.squaredNorm();
      const double prediction = mean_ + (onElement ? uniqueResponses_[under[q]] : column.dot(whitenedResponses_));
      const bool valid = variance >= 0.0 && std::isfinite(variance) && std::isfinite(prediction);
      predictions[first + q] = valid ? prediction : errorValue;
      variances[first + q] = valid ? variance : errorValue;
    }
  }
}

template <class T, class TT>
bool ZqSimpleKrige<T, TT>::RightHandSide(const T& query, Eigen::VectorXd& rightHand) const {
  if (!this->IsTrained() || static_cast<std::size_t>(cholesky_.Order()) != this->GetContainer().GetNumUnique()) {
    return false;
  }
  std::vector<double> distances;
  rightHand = krige_detail::QueryCovariances(query, this->TrainedKernel(), this->GetContainer(), distances);
  return true;
}

template <class T, class TT>
bool ZqSimpleKrige<T, TT>::SolveSystem(Eigen::MatrixXd& rightHands) const {
  if (!this->IsTrained() || rightHands.rows() != cholesky_.Order()) return false;
  krige_detail::SolveWithFactor(cholesky_, rightHands);
  return rightHands.allFinite();
}

}  // namespace Varimo
