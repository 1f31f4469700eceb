// What the mixture models share: the parameter records they start from,
// the slices of sorted data that seed them, the convergence loop, and the
// predictive parameters of a fitted component.
#pragma once

#include <string>
#include <vector>

#include "varimo/mixture/gauss_mix_model.h"

namespace Varimo {

// One Dirichlet parameter (coefficient, sum of all coefficients) per
// coefficient.
std::vector<ZqGaussMixParam> FillMixtureProbParams(const std::vector<double>& coefficients);
// One Gauss-Gamma parameter per component: mean, multiplier 1, alpha 1,
// beta 1 / precision; prior and start of the posterior alike.
std::vector<ZqGaussMixParam> FillComponentGaussGammaParams(const std::vector<double>& means,
                                                           const std::vector<double>& precisions);
// The robust centre and scale of sorted[lo, hi): 0 and 1 for no value, the
// value and 1 for one.
void SliceCenterAndScale(const std::vector<double>& sorted, std::size_t lo, std::size_t hi, double& center,
                         double& scale);

// The Students-T predictive law of a Gauss-Gamma component: its expected
// probability, degrees of freedom 2 a, location m and precision
// (k / (1 + k)) (a / b).
ZqStatModelResult GetComponentParamsForStudentsTPredictiveDist(const ZqOneDimGaussMixComponent& component,
                                                               double& probability, double& degreesOfFreedom,
                                                               double& location, double& precision);

// The convergence loop of a variational fit: cycles until both the lower
// bound and the largest relative parameter change move less than their
// tolerances. Writes the progress marks on standard output. `converged`
// tells whether it stopped before maxCycles; `cycles` is where it stopped.
struct ZqFitLoopOutcome {
  bool converged = false;
  std::size_t cycles = 0;
  double fitness = 0.0;
  double fitnessDiff = 0.0;
  double paramDiff = 0.0;
};
ZqStatModelResult ZqRunFitLoop(ZqOneDimGaussMixModel& model, std::size_t numComponents, double fitnessTol,
                               double paramTol, std::size_t maxCycles, ZqFitLoopOutcome& outcome);

// Seconds of a fit: CPU seconds, unless the wall clock says 2148 or more
// (where the CPU clock of a 32-bit clock_t would have wrapped).
class ZqFitTimer {
 public:
  ZqFitTimer();
  double Seconds() const;

 private:
  long cpuStart_;
  long wallStart_;
};

// Divides probabilities that sum to one within single precision by their
// sum. The expected Dirichlet probabilities a_k / s of a fit sum to one
// only up to a few ulps, and a mixture accepts no more than one ulp per
// component.
void ZqRescaleToSumOne(std::vector<double>& probabilities, double sum);

// exp(f - best) of each fitness, normalised to sum to one.
std::vector<double> ZqModelProbabilities(const std::vector<double>& fitnesses, double bestFitness);

}  // namespace Varimo
