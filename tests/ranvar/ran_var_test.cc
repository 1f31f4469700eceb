// Random variables: their checks of values and of other descriptions, the
// texts they print, and the set-up tables that build a distribution's
// parameter and outcome lists.
#include "varimo/ranvar/ran_var.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "result_support.h"
#include "varimo/ranvar/ran_var_setup.h"

namespace Varimo {
namespace {

using VarimoTest::Comments;
using VarimoTest::Context;
namespace F = ZqStatModelFailureType;
using Strings = std::vector<std::string>;

// A scalar Beta outcome in [0, 1].
ZqRanVar BetaOutcome(double value) { return ZqRanVar(9, 2, 2, "Beta Outcome", 1, 1, 6, value, 1, 0.0, 1.0, 0.0); }

// A symmetric matrix of the given dimension with a strict lower bound 0:
// positive definite.
ZqRanVar Precision(std::size_t n, const std::vector<double>& values) {
  return ZqRanVar(3, 1, 2, "Multivariate Gaussian Precision Matrix", 1, 3, 3, values, n, 0.0, 0.0, 0.0, false);
}

TEST(RanVar, ValuesAreCheckedAgainstTypeShapeAndBounds) {
  ZqRanVar beta = BetaOutcome(0.5);
  // Unchecked, anything goes in; checked, a bad value is refused and the
  // old one stays.
  EXPECT_TRUE(beta.SetRanVarVal(1.5, false).IsSuccessful());
  EXPECT_EQ(beta.GetValues(), std::vector<double>{1.5});
  ASSERT_TRUE(beta.SetRanVarVal(0.25, true).IsSuccessful());
  const ZqStatModelResult refused = beta.SetRanVarVal(1.5, true);
  EXPECT_EQ(refused.GetFailureType(), F::UpperBoundViolated);
  EXPECT_EQ(Context(refused), (Strings{"ZqRanVar::CheckRanVarValConstraints", "ZqRanVar::CheckIfRanVarValsAreOk",
                                       "ZqRanVar::CheckIfRanVarValIsOk", "ZqRanVar::SetRanVarVal"}));
  EXPECT_EQ(Comments(refused),
            (Strings{"Random Var must be Bounded Above and Below", "Upper Bound: 1; ran var element: 1.5"}));
  EXPECT_EQ(beta.GetValues(), std::vector<double>{0.25});
  EXPECT_EQ(beta.SetRanVarVal(-0.1, true).GetFailureType(), F::LowerBoundViolated);
  // The bounds themselves belong to a closed interval.
  EXPECT_TRUE(beta.CheckIfRanVarValIsOk(0.0).IsSuccessful());
  EXPECT_TRUE(beta.CheckIfRanVarValIsOk(1.0).IsSuccessful());
  // A scalar takes one value.
  const ZqStatModelResult two = beta.SetRanVarVals({0.1, 0.2}, true);
  EXPECT_EQ(two.GetFailureType(), F::ScalarArgumentRequired);
  EXPECT_EQ(Comments(two), Strings{"Ran var has 2 components"});

  // Integers within single precision's epsilon of one.
  ZqRanVar size(17, 1, 0, "Binomial Sample Size", 2, 1, 3, 3.0, 1, 0.0, 0.0, 0.0);
  EXPECT_TRUE(size.CheckIfRanVarValIsOk(3.00000001).IsSuccessful());
  const ZqStatModelResult notInteger = size.CheckIfRanVarValIsOk(3.001);
  EXPECT_EQ(notInteger.GetFailureType(), F::IntegerArgumentRequired);
  EXPECT_EQ(Comments(notInteger), Strings{"Argument value is 3.001"});
  // A strict lower bound refuses the bound itself.
  EXPECT_EQ(size.CheckIfRanVarValIsOk(0.0).GetFailureType(), F::LowerBoundViolated);

  // A matrix is one value (times the identity), a diagonal or in full.
  const ZqRanVar matrix = Precision(3, {1.0});
  EXPECT_TRUE(matrix.CheckIfRanVarValsAreOk({2.0}).IsSuccessful());
  EXPECT_TRUE(matrix.CheckIfRanVarValsAreOk({1.0, 2.0, 3.0}).IsSuccessful());
  EXPECT_TRUE(matrix.CheckIfRanVarValsAreOk({2, 1, 0, 1, 2, 1, 0, 1, 2}).IsSuccessful());
  const ZqStatModelResult wrongSize = matrix.CheckIfRanVarValsAreOk({1.0, 2.0});
  EXPECT_EQ(wrongSize.GetFailureType(), F::WrongInputMatrixSize);
  EXPECT_EQ(Comments(wrongSize), Strings{"matrix size: 2; model dimension: 3"});
  // ...and must be positive definite for its strict bound.
  const ZqStatModelResult indefinite = matrix.CheckIfRanVarValsAreOk({1, 2, 0, 2, 1, 0, 0, 0, 1});
  EXPECT_EQ(indefinite.GetFailureType(), F::SingularMatrix);
  EXPECT_EQ(Context(indefinite).back(), "ZqRanVar::CheckIfRanVarValsAreOk");
  EXPECT_EQ(Context(indefinite)[Context(indefinite).size() - 2], "ZqRanVar::CheckMatrixConstraints");
  // A matrix with an upper bound has no meaning.
  const ZqRanVar bounded(3, 1, 2, "m", 1, 3, 4, std::vector<double>{1.0}, 2, 0.0, 1.0, 0.0, false);
  EXPECT_EQ(bounded.CheckIfRanVarValsAreOk({0.5}).GetFailureType(), F::InappropriateConstraint);

  // Vectors hold the model dimension of values, or a multiple when they
  // hold many observations.
  const ZqRanVar vector(3, 2, 3, "v", 1, 2, 1, std::vector<double>{0, 0}, 2, 0, 0, 0, false);
  EXPECT_EQ(Comments(vector.CheckIfRanVarValsAreOk({1, 2, 3})), Strings{"vector size: 3; model dimension: 2"});
  const ZqRanVar sample(3, 2, 3, "v", 1, 2, 1, std::vector<double>{0, 0}, 2, 0, 0, 0, true);
  EXPECT_TRUE(sample.CheckIfRanVarValsAreOk({1, 2, 3, 4}).IsSuccessful());

  // A vector that sums to a constant, within single precision's epsilon.
  const ZqRanVar probabilities(25, 1, 3, "p", 1, 2, 7, std::vector<double>{0.5, 0.5}, 2, 0.0, 1.0, 1.0, false);
  EXPECT_TRUE(probabilities.CheckIfRanVarValsAreOk({0.25, 0.75 + 1e-8}).IsSuccessful());
  const ZqStatModelResult sum = probabilities.CheckIfRanVarValsAreOk({0.25, 0.7});
  EXPECT_EQ(sum.GetFailureType(), F::ArgumentValueWrong);
  EXPECT_EQ(Comments(sum), Strings{"Argument Var Sum Constraint: 0.95 Object Var Sum Constraint: 1"});

  EXPECT_FALSE(ZqRanVar(9, 2, 2, "x", 1, 1, 6, std::vector<double>{}, 1, 0, 1, 0, false).GetRanVarVals());
}

TEST(RanVar, DescriptionsAreComparedInOrderWithTheirTexts) {
  const ZqRanVar beta = BetaOutcome(0.5);
  EXPECT_TRUE(beta.CheckIfRanVarIsOk(BetaOutcome(0.75)).IsSuccessful());

  const ZqStatModelResult pdf = beta.CheckIfRanVarIsOk(ZqRanVar(6, 2, 2, "Gamma Outcome", 1, 1, 3, 1.0, 1, 0, 0, 0));
  EXPECT_EQ(pdf.GetFailureType(), F::ArgumentNameWrong);
  EXPECT_EQ(Context(pdf), (Strings{"ZqRanVar::CheckPdfType", "ZqRanVar::CheckIfRanVarIsOk"}));
  EXPECT_EQ(Comments(pdf), Strings{"Argument Type,name 6 Gamma; Object pdfType, Name 9 Beta"});

  const ZqStatModelResult package = beta.CheckPackageType(1);
  EXPECT_EQ(Context(package), Strings{"ZqRanVar::CheckPackageName"});
  EXPECT_EQ(Comments(package), Strings{"Argument Type,name 1 Parameters; Object packageType, Name 2 Outcomes"});

  // Only the code of the variable counts, not its name.
  EXPECT_TRUE(beta.CheckRanVarTypeName(2, "another name").IsSuccessful());
  EXPECT_EQ(Comments(beta.CheckRanVarTypeName(1, "Beta shape Beta")),
            Strings{"Argument Type,name 1 Beta shape Beta; Object RanVar Type, Name 2 Beta Outcome"});

  EXPECT_EQ(Comments(beta.CheckDataType(4)), Strings{"Num Data Types = 4; Argument is 4"});
  EXPECT_EQ(beta.CheckDataType(2).GetFailureType(), F::ArgumentTypeWrong);
  EXPECT_EQ(Comments(beta.CheckDataType(2)),
            Strings{"Argument: Random Var Data Type is Integer Valued Object: Random Var Data Type is Continuous"});
  // The constraint code reports under the dimensional type's names.
  const ZqStatModelResult constraint = beta.CheckConstraintType(8);
  EXPECT_EQ(constraint.GetFailureType(), F::ArgumentOutOfRange);
  EXPECT_EQ(Context(constraint), Strings{"ZqRanVar::CheckDimensionalType"});
  EXPECT_EQ(Comments(constraint), Strings{"Num Dimensional Types = 8; Argument is 8"});

  // Bounds are compared when this variable has them, to single precision.
  EXPECT_TRUE(beta.CheckIfRanVarIsOk(ZqRanVar(9, 2, 2, "Beta Outcome", 1, 1, 6, 0.5, 1, 1e-8, 1.0, 0.0))
                  .IsSuccessful());
  const ZqStatModelResult upper =
      beta.CheckIfRanVarIsOk(ZqRanVar(9, 2, 2, "Beta Outcome", 1, 1, 6, 0.5, 1, 0.0, 2.0, 0.0));
  EXPECT_EQ(Context(upper), (Strings{"ZqRanVar::CheckUpperBound", "ZqRanVar::CheckIfRanVarIsOk"}));
  EXPECT_EQ(Comments(upper), Strings{"Argument Upper Bound: 2 Object Upper Bound: 1"});
  EXPECT_EQ(Comments(beta.CheckModelDimension(2)), Strings{"Argument model dimension 2; Object model dimension 1"});

  // Copying values from another description checks it, then takes them.
  ZqRanVar target = BetaOutcome(0.5);
  EXPECT_FALSE(target.SetRanVarVals(BetaOutcome(2.0), true).IsSuccessful());
  EXPECT_EQ(target.GetValues(), std::vector<double>{0.5});
  ASSERT_TRUE(target.SetRanVarVals(BetaOutcome(0.125), true).IsSuccessful());
  EXPECT_EQ(target.GetValues(), std::vector<double>{0.125});
  ASSERT_TRUE(target.SetRanVarVals(target, true).IsSuccessful());
  EXPECT_EQ(target.GetValues(), std::vector<double>{0.125});
}

TEST(RanVar, PrintTexts) {
  EXPECT_EQ(BetaOutcome(0.5).Print(10),
            "Pdf Name: Beta\n"
            "Ran Var Package Name: Outcomes\n"
            "Ran Var Name: Beta Outcome\n"
            "ran var type = 2\n"
            "Random Var Data Type is Continuous\n"
            "Random Var Dimensional Type is Scalar\n"
            "Random Var must be Bounded Above and Below; Lower Bound: 0 ; Upper Bound: 1 \n"
            "Random Var Values: 0.5 \n");
  EXPECT_EQ(Precision(3, {1.0}).PrintDimensionalType(),
            "Random Var Dimensional Type is Symmetric Matrix, Scalar times Identity, of dimension 3\n");
  EXPECT_EQ(Precision(3, {1.0, 2.0, 3.0}).PrintDimensionalType(),
            "Random Var Dimensional Type is Symmetric Matrix, diagonal, of dimension 3\n");
  EXPECT_EQ(Precision(2, {1, 0, 0, 1}).PrintDimensionalType(),
            "Random Var Dimensional Type is Symmetric Matrix, of dimension 2\n");
  const ZqRanVar vector(3, 2, 3, "v", 1, 2, 1, std::vector<double>{1, 2, 3}, 3, 0, 0, 0, false);
  EXPECT_EQ(vector.PrintDimensionalType(), "Random Var Dimensional Type is Vector of dimension 3\n");
  // At the limit the notice comes, even with nothing left.
  EXPECT_EQ(vector.PrintValues(2), "Random Var Values: 1 2 ..... (1 more)\n");
  EXPECT_EQ(vector.PrintValues(3), "Random Var Values: 1 2 3 ..... (0 more)\n");
  EXPECT_EQ(vector.PrintValues(4), "Random Var Values: 1 2 3 \n");
}

// ------------------------------------------------------------ set-up tables

TEST(RanVarSetup, ParametersAndOutcomesFromTheTables) {
  ZqRanVarVec parameters, outcomes;
  ASSERT_TRUE(ZqUniVarGaussRanVars::SetupRanVarVecs(1.5, 4.0, parameters, outcomes).IsSuccessful());
  ASSERT_EQ(parameters.size(), 2u);
  EXPECT_EQ(parameters[0].GetRanVarName(), "Univariate Gaussian Mean");
  EXPECT_EQ(parameters[1].GetValues(), std::vector<double>{0.25});  // the inverse variance
  EXPECT_EQ(parameters[1].CheckIfRanVarValIsOk(0.0).GetFailureType(), F::LowerBoundViolated);  // strictly positive
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].GetPdfName(), "UniVariate Gaussian");

