// The parameters of one component of a Gaussian mixture, prior and
// posterior side by side: the mixing probability (fixed, or Dirichlet) and
// the component's law (fixed mean and precision, or Gauss-Gamma).
//
//   ZqGaussMixParam gauss(4, "Bayes One Dim Gauss-Gamma Params",
//                         {"Gauss-Gamma Mean", "Gauss-Gamma Precision Multiplier",
//                          "Gauss-Gamma Precision Alpha", "Gauss-Gamma Precision Beta"},
//                         {0.0, 1.0, 1.0, 1.0});
//
// Values are laid out flat, logical parameter after logical parameter; the
// current values start as a copy of the initial (prior) ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"

namespace Varimo {

namespace ZqGaussMixParamType {
inline constexpr std::uint32_t FixedComponentProbability = 1;
inline constexpr std::uint32_t DirichletMixingProbability = 2;
inline constexpr std::uint32_t FixedGaussParams = 3;
inline constexpr std::uint32_t GaussGammaParams = 4;
}  // namespace ZqGaussMixParamType

class ZqGaussMixParam {
 public:
  ZqGaussMixParam() = default;
  // Every logical parameter a scalar. Not valid, with empty lists, unless
  // there are as many names as values.
  ZqGaussMixParam(std::uint32_t type, const std::string& name, const std::vector<std::string>& paramNames,
                  const std::vector<double>& vals);
  // Logical parameters of any size.
  ZqGaussMixParam(std::uint32_t type, const std::string& name, const std::vector<std::string>& paramNames,
                  const std::vector<std::vector<double>>& vals);

  bool Valid() const { return valid_; }
  std::uint32_t GetParameterType() const { return parameterType_; }
  const std::string& GetParamTypeName() const { return paramTypeName_; }

  // A scalar logical parameter i; the bad double when the object is not
  // valid, i is past the parameters, or parameter i is not a scalar.
  double GetInitialOrPriorParamVal(ZqStatModelResult& result, std::size_t i) const;
  double GetCurrentOrPosteriorParamVal(ZqStatModelResult& result, std::size_t i) const;
  ZqStatModelResult SetCurrentOrPosteriorParamVal(double value, std::size_t i);
  // Logical parameter i of `count` values.
  ZqStatModelResult SetCurrentOrPosteriorParamVector(const std::vector<double>& values, std::size_t i);
  ZqStatModelResult GetInitialOrPriorParamVector(std::vector<double>& values, std::size_t count,
                                                 std::size_t i) const;
  ZqStatModelResult GetCurrentOrPosteriorParamVector(std::vector<double>& values, std::size_t count,
                                                     std::size_t i) const;
  std::string Print() const;

 private:
  ZqStatModelResult CheckScalar(std::size_t i, const char* routine) const;
  ZqStatModelResult CheckVector(std::size_t i, std::size_t count, const char* routine) const;

  bool valid_ = false;
  std::uint32_t parameterType_ = 0;
  std::string paramTypeName_;
  std::vector<std::string> paramNames_;
  std::vector<std::size_t> paramOffsets_;
  std::vector<std::size_t> paramSizes_;
  std::vector<double> initialOrPriorVals_;
  std::vector<double> currentOrPosteriorVals_;
};

// Of a probability parameter (type 1 fixed, type 2 Dirichlet with current
// values coefficient and sum of coefficients):
// E[pi]: the value, or a / s.
double GetExpectedComponentProbability(ZqStatModelResult& result, const ZqGaussMixParam& param);
// E[ln pi]: ln of the value, or digamma(a) - digamma(s).
double GetExpectedLogComponentProb(ZqStatModelResult& result, const ZqGaussMixParam& param);
// The component's share of E[ln Dir(pi)] under the prior (a0, s0) and
// under the posterior (a, s); the normaliser lgamma(s) is shared among the
// components in proportion to their coefficients. Dirichlet only.
double GetExpectedLogDirichletPrior(ZqStatModelResult& result, const ZqGaussMixParam& param);
double GetExpectedLogDirichletPosterior(ZqStatModelResult& result, const ZqGaussMixParam& param);
// The M step of a probability parameter given the component's total
// responsibility over n points.
ZqStatModelResult UpdateComponentProbParams(std::size_t n, ZqGaussMixParam& param, double sumResp);

}  // namespace Varimo
