// Compiled into every test program: with VARIMO_TEST_DENSE_BACKEND=lapack in
// the environment, every dense factorisation takes the LAPACK path whatever
// its order, so that ctest can run the reference tests (whose matrices are
// small) on both paths. The library itself reads no environment variable.
#include <cstdlib>
#include <string>

#include "varimo/numerics/dense_algebra.h"

namespace {

const bool kBackendSet = [] {
  const char* backend = std::getenv("VARIMO_TEST_DENSE_BACKEND");
  if (backend != nullptr && std::string(backend) == "lapack") Varimo::ZqSetDenseBackend(Varimo::ZqDenseBackend::Lapack);
  return true;
}();

}  // namespace
