#include "varimo/platform/numarc/generators.h"

#include <boost/random/beta_distribution.hpp>

#include <cmath>
#include <random>

namespace Numarc {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool IsFinite(double v) { return std::isfinite(v); }
bool IsPositiveFinite(double v) { return std::isfinite(v) && v > 0.0; }

// Uniform on the open interval (0, 1): the midpoints of 2^53 equal cells, so
// neither 0 nor 1 can come out and the logarithms below stay finite.
double OpenUnitUniform(ZqRanNumEngine& engine) {
  return (static_cast<double>(engine() >> 11) + 0.5) * 0x1.0p-53;
}

}  // namespace

// The distribution objects are built afresh for each draw rather than kept as
// members. std::normal_distribution (and the t, gamma, chi-squared and F laws
// built on it) caches every second variate; a kept object would hand that
// cached value out after the engine was reseeded, or to a different engine.

void ZqGaussianRNG::SetParams(double mean, double sd) {
  mean_ = mean;
  sd_ = sd;
  valid_ = IsFinite(mean) && IsPositiveFinite(sd);
}

double ZqGaussianRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::normal_distribution<double>(mean_, sd_)(engine);
}

void ZqStudentsTRNG::SetParams(double location, double scale, double dof) {
  location_ = location;
  scale_ = scale;
  dof_ = dof;
  valid_ = IsFinite(location) && IsPositiveFinite(scale) && IsPositiveFinite(dof);
}

double ZqStudentsTRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return location_ + scale_ * std::student_t_distribution<double>(dof_)(engine);
}

void ZqGammaRNG::SetParams(double shape, double scale) {
  shape_ = shape;
  scale_ = scale;
  valid_ = IsPositiveFinite(shape) && IsPositiveFinite(scale);
}

double ZqGammaRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::gamma_distribution<double>(shape_, scale_)(engine);
}

void ZqChiSquaredRNG::SetParams(double dof) {
  dof_ = dof;
  valid_ = IsPositiveFinite(dof);
}

double ZqChiSquaredRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::chi_squared_distribution<double>(dof_)(engine);
}

void ZqSnedecorsFRNG::SetParams(double d1, double d2) {
  d1_ = d1;
  d2_ = d2;
  valid_ = IsPositiveFinite(d1) && IsPositiveFinite(d2);
}

double ZqSnedecorsFRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::fisher_f_distribution<double>(d1_, d2_)(engine);
}

void ZqBetaRNG::SetParams(double a, double b) {
  a_ = a;
  b_ = b;
  valid_ = IsPositiveFinite(a) && IsPositiveFinite(b);
}

double ZqBetaRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  // <random> has no beta law; Boost.Random's draws two gamma variates.
  return boost::random::beta_distribution<double>(a_, b_)(engine);
}

void ZqGumbelRNG::SetParams(double location, double scale) {
  location_ = location;
  scale_ = scale;
  valid_ = IsFinite(location) && IsPositiveFinite(scale);
}

double ZqGumbelRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::extreme_value_distribution<double>(location_, scale_)(engine);
}

void ZqGenExtremeValRNG::SetParams(double location, double scale, double shape) {
  location_ = location;
  scale_ = scale;
  shape_ = shape;
  valid_ = IsFinite(location) && IsPositiveFinite(scale) && IsFinite(shape);
}

double ZqGenExtremeValRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  // Neither <random> nor Boost.Random has this law. Solving
  // exp(-(1 + shape z)^(-1/shape)) = u gives z = (t^(-shape) - 1) / shape with
  // t = -log(u). Written as expm1(-shape log t) / shape it tends to
  // -log t, the Gumbel inverse, as shape -> 0, without the cancellation of
  // t^(-shape) - 1 for small shapes.
  const double logT = std::log(-std::log(OpenUnitUniform(engine)));
  const double z = shape_ == 0.0 ? -logT : std::expm1(-shape_ * logT) / shape_;
  return location_ + scale_ * z;
}

void ZqUniformIntRNG::SetParams(long low, long high) {
  low_ = low;
  high_ = high;
}

long ZqUniformIntRNG::operator()(ZqRanNumEngine& engine) const {
  if (!IsValid()) return kInvalidDraw;
  return std::uniform_int_distribution<long>(low_, high_)(engine);
}

void ZqUniformDoubleRNG::SetParams(double low, double high) {
  low_ = low;
  high_ = high;
  // std::uniform_real_distribution requires high - low to be representable.
  valid_ = IsFinite(low) && IsFinite(high) && low <= high && IsFinite(high - low);
}

double ZqUniformDoubleRNG::operator()(ZqRanNumEngine& engine) const {
  if (!valid_) return kNaN;
  return std::uniform_real_distribution<double>(low_, high_)(engine);
}

}  // namespace Numarc
