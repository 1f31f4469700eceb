#include "varimo/ranvar/ran_var_constraints.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "ranvar_test_support.h"

namespace Varimo {
namespace {

using namespace RanVarTest;
namespace Kind = ZqRanVarConstraintKind;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

constexpr const char* kPositive = "ZqElementIsPositive::CheckConstraint";
constexpr const char* kNonNegative = "ZqElementIsNonNegative::CheckConstraint";
constexpr const char* kSum = "ZqRanVarVectorHasSumVal::CheckConstraint";
constexpr const char* kElemWise = "ZqCheckRanVarConstraints::CheckElemWiseConstraints";
constexpr const char* kGlobal = "ZqCheckRanVarConstraints::CheckGlobalConstraints";
constexpr const char* kCheck = "ZqCheckRanVarConstraints::CheckConstraints";

ZqCheckRanVarConstraints Checker(std::vector<ZqRanVarGlobalConstraint> global,
                                 std::vector<ZqRanVarElemWiseConstraint> elemWise) {
  return ZqCheckRanVarConstraints(global, elemWise);
}

TEST(ElementBounds, PositiveAndNonNegativeAtTheirBounds) {
  const ZqElementIsPositive positive;
  EXPECT_EQ(Report(positive.CheckConstraint(0.0)),
            (ResultReport{false, F::LowerBoundViolated, {kPositive}, {"Argument value = 0; should be positive!\n"}}));
  EXPECT_EQ(Report(positive.CheckConstraint(-0.0)).type, F::LowerBoundViolated);
  EXPECT_EQ(Report(positive.CheckConstraint(-2.5)).comments,
            std::vector<std::string>{"Argument value = -2.5; should be positive!\n"});
  EXPECT_EQ(Report(positive.CheckConstraint(kTiny)), Success());
  EXPECT_EQ(Report(positive.CheckConstraint(kNaN)), Success());

  // Non-negative accepts zero of either sign.
  const ZqElementIsNonNegative nonNegative;
  EXPECT_EQ(Report(nonNegative.CheckConstraint(0.0)), Success());
  EXPECT_EQ(Report(nonNegative.CheckConstraint(-0.0)), Success());
  EXPECT_EQ(Report(nonNegative.CheckConstraint(kNaN)), Success());
  EXPECT_EQ(Report(nonNegative.CheckConstraint(-kTiny)),
            (ResultReport{false,
                          F::LowerBoundViolated,
                          {kNonNegative},
                          {"Argument value = -4.94066e-324; should be non-negative!\n"}}));
}

TEST(ZqRanVarVectorHasSumVal, AcceptsWithinToleranceInclusiveAndRefusesMatrices) {
  const ZqRanVarVectorHasSumVal sumsToOne(1.0, 1e-10);
  EXPECT_EQ(Report(sumsToOne.CheckConstraint(Vec({0.5, 0.5}))), Success());
  EXPECT_EQ(Report(sumsToOne.CheckConstraint(Vec({0.5, 0.4999}))),
            (ResultReport{false,
                          F::SumOfArgumentsWrong,
                          {kSum},
                          {"Vector sums to = 0.9999; Expected sum = 1; Tolerance = 1e-10\n"}}));
  // Binary fractions, so that the distance to the sum is exactly the tolerance.
  const ZqRanVarVectorHasSumVal loose(1.0, 0.25);
  EXPECT_EQ(Report(loose.CheckConstraint(Vec({0.5, 0.75}))), Success());
  EXPECT_EQ(Report(loose.CheckConstraint(Vec({0.25, 0.5}))), Success());
  EXPECT_EQ(Report(loose.CheckConstraint(Vec({0.5, 0.75, 0.0078125}))).type, F::SumOfArgumentsWrong);
  EXPECT_EQ(Report(loose.CheckConstraint(Vec({0.5, kNaN}))), Success());

  // An empty vector sums to zero.
  EXPECT_EQ(Report(ZqRanVarVectorHasSumVal(0.0, 1e-10).CheckConstraint(Eigen::VectorXd())), Success());
  EXPECT_EQ(Report(ZqRanVarVectorHasSumVal(1.0, 1e-10).CheckConstraint(Eigen::VectorXd())).comments,
            std::vector<std::string>{"Vector sums to = 0; Expected sum = 1; Tolerance = 1e-10\n"});
  // Even a matrix whose elements sum to the value.
  EXPECT_EQ(Report(ZqRanVarVectorHasSumVal(1.0, 1e-10).CheckConstraint(Filled(1, 1, 1.0))),
            (ResultReport{false, F::VectorArgumentRequired, {kSum}, {"Argument is a Matrix"}}));
}

TEST(ConstraintFactories, KindsAndParameters) {
  EXPECT_EQ(ZqRanVarElemWiseConstraint().Print(), "This is an Element-Wise Null Constraint\n");
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::Null).Print(), "This is an Element-Wise Null Constraint\n");
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::ElementIsPositive).Print(),
            "ZqElementIsPositive: asserts value is positive\n");
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::ElementIsNonNegative).Print(),
            "ZqElementIsNonNegative: asserts value is non-negative\n");
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::VectorHasSumVal).Print(), "This is an Element-Wise Null Constraint\n");
  // No element-wise constraint takes a parameter.
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::ElementIsPositive, 1.0).Print(),
            "This is an Element-Wise Null Constraint\n");
  EXPECT_EQ(ZqRanVarElemWiseConstraint(Kind::ElementIsPositive, 1.0, 2.0).Print(),
            "This is an Element-Wise Null Constraint\n");

  EXPECT_EQ(ZqRanVarGlobalConstraint().Print(), "This is a Null Global Constraint\n");
  EXPECT_EQ(ZqRanVarGlobalConstraint(Kind::VectorHasSumVal).Print(), "This is a Null Global Constraint\n");
  EXPECT_EQ(ZqRanVarGlobalConstraint(Kind::ElementIsPositive, 1.0).Print(), "This is a Null Global Constraint\n");
  EXPECT_EQ(ZqRanVarGlobalConstraint(Kind::VectorHasSumVal, 1.0).Print(),
            "ZqRanVarVectorHasSumVal: asserts elements sum to 1(tol: 1e-10)\n");
  EXPECT_EQ(ZqRanVarGlobalConstraint(Kind::VectorHasSumVal, 2.5, 0.125).Print(),
            "ZqRanVarVectorHasSumVal: asserts elements sum to 2.5(tol: 0.125)\n");
  EXPECT_EQ(ZqRanVarGlobalConstraint(4, 2.5, 0.125).Print(), "This is a Null Global Constraint\n");
}

