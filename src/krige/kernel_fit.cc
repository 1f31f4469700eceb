#include "varimo/krige/kernel_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
// A fracPoints of this or more uses every bin.
constexpr double kAllBins = 10.0;
// Upward moves of the nugget aim at this share of the sill, downward moves
// of the sill at the nugget over it, so that the nugget stays below the sill.
constexpr double kNuggetShareOfSill = 0.99;
// Bounds on searches that need not end: a scan whose step is zero or
// infinite (a sill of 0 or inf), or a coordinate search whose fitness is NaN
// (a range of 0 when every pair sits at distance zero) and so counts every
// move as an improvement. Real fits take a few hundred steps.
constexpr int kMaxNuggetScanSteps = 1000;
constexpr int kMaxSearchSteps = 100000;

// The number of bins a fit with `fracPoints` uses.
unsigned int BinsUsed(unsigned int numBins, double fracPoints) {
  unsigned int used = numBins;
  if (fracPoints < 1.0) used = static_cast<unsigned int>(numBins * fracPoints + 0.5);
  return std::min(used, numBins);
}

// The mean squared error of the kernel over the bins used, or with
// `normalise` its root as a fraction of the mean semivariance. 1.0 when no
// bin is used.
double Fitness(const ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints, bool normalise) {
  const unsigned int n = BinsUsed(variogram.GetNumBins(), fracPoints);
  if (n == 0) return 1.0;
  double squares = 0.0, semivariances = 0.0;
  for (unsigned int i = 0; i < n; ++i) {
    const double error = kernel.GetValue(variogram.GetDistance(i)) - variogram.GetSemivariance(i);
    squares += error * error;
    semivariances += variogram.GetSemivariance(i);
  }
  const double mse = squares / n;
  return normalise ? std::sqrt(mse) / (semivariances / n) : mse;
}

// The fitness the fit evaluates, refusing a fracPoints that selects nothing.
double GuardedFitness(const ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints,
                      bool normalise) {
  if (fracPoints <= 0.0) {
    Corvane::ZqThrow.Warning("ZqGetFitness, fracPoints must be greater than zero (%f passed)", fracPoints);
    return kLargest;
  }
  return Fitness(kernel, variogram, fracPoints, normalise);
}

struct Parameters {
  double range, nugget, sill;
};

// Sets nugget, sill, range in that order and reads them back, so that a
// kernel which adjusts its parameters is respected.
Parameters SetAndReadBack(ZqKrigeKernelBase& kernel, const Parameters& p) {
  kernel.SetNugget(p.nugget);
  kernel.SetSill(p.sill);
  kernel.SetRange(p.range);
  return {kernel.GetRange(), kernel.GetNugget(), kernel.GetSill()};
}

// Two bins: sill and range from the second, the nugget scanned upward from 0
// in steps of 1% of the sill; the first strictly best candidate wins.
double FitTwoBins(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints) {
  kernel.SetSill(variogram.GetSemivariance(1));
  kernel.SetRange(variogram.GetDistance(1));
  double bestNugget = 0.0, bestScore = kLargest;
  double candidate = 0.0;
  int steps = 0;
  for (; kernel.GetSill() >= candidate && steps < kMaxNuggetScanSteps; ++steps) {
    kernel.SetNugget(candidate);
    const double score = GuardedFitness(kernel, variogram, fracPoints, false);
    if (score < bestScore) {
      bestScore = score;
      bestNugget = candidate;
    }
    candidate += kernel.GetSill() * 0.01;
  }
  kernel.SetNugget(bestNugget);
  if (steps == kMaxNuggetScanSteps) return kLargest;
  return GuardedFitness(kernel, variogram, fracPoints, true);
}

