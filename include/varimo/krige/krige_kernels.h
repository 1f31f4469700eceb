// Krige kernels: theoretical variograms, functions from a distance to a
// semivariance described by a range, a sill and a nugget (and, for some, a
// shape parameter).
//
//   Varimo::ZqKrigeKernel kernel(Varimo::ZqKrigeKernelType::Gaussian);
//   kernel.SetRange(2.0);
//   kernel.SetSill(1.5);
//   const double gamma = kernel.GetValue(0.7);
//
// Every kernel is the nugget plus a rising part times (sill - nugget). The
// value at distance 0 is the nugget; the jump at the origin is the business
// of the covariance code, not of the kernel. The bounded kernels (linear,
// spherical, power, reverse Gaussian) return the sill exactly beyond the
// range; the asymptotic ones (exponential, Gaussian, Cauchy, Student t)
// reach 90% of the rise at the range, so that the range means the same for
// both kinds. Setters store what they are given: no kernel validates its
// parameters, and a range of 0 gives the infinities and NaNs of the formula.
#pragma once

#include <memory>
#include <string>

#include "varimo/platform/corvane/iter.h"

namespace Varimo {

// The kernels made by number; the parameterised kernels have no number.
namespace ZqKrigeKernelType {
inline constexpr unsigned int Linear = 0;
inline constexpr unsigned int Exponential = 1;
inline constexpr unsigned int Gaussian = 2;
inline constexpr unsigned int Spherical = 3;
inline constexpr unsigned int Cauchy = 4;
inline constexpr unsigned int NumTypes = 5;
}  // namespace ZqKrigeKernelType

class ZqKrigeKernelBase {
 public:
  virtual ~ZqKrigeKernelBase() = default;
  virtual std::string GetName() const = 0;
  // The semivariance at `distance`, through the virtual getters, so that a
  // derived kernel overriding a getter changes its values. The models fill
  // their covariance matrices on the BLAS's threads (ZqBlasThreadCount), so
  // GetValue must be safe to call from several threads at once, as const
  // members are expected to be; inside a ZqSingleThreadedBlas scope it is
  // called from the calling thread only.
  virtual double GetValue(double distance) const = 0;
  virtual double GetRange() const = 0;
  virtual double GetNugget() const = 0;
  virtual double GetSill() const = 0;
  virtual void SetRange(double range) = 0;
  virtual void SetNugget(double nugget) = 0;
  virtual void SetSill(double sill) = 0;
  // A new copy of the concrete kernel, owned by the caller.
  virtual ZqKrigeKernelBase* CreateCopy() const = 0;
};

// The three parameters as plain fields; the kernels derive from it.
class ZqKrigeKernelImpl : public ZqKrigeKernelBase {
 public:
  ZqKrigeKernelImpl() = default;
  ZqKrigeKernelImpl(double range, double sill, double nugget) : range_(range), sill_(sill), nugget_(nugget) {}

  double GetRange() const override { return range_; }
  double GetNugget() const override { return nugget_; }
  double GetSill() const override { return sill_; }
  void SetRange(double range) override { range_ = range; }
  void SetNugget(double nugget) override { nugget_ = nugget; }
  void SetSill(double sill) override { sill_ = sill; }

 private:
  double range_ = 0.5;
  double sill_ = 1.0;
  double nugget_ = 0.0;
};

// n + (h / r)(s - n) up to the range, s beyond it.
class ZqKrigeLinearKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Linear"; }
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeLinearKernel(*this); }
};

// n + (1 - exp(-h / (r / ln 10)))(s - n).
class ZqKrigeExponentialKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Exponential"; }
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeExponentialKernel(*this); }
};

// n + (1 - exp(-h^2 / (r^2 / ln 10)))(s - n).
class ZqKrigeGaussianKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Gaussian"; }
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeGaussianKernel(*this); }
};

// n + (1.5 h/r - 0.5 h^3/r^3)(s - n) up to the range, s beyond it.
class ZqKrigeSphericalKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Spherical"; }
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeSphericalKernel(*this); }
};

