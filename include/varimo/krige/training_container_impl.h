// Definitions of the training container templates. Included by the
// explicit instantiations of the library and by callers who krige element
// types of their own.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "varimo/krige/krige_options.h"
#include "varimo/krige/parallel_for.h"
#include "varimo/krige/svd_model.h"
#include "varimo/krige/training_container.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

namespace krige_detail {

// Visits the responses of the measured members, or of all members when
// none is measured.
template <class Records, class Visit>
void VisitCountedMembers(const Records& data, const std::vector<std::size_t>& members, Visit visit) {
  bool anyMeasured = false;
  for (std::size_t m : members) {
    if (!data[m].isUnmeasured) {
      anyMeasured = true;
      visit(data[m]);
    }
  }
  if (anyMeasured) return;
  for (std::size_t m : members) visit(data[m]);
}

}  // namespace krige_detail

template <class T, class TT>
double ZqGetMeanTrainingDataResponseFxn<T, TT>::GetResponse(const Records& data,
                                                            const std::vector<std::size_t>& members) const {
  if (members.empty()) return std::numeric_limits<double>::quiet_NaN();
  double sum = 0.0;
  std::size_t count = 0;
  krige_detail::VisitCountedMembers(data, members, [&](const auto& record) {
    sum += record.response;
    ++count;
  });
  return sum / static_cast<double>(count);
}

template <class T, class TT>
double ZqGetMinTrainingDataResponseFxn<T, TT>::GetResponse(const Records& data,
                                                           const std::vector<std::size_t>& members) const {
  double smallest = std::numeric_limits<double>::max();
  krige_detail::VisitCountedMembers(data, members,
                                    [&](const auto& record) { smallest = std::min(smallest, record.response); });
  return smallest;
}

template <class T, class TT>
double ZqGetMaxTrainingDataResponseFxn<T, TT>::GetResponse(const Records& data,
                                                           const std::vector<std::size_t>& members) const {
  double largest = -std::numeric_limits<double>::max();
  krige_detail::VisitCountedMembers(data, members,
                                    [&](const auto& record) { largest = std::max(largest, record.response); });
  return largest;
}

template <class T, class TT>
ZqGetUniqueTrainingDataResponseImpl<T, TT>::ZqGetUniqueTrainingDataResponseImpl(unsigned int method) {
  switch (method) {
    case ZqKrigeUniqueResponseMethod::Min:
      impl_ = std::make_unique<ZqGetMinTrainingDataResponseFxn<T, TT>>();
      break;
    case ZqKrigeUniqueResponseMethod::Max:
      impl_ = std::make_unique<ZqGetMaxTrainingDataResponseFxn<T, TT>>();
      break;
    default:
      if (method != ZqKrigeUniqueResponseMethod::Mean) {
        Corvane::ZqThrow.Error("Invalid KrigeUniqueResponseMethod %d, defaulting to mean", method);
      }
      impl_ = std::make_unique<ZqGetMeanTrainingDataResponseFxn<T, TT>>();
  }
}

template <class T, class TT>
std::vector<double> ZqGetMeanTrainingDataPropFxn<T, TT>::GetProperties(const Records& data,
                                                                       const std::vector<std::size_t>& members) const {
  if (members.empty()) return {};
  if (members.size() == 1) return data[members.front()].properties;
  std::vector<double> mean;
  std::size_t count = 0;
  krige_detail::VisitCountedMembers(data, members, [&](const auto& record) {
    if (mean.empty()) mean.assign(record.properties.size(), 0.0);
    for (std::size_t k = 0; k < mean.size() && k < record.properties.size(); ++k) mean[k] += record.properties[k];
    ++count;
  });
  for (double& value : mean) value /= static_cast<double>(count);
  return mean;
}

template <class T, class TT>
ZqKrigeTrainingContainer<T, TT>::ZqKrigeTrainingContainer(const ZqKrigeDistanceFxn<T>& distFxn,
                                                          unsigned int uniqueResponseMethod)
    : distFxn_(distFxn.CreateCopy()),
      uniqueResponseFxn_(new ZqGetUniqueTrainingDataResponseImpl<T, TT>(uniqueResponseMethod)),
      uniquePropFxn_(new ZqGetMeanTrainingDataPropFxn<T, TT>()) {}

template <class T, class TT>
ZqKrigeTrainingContainer<T, TT>::ZqKrigeTrainingContainer(const ZqKrigeDistanceFxn<T>& distFxn,
                                                          const ZqPropertyListFxn<T>& propFxn,
                                                          unsigned int uniqueResponseMethod)
    : ZqKrigeTrainingContainer(distFxn, uniqueResponseMethod) {
  propFxn_.reset(propFxn.CreateCopy());
}

