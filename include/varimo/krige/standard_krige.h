// The global kriging models' common part: every training element takes part
// in every prediction. Adding records invalidates the model; Train() builds
// the experimental variogram, fits the 16 candidate kernels and tries them
// from the best fit to the worst until the covariance matrix of one
// factorises; a query then solves the kriging system into a ZqKrigeResult.
// Subclasses (simple, ordinary) supply the linear system.
//
// Failures warn through the error handler and give false, an invalid
// result or the error value; nothing is thrown. A kernel whose covariance
// matrix is not positive definite is no error: the next one is tried.
#pragma once

#include <Eigen/Core>

#include <memory>
#include <type_traits>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/training_container.h"

namespace Varimo {

template <class T, class TT>
class ZqStandardKrigeImpl : public ZqKrigeBase<T> {
 public:
  using Container = ZqKrigeTrainingContainer<T, TT>;

  ZqStandardKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, double errorValue, unsigned int missingIDValue,
                      bool includeUnmeasured, unsigned int uniqueResponseMethod);
  // With drift properties, for universal kriging.
  ZqStandardKrigeImpl(const ZqKrigeDistanceFxn<T>& distFxn, const ZqPropertyListFxn<T>& propFxn, double errorValue,
                      unsigned int missingIDValue, bool includeUnmeasured, unsigned int uniqueResponseMethod);
  // On a copy of an existing container, for the per-query local models.
  ZqStandardKrigeImpl(const Container& container, double errorValue, unsigned int missingIDValue,
                      bool includeUnmeasured);
  // A copy is trained exactly when its source is.
  ZqStandardKrigeImpl(const ZqStandardKrigeImpl& other);
  ZqStandardKrigeImpl& operator=(const ZqStandardKrigeImpl&) = delete;

