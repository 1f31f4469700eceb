// Smoothers on a predictor column: least squares against numpy's polyfit,
// kernel regression against a direct numpy evaluation, with and without
// leaving a row out (tests/data/smoothers/make_smoother_refs.py), their
// result tables, and their failures.
#include "varimo/smoothers/linear_smoother.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "varimo/foundations/stats_data_types.h"
#include "varimo/tables/column_append.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
namespace T = ZqUnivarLinearSmootherType;

struct Refs {
  std::vector<double> x, y;
  double intercept = 0.0, slope = 0.0;
  std::vector<std::vector<double>> kernel, loo;
};

Refs ReadRefs() {
  Refs refs;
  for (const auto& line : VarimoTest::ReadReferenceLines("smoothers/smoother_refs.txt")) {
    const std::vector<double> v = VarimoTest::ToDoubles(line, 1);
    if (line[0] == "x") refs.x = v;
    if (line[0] == "y") refs.y = v;
    if (line[0] == "ols") refs.intercept = v[0], refs.slope = v[1];
    if (line[0] == "kernel") refs.kernel.push_back(v);
    if (line[0] == "loo") refs.loo.push_back(v);
  }
  return refs;
}

ZqDataTable Table(const Refs& refs) {
  ZqDataTable table("train");
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("x", refs.x)).IsSuccessful());
  EXPECT_TRUE(table.AddColumn(ZqDataTableCol("y", refs.y)).IsSuccessful());
  return table;
}

TEST(LinearSmoother, LeastSquaresAgreesWithNumpy) {
  const Refs refs = ReadRefs();
  const ZqUniVarLinearSmoother ols(T::SimpleLinear, 0, "x", "y", Table(refs), 0);
  ASSERT_TRUE(ols.ModelIsValid()) << ols.GetResultOfConstructor().ReportStatResultDetails();
  ASSERT_EQ(ols.GetModelParams().size(), 2u);
  EXPECT_NEAR(ols.GetModelParams()[0], refs.intercept, 1e-12);
  EXPECT_NEAR(ols.GetModelParams()[1], refs.slope, 1e-12);
  EXPECT_EQ(ols.GetModelParamNames()[1], "slope of linear regression line");
  EXPECT_EQ(ols.GetNameOfUniVarLinearSmoother(), "Simple Linear Regression");
  // Leaving a row out changes nothing for least squares.
  const ZqUnivariateRegressionResult with = ols.GetTrainingSetResults(true);
  const ZqUnivariateRegressionResult without = ols.GetTrainingSetResults(false);
  ZqStatModelResult status(true);
  const ZqDataTableCol& residuals = with.GetColumnFromName(status, "ResidualErrors");
  ASSERT_TRUE(status.IsSuccessful());
  for (std::uint64_t r = 0; r < refs.x.size(); ++r) {
    const double predicted = refs.intercept + refs.slope * refs.x[r];
    EXPECT_NEAR(residuals.GetDouble(r, 0), predicted - refs.y[r], 1e-12);
    EXPECT_EQ(without.GetColumnFromName(status, "PredictedResponses").GetDouble(r, 0),
              with.GetColumnFromName(status, "PredictedResponses").GetDouble(r, 0));
  }
  // Predictor, response, predicted, residual, absolute residual.
  std::vector<std::string> names;
  for (const ZqDataTableCol& col : with.GetRegResultDataTable().GetColumns()) names.push_back(col.GetColumnName());
  EXPECT_EQ(names, (std::vector<std::string>{"x", "y", "PredictedResponses", "ResidualErrors",
                                             "AbsoluteResidualErrors"}));
}

TEST(LinearSmoother, KernelRegressionAgreesWithNumpy) {
  const Refs refs = ReadRefs();
  ZqUniVarLinearSmoother kernel(T::Kernel, ZqKernelFunctionType::Gaussian, "x", "y", Table(refs), 0);
  // No parameter yet: one named, none set, no prediction.
  EXPECT_EQ(kernel.GetNumModelParams(), 1u);
  EXPECT_TRUE(kernel.GetModelParams().empty());
  EXPECT_FALSE(kernel.ModelIsValid());
  EXPECT_EQ(kernel.GetPredictedResponse(1.0), VarimoBadData::BadDouble);
  EXPECT_EQ(kernel.GetModelParamNames()[0], "Parameter for Kernel of type Gaussian Kernel Function");
  EXPECT_EQ(kernel.SetModelParams({1.0, 2.0}).GetFailureType(), F::WrongInputVectorSize);
  for (const std::vector<double>& k : refs.kernel) {
    ASSERT_TRUE(kernel.SetModelParams({k[0]}).IsSuccessful());
    EXPECT_NEAR(kernel.GetPredictedResponse(k[1]), k[2], 1e-12) << k[0] << " " << k[1];
  }
  for (const std::vector<double>& k : refs.loo) {
    ASSERT_TRUE(kernel.SetModelParams({k[0]}).IsSuccessful());
    const auto row = static_cast<unsigned long>(k[1]);
    EXPECT_NEAR(kernel.GetPredictedResponse(refs.x[row], row), k[2], 1e-12);
    const ZqUnivariateRegressionResult loo = kernel.GetTrainingSetResults(true);
    ZqStatModelResult status(true);
    EXPECT_NEAR(loo.GetColumnFromName(status, "PredictedResponses").GetDouble(row, 0), k[2], 1e-12);
  }
  // Far outside a compact kernel every weight is the floor: the plain mean.
  ZqUniVarLinearSmoother box(T::Kernel, ZqKernelFunctionType::BoxCar, "x", "y", Table(refs), 0);
  ASSERT_TRUE(box.SetModelParams({1.0}).IsSuccessful());
  double mean = 0.0;
  for (const double v : refs.y) mean += v / static_cast<double>(refs.y.size());
  EXPECT_NEAR(box.GetPredictedResponse(100.0), mean, 1e-12);
}

