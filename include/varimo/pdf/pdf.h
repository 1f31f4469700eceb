// The frame of every distribution: implementation classes that hold the
// parameter and outcome random variables (ran_var.h) and answer density,
// distribution function, percentile, moments and draws, and the value
// handles ZqUniVarPDF and ZqMultiVarPDF that own one implementation.
//
//   ZqStatModelResult result;
//   ZqUniVarPDF normal = ZqUnivariateGaussian("x", 0.0, 4.0, result);   // pdf_setup.h
//   double p = normal.GetCDF(1.0, result, true);
//   if (result.NotSuccessful()) ...          // p is then the bad double
//
// Operations never throw: each replaces the content of the result it is
// given and returns VarimoBadData::BadDouble (1.7976931348623157e308), or
// an empty iterator, when it fails. A distribution whose parameters could
// not be read is not valid, and fails every operation.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/corvane/iter.h"
#include "varimo/ranvar/ran_var.h"

namespace Numarc {
class ZqRanNumEngine;
}

namespace Varimo {

class ZqUniVarPDF;
class ZqMultiVarPDF;
using ZqRanVarVec = std::vector<ZqRanVar>;

class ZqProbDistFuncImpl {
 public:
  ZqProbDistFuncImpl(std::size_t pdfType, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);
  virtual ~ZqProbDistFuncImpl() = default;

  virtual ZqProbDistFuncImpl* CreateCopy() const = 0;
  virtual std::string Print(std::size_t limit) const = 0;

  std::size_t GetNumParameterRanVars() const { return parameterRanVars_.size(); }
  std::size_t GetNumOutcomeRanVars() const { return outcomeRanVars_.size(); }
  Corvane::ZqIter<const ZqRanVar> GetParameterRanVars() const;
  Corvane::ZqIter<const ZqRanVar> GetOutcomeRanVars() const;
  std::size_t GetPDFType() const { return pdfType_; }
  std::string GetPDFName() const;
  bool Valid() const { return valid_; }

 protected:
  ZqProbDistFuncImpl(const ZqProbDistFuncImpl&) = default;
  ZqProbDistFuncImpl& operator=(const ZqProbDistFuncImpl&) = delete;

  void SetValid() { valid_ = true; }
  void SetInValid() { valid_ = false; }
  // The values of the first variable of that ranVarType, which must hold
  // `expectedCount` of them.
  Corvane::ZqIter<const double> GetParameterRanVarVals(std::size_t ranVarType, std::size_t expectedCount,
                                                       ZqStatModelResult& result) const;
  Corvane::ZqIter<const double> GetOutcomeRanVarVals(std::size_t ranVarType, std::size_t expectedCount,
                                                     ZqStatModelResult& result) const;
  double GetSingleParameterRanVarVal(std::size_t ranVarType, ZqStatModelResult& result) const;
  // GetSingleParameterRanVarVal of a value that is a number and satisfies
  // its own variable's constraint: what a concrete class reads its
  // parameters with, so that a hand-made list cannot make a distribution of
  // a negative variance.
  double GetCheckedParameterRanVarVal(std::size_t ranVarType, ZqStatModelResult& result) const;
  // Whether values lie in the support of the outcome of that ranVarType.
  ZqStatModelResult CheckIfValsAreOkForOutcomeRanVar(std::size_t ranVarType, const std::vector<double>& vals) const;
  ZqStatModelResult CheckIfValIsOkForOutcomeRanVar(std::size_t ranVarType, double val) const;
  std::string PrintRanVars(std::size_t limit) const;

 private:
  std::size_t pdfType_;
  bool valid_ = false;
  ZqRanVarVec parameterRanVars_;
  ZqRanVarVec outcomeRanVars_;
};

class ZqUniVarPDFImpl : public ZqProbDistFuncImpl {
 public:
  ZqUniVarPDFImpl(std::size_t pdfType, const std::string& variableName, const ZqRanVarVec& parameters,
                  const ZqRanVarVec& outcomes);

  ZqUniVarPDFImpl* CreateCopy() const override = 0;

