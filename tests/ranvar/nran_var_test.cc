#include "varimo/ranvar/nran_var.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ranvar_test_support.h"

namespace Varimo {
namespace {

using namespace RanVarTest;
namespace DataType = nZqRanVarDataType;
namespace Kind = ZqRanVarConstraintKind;

const ZqCheckRanVarConstraints kNone({}, {});
const ZqCheckRanVarConstraints kPositive({}, {ZqRanVarElemWiseConstraint(Kind::ElementIsPositive)});

Eigen::MatrixXd Mat23() {
  Eigen::MatrixXd m(2, 3);
  m << 1.0, 2.0, 3.0, 4.0, 5.0, 6.0;
  return m;
}

nZqRanVar Scalar(double value, const ZqCheckRanVarConstraints& constraints = kNone) {
  return nZqRanVar(3, 1, "Univariate Gaussian Random Variable::Mean", constraints, value);
}
nZqRanVar Vector(const Eigen::VectorXd& value, const ZqCheckRanVarConstraints& constraints = kNone) {
  return nZqRanVar(1, 2, "Common To All Random Variables::Vector of Training Observations", constraints, value);
}
nZqRanVar Matrix(const Eigen::MatrixXd& value, const ZqCheckRanVarConstraints& constraints = kNone) {
  return nZqRanVar(7, 8, "Seven::Eight", constraints, value);
}

// The refusal of a value of another kind than the variable holds.
ResultReport Refusal(const char* kind, const char* dataType) {
  return ResultReport{false,
                      F::ArgumentTypeWrong,
                      {"nZqRanVar::CheckConstraints"},
                      {std::string("Trying to load a ") + kind + ", while Random variable has required data type " +
                       dataType + "\n"}};
}

// The ten checked requests, each with the kind of value it asks for (0
// double, 1 vector, 2 matrix) and whether it loads.
struct Request {
  const char* method;
  int kind;
  bool load;
  std::function<void(nZqRanVar&, ZqStatModelResult&)> call;
};

std::vector<Request> CheckedRequests() {
  return {
      {"LoadRanVarVal", 0, true, [](nZqRanVar& h, ZqStatModelResult& r) { h.LoadRanVarVal(r, 42.0); }},
      {"GetRanVarVal", 0, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetRanVarVal(r); }},
      {"LoadRanVarVec", 1, true, [](nZqRanVar& h, ZqStatModelResult& r) { h.LoadRanVarVec(r, Vec({42.0})); }},
      {"GetRanVarVec", 1, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetRanVarVec(r); }},
      {"GetConstRanVarVecPtr", 1, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetConstRanVarVecPtr(r); }},
      {"GetRanVarVecPtr", 1, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetRanVarVecPtr(r); }},
      {"LoadRanVarMat", 2, true,
       [](nZqRanVar& h, ZqStatModelResult& r) { h.LoadRanVarMat(r, Eigen::MatrixXd::Constant(1, 1, 42.0)); }},
      {"GetRanVarMat", 2, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetRanVarMat(r); }},
      {"GetConstRanVarMatPtr", 2, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetConstRanVarMatPtr(r); }},
      {"GetRanVarMatPtr", 2, false, [](nZqRanVar& h, ZqStatModelResult& r) { h.GetRanVarMatPtr(r); }},
  };
}

TEST(nZqRanVar, DefaultIsAReadOnlyNullVariable) {
  const nZqRanVar null;
  EXPECT_TRUE(null.RanVarDataIsReadOnly());
  EXPECT_EQ(null.GetRanVarRequiredDataType(), DataType::Unknown);
  EXPECT_TRUE(null.IsDesiredType(2, 0));
  EXPECT_EQ(null.GetRanVarTypeName(), "Null Random Variable::Unknown Minor Type");
  EXPECT_EQ(null.GetRanVarRefCount(), 1u);
  EXPECT_EQ(null.GetRanVarVal(), kBad);
  EXPECT_EQ(null.GetRanVarVec().size(), 0);
  EXPECT_EQ(null.GetConstRanVarMatPtr(), nullptr);
  EXPECT_EQ(Report(null.CheckConstraints(1.0)), Refusal("scalar", "Unknown Type"));

  // Its storage refuses every checked request as an empty model.
  nZqRanVar writable;
  writable.ClearRanVarDataReadOnly();
  for (const Request& request : CheckedRequests()) {
    ZqStatModelResult result(true);
    request.call(writable, result);
    // A refused double load is reported under LoadRanVarVec.
    const std::string method = std::string(request.method) == "LoadRanVarVal" ? "LoadRanVarVec" : request.method;
    EXPECT_EQ(Report(result), (ResultReport{false, F::EmptyStatModel, {"nZqNullRanVar::" + method}, {}}));
  }
}

