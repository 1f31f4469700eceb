// Local kriging: every query is predicted from its `numLocal` nearest
// training elements instead of the whole set. Training only ranks the 16
// candidate kernels on the variogram of the whole set; each query then
// copies pointers to its neighbours into a small container, builds a
// simple, ordinary or universal model on it and tries the kernels in order
// of fit until one gives a valid result, falling back to kernels fitted to
// the neighbours' own variogram.
//
//   Varimo::ZqLocalOrdinaryKrige<std::vector<double>> model(
//       Varimo::ZqEuclideanDistance(), 50, errorValue, missingID, false, false, 500000,
//       Varimo::ZqKrigeUniqueResponseMethod::Mean);
//
// No matrix of the training set is kept, so the set can grow far beyond
// the size of a global model. Distances between training elements are
// computed at addition only until the variogram pairs exceed
// `maxVariogramSize`; from then on each variogram is built from a seeded
// random sample of about that many pairs. A query costs n distance calls
// and one small factorisation per kernel tried.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/neighbour_search.h"
#include "varimo/krige/standard_krige.h"
#include "varimo/krige/training_container.h"

namespace Varimo {

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqLocalKrigeImpl : public ZqKrigeBase<T> {
 public:
  using Record = ZqKrigeTrainingData<T, TT>;
  // The per-query containers borrow the elements of the whole set.
  using LocalStorage = ZqKrigeUnmanagedPtrElementStorage<T>;
  using LocalContainer = ZqKrigeTrainingContainer<T, LocalStorage>;
  using LocalModel = ZqStandardKrigeImpl<T, LocalStorage>;

  ZqLocalKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, std::size_t numLocal, double errorValue,
                   unsigned int missingIDValue, bool includeUnmeasured, bool predictTraining,
                   std::size_t maxVariogramSize, unsigned int uniqueResponseMethod);
  // With drift properties, for local universal kriging.
  ZqLocalKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn, std::size_t numLocal,
                   double errorValue, unsigned int missingIDValue, bool includeUnmeasured, bool predictTraining,
                   std::size_t maxVariogramSize, unsigned int uniqueResponseMethod);
  ZqLocalKrigeImpl(const ZqLocalKrigeImpl& other);
  ZqLocalKrigeImpl& operator=(const ZqLocalKrigeImpl&) = delete;

  // Unlike the global models, a refused record (NaN or infinite response,
  // an element without the properties, drift properties not all finite,
  // which also warns) leaves the model as it was.
  bool AddTraining(const T& element, double response) override;
  bool AddTrainingWithID(const T& element, double response, unsigned int id) override;
  bool AddUnmeasuredTraining(const T& element, double response) override;
  bool AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) override;

  // Fits the candidates to the variogram of the whole set and keeps them
  // all, best first. Needs 3 bins.
  bool Train() override;
  // Fits the caller's kernel (in place) and keeps only it. Needs 3 bins.
  bool Train(ZqKrigeKernelBase& kernel) override;
  // Keeps the kernel as it stands; no fall-back to fitted kernels.
  bool TrainFixed(const ZqKrigeKernelBase& kernel) override;
  // The ranked kernels, and whether they came from TrainFixed.
  ZqKrigeTrainedKernels GetTrainedKernels() const override;
  // Keeps the kernels as given, in that order; at least one.
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) override;

  double Predict(const T& element) override;
  double Predict(const T& element) const override;
  double GetVariance(const T& element) override;
  double GetVariance(const T& element) const override;
  ZqKrigeResult GetKrigeResult(const T& element) override;
  ZqKrigeResult GetKrigeResult(const T& element) const override;
  ZqKrigeKernel GetKernel() override;
  ZqKrigeKernel GetKernel() const override;
  ZqVariogram GetVariogram() override;
  ZqVariogram GetVariogram() const override;
  // Rebuilt on every call.
  ZqFullVariogram GetFullVariogram() override;
  ZqFullVariogram GetFullVariogram() const override;

  double GetErrorValue() const override { return errorValue_; }
  void Clear() override;
  ZqDataModelBase<T>* CreateCopy() const override { return this->CreateKrigeCopy(); }

  // A new standard model on a copy of `container`, owned by the caller.
  virtual std::unique_ptr<LocalModel> CreateLocalKrige(LocalContainer& container, double errorValue,
                                                       unsigned int missingIDValue, bool includeUnmeasured) const = 0;
  // The variogram pairs of the whole set: response or residual differences.
  virtual bool FillDistAndDiffImpl(std::vector<std::pair<double, double>>& pairs) const = 0;

  // Finds neighbours through `search` (a copy is kept) instead of scanning
  // every training element. The search must agree with the distance
  // functor (a k-d tree for a Euclidean distance over the same
  // coordinates): it only proposes candidates, which the functor orders.
  void SetNeighbourSearch(const ZqKrigeNeighbourSearch<T>& search);
  bool HasNeighbourSearch() const { return search_ != nullptr; }

  std::size_t GetNumLocal() const { return numLocal_; }
  bool GetIncludeUnmeasured() const { return includeUnmeasured_; }
  bool GetPredictTraining() const { return predictTraining_; }
  std::size_t GetMaxVariogramSize() const { return maxVariogramSize_; }
  std::size_t GetNumData() const { return data_.size(); }
  bool IsTrained() const { return trained_; }
  // Whether the pairs have outgrown maxVariogramSize, so that variograms
  // come from a random sample.
  bool IsSampled() const { return sampled_; }
  // The training records' elements, in order of addition, and the
  // distance of the model.
  const T& GetDataElement(std::size_t record) const { return data_[record].GetElement(); }
  const Record& GetData(std::size_t record) const { return data_[record]; }
  const ZqKrigeDistanceFxn<T>& GetDistanceFxn() const { return *distFxn_; }
  // The candidate kernels in the order a query tries them.
  const std::vector<std::unique_ptr<ZqKrigeKernelBase>>& GetKernels() const { return kernels_; }

 protected:
  // Pairs of response differences, from the pair list or sampled.
  bool FillDistAndDiff(std::vector<std::pair<double, double>>& pairs) const;
  // Pairs of differences of residuals of a least-squares fit of the drift.
  bool FillDistAndDiffResidual(std::vector<std::pair<double, double>>& pairs) const;

 private:
  struct PairEntry {
    double distance;
    std::size_t later, earlier;  // record indices
  };

  bool AddRecord(const T& element, double response, bool isUnmeasured, unsigned int id, bool hasID);
  void Invalidate();
  // The pairs of FillDistAndDiff with the difference of `value(i)`.
  template <class Value>
  bool FillPairs(std::vector<std::pair<double, double>>& pairs, Value value, bool residualLimit) const;
  // The neighbourhood of a query and the kernel walk on it; the model is
  // trained.
  ZqKrigeResult LocalResult(const T& element) const;
  void FillNeighbourhood(const T& element, LocalContainer& container) const;
  // The same neighbourhood from the candidates of the search; false when
  // the search cannot answer for this query.
  bool FillNeighbourhoodFromSearch(const T& element, LocalContainer& container) const;
  bool AddNeighbour(LocalContainer& container, std::size_t record, double distance) const;
  // Indexes the training elements when a search is set; called whenever
  // the model becomes trained, since only additions change the data.
  void BuildSearch();

  std::unique_ptr<ZqKrigeDistanceFxn<T>> distFxn_;
  std::unique_ptr<ZqGetUniqueTrainingDataResponseFxn<T, LocalStorage>> uniqueResponseFxn_;
  std::unique_ptr<ZqPropertyListFxn<T>> propFxn_;  // empty list for simple and ordinary
  std::size_t numLocal_;
  double errorValue_;
  unsigned int missingIDValue_;
  bool includeUnmeasured_;
  bool predictTraining_;
  std::size_t maxVariogramSize_;
  std::vector<Record> data_;
  bool trained_ = false;
  std::vector<std::unique_ptr<ZqKrigeKernelBase>> kernels_;
  bool fixedKernel_ = false;
  bool variogramValid_ = false;
  ZqVariogramImpl variogram_;
  bool fullVariogramValid_ = false;
  ZqFullVariogramImpl fullVariogram_;
  bool sampled_ = false;
  std::vector<PairEntry> pairList_;
  std::unique_ptr<ZqKrigeNeighbourSearch<T>> search_;
  bool searchBuilt_ = false;
};

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqLocalSimpleKrige final : public ZqLocalKrigeImpl<T, TT> {
 public:
  using Base = ZqLocalKrigeImpl<T, TT>;
  using Base::Base;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqLocalSimpleKrige(*this); }
  std::unique_ptr<typename Base::LocalModel> CreateLocalKrige(typename Base::LocalContainer& container,
                                                              double errorValue, unsigned int missingIDValue,
                                                              bool includeUnmeasured) const override;
  bool FillDistAndDiffImpl(std::vector<std::pair<double, double>>& pairs) const override {
    return this->FillDistAndDiff(pairs);
  }
};

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqLocalOrdinaryKrige final : public ZqLocalKrigeImpl<T, TT> {
 public:
  using Base = ZqLocalKrigeImpl<T, TT>;
  using Base::Base;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqLocalOrdinaryKrige(*this); }
  std::unique_ptr<typename Base::LocalModel> CreateLocalKrige(typename Base::LocalContainer& container,
                                                              double errorValue, unsigned int missingIDValue,
                                                              bool includeUnmeasured) const override;
  bool FillDistAndDiffImpl(std::vector<std::pair<double, double>>& pairs) const override {
    return this->FillDistAndDiff(pairs);
  }
};

template <class T, class TT = ZqKrigeDefaultElementStorage<T>>
class ZqLocalUniversalKrige final : public ZqLocalKrigeImpl<T, TT> {
 public:
  using Base = ZqLocalKrigeImpl<T, TT>;
  using Base::Base;
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return new ZqLocalUniversalKrige(*this); }
  std::unique_ptr<typename Base::LocalModel> CreateLocalKrige(typename Base::LocalContainer& container,
                                                              double errorValue, unsigned int missingIDValue,
                                                              bool includeUnmeasured) const override;
  bool FillDistAndDiffImpl(std::vector<std::pair<double, double>>& pairs) const override {
    return this->FillDistAndDiffResidual(pairs);
  }
};

}  // namespace Varimo
