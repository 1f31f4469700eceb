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

using VarimoTest::Comments;
using VarimoTest::Context;

namespace F = ZqStatModelFailureType;
using Vec = std::vector<double>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Results on well-conditioned matrices against numpy, relative to the
// largest element of the expected matrix. An expected exact zero must come
// out exactly zero: numpy's factors have exact zeros above the diagonal, and
// so must ours.
constexpr double kMatrixTolerance = 1e-12;

::testing::AssertionResult AllNear(const Vec& actual, const Vec& expected, double tolerance = kMatrixTolerance) {
  if (actual.size() != expected.size()) {
    return ::testing::AssertionFailure() << "size " << actual.size() << " vs " << expected.size();
  }
  double scale = 0.0;
  for (double e : expected) scale = std::max(scale, std::fabs(e));
  if (scale == 0.0) scale = 1.0;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const bool near = expected[i] == 0.0 ? actual[i] == 0.0 : std::fabs(actual[i] - expected[i]) <= tolerance * scale;
    if (!near) return ::testing::AssertionFailure() << "element " << i << ": " << actual[i] << " vs " << expected[i];
  }
  return ::testing::AssertionSuccess();
}

// The result failed with `type` in the routine chain `context`; and with the
// comments `comments`, when any are given.
::testing::AssertionResult FailedWith(const ZqStatModelResult& result, std::uint32_t type,
                                      const std::vector<std::string>& context,
                                      const std::vector<std::string>& comments = {}) {
  if (result.NotSuccessful() && result.GetFailureType() == type && Context(result) == context &&
      (comments.empty() || Comments(result) == comments)) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "wanted type " << type << "; " << result.ReportStatResultDetails();
}

// routine(...) fails with `type`, and the failure arose in the routine itself.
#define EXPECT_OWN_FAILURE(type, routine, ...) EXPECT_TRUE(FailedWith(routine(__VA_ARGS__), type, {#routine}))

// The output of a routine that must succeed. A failure is reported here, and
// the output it leaves (empty, or DBL_MAX) fails the comparison that follows.
// The output starts as NaN, so that one the routine never writes cannot pass.
template <class Out = Vec, class Routine, class... Args>
Out Solved(Routine routine, const Args&... args) {
  Out out{kNaN};
  const ZqStatModelResult result = routine(args..., out);
  EXPECT_TRUE(result.IsSuccessful()) << result.ReportStatResultDetails();
  return out;
}

// --- Random SPD matrices against numpy (tests/data/numerics/spd_cases.txt).

struct SpdCase {
  unsigned long n = 0;
  std::map<std::string, Vec> values;
};

const std::vector<SpdCase>& SpdCases() {
  static const std::vector<SpdCase> cases = [] {
    std::vector<SpdCase> loaded;
    for (const auto& tokens : VarimoTest::ReadReferenceLines("numerics/spd_cases.txt")) {
      if (tokens[0] == "case") {
        loaded.push_back({static_cast<unsigned long>(VarimoTest::ToDouble(tokens[1])), {}});
      } else if (!loaded.empty()) {
        loaded.back().values[tokens[0]] = VarimoTest::ToDoubles(tokens, 1);
      }
    }
    return loaded;
  }();
  return cases;
}

class SpdMatrix : public ::testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override { l = Solved(ZqCholeskyDecomposition, n, Get("a")); }
  const Vec& Get(const std::string& name) const { return SpdCases().at(GetParam()).values.at(name); }
  const unsigned long n = SpdCases().at(GetParam()).n;
  Vec l;
};