  // A refused set-up leaves both lists as they were.
  const ZqStatModelResult gamma = ZqGammaRanVars::SetupRanVarVecs(2.0, 0.0, parameters, outcomes);
  EXPECT_EQ(gamma.GetFailureType(), F::SingularScaleOrCovariance);
  EXPECT_EQ(Context(gamma), Strings{"ZqGammaRanVars::SetupRanVarVecs"});
  EXPECT_EQ(parameters[0].GetRanVarName(), "Univariate Gaussian Mean");
  const ZqStatModelResult beta = ZqBetaRanVars::SetupRanVarVecs(0.0, 2.0, parameters, outcomes);
  EXPECT_EQ(beta.GetFailureType(), F::LowerBoundViolated);
  EXPECT_EQ(Comments(beta), (Strings{"alpha & beta required to be positive: ", "argument values = 0 2"}));
  EXPECT_EQ(Comments(ZqSnedecorsFRanVars::SetupRanVarVecs(3.0, -1.0, parameters, outcomes)),
            (Strings{"Numerator & Denominator Degrees of freedom required to be positive: ",
                     "argument values = 3 -1"}));
  EXPECT_EQ(outcomes[0].GetPdfName(), "UniVariate Gaussian");

  // The Beta outcome lies in [0, 1].
  ASSERT_TRUE(ZqBetaRanVars::SetupRanVarVecs(2.0, 3.0, parameters, outcomes).IsSuccessful());
  EXPECT_TRUE(outcomes[0].HasLowerBound() && outcomes[0].HasUpperBound());
  EXPECT_EQ(outcomes[0].GetUpperBound(), 1.0);

