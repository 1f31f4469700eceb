// Fitting a krige kernel to an experimental variogram by a derivative-free
// coordinate search over range, nugget and sill, and the fitness that ranks
// the fitted candidates.
#pragma once

#include <vector>

#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/variogram.h"

namespace Varimo {

// The root mean square error of the kernel over all bins, as a fraction of
// the mean semivariance of the bins (lower is better; bins are not weighted
// by their pair counts). The largest double for a variogram without bins.
double ZqGetFitness(const ZqKrigeKernelBase& kernel, const ZqVariogram& variogram);
double ZqGetFitness(const ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram);

// Fits the kernel in place and returns its fitness as above. With one bin:
// nugget 0, sill and range from the bin, fitness 0. With two: sill and range
// from the second bin and the nugget by a scan in steps of 1% of the sill.
// With three or more: a coordinate search from range = half the last bin's
// distance, nugget and sill the smallest and largest semivariance, in steps
// that halve from 100% to 0.1%, keeping the nugget below 99% of the sill
// and the range within the last bin's distance. The largest double when the
// variogram has no bins, and when the search cannot converge (a NaN fitness,
// a zero sill): the kernel is then left where the search stopped.
double ZqFitKernel(ZqKrigeKernelBase& kernel, const ZqVariogram& variogram);
double ZqFitKernel(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram);

// The same fit on the first trunc(bins * fracPoints + 0.5) bins when
// fracPoints < 1, on all bins from 1 on. A fracPoints of zero or less warns
// "ZqGetFitness, fracPoints must be greater than zero (%f passed)" at every
// evaluation and gives the largest double.
double ZqFitKernelPartial(ZqKrigeKernelBase& kernel, const ZqVariogram& variogram, double fracPoints);
double ZqFitKernelPartial(ZqKrigeKernelBase& kernel, const ZqVariogramBase& variogram, double fracPoints);

// The 16 candidate kernels, each fitted to the variogram, ordered from the
// best fit to the worst; of two that fit equally well, the earlier candidate
// comes first. A NaN fitness ranks as the largest double. The models try
// them in this order.
std::vector<ZqKrigeKernel> ZqRankKernels(const ZqVariogram& variogram);

// An estimate of the noise variance of the responses: the nugget of a
// linear kernel fitted to the first third of the bins.
double ZqGetExperimentalVariance(const ZqVariogram& variogram);

}  // namespace Varimo
