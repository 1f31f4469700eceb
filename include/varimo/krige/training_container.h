// The training container of the kriging models: the records in order of
// addition, their grouping into unique elements, and the lower triangle of
// the distances between unique elements.
//
// A record at distance zero (below 1e-30) of an earlier one is a further
// copy of that unique element, not a new row of the kriging system. The
// container is the one place where the distance functor is called on
// training elements: each addition costs one call per unique element so
// far, against that element's first record, and the variogram and the
// covariance matrix then read the table. Memory is O(U^2) in the number U of
// unique elements.
#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "varimo/krige/distance_triangle.h"
#include "varimo/krige/element_storage.h"
#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/property_list.h"
#include "varimo/platform/corvane/functional.h"

namespace Varimo {

template <class T>
using ZqKrigeDistanceFxn = Corvane::ZqBinaryFunction<T, T, double>;

// One training record.
template <class T, class TT>
struct ZqKrigeTrainingData {
  typename TT::Stored element;
  double response = 0.0;
  // Added as unmeasured: its response is a bound, used only where no
  // measured copy of its element exists.
  bool isUnmeasured = false;
  unsigned int id = 0;
  bool hasID = false;
  // Drift properties, one per entry of the property functor.
  std::vector<double> properties;

  const T& GetElement() const { return TT::Get(element); }
};

// Reduces the records of one unique element (indices into the data) to one
// response.
template <class T, class TT>
class ZqGetUniqueTrainingDataResponseFxn {
 public:
  using Records = std::vector<ZqKrigeTrainingData<T, TT>>;
  virtual ~ZqGetUniqueTrainingDataResponseFxn() = default;
  virtual double GetResponse(const Records& data, const std::vector<std::size_t>& members) const = 0;
  virtual ZqGetUniqueTrainingDataResponseFxn* CreateCopy() const = 0;
};

// The mean over the measured records, or over all when none is measured;
// NaN for no records.
template <class T, class TT>
class ZqGetMeanTrainingDataResponseFxn final : public ZqGetUniqueTrainingDataResponseFxn<T, TT> {
 public:
  using typename ZqGetUniqueTrainingDataResponseFxn<T, TT>::Records;
  double GetResponse(const Records& data, const std::vector<std::size_t>& members) const override;
  ZqGetUniqueTrainingDataResponseFxn<T, TT>* CreateCopy() const override {
    return new ZqGetMeanTrainingDataResponseFxn(*this);
  }
};

// The smallest measured response, or the smallest of all when none is
// measured; the largest double for no records.
template <class T, class TT>
class ZqGetMinTrainingDataResponseFxn final : public ZqGetUniqueTrainingDataResponseFxn<T, TT> {
 public:
  using typename ZqGetUniqueTrainingDataResponseFxn<T, TT>::Records;
  double GetResponse(const Records& data, const std::vector<std::size_t>& members) const override;
  ZqGetUniqueTrainingDataResponseFxn<T, TT>* CreateCopy() const override {
    return new ZqGetMinTrainingDataResponseFxn(*this);
  }
};

// The largest measured response, or the largest of all when none is
// measured; minus the largest double for no records.
template <class T, class TT>
class ZqGetMaxTrainingDataResponseFxn final : public ZqGetUniqueTrainingDataResponseFxn<T, TT> {
 public:
  using typename ZqGetUniqueTrainingDataResponseFxn<T, TT>::Records;
  double GetResponse(const Records& data, const std::vector<std::size_t>& members) const override;
  ZqGetUniqueTrainingDataResponseFxn<T, TT>* CreateCopy() const override {
    return new ZqGetMaxTrainingDataResponseFxn(*this);
  }
};

// Holds the functor of a ZqKrigeUniqueResponseMethod. Another value reports
// "Invalid KrigeUniqueResponseMethod %d, defaulting to mean" and takes the
// mean.
template <class T, class TT>
class ZqGetUniqueTrainingDataResponseImpl final : public ZqGetUniqueTrainingDataResponseFxn<T, TT> {
 public:
  using typename ZqGetUniqueTrainingDataResponseFxn<T, TT>::Records;
  explicit ZqGetUniqueTrainingDataResponseImpl(unsigned int method);
  ZqGetUniqueTrainingDataResponseImpl(const ZqGetUniqueTrainingDataResponseImpl& other)
      : impl_(other.impl_->CreateCopy()) {}
  ZqGetUniqueTrainingDataResponseImpl& operator=(const ZqGetUniqueTrainingDataResponseImpl& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  double GetResponse(const Records& data, const std::vector<std::size_t>& members) const override {
    return impl_->GetResponse(data, members);
  }
  ZqGetUniqueTrainingDataResponseFxn<T, TT>* CreateCopy() const override {
    return new ZqGetUniqueTrainingDataResponseImpl(*this);
  }

 private:
  std::unique_ptr<ZqGetUniqueTrainingDataResponseFxn<T, TT>> impl_;
};

// Reduces the property vectors of one unique element's records.
template <class T, class TT>
class ZqGetUniqueTrainingDataPropFxn {
 public:
  using Records = std::vector<ZqKrigeTrainingData<T, TT>>;
  virtual ~ZqGetUniqueTrainingDataPropFxn() = default;
  virtual std::vector<double> GetProperties(const Records& data, const std::vector<std::size_t>& members) const = 0;
  virtual ZqGetUniqueTrainingDataPropFxn* CreateCopy() const = 0;
};

// One record's properties as they stand; several records' component-wise
// mean over the measured ones, or over all when none is measured.
template <class T, class TT>
class ZqGetMeanTrainingDataPropFxn final : public ZqGetUniqueTrainingDataPropFxn<T, TT> {
 public:
  using typename ZqGetUniqueTrainingDataPropFxn<T, TT>::Records;
  std::vector<double> GetProperties(const Records& data, const std::vector<std::size_t>& members) const override;
  ZqGetUniqueTrainingDataPropFxn<T, TT>* CreateCopy() const override {
    return new ZqGetMeanTrainingDataPropFxn(*this);
  }
};

template <class T, class TT>
class ZqKrigeTrainingContainer {
 public:
  using Record = ZqKrigeTrainingData<T, TT>;