template <class T, class TT>
ZqKrigeTrainingContainer<T, TT>::ZqKrigeTrainingContainer(
    const ZqKrigeDistanceFxn<T>& distFxn, const ZqGetUniqueTrainingDataResponseFxn<T, TT>& uniqueResponseFxn,
    const ZqPropertyListFxn<T>* propFxn)
    : distFxn_(distFxn.CreateCopy()),
      uniqueResponseFxn_(uniqueResponseFxn.CreateCopy()),
      propFxn_(propFxn ? propFxn->CreateCopy() : nullptr),
      uniquePropFxn_(new ZqGetMeanTrainingDataPropFxn<T, TT>()) {}

template <class T, class TT>
ZqKrigeTrainingContainer<T, TT>::ZqKrigeTrainingContainer(const ZqKrigeTrainingContainer& other)
    : distFxn_(other.distFxn_->CreateCopy()),
      uniqueResponseFxn_(other.uniqueResponseFxn_->CreateCopy()),
      propFxn_(other.propFxn_ ? other.propFxn_->CreateCopy() : nullptr),
      uniquePropFxn_(other.uniquePropFxn_->CreateCopy()),
      data_(other.data_),
      uniqueMembers_(other.uniqueMembers_),
      representatives_(other.representatives_),
      uniqueOfData_(other.uniqueOfData_),
      distances_(other.distances_) {}

template <class T, class TT>
ZqKrigeTrainingContainer<T, TT>& ZqKrigeTrainingContainer<T, TT>::operator=(const ZqKrigeTrainingContainer& other) {
  if (this != &other) *this = ZqKrigeTrainingContainer(other);
  return *this;
}

template <class T, class TT>
bool ZqKrigeTrainingContainer<T, TT>::AddElement(Record record) {
  // Distances at or below this are one element seen again.
  constexpr double kSameElement = 1e-30;
  const T& element = record.GetElement();
  const std::size_t index = data_.size();
  double* row = distances_.NextRow();
  for (std::size_t u = 0; u < uniqueMembers_.size(); ++u) {
    const double d = (*distFxn_)(element, GetRepresentative(u));
    if (std::fabs(d) < kSameElement) {
      uniqueMembers_[u].push_back(index);
      uniqueOfData_.push_back(u);
      data_.push_back(std::move(record));
      return true;
    }
    row[u] = d;
  }
  distances_.CommitRow();
  uniqueOfData_.push_back(uniqueMembers_.size());
  uniqueMembers_.push_back({index});
  representatives_.push_back(index);
  data_.push_back(std::move(record));
  return true;
}

template <class T, class TT>
bool ZqKrigeTrainingContainer<T, TT>::AddElementAndProperties(Record record) {
  if (propFxn_) {
    const T& element = record.GetElement();
    if (!propFxn_->HasProperties(element)) return false;
    if (!ZqReadFiniteProperties(*propFxn_, element, record.properties, "ZqKrigeTrainingContainer::AddElement")) {
      return false;
    }
  }
  return AddElement(std::move(record));
}

template <class T, class TT>
void ZqKrigeTrainingContainer<T, TT>::Clear() {
  data_.clear();
  uniqueMembers_.clear();
  representatives_.clear();
  uniqueOfData_.clear();
  distances_.Clear();
}

template <class T, class TT>
unsigned int ZqKrigeTrainingContainer<T, TT>::GetUniqueID(std::size_t unique) const {
  const std::vector<std::size_t>& members = uniqueMembers_[unique];
  for (std::size_t m : members) {
    if (data_[m].hasID) return data_[m].id;
  }
  return data_[members.front()].id;
}

template <class T, class TT>
bool ZqFillCovarianceMatrix(Eigen::MatrixXd& matrix, const ZqKrigeTrainingContainer<T, TT>& container,
                            const ZqKrigeKernelBase& kernel) {
  const auto n = static_cast<Eigen::Index>(container.GetNumUnique());
  if (matrix.rows() != matrix.cols()) {
    Corvane::ZqThrow.Error("ZqKrigeTrainingContainer<T,TT>::FillCovarianceMatrix, not a square matrix");
    return false;
  }
  if (matrix.rows() < n) {
    Corvane::ZqThrow.Error("ZqKrigeTrainingContainer<T,TT>::FillCovarianceMatrix,matrix is to small (%dx%d) vs %d",
                           static_cast<int>(matrix.rows()), static_cast<int>(matrix.cols()), static_cast<int>(n));
    return false;
  }
  const double sill = kernel.GetSill();
  // The diagonal is sill minus the kernel's value at 0, its nugget: the
  // kernel at zero distance, not a separate covariance at the origin.
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = i; j < n; ++j) {
      const double c = sill - kernel.GetValue(container.GetUniqueDistance(static_cast<std::size_t>(i),
                                                                          static_cast<std::size_t>(j)));
      matrix(i, j) = c;
      matrix(j, i) = c;
    }
  }
  return true;
}

