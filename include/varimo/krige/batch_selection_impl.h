// Definitions of ZqSelectBatch. Include in one source file per element
// type; the library compiles them for vectors and fingerprints.
//
// The algebra of the sequential batches on a global model. Let S be the
// model's system matrix (the covariances C of the N unique elements,
// bordered for ordinary and universal kriging), r_x a member's right-hand
// side and W_x = S^-1 r_x. Adding a training point p to the model adds a
// row and column to S; block elimination of that row gives, for every
// member x, with k(x, p) = K(x, p) - r_x' W_p the posterior covariance and
// s = k(p, p) its Schur complement (K(p, p) the diagonal sill - nugget):
//
//   W'_x   = [W_x - W_p k(x, p) / s ; k(x, p) / s]
//   mean'  = mean + k(x, p) / s (y_p - mean_p)
//   var'   = var - k(x, p) / s e(x, p),   e(x, p) = K(x, p) - w_p' b_x
//
// where the variance is the model's own, sill - w' b over the covariance
// entries only (the border's multipliers take no part in it), so that e
// differs from k by the multipliers' share mu_p' f_x. Further picks repeat
// the step on the grown system; a member keeps for each pick i its
// c_i = k_i(x, p_i) / sqrt(s_i) and e_i, from which k_j(x, p) and
// e_j(x, p) follow with O(picks) work:
//
//   k_j(x, p) = K(x, p) - r_x' W_p - sum_i c_i(x) c_i(p)
//   e_j(x, p) = K(x, p) - w_p' b_x - sum_i c_i(p) / sqrt(s_i) e_i(x)
//
// A member the candidates left out is bounded rather than conditioned: a
// believer pick leaves every mean as it is and raises a variance by at
// most (mu_p' f_x)^2 / (4 s) (the largest of -(k^2 + k mu' f) / s over k),
// so its acquisition (greedy, ucb, ei: increasing in the mean and the sd,
// decreasing in the best response) stays below that of the bound. Members
// whose bound could beat a pick, and every member for the liars and for
// pi, are replayed exactly in a further read of the pool.
#pragma once

#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <Eigen/Eigenvalues>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <numeric>
#include <queue>
#include <random>
#include <utility>
#include <vector>

#include "varimo/krige/batch_selection.h"
#include "varimo/krige/local_krige.h"
#include "varimo/krige/parallel_for.h"
#include "varimo/krige/standard_krige.h"

namespace Varimo {

template <class T>
bool ZqPoolInMemory<T>::Read(const typename ZqPoolSource<T>::Visit& visit, const std::vector<char>* wanted,
                             std::string& /*error*/) {
  constexpr std::size_t kChunk = 1024;
  std::vector<const T*> chunk;
  for (std::size_t first = 0; first < elements_.size(); first += kChunk) {
    chunk.clear();
    for (std::size_t i = first; i < std::min(elements_.size(), first + kChunk); ++i) {
      chunk.push_back(wanted && !(*wanted)[i] ? nullptr : &elements_[i]);
    }
    visit(first, chunk);
  }
  return true;
}

namespace selection_detail {

// The training container's test for one element.
inline constexpr double kSameElement = 1e-30;
inline constexpr double kNever = -std::numeric_limits<double>::infinity();
// A pick whose Schur complement is below this share of the sill lies on a
// training element or an earlier pick: a fantasy there adds nothing.
inline constexpr double kNoInformation = 1e-12;
// Queries per blocked prediction of the first read.
inline constexpr std::size_t kPredictBlock = 256;

// Larger acquisition first; at equal acquisition the member read first.
inline bool Better(double a, std::size_t indexA, double b, std::size_t indexB) {
  return a > b || (a == b && indexA < indexB);
}

// An acquisition that cannot be computed never wins.
inline double Score(double acquisition) { return std::isnan(acquisition) ? kNever : acquisition; }

inline double Sd(double variance) { return std::sqrt(std::max(variance, 0.0)); }

// The elements of a block of pointers, for PredictManyTrained.
template <class T>
class DereferencedRange {
 public:
  explicit DereferencedRange(const std::vector<const T*>& pointers) : pointers_(pointers) {}
  class Iterator {
   public:
    explicit Iterator(typename std::vector<const T*>::const_iterator it) : it_(it) {}
    const T& operator*() const { return **it_; }
    Iterator& operator++() {
      ++it_;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return it_ != other.it_; }

   private:
    typename std::vector<const T*>::const_iterator it_;
  };
  Iterator begin() const { return Iterator(pointers_.begin()); }
  Iterator end() const { return Iterator(pointers_.end()); }

