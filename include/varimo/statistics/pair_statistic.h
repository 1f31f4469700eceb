// Two-sample pair statistics chosen by number at run time: two numbers from a
// vector of pairs (x, y). They never fail: data that cannot give the
// statistic gives the pair of bad doubles (1.7976931348623157e308 twice).
// Regressions return (intercept, slope), of y on x.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "varimo/foundations/stats_data_types.h"
#include "varimo/platform/minarc/func.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {

namespace ZqTwoSamplePairStatisticType {
inline constexpr unsigned int Null = 0;
inline constexpr unsigned int PairOfMeans = 1;
inline constexpr unsigned int PairOfVariances = 2;
inline constexpr unsigned int InterceptSlopeOfOLSRegression = 3;
inline constexpr unsigned int InterceptSlopeOfLMSRegression = 4;
inline constexpr unsigned int PairedTTestStatAndPValue = 5;

inline constexpr unsigned int NumTypes = 6;
// "Null PairStatistic: Always returns a bad double pair", ...
extern const char* const TypeName[NumTypes];
}  // namespace ZqTwoSamplePairStatisticType

class ZqTwoSamplePairStatisticBase {
 public:
  virtual ~ZqTwoSamplePairStatisticBase() = default;
  virtual ZqTwoSamplePairStatisticBase* CreateCopy() const = 0;
  virtual unsigned int GetTwoSamplePairStatisticsType() const = 0;
  virtual std::string GetTwoSamplePairStatisticsName() const = 0;
  virtual std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const = 0;
};

template <class Derived, unsigned int Type>
class ZqTwoSamplePairStatisticOfType : public ZqTwoSamplePairStatisticBase {
 public:
  ZqTwoSamplePairStatisticBase* CreateCopy() const override {
    return new Derived(static_cast<const Derived&>(*this));
  }
  unsigned int GetTwoSamplePairStatisticsType() const override { return Type; }
  std::string GetTwoSamplePairStatisticsName() const override { return ZqTwoSamplePairStatisticType::TypeName[Type]; }
};

class ZqNullTwoSamplePairStatistic final : public ZqTwoSamplePairStatisticOfType<ZqNullTwoSamplePairStatistic, 0> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
};
// (mean x, mean y); needs one pair.
class ZqTwoSamplePairOfMeans final : public ZqTwoSamplePairStatisticOfType<ZqTwoSamplePairOfMeans, 1> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
};
// The two sample variances over n - 1; needs two pairs.
class ZqTwoSamplePairOfVariances final : public ZqTwoSamplePairStatisticOfType<ZqTwoSamplePairOfVariances, 2> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
};
// Ordinary least squares; needs two pairs and spread in x.
class ZqInterceptSlopeOfOLSRegression final
    : public ZqTwoSamplePairStatisticOfType<ZqInterceptSlopeOfOLSRegression, 3> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
};

// The objective of the least-median-of-squares slope, as a function of one
// variable, the slope b. For b it sorts the residuals r_i = y_i - b x_i and
// finds the narrowest window r[k + h] - r[k], h = n / 2 (the first of equal
// widths wins); the value is half that width and the intercept the window's
// midpoint. Results are kept for the last slope, so asking again for the
// same slope costs nothing. O(n log n) per new slope.
class ZqLMSSlopeFunctor final : public Minarc::ZqFunc0 {
 public:
  explicit ZqLMSSlopeFunctor(const ZqPairSample& pairs) : pairs_(pairs) {}
  unsigned int NumVar() const override { return 1; }
  // Half the width of the narrowest window at slope x[0]; the bad double for
  // no pairs.
  double operator()(const double* x) override;
  // The intercept at `slope`.
  double GetIntercept(double slope);

 private:
  void CalcInterceptAndMedianAbsResidual(double slope);

  ZqPairSample pairs_;
  double slope_ = VarimoBadData::BadDouble;
  double intercept_ = VarimoBadData::BadDouble;
  double score_ = VarimoBadData::BadDouble;
};

// Least median of squares: the slope by a golden-section search (default
// settings) of ZqLMSSlopeFunctor, from the probes at slopes -1, 0 and 1.
// Needs four pairs. When slope 0 scores no better than both others the search
// has no direction and the result is the bad pair, as it is when the search
// fails.
class ZqInterceptSlopeOfLMSRegression final
    : public ZqTwoSamplePairStatisticOfType<ZqInterceptSlopeOfLMSRegression, 4> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
  // The search behind GetPairStatistic, with no minimum count; false, and
  // both outputs bad, when it finds nothing.
  static bool GetSlopeInterceptForPairSample(double& slope, double& intercept, const ZqPairSample& pairs);
};

// The paired t test of second against first: with d = y - x, t = mean(d) /
// sqrt(var(d) / n) with n - 1 degrees of freedom, and the upper-tail
// probability 1 - CDF(t) of Student's t. Needs two pairs. Differences all
// equal divide by zero: t is then what the arithmetic gives, and the
// probability of a NaN t is the bad double.
class ZqPairedTTestStatAndPValue final : public ZqTwoSamplePairStatisticOfType<ZqPairedTTestStatAndPValue, 5> {
 public:
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override;
};

// The statistic of the given number; an unknown number gives the null one.
std::unique_ptr<ZqTwoSamplePairStatisticBase> ZqGetTwoSamplePairStatistic(unsigned int type);

// A handle that owns one statistic and forwards to it; copies are deep.
class ZqTwoSamplePairStatistic final : public ZqTwoSamplePairStatisticBase {
 public:
  explicit ZqTwoSamplePairStatistic(unsigned int type) : impl_(ZqGetTwoSamplePairStatistic(type)) {}
  ZqTwoSamplePairStatistic(const ZqTwoSamplePairStatistic& other) : impl_(other.impl_->CreateCopy()) {}
  ZqTwoSamplePairStatistic& operator=(const ZqTwoSamplePairStatistic& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqTwoSamplePairStatistic* CreateCopy() const override { return new ZqTwoSamplePairStatistic(*this); }
  unsigned int GetTwoSamplePairStatisticsType() const override { return impl_->GetTwoSamplePairStatisticsType(); }
  std::string GetTwoSamplePairStatisticsName() const override { return impl_->GetTwoSamplePairStatisticsName(); }
  std::pair<double, double> GetPairStatistic(const ZqPairSample& pairs) const override {
    return impl_->GetPairStatistic(pairs);
  }

 private:
  std::unique_ptr<ZqTwoSamplePairStatisticBase> impl_;
};

}  // namespace Varimo
