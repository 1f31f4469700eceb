// Kriging on rows of numbers with a Euclidean or a min-max distance: the models of
// varimo-krige on CSV files and of the Python package's Kriging, made and
// used in one way so that both give the same numbers to the last bit.
//
//   Varimo::ZqVectorKrigeSettings settings;
//   settings.numFeatures = 3;
//   auto model = Varimo::ZqMakeVectorKrige(settings);
//   for (std::size_t i = 0; i < rows.size(); ++i) model->AddTraining(rows[i], y[i]);
//   model->Train();
//   Varimo::ZqPredictVectorRows(*model, queries, 2, predictions, variances);
#pragma once

#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "varimo/krige/likelihood_fit.h"
#include "varimo/krige/property_list.h"
#include "varimo/krige/vector_krige.h"

namespace Varimo {

struct ZqVectorKrigeSettings {
  enum class Model { Simple, Ordinary, Universal };
  Model model = Model::Ordinary;
  // An element is its numFeatures coordinates followed, for universal
  // kriging, by its numDrift drift values; the distance reads only the
  // coordinates.
  std::size_t numFeatures = 0;
  std::size_t numDrift = 0;
  // The distance between the coordinates: Euclidean (ZqEuclideanDistance),
  // or min-max (ZqMinMaxDistance) for counts such as count fingerprints,
  // whose rows must then be non-negative.
  enum class Metric { Euclidean, MinMax };
  Metric metric = Metric::Euclidean;
  // Neighbours per query; 0 for a global model. Local models find them
  // through a k-d tree over the coordinates under the Euclidean distance,
  // by a scan of every training row under the min-max one.
  unsigned int numLocal = 0;
  // Local models only: a query that is a training element leaves itself
  // out; and the number of variogram pairs above which pairs are sampled
  // (nothing: the library's default).
  bool predictTraining = false;
  std::optional<unsigned int> maxVariogramSize;
};

// The untrained model of the settings.
std::unique_ptr<ZqKrigeBase<ZqVectorElement>> ZqMakeVectorKrige(const ZqVectorKrigeSettings& settings);

// Whether every value of the row is finite: a row that is not cannot be
// trained on nor predicted.
bool ZqIsFiniteRow(const ZqVectorElement& row);

// The default candidates of the likelihood fit for a model of the
// settings (ZqLikelihoodCandidates): with the Gaussian and Cauchy kernels
// under the Euclidean distance, without them under the min-max one.
std::vector<ZqKrigeKernel> ZqVectorLikelihoodCandidates(const ZqVectorKrigeSettings& settings);

// Trains a global model of the settings by likelihood (ZqTrainByLikelihood)
// over `kernel` alone, or without one over ZqVectorLikelihoodCandidates:
// as varimo-krige --fit likelihood and the Python package's Kriging train.
bool ZqTrainVectorByLikelihood(ZqKrigeBase<ZqVectorElement>& model, const ZqVectorKrigeSettings& settings,
                               const ZqKrigeKernelBase* kernel = nullptr);

// Whether a model of the settings can train on and predict the row: a
// finite row, whose coordinates are also non-negative under the min-max
// distance. The drift values are not coordinates and may be negative.
bool ZqIsUsableRow(const ZqVectorKrigeSettings& settings, const ZqVectorElement& row);

// The predictions and variances of `rows` by a trained model, through its
// const calls: a global model solves blocks of 256 rows at once, a local
// one row by row; blocks or rows are shared among `threads` threads, with
// the BLAS single-threaded for any count (varimo/numerics/dense_algebra.h),
// and the numbers are the same for any count. A row that is not finite or
// not usable under the model's distance (ZqIsUsableRow), and every row of an
// untrained model, gets the model's error value in both.
// `progress`, when set, is called on the calling thread with the rows done.
void ZqPredictVectorRows(const ZqKrigeBase<ZqVectorElement>& model, const std::vector<ZqVectorElement>& rows,
                         unsigned int threads, std::vector<double>& predictions, std::vector<double>& variances,
                         const std::function<void(std::size_t done)>& progress = {});

// The drift of universal kriging on rows: the last numDrift values of an
// element of numFeatures + numDrift values. An element of another length or
// with a drift value that is not finite has no properties, and the model
// refuses it.
class ZqTrailingDrift final : public ZqPropertyListFxn<ZqVectorElement> {
 public:
  ZqTrailingDrift(std::size_t numFeatures, std::size_t numDrift) : numFeatures_(numFeatures), numDrift_(numDrift) {}

  bool HasProperties(const ZqVectorElement& element) const override {
    if (element.size() != numFeatures_ + numDrift_) return false;
    for (std::size_t k = numFeatures_; k < element.size(); ++k) {
      if (!std::isfinite(element[k])) return false;
    }
    return true;
  }
  std::size_t GetSize() const override { return numDrift_; }
  double GetProperty(const ZqVectorElement& element, std::size_t index) const override {
    return element[numFeatures_ + index];
  }
  ZqPropertyListFxn<ZqVectorElement>* CreateCopy() const override { return new ZqTrailingDrift(*this); }

 private:
  std::size_t numFeatures_;
  std::size_t numDrift_;
};

}  // namespace Varimo
