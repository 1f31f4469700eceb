#include "varimo/smoothers/similarity_kernels.h"

#include <cmath>

namespace Varimo {
namespace {

namespace T = ZqSimilarityKernelType;
constexpr double C = kZqSimilarityOrigin;

struct Row {
  const char* name;
  double initial;
  double minimum;
  double maximum;
};

const Row kRows[T::NumTypes] = {
    {"Unknown", -1.0, -1.0, -1.0},        {"Gaussian", 10.0, 0.0, 100.0},
    {"Exponential", 30.0, 0.0, 400.0},    {"Quadratic", 2.0, 0.0, 100.0},
    {"BoxCar", 2.0, 1.0, 100.0},          {"Linear", 2.0, 0.0, 100.0},
    {"BiQuadratic", 2.0, 0.0, 100.0},     {"TriCubic", 2.0, 0.0, 100.0},
    {"SmoothBoxCar", 0.5, 0.0, 1.0},      {"Power", 1.0, 0.0, 200.0},
    {"ExponentialOfSqRoot", 4.0, 1e-06, 1000.0}, {"Spherical", 2.0, 0.0001, 100.0},
};

bool InRange(double s) { return s >= 0.0 && s <= C; }
// The polynomial kernels' support: their test on x = p d stands for the
// test on s, a similarity out of range giving an x out of [0, 1).
bool InSupport(double x) { return x >= 0.0 && x < 1.0; }

}  // namespace

#define VARIMO_KERNEL_ROW(Class, Type)                                                       \
  std::string Class::GetKernelName() const { return kRows[T::Type].name; }                   \
  double Class::GetDefaultInitialParamVal() const { return kRows[T::Type].initial; }         \
  double Class::GetMinimumAllowedParamVal() const { return kRows[T::Type].minimum; }         \
  double Class::GetMaximumAllowedParamVal() const { return kRows[T::Type].maximum; }

VARIMO_KERNEL_ROW(ZqNullSimilarityKernel, Unknown)
VARIMO_KERNEL_ROW(ZqGaussianSimilarityKernel, Gaussian)
VARIMO_KERNEL_ROW(ZqExponentialSimilarityKernel, Exponential)
VARIMO_KERNEL_ROW(ZqQuadraticSimilarityKernel, Quadratic)
VARIMO_KERNEL_ROW(ZqBoxCarSimilarityKernel, BoxCar)
VARIMO_KERNEL_ROW(ZqLinearSimilarityKernel, Linear)
VARIMO_KERNEL_ROW(ZqBiQuadraticSimilarityKernel, BiQuadratic)
VARIMO_KERNEL_ROW(ZqTriCubicSimilarityKernel, TriCubic)
VARIMO_KERNEL_ROW(ZqSmoothBoxCarSimilarityKernel, SmoothBoxCar)
VARIMO_KERNEL_ROW(ZqPowerSimilarityKernel, Power)
VARIMO_KERNEL_ROW(ZqExponentialOfSqRoot, ExponentialOfSqRoot)
VARIMO_KERNEL_ROW(ZqSphericalSimilarityKernel, Spherical)
#undef VARIMO_KERNEL_ROW

double ZqNullSimilarityKernel::operator()(double, double) const { return 0.0; }

double ZqGaussianSimilarityKernel::operator()(double s, double p) const {
  if (s > C || s < 0.0) return 0.0;
  const double x = p * (C - s);
  return std::exp(-x * x);
}

double ZqExponentialSimilarityKernel::operator()(double s, double p) const {
  if (s > C || s < 0.0) return 0.0;
  return std::exp(-p * (C - s));
}

double ZqQuadraticSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  return InSupport(x) ? 1.0 - x * x : 0.0;
}

double ZqBoxCarSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  return x >= 0.0 && x <= 1.0 ? 1.0 : 0.0;
}

double ZqLinearSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  return InSupport(x) ? 1.0 - x : 0.0;
}

double ZqBiQuadraticSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  if (!InSupport(x)) return 0.0;
  const double v = 1.0 - x * x;
  return v * v;
}

double ZqTriCubicSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  if (!InSupport(x)) return 0.0;
  const double v = 1.0 - x * x * x;
  return v * v * v;
}

double ZqSmoothBoxCarSimilarityKernel::operator()(double s, double p) const {
  const double d = C - s;
  if (!(d >= 0.0 && d < 1.0)) return 0.0;
  return 1.0 / (1.0 + std::pow(10.0, 20.0 * (d - p)));
}

double ZqPowerSimilarityKernel::operator()(double s, double p) const {
  if (!InRange(s) || !(p > 0.0)) return 0.0;
  return std::pow(s / C, p);
}

double ZqExponentialOfSqRoot::operator()(double s, double p) const {
  if (!InRange(s) || !(p > 0.0)) return 0.0;
  return std::exp(-std::sqrt(p * (C - s)));
}

double ZqSphericalSimilarityKernel::operator()(double s, double p) const {
  const double x = p * (C - s);
  if (!InRange(s) || !(x >= 0.0 && x <= 1.0)) return 0.0;
  return 1.0 - x * (1.5 - 0.5 * x * x);
}

ZqSimilarityKernelBase* ZqGetSimilarityKernel(unsigned int type) {
  switch (type) {
    case T::Gaussian: return new ZqGaussianSimilarityKernel();
    case T::Exponential: return new ZqExponentialSimilarityKernel();
    case T::Quadratic: return new ZqQuadraticSimilarityKernel();
    case T::BoxCar: return new ZqBoxCarSimilarityKernel();
    case T::Linear: return new ZqLinearSimilarityKernel();
    case T::BiQuadratic: return new ZqBiQuadraticSimilarityKernel();
    case T::TriCubic: return new ZqTriCubicSimilarityKernel();
    case T::SmoothBoxCar: return new ZqSmoothBoxCarSimilarityKernel();
    case T::Power: return new ZqPowerSimilarityKernel();
    case T::ExponentialOfSqRoot: return new ZqExponentialOfSqRoot();
    case T::Spherical: return new ZqSphericalSimilarityKernel();
    default: return new ZqNullSimilarityKernel();
  }
}

std::string ZqGetSimilarityKernelName(unsigned int type) {
  return type >= 1 && type < T::NumTypes ? kRows[type].name : kRows[T::Unknown].name;
}

unsigned int ZqGetSimilarityKernelType(const std::string& name) {
  for (unsigned int type = 1; type < T::NumTypes; ++type) {
    if (name == kRows[type].name) return type;
  }
  return T::Unknown;
}

Numarc::ZqDataSeries ZqSimilarityKernel::GetKernelValues(double param, unsigned long numPoints) const {
  Numarc::ZqDataSeries series;
  for (unsigned long i = 0; i < numPoints; ++i) {
    // One point divides by zero: its x is NaN, as the plot of one point may be.
    const double x = static_cast<double>(i) / static_cast<double>(numPoints - 1);
    series.AddPoint({x, (*this)(x, param)});
  }
  return series;
}

}  // namespace Varimo
