#include "varimo/numerics/matrix.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_file.h"
#include "result_support.h"
#include "test_support.h"

namespace Varimo {
namespace {

using VarimoTest::Context;
using VarimoTest::Comments;

namespace F = ZqStatModelFailureType;
using Vec = std::vector<double>;

// Results on well-conditioned matrices against numpy, relative to the
// largest element of the expected matrix.
constexpr double kMatrixTolerance = 1e-12;

::testing::AssertionResult AllNear(const Vec& actual, const Vec& expected, double tolerance = kMatrixTolerance) {
  if (actual.size() != expected.size()) {
    return ::testing::AssertionFailure() << "size " << actual.size() << " vs " << expected.size();
  }
  double scale = 0.0;
  for (double e : expected) scale = std::max(scale, std::fabs(e));
  if (scale == 0.0) scale = 1.0;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    if (!(std::fabs(actual[i] - expected[i]) <= tolerance * scale)) {
      return ::testing::AssertionFailure() << "element " << i << ": " << actual[i] << " vs " << expected[i];
    }
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult FailedWith(const ZqStatModelResult& result, std::uint32_t type,
                                      const std::vector<std::string>& context) {
  if (result.IsSuccessful()) return ::testing::AssertionFailure() << "succeeded";
  if (result.GetFailureType() != type) {
    return ::testing::AssertionFailure() << "type " << result.GetFailureType() << ", wanted " << type;
  }
  if (Context(result) != context) return ::testing::AssertionFailure() << result.ReportStatResultDetails();
  return ::testing::AssertionSuccess();
}

// --- Random SPD matrices against numpy (tests/data/numerics/spd_cases.txt).

struct SpdCase {
  unsigned long n = 0;
  std::map<std::string, Vec> values;
};

std::vector<SpdCase> LoadSpdCases() {
  std::vector<SpdCase> cases;
  for (const auto& tokens : VarimoTest::ReadReferenceLines("numerics/spd_cases.txt")) {
    if (tokens[0] == "case") {
      cases.emplace_back();
      cases.back().n = static_cast<unsigned long>(VarimoTest::ToDouble(tokens[1]));
    } else if (!cases.empty()) {
      cases.back().values[tokens[0]] = VarimoTest::ToDoubles(tokens, 1);
    }
  }
  return cases;
}

const std::vector<SpdCase>& SpdCases() {
  static const std::vector<SpdCase> cases = LoadSpdCases();
  return cases;
}

class SpdMatrix : public ::testing::TestWithParam<std::size_t> {
 protected:
  const SpdCase& Case() const { return SpdCases().at(GetParam()); }
  const Vec& Get(const std::string& name) const { return Case().values.at(name); }
  unsigned long N() const { return Case().n; }
};

TEST_P(SpdMatrix, CholeskyMatchesNumpyAndZeroesTheUpperTriangle) {
  Vec l;
  ASSERT_TRUE(ZqCholeskyDecomposition(N(), Get("a"), l).IsSuccessful());
  EXPECT_TRUE(AllNear(l, Get("l")));
  for (unsigned long i = 0; i < N(); ++i) {
    for (unsigned long j = i + 1; j < N(); ++j) EXPECT_EQ(l[i * N() + j], 0.0);
  }
  Vec root;
  ASSERT_TRUE(ZqSquareRootOfPosDefMatrix(N(), Get("a"), root).IsSuccessful());
  if (N() > 1) {
    EXPECT_EQ(root, l);  // n = 1 is the scalar kind: sqrt, same value
  }
  EXPECT_TRUE(AllNear(root, Get("l")));
  EXPECT_TRUE(ZqMatrixIsPosDef(N(), Get("a")).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsNonNegDef(N(), Get("a")).IsSuccessful());
}

TEST_P(SpdMatrix, SolvesThroughTheFactor) {
  Vec l, x, y, z;
  ASSERT_TRUE(ZqCholeskyDecomposition(N(), Get("a"), l).IsSuccessful());
  ASSERT_TRUE(ZqSolveSymmetricEquationsViaLowerTriSquareRoot(N(), l, Get("b"), x).IsSuccessful());
  EXPECT_TRUE(AllNear(x, Get("x"), 1e-11));
  // The two halves one after the other give the same.
  ASSERT_TRUE(ZqSolveLowerTriangularEquations(N(), l, Get("b"), y).IsSuccessful());
  ASSERT_TRUE(ZqSolveTransposedLowerTriangularEquations(N(), l, y, z).IsSuccessful());
  EXPECT_TRUE(AllNear(z, Get("x"), 1e-11));
  Vec back;
  ASSERT_TRUE(ZqMatrixTimesVector(N(), Get("a"), x, back).IsSuccessful());
  EXPECT_TRUE(AllNear(back, Get("b"), 1e-11));
}

TEST_P(SpdMatrix, InversesAndLogDeterminants) {
  Vec inverse, viaGeneral, viaFactor, l;
  ASSERT_TRUE(ZqInverseOfSymmetricPositiveDefiniteMatrix(N(), Get("a"), inverse).IsSuccessful());
  ASSERT_TRUE(ZqCholeskyDecomposition(N(), Get("a"), l).IsSuccessful());
  ASSERT_TRUE(ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(N(), l, viaFactor).IsSuccessful());
  EXPECT_TRUE(AllNear(inverse, Get("inv"), 1e-11));
  EXPECT_TRUE(AllNear(viaFactor, Get("inv"), 1e-11));
  if (N() > 1) {
    ASSERT_TRUE(ZqInverseOfPosDefMatrix(N(), Get("a"), viaGeneral).IsSuccessful());
    EXPECT_TRUE(AllNear(viaGeneral, Get("inv"), 1e-11));
  }

  // l^-1 l = I, and l^-1 is lower triangular.
  Vec lInverse, identity;
  ASSERT_TRUE(ZqInverseOfLowerTriangularMatrix(N(), l, lInverse).IsSuccessful());
  ASSERT_TRUE(ZqMatrixTimesMatrix(N(), lInverse, l, identity).IsSuccessful());
  for (unsigned long i = 0; i < N(); ++i) {
    for (unsigned long j = 0; j < N(); ++j) {
      EXPECT_NEAR(identity[i * N() + j], i == j ? 1.0 : 0.0, 1e-12);
      if (j > i) {
        EXPECT_EQ(lInverse[i * N() + j], 0.0);
      }
    }
  }

  const double logdet = Get("logdet")[0];
  double out = 0.0, half = 0.0;
  ASSERT_TRUE(ZqLogDeterminantOfSymmPosDefMatrix(N(), Get("a"), out).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinRelative(out, logdet, 1e-12));
  ASSERT_TRUE(ZqLogDeterminantOfLowerTriSqRoot(N(), l, half).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinRelative(2.0 * half, logdet, 1e-12));
  ASSERT_TRUE(ZqLogDeterminantOfPosDefMatrix(N(), Get("a"), out).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinRelative(out, logdet, 1e-12));
}

TEST_P(SpdMatrix, ProductsTraceAndTranspose) {
  Vec product, transposed, twice;
  ASSERT_TRUE(ZqMatrixTimesMatrix(N(), Get("a"), Get("b2"), product).IsSuccessful());
  EXPECT_TRUE(AllNear(product, Get("ab")));
  double trace = 0.0;
  ASSERT_TRUE(ZqTraceOfMatrixProduct(N(), Get("a"), Get("b2"), trace).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinRelative(trace, Get("trace")[0], 1e-12));
  ASSERT_TRUE(ZqTransposeMatrix(N(), Get("b2"), transposed).IsSuccessful());
  for (unsigned long i = 0; i < N(); ++i) {
    for (unsigned long j = 0; j < N(); ++j) EXPECT_EQ(transposed[i * N() + j], Get("b2")[j * N() + i]);
  }
  ASSERT_TRUE(ZqTransposeMatrix(N(), transposed, transposed).IsSuccessful());  // in place
  EXPECT_EQ(transposed, Get("b2"));
}

INSTANTIATE_TEST_SUITE_P(NumpyCases, SpdMatrix, ::testing::Range<std::size_t>(0, 7),
                         [](const ::testing::TestParamInfo<std::size_t>& info) {
                           return "n" + std::to_string(SpdCases().at(info.param).n);
                         });

TEST(SpdCasesFile, HoldsTheSevenSizes) { ASSERT_EQ(SpdCases().size(), 7u); }

// --- Failures of the factorisation.

TEST(ZqCholeskyDecomposition, IndefiniteMatrixIsSingular) {
  Vec l;
  EXPECT_TRUE(FailedWith(ZqCholeskyDecomposition(2, {1.0, 2.0, 2.0, 1.0}, l), F::SingularMatrix,
                         {"ZqCholeskyDecomposition"}));
}

TEST(ZqCholeskyDecomposition, ZeroPivotIsSingularButNonNegativeDefinite) {
  const Vec a = {1.0, 1.0, 1.0, 1.0};  // rank 1: the second pivot is exactly 0
  Vec l;
  EXPECT_TRUE(FailedWith(ZqCholeskyDecomposition(2, a, l), F::SingularMatrix, {"ZqCholeskyDecomposition"}));
  EXPECT_TRUE(FailedWith(ZqMatrixIsPosDef(2, a), F::SingularMatrix, {"ZqCholeskyDecomposition", "ZqMatrixIsPosDef"}));
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, a).IsSuccessful());
}

TEST(ZqCholeskyDecomposition, NonFiniteElementsAreSingular) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  Vec l;
  for (const Vec& a : {Vec{nan, 0.0, 0.0, 1.0}, Vec{4.0, 0.0, nan, 1.0}, Vec{4.0, 0.0, inf, 1.0},
                       Vec{inf, 0.0, 0.0, 1.0}, Vec{1.0, 0.0, 0.0, -inf}}) {
    EXPECT_TRUE(FailedWith(ZqCholeskyDecomposition(2, a, l), F::SingularMatrix, {"ZqCholeskyDecomposition"}))
        << a[0] << " " << a[2] << " " << a[3];
  }
}

