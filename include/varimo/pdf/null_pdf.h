// The null distributions: what a factory gives for a pdf type without a
// class, or a set-up that failed. Every data operation fails with
// NullProbDistFunc and the bad double (or an empty iterator; the marginals
// are null distributions too).
#pragma once

#include "varimo/pdf/pdf.h"

namespace Varimo {

class ZqUniVarNullPDFImpl final : public ZqUniVarPDFImpl {
 public:
  explicit ZqUniVarNullPDFImpl(const std::string& variableName);
  ZqUniVarNullPDFImpl(const std::string& variableName, const ZqRanVarVec& parameters, const ZqRanVarVec& outcomes);

  ZqUniVarNullPDFImpl* CreateCopy() const override { return new ZqUniVarNullPDFImpl(*this); }
  std::string Print(std::size_t limit) const override { return DefaultPrint(limit); }
  double GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(double x, ZqStatModelResult& result, bool checkOutcome) const override;
  double GetMean(ZqStatModelResult& result) const override;
  double GetMode(ZqStatModelResult& result) const override;
  double GetVariance(ZqStatModelResult& result) const override;
  double GetPercentile(double p, ZqStatModelResult& result) const override;
  double GetCDF(double x, ZqStatModelResult& result, bool checkOutcome) const override;
};

class ZqMultiVarNullPDFImpl final : public ZqMultiVarPDFImpl {
 public:
  explicit ZqMultiVarNullPDFImpl(const std::vector<std::string>& variableNames);
  ZqMultiVarNullPDFImpl(const std::vector<std::string>& variableNames, const ZqRanVarVec& parameters,
                        const ZqRanVarVec& outcomes);

  ZqMultiVarNullPDFImpl* CreateCopy() const override { return new ZqMultiVarNullPDFImpl(*this); }
  std::string Print(std::size_t limit) const override { return DefaultPrint(limit); }
  Corvane::ZqIter<const double> GetRandomOutcome(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine) override;
  double GetDensity(const std::vector<double>& x, ZqStatModelResult& result, bool checkOutcome) const override;
  Corvane::ZqIter<const double> GetMean(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetCovariance(ZqStatModelResult& result) const override;
  Corvane::ZqIter<const double> GetMode(ZqStatModelResult& result) const override;
  ZqMultiVarPDF GetMultivariateMarginal(const std::vector<std::string>& names,
                                        ZqStatModelResult& result) const override;
  ZqUniVarPDF GetUnivariateMarginal(const std::string& name, ZqStatModelResult& result) const override;
};

}  // namespace Varimo
