// Random draws from the laws the statistics layer samples, taken from the
// caller's ZqRanNumEngine. Each generator holds only its parameters: a draw
// depends on them and on the engine's state alone, so reseeding the engine
// restarts the sequence, and a copied generator given a copied engine goes on
// identically.
//
// Parameters are checked by the constructor and by SetParams. Every parameter
// must be finite, and each class states its further conditions. A generator
// with invalid parameters is still usable: IsValid() is false and each draw
// returns NaN (ZqUniformIntRNG::kInvalidDraw for the integer generator)
// without touching the engine.
//
// Shapes and degrees of freedom far below 1 (about 0.01 and less) make the
// underlying gamma variates underflow to 0 now and then; the draw is then 0,
// +inf or, for the ratio laws (beta, F), NaN. Such parameters are accepted but
// not served well.
#pragma once

#include <limits>

#include "varimo/platform/numarc/random_engine.h"

namespace Numarc {

// Normal law. Valid when sd > 0.
class ZqGaussianRNG {
 public:
  ZqGaussianRNG(double mean, double sd) { SetParams(mean, sd); }
  void SetParams(double mean, double sd);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double mean_ = 0.0;
  double sd_ = 1.0;
  bool valid_ = false;
};

// location + scale * T, T following Student's t law with `dof` degrees of
// freedom. Valid when scale > 0 and dof > 0.
class ZqStudentsTRNG {
 public:
  ZqStudentsTRNG(double location, double scale, double dof) { SetParams(location, scale, dof); }
  void SetParams(double location, double scale, double dof);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double location_ = 0.0;
  double scale_ = 1.0;
  double dof_ = 1.0;
  bool valid_ = false;
};

// Gamma law with density x^(shape-1) e^(-x/scale) / (Gamma(shape) scale^shape),
// mean shape * scale. Valid when shape > 0 and scale > 0.
class ZqGammaRNG {
 public:
  ZqGammaRNG(double shape, double scale) { SetParams(shape, scale); }
  void SetParams(double shape, double scale);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double shape_ = 1.0;
  double scale_ = 1.0;
  bool valid_ = false;
};

// Chi-squared law. Valid when dof > 0.
class ZqChiSquaredRNG {
 public:
  explicit ZqChiSquaredRNG(double dof) { SetParams(dof); }
  void SetParams(double dof);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double dof_ = 1.0;
  bool valid_ = false;
};

// Snedecor's F law with d1 (numerator) and d2 (denominator) degrees of
// freedom. Valid when d1 > 0 and d2 > 0.
class ZqSnedecorsFRNG {
 public:
  ZqSnedecorsFRNG(double d1, double d2) { SetParams(d1, d2); }
  void SetParams(double d1, double d2);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double d1_ = 1.0;
  double d2_ = 1.0;
  bool valid_ = false;
};

// Beta law on [0, 1]. Valid when a > 0 and b > 0. Drawn by Boost.Random,
// whose gamma sampler loses accuracy for shapes above about 1e12: the spread
// of Beta(1e17, 1e17) draws comes out some 50 times too wide.
class ZqBetaRNG {
 public:
  ZqBetaRNG(double a, double b) { SetParams(a, b); }
  void SetParams(double a, double b);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double a_ = 1.0;
  double b_ = 1.0;
  bool valid_ = false;
};

// Gumbel law of maxima: CDF exp(-exp(-(x - location) / scale)). Valid when
// scale > 0.
class ZqGumbelRNG {
 public:
  ZqGumbelRNG(double location, double scale) { SetParams(location, scale); }
  void SetParams(double location, double scale);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double location_ = 0.0;
  double scale_ = 1.0;
  bool valid_ = false;
};

// Generalised extreme value law: CDF exp(-(1 + shape z)^(-1/shape)) with
// z = (x - location) / scale, on 1 + shape z > 0; at shape 0 the Gumbel law
// above. Valid when scale > 0, for any finite shape. Drawn by inverting the
// CDF on one uniform from the engine, continuously in shape: from the same
// engine state, draws at a tiny shape and at shape 0 differ by a term of the
// order of the shape. A large |shape| can overflow a draw to +-inf.
class ZqGenExtremeValRNG {
 public:
  ZqGenExtremeValRNG(double location, double scale, double shape) {
    SetParams(location, scale, shape);
  }
  void SetParams(double location, double scale, double shape);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double location_ = 0.0;
  double scale_ = 1.0;
  double shape_ = 0.0;
  bool valid_ = false;
};

// Uniform over the integers low, low + 1, ..., high, both ends included.
// Valid when low <= high; any such pair, the full range of long included.
class ZqUniformIntRNG {
 public:
  // The draw of an invalid generator. As an index it fails at once.
  static constexpr long kInvalidDraw = std::numeric_limits<long>::min();

  ZqUniformIntRNG(long low, long high) { SetParams(low, high); }
  void SetParams(long low, long high);
  bool IsValid() const { return low_ <= high_; }
  long operator()(ZqRanNumEngine& engine) const;

 private:
  long low_ = 0;
  long high_ = 0;
};

// Uniform on [low, high). Valid when low <= high and high - low is finite;
// low == high always gives low. `high` itself comes out only through
// rounding, which happens when high - low is large against the spacing of
// doubles near low.
class ZqUniformDoubleRNG {
 public:
  ZqUniformDoubleRNG(double low, double high) { SetParams(low, high); }
  void SetParams(double low, double high);
  bool IsValid() const { return valid_; }
  double operator()(ZqRanNumEngine& engine) const;

 private:
  double low_ = 0.0;
  double high_ = 1.0;
  bool valid_ = false;
};

}  // namespace Numarc