TEST(ZqCholeskyDecomposition, ReadsOnlyTheLowerTriangle) {
  Vec l;
  ASSERT_TRUE(ZqCholeskyDecomposition(2, {4.0, 999.0, 2.0, 5.0}, l).IsSuccessful());
  EXPECT_EQ(l, (Vec{2.0, 0.0, 1.0, 2.0}));
}

TEST(ZqCholeskyDecomposition, OutputMayBeTheInput) {
  Vec a = {4.0, 2.0, 2.0, 5.0};
  ASSERT_TRUE(ZqCholeskyDecomposition(2, a, a).IsSuccessful());
  EXPECT_EQ(a, (Vec{2.0, 0.0, 1.0, 2.0}));
}

TEST(MatrixFailureChains, CalleeFailuresCarryEveryCaller) {
  const Vec indefinite = {1.0, 2.0, 2.0, 1.0};
  double out = 0.0;
  EXPECT_TRUE(FailedWith(ZqLogDeterminantOfPosDefMatrix(2, indefinite, out), F::SingularMatrix,
                         {"ZqCholeskyDecomposition", "ZqLogDeterminantOfSymmPosDefMatrix",
                          "ZqLogDeterminantOfPosDefMatrix"}));
  EXPECT_EQ(out, DBL_MAX);
  Vec inverse;
  EXPECT_TRUE(FailedWith(ZqInverseOfPosDefMatrix(2, indefinite, inverse), F::SingularMatrix,
                         {"ZqCholeskyDecomposition", "ZqInverseOfSymmetricPositiveDefiniteMatrix",
                          "ZqInverseOfPosDefMatrix"}));
  EXPECT_TRUE(FailedWith(ZqSquareRootOfPosDefMatrix(2, {-1.0, 2.0}, inverse), F::SingularMatrix,
                         {"ZqSquareRootOfDiagonalMatrix", "ZqSquareRootOfPosDefMatrix"}));
  EXPECT_TRUE(FailedWith(ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(2, {1.0}, inverse), F::WrongInputMatrixSize,
                         {"ZqInverseOfLowerTriangularMatrix", "ZqInvOfSymmPosDefMatrixFromLowTriSqRoot"}));
}

