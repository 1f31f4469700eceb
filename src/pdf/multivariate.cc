// The multivariate Gaussian and Student's t laws. Both precompute from the
// precision everything a density or a draw needs: the covariance (or
// scale), its square root and the log of the normalising constant.
#include <cmath>

#include "univariate_support.h"
#include "varimo/numerics/matrix.h"
#include "varimo/pdf/multivariate_pdfs.h"
#include "varimo/pdf/null_pdf.h"
#include "varimo/pdf/pdf_setup.h"
#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
constexpr double kLogTwoPi = 1.8378770664093453;

std::vector<double> ToVector(Corvane::ZqIter<const double> values) {
  std::vector<double> out;
  for (const double v : values) out.push_back(v);
  return out;
}

Corvane::ZqIter<const double> Copy(const std::vector<double>& values) {
  return Corvane::ZqMakeOwnedIter<const double>(values);
}

// The steps of a GetParams: each runs while the result is a success, and a
// failure gets the routine as context once.
class Steps {
 public:
  explicit Steps(const char* routine) : routine_(routine) {}
  template <class Step>
  Steps& Then(Step step) {
    if (result_.IsSuccessful()) {
      result_ = step();
      if (result_.NotSuccessful()) result_.AddCallContext(routine_);
    }
    return *this;
  }
  const ZqStatModelResult& Result() const { return result_; }

 private:
  const char* routine_;
  ZqStatModelResult result_{true};
};

// The quadratic form (x - centre)' precision (x - centre).
ZqStatModelResult QuadraticForm(std::size_t n, const std::vector<double>& x, const std::vector<double>& centre,
                                const std::vector<double>& precision, double& q) {
  std::vector<double> d, v;
  ZqStatModelResult result = ZqDifferenceBetweenVectors(n, x, centre, d);
  if (result.IsSuccessful()) result = ZqMatrixTimesVector(n, precision, d, v);
  if (result.IsSuccessful()) result = ZqDotProductOfVectors(n, d, v, q);
  return result;
}

// centre + root z, z being n independent standard draws.
template <class Generator>
Corvane::ZqIter<const double> Draw(std::size_t n, const Generator& generator, Numarc::ZqRanNumEngine& engine,
                                   const std::vector<double>& root, const std::vector<double>& centre,
                                   ZqStatModelResult& result) {
  std::vector<double> z(n), x;
  for (double& v : z) v = generator(engine);
  result = ZqMatrixTimesVector(n, root, z, x);
  if (result.IsSuccessful()) result = ZqVectorElementwiseSumAccumulate(n, centre, x);
  if (result.NotSuccessful()) return {};
  return Copy(x);
}

bool Ready(const ZqProbDistFuncImpl& pdf, ZqStatModelResult& result, const char* routine) {
  if (pdf.Valid()) return true;
  result = ZqMakeFailedResult(F::InvalidProbDistFunc, routine);
  return false;
}

}  // namespace

// ------------------------------------------------------------ Gaussian

ZqMultiVarGaussImpl::ZqMultiVarGaussImpl(const std::vector<std::string>& variableNames,
                                         const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqMultiVarPDFImpl(3, variableNames, parameters, outcomes) {
  if (GetParams().IsSuccessful()) SetValid();
}

ZqStatModelResult ZqMultiVarGaussImpl::GetParams() {
  const std::size_t n = GetNumVariables();
  mean_.clear();
  precision_.clear();
  squareRootOfCovariance_.clear();
  covariance_.clear();
  logNorm_ = kPdfBad;
  double logDet = 0.0;
  Steps steps("ZqMultiVarGaussImpl::GetParams");
  steps.Then([&] {
         ZqStatModelResult r;
         mean_ = ToVector(GetParameterRanVarVals(0, n, r));
         return r;
       })
      .Then([&] {
        ZqStatModelResult r;
        const double size = GetSingleParameterRanVarVal(1, r);
        if (r.NotSuccessful()) return r;
        precision_ = ToVector(GetParameterRanVarVals(2, static_cast<std::size_t>(std::llround(size)), r));
        return r;
      })
      .Then([&] { return ZqMatrixIsPosDef(n, precision_); })
      .Then([&] { return ZqInverseOfPosDefMatrix(n, precision_, covariance_); })
      .Then([&] { return ZqSquareRootOfPosDefMatrix(n, covariance_, squareRootOfCovariance_); })
      .Then([&] { return ZqLogDeterminantOfPosDefMatrix(n, precision_, logDet); });
  if (steps.Result().IsSuccessful()) logNorm_ = 0.5 * logDet - 0.5 * static_cast<double>(n) * kLogTwoPi;
  return steps.Result();
}

Corvane::ZqIter<const double> ZqMultiVarGaussImpl::GetRandomOutcome(ZqStatModelResult& result,
                                                                    Numarc::ZqRanNumEngine& engine) {
  if (!Ready(*this, result, "ZqMultiVarGaussImpl::GetRandomOutcome")) return {};
  return Draw(GetNumVariables(), standardNormalRNG_, engine, squareRootOfCovariance_, mean_, result);
}

double ZqMultiVarGaussImpl::GetDensity(const std::vector<double>& x, ZqStatModelResult& result,
                                       bool checkOutcome) const {
  const char* routine = "ZqMultiVarGaussImpl::GetDensity";
  if (!Ready(*this, result, routine)) return kPdfBad;
  if (checkOutcome) {
    result = CheckIfValsAreOkForOutcomeRanVar(3, x);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return GetReturnValForFalseResultOfOutcomeRanVarCheck(result);
    }
  }
  double q = 0.0;
  result = QuadraticForm(GetNumVariables(), x, mean_, precision_, q);
  if (result.NotSuccessful()) return kPdfBad;
  return std::exp(logNorm_ - 0.5 * q);
}

