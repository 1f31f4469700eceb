// Acquisition functions: how much a prediction with a standard deviation
// is worth measuring next, when the aim is the largest (or, with
// `minimize`, the smallest) response. Every function here returns a value
// where larger is better, so that a pool is ranked the same way whatever
// the function and the direction:
//
//   greedy   the mean; -mean when minimizing
//   ucb      the upper confidence bound mean + kappa sd; when minimizing
//            the negated lower bound -(mean - kappa sd)
//   ei       the expected improvement E[max(0, Y - best - xi)] for
//            Y ~ N(mean, sd^2); when minimizing E[max(0, best - xi - Y)]
//   pi       the probability of that improvement, P(Y > best + xi), or
//            P(Y < best - xi)
//
// `best` is the best response observed so far (ZqBestResponse). A point
// whose sd is 0 is known already: its expected improvement and its
// probability of improvement are exactly 0. EI and PI are never negative
// and never NaN for finite arguments, and keep their relative accuracy far
// in the tail: EI is computed as sd Phi(z) / D(-z) with D the continued
// fraction of Mills' ratio once z < -3, where sd (z Phi(z) + phi(z)) would
// cancel to nothing.
//
//   Varimo::ZqAcquisitionOptions ei;  // expected improvement, maximizing
//   double a = Varimo::ZqAcquisition(ei, 7.1, 0.4, Varimo::ZqBestResponse(pIC50, false));
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Varimo {

enum class ZqAcquisitionKind { Greedy, UpperConfidenceBound, ExpectedImprovement, ProbabilityOfImprovement, Thompson };

struct ZqAcquisitionOptions {
  // Thompson is no function of a mean and a sd: it is a joint posterior
  // draw over the pool, which batch selection makes (batch_selection.h).
  ZqAcquisitionKind kind = ZqAcquisitionKind::ExpectedImprovement;
  double kappa = 2.0;  // ucb, and the ranking of Thompson's candidates; at least 0
  double xi = 0.0;     // ei and pi: the margin an improvement must pass; at least 0
  bool minimize = false;
};

// "greedy", "ucb", "ei", "pi", "thompson", as the program and the Python
// package name them; nothing for another name.
std::optional<ZqAcquisitionKind> ZqAcquisitionKindNamed(const std::string& name);
const char* ZqAcquisitionKindName(ZqAcquisitionKind kind);

// Why the options cannot be used ("kappa must be a finite number of at
// least 0, not -1"); empty when they can.
std::string ZqCheckAcquisitionOptions(const ZqAcquisitionOptions& options);

double ZqUpperConfidenceBound(double mean, double sd, double kappa, bool minimize);
double ZqExpectedImprovement(double mean, double sd, double best, double xi, bool minimize);
double ZqProbabilityOfImprovement(double mean, double sd, double best, double xi, bool minimize);

// The value of options.kind (not Thompson) at a prediction; NaN for a
// prediction that is not finite or a sd below 0.
double ZqAcquisition(const ZqAcquisitionOptions& options, double mean, double sd, double best);

// The largest of the responses, or the smallest when minimizing, ignoring
// values that are not finite; NaN when none is.
double ZqBestResponse(const std::vector<double>& responses, bool minimize);

}  // namespace Varimo
