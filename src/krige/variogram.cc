#include "varimo/krige/variogram.h"

#include <boost/sort/spreadsort/float_sort.hpp>
#include <boost/sort/spreadsort/integer_sort.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <thread>

#include "varimo/krige/parallel_for.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {

namespace {

using Pairs = std::vector<std::pair<double, double>>;
using Range = std::pair<std::size_t, std::size_t>;  // [first, last) of the sorted pairs

// Pairs at or below this distance are at distance zero.
constexpr double kZeroDistance = 1e-30;
// Zero-distance pairs make a bin of their own from this many on.
constexpr std::size_t kMinZeroBinPairs = 50;

enum class Binned { NoPairs, AllAtZero, Yes };

using PairIter = Pairs::iterator;

struct DistanceLess {
  bool operator()(const std::pair<double, double>& a, const std::pair<double, double>& b) const {
    return a.first < b.first;
  }
};

// Orders [first, last) by distance; BreakTies below then orders equal
// distances. A training set of N records gives N(N-1)/2 pairs, and at that
// size a radix sort on the bits of the distance runs in about half the time
// of a comparison sort. Distances without a sign bit order as their bit
// patterns do, as integers; the radix sort is used for those only (a real
// distance has no sign bit), since over the whole range of doubles the
// spread of the patterns overflows the sort's integer arithmetic.
void SortByDistance(PairIter first, PairIter last) {
  const bool unsignedDistances =
      std::none_of(first, last, [](const auto& pair) { return std::signbit(pair.first); });
  if (!unsignedDistances) {
    std::sort(first, last, DistanceLess());
    return;
  }
  struct DistanceBits {
    std::int64_t operator()(const std::pair<double, double>& pair, unsigned shift) const {
      return boost::sort::spreadsort::float_mem_cast<double, std::int64_t>(pair.first) >> shift;
    }
  };
  boost::sort::spreadsort::integer_sort(first, last, DistanceBits(), DistanceLess());
}

// Orders each run of equal distances in [first, last) by the squared
// difference, then by the difference itself (NaN last), so that the order
// is total. Equal distances are common (Tanimoto distances take few values
// on small molecules), and a bin boundary inside such a run would otherwise
// take whichever pairs the sort left there: a global model (pairs i < j) and
// a local one over the same records (pairs later, earlier: the differences
// change sign) would bin different pairs and could fit different kernels.
void BreakTies(PairIter first, PairIter last) {
  struct TieLess {
    bool operator()(const std::pair<double, double>& a, const std::pair<double, double>& b) const {
      const bool aNaN = std::isnan(a.second), bNaN = std::isnan(b.second);
      if (aNaN || bNaN) return !aNaN && bNaN;
      const double aSquare = a.second * a.second, bSquare = b.second * b.second;
      if (aSquare != bSquare) return aSquare < bSquare;
      return a.second < b.second;
    }
  };
  for (auto run = first; run != last;) {
    const double distance = run->first;
    const auto end = std::find_if(run + 1, last, [distance](const auto& pair) { return pair.first != distance; });
    if (end - run > 1) std::sort(run, end, TieLess());
    run = end;
  }
}

// Below this many pairs a part is sorted on one thread.
constexpr std::ptrdiff_t kMinSharedSort = std::ptrdiff_t{1} << 17;

// Sorts [first, last) into the total order of SortByDistance and BreakTies
// on up to `threads` threads. The pairs are split at a distance taken from
// an even sample of them, those below it before the rest, and the two parts
// are sorted side by side. A run of equal distances never straddles the
// split, and since the order is total, every split gives the same result.
void SortPairs(PairIter first, PairIter last, unsigned int threads) {
  const std::ptrdiff_t size = last - first;
  if (threads > 1 && size >= kMinSharedSort) {
    constexpr std::ptrdiff_t kSamples = 1023;
    std::vector<double> sample;
    sample.reserve(kSamples);
    for (std::ptrdiff_t k = 0; k < kSamples; ++k) sample.push_back(first[(2 * k + 1) * size / (2 * kSamples)].first);
    std::nth_element(sample.begin(), sample.begin() + kSamples / 2, sample.end());
    const double split = sample[kSamples / 2];
    const PairIter middle =
        std::partition(first, last, [split](const auto& pair) { return pair.first < split; });
    if (middle != first && middle != last) {
      const unsigned int below = threads / 2;
      std::thread worker;
      try {
        worker = std::thread([=] { SortPairs(first, middle, below); });
      } catch (const std::system_error&) {
        SortPairs(first, middle, 1);
      }
      SortPairs(middle, last, threads - below);
      if (worker.joinable()) worker.join();
      return;
    }
  }
  SortByDistance(first, last);
  BreakTies(first, last);
}

// The bins as ranges of the (sorted) pairs; a zero-distance bin, when there
// is one, comes first. For AllAtZero the one range is the zero bin.
Binned BinRanges(Pairs& pairs, bool sort, std::vector<Range>& bins) {
  bins.clear();
  // A pair without a distance belongs to no bin, and NaN would break the
  // ordering of the sort.
  std::erase_if(pairs, [](const auto& pair) { return std::isnan(pair.first); });
  if (pairs.empty()) return Binned::NoPairs;
  if (sort) SortPairs(pairs.begin(), pairs.end(), krige_detail::SharedWorkThreads(pairs.size()));
  const std::size_t total = pairs.size();
  std::size_t start = 0;
  while (start < total && pairs[start].first <= kZeroDistance) ++start;
  if (start >= kMinZeroBinPairs) {
    bins.emplace_back(0, start);
    if (start == total) return Binned::AllAtZero;
  } else {
    start = 0;
  }

  // Sizes are kept as doubles and rounded to a whole number of pairs when
  // used: the first bin a third of the limit (at most 100), each next one
  // twice the last, up to the limit of a fifth of the pairs.
  const double limit = static_cast<double>(total - start) / 5.0;
  double size = std::min(100.0, limit / 3.0);
  auto inUse = [](double s) { return std::max<std::size_t>(1, static_cast<std::size_t>(s + 0.5)); };
  std::size_t use = inUse(size);
  std::size_t first = start;
  for (std::size_t i = start; i < total; ++i) {
    if (i + 1 - first < use) continue;
    bins.emplace_back(first, i + 1);
    first = i + 1;
    size = std::min(limit, 2.0 * size);
    use = inUse(size);
    // A tail too short for two more bins goes whole into the next one
    // rather than leaving a thin bin at the far end. The pairs still to come
    // start after pair i, which has just closed a bin.
    const std::size_t remaining = total - (i + 1);
    if (bins.size() >= 2 && 2 * use > remaining) use = remaining;
  }
  if (first < total) bins.emplace_back(first, total);
  return Binned::Yes;
}

double HalfSquare(double difference) { return 0.5 * difference * difference; }

}  // namespace