TEST(LinearSmoother, TestSetsNullModelsAndFailures) {
  const Refs refs = ReadRefs();
  const ZqUniVarLinearSmoother ols(T::SimpleLinear, 0, "x", "y", Table(refs), 0);
  ZqDataTable test("test");
  ASSERT_TRUE(test.AddColumn(ZqDataTableCol("q", std::vector<double>{1.0, 2.0})).IsSuccessful());
  ASSERT_TRUE(test.AddColumn(ZqDataTableCol("r", std::vector<double>{3.0, 3.0})).IsSuccessful());
  const ZqUnivariateRegressionResult tested = ols.GetTestSetResults("q", "r", test, 0);
  ASSERT_TRUE(tested.GetResultOfRegression().IsSuccessful());
  ZqStatModelResult status(true);
  EXPECT_NEAR(tested.GetColumnFromName(status, "PredictedResponses").GetDouble(1, 0),
              refs.intercept + 2.0 * refs.slope, 1e-12);
  EXPECT_EQ(tested.PrintSummary().rfind("Regression Model: Simple Linear Regression\nResult type: Test Set Results\n",
                                        0),
            0u);
  EXPECT_EQ(VarimoTest::Context(ols.GetTestSetResults("nothing", "r", test, 0).GetResultOfRegression()).back(),
            "ZqUniVarLinearSmootherBase::GetTestSetResults");

  // Types without a class, and unknown kernels, are not valid models.
  const ZqUniVarLinearSmoother spline(T::CubicSpline, 0, "x", "y", Table(refs), 0);
  EXPECT_EQ(spline.GetNameOfUniVarLinearSmoother(), "Unknown");
  EXPECT_FALSE(spline.ModelIsValid());
  EXPECT_EQ(spline.GetTrainingSetResults(false).GetResultOfRegression().GetFailureType(), F::ObjectNotValid);
  ZqUniVarLinearSmoother nullKernel(T::Kernel, 0, "x", "y", Table(refs), 0);
  EXPECT_EQ(VarimoTest::Comments(nullKernel.GetResultOfConstructor()),
            std::vector<std::string>{"Null kernelFunction constructed"});
  // A missing training column fails the set-up of the base.
  const ZqUniVarLinearSmoother missing(T::SimpleLinear, 0, "x", "absent", Table(refs), 0);
  EXPECT_FALSE(missing.ModelIsValid());
  EXPECT_EQ(VarimoTest::Context(missing.GetResultOfConstructor()).back(), "Constructor of ZqUniVarLinearSmootherBase");
  // One usable row: a successful fit of the bad pair.
  ZqDataTable tiny("tiny");
  ASSERT_TRUE(tiny.AddColumn(ZqDataTableCol("x", std::vector<double>{1.0})).IsSuccessful());
  ASSERT_TRUE(tiny.AddColumn(ZqDataTableCol("y", std::vector<double>{2.0})).IsSuccessful());
  const ZqUniVarLinearSmoother one(T::SimpleLinear, 0, "x", "y", tiny, 0);
  EXPECT_TRUE(one.ModelIsValid());
  EXPECT_EQ(one.GetModelParams(), (std::vector<double>{VarimoBadData::BadDouble, VarimoBadData::BadDouble}));

  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Kernel"), 3u);
  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Kernel or Nadaraya-Watson Regression"), 3u);
  EXPECT_EQ(ZqGetLinearSmootherTypeFromName("Spline"), 0u);
  EXPECT_EQ(ZqGetLinearSmootherNameFromType(7),
            "ZqGetLinearSmootherNameFromType: argument out of Range.\nType must be less than 6");
}

}  // namespace
}  // namespace Varimo