// n + (1 - 1 / (1 + K h^2 / r^2))(s - n), K just above 9.
class ZqKrigeCauchyKernel final : public ZqKrigeKernelImpl {
 public:
  std::string GetName() const override { return "Cauchy"; }
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeCauchyKernel(*this); }
};

// n + (1 - 1 / (1 + K h^p / r^p))(s - n). Named "StudentT(<p with 12
// decimals>)".
class ZqKrigeStudentTKernel final : public ZqKrigeKernelImpl {
 public:
  explicit ZqKrigeStudentTKernel(double power) : power_(power) {}
  double GetPower() const { return power_; }
  std::string GetName() const override;
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeStudentTKernel(*this); }

 private:
  double power_;
};

// n + (h / r)^p (s - n) up to the range, s beyond it. Named "Power(%5.3f)".
class ZqKrigePowerKernel final : public ZqKrigeKernelImpl {
 public:
  explicit ZqKrigePowerKernel(double power) : power_(power) {}
  double GetPower() const { return power_; }
  std::string GetName() const override;
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigePowerKernel(*this); }

 private:
  double power_;
};

// n + ((exp(-a (1 - h/r)^2) - exp(-a)) / (1 - exp(-a)))(s - n) up to the
// range, s beyond it: flat near the origin, steep near the range. Named
// "Reverse Gaussian(%5.3f)". Not among the candidates of the automatic fit;
// a caller builds one and trains with it.
class ZqKrigeReverseGaussianKernel final : public ZqKrigeKernelImpl {
 public:
  explicit ZqKrigeReverseGaussianKernel(double shape);
  double GetShape() const { return shape_; }
  std::string GetName() const override;
  double GetValue(double distance) const override;
  ZqKrigeKernelBase* CreateCopy() const override { return new ZqKrigeReverseGaussianKernel(*this); }

 private:
  double shape_;
  double offset_;  // exp(-shape), computed once
};

// The value handle: owns one concrete kernel and forwards to it. Copies are
// deep, and CreateCopy gives a copy of the concrete kernel, not a handle.
class ZqKrigeKernel final : public ZqKrigeKernelBase {
 public:
  // A kernel of ZqKrigeKernelType with the default parameters. An unknown
  // number warns through the error handler and gives a linear kernel.
  explicit ZqKrigeKernel(unsigned int kernelType);
  explicit ZqKrigeKernel(const ZqKrigeKernelBase& kernel) : impl_(kernel.CreateCopy()) {}
  ZqKrigeKernel(const ZqKrigeKernel& other) : impl_(other.impl_->CreateCopy()) {}
  ZqKrigeKernel& operator=(const ZqKrigeKernel& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  ZqKrigeKernel& operator=(const ZqKrigeKernelBase& kernel) {
    if (this != &kernel) impl_.reset(kernel.CreateCopy());
    return *this;
  }

  std::string GetName() const override { return impl_->GetName(); }
  double GetValue(double distance) const override { return impl_->GetValue(distance); }
  double GetRange() const override { return impl_->GetRange(); }
  double GetNugget() const override { return impl_->GetNugget(); }
  double GetSill() const override { return impl_->GetSill(); }
  void SetRange(double range) override { impl_->SetRange(range); }
  void SetNugget(double nugget) override { impl_->SetNugget(nugget); }
  void SetSill(double sill) override { impl_->SetSill(sill); }
  ZqKrigeKernelBase* CreateCopy() const override { return impl_->CreateCopy(); }

  // The concrete kernel.
  const ZqKrigeKernelBase& GetKernel() const { return *impl_; }

 private:
  std::unique_ptr<ZqKrigeKernelBase> impl_;
};

// The 16 candidates of the automatic fit, each with the default range, sill
// and nugget, in their binding order (a tie in fitness keeps the earlier):
// linear, exponential, Gaussian, spherical, Cauchy; Student t with powers
// 0.5, 1, 3, 4; power with 0.25, 1/3, 0.5, 1.5, 2, 3, 4. The iterator owns
// the list.
Corvane::ZqIter<const ZqKrigeKernelBase> ZqGetKrigeKernels();

}  // namespace Varimo