  // False, adding nothing, for a NaN response, an element without the drift
  // properties, or one whose drift properties are not all finite (with a
  // warning); the model is left untrained all the same.
  bool AddTraining(const T& element, double response) override;
  bool AddTrainingWithID(const T& element, double response, unsigned int id) override;
  bool AddUnmeasuredTraining(const T& element, double response) override;
  bool AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) override;

  bool Train() override;
  bool Train(ZqKrigeKernelBase& kernel) override;
  bool TrainFixed(const ZqKrigeKernelBase& kernel) override;
  // The one kernel in use; restoring is TrainFixed with it.
  ZqKrigeTrainedKernels GetTrainedKernels() const override;
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) override;

  double Predict(const T& element) override;
  double Predict(const T& element) const override;
  double GetVariance(const T& element) override;
  double GetVariance(const T& element) const override;
  double PredictMean(const T& element) const override;
  ZqKrigeResult GetKrigeResult(const T& element) override;
  ZqKrigeResult GetKrigeResult(const T& element) const override;

  // Predictions and variances of many queries, equal to those of Predict
  // and GetVariance of each (up to rounding), computed by blocked solves
  // over the queries instead of one solve per query. Trains first when
  // needed; each failure is the error value. `queries` is any range of T.
  template <class Range>
  void PredictMany(const Range& queries, std::vector<double>& predictions, std::vector<double>& variances);
  // The same through the const calls of a trained model, which may run
  // concurrently; on an untrained model every query fails.
  template <class Range>
  void PredictManyTrained(const Range& queries, std::vector<double>& predictions,
                          std::vector<double>& variances) const;

  // A copy of the kernel in use. When training fails: a warning and a
  // default linear kernel.
  ZqKrigeKernel GetKernel() override;
  ZqKrigeKernel GetKernel() const override;
  // The experimental variogram of the training data, cached until the data
  // change; the const versions leave the cache alone.
  ZqVariogram GetVariogram() override;
  ZqVariogram GetVariogram() const override;
  ZqFullVariogram GetFullVariogram() override;
  ZqFullVariogram GetFullVariogram() const override;

  // The linear system of a trained model, for conditioning its predictions
  // on further points without a new factorisation (batch selection):
  // RightHandSide gives a query's right-hand side r, its covariances
  // sill - kernel(d) with the unique training elements followed by the
  // border of ordinary kriging (1) or universal kriging (1, then the
  // query's drift properties); SolveSystem replaces each column r of
  // `rightHands` by S^-1 r through the model's own factorisation: the
  // weights, then the multipliers of the border. With them the posterior
  // covariance of two queries is K(a, b) - r_a' S^-1 r_b. False when the
  // model is not trained, or the query lacks finite drift properties.
  virtual bool RightHandSide(const T& /*query*/, Eigen::VectorXd& /*rightHand*/) const { return false; }
  virtual bool SolveSystem(Eigen::MatrixXd& /*rightHands*/) const { return false; }
  // The kernel a trained model predicts with; null when it is not trained.
  const ZqKrigeKernelBase* GetTrainedKernel() const { return trained_ ? kernel_.get() : nullptr; }

  double GetErrorValue() const override { return errorValue_; }
  unsigned int GetMissingIDValue() const { return missingIDValue_; }
  bool GetIncludeUnmeasured() const { return includeUnmeasured_; }
  bool IsTrained() const { return trained_; }
  const Container& GetContainer() const { return container_; }

  void Clear() override;
  ZqDataModelBase<T>* CreateCopy() const override { return this->CreateKrigeCopy(); }

 protected:
  // The subclass's linear system: factorise the covariance of the training
  // data for the kernel, and solve it for one query.
  virtual bool TrainFixed(const ZqKrigeKernelBase& kernel, const Container& container) = 0;
  virtual ZqKrigeResult GetKrigeResult(const T& element, const ZqKrigeKernelBase& kernel,
                                       const Container& container) const = 0;
  // PredictMany on a trained model. This one solves query by query;
  // subclasses replace it with blocked solves.
  virtual void PredictTrained(const std::vector<const T*>& queries, double* predictions, double* variances) const;

  const ZqKrigeKernelBase& TrainedKernel() const { return *kernel_; }
  // What PredictMean needs, from the subclass's TrainFixed: with a query's
  // covariances c with the unique training elements and its drift
  // properties f, the prediction is c'weights + border(0) + sum f_k
  // border(k + 1).
  void SetMeanSolution(Eigen::VectorXd weights, Eigen::VectorXd border) {
    meanWeights_ = std::move(weights);
    meanBorder_ = std::move(border);
  }
  // Whether a nearly singular covariance matrix is worth a warning: not for
  // the per-query models of a local model, which would warn per query.
  bool WarnsOfConditioning() const { return warnsOfConditioning_; }

 private:
  bool AddRecord(const T& element, double response, bool isUnmeasured, unsigned int id, bool hasID);
  void Invalidate();

  double errorValue_;
  unsigned int missingIDValue_;
  bool includeUnmeasured_;
  bool warnsOfConditioning_ = true;
  Container container_;
  bool trained_ = false;
  std::unique_ptr<ZqKrigeKernelBase> kernel_;
  bool variogramValid_ = false;
  ZqVariogramImpl variogram_;
  bool fullVariogramValid_ = false;
  ZqFullVariogramImpl fullVariogram_;
  Eigen::VectorXd meanWeights_;
  Eigen::VectorXd meanBorder_;
};

template <class T, class TT>
template <class Range>
void ZqStandardKrigeImpl<T, TT>::PredictMany(const Range& queries, std::vector<double>& predictions,
                                             std::vector<double>& variances) {
  std::vector<const T*> pointers;
  for (const auto& query : queries) pointers.push_back(&query);
  predictions.assign(pointers.size(), errorValue_);
  variances.assign(pointers.size(), errorValue_);
  if (pointers.empty() || (!trained_ && !Train())) return;
  PredictTrained(pointers, predictions.data(), variances.data());
}

template <class T, class TT>
template <class Range>
void ZqStandardKrigeImpl<T, TT>::PredictManyTrained(const Range& queries, std::vector<double>& predictions,
                                                    std::vector<double>& variances) const {
  std::vector<const T*> pointers;
  for (const auto& query : queries) pointers.push_back(&query);
  predictions.assign(pointers.size(), errorValue_);
  variances.assign(pointers.size(), errorValue_);
  if (pointers.empty() || !trained_) return;
  PredictTrained(pointers, predictions.data(), variances.data());
}

}  // namespace Varimo
