// Definitions of the local kriging models.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "varimo/krige/kernel_fit.h"
#include "varimo/krige/local_krige.h"
#include "varimo/krige/ordinary_krige.h"
#include "varimo/krige/simple_krige.h"
#include "varimo/krige/svd_model.h"
#include "varimo/krige/training_container_impl.h"
#include "varimo/krige/universal_krige.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/random.h"
#include "varimo/platform/tessik/is_nan.h"

namespace Varimo {

namespace krige_detail {

// Distances below this are a query meeting a training element.
inline constexpr double kLocalSameElement = 1e-30;

}  // namespace krige_detail

template <class T, class TT>
ZqLocalKrigeImpl<T, TT>::ZqLocalKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, std::size_t numLocal,
                                          double errorValue, unsigned int missingIDValue, bool includeUnmeasured,
                                          bool predictTraining, std::size_t maxVariogramSize,
                                          unsigned int uniqueResponseMethod)
    : ZqLocalKrigeImpl(distFxn, ZqPropertyListPushFxn<T>(), numLocal, errorValue, missingIDValue, includeUnmeasured,
                       predictTraining, maxVariogramSize, uniqueResponseMethod) {}

template <class T, class TT>
ZqLocalKrigeImpl<T, TT>::ZqLocalKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn,
                                          std::size_t numLocal, double errorValue, unsigned int missingIDValue,
                                          bool includeUnmeasured, bool predictTraining, std::size_t maxVariogramSize,
                                          unsigned int uniqueResponseMethod)
    : distFxn_(distFxn.CreateCopy()),
      // Checked here, once, rather than in every query's container.
      uniqueResponseFxn_(new ZqGetUniqueTrainingDataResponseImpl<T, LocalStorage>(uniqueResponseMethod)),
      propFxn_(propFxn.CreateCopy()),
      numLocal_(numLocal),
      errorValue_(errorValue),
      missingIDValue_(missingIDValue),
      includeUnmeasured_(includeUnmeasured),
      predictTraining_(predictTraining),
      maxVariogramSize_(maxVariogramSize) {}

template <class T, class TT>
ZqLocalKrigeImpl<T, TT>::ZqLocalKrigeImpl(const ZqLocalKrigeImpl& other)
    : ZqKrigeBase<T>(other),
      distFxn_(other.distFxn_->CreateCopy()),
      uniqueResponseFxn_(other.uniqueResponseFxn_->CreateCopy()),
      propFxn_(other.propFxn_->CreateCopy()),
      numLocal_(other.numLocal_),
      errorValue_(other.errorValue_),
      missingIDValue_(other.missingIDValue_),
      includeUnmeasured_(other.includeUnmeasured_),
      predictTraining_(other.predictTraining_),
      maxVariogramSize_(other.maxVariogramSize_),
      data_(other.data_),
      trained_(other.trained_),
      fixedKernel_(other.fixedKernel_),
      variogramValid_(other.variogramValid_),
      variogram_(other.variogram_),
      fullVariogramValid_(other.fullVariogramValid_),
      fullVariogram_(other.fullVariogram_),
      sampled_(other.sampled_),
      pairList_(other.pairList_),
      search_(other.search_ ? other.search_->CreateCopy() : nullptr) {
  for (const auto& kernel : other.kernels_) kernels_.emplace_back(kernel->CreateCopy());
  // The copy's records live elsewhere: index them anew.
  if (other.searchBuilt_) BuildSearch();
}

template <class T, class TT>
void ZqLocalKrigeImpl<T, TT>::SetNeighbourSearch(const ZqKrigeNeighbourSearch<T>& search) {
  search_.reset(search.CreateCopy());
  searchBuilt_ = false;
  if (trained_) BuildSearch();
}

template <class T, class TT>
void ZqLocalKrigeImpl<T, TT>::BuildSearch() {
  searchBuilt_ = false;
  if (!search_) return;
  std::vector<const T*> elements;
  elements.reserve(data_.size());
  for (const Record& record : data_) elements.push_back(&record.GetElement());
  searchBuilt_ = search_->Build(elements);
}