namespace krige_detail {

// The variogram pairs of the records, in order, with the difference of the
// values given for records i and j by `value(i)`. Each record's row of
// pairs has its place in `pairs` known beforehand, so the rows are filled
// on several threads and the result is the same for any number of them.
template <class T, class TT, class Value>
void CollectPairs(std::vector<std::pair<double, double>>& pairs, const ZqKrigeTrainingContainer<T, TT>& container,
                  bool includeUnmeasured, Value value) {
  pairs.clear();
  const auto& data = container.GetData();
  const std::size_t n = data.size();
  // Record i pairs with the later records j that are measured, and with
  // every later record when unmeasured ones are included and i is measured.
  // rowStart holds the length of each row first, then where it starts.
  std::vector<std::size_t> rowStart(n + 1, 0);
  std::size_t measuredAfter = 0;
  for (std::size_t i = n; i-- > 0;) {
    const bool rowCounts = includeUnmeasured || !data[i].isUnmeasured;
    const bool allLater = includeUnmeasured && !data[i].isUnmeasured;
    rowStart[i] = rowCounts ? (allLater ? n - 1 - i : measuredAfter) : 0;
    measuredAfter += data[i].isUnmeasured ? 0 : 1;
  }
  std::size_t total = 0;
  for (std::size_t i = 0; i <= n; ++i) {
    const std::size_t length = rowStart[i];
    rowStart[i] = total;
    total += i < n ? length : 0;
  }
  pairs.resize(total);
  ParallelFor(n, SharedWorkThreads(total), [&](std::size_t i) {
    if (data[i].isUnmeasured && !includeUnmeasured) return;
    std::size_t at = rowStart[i];
    for (std::size_t j = i + 1; j < n; ++j) {
      if (data[j].isUnmeasured && (data[i].isUnmeasured || !includeUnmeasured)) continue;
      pairs[at++] = {container.GetDataDistance(i, j), value(i) - value(j)};
    }
  });
}

// The residual of every record after a least-squares fit of the responses
// on the m drift properties of the records, fitted on the records that
// enter the variogram pairs. False when there is nothing to fit, and, with
// `warning`, when a record's properties cannot be fitted.
template <class Records>
bool DriftResiduals(const Records& data, std::size_t m, bool includeUnmeasured, const char* warning,
                    std::vector<double>& residuals) {
  ZqSVD<std::vector<double>> fit{ZqVecPropertyListFxn(m)};
  for (const auto& record : data) {
    if (record.isUnmeasured && !includeUnmeasured) continue;
    if (!fit.AddTraining(record.properties, record.response)) {
      Corvane::ZqThrow.Warning("%s", warning);
      return false;
    }
  }
  if (!fit.Train()) return false;
  residuals.clear();
  residuals.reserve(data.size());
  for (const auto& record : data) residuals.push_back(record.response - fit.Predict(record.properties));
  return true;
}

}  // namespace krige_detail

template <class T, class TT>
bool ZqGetDistAndDiff(std::vector<std::pair<double, double>>& pairs, const ZqKrigeTrainingContainer<T, TT>& container,
                      bool includeUnmeasured) {
  const ZqPropertyListFxn<T>* drift = container.GetPropertyFxn();
  if (drift && drift->GetSize() > 0) return ZqGetDistAndDiffResidual(pairs, container, includeUnmeasured);
  const auto& data = container.GetData();
  krige_detail::CollectPairs(pairs, container, includeUnmeasured, [&](std::size_t r) { return data[r].response; });
  return true;
}

template <class T, class TT>
bool ZqGetDistAndDiffResidual(std::vector<std::pair<double, double>>& pairs,
                              const ZqKrigeTrainingContainer<T, TT>& container, bool includeUnmeasured) {
  const ZqPropertyListFxn<T>* drift = container.GetPropertyFxn();
  const std::size_t m = drift ? drift->GetSize() : 0;
  const auto& data = container.GetData();
  std::vector<double> residuals;
  if (!krige_detail::DriftResiduals(data, m, includeUnmeasured, "ZqGetDistAndDiffResidual, failed to add training",
                                    residuals)) {
    return false;
  }
  krige_detail::CollectPairs(pairs, container, includeUnmeasured, [&](std::size_t r) { return residuals[r]; });
  return true;
}

}  // namespace Varimo
