#include "varimo/foundations/stat_model_result.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;

std::vector<std::string> Collect(Corvane::ZqIter<const std::string> iter) {
  std::vector<std::string> out;
  for (const std::string& s : iter) out.push_back(s);
  return out;
}

TEST(ZqStatModelResult, DefaultIsFailureOfUndefinedType) {
  const ZqStatModelResult result;
  EXPECT_FALSE(result.IsSuccessful());
  EXPECT_TRUE(result.NotSuccessful());
  EXPECT_TRUE(result.FailTypeIsUndefined());
  EXPECT_EQ(result.ReportStatResultDetails(),
            "\nResult was not successful: \n"
            "Failed in Undetermined Routine: \n"
            "Failure Reason(s):\n"
            "Failure Type is undefined!\n");
}

TEST(ZqStatModelResult, SuccessReportIgnoresComments) {
  ZqStatModelResult result(true);
  result.AddExtraComment("kept but not reported");
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(result.ReportStatResultDetails(), "Result is successful!");
  EXPECT_EQ(Collect(result.GetComments()), std::vector<std::string>{"kept but not reported"});
}

TEST(ZqStatModelResult, FullReportWithChainAndComments) {
  ZqStatModelResult result(false);
  result.SetFailureTypeAndWhereFailed(F::ColumnNotFound, "Inner::Routine");
  result.AddExtraComment("first");
  result.AddCallContext("Middle");
  result.AddCallContext("Outer");
  result.AddExtraComment("second");
  EXPECT_EQ(result.GetFailureType(), F::ColumnNotFound);
  EXPECT_EQ(result.ReportStatResultDetails(),
            "\nResult was not successful: \n"
            "Failed in Routine: Inner::Routine \n"
            "Called by Routine: Middle \n"
            "Called by Routine: Outer \n"
            "Failure Reason(s):\n"
            "Column Not Found! \n"
            "Extra Comments:\n"
            "first \n"
            "second \n");
}

TEST(ZqStatModelResult, ClearMeansSuccess) {
  ZqStatModelResult result;
  result.SetFailureTypeAndWhereFailed(F::NoData, "X");
  result.AddExtraComment("c");
  result.Clear();
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_EQ(result.GetFailureType(), F::FailureTypeUndefined);
  EXPECT_EQ(result.GetContext().Count(), 0u);
  EXPECT_EQ(result.GetComments().Count(), 0u);
}

TEST(ZqStatModelResult, AssigningFalseKeepsAnEarlierFailure) {
  ZqStatModelResult result;
  result.SetFailureTypeAndWhereFailed(F::SingularMatrix, "Solve");
  result.AddExtraComment("pivot 0");
  result = false;
  EXPECT_EQ(result.GetFailureType(), F::SingularMatrix);
  EXPECT_EQ(Collect(result.GetContext()), std::vector<std::string>{"Solve"});
  EXPECT_EQ(Collect(result.GetComments()), std::vector<std::string>{"pivot 0"});
}

TEST(ZqStatModelResult, AssigningFalseToSuccessGivesEmptyFailure) {
  ZqStatModelResult result(true);
  result.AddExtraComment("dropped");
  result = false;
  EXPECT_TRUE(result.NotSuccessful());
  EXPECT_TRUE(result.FailTypeIsUndefined());
  EXPECT_EQ(result.GetContext().Count(), 0u);
  EXPECT_EQ(result.GetComments().Count(), 0u);
}

TEST(ZqStatModelResult, AssigningTrueWipesTheFailure) {
  ZqStatModelResult result;
  result.SetFailureTypeAndWhereFailed(F::NoData, "X");
  result = true;
  EXPECT_TRUE(result.IsSuccessful());
  EXPECT_TRUE(result.FailTypeIsUndefined());
  EXPECT_EQ(result.GetContext().Count(), 0u);
}

TEST(ZqStatModelResult, OutOfRangeTypeIsStoredAsInvalidFailureType) {
  ZqStatModelResult result(true);
  result.SetFailureTypeAndWhereFailed(1000, "X");
  EXPECT_EQ(result.GetFailureType(), F::InvalidFailureType);
  EXPECT_NE(result.ReportStatResultDetails().find("An Invalid Failure type is given!\n"), std::string::npos);
}

TEST(ZqStatModelResult, CallContextOnEmptyChainNamesUnknownRoutine) {
  ZqStatModelResult result(false);
  result.AddCallContext("B");
  EXPECT_EQ(Collect(result.GetContext()), (std::vector<std::string>{"Unknown Failure Routine", "B"}));
  EXPECT_TRUE(result.NotSuccessful());
}