TEST(nZqRanVar, CopiesShareOneValueAndWritesThroughPointers) {
  nZqRanVar a = Scalar(1.0);
  {
    nZqRanVar b(a);
    EXPECT_EQ(a.GetRanVarRefCount(), 2u);
    EXPECT_EQ(b.GetRanVarRefCount(), 2u);
    b.LoadRanVarVal(5.0);
    EXPECT_EQ(a.GetRanVarVal(), 5.0);
    a.LoadRanVarVal(6.0);
    EXPECT_EQ(b.GetRanVarVal(), 6.0);
  }
  EXPECT_EQ(a.GetRanVarRefCount(), 1u);

  // Assignment leaves the old value (deleted here, its last holder gone) and
  // takes the source's identity with it.
  nZqRanVar c = Vector(Vec({1.0, 2.0}));
  c = a;
  EXPECT_EQ(a.GetRanVarRefCount(), 2u);
  EXPECT_EQ(c.GetRanVarRequiredDataType(), DataType::ScalarDouble);
  EXPECT_EQ(c.GetRanVarTypeName(), "Univariate Gaussian Random Variable::Mean");
  c.LoadRanVarVal(7.0);
  EXPECT_EQ(a.GetRanVarVal(), 7.0);

  // Self-assignment must not free the value on the way.
  nZqRanVar& alias = c;
  c = alias;
  EXPECT_EQ(c.GetRanVarRefCount(), 2u);
  EXPECT_EQ(c.GetRanVarVal(), 7.0);

  // Writes through pointers are shared too.
  nZqRanVar v = Vector(Vec({1.0, 2.0}));
  const nZqRanVar copy(v);
  (*v.GetRanVarVecPtr())(1) = 9.0;
  EXPECT_TRUE(Same(copy.GetRanVarVec(), Vec({1.0, 9.0})));
  v.LoadRanVarVec(Vec({4.0, 5.0, 6.0}));
  EXPECT_EQ(copy.GetConstRanVarVecPtr()->size(), 3);

  nZqRanVar m = Matrix(Mat23());
  const nZqRanVar mCopy = m;
  (*m.GetRanVarMatPtr())(1, 2) = -6.0;
  EXPECT_EQ(mCopy.GetRanVarMat()(1, 2), -6.0);
  m.LoadRanVarMat(Eigen::MatrixXd::Identity(4, 4));
  EXPECT_TRUE(Same(mCopy.GetRanVarMat(), Eigen::MatrixXd::Identity(4, 4)));
}

TEST(nZqRanVar, ConstraintsAreTheHandlesOwnUncheckedByLoadsAndRefuseOtherKinds) {
  nZqRanVar positive = Scalar(1.0, kPositive);
  positive.LoadRanVarVal(-1.0);
  EXPECT_EQ(positive.GetRanVarVal(), -1.0);
  EXPECT_EQ(Report(positive.CheckConstraints(0.0)).context.front(), "ZqElementIsPositive::CheckConstraint");
  // Assignment brings the source's constraints.
  positive = Scalar(2.0);
  EXPECT_EQ(Report(positive.CheckConstraints(0.0)), Success());

  // A value of another kind than the variable holds is refused.
  EXPECT_EQ(Report(Vector(Eigen::VectorXd()).CheckConstraints(2.0)), Refusal("scalar", "Eigen::VectorXd"));
  EXPECT_EQ(Report(Matrix(Mat23()).CheckConstraints(Vec({1.0}))), Refusal("vector", "Eigen::MatrixXd"));
  EXPECT_EQ(Report(Scalar(1.0).CheckConstraints(Mat23())), Refusal("matrix", "Scalar Double"));
  EXPECT_EQ(Report(Matrix(Mat23(), kPositive).CheckConstraints(Mat23())), Success());
}

