#include "varimo/krige/acquisition.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "varimo/platform/numarc/special_functions.h"

namespace Varimo {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kSqrtHalf = 0.70710678118654752440;
constexpr double kInvSqrtTwoPi = 0.39894228040143267794;

// Phi(-u), the upper tail of the standard normal law, without the
// cancellation of 1 - Phi(u).
double UpperTail(double u) { return 0.5 * Numarc::Zqerfc(u * kSqrtHalf); }

// E[max(0, Z + z)] for a standard normal Z: z Phi(z) + phi(z). For z well
// below 0 both terms are nearly equal; there it is Phi(z) / D(-z) with
// D(u) = u + 2/(u + 3/(u + ...)), Laplace's continued fraction of Mills'
// ratio shifted by one term, which 60 terms evaluate to full precision for
// u >= 3 (checked against 40-digit values).
double UnitImprovement(double z) {
  if (z >= -3.0) return z * UpperTail(-z) + kInvSqrtTwoPi * std::exp(-0.5 * z * z);
  const double u = -z;
  double d = u;
  for (int k = 60; k >= 2; --k) d = u + k / d;
  return UpperTail(u) / d;
}

// The improvement margin mean - best - xi, signed so that positive is good.
double Gain(double mean, double best, double xi, bool minimize) {
  return minimize ? best - xi - mean : mean - best - xi;
}

}  // namespace

std::optional<ZqAcquisitionKind> ZqAcquisitionKindNamed(const std::string& name) {
  for (ZqAcquisitionKind kind :
       {ZqAcquisitionKind::Greedy, ZqAcquisitionKind::UpperConfidenceBound, ZqAcquisitionKind::ExpectedImprovement,
        ZqAcquisitionKind::ProbabilityOfImprovement, ZqAcquisitionKind::Thompson}) {
    if (name == ZqAcquisitionKindName(kind)) return kind;
  }
  return std::nullopt;
}

const char* ZqAcquisitionKindName(ZqAcquisitionKind kind) {
  switch (kind) {
    case ZqAcquisitionKind::Greedy:
      return "greedy";
    case ZqAcquisitionKind::UpperConfidenceBound:
      return "ucb";
    case ZqAcquisitionKind::ExpectedImprovement:
      return "ei";
    case ZqAcquisitionKind::ProbabilityOfImprovement:
      return "pi";
    case ZqAcquisitionKind::Thompson:
      return "thompson";
  }
  return "";
}

std::string ZqCheckAcquisitionOptions(const ZqAcquisitionOptions& options) {
  auto number = [](double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", v);
    return std::string(text);
  };
  if (!(std::isfinite(options.kappa) && options.kappa >= 0.0)) {
    return "kappa must be a finite number of at least 0, not " + number(options.kappa);
  }
  if (!(std::isfinite(options.xi) && options.xi >= 0.0)) {
    return "xi must be a finite number of at least 0, not " + number(options.xi);
  }
  return {};
}

double ZqUpperConfidenceBound(double mean, double sd, double kappa, bool minimize) {
  return minimize ? -(mean - kappa * sd) : mean + kappa * sd;
}

double ZqExpectedImprovement(double mean, double sd, double best, double xi, bool minimize) {
  if (!(sd > 0.0)) return sd == 0.0 ? 0.0 : kNaN;
  const double z = Gain(mean, best, xi, minimize) / sd;
  if (std::isnan(z)) return kNaN;
  return sd * UnitImprovement(z);
}

double ZqProbabilityOfImprovement(double mean, double sd, double best, double xi, bool minimize) {
  if (!(sd > 0.0)) return sd == 0.0 ? 0.0 : kNaN;
  const double z = Gain(mean, best, xi, minimize) / sd;
  if (std::isnan(z)) return kNaN;
  return UpperTail(-z);
}

double ZqAcquisition(const ZqAcquisitionOptions& options, double mean, double sd, double best) {
  if (!std::isfinite(mean) || !std::isfinite(sd) || sd < 0.0) return kNaN;
  switch (options.kind) {
    case ZqAcquisitionKind::Greedy:
      return options.minimize ? -mean : mean;
    case ZqAcquisitionKind::UpperConfidenceBound:
      return ZqUpperConfidenceBound(mean, sd, options.kappa, options.minimize);
    case ZqAcquisitionKind::ExpectedImprovement:
      return ZqExpectedImprovement(mean, sd, best, options.xi, options.minimize);
    case ZqAcquisitionKind::ProbabilityOfImprovement:
      return ZqProbabilityOfImprovement(mean, sd, best, options.xi, options.minimize);
    case ZqAcquisitionKind::Thompson:
      break;
  }
  return kNaN;
}

double ZqBestResponse(const std::vector<double>& responses, bool minimize) {
  double best = kNaN;
  for (double y : responses) {
    if (!std::isfinite(y)) continue;
    if (std::isnan(best) || (minimize ? y < best : y > best)) best = y;
  }
  return best;
}

}  // namespace Varimo