TEST(ZqStatModelResult, SecondFailureReplacesChainButKeepsComments) {
  ZqStatModelResult result(true);
  result.SetFailureTypeAndWhereFailed(F::NoData, "First");
  result.AddCallContext("Caller");
  result.AddExtraComment("one");
  result.SetFailureTypeAndWhereFailed(F::ArgumentOutOfRange, "Second");
  result.AddExtraComment("two");
  EXPECT_EQ(Collect(result.GetContext()), std::vector<std::string>{"Second"});
  EXPECT_EQ(Collect(result.GetComments()), (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(result.GetFailureType(), F::ArgumentOutOfRange);
}

TEST(ZqStatModelResult, SetFailContextKeepsTypeOfFailedResultOnly) {
  ZqStatModelResult failed;
  failed.SetFailureTypeAndWhereFailed(F::NoData, "A");
  failed.SetFailContext("B");
  EXPECT_EQ(failed.GetFailureType(), F::NoData);

  ZqStatModelResult succeeded(true);
  succeeded.SetFailContext("B");
  EXPECT_TRUE(succeeded.NotSuccessful());
  EXPECT_TRUE(succeeded.FailTypeIsUndefined());

  failed.SetFailTypeUndefined("C");
  EXPECT_TRUE(failed.FailTypeIsUndefined());
  EXPECT_EQ(Collect(failed.GetContext()), std::vector<std::string>{"C"});
}

TEST(ZqStatModelResult, CopiesAreIndependentValues) {
  ZqStatModelResult original;
  original.SetFailureTypeAndWhereFailed(F::NoData, "A");
  ZqStatModelResult copy = original;
  copy.AddCallContext("B");
  EXPECT_EQ(original.GetContext().Count(), 1u);
  EXPECT_EQ(copy.GetContext().Count(), 2u);
  const ZqStatModelResult& alias = copy;
  copy = alias;  // self-assignment changes nothing
  EXPECT_EQ(copy.GetContext().Count(), 2u);
  // Iterators own their copy and survive the result.
  Corvane::ZqIter<const std::string> context;
  {
    ZqStatModelResult temporary;
    temporary.SetFailureTypeAndWhereFailed(F::NoData, "Gone");
    context = temporary.GetContext();
  }
  ASSERT_TRUE(context);
  EXPECT_EQ(*context, "Gone");
}

// Every one of the 54 texts, as the report must print them.
TEST(ZqStatModelResult, EveryFailureTypeHasItsText) {
  const std::vector<std::string> expected = {
      "Failure Type is undefined!\n",
      "Column Not Found! \n",
      "Column Has Wrong Data Type!\n",
      "Column Is Nominal but With Wrong Num Vals!\n",
      "Column has missing or bad Predictor Value!\n",
      "Column has missing or bad Response Value!\n",
      "Internal Logic Failure!\n",
      "Empty Statistical Model!\n",
      "Cached column Nums are invalid!\n",
      "Wrong Num Predictor Variables!\n",
      "Wrong Num Response Variables!\n",
      "Wrong Num parameters for model or subtype!\n",
      "Wrong Model Type for request!\n",
      "Method not yet implemented!\n",
      "An argument is out of range!\n",
      "An input matrix has the wrong size!\n",
      "An input vector has the wrong size!\n",
      "Class Instance not initialized yet!\n",
      "No data to work with!\n",
      "Some mismatch between private vector/array sizes!\n",
      "Some mismatch between input vector/array sizes!\n",
      "Matrix is singular!\n",
      "Variance,Covariance or Scale is singular!\n",
      "Probability distribution is a null type: no information!\n",
      "Probability distribution is invalid!\n",
      "Probability distribution has wrong num variables!\n",
      "Probability distribution type is wrong!\n",
      "The density is undefined here for this pdf!\n",
      "The mean is undefined for this pdf!\n",
      "The variance or covariance is undefined for this pdf!\n",
      "The Mode is undefined for this pdf!\n",
      "Argument has unknown data type!\n",
      "Argument is missing!\n",
      "An integer valued argument is required!\n",
      "A scalar argument is required!\n",
      "Argument violates lower bound!\n",
      "Argument violates upper bound!\n",
      "Vector elements of argument sum to wrong value!\n",
      "Constraint type is inappropriate for argument!\n",
      "Random variable not found!\n",
      "Random variable already exists!\n",
      "Wrong Random variable name requested!\n",
      "Wrong Random variable type requested!\n",
      "Wrong Random variable value requested!\n",
      "Name not found in list !\n",
      "Names not in same order as in list !\n",
      "More than one copy of name in list !\n",
      "Attempting Write Acess to a readonly Variable !\n",
      "The argument is required to be of Vector Type !\n",
      "The argument is required to be of Matrix Type !\n",
      "The File type does not match any known type !\n",
      "The File type is wrong for desired operation !\n",
      "The File State is wrong for desired operation !\n",
      "An Invalid Failure type is given!\n",
  };
  ASSERT_EQ(expected.size(), F::NumFailureTypes);
  const std::string prefix =
      "\nResult was not successful: \nFailed in Routine: R \nFailure Reason(s):\n";
  for (std::uint32_t type = 0; type < F::NumFailureTypes; ++type) {
    ZqStatModelResult result;
    result.SetFailureTypeAndWhereFailed(type, "R");
    EXPECT_EQ(result.ReportStatResultDetails(), prefix + expected[type]) << "type " << type;
  }
  // A few names against their numbers, since callers use the names.
  EXPECT_EQ(F::NoData, 18u);
  EXPECT_EQ(F::ArgumentTypeWrong, 42u);
  EXPECT_EQ(F::VariableIsReadOnly, 47u);
  EXPECT_EQ(F::WrongDataViewFileState, 52u);
}

}  // namespace
}  // namespace Varimo