// --- Sizes.

TEST(MatrixSizes, WrongFullMatrixLengthsFailWithTheirRoutineName) {
  const Vec three(3, 1.0), two(2, 1.0), four(4, 1.0);
  Vec out;
  double value = 0.0;
  auto wrongMatrix = [](const ZqStatModelResult& r, const std::string& name) {
    return FailedWith(r, F::WrongInputMatrixSize, {name});
  };
  EXPECT_TRUE(wrongMatrix(ZqCholeskyDecomposition(2, three, out), "ZqCholeskyDecomposition"));
  EXPECT_TRUE(wrongMatrix(ZqInverseOfLowerTriangularMatrix(2, three, out), "ZqInverseOfLowerTriangularMatrix"));
  EXPECT_TRUE(wrongMatrix(ZqMatrixTimesMatrix(2, four, three, out), "ZqMatrixTimesMatrix"));
  EXPECT_TRUE(wrongMatrix(ZqMatrixTimesVector(2, three, two, out), "ZqMatrixTimesVector"));
  EXPECT_TRUE(wrongMatrix(ZqSolveLowerTriangularEquations(2, three, two, out), "ZqSolveLowerTriangularEquations"));
  EXPECT_TRUE(wrongMatrix(ZqSolveTransposedLowerTriangularEquations(2, three, two, out),
                          "ZqSolveTransposedLowerTriangularEquations"));
  EXPECT_TRUE(wrongMatrix(ZqSolveSymmetricEquationsViaLowerTriSquareRoot(2, three, two, out),
                          "ZqSolveSymmetricEquationsViaLowerTriSquareRoot"));
  EXPECT_TRUE(wrongMatrix(ZqScalarTimesMatrixPlusDiagTerm(2, three, 1.0, 1.0, out), "ZqScalarTimesMatrixPlusDiagTerm"));
  EXPECT_TRUE(wrongMatrix(ZqLogDeterminantOfLowerTriSqRoot(2, three, value), "ZqLogDeterminantOfLowerTriSqRoot"));
  EXPECT_EQ(value, DBL_MAX);
  value = 5.0;
  EXPECT_TRUE(wrongMatrix(ZqTraceOfMatrixProduct(2, three, four, value), "ZqTraceOfMatrixProduct"));
  EXPECT_EQ(value, 0.0);
  for (const char* general : {"ZqTransposeMatrix", "ZqLogDeterminantOfPosDefMatrix", "ZqInverseOfPosDefMatrix",
                              "ZqSquareRootOfPosDefMatrix", "ZqMatrixIsPosDef", "ZqMatrixIsNonNegDef",
                              "ZqGetDiagonalElemOfMatrix"}) {
    const std::string name = general;
    ZqStatModelResult r;
    if (name == "ZqTransposeMatrix") r = ZqTransposeMatrix(2, three, out);
    if (name == "ZqLogDeterminantOfPosDefMatrix") r = ZqLogDeterminantOfPosDefMatrix(2, three, value);
    if (name == "ZqInverseOfPosDefMatrix") r = ZqInverseOfPosDefMatrix(2, three, out);
    if (name == "ZqSquareRootOfPosDefMatrix") r = ZqSquareRootOfPosDefMatrix(2, three, out);
    if (name == "ZqMatrixIsPosDef") r = ZqMatrixIsPosDef(2, three);
    if (name == "ZqMatrixIsNonNegDef") r = ZqMatrixIsNonNegDef(2, three);
    if (name == "ZqGetDiagonalElemOfMatrix") r = ZqGetDiagonalElemOfMatrix(2, three, 0, value);
    EXPECT_TRUE(wrongMatrix(r, name));
  }
  // A right-hand side of the wrong length is a vector failure.
  EXPECT_TRUE(FailedWith(ZqSolveLowerTriangularEquations(2, four, three, out), F::WrongInputVectorSize,
                         {"ZqSolveLowerTriangularEquations"}));
  EXPECT_TRUE(out.empty());
}

