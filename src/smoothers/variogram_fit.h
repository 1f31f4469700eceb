// The closed-form part of a variogram fit: for fixed kernel values the
// theory curve nugget + (sill - nugget) k is linear in nugget and sill, so
// both come from weighted least squares and only the kernel parameters need
// a search.
#pragma once

#include <vector>

namespace Varimo {

// Fits y = nugget + (sill - nugget) k with weights w and returns the
// weighted root-mean-square residual. No points, or a weight sum below
// 2.220446049250313e-15, give the bad double for all three; values of k
// that cannot be told apart (a determinant below the same bound) give
// nugget = sill = the weighted mean of y and its weighted spread.
double ZqFitNuggetAndSill(double& nugget, double& sill, const std::vector<double>& k, const std::vector<double>& y,
                          const std::vector<double>& w);

}  // namespace Varimo
