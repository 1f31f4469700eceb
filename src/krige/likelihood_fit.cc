#include "varimo/krige/likelihood_fit.h"

#include <Eigen/Cholesky>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "varimo/krige/condition_estimate.h"
#include "varimo/krige/krige_system_impl.h"
#include "varimo/krige/parallel_for.h"
#include "varimo/numerics/dense_algebra.h"

namespace Varimo {
namespace {

constexpr double kMinusInf = -std::numeric_limits<double>::infinity();
// Ranges from dmax / 16 to 16 dmax on a grid of factors 2^(1/4): below,
// nearly every pair is uncorrelated; above, every kernel is nearly flat
// over the data. The grid is fine because the likelihood of a bounded
// kernel (linear, spherical, power) has a kink wherever the range passes a
// pair's distance, and narrow peaks between them.
constexpr double kLog2RangeLimit = 4.0;
constexpr double kLog2RangeStep = 0.25;
// Golden-section evaluations on log2(range) between the grid's neighbours
// of its best point: the bracket of width 0.5 shrinks to 0.5 * 0.618^8 =
// 0.011, a factor 1.007 in range.
constexpr int kRangeRefinements = 10;
// A matrix whose Cholesky pivots span more than this (squared) is
// numerically singular: for P its log determinant, and with it the
// likelihood, would be rounding noise, and often a large one; for the
// normal equations of the mean's model, the coefficients would be.
constexpr double kMinPivotRatio = 1e-12;
constexpr double kInvGolden = 0.6180339887498949;

// Whether the pivots of a valid factor span no more than kMinPivotRatio.
template <class Pivots>
bool PivotsClearlyPositive(const Pivots& pivots) {
  return pivots.minCoeff() * pivots.minCoeff() > kMinPivotRatio * pivots.maxCoeff() * pivots.maxCoeff();
}

// l(r) for one shape, with s2 at r when asked for. `factor` is scratch
// storage, reused from one range to the next.
double ProfileAt(const ZqLikelihoodData& data, const ZqKrigeKernelBase& shape, double range, ZqCholeskyFactor& factor,
                 double* sigma2Out = nullptr) {
  std::unique_ptr<ZqKrigeKernelBase> unit(shape.CreateCopy());
  unit->SetRange(range);
  unit->SetSill(1.0);
  unit->SetNugget(0.0);
  const Eigen::Index n = data.responses.size();
  // The upper triangle, a column per step on the threads of the model's
  // own quadratic work; a value that is not finite fails the
  // factorisation.
  factor.Reset(n);
  const std::size_t pairs = static_cast<std::size_t>(n) * static_cast<std::size_t>(n) / 2;
  krige_detail::ParallelFor(static_cast<std::size_t>(n), krige_detail::SharedWorkThreads(pairs), [&](std::size_t j) {
    const Eigen::Index c = static_cast<Eigen::Index>(j);
    const ZqCholeskyFactor::Column column = factor.UpperColumn(c);
    column[c] = 1.0;
    for (Eigen::Index r = 0; r < c; ++r) column[r] = 1.0 - unit->GetValue(data.distances(r, c));
  });
  // The column sums of |P|, for its 1-norm.
  Eigen::VectorXd columnSums = Eigen::VectorXd::Ones(n);
  for (Eigen::Index c = 0; c < n; ++c) {
    const ZqCholeskyFactor::Column column = factor.UpperColumn(c);
    for (Eigen::Index r = 0; r < c; ++r) {
      columnSums(r) += std::fabs(column[r]);
      columnSums(c) += std::fabs(column[r]);
    }
  }
  if (!factor.Factorise()) return kMinusInf;
  Eigen::VectorXd pivots(n);
  for (Eigen::Index c = 0; c < n; ++c) pivots(c) = factor.Pivot(c);
  if (!PivotsClearlyPositive(pivots)) return kMinusInf;
  // A range at which the model would warn that its weights are unreliable
  // is no candidate: smooth kernels on smooth data gain likelihood as the
  // range grows long and the matrix nearly singular.
  const double reciprocal = ZqEstimateReciprocalCondition(
      columnSums.maxCoeff(), n, [&](Eigen::VectorXd& b) { factor.SolveInPlace(b); });
  if (reciprocal < krige_detail::kNearlySingular) return kMinusInf;
  // Whitened responses and mean's model: with them the generalised least
  // squares are ordinary least squares.
  Eigen::VectorXd y = data.responses;
  if (data.drift.cols() == 0) y.array() -= data.responses.mean();
  factor.WhitenInPlace(y);
  if (data.drift.cols() > 0) {
    Eigen::MatrixXd f = data.drift;
    factor.WhitenInPlace(f);
    const Eigen::LLT<Eigen::MatrixXd> normal(f.transpose() * f);
    if (normal.info() != Eigen::Success || !PivotsClearlyPositive(normal.matrixLLT().diagonal())) return kMinusInf;
    y -= f * normal.solve(f.transpose() * y);
  }
  const double sigma2 = y.squaredNorm() / static_cast<double>(n);
  if (!(sigma2 > 0.0) || !std::isfinite(sigma2)) return kMinusInf;
  if (sigma2Out != nullptr) *sigma2Out = sigma2;
  const double logDet = 2.0 * pivots.array().log().sum();
  const double value = -0.5 * static_cast<double>(n) * std::log(sigma2) - 0.5 * logDet;
  return std::isfinite(value) ? value : kMinusInf;
}

// Golden-section search for the largest f on [lo, hi] in `steps`
// evaluations after the first two; f records the best point it sees. Not
// the library's line minimiser, which starts from a descending first step
// at the end of its bracket, nor Boost's Brent search: here the number of
// evaluations (each a factorisation) is fixed, and f is -infinity wherever
// P is not positive definite, which parabolic steps do not survive.
template <class F>
void GoldenMaximise(const F& f, double lo, double hi, int steps) {
  double a = lo, b = hi;
  double x1 = b - kInvGolden * (b - a), x2 = a + kInvGolden * (b - a);
  double f1 = f(x1), f2 = f(x2);
  for (int k = 0; k < steps; ++k) {
    if (f1 >= f2) {
      b = x2, x2 = x1, f2 = f1;
      x1 = b - kInvGolden * (b - a), f1 = f(x1);
    } else {
      a = x1, x1 = x2, f1 = f2;
      x2 = a + kInvGolden * (b - a), f2 = f(x2);
    }
  }
}

}  // namespace

std::string ZqCheckLikelihoodData(const ZqLikelihoodData& data) {
  const Eigen::Index n = data.responses.size();
  if (data.distances.rows() != n || data.distances.cols() != n) return "the distances are not an n x n matrix";
  if (data.drift.cols() > 0 && data.drift.rows() != n) return "the mean's model has not one row per element";
  if (n < 3 || n <= data.drift.cols()) return "too few distinct elements (" + std::to_string(n) + ")";
  if (!data.responses.allFinite() || !data.distances.allFinite() || !data.drift.allFinite()) {
    return "the data are not all finite";
  }
  for (Eigen::Index j = 0; j < n; ++j) {
    if (data.distances(j, j) != 0.0) return "a distance of an element to itself is not 0";
    for (Eigen::Index i = j + 1; i < n; ++i) {
      if (data.distances(i, j) != data.distances(j, i)) return "the distances are not symmetric";
      if (!(data.distances(i, j) > 0.0)) return "two elements are at distance 0 or less";
    }
  }
  if (data.responses.maxCoeff() == data.responses.minCoeff()) return "all responses are equal";
  return {};
}

double ZqProfileLogLikelihood(const ZqLikelihoodData& data, const ZqKrigeKernelBase& kernel, double range) {
  if (!ZqCheckLikelihoodData(data).empty() || !(range > 0.0) || !std::isfinite(range)) return kMinusInf;
  ZqCholeskyFactor factor;
  return ProfileAt(data, kernel, range, factor);
}

std::vector<ZqLikelihoodFit> ZqRankKernelsByLikelihood(const ZqLikelihoodData& data,
                                                       const std::vector<const ZqKrigeKernelBase*>& candidates) {
  std::vector<ZqLikelihoodFit> ranked;
  if (!ZqCheckLikelihoodData(data).empty()) return ranked;
  const double longest = data.distances.maxCoeff();
  ZqCholeskyFactor factor;
  for (const ZqKrigeKernelBase* candidate : candidates) {
    double bestLog2 = 0.0, bestSigma2 = 0.0, best = kMinusInf;
    const auto atRange = [&](double log2Range) {
      double sigma2 = 0.0;
      const double value = ProfileAt(data, *candidate, longest * std::exp2(log2Range), factor, &sigma2);
      if (value > best) best = value, bestLog2 = log2Range, bestSigma2 = sigma2;
      return value;
    };
    const int steps = static_cast<int>(kLog2RangeLimit / kLog2RangeStep);
    for (int k = -steps; k <= steps; ++k) atRange(k * kLog2RangeStep);
    if (best == kMinusInf) continue;
    const double lo = std::max(bestLog2 - kLog2RangeStep, -kLog2RangeLimit);
    const double hi = std::min(bestLog2 + kLog2RangeStep, kLog2RangeLimit);
    GoldenMaximise(atRange, lo, hi, kRangeRefinements - 2);
    ZqLikelihoodFit fit;
    fit.kernel = *candidate;
    fit.kernel.SetRange(longest * std::exp2(bestLog2));
    fit.kernel.SetSill(bestSigma2);
    fit.kernel.SetNugget(0.0);
    fit.logLikelihood = best;
    ranked.push_back(std::move(fit));
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const ZqLikelihoodFit& a, const ZqLikelihoodFit& b) { return a.logLikelihood > b.logLikelihood; });
  return ranked;
}

std::vector<ZqKrigeKernel> ZqLikelihoodCandidates(ZqDistanceClass distance) {
  std::vector<ZqKrigeKernel> kernels{ZqKrigeKernel(ZqKrigeKernelType::Exponential),
                                     ZqKrigeKernel(ZqKrigeStudentTKernel(0.5)),
                                     ZqKrigeKernel(ZqKrigeStudentTKernel(1.0))};
  if (distance == ZqDistanceClass::Euclidean) {
    kernels.emplace_back(ZqKrigeKernelType::Gaussian);
    kernels.emplace_back(ZqKrigeKernelType::Cauchy);
  }
  return kernels;
}

}  // namespace Varimo
