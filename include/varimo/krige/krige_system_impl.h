// Pieces of the linear systems of the global kriging models, shared by the
// simple and the ordinary model: the Cholesky factor of the covariance
// matrix, the covariances between queries and training elements, and the
// filling of a result.
#pragma once

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

#include "varimo/krige/condition_estimate.h"
#include "varimo/krige/krige_result.h"
#include "varimo/krige/parallel_for.h"
#include "varimo/krige/training_container_impl.h"
#include "varimo/numerics/dense_algebra.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo::krige_detail {

// Factorises the covariance matrix of the container's unique elements in
// place into its upper Cholesky factor U (C = U' U). Only the upper triangle
// is filled: its column u is row u of the distance table, so that both are
// walked in storage order. The storage of `factor` is kept from one kernel
// to the next. False when the matrix is not positive definite for this
// kernel, and also when an entry is not finite, which the factorisation
// would pass through as NaN. `normOne` receives the 1-norm of the matrix,
// which the factor no longer shows.
template <class T, class TT>
bool FactorCovariance(const ZqKrigeTrainingContainer<T, TT>& container, const ZqKrigeKernelBase& kernel,
                      ZqCholeskyFactor& factor, double& normOne) {
  const auto n = static_cast<Eigen::Index>(container.GetNumUnique());
  factor.Reset(n);
  const double sill = kernel.GetSill();
  const double diagonal = sill - kernel.GetValue(0.0);
  // The columns are filled by slices on several threads. Each slice sums
  // the magnitudes of its entries into its own column sums, which are added
  // up in slice order afterwards: the slices depend on n alone, so the norm
  // is the same for any number of threads.
  constexpr Eigen::Index kMaxSlices = 64;
  const Eigen::Index width = std::max<Eigen::Index>(32, (n + kMaxSlices - 1) / kMaxSlices);
  const Eigen::Index slices = (n + width - 1) / width;
  std::vector<Eigen::VectorXd> sliceSums(static_cast<std::size_t>(slices));
  std::vector<char> sliceFinite(static_cast<std::size_t>(slices), 1);
  const auto entries = static_cast<std::size_t>(n) * static_cast<std::size_t>(n) / 2;
  ParallelFor(static_cast<std::size_t>(slices), SharedWorkThreads(entries), [&](std::size_t slice) {
    const Eigen::Index first = static_cast<Eigen::Index>(slice) * width;
    const Eigen::Index last = std::min(n, first + width);
    Eigen::VectorXd sums = Eigen::VectorXd::Zero(last);
    bool finite = true;
    for (Eigen::Index u = first; u < last; ++u) {
      const ZqCholeskyFactor::Column column = factor.UpperColumn(u);
      for (Eigen::Index v = 0; v < u; ++v) {
        const double c =
            sill - kernel.GetValue(container.GetUniqueDistance(static_cast<std::size_t>(u), static_cast<std::size_t>(v)));
        column[v] = c;
        finite = finite && std::isfinite(c);
        sums(u) += std::fabs(c);
        sums(v) += std::fabs(c);
      }
      column[u] = diagonal;
    }
    sliceSums[slice] = std::move(sums);
    sliceFinite[slice] = finite ? 1 : 0;
  });
  Eigen::VectorXd columnSums = Eigen::VectorXd::Constant(n, std::fabs(diagonal));
  bool finite = std::isfinite(diagonal);
  for (std::size_t slice = 0; slice < sliceSums.size(); ++slice) {
    columnSums.head(sliceSums[slice].size()) += sliceSums[slice];
    finite = finite && sliceFinite[slice] != 0;
  }
  normOne = n > 0 ? columnSums.maxCoeff() : 0.0;
  return finite && factor.Factorise();
}

// Below this reciprocal condition a factorisation that succeeds still gives
// weights with few correct digits (about -log10 of it are lost): near-
// duplicate training elements, whose distance is tiny but not zero, make
// such a covariance matrix.
inline constexpr double kNearlySingular = 1e-12;

