// The second distribution frame: distributions whose parameters and outcomes
// are nZqRanVar handles (nran_var.h), looked up by their (major, minor) type.
// It has one concrete class so far, the null distribution.
//
// Operations report through the ZqStatModelResult& they are given, whose
// earlier content is replaced, and return the bad double
// 1.7976931348623157e308 when they cannot give a value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/ranvar/nran_var.h"

namespace Numarc {
class ZqRanNumEngine;
}  // namespace Numarc

namespace Varimo {

class nZqProbDistFuncImpl {
 public:
  // Of the unknown pdf type, with no variables.
  nZqProbDistFuncImpl();
  // Copies the list: the copies share their values with the given handles.
  nZqProbDistFuncImpl(std::size_t pdfType, const std::vector<nZqRanVar>& ranVars);
  virtual ~nZqProbDistFuncImpl();

  std::size_t GetNumRanVars() const { return ranVars_.size(); }
  const std::vector<nZqRanVar>& GetRanVars() const { return ranVars_; }
  // A row of nZqPDFType::NameOf.
  std::size_t GetPDFType() const { return pdfType_; }
  // The text of the pdf type; "Unknown PDF" for a number beyond the table.
  std::string GetPDFName() const;

  // The read-only null variable that stands for one not found.
  const nZqRanVar& BadRanVar() const { return badRanVar_; }
  // The first variable of the given type; none fails with RanVarNotFound and
  // gives BadRanVar().
  const nZqRanVar& GetRanVar(ZqStatModelResult& result, std::uint32_t majorType, std::uint32_t minorType) const;

  // A banner line, then each variable's print up to printLimit elements
  // followed by a dashed separator.
  std::string PrintRanVars(std::size_t printLimit) const;

 private:
  nZqRanVar badRanVar_;
  std::size_t pdfType_;
  std::vector<nZqRanVar> ranVars_;
};

// A distribution of one real variable.
class nZqUniVarPDFImpl : public nZqProbDistFuncImpl {
 public:
  nZqUniVarPDFImpl(std::size_t pdfType, const std::string& variableName, const std::vector<nZqRanVar>& ranVars);

  // Changes the state of the distribution's generator, hence not const.
  virtual double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) = 0;
  // With checkOutcome, x is first checked against the outcome's constraints.
  virtual double GetDensity(ZqStatModelResult& result, double x, bool checkOutcome) const = 0;
  virtual double GetMean(ZqStatModelResult& result) const = 0;
  virtual double GetMode(ZqStatModelResult& result) const = 0;
  virtual double GetVariance(ZqStatModelResult& result) const = 0;
  // p in [0, 1].
  virtual double GetPercentile(ZqStatModelResult& result, double p) const = 0;
  virtual double GetCDF(ZqStatModelResult& result, double x, bool checkOutcome) const = 0;
  virtual std::string GetVariableName() const;

 private:
  std::string variableName_;
};

// The null distribution (pdf type NullPDF): every operation fails with
// NullProbDistFunc and returns the bad double.
class nZqUniVarNullPDFImpl final : public nZqUniVarPDFImpl {
 public:
  explicit nZqUniVarNullPDFImpl(const std::string& variableName = std::string(),
                                const std::vector<nZqRanVar>& ranVars = std::vector<nZqRanVar>());

  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(ZqStatModelResult& result, double x, bool checkOutcome) const override;
  double GetMean(ZqStatModelResult& result) const override;
  double GetMode(ZqStatModelResult& result) const override;
  double GetVariance(ZqStatModelResult& result) const override;
  double GetPercentile(ZqStatModelResult& result, double p) const override;
  double GetCDF(ZqStatModelResult& result, double x, bool checkOutcome) const override;
};

}  // namespace Varimo