TEST(MatrixSizes, HugeDimensionDoesNotOverflowTheLengthTest) {
  // 2^32 squared wraps to 0 in 64 bits; an empty vector must not pass as full.
  Vec l;
  EXPECT_TRUE(FailedWith(ZqCholeskyDecomposition(1ul << 32, {}, l), F::WrongInputMatrixSize,
                         {"ZqCholeskyDecomposition"}));
}

TEST(MatrixSizes, DimensionZeroIsAnEmptyProblem) {
  const Vec empty;
  Vec out = {1.0};
  double value = 7.0;
  EXPECT_TRUE(ZqCholeskyDecomposition(0, empty, out).IsSuccessful());
  EXPECT_TRUE(out.empty());
  EXPECT_TRUE(ZqLogDeterminantOfSymmPosDefMatrix(0, empty, value).IsSuccessful());
  EXPECT_EQ(value, 0.0);
  EXPECT_TRUE(ZqLogDeterminantOfPosDefMatrix(0, empty, value).IsSuccessful());
  EXPECT_EQ(value, 0.0);
  EXPECT_TRUE(ZqInverseOfSymmetricPositiveDefiniteMatrix(0, empty, out).IsSuccessful());
  EXPECT_TRUE(out.empty());
  EXPECT_TRUE(ZqSolveSymmetricEquationsViaLowerTriSquareRoot(0, empty, empty, out).IsSuccessful());
  EXPECT_TRUE(ZqMatrixTimesMatrix(0, empty, empty, out).IsSuccessful());
  EXPECT_TRUE(ZqTraceOfMatrixProduct(0, empty, empty, value).IsSuccessful());
  EXPECT_EQ(value, 0.0);
}

