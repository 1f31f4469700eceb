// One-sample statistics chosen by number at run time: objects that map a
// vector of doubles to one number.
//
//   Varimo::ZqSampleStatistic iqr(Varimo::ZqSampleStatisticType::InterQuartileRange);
//   const double value = iqr(data);
//
// A statistic object never fails: when the data cannot give the statistic
// (too few values, a NaN or an infinity anywhere in the sample) it returns
// the bad double 1.7976931348623157e308. Order statistics use quantiles of
// type 8 (quantile.h), which give the negative bad value below the first
// point: the median of one value is -1.7976931348623157e308. The input is
// never changed; order statistics sort a copy on every call, O(n log n).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Varimo {

// The numbers of the one-sample statistics, and their names.
namespace ZqSampleStatisticType {
inline constexpr unsigned int Null = 0;
inline constexpr unsigned int Mean = 1;
inline constexpr unsigned int TrimmedMean = 2;
inline constexpr unsigned int Median = 3;
inline constexpr unsigned int Quantile = 4;
inline constexpr unsigned int Min = 5;
inline constexpr unsigned int Max = 6;
inline constexpr unsigned int Range = 7;
inline constexpr unsigned int Variance = 8;
inline constexpr unsigned int RootMeanSquareVal = 9;
inline constexpr unsigned int RootMeanSquareDev = 10;
inline constexpr unsigned int MeanAbsoluteDev = 11;
inline constexpr unsigned int MedianAbsoluteDev = 12;
inline constexpr unsigned int InterQuartileRange = 13;
inline constexpr unsigned int Skewness = 14;
inline constexpr unsigned int Kurtosis = 15;

inline constexpr unsigned int NumTypes = 16;
// "Null Statistic: Always returns a bad double", "Sample Mean", ...
extern const char* const TypeName[NumTypes];
}  // namespace ZqSampleStatisticType

class ZqSampleStatisticBase {
 public:
  virtual ~ZqSampleStatisticBase() = default;
  // A new copy owned by the caller.
  virtual ZqSampleStatisticBase* CreateCopy() const = 0;
  virtual unsigned int GetSampleStatisticsType() const = 0;
  virtual std::string GetSampleStatisticsName() const = 0;
  virtual double operator()(const std::vector<double>& data) const = 0;
};

// The number, name and copy of a statistic, shared by the concrete classes.
template <class Derived, unsigned int Type>
class ZqSampleStatisticOfType : public ZqSampleStatisticBase {
 public:
  ZqSampleStatisticBase* CreateCopy() const override { return new Derived(static_cast<const Derived&>(*this)); }
  unsigned int GetSampleStatisticsType() const override { return Type; }
  std::string GetSampleStatisticsName() const override { return ZqSampleStatisticType::TypeName[Type]; }
};

// Answers every request with the bad double.
class ZqNullSampleStatistic final : public ZqSampleStatisticOfType<ZqNullSampleStatistic, 0> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// Needs n >= 1: the sum in input order over n.
class ZqSampleMean final : public ZqSampleStatisticOfType<ZqSampleMean, 1> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// The mean after dropping k = round(n t / 2) values at each end of the sorted
// sample (t the total fraction to trim; halves round away from zero). When
// nothing is left (n - k <= k) the result is exactly 1.0; a negative or NaN t
// gives the bad double. Needs n >= 1.
class ZqTrimmedSampleMean final : public ZqSampleStatisticOfType<ZqTrimmedSampleMean, 2> {
 public:
  explicit ZqTrimmedSampleMean(double fractionToTrim) : fractionToTrim_(fractionToTrim) {}
  double GetParameter() const { return fractionToTrim_; }
  double operator()(const std::vector<double>& data) const override;