 private:
  const std::vector<const T*>& pointers_;
};

// The fantasised response of a pick predicted at `mean`.
double Fantasy(ZqBatchKind batch, double mean, const std::vector<double>& measured);

// The measured training responses of a model.
template <class T, class TT>
std::vector<double> MeasuredResponses(const ZqStandardKrigeImpl<T, TT>& model) {
  std::vector<double> y;
  for (const auto& record : model.GetContainer().GetData()) {
    if (!record.isUnmeasured) y.push_back(record.response);
  }
  return y;
}
template <class T, class TT>
std::vector<double> MeasuredResponses(const ZqLocalKrigeImpl<T, TT>& model) {
  std::vector<double> y;
  for (std::size_t i = 0; i < model.GetNumData(); ++i) {
    if (!model.GetData(i).isUnmeasured) y.push_back(model.GetData(i).response);
  }
  return y;
}

// What the first read of the pool leaves: each member's prediction, and
// the candidates, best first.
template <class T>
struct PoolScan {
  std::vector<double> mean, variance;
  std::vector<char> usable;
  std::vector<double> borderSquares;  // |f_x|^2 of a universal model's members
  std::size_t predicted = 0;
  std::vector<std::pair<std::size_t, T>> candidates;  // (pool index, element)
};

// The candidates kept while reading: the `capacity` largest keys.
template <class T>
class CandidateHeap {
 public:
  explicit CandidateHeap(std::size_t capacity) : capacity_(capacity) {}
  void Offer(double key, std::size_t index, const T& element) {
    if (capacity_ == 0 || key == kNever) return;
    if (heap_.size() == capacity_) {
      const Entry& worst = heap_.front();
      if (!Better(key, index, worst.key, worst.index)) return;
      std::pop_heap(heap_.begin(), heap_.end(), Order);
      heap_.pop_back();
    }
    heap_.push_back({key, index, element});
    std::push_heap(heap_.begin(), heap_.end(), Order);
  }
  // Best first.
  std::vector<std::pair<std::size_t, T>> Take() {
    std::sort(heap_.begin(), heap_.end(), [](const Entry& a, const Entry& b) { return Better(a.key, a.index, b.key, b.index); });
    std::vector<std::pair<std::size_t, T>> out;
    for (Entry& e : heap_) out.emplace_back(e.index, std::move(e.element));
    heap_.clear();
    return out;
  }

 private:
  struct Entry {
    double key;
    std::size_t index;
    T element;
  };
  // A heap whose front is the worst entry.
  static bool Order(const Entry& a, const Entry& b) { return Better(a.key, a.index, b.key, b.index); }
  std::size_t capacity_;
  std::vector<Entry> heap_;
};

// The key a member is kept among the candidates by.
inline double CandidateKey(const ZqSelectionOptions& options, double mean, double variance, double best) {
  const ZqAcquisitionOptions& a = options.acquisition;
  const bool thompson = options.batch == ZqBatchKind::Thompson || a.kind == ZqAcquisitionKind::Thompson;
  if (thompson) return Score(ZqUpperConfidenceBound(mean, Sd(variance), a.kappa, a.minimize));
  return Score(ZqAcquisition(a, mean, Sd(variance), best));
}

inline bool NeedsVariance(const ZqSelectionOptions& options) {
  return options.batch == ZqBatchKind::Thompson || options.acquisition.kind != ZqAcquisitionKind::Greedy;
}

inline bool IsSequential(ZqBatchKind batch) { return batch != ZqBatchKind::Thompson; }
inline bool Conditions(ZqBatchKind batch) { return batch != ZqBatchKind::Top && batch != ZqBatchKind::Thompson; }

// The first read: predictions of every member in blocks (the same blocks
// for any number of threads), the usable ones, and the candidates.
template <class T, class Predict>
bool ScanPool(ZqPoolSource<T>& pool, const ZqSelectionOptions& options, double best, std::size_t capacity,
              const Predict& predictBlock, const std::function<double(const T&)>& borderSquares, PoolScan<T>& scan,
              std::string& error) {
  std::vector<char> excluded;
  for (std::size_t i : options.exclude) {
    if (excluded.size() <= i) excluded.resize(i + 1, 0);
    excluded[i] = 1;
  }
  CandidateHeap<T> heap(capacity);
  const bool read = pool.Read(
      [&](std::size_t first, const std::vector<const T*>& chunk) {
        const std::size_t end = first + chunk.size();
        scan.mean.resize(end, 0.0);
        scan.variance.resize(end, 0.0);
        scan.usable.resize(end, 0);
        if (borderSquares) scan.borderSquares.resize(end, 0.0);
        const std::size_t blocks = (chunk.size() + kPredictBlock - 1) / kPredictBlock;
        krige_detail::ParallelFor(blocks, options.threads, [&](std::size_t b) {
          std::vector<const T*> block;
          std::vector<std::size_t> where;
          for (std::size_t i = b * kPredictBlock; i < std::min(chunk.size(), (b + 1) * kPredictBlock); ++i) {
            if (chunk[i] == nullptr) continue;
            block.push_back(chunk[i]);
            where.push_back(first + i);
          }
          std::vector<double> means, variances;
          std::vector<char> valid;
          predictBlock(block, means, variances, valid);
          for (std::size_t q = 0; q < block.size(); ++q) {
            scan.mean[where[q]] = means[q];
            scan.variance[where[q]] = variances[q];
            scan.usable[where[q]] = valid[q];
            if (borderSquares && valid[q]) scan.borderSquares[where[q]] = borderSquares(*block[q]);
          }
        });
        for (std::size_t i = 0; i < chunk.size(); ++i) {
          const std::size_t index = first + i;
          if (!scan.usable[index]) continue;
          ++scan.predicted;
          if (index < excluded.size() && excluded[index]) {
            scan.usable[index] = 0;
            continue;
          }
          heap.Offer(CandidateKey(options, scan.mean[index], scan.variance[index], best), index, *chunk[i]);
        }
      },
      nullptr, error);
  scan.candidates = heap.Take();
  return read;
}

// The checks that need the first read: something to pick from, enough of
// it, and variances where the acquisition needs them.
template <class T>
std::string CheckScan(const PoolScan<T>& scan, const ZqSelectionOptions& options) {
  if (scan.predicted == 0) return "no member of the pool could be predicted";
  std::size_t usable = 0;
  bool spread = false;
  for (std::size_t i = 0; i < scan.usable.size(); ++i) {
    if (!scan.usable[i]) continue;
    ++usable;
    spread = spread || scan.variance[i] > 0.0;
  }
  if (usable < options.picks) {
    return "only " + std::to_string(usable) + " members of the pool can be picked, not " +
           std::to_string(options.picks);
  }
  if (NeedsVariance(options) && !spread) {
    return "the model gives the pool no variance (every standard deviation is 0), which the acquisition needs";
  }
  return {};
}

inline std::string TooFewLeft(std::size_t picked, std::size_t wanted) {
  return "only " + std::to_string(picked) + " members of the pool can be picked, not " + std::to_string(wanted) +
         " (the others are excluded, on a training element, or duplicates of picks)";
}

// --- Global models -------------------------------------------------------

template <class T>
struct Member {
  std::size_t index = 0;
  T element;
  Eigen::VectorXd rhs;
  double mean = 0.0, variance = 0.0;
  std::vector<double> c, e;
  bool available = true;
  signed char onTraining = -1;  // unknown until asked
};

struct PickData {
  std::size_t index = 0;
  std::size_t member = 0;
  Eigen::VectorXd solution;  // W_p
  std::vector<double> c;     // the pick's own c_i
  double sqrtSchur = 0.0;
  double innovation = 0.0;
  bool conditions = false;
  Eigen::VectorXd multipliers;  // of the grown system, for the bounds
};

template <class T, class TT>
class GlobalSelection {
 public:
  using Model = ZqStandardKrigeImpl<T, TT>;