  // Not const: the generator inside keeps its state.
  virtual double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) = 0;
  // With `checkOutcome`, an x outside the support fails the result and
  // gives 0.0 (on either side, for the CDF too).
  virtual double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const = 0;
  virtual double GetMean(ZqStatModelResult& result) const = 0;
  virtual double GetMode(ZqStatModelResult& result) const = 0;
  virtual double GetVariance(ZqStatModelResult& result) const = 0;
  // p must lie in [0, 1].
  virtual double GetPercentile(double p, ZqStatModelResult& result) const = 0;
  virtual double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const = 0;
  virtual std::string GetVariableName() const;

 protected:
  ZqUniVarPDFImpl(const ZqUniVarPDFImpl&) = default;
  // "PDF: ", the pdf name, the variable name and the random variables.
  std::string DefaultPrint(std::size_t limit) const;

  // The common start of a data operation at `routine`: false, with the
  // result failed with InvalidProbDistFunc, for a distribution that is
  // not valid.
  bool Ready(ZqStatModelResult& result, const char* routine) const;
  // Ready, then with `checkOutcome` x against the outcome variable of that
  // ranVarType; false with `refusal` the value to return.
  bool ReadyFor(double x, std::size_t outcomeType, bool checkOutcome, ZqStatModelResult& result,
                const char* routine, double& refusal) const;
  // Ready, then p in [0, 1].
  bool ReadyForPercentile(double p, ZqStatModelResult& result, const char* routine) const;

 private:
  std::string variableName_;
};

class ZqMultiVarPDFImpl : public ZqProbDistFuncImpl {
 public:
  ZqMultiVarPDFImpl(std::size_t pdfType, const std::vector<std::string>& variableNames,
                    const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);

  ZqMultiVarPDFImpl* CreateCopy() const override = 0;

  virtual Corvane::ZqIter<const double> GetRandomOutcome(ZqStatModelResult& result,
                                                         Numarc::ZqRanNumEngine& engine) = 0;
  virtual double GetDensity(const std::vector<double>& x, ZqStatModelResult& result, bool checkOutcome) const = 0;
  virtual Corvane::ZqIter<const double> GetMean(ZqStatModelResult& result) const = 0;
  virtual Corvane::ZqIter<const double> GetCovariance(ZqStatModelResult& result) const = 0;
  virtual Corvane::ZqIter<const double> GetMode(ZqStatModelResult& result) const = 0;
  virtual ZqMultiVarPDF GetMultivariateMarginal(const std::vector<std::string>& names,
                                                ZqStatModelResult& result) const = 0;
  virtual ZqUniVarPDF GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const = 0;

  std::size_t GetNumVariables() const { return variableNames_.size(); }
  const std::vector<std::string>& GetVariableNames() const { return variableNames_; }
  // The first position of a name among the variables; NameNotFound when
  // it is absent.
  ZqStatModelResult GetIndexOfNameInVarNameList(const std::string& name, std::size_t& index) const;
  // The positions of names, which must come in the variables' order (a
  // name repeated is let through).
  ZqStatModelResult GetIndicesOfNamesInVarNameList(const std::vector<std::string>& names,
                                                   std::vector<std::size_t>& indices) const;
  std::string DefaultPrint(std::size_t limit) const;

 protected:
  ZqMultiVarPDFImpl(const ZqMultiVarPDFImpl&) = default;

 private:
  std::vector<std::string> variableNames_;
};

// A univariate distribution by value: copies are deep.
class ZqUniVarPDF {
 public:
  // The null distribution, with no variable name.
  ZqUniVarPDF();
  // The distribution of that pdf type (ZqGetUniVarPDFImpl).
  ZqUniVarPDF(std::size_t pdfType, const std::string& variableName, const ZqRanVarVec& parameters,
              const ZqRanVarVec& outcomes);
  explicit ZqUniVarPDF(std::unique_ptr<ZqUniVarPDFImpl> impl);
  ZqUniVarPDF(const ZqUniVarPDF& other);
  ZqUniVarPDF& operator=(const ZqUniVarPDF& other);
  ZqUniVarPDF(ZqUniVarPDF&&) noexcept = default;
  ZqUniVarPDF& operator=(ZqUniVarPDF&&) noexcept = default;
  ~ZqUniVarPDF();

  const ZqUniVarPDFImpl* GetImpl() const { return impl_.get(); }