  ZqKrigeTrainingContainer(const ZqKrigeDistanceFxn<T>& distFxn, unsigned int uniqueResponseMethod);
  // With drift properties read from each element at addition.
  ZqKrigeTrainingContainer(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn,
                           unsigned int uniqueResponseMethod);
  // With copies of the given functors (no drift for a null `propFxn`): how
  // the local models build a container per query without checking the
  // response method again.
  ZqKrigeTrainingContainer(const ZqKrigeDistanceFxn<T>& distFxn,
                           const ZqGetUniqueTrainingDataResponseFxn<T, TT>& uniqueResponseFxn,
                           const ZqPropertyListFxn<T>* propFxn);
  ZqKrigeTrainingContainer(const ZqKrigeTrainingContainer& other);
  ZqKrigeTrainingContainer& operator=(const ZqKrigeTrainingContainer& other);
  ZqKrigeTrainingContainer(ZqKrigeTrainingContainer&&) noexcept = default;
  ZqKrigeTrainingContainer& operator=(ZqKrigeTrainingContainer&&) noexcept = default;

  // Files the record under the first unique element within 1e-30 of it, or
  // makes it a new unique element with its row of distances. Returns true.
  bool AddElement(Record record);
  // With a property functor: false, adding nothing, when the element lacks
  // a property; otherwise the properties are appended to the record's and
  // the record is added.
  bool AddElementAndProperties(Record record);
  // Removes records, groups and distances; the functors stay.
  void Clear();

  std::size_t GetNumData() const { return data_.size(); }
  std::size_t GetNumUnique() const { return uniqueMembers_.size(); }
  const std::vector<Record>& GetData() const { return data_; }
  const Record& GetData(std::size_t record) const { return data_[record]; }
  // The records of a unique element, in order of addition; the first is its
  // representative.
  const std::vector<std::size_t>& GetUniqueMembers(std::size_t unique) const { return uniqueMembers_[unique]; }
  std::size_t GetUniqueOfData(std::size_t record) const { return uniqueOfData_[record]; }
  const T& GetRepresentative(std::size_t unique) const { return data_[representatives_[unique]].GetElement(); }

