// Two-sample statistics chosen by number at run time: one number from a
// vector of pairs (x, y).
//
// Like the one-sample statistics they never fail: data that cannot give the
// statistic (too few pairs, a sample without spread, a NaN or an infinity
// anywhere) gives the bad double 1.7976931348623157e308. "Without spread"
// means a centred second moment below EPS = 2.220446049250313e-16.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Varimo {

namespace ZqTwoSampleStatisticType {
inline constexpr unsigned int Null = 0;
inline constexpr unsigned int Covariance = 1;
inline constexpr unsigned int PearsonCorrelation = 2;
inline constexpr unsigned int RegressionSlope = 3;
inline constexpr unsigned int DistanceCorrelation = 4;
inline constexpr unsigned int DistanceCovarTestStat = 5;
inline constexpr unsigned int SpearmanRho = 6;
inline constexpr unsigned int KendallTau = 7;
inline constexpr unsigned int RSquared = 8;

inline constexpr unsigned int NumTypes = 9;
// "Null Statistic: Always returns a bad double", "Two Sample Covariance", ...
extern const char* const TypeName[NumTypes];
}  // namespace ZqTwoSampleStatisticType

// A paired sample: (x, y) per observation.
using ZqPairSample = std::vector<std::pair<double, double>>;

// The means of x and y and the centred second moments varX, varY and cov,
// each a sum over n (never n - 1). All five are the bad double for no pairs.
void GetMeansAndCentered2ndMoments(const ZqPairSample& pairs, double& meanX, double& meanY,
                                   double& varX, double& varY, double& cov);

class ZqTwoSampleStatisticBase {
 public:
  virtual ~ZqTwoSampleStatisticBase() = default;
  virtual ZqTwoSampleStatisticBase* CreateCopy() const = 0;
  virtual unsigned int GetTwoSampleStatisticsType() const = 0;
  virtual std::string GetTwoSampleStatisticsName() const = 0;
  virtual double operator()(const ZqPairSample& pairs) const = 0;
};

template <class Derived, unsigned int Type>
class ZqTwoSampleStatisticOfType : public ZqTwoSampleStatisticBase {
 public:
  ZqTwoSampleStatisticBase* CreateCopy() const override { return new Derived(static_cast<const Derived&>(*this)); }
  unsigned int GetTwoSampleStatisticsType() const override { return Type; }
  std::string GetTwoSampleStatisticsName() const override { return ZqTwoSampleStatisticType::TypeName[Type]; }
};

class ZqNullTwoSampleStatistic final : public ZqTwoSampleStatisticOfType<ZqNullTwoSampleStatistic, 0> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// cov, over n.
class ZqTwoSampleCovariance final : public ZqTwoSampleStatisticOfType<ZqTwoSampleCovariance, 1> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// cov / sqrt(varX varY); bad without spread.
class ZqTwoSamplePearsonCorrelation final : public ZqTwoSampleStatisticOfType<ZqTwoSamplePearsonCorrelation, 2> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// cov / varX: the least-squares slope of y on x; bad when x has no spread.
class ZqTwoSampleRegressionSlope final : public ZqTwoSampleStatisticOfType<ZqTwoSampleRegressionSlope, 3> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// Distance correlation of Szekely and Rizzo: sqrt(dCov2 / sqrt(dVarX dVarY))
// from the doubly centred matrices of |x_i - x_j| and |y_i - y_j|; 0 when any
// of the three is below EPS. O(n^2) time and memory.
class ZqDistanceCorrelation final : public ZqTwoSampleStatisticOfType<ZqDistanceCorrelation, 4> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// The independence test statistic n dCov2 / (abar bbar), abar and bbar the
// means of the uncentred distance matrices; bad when either is 0 (a constant
// sample) or there are no pairs. O(n^2) time and memory.
class ZqDistanceCovarTestStat final : public ZqTwoSampleStatisticOfType<ZqDistanceCovarTestStat, 5> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// Pearson's correlation of the ranks, ties ranked by their mean rank.
class ZqSpearmanRho final : public ZqTwoSampleStatisticOfType<ZqSpearmanRho, 6> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// Kendall's tau-b over all n (n - 1) / 2 pairs of pairs, O(n^2):
// (concordant - discordant) / sqrt((n0 - tiesY)(n0 - tiesX)). No pairs give
// 1.0; one pair, or a sample tied throughout, 0 / 0 (NaN).
class ZqKendallTau final : public ZqTwoSampleStatisticOfType<ZqKendallTau, 7> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};
// cov^2 / (varX varY); bad without spread.
class ZqTwoSampleRSquared final : public ZqTwoSampleStatisticOfType<ZqTwoSampleRSquared, 8> {
 public:
  double operator()(const ZqPairSample& pairs) const override;
};

// The statistic of the given number; an unknown number gives the null one.
std::unique_ptr<ZqTwoSampleStatisticBase> ZqGetTwoSampleStatistic(unsigned int type);

// A handle that owns one statistic and forwards to it; copies are deep.
class ZqTwoSampleStatistic final : public ZqTwoSampleStatisticBase {
 public:
  explicit ZqTwoSampleStatistic(unsigned int type) : impl_(ZqGetTwoSampleStatistic(type)) {}
  ZqTwoSampleStatistic(const ZqTwoSampleStatistic& other) : impl_(other.impl_->CreateCopy()) {}
  ZqTwoSampleStatistic& operator=(const ZqTwoSampleStatistic& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqTwoSampleStatistic* CreateCopy() const override { return new ZqTwoSampleStatistic(*this); }
  unsigned int GetTwoSampleStatisticsType() const override { return impl_->GetTwoSampleStatisticsType(); }
  std::string GetTwoSampleStatisticsName() const override { return impl_->GetTwoSampleStatisticsName(); }
  double operator()(const ZqPairSample& pairs) const override { return (*impl_)(pairs); }

 private:
  std::unique_ptr<ZqTwoSampleStatisticBase> impl_;
};

}  // namespace Varimo