// --- Kinds.

TEST(MatrixKinds, LengthOneIsAlwaysTheScalarKind) {
  double value = 0.0;
  ASSERT_TRUE(ZqLogDeterminantOfPosDefMatrix(5, {2.0}, value).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinUlps(value, 5.0 * std::log(2.0), 1));
  ASSERT_TRUE(ZqLogDeterminantOfPosDefMatrix(1, {-3.0}, value).NotSuccessful());
  EXPECT_TRUE(FailedWith(ZqLogDeterminantOfPosDefMatrix(1, {-3.0}, value), F::SingularMatrix,
                         {"ZqLogDeterminantOfScalarMatrix", "ZqLogDeterminantOfPosDefMatrix"}));
  Vec out;
  ASSERT_TRUE(ZqInverseOfPosDefMatrix(3, {4.0}, out).IsSuccessful());
  EXPECT_EQ(out, Vec{0.25});
  ASSERT_TRUE(ZqSquareRootOfPosDefMatrix(3, {4.0}, out).IsSuccessful());
  EXPECT_EQ(out, Vec{2.0});
  ASSERT_TRUE(ZqTransposeMatrix(3, {4.0}, out).IsSuccessful());
  EXPECT_EQ(out, Vec{4.0});
}

TEST(MatrixKinds, DiagonalKind) {
  const Vec d = {4.0, 0.25, 9.0};
  double value = 0.0;
  ASSERT_TRUE(ZqLogDeterminantOfPosDefMatrix(3, d, value).IsSuccessful());
  EXPECT_TRUE(VarimoTest::WithinRelative(value, std::log(9.0), 1e-15));
  Vec out;
  ASSERT_TRUE(ZqInverseOfPosDefMatrix(3, d, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{0.25, 4.0, 1.0 / 9.0}));
  ASSERT_TRUE(ZqSquareRootOfPosDefMatrix(3, d, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{2.0, 0.5, 3.0}));
  ASSERT_TRUE(ZqGetDiagonalElemOfMatrix(3, d, 2, value).IsSuccessful());
  EXPECT_EQ(value, 9.0);
  ZqStatModelResult r = ZqLogDeterminantOfDiagonalMatrix(3, {1.0, 0.0, 2.0}, value);
  EXPECT_TRUE(FailedWith(r, F::SingularMatrix, {"ZqLogDeterminantOfDiagonalMatrix"}));
  EXPECT_EQ(value, DBL_MAX);
  EXPECT_TRUE(FailedWith(ZqInverseOfDiagonalMatrix(3, {1.0, 2.0}, out), F::WrongInputMatrixSize,
                         {"ZqInverseOfDiagonalMatrix"}));
  EXPECT_TRUE(FailedWith(ZqInverseOfDiagonalMatrix(2, {1.0, std::nan("")}, out), F::SingularMatrix,
                         {"ZqInverseOfDiagonalMatrix"}));
  EXPECT_TRUE(out.empty());
}