  // The tabled distance between two unique elements (0 between one and
  // itself), and between the unique elements of two records.
  double GetUniqueDistance(std::size_t a, std::size_t b) const {
    if (a == b) return 0.0;
    return a > b ? distances_.At(a, b) : distances_.At(b, a);
  }
  double GetDataDistance(std::size_t first, std::size_t second) const {
    return GetUniqueDistance(uniqueOfData_[first], uniqueOfData_[second]);
  }
  // Calls the distance functor; the query side of a prediction.
  double GetDistance(const T& a, const T& b) const { return (*distFxn_)(a, b); }

  double GetUniqueResponse(std::size_t unique) const {
    return uniqueResponseFxn_->GetResponse(data_, uniqueMembers_[unique]);
  }
  std::vector<double> GetUniqueProperties(std::size_t unique) const {
    return uniquePropFxn_->GetProperties(data_, uniqueMembers_[unique]);
  }
  // The id of the first record with a caller's id, else the first record's
  // (which holds the model's missing id value).
  unsigned int GetUniqueID(std::size_t unique) const;

  // Null without drift properties.
  const ZqPropertyListFxn<T>* GetPropertyFxn() const { return propFxn_.get(); }
  const ZqKrigeDistanceFxn<T>& GetDistanceFxn() const { return *distFxn_; }

 private:
  std::unique_ptr<ZqKrigeDistanceFxn<T>> distFxn_;
  std::unique_ptr<ZqGetUniqueTrainingDataResponseFxn<T, TT>> uniqueResponseFxn_;
  std::unique_ptr<ZqPropertyListFxn<T>> propFxn_;
  std::unique_ptr<ZqGetUniqueTrainingDataPropFxn<T, TT>> uniquePropFxn_;
  std::vector<Record> data_;
  std::vector<std::vector<std::size_t>> uniqueMembers_;
  // The first member of each list, read at every distance to a unique
  // element: kept apart from the lists, whose separate blocks cost a cache
  // miss per read, a third of the time of adding a record.
  std::vector<std::size_t> representatives_;
  std::vector<std::size_t> uniqueOfData_;
  krige_detail::DistanceTriangle distances_;
};

// Fills the upper-left n x n block of a square matrix with the covariances
// sill - kernel(d) of the n unique elements; the diagonal is sill - nugget.
// A matrix that is not square or smaller than n reports an error and gives
// false; entries outside the block are left alone.
template <class T, class TT>
bool ZqFillCovarianceMatrix(Eigen::MatrixXd& matrix, const ZqKrigeTrainingContainer<T, TT>& container,
                            const ZqKrigeKernelBase& kernel);

// The (distance, response difference) pairs of a variogram, over the records
// in order: with `includeUnmeasured` false only pairs of two measured
// records, otherwise every pair but those of two unmeasured ones. Copies of
// one element pair at distance zero. True also for no records. With drift
// properties the differences are those of the residuals (below).
template <class T, class TT>
bool ZqGetDistAndDiff(std::vector<std::pair<double, double>>& pairs, const ZqKrigeTrainingContainer<T, TT>& container,
                      bool includeUnmeasured);

// The pairs of ZqGetDistAndDiff with differences of the residuals of a
// least-squares fit of the responses on the records' drift properties:
// universal kriging models the drift separately, so its variogram must not
// see it. The fit takes the records that enter the pairs; every record gets
// a residual. False, with a warning when a record's properties cannot be
// fitted, or when there is nothing to fit.
template <class T, class TT>
bool ZqGetDistAndDiffResidual(std::vector<std::pair<double, double>>& pairs,
                              const ZqKrigeTrainingContainer<T, TT>& container, bool includeUnmeasured);

}  // namespace Varimo