// Warns, naming `routine`, when the covariance matrix of 1-norm `normOne`
// that `solveInPlace` solves with is nearly singular. The training goes on:
// the predictions are those of the model, only less accurate.
inline void WarnIfNearlySingular(const char* routine, double normOne, Eigen::Index n,
                                 const std::function<void(Eigen::VectorXd&)>& solveInPlace) {
  const double reciprocal = ZqEstimateReciprocalCondition(normOne, n, solveInPlace);
  if (reciprocal >= kNearlySingular) return;
  Corvane::ZqThrow.Warning(
      "%s, the covariance matrix is nearly singular (reciprocal condition %.3g): training elements at tiny distances "
      "make the weights unreliable",
      routine, reciprocal);
}

// Largest relative residual of the border rows of a universal system: sum
// of the weights against 1, then sum of w_i p_ik against the query's
// property k, each relative to the sum of the magnitudes of its terms, so
// that rounding alone stays near the unit of doubles.
inline constexpr double kBorderTolerance = 1e-8;
template <class T, class TT>
double WorstBorderResidual(const Eigen::Ref<const Eigen::VectorXd>& weights,
                           const Eigen::Ref<const Eigen::VectorXd>& border,
                           const ZqKrigeTrainingContainer<T, TT>& container) {
  const Eigen::Index rows = border.size();
  Eigen::VectorXd sums = -border, scales = border.cwiseAbs();
  for (Eigen::Index i = 0; i < weights.size(); ++i) {
    const std::vector<double> properties = container.GetUniqueProperties(static_cast<std::size_t>(i));
    sums(0) += weights(i);
    scales(0) += std::fabs(weights(i));
    for (Eigen::Index k = 1; k < rows; ++k) {
      const double term = weights(i) * properties[static_cast<std::size_t>(k - 1)];
      sums(k) += term;
      scales(k) += std::fabs(term);
    }
  }
  double worst = 0.0;
  for (Eigen::Index k = 0; k < rows; ++k) worst = std::max(worst, std::fabs(sums(k)) / std::max(scales(k), 1e-300));
  return worst;
}

// Solves U' x = b in place: x = L^-1 b for the lower factor L = U'.
inline void WhitenInPlace(const ZqCholeskyFactor& factor, Eigen::Ref<Eigen::MatrixXd> b) { factor.WhitenInPlace(b); }

// Solves C x = b in place with the factor of C.
inline void SolveWithFactor(const ZqCholeskyFactor& factor, Eigen::Ref<Eigen::MatrixXd> b) { factor.SolveInPlace(b); }

// The covariances sill - kernel(d_i) between a query and each unique
// element, with the distances d_i kept for the result.
template <class T, class TT>
Eigen::VectorXd QueryCovariances(const T& query, const ZqKrigeKernelBase& kernel,
                                 const ZqKrigeTrainingContainer<T, TT>& container, std::vector<double>& distances) {
  const std::size_t n = container.GetNumUnique();
  const double sill = kernel.GetSill();
  distances.resize(n);
  Eigen::VectorXd covariances(static_cast<Eigen::Index>(n));
  for (std::size_t i = 0; i < n; ++i) {
    distances[i] = container.GetDistance(query, container.GetRepresentative(i));
    covariances(static_cast<Eigen::Index>(i)) = sill - kernel.GetValue(distances[i]);
  }
  return covariances;
}

// The same for queries [first, first + count) of a batch, one column each.
template <class T, class TT>
Eigen::MatrixXd QueryCovarianceBlock(const std::vector<const T*>& queries, std::size_t first, std::size_t count,
                                     const ZqKrigeKernelBase& kernel,
                                     const ZqKrigeTrainingContainer<T, TT>& container) {
  const std::size_t n = container.GetNumUnique();
  const double sill = kernel.GetSill();
  Eigen::MatrixXd block(static_cast<Eigen::Index>(n), static_cast<Eigen::Index>(count));
  for (std::size_t q = 0; q < count; ++q) {
    const T& query = *queries[first + q];
    for (std::size_t i = 0; i < n; ++i) {
      block(static_cast<Eigen::Index>(i), static_cast<Eigen::Index>(q)) =
          sill - kernel.GetValue(container.GetDistance(query, container.GetRepresentative(i)));
    }
  }
  return block;
}