TEST(MatrixKinds, ScalarFunctionsCheckLengthAndSign) {
  Vec out;
  double value = 0.0;
  EXPECT_TRUE(FailedWith(ZqInverseOfScalarMatrix({1.0, 2.0}, out), F::WrongInputMatrixSize,
                         {"ZqInverseOfScalarMatrix"}));
  EXPECT_TRUE(FailedWith(ZqInverseOfScalarMatrix({0.0}, out), F::SingularMatrix, {"ZqInverseOfScalarMatrix"}));
  EXPECT_TRUE(FailedWith(ZqSquareRootOfScalarMatrix({-1.0}, out), F::SingularMatrix, {"ZqSquareRootOfScalarMatrix"}));
  EXPECT_TRUE(FailedWith(ZqLogDeterminantOfScalarMatrix(3, {std::numeric_limits<double>::infinity()}, value),
                         F::SingularMatrix, {"ZqLogDeterminantOfScalarMatrix"}));
  ASSERT_TRUE(ZqLogDeterminantOfScalarMatrix(0, {3.0}, value).IsSuccessful());
  EXPECT_EQ(value, 0.0);
}

TEST(MatrixDefiniteness, ScalarZeroIsNonNegativeButNotPositive) {
  const ZqStatModelResult pos = ZqMatrixIsPosDef(3, {0.0});
  EXPECT_TRUE(FailedWith(pos, F::SingularMatrix, {"ZqMatrixIsPosDef"}));
  EXPECT_EQ(Comments(pos), std::vector<std::string>{"Scalar matrix with non-positive scalar"});
  EXPECT_TRUE(ZqMatrixIsNonNegDef(3, {0.0}).IsSuccessful());
  const ZqStatModelResult neg = ZqMatrixIsNonNegDef(3, {-1.0});
  EXPECT_TRUE(FailedWith(neg, F::SingularMatrix, {"ZqMatrixIsNonNegDef"}));
  EXPECT_EQ(Comments(neg), std::vector<std::string>{"Scalar matrix with non-positive scalar"});
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, {0.0, 1.0}).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsPosDef(2, {0.0, 1.0}).NotSuccessful());
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, {-1e-300, 1.0}).NotSuccessful());
}

TEST(MatrixDefiniteness, TheDiagonalShiftIsTheOnlyTolerance) {
  // Eigenvalues 2 and -1e-8: the 2^-23 shift lifts the negative one above 0.
  const double e = 1e-8;
  const Vec slightlyIndefinite = {1.0 - e / 2, 1.0 + e / 2, 1.0 + e / 2, 1.0 - e / 2};
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, slightlyIndefinite).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsPosDef(2, slightlyIndefinite).NotSuccessful());
  const Vec clearlyIndefinite = {1.0, 2.0, 2.0, 1.0};
  EXPECT_TRUE(FailedWith(ZqMatrixIsNonNegDef(2, clearlyIndefinite), F::SingularMatrix,
                         {"ZqCholeskyDecomposition", "ZqMatrixIsNonNegDef"}));
}

// --- Triangular solves divide without a test.

TEST(TriangularSolves, ZeroPivotGivesInfinityAndSuccess) {
  Vec x;
  ASSERT_TRUE(ZqSolveLowerTriangularEquations(2, {0.0, 0.0, 1.0, 1.0}, {1.0, 1.0}, x).IsSuccessful());
  EXPECT_TRUE(std::isinf(x[0]));
  EXPECT_FALSE(std::isfinite(x[1]));
  Vec inverse;
  ASSERT_TRUE(ZqInverseOfLowerTriangularMatrix(2, {0.0, 0.0, 1.0, 1.0}, inverse).IsSuccessful());
  EXPECT_TRUE(std::isinf(inverse[0]));
  EXPECT_EQ(inverse[1], 0.0);  // still lower triangular
}

TEST(TriangularSolves, TransposedSolveReadsTheLowerTriangle) {
  // l = [[2, 0], [1, 4]] with junk above the diagonal; l' x = b by hand:
  // 4 x1 = 8 -> x1 = 2; 2 x0 + x1 = 6 -> x0 = 2.
  Vec x;
  ASSERT_TRUE(ZqSolveTransposedLowerTriangularEquations(2, {2.0, 99.0, 1.0, 4.0}, {6.0, 8.0}, x).IsSuccessful());
  EXPECT_EQ(x, (Vec{2.0, 2.0}));
  ASSERT_TRUE(ZqSolveLowerTriangularEquations(2, {2.0, 99.0, 1.0, 4.0}, {4.0, 10.0}, x).IsSuccessful());
  EXPECT_EQ(x, (Vec{2.0, 2.0}));
}

