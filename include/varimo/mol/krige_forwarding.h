// A kriging model that owns another and forwards every call to it: the
// base of the named models over molecules and fingerprints, which choose
// the model in their constructors and are then used through this
// interface.
#pragma once

#include <memory>
#include <utility>

#include "varimo/krige/krige_base.h"

namespace Varimo {

template <class T>
class ZqKrigeImpl : public ZqKrigeBase<T> {
 public:
  using ZqKrigeBase<T>::Predict;
  using ZqKrigeBase<T>::Train;

  // Takes ownership.
  explicit ZqKrigeImpl(std::unique_ptr<ZqKrigeBase<T>> model) : model_(std::move(model)) {}
  ZqKrigeImpl(const ZqKrigeImpl& other) : model_(other.model_->CreateKrigeCopy()) {}
  ZqKrigeImpl& operator=(const ZqKrigeImpl& other) {
    if (this != &other) model_.reset(other.model_->CreateKrigeCopy());
    return *this;
  }

  bool AddTraining(const T& element, double response) override { return model_->AddTraining(element, response); }
  bool AddTrainingWithID(const T& element, double response, unsigned int id) override {
    return model_->AddTrainingWithID(element, response, id);
  }
  bool AddUnmeasuredTraining(const T& element, double response) override {
    return model_->AddUnmeasuredTraining(element, response);
  }
  bool AddUnmeasuredTrainingWithID(const T& element, double response, unsigned int id) override {
    return model_->AddUnmeasuredTrainingWithID(element, response, id);
  }
  bool Train() override { return model_->Train(); }
  bool Train(ZqKrigeKernelBase& kernel) override { return model_->Train(kernel); }
  bool TrainFixed(const ZqKrigeKernelBase& kernel) override { return model_->TrainFixed(kernel); }
  double Predict(const T& element) override { return model_->Predict(element); }
  double Predict(const T& element) const override { return std::as_const(*model_).Predict(element); }
  double PredictMean(const T& element) const override { return model_->PredictMean(element); }
  double GetErrorValue() const override { return model_->GetErrorValue(); }
  double GetVariance(const T& element) override { return model_->GetVariance(element); }
  double GetVariance(const T& element) const override { return std::as_const(*model_).GetVariance(element); }
  ZqKrigeResult GetKrigeResult(const T& element) override { return model_->GetKrigeResult(element); }
  ZqKrigeResult GetKrigeResult(const T& element) const override {
    return std::as_const(*model_).GetKrigeResult(element);
  }
  ZqKrigeKernel GetKernel() override { return model_->GetKernel(); }
  ZqKrigeKernel GetKernel() const override { return std::as_const(*model_).GetKernel(); }
  ZqVariogram GetVariogram() override { return model_->GetVariogram(); }
  ZqVariogram GetVariogram() const override { return std::as_const(*model_).GetVariogram(); }
  ZqFullVariogram GetFullVariogram() override { return model_->GetFullVariogram(); }
  ZqFullVariogram GetFullVariogram() const override { return std::as_const(*model_).GetFullVariogram(); }
  ZqKrigeTrainedKernels GetTrainedKernels() const override { return model_->GetTrainedKernels(); }
  bool TrainWithKernels(const ZqKrigeTrainedKernels& trained) override { return model_->TrainWithKernels(trained); }
  void Clear() override { model_->Clear(); }
  // Copies of the owned model.
  ZqDataModelBase<T>* CreateCopy() const override { return model_->CreateKrigeCopy(); }
  ZqKrigeBase<T>* CreateKrigeCopy() const override { return model_->CreateKrigeCopy(); }

  // The model the calls go to.
  const ZqKrigeBase<T>& GetModel() const { return *model_; }
  ZqKrigeBase<T>& GetModel() { return *model_; }

 private:
  std::unique_ptr<ZqKrigeBase<T>> model_;
};

}  // namespace Varimo