TEST(ConstraintHandles, CopiesAreDeepAndOutliveTheirSource) {
  auto* source = new ZqRanVarGlobalConstraint(Kind::VectorHasSumVal, 1.0, 0.5);
  ZqRanVarGlobalConstraint copy(*source);
  ZqRanVarGlobalConstraint assigned;
  assigned = *source;
  delete source;
  EXPECT_EQ(Report(copy.CheckConstraint(Vec({1.25}))), Success());
  EXPECT_EQ(Report(assigned.CheckConstraint(Vec({2.0}))).type, F::SumOfArgumentsWrong);
  assigned = assigned;
  EXPECT_EQ(assigned.Print(), "ZqRanVarVectorHasSumVal: asserts elements sum to 1(tol: 0.5)\n");

  // So are those of a whole set of constraints.
  auto* checks = new ZqCheckRanVarConstraints({}, {ZqRanVarElemWiseConstraint(Kind::ElementIsPositive)});
  ZqCheckRanVarConstraints* checksCopy = checks->CreateCopy();
  ZqCheckRanVarConstraints assignedChecks;
  assignedChecks = *checks;
  delete checks;
  EXPECT_EQ(Report(checksCopy->CheckConstraints(0.0)).type, F::LowerBoundViolated);
  EXPECT_EQ(Report(assignedChecks.CheckConstraints(1.0)), Success());
  assignedChecks = assignedChecks;
  EXPECT_EQ(Report(assignedChecks.CheckConstraints(0.0)).type, F::LowerBoundViolated);
  delete checksCopy;
}