// n = 1 goes through the scalar kind of the general routines.
TEST_P(SpdMatrix, FactorAndSolves) {
  const Vec& a = Get("a");
  EXPECT_TRUE(AllNear(l, Get("l")));
  EXPECT_TRUE(AllNear(Solved(ZqSquareRootOfPosDefMatrix, n, a), Get("l")));
  EXPECT_TRUE(ZqMatrixIsPosDef(n, a).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsNonNegDef(n, a).IsSuccessful());
  const Vec x = Solved(ZqSolveSymmetricEquationsViaLowerTriSquareRoot, n, l, Get("b"));
  EXPECT_TRUE(AllNear(x, Get("x"), 1e-11));
  // The two halves one after the other give the same.
  const Vec y = Solved(ZqSolveLowerTriangularEquations, n, l, Get("b"));
  EXPECT_TRUE(AllNear(Solved(ZqSolveTransposedLowerTriangularEquations, n, l, y), Get("x"), 1e-11));
  EXPECT_TRUE(AllNear(Solved(ZqMatrixTimesVector, n, a, x), Get("b"), 1e-11));
}

TEST_P(SpdMatrix, InversesLogDeterminantsAndProducts) {
  const Vec &a = Get("a"), &b2 = Get("b2");
  EXPECT_TRUE(AllNear(Solved(ZqInverseOfSymmetricPositiveDefiniteMatrix, n, a), Get("inv"), 1e-11));
  EXPECT_TRUE(AllNear(Solved(ZqInvOfSymmPosDefMatrixFromLowTriSqRoot, n, l), Get("inv"), 1e-11));
  EXPECT_TRUE(AllNear(Solved(ZqInverseOfPosDefMatrix, n, a), Get("inv"), 1e-11));
  // l^-1 l = I.
  const Vec identity = Solved(ZqMatrixTimesMatrix, n, Solved(ZqInverseOfLowerTriangularMatrix, n, l), l);
  ASSERT_EQ(identity.size(), n * n);
  for (unsigned long i = 0; i < n * n; ++i) EXPECT_NEAR(identity[i], i % (n + 1) == 0 ? 1.0 : 0.0, 1e-12) << i;

  const double logdet = Get("logdet")[0];
  EXPECT_TRUE(VarimoTest::WithinRelative(Solved<double>(ZqLogDeterminantOfSymmPosDefMatrix, n, a), logdet, 1e-12));
  EXPECT_TRUE(VarimoTest::WithinRelative(2.0 * Solved<double>(ZqLogDeterminantOfLowerTriSqRoot, n, l), logdet, 1e-12));
  EXPECT_TRUE(VarimoTest::WithinRelative(Solved<double>(ZqLogDeterminantOfPosDefMatrix, n, a), logdet, 1e-12));

  EXPECT_TRUE(AllNear(Solved(ZqMatrixTimesMatrix, n, a, b2), Get("ab")));
  EXPECT_TRUE(VarimoTest::WithinRelative(Solved<double>(ZqTraceOfMatrixProduct, n, a, b2), Get("trace")[0], 1e-12));
  Vec transposed = Solved(ZqTransposeMatrix, n, b2);
  ASSERT_EQ(transposed.size(), n * n);
  for (unsigned long i = 0; i < n * n; ++i) EXPECT_EQ(transposed[i], b2[(i % n) * n + i / n]) << i;
  ASSERT_TRUE(ZqTransposeMatrix(n, transposed, transposed).IsSuccessful());  // in place
  EXPECT_EQ(transposed, b2);
}

INSTANTIATE_TEST_SUITE_P(NumpyCases, SpdMatrix, ::testing::Range<std::size_t>(0, 7),
                         [](const ::testing::TestParamInfo<std::size_t>& info) {
                           return "n" + std::to_string(SpdCases().at(info.param).n);
                         });

TEST(SpdCasesFile, HoldsTheSevenSizes) { ASSERT_EQ(SpdCases().size(), 7u); }

// --- The factorisation.

