// Results of statistical routines: their reports, chains and comments; and
// the version record of the build.
#include "varimo/foundations/stat_model_result.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "varimo/version.h"

namespace Varimo {
namespace {

namespace F = ZqStatModelFailureType;
using Texts = std::vector<std::string>;

Texts Collect(Corvane::ZqIter<const std::string> iter) {
  Texts out;
  for (const std::string& s : iter) out.push_back(s);
  return out;
}

TEST(ZqStatModelResult, ReportsOfSuccessDefaultAndAFullChain) {
  EXPECT_EQ(ZqStatModelResult().ReportStatResultDetails(),
            "\nResult was not successful: \nFailed in Undetermined Routine: \nFailure Reason(s):\n"
            "Failure Type is undefined!\n");
  ZqStatModelResult success(true);
  success.AddExtraComment("kept but not reported");
  EXPECT_EQ(success.ReportStatResultDetails(), "Result is successful!");
  EXPECT_EQ(Collect(success.GetComments()), Texts{"kept but not reported"});

  ZqStatModelResult result(false);
  result.SetFailureTypeAndWhereFailed(F::ColumnNotFound, "Inner::Routine");
  result.AddExtraComment("first");
  result.AddCallContext("Middle");
  result.AddCallContext("Outer");
  result.AddExtraComment("second");
  EXPECT_EQ(result.ReportStatResultDetails(),
            "\nResult was not successful: \nFailed in Routine: Inner::Routine \nCalled by Routine: Middle \n"
            "Called by Routine: Outer \nFailure Reason(s):\nColumn Not Found! \nExtra Comments:\nfirst \nsecond \n");
  // A failure without a routine is named as such by its first caller.
  ZqStatModelResult unnamed(false);
  unnamed.AddCallContext("B");
  EXPECT_EQ(Collect(unnamed.GetContext()), (Texts{"Unknown Failure Routine", "B"}));
}

// What each way of setting a result leaves: type, chain and comments.
TEST(ZqStatModelResult, SettingAResultKeepsOrWipesWhatItHeld) {
  auto failed = [] {
    ZqStatModelResult r;
    r.SetFailureTypeAndWhereFailed(F::SingularMatrix, "Solve");
    r.AddExtraComment("pivot 0");
    return r;
  };
  struct Case {
    const char* what;
    void (*apply)(ZqStatModelResult&);
    bool fromSuccess;
    bool success;
    std::uint32_t type;
    Texts context, comments;
  };
  const std::vector<Case> cases = {
      {"false keeps a failure", [](ZqStatModelResult& r) { r = false; }, false, false, F::SingularMatrix, {"Solve"},
       {"pivot 0"}},
      {"false on success is an empty failure", [](ZqStatModelResult& r) { r = false; }, true, false,
       F::FailureTypeUndefined, {}, {}},
      {"true wipes", [](ZqStatModelResult& r) { r = true; }, false, true, F::FailureTypeUndefined, {}, {}},
      {"Clear wipes all", [](ZqStatModelResult& r) { r.Clear(); }, false, true, F::FailureTypeUndefined, {}, {}},
      {"a second failure replaces the chain, not the comments",
       [](ZqStatModelResult& r) { r.SetFailureTypeAndWhereFailed(F::ArgumentOutOfRange, "Second"); }, false, false,
       F::ArgumentOutOfRange, {"Second"}, {"pivot 0"}},
      {"a context keeps the type", [](ZqStatModelResult& r) { r.SetFailContext("B"); }, false, false,
       F::SingularMatrix, {"B"}, {"pivot 0"}},
      {"a context on success fails untyped", [](ZqStatModelResult& r) { r.SetFailContext("B"); }, true, false,
       F::FailureTypeUndefined, {"B"}, {}},
      {"an undefined type", [](ZqStatModelResult& r) { r.SetFailTypeUndefined("C"); }, false, false,
       F::FailureTypeUndefined, {"C"}, {"pivot 0"}},
      {"an out-of-range type", [](ZqStatModelResult& r) { r.SetFailureTypeAndWhereFailed(1000, "X"); }, true, false,
       F::InvalidFailureType, {"X"}, {}},
  };
  for (const Case& c : cases) {
    ZqStatModelResult result = c.fromSuccess ? ZqStatModelResult(true) : failed();
    c.apply(result);
    EXPECT_EQ(result.IsSuccessful(), c.success) << c.what;
    EXPECT_EQ(result.GetFailureType(), c.type) << c.what;
    EXPECT_EQ(Collect(result.GetContext()), c.context) << c.what;
    EXPECT_EQ(Collect(result.GetComments()), c.comments) << c.what;
  }
}

TEST(ZqStatModelResult, CopiesAndIteratorsAreIndependentValues) {
  ZqStatModelResult original;
  original.SetFailureTypeAndWhereFailed(F::NoData, "A");
  ZqStatModelResult copy = original;
  copy.AddCallContext("B");
  EXPECT_EQ(original.GetContext().Count(), 1u);
  const ZqStatModelResult& alias = copy;
  copy = alias;  // self-assignment changes nothing
  EXPECT_EQ(copy.GetContext().Count(), 2u);
  Corvane::ZqIter<const std::string> context;
  {
    ZqStatModelResult temporary;
    temporary.SetFailureTypeAndWhereFailed(F::NoData, "Gone");
    context = temporary.GetContext();
  }
  ASSERT_TRUE(context);
  EXPECT_EQ(*context, "Gone");
}

// Every type has a text of its own; a few are spot-checked in full, with the
// numbers callers rely on.
TEST(ZqStatModelResult, EveryFailureTypeHasATextOfItsOwn) {
  const std::string prefix = "\nResult was not successful: \nFailed in Routine: R \nFailure Reason(s):\n";
  std::set<std::string> texts;
  for (std::uint32_t type = 0; type < F::NumFailureTypes; ++type) {
    ZqStatModelResult result;
    result.SetFailureTypeAndWhereFailed(type, "R");
    const std::string report = result.ReportStatResultDetails();
    ASSERT_EQ(report.rfind(prefix, 0), 0u) << type;
    texts.insert(report.substr(prefix.size()));
  }
  EXPECT_EQ(F::NumFailureTypes, 54u);
  EXPECT_EQ(texts.size(), 54u);
  for (const char* text : {"Column Not Found! \n", "Matrix is singular!\n", "No data to work with!\n",
                           "Attempting Write Acess to a readonly Variable !\n",
                           "An Invalid Failure type is given!\n"}) {
    EXPECT_EQ(texts.count(text), 1u) << text;
  }
  EXPECT_EQ(F::NoData, 18u);
  EXPECT_EQ(F::ArgumentTypeWrong, 42u);
  EXPECT_EQ(F::WrongDataViewFileState, 52u);
}

TEST(VersionRecord, ConstantsOfTheBuild) {
  EXPECT_STREQ(VarimoGetVersion(), VARIMO_VERSION_STRING);
  // Release 0.1.0 of the project is number 100: later releases count up.
  EXPECT_GE(VarimoGetRelease(), 100u);
  EXPECT_NE(VarimoGetDebugRelease(), VarimoGetNonDebugRelease());
  EXPECT_STREQ(VarimoGetPlatform(), "Linux");
  EXPECT_GT(std::string(VarimoGetArch()).size(), 0u);
  EXPECT_NE(std::string(VarimoGetConfigureArgs()).find("-DCMAKE_BUILD_TYPE="), std::string::npos);
  EXPECT_EQ(std::string(VarimoVersion()).rfind(std::string("Varimo ") + VARIMO_VERSION_STRING, 0), 0u);
}

}  // namespace
}  // namespace Varimo