TEST(nZqRanVar, ReadOnlyRefusesEveryWrite) {
  nZqRanVar v = Vector(Vec({1.0}));
  v.SetRanVarDataReadOnly();
  v.LoadRanVarVec(Vec({2.0}));
  EXPECT_TRUE(Same(v.GetRanVarVec(), Vec({1.0})));
  EXPECT_EQ(v.GetRanVarVecPtr(), nullptr);
  EXPECT_NE(v.GetConstRanVarVecPtr(), nullptr);

  const std::vector<std::pair<std::string, std::function<void(ZqStatModelResult&)>>> writes = {
      {"nZqRanVar::LoadRanVarVal", [&](ZqStatModelResult& r) { v.LoadRanVarVal(r, 1.0); }},
      {"nZqRanVar::LoadRanVarVec", [&](ZqStatModelResult& r) { v.LoadRanVarVec(r, Vec({3.0})); }},
      {"nZqRanVar::GetRanVarVecPtr", [&](ZqStatModelResult& r) { EXPECT_EQ(v.GetRanVarVecPtr(r), nullptr); }},
      {"nZqRanVar::LoadRanVarMat", [&](ZqStatModelResult& r) { v.LoadRanVarMat(r, Mat23()); }},
      {"nZqRanVar::GetRanVarMatPtr", [&](ZqStatModelResult& r) { EXPECT_EQ(v.GetRanVarMatPtr(r), nullptr); }},
  };
  for (const auto& [routine, write] : writes) {
    ZqStatModelResult result(true);
    write(result);
    EXPECT_EQ(Report(result), (ResultReport{false, F::VariableIsReadOnly, {routine}, {}}));
  }
  EXPECT_TRUE(Same(v.GetRanVarVec(), Vec({1.0})));

  v.ClearRanVarDataReadOnly();
  ZqStatModelResult result;
  v.LoadRanVarVec(result, Vec({3.0}));
  EXPECT_EQ(Report(result), Success());
  EXPECT_TRUE(Same(v.GetRanVarVec(), Vec({3.0})));
}

TEST(nZqRanVarStorage, EachStorageRefusesTheOtherKinds) {
  const char* const names[] = {"nZqScalarRanVar", "nZqVectorRanVar", "nZqMatrixRanVar"};
  for (int held = 0; held < 3; ++held) {
    for (const Request& request : CheckedRequests()) {
      nZqRanVar handle = held == 0 ? Scalar(1.0) : held == 1 ? Vector(Vec({1.0})) : Matrix(Mat23());
      ZqStatModelResult result;
      request.call(handle, result);
      const ResultReport report = Report(result);
      if (request.kind == held) {
        EXPECT_EQ(report, Success()) << names[held] << "::" << request.method;
        continue;
      }
      EXPECT_EQ(report.type, F::ArgumentTypeWrong) << names[held] << "::" << request.method;
      EXPECT_EQ(report.context, std::vector<std::string>{std::string(names[held]) + "::" + request.method});
      ASSERT_EQ(report.comments.size(), 1u);
      EXPECT_NE(report.comments[0].find(request.load ? "Can't accept" : "Can't return"), std::string::npos);
    }
  }
  ZqStatModelResult result;
  Vector(Vec({1.0})).LoadRanVarMat(result, Mat23());
  EXPECT_EQ(VarimoTest::Comments(result),
            std::vector<std::string>{"Private data is a VectorXd; Can't accept a MatrixXd"});
}

TEST(nZqRanVarStorage, ServedRequestsStoreAndReturnTheValue) {
  nZqRanVar s = Scalar(1.0);
  ZqStatModelResult result;
  s.LoadRanVarVal(result, 2.5);
  EXPECT_EQ(s.GetRanVarVal(result), 2.5);
  EXPECT_TRUE(result.IsSuccessful());

  // Loads resize; a refused load leaves the value alone.
  nZqRanVar m = Matrix(Mat23());
  m.LoadRanVarMat(result, Eigen::MatrixXd::Identity(3, 3));
  EXPECT_TRUE(Same(*m.GetConstRanVarMatPtr(result), Eigen::MatrixXd::Identity(3, 3)));
  m.LoadRanVarVal(result, 9.0);
  EXPECT_TRUE(Same(m.GetRanVarMat(), Eigen::MatrixXd::Identity(3, 3)));

  // Unchecked reads of another kind give the bad value of the kind asked for.
  EXPECT_EQ(m.GetRanVarVal(), kBad);
  EXPECT_EQ(m.GetRanVarVec().size(), 0);
  EXPECT_EQ(m.GetConstRanVarVecPtr(), nullptr);
  EXPECT_EQ(s.GetRanVarMat().size(), 0);
  EXPECT_EQ(s.GetRanVarMatPtr(), nullptr);
  EXPECT_EQ(Vector(Vec({1.0})).GetRanVarVal(result), kBad);
}