TEST(ZqCheckRanVarConstraints, DefaultRefusesEverythingEmptyListsAcceptEverything) {
  const ZqCheckRanVarConstraints unset;
  EXPECT_EQ(Report(unset.CheckConstraints(1.0)),
            (ResultReport{false, F::ObjectNotValid, {"ZqElemWiseNullConstraint::CheckConstraint", kElemWise, kCheck}, {}}));
  const ResultReport globalRefusal{
      false, F::ObjectNotValid, {"ZqGlobalNullConstraint::CheckConstraint", kGlobal, kCheck}, {}};
  EXPECT_EQ(Report(unset.CheckConstraints(Vec({1.0}))), globalRefusal);
  EXPECT_EQ(Report(unset.CheckConstraints(Filled(2, 2, 1.0))), globalRefusal);
  EXPECT_EQ(unset.Print(), "This is a Null Global Constraint\nThis is an Element-Wise Null Constraint\n");

  // Empty lists, on the other hand, accept everything.
  const ZqCheckRanVarConstraints none({}, {});
  EXPECT_EQ(Report(none.CheckConstraints(kNaN)), Success());
  EXPECT_EQ(Report(none.CheckConstraints(Eigen::VectorXd())), Success());
  EXPECT_EQ(Report(none.CheckConstraints(Filled(2, 3, -1.0))), Success());
  EXPECT_EQ(none.Print(), "");
}

TEST(ZqCheckRanVarConstraints, RefusalNamesTheFirstOffendingElementRowByRow) {
  const auto nonNegative = Checker({}, {ZqRanVarElemWiseConstraint(Kind::ElementIsNonNegative)});
  EXPECT_EQ(Report(nonNegative.CheckConstraints(Vec({1.0, 0.0, -1.0, -2.0}))),
            (ResultReport{false,
                          F::LowerBoundViolated,
                          {kNonNegative, kElemWise, kCheck},
                          {"Argument value = -1; should be non-negative!\n",
                           "Problem with Vector element(2); value = -1\n"}}));
  EXPECT_EQ(Report(nonNegative.CheckElemWiseConstraints(Vec({-3.0}))),
            (ResultReport{false,
                          F::LowerBoundViolated,
                          {kNonNegative, kElemWise},
                          {"Argument value = -3; should be non-negative!\n",
                           "Problem with Vector element(0); value = -3\n"}}));

  // Eigen stores by column, so a walk in storage order would name (1,0).
  Eigen::MatrixXd m(2, 2);
  m << 1.0, -3.0, -2.0, 4.0;
  const auto positive = Checker({}, {ZqRanVarElemWiseConstraint(Kind::ElementIsPositive)});
  EXPECT_EQ(Report(positive.CheckConstraints(m)).comments,
            (std::vector<std::string>{"Argument value = -3; should be positive!\n",
                                      "Problem with Matrix element(0,1); value = -3\n"}));
}

TEST(ZqCheckRanVarConstraints, ConstraintsRunInOrderGlobalFirst) {
  const auto weights = Checker({ZqRanVarGlobalConstraint(Kind::VectorHasSumVal, 1.0)},
                               {ZqRanVarElemWiseConstraint(Kind::ElementIsNonNegative),
                                ZqRanVarElemWiseConstraint(Kind::ElementIsPositive)});
  EXPECT_EQ(Report(weights.CheckConstraints(Vec({0.25, 0.75}))), Success());
  // Sums to 1: passes the global test and fails the element-wise one.
  EXPECT_EQ(Report(weights.CheckConstraints(Vec({2.0, -1.0}))).context,
            (std::vector<std::string>{kNonNegative, kElemWise, kCheck}));
  // Refused by both: only the global refusal is reported.
  EXPECT_EQ(Report(weights.CheckConstraints(Vec({-1.0}))),
            (ResultReport{false,
                          F::SumOfArgumentsWrong,
                          {kSum, kGlobal, kCheck},
                          {"Vector sums to = -1; Expected sum = 1; Tolerance = 1e-10\n"}}));
  // 0 passes the first element-wise constraint and stops at the second.
  EXPECT_EQ(Report(weights.CheckConstraints(Vec({0.0, 1.0}))).context,
            (std::vector<std::string>{kPositive, kElemWise, kCheck}));
  // A scalar never meets the global constraints.
  EXPECT_EQ(Report(weights.CheckConstraints(5.0)), Success());
  EXPECT_EQ(Report(weights.CheckConstraints(Filled(1, 1, 1.0))).context,
            (std::vector<std::string>{kSum, kGlobal, kCheck}));
  EXPECT_EQ(weights.Print(),
            "ZqRanVarVectorHasSumVal: asserts elements sum to 1(tol: 1e-10)\n"
            "ZqElementIsNonNegative: asserts value is non-negative\n"
            "ZqElementIsPositive: asserts value is positive\n");
}

}  // namespace
}  // namespace Varimo