  GlobalSelection(const Model& model, const ZqSelectionOptions& options, const PoolScan<T>& scan, double best,
                  std::vector<double> measured)
      : model_(model),
        kernel_(*model.GetTrainedKernel()),
        options_(options),
        scan_(scan),
        best_(best),
        measured_(std::move(measured)),
        sill_(kernel_.GetSill()),
        diagonal_(sill_ - kernel_.GetValue(0.0)),
        n_(static_cast<Eigen::Index>(model.GetContainer().GetNumUnique())) {}

  // A member of the pool with its right-hand side; false when the model
  // cannot make one.
  bool MakeMember(std::size_t index, const T& element, Member<T>& member) const {
    member.index = index;
    member.element = element;
    return model_.RightHandSide(member.element, member.rhs);
  }

  std::vector<Member<T>> MakeMembers(std::vector<std::pair<std::size_t, T>>& candidates) const {
    std::vector<Member<T>> members(candidates.size());
    std::vector<char> made(candidates.size(), 0);
    krige_detail::ParallelFor(candidates.size(), options_.threads, [&](std::size_t i) {
      made[i] = MakeMember(candidates[i].first, candidates[i].second, members[i]);
    });
    std::vector<Member<T>> kept;
    for (std::size_t i = 0; i < members.size(); ++i) {
      if (made[i]) kept.push_back(std::move(members[i]));
    }
    return kept;
  }

  // The sequential batch over `members`; false with `error` when it runs
  // out of members.
  bool Run(std::vector<Member<T>>& members, std::vector<ZqSelectionPick>& picks, std::string& error) {
    picks.clear();
    picks_.clear();
    incumbents_.clear();
    for (Member<T>& m : members) Reset(m);
    double incumbent = best_;
    for (std::size_t j = 0; j < options_.picks; ++j) {
      const std::size_t chosen = Choose(members, incumbent);
      if (chosen == members.size()) {
        error = TooFewLeft(j, options_.picks);
        return false;
      }
      Member<T>& p = members[chosen];
      const double acquisition = Score(ZqAcquisition(options_.acquisition, p.mean, Sd(p.variance), incumbent));
      picks.push_back({p.index, p.mean, Sd(p.variance), acquisition});
      incumbents_.push_back(incumbent);
      p.available = false;
      PickData pick = MakePick(p, chosen);
      if (Conditions(options_.batch)) {
        const double y = Fantasy(options_.batch, p.mean, measured_);
        if (std::isfinite(incumbent)) {
          incumbent = options_.acquisition.minimize ? std::min(incumbent, y) : std::max(incumbent, y);
        }
      }
      picks_.push_back(std::move(pick));
      const PickData& last = picks_.back();
      krige_detail::ParallelFor(members.size(), options_.threads, [&](std::size_t i) {
        if (members[i].available) Apply(members[i], last, picks_.size() - 1);
      });
    }
    return true;
  }

