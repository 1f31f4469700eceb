// Choosing the next elements to measure from a pool, with a trained model:
// the top picks by an acquisition function (acquisition.h), or a batch
// whose picks account for each other.
//
//   Varimo::ZqSelectionOptions options;
//   options.picks = 20;
//   options.batch = Varimo::ZqBatchKind::Believer;   // kriging believer with EI
//   Varimo::ZqPoolInMemory<Varimo::ZqVectorElement> pool(rows);
//   Varimo::ZqSelection chosen = Varimo::ZqSelectBatch(*model, pool, options);
//   if (!chosen.Ok()) std::cerr << chosen.error;
//
// The batches:
// - Top: the `picks` members of largest acquisition, correlations ignored.
// - Believer and the constant liars: one pick at a time, each conditioning
//   the model's predictions of the pool on a fantasised measurement of the
//   pick (the believer its predicted mean; a liar the smallest, the mean or
//   the largest training response), as if the model had been trained with
//   it, before the next pick is made; the best response so far takes the
//   fantasies in. A simple model keeps the mean it was trained with: a
//   fantasy is no measurement that should move it (a model refitted with
//   the fantasies would estimate a slightly different mean, except for the
//   liar at the mean response). A global model conditions by rank-one
//   updates of the pool's posterior through its own factorisation (no new
//   factorisation, no refit of the kernel): a pick costs
//   O(members x (N + picks)). A local model takes the pick into the
//   neighbourhood of exactly the members whose neighbours it joins, and
//   predicts only those again.
// - Thompson: each pick is the best member of its own joint draw from the
//   posterior over the `candidates` members of largest upper confidence
//   bound (kappa), with the model's variances and the posterior
//   correlations; a global model only. With batch Top and the Thompson
//   acquisition, the picks are the best members of one draw.
//
// A global model's sequential batches start from the `candidates` members
// of largest acquisition and take in every other member that could have
// been picked (from bounds on how far its acquisition can move, else by
// replaying the batch on it in a further read of the pool), so that the
// picks are those of the whole pool while only the candidates are kept in
// memory. A local model keeps the whole pool in memory.
//
// Picks never repeat, never include the members in `exclude` nor, with
// `excludeTraining`, members equal to a training element (distance 0); two
// members at distance 0 of each other are never both picked unless
// `allowDuplicates`. Ties go to the member read first. The picks are the
// same for any number of threads, and for Thompson the same for one seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "varimo/krige/acquisition.h"
#include "varimo/krige/krige_base.h"

namespace Varimo {

enum class ZqBatchKind { Top, Believer, LiarMin, LiarMean, LiarMax, Thompson };

// "top", "believer", "liar-min", "liar-mean", "liar-max", "thompson";
// nothing for another name.
std::optional<ZqBatchKind> ZqBatchKindNamed(const std::string& name);
const char* ZqBatchKindName(ZqBatchKind kind);

struct ZqSelectionOptions {
  // The acquisition of Top, Believer and the liars; Thompson batches draw
  // instead (its kappa ranks their candidates).
  ZqAcquisitionOptions acquisition;
  ZqBatchKind batch = ZqBatchKind::Top;
  std::size_t picks = 1;
  // Thompson's draws run over this many members; the sequential batches of
  // a global model keep at least this many (and twice the picks) in memory.
  std::size_t candidates = 2000;
  std::uint64_t seed = 1;
  unsigned int threads = 1;
  bool excludeTraining = false;
  bool allowDuplicates = false;
  std::vector<std::size_t> exclude;  // pool indices never to pick
};

// Why the options cannot be used (picks 0, a Thompson acquisition in a
// believer batch, ...); empty when they can.
std::string ZqCheckSelectionOptions(const ZqSelectionOptions& options);

struct ZqSelectionPick {
  std::size_t index = 0;  // in the pool, from 0
  // The member's prediction and standard deviation when it was picked
  // (conditioned on the fantasies of the earlier picks), and its
  // acquisition then: for Thompson the value drawn (negated when
  // minimizing, so that larger is better).
  double prediction = 0.0;
  double sd = 0.0;
  double acquisition = 0.0;
};

struct ZqSelection {
  std::vector<ZqSelectionPick> picks;  // in pick order
  // Why there are no picks ("only 3 members of the pool can be picked, not
  // 5"); empty on success.
  std::string error;
  std::size_t poolSize = 0;   // members read
  std::size_t predicted = 0;  // members with a valid prediction
  bool Ok() const { return error.empty(); }
};

// A pool of elements that can be read from its start as often as a
// selection needs, in order and a chunk at a time, so that a pool far
// larger than memory can be screened.
template <class T>
class ZqPoolSource {
 public:
  using Visit = std::function<void(std::size_t first, const std::vector<const T*>& chunk)>;
  virtual ~ZqPoolSource() = default;
  // Calls `visit` for consecutive chunks: `first` is the pool index of
  // chunk[0]; a member that cannot be predicted (a record without a
  // molecule) is null. When `wanted` is given, the members it marks 0 may
  // come as null too, which a source can use to skip their work. The
  // chunks must not depend on anything but the pool. False, with `error`
  // set, when the pool cannot be read.
  virtual bool Read(const Visit& visit, const std::vector<char>* wanted, std::string& error) = 0;
};

// A pool held in memory; the elements must outlive it.
template <class T>
class ZqPoolInMemory final : public ZqPoolSource<T> {
 public:
  explicit ZqPoolInMemory(const std::vector<T>& elements) : elements_(elements) {}
  bool Read(const typename ZqPoolSource<T>::Visit& visit, const std::vector<char>* wanted, std::string& error) override;

 private:
  const std::vector<T>& elements_;
};

// The picks of a trained model from the pool. `model` is a global simple,
// ordinary or universal model, or a local one, over the default storage
// (as ZqCreateKrige makes them); its measured training responses give the
// best response so far and the liars' values. Failures (an untrained or unsupported model, no member that can
// be predicted, fewer members left than picks, a model whose predictions
// of the pool have no variance where the acquisition needs one) come back
// in `error`.
template <class T>
ZqSelection ZqSelectBatch(const ZqKrigeBase<T>& model, ZqPoolSource<T>& pool, const ZqSelectionOptions& options);

}  // namespace Varimo
