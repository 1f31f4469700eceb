#include "varimo/krige/krige_kernels.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/strings.h"

namespace Varimo {

namespace {

// ln 10: with it the exponential and Gaussian kernels reach 90% of the rise
// at the range.
constexpr double kLn10 = 2.302585092994046;
// 0.9 / (1 - 0.9) as doubles give it: the double just above 9, not 9
// itself. With it the Cauchy and Student t kernels reach 90% of the rise at
// the range, and their values are the same to the last digit wherever the
// quotient is formed.
constexpr double kNinetyPercentFactor = 9.000000000000002;

// The kernels below spell out their order of evaluation where rounding
// shows, so that the last digits are the same everywhere.
double Rise(const ZqKrigeKernelBase& kernel, double fraction) {
  const double nugget = kernel.GetNugget();
  return nugget + fraction * (kernel.GetSill() - nugget);
}

std::string FormatName(const char* format, double parameter) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, parameter);
  return buffer;
}

}  // namespace

double ZqKrigeLinearKernel::GetValue(double h) const {
  const double r = GetRange();
  if (h > r) return GetSill();
  return Rise(*this, h / r);
}

double ZqKrigeExponentialKernel::GetValue(double h) const {
  return Rise(*this, 1.0 - std::exp(-h / (GetRange() / kLn10)));
}

double ZqKrigeGaussianKernel::GetValue(double h) const {
  const double r = GetRange();
  return Rise(*this, 1.0 - std::exp(-(h * h) / (-(r * r) / -kLn10)));
}

double ZqKrigeSphericalKernel::GetValue(double h) const {
  const double r = GetRange();
  if (h > r) return GetSill();
  return Rise(*this, (1.5 * h) / r - (0.5 * h * h * h) / (r * r * r));
}

double ZqKrigeCauchyKernel::GetValue(double h) const {
  const double r = GetRange();
  const double scale = (1.0 / (r * r)) * kNinetyPercentFactor;
  return Rise(*this, 1.0 - 1.0 / (scale * h * h + 1.0));
}

std::string ZqKrigeStudentTKernel::GetName() const {
  std::string power;
  if (!Corvane::ZqNumberToString(power, power_, 'f', 12)) power.clear();
  return "StudentT(" + power + ")";
}

double ZqKrigeStudentTKernel::GetValue(double h) const {
  const double scale = (1.0 / std::pow(GetRange(), power_)) * kNinetyPercentFactor;
  return Rise(*this, 1.0 - 1.0 / (scale * std::pow(h, power_) + 1.0));
}

std::string ZqKrigePowerKernel::GetName() const { return FormatName("Power(%5.3f)", power_); }

double ZqKrigePowerKernel::GetValue(double h) const {
  const double r = GetRange();
  if (h > r) return GetSill();
  return Rise(*this, std::pow(h / r, power_));
}

ZqKrigeReverseGaussianKernel::ZqKrigeReverseGaussianKernel(double shape)
    : shape_(shape), offset_(std::exp(-shape)) {}

std::string ZqKrigeReverseGaussianKernel::GetName() const {
  return FormatName("Reverse Gaussian(%5.3f)", shape_);
}

double ZqKrigeReverseGaussianKernel::GetValue(double h) const {
  const double r = GetRange();
  if (h > r) return GetSill();
  const double fromRange = 1.0 - h / r;
  return Rise(*this, (std::exp(-shape_ * (fromRange * fromRange)) - offset_) / (1.0 - offset_));
}

ZqKrigeKernel::ZqKrigeKernel(unsigned int kernelType) {
  switch (kernelType) {
    case ZqKrigeKernelType::Exponential:
      impl_ = std::make_unique<ZqKrigeExponentialKernel>();
      break;
    case ZqKrigeKernelType::Gaussian:
      impl_ = std::make_unique<ZqKrigeGaussianKernel>();
      break;
    case ZqKrigeKernelType::Spherical:
      impl_ = std::make_unique<ZqKrigeSphericalKernel>();
      break;
    case ZqKrigeKernelType::Cauchy:
      impl_ = std::make_unique<ZqKrigeCauchyKernel>();
      break;
    default:
      if (kernelType != ZqKrigeKernelType::Linear) {
        Corvane::ZqThrow.Warning(
            "Invalid ZqKrigeKernelType (%d) passed to ZqKrigeKernel constructor, defaulting to Linear kernel",
            static_cast<int>(kernelType));
      }
      impl_ = std::make_unique<ZqKrigeLinearKernel>();
      break;
  }
}

Corvane::ZqIter<const ZqKrigeKernelBase> ZqGetKrigeKernels() {
  std::vector<ZqKrigeKernel> kernels;
  kernels.reserve(16);
  for (unsigned int type = 0; type < ZqKrigeKernelType::NumTypes; ++type) kernels.emplace_back(type);
  for (double power : {0.5, 1.0, 3.0, 4.0}) kernels.emplace_back(ZqKrigeStudentTKernel(power));
  for (double power : {0.25, 0.3333333333333333, 0.5, 1.5, 2.0, 3.0, 4.0}) {
    kernels.emplace_back(ZqKrigePowerKernel(power));
  }
  return Corvane::ZqMakeOwnedIterAs<const ZqKrigeKernelBase>(std::move(kernels));
}

}  // namespace Varimo