Corvane::ZqIter<const double> ZqMultiVarGaussImpl::GetMean(ZqStatModelResult& result) const {
  if (!Ready(*this, result, "ZqMultiVarGaussImpl::GetMean")) return {};
  result = true;
  return Copy(mean_);
}

Corvane::ZqIter<const double> ZqMultiVarGaussImpl::GetCovariance(ZqStatModelResult& result) const {
  if (!Ready(*this, result, "ZqMultiVarGaussImpl::GetCovariance")) return {};
  result = true;
  return Copy(covariance_);
}

Corvane::ZqIter<const double> ZqMultiVarGaussImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(*this, result, "ZqMultiVarGaussImpl::GetMode")) return {};
  result = true;
  return Copy(mean_);
}

ZqUniVarPDF ZqMultiVarGaussImpl::GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarGaussImpl::GetUnivariateMarginal";
  if (!Ready(*this, result, routine)) return ZqUniVarNullPDF(name);
  const std::size_t n = GetNumVariables();
  std::size_t index = 0;
  double m = 0.0, v = 0.0;
  result = GetIndexOfNameInVarNameList(name, index);
  if (result.IsSuccessful()) result = ZqGetVecElementFromIndex(n, mean_, index, m);
  if (result.IsSuccessful()) result = ZqGetDiagonalElemOfMatrix(n, covariance_, index, v);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(name);
  }
  return ZqUnivariateGaussian(name, m, v, result);
}

ZqMultiVarPDF ZqMultiVarGaussImpl::GetMultivariateMarginal(const std::vector<std::string>& names,
                                                           ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarGaussImpl::GetMultivariateMarginal";
  if (!Ready(*this, result, routine)) return ZqMultiVarNullPDF(names);
  const std::size_t n = GetNumVariables();
  std::vector<std::size_t> indices;
  std::vector<double> subMean, subCovariance;
  result = GetIndicesOfNamesInVarNameList(names, indices);
  if (result.IsSuccessful()) result = ZqGetVecOfVecElementsFromVecOfIndices(n, mean_, indices, subMean);
  if (result.IsSuccessful()) result = ZqGetBlockSubMatrixOfMatrix(n, covariance_, indices, subCovariance);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqMultiVarNullPDF(names);
  }
  return ZqMultivariateGaussian(names, subMean, subCovariance, result);
}

// ------------------------------------------------------------ Student's t

ZqMultiVarStudentsTImpl::ZqMultiVarStudentsTImpl(const std::vector<std::string>& variableNames,
                                                 const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes)
    : ZqMultiVarPDFImpl(5, variableNames, parameters, outcomes) {
  if (GetParams().IsSuccessful()) {
    SetValid();
    standardStudentsRNG_.SetParams(0.0, 1.0, degreesOfFreedom_);
  }
}

ZqStatModelResult ZqMultiVarStudentsTImpl::GetParams() {
  const std::size_t n = GetNumVariables();
  location_.clear();
  precision_.clear();
  squareRootOfScale_.clear();
  scale_.clear();
  logNorm_ = kPdfBad;
  double logDet = 0.0;
  Steps steps("ZqMultiVarStudentsTImpl::GetParams");
  steps.Then([&] {
         ZqStatModelResult r;
         degreesOfFreedom_ = GetSingleParameterRanVarVal(0, r);
         return r;
       })
      .Then([&] {
        ZqStatModelResult r;
        location_ = ToVector(GetParameterRanVarVals(1, n, r));
        return r;
      })
      .Then([&] {
        ZqStatModelResult r;
        const double size = GetSingleParameterRanVarVal(2, r);
        if (r.NotSuccessful()) return r;
        precision_ = ToVector(GetParameterRanVarVals(3, static_cast<std::size_t>(std::llround(size)), r));
        return r;
      })
      .Then([&] { return ZqMatrixIsPosDef(n, precision_); })
      .Then([&] { return ZqInverseOfPosDefMatrix(n, precision_, scale_); })
      .Then([&] { return ZqSquareRootOfPosDefMatrix(n, scale_, squareRootOfScale_); })
      .Then([&] { return ZqLogDeterminantOfPosDefMatrix(n, precision_, logDet); });
  if (steps.Result().IsSuccessful()) {
    const double nu = degreesOfFreedom_;
    const double dims = static_cast<double>(n);
    logNorm_ = Numarc::Zqlgamma((dims + nu) / 2.0) - Numarc::Zqlgamma(nu / 2.0) + 0.5 * logDet -
               0.5 * dims * std::log(nu * 3.141592653589793);
  }
  return steps.Result();
}

