#include "varimo/smoothers/kernel_functions.h"

#include <cfloat>
#include <cmath>

namespace Varimo {
namespace {

namespace T = ZqKernelFunctionType;

const char* const kNames[T::NumTypes] = {
    "Unknown Kernel Function",  "Gaussian Kernel Function",    "BoxCar Kernel Function",
    "Epachnikov or Quadratic Kernel Function", "BiQuadratic Kernel Function", "TriCubic Kernel Function"};
const char* const kShortNames[T::NumTypes] = {"", "Gaussian", "BoxCar", "Epachnikov", "BiQuadratic", "TriCubic"};

}  // namespace

std::string ZqNullKernelFunction::GetNameOfKernel() const { return kNames[T::Unknown]; }
double ZqNullKernelFunction::operator()(double) const { return DBL_MAX; }

std::string ZqGaussianKernelFunction::GetNameOfKernel() const { return kNames[T::Gaussian]; }
double ZqGaussianKernelFunction::operator()(double u) const { return 0.3989422804014327 * std::exp(-0.5 * u * u); }

std::string ZqBoxCarKernelFunction::GetNameOfKernel() const { return kNames[T::BoxCar]; }
double ZqBoxCarKernelFunction::operator()(double u) const { return std::fabs(u) <= 1.0 ? 0.5 : 0.0; }

std::string ZqEpachnikovKernelFunction::GetNameOfKernel() const { return kNames[T::Epachnikov]; }
double ZqEpachnikovKernelFunction::operator()(double u) const {
  return std::fabs(u) < 1.0 ? 0.75 * (1.0 - u * u) : 0.0;
}

std::string ZqBiQuadraticKernelFunction::GetNameOfKernel() const { return kNames[T::BiQuadratic]; }
double ZqBiQuadraticKernelFunction::operator()(double u) const {
  if (!(std::fabs(u) < 1.0)) return 0.0;
  const double v = 1.0 - u * u;
  return 0.9375 * v * v;
}

std::string ZqTriCubicKernelFunction::GetNameOfKernel() const { return kNames[T::TriCubic]; }
double ZqTriCubicKernelFunction::operator()(double u) const {
  const double a = std::fabs(u);
  if (!(a < 1.0)) return 0.0;
  const double v = 1.0 - a * a * a;
  return 0.8641975308641975 * v * v * v;
}

ZqKernelFunctionBase* ZqGetKernelFunction(unsigned int type) {
  switch (type) {
    case T::Gaussian: return new ZqGaussianKernelFunction();
    case T::BoxCar: return new ZqBoxCarKernelFunction();
    case T::Epachnikov: return new ZqEpachnikovKernelFunction();
    case T::BiQuadratic: return new ZqBiQuadraticKernelFunction();
    case T::TriCubic: return new ZqTriCubicKernelFunction();
    default: return new ZqNullKernelFunction();
  }
}

std::string ZqGetKernelFunctionNameFromType(unsigned int type) {
  if (type >= T::NumTypes) {
    return "ZqGetKernelFunctionNameFromType: argument out of Range.\nType must be less than " +
           std::to_string(T::NumTypes);
  }
  return kNames[type];
}

unsigned int ZqGetKernelFunctionTypeFromName(const std::string& name) {
  for (unsigned int type = 1; type < T::NumTypes; ++type) {
    if (name == kShortNames[type] || name == kNames[type]) return type;
  }
  return T::Unknown;
}

}  // namespace Varimo
