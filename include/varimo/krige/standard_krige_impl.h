// Definitions of ZqStandardKrigeImpl.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/standard_krige.h"
#include "varimo/krige/training_container_impl.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/tessik/is_nan.h"

namespace Varimo {

template <class T, class TT>
ZqStandardKrigeImpl<T, TT>::ZqStandardKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, double errorValue,
                                                unsigned int missingIDValue, bool includeUnmeasured,
                                                unsigned int uniqueResponseMethod)
    : errorValue_(errorValue),
      missingIDValue_(missingIDValue),
      includeUnmeasured_(includeUnmeasured),
      container_(distFxn, uniqueResponseMethod) {}

template <class T, class TT>
ZqStandardKrigeImpl<T, TT>::ZqStandardKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn,
                                                const ZqPropertyListFxn<T>& propFxn, double errorValue,
                                                unsigned int missingIDValue, bool includeUnmeasured,
                                                unsigned int uniqueResponseMethod)
    : errorValue_(errorValue),
      missingIDValue_(missingIDValue),
      includeUnmeasured_(includeUnmeasured),
      container_(distFxn, propFxn, uniqueResponseMethod) {}

template <class T, class TT>
ZqStandardKrigeImpl<T, TT>::ZqStandardKrigeImpl(const Container& container, double errorValue,
                                                unsigned int missingIDValue, bool includeUnmeasured)
    : errorValue_(errorValue),
      missingIDValue_(missingIDValue),
      includeUnmeasured_(includeUnmeasured),
      warnsOfConditioning_(false),
      container_(container) {}

template <class T, class TT>
ZqStandardKrigeImpl<T, TT>::ZqStandardKrigeImpl(const ZqStandardKrigeImpl& other)
    : ZqKrigeBase<T>(other),
      errorValue_(other.errorValue_),
      missingIDValue_(other.missingIDValue_),
      includeUnmeasured_(other.includeUnmeasured_),
      warnsOfConditioning_(other.warnsOfConditioning_),
      container_(other.container_),
      trained_(other.trained_),
      kernel_(other.kernel_ ? other.kernel_->CreateCopy() : nullptr),
      variogramValid_(other.variogramValid_),
      variogram_(other.variogram_),
      fullVariogramValid_(other.fullVariogramValid_),
      fullVariogram_(other.fullVariogram_),
      meanWeights_(other.meanWeights_),
      meanBorder_(other.meanBorder_) {}