TEST(ZqCholeskyDecomposition, NotPositiveDefiniteOrNotFiniteIsSingular) {
  Vec l;
  // Indefinite, rank 1 (the second pivot is exactly 0), then NaN or infinite
  // elements.
  for (const Vec& a :
       {Vec{1.0, 2.0, 2.0, 1.0}, Vec{1.0, 1.0, 1.0, 1.0}, Vec{kNaN, 0.0, 0.0, 1.0}, Vec{4.0, 0.0, kNaN, 1.0},
        Vec{4.0, 0.0, kInf, 1.0}, Vec{kInf, 0.0, 0.0, 1.0}, Vec{1.0, 0.0, 0.0, -kInf}}) {
    EXPECT_OWN_FAILURE(F::SingularMatrix, ZqCholeskyDecomposition, 2, a, l) << a[0] << " " << a[2] << " " << a[3];
  }
  // The rank-1 matrix is still non-negative definite.
  EXPECT_TRUE(
      FailedWith(ZqMatrixIsPosDef(2, Vec(4, 1.0)), F::SingularMatrix, {"ZqCholeskyDecomposition", "ZqMatrixIsPosDef"}));
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, Vec(4, 1.0)).IsSuccessful());
}

TEST(ZqCholeskyDecomposition, ReadsOnlyTheLowerTriangleAndMayWriteOverItsInput) {
  EXPECT_EQ(Solved(ZqCholeskyDecomposition, 2, Vec{4.0, 999.0, 2.0, 5.0}), (Vec{2.0, 0.0, 1.0, 2.0}));
  Vec a = {4.0, 2.0, 2.0, 5.0};
  ASSERT_TRUE(ZqCholeskyDecomposition(2, a, a).IsSuccessful());
  EXPECT_EQ(a, (Vec{2.0, 0.0, 1.0, 2.0}));
}

TEST(MatrixFailureChains, CalleeFailuresCarryEveryCaller) {
  const Vec indefinite = {1.0, 2.0, 2.0, 1.0};
  double out = 0.0;
  EXPECT_TRUE(
      FailedWith(ZqLogDeterminantOfPosDefMatrix(2, indefinite, out), F::SingularMatrix,
                 {"ZqCholeskyDecomposition", "ZqLogDeterminantOfSymmPosDefMatrix", "ZqLogDeterminantOfPosDefMatrix"}));
  EXPECT_EQ(out, DBL_MAX);
  Vec inverse;
  EXPECT_TRUE(
      FailedWith(ZqInverseOfPosDefMatrix(2, indefinite, inverse), F::SingularMatrix,
                 {"ZqCholeskyDecomposition", "ZqInverseOfSymmetricPositiveDefiniteMatrix", "ZqInverseOfPosDefMatrix"}));
  EXPECT_TRUE(FailedWith(ZqSquareRootOfPosDefMatrix(2, {-1.0, 2.0}, inverse), F::SingularMatrix,
                         {"ZqSquareRootOfDiagonalMatrix", "ZqSquareRootOfPosDefMatrix"}));
  EXPECT_TRUE(FailedWith(ZqInvOfSymmPosDefMatrixFromLowTriSqRoot(2, {1.0}, inverse), F::WrongInputMatrixSize,
                         {"ZqInverseOfLowerTriangularMatrix", "ZqInvOfSymmPosDefMatrixFromLowTriSqRoot"}));
  EXPECT_TRUE(FailedWith(ZqLogDeterminantOfPosDefMatrix(1, {-3.0}, out), F::SingularMatrix,
                         {"ZqLogDeterminantOfScalarMatrix", "ZqLogDeterminantOfPosDefMatrix"}));
  EXPECT_TRUE(FailedWith(ZqMatrixIsNonNegDef(2, indefinite), F::SingularMatrix,
                         {"ZqCholeskyDecomposition", "ZqMatrixIsNonNegDef"}));
}

// --- Sizes.