  // The Generalized Extreme Value support ends at location - scale / shape.
  ASSERT_TRUE(ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs(0.0, 1.0, 0.5, parameters, outcomes).IsSuccessful());
  EXPECT_EQ(outcomes[0].CheckIfRanVarValIsOk(-2.0).GetFailureType(), F::LowerBoundViolated);
  EXPECT_TRUE(outcomes[0].CheckIfRanVarValIsOk(-1.999).IsSuccessful());
  ASSERT_TRUE(ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs(1.0, 2.0, -0.5, parameters, outcomes).IsSuccessful());
  EXPECT_TRUE(outcomes[0].HasStrictUpperBound());
  EXPECT_EQ(outcomes[0].GetUpperBound(), 5.0);
  ASSERT_TRUE(ZqGeneralizedExtremeValueRanVars::SetupRanVarVecs(1.0, 2.0, 0.0, parameters, outcomes).IsSuccessful());
  EXPECT_TRUE(outcomes[0].IsUnConstrained());
}

TEST(RanVarSetup, BinomialSampleMixtureAndGeneric) {
  ZqRanVarVec parameters, outcomes;
  EXPECT_EQ(ZqBinomialRanVars::SetupRanVarVecs(0.0, 0.5, parameters, outcomes).GetFailureType(),
            F::LowerBoundViolated);
  const ZqStatModelResult fraction = ZqBinomialRanVars::SetupRanVarVecs(2.5, 0.5, parameters, outcomes);
  EXPECT_EQ(fraction.GetFailureType(), F::IntegerArgumentRequired);
  EXPECT_EQ(Comments(fraction), (Strings{"sampleSize required to be an integer: ", "argument value = 2.5"}));
  EXPECT_EQ(ZqBinomialRanVars::SetupRanVarVecs(4.0, 1.5, parameters, outcomes).GetFailureType(),
            F::UpperBoundViolated);
  EXPECT_EQ(ZqBinomialRanVars::SetupRanVarVecs(4.0, -0.5, parameters, outcomes).GetFailureType(),
            F::LowerBoundViolated);
  ASSERT_TRUE(ZqBinomialRanVars::SetupRanVarVecs(4.0, 0.5, parameters, outcomes).IsSuccessful());
  EXPECT_EQ(outcomes[0].GetUpperBound(), 4.0);
  EXPECT_TRUE(outcomes[0].CheckIfRanVarValIsOk(4.0).IsSuccessful());
  EXPECT_FALSE(outcomes[0].CheckIfRanVarValIsOk(5.0).IsSuccessful());
  EXPECT_FALSE(parameters[1].CheckIfRanVarValIsOk(1.5).IsSuccessful());

  ASSERT_TRUE(ZqUniVarContValRandomSampleRanVars::SetupRanVarVecs(2, {3.0, -1.0, 2.0}, parameters, outcomes)
                  .IsSuccessful());
  ASSERT_EQ(parameters.size(), 4u);
  EXPECT_EQ(parameters[0].GetValues(), std::vector<double>{3.0});
  EXPECT_EQ(parameters[1].GetValues(), std::vector<double>{-1.0});
  EXPECT_EQ(parameters[2].GetValues(), std::vector<double>{3.0});
  EXPECT_EQ(parameters[3].GetValues(), std::vector<double>{2.0});
  EXPECT_EQ(outcomes[0].GetValues(), (std::vector<double>{-1.0, 2.0, 3.0}));
  EXPECT_TRUE(outcomes[0].IsMultiValued());
  EXPECT_EQ(outcomes[0].GetPdfType(), 21u);
  EXPECT_EQ(Comments(ZqUniVarContValRandomSampleRanVars::SetupRanVarVecs(27, {1.0}, parameters, outcomes)),
            (Strings{"pdfTypeDrawnFrom must be less than: 27", "argument value = 27"}));

  const ZqStatModelResult mixture =
      ZqUniVarMixtureRanVars::SetupRanVarVecs(2, {2, 2}, {2}, {0.5, 0.5}, parameters, outcomes);
  EXPECT_EQ(mixture.GetFailureType(), F::MismatchBetweenInputVecSizes);
  EXPECT_EQ(Context(mixture), Strings{"ZqUniVarMixtureRanVars:::SetupRanVarVecs"});
  ASSERT_TRUE(ZqUniVarMixtureRanVars::SetupRanVarVecs(2, {2, 4}, {2, 3}, {0.25, 0.75}, parameters, outcomes)
                  .IsSuccessful());
  EXPECT_EQ(parameters[1].GetValues(), (std::vector<double>{2.0, 4.0}));
  EXPECT_EQ(parameters[1].GetRanVarName(), "Univariate PDF Typesa of Components");
  EXPECT_EQ(outcomes[0].GetRanVarType(), 4u);

  ASSERT_TRUE(ZqUniVarGenericRanVars::SetupRanVarVecs(4, {3.0, 1.0, 2.0}, parameters, outcomes).IsSuccessful());
  EXPECT_EQ(outcomes[0].GetPdfType(), 4u);
  EXPECT_EQ(ZqUniVarGenericRanVars::SetupRanVarVecs(2, {1.0}, parameters, outcomes).GetFailureType(),
            F::WrongNumParameters);
  EXPECT_EQ(ZqUniVarGenericRanVars::SetupRanVarVecs(6, {1.0, 1.0}, parameters, outcomes).GetFailureType(),
            F::NotYetImplemented);
  const ZqStatModelResult inner = ZqUniVarGenericRanVars::SetupRanVarVecs(2, {0.0, -1.0}, parameters, outcomes);
  EXPECT_EQ(Context(inner),
            (Strings{"ZqUniVarGaussRanVars::SetupRanVarVecs", "ZqUniVarGenericRanVars:::SetupRanVarVecs"}));
}