TEST(MatrixShift, ScalarTimesMatrixPlusDiagTerm) {
  Vec out;
  ASSERT_TRUE(ZqScalarTimesMatrixPlusDiagTerm(2, {1.0, 2.0, 3.0, 4.0}, 2.0, 0.5, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{2.5, 4.0, 6.0, 8.5}));
}

// --- Vectors.

TEST(VectorOps, ArithmeticByHand) {
  double dot = 0.0;
  ASSERT_TRUE(ZqDotProductOfVectors(3, {1.0, 2.0, 3.0}, {4.0, -5.0, 6.0}, dot).IsSuccessful());
  EXPECT_EQ(dot, 12.0);
  Vec acc = {1.0, 1.0};
  ASSERT_TRUE(ZqVectorElementwiseSumAccumulate(2, {2.0, 3.0}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{3.0, 4.0}));
  ASSERT_TRUE(ZqVectorSaxpy(2, -2.0, {1.0, 0.5}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{1.0, 3.0}));
  ASSERT_TRUE(ZqVectorElementwiseProductAccumulate(2, {4.0, -1.0}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{4.0, -3.0}));
  Vec out;
  ASSERT_TRUE(ZqScalarTimesVector(2, 0.5, acc, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{2.0, -1.5}));
  ASSERT_TRUE(ZqScalarTimesVector(2, 2.0, out, out).IsSuccessful());  // in place
  EXPECT_EQ(out, (Vec{4.0, -3.0}));
  ASSERT_TRUE(ZqDifferenceBetweenVectors(2, {5.0, 5.0}, {1.0, 7.0}, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{4.0, -2.0}));
  ASSERT_TRUE(ZqVectorVectorTranspose(2, {2.0, 3.0}, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{4.0, 6.0, 6.0, 9.0}));
}

TEST(VectorOps, WrongLengthsFail) {
  Vec acc = {1.0, 2.0};
  double dot = 0.0;
  EXPECT_TRUE(FailedWith(ZqDotProductOfVectors(3, {1.0, 2.0, 3.0}, {1.0}, dot), F::WrongInputVectorSize,
                         {"ZqDotProductOfVectors"}));
  EXPECT_EQ(dot, DBL_MAX);
  EXPECT_TRUE(FailedWith(ZqVectorSaxpy(3, 1.0, {1.0, 2.0, 3.0}, acc), F::WrongInputVectorSize, {"ZqVectorSaxpy"}));
  EXPECT_EQ(acc, (Vec{1.0, 2.0}));  // untouched
  EXPECT_TRUE(FailedWith(ZqVectorElementwiseSumAccumulate(1, {1.0}, acc), F::WrongInputVectorSize,
                         {"ZqVectorElementwiseSumAccumulate"}));
  EXPECT_TRUE(FailedWith(ZqVectorElementwiseProductAccumulate(1, {1.0}, acc), F::WrongInputVectorSize,
                         {"ZqVectorElementwiseProductAccumulate"}));
  EXPECT_TRUE(FailedWith(ZqScalarTimesVector(1, 1.0, acc, acc), F::WrongInputVectorSize, {"ZqScalarTimesVector"}));
  EXPECT_TRUE(FailedWith(ZqDifferenceBetweenVectors(2, acc, {1.0}, acc), F::WrongInputVectorSize,
                         {"ZqDifferenceBetweenVectors"}));
  EXPECT_TRUE(FailedWith(ZqVectorVectorTranspose(3, {1.0}, acc), F::WrongInputVectorSize,
                         {"ZqVectorVectorTranspose"}));
}