TEST(MatrixSizes, WrongLengthsFailWithTheirRoutineName) {
  const Vec two(2, 1.0), three(3, 1.0), four(4, 1.0);
  Vec out;
  double value = 0.0;
  constexpr auto kMatrix = F::WrongInputMatrixSize;
  EXPECT_OWN_FAILURE(kMatrix, ZqCholeskyDecomposition, 2, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqInverseOfLowerTriangularMatrix, 2, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqMatrixTimesMatrix, 2, four, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqMatrixTimesVector, 2, three, two, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqSolveLowerTriangularEquations, 2, three, two, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqSolveTransposedLowerTriangularEquations, 2, three, two, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqSolveSymmetricEquationsViaLowerTriSquareRoot, 2, three, two, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqScalarTimesMatrixPlusDiagTerm, 2, three, 1.0, 1.0, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqTransposeMatrix, 2, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqInverseOfPosDefMatrix, 2, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqSquareRootOfPosDefMatrix, 2, three, out);
  EXPECT_OWN_FAILURE(kMatrix, ZqMatrixIsPosDef, 2, three);
  EXPECT_OWN_FAILURE(kMatrix, ZqMatrixIsNonNegDef, 2, three);
  EXPECT_OWN_FAILURE(kMatrix, ZqLogDeterminantOfLowerTriSqRoot, 2, three, value);
  EXPECT_EQ(value, DBL_MAX);
  value = 5.0;
  EXPECT_OWN_FAILURE(kMatrix, ZqTraceOfMatrixProduct, 2, three, four, value);
  EXPECT_EQ(value, 0.0);
  EXPECT_OWN_FAILURE(kMatrix, ZqGetDiagonalElemOfMatrix, 2, three, 0, value);
  EXPECT_OWN_FAILURE(kMatrix, ZqLogDeterminantOfPosDefMatrix, 2, three, value);
  // 2^32 squared wraps to 0 in 64 bits; an empty vector must not pass as full.
  EXPECT_OWN_FAILURE(kMatrix, ZqCholeskyDecomposition, 1ul << 32, Vec{}, out);
  // A right-hand side of the wrong length is a vector failure.
  out = {1.0};  // to see it cleared
  EXPECT_OWN_FAILURE(F::WrongInputVectorSize, ZqSolveLowerTriangularEquations, 2, four, three, out);
  EXPECT_TRUE(out.empty());
}

TEST(MatrixSizes, DimensionZeroIsAnEmptyProblem) {
  const Vec empty;
  EXPECT_EQ(Solved(ZqCholeskyDecomposition, 0, empty), empty);
  EXPECT_EQ(Solved<double>(ZqLogDeterminantOfSymmPosDefMatrix, 0, empty), 0.0);
  EXPECT_EQ(Solved<double>(ZqLogDeterminantOfPosDefMatrix, 0, empty), 0.0);
  EXPECT_EQ(Solved(ZqInverseOfSymmetricPositiveDefiniteMatrix, 0, empty), empty);
  EXPECT_EQ(Solved(ZqSolveSymmetricEquationsViaLowerTriSquareRoot, 0, empty, empty), empty);
  EXPECT_EQ(Solved(ZqMatrixTimesMatrix, 0, empty, empty), empty);
  EXPECT_EQ(Solved<double>(ZqTraceOfMatrixProduct, 0, empty, empty), 0.0);
}

// --- Kinds.

TEST(MatrixKinds, LengthOneIsTheScalarKindAndThenTheDiagonalKind) {
  const double logDet = Solved<double>(ZqLogDeterminantOfPosDefMatrix, 5, Vec{2.0});
  EXPECT_TRUE(VarimoTest::WithinUlps(logDet, 5.0 * std::log(2.0), 1));
  EXPECT_EQ(Solved(ZqInverseOfPosDefMatrix, 3, Vec{4.0}), Vec{0.25});
  EXPECT_EQ(Solved(ZqSquareRootOfPosDefMatrix, 3, Vec{4.0}), Vec{2.0});
  EXPECT_EQ(Solved(ZqTransposeMatrix, 3, Vec{4.0}), Vec{4.0});
  EXPECT_EQ(Solved<double>(ZqLogDeterminantOfScalarMatrix, 0, Vec{3.0}), 0.0);

  const Vec d = {4.0, 0.25, 9.0};
  EXPECT_TRUE(VarimoTest::WithinRelative(Solved<double>(ZqLogDeterminantOfPosDefMatrix, 3, d), std::log(9.0), 1e-15));
  EXPECT_EQ(Solved(ZqInverseOfPosDefMatrix, 3, d), (Vec{0.25, 4.0, 1.0 / 9.0}));
  EXPECT_EQ(Solved(ZqSquareRootOfPosDefMatrix, 3, d), (Vec{2.0, 0.5, 3.0}));
  EXPECT_EQ(Solved<double>(ZqGetDiagonalElemOfMatrix, 3, d, 2), 9.0);
}

