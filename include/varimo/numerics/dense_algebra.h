// The large dense factorisations: Cholesky with its triangular solves, the
// symmetric indefinite factorisation of bordered systems, the symmetric eigen
// decomposition and the thin singular value decomposition. Each chooses by
// the order of its matrix between Eigen's own kernels, which win on small
// matrices, and LAPACK on OpenBLAS, which wins on large ones. LAPACK takes
// over at
//
//   Cholesky and its solves     order 128    (dpftrf, dtfsm: blocked, on the BLAS's threads)
//   symmetric indefinite        order 256    (dsytrf, Bunch-Kaufman)
//   symmetric eigen             order 384    (dsyevd, divide and conquer)
//   thin SVD                    smaller side 16 (dgesdd; Eigen's Jacobi SVD is slow)
//   matrix product              smallest size 16 (dgemm)
//
// where the two paths crossed on a shared 2-core Zen machine
// (bench/numerics/dense_bench.cc, medians of interleaved runs); at twice
// these orders LAPACK was 1.5 to 4 times as fast.
//
// The choice depends on the order alone, never on timing or load, so a
// given matrix always takes the same path. The two paths agree to rounding:
// on the kriging, Gaussian-process and PLS reference tests to 1e-10 relative
// (their ctest runs with the prefix "lapack:").
//
// Eigen stays the matrix type: OpenBLAS and LAPACKE are private to the
// library, and no header includes them.
//
// Threads. The BLAS runs a large factorisation on threads of its own
// (OpenBLAS: one per core, or OPENBLAS_NUM_THREADS), and how it splits the
// work among them decides the order of some of its sums, hence the last
// bits of the result. The rule that keeps results the same on every run:
//   - a factorisation called on the caller's own thread uses the BLAS's
//     threads as they are configured for the process;
//   - work that a caller spreads over threads of its own (one query per
//     worker, say) runs inside a ZqSingleThreadedBlas scope, made on the
//     thread that starts the workers before they start and kept until they
//     are joined, with one worker exactly as with many. Inside it every BLAS
//     call runs on the thread that makes it: N workers do not start N pools
//     of BLAS threads on the same cores, and the results do not depend on N.
// ZqPredictMolecules and ZqPredictVectorRows follow this rule, and with them
// varimo-krige --threads and the Python package's predictions: N threads give
// the bits of one.
#pragma once

#include <Eigen/Core>

#include <memory>
#include <string>

namespace Varimo {

// Which implementation the factorisations use, for the whole process.
// BySize is the default; Eigen and Lapack force one path at every order,
// for comparisons of the two and for tests.
enum class ZqDenseBackend { BySize, Eigen, Lapack };
void ZqSetDenseBackend(ZqDenseBackend backend);
ZqDenseBackend ZqGetDenseBackend();

// The LAPACK in use and where it was loaded from, the BLAS's configuration
// and thread count, and the thresholds; for benchmark reports.
std::string ZqDenseBackendDescription();

// While one exists anywhere in the process, the BLAS runs every call on
// the calling thread (see Threads above): the BLAS's thread count is the
// process's. Scopes nest and may live on several threads at once; when the
// last one ends, the count it found comes back. Factorisations on other
// threads while a scope lives run single-threaded too.
class ZqSingleThreadedBlas {
 public:
  ZqSingleThreadedBlas();
  ~ZqSingleThreadedBlas();
  ZqSingleThreadedBlas(const ZqSingleThreadedBlas&) = delete;
  ZqSingleThreadedBlas& operator=(const ZqSingleThreadedBlas&) = delete;
};

// The threads a BLAS call made now would run on: the process's BLAS thread
// count, 1 while a ZqSingleThreadedBlas scope lives. The kriging models'
// own quadratic training work (the variogram's pairs, the covariance
// matrix) is spread over this many threads by the same rule, and comes out
// the same for any count.
int ZqBlasThreadCount();

// The upper Cholesky factor U of a symmetric positive definite matrix
// C = U' U, and the solves with it. Small matrices are held whole; from
// order 128 on, the factor is held in LAPACK's rectangular full packed form,
// which keeps the one triangle in n (n + 1) / 2 doubles at the speed of the
// full-storage factorisation.
//
//   ZqCholeskyFactor factor;
//   factor.Reset(n);
//   for (c = 0; c < n; ++c) { auto column = factor.UpperColumn(c); for (r = 0; r <= c; ++r) column[r] = C(r, c); }
//   if (factor.Factorise()) factor.SolveInPlace(b);   // b = C^-1 b
class ZqCholeskyFactor {
 public:
  // Where rows 0 to c of column c of the matrix are written before
  // Factorise: element r at data[r * stride].
  struct Column {
    double* data;
    Eigen::Index stride;
    double& operator[](Eigen::Index row) const { return data[row * stride]; }
  };

