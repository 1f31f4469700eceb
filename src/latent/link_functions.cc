#include "varimo/latent/link_functions.h"

#include <cmath>

#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {

namespace {

// Kept at these digits on purpose; see Norm in the header.
constexpr double kSqrtTwoPi = 2.50662827463;
constexpr double kSqrtTwo = 1.4142135623730951;

bool IsLogistic(unsigned int r) { return r == kZqLogisticRegressionType; }

}  // namespace

double Norm(double z) { return std::exp(-z * z / 2.0) / kSqrtTwoPi; }

double Norm(double mean, double sigma, double z) { return Norm((z - mean) / sigma) / sigma; }

double Phi(double z) { return (Numarc::Zqerf(z / kSqrtTwo) + 1.0) * 0.5; }

double logistic_func(double z) { return 1.0 / (1.0 + std::exp(-z)); }

double deriv_log_logistic_func(double z) { return 1.0 - logistic_func(z); }

double second_deriv_log_logistic_func(double z) {
  const double s = logistic_func(z);
  return -s * (1.0 - s);
}

double probit_func(double z) { return Phi(z); }

double deriv_log_probit_func(double z) { return Norm(z) / Phi(z); }

double second_deriv_log_probit_func(double z) {
  const double l = deriv_log_probit_func(z);
  return l * (-z - l);
}

double reg_func(unsigned int r, double z) { return IsLogistic(r) ? logistic_func(z) : probit_func(z); }

double deriv_log_reg_func(unsigned int r, double z) {
  return IsLogistic(r) ? deriv_log_logistic_func(z) : deriv_log_probit_func(z);
}

double second_deriv_log_reg_func(unsigned int r, double z) {
  return IsLogistic(r) ? second_deriv_log_logistic_func(z) : second_deriv_log_probit_func(z);
}

double log_p(unsigned int r, int y, double z) {
  const double yz = static_cast<double>(y) * z;
  // log1p keeps the small terms of well-classified points exact.
  return IsLogistic(r) ? -std::log1p(std::exp(-yz)) : std::log(Phi(yz));
}

double V(unsigned int r, int y, double z) {
  if (IsLogistic(r)) return (static_cast<double>(y) + 1.0) / 2.0 - logistic_func(z);
  return static_cast<double>(y) * Norm(z) / Phi(static_cast<double>(y) * z);
}

double deriv_log_p(unsigned int r, int y, double z) { return V(r, y, z); }

double W(unsigned int r, int y, double z) {
  if (IsLogistic(r)) {
    const double s = logistic_func(z);
    return (1.0 - s) * s;
  }
  const double yz = static_cast<double>(y) * z;
  const double l = Norm(z) / Phi(yz);
  return (yz + l) * l;
}

double second_deriv_log_p(unsigned int r, int y, double z) { return -W(r, y, z); }

}  // namespace Varimo