TEST(MatrixKinds, ScalarAndDiagonalFunctionsCheckLengthAndSign) {
  Vec out = {1.0};  // to see it cleared
  double value = 0.0;
  EXPECT_OWN_FAILURE(F::SingularMatrix, ZqLogDeterminantOfDiagonalMatrix, 3, {1.0, 0.0, 2.0}, value);
  EXPECT_EQ(value, DBL_MAX);
  EXPECT_OWN_FAILURE(F::WrongInputMatrixSize, ZqInverseOfDiagonalMatrix, 3, {1.0, 2.0}, out);
  EXPECT_OWN_FAILURE(F::SingularMatrix, ZqInverseOfDiagonalMatrix, 2, {1.0, kNaN}, out);
  EXPECT_TRUE(out.empty());
  EXPECT_OWN_FAILURE(F::WrongInputMatrixSize, ZqInverseOfScalarMatrix, {1.0, 2.0}, out);
  EXPECT_OWN_FAILURE(F::SingularMatrix, ZqInverseOfScalarMatrix, {0.0}, out);
  EXPECT_OWN_FAILURE(F::SingularMatrix, ZqSquareRootOfScalarMatrix, {-1.0}, out);
  EXPECT_OWN_FAILURE(F::SingularMatrix, ZqLogDeterminantOfScalarMatrix, 3, {kInf}, value);
}

TEST(MatrixDefiniteness, ZeroIsNonNegativeButNotPositive) {
  const std::vector<std::string> nonPositive = {"Scalar matrix with non-positive scalar"};
  EXPECT_TRUE(FailedWith(ZqMatrixIsPosDef(3, {0.0}), F::SingularMatrix, {"ZqMatrixIsPosDef"}, nonPositive));
  EXPECT_TRUE(ZqMatrixIsNonNegDef(3, {0.0}).IsSuccessful());
  EXPECT_TRUE(FailedWith(ZqMatrixIsNonNegDef(3, {-1.0}), F::SingularMatrix, {"ZqMatrixIsNonNegDef"}, nonPositive));
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, {0.0, 1.0}).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsPosDef(2, {0.0, 1.0}).NotSuccessful());
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, {-1e-300, 1.0}).NotSuccessful());
  // Eigenvalues 2 and -1e-8: the 2^-23 shift, the only tolerance, lifts the
  // negative one above 0.
  const double e = 1e-8;
  const Vec slightlyIndefinite = {1.0 - e / 2, 1.0 + e / 2, 1.0 + e / 2, 1.0 - e / 2};
  EXPECT_TRUE(ZqMatrixIsNonNegDef(2, slightlyIndefinite).IsSuccessful());
  EXPECT_TRUE(ZqMatrixIsPosDef(2, slightlyIndefinite).NotSuccessful());
}

// --- Triangular solves divide without a test.

TEST(TriangularSolves, ZeroPivotGivesInfinityAndOnlyTheLowerTriangleIsRead) {
  const Vec x = Solved(ZqSolveLowerTriangularEquations, 2, Vec{0.0, 0.0, 1.0, 1.0}, Vec{1.0, 1.0});
  EXPECT_TRUE(std::isinf(x.at(0)));
  EXPECT_FALSE(std::isfinite(x.at(1)));
  const Vec inverse = Solved(ZqInverseOfLowerTriangularMatrix, 2, Vec{0.0, 0.0, 1.0, 1.0});
  EXPECT_TRUE(std::isinf(inverse.at(0)));
  EXPECT_EQ(inverse.at(1), 0.0);  // still lower triangular

  // l = [[2, 0], [1, 4]] with junk above the diagonal; l' x = b by hand:
  // 4 x1 = 8 -> x1 = 2; 2 x0 + x1 = 6 -> x0 = 2.
  const Vec l = {2.0, 99.0, 1.0, 4.0};
  EXPECT_EQ(Solved(ZqSolveTransposedLowerTriangularEquations, 2, l, Vec{6.0, 8.0}), (Vec{2.0, 2.0}));
  EXPECT_EQ(Solved(ZqSolveLowerTriangularEquations, 2, l, Vec{4.0, 10.0}), (Vec{2.0, 2.0}));
}