  // Whether `member` (not among the candidates) would have been picked at
  // some step of the batch just run: the batch replayed on it alone.
  bool Violates(Member<T>& member, const std::vector<ZqSelectionPick>& picks) const {
    Reset(member);
    for (std::size_t j = 0; j < picks_.size(); ++j) {
      const double a = Score(ZqAcquisition(options_.acquisition, member.mean, Sd(member.variance), incumbents_[j]));
      if (Better(a, member.index, picks[j].acquisition, picks[j].index)) return !OnTraining(member);
      Apply(member, picks_[j], j);
      if (!member.available) return false;
    }
    return false;
  }

  // Whether a member left out of the candidates might beat a pick, from
  // its first prediction alone; true when no bound is known.
  bool MightViolate(std::size_t index, const std::vector<ZqSelectionPick>& picks) const {
    const ZqAcquisitionKind kind = options_.acquisition.kind;
    const bool bounded = options_.batch == ZqBatchKind::Top ||
                         (options_.batch == ZqBatchKind::Believer && kind != ZqAcquisitionKind::ProbabilityOfImprovement);
    if (!bounded) return true;
    const double mean = scan_.mean[index];
    double raise = 0.0;  // the bound on the variance's rise so far
    for (std::size_t j = 0; j < picks.size(); ++j) {
      const double a = Score(ZqAcquisition(options_.acquisition, mean, Sd(scan_.variance[index] + raise), best_));
      // A margin for rounding: a near tie is settled by the replay.
      const double slack = 1e-9 * (1.0 + std::fabs(picks[j].acquisition));
      if (a != kNever && (a > picks[j].acquisition - slack)) return true;
      if (options_.batch != ZqBatchKind::Top) raise += RaiseBound(picks_[j], index);
    }
    return false;
  }

 private:
  void Reset(Member<T>& m) const {
    m.mean = scan_.mean[m.index];
    m.variance = scan_.variance[m.index];
    m.c.clear();
    m.e.clear();
    m.available = true;
    if (m.onTraining == 1) m.available = false;
  }

  bool OnTraining(Member<T>& m) const {
    if (!options_.excludeTraining) return false;
    if (m.onTraining < 0) {
      const auto& container = model_.GetContainer();
      m.onTraining = 0;
      for (std::size_t u = 0; u < container.GetNumUnique() && m.onTraining == 0; ++u) {
        if (container.GetDistance(m.element, container.GetRepresentative(u)) < kSameElement) m.onTraining = 1;
      }
    }
    return m.onTraining == 1;
  }

  // The best available member; members.size() when none is left.
  std::size_t Choose(std::vector<Member<T>>& members, double incumbent) const {
    for (;;) {
      std::size_t best = members.size();
      double bestScore = kNever;
      for (std::size_t i = 0; i < members.size(); ++i) {
        const Member<T>& m = members[i];
        if (!m.available) continue;
        const double a = Score(ZqAcquisition(options_.acquisition, m.mean, Sd(m.variance), incumbent));
        if (best == members.size() || Better(a, m.index, bestScore, members[best].index)) {
          best = i;
          bestScore = a;
        }
      }
      if (best == members.size() || !OnTraining(members[best])) return best;
      members[best].available = false;
    }
  }

  PickData MakePick(const Member<T>& p, std::size_t member) const {
    PickData pick;
    pick.index = p.index;
    pick.member = member;
    if (!Conditions(options_.batch)) return pick;
    Eigen::MatrixXd solution = p.rhs;
    if (!model_.SolveSystem(solution)) return pick;
    pick.solution = solution.col(0);
    pick.c = p.c;
    double schur = diagonal_ - p.rhs.dot(pick.solution);
    for (double c : p.c) schur -= c * c;
    pick.conditions = schur > kNoInformation * std::fabs(sill_) && std::isfinite(schur);
    pick.sqrtSchur = pick.conditions ? std::sqrt(schur) : 0.0;
    pick.innovation = Fantasy(options_.batch, p.mean, measured_) - p.mean;
    // The border's multipliers of the grown system for this pick:
    // mu_j = mu_0 - sum_i k_i(p, p_i) / s_i mu_i.
    pick.multipliers = pick.solution.tail(pick.solution.size() - n_);
    for (std::size_t i = 0; i < picks_.size(); ++i) {
      if (picks_[i].conditions) pick.multipliers -= (p.c[i] / picks_[i].sqrtSchur) * picks_[i].multipliers;
    }
    return pick;
  }

  // Member x after pick j: a duplicate of it drops out; otherwise the
  // rank-one update of its mean and variance.
  void Apply(Member<T>& x, const PickData& pick, std::size_t j) const {
    const double d = model_.GetContainer().GetDistance(x.element, (*members_)[pick.member].element);
    if (d < kSameElement && !options_.allowDuplicates) {
      x.available = false;
      return;
    }
    if (!Conditions(options_.batch)) return;
    if (!pick.conditions) {
      x.c.push_back(0.0);
      x.e.push_back(0.0);
      return;
    }
    const double covariance = d < kSameElement ? diagonal_ : sill_ - kernel_.GetValue(d);
    double k = covariance - x.rhs.dot(pick.solution);
    double b = x.rhs.head(n_).dot(pick.solution.head(n_));
    for (std::size_t i = 0; i < j; ++i) {
      k -= x.c[i] * pick.c[i];
      if (picks_[i].conditions) b += pick.c[i] / picks_[i].sqrtSchur * x.e[i];
    }
    const double e = covariance - b;
    const double gain = k / (pick.sqrtSchur * pick.sqrtSchur);
    x.mean += gain * pick.innovation;
    x.variance -= gain * e;
    x.c.push_back(k / pick.sqrtSchur);
    x.e.push_back(e);
  }

