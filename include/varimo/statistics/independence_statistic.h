// Statistics of the independence of two multivariate samples, chosen by
// number at run time, and the permutation test built on them.
//
//   Numarc::ZqRanNumEngine engine(7);
//   ZqStatModelResult result;
//   double p = ZqGetPValueForTwoSampleIndepStatistic(result, engine, 999, 2, x, 1, false, y, 1, false);
//
// Each sample is a flat vector of doubles in row order with its number of
// columns, and a flag saying that it is a square similarity matrix (values
// in [0, 1], distance sqrt(1 - s)) rather than points (Euclidean distance);
// see distance_matrix.h. Both samples must have the same number of rows.
// Samples that differ in rows fail with MismatchBetweenInputVecSizes, and
// samples of no rows with NoData, in routine "<class name>::operator" (or
// "<class name>::SimulateStatisticUnderIndependence"); numCols 0 fails
// with ArgumentOutOfRange. Cost: O(n^2) memory and time per
// value, n the number of rows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/random_engine.h"

namespace Varimo {

namespace ZqTwoSampleIndependenceStatisticType {
inline constexpr unsigned int Null = 0;
inline constexpr unsigned int DistanceCorrelationMeasure = 1;
inline constexpr unsigned int DistanceCorrelationTestStat = 2;

inline constexpr unsigned int NumTypes = 3;
// "Null Statistic: Always returns a bad double",
// "DistanceMatrixCorrelationMeasure", "DistanceMatrixCorrelationTestStatistic".
extern const char* const TypeName[NumTypes];
}  // namespace ZqTwoSampleIndependenceStatisticType

class ZqTwoSampleIndependenceStatisticBase {
 public:
  virtual ~ZqTwoSampleIndependenceStatisticBase() = default;
  virtual ZqTwoSampleIndependenceStatisticBase* CreateCopy() const = 0;
  virtual unsigned int GetTwoSampleIndepStatisticsType() const = 0;
  virtual std::string GetTwoSampleIndepStatisticsName() const = 0;
  // Clears `simulated` and appends numSimulations values of the statistic
  // under independence, drawn from engine. On failure the values gathered
  // so far stay.
  virtual ZqStatModelResult SimulateStatisticUnderIndependence(
      std::vector<double>& simulated, Numarc::ZqRanNumEngine& engine, std::uint64_t numSimulations,
      const std::vector<double>& data1, std::uint64_t numCols1, bool isSimilarity1, const std::vector<double>& data2,
      std::uint64_t numCols2, bool isSimilarity2) const = 0;
  // The statistic of the two samples; the bad double on failure.
  virtual double operator()(ZqStatModelResult& result, const std::vector<double>& data1, std::uint64_t numCols1,
                            bool isSimilarity1, const std::vector<double>& data2, std::uint64_t numCols2,
                            bool isSimilarity2) const = 0;
};

template <class Derived, unsigned int Type>
class ZqTwoSampleIndependenceStatisticOfType : public ZqTwoSampleIndependenceStatisticBase {
 public:
  ZqTwoSampleIndependenceStatisticBase* CreateCopy() const override {
    return new Derived(static_cast<const Derived&>(*this));
  }
  unsigned int GetTwoSampleIndepStatisticsType() const override { return Type; }
  std::string GetTwoSampleIndepStatisticsName() const override {
    return ZqTwoSampleIndependenceStatisticType::TypeName[Type];
  }
};

// The two operations every concrete independence statistic overrides.
#define VARIMO_INDEPENDENCE_STATISTIC_OPERATIONS                                                                      \
  ZqStatModelResult SimulateStatisticUnderIndependence(                                                               \
      std::vector<double>& simulated, Numarc::ZqRanNumEngine& engine, std::uint64_t numSimulations,                   \
      const std::vector<double>& data1, std::uint64_t numCols1, bool isSimilarity1, const std::vector<double>& data2, \
      std::uint64_t numCols2, bool isSimilarity2) const override;                                                     \
  double operator()(ZqStatModelResult& result, const std::vector<double>& data1, std::uint64_t numCols1,              \
                    bool isSimilarity1, const std::vector<double>& data2, std::uint64_t numCols2,                     \
                    bool isSimilarity2) const override;

// Fails both operations with EmptyStatModel, routines
// "ZqNullIndependenceStatistic::operator" and
// "ZqNullIndependenceStatistic::SimulateStatisticUnderIndependence".
class ZqNullIndependenceStatistic final
    : public ZqTwoSampleIndependenceStatisticOfType<ZqNullIndependenceStatistic, 0> {
 public:
  VARIMO_INDEPENDENCE_STATISTIC_OPERATIONS
};

// The distance correlation dCor of Szekely, Rizzo and Bakirov, in [0, 1]; 0
// when either sample has no spread. Has no simulation: it fails with
// NotYetImplemented, so its p-value cannot be had.
class ZqDistanceCorrelationMeasure final
    : public ZqTwoSampleIndependenceStatisticOfType<ZqDistanceCorrelationMeasure, 1> {
 public:
  VARIMO_INDEPENDENCE_STATISTIC_OPERATIONS
};

// n dCov^2: sum of A_ij B_ij over n for the centred distance matrices A and
// B. Its simulation pairs the rows of the second sample with those of the
// first by a random permutation, one per value.
class ZqDistanceCorrelationTestStat final
    : public ZqTwoSampleIndependenceStatisticOfType<ZqDistanceCorrelationTestStat, 2> {
 public:
  VARIMO_INDEPENDENCE_STATISTIC_OPERATIONS
};

// The statistic of the given number; an unknown number gives the null one.
std::unique_ptr<ZqTwoSampleIndependenceStatisticBase> ZqGetTwoSampleIndependenceStatistic(unsigned int type);

// A handle that owns one statistic and forwards to it; copies are deep.
class ZqTwoSampleIndependenceStatistic final : public ZqTwoSampleIndependenceStatisticBase {
 public:
  explicit ZqTwoSampleIndependenceStatistic(unsigned int type) : impl_(ZqGetTwoSampleIndependenceStatistic(type)) {}
  ZqTwoSampleIndependenceStatistic(const ZqTwoSampleIndependenceStatistic& other) : impl_(other.impl_->CreateCopy()) {}
  ZqTwoSampleIndependenceStatistic& operator=(const ZqTwoSampleIndependenceStatistic& other) {
    if (this != &other) impl_.reset(other.impl_->CreateCopy());
    return *this;
  }