TEST(MatrixShift, ScalarTimesMatrixPlusDiagTerm) {
  EXPECT_EQ(Solved(ZqScalarTimesMatrixPlusDiagTerm, 2, Vec{1.0, 2.0, 3.0, 4.0}, 2.0, 0.5), (Vec{2.5, 4.0, 6.0, 8.5}));
}

// --- Vectors.

TEST(VectorOps, ArithmeticByHand) {
  EXPECT_EQ(Solved<double>(ZqDotProductOfVectors, 3, Vec{1.0, 2.0, 3.0}, Vec{4.0, -5.0, 6.0}), 12.0);
  Vec acc = {1.0, 1.0};
  ASSERT_TRUE(ZqVectorElementwiseSumAccumulate(2, {2.0, 3.0}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{3.0, 4.0}));
  ASSERT_TRUE(ZqVectorSaxpy(2, -2.0, {1.0, 0.5}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{1.0, 3.0}));
  ASSERT_TRUE(ZqVectorElementwiseProductAccumulate(2, {4.0, -1.0}, acc).IsSuccessful());
  EXPECT_EQ(acc, (Vec{4.0, -3.0}));
  Vec out = Solved(ZqScalarTimesVector, 2, 0.5, acc);
  EXPECT_EQ(out, (Vec{2.0, -1.5}));
  ASSERT_TRUE(ZqScalarTimesVector(2, 2.0, out, out).IsSuccessful());  // in place
  EXPECT_EQ(out, (Vec{4.0, -3.0}));
  EXPECT_EQ(Solved(ZqDifferenceBetweenVectors, 2, Vec{5.0, 5.0}, Vec{1.0, 7.0}), (Vec{4.0, -2.0}));
  EXPECT_EQ(Solved(ZqVectorVectorTranspose, 2, Vec{2.0, 3.0}), (Vec{4.0, 6.0, 6.0, 9.0}));
}

TEST(VectorOps, WrongLengthsFail) {
  Vec acc = {1.0, 2.0};
  double dot = 0.0;
  constexpr auto kVector = F::WrongInputVectorSize;
  EXPECT_OWN_FAILURE(kVector, ZqDotProductOfVectors, 3, {1.0, 2.0, 3.0}, {1.0}, dot);
  EXPECT_EQ(dot, DBL_MAX);
  EXPECT_OWN_FAILURE(kVector, ZqVectorSaxpy, 3, 1.0, {1.0, 2.0, 3.0}, acc);
  EXPECT_EQ(acc, (Vec{1.0, 2.0}));  // untouched
  EXPECT_OWN_FAILURE(kVector, ZqVectorElementwiseSumAccumulate, 1, {1.0}, acc);
  EXPECT_OWN_FAILURE(kVector, ZqVectorElementwiseProductAccumulate, 1, {1.0}, acc);
  EXPECT_OWN_FAILURE(kVector, ZqScalarTimesVector, 1, 1.0, acc, acc);
  EXPECT_OWN_FAILURE(kVector, ZqDifferenceBetweenVectors, 2, acc, {1.0}, acc);
  EXPECT_OWN_FAILURE(kVector, ZqVectorVectorTranspose, 3, {1.0}, acc);
}

