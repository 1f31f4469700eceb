#include "varimo/pdf/pdf_setup.h"

#include <utility>

#include "varimo/pdf/null_pdf.h"
#include "varimo/ranvar/ran_var_setup.h"

namespace Varimo {
namespace {

// Runs the set-up, then builds the distribution of its pdf type, or the
// null one when it failed.
template <class Setup>
ZqUniVarPDF MakeUniVar(std::size_t pdfType, const std::string& name, ZqStatModelResult& result,
                       const char* routine, Setup&& setup) {
  ZqRanVarVec parameters, outcomes;
  result = setup(parameters, outcomes);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(name);
  }
  return ZqUniVarPDF(pdfType, name, parameters, outcomes);
}

template <class Setup>
ZqMultiVarPDF MakeMultiVar(std::size_t pdfType, const std::vector<std::string>& names, ZqStatModelResult& result,
                           const char* routine, Setup&& setup) {
  ZqRanVarVec parameters, outcomes;
  result = setup(parameters, outcomes);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqMultiVarNullPDF(names);
  }
  return ZqMultiVarPDF(pdfType, names, parameters, outcomes);
}

}  // namespace

ZqUniVarPDF ZqUniVarNullPDF(const std::string& name) {
  return ZqUniVarPDF(std::make_unique<ZqUniVarNullPDFImpl>(name));
}

ZqUniVarPDF ZqUnivariateGaussian(const std::string& name, double mean, double variance, ZqStatModelResult& result) {
  return MakeUniVar(2, name, result, "ZqUnivariateGaussian", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqUniVarGaussRanVars::SetupRanVarVecs(mean, variance, p, o);
  });
}

ZqUniVarPDF ZqUnivariateStudentsT(const std::string& name, double degreesOfFreedom, double location,
                                  double precision, ZqStatModelResult& result) {
  return MakeUniVar(4, name, result, "ZqUnivariateStudentsT", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqUniVarStudentsTRanVars::SetupRanVarVecs(degreesOfFreedom, location, precision, p, o);
  });
}

ZqUniVarPDF ZqGamma(const std::string& name, double shape, double inverseScale, ZqStatModelResult& result) {
  return MakeUniVar(6, name, result, "ZqGamma", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqGammaRanVars::SetupRanVarVecs(shape, inverseScale, p, o);
  });
}

ZqUniVarPDF ZqChiSquare(const std::string& name, double degreesOfFreedom, ZqStatModelResult& result) {
  return MakeUniVar(7, name, result, "ZqChiSquare", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqChiSquareRanVars::SetupRanVarVecs(degreesOfFreedom, p, o);
  });
}

ZqUniVarPDF ZqSnedecorsF(const std::string& name, double numeratorDF, double denominatorDF,
                         ZqStatModelResult& result) {
  return MakeUniVar(8, name, result, "ZqSnedecorsF", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqSnedecorsFRanVars::SetupRanVarVecs(numeratorDF, denominatorDF, p, o);
  });
}

ZqUniVarPDF ZqBeta(const std::string& name, double alpha, double beta, ZqStatModelResult& result) {
  return MakeUniVar(9, name, result, "ZqBeta", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqBetaRanVars::SetupRanVarVecs(alpha, beta, p, o);
  });
}

ZqUniVarPDF ZqGumbel(const std::string& name, double location, double scale, ZqStatModelResult& result) {
  return MakeUniVar(15, name, result, "ZqGumbel", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqGumbelRanVars::SetupRanVarVecs(location, scale, p, o);
  });
}

ZqUniVarPDF ZqGeneralizedExtremeValue(const std::string& name, double location, double scale, double shape,
                                      ZqStatModelResult& result) {
  return MakeUniVar(16, name, result, "ZqGeneralizedExtremeValue", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs(location, scale, shape, p, o);
  });
}

ZqMultiVarPDF ZqMultiVarNullPDF(const std::vector<std::string>& names) {
  return ZqMultiVarPDF(std::make_unique<ZqMultiVarNullPDFImpl>(names));
}

ZqMultiVarPDF ZqMultivariateGaussian(const std::vector<std::string>& names, const std::vector<double>& mean,
                                     const std::vector<double>& covariance, ZqStatModelResult& result) {
  return MakeMultiVar(3, names, result, "ZqMultivariateGaussian", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqMultiVarGaussRanVars::SetupRanVarVecs(mean, covariance, p, o);
  });
}

ZqMultiVarPDF ZqMultivariateStudentsT(const std::vector<std::string>& names, double degreesOfFreedom,
                                      const std::vector<double>& location, const std::vector<double>& scale,
                                      ZqStatModelResult& result) {
  return MakeMultiVar(5, names, result, "ZqMultivariateStudentsT", [&](ZqRanVarVec& p, ZqRanVarVec& o) {
    return ZqMultiVarStudentsTRanVars::SetupRanVarVecs(degreesOfFreedom, location, scale, p, o);
  });
}

}  // namespace Varimo
