// The full variogram: every (distance, half squared response difference)
// pair of a training set kept, grouped into the bins of the experimental
// variogram. Accessors do not check their indices.
#pragma once

#include <memory>
#include <vector>

namespace Varimo {

class ZqFullVariogramBase {
 public:
  virtual ~ZqFullVariogramBase() = default;
  virtual unsigned int GetNumBins() const = 0;
  virtual unsigned int GetNumBinElements(unsigned int bin) const = 0;
  virtual double GetHalfSquaredDifference(unsigned int bin, unsigned int element) const = 0;
  virtual double GetDistance(unsigned int bin, unsigned int element) const = 0;
  virtual ZqFullVariogramBase* CreateCopy() const = 0;
};

class ZqFullVariogramImpl final : public ZqFullVariogramBase {
 public:
  unsigned int GetNumBins() const override { return static_cast<unsigned int>(distances_.size()); }
  unsigned int GetNumBinElements(unsigned int bin) const override {
    return static_cast<unsigned int>(distances_[bin].size());
  }
  double GetHalfSquaredDifference(unsigned int bin, unsigned int element) const override {
    return halfSquaredDifferences_[bin][element];
  }
  double GetDistance(unsigned int bin, unsigned int element) const override { return distances_[bin][element]; }
  ZqFullVariogramBase* CreateCopy() const override { return new ZqFullVariogramImpl(*this); }

  void Clear();
  // Appends one bin. Vectors of different lengths warn
  // "ZqFullVariogramImpl::Push : Vectors differ in size" and change nothing.
  void Push(const std::vector<double>& distances, const std::vector<double>& halfSquaredDifferences);

 private:
  std::vector<std::vector<double>> halfSquaredDifferences_;
  std::vector<std::vector<double>> distances_;
};

// The value handle; copies are deep.
class ZqFullVariogram {
 public:
  ZqFullVariogram() : impl_(std::make_unique<ZqFullVariogramImpl>()) {}
  // Takes ownership.
  explicit ZqFullVariogram(ZqFullVariogramBase* variogram) : impl_(variogram) {}
  ZqFullVariogram(const ZqFullVariogram& other) : impl_(other.impl_->CreateCopy()) {}
  ZqFullVariogram& operator=(const ZqFullVariogram& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  unsigned int GetNumBins() const { return impl_->GetNumBins(); }
  unsigned int GetNumBinElements(unsigned int bin) const { return impl_->GetNumBinElements(bin); }
  double GetHalfSquaredDifference(unsigned int bin, unsigned int element) const {
    return impl_->GetHalfSquaredDifference(bin, element);
  }
  double GetDistance(unsigned int bin, unsigned int element) const { return impl_->GetDistance(bin, element); }
  const ZqFullVariogramBase& GetVariogram() const { return *impl_; }

 private:
  std::unique_ptr<ZqFullVariogramBase> impl_;
};

}  // namespace Varimo
