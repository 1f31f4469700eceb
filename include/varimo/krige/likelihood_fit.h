// Kernel parameters by maximum likelihood, the alternative to fitting the
// experimental variogram by least squares. With few training elements the
// binned variogram is noisy, and its fit often picks a short range that
// leaves far queries without a valid prediction; the likelihood of the
// responses themselves uses every pair at once and needs no bins.
//
//   Varimo::ZqLikelihoodData data = ...;   // distances, responses, the mean's model
//   for (const Varimo::ZqLikelihoodFit& fit : Varimo::ZqRankKernelsByLikelihood(data, candidates))
//     if (model.TrainFixed(fit.kernel)) break;
//
// The model is the one the kriging models predict with: the responses of
// the distinct training elements are Gaussian with a mean F beta and the
// covariance s2 P, P_ij = 1 - kernel(d_ij) for a kernel of sill 1, nugget 0
// and range r, P_ii = 1. (The kriging models put no nugget on the training
// elements' diagonal: their covariance is (sill - nugget) P, so a nugget
// only scales P and lowers the variance floor of a query, and the training
// responses cannot tell it from the sill.) beta and s2 have closed forms
// given r (generalised least squares), which leaves the profile
// log-likelihood
//
//   l(r) = -n/2 log(s2(r)) - 1/2 log det P(r),
//
// up to a constant. The fitted kernel has that shape and range, sill s2 and
// nugget 0: the covariance sill - kernel(d) of the kriging models is then
// exactly s2 P.
#pragma once

#include <Eigen/Core>

#include <limits>
#include <string>
#include <vector>

#include "varimo/krige/krige_kernels.h"

namespace Varimo {

struct ZqLikelihoodData {
  // Distances among the n training elements, symmetric with a zero diagonal
  // and positive elsewhere (duplicates merged, as the kriging models merge
  // them).
  Eigen::MatrixXd distances;
  Eigen::VectorXd responses;
  // The mean's model, one column per term: a column of ones for ordinary
  // kriging, ones and the drift properties for universal kriging. No column
  // means a known mean, the responses' average, as simple kriging takes it.
  Eigen::MatrixXd drift;
};

struct ZqLikelihoodFit {
  ZqKrigeKernel kernel{ZqKrigeKernelType::Linear};
  double logLikelihood = -std::numeric_limits<double>::infinity();
};

// l(r) as above for the shape of `kernel` (its own range, sill and nugget
// are not used); -infinity for data ZqCheckLikelihoodData refuses, a range
// that is not positive and finite, a P that is not positive definite or is
// nearly singular, a mean's model that is rank deficient on these elements,
// or responses that the mean's model fits exactly. Nearly singular: the
// squared ratio of the smallest to the largest pivot of P's Cholesky factor
// below 1e-12, or an estimated reciprocal condition below the 1e-12 at
// which the kriging models warn that their weights are unreliable (smooth
// kernels on smooth data would otherwise gain likelihood all the way to
// such ranges). Cost: one Cholesky factorisation of order n, and up to 11
// solves with it for the condition estimate.
double ZqProfileLogLikelihood(const ZqLikelihoodData& data, const ZqKrigeKernelBase& kernel, double range);

// Why the data cannot be fitted; empty when they can: fewer than 3
// elements or no more elements than mean terms ("too few distinct elements
// (N)"), values that are not finite, distances that are not a symmetric
// matrix with a zero diagonal and positive elements elsewhere, or responses
// that are all equal.
std::string ZqCheckLikelihoodData(const ZqLikelihoodData& data);

// For each candidate shape the range of largest profile likelihood, searched
// from 1/16 to 16 times the largest distance on a logarithmic scale (a grid
// of factors 2^(1/4), then golden-section steps to a factor of about
// 1.006), and
// the candidates ranked by that likelihood, largest first; a tie keeps the
// candidates' order. The likelihood of a bounded kernel (linear, spherical,
// power) has a kink wherever the range passes a pair's distance, and a peak
// between two kinks narrower than the grid's step may be missed for a
// neighbouring one. Candidates without a finite likelihood at any range are
// left out, and all of them for data ZqCheckLikelihoodData refuses.
// Cost: for each candidate 43 evaluations as above.
std::vector<ZqLikelihoodFit> ZqRankKernelsByLikelihood(const ZqLikelihoodData& data,
                                                       const std::vector<const ZqKrigeKernelBase*>& candidates);

// What is known of a model's distance, which decides the kernels that are
// covariances under it.
enum class ZqDistanceClass {
  // A distance of negative type: one minus the Tanimoto coefficient of
  // bits, one minus the min-max similarity of counts, the Euclidean
  // distance, and any distance d with sum_ij c_i c_j d_ij <= 0 whenever
  // sum_i c_i = 0.
  NegativeType,
  // The Euclidean distance between vectors of any dimension.
  Euclidean,
};

// The default candidates of the likelihood fit: those of the automatic
// fit's kernels whose covariance 1 - kernel(d) is positive definite on
// every finite set of elements under every distance of the class.
//
// The likelihood compares models of the responses, and is a fair judge
// only among models that are models: a kernel that is not known to be a
// covariance under the distance (on molecules the Gaussian and the bounded
// ones: linear, spherical, power; some are not, on some sets of
// fingerprints) may still factorise on the training set, win on the
// likelihood of a few hundred responses, and then give queries variances
// outside [nugget, sill] or rank them poorly for the next experiment.
//
// Under a distance of negative type exp(-t d) is positive definite for
// every t > 0 (Schoenberg), and with it every function completely monotone
// in d: the exponential kernel and the Student t kernels of power 0.5 and
// 1, in that order. Under the Euclidean distance in any dimension the
// functions completely monotone in d^2 are too: the Gaussian and the Cauchy
// kernels are added.
std::vector<ZqKrigeKernel> ZqLikelihoodCandidates(ZqDistanceClass distance);

}  // namespace Varimo
