// Linear least squares with an intercept on the properties of elements: the
// drift of universal kriging, whose residuals make its variogram.
//
//   Varimo::ZqSVD<std::vector<double>> fit(Varimo::ZqVecPropertyListFxn(2));
//   fit.AddTraining({1.0, 2.0}, 3.5);  ...
//   double y = fit.Predict({1.5, 2.5});
#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "varimo/krige/krige_base.h"
#include "varimo/krige/property_list.h"

namespace Varimo {

// A vector of doubles as its own property list: element k is property k.
class ZqVecPropertyListFxn final : public ZqPropertyListFxn<std::vector<double>> {
 public:
  explicit ZqVecPropertyListFxn(std::size_t size) : size_(size) {}
  // Only vectors of exactly the list's size.
  bool HasProperties(const std::vector<double>& element) const override { return element.size() == size_; }
  std::size_t GetSize() const override { return size_; }
  double GetProperty(const std::vector<double>& element, std::size_t index) const override { return element[index]; }
  ZqPropertyListFxn<std::vector<double>>* CreateCopy() const override { return new ZqVecPropertyListFxn(*this); }

 private:
  std::size_t size_;
};

template <class T>
class ZqSVD final : public ZqDataModelBase<T> {
 public:
  explicit ZqSVD(const ZqPropertyListFxn<T>& propFxn) : propFxn_(propFxn.CreateCopy()) {}
  ZqSVD(const ZqSVD& other);
  ZqSVD& operator=(const ZqSVD&) = delete;

  // False, storing nothing, for an element without the properties.
  bool AddTraining(const T& element, double response) override;
  // Minimises |X c - y| over the coefficients c, with X the properties and a
  // column of ones, by a singular value decomposition: a rank-deficient X
  // (more properties than distinct rows, or collinear properties) gets the
  // minimum-norm solution instead of a failure. False with no training rows,
  // and when a property or a response is not finite.
  bool Train() override;
  // The fitted value; trains first when needed. The error value for an
  // element without the properties or when training fails.
  double Predict(const T& element) override;
  double Predict(const T& element) const override;
  double GetErrorValue() const override { return std::numeric_limits<double>::max(); }
  void Clear() override;
  ZqDataModelBase<T>* CreateCopy() const override { return new ZqSVD(*this); }

  bool IsTrained() const { return trained_; }
  // The property coefficients in order, then the intercept.
  const Eigen::VectorXd& GetCoefficients() const { return coefficients_; }

 private:
  // Sum of coefficient times property, plus the intercept.
  double Fitted(const T& element) const;

  std::unique_ptr<ZqPropertyListFxn<T>> propFxn_;
  bool trained_ = false;
  std::vector<T> elements_;
  std::vector<double> responses_;
  Eigen::VectorXd coefficients_;
};

// The fit of the residual variograms, compiled into the library.
extern template class ZqSVD<std::vector<double>>;

}  // namespace Varimo
