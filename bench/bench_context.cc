// Linked into every benchmark program: the report's context says which
// LAPACK and BLAS the dense factorisations ran on ("dense_backend"), so that
// the comparison scripts can print it beside the peer's.
#include <benchmark/benchmark.h>

#include "varimo/numerics/dense_algebra.h"

namespace {

const bool kContextAdded = [] {
  benchmark::AddCustomContext("dense_backend", Varimo::ZqDenseBackendDescription());
  return true;
}();

}  // namespace