ZqVariogramImpl::ZqVariogramImpl(const ZqFullVariogramBase& full) {
  for (unsigned int bin = 0; bin < full.GetNumBins(); ++bin) {
    const unsigned int count = full.GetNumBinElements(bin);
    double distance = 0.0, semivariance = 0.0;
    for (unsigned int e = 0; e < count; ++e) {
      distance += full.GetDistance(bin, e);
      semivariance += full.GetHalfSquaredDifference(bin, e);
    }
    Push(distance / count, semivariance / count);
  }
}

void ZqFullVariogramImpl::Clear() {
  halfSquaredDifferences_.clear();
  distances_.clear();
}

void ZqFullVariogramImpl::Push(const std::vector<double>& distances,
                               const std::vector<double>& halfSquaredDifferences) {
  if (distances.size() != halfSquaredDifferences.size()) {
    Corvane::ZqThrow.Warning("ZqFullVariogramImpl::Push : Vectors differ in size");
    return;
  }
  distances_.push_back(distances);
  halfSquaredDifferences_.push_back(halfSquaredDifferences);
}

bool ZqSetupVariogram(ZqVariogramImpl& variogram, Pairs& pairs, bool sort) {
  variogram.Clear();
  std::vector<Range> bins;
  const Binned binned = BinRanges(pairs, sort, bins);
  for (const auto& [first, last] : bins) {
    double distance = 0.0, semivariance = 0.0;
    for (std::size_t i = first; i < last; ++i) {
      distance += pairs[i].first;
      semivariance += HalfSquare(pairs[i].second);
    }
    const double count = static_cast<double>(last - first);
    variogram.Push(distance / count, semivariance / count);
  }
  return binned == Binned::Yes;
}

bool ZqSetupVariogram(ZqFullVariogramImpl& variogram, Pairs& pairs, bool sort) {
  variogram.Clear();
  std::vector<Range> bins;
  // A zero-distance bin is kept only when other pairs follow it.
  if (BinRanges(pairs, sort, bins) != Binned::Yes) return false;
  for (const auto& [first, last] : bins) {
    std::vector<double> distances, halfSquares;
    distances.reserve(last - first);
    halfSquares.reserve(last - first);
    for (std::size_t i = first; i < last; ++i) {
      distances.push_back(pairs[i].first);
      halfSquares.push_back(HalfSquare(pairs[i].second));
    }
    variogram.Push(distances, halfSquares);
  }
  return true;
}

}  // namespace Varimo
