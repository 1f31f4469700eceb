// The result of one krige prediction: the training elements that took part,
// with their weights, distances and responses, the baseline and the kernel.
// The prediction and the kriging variance are free functions over it, so
// that a report can also show which neighbours carry a prediction and what
// each copy of a repeated element measured.
//
//   Varimo::ZqKrigeResult result = model.GetKrigeResult(query);
//   if (result.Valid()) {
//     const double y = Varimo::ZqCalculateResponse(result, errorValue);
//     const double v = Varimo::ZqCalculateVariance(result, errorValue);
//   }
//
// An element of a result is a unique training element (a row of the kriging
// system). When several training records fell on it at distance zero, they
// are its copies and the result keeps a list of them; a single record's data
// stay in the element itself. Bad indices report through the error handler
// (level Error) and return the defaults documented below.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "varimo/krige/krige_kernels.h"

namespace Varimo {

class ZqKrigeResultBase {
 public:
  virtual ~ZqKrigeResultBase() = default;
  // True exactly when the result has elements: an empty result is the
  // system's sign of a failed prediction.
  virtual bool Valid() const = 0;
  virtual unsigned int GetNumElements() const = 0;
  virtual double GetDistance(unsigned int element) const = 0;
  virtual double GetWeight(unsigned int element) const = 0;
  virtual double GetResponse(unsigned int element) const = 0;
  virtual double GetBaselineResponse() const = 0;
  virtual bool GetResponseIsUnmeasured(unsigned int element) const = 0;
  virtual ZqKrigeKernel GetKernel() const = 0;
  virtual bool GetHasID(unsigned int element) const = 0;
  virtual unsigned int GetID(unsigned int element) const = 0;
  virtual bool GetHasMultipleCopies(unsigned int element) const = 0;
  // 1 for an element without a copy list.
  virtual unsigned int GetNumCopies(unsigned int element) const = 0;
  // Copy access; copy 0 of an element without a copy list is the element.
  virtual double GetResponse(unsigned int element, unsigned int copy) const = 0;
  virtual bool GetResponseIsUnmeasured(unsigned int element, unsigned int copy) const = 0;
  virtual bool GetHasID(unsigned int element, unsigned int copy) const = 0;
  virtual unsigned int GetID(unsigned int element, unsigned int copy) const = 0;
  virtual ZqKrigeResultBase* CreateCopy() const = 0;
  // The part of the full kriging variance that comes from the border of
  // the kriging system, the constraints that estimate the mean (ordinary
  // kriging) or the mean and the drift (universal kriging) from the
  // training data: -mu'(1, f), with mu the multipliers of the border and f
  // the query's drift. Of either sign, since the kriging variance
  // sill - sum w_i (sill - kernel(d_i)) of the constrained weights is not
  // the variance of a known mean; it grows without bound as the query's
  // drift leaves the training range. 0 for simple kriging and for a query
  // on a training element.
  virtual double GetBorderVariance() const { return 0.0; }
};

class ZqKrigeResultImpl final : public ZqKrigeResultBase {
 public:
  ZqKrigeResultImpl() = default;
  ZqKrigeResultImpl(const ZqKrigeResultImpl& other);
  ZqKrigeResultImpl& operator=(const ZqKrigeResultImpl& other);