TEST(nZqRanVarAttachData, ChecksThenSharesTheSourceValueReadOnly) {
  nZqRanVar source = Scalar(2.0);
  nZqRanVar target = Scalar(1.0, kPositive);
  EXPECT_EQ(Report(target.AttachData(source, true)), Success());
  EXPECT_TRUE(target.RanVarDataIsReadOnly());
  EXPECT_FALSE(source.RanVarDataIsReadOnly());
  EXPECT_EQ(source.GetRanVarRefCount(), 2u);
  source.LoadRanVarVal(3.0);
  EXPECT_EQ(target.GetRanVarVal(), 3.0);

  target.LoadRanVarVal(4.0);
  EXPECT_EQ(source.GetRanVarVal(), 3.0);
  ZqStatModelResult result;
  target.LoadRanVarVal(result, 4.0);
  EXPECT_EQ(Report(result), (ResultReport{false, F::VariableIsReadOnly, {"nZqRanVar::LoadRanVarVal"}, {}}));
  // The constraints stay the target's own.
  EXPECT_EQ(Report(target.CheckConstraints(0.0)).type, F::LowerBoundViolated);
  EXPECT_EQ(Report(source.CheckConstraints(0.0)), Success());

  // Attaching a handle to itself keeps its value alive.
  EXPECT_EQ(Report(target.AttachData(target, true)), Success());
  EXPECT_EQ(target.GetRanVarVal(), 3.0);
  EXPECT_EQ(source.GetRanVarRefCount(), 2u);
}

TEST(nZqRanVarAttachData, RefusalsLeaveTheTargetAloneUncheckedAnyKindIsTaken) {
  nZqRanVar target = Vector(Vec({1.0}), kPositive);
  EXPECT_EQ(Report(target.AttachData(Scalar(1.0), true)),
            (ResultReport{false,
                          F::ArgumentTypeWrong,
                          {"nZqRanVar::AttachData"},
                          {"Source random variable has required data type Scalar Double\n"
                           "Random variable to be attached to has required data type Eigen::VectorXd\n"}}));
  const ResultReport negative = Report(target.AttachData(Vector(Vec({1.0, -2.0})), true));
  EXPECT_EQ(negative.type, F::LowerBoundViolated);
  EXPECT_EQ(negative.context.back(), "nZqRanVar::AttachData");
  EXPECT_FALSE(target.RanVarDataIsReadOnly());
  EXPECT_TRUE(Same(target.GetRanVarVec(), Vec({1.0})));
  EXPECT_EQ(target.GetRanVarRefCount(), 1u);

  nZqRanVar null;
  EXPECT_EQ(Report(null.AttachData(nZqRanVar(), true)),
            (ResultReport{false, F::InternalLogicFailure, {"nZqRanVar::AttachData"},
                          {"Source Ran Var has unknown Data Type!"}}));

  // Without checks any kind is taken.
  const nZqRanVar scalar = Scalar(2.0);
  nZqRanVar matrix = Matrix(Mat23());
  EXPECT_EQ(Report(matrix.AttachData(scalar, false)), Success());
  EXPECT_EQ(matrix.GetRanVarRequiredDataType(), DataType::MatrixXd);
  EXPECT_EQ(matrix.GetRanVarVal(), 2.0);
  EXPECT_EQ(matrix.GetRanVarMat().size(), 0);

  // Its value is now of the wrong kind for its data type, and a checked
  // attachment to it finds out when reading.
  nZqRanVar another = Matrix(Mat23());
  EXPECT_EQ(Report(another.AttachData(matrix, true)),
            (ResultReport{false,
                          F::ArgumentTypeWrong,
                          {"nZqScalarRanVar::GetConstRanVarMatPtr", "nZqRanVar::AttachData"},
                          {"Private data is a double; Can't return a MatrixXd"}}));
  EXPECT_TRUE(Same(another.GetRanVarMat(), Mat23()));
}