// Three or more bins: the coordinate search over range, nugget and sill.
double FitByCoordinateSearch(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints) {
  const unsigned int numBins = variogram.GetNumBins();
  const double lastDistance = variogram.GetDistance(numBins - 1);
  double lowest = variogram.GetSemivariance(0), highest = lowest;
  for (unsigned int i = 1; i < numBins; ++i) {
    lowest = std::min(lowest, variogram.GetSemivariance(i));
    highest = std::max(highest, variogram.GetSemivariance(i));
  }
  Parameters p = SetAndReadBack(kernel, {0.5 * lastDistance, lowest, highest});
  if (p.nugget > p.sill) p = SetAndReadBack(kernel, {p.range, p.nugget, 2.0 * p.nugget});
  double best = GuardedFitness(kernel, variogram, fracPoints, false);

  int steps = 0;
  for (bool improved = true; improved && steps < kMaxSearchSteps;) {
    improved = false;
    for (int parameter = 0; parameter < 3; ++parameter) {
      for (double step = 1.0; step > 0.001 && steps < kMaxSearchSteps; ++steps) {
        const double up = 1.0 + step;
        const double down = 1.0 / up;
        const double upStep = up - 1.0;
        Parameters upper = p, lower = p;
        switch (parameter) {
          case 0:
            upper.range = upStep * (lastDistance - upper.range) + upper.range;
            lower.range = down * lower.range;
            break;
          case 1:
            upper.nugget = upStep * (kNuggetShareOfSill * upper.sill - upper.nugget) + upper.nugget;
            lower.nugget = down * lower.nugget;
            break;
          default:
            upper.sill = upper.sill * up;
            lower.sill = lower.sill - (1.0 - down) * (lower.sill - lower.nugget / kNuggetShareOfSill);
            break;
        }
        upper = SetAndReadBack(kernel, upper);
        const double fitUpper = GuardedFitness(kernel, variogram, fracPoints, false);
        lower = SetAndReadBack(kernel, lower);
        const double fitLower = GuardedFitness(kernel, variogram, fracPoints, false);
        if (std::min(fitLower, fitUpper) >= best) {
          step *= 0.5;
          continue;
        }
        // A tie between the two moves goes to the lower one.
        if (fitLower > fitUpper) {
          p = upper;
          best = fitUpper;
        } else {
          p = lower;
          best = fitLower;
        }
        improved = true;
      }
    }
  }
  SetAndReadBack(kernel, p);
  if (steps >= kMaxSearchSteps) return kLargest;
  return GuardedFitness(kernel, variogram, fracPoints, true);
}

}  // namespace

double ZqGetFitness(const ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram) {
  if (variogram.GetNumBins() == 0) return kLargest;
  return Fitness(kernel, variogram, 1.0, true);
}

double ZqGetFitness(const ZqKrigeKernelBase& kernel, const ZqVariogram& variogram) {
  return ZqGetFitness(kernel, variogram.GetVariogram());
}

double ZqFitKernelPartial(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints) {
  switch (variogram.GetNumBins()) {
    case 0:
      return kLargest;
    case 1:
      kernel.SetNugget(0.0);
      kernel.SetSill(variogram.GetSemivariance(0));
      kernel.SetRange(variogram.GetDistance(0));
      return 0.0;
    case 2:
      return FitTwoBins(kernel, variogram, fracPoints);
    default:
      return FitByCoordinateSearch(kernel, variogram, fracPoints);
  }
}

double ZqFitKernelPartial(ZqKrigeKernelBase& kernel, const ZqVariogram& variogram, double fracPoints) {
  return ZqFitKernelPartial(kernel, variogram.GetVariogram(), fracPoints);
}

double ZqFitKernel(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram) {
  return ZqFitKernelPartial(kernel, variogram, kAllBins);
}

double ZqFitKernel(ZqKrigeKernelBase& kernel, const ZqVariogram& variogram) {
  return ZqFitKernelPartial(kernel, variogram.GetVariogram(), kAllBins);
}

std::vector<ZqKrigeKernel> ZqRankKernels(const ZqVariogram& variogram) {
  std::vector<std::pair<double, ZqKrigeKernel>> fitted;
  for (const ZqKrigeKernelBase& candidate : ZqGetKrigeKernels()) {
    ZqKrigeKernel kernel(candidate);
    double fitness = ZqFitKernel(kernel, variogram);
    // NaN would break the ordering.
    if (std::isnan(fitness)) fitness = std::numeric_limits<double>::max();
    fitted.emplace_back(fitness, std::move(kernel));
  }
  std::stable_sort(fitted.begin(), fitted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<ZqKrigeKernel> ranked;
  ranked.reserve(fitted.size());
  for (auto& entry : fitted) ranked.push_back(std::move(entry.second));
  return ranked;
}

double ZqGetExperimentalVariance(const ZqVariogram& variogram) {
  ZqKrigeKernel linear(ZqKrigeKernelType::Linear);
  ZqFitKernelPartial(linear, variogram, 0.3333333333333333);
  return linear.GetNugget();
}

}  // namespace Varimo