  // Storage for a matrix of order n; any previous factor is gone. The
  // storage is reused when the order is unchanged.
  void Reset(Eigen::Index n);
  Column UpperColumn(Eigen::Index c);
  // Factorises the matrix written through UpperColumn. False when it is not
  // positive definite, or has an element that is not finite; the factor is
  // then not valid.
  bool Factorise();
  // Reset, copy of the upper triangle of `matrix`, and Factorise.
  bool Compute(const Eigen::Ref<const Eigen::MatrixXd>& matrix);
  void Clear();

  Eigen::Index Order() const { return order_; }
  bool Valid() const { return valid_; }
  // U(c, c) of a valid factor: log det C = 2 sum_c log U(c, c), and the
  // spread of the pivots is a cheap first sign of a nearly singular C.
  double Pivot(Eigen::Index c) const;

  // The solves, on every column of b; the factor must be valid.
  // b = U'^-1 b: then |b|^2 is b' C^-1 b for the original b.
  void WhitenInPlace(Eigen::Ref<Eigen::MatrixXd> b) const;
  // b = U^-1 b.
  void BackSolveInPlace(Eigen::Ref<Eigen::MatrixXd> b) const;
  // b = C^-1 b.
  void SolveInPlace(Eigen::Ref<Eigen::MatrixXd> b) const;

 private:
  // U'^-1 b when transposed, U^-1 b otherwise.
  void TriangularSolveInPlace(Eigen::Ref<Eigen::MatrixXd> b, bool transposed) const;

  Eigen::Index order_ = 0;
  bool valid_ = false;
  bool packed_ = false;
  Eigen::MatrixXd full_;  // below the threshold: U in the upper triangle
  Eigen::VectorXd rfp_;  // from the threshold on: U in rectangular full packed form
};

// A factorisation of a symmetric matrix that may be indefinite, such as the
// bordered systems [C B; B' 0] of kriging with constraints: Eigen's LDLT
// with diagonal pivoting below order 256, LAPACK's Bunch-Kaufman LDL' from
// there on. A copy shares the (immutable) factors.
class ZqSymmetricIndefiniteFactor {
 public:
  ZqSymmetricIndefiniteFactor();
  ~ZqSymmetricIndefiniteFactor();
  ZqSymmetricIndefiniteFactor(const ZqSymmetricIndefiniteFactor&);
  ZqSymmetricIndefiniteFactor& operator=(const ZqSymmetricIndefiniteFactor&);

  // Reads the lower triangle. False when a pivot is zero or not finite; the
  // factor is then not valid.
  bool Compute(Eigen::MatrixXd matrix);
  void Clear();
  bool Valid() const;
  Eigen::Index Order() const;
  // The solution x of A x = b; the factor must be valid.
  Eigen::VectorXd Solve(const Eigen::VectorXd& b) const;

 private:
  struct Factors;
  std::shared_ptr<const Factors> factors_;
};

// The eigenvalues, ascending, and the eigenvectors of a symmetric matrix
// (its lower triangle is read), computed in place: `matrix` is replaced by
// the orthonormal eigenvectors, one per column, in the order of the values.
// The sign of each eigenvector is arbitrary. False, with `matrix` and
// `eigenvalues` unspecified, when the iteration does not converge (not
// expected for a finite matrix).
bool ZqSymmetricEigenInPlace(Eigen::MatrixXd& matrix, Eigen::VectorXd& eigenvalues);

// The product a b, on the BLAS's dgemm when each of its three sizes is at
// least 16 and by Eigen's own product otherwise. The BLAS's kernels are
// chosen for the processor at run time, Eigen's are fixed when the library
// is compiled: on square products dgemm was 1.2 times as fast at order 8,
// 2 at 32 and 3 at 256, on one thread. Each element of the product is one sum
// in the same order whatever the BLAS's thread count. Empty when the inner
// sizes differ.
Eigen::MatrixXd ZqMatrixProduct(const Eigen::Ref<const Eigen::MatrixXd>& a, const Eigen::Ref<const Eigen::MatrixXd>& b);

// The thin singular value decomposition m = U diag(s) V' of an r x c
// matrix: U is r x k, V is c x k and s holds the k = min(r, c) singular
// values in decreasing order. False when the iteration does not converge.
bool ZqThinSvd(const Eigen::MatrixXd& m, Eigen::MatrixXd& u, Eigen::VectorXd& s, Eigen::MatrixXd& v);

}  // namespace Varimo
