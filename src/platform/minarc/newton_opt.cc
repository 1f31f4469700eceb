#include "varimo/platform/minarc/newton_opt.h"

#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <algorithm>
#include <cmath>

namespace Minarc {

namespace {

using Vector = Eigen::VectorXd;
using Matrix = Eigen::MatrixXd;

// Armijo's sufficient-decrease constant and the backtracking budget: 60
// halvings bring t below 1e-18, far past any step that can still change x.
constexpr double kArmijo = 1e-4;
constexpr int kMaxHalvings = 60;
// Levenberg damping: first shift relative to the Hessian's diagonal, growth
// factor and number of tries (1e-6 * 10^40 dominates any finite Hessian).
constexpr double kFirstShift = 1e-6;
constexpr double kShiftGrowth = 10.0;
constexpr int kMaxShifts = 40;

struct Direction {
  Vector d;
  bool isNewton = false;  // d = -H^-1 g with H positive definite
};

Direction SearchDirection(const Matrix& hessian, const Vector& gradient) {
  Direction direction;
  if (hessian.allFinite()) {
    const Eigen::LDLT<Matrix> ldlt(hessian);
    if (ldlt.info() == Eigen::Success && (ldlt.vectorD().array() > 0.0).all()) {
      direction.d = -ldlt.solve(gradient);
      if (direction.d.allFinite()) {
        direction.isNewton = true;
        return direction;
      }
    }
    const double diagonal = hessian.diagonal().cwiseAbs().maxCoeff();
    double shift = kFirstShift * std::max(1.0, diagonal);
    const Matrix identity = Matrix::Identity(hessian.rows(), hessian.cols());
    for (int attempt = 0; attempt < kMaxShifts; ++attempt, shift *= kShiftGrowth) {
      const Eigen::LLT<Matrix> llt(hessian + shift * identity);
      if (llt.info() != Eigen::Success) continue;
      direction.d = -llt.solve(gradient);
      if (direction.d.allFinite()) return direction;
    }
  }
  direction.d = -gradient;
  return direction;
}

}  // namespace

void ZqNewtonOpt::SetTolerance(double tolerance) { tolerance_ = tolerance > 0.0 ? tolerance : 0.0; }

const char* ZqNewtonOpt::StatusText(Status status) {
  switch (status) {
    case Status::NotRun: return "not run";
    case Status::Converged: return "converged";
    case Status::IterLimitReached: return "iteration limit reached";
    case Status::NoDescent: return "no descent step found";
    case Status::NonFiniteStart: return "function not finite at the start";
    case Status::NonFiniteDerivatives: return "gradient not finite at an iterate";
    case Status::StoppedByCheckpoint: return "stopped by checkpoint";
  }
  return "unknown";
}

double ZqNewtonOpt::operator()(ZqFunc2& f, ZqCheckpoint1* checkpoint, const double* start, double* result) {
  const unsigned int n = f.NumVar();
  numIterations_ = 0;
  Vector x = n == 0 ? Vector() : Eigen::Map<const Vector>(start, n);
  auto writeResult = [&] {
    if (n > 0) Eigen::Map<Vector>(result, n) = x;
  };
  writeResult();

  if (iterLimit_ == 0) {
    status_ = Status::IterLimitReached;
    return f(x.data());
  }

  Vector gradient(n);
  Matrix hessian(n, n);
  double value = f(x.data(), gradient.data(), hessian.data());
  if (!std::isfinite(value) || !gradient.allFinite()) {
    status_ = Status::NonFiniteStart;
    return value;
  }
  // The lower triangle is what the caller promises; make the stored matrix
  // symmetric from it so that both factorisations see the same matrix.
  // Eigen maps hessian.data() column-major, so the caller's row-major lower
  // triangle is our upper one.
  auto symmetrise = [&] {
    const Matrix caller = hessian;
    hessian = caller.selfadjointView<Eigen::Upper>();
  };
  symmetrise();

  Vector trial(n);
  for (;;) {
    const double scale = std::max(1.0, std::fabs(value));
    if (n == 0 || gradient.lpNorm<Eigen::Infinity>() <= tolerance_ * scale) {
      status_ = Status::Converged;
      break;
    }
    if (numIterations_ >= iterLimit_) {
      status_ = Status::IterLimitReached;
      break;
    }

    const Direction direction = SearchDirection(hessian, gradient);
    double slope = gradient.dot(direction.d);
    Vector d = direction.d;
    bool isNewton = direction.isNewton;
    if (!(slope < 0.0)) {
      // Rounding can make even a positive-definite solve point uphill.
      d = -gradient;
      slope = -gradient.squaredNorm();
      isNewton = false;
    }

    if (isNewton && -0.5 * slope <= tolerance_ * scale) {
      trial = x + d;
      const double last = f(trial.data());
      if (std::isfinite(last) && last <= value) {
        x = trial;
        value = last;
        ++numIterations_;
      }
      status_ = Status::Converged;
      break;
    }

    double t = 1.0;
    bool accepted = false;
    for (int halving = 0; halving <= kMaxHalvings; ++halving, t *= 0.5) {
      trial = x + t * d;
      const double candidate = f(trial.data());
      if (std::isfinite(candidate) && candidate <= value + kArmijo * t * slope) {
        accepted = true;
        break;
      }
    }
    if (!accepted) {
      status_ = Status::NoDescent;
      break;
    }

    const double previous = value;
    x.swap(trial);
    ++numIterations_;
    value = f(x.data(), gradient.data(), hessian.data());
    if (!std::isfinite(value) || !gradient.allFinite()) {
      // The line search saw a finite value here; a function that answers
      // otherwise with derivatives loses this iterate, so that the result is
      // always a point with a finite value.
      if (!std::isfinite(value)) {
        x.swap(trial);
        value = previous;
      }
      status_ = Status::NonFiniteDerivatives;
      break;
    }
    symmetrise();
    if (checkpoint != nullptr && !(*checkpoint)(numIterations_, n, x.data(), value, gradient.data())) {
      status_ = Status::StoppedByCheckpoint;
      break;
    }
  }
  writeResult();
  return value;
}

}  // namespace Minarc
