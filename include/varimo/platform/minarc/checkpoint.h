// Observers of an optimisation in progress. An optimiser calls its checkpoint
// once after each accepted iterate; returning false stops the run there, with
// that iterate as the result. A null checkpoint is always allowed.
#pragma once

namespace Minarc {

// For optimisers that know only function values.
class ZqCheckpoint {
 public:
  virtual ~ZqCheckpoint() = default;
  // `iteration` counts accepted iterates from 1; x has numVar elements.
  virtual bool operator()(unsigned int iteration, unsigned int numVar, const double* x, double value) = 0;
};

// For optimisers that also know the gradient at the iterate.
class ZqCheckpoint1 {
 public:
  virtual ~ZqCheckpoint1() = default;
  virtual bool operator()(unsigned int iteration, unsigned int numVar, const double* x, double value,
                          const double* gradient) = 0;
};

}  // namespace Minarc
