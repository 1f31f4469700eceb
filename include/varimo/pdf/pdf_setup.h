// Distributions from their parameters: each function checks the arguments
// through the law's set-up class (ran_var_setup.h) and builds the handle.
// When the set-up fails, the result says why (with the function's name
// in its context) and the handle is a null distribution of the same
// variable name; on success the result is true.
//
//   ZqStatModelResult result;
//   ZqUniVarPDF t = ZqUnivariateStudentsT("t", 5.0, 0.0, 1.0, result);
#pragma once

#include <string>
#include <vector>

#include "varimo/pdf/pdf.h"

namespace Varimo {

ZqUniVarPDF ZqUniVarNullPDF(const std::string& name);
// Normal law of that mean and variance (stored as its inverse).
ZqUniVarPDF ZqUnivariateGaussian(const std::string& name, double mean, double variance, ZqStatModelResult& result);
ZqUniVarPDF ZqUnivariateStudentsT(const std::string& name, double degreesOfFreedom, double location,
                                  double precision, ZqStatModelResult& result);
ZqUniVarPDF ZqGamma(const std::string& name, double shape, double inverseScale, ZqStatModelResult& result);
ZqUniVarPDF ZqChiSquare(const std::string& name, double degreesOfFreedom, ZqStatModelResult& result);
ZqUniVarPDF ZqSnedecorsF(const std::string& name, double numeratorDF, double denominatorDF,
                         ZqStatModelResult& result);
ZqUniVarPDF ZqBeta(const std::string& name, double alpha, double beta, ZqStatModelResult& result);
ZqUniVarPDF ZqGumbel(const std::string& name, double location, double scale, ZqStatModelResult& result);
ZqUniVarPDF ZqGeneralizedExtremeValue(const std::string& name, double location, double scale, double shape,
                                      ZqStatModelResult& result);

ZqMultiVarPDF ZqMultiVarNullPDF(const std::vector<std::string>& names);
// The covariance (or scale) is a flat symmetric matrix of the mean's size:
// one value, a diagonal, or in full.
ZqMultiVarPDF ZqMultivariateGaussian(const std::vector<std::string>& names, const std::vector<double>& mean,
                                     const std::vector<double>& covariance, ZqStatModelResult& result);
ZqMultiVarPDF ZqMultivariateStudentsT(const std::vector<std::string>& names, double degreesOfFreedom,
                                      const std::vector<double>& location, const std::vector<double>& scale,
                                      ZqStatModelResult& result);

}  // namespace Varimo
