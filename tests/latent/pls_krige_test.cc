// Partial least squares on RDKit descriptors of the benzodiazepine set (and
// of it together with 200 PubChem compounds), against scikit-learn's
// PLSRegression with scaling (and numpy least squares for the full model),
// all written by tests/data/latent/make_pls_refs.py.
// Latent vectors carry no fixed sign, so they are compared up to sign.
#include "varimo/latent/pls_krige.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "reference_file.h"
#include "test_support.h"

namespace Varimo {
namespace {

using VarimoTest::ToDoubles;
using VarimoTest::WithinRelative;

struct PlsRef {
  ZqPLSMatrix X, Y, Y2;
  // bzr and the PubChem compounds, with logP as the response.
  ZqPLSMatrix Xall, Yall;
  std::map<std::string, std::vector<double>> values;  // "kind L [l]"
};

const PlsRef& Ref() {
  static const PlsRef ref = [] {
    PlsRef r;
    std::vector<std::vector<double>> rows, others;
    for (const auto& line : VarimoTest::ReadReferenceLines("latent/pls_refs.txt")) {
      if (line[0] == "names") continue;
      if (line[0] == "row") {
        rows.push_back(ToDoubles(line, 2));
        continue;
      }
      if (line[0] == "allrow") {
        others.push_back(ToDoubles(line, 2));
        continue;
      }
      std::string key = line[0];
      const std::string kind = key.rfind("all_", 0) == 0 ? key.substr(4) : key;
      std::size_t first = 1;
      if (line[0] != "ols") {
        key += " " + line[1];
        first = 2;
        if (kind == "w" || kind == "t" || kind == "f") {
          key += " " + line[2];
          first = 3;
        }
      }
      r.values[key] = ToDoubles(line, first);
    }
    const Eigen::Index n = static_cast<Eigen::Index>(rows.size()), J = 12;
    r.X.resize(n, J);
    r.Y.resize(n, 1);
    r.Y2.resize(n, 2);
    for (Eigen::Index i = 0; i < n; ++i) {
      r.Y(i, 0) = r.Y2(i, 0) = rows[i][0];
      r.Y2(i, 1) = rows[i][1];
      for (Eigen::Index j = 0; j < J; ++j) r.X(i, j) = rows[i][2 + j];
    }
    const Eigen::Index m = static_cast<Eigen::Index>(others.size());
    r.Xall.resize(n + m, J);
    r.Yall.resize(n + m, 1);
    r.Xall.topRows(n) = r.X;
    r.Yall.topRows(n) = r.Y2.col(1);
    for (Eigen::Index i = 0; i < m; ++i) {
      r.Yall(n + i, 0) = others[i][0];
      for (Eigen::Index j = 0; j < J; ++j) r.Xall(n + i, j) = others[i][1 + j];
    }
    return r;
  }();
  return ref;
}

::testing::AssertionResult MatchesUpToSign(const ZqPLSVector& actual, const std::vector<double>& expected,
                                           double tol) {
  if (static_cast<std::size_t>(actual.size()) != expected.size()) {
    return ::testing::AssertionFailure() << "size " << actual.size() << " vs " << expected.size();
  }
  const double sign = actual.dot(Eigen::Map<const ZqPLSVector>(expected.data(), actual.size())) < 0 ? -1.0 : 1.0;
  for (Eigen::Index i = 0; i < actual.size(); ++i) {
    if (std::fabs(sign * actual[i] - expected[static_cast<std::size_t>(i)]) > tol) {
      return ::testing::AssertionFailure() << "element " << i << ": " << sign * actual[i] << " vs "
                                           << expected[static_cast<std::size_t>(i)];
    }
  }
  return ::testing::AssertionSuccess();
}

// The references of one table, their keys led by `prefix`.
void ExpectMatchesScikitLearn(const std::string& prefix, const ZqPLSMatrix& X, const ZqPLSMatrix& Y) {
  const PlsRef& ref = Ref();
  auto Key = [&prefix](const std::string& kind, unsigned long L, long l = -1) {
    return prefix + kind + " " + std::to_string(L) + (l >= 0 ? " " + std::to_string(l) : "");
  };
  ZqPartialLeastSquareRegression pls(1e-10, 1e-10, X, Y);
  // Twelve independent descriptors: a full set of latent vectors.
  ASSERT_EQ(pls.BuildLatentVectorsViaNIPALS(), 12u);
  EXPECT_EQ(pls.GetNumLatentVectors(), 12u);
  std::vector<ZqPLSVector> t, u, p, w, c;
  std::vector<double> b, propX, propY;
  pls.GetTUPWCB(t, u, p, w, c, b);
  pls.GetVarianceProportions(propX, propY);
  ASSERT_EQ(t.size(), 12u);
  for (unsigned long L : {1ul, 2ul, 3ul}) {
    double ress = -1.0;
    ZqPLSMatrix yHat;
    pls.Predict(L, ress, yHat);
    EXPECT_TRUE(WithinRelative(ress, ref.values.at(Key("ress", L))[0], 1e-9)) << L;
    const std::vector<double>& expectedYHat = ref.values.at(Key("yhat", L));
    for (Eigen::Index i = 0; i < yHat.rows(); ++i) {
      EXPECT_NEAR(yHat(i, 0), expectedYHat[static_cast<std::size_t>(i)], 1e-9) << L << " " << i;
    }
    ZqPLSMatrix B, Bstar, F, Fstar;
    pls.GetBPLS(B, Bstar);
    pls.GetFPLS(F, Fstar);
    ASSERT_EQ(Bstar.rows(), 13);
    ASSERT_EQ(Fstar.cols(), static_cast<Eigen::Index>(L));
    const std::vector<double>& bstar = ref.values.at(Key("bstar", L));
    for (Eigen::Index j = 0; j < 13; ++j) {
      EXPECT_NEAR(Bstar(j, 0), bstar[static_cast<std::size_t>(j)], 1e-9 * (1 + std::fabs(bstar[j]))) << L << " " << j;
    }
    for (unsigned long l = 0; l < L; ++l) {
      const long li = static_cast<long>(l);
      EXPECT_TRUE(MatchesUpToSign(w[l], ref.values.at(Key("w", L, li)), 1e-9)) << L << " " << l;
      EXPECT_TRUE(MatchesUpToSign(t[l], ref.values.at(Key("t", L, li)), 1e-9)) << L << " " << l;
      EXPECT_TRUE(MatchesUpToSign(F.col(li), ref.values.at(Key("f", L, li)), 1e-9)) << L << " " << l;
      EXPECT_TRUE(WithinRelative(propX[l], ref.values.at(Key("propx", L))[l], 1e-9));
    }
    // The raw-scale score weights give the scores of the raw rows.
    ZqPLSMatrix withOne(X.rows(), 13);
    withOne << ZqPLSMatrix::Ones(X.rows(), 1), X;
    const ZqPLSMatrix scores = withOne * Fstar;
    for (unsigned long l = 0; l < L; ++l) {
      EXPECT_LT((scores.col(static_cast<long>(l)) - t[l]).norm(), 1e-9);
    }
  }
  for (unsigned long L : {1ul, 2ul}) {
    ZqPLSMatrix predicted;
    const double press = ZqPredictedResidualSumOfSquares(L, 1e-10, 1e-10, X, Y, predicted);
    EXPECT_TRUE(WithinRelative(press, ref.values.at(Key("press", L))[0], 1e-8)) << L;
    ASSERT_EQ(predicted.rows(), X.rows());
  }
}

// bzr with its measured activity.
TEST(PartialLeastSquares, BzrActivityMatchesScikitLearn) {
  ASSERT_EQ(Ref().X.rows(), 163);
  ExpectMatchesScikitLearn("", Ref().X, Ref().Y);
}

// 363 molecules of bzr and PubChem, logP from the other descriptors.
TEST(PartialLeastSquares, WiderTableLogPMatchesScikitLearn) {
  ASSERT_EQ(Ref().Xall.rows(), 363);
  ExpectMatchesScikitLearn("all_", Ref().Xall, Ref().Yall);
}

// With all latent vectors, PLS is least squares, for two responses too.
TEST(PartialLeastSquares, FullModelIsLeastSquaresAndNoVectorTheMean) {
  const PlsRef& ref = Ref();
  ZqPartialLeastSquareRegression pls(1e-12, 1e-10, ref.X, ref.Y2);
  const unsigned long found = pls.BuildLatentVectorsViaNIPALS();
  ASSERT_EQ(found, 12u);
  double ress = 0.0;
  ZqPLSMatrix yHat;
  pls.Predict(found, ress, yHat);
  const std::vector<double>& ols = ref.values.at("ols");
  ASSERT_EQ(ols.size(), 326u);
  for (Eigen::Index k = 0; k < 2; ++k) {
    for (Eigen::Index i = 0; i < 163; ++i) EXPECT_NEAR(yHat(i, k), ols[163 * k + i], 1e-7) << k << " " << i;
  }
  // Xstar rebuilds X exactly from all vectors.
  const ZqPLSMatrix xstar = pls.GetXstar();
  ASSERT_EQ(xstar.cols(), 13);
  EXPECT_EQ(xstar.col(0), ZqPLSVector::Ones(163));
  EXPECT_LT((xstar.rightCols(12) - ref.X).norm() / ref.X.norm(), 1e-10);

  // No vector at all predicts the mean, with the total sum of squares.
  ZqPartialLeastSquareRegression one(1e-6, 1e-6, ref.X, ref.Y);
  one.BuildLatentVectorsViaNIPALS();
  one.Predict(0, ress, yHat);
  const double m = ref.Y.mean();
  for (Eigen::Index i = 0; i < yHat.rows(); ++i) EXPECT_NEAR(yHat(i, 0), m, 1e-12);
  EXPECT_TRUE(WithinRelative(ress, (ref.Y.array() - m).square().sum(), 1e-12));
}

TEST(PartialLeastSquares, RankOneXGivesOneVectorAndConstantColumnsNoneAndNeverHang) {
  ZqPLSMatrix X(6, 3), Y(6, 1);
  for (int i = 0; i < 6; ++i) {
    X.row(i) << i, 2.0 * i, -0.5 * i;
    Y(i, 0) = std::sin(i);
  }
  ZqPartialLeastSquareRegression rankOne(1e-6, 1e-6, X, Y);
  EXPECT_EQ(rankOne.BuildLatentVectorsViaNIPALS(), 1u);

  X.resize(5, 2);
  Y.resize(5, 1);
  X << 1, 3, 2, 3, 3, 3, 4, 3, 5, 3;
  Y << 1, 0, 1, 0, 1;
  ZqPartialLeastSquareRegression constantX(1e-6, 1e-6, X, Y);
  EXPECT_EQ(constantX.BuildLatentVectorsViaNIPALS(), 0u);
  X.col(1) << 5, 1, 4, 2, 2;
  ZqPartialLeastSquareRegression constantY(1e-6, 1e-6, X, ZqPLSMatrix::Constant(5, 1, 2.0));
  EXPECT_EQ(constantY.BuildLatentVectorsViaNIPALS(), 0u);
  ZqPartialLeastSquareRegression oneRow(1e-6, 1e-6, X.topRows(1), Y.topRows(1));
  EXPECT_EQ(oneRow.BuildLatentVectorsViaNIPALS(), 0u);
  ZqPartialLeastSquareRegression mismatched(1e-6, 1e-6, X, Y.topRows(4));
  EXPECT_EQ(mismatched.BuildLatentVectorsViaNIPALS(), 0u);
  // Asking for more vectors than found uses those found.
  double ress = 0.0;
  ZqPLSMatrix yHat;
  constantY.Predict(3, ress, yHat);
  EXPECT_EQ(yHat.rows(), 5);
}

TEST(PartialLeastSquares, HelperFunctions) {
  ZqPLSMatrix m(3, 2);
  m << 1, 10, 2, 20, 6, 60;
  ZqPLSVector means, stds;
  const ZqPLSMatrix z = Zscore(m, means, stds);
  EXPECT_EQ(means[0], 3.0);
  EXPECT_EQ(means[1], 30.0);
  EXPECT_TRUE(WithinRelative(stds[0], std::sqrt(7.0), 1e-15));  // (4 + 1 + 9) / 2
  EXPECT_TRUE(WithinRelative(z(2, 1), 3.0 / std::sqrt(7.0), 1e-15));
  EXPECT_EQ(Zscore(m), z);
  EXPECT_TRUE(std::isnan(Zscore(m.topRows(1))(0, 0)));
  EXPECT_EQ(mean(ZqPLSVector::Constant(4, 2.5)), 2.5);
  EXPECT_EQ(stdDeviation(ZqPLSVector::Constant(4, 2.5)), 0.0);
  EXPECT_EQ(Matrix_Norm(ZqPLSMatrix(0, 3)), 0.0);
  EXPECT_TRUE(WithinRelative(Matrix_Norm(m), std::sqrt(41.0 * 101.0), 1e-15));

  ZqPLSMatrix out;
  RemoveRow(m, 1, out);
  ZqPLSMatrix expected(2, 2);
  expected << 1, 10, 6, 60;
  EXPECT_EQ(out, expected);

  ZqPLSMatrix a(3, 2);
  a << 1, 2, 3, 4, 5, 7;
  const ZqPLSMatrix ai = pinv(a);
  EXPECT_LT((ai * a - ZqPLSMatrix::Identity(2, 2)).norm(), 1e-13);
  EXPECT_LT((a * ai * a - a).norm(), 1e-12);
  ZqPLSMatrix singular(2, 2);
  singular << 1, 1, 1, 1;
  EXPECT_FALSE(pinv(singular).allFinite());

  for (int k = 0; k < 100; ++k) {
    const double r = GetRandomDoubleWithinBounds(-2.0, 3.0);
    EXPECT_GE(r, -2.0);
    EXPECT_LE(r, 3.0);
  }
  VarimoTest::CaptureOutput capture;
  EXPECT_EQ(GetRandomDoubleWithinBounds(1.5, 1.5), 1.5);
  EXPECT_EQ(capture.Text(), "lb >= ub in GetRandomDoubleWithinBounds!   1.500000 1.500000 \n");
}

}  // namespace
}  // namespace Varimo