template <class T, class TT>
void ZqStandardKrigeImpl<T, TT>::Invalidate() {
  trained_ = false;
  kernel_.reset();
  variogramValid_ = false;
  fullVariogramValid_ = false;
  variogram_.Clear();
  fullVariogram_.Clear();
  meanWeights_.resize(0);
  meanBorder_.resize(0);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::AddRecord(const T& element, double response, bool isUnmeasured, unsigned int id,
                                           bool hasID) {
  // Invalidated even when the record is refused below.
  Invalidate();
  // NaN, and infinities too: one infinite response would turn every
  // prediction into NaN.
  if (Tessik::ZqIsNaN(response) || std::isinf(response)) return false;
  typename Container::Record record;
  record.element = TT::Store(element);
  record.response = response;
  record.isUnmeasured = isUnmeasured;
  record.id = id;
  record.hasID = hasID;
  return container_.AddElementAndProperties(std::move(record));
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::AddTraining(const T& element, double response) {
  return AddRecord(element, response, false, missingIDValue_, false);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::AddTrainingWithID(const T& element, double response, unsigned int id) {
  return AddRecord(element, response, false, id, true);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::AddUnmeasuredTraining(const T& element, double response) {
  return AddRecord(element, response, true, missingIDValue_, false);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) {
  return AddRecord(element, response, true, id, true);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::Train() {
  if (container_.GetNumData() == 0) {
    Corvane::ZqThrow.Warning("ZqStandardKrigeImpl::Train(), unable to train.  No training data");
    return false;
  }
  const ZqVariogram variogram = GetVariogram();
  if (variogram.GetNumBins() == 0) {
    Corvane::ZqThrow.Warning(
        "ZqStandardKrigeImpl::Train(), unable to train.  Not enough training data to constuct variogram. (%d bins)",
        variogram.GetNumBins());
    return false;
  }
  for (const ZqKrigeKernel& candidate : ZqRankKernels(variogram)) {
    if (TrainFixed(candidate)) return true;
  }
  return false;
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::Train(ZqKrigeKernelBase& kernel) {
  if (container_.GetNumData() == 0) {
    Corvane::ZqThrow.Warning("ZqStandardKrigeImpl::Train(ZqKrigeKernelBase), unable to train.  No training data");
    return false;
  }
  const ZqVariogram variogram = GetVariogram();
  // Unlike Train(), a single kernel is not fitted to one or two bins.
  if (variogram.GetNumBins() < 3) {
    Corvane::ZqThrow.Warning(
        "ZqStandardKrigeImpl::Train(ZqKrigeKernelBase), unable to train. Not enough training data to constuct "
        "variogram");
    return false;
  }
  ZqFitKernel(kernel, variogram);
  return TrainFixed(kernel);
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::TrainFixed(const ZqKrigeKernelBase& kernel) {
  trained_ = TrainFixed(kernel, container_);
  if (trained_) {
    kernel_.reset(kernel.CreateCopy());
  } else {
    kernel_.reset();
  }
  return trained_;
}

template <class T, class TT>
ZqKrigeTrainedKernels ZqStandardKrigeImpl<T, TT>::GetTrainedKernels() const {
  ZqKrigeTrainedKernels trained;
  if (trained_) trained.kernels.emplace_back(*kernel_);
  trained.fixed = true;
  return trained;
}

template <class T, class TT>
bool ZqStandardKrigeImpl<T, TT>::TrainWithKernels(const ZqKrigeTrainedKernels& trained) {
  if (trained.kernels.size() != 1) {
    Corvane::ZqThrow.Warning("ZqStandardKrigeImpl::TrainWithKernels, a global model needs one kernel, not %zu",
                             trained.kernels.size());
    return false;
  }
  return TrainFixed(trained.kernels.front());
}

template <class T, class TT>
ZqKrigeResult ZqStandardKrigeImpl<T, TT>::GetKrigeResult(const T& element) {
  if (!trained_ && !Train()) return ZqKrigeResult();
  return GetKrigeResult(element, *kernel_, container_);
}

template <class T, class TT>
ZqKrigeResult ZqStandardKrigeImpl<T, TT>::GetKrigeResult(const T& element) const {
  if (trained_) return GetKrigeResult(element, *kernel_, container_);
  std::unique_ptr<ZqKrigeBase<T>> copy(this->CreateKrigeCopy());
  return copy->GetKrigeResult(element);
}

template <class T, class TT>
double ZqStandardKrigeImpl<T, TT>::Predict(const T& element) {
  return ZqCalculateResponse(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqStandardKrigeImpl<T, TT>::Predict(const T& element) const {
  return ZqCalculateResponse(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqStandardKrigeImpl<T, TT>::PredictMean(const T& element) const {
  const std::size_t n = container_.GetNumUnique();
  if (!trained_ || static_cast<std::size_t>(meanWeights_.size()) != n || meanBorder_.size() == 0) {
    return Predict(element);
  }
  const ZqPropertyListFxn<T>* drift = container_.GetPropertyFxn();
  const std::size_t m = drift ? drift->GetSize() : 0;
  if (static_cast<std::size_t>(meanBorder_.size()) != 1 + m) return Predict(element);
  if (drift && !drift->HasProperties(element)) return errorValue_;
  std::vector<double> properties(m);
  for (std::size_t k = 0; k < m; ++k) properties[k] = drift->GetProperty(element, k);
  std::vector<double> distances;
  const Eigen::VectorXd covariances = krige_detail::QueryCovariances(element, *kernel_, container_, distances);
  // A training element under the query answers with its own response, as
  // the full solve does (drift and all, for universal kriging).
  const std::size_t under = krige_detail::ElementUnderQuery(covariances.data(), *kernel_, container_);
  if (under < n && (m == 0 || container_.GetUniqueProperties(under) == properties)) {
    return container_.GetUniqueResponse(under);
  }
  double prediction = covariances.dot(meanWeights_) + meanBorder_(0);
  for (std::size_t k = 0; k < m; ++k) prediction += properties[k] * meanBorder_(static_cast<Eigen::Index>(k + 1));
  return std::isfinite(prediction) ? prediction : errorValue_;
}

template <class T, class TT>
double ZqStandardKrigeImpl<T, TT>::GetVariance(const T& element) {
  return ZqCalculateVariance(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqStandardKrigeImpl<T, TT>::GetVariance(const T& element) const {
  return ZqCalculateVariance(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
void ZqStandardKrigeImpl<T, TT>::PredictTrained(const std::vector<const T*>& queries, double* predictions,
                                                double* variances) const {
  for (std::size_t q = 0; q < queries.size(); ++q) {
    const ZqKrigeResult result = GetKrigeResult(*queries[q], *kernel_, container_);
    predictions[q] = ZqCalculateResponse(result, errorValue_);
    variances[q] = ZqCalculateVariance(result, errorValue_);
  }
}

template <class T, class TT>
ZqKrigeKernel ZqStandardKrigeImpl<T, TT>::GetKernel() {
  if (!trained_ && !Train()) {
    Corvane::ZqThrow.Warning("ZqStandardKrigeImpl::GetKernel failed to get kernel because Train failed");
    return ZqKrigeKernel(ZqKrigeLinearKernel());
  }
  if (!kernel_) {
    Corvane::ZqThrow.Error("ZqStandardKrigeImpl::GetKernel, error getting kernel");
    return ZqKrigeKernel(ZqKrigeLinearKernel());
  }
  return ZqKrigeKernel(*kernel_);
}

template <class T, class TT>
ZqKrigeKernel ZqStandardKrigeImpl<T, TT>::GetKernel() const {
  if (trained_ && kernel_) return ZqKrigeKernel(*kernel_);
  std::unique_ptr<ZqKrigeBase<T>> copy(this->CreateKrigeCopy());
  return copy->GetKernel();
}

namespace krige_detail {

// Builds a variogram of either kind from the container's pairs; false, with
// `warning`, when there are no pairs or no bins can be made of them.
template <class Variogram, class T, class TT>
bool BuildVariogram(Variogram& variogram, const ZqKrigeTrainingContainer<T, TT>& container, bool includeUnmeasured,
                    const char* warning) {
  variogram.Clear();
  std::vector<std::pair<double, double>> pairs;
  const bool built = ZqGetDistAndDiff(pairs, container, includeUnmeasured) && ZqSetupVariogram(variogram, pairs, true);
  if (!built) Corvane::ZqThrow.Warning("%s", warning);
  return built;
}

constexpr const char* kVariogramWarning = "Unable to construct variogram";
constexpr const char* kFullVariogramWarning = "Unable to construct full variogram";

}  // namespace krige_detail

template <class T, class TT>
ZqVariogram ZqStandardKrigeImpl<T, TT>::GetVariogram() {
  if (!variogramValid_) {
    variogramValid_ =
        krige_detail::BuildVariogram(variogram_, container_, includeUnmeasured_, krige_detail::kVariogramWarning);
  }
  return ZqVariogram(variogram_.CreateCopy());
}

template <class T, class TT>
ZqVariogram ZqStandardKrigeImpl<T, TT>::GetVariogram() const {
  if (variogramValid_) return ZqVariogram(variogram_.CreateCopy());
  auto temporary = std::make_unique<ZqVariogramImpl>();
  krige_detail::BuildVariogram(*temporary, container_, includeUnmeasured_, krige_detail::kVariogramWarning);
  return ZqVariogram(temporary.release());
}

template <class T, class TT>
ZqFullVariogram ZqStandardKrigeImpl<T, TT>::GetFullVariogram() {
  if (!fullVariogramValid_) {
    fullVariogramValid_ = krige_detail::BuildVariogram(fullVariogram_, container_, includeUnmeasured_,
                                                       krige_detail::kFullVariogramWarning);
  }
  return ZqFullVariogram(fullVariogram_.CreateCopy());
}

template <class T, class TT>
ZqFullVariogram ZqStandardKrigeImpl<T, TT>::GetFullVariogram() const {
  if (fullVariogramValid_) return ZqFullVariogram(fullVariogram_.CreateCopy());
  auto temporary = std::make_unique<ZqFullVariogramImpl>();
  krige_detail::BuildVariogram(*temporary, container_, includeUnmeasured_, krige_detail::kFullVariogramWarning);
  return ZqFullVariogram(temporary.release());
}

template <class T, class TT>
void ZqStandardKrigeImpl<T, TT>::Clear() {
  container_.Clear();
  Invalidate();
}

}  // namespace Varimo