  bool Valid() const override { return !elements_.empty(); }
  unsigned int GetNumElements() const override { return static_cast<unsigned int>(elements_.size()); }
  double GetDistance(unsigned int element) const override;
  double GetWeight(unsigned int element) const override;
  double GetResponse(unsigned int element) const override;
  double GetBaselineResponse() const override { return baseline_; }
  bool GetResponseIsUnmeasured(unsigned int element) const override;
  // Without a kernel: an error and ZqKrigeKernel(0), a linear kernel.
  ZqKrigeKernel GetKernel() const override;
  bool GetHasID(unsigned int element) const override;
  unsigned int GetID(unsigned int element) const override;
  bool GetHasMultipleCopies(unsigned int element) const override;
  unsigned int GetNumCopies(unsigned int element) const override;
  // With a copy list, only a copy index above the list's length is refused
  // ("invalid copy key"): callers stay below GetNumCopies.
  double GetResponse(unsigned int element, unsigned int copy) const override;
  bool GetResponseIsUnmeasured(unsigned int element, unsigned int copy) const override;
  bool GetHasID(unsigned int element, unsigned int copy) const override;
  unsigned int GetID(unsigned int element, unsigned int copy) const override;
  ZqKrigeResultBase* CreateCopy() const override { return new ZqKrigeResultImpl(*this); }
  double GetBorderVariance() const override { return borderVariance_; }

  // Building, for the models.
  void SetBaselineResponse(double baseline) { baseline_ = baseline; }
  void SetBorderVariance(double variance) { borderVariance_ = variance; }
  void SetKernel(const ZqKrigeKernelBase& kernel) { kernel_.reset(kernel.CreateCopy()); }
  // Appends an element and returns its index.
  unsigned int AddElement(double distance, double weight, double response, bool isUnmeasured, unsigned int id,
                          bool hasID);
  // Appends to the element's copy list, making it when needed. Returns
  // whether `element` is below the number of elements; the data are kept
  // either way.
  bool PushCopyData(unsigned int element, double response, bool isUnmeasured, unsigned int id, bool hasID);
  void Clear();

 private:
  struct Element {
    double distance;
    double weight;
    double response;
    bool isUnmeasured;
    unsigned int id;
    bool hasID;
  };
  struct Copy {
    double response;
    bool isUnmeasured;
    unsigned int id;
    bool hasID;
  };
  // Reads one field of (element, copy) into `out`; false after reporting
  // the error of `routine`.
  template <class Field>
  bool FindCopyField(const char* routine, unsigned int element, unsigned int copy, Field Copy::*copyField,
                     Field Element::*elementField, Field& out) const;