TEST(nZqRanVar, PrintShowsTypeAccessConstraintsAndValueUpToTheLimit) {
  EXPECT_EQ(Scalar(1.5, kPositive).Print(10),
            "Random Variable Type is Univariate Gaussian Random Variable::Mean\n"
            "Random Variable Required Data Type is Scalar Double\n"
            "Random Variable allows read-write access\n"
            "ZqElementIsPositive: asserts value is positive\n"
            "Data is a scalar doubleRandom Variable Value: 1.5\n");
  EXPECT_NE(nZqRanVar().Print(10).find("Random Variable is read-only\n"), std::string::npos);
  const nZqRanVar v = Vector(Vec({1.0, 2.0, 3.0}));
  for (const auto& [limit, values] : std::vector<std::pair<unsigned, std::string>>{{2, "1\n2\n"}, {10, "1\n2\n3\n"}}) {
    const std::string text = v.Print(limit);
    EXPECT_EQ(text.substr(text.find("Size = 3")),
              "Size = 3; Print limit = " + std::to_string(limit) + "\nRandom Variable Vector: \n" + values);
  }
  const std::string m = Matrix(Mat23()).Print(2);
  EXPECT_EQ(m.substr(m.find("Num Rows")),
            "Num Rows = 2; Num Cols = 3; Print limit = 2\nRandom Variable Matrix: \n1 2\n4 5\n");
}

TEST(SetupUniVarGaussianRanVars, AppendsTheEightVariablesOrNothing) {
  std::vector<nZqRanVar> ranVars(1);
  EXPECT_EQ(Report(SetupUniVarGaussianRanVars(ranVars, -1.5, 2.0)), Success());
  ASSERT_EQ(ranVars.size(), 9u);
  // The Gaussian's four (major type 3) and the four common ones (1), in
  // minor order, the first five scalars (of these values) and the rest vectors.
  const double scalars[] = {-1.5, 2.0, 0.0, 1.0, 0.0};
  for (std::size_t i = 0; i < 8; ++i) {
    const nZqRanVar& v = ranVars[i + 1];
    EXPECT_TRUE(v.IsDesiredType(i < 4 ? 3 : 1, static_cast<std::uint32_t>(i % 4 + 1))) << i;
    EXPECT_EQ(v.GetRanVarRequiredDataType(), i < 5 ? DataType::ScalarDouble : DataType::VectorXd) << i;
    if (i < 5) EXPECT_EQ(v.GetRanVarVal(), scalars[i]) << i;
    EXPECT_FALSE(v.RanVarDataIsReadOnly()) << i;
    EXPECT_EQ(v.GetRanVarRefCount(), 1u) << i;
  }
  EXPECT_EQ(ranVars[2].GetRanVarTypeName(), "Univariate Gaussian Random Variable::Variance");
  EXPECT_EQ(ranVars[8].GetRanVarTypeName(), "Common To All Random Variables::Vector of Training Observation Weights");
  EXPECT_EQ(ranVars[6].GetRanVarVec().size(), 0);

  // Constraints: the variances positive, the weights non-negative, the rest free.
  EXPECT_EQ(Report(ranVars[1].CheckConstraints(-1e300)), Success());
  EXPECT_EQ(Report(ranVars[2].CheckConstraints(0.0)).type, F::LowerBoundViolated);
  EXPECT_EQ(Report(ranVars[4].CheckConstraints(0.0)).type, F::LowerBoundViolated);
  EXPECT_EQ(Report(ranVars[7].CheckConstraints(Vec({-1.0}))), Success());
  EXPECT_EQ(Report(ranVars[8].CheckConstraints(Vec({0.0, 1.0}))), Success());
  EXPECT_EQ(Report(ranVars[8].CheckConstraints(Vec({0.0, -1.0}))).type, F::LowerBoundViolated);

  // A zero variance appends nothing.
  std::vector<nZqRanVar> none;
  EXPECT_EQ(Report(SetupUniVarGaussianRanVars(none, 0.0, 0.0)),
            (ResultReport{false,
                          F::LowerBoundViolated,
                          {"ZqElementIsPositive::CheckConstraint", "SetupUniVarGaussianRanVars"},
                          {"Argument value = 0; should be positive!\n"}}));
  EXPECT_TRUE(none.empty());
}

}  // namespace
}  // namespace Varimo
