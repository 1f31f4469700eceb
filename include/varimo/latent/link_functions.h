// Link functions of binary regression and their derivatives, for the
// logistic link (regression type 2) and the probit link (any other type).
// y is a label of +1 or -1 and z the linear predictor x.w.
#pragma once

namespace Varimo {

// The regression type of the logistic link; every other value is probit.
inline constexpr unsigned int kZqLogisticRegressionType = 2;

// The standard normal density exp(-z^2 / 2) / 2.50662827463. The constant is
// sqrt(2 pi) to those digits only: the probit fits are defined with it, and
// their last digits follow it.
double Norm(double z);
// The normal density of mean and sigma: Norm((z - mean) / sigma) / sigma.
double Norm(double mean, double sigma, double z);
// The standard normal distribution function, from the error function.
double Phi(double z);

double logistic_func(double z);                  // s = 1 / (1 + exp(-z))
double deriv_log_logistic_func(double z);        // 1 - s
double second_deriv_log_logistic_func(double z);  // -s (1 - s)
double probit_func(double z);                    // Phi(z)
double deriv_log_probit_func(double z);          // l = Norm(z) / Phi(z)
double second_deriv_log_probit_func(double z);   // l (-z - l)

// The link of type r and the derivatives of its logarithm.
double reg_func(unsigned int r, double z);
double deriv_log_reg_func(unsigned int r, double z);
double second_deriv_log_reg_func(unsigned int r, double z);

// The log probability of label y: -log(1 + exp(-y z)) or log Phi(y z). The
// probit form is -infinity once Phi(y z) underflows to 0.
double log_p(unsigned int r, int y, double z);
// Its derivative in z, V: (y + 1) / 2 - s, or y Norm(z) / Phi(y z).
double V(unsigned int r, int y, double z);
double deriv_log_p(unsigned int r, int y, double z);
// Minus its second derivative in z, W: (1 - s) s, or (y z + l) l with
// l = Norm(z) / Phi(y z).
double W(unsigned int r, int y, double z);
double second_deriv_log_p(unsigned int r, int y, double z);

}  // namespace Varimo
