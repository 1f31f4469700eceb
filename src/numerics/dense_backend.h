// The choice between Eigen and LAPACK shared by the dense factorisations,
// and the orders from which LAPACK takes over (see dense_algebra.h for the
// measurements behind them).
#pragma once

#include <Eigen/Core>

namespace Varimo::DenseDetail {

inline constexpr Eigen::Index kCholeskyOrder = 128;
inline constexpr Eigen::Index kIndefiniteOrder = 256;
inline constexpr Eigen::Index kEigenOrder = 384;
inline constexpr Eigen::Index kSvdSide = 16;
inline constexpr Eigen::Index kProductSide = 16;

// Whether a factorisation of this order goes to LAPACK.
bool UseLapack(Eigen::Index order, Eigen::Index threshold);

// LAPACK takes its sizes as int.
bool FitsLapack(Eigen::Index order);

}  // namespace Varimo::DenseDetail
