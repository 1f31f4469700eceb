// Options of the kriging models. ZqKrigeOptions is the complete set that
// ZqCreateKrige reads; ZqGlobalKrigeOptions and ZqLocalKrigeOptions are the
// faces a caller fills to get a global or a local model.
//
//   Varimo::ZqLocalKrigeOptions local;
//   local.SetNumLocal(50).SetPredictTraining(true);
//   auto model = Varimo::ZqCreateKrige(distance, Varimo::ZqKrigeOptions(local), false);
#pragma once

#include <limits>

namespace Varimo {

// How the responses of copies of one element (training records at distance
// zero of each other) reduce to one response.
namespace ZqKrigeUniqueResponseMethod {
inline constexpr unsigned int Mean = 0;
inline constexpr unsigned int Min = 1;
inline constexpr unsigned int Max = 2;
}  // namespace ZqKrigeUniqueResponseMethod

// How a model's kernel parameters are chosen: by the least-squares fit of
// each candidate to the experimental variogram (Train), or by the
// likelihood of the training responses (ZqTrainByLikelihood in
// likelihood_training.h, global models only).
enum class ZqKernelFit { Variogram, Likelihood };

class ZqGlobalKrigeOptions {
 public:
  bool GetIncludeUnmeasured() const { return includeUnmeasured_; }
  ZqGlobalKrigeOptions& SetIncludeUnmeasured(bool value) {
    includeUnmeasured_ = value;
    return *this;
  }
  unsigned int GetUniqueResponseMethod() const { return uniqueResponseMethod_; }
  // Stored unchecked; a bad value is refused when converted to ZqKrigeOptions.
  ZqGlobalKrigeOptions& SetUniqueResponseMethod(unsigned int value) {
    uniqueResponseMethod_ = value;
    return *this;
  }

 private:
  bool includeUnmeasured_ = false;
  unsigned int uniqueResponseMethod_ = ZqKrigeUniqueResponseMethod::Mean;
};

class ZqLocalKrigeOptions {
 public:
  unsigned int GetNumLocal() const { return numLocal_; }
  ZqLocalKrigeOptions& SetNumLocal(unsigned int value) {
    numLocal_ = value;
    return *this;
  }
  bool GetIncludeUnmeasured() const { return includeUnmeasured_; }
  ZqLocalKrigeOptions& SetIncludeUnmeasured(bool value) {
    includeUnmeasured_ = value;
    return *this;
  }
  unsigned int GetMaxVariogramSize() const { return maxVariogramSize_; }
  ZqLocalKrigeOptions& SetMaxVariogramSize(unsigned int value) {
    maxVariogramSize_ = value;
    return *this;
  }
  bool GetPredictTraining() const { return predictTraining_; }
  ZqLocalKrigeOptions& SetPredictTraining(bool value) {
    predictTraining_ = value;
    return *this;
  }
  unsigned int GetUniqueResponseMethod() const { return uniqueResponseMethod_; }
  // Stored unchecked; a bad value is refused when converted to ZqKrigeOptions.
  ZqLocalKrigeOptions& SetUniqueResponseMethod(unsigned int value) {
    uniqueResponseMethod_ = value;
    return *this;
  }

 private:
  unsigned int numLocal_ = 100;
  bool includeUnmeasured_ = false;
  unsigned int maxVariogramSize_ = 500000;
  bool predictTraining_ = false;
  unsigned int uniqueResponseMethod_ = ZqKrigeUniqueResponseMethod::Mean;
};

class ZqKrigeOptions {
 public:
  // numLocal 100: a default set makes a local model.
  ZqKrigeOptions() = default;
  // A global model (numLocal 0) with the caller's two settings.
  explicit ZqKrigeOptions(const ZqGlobalKrigeOptions& global);
  explicit ZqKrigeOptions(const ZqLocalKrigeOptions& local);

  // Neighbours per query; 0 means a global model.
  unsigned int GetNumLocal() const { return numLocal_; }
  ZqKrigeOptions& SetNumLocal(unsigned int value) {
    numLocal_ = value;
    return *this;
  }
  // What Predict and GetVariance return on failure.
  double GetErrorValue() const { return errorValue_; }
  ZqKrigeOptions& SetErrorValue(double value) {
    errorValue_ = value;
    return *this;
  }
  // The id of records added without one.
  unsigned int GetMissingIDValue() const { return missingIDValue_; }
  ZqKrigeOptions& SetMissingIDValue(unsigned int value) {
    missingIDValue_ = value;
    return *this;
  }
  // Whether unmeasured records take part in the variogram pairs.
  bool GetIncludeUnmeasured() const { return includeUnmeasured_; }
  ZqKrigeOptions& SetIncludeUnmeasured(bool value) {
    includeUnmeasured_ = value;
    return *this;
  }
  // The pair limit of the local models' variogram.
  unsigned int GetMaxVariogramSize() const { return maxVariogramSize_; }
  ZqKrigeOptions& SetMaxVariogramSize(unsigned int value) {
    maxVariogramSize_ = value;
    return *this;
  }
  // Local models drop neighbours at distance zero from the query.
  bool GetPredictTraining() const { return predictTraining_; }
  ZqKrigeOptions& SetPredictTraining(bool value) {
    predictTraining_ = value;
    return *this;
  }
  unsigned int GetUniqueResponseMethod() const { return uniqueResponseMethod_; }
  // Values above 2 warn and leave the setting as it is.
  ZqKrigeOptions& SetUniqueResponseMethod(unsigned int value);

 private:
  unsigned int numLocal_ = 100;
  double errorValue_ = std::numeric_limits<double>::max();
  unsigned int missingIDValue_ = 0xFFFFFFFF;
  bool includeUnmeasured_ = false;
  unsigned int maxVariogramSize_ = 500000;
  bool predictTraining_ = false;
  unsigned int uniqueResponseMethod_ = ZqKrigeUniqueResponseMethod::Mean;
};

}  // namespace Varimo
