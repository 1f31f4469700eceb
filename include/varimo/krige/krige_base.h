// The model interfaces of the kriging engine: ZqDataModelBase, a model that
// learns responses of elements of type T, and ZqKrigeBase, a kriging model
// with ids, unmeasured records, kernels, variograms and full results.
#pragma once

#include <vector>

#include "varimo/krige/full_variogram.h"
#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/krige_result.h"
#include "varimo/krige/variogram.h"

namespace Varimo {

// What a trained model predicts with, as it can be saved and restored: the
// kernels a query tries, in order (one for a global model; for a local one
// the candidates ranked on the whole set), and whether they are kept as
// they stand, with no fall-back to kernels fitted to a query's neighbours.
struct ZqKrigeTrainedKernels {
  std::vector<ZqKrigeKernel> kernels;
  bool fixed = false;
};

template <class T>
class ZqDataModelBase {
 public:
  virtual ~ZqDataModelBase() = default;
  // False, adding nothing, for a response the model refuses (NaN).
  virtual bool AddTraining(const T& element, double response) = 0;
  virtual bool Train() = 0;
  // Trains first when needed; GetErrorValue() on failure.
  virtual double Predict(const T& element) = 0;
  // Leaves the model as it is: an untrained model is trained on a temporary
  // copy for this one call.
  virtual double Predict(const T& element) const = 0;
  virtual double GetErrorValue() const = 0;
  // Removes the training data and the training state; options stay.
  virtual void Clear() = 0;
  // A new copy of the model, owned by the caller.
  virtual ZqDataModelBase* CreateCopy() const = 0;
};

template <class T>
class ZqKrigeBase : public ZqDataModelBase<T> {
 public:
  using ZqDataModelBase<T>::Predict;

  virtual bool AddTrainingWithID(const T& element, double response, unsigned int id) = 0;
  // An unmeasured record carries a bound rather than a measurement: it
  // counts for its element only where no measured copy exists, and enters
  // the variogram only when the model includes unmeasured records.
  virtual bool AddUnmeasuredTraining(const T& element, double response) = 0;
  virtual bool AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) = 0;
  // Fits the caller's kernel (in place) to the variogram and trains with it.
  virtual bool Train(ZqKrigeKernelBase& kernel) = 0;
  // Trains with the kernel's parameters as they stand. A covariance matrix
  // that factorises but is nearly singular (reciprocal condition below
  // 1e-12: training elements at tiny, non-zero distances) trains all the
  // same, with a warning that the weights are unreliable; the per-query
  // models of a local model train without it.
  virtual bool TrainFixed(const ZqKrigeKernelBase& kernel) = 0;
  virtual double GetVariance(const T& element) = 0;
  virtual double GetVariance(const T& element) const = 0;
  // The prediction without its variance, for callers that only rank by it.
  // A trained global model answers from weights solved once at training, a
  // dot product with the query's covariances instead of a solve per query;
  // the number equals Predict's up to rounding, except that a query whose
  // variance falls outside the kernel's range, which Predict refuses, still
  // gets one here (its variance is never computed). Models without such a
  // shortcut, and untrained ones, give Predict.
  virtual double PredictMean(const T& element) const { return Predict(element); }
  // Not valid on failure. A query equal to a training element (distance 0
  // to it) gets weight exactly 1 on that element and 0 on the others, and
  // is valid with every trained kernel, whatever the size of its nugget: its
  // variance is the nugget as sill - (sill - nugget) comes out in doubles,
  // which is 0 for a nugget below the rounding unit of the sill, and never
  // negative.
  virtual ZqKrigeResult GetKrigeResult(const T& element) = 0;
  virtual ZqKrigeResult GetKrigeResult(const T& element) const = 0;
  virtual ZqKrigeKernel GetKernel() = 0;
  virtual ZqKrigeKernel GetKernel() const = 0;
  virtual ZqVariogram GetVariogram() = 0;
  virtual ZqVariogram GetVariogram() const = 0;
  virtual ZqFullVariogram GetFullVariogram() = 0;
  virtual ZqFullVariogram GetFullVariogram() const = 0;
  virtual ZqKrigeBase* CreateKrigeCopy() const = 0;
  // The training state of a trained model; no kernels when it is not
  // trained. Restoring it with TrainWithKernels on a model of the same
  // kind, given the same records in the same order, fits nothing and gives
  // the same predictions to the last bit.
  virtual ZqKrigeTrainedKernels GetTrainedKernels() const = 0;
  // False, with a warning, for a state this kind of model cannot hold
  // (a global model holds exactly one kernel) or a kernel it cannot use.
  virtual bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) = 0;

  // Bring the overloads hidden by the declarations above back into scope.
  using ZqDataModelBase<T>::Train;
};

}  // namespace Varimo
