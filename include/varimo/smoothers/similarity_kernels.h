// Similarity kernels: the weight, or correlation, of a pair of rows from
// their similarity s in [0, 1] (for example a fingerprint similarity) and a
// kernel parameter p. Every kernel works on the distance d = C - s with
// C = 1.0000000000000022 (one plus ten units in the last place), so that a
// self-pair is a hair apart and a similarity that rounded just above 1
// still counts; the weight never exceeds 1 and is 0 outside the range.
//
//   ZqSimilarityKernel gaussian(ZqSimilarityKernelType::Gaussian);
//   double w = gaussian(0.8, gaussian.GetDefaultInitialParamVal());
#pragma once

#include <memory>
#include <string>

#include "varimo/platform/numarc/data_series.h"

namespace Varimo {

namespace ZqSimilarityKernelType {
inline constexpr unsigned int Unknown = 0;
inline constexpr unsigned int Gaussian = 1;
inline constexpr unsigned int Exponential = 2;
inline constexpr unsigned int Quadratic = 3;
inline constexpr unsigned int BoxCar = 4;
inline constexpr unsigned int Linear = 5;
inline constexpr unsigned int BiQuadratic = 6;
inline constexpr unsigned int TriCubic = 7;
inline constexpr unsigned int SmoothBoxCar = 8;
inline constexpr unsigned int Power = 9;
inline constexpr unsigned int ExponentialOfSqRoot = 10;
inline constexpr unsigned int Spherical = 11;
inline constexpr unsigned int NumTypes = 12;
}  // namespace ZqSimilarityKernelType

// The distance origin of every kernel: the double 0x3FF000000000000A.
inline constexpr double kZqSimilarityOrigin = 1.0000000000000022;

class ZqSimilarityKernelBase {
 public:
  virtual ~ZqSimilarityKernelBase() = default;
  virtual ZqSimilarityKernelBase* CreateCopy() const = 0;
  virtual unsigned int GetKernelType() const = 0;
  virtual std::string GetKernelName() const = 0;
  virtual double GetDefaultInitialParamVal() const = 0;
  virtual double GetMinimumAllowedParamVal() const = 0;
  virtual double GetMaximumAllowedParamVal() const = 0;
  virtual double operator()(double similarity, double param) const = 0;
};

#define VARIMO_SIMILARITY_KERNEL(Class, Type)                                               \
  class Class final : public ZqSimilarityKernelBase {                                       \
   public:                                                                                  \
    ZqSimilarityKernelBase* CreateCopy() const override { return new Class(*this); }        \
    unsigned int GetKernelType() const override { return ZqSimilarityKernelType::Type; }    \
    std::string GetKernelName() const override;                                             \
    double GetDefaultInitialParamVal() const override;                                      \
    double GetMinimumAllowedParamVal() const override;                                      \
    double GetMaximumAllowedParamVal() const override;                                      \
    double operator()(double similarity, double param) const override;                      \
  }

// 0 for everything; parameters -1.
VARIMO_SIMILARITY_KERNEL(ZqNullSimilarityKernel, Unknown);
// exp(-(p d)^2).
VARIMO_SIMILARITY_KERNEL(ZqGaussianSimilarityKernel, Gaussian);
// exp(-p d).
VARIMO_SIMILARITY_KERNEL(ZqExponentialSimilarityKernel, Exponential);
// 1 - (p d)^2 while p d < 1.
VARIMO_SIMILARITY_KERNEL(ZqQuadraticSimilarityKernel, Quadratic);
// 1 while p d <= 1.
VARIMO_SIMILARITY_KERNEL(ZqBoxCarSimilarityKernel, BoxCar);
// 1 - p d while p d < 1.
VARIMO_SIMILARITY_KERNEL(ZqLinearSimilarityKernel, Linear);
// (1 - (p d)^2)^2 while p d < 1.
VARIMO_SIMILARITY_KERNEL(ZqBiQuadraticSimilarityKernel, BiQuadratic);
// (1 - (p d)^3)^3 while p d < 1.
VARIMO_SIMILARITY_KERNEL(ZqTriCubicSimilarityKernel, TriCubic);
// A logistic step from 1 to 0 at distance p.
VARIMO_SIMILARITY_KERNEL(ZqSmoothBoxCarSimilarityKernel, SmoothBoxCar);
// (s / C)^p.
VARIMO_SIMILARITY_KERNEL(ZqPowerSimilarityKernel, Power);
// exp(-sqrt(p d)).
VARIMO_SIMILARITY_KERNEL(ZqExponentialOfSqRoot, ExponentialOfSqRoot);
// 1 - x (1.5 - 0.5 x^2), x = p d, while x <= 1: the spherical correlation.
VARIMO_SIMILARITY_KERNEL(ZqSphericalSimilarityKernel, Spherical);

#undef VARIMO_SIMILARITY_KERNEL

// A new kernel of that type, owned by the caller; the null kernel for a
// type past the table.
ZqSimilarityKernelBase* ZqGetSimilarityKernel(unsigned int type);
// "Unknown" outside 1 to 11.
std::string ZqGetSimilarityKernelName(unsigned int type);
// The type of an exact name; 0 when none matches.
unsigned int ZqGetSimilarityKernelType(const std::string& name);

// A similarity kernel by value: copies are deep.
class ZqSimilarityKernel {
 public:
  explicit ZqSimilarityKernel(unsigned int type) : impl_(ZqGetSimilarityKernel(type)) {}
  ZqSimilarityKernel(const ZqSimilarityKernel& other) : impl_(other.impl_->CreateCopy()) {}
  ZqSimilarityKernel& operator=(const ZqSimilarityKernel& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }
  virtual ~ZqSimilarityKernel() = default;

  unsigned int GetKernelType() const { return impl_->GetKernelType(); }
  std::string GetKernelName() const { return impl_->GetKernelName(); }
  double GetDefaultInitialParamVal() const { return impl_->GetDefaultInitialParamVal(); }
  double GetMinimumAllowedParamVal() const { return impl_->GetMinimumAllowedParamVal(); }
  double GetMaximumAllowedParamVal() const { return impl_->GetMaximumAllowedParamVal(); }
  virtual double operator()(double similarity, double param) const { return (*impl_)(similarity, param); }
  // numPoints points (x, k(x, param)) with x from 0 to 1 in equal steps.
  Numarc::ZqDataSeries GetKernelValues(double param, unsigned long numPoints) const;

 private:
  std::unique_ptr<ZqSimilarityKernelBase> impl_;
};

}  // namespace Varimo
