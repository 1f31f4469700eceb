// The experimental variogram of a training set: pairs of (distance, response
// difference) grouped into bins of mean distance and mean semivariance,
// fine at short distances, where the fit of a kernel matters most.
//
//   std::vector<std::pair<double, double>> pairs = ...;  // (d, y_i - y_j)
//   Varimo::ZqVariogramImpl binned;
//   if (Varimo::ZqSetupVariogram(binned, pairs, true)) ...
//
// Binning: pairs sorted by distance; 50 or more pairs at distance zero (up
// to 1e-30) make a bin of their own, fewer join the first ordinary bin. Of
// the N other pairs, the first bin takes min(100, N / 15), each next bin
// twice as many up to N / 5, and once two bins stand, a tail too short for
// two more bins goes whole into the last one (9 pairs make bins of 1, 1, 2,
// 2 and 3).
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "varimo/krige/full_variogram.h"

namespace Varimo {

class ZqVariogramBase {
 public:
  virtual ~ZqVariogramBase() = default;
  virtual unsigned int GetNumBins() const = 0;
  virtual double GetDistance(unsigned int bin) const = 0;
  virtual double GetSemivariance(unsigned int bin) const = 0;
  virtual ZqVariogramBase* CreateCopy() const = 0;
};

class ZqVariogramImpl final : public ZqVariogramBase {
 public:
  ZqVariogramImpl() = default;
  // The bin means of a full variogram: mean distance and mean half squared
  // difference of each bin.
  explicit ZqVariogramImpl(const ZqFullVariogram& full) : ZqVariogramImpl(full.GetVariogram()) {}
  explicit ZqVariogramImpl(const ZqFullVariogramBase& full);

  unsigned int GetNumBins() const override { return static_cast<unsigned int>(distances_.size()); }
  double GetDistance(unsigned int bin) const override { return distances_[bin]; }
  double GetSemivariance(unsigned int bin) const override { return semivariances_[bin]; }
  ZqVariogramBase* CreateCopy() const override { return new ZqVariogramImpl(*this); }

  void Clear() {
    distances_.clear();
    semivariances_.clear();
  }
  void Push(double distance, double semivariance) {
    distances_.push_back(distance);
    semivariances_.push_back(semivariance);
  }

 private:
  std::vector<double> distances_;
  std::vector<double> semivariances_;
};

// The value handle; copies are deep.
class ZqVariogram {
 public:
  ZqVariogram() : impl_(std::make_unique<ZqVariogramImpl>()) {}
  // Takes ownership.
  explicit ZqVariogram(ZqVariogramBase* variogram) : impl_(variogram) {}
  ZqVariogram(const ZqVariogram& other) : impl_(other.impl_->CreateCopy()) {}
  ZqVariogram& operator=(const ZqVariogram& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  unsigned int GetNumBins() const { return impl_->GetNumBins(); }
  double GetDistance(unsigned int bin) const { return impl_->GetDistance(bin); }
  double GetSemivariance(unsigned int bin) const { return impl_->GetSemivariance(bin); }
  const ZqVariogramBase& GetVariogram() const { return *impl_; }

 private:
  std::unique_ptr<ZqVariogramBase> impl_;
};

// Bins (distance, response difference) pairs into `variogram`, which is
// cleared first; with `sort`, the pairs are first sorted in place by
// distance, equal distances by squared difference and then by difference:
// the same pairs in any order, or with their differences' signs flipped,
// give the same bins. Pairs with a NaN distance are removed from `pairs`
// first. False
// for no pairs, and when every pair is at distance zero (then
// the plain variogram keeps its zero bin if there were 50 pairs or more; the
// full variogram stays empty).
bool ZqSetupVariogram(ZqVariogramImpl& variogram, std::vector<std::pair<double, double>>& pairs, bool sort);
bool ZqSetupVariogram(ZqFullVariogramImpl& variogram, std::vector<std::pair<double, double>>& pairs, bool sort);

}  // namespace Varimo
