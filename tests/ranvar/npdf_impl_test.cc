#include "varimo/pdf/npdf_impl.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ranvar_test_support.h"
#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {
namespace {

using namespace RanVarTest;

std::vector<nZqRanVar> GaussRanVars(double mean, double variance) {
  std::vector<nZqRanVar> ranVars;
  EXPECT_TRUE(SetupUniVarGaussianRanVars(ranVars, mean, variance).IsSuccessful());
  return ranVars;
}

TEST(nZqProbDistFuncImpl, DefaultHasNoVariablesAndTheNamesOfTypes) {
  const nZqProbDistFuncImpl pdf;
  EXPECT_EQ(pdf.GetPDFType(), 0u);
  EXPECT_EQ(pdf.GetPDFName(), "Unknown PDF");
  EXPECT_EQ(pdf.GetNumRanVars(), 0u);
  ZqStatModelResult result(true);
  const nZqRanVar& found = pdf.GetRanVar(result, 2, 0);
  EXPECT_EQ(Report(result), (ResultReport{false, F::RanVarNotFound, {"nZqProbDistFuncImpl::GetRanVar"}, {}}));
  EXPECT_EQ(&found, &pdf.BadRanVar());
  EXPECT_TRUE(found.RanVarDataIsReadOnly());
  EXPECT_EQ(found.GetRanVarTypeName(), "Null Random Variable::Unknown Minor Type");

  EXPECT_EQ(nZqProbDistFuncImpl(2, {}).GetPDFName(), "UniVariate Gaussian");
  EXPECT_EQ(nZqProbDistFuncImpl(21, {}).GetPDFName(), "UniVariate Continuous Valued Random Sample");
  EXPECT_EQ(nZqProbDistFuncImpl(26, {}).GetPDFName(), "MultiVariate Mixture");
  EXPECT_EQ(nZqProbDistFuncImpl(27, {}).GetPDFName(), "Unknown PDF");
}

TEST(nZqProbDistFuncImpl, GetRanVarFindsTheFirstOfItsTypeSharingTheCallersValue) {
  std::vector<nZqRanVar> ranVars = GaussRanVars(1.0, 2.0);
  ranVars.push_back(nZqRanVar(3, 2, "second variance", ZqCheckRanVarConstraints({}, {}), 5.0));
  const nZqProbDistFuncImpl pdf(2, ranVars);
  EXPECT_EQ(pdf.GetNumRanVars(), 9u);

  ZqStatModelResult result;  // a failure until the lookup succeeds
  const nZqRanVar& variance = pdf.GetRanVar(result, 3, 2);
  EXPECT_EQ(Report(result), Success());
  EXPECT_EQ(variance.GetRanVarTypeName(), "Univariate Gaussian Random Variable::Variance");
  ranVars[1].LoadRanVarVal(4.0);
  EXPECT_EQ(variance.GetRanVarVal(), 4.0);
  EXPECT_EQ(ranVars[1].GetRanVarRefCount(), 2u);

  // Asking for (minor, major) the wrong way round finds nothing.
  pdf.GetRanVar(result, 2, 3);
  EXPECT_EQ(result.GetFailureType(), F::RanVarNotFound);
}

TEST(nZqProbDistFuncImpl, PrintRanVarsFramesEachVariable) {
  const std::string banner = "\n%%%%%%%%%%%%%%%%%%%%%%%%%%%%%\n";
  EXPECT_EQ(nZqProbDistFuncImpl().PrintRanVars(5), banner);
  const nZqProbDistFuncImpl pdf(1, {nZqRanVar(), nZqRanVar()});
  const std::string one = nZqRanVar().Print(5) + "\n---------------------\n";
  EXPECT_EQ(pdf.PrintRanVars(5), banner + one + one);
}

TEST(nZqUniVarNullPDFImpl, AnswersEveryRequestWithTheBadValue) {
  nZqUniVarNullPDFImpl null("x", GaussRanVars(0.0, 1.0));
  EXPECT_EQ(null.GetPDFType(), 1u);
  EXPECT_EQ(null.GetPDFName(), "NullPDF");
  EXPECT_EQ(null.GetVariableName(), "x");
  EXPECT_EQ(null.GetNumRanVars(), 8u);

  Numarc::ZqRanNumEngine engine(7);
  const std::vector<std::pair<std::string, std::function<double(ZqStatModelResult&)>>> requests = {
      {"GetRandomOutcome", [&](ZqStatModelResult& r) { return null.GetRandomOutcome(r, engine); }},
      {"GetDensity", [&](ZqStatModelResult& r) { return null.GetDensity(r, 0.0, true); }},
      {"GetMean", [&](ZqStatModelResult& r) { return null.GetMean(r); }},
      {"GetMode", [&](ZqStatModelResult& r) { return null.GetMode(r); }},
      {"GetVariance", [&](ZqStatModelResult& r) { return null.GetVariance(r); }},
      {"GetPercentile", [&](ZqStatModelResult& r) { return null.GetPercentile(r, 0.5); }},
      {"GetCDF", [&](ZqStatModelResult& r) { return null.GetCDF(r, 0.0, false); }},
  };
  for (const auto& [method, request] : requests) {
    // An earlier failure in the result is replaced, comments and all.
    ZqStatModelResult result = ZqMakeFailedResult(F::NoData, "Earlier", "earlier comment");
    EXPECT_EQ(request(result), kBad) << method;
    EXPECT_EQ(Report(result), (ResultReport{false, F::NullProbDistFunc, {"ZqUniVarNullPDFImpl::" + method}, {}}));
  }

  // Through the base, as callers of the frame hold it.
  const nZqUniVarPDFImpl& base = null;
  ZqStatModelResult result(true);
  EXPECT_EQ(base.GetVariance(result), kBad);
  EXPECT_EQ(VarimoTest::Context(result), std::vector<std::string>{"ZqUniVarNullPDFImpl::GetVariance"});

  // The default has no name and no variables.
  const nZqUniVarNullPDFImpl unnamed;
  EXPECT_EQ(unnamed.GetVariableName(), "");
  EXPECT_EQ(unnamed.GetNumRanVars(), 0u);
  EXPECT_EQ(unnamed.GetPDFType(), 1u);
}

}  // namespace
}  // namespace Varimo