TEST(RanVarSetup, MultivariateListsHoldThePrecision) {
  ZqRanVarVec parameters, outcomes;
  // The inverse of [[4, 2], [2, 2]] is [[0.5, -0.5], [-0.5, 1]].
  ASSERT_TRUE(ZqMultiVarGaussRanVars::SetupRanVarVecs({1.0, 2.0}, {4, 2, 2, 2}, parameters, outcomes).IsSuccessful());
  ASSERT_EQ(parameters.size(), 3u);
  EXPECT_EQ(parameters[0].GetModelDimension(), 2u);
  EXPECT_EQ(parameters[1].GetValues(), std::vector<double>{4.0});
  ASSERT_EQ(parameters[2].GetNumRanVarVals(), 4u);
  const std::vector<double> expected{0.5, -0.5, -0.5, 1.0};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(parameters[2].GetValues()[i], expected[i], 1e-15);
  EXPECT_TRUE(parameters[2].CheckIfRanVarValsAreOk(parameters[2].GetValues()).IsSuccessful());
  EXPECT_EQ(outcomes[0].GetValues(), (std::vector<double>{0.0, 0.0}));
  EXPECT_TRUE(outcomes[0].IsVector());

  const ZqStatModelResult singular =
      ZqMultiVarStudentsTRanVars::SetupRanVarVecs(3.0, {0.0, 0.0}, {1, 2, 2, 1}, parameters, outcomes);
  EXPECT_EQ(singular.GetFailureType(), F::SingularMatrix);
  EXPECT_EQ(Context(singular).back(), "ZqMultiVarStudentsTRanVars::SetupRanVarVecs");
  EXPECT_EQ(outcomes[0].GetPdfType(), 3u);  // untouched
  ASSERT_TRUE(
      ZqMultiVarStudentsTRanVars::SetupRanVarVecs(3.0, {0.0, 0.0}, {2.0}, parameters, outcomes).IsSuccessful());
  EXPECT_EQ(parameters[3].GetValues(), std::vector<double>{0.5});
  EXPECT_EQ(outcomes[0].GetRanVarType(), 4u);
}

}  // namespace
}  // namespace Varimo
