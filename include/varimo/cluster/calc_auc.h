// Ranking measures: the area under the ROC curve of a ranked list of actives
// and decoys, its Hanley-McNeil standard error, and a median score.
//
// The two bool overloads report through Corvane::ZqThrow's Warning level and
// return false, leaving `auc` as it was, when the area cannot be formed.
#pragma once

#include <vector>

namespace Varimo {

// `ranked` runs from the best rank to the worst, true for an active. The area
// is the fraction of (active, decoy) pairs with the active ranked first.
// False for an empty list or a list without actives or without decoys.
bool ZqCalculateAUC(double& auc, const std::vector<bool>& ranked);

// `ranked` shows only the top of a ranking of `nact` actives and `ndec`
// decoys; the unseen part of the curve is closed by a straight line to
// (1, 1). An empty list gives 0.5. False when either count is 0, or (with a
// warning) when the list holds more actives or decoys than the counts.
bool ZqCalculateAUC(double& auc, const std::vector<bool>& ranked, unsigned int nact, unsigned int ndec);

// The area from the scores of both classes: each (active, decoy) pair counts
// 1 when the active scores better and 1/2 on a tie. Better is higher with
// `higherIsBetter`, lower otherwise. NaN (0 / 0) when either vector is empty.
// A NaN score neither beats nor ties anything. Costs O((n + m) log m) for n
// actives and m decoys.
double ZqCalculateAUC(const std::vector<double>& actives, const std::vector<double>& decoys,
                      bool higherIsBetter);

// The Hanley-McNeil (1982) standard error of an area `auc` from `nact`
// actives and `ndec` decoys. 0 at an area of 1.
double ZqCalculateStandardError(double auc, unsigned int nact, unsigned int ndec);

// The median of `values`, found by selection; the input is reordered. With
// an even count the mean of the two middle values. The bad double
// 1.7976931348623157e308 for no values.
double ZqMedian(std::vector<double>& values);

// The median of a copy of the values; the caller's data stay as they are.
double ZqMedianScore(const double* values, unsigned long n);
double ZqMedianScore(const std::vector<double>& values);

}  // namespace Varimo