TEST(IndexChecks, ElementGetterAndItsTexts) {
  double out = 0.0;
  ASSERT_TRUE(ZqGetVecElementFromIndex(3, {1.0, 2.0, 3.0}, 2, out).IsSuccessful());
  EXPECT_EQ(out, 3.0);
  ASSERT_TRUE(ZqGetVecElementFromIndex(3, {7.0}, 2, out).IsSuccessful());  // constant vector
  EXPECT_EQ(out, 7.0);
  const ZqStatModelResult r = ZqGetVecElementFromIndex(3, {1.0, 2.0, 3.0}, 3, out);
  EXPECT_TRUE(FailedWith(r, F::ArgumentOutOfRange, {"ZqGetVecElementFromIndex"}));
  EXPECT_EQ(Comments(r), std::vector<std::string>{"Index: 3 bigger than dimension: 3"});
  EXPECT_EQ(out, DBL_MAX);
  const ZqStatModelResult d = ZqGetDiagonalElemOfMatrix(2, {1.0, 2.0, 3.0, 4.0}, 5, out);
  EXPECT_TRUE(FailedWith(d, F::ArgumentOutOfRange, {"ZqGetDiagonalElemOfMatrix"}));
  EXPECT_EQ(Comments(d), std::vector<std::string>{"Index: 5 bigger than matrix Dimension: 2"});
  EXPECT_EQ(out, DBL_MAX);
  ASSERT_TRUE(ZqGetDiagonalElemOfMatrix(2, {1.0, 2.0, 3.0, 4.0}, 1, out).IsSuccessful());
  EXPECT_EQ(out, 4.0);
  ASSERT_TRUE(ZqGetDiagonalElemOfMatrix(9, {6.0}, 8, out).IsSuccessful());
  EXPECT_EQ(out, 6.0);
}

TEST(IndexChecks, IndexListsAndBlocks) {
  Vec out;
  ASSERT_TRUE(ZqGetVecOfVecElementsFromVecOfIndices(3, {1.0, 2.0, 3.0}, {2, 0, 2}, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{3.0, 1.0, 3.0}));
  ZqStatModelResult r = ZqGetVecOfVecElementsFromVecOfIndices(3, {1.0, 2.0, 3.0}, {0, 1, 2, 0}, out);
  EXPECT_TRUE(FailedWith(r, F::WrongInputVectorSize, {"ZqGetVecOfVecElementsFromVecOfIndices"}));
  EXPECT_EQ(Comments(r), std::vector<std::string>{"Too many indices"});
  r = ZqGetVecOfVecElementsFromVecOfIndices(3, {1.0, 2.0, 3.0}, {0, 4}, out);
  EXPECT_TRUE(FailedWith(r, F::ArgumentOutOfRange, {"ZqGetVecOfVecElementsFromVecOfIndices"}));
  EXPECT_EQ(Comments(r), std::vector<std::string>{"Index: 4 bigger than dimension: 3"});

  const Vec full = {0.0, 1.0, 2.0, 10.0, 11.0, 12.0, 20.0, 21.0, 22.0};
  ASSERT_TRUE(ZqGetBlockSubMatrixOfMatrix(3, full, {2, 0}, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{22.0, 20.0, 2.0, 0.0}));
  ASSERT_TRUE(ZqGetBlockSubMatrixOfMatrix(3, {5.0, 6.0, 7.0}, {2, 1}, out).IsSuccessful());
  EXPECT_EQ(out, (Vec{7.0, 6.0}));
  ASSERT_TRUE(ZqGetBlockSubMatrixOfMatrix(3, {5.0}, {2, 1}, out).IsSuccessful());
  EXPECT_EQ(out, Vec{5.0});
  EXPECT_TRUE(FailedWith(ZqGetBlockSubMatrixOfMatrix(3, full, {3}, out), F::ArgumentOutOfRange,
                         {"ZqGetBlockSubMatrixOfMatrix"}));
  EXPECT_TRUE(FailedWith(ZqGetBlockSubMatrixOfMatrix(2, {1.0, 2.0}, {0, 1, 0}, out), F::WrongInputVectorSize,
                         {"ZqGetBlockSubMatrixOfMatrix"}));
}

TEST(ZqPrintVectorDoubles, TextAndPrecision) {
  EXPECT_EQ(ZqPrintVectorDoubles("v", {1.0, 2.5, -3.0}, 0), "Values of vector v 1 2.5 -3");
  EXPECT_EQ(ZqPrintVectorDoubles("pi", {3.14159265}, 3), "Values of vector pi 3.14");
  EXPECT_EQ(ZqPrintVectorDoubles("w", {1.0 / 3.0}, 0), "Values of vector w 0.333333");
  EXPECT_EQ(ZqPrintVectorDoubles("e", {}, 0), "Values of vector e");
}

}  // namespace
}  // namespace Varimo