Corvane::ZqIter<const double> ZqMultiVarStudentsTImpl::GetRandomOutcome(ZqStatModelResult& result,
                                                                        Numarc::ZqRanNumEngine& engine) {
  if (!Ready(*this, result, "ZqMultiVarStudentsTImpl::GetRandomOutcome")) return {};
  return Draw(GetNumVariables(), standardStudentsRNG_, engine, squareRootOfScale_, location_, result);
}

double ZqMultiVarStudentsTImpl::GetDensity(const std::vector<double>& x, ZqStatModelResult& result,
                                           bool checkOutcome) const {
  const char* routine = "ZqMultiVarStudentsTImpl::GetDensity";
  if (!Ready(*this, result, routine)) return kPdfBad;
  if (checkOutcome) {
    // Index 3 as in the Gaussian, although this law's outcome is 4: with
    // the check on, the density fails with RanVarNotFound.
    result = CheckIfValsAreOkForOutcomeRanVar(3, x);
    if (result.NotSuccessful()) {
      result.AddCallContext(routine);
      return GetReturnValForFalseResultOfOutcomeRanVarCheck(result);
    }
  }
  double q = 0.0;
  result = QuadraticForm(GetNumVariables(), x, location_, precision_, q);
  if (result.NotSuccessful()) return kPdfBad;
  const double nu = degreesOfFreedom_;
  return std::exp(logNorm_ - (static_cast<double>(GetNumVariables()) + nu) * 0.5 * std::log(q / nu + 1.0));
}

Corvane::ZqIter<const double> ZqMultiVarStudentsTImpl::GetMean(ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarStudentsTImpl::GetMean";
  if (!Ready(*this, result, routine)) return {};
  if (1.0 >= degreesOfFreedom_) {
    result = ZqMakeFailedResult(F::MeanIsUndefined, routine);
    return {};
  }
  result = true;
  return Copy(location_);
}

Corvane::ZqIter<const double> ZqMultiVarStudentsTImpl::GetCovariance(ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarStudentsTImpl::GetCovariance";
  if (!Ready(*this, result, routine)) return {};
  const double nu = degreesOfFreedom_;
  if (2.0 >= nu) {
    result = ZqMakeFailedResult(F::VarianceIsUndefined, routine);
    return {};
  }
  std::vector<double> covariance = scale_;
  for (double& c : covariance) c *= nu / (nu - 2.0);
  result = true;
  return Copy(covariance);
}

Corvane::ZqIter<const double> ZqMultiVarStudentsTImpl::GetMode(ZqStatModelResult& result) const {
  if (!Ready(*this, result, "ZqMultiVarStudentsTImpl::GetMode")) return {};
  result = true;
  return Copy(location_);
}

ZqUniVarPDF ZqMultiVarStudentsTImpl::GetUnivariateMarginal(const std::string& name,
                                                           ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarStudentsTImpl::GetUnivariateMarginal";
  if (!Ready(*this, result, routine)) return ZqUniVarNullPDF(name);
  const std::size_t n = GetNumVariables();
  std::size_t index = 0;
  double m = 0.0, v = 0.0;
  result = GetIndexOfNameInVarNameList(name, index);
  if (result.IsSuccessful()) result = ZqGetVecElementFromIndex(n, location_, index, m);
  if (result.IsSuccessful()) result = ZqGetDiagonalElemOfMatrix(n, scale_, index, v);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqUniVarNullPDF(name);
  }
  // The scale's diagonal element goes where the univariate law takes its
  // precision: the marginal is defined so, not by the variance.
  return ZqUnivariateStudentsT(name, degreesOfFreedom_, m, v, result);
}

ZqMultiVarPDF ZqMultiVarStudentsTImpl::GetMultivariateMarginal(const std::vector<std::string>& names,
                                                               ZqStatModelResult& result) const {
  const char* routine = "ZqMultiVarStudentsTImpl::GetMultivariateMarginal";
  if (!Ready(*this, result, routine)) return ZqMultiVarNullPDF(names);
  const std::size_t n = GetNumVariables();
  std::vector<std::size_t> indices;
  std::vector<double> subLocation, subScale;
  result = GetIndicesOfNamesInVarNameList(names, indices);
  if (result.IsSuccessful()) result = ZqGetVecOfVecElementsFromVecOfIndices(n, location_, indices, subLocation);
  if (result.IsSuccessful()) result = ZqGetBlockSubMatrixOfMatrix(n, scale_, indices, subScale);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return ZqMultiVarNullPDF(names);
  }
  return ZqMultivariateStudentsT(names, degreesOfFreedom_, subLocation, subScale, result);
}

}  // namespace Varimo
