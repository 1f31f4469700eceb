// The process-wide choice of path, the BLAS's thread count, and the
// description of what was loaded. The only file that knows the BLAS is
// OpenBLAS.
#include "dense_backend.h"

#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>

#include "varimo/numerics/dense_algebra.h"

extern "C" {
// OpenBLAS's own interface (cblas.h would bring the whole CBLAS).
void openblas_set_num_threads(int threads);
int openblas_get_num_threads(void);
char* openblas_get_config(void);
// A LAPACK routine, to find out which library provides LAPACK.
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);
}

namespace Varimo {
namespace {

std::atomic<ZqDenseBackend> gBackend{ZqDenseBackend::BySize};

}  // namespace

namespace DenseDetail {

bool UseLapack(Eigen::Index order, Eigen::Index threshold) {
  switch (gBackend.load(std::memory_order_relaxed)) {
    case ZqDenseBackend::Eigen:
      return false;
    case ZqDenseBackend::Lapack:
      return FitsLapack(order);
    case ZqDenseBackend::BySize:
      break;
  }
  return order >= threshold && FitsLapack(order);
}

bool FitsLapack(Eigen::Index order) {
  // LAPACK counts in int, workspaces included: the eigen decomposition's
  // is 2 n^2 + 6 n + 1 doubles. Larger matrices (8 GB and more) stay with
  // Eigen.
  return order < 32768;
}

}  // namespace DenseDetail

void ZqSetDenseBackend(ZqDenseBackend backend) { gBackend.store(backend, std::memory_order_relaxed); }

ZqDenseBackend ZqGetDenseBackend() { return gBackend.load(std::memory_order_relaxed); }

std::string ZqDenseBackendDescription() {
  std::string lapack = "unknown";
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&dpotrf_), &info) != 0 && info.dli_fname != nullptr) lapack = info.dli_fname;
  const char* backend = "by order";
  if (ZqGetDenseBackend() == ZqDenseBackend::Eigen) backend = "Eigen only";
  if (ZqGetDenseBackend() == ZqDenseBackend::Lapack) backend = "LAPACK only";
  return std::string("LAPACK ") + lapack + "; " + openblas_get_config() + ", " +
         std::to_string(openblas_get_num_threads()) + " threads; Eigen " + std::to_string(EIGEN_WORLD_VERSION) +
         "." + std::to_string(EIGEN_MAJOR_VERSION) + "." + std::to_string(EIGEN_MINOR_VERSION) + "; " + backend +
         " (LAPACK from Cholesky " + std::to_string(DenseDetail::kCholeskyOrder) + ", indefinite " +
         std::to_string(DenseDetail::kIndefiniteOrder) + ", eigen " + std::to_string(DenseDetail::kEigenOrder) +
         ", SVD " + std::to_string(DenseDetail::kSvdSide) + ")";
}

namespace {

// The scopes alive in the process and the thread count the first found.
// Scopes on several threads at once (two callers predicting side by side)
// must not hand the BLAS its threads back while another still runs: the
// last one out restores the count. The lock is held for the count alone.
std::mutex gScopesMutex;
int gScopes = 0;
int gThreadsBefore = 1;

}  // namespace

ZqSingleThreadedBlas::ZqSingleThreadedBlas() {
  const std::lock_guard<std::mutex> lock(gScopesMutex);
  if (gScopes++ == 0) {
    gThreadsBefore = openblas_get_num_threads();
    openblas_set_num_threads(1);
  }
}

ZqSingleThreadedBlas::~ZqSingleThreadedBlas() {
  const std::lock_guard<std::mutex> lock(gScopesMutex);
  if (--gScopes == 0) openblas_set_num_threads(gThreadsBefore);
}

int ZqBlasThreadCount() { return std::max(1, openblas_get_num_threads()); }

}  // namespace Varimo
