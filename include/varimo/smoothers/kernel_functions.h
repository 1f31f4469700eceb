// Kernel functions: weights of a scaled distance u in one dimension, for
// kernel regression on a predictor. Chosen by type number:
//
//   ZqKernelFunction tricubic(ZqKernelFunctionType::TriCubic);
//   double w = tricubic(0.4);
#pragma once

#include <memory>
#include <string>

namespace Varimo {

namespace ZqKernelFunctionType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int Gaussian = 1;
inline constexpr unsigned int BoxCar = 2;
inline constexpr unsigned int Epachnikov = 3;
inline constexpr unsigned int BiQuadratic = 4;
inline constexpr unsigned int TriCubic = 5;
inline constexpr unsigned int NumTypes = 6;
}  // namespace ZqKernelFunctionType

class ZqKernelFunctionBase {
 public:
  virtual ~ZqKernelFunctionBase() = default;
  virtual ZqKernelFunctionBase* CreateCopy() const = 0;
  virtual std::string GetNameOfKernel() const = 0;
  virtual unsigned int GetTypeOfKernel() const = 0;
  virtual double operator()(double u) const = 0;
};

// The largest double for any u: the kernel of an unknown type.
class ZqNullKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqNullKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::Unknown; }
  double operator()(double u) const override;
};

// The standard normal density.
class ZqGaussianKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqGaussianKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::Gaussian; }
  double operator()(double u) const override;
};

// 1/2 on |u| <= 1 (the ends included).
class ZqBoxCarKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqBoxCarKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::BoxCar; }
  double operator()(double u) const override;
};

// 3/4 (1 - u^2) on |u| < 1.
class ZqEpachnikovKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqEpachnikovKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::Epachnikov; }
  double operator()(double u) const override;
};

// 15/16 (1 - u^2)^2 on |u| < 1.
class ZqBiQuadraticKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqBiQuadraticKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::BiQuadratic; }
  double operator()(double u) const override;
};

// 70/81 (1 - |u|^3)^3 on |u| < 1.
class ZqTriCubicKernelFunction final : public ZqKernelFunctionBase {
 public:
  ZqKernelFunctionBase* CreateCopy() const override { return new ZqTriCubicKernelFunction(*this); }
  std::string GetNameOfKernel() const override;
  unsigned int GetTypeOfKernel() const override { return ZqKernelFunctionType::TriCubic; }
  double operator()(double u) const override;
};

// A new kernel of that type, owned by the caller; the null kernel for a
// type past the table.
ZqKernelFunctionBase* ZqGetKernelFunction(unsigned int type);
// The kernel's name; for a type past the table a two-line refusal.
std::string ZqGetKernelFunctionNameFromType(unsigned int type);
// The type of a short word ("Gaussian", "BoxCar", "Epachnikov",
// "BiQuadratic", "TriCubic") or a full name; 0 for anything else.
unsigned int ZqGetKernelFunctionTypeFromName(const std::string& name);

// A kernel function by value: copies are deep.
class ZqKernelFunction {
 public:
  explicit ZqKernelFunction(unsigned int type) : impl_(ZqGetKernelFunction(type)) {}
  ZqKernelFunction(const ZqKernelFunction& other) : impl_(other.impl_->CreateCopy()) {}
  ZqKernelFunction& operator=(const ZqKernelFunction& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  std::string GetNameOfKernel() const { return impl_->GetNameOfKernel(); }
  unsigned int GetTypeOfKernel() const { return impl_->GetTypeOfKernel(); }
  double operator()(double u) const { return (*impl_)(u); }

 private:
  std::unique_ptr<ZqKernelFunctionBase> impl_;
};

}  // namespace Varimo