 private:
  double fractionToTrim_;
};
// The type-8 quantile at 0.5. Needs n >= 1; one value gives the negative bad
// double.
class ZqSampleMedian final : public ZqSampleStatisticOfType<ZqSampleMedian, 3> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// The type-8 quantile at p. Needs n >= 1.
class ZqSampleQuantile final : public ZqSampleStatisticOfType<ZqSampleQuantile, 4> {
 public:
  explicit ZqSampleQuantile(double p) : p_(p) {}
  double GetParameter() const { return p_; }
  double operator()(const std::vector<double>& data) const override;

 private:
  double p_;
};
class ZqSampleMin final : public ZqSampleStatisticOfType<ZqSampleMin, 5> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
class ZqSampleMax final : public ZqSampleStatisticOfType<ZqSampleMax, 6> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// max - min; needs n >= 2 (one value gives the bad double, not 0).
class ZqSampleRange final : public ZqSampleStatisticOfType<ZqSampleRange, 7> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// Sum of squared deviations from the mean over n - 1; needs n >= 2.
class ZqSampleVariance final : public ZqSampleStatisticOfType<ZqSampleVariance, 8> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// sqrt(sum x^2 / n)
class ZqSampleRootMeanSquareVal final : public ZqSampleStatisticOfType<ZqSampleRootMeanSquareVal, 9> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// sqrt(sum (x - mean)^2 / n); one value gives 0.
class ZqSampleRootMeanSquareDev final : public ZqSampleStatisticOfType<ZqSampleRootMeanSquareDev, 10> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// sum |x - mean| / n
class ZqSampleMeanAbsoluteDev final : public ZqSampleStatisticOfType<ZqSampleMeanAbsoluteDev, 11> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// The type-8 median of |x - median|, not rescaled.
class ZqSampleMedianAbsoluteDev final : public ZqSampleStatisticOfType<ZqSampleMedianAbsoluteDev, 12> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// Q(0.75) - Q(0.25) of type 8; needs n >= 2, and is the bad double while the
// lower quartile is below the first point (n < 4).
class ZqSampleInterQuartileRange final : public ZqSampleStatisticOfType<ZqSampleInterQuartileRange, 13> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// m3 / m2^1.5 with the biased central moments; needs n >= 3. A constant
// sample divides 0 by 0.
class ZqSampleSkewness final : public ZqSampleStatisticOfType<ZqSampleSkewness, 14> {
 public:
  double operator()(const std::vector<double>& data) const override;
};
// Excess kurtosis m4 / m2^2 - 3 with the biased moments; needs n >= 3.
class ZqSampleKurtosis final : public ZqSampleStatisticOfType<ZqSampleKurtosis, 15> {
 public:
  double operator()(const std::vector<double>& data) const override;
};

// The statistic of the given number; the parameter is used by the trimmed
// mean (fraction to trim) and the quantile (p). An unknown number gives the
// null statistic.
std::unique_ptr<ZqSampleStatisticBase> ZqGetSampleStatistic(unsigned int type, double parameter);

// A handle that owns one statistic and forwards to it; copies are deep.
class ZqSampleStatistic final : public ZqSampleStatisticBase {
 public:
  // The parameter when none is given: the median for the quantile, and the
  // mean of the middle half for the trimmed mean.
  static constexpr double kDefaultParameter = 0.5;

  explicit ZqSampleStatistic(unsigned int type) : ZqSampleStatistic(type, kDefaultParameter) {}
  ZqSampleStatistic(unsigned int type, double parameter) : impl_(ZqGetSampleStatistic(type, parameter)) {}
  ZqSampleStatistic(const ZqSampleStatistic& other) : impl_(other.impl_->CreateCopy()) {}
  ZqSampleStatistic& operator=(const ZqSampleStatistic& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqSampleStatistic* CreateCopy() const override { return new ZqSampleStatistic(*this); }
  unsigned int GetSampleStatisticsType() const override { return impl_->GetSampleStatisticsType(); }
  std::string GetSampleStatisticsName() const override { return impl_->GetSampleStatisticsName(); }
  double operator()(const std::vector<double>& data) const override { return (*impl_)(data); }

 private:
  std::unique_ptr<ZqSampleStatisticBase> impl_;
};

}  // namespace Varimo
