// Definitions of ZqSVD.
#pragma once

#include <Eigen/SVD>

#include "varimo/krige/svd_model.h"

namespace Varimo {

template <class T>
ZqSVD<T>::ZqSVD(const ZqSVD& other)
    : ZqDataModelBase<T>(other),
      propFxn_(other.propFxn_->CreateCopy()),
      trained_(other.trained_),
      elements_(other.elements_),
      responses_(other.responses_),
      coefficients_(other.coefficients_) {}

template <class T>
bool ZqSVD<T>::AddTraining(const T& element, double response) {
  if (!propFxn_->HasProperties(element)) return false;
  elements_.push_back(element);
  responses_.push_back(response);
  return true;
}

template <class T>
bool ZqSVD<T>::Train() {
  const auto rows = static_cast<Eigen::Index>(elements_.size());
  if (rows == 0) return false;
  const std::size_t m = propFxn_->GetSize();
  const auto columns = static_cast<Eigen::Index>(m + 1);
  Eigen::MatrixXd design(rows, columns);
  for (Eigen::Index i = 0; i < rows; ++i) {
    for (std::size_t k = 0; k < m; ++k) {
      design(i, static_cast<Eigen::Index>(k)) = propFxn_->GetProperty(elements_[static_cast<std::size_t>(i)], k);
    }
    design(i, columns - 1) = 1.0;
  }
  const Eigen::Map<const Eigen::VectorXd> targets(responses_.data(), rows);
  // Thin U and V suffice for least squares; the QR preconditioner with
  // column pivoting is the one that stays accurate for tall, badly scaled X.
  Eigen::JacobiSVD<Eigen::MatrixXd, Eigen::ColPivHouseholderQRPreconditioner> svd(
      design, Eigen::ComputeThinU | Eigen::ComputeThinV);
  // Eigen reports a design or targets that are not finite as InvalidInput;
  // the solve would give NaN coefficients, or zeros, without a word.
  if (svd.info() != Eigen::Success || !targets.allFinite()) return false;
  coefficients_ = svd.solve(targets);
  if (!coefficients_.allFinite()) return false;
  trained_ = true;
  return true;
}

template <class T>
double ZqSVD<T>::Fitted(const T& element) const {
  const std::size_t m = propFxn_->GetSize();
  double value = 0.0;
  for (std::size_t k = 0; k < m; ++k) {
    value += coefficients_(static_cast<Eigen::Index>(k)) * propFxn_->GetProperty(element, k);
  }
  return value + coefficients_(static_cast<Eigen::Index>(m));
}

template <class T>
double ZqSVD<T>::Predict(const T& element) {
  if (!propFxn_->HasProperties(element)) return GetErrorValue();
  if (!trained_ && !Train()) return GetErrorValue();
  return Fitted(element);
}

template <class T>
double ZqSVD<T>::Predict(const T& element) const {
  if (!propFxn_->HasProperties(element)) return GetErrorValue();
  if (trained_) return Fitted(element);
  ZqSVD copy(*this);
  return copy.Predict(element);
}

template <class T>
void ZqSVD<T>::Clear() {
  elements_.clear();
  responses_.clear();
  coefficients_.resize(0);
  trained_ = false;
}

}  // namespace Varimo