template <class T, class TT>
void ZqLocalKrigeImpl<T, TT>::Invalidate() {
  trained_ = false;
  searchBuilt_ = false;
  variogramValid_ = false;
  fullVariogramValid_ = false;
  variogram_.Clear();
  fullVariogram_.Clear();
  kernels_.clear();
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddRecord(const T& element, double response, bool isUnmeasured, unsigned int id,
                                        bool hasID) {
  // Infinities too: one would turn every prediction near it into NaN.
  if (Tessik::ZqIsNaN(response) || std::isinf(response)) return false;
  if (!propFxn_->HasProperties(element)) return false;
  std::vector<double> properties;
  if (!ZqReadFiniteProperties(*propFxn_, element, properties, "ZqLocalKrigeImpl::AddTraining")) return false;
  Invalidate();
  const std::size_t index = data_.size();
  if (sampled_) {
    pairList_.clear();
  } else if (includeUnmeasured_ || !isUnmeasured) {
    for (std::size_t j = 0; j < index; ++j) {
      const bool admissible = includeUnmeasured_ ? !(isUnmeasured && data_[j].isUnmeasured) : !data_[j].isUnmeasured;
      if (admissible) pairList_.push_back({(*distFxn_)(element, data_[j].GetElement()), index, j});
    }
  }
  if (!sampled_ && pairList_.size() > maxVariogramSize_) {
    sampled_ = true;
    // From here on the pairs are drawn afresh for each variogram.
    std::vector<PairEntry>().swap(pairList_);
  }
  Record record;
  record.element = TT::Store(element);
  record.response = response;
  record.isUnmeasured = isUnmeasured;
  record.id = id;
  record.hasID = hasID;
  record.properties = std::move(properties);
  data_.push_back(std::move(record));
  return true;
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddTraining(const T& element, double response) {
  return AddRecord(element, response, false, missingIDValue_, false);
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddTrainingWithID(const T& element, double response, unsigned int id) {
  return AddRecord(element, response, false, id, true);
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddUnmeasuredTraining(const T& element, double response) {
  return AddRecord(element, response, true, missingIDValue_, false);
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) {
  return AddRecord(element, response, true, id, true);
}

template <class T, class TT>
template <class Value>
bool ZqLocalKrigeImpl<T, TT>::FillPairs(std::vector<std::pair<double, double>>& pairs, Value value,
                                        bool residualLimit) const {
  pairs.clear();
  if (!sampled_) {
    for (const PairEntry& entry : pairList_) {
      pairs.emplace_back(entry.distance, value(entry.later) - value(entry.earlier));
    }
    return !pairs.empty();
  }
  const std::size_t n = data_.size();
  std::size_t unmeasured = 0;
  for (const Record& record : data_) unmeasured += record.isUnmeasured ? 1 : 0;
  const double records = static_cast<double>(n), u = static_cast<double>(unmeasured);
  double admissible = (records - 1.0) * records * 0.5;
  if (unmeasured != 0) {
    admissible -= (u - 1.0) * u * 0.5;
    if (!includeUnmeasured_) admissible -= u * (records - u);
  }
  // The probability is computed in single precision: it decides which
  // pairs are drawn, and the same data must give the same sample.
  float keep = 1.0f;
  const bool thin = residualLimit ? static_cast<double>(static_cast<float>(maxVariogramSize_)) < admissible
                                  : static_cast<double>(maxVariogramSize_) < admissible;
  if (thin) keep = (1.0f / static_cast<float>(admissible)) * static_cast<float>(maxVariogramSize_);
  // Each admissible pair is kept with probability `keep`. Rather than draw
  // one number per pair, which at 10^5 records means 5 10^9 draws, the gap
  // to the next kept pair is drawn from its geometric law: the same
  // distribution of samples, in about maxVariogramSize draws. The seed is
  // fixed, so every call keeps the same pairs.
  Corvane::ZqRandom random(false);
  random.Seed(0);
  const double logMiss = keep < 1.0f ? std::log1p(-static_cast<double>(keep)) : 0.0;
  auto gap = [&random, keep, logMiss]() -> double {
    if (keep >= 1.0f) return 0.0;
    if (!(keep > 0.0f)) return std::numeric_limits<double>::infinity();
    // 1 - NextDouble() lies in (0, 1]: the logarithm is finite.
    return std::floor(std::log(1.0 - random.NextDouble()) / logMiss);
  };
  // The measured records in order: the partners of a row when unmeasured
  // records are left out, or when the row is itself unmeasured.
  std::vector<std::size_t> measured;
  for (std::size_t r = 0; r < n; ++r) {
    if (!data_[r].isUnmeasured) measured.push_back(r);
  }
  double skip = gap();  // admissible pairs to pass over before the next kept one
  for (std::size_t i = 0; i < n; ++i) {
    if (data_[i].isUnmeasured && !includeUnmeasured_) continue;
    const bool allLater = includeUnmeasured_ && !data_[i].isUnmeasured;
    const auto firstMeasured =
        static_cast<std::size_t>(std::upper_bound(measured.begin(), measured.end(), i) - measured.begin());
    const std::size_t rowPairs = allLater ? n - i - 1 : measured.size() - firstMeasured;
    std::size_t k = 0;  // the next pair of the row
    while (skip < static_cast<double>(rowPairs - k)) {
      k += static_cast<std::size_t>(skip);
      const std::size_t j = allLater ? i + 1 + k : measured[firstMeasured + k];
      pairs.emplace_back((*distFxn_)(data_[i].GetElement(), data_[j].GetElement()), value(i) - value(j));
      ++k;
      skip = gap();
    }
    skip -= static_cast<double>(rowPairs - k);
  }
  return !pairs.empty();
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::FillDistAndDiff(std::vector<std::pair<double, double>>& pairs) const {
  return FillPairs(pairs, [this](std::size_t r) { return data_[r].response; }, false);
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::FillDistAndDiffResidual(std::vector<std::pair<double, double>>& pairs) const {
  const std::size_t m = propFxn_->GetSize();
  if (m == 0) return FillDistAndDiff(pairs);
  pairs.clear();
  std::vector<double> residuals;
  if (!krige_detail::DriftResiduals(data_, m, includeUnmeasured_,
                                    "ZqLocalKrigeImpl::FillDistAndDiffResidual, failed to add training", residuals)) {
    return false;
  }
  return FillPairs(pairs, [&residuals](std::size_t r) { return residuals[r]; }, true);
}

template <class T, class TT>
ZqVariogram ZqLocalKrigeImpl<T, TT>::GetVariogram() {
  if (!variogramValid_) {
    variogram_.Clear();
    std::vector<std::pair<double, double>> pairs;
    variogramValid_ = FillDistAndDiffImpl(pairs) && ZqSetupVariogram(variogram_, pairs, true);
  }
  return ZqVariogram(variogram_.CreateCopy());
}

template <class T, class TT>
ZqVariogram ZqLocalKrigeImpl<T, TT>::GetVariogram() const {
  if (variogramValid_) return ZqVariogram(variogram_.CreateCopy());
  auto temporary = std::make_unique<ZqVariogramImpl>();
  std::vector<std::pair<double, double>> pairs;
  if (FillDistAndDiffImpl(pairs)) ZqSetupVariogram(*temporary, pairs, true);
  return ZqVariogram(temporary.release());
}

template <class T, class TT>
ZqFullVariogram ZqLocalKrigeImpl<T, TT>::GetFullVariogram() {
  fullVariogram_.Clear();
  std::vector<std::pair<double, double>> pairs;
  // The outcome lands in variogramValid_, not in fullVariogramValid_: the
  // full variogram is rebuilt on every call, and a later GetVariogram()
  // finds the plain one marked valid even when it is still empty: a model
  // asked for its full variogram before training then fails to train, for
  // want of bins, until a record is added or the model cleared.
  variogramValid_ = FillDistAndDiffImpl(pairs) && ZqSetupVariogram(fullVariogram_, pairs, true);
  return ZqFullVariogram(fullVariogram_.CreateCopy());
}

template <class T, class TT>
ZqFullVariogram ZqLocalKrigeImpl<T, TT>::GetFullVariogram() const {
  auto temporary = std::make_unique<ZqFullVariogramImpl>();
  std::vector<std::pair<double, double>> pairs;
  if (FillDistAndDiffImpl(pairs)) ZqSetupVariogram(*temporary, pairs, true);
  return ZqFullVariogram(temporary.release());
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::Train() {
  trained_ = false;
  const ZqVariogram variogram = GetVariogram();
  if (variogram.GetNumBins() < 3) {
    Corvane::ZqThrow.Warning("ZqLocalKrigeImpl::Train() failed, not enough data to construct variogram");
    return false;
  }
  kernels_.clear();
  for (const ZqKrigeKernel& candidate : ZqRankKernels(variogram)) kernels_.emplace_back(candidate.CreateCopy());
  trained_ = true;
  fixedKernel_ = false;
  if (!searchBuilt_) BuildSearch();
  return true;
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::Train(ZqKrigeKernelBase& kernel) {
  trained_ = false;
  const ZqVariogram variogram = GetVariogram();
  if (variogram.GetNumBins() < 3) {
    Corvane::ZqThrow.Warning(
        "ZqLocalKrigeImpl::Train(ZqKrigeKernelBase ) failed, not enough data to construct variogram");
    return false;
  }
  ZqFitKernel(kernel, variogram);
  kernels_.clear();
  kernels_.emplace_back(kernel.CreateCopy());
  trained_ = true;
  fixedKernel_ = false;
  if (!searchBuilt_) BuildSearch();
  return true;
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::TrainFixed(const ZqKrigeKernelBase& kernel) {
  kernels_.clear();
  kernels_.emplace_back(kernel.CreateCopy());
  trained_ = true;
  fixedKernel_ = true;
  if (!searchBuilt_) BuildSearch();
  return true;
}

template <class T, class TT>
ZqKrigeTrainedKernels ZqLocalKrigeImpl<T, TT>::GetTrainedKernels() const {
  ZqKrigeTrainedKernels trained;
  if (!trained_) return trained;
  for (const auto& kernel : kernels_) trained.kernels.emplace_back(*kernel);
  trained.fixed = fixedKernel_;
  return trained;
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::TrainWithKernels(const ZqKrigeTrainedKernels& trained) {
  if (trained.kernels.empty()) {
    Corvane::ZqThrow.Warning("ZqLocalKrigeImpl::TrainWithKernels, no kernel given");
    return false;
  }
  kernels_.clear();
  for (const ZqKrigeKernel& kernel : trained.kernels) kernels_.emplace_back(kernel.CreateCopy());
  trained_ = true;
  fixedKernel_ = trained.fixed;
  if (!searchBuilt_) BuildSearch();
  return true;
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::AddNeighbour(LocalContainer& container, std::size_t index, double distance) const {
  // A query that is a training element must not see itself nor its copies.
  if (predictTraining_ && distance < krige_detail::kLocalSameElement) return false;
  const Record& source = data_[index];
  typename LocalContainer::Record record;
  record.element = LocalStorage::Store(source.GetElement());
  record.response = source.response;
  record.isUnmeasured = source.isUnmeasured;
  record.id = source.id;
  record.hasID = source.hasID;
  record.properties = source.properties;
  return container.AddElement(std::move(record));
}

template <class T, class TT>
void ZqLocalKrigeImpl<T, TT>::FillNeighbourhood(const T& element, LocalContainer& container) const {
  const std::size_t n = data_.size();
  if (n < numLocal_) {
    for (std::size_t i = 0; i < n; ++i) {
      // The distance matters only for leaving the query itself out.
      const double d = predictTraining_ ? (*distFxn_)(element, data_[i].GetElement()) : 0.0;
      AddNeighbour(container, i, d);
    }
    return;
  }
  if (searchBuilt_ && FillNeighbourhoodFromSearch(element, container)) return;
  std::vector<std::pair<double, std::size_t>> ranked(n);
  for (std::size_t i = 0; i < n; ++i) ranked[i] = {(*distFxn_)(element, data_[i].GetElement()), i};
  // Pairs compare by distance, then by index. A NaN distance would break
  // the ordering: it ranks as farthest.
  for (auto& entry : ranked) {
    if (std::isnan(entry.first)) entry.first = std::numeric_limits<double>::infinity();
  }
  const auto begin = ranked.begin();
  const auto nearest = begin + static_cast<std::ptrdiff_t>(numLocal_);
  std::nth_element(begin, nearest, ranked.end());
  // In order, so that the neighbours enter the container as they do from a
  // search, and both give the same system to the last bit.
  std::sort(begin, nearest);
  for (auto it = begin; it != nearest; ++it) AddNeighbour(container, it->second, it->first);
  // Copies merge in the container, so the neighbourhood may hold fewer
  // unique elements than asked for: fill it up with the next nearest, one
  // block of numLocal at a time, nearest first within each block.
  for (std::size_t first = numLocal_; container.GetNumUnique() < numLocal_ && first < n; first += numLocal_) {
    const std::size_t last = std::min(first + numLocal_, n);
    const auto blockBegin = begin + static_cast<std::ptrdiff_t>(first);
    const auto blockEnd = begin + static_cast<std::ptrdiff_t>(last);
    std::nth_element(blockBegin, blockEnd, ranked.end());
    std::sort(blockBegin, blockEnd);
    for (auto it = blockBegin; it != blockEnd && container.GetNumUnique() < numLocal_; ++it) {
      AddNeighbour(container, it->second, it->first);
    }
  }
}

template <class T, class TT>
bool ZqLocalKrigeImpl<T, TT>::FillNeighbourhoodFromSearch(const T& element, LocalContainer& container) const {
  const std::size_t n = data_.size();
  std::vector<std::size_t> candidates;
  std::vector<std::pair<double, std::size_t>> ranked;
  // Walks the records in order of (distance, index): the first numLocal
  // all enter, later ones only while copies keep the unique elements below
  // numLocal, exactly as the scan does. The candidates closer than the
  // search's bound are a prefix of that order; when the walk needs more,
  // the search is asked for twice as many.
  std::size_t walked = 0;
  // One more when the query itself is likely among the training elements.
  std::size_t count = numLocal_ + (predictTraining_ ? 1 : 0);
  for (;; count *= 2) {
    double bound = 0.0;
    if (!search_->Candidates(element, count, candidates, bound)) return walked > 0;
    ranked.clear();
    for (std::size_t i : candidates) {
      double d = (*distFxn_)(element, data_[i].GetElement());
      if (std::isnan(d)) d = std::numeric_limits<double>::infinity();
      ranked.emplace_back(d, i);
    }
    std::sort(ranked.begin(), ranked.end());
    const bool everything = candidates.size() >= n;
    const std::size_t trusted =
        everything ? ranked.size()
                   : static_cast<std::size_t>(std::partition_point(ranked.begin(), ranked.end(),
                                                                   [bound](const auto& e) { return e.first < bound; }) -
                                              ranked.begin());
    for (; walked < trusted; ++walked) {
      if (walked >= numLocal_ && container.GetNumUnique() >= numLocal_) return true;
      AddNeighbour(container, ranked[walked].second, ranked[walked].first);
    }
    if (everything || (walked >= numLocal_ && container.GetNumUnique() >= numLocal_)) return true;
    // A search that lists fewer than all when asked for all: stop here
    // rather than ask forever.
    if (count >= n) return true;
  }
}

template <class T, class TT>
ZqKrigeResult ZqLocalKrigeImpl<T, TT>::LocalResult(const T& element) const {
  LocalContainer container(*distFxn_, *uniqueResponseFxn_, propFxn_.get());
  FillNeighbourhood(element, container);
  const std::unique_ptr<LocalModel> model =
      CreateLocalKrige(container, errorValue_, missingIDValue_, includeUnmeasured_);
  for (const auto& kernel : kernels_) {
    if (!model->TrainFixed(*kernel)) continue;
    ZqKrigeResult result = model->GetKrigeResult(element);
    if (result.Valid()) return result;
  }
  if (fixedKernel_) return ZqKrigeResult();
  // The kernels fitted to the whole set all fail here: refit each to the
  // neighbours' own variogram, then try the candidates fitted afresh.
  for (const auto& kernel : kernels_) {
    ZqKrigeKernel refitted(*kernel);
    if (!model->Train(refitted)) continue;
    ZqKrigeResult result = model->GetKrigeResult(element);
    if (result.Valid()) {
      Corvane::ZqThrow.Warning("ZqLocalKrige::GetKrigeResult, Falling back to local variogram");
      return result;
    }
  }
  if (model->Train()) {
    ZqKrigeResult result = model->GetKrigeResult(element);
    if (result.Valid()) {
      Corvane::ZqThrow.Warning("ZqLocalKrige::GetKrigeResult, Falling back to local variogram kernels");
      return result;
    }
  }
  return ZqKrigeResult();
}

template <class T, class TT>
ZqKrigeResult ZqLocalKrigeImpl<T, TT>::GetKrigeResult(const T& element) {
  if (!trained_ && !Train()) return ZqKrigeResult();
  return LocalResult(element);
}

template <class T, class TT>
ZqKrigeResult ZqLocalKrigeImpl<T, TT>::GetKrigeResult(const T& element) const {
  if (trained_) return LocalResult(element);
  std::unique_ptr<ZqKrigeBase<T>> copy(this->CreateKrigeCopy());
  return copy->GetKrigeResult(element);
}

template <class T, class TT>
double ZqLocalKrigeImpl<T, TT>::Predict(const T& element) {
  return ZqCalculateResponse(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqLocalKrigeImpl<T, TT>::Predict(const T& element) const {
  return ZqCalculateResponse(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqLocalKrigeImpl<T, TT>::GetVariance(const T& element) {
  return ZqCalculateVariance(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
double ZqLocalKrigeImpl<T, TT>::GetVariance(const T& element) const {
  return ZqCalculateVariance(GetKrigeResult(element), errorValue_);
}

template <class T, class TT>
ZqKrigeKernel ZqLocalKrigeImpl<T, TT>::GetKernel() {
  if ((!trained_ && !Train()) || kernels_.empty()) {
    Corvane::ZqThrow.Warning("ZqLocalKrige::GetKernel, failed to get kernel because training failed");
    return ZqKrigeKernel(ZqKrigeLinearKernel());
  }
  return ZqKrigeKernel(*kernels_.front());
}

template <class T, class TT>
ZqKrigeKernel ZqLocalKrigeImpl<T, TT>::GetKernel() const {
  if (trained_ && !kernels_.empty()) return ZqKrigeKernel(*kernels_.front());
  std::unique_ptr<ZqKrigeBase<T>> copy(this->CreateKrigeCopy());
  return copy->GetKernel();
}

template <class T, class TT>
void ZqLocalKrigeImpl<T, TT>::Clear() {
  data_.clear();
  searchBuilt_ = false;
  Invalidate();
  fixedKernel_ = false;
  sampled_ = false;
  std::vector<PairEntry>().swap(pairList_);
}

template <class T, class TT>
std::unique_ptr<typename ZqLocalKrigeImpl<T, TT>::LocalModel> ZqLocalSimpleKrige<T, TT>::CreateLocalKrige(
    typename Base::LocalContainer& container, double errorValue, unsigned int missingIDValue,
    bool includeUnmeasured) const {
  return std::make_unique<ZqSimpleKrige<T, typename Base::LocalStorage>>(container, errorValue, missingIDValue,
                                                                         includeUnmeasured);
}

template <class T, class TT>
std::unique_ptr<typename ZqLocalKrigeImpl<T, TT>::LocalModel> ZqLocalOrdinaryKrige<T, TT>::CreateLocalKrige(
    typename Base::LocalContainer& container, double errorValue, unsigned int missingIDValue,
    bool includeUnmeasured) const {
  return std::make_unique<ZqOrdinaryKrige<T, typename Base::LocalStorage>>(container, errorValue, missingIDValue,
                                                                           includeUnmeasured);
}

template <class T, class TT>
std::unique_ptr<typename ZqLocalKrigeImpl<T, TT>::LocalModel> ZqLocalUniversalKrige<T, TT>::CreateLocalKrige(
    typename Base::LocalContainer& container, double errorValue, unsigned int missingIDValue,
    bool includeUnmeasured) const {
  return std::make_unique<ZqUniversalKrige<T, typename Base::LocalStorage>>(container, errorValue, missingIDValue,
                                                                            includeUnmeasured);
}

}  // namespace Varimo