  double RaiseBound(const PickData& pick, std::size_t index) const {
    if (!pick.conditions || pick.multipliers.size() == 0) return 0.0;
    const double border = scan_.borderSquares.empty() ? 1.0 : scan_.borderSquares[index];
    return pick.multipliers.squaredNorm() * border / (4.0 * pick.sqrtSchur * pick.sqrtSchur);
  }

 public:
  // The members the picks refer to; set before Run and Violates.
  void SetMembers(const std::vector<Member<T>>* members) { members_ = members; }

 private:
  const Model& model_;
  const ZqKrigeKernelBase& kernel_;
  const ZqSelectionOptions& options_;
  const PoolScan<T>& scan_;
  double best_;
  std::vector<double> measured_;
  double sill_, diagonal_;
  Eigen::Index n_;
  const std::vector<Member<T>>* members_ = nullptr;
  std::vector<PickData> picks_;
  std::vector<double> incumbents_;
};

// A posterior variance below this share of the sill is rounding noise.
inline constexpr double kNoiseShare = 1e-10;

// The joint posterior of the candidates, as a square root F (F F' = C;
// lower triangular when C factorises) of their covariance C, with the
// model's variances on the diagonal and the posterior correlations off it.
template <class T, class TT>
bool JointFactor(const ZqStandardKrigeImpl<T, TT>& model, const std::vector<Member<T>>& members,
                 const PoolScan<T>& scan, unsigned int threads, Eigen::MatrixXd& factor) {
  const ZqKrigeKernelBase& kernel = *model.GetTrainedKernel();
  const double sill = kernel.GetSill(), diagonal = sill - kernel.GetValue(0.0);
  const auto m = static_cast<Eigen::Index>(members.size());
  if (m == 0) return false;
  Eigen::MatrixXd rhs(members.front().rhs.size(), m);
  for (Eigen::Index i = 0; i < m; ++i) rhs.col(i) = members[static_cast<std::size_t>(i)].rhs;
  Eigen::MatrixXd solutions = rhs;
  if (!model.SolveSystem(solutions)) return false;
  factor.resize(m, m);
  krige_detail::ParallelFor(static_cast<std::size_t>(m), threads, [&](std::size_t i) {
    const auto row = static_cast<Eigen::Index>(i);
    factor(row, row) = sill;
    for (Eigen::Index col = 0; col < row; ++col) {
      const double d = model.GetContainer().GetDistance(members[i].element, members[static_cast<std::size_t>(col)].element);
      factor(row, col) = d < kSameElement ? diagonal : sill - kernel.GetValue(d);
    }
  });
  // minus r_x' S^-1 r_y, a block of rows at a time so that no second
  // m x m matrix is needed.
  constexpr Eigen::Index kRows = 256;
  for (Eigen::Index first = 0; first < m; first += kRows) {
    const Eigen::Index rows = std::min(kRows, m - first);
    factor.block(first, 0, rows, first + rows).noalias() -=
        rhs.middleCols(first, rows).transpose() * solutions.leftCols(first + rows);
  }
  rhs.resize(0, 0);
  solutions.resize(0, 0);
  // The correlations, from covariances that cancel to rounding noise next
  // to a training element: there they can exceed 1 in size, so they are
  // clamped, and a candidate whose posterior variance is lost in the noise
  // is drawn alone (its value is all but known anyway).
  Eigen::VectorXd rootGp(m), sd(m), variances(m);
  for (Eigen::Index i = 0; i < m; ++i) {
    const double gp = factor(i, i);
    variances(i) = std::max(scan.variance[members[static_cast<std::size_t>(i)].index], 0.0);
    sd(i) = std::sqrt(variances(i));
    rootGp(i) = gp > kNoiseShare * sill ? std::sqrt(gp) : 0.0;
  }
  for (Eigen::Index i = 0; i < m; ++i) {
    for (Eigen::Index j = 0; j < i; ++j) {
      const double correlation =
          rootGp(i) > 0.0 && rootGp(j) > 0.0 ? std::clamp(factor(i, j) / (rootGp(i) * rootGp(j)), -1.0, 1.0) : 0.0;
      factor(i, j) = correlation * sd(i) * sd(j);
    }
  }
  // Candidates that are near copies of each other make the matrix
  // semidefinite; a small jitter that grows tenfold until it factorises
  // keeps the draws' correlations while giving the factor a diagonal. The
  // strict upper triangle keeps the matrix for the next try.
  factor.triangularView<Eigen::StrictlyUpper>() = factor.transpose();
  const double mean = std::max(variances.mean(), 1e-300);
  for (double jitter = 1e-12; jitter < 1e-5; jitter *= 10.0) {
    factor.diagonal() = variances.array() + jitter * mean;
    Eigen::LLT<Eigen::Ref<Eigen::MatrixXd>, Eigen::Lower> llt(factor);
    if (llt.info() == Eigen::Success) {
      factor.triangularView<Eigen::StrictlyUpper>().setZero();
      return true;
    }
    factor.triangularView<Eigen::StrictlyLower>() = factor.transpose();
  }
  // A kernel that is no valid covariance on this distance (a power law on
  // Tanimoto distances can be one) leaves the matrix indefinite: the draws
  // then come from its nearest semidefinite matrix, the negative
  // eigenvalues set to 0, through the square root V sqrt(L).
  factor.diagonal() = variances;
  Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> eigen(factor);
  if (eigen.info() != Eigen::Success) return false;
  factor = eigen.eigenvectors() * eigen.eigenvalues().cwiseMax(0.0).cwiseSqrt().asDiagonal();
  return factor.allFinite();
}

template <class T, class TT>
ZqSelection Thompson(const ZqStandardKrigeImpl<T, TT>& model, std::vector<Member<T>>& members,
                     const PoolScan<T>& scan, const ZqSelectionOptions& options) {
  ZqSelection selection;
  Eigen::MatrixXd factor;
  if (!JointFactor(model, members, scan, options.threads, factor)) {
    selection.error = "the joint posterior of the candidates cannot be factorised";
    return selection;
  }
  const auto m = static_cast<Eigen::Index>(members.size());
  Eigen::VectorXd mean(m);
  for (Eigen::Index i = 0; i < m; ++i) mean(i) = scan.mean[members[static_cast<std::size_t>(i)].index];
  std::mt19937_64 engine(options.seed);
  std::normal_distribution<double> normal;
  const double sign = options.acquisition.minimize ? -1.0 : 1.0;
  auto draw = [&] {
    Eigen::VectorXd z(m);
    for (Eigen::Index i = 0; i < m; ++i) z(i) = normal(engine);
    return Eigen::VectorXd(sign * (mean + factor * z));
  };
  std::vector<char> available(members.size(), 1);
  auto onTraining = [&](const Member<T>& member) {
    if (!options.excludeTraining) return false;
    const auto& container = model.GetContainer();
    for (std::size_t u = 0; u < container.GetNumUnique(); ++u) {
      if (container.GetDistance(member.element, container.GetRepresentative(u)) < kSameElement) return true;
    }
    return false;
  };
  Eigen::VectorXd values;
  for (std::size_t j = 0; j < options.picks; ++j) {
    if (j == 0 || options.batch == ZqBatchKind::Thompson) values = draw();
    std::size_t best = members.size();
    for (;;) {
      best = members.size();
      for (std::size_t i = 0; i < members.size(); ++i) {
        if (!available[i]) continue;
        const double v = values(static_cast<Eigen::Index>(i));
        if (best == members.size() || Better(v, members[i].index, values(static_cast<Eigen::Index>(best)), members[best].index)) best = i;
      }
      if (best == members.size() || !onTraining(members[best])) break;
      available[best] = 0;
    }
    if (best == members.size()) {
      selection.error = TooFewLeft(j, options.picks);
      selection.picks.clear();
      return selection;
    }
    const Member<T>& p = members[best];
    const double variance = scan.variance[p.index];
    selection.picks.push_back({p.index, scan.mean[p.index], Sd(variance), values(static_cast<Eigen::Index>(best))});
    available[best] = 0;
    if (options.allowDuplicates) continue;
    krige_detail::ParallelFor(members.size(), options.threads, [&](std::size_t i) {
      if (available[i] && model.GetContainer().GetDistance(members[i].element, p.element) < kSameElement) available[i] = 0;
    });
  }
  return selection;
}

template <class T, class TT>
ZqSelection SelectGlobal(const ZqStandardKrigeImpl<T, TT>& model, ZqPoolSource<T>& pool,
                         const ZqSelectionOptions& options) {
  ZqSelection selection;
  const std::vector<double> measured = MeasuredResponses(model);
  const double best = ZqBestResponse(measured, options.acquisition.minimize);
  const ZqPropertyListFxn<T>* drift = model.GetContainer().GetPropertyFxn();
  std::function<double(const T&)> borderSquares;
  if (drift && drift->GetSize() > 0) {
    borderSquares = [drift](const T& x) {
      double sum = 1.0;
      for (std::size_t k = 0; k < drift->GetSize(); ++k) sum += drift->GetProperty(x, k) * drift->GetProperty(x, k);
      return sum;
    };
  }
  const std::size_t capacity =
      IsSequential(options.batch) ? std::max(options.candidates, 2 * options.picks) : options.candidates;
  PoolScan<T> scan;
  auto predict = [&](const std::vector<const T*>& block, std::vector<double>& means, std::vector<double>& variances,
                     std::vector<char>& valid) {
    model.PredictManyTrained(DereferencedRange<T>(block), means, variances);
    valid.resize(block.size());
    for (std::size_t q = 0; q < block.size(); ++q) {
      valid[q] = means[q] < 1e300 && variances[q] < 1e300 && std::isfinite(means[q]) && std::isfinite(variances[q]);
    }
  };
  if (!ScanPool(pool, options, best, capacity, predict, borderSquares, scan, selection.error)) return selection;
  selection.poolSize = scan.mean.size();
  selection.predicted = scan.predicted;
  if (!(selection.error = CheckScan(scan, options)).empty()) return selection;

  GlobalSelection<T, TT> global(model, options, scan, best, measured);
  std::vector<Member<T>> members = global.MakeMembers(scan.candidates);
  scan.candidates.clear();
  if (!IsSequential(options.batch) || options.acquisition.kind == ZqAcquisitionKind::Thompson) {
    ZqSelection drawn = Thompson(model, members, scan, options);
    drawn.poolSize = selection.poolSize;
    drawn.predicted = selection.predicted;
    return drawn;
  }
  std::vector<char> isMember(scan.mean.size(), 0);
  for (const Member<T>& m : members) isMember[m.index] = 1;
  for (;;) {
    global.SetMembers(&members);
    if (!global.Run(members, selection.picks, selection.error)) {
      // Out of candidates: only more of the pool can say whether more can
      // be picked.
      if (std::count(isMember.begin(), isMember.end(), 1) ==
          std::count(scan.usable.begin(), scan.usable.end(), 1)) {
        selection.picks.clear();
        return selection;
      }
      selection.error.clear();
    }
    // The members left out that might beat a pick, replayed exactly.
    std::vector<char> wanted(scan.mean.size(), 0);
    bool any = false;
    const bool complete = selection.picks.size() == options.picks;
    if (complete) {
      for (std::size_t i = 0; i < scan.mean.size(); ++i) {
        if (!scan.usable[i] || isMember[i]) continue;
        wanted[i] = global.MightViolate(i, selection.picks);
        any = any || wanted[i];
      }
    } else {
      // The batch ran out of candidates: the next best of the others join.
      std::vector<std::size_t> others;
      for (std::size_t i = 0; i < scan.mean.size(); ++i) {
        if (scan.usable[i] && !isMember[i]) others.push_back(i);
      }
      auto key = [&](std::size_t i) { return CandidateKey(options, scan.mean[i], scan.variance[i], best); };
      const std::size_t take = std::min(others.size(), capacity);
      std::partial_sort(others.begin(), others.begin() + static_cast<std::ptrdiff_t>(take), others.end(),
                        [&](std::size_t a, std::size_t b) { return Better(key(a), a, key(b), b); });
      for (std::size_t k = 0; k < take; ++k) wanted[others[k]] = 1;
      any = take > 0;
    }
    if (!any) return selection;
    std::vector<std::pair<std::size_t, T>> joining;
    std::mutex joiningMutex;
    const bool read = pool.Read(
        [&](std::size_t first, const std::vector<const T*>& chunk) {
          krige_detail::ParallelFor(chunk.size(), options.threads, [&](std::size_t i) {
            const std::size_t index = first + i;
            if (index >= wanted.size() || !wanted[index] || chunk[i] == nullptr) return;
            Member<T> member;
            if (!global.MakeMember(index, *chunk[i], member)) return;
            if (complete && !global.Violates(member, selection.picks)) return;
            std::lock_guard<std::mutex> lock(joiningMutex);
            joining.emplace_back(index, *chunk[i]);
          });
        },
        &wanted, selection.error);
    if (!read) {
      selection.picks.clear();
      return selection;
    }
    if (joining.empty()) return selection;
    // In pool order, so that the members' order never depends on threads.
    std::sort(joining.begin(), joining.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (Member<T>& m : global.MakeMembers(joining)) {
      isMember[m.index] = 1;
      members.push_back(std::move(m));
    }
  }
}

// --- Local models ---------------------------------------------------------

template <class T, class TT>
ZqSelection SelectLocal(const ZqLocalKrigeImpl<T, TT>& model, ZqPoolSource<T>& pool,
                        const ZqSelectionOptions& options) {
  ZqSelection selection;
  if (!IsSequential(options.batch) || options.acquisition.kind == ZqAcquisitionKind::Thompson) {
    selection.error = "Thompson sampling needs a global model: a local model has no joint posterior over the pool";
    return selection;
  }
  const std::vector<double> measured = MeasuredResponses(model);
  const double best = ZqBestResponse(measured, options.acquisition.minimize);
  // Every member stays in memory: each pick may change the prediction of
  // any member whose neighbourhood it joins.
  std::vector<std::size_t> indices;
  std::vector<T> elements;
  std::vector<char> excluded;
  for (std::size_t i : options.exclude) {
    if (excluded.size() <= i) excluded.resize(i + 1, 0);
    excluded[i] = 1;
  }
  std::size_t poolSize = 0;
  if (!pool.Read(
          [&](std::size_t first, const std::vector<const T*>& chunk) {
            poolSize = first + chunk.size();
            for (std::size_t i = 0; i < chunk.size(); ++i) {
              if (chunk[i] == nullptr) continue;
              indices.push_back(first + i);
              elements.push_back(*chunk[i]);
            }
          },
          nullptr, selection.error)) {
    return selection;
  }
  const std::size_t n = elements.size();
  PoolScan<T> scan;
  scan.mean.assign(poolSize, 0.0);
  scan.variance.assign(poolSize, 0.0);
  scan.usable.assign(poolSize, 0);
  std::vector<double> radius(n, 0.0);
  std::unique_ptr<ZqKrigeBase<T>> work(model.CreateKrigeCopy());
  const ZqKrigeTrainedKernels kernels = model.GetTrainedKernels();
  const std::size_t trainingRecords = model.GetNumData();
  const double failed = model.GetErrorValue();
  auto predict = [&](std::size_t i) {
    const ZqKrigeResult result = std::as_const(*work).GetKrigeResult(elements[i]);
    const double m = ZqCalculateResponse(result, failed), v = ZqCalculateVariance(result, failed);
    const bool valid = result.Valid() && m < 1e300 && v < 1e300 && std::isfinite(m) && std::isfinite(v);
    scan.mean[indices[i]] = m;
    scan.variance[indices[i]] = v;
    scan.usable[indices[i]] = valid && !(indices[i] < excluded.size() && excluded[indices[i]]);
    // The farthest neighbour; a pick nearer joins the neighbourhood, and
    // while the records are fewer than the neighbours every pick does.
    double farthest = std::numeric_limits<double>::infinity();
    if (valid && static_cast<const ZqLocalKrigeImpl<T, TT>&>(*work).GetNumData() >= model.GetNumLocal()) {
      farthest = 0.0;
      for (unsigned int e = 0; e < result.GetNumElements(); ++e) farthest = std::max(farthest, result.GetDistance(e));
    }
    radius[i] = farthest;
  };
  krige_detail::ParallelFor(n, options.threads, predict);
  selection.poolSize = poolSize;
  for (std::size_t i = 0; i < n; ++i) {
    if (scan.mean[indices[i]] < 1e300 && scan.variance[indices[i]] < 1e300) ++scan.predicted;
  }
  selection.predicted = scan.predicted;
  if (!(selection.error = CheckScan(scan, options)).empty()) return selection;

  const ZqKrigeDistanceFxn<T>& distance = model.GetDistanceFxn();
  std::vector<char> available(n, 0);
  for (std::size_t i = 0; i < n; ++i) available[i] = scan.usable[indices[i]];
  auto onTraining = [&](std::size_t i) {
    if (!options.excludeTraining) return false;
    for (std::size_t r = 0; r < trainingRecords; ++r) {
      if (distance(elements[i], model.GetDataElement(r)) < kSameElement) return true;
    }
    return false;
  };
  double incumbent = best;
  for (std::size_t j = 0; j < options.picks; ++j) {
    std::size_t chosen = n;
    for (;;) {
      chosen = n;
      double chosenScore = kNever;
      for (std::size_t i = 0; i < n; ++i) {
        if (!available[i]) continue;
        const double a = Score(ZqAcquisition(options.acquisition, scan.mean[indices[i]],
                                             Sd(scan.variance[indices[i]]), incumbent));
        if (chosen == n || Better(a, indices[i], chosenScore, indices[chosen])) {
          chosen = i;
          chosenScore = a;
        }
      }
      if (chosen == n || !onTraining(chosen)) break;
      available[chosen] = 0;
    }
    if (chosen == n) {
      selection.error = TooFewLeft(j, options.picks);
      selection.picks.clear();
      return selection;
    }
    const std::size_t p = indices[chosen];
    selection.picks.push_back({p, scan.mean[p], Sd(scan.variance[p]),
                               Score(ZqAcquisition(options.acquisition, scan.mean[p], Sd(scan.variance[p]), incumbent))});
    available[chosen] = 0;
    const bool conditions = Conditions(options.batch);
    if (conditions) {
      const double y = Fantasy(options.batch, scan.mean[p], measured);
      if (std::isfinite(incumbent)) {
        incumbent = options.acquisition.minimize ? std::min(incumbent, y) : std::max(incumbent, y);
      }
      if (!work->AddTraining(elements[chosen], y) || !work->TrainWithKernels(kernels)) {
        selection.error = "the local model cannot take in the fantasy of a pick";
        selection.picks.clear();
        return selection;
      }
    }
    const T& picked = elements[chosen];
    krige_detail::ParallelFor(n, options.threads, [&](std::size_t i) {
      if (!available[i]) return;
      const double d = distance(elements[i], picked);
      if (d < kSameElement && !options.allowDuplicates) {
        available[i] = 0;
        return;
      }
      if (conditions && d <= radius[i]) {
        predict(i);
        available[i] = scan.usable[indices[i]];
      }
    });
  }
  return selection;
}

}  // namespace selection_detail

template <class T>
ZqSelection ZqSelectBatch(const ZqKrigeBase<T>& model, ZqPoolSource<T>& pool, const ZqSelectionOptions& options) {
  using Storage = ZqKrigeDefaultElementStorage<T>;
  ZqSelection selection;
  if (!(selection.error = ZqCheckSelectionOptions(options)).empty()) return selection;
  if (const auto* global = dynamic_cast<const ZqStandardKrigeImpl<T, Storage>*>(&model)) {
    if (!global->IsTrained()) {
      selection.error = "the model is not trained";
      return selection;
    }
    return selection_detail::SelectGlobal(*global, pool, options);
  }
  if (const auto* local = dynamic_cast<const ZqLocalKrigeImpl<T, Storage>*>(&model)) {
    if (!local->IsTrained()) {
      selection.error = "the model is not trained";
      return selection;
    }
    return selection_detail::SelectLocal(*local, pool, options);
  }
  selection.error = "batch selection needs a simple, ordinary, universal or local kriging model";
  return selection;
}

}  // namespace Varimo