  double baseline_ = 0.0;
  double borderVariance_ = 0.0;
  std::unique_ptr<ZqKrigeKernelBase> kernel_;
  std::vector<Element> elements_;
  std::map<unsigned int, std::vector<Copy>> copies_;
};

// The value handle: owns one result and forwards to it; copies are deep. A
// default result is empty and not valid.
class ZqKrigeResult final : public ZqKrigeResultBase {
 public:
  ZqKrigeResult() : impl_(std::make_unique<ZqKrigeResultImpl>()) {}
  // Takes ownership.
  explicit ZqKrigeResult(ZqKrigeResultBase* result) : impl_(result) {}
  explicit ZqKrigeResult(const ZqKrigeResultBase& result) : impl_(result.CreateCopy()) {}
  ZqKrigeResult(const ZqKrigeResult& other) : impl_(other.impl_->CreateCopy()) {}
  ZqKrigeResult& operator=(const ZqKrigeResult& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  ZqKrigeResult(ZqKrigeResult&&) noexcept = default;
  ZqKrigeResult& operator=(ZqKrigeResult&&) noexcept = default;

  bool Valid() const override { return impl_->Valid(); }
  unsigned int GetNumElements() const override { return impl_->GetNumElements(); }
  double GetDistance(unsigned int e) const override { return impl_->GetDistance(e); }
  double GetWeight(unsigned int e) const override { return impl_->GetWeight(e); }
  double GetResponse(unsigned int e) const override { return impl_->GetResponse(e); }
  double GetBaselineResponse() const override { return impl_->GetBaselineResponse(); }
  bool GetResponseIsUnmeasured(unsigned int e) const override { return impl_->GetResponseIsUnmeasured(e); }
  ZqKrigeKernel GetKernel() const override { return impl_->GetKernel(); }
  bool GetHasID(unsigned int e) const override { return impl_->GetHasID(e); }
  unsigned int GetID(unsigned int e) const override { return impl_->GetID(e); }
  bool GetHasMultipleCopies(unsigned int e) const override { return impl_->GetHasMultipleCopies(e); }
  unsigned int GetNumCopies(unsigned int e) const override { return impl_->GetNumCopies(e); }
  double GetResponse(unsigned int e, unsigned int c) const override { return impl_->GetResponse(e, c); }
  bool GetResponseIsUnmeasured(unsigned int e, unsigned int c) const override {
    return impl_->GetResponseIsUnmeasured(e, c);
  }
  bool GetHasID(unsigned int e, unsigned int c) const override { return impl_->GetHasID(e, c); }
  unsigned int GetID(unsigned int e, unsigned int c) const override { return impl_->GetID(e, c); }
  ZqKrigeResultBase* CreateCopy() const override { return impl_->CreateCopy(); }
  double GetBorderVariance() const override { return impl_->GetBorderVariance(); }

  const ZqKrigeResultBase& GetResult() const { return *impl_; }

 private:
  std::unique_ptr<ZqKrigeResultBase> impl_;
};

// Statistics of a result; each returns `errorValue` for an invalid result.
//
// The prediction: baseline + sum of weight * response.
double ZqCalculateResponse(const ZqKrigeResultBase& result, double errorValue);
// The kriging variance sill - sum of w_i (sill - kernel(d_i)), the same
// formula for simple, ordinary and universal models; `errorValue` when it is
// negative. The models pass -1 to detect that case.
double ZqCalculateVariance(const ZqKrigeResultBase& result, double errorValue);
// The full kriging variance, the mean squared error of the prediction when
// the mean and the drift are estimated from the training data:
// ZqCalculateVariance plus GetBorderVariance. Use it for intervals far from
// the training data in drift, where a universal model extrapolates its
// drift while the kriging variance stays at the sill. `errorValue` for an
// invalid result or a negative value.
double ZqCalculateFullVariance(const ZqKrigeResultBase& result, double errorValue);
double ZqSumWeights(const ZqKrigeResultBase& result, double errorValue);
double ZqSumAbsWeights(const ZqKrigeResultBase& result, double errorValue);
// Sum of w^2 divided by sum of |w| (NaN when all weights are 0).
double ZqSumSquaredWeights(const ZqKrigeResultBase& result, double errorValue);
// How much the neighbours disagree, whatever the variogram: the spread of
// the responses around their mean weighted by |w|. With `fraction` 1 over
// all elements (the sill when all weights are 0); otherwise over the
// largest |w| up to the first that lifts their share of the total above
// `fraction`, never fewer than five elements unless fewer exist (the error
// value when all weights are 0). `addNugget` adds nugget * max|w| / sum|w|.
double ZqAbsWeightedVariance(const ZqKrigeResultBase& result, double fraction, bool addNugget, double errorValue);

inline double ZqCalculateResponse(const ZqKrigeResult& r, double e) { return ZqCalculateResponse(r.GetResult(), e); }
inline double ZqCalculateVariance(const ZqKrigeResult& r, double e) { return ZqCalculateVariance(r.GetResult(), e); }
inline double ZqCalculateFullVariance(const ZqKrigeResult& r, double e) {
  return ZqCalculateFullVariance(r.GetResult(), e);
}
inline double ZqSumWeights(const ZqKrigeResult& r, double e) { return ZqSumWeights(r.GetResult(), e); }
inline double ZqSumAbsWeights(const ZqKrigeResult& r, double e) { return ZqSumAbsWeights(r.GetResult(), e); }
inline double ZqSumSquaredWeights(const ZqKrigeResult& r, double e) { return ZqSumSquaredWeights(r.GetResult(), e); }
inline double ZqAbsWeightedVariance(const ZqKrigeResult& r, double fraction, bool addNugget, double e) {
  return ZqAbsWeightedVariance(r.GetResult(), fraction, addNugget, e);
}

}  // namespace Varimo