// The variance check of the ordinary and universal models: a kriging
// variance outside [nugget, sill], with a margin of 1e-6 relative, comes
// from a numerically broken solve. The lower bound also allows the rounding
// of sill - sum w_i (sill - kernel(d_i)), about one unit of the sill: a
// query on a training element has the variance sill - (sill - nugget),
// which a nugget far below the sill (1e-10 of it, say) would otherwise put
// on either side of the bound by the luck of rounding. Written so that NaN
// fails too.
inline bool VarianceInRange(double variance, const ZqKrigeKernelBase& kernel) {
  const double rounding = 2.0 * std::numeric_limits<double>::epsilon() * std::fabs(kernel.GetSill());
  return variance >= kernel.GetNugget() * 0.999999 - rounding && variance <= kernel.GetSill() * 1.000001;
}

// The unique element whose column of the covariance matrix the query's
// covariances equal, value for value, or n when there is none. For such a
// query (one standing on a training element) the kriging weights are
// exactly 1 on that element and 0 elsewhere, and the multipliers 0. The
// solves would give them only to rounding, and with a nugget of 0 the
// variance there is exactly 0: rounding below it would make a sound
// prediction invalid.
template <class T, class TT>
std::size_t ElementUnderQuery(const double* covariances, const ZqKrigeKernelBase& kernel,
                              const ZqKrigeTrainingContainer<T, TT>& container) {
  const std::size_t n = container.GetNumUnique();
  const double sill = kernel.GetSill();
  const double diagonal = sill - kernel.GetValue(0.0);
  for (std::size_t i = 0; i < n; ++i) {
    if (covariances[i] != diagonal) continue;
    bool column = true;
    for (std::size_t j = 0; j < n && column; ++j) {
      column = j == i || covariances[j] == sill - kernel.GetValue(container.GetUniqueDistance(i, j));
    }
    if (column) return i;
  }
  return n;
}

// ElementUnderQuery of each column of a block of query covariances.
template <class T, class TT>
std::vector<std::size_t> ElementsUnderQueries(const Eigen::MatrixXd& block, const ZqKrigeKernelBase& kernel,
                                              const ZqKrigeTrainingContainer<T, TT>& container) {
  std::vector<std::size_t> under(static_cast<std::size_t>(block.cols()));
  for (Eigen::Index q = 0; q < block.cols(); ++q) {
    under[static_cast<std::size_t>(q)] = ElementUnderQuery(block.col(q).data(), kernel, container);
  }
  return under;
}

// Queries per blocked solve: enough to run the triangular solves at matrix
// speed, few enough to keep the block of covariances small.
inline constexpr std::size_t kQueryBlock = 256;

// Appends one result element per unique element, with the weight, the
// distance to the query and the unique response, and the copy lists of the
// elements with several records. The copy lists are filled from the first
// records of the whole training list, not from the element's own records:
// a result's copy k of an element is record k of the training list, which
// the reports read by that number.
template <class T, class TT>
void FillResultElements(ZqKrigeResultImpl& result, const ZqKrigeTrainingContainer<T, TT>& container,
                        const std::vector<double>& distances, const Eigen::VectorXd& weights,
                        const std::vector<double>& responses, double responseOffset) {
  for (std::size_t i = 0; i < container.GetNumUnique(); ++i) {
    const std::vector<std::size_t>& members = container.GetUniqueMembers(i);
    bool hasID = false, allUnmeasured = true;
    for (std::size_t m : members) {
      hasID = hasID || container.GetData(m).hasID;
      allUnmeasured = allUnmeasured && container.GetData(m).isUnmeasured;
    }
    const unsigned int element =
        result.AddElement(distances[i], weights(static_cast<Eigen::Index>(i)), responses[i], allUnmeasured,
                          container.GetUniqueID(i), hasID);
    if (members.size() < 2) continue;
    for (std::size_t k = 0; k < members.size(); ++k) {
      const auto& record = container.GetData(k);
      result.PushCopyData(element, record.response - responseOffset, record.isUnmeasured, record.id, record.hasID);
    }
  }
}

}  // namespace Varimo::krige_detail