TEST(IndexChecks, ElementGetterAndItsTexts) {
  EXPECT_EQ(Solved<double>(ZqGetVecElementFromIndex, 3, Vec{1.0, 2.0, 3.0}, 2), 3.0);
  EXPECT_EQ(Solved<double>(ZqGetVecElementFromIndex, 3, Vec{7.0}, 2), 7.0);  // constant vector
  EXPECT_EQ(Solved<double>(ZqGetDiagonalElemOfMatrix, 2, Vec{1.0, 2.0, 3.0, 4.0}, 1), 4.0);
  EXPECT_EQ(Solved<double>(ZqGetDiagonalElemOfMatrix, 9, Vec{6.0}, 8), 6.0);
  double out = 0.0;
  EXPECT_TRUE(FailedWith(ZqGetVecElementFromIndex(3, {1.0, 2.0, 3.0}, 3, out), F::ArgumentOutOfRange,
                         {"ZqGetVecElementFromIndex"}, {"Index: 3 bigger than dimension: 3"}));
  EXPECT_EQ(out, DBL_MAX);
  out = 0.0;
  EXPECT_TRUE(FailedWith(ZqGetDiagonalElemOfMatrix(2, {1.0, 2.0, 3.0, 4.0}, 5, out), F::ArgumentOutOfRange,
                         {"ZqGetDiagonalElemOfMatrix"}, {"Index: 5 bigger than matrix Dimension: 2"}));
  EXPECT_EQ(out, DBL_MAX);
}

TEST(IndexChecks, IndexListsAndBlocks) {
  using Indices = std::vector<unsigned long>;
  const Vec v = {1.0, 2.0, 3.0};
  EXPECT_EQ(Solved(ZqGetVecOfVecElementsFromVecOfIndices, 3, v, Indices{2, 0, 2}), (Vec{3.0, 1.0, 3.0}));
  Vec out;
  EXPECT_TRUE(FailedWith(ZqGetVecOfVecElementsFromVecOfIndices(3, v, {0, 1, 2, 0}, out), F::WrongInputVectorSize,
                         {"ZqGetVecOfVecElementsFromVecOfIndices"}, {"Too many indices"}));
  EXPECT_TRUE(FailedWith(ZqGetVecOfVecElementsFromVecOfIndices(3, v, {0, 4}, out), F::ArgumentOutOfRange,
                         {"ZqGetVecOfVecElementsFromVecOfIndices"}, {"Index: 4 bigger than dimension: 3"}));

  const Vec full = {0.0, 1.0, 2.0, 10.0, 11.0, 12.0, 20.0, 21.0, 22.0};
  EXPECT_EQ(Solved(ZqGetBlockSubMatrixOfMatrix, 3, full, Indices{2, 0}), (Vec{22.0, 20.0, 2.0, 0.0}));
  EXPECT_EQ(Solved(ZqGetBlockSubMatrixOfMatrix, 3, Vec{5.0, 6.0, 7.0}, Indices{2, 1}), (Vec{7.0, 6.0}));
  EXPECT_EQ(Solved(ZqGetBlockSubMatrixOfMatrix, 3, Vec{5.0}, Indices{2, 1}), Vec{5.0});
  EXPECT_OWN_FAILURE(F::ArgumentOutOfRange, ZqGetBlockSubMatrixOfMatrix, 3, full, {3}, out);
  EXPECT_OWN_FAILURE(F::WrongInputVectorSize, ZqGetBlockSubMatrixOfMatrix, 2, {1.0, 2.0}, {0, 1, 0}, out);
}

TEST(ZqPrintVectorDoubles, TextAndPrecision) {
  EXPECT_EQ(ZqPrintVectorDoubles("v", {1.0, 2.5, -3.0}, 0), "Values of vector v 1 2.5 -3");
  EXPECT_EQ(ZqPrintVectorDoubles("pi", {3.14159265}, 3), "Values of vector pi 3.14");
  EXPECT_EQ(ZqPrintVectorDoubles("w", {1.0 / 3.0}, 0), "Values of vector w 0.333333");
  EXPECT_EQ(ZqPrintVectorDoubles("e", {}, 0), "Values of vector e");
}

}  // namespace
}  // namespace Varimo