  ZqTwoSampleIndependenceStatistic* CreateCopy() const override { return new ZqTwoSampleIndependenceStatistic(*this); }
  unsigned int GetTwoSampleIndepStatisticsType() const override { return impl_->GetTwoSampleIndepStatisticsType(); }
  std::string GetTwoSampleIndepStatisticsName() const override { return impl_->GetTwoSampleIndepStatisticsName(); }
  ZqStatModelResult SimulateStatisticUnderIndependence(std::vector<double>& simulated, Numarc::ZqRanNumEngine& engine,
                                                       std::uint64_t numSimulations, const std::vector<double>& data1,
                                                       std::uint64_t numCols1, bool isSimilarity1,
                                                       const std::vector<double>& data2, std::uint64_t numCols2,
                                                       bool isSimilarity2) const override {
    return impl_->SimulateStatisticUnderIndependence(simulated, engine, numSimulations, data1, numCols1, isSimilarity1,
                                                     data2, numCols2, isSimilarity2);
  }
  double operator()(ZqStatModelResult& result, const std::vector<double>& data1, std::uint64_t numCols1,
                    bool isSimilarity1, const std::vector<double>& data2, std::uint64_t numCols2,
                    bool isSimilarity2) const override {
    return (*impl_)(result, data1, numCols1, isSimilarity1, data2, numCols2, isSimilarity2);
  }

 private:
  std::unique_ptr<ZqTwoSampleIndependenceStatisticBase> impl_;
};

#undef VARIMO_INDEPENDENCE_STATISTIC_OPERATIONS

// Builds the statistic statType and applies it; on failure adds
// "ZqGetTwoSampleIndepStatForVectors" to the chain and gives the bad double.
double ZqGetTwoSampleIndepStatForVectors(ZqStatModelResult& result, unsigned int statType,
                                         const std::vector<double>& data1, std::uint64_t numCols1, bool isSimilarity1,
                                         const std::vector<double>& data2, std::uint64_t numCols2, bool isSimilarity2);

// The permutation p-value of statistic statType: 1 minus the empirical CDF,
// at the observed value, of numSimulations values simulated under
// independence. Prints two lines through Corvane's output sink,
//   min, max = <smallest>; <largest>
//   90th percentile = <type-8 quantile at 0.9>
// of the simulated values. Only DistanceCorrelationTestStat can simulate; the
// others fail (NotYetImplemented or EmptyStatModel). No simulations fail
// with NoData. On failure the routine "ZqGetPValueForTwoSampleIndepStatistic"
// is added to the chain and the result is the bad double. The same engine
// state gives the same p-value. Cost: O(numSimulations n^2).
double ZqGetPValueForTwoSampleIndepStatistic(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine,
                                             std::uint64_t numSimulations, unsigned int statType,
                                             const std::vector<double>& data1, std::uint64_t numCols1,
                                             bool isSimilarity1, const std::vector<double>& data2,
                                             std::uint64_t numCols2, bool isSimilarity2);

}  // namespace Varimo