  std::string Print(std::size_t limit) const { return impl_->Print(limit); }
  std::size_t GetNumParameterRanVars() const { return impl_->GetNumParameterRanVars(); }
  std::size_t GetNumOutcomeRanVars() const { return impl_->GetNumOutcomeRanVars(); }
  Corvane::ZqIter<const ZqRanVar> GetParameterRanVars() const { return impl_->GetParameterRanVars(); }
  Corvane::ZqIter<const ZqRanVar> GetOutcomeRanVars() const { return impl_->GetOutcomeRanVars(); }
  std::size_t GetPDFType() const { return impl_->GetPDFType(); }
  std::string GetPDFName() const { return impl_->GetPDFName(); }
  bool Valid() const { return impl_->Valid(); }

  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
    return impl_->GetRandomOutcome(result, engine);
  }
  double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const {
    return impl_->GetDensity(x, result, checkOutcome);
  }
  double GetMean(ZqStatModelResult& result) const { return impl_->GetMean(result); }
  double GetMode(ZqStatModelResult& result) const { return impl_->GetMode(result); }
  double GetVariance(ZqStatModelResult& result) const { return impl_->GetVariance(result); }
  double GetPercentile(double p, ZqStatModelResult& result) const { return impl_->GetPercentile(p, result); }
  double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const {
    return impl_->GetCDF(x, result, checkOutcome);
  }
  std::string GetVariableName() const { return impl_->GetVariableName(); }

 private:
  std::unique_ptr<ZqUniVarPDFImpl> impl_;
};

// A multivariate distribution by value: copies are deep.
class ZqMultiVarPDF {
 public:
  ZqMultiVarPDF();
  ZqMultiVarPDF(std::size_t pdfType, const std::vector<std::string>& variableNames, const ZqRanVarVec& parameters,
                const ZqRanVarVec& outcomes);
  explicit ZqMultiVarPDF(std::unique_ptr<ZqMultiVarPDFImpl> impl);
  ZqMultiVarPDF(const ZqMultiVarPDF& other);
  ZqMultiVarPDF& operator=(const ZqMultiVarPDF& other);
  ZqMultiVarPDF(ZqMultiVarPDF&&) noexcept = default;
  ZqMultiVarPDF& operator=(ZqMultiVarPDF&&) noexcept = default;
  ~ZqMultiVarPDF();

  const ZqMultiVarPDFImpl* GetImpl() const { return impl_.get(); }

  std::string Print(std::size_t limit) const { return impl_->Print(limit); }
  std::size_t GetPDFType() const { return impl_->GetPDFType(); }
  std::string GetPDFName() const { return impl_->GetPDFName(); }
  bool Valid() const { return impl_->Valid(); }
  std::size_t GetNumVariables() const { return impl_->GetNumVariables(); }
  const std::vector<std::string>& GetVariableNames() const { return impl_->GetVariableNames(); }

  Corvane::ZqIter<const double> GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) {
    return impl_->GetRandomOutcome(result, engine);
  }
  double GetDensity(const std::vector<double>& x, ZqStatModelResult& result, bool checkOutcome) const {
    return impl_->GetDensity(x, result, checkOutcome);
  }
  Corvane::ZqIter<const double> GetMean(ZqStatModelResult& result) const { return impl_->GetMean(result); }
  Corvane::ZqIter<const double> GetCovariance(ZqStatModelResult& result) const {
    return impl_->GetCovariance(result);
  }
  Corvane::ZqIter<const double> GetMode(ZqStatModelResult& result) const { return impl_->GetMode(result); }
  ZqMultiVarPDF GetMultivariateMarginal(const std::vector<std::string>& names, ZqStatModelResult& result) const;
  ZqUniVarPDF GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const;

 private:
  std::unique_ptr<ZqMultiVarPDFImpl> impl_;
};

// The implementation of a pdf type: the classes of the univariate laws,
// and the null distribution for every type without one.
std::unique_ptr<ZqUniVarPDFImpl> ZqGetUniVarPDFImpl(std::size_t pdfType, const std::string& variableName,
                                                    const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);
std::unique_ptr<ZqMultiVarPDFImpl> ZqGetMultiVarPDFImpl(std::size_t pdfType,
                                                        const std::vector<std::string>& variableNames,
                                                        const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);

// The value a density or CDF gives for an outcome its check refused: 0.0
// when the value lies outside the support (the bound, integer and sum
// failures), else the bad double.
double GetReturnValForFalseResultOfOutcomeRanVarCheck(const ZqStatModelResult& result);

}  // namespace Varimo
